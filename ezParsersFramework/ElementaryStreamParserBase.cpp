#include "ez/ElementaryStreamParserBase.h"

#include "detail/ParsingStatusWords.h"

#include "ezPlatform/base/Assert.h"
#include "ezPlatform/base/Checked.h"
#include "ezPlatform/base/Log.h"
#include "ezPlatform/base/Memory.h"
#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr const char* kSource = "ElementaryStreamParser";

} // namespace

ezElementaryStreamParser::ezElementaryStreamParser(const char* aName, uint32 aMaxReadSize,
                                                   ezElementaryStreamInfo* aEltStreamInfo,
                                                   ezMediaInfo* aMediaInfo)
    : mName(aName), mMaxReadSize(aMaxReadSize), mEltStreamInfo(aEltStreamInfo), mMediaInfo(aMediaInfo) {}

ezElementaryStreamParser::~ezElementaryStreamParser() {
    ezElementaryStreamParser::InterruptParsing();
    delete mMediaInfo;
    delete mEltStreamInfo;
}

void ezElementaryStreamParser::SetMediaInfo(ezMediaInfo* aMediaInfo) {
    if (aMediaInfo != mMediaInfo) {
        delete mMediaInfo;
        mMediaInfo = aMediaInfo;
    }
}

void ezElementaryStreamParser::Open() {
    mTotalReadSize = 0;
    InterruptParsing();
    ResetParsing(false);
}

ezMediaInfo* ezElementaryStreamParser::Close() {
    ezMediaInfo* info = mMediaInfo;
    mMediaInfo = nullptr;
    InterruptParsing();
    return info;
}

void ezElementaryStreamParser::InterruptParsing() {
    mReadCurrentSize = 0;
    mReadRequestSize = 0;
    mSkipRead = false;
    mReadBufferSize = 0;
    ezFree(mReadBuffer);
    mReadBuffer = nullptr;
    mfBufferRefused = false;
    mGlobalStatus = MSS_COMPLETED;
}

void ezElementaryStreamParser::ResetParsing(bool afFromError) {
    mReadCurrentSize = 0;
    mReadRequestSize = 0;
    mSkipRead = false;
    mfBufferRefused = false;
    mGlobalStatus = Checked(StartParsing(afFromError));
}

void ezElementaryStreamParser::RequestReadOrSkip(uint32 aSize, bool aSkipRead, bool aAppend) {
    if (aAppend && !mSkipRead) {
        mReadRequestSize = ezSaturating_Add(mReadRequestSize, aSize);
    } else {
        mReadCurrentSize = 0;
        mReadRequestSize = aSize;
    }
    mSkipRead = aSkipRead;
    mfBufferRefused = !aSkipRead && mReadRequestSize > mReadBufferSize && !GrowBuffer();
}

bool ezElementaryStreamParser::GrowBuffer() {
    void* grown = ezRealloc(mReadBuffer, mReadRequestSize);
    if (grown == nullptr) {
        return false;
    }
    mReadBuffer = static_cast<unsigned char*>(grown);
    mReadBufferSize = mReadRequestSize;
    return true;
}

void ezElementaryStreamParser::GetReadData(const unsigned char*& aSrcBuffer, uint32& aSize) {
    if (!ezAssert(mReadRequestSize > mReadCurrentSize, "mReadRequestSize > mReadCurrentSize", kSource) ||
        mfBufferRefused) {
        return;
    }
    const uint32 count = std::min(aSize, mReadRequestSize - mReadCurrentSize);
    if (!mSkipRead && count != 0) {
        std::memcpy(mReadBuffer + mReadCurrentSize, aSrcBuffer, count);
    }
    mReadCurrentSize += count;
    aSize -= count;
    aSrcBuffer += count;
}

ezElementaryStreamParser::parsing_status_t ezElementaryStreamParser::Checked(parsing_status_t aStatus) const {
    return aStatus == MSS_IN_PROGRESS && mfBufferRefused ? MSS_UNRECOVERABLE_ERROR : aStatus;
}

void ezElementaryStreamParser::TakePacket(const unsigned char*& aSrcBuffer, uint32& aSize) {
    while (aSize > 0 && mGlobalStatus == MSS_IN_PROGRESS) {
        const uint32 sizeBefore = aSize;
        GetReadData(aSrcBuffer, aSize);
        if (aSize == sizeBefore) {
            mGlobalStatus = MSS_UNRECOVERABLE_ERROR; // a request that was not renewed takes nothing, ever
            return;
        }
        if (mReadCurrentSize >= mReadRequestSize) {
            const bool fExact = ezAssert(mReadRequestSize == mReadCurrentSize,
                                         "mReadRequestSize == mReadCurrentSize", kSource);
            mGlobalStatus =
                fExact ? Checked(ContinueParsing(mReadBuffer, mReadRequestSize)) : MSS_UNRECOVERABLE_ERROR;
        }
    }
}

void ezElementaryStreamParser::CheckDecision(uint32 aLeftSize) {
    if (mGlobalStatus != MSS_IN_PROGRESS) {
        ezLog_F(EZLOGLEVEL_DEBUG, "ElementaryStreamParser: '%s' Parsing %s with %u read bytes\n", mName,
                InWords(mGlobalStatus), mTotalReadSize - aLeftSize);
    } else if (mTotalReadSize >= mMaxReadSize) { // reaching is enough, although the text says greater
        ezLog_F(EZLOGLEVEL_DEBUG,
                "ElementaryStreamParser: '%s' total read size %u greater than limit %u, assume parsing "
                "failed\n",
                mName, mTotalReadSize, mMaxReadSize);
        mGlobalStatus = MSS_UNRECOVERABLE_ERROR;
    }
}

ezElementaryStreamParser::parsing_status_t
ezElementaryStreamParser::AddPacket(const void* aBuffer, uint32 aSize, bool afLostPackets) {
    if (mGlobalStatus != MSS_IN_PROGRESS) {
        return mGlobalStatus;
    }
    const auto* source = static_cast<const unsigned char*>(aBuffer);
    const uint32 size = aBuffer != nullptr ? aSize : 0;
    uint32 leftSize = size;
    if (afLostPackets) {
        ResetParsing(true);
    }
    // Only a parser in progress owes a request: the new start may have decided.
    if (mGlobalStatus == MSS_IN_PROGRESS &&
        !ezAssert(mReadRequestSize > 0, "mReadRequestSize > 0", kSource)) {
        mGlobalStatus = MSS_UNRECOVERABLE_ERROR;
    }
    TakePacket(source, leftSize);
    mTotalReadSize = ezSaturating_Add(mTotalReadSize, size); // whole, also when the decision fell within
    CheckDecision(leftSize);
    return mGlobalStatus;
}
