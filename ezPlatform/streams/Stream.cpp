#include "ezPlatform/streams/Stream.h"

ezStream::~ezStream() = default;

void ezStream::RegisterThresholdCallBack(ezStreamThresholdCallBack aCallBack, void* aUserData) {
    const std::lock_guard<std::recursive_mutex> lock(mThresholdMutex);
    mThresholdCallBack = aCallBack;
    mThresholdUserData = aUserData;
}

void ezStream::UnregisterThresholdCallBack(ezStreamThresholdCallBack aCallBack) {
    const std::lock_guard<std::recursive_mutex> lock(mThresholdMutex);
    if (mThresholdCallBack == aCallBack) {
        mThresholdCallBack = nullptr;
        mThresholdUserData = nullptr;
    }
}

void ezStream::FireThreshold() {
    const std::lock_guard<std::recursive_mutex> lock(mThresholdMutex);
    if (mThresholdCallBack != nullptr) {
        mThresholdCallBack(mThresholdUserData);
    }
}

ezStreamingStatus ezStream::LendingRead(const void** aData, std::size_t* aSize, int /*aFlag*/) {
    *aData = nullptr;
    *aSize = 0;
    return ezStreamingStatus_NotSupported;
}

bool ezStream::HasOwnBuffer() const {
    return false;
}

bool ezStream::CanLend(int /*anAccess*/) const {
    return false;
}

void ezStream::CopyInfo(ezMediaInfo* /*anInfo*/) {}

void ezStream::Release() {
    delete this;
}
