#pragma once

#include <cstdint>

/// Bytes of the sound of a file, whose own number may leave them open, or lie.
struct SoundSize {
    std::uint64_t mBytes = 0; ///< 0 where nobody can tell
    bool mfMeasured = false;  ///< by the file, as none are stated, or more than there are
    bool mfOpen = false;      ///< nobody can tell, as the file's size is not known either

    /// @param aStated      0 and 2^64-1 leave it open
    /// @param aThere       from the start of the sound up to the end
    /// @param afSizeKnown  that end is the file's, and not only a bound
    SoundSize(std::uint64_t aStated, std::uint64_t aThere, bool afSizeKnown)
        : mfMeasured(aStated == 0 || aStated == UINT64_MAX || aStated > aThere),
          mfOpen(mfMeasured && !afSizeKnown) {
        mBytes = mfOpen ? 0 : mfMeasured ? aThere : aStated;
    }

    /// The same of a number of 32 bits, of which all ones leave it open.
    static std::uint64_t Of32(std::uint32_t aStated) { return aStated != UINT32_MAX ? aStated : UINT64_MAX; }
};
