#include "ez/FilePartThumbnailSource.h"

#include "ezPlatform/base/Assert.h"
#include "ezPlatform/base/Owned.h"
#include "ezPlatform/files/File.h"
#include "ezPlatform/streams/FileStream.h"
#include "ezPlatform/streams/MemoryStream.h"
#include "ezPlatform/text/Base64.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <memory>

ezFilePartThumbnailSource::ezFilePartThumbnailSource(const ezCString& aMimeType, const ezPathName& aFilePath,
                                                     ezFileOffset aStartOffset, uint32 aSize, bool afBase64,
                                                     uint32 anEncodedOffset)
    : ezThumbnailSource(aMimeType),
      mFilePath(aFilePath),
      mStartOffset(aStartOffset),
      mSize(aSize),
      mfBase64(afBase64),
      mEncodedOffset(anEncodedOffset) {}

ezFilePartThumbnailSource::~ezFilePartThumbnailSource() = default;

bool ezFilePartThumbnailSource::Exists() const {
    return mFilePath.FileExists();
}

ezStream* ezFilePartThumbnailSource::GetStream() const {
    const ezCString& path = mFilePath.GetFullPath();
    auto file = std::make_unique<ezFile>(path, ezFileOpenMode_Read);
    file->Open();
    // An offset computed from what a stranger wrote may be anything; below 0 there is no data.
    if (!file->IsOpened() || mStartOffset < 0) {
        return nullptr;
    }
    if (mfBase64) {
        return GetDecodedStream(*file);
    }
    return ezFilePartGetStream(file.release(), GetMimeType(), path, mStartOffset, mSize);
}

ezStream* ezFilePartThumbnailSource::GetDecodedStream(ezFile& aFile) const {
    if (aFile.Seek(mStartOffset, ezFileSeekMode_Begin) != mStartOffset) {
        return nullptr;
    }
    // Never more memory than the file is long, nor than one read gives; the sums below then fit 32 bits.
    const ezFileOffset inFile = std::max<ezFileOffset>(aFile.LengthAtOpen() - mStartOffset, 0);
    const auto size = static_cast<std::size_t>(std::min<ezFileOffset>({inFile, mSize, INT_MAX}));
    const ezFreed<void> text(ezMalloc(size + 1));
    if (text == nullptr) {
        return nullptr;
    }
    char* const characters = static_cast<char*>(text.get());
    std::memset(characters, 0, size + 1); // a file that was cut since it was opened leaves a rest
    const int count = aFile.Read(characters, size);
    return count > 0 ? Decode(characters, static_cast<std::size_t>(count)) : nullptr;
}

ezStream* ezFilePartThumbnailSource::Decode(const char* aText, std::size_t aCount) const {
    const std::size_t theExpectedDecodedSize = (aCount + 3) / 4 * 3 + 1;
    ezFreed<void> decoded(ezMalloc(theExpectedDecodedSize));
    if (decoded == nullptr) {
        return nullptr;
    }
    const std::size_t theRealDecodedSize = ezBase64_Decode(aText, decoded.get(), theExpectedDecodedSize);
    if (!ezAssert(theRealDecodedSize <= theExpectedDecodedSize,
                  "theRealDecodedSize <= theExpectedDecodedSize", "ThumbnailProvider") ||
        mEncodedOffset > theRealDecodedSize) {
        return nullptr;
    }
    const std::size_t size = theRealDecodedSize - mEncodedOffset;
    std::memmove(decoded.get(), static_cast<const char*>(decoded.get()) + mEncodedOffset, size);
    return new ezMemoryStream(decoded.release(), size, GetMimeType());
}
