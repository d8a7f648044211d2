#include "ezFormats/elementary/FrameChainEltStreamParser.h"

#include "ezFormats/detail/Limits.h"
#include "ezFormats/elementary/WrapperWatch.h"

#include "ezBytes/LeadingTag.h"
#include "ezBytes/Limits.h"

#include "ezPlatform/base/Log.h"
#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

namespace {

constexpr std::uint16_t kNoHeader = 0xFFFF;

/// Positions that must be told apart, a power of two: more than there are in the longest frame.
uint32 RingSize(uint32 aMaxFrameSize) {
    uint32 size = 1;
    while (size <= aMaxFrameSize) {
        size *= 2;
    }
    return size;
}

} // namespace

/// Where the search stands. Positions count from its start.
///
/// Every header waits at the position where its successor should stand: those that wait at one position are
/// linked, so that a byte costs the same however many headers are waiting.
struct FrameChainEltStreamParser::Search {
    struct Place {
        uint32 mDigest = 0;                      ///< of the header that stands here, as long as it waits
        std::uint16_t mFirstWaiting = kNoHeader; ///< for a header to stand here
        std::uint16_t mNextWaiting = kNoHeader;  ///< for the same position as this one
    };

    explicit Search(uint32 aRingSize) : mPlaces(aRingSize) {}

    std::uint16_t Fold(uint32 aPosition) const {
        return static_cast<std::uint16_t>(aPosition & (mPlaces.size() - 1));
    }
    Place& At(uint32 aPosition) { return mPlaces[Fold(aPosition)]; }
    /// The position, not past the scan, that folds to an index.
    uint32 Unfold(std::uint16_t anIndex) const { return mScan - Fold(mScan - anIndex); }

    std::array<unsigned char, kEltStream_WindowSize> mWindow = {};
    uint32 mWindowSize = 0; ///< bytes in the window; the first one is at mScan
    uint32 mScan = 0;       ///< the position to look at next
    uint32 mConsumed = 0;   ///< bytes since the stream was opened
    uint32 mHeaderCount = 0;
    uint32 mTagCount = 0;
    uint32 mTagLeft = 0;    ///< bytes of a tag that are being passed over
    bool mfInSound = false; ///< no tag can follow
    ezWrapperWatch mWatch;
    std::vector<Place> mPlaces;
};

FrameChainEltStreamParser::FrameChainEltStreamParser(const char* aName, const Shape& aShape,
                                                     ezElementaryStreamInfo* aEltStreamInfo,
                                                     ezMediaInfo* aMediaInfo)
    : ezElementaryStreamParser(aName, kEltStream_SearchLimit, aEltStreamInfo, aMediaInfo), mShape(aShape) {}

FrameChainEltStreamParser::~FrameChainEltStreamParser() = default;

uint32 FrameChainEltStreamParser::InferFrameSize(uint32 /*aPosition*/, uint32 /*aDigest*/) {
    return 0;
}

ezElementaryStreamParser::parsing_status_t FrameChainEltStreamParser::StartParsing(bool /*afFromError*/) {
    mSearch = std::make_unique<Search>(RingSize(mShape.mMaxFrameSize));
    mSearch->mConsumed = mTotalReadSize; // a new start does not extend the limit
    Restart();
    RequestRead(LeastRequest());
    return MSS_IN_PROGRESS;
}

ezElementaryStreamParser::parsing_status_t
FrameChainEltStreamParser::ContinueParsing(const unsigned char* aBuffer, uint32 aSize) {
    Search& search = *mSearch;
    if (search.mTagLeft != 0) { // what was passed over has no bytes
        search.mConsumed += aSize;
        search.mTagLeft = 0;
        RequestRead(LeastRequest());
        return MSS_IN_PROGRESS;
    }
    const uint32 size = std::min(aSize, kEltStream_WindowSize - search.mWindowSize);
    std::memcpy(search.mWindow.data() + search.mWindowSize, aBuffer, size);
    search.mWindowSize += size;
    search.mConsumed += size;
    if (!search.mfInSound && StepOverTag()) {
        return MSS_IN_PROGRESS;
    }
    search.mWatch.Feed(search.mfInSound ? aBuffer : search.mWindow.data(),
                       search.mfInSound ? size : search.mWindowSize);
    search.mfInSound = true;
    if (Scan()) {
        return MSS_COMPLETED;
    }
    // The base finds the limit reached after a packet only; here it is reached at the same byte in any cut.
    if (mSearch->mConsumed >= kEltStream_SearchLimit) {
        ezLog_F(EZLOGLEVEL_DEBUG,
                "FrameChainEltStreamParser: '%s' none of %u headers is followed by another\n", mName,
                mSearch->mHeaderCount);
        return MSS_UNRECOVERABLE_ERROR;
    }
    RequestRead(LeastRequest());
    return MSS_IN_PROGRESS;
}

/// Where a tag stands at the start of the window, or after another one: places the request that leads on. A
/// request has at least the bytes of its header.
bool FrameChainEltStreamParser::StepOverTag() {
    Search& search = *mSearch;
    BlockBytes window(search.mWindow.data(), search.mWindowSize);
    const LeadingTag tag = ReadLeadingTag(window, 0);
    const std::uint64_t left = kEltStream_SearchLimit - search.mConsumed;
    const std::uint64_t size =
        tag.mfID3 ? tag.mSize : 0; // of an APE tag not every format has the header here
    if (size == 0 || search.mTagCount == kLeadingTag_MaxCount || size >= search.mWindowSize + left) {
        return false;
    }
    ++search.mTagCount;
    const uint32 here = static_cast<uint32>(std::min<std::uint64_t>(size, search.mWindowSize));
    search.mWindowSize -= here;
    std::memmove(search.mWindow.data(), search.mWindow.data() + here, search.mWindowSize);
    search.mTagLeft = static_cast<uint32>(size) - here;
    if (search.mTagLeft != 0) {
        RequestSkip(search.mTagLeft);
    } else {
        RequestRead(LeastRequest());
    }
    return true;
}

/// Looks at every position that has a header's bytes in the window, and moves the rest to its front.
bool FrameChainEltStreamParser::Scan() {
    Search& search = *mSearch;
    uint32 offset = 0;
    for (; offset + mShape.mHeaderSize <= search.mWindowSize; ++offset, ++search.mScan) {
        if (TakeHeader(search.mWindow.data() + offset)) {
            return true;
        }
    }
    search.mWindowSize -= offset;
    std::memmove(search.mWindow.data(), search.mWindow.data() + offset, search.mWindowSize);
    return false;
}

bool FrameChainEltStreamParser::TakeHeader(const unsigned char* aBytes) {
    Header header;
    const bool fHeader = ReadHeader(mSearch->mScan, aBytes, header) && !mSearch->mWatch.IsWrapped();
    if (fHeader && IsConfirmed(header.mDigest)) {
        return true;
    }
    mSearch->At(mSearch->mScan).mFirstWaiting = kNoHeader; // those that waited did so in vain
    if (fHeader) {
        ++mSearch->mHeaderCount;
        Expect(header);
    }
    return false;
}

bool FrameChainEltStreamParser::IsConfirmed(uint32 aDigest) {
    std::uint16_t index = mSearch->At(mSearch->mScan).mFirstWaiting;
    while (index != kNoHeader) {
        const Search::Place& waiting = mSearch->mPlaces[index];
        if (IsSameStream(waiting.mDigest, aDigest)) {
            if (mMediaInfo != nullptr) {
                Fill(*mMediaInfo, mSearch->Unfold(index), waiting.mDigest, aDigest);
            }
            return true;
        }
        index = waiting.mNextWaiting;
    }
    return false;
}

/// Lets a header wait for its successor.
void FrameChainEltStreamParser::Expect(const Header& aHeader) {
    const uint32 position = mSearch->mScan;
    const uint32 size =
        aHeader.mFrameSize != 0 ? aHeader.mFrameSize : InferFrameSize(position, aHeader.mDigest);
    if (size < mShape.mMinFrameSize || size > mShape.mMaxFrameSize) {
        return;
    }
    Search::Place& here = mSearch->At(position);
    Search::Place& there = mSearch->At(position + size);
    here.mDigest = aHeader.mDigest;
    here.mNextWaiting = there.mFirstWaiting;
    there.mFirstWaiting = mSearch->Fold(position);
}

/// The bytes without which no decision can fall: those of the next header that is waited for, or of a
/// smallest frame and a header after it.
uint32 FrameChainEltStreamParser::LeastRequest() const {
    Search& search = *mSearch;
    uint32 distance = 0;
    while (distance < mShape.mMinFrameSize && search.At(search.mScan + distance).mFirstWaiting == kNoHeader) {
        ++distance;
    }
    const uint32 least = distance + mShape.mHeaderSize - search.mWindowSize;
    return std::min(least, kEltStream_SearchLimit - search.mConsumed);
}
