#pragma once

#include "ezBytes/ByteReader.h"

#include "ezThumbnails/detail/CoverLimits.h"

#include "ezPlatform/text/CString.h"

#include <cstdint>
#include <string_view>
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

/// The MIME type of a picture: by its first bytes, else what was stated for it, in whatever case, without its
/// "image/" too. Empty for what is neither a known picture nor stated as one, and for a link to one ("-->").
ezCString CoverMimeType(std::string_view aFirstBytes, const ezCString& aStated);

/// The picture of a rest of bytes: all that is left in aReader, which stays where it is. Not found when that
/// is nothing, too much, or no picture.
Cover CoverOfRest(const ByteReader& aReader, const ezCString& aStatedMimeType);

/// Which of a file's typed pictures is its cover: the first that is typed as front; else the first of another
/// type, but no file icon.
class CoverChoice {
public:
    /// The types that ID3v2 and FLAC share.
    static constexpr std::uint32_t kFileIcon = 1;
    static constexpr std::uint32_t kOtherFileIcon = 2;
    static constexpr std::uint32_t kFrontCover = 3;

    /// Not found, and icons, are ignored.
    void Offer(std::uint32_t aType, const Cover& aCover);
    /// True when nothing better can come.
    bool IsFinal() const { return mfFront; }
    const Cover& Get() const { return mCover; }

private:
    Cover mCover;
    bool mfFront = false;
};

/// What the block of a picture in FLAC, and in the comments of Ogg, says before the picture's data.
struct PictureBlock {
    std::uint32_t mType = 0;
    ezCString mMimeType;
    std::uint32_t mDataOffset = 0; ///< from the start of the block
    std::uint32_t mDataSize = 0;
};

/// Reads it, up to the picture's data. False when it does not end in aReader, or the data not within a block
/// of aBlockSize bytes.
bool ReadPictureBlock(ByteReader& aReader, std::uint64_t aBlockSize, PictureBlock* aBlock);
