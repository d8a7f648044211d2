#include "ezPlatform/streams/FileStream.h"

#include "ezPlatform/files/PathName.h"
#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <climits>

namespace {

/// Bytes of a part that the file holds.
std::uint64_t ClippedSize(const ezFile* aFile, std::uint64_t anOffset, std::uint64_t aSize) {
    const ezFileOffset length = aFile != nullptr ? aFile->LengthAtOpen() : -1;
    if (length < 0 || static_cast<std::uint64_t>(length) < anOffset) {
        return 0;
    }
    return std::min(aSize, static_cast<std::uint64_t>(length) - anOffset);
}

/// Reads aSize bytes where the file stands. False where one cannot be had.
bool ReadWhole(ezFile& aFile, void* aBuffer, std::size_t aSize) {
    char* to = static_cast<char*>(aBuffer);
    while (aSize > 0) {
        const std::size_t piece = std::min<std::size_t>(aSize, INT_MAX);
        const int count = aFile.Read(to, piece);
        if (count < 0 || static_cast<std::size_t>(count) < piece) {
            return false; // an error, or a file that was cut since it was opened
        }
        to += piece;
        aSize -= piece;
    }
    return true;
}

} // namespace

ezFilePartStream::ezFilePartStream(ezFile* aFile, const ezCString& aMimeType, const ezCString& aPath,
                                   const ezuint64& anOffset, const ezuint64& aSize)
    : mFile(aFile),
      mMimeType(aMimeType),
      mPath(aPath),
      mOffset(anOffset.ToUInt64()),
      mSize(ClippedSize(aFile, mOffset, aSize.ToUInt64())) {}

ezFilePartStream::~ezFilePartStream() = default;

ezCString ezFilePartStream::GetExtension() const {
    return ezPathName::MakeFilePath(mPath).GetExtension();
}

bool ezFilePartStream::IsOpened() {
    return mFile != nullptr && mFile->IsOpened();
}

ezStreamingStatus ezFilePartStream::Seek(const ezuint64& aPosition) {
    if (!IsOpened()) {
        return ezStreamingStatus_InvalidState;
    }
    if (aPosition > mSize) {
        return ezStreamingStatus_OutOfRange;
    }
    mPosition = aPosition.ToUInt64();
    return ezStreamingStatus_NoError;
}

ezStreamingStatus ezFilePartStream::Read(void* aBuffer, std::size_t* aSize, int /*aFlag*/) {
    const std::size_t asked = *aSize;
    *aSize = 0;
    if (!IsOpened()) {
        return ezStreamingStatus_InvalidState;
    }
    const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(asked, mSize - mPosition));
    const ezuint64 position = mOffset + mPosition; // within the file's length: no sum that could wrap
    if (count != 0 && (mFile->Seek(position.ToFileOffset(), ezFileSeekMode_Begin) == -1 ||
                       !ReadWhole(*mFile, aBuffer, count))) {
        return ezStreamingStatus_ReadError;
    }
    mPosition += count;
    *aSize = count;
    return count == asked ? ezStreamingStatus_NoError : ezStreamingStatus_EOS;
}

void ezFilePartStream::CopyInfo(ezMediaInfo* anInfo) {
    anInfo->Set(kezInfo_MimeType, mMimeType, false);
}

ezFileStream::ezFileStream(ezFile* aFile, const ezCString& aMimeType, const ezCString& aPath)
    : ezFilePartStream(aFile, aMimeType, aPath, 0, UINT64_MAX) {}

ezStream* ezFileGetStream(ezFile* aFile, const ezCString& aMimeType, const ezCString& aPath) {
    return new ezFileStream(aFile, aMimeType, aPath);
}

ezStream* ezFilePartGetStream(ezFile* aFile, const ezCString& aMimeType, const ezCString& aPath,
                              const ezuint64& anOffset, const ezuint64& aSize) {
    return new ezFilePartStream(aFile, aMimeType, aPath, anOffset, aSize);
}
