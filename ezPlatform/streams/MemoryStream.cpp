#include "ezPlatform/streams/MemoryStream.h"

#include "ezPlatform/base/Memory.h"
#include "ezPlatform/files/PathName.h"
#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <cstring>

ezMemoryStream::ezMemoryStream(void* aBlock, std::size_t aSize, const ezCString& aMimeType)
    : mBlock(static_cast<const unsigned char*>(aBlock)),
      mSize(aBlock != nullptr ? aSize : 0),
      mMimeType(aMimeType) {}

ezMemoryStream::~ezMemoryStream() {
    ezFree(const_cast<unsigned char*>(mBlock));
}

ezCString ezMemoryStream::GetExtension() const {
    return ezPathName::MakeFilePath(mURI).GetExtension();
}

ezStreamingStatus ezMemoryStream::Seek(const ezuint64& aPosition) {
    if (aPosition > mSize) {
        return ezStreamingStatus_OutOfRange;
    }
    mPosition = static_cast<std::size_t>(aPosition.ToUInt64());
    return ezStreamingStatus_NoError;
}

ezStreamingStatus ezMemoryStream::LendingRead(const void** aData, std::size_t* aSize, int /*aFlag*/) {
    const std::size_t asked = *aSize;
    *aSize = std::min(asked, mSize - mPosition);
    *aData = mBlock != nullptr ? mBlock + mPosition : nullptr;
    return *aSize == asked ? ezStreamingStatus_NoError : ezStreamingStatus_EOS;
}

ezStreamingStatus ezMemoryStream::Read(void* aBuffer, std::size_t* aSize, int aFlag) {
    const void* data = nullptr;
    const ezStreamingStatus status = LendingRead(&data, aSize, aFlag);
    if (*aSize != 0) {
        std::memcpy(aBuffer, data, *aSize);
        mPosition += *aSize;
    }
    return status;
}

void ezMemoryStream::CopyInfo(ezMediaInfo* anInfo) {
    anInfo->Set(kezInfo_MimeType, mMimeType, false);
}
