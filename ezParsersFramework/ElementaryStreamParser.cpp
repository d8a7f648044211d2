#include "ez/ElementaryStreamParser.h"

#include "ezPlatform/base/Assert.h"
#include "ezPlatform/base/Checked.h"
#include "ezPlatform/base/Log.h"
#include "ezPlatform/base/Memory.h"
#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr const char* kSource = "ElementaryStreamParser";

const char* InWords(ezElementaryStreamParser::parsing_status_t aStatus) {
    return aStatus == ezElementaryStreamParser::MSS_UNRECOVERABLE_ERROR ? "failed" : "completed";
}

} // namespace

// --- What is parsed

ezElementaryStreamInfo::~ezElementaryStreamInfo() = default;

// --- One format

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

// --- The race

#define EZ_UELT_FOR_EACH_CANDIDATE() for (Iter_Init(); Iter_Test(); Iter_Next())

ezUndeterminedEltStreamParser::ezUndeterminedEltStreamParser(ezElementaryStreamInfo* aEltStreamInfo,
                                                             ezMediaInfo* aMediaInfo)
    : ezElementaryStreamParser("Undetermined", 0, aEltStreamInfo, aMediaInfo),
      mCandidateList(ezPtrList_New()) {
    ezPtrList_SetFreeFunc(mCandidateList, FreeCandidate);
}

ezUndeterminedEltStreamParser::~ezUndeterminedEltStreamParser() {
    ezPtrList_Delete(mCandidateList);
}

void ezUndeterminedEltStreamParser::FreeCandidate(void* aCandidate) {
    delete static_cast<ezElementaryStreamParser*>(aCandidate);
}

void ezUndeterminedEltStreamParser::AddCandidate(ezElementaryStreamParser* aCandidate) {
    if (!ezAssert(!mIsOpen, "!mIsOpen", kSource)) {
        FreeCandidate(aCandidate);
        return;
    }
    if (aCandidate != nullptr) {
        ezPtrList_Append(mCandidateList, aCandidate);
        mCurNode = nullptr; // the nodes may have moved
        GetCandidate();
    }
}

void ezUndeterminedEltStreamParser::GetCandidate() {
    mCurCandidate = static_cast<ezElementaryStreamParser*>(ezPtrListNode_GetData(mCurNode));
    mNextNode = ezPtrList_GetNext(mCandidateList, mCurNode);
}

void ezUndeterminedEltStreamParser::Iter_Init() {
    mCurNode = ezPtrList_GetFirst(mCandidateList);
    GetCandidate();
}

void ezUndeterminedEltStreamParser::Iter_Next() {
    mCurNode = mNextNode; // taken beforehand: the node that was visited may be gone
    GetCandidate();
}

void ezUndeterminedEltStreamParser::CheckCurCandidate() {
    if (mCurCandidate == nullptr || mCurCandidate->GetParserStatus() == MSS_IN_PROGRESS) {
        return;
    }
    ezLog_F(EZLOGLEVEL_DEBUG, "ElementaryStreamParser: ezUndeterminedEltStreamParser remove candidate '%s'\n",
            mCurCandidate->GetName());
    ezPtrList_DeleteNode(mCandidateList, mCurNode);
    mCurNode = nullptr;
    mCurCandidate = nullptr;
}

ezCString ezUndeterminedEltStreamParser::GetCandidateList() const {
    ezPtrListNode* node = ezPtrList_GetFirst(mCandidateList);
    if (node == nullptr) {
        return "<none>";
    }
    ezCString names("|");
    for (; node != nullptr; node = ezPtrList_GetNext(mCandidateList, node)) {
        names += static_cast<const ezElementaryStreamParser*>(ezPtrListNode_GetData(node))->GetName();
        names += "|";
    }
    return names;
}

void ezUndeterminedEltStreamParser::Open() {
    mIsOpen = true;
    EZ_UELT_FOR_EACH_CANDIDATE() {
        if (mMediaInfo != nullptr) {
            mCurCandidate->SetMediaInfo(mMediaInfo->Duplicate());
        }
        mCurCandidate->Open();
        CheckCurCandidate();
    }
    if (ezPtrList_GetCount(mCandidateList) != 0) {
        mGlobalStatus = MSS_IN_PROGRESS; // with none left the status stays: that is no failure yet
    }
}

ezMediaInfo* ezUndeterminedEltStreamParser::Close() {
    mIsOpen = false;
    EZ_UELT_FOR_EACH_CANDIDATE() {
        if (mCurCandidate->GetParserStatus() == MSS_COMPLETED) {
            return mCurCandidate->Close();
        }
    }
    return nullptr;
}

ezElementaryStreamParser::parsing_status_t
ezUndeterminedEltStreamParser::AddPacket(const void* aBuffer, uint32 aSize, bool afLostPackets) {
    if (mGlobalStatus != MSS_IN_PROGRESS) {
        return mGlobalStatus;
    }
    const std::size_t countBefore = ezPtrList_GetCount(mCandidateList);
    EZ_UELT_FOR_EACH_CANDIDATE() {
        if (mCurCandidate->AddPacket(aBuffer, aSize, afLostPackets) == MSS_COMPLETED) {
            mGlobalStatus = MSS_COMPLETED;
            break;
        }
        CheckCurCandidate();
    }
    if (ezPtrList_GetCount(mCandidateList) != countBefore) {
        ezLog_F(EZLOGLEVEL_DEBUG,
                "ElementaryStreamParser: ezUndeterminedEltStreamParser remaining candidates %s\n",
                GetCandidateList().c_str());
    }
    if (ezPtrList_GetCount(mCandidateList) == 0) {
        mGlobalStatus = MSS_UNRECOVERABLE_ERROR;
    }
    if (mGlobalStatus != MSS_IN_PROGRESS) {
        // No blank before the quoted name: the text is known like that.
        ezLog_F(EZLOGLEVEL_DEBUG, "ElementaryStreamParser: ezUndeterminedEltStreamParser'%s' Parsing %s\n",
                mName, InWords(mGlobalStatus));
    }
    return mGlobalStatus;
}

// --- What the race has no use for

void ezUndeterminedEltStreamParser::InterruptParsing() {
    ezAssert(false, "false", kSource);
}

void ezUndeterminedEltStreamParser::ResetParsing(bool /*afFromError*/) {
    ezAssert(false, "false", kSource);
}

void ezUndeterminedEltStreamParser::RequestReadOrSkip(uint32 /*aSize*/, bool /*aSkipRead*/,
                                                      bool /*aAppend*/) {
    ezAssert(false, "false", kSource);
}

void ezUndeterminedEltStreamParser::GetReadData(const unsigned char*& /*aSrcBuffer*/, uint32& /*aSize*/) {
    ezAssert(false, "false", kSource);
}

ezElementaryStreamParser::parsing_status_t ezUndeterminedEltStreamParser::StartParsing(bool /*afFromError*/) {
    ezAssert(false, "false", kSource);
    return MSS_UNRECOVERABLE_ERROR;
}

ezElementaryStreamParser::parsing_status_t
ezUndeterminedEltStreamParser::ContinueParsing(const unsigned char* /*aBuffer*/, uint32 /*aSize*/) {
    ezAssert(false, "false", kSource);
    return MSS_UNRECOVERABLE_ERROR;
}
