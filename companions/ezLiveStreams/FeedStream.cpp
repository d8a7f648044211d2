#include "ezLiveStreams/FeedStream.h"

#include <csignal>
#include <system_error>

namespace {

/// Threads started within its life take no signals.
class SignalsHeldBack {
public:
    SignalsHeldBack() {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &mBefore);
    }
    ~SignalsHeldBack() { pthread_sigmask(SIG_SETMASK, &mBefore, nullptr); }
    SignalsHeldBack(const SignalsHeldBack&) = delete;
    SignalsHeldBack& operator=(const SignalsHeldBack&) = delete;

private:
    sigset_t mBefore = {};
};

} // namespace

ezFeedStream::ezFeedStream(const ezFeedOptions& anOptions)
    : mBuffer(
          anOptions.mLimits, [this] { FireThreshold(); }, [this] { Interrupt(); }),
      mfWaitForSize(anOptions.mfWaitForSize) {}

ezFeedStream::~ezFeedStream() = default;

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
