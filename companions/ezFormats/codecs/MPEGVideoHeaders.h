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
inline constexpr std::uint8_t kMPEGVideo_SequenceDisplayExtension = 2;
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
    std::uint32_t mFrameRate = 0;   ///< frame_rate_code
    std::uint64_t mBitRate = 0;     ///< bits a second
    bool mfVariableBitRate = false; ///< the header says that the rate is not told
    // Of the extension alone
    std::uint32_t mProfileAndLevel = 0;     ///< profile_and_level_indication; 0: there is no extension
    bool mfProgressive = false;             ///< progressive_sequence
    std::uint32_t mChroma = 0;              ///< chroma_format
    std::uint32_t mFrameRateMultiplier = 1; ///< frame_rate_extension_n and 1
    std::uint32_t mFrameRateDivisor = 1;    ///< frame_rate_extension_d and 1
};

// Each takes the bytes of a unit after its code. Zeros may follow the content; false for anything else that
// the format does not allow.

bool ezMPEGSequence_ReadHeader(const unsigned char* aBytes, std::size_t aSize, ezMPEGSequence& aSequence);

/// Completes what the header told. aBytes begin with the identifier.
bool ezMPEGSequence_ReadExtension(const unsigned char* aBytes, std::size_t aSize, ezMPEGSequence& aSequence);

/// What a sequence display extension tells: the size of what fills the display, in pixels of the picture.
struct ezMPEGDisplay {
    std::uint32_t mWidth = 0;
    std::uint32_t mHeight = 0;
};

/// aBytes begin with the identifier.
bool ezMPEGDisplay_Read(const unsigned char* aBytes, std::size_t aSize, ezMPEGDisplay& aDisplay);

bool ezMPEGGroup_Read(const unsigned char* aBytes, std::size_t aSize);

/// vbv_delay of a picture that does not tell it.
inline constexpr std::uint32_t kMPEGVideo_UntoldDelay = 0xFFFF;

struct ezMPEGPicture {
    bool mfVariableBitRate; ///< vbv_delay is not told, as where the rate varies
    bool mfProgressive;     ///< progressive_frame; of the coding extension
};

bool ezMPEGPicture_ReadHeader(const unsigned char* aBytes, std::size_t aSize, bool afMPEG2,
                              ezMPEGPicture& aPicture);

/// aBytes begin with the identifier.
bool ezMPEGPicture_ReadCodingExtension(const unsigned char* aBytes, std::size_t aSize,
                                       ezMPEGPicture& aPicture);
