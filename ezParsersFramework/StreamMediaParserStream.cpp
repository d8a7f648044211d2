#include "ez/StreamMediaParserStream.h"

#include "ezPlatform/base/Checked.h"
#include "ezPlatform/base/KnownSize.h"
#include "ezPlatform/streams/Stream.h"

#include <algorithm>
#include <cstring>
#include <optional>

void sStreamThresholdCallBack(void* aUserData) {
    static_cast<ezStreamMediaParserStream*>(aUserData)->ThresholdReached();
}

ezStreamMediaParserStream::ezStreamMediaParserStream(ezStream* aStream, bool afOwnStream)
    : mStream(aStream), mfOwnStream(afOwnStream) {
    if (mStream != nullptr) {
        SetExtension(mStream->GetExtension());
        SetFullPath(mStream->GetURI());
        Register();
    }
}

ezStreamMediaParserStream::~ezStreamMediaParserStream() {
    ezStreamMediaParserStream::Close();
}

void ezStreamMediaParserStream::Register() {
    mStream->RegisterThresholdCallBack(sStreamThresholdCallBack, this);
    mfRegistered = true;
}

void ezStreamMediaParserStream::Unregister() {
    // Once: after Close the stream may be gone, or another adapter's.
    if (mfRegistered) {
        mStream->UnregisterThresholdCallBack(sStreamThresholdCallBack);
        mfRegistered = false;
    }
}

void ezStreamMediaParserStream::ThresholdReached() {
    mCondition.Signal();
}

void ezStreamMediaParserStream::ReadOneByteAndReturn() {
    const ezuint64 position = Tell();
    char byte = 0;
    Read(1, &byte);
    Seek(position, SeekFromStart, false);
}

bool ezStreamMediaParserStream::Open() {
    if (mStream == nullptr) {
        return false;
    }
    if (!mfRegistered) {
        Register();
        mStreamPos = UINT64_MAX; // since Close anybody may have moved the stream
    }
    if (IsToBeBuffered(EndOfRead(1))) {
        mSeekPos = 0; // what the read below fetches is kept as the start of the media
    }
    ReadOneByteAndReturn();
    mMediaSize = mStream->GetSize();
    mSeekPos = 0;
    StreamSeek(); // refused, the stream stays where it really stands, and reads from 0 fail
    return mStream->IsOpened();
}

void ezStreamMediaParserStream::Close() {
    if (mStream == nullptr) {
        return;
    }
    Unregister();
    if (mfOwnStream) {
        mStream->Release();
        mStream = nullptr;
    }
}

void ezStreamMediaParserStream::CopyInfo(ezMediaInfo* anInfo) {
    if (anInfo == nullptr) {
        return;
    }
    if (mStream != nullptr) {
        ReadOneByteAndReturn(); // the stream has started then, and knows what it can tell
    }
    ezMediaParserStream::CopyInfo(anInfo);
    if (mStream != nullptr) {
        mStream->CopyInfo(anInfo);
    }
}

bool ezStreamMediaParserStream::StreamSeek() {
    if (mStream == nullptr) {
        return false;
    }
    if (mStreamPos == mSeekPos) {
        return true;
    }
    if (mStream->Seek(mSeekPos) != ezStreamingStatus_NoError) {
        return false;
    }
    mStreamPos = mSeekPos;
    return true;
}

bool ezStreamMediaParserStream::MediaSeek(const ezuint64& anOffset, bool afSeekImmediate) {
    if (mStream == nullptr) {
        return false;
    }
    mSeekPos = anOffset; // kept also when the seek is refused below
    if (afSeekImmediate) {
        return StreamSeek();
    }
    const std::optional<std::uint64_t> size = ezKnownSize(mMediaSize);
    return !size || mSeekPos <= *size; // unlike a file, where a size of 0 refuses
}

bool ezStreamMediaParserStream::IsLending() const {
    return mStream->HasOwnBuffer() && mStream->CanLend(ezStreamAccess_Read + ezStreamAccess_Seek);
}

bool ezStreamMediaParserStream::WaitForData() {
    if (!mfRegistered) {
        return false;
    }
    mCondition.Wait();
    return true;
}

ezFileOffset ezStreamMediaParserStream::BorrowingRead(void* aBuffer, std::size_t aSize) {
    const void* data = nullptr;
    std::size_t count = 0;
    ezStreamingStatus status = ezStreamingStatus_NoError;
    do {
        count = aSize;
        status = mStream->LendingRead(&data, &count, ezStreamReadFlag_Whole);
    } while (status == ezStreamingStatus_NoError && count == 0 && WaitForData());

    const bool fBorrowed = status == ezStreamingStatus_NoError || status == ezStreamingStatus_EOS;
    count = std::min(count, aSize);
    if (!fBorrowed || (count != 0 && data == nullptr)) {
        mSeekPos -= 1; // an error moves back by one, around 0 too
        return -1;
    }
    if (count != 0) {
        std::memcpy(aBuffer, data, count);
        // Not mStreamPos: lending moved nothing, and the next read puts the stream there.
        mSeekPos = ezSaturating_Add64(mSeekPos.ToUInt64(), count);
    }
    return static_cast<ezFileOffset>(count);
}

ezFileOffset ezStreamMediaParserStream::CopyingRead(void* aBuffer, std::size_t aSize) {
    std::size_t count = 0;
    ezStreamingStatus status = ezStreamingStatus_NoError;
    do {
        count = aSize;
        status = mStream->Read(aBuffer, &count, ezStreamReadFlag_Whole);
    } while (status == ezStreamingStatus_NoError && count == 0 && WaitForData());

    count = std::min(count, aSize);
    if (status == ezStreamingStatus_NoError || status == ezStreamingStatus_EOS) {
        mStreamPos = ezSaturating_Add64(mStreamPos.ToUInt64(), count);
    }
    mSeekPos = mStreamPos;
    return static_cast<ezFileOffset>(count); // whatever the status: by contract 0 for an error
}

ezFileOffset ezStreamMediaParserStream::MediaRead(void* aBuffer, std::size_t aSize) {
    if (!StreamSeek() || aSize == 0) {
        return 0;
    }
    const ezFileOffset count = IsLending() ? BorrowingRead(aBuffer, aSize) : CopyingRead(aBuffer, aSize);
    if (!ezKnownSize(mMediaSize)) {
        mMediaSize = mStream->GetSize();
    }
    return count;
}
