#include "ezThumbnails/CoverThumbnailProvider.h"

#include "ezThumbnails/detail/CoverFinders.h"
#include "ezThumbnails/detail/GatheredCoverSource.h"

#include "ezPlatform/files/File.h"
#include "ezPlatform/streams/FileStream.h"

#include <iterator>
#include <memory>

namespace {

/// FLAC comes before the tag that may stand before it, which others put there.
constexpr Cover (*kFinders[])(ezStream&) = {FindFLACCover, FindID3Cover, FindMP4Cover, FindOggCover};

ezStreamOwner OpenedStream(const ezCString& aPath) {
    auto file = std::make_unique<ezFile>(aPath, ezFileOpenMode_Read);
    file->Open(); // or not: the stream tells
    return ezStreamOwner(ezFileGetStream(file.release(), "", aPath));
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
    GetNextPath(anInfo);
}

void CoverThumbnailProvider::GetNextPath(const ThumbnailInfo* anInfo) {
    EndTries();
    if (mNextFinder == std::size(kFinders)) {
        return;
    }
    const ezStreamOwner stream = OpenedStream(anInfo->mFilePath.GetFullPath());
    while (mNextFinder < std::size(kFinders)) {
        const Cover cover = kFinders[mNextFinder++](*stream);
        if (cover.IsFound()) {
            mTrySource = SourceOf(cover, anInfo->mFilePath);
            return;
        }
    }
}
