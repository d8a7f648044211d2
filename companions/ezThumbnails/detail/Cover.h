#pragma once

#include "ezBytes/ByteReader.h"
#include "ezBytes/PictureBlock.h"

#include "ezThumbnails/detail/CoverLimits.h"

#include "ezPlatform/text/CString.h"

#include <cstdint>
#include <vector>

/// Where a file holds a picture, and how.
struct Cover {
    ezCString mMimeType;              ///< empty: there is no picture
    std::vector<BytePiece> mPieces;   ///< never empty for a picture; within the file
    bool mfUnsynchronised = false;    ///< the zero after a 0xFF is no data: unsynchronisation of ID3v2
    bool mfBase64 = false;            ///< the pieces together are base64 text
    bool mfDeflated = false;          ///< the pieces together, without stuffing, are zlib data
    std::uint32_t mMaxInflated = 0;   ///< bytes that those inflate to at most
    std::uint32_t mEncodedOffset = 0; ///< where the picture begins in what it decodes, or inflates, to

    bool IsFound() const { return !mMimeType.IsEmpty(); }
    /// True when ezFilePartThumbnailSource can read it: one piece, without stuffing, not deflated.
    bool IsFilePart() const { return mPieces.size() == 1 && !mfUnsynchronised && !mfDeflated; }
};

/// The picture of a rest of bytes: all that is left in aReader, which stays where it is. Not found when that
/// is nothing, too much, or no picture.
Cover CoverOfRest(const ByteReader& aReader, const ezCString& aStatedMimeType);

/// The cover of an ID3v2 tag that stands at the start of what a reader has left; not found where no tag does.
Cover CoverOfID3(ByteReader aReader);

/// The cover of a file with typed pictures.
class CoverChoice {
public:
    /// Not found, and icons, are ignored.
    void Offer(std::uint32_t aType, const Cover& aCover);
    /// True when nothing better can come.
    bool IsFinal() const { return mChoice.IsFinal(); }
    const Cover& Get() const { return mCover; }

private:
    Cover mCover;
    PictureChoice mChoice;
};
