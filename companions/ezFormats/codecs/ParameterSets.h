#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

/// The parameter sets of a stream of H.264 or H.265, by their IDs. A set replaces the one of its ID.
/// @tparam SPS       has mID, which is below SPSCount
/// @tparam PPSCount  IDs that a PPS may have
template <typename SPS, std::size_t SPSCount, std::size_t PPSCount>
class ezParameterSets {
public:
    ezParameterSets() { mSPSOfPPS.fill(kNoSPS); }

    bool HasSPS() const { return !mSPSs.empty(); }
    bool HasPPS() const { return mfPPS; }
    /// The SPS that came first; null before one. It stays until the next is taken, as all that are found.
    const SPS* GetFirst() const { return mSPSs.empty() ? nullptr : &mSPSs.front(); }
    /// Null where there is none of that ID.
    const SPS* Find(std::uint32_t anID) const {
        const auto found =
            std::find_if(mSPSs.begin(), mSPSs.end(), [=](const SPS& aSet) { return aSet.mID == anID; });
        return found != mSPSs.end() ? &*found : nullptr;
    }
    /// The SPS that the PPS of an ID refers to; null where there is no such PPS or SPS.
    const SPS* FindOfPPS(std::uint32_t anID) const {
        return anID < PPSCount && mSPSOfPPS[anID] != kNoSPS ? Find(mSPSOfPPS[anID]) : nullptr;
    }

    void TakeSPS(const SPS& aSet) {
        const auto sameID = std::find_if(mSPSs.begin(), mSPSs.end(),
                                         [&](const SPS& aKnown) { return aKnown.mID == aSet.mID; });
        if (sameID != mSPSs.end()) {
            *sameID = aSet;
        } else if (mSPSs.size() < SPSCount) {
            mSPSs.push_back(aSet);
        }
    }
    /// Both IDs are in their ranges.
    void TakePPS(std::uint32_t anID, std::uint32_t aSPSID) {
        mSPSOfPPS[anID] = static_cast<std::uint8_t>(aSPSID);
        mfPPS = true;
    }

private:
    static constexpr std::uint8_t kNoSPS = 0xFF;
    static_assert(SPSCount < kNoSPS, "an ID fits a byte");

    std::vector<SPS> mSPSs; ///< at most SPSCount
    std::array<std::uint8_t, PPSCount> mSPSOfPPS;
    bool mfPPS = false;
};
