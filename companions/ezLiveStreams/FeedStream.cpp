#include "ezLiveStreams/FeedStream.h"

#include "ezBytes/SignalsHeldBack.h"

#include <system_error>

ezFeedStream::ezFeedStream(const ezFeedOptions& anOptions)
    : mBuffer(
          anOptions.mLimits, [this] { FireThreshold(); }, [this] { Interrupt(); }),
      mfWaitForSize(anOptions.mfWaitForSize) {}

ezFeedStream::~ezFeedStream() = default;

void ezFeedStream::Cancel() {
    mBuffer.Close();
    FireThreshold();
}

void ezFeedStream::Start() {
    const SignalsHeldBack heldBack;
    try {
        mThread = std::thread([this] { Feed(mBuffer); });
    } catch (const std::system_error& error) {
        mBuffer.Fail(ezStreamingStatus_ReadError, error.code().message());
    }
}

void ezFeedStream::Stop() {
    mBuffer.Close();
    if (mThread.joinable()) {
        mThread.join();
    }
}
