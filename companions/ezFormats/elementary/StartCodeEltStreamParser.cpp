#include "ezFormats/elementary/StartCodeEltStreamParser.h"

#include "ezFormats/detail/Limits.h"
#include "ezFormats/elementary/WrapperWatch.h"

#include "ezPlatform/base/Log.h"

#include <algorithm>
#include <vector>

namespace {

constexpr uint32 kPrefixZeros = 2;
constexpr uint32 kPrefixSize = 3;
constexpr unsigned char kEscape = 3;     ///< emulation_prevention_three_byte, after two zeros of the content
constexpr unsigned char kMaxEscaped = 3; ///< and before a byte that must not follow them

} // namespace

struct StartCodeEltStreamParser::Search {
    std::vector<unsigned char> mUnit; ///< never longer than mMaxUnitSize
    uint8 mCode = 0;
    Keep mKeep = kNothing;
    bool mfWhole = true;
    bool mfEscaped = false; ///< the byte before was an escape
    bool mfPrefix = false;  ///< the next byte is a code
    uint32 mZeros = 0;      ///< that stand right before
    uint32 mConsumed = 0;   ///< bytes since the stream was opened
    ezWrapperWatch mWatch;
};

StartCodeEltStreamParser::StartCodeEltStreamParser(const char* aName, uint32 aMaxUnitSize,
                                                   ezElementaryStreamInfo* aEltStreamInfo,
                                                   ezMediaInfo* aMediaInfo)
    : ezElementaryStreamParser(aName, kEltStream_SearchLimit, aEltStreamInfo, aMediaInfo),
      mMaxUnitSize(aMaxUnitSize) {}

StartCodeEltStreamParser::~StartCodeEltStreamParser() = default;

bool StartCodeEltStreamParser::GrowUnit(const Unit& /*aUnit*/, Keep& /*aKeep*/) {
    return false;
}

ezElementaryStreamParser::parsing_status_t StartCodeEltStreamParser::StartParsing(bool /*afFromError*/) {
    mSearch = std::make_unique<Search>();
    mSearch->mUnit.reserve(mMaxUnitSize);
    mSearch->mConsumed = mTotalReadSize; // a new start does not extend the limit
    Restart();
    RequestRead(LeastRequest());
    return MSS_IN_PROGRESS;
}

ezElementaryStreamParser::parsing_status_t
StartCodeEltStreamParser::ContinueParsing(const unsigned char* aBuffer, uint32 aSize) {
    for (uint32 i = 0; i < aSize; ++i) {
        if (TakeByte(aBuffer[i])) {
            if (mMediaInfo != nullptr) {
                Fill(*mMediaInfo);
            }
            return MSS_COMPLETED;
        }
    }
    mSearch->mConsumed += aSize;
    // The base finds the limit reached after a packet only; here it is reached at the same byte in any cut.
    if (mSearch->mConsumed >= kEltStream_SearchLimit) {
        ezLog_F(EZLOGLEVEL_DEBUG, "StartCodeEltStreamParser: '%s' no picture found, %u headers refused\n",
                mName, CountRefused());
        return MSS_UNRECOVERABLE_ERROR;
    }
    RequestRead(LeastRequest());
    return MSS_IN_PROGRESS;
}

bool StartCodeEltStreamParser::TakeByte(unsigned char aByte) {
    mSearch->mWatch.Feed(aByte);
    if (mSearch->mfPrefix) {
        return TakeCode(aByte);
    }
    if (aByte == 1 && mSearch->mZeros >= kPrefixZeros) {
        EndCurrentUnit();
        mSearch->mfPrefix = true;
        mSearch->mZeros = 0;
        return false;
    }
    const bool fDecided = mSearch->mKeep != kNothing && TakeUnitByte(aByte);
    mSearch->mZeros = aByte == 0 ? mSearch->mZeros + 1 : 0;
    return fDecided;
}

bool StartCodeEltStreamParser::TakeCode(unsigned char aCode) {
    mSearch->mfPrefix = false;
    mSearch->mUnit.clear();
    mSearch->mfWhole = true;
    mSearch->mfEscaped = false;
    mSearch->mKeep = kNothing;
    mSearch->mCode = aCode;
    mSearch->mZeros = 0; // a code of zero is no part of the next prefix
    if (mSearch->mWatch.IsWrapped()) {
        Restart();
        return false;
    }
    return BeginUnit(aCode, mSearch->mKeep);
}

bool StartCodeEltStreamParser::TakeUnitByte(unsigned char aByte) {
    Search& search = *mSearch;
    if (search.mKeep != kBytes) {
        if (search.mZeros == kPrefixZeros && aByte == kEscape) {
            search.mfEscaped = true;
            return false;
        }
        // Content has an escape where one is needed and only there, and three zeros are its end.
        const bool fUnescaped = search.mZeros == kPrefixZeros && aByte != 0 && aByte < kEscape;
        const bool fPastEnd = search.mZeros > kPrefixZeros && aByte != 0;
        const bool fNeedless = search.mfEscaped && aByte > kMaxEscaped;
        search.mfWhole = search.mfWhole && !fUnescaped && !fPastEnd && !fNeedless;
        search.mfEscaped = false;
    }
    if (search.mUnit.size() < mMaxUnitSize) {
        search.mUnit.push_back(aByte);
    } else {
        search.mfWhole = search.mfWhole && aByte == 0;
    }
    return search.mKeep == kBytesAsGrown && GrowUnit(CurrentUnit(), search.mKeep);
}

StartCodeEltStreamParser::Unit StartCodeEltStreamParser::CurrentUnit() const {
    return {mSearch->mUnit.data(), static_cast<uint32>(mSearch->mUnit.size()), mSearch->mCode,
            mSearch->mfWhole};
}

void StartCodeEltStreamParser::EndCurrentUnit() {
    if (mSearch->mKeep != kNothing) {
        EndUnit(CurrentUnit());
        mSearch->mKeep = kNothing;
    }
}

uint32 StartCodeEltStreamParser::LeastRequest() const {
    const Search& search = *mSearch;
    const uint32 size = search.mKeep == kNothing ? UINT32_MAX : static_cast<uint32>(search.mUnit.size());
    const uint32 least = LeastBytes(search.mCode, size);
    const uint32 progress = search.mfPrefix ? kPrefixSize : std::min(search.mZeros, kPrefixZeros);
    return std::min(std::max(least, progress + 1) - progress, kEltStream_SearchLimit - search.mConsumed);
}
