#pragma once

#include <cstddef>
#include <cstdint>

/// @name Start codes of MPEG video (ISO/IEC 11172-2; ISO/IEC 13818-2, table 6-1)
/// @{
inline constexpr std::uint8_t kMPEGVideo_Picture = 0x00;
inline constexpr std::uint8_t kMPEGVideo_FirstSlice = 0x01;
inline constexpr std::uint8_t kMPEGVideo_LastSlice = 0xAF;
inline constexpr std::uint8_t kMPEGVideo_UserData = 0xB2;
inline constexpr std::uint8_t kMPEGVideo_Sequence = 0xB3;
inline constexpr std::uint8_t kMPEGVideo_Extension = 0xB5;
inline constexpr std::uint8_t kMPEGVideo_Group = 0xB8;
/// @}

/// @name extension_start_code_identifier, the first four bits of an extension
/// @{
inline constexpr std::uint8_t kMPEGVideo_SequenceExtension = 1;
inline constexpr std::uint8_t kMPEGVideo_PictureCodingExtension = 8;
/// @}

/// @name The least bytes of a unit after its code
/// @{
inline constexpr std::uint32_t kMPEGVideo_MinSequenceSize = 8;
inline constexpr std::uint32_t kMPEGVideo_MinPictureSize = 4;
/// @}

/// What sequence header and sequence extension tell together.
struct ezMPEGSequence {
    std::uint32_t mWidth = 0;       ///< pixels
    std::uint32_t mHeight = 0;      ///< pixels
    std::uint32_t mAspectRatio = 0; ///< aspect_ratio_information
    std::uint64_t mBitRate = 0;     ///< bits a second
    bool mfVariableBitRate = false; ///< the header says that the rate is not told
};

// Each takes the bytes of a unit after its code. Zeros may follow the content; false for anything else that
// the format does not allow.

bool ezMPEGSequence_ReadHeader(const unsigned char* aBytes, std::size_t aSize, ezMPEGSequence& aSequence);

/// Completes what the header told. aBytes begin with the identifier.
bool ezMPEGSequence_ReadExtension(const unsigned char* aBytes, std::size_t aSize, ezMPEGSequence& aSequence);

bool ezMPEGGroup_Read(const unsigned char* aBytes, std::size_t aSize);

struct ezMPEGPicture {
    bool mfVariableBitRate; ///< vbv_delay is not told, as where the rate varies
};

bool ezMPEGPicture_ReadHeader(const unsigned char* aBytes, std::size_t aSize, bool afMPEG2,
                              ezMPEGPicture& aPicture);

/// aBytes begin with the identifier.
bool ezMPEGPicture_ReadCodingExtension(const unsigned char* aBytes, std::size_t aSize);
