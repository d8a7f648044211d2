#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/// Tells whether the bytes just seen lie in an MPEG transport or program stream.
///
/// Packets of such a stream carry whole frames and headers in a row, so that what lies in them looks like an
/// elementary stream. Both kinds are known by positions alone: transport packets by their sync byte at equal
/// distances, program streams by a pack header after which every packet ends where the next start code
/// stands. Where this order ends the answer is no again: bytes that look like it by chance cost an elementary
/// stream nothing but the few around them.
class ezWrapperWatch {
public:
    void Feed(unsigned char aByte);
    void Feed(const unsigned char* aBytes, std::size_t aSize);
    bool IsWrapped() const {
        return mTransport.mLiveCount != 0 || mTimedTransport.mLiveCount != 0 ||
               mCheckedTransport.mLiveCount != 0 || mfInPack;
    }

private:
    /// Counts for every phase of a period how many sync bytes stood there in a row.
    template <std::size_t Period>
    struct Comb {
        void Feed(unsigned char aByte);
        std::array<unsigned char, Period> mRuns = {};
        std::size_t mPhase = 0;
        std::size_t mLiveCount = 0; ///< phases with enough of them
    };

    enum State : int { kOutside, kPackHeader, kStuffing, kStartCode, kCode, kLengthHigh, kLengthLow };

    void FeedProgram(unsigned char aByte);
    void FeedPackHeader(unsigned char aByte);
    void TakeCode(unsigned char aCode);
    void Leave();

    Comb<188> mTransport;
    Comb<192> mTimedTransport;   ///< with a time stamp of four bytes before each packet
    Comb<204> mCheckedTransport; ///< with a check sum of sixteen bytes after each packet
    State mState = kOutside;
    bool mfInPack = false;   ///< after a pack header, in order ever since
    std::uint32_t mWord = 0; ///< the last four bytes
    std::uint32_t mLeft = 0; ///< bytes up to the next start code
    std::uint32_t mZeros = 0;
    std::array<unsigned char, 10> mPackHeader = {};
    std::size_t mPackHeaderSize = 0;
};
