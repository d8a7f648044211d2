#include "ez/MediaParserStream.h"

#include "ezPlatform/base/Assert.h"
#include "ezPlatform/base/Checked.h"
#include "ezPlatform/base/KnownSize.h"
#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <cstring>
#include <optional>

ezMediaParserStream::~ezMediaParserStream() = default;

bool ezMediaParserStream::Open() {
    return true;
}

void ezMediaParserStream::Close() {}

std::unique_ptr<ezMediaParserStream> ezMediaParserStream::OpenBeside(const ezCString& /*aName*/) {
    return nullptr;
}

void ezMediaParserStream::CopyInfo(ezMediaInfo* anInfo) {
    if (anInfo == nullptr) {
        return;
    }
    anInfo->mLastModificationTime = mLastModificationTime;
    anInfo->mFullPath = mMediaFullPath;
    if (ezKnownSize(mMediaSize) && !ezKnownSize(anInfo->GetUInt64(kezInfo_FileSize, 0))) {
        anInfo->Set(kezInfo_FileSize, mMediaSize, true);
    }
    if (!mMediaExtension.IsEmpty()) {
        anInfo->Set(kezInfo_FileExtension, mMediaExtension.Lower(), false);
    }
}

bool ezMediaParserStream::MediaSeek(const ezuint64& /*anOffset*/, bool /*afSeekImmediate*/) {
    return false;
}

ezFileOffset ezMediaParserStream::MediaRead(void* /*aBuffer*/, size_t /*aSize*/) {
    return -1;
}

std::uint64_t ezMediaParserStream::EndOfRead(std::size_t aSize) const {
    std::uint64_t end = 0;
    return ezChecked_Add(mMediaPos.ToUInt64(), aSize, &end) ? end : UINT64_MAX;
}

std::uint64_t ezMediaParserStream::BufferedEnd() const {
    return static_cast<std::uint64_t>(mBufferLength);
}

bool ezMediaParserStream::IsBuffered(std::uint64_t anEnd) const {
    return mfBufferFilled && anEnd <= BufferedEnd();
}

bool ezMediaParserStream::IsToBeBuffered(std::uint64_t anEnd) const {
    return !mfBufferFilled && anEnd <= kezMediaParserStreamBufferSize;
}

bool ezMediaParserStream::FillBuffer() {
    // Filled from wherever the source stands, without a seek: the first read of a stream is made at its
    // start.
    mfBufferFilled = true;
    const ezFileOffset count = MediaRead(mBuffer, kezMediaParserStreamBufferSize);
    mBufferLength = std::clamp<ezFileOffset>(count, 0, kezMediaParserStreamBufferSize);
    return count >= 0;
}

void ezMediaParserStream::TakeFromBuffer(std::size_t aSize, void* aBuffer) {
    if (aSize != 0) {
        std::memcpy(aBuffer, mBuffer + mMediaPos.ToUInt64(), aSize);
    }
    mMediaPos += aSize;
    MediaSeek(mMediaPos, false);
}

ezFileOffset ezMediaParserStream::ReadDirectly(std::size_t aSize, void* aBuffer) {
    const ezFileOffset count = MediaRead(aBuffer, aSize);
    if (count < 0) {
        return -1;
    }
    // A source that claims more than it was asked for moves the position by what can be true.
    const std::uint64_t taken = std::min<std::uint64_t>(static_cast<std::uint64_t>(count), aSize);
    std::uint64_t position = 0;
    if (!ezChecked_Add(mMediaPos.ToUInt64(), taken, &position)) {
        return -1;
    }
    mMediaPos = position;
    return count;
}

bool ezMediaParserStream::Read(size_t aSize, void* aBuffer) {
    if (aSize == 0) {
        return true;
    }
    const std::uint64_t end = EndOfRead(aSize);
    // Strictly within, unlike the up-to read: an exact read that ends where the buffer ends goes to the
    // source.
    if (IsBuffered(end) && end < BufferedEnd()) {
        TakeFromBuffer(aSize, aBuffer);
        return true;
    }
    if (IsToBeBuffered(end)) {
        FillBuffer();
        if (end > BufferedEnd()) {
            mMediaPos = mBufferLength; // a short fill moves the position to the end of the data that exists
            MediaSeek(mMediaPos, false);
            return false;
        }
        TakeFromBuffer(aSize, aBuffer);
        return true;
    }
    const ezFileOffset count = ReadDirectly(aSize, aBuffer);
    return count >= 0 && static_cast<std::uint64_t>(count) == aSize;
}

bool ezMediaParserStream::Read(size_t* aSize, void* aBuffer) {
    if (!ezAssert(aSize != nullptr, "aSize != NULL", "MediaParserStream")) {
        return false;
    }
    if (*aSize == 0) {
        return true;
    }
    const std::uint64_t end = EndOfRead(*aSize);
    if (IsBuffered(end)) {
        TakeFromBuffer(*aSize, aBuffer);
        return true;
    }
    if (IsToBeBuffered(end)) {
        if (!FillBuffer()) {
            return false;
        }
        if (end > BufferedEnd()) {
            const std::uint64_t position = mMediaPos.ToUInt64();
            *aSize = position < BufferedEnd() ? static_cast<std::size_t>(BufferedEnd() - position) : 0;
        }
        TakeFromBuffer(*aSize, aBuffer);
        return true;
    }
    const ezFileOffset count = ReadDirectly(*aSize, aBuffer);
    if (count < 0) {
        return false;
    }
    *aSize = static_cast<std::size_t>(std::min<std::uint64_t>(static_cast<std::uint64_t>(count), *aSize));
    return true;
}

bool ezMediaParserStream::ReadFrom(ezuint64 aPos, size_t aSize, char* aBuffer) {
    return Seek(aPos, SeekFromStart, false) && Read(aSize, aBuffer);
}

bool ezMediaParserStream::ReadFrom(ezuint64 aPos, size_t* aSize, char* aBuffer) {
    return Seek(aPos, SeekFromStart, false) && Read(aSize, aBuffer);
}

bool ezMediaParserStream::ReadFromEnd(size_t aSize, char* aBuffer) {
    const std::optional<std::uint64_t> size = ezKnownSize(mMediaSize);
    return size && *size >= aSize && ReadFrom(*size - aSize, aSize, aBuffer);
}

bool ezMediaParserStream::ReadFromEnd(size_t* aSize, char* aBuffer) {
    const std::optional<std::uint64_t> size = ezKnownSize(mMediaSize);
    if (!ezAssert(aSize != nullptr, "aSize != NULL", "MediaParserStream") || !size) {
        return false;
    }
    std::size_t count = static_cast<std::size_t>(std::min<std::uint64_t>(*aSize, *size));
    if (!ReadFrom(*size - count, &count, aBuffer)) {
        return false;
    }
    *aSize = count;
    return true;
}

bool ezMediaParserStream::Seek(ezuint64 anOffset, int aSeekMode, bool afSeekImmediate) {
    if (!ezAssert((aSeekMode == SeekFromCurrent) || (aSeekMode == SeekFromStart),
                  "(aSeekMode == SeekFromCurrent) || (aSeekMode == SeekFromStart)", "MediaParserStream")) {
        return false;
    }
    std::uint64_t target = anOffset.ToUInt64();
    if (aSeekMode == SeekFromCurrent && !ezChecked_Add(target, mMediaPos.ToUInt64(), &target)) {
        return false;
    }
    if (!MediaSeek(target, afSeekImmediate)) {
        return false;
    }
    mMediaPos = target;
    return true;
}
