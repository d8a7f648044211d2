#include "support/ScriptedStream.h"

#include "support/Record.h"

#include "ezPlatform/files/PathName.h"
#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <cstring>
#include <utility>

ScriptedStream::ScriptedStream(std::string aContent, bool afLending, std::string aURI)
    : mfOwnBuffer(afLending),
      mfCanLend(afLending),
      mContent(std::move(aContent)),
      mURI(std::move(aURI)),
      mArrived(mContent.size()) {}

ScriptedStream::~ScriptedStream() = default;

void ScriptedStream::Withhold() {
    const std::lock_guard<std::mutex> lock(mMutex);
    mArrived = 0;
    mfFinished = false;
}

void ScriptedStream::Arrive(std::size_t aCount) {
    const std::lock_guard<std::mutex> lock(mMutex);
    mArrived += std::min(aCount, mContent.size() - mArrived);
}

void ScriptedStream::Finish() {
    const std::lock_guard<std::mutex> lock(mMutex);
    mfFinished = true;
}

void ScriptedStream::Fail(ezStreamingStatus aStatus) {
    const std::lock_guard<std::mutex> lock(mMutex);
    mFailure = aStatus;
}

std::vector<std::string> ScriptedStream::TakeCalls() {
    return std::exchange(mCalls, std::vector<std::string>());
}

ezCString ScriptedStream::GetExtension() const {
    return ezPathName::MakeFilePath(mURI.c_str()).GetExtension();
}

ezCString ScriptedStream::GetURI() const {
    return mURI.c_str();
}

void ScriptedStream::RegisterThresholdCallBack(ezStreamThresholdCallBack aCallBack, void* aUserData) {
    mCalls.emplace_back("register");
    ezStream::RegisterThresholdCallBack(aCallBack, aUserData);
}

void ScriptedStream::UnregisterThresholdCallBack(ezStreamThresholdCallBack aCallBack) {
    mCalls.emplace_back("unregister");
    ezStream::UnregisterThresholdCallBack(aCallBack);
}

ezuint64 ScriptedStream::GetSize() {
    return mfSizeKnown ? mContent.size() : 0;
}

bool ScriptedStream::IsOpened() {
    mCalls.emplace_back("opened?");
    return mfOpened;
}

ezStreamingStatus ScriptedStream::Seek(const ezuint64& aPosition) {
    mCalls.push_back("seek " + std::to_string(aPosition.ToUInt64()));
    mLent.clear();
    if (mSeekStatus != ezStreamingStatus_NoError) {
        return mSeekStatus;
    }
    if (aPosition > mContent.size()) {
        mPosition = mfSeeksAnywhere ? mContent.size() : mPosition;
        return mfSeeksAnywhere ? ezStreamingStatus_NoError : ezStreamingStatus_OutOfRange;
    }
    mPosition = static_cast<std::size_t>(aPosition.ToUInt64());
    return ezStreamingStatus_NoError;
}

ScriptedStream::Outcome ScriptedStream::Look(std::size_t aSize) {
    const std::lock_guard<std::mutex> lock(mMutex);
    const std::size_t here = mArrived - std::min(mPosition, mArrived);
    if (aSize <= here) {
        return {ezStreamingStatus_NoError, aSize};
    }
    if (mFailure != ezStreamingStatus_NoError) {
        return {mFailure, 0};
    }
    if (mfFinished) {
        return {ezStreamingStatus_EOS, here};
    }
    return {ezStreamingStatus_NoError, 0};
}

ScriptedStream::Outcome ScriptedStream::NextOutcome(std::size_t aSize) {
    Outcome outcome{ezStreamingStatus_NoError, 0};
    if (mOutcomes.empty()) {
        outcome = Look(aSize);
    } else {
        outcome = mOutcomes.front();
        mOutcomes.pop_front();
    }
    if (outcome.mStatus == ezStreamingStatus_NoError && outcome.mCount == 0 && mOnNothing) {
        mOnNothing();
    }
    return outcome;
}

std::string ScriptedStream::BytesHere(std::size_t aCount) const {
    return mContent.substr(mPosition, aCount);
}

ezStreamingStatus ScriptedStream::Read(void* aBuffer, std::size_t* aSize, int aFlag) {
    mCalls.push_back("read " + std::to_string(*aSize) + " flag " + std::to_string(aFlag));
    mLent.clear();
    const Outcome outcome = NextOutcome(*aSize);
    const std::string bytes = BytesHere(std::min(outcome.mCount, *aSize));
    if (!bytes.empty()) {
        std::memcpy(aBuffer, bytes.data(), bytes.size());
    }
    *aSize = outcome.mCount;
    if (outcome.mStatus == ezStreamingStatus_NoError || outcome.mStatus == ezStreamingStatus_EOS) {
        mPosition += bytes.size();
    }
    return outcome.mStatus;
}

ezStreamingStatus ScriptedStream::LendingRead(const void** aData, std::size_t* aSize, int aFlag) {
    mCalls.push_back("lend " + std::to_string(*aSize) + " flag " + std::to_string(aFlag));
    const Outcome outcome = NextOutcome(*aSize);
    const std::string bytes = BytesHere(std::min(outcome.mCount, *aSize));
    mLent = std::vector<char>(bytes.begin(), bytes.end());
    *aData = outcome.mfNullData ? nullptr : mLent.empty() ? mContent.data() : mLent.data();
    *aSize = outcome.mCount;
    return outcome.mStatus;
}

bool ScriptedStream::HasOwnBuffer() const {
    mCalls.emplace_back("own buffer?");
    return mfOwnBuffer;
}

bool ScriptedStream::CanLend(int anAccess) const {
    mCalls.push_back("lends " + std::to_string(anAccess) + "?");
    return mfCanLend;
}

void ScriptedStream::CopyInfo(ezMediaInfo* anInfo) {
    mCalls.emplace_back("copy info");
    mRecordSeen = DumpRecord(anInfo);
    anInfo->Set(kezInfo_MimeType, "video/x-scripted", false);
}

void ScriptedStream::Release() {
    if (mReleased != nullptr) {
        *mReleased = true;
    }
    ezStream::Release();
}
