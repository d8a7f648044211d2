#pragma once

#include "ezBytes/ByteReader.h"

#include "ezPlatform/text/CString.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// Pictures that tags of songs hold, and which of them is the cover.

/// Bytes that tell every picture that PictureMimeType knows.
inline constexpr std::size_t kPictureSignature_Size = 12;

/// The first of them of a picture, which is all that aReader has left; empty where they cannot be read.
std::string ReadPictureSignature(ByteReader aReader);

/// The MIME type of a picture: by its first bytes, else what was stated for it, in whatever case, without its
/// "image/" too. Empty for what is neither a known picture nor stated as one, and for a link to one ("-->").
ezCString PictureMimeType(std::string_view aFirstBytes, const ezCString& aStated);

/// The types of pictures that ID3v2 and FLAC share (ID3v2.4.0 frames, 4.14; RFC 9639, 8.8), and ASF and APE
/// after them, as far as they decide.
inline constexpr std::uint32_t kPictureType_FileIcon = 1;
inline constexpr std::uint32_t kPictureType_OtherFileIcon = 2;
inline constexpr std::uint32_t kPictureType_FrontCover = 3;

/// Which of a file's typed pictures is its cover: the first that is typed as front; else the first of another
/// type, but no file icon.
class PictureChoice {
public:
    /// True for a picture that is the cover as far as is known now: whoever asks takes it.
    bool Takes(std::uint32_t aType);
    /// True when nothing better can come.
    bool IsFinal() const { return mfFront; }

private:
    bool mfAny = false;
    bool mfFront = false;
};

/// What the block of a picture in FLAC, and in the comments of Ogg, says before the picture's data.
struct PictureBlock {
    std::uint32_t mType = 0;
    ezCString mMimeType;
    std::uint32_t mDataOffset = 0; ///< from the start of the block
    std::uint32_t mDataSize = 0;
};

/// Reads it, up to the picture's data. False when it does not end in aReader, the data not within a block of
/// aBlockSize bytes, or the MIME type is of more than aMaxText bytes.
bool ReadPictureBlock(ByteReader& aReader, std::uint64_t aBlockSize, std::uint32_t aMaxText,
                      PictureBlock* aBlock);

/// What a Vorbis comment says of its picture, by its key: "METADATA_BLOCK_PICTURE", a block as FLAC has it in
/// base64; or, of an older form without a type, "COVERART", the picture alone. False for another key, and for
/// what holds no picture that PictureMimeType knows or its writer names. aText is the value.
/// @param aBlock  is of what the text decodes to; the MIME type is that of PictureMimeType
bool ReadPictureComment(std::string_view aKey, const ByteReader& aText, std::uint32_t aMaxText,
                        PictureBlock* aBlock);
