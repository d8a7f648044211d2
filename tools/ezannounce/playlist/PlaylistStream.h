#pragma once

#include "ezPlatform/streams/Stream.h"

#include <utility>

/// A stream that remembers whether a read of it failed: a reader of playlists takes a failure for the end.
class PlaylistStream : public ezStream {
public:
    explicit PlaylistStream(ezStreamOwner aStream) : mStream(std::move(aStream)) {}

    bool HasFailed() const { return mfFailed; }

    ezCString GetExtension() const override { return mStream->GetExtension(); }
    ezCString GetURI() const override { return mStream->GetURI(); }
    void RegisterThresholdCallBack(ezStreamThresholdCallBack aCallBack, void* aUserData) override {
        mStream->RegisterThresholdCallBack(aCallBack, aUserData);
    }
    void UnregisterThresholdCallBack(ezStreamThresholdCallBack aCallBack) override {
        mStream->UnregisterThresholdCallBack(aCallBack);
    }
    ezuint64 GetSize() override { return mStream->GetSize(); }
    bool IsOpened() override { return mStream->IsOpened(); }
    ezStreamingStatus Seek(const ezuint64& aPosition) override { return mStream->Seek(aPosition); }
    ezStreamingStatus Read(void* aBuffer, std::size_t* aSize, int aFlag) override {
        return Noted(mStream->Read(aBuffer, aSize, aFlag));
    }
    ezStreamingStatus LendingRead(const void** aData, std::size_t* aSize, int aFlag) override {
        return Noted(mStream->LendingRead(aData, aSize, aFlag));
    }
    bool HasOwnBuffer() const override { return mStream->HasOwnBuffer(); }
    bool CanLend(int anAccess) const override { return mStream->CanLend(anAccess); }
    void CopyInfo(ezMediaInfo* anInfo) override { mStream->CopyInfo(anInfo); }

protected:
    ~PlaylistStream() override = default;

private:
    ezStreamingStatus Noted(ezStreamingStatus aStatus) {
        // A stream that lends nothing says so without having read.
        const bool fFine = aStatus == ezStreamingStatus_NoError || aStatus == ezStreamingStatus_EOS ||
                           aStatus == ezStreamingStatus_NotSupported;
        mfFailed = mfFailed || !fFine;
        return aStatus;
    }

    ezStreamOwner mStream;
    bool mfFailed = false;
};
