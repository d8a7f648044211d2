#include "ezFormats/elementary/WrapperWatch.h"

namespace {

constexpr unsigned char kTransportSync = 0x47;
/// Program tables come first: a payload is not looked for before the third packet.
constexpr unsigned char kTransportRun = 3;

constexpr unsigned char kProgramEnd = 0xB9;
constexpr unsigned char kPack = 0xBA;
constexpr std::uint32_t kPackWord = 0x000001BA;
constexpr std::size_t kPackSizeMPEG1 = 8;
constexpr std::size_t kPackSizeMPEG2 = 10;

/// A bit pattern that a byte of a pack header must show.
struct Mark {
    std::size_t mIndex;
    unsigned char mMask;
    unsigned char mValue;
};

constexpr std::array<Mark, 5> kMarksMPEG1 = {
    {{0, 0xF1, 0x21}, {2, 0x01, 0x01}, {4, 0x01, 0x01}, {5, 0x80, 0x80}, {7, 0x01, 0x01}}};
constexpr std::array<Mark, 5> kMarksMPEG2 = {
    {{0, 0xC4, 0x44}, {2, 0x04, 0x04}, {4, 0x04, 0x04}, {5, 0x01, 0x01}, {8, 0x03, 0x03}}};

bool KeepsMarks(const std::array<unsigned char, 10>& aHeader, const std::array<Mark, 5>& aMarks) {
    for (const Mark& mark : aMarks) {
        if ((aHeader[mark.mIndex] & mark.mMask) != mark.mValue) {
            return false;
        }
    }
    return true;
}

bool IsMPEG2(unsigned char aFirst) {
    return (aFirst & 0xC0U) == 0x40U;
}

} // namespace

template <std::size_t Period>
void ezWrapperWatch::Comb<Period>::Feed(unsigned char aByte) {
    unsigned char& run = mRuns[mPhase];
    if (aByte == kTransportSync) {
        if (run < kTransportRun && ++run == kTransportRun) {
            ++mLiveCount;
        }
    } else {
        mLiveCount -= run == kTransportRun ? 1 : 0;
        run = 0;
    }
    mPhase = mPhase + 1 < Period ? mPhase + 1 : 0;
}

void ezWrapperWatch::Feed(unsigned char aByte) {
    mTransport.Feed(aByte);
    mTimedTransport.Feed(aByte);
    mCheckedTransport.Feed(aByte);
    FeedProgram(aByte);
}

void ezWrapperWatch::Feed(const unsigned char* aBytes, std::size_t aSize) {
    for (std::size_t i = 0; i < aSize; ++i) {
        Feed(aBytes[i]);
    }
}

void ezWrapperWatch::Leave() {
    mState = kOutside;
    mfInPack = false;
}

void ezWrapperWatch::FeedProgram(unsigned char aByte) {
    mWord = mWord << 8 | aByte;
    switch (mState) {
    case kOutside:
        break;
    case kPackHeader:
        FeedPackHeader(aByte);
        break;
    case kStuffing:
        mState = --mLeft == 0 ? kStartCode : kStuffing;
        mZeros = 0;
        break;
    case kStartCode:
        if (aByte == 0) {
            ++mZeros; // any number of zeros may stand before a start code
        } else if (aByte == 1 && mZeros >= 2) {
            mState = kCode;
        } else {
            Leave();
        }
        break;
    case kCode:
        TakeCode(aByte);
        break;
    case kLengthHigh:
        mLeft = std::uint32_t{aByte} << 8;
        mState = kLengthLow;
        break;
    case kLengthLow:
        mLeft |= aByte;
        mState = kStuffing;
        if (mLeft == 0) {
            Leave(); // a length that is not stated is for transport streams alone
        }
        break;
    }
    if (mState == kOutside && mWord == kPackWord) {
        TakeCode(kPack);
    }
}

void ezWrapperWatch::TakeCode(unsigned char aCode) {
    if (aCode == kPack) {
        mState = kPackHeader;
        mPackHeaderSize = 0;
    } else if (aCode > kPack) {
        mState = kLengthHigh;
    } else {
        static_assert(kProgramEnd < kPack, "the end code leaves, and so does every code of video");
        Leave();
    }
}

void ezWrapperWatch::FeedPackHeader(unsigned char aByte) {
    mPackHeader[mPackHeaderSize++] = aByte;
    const bool fMPEG2 = IsMPEG2(mPackHeader[0]);
    if (mPackHeaderSize < (fMPEG2 ? kPackSizeMPEG2 : kPackSizeMPEG1)) {
        return;
    }
    if (!KeepsMarks(mPackHeader, fMPEG2 ? kMarksMPEG2 : kMarksMPEG1)) {
        Leave();
        return;
    }
    mfInPack = true;
    mZeros = 0;
    mLeft = fMPEG2 ? aByte & 7U : 0;
    mState = mLeft == 0 ? kStartCode : kStuffing;
}
