#include "ezHosting/CancellableStream.h"

#include "ez/StreamMediaParserStream.h"

#include <algorithm>

ezCancellation::Watch::Watch(ezCancellation& aCancellation, Notice aNotice)
    : mCancellation(aCancellation), mNotice(aNotice ? std::move(aNotice) : [] {}) {
    const std::lock_guard<std::mutex> lock(mCancellation.mMutex);
    mCancellation.mWatches.push_back(this);
    if (mCancellation.IsCancelled()) {
        mNotice();
    }
}

ezCancellation::Watch::~Watch() {
    const std::lock_guard<std::mutex> lock(mCancellation.mMutex);
    std::vector<const Watch*>& watches = mCancellation.mWatches;
    watches.erase(std::find(watches.begin(), watches.end(), this));
}

void ezCancellation::Cancel() {
    if (IsCancelled()) {
        return; // without the lock: who is being called may cancel again
    }
    const std::lock_guard<std::mutex> lock(mMutex);
    if (mfCancelled.exchange(true, std::memory_order_acq_rel)) {
        return;
    }
    for (const Watch* watch : mWatches) {
        watch->mNotice();
    }
}

ezInterruptibleStream::ezInterruptibleStream(ezCancellation& aCancellation, ezStreamOwner aStream,
                                             ezCancellation::Notice aWake)
    : mCancellation(aCancellation),
      mStream(std::move(aStream)),
      mWatch(aCancellation, [this, wake = std::move(aWake)] {
          if (wake) {
              wake();
          }
          FireThreshold();
      }) {
    mStream->RegisterThresholdCallBack(sThresholdCallBack, this);
}

ezInterruptibleStream::~ezInterruptibleStream() {
    mStream->UnregisterThresholdCallBack(sThresholdCallBack);
}

void ezInterruptibleStream::sThresholdCallBack(void* aUserData) {
    static_cast<ezInterruptibleStream*>(aUserData)->FireThreshold();
}

ezuint64 ezInterruptibleStream::GetSize() {
    return mCancellation.IsCancelled() ? ezuint64() : mStream->GetSize();
}

ezStreamingStatus ezInterruptibleStream::Seek(const ezuint64& aPosition) {
    return mCancellation.IsCancelled() ? ezStreamingStatus_Interrupted : mStream->Seek(aPosition);
}

ezStreamingStatus ezInterruptibleStream::Read(void* aBuffer, std::size_t* aSize, int aFlag) {
    if (mCancellation.IsCancelled()) {
        *aSize = 0;
        return ezStreamingStatus_Interrupted;
    }
    return mStream->Read(aBuffer, aSize, aFlag);
}

ezStreamingStatus ezInterruptibleStream::LendingRead(const void** aData, std::size_t* aSize, int aFlag) {
    if (mCancellation.IsCancelled()) {
        *aSize = 0;
        return ezStreamingStatus_Interrupted;
    }
    return mStream->LendingRead(aData, aSize, aFlag);
}

std::unique_ptr<ezMediaParserStream> ezMakeCancellable(ezCancellation& aCancellation, ezStreamOwner aStream,
                                                       ezCancellation::Notice aWake) {
    ezStream* stream = nullptr;
    if (aStream != nullptr) {
        stream = new ezInterruptibleStream(aCancellation, std::move(aStream), std::move(aWake));
    }
    return std::make_unique<ezCancellable<ezStreamMediaParserStream>>(aCancellation, stream, true);
}
