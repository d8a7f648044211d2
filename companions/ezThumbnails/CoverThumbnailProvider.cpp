#include "ezThumbnails/CoverThumbnailProvider.h"

#include "ezThumbnails/detail/CoverFinders.h"
#include "ezThumbnails/detail/GatheredCoverSource.h"
#include "ezThumbnails/detail/UnreadableSource.h"

#include "ezPlatform/files/File.h"
#include "ezPlatform/streams/FileStream.h"

#include <iterator>
#include <memory>

namespace {

/// The file, which notes that it could not be read.
class LookedThrough : public ezFileStream {
public:
    LookedThrough(ezFile* aFile, const ezCString& aPath, bool* afFailed)
        : ezFileStream(aFile, "", aPath), mfFailed(afFailed) {}

    ezStreamingStatus Read(void* aBuffer, std::size_t* aSize, int aFlag) override {
        const ezStreamingStatus status = ezFileStream::Read(aBuffer, aSize, aFlag);
        *mfFailed = *mfFailed || status == ezStreamingStatus_ReadError;
        return status;
    }

private:
    bool* mfFailed;
};

ezStreamOwner OpenedStream(const ezPathName& aPath, bool* afFailed) {
    auto file = std::make_unique<ezFile>(aPath.GetFullPath(), ezFileOpenMode_Read);
    if (!file->Open()) { // the stream tells
        *afFailed = *afFailed || aPath.FileExists();
    }
    return ezStreamOwner(new LookedThrough(file.release(), aPath.GetFullPath(), afFailed));
}

ezThumbnailSource* SourceOf(const Cover& aCover, const ezPathName& aPath) {
    if (!aCover.IsFilePart()) {
        return new GatheredCoverSource(aPath, aCover);
    }
    const BytePiece& piece = aCover.mPieces.front();
    return new ezFilePartThumbnailSource(aCover.mMimeType, aPath, static_cast<ezFileOffset>(piece.mOffset),
                                         static_cast<uint32>(piece.mSize), aCover.mfBase64,
                                         aCover.mEncodedOffset);
}

} // namespace

CoverThumbnailProvider::~CoverThumbnailProvider() = default;

void CoverThumbnailProvider::GetFirstPath(const ThumbnailInfo* anInfo) {
    mNextFinder = 0;
    mfFailed = false;
    GetNextPath(anInfo);
}

void CoverThumbnailProvider::GetNextPath(const ThumbnailInfo* anInfo) {
    EndTries();
    if (anInfo == nullptr) {
        return;
    }
    if (mNextFinder < std::size(kCoverFinders)) {
        Find(anInfo->mFilePath);
    }
    if (!SourceToTry() && mfFailed) {
        mfFailed = false; // there is one
        mTrySource = new UnreadableSource;
    }
}

void CoverThumbnailProvider::Find(const ezPathName& aPath) {
    const ezStreamOwner stream = OpenedStream(aPath, &mfFailed);
    while (mNextFinder < std::size(kCoverFinders)) {
        const Cover cover = kCoverFinders[mNextFinder++].mFind(*stream);
        if (cover.IsFound()) {
            mTrySource = SourceOf(cover, aPath);
            return;
        }
    }
}
