#include "ez/UndeterminedEltStreamParser.h"

#include "detail/ParsingStatusWords.h"

#include "ezPlatform/base/Assert.h"
#include "ezPlatform/base/Log.h"
#include "ezPlatform/media/MediaInfo.h"

#define EZ_UELT_FOR_EACH_CANDIDATE() for (Iter_Init(); Iter_Test(); Iter_Next())

namespace {

constexpr const char* kSource = "ElementaryStreamParser";

} // namespace

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
