#include "ez/ThumbnailProvider.h"

#include "ezPlatform/base/Assert.h"
#include "ezPlatform/base/Memory.h"
#include "ezPlatform/files/File.h"
#include "ezPlatform/streams/FileStream.h"
#include "ezPlatform/streams/MemoryStream.h"
#include "ezPlatform/text/Base64.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <memory>

namespace {

struct BlockFreer {
    void operator()(void* aBlock) const { ezFree(aBlock); }
};
using Block = std::unique_ptr<void, BlockFreer>;

/// A file object on a path, opened where it can be.
std::unique_ptr<ezFile> OpenedFile(const ezCString& aPath) {
    std::unique_ptr<ezFile> file = std::make_unique<ezFile>(aPath, ezFileOpenMode_Read);
    file->Open();
    return file;
}

} // namespace

ezThumbnailSource::~ezThumbnailSource() = default;
ezThumbnailGenerator::~ezThumbnailGenerator() = default;
ezThumbnailProvider::~ezThumbnailProvider() = default;

ezFileThumbnailSource::ezFileThumbnailSource(const ThumbnailInfo* anInfo)
    : ezThumbnailSource(anInfo != nullptr ? anInfo->mMimeType : ezCString()),
      mFilePath(anInfo != nullptr ? anInfo->mFilePath : ezPathName()) {}

ezFileThumbnailSource::~ezFileThumbnailSource() = default;

bool ezFileThumbnailSource::Exists() const {
    return mFilePath.FileExists();
}

ezStream* ezFileThumbnailSource::GetStream() const {
    const ezCString path = GetFullPath();
    // Opened or not: the stream tells.
    return ezFileGetStream(OpenedFile(path).release(), GetMimeType(), path);
}

void ezFileThumbnailSource::SetFileName(const ezCString& aFileName) {
    const ezCString& path = mFilePath.GetFullPath();
    const std::size_t folder = path.GetLength() - mFilePath.GetFullName().GetLength();
    mFilePath = ezPathName::MakeFilePath(path.Left(folder) + aFileName);
}

void ezFileThumbnailSource::SetExtension(const ezCString& anExtension) {
    const ezCString base = mFilePath.GetFileName();
    SetFileName(anExtension.IsEmpty() ? base : base + "." + anExtension);
}

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
    std::unique_ptr<ezFile> file = OpenedFile(path);
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
    const Block text(ezMalloc(size + 1));
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
    Block decoded(ezMalloc(theExpectedDecodedSize));
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

ezPictureThumbnailProvider::~ezPictureThumbnailProvider() = default;

uint32 ezPictureThumbnailProvider::GetPossibleThumbnailFor(const ThumbnailInfo* anInfo) {
    return mThumbnailGenerator != nullptr && anInfo != nullptr
               ? mThumbnailGenerator->CanConvert(anInfo->mMimeType)
               : kNoThumbnailID;
}

bool ezPictureThumbnailProvider::BuildThumbnail(const ThumbnailInfo* anInfo, ezFile* aFile) {
    if (mThumbnailGenerator == nullptr || anInfo == nullptr || aFile == nullptr) {
        return false;
    }
    const ezFileThumbnailSource source(anInfo);
    return mThumbnailGenerator->BuildThumbnail(anInfo, &source, aFile);
}

ezIndirectThumbnailProvider::~ezIndirectThumbnailProvider() {
    delete mTrySource;
}

void ezIndirectThumbnailProvider::EndTries() {
    delete mTrySource;
    mTrySource = nullptr;
}

// Neither of the two loops ends the tries: what succeeded stays until the next first path.

uint32 ezIndirectThumbnailProvider::GetPossibleThumbnailFor(const ThumbnailInfo* anInfo) {
    if (mThumbnailGenerator == nullptr || anInfo == nullptr) {
        return 0;
    }
    for (GetFirstPath(anInfo); SourceToTry(); GetNextPath(anInfo)) {
        if (!mTrySource->Exists()) {
            continue;
        }
        // Any format will do here; building asks for all that are wanted.
        const uint32 possible = mThumbnailGenerator->CanConvert(mTrySource->GetMimeType());
        if (possible != 0) {
            return possible;
        }
    }
    return 0;
}

bool ezIndirectThumbnailProvider::BuildThumbnail(const ThumbnailInfo* anInfo, ezFile* aFile) {
    if (mThumbnailGenerator == nullptr || anInfo == nullptr || aFile == nullptr) {
        return false;
    }
    const uint32 wanted = anInfo->mThumbnailID;
    for (GetFirstPath(anInfo); SourceToTry(); GetNextPath(anInfo)) {
        // All wanted formats, where the question of what is possible takes any.
        if (!mTrySource->Exists() ||
            (mThumbnailGenerator->CanConvert(mTrySource->GetMimeType()) & wanted) != wanted) {
            continue;
        }
        if (!aFile->Empty()) {
            aFile->Close(); // or the next provider would stand for this one from then on
            return false;
        }
        if (mThumbnailGenerator->BuildThumbnail(anInfo, mTrySource, aFile)) {
            return true;
        }
    }
    return false;
}
