#pragma once

#include "ezPlatform/streams/Stream.h"

#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

/// A stream over bytes in memory that keeps the contract of ezStream, whose arrival a test controls, and
/// that breaks the contract where a test says so. It notes the calls that reach it.
///
/// One thread reads; Arrive, Finish, Fail and Fire may be called from another.
class ScriptedStream : public ezStream {
public:
    /// All of the content has arrived.
    ScriptedStream(std::string aContent, bool afLending, std::string aURI = "/media/scripted.bin");
    ~ScriptedStream() override;

    // ---- how the bytes arrive ----

    /// Nothing has arrived yet.
    void Withhold();
    /// So many more bytes have arrived, none beyond the content.
    void Arrive(std::size_t aCount);
    /// No more comes: what has arrived is the media.
    void Finish();
    /// What has not arrived never will: reads of it answer aStatus.
    void Fail(ezStreamingStatus aStatus);
    /// Calls the threshold callback.
    void Fire() { FireThreshold(); }
    /// Runs within a read that finds nothing, after it has looked and before it returns: the moment at which
    /// a wake-up could be lost.
    std::function<void()> mOnNothing;

    // ---- what it answers ----

    bool mfOpened = true;
    bool mfSizeKnown = true;
    bool mfOwnBuffer;
    bool mfCanLend;
    /// Every seek answers this, and moves nothing, unless it is NoError.
    ezStreamingStatus mSeekStatus = ezStreamingStatus_NoError;
    /// A seek after the end succeeds too, and finds the end.
    bool mfSeeksAnywhere = false;
    /// Set by Release, which destroys the stream.
    bool* mReleased = nullptr;

    /// What a read gives whatever has arrived.
    struct Outcome {
        ezStreamingStatus mStatus;
        std::size_t mCount;      ///< told as it stands; never more than was asked is written or lent
        bool mfNullData = false; ///< lends a null pointer
    };
    /// The next reads take these in order, then the stream is itself again.
    std::deque<Outcome> mOutcomes;

    // ---- what was asked of it ----

    /// The calls since the last time this was asked, without the questions for size, extension and URI.
    std::vector<std::string> TakeCalls();
    /// Where the stream stands.
    std::size_t GetPosition() const { return mPosition; }
    /// The record as CopyInfo found it.
    const std::string& GetRecordSeen() const { return mRecordSeen; }

    ezCString GetExtension() const override;
    ezCString GetURI() const override;
    void RegisterThresholdCallBack(ezStreamThresholdCallBack aCallBack, void* aUserData) override;
    void UnregisterThresholdCallBack(ezStreamThresholdCallBack aCallBack) override;
    ezuint64 GetSize() override;
    bool IsOpened() override;
    ezStreamingStatus Seek(const ezuint64& aPosition) override;
    ezStreamingStatus Read(void* aBuffer, std::size_t* aSize, int aFlag) override;
    ezStreamingStatus LendingRead(const void** aData, std::size_t* aSize, int aFlag) override;
    bool HasOwnBuffer() const override;
    bool CanLend(int anAccess) const override;
    /// Adds the MIME type "video/x-scripted".
    void CopyInfo(ezMediaInfo* anInfo) override;
    void Release() override;

private:
    /// What a read of aSize bytes gives.
    Outcome Look(std::size_t aSize);
    Outcome NextOutcome(std::size_t aSize);
    /// That many bytes where the stream stands.
    std::string BytesHere(std::size_t aCount) const;

    const std::string mContent;
    const std::string mURI;
    std::size_t mPosition = 0;
    std::string mRecordSeen;
    mutable std::vector<std::string> mCalls;
    std::vector<char> mLent; ///< of exactly what was lent, until the next call

    std::mutex mMutex;
    std::size_t mArrived;
    bool mfFinished = true;
    ezStreamingStatus mFailure = ezStreamingStatus_NoError;
};
