#pragma once

#include <cstdint>

/// Bytes of an MPEG audio frame header.
inline constexpr std::uint32_t kMPEGAudioHeaderSize = 4;

/// The smallest frame with a stated rate: layer III, 8 kbit/s at 24 kHz.
inline constexpr std::uint32_t kMPEGAudioMinFrameSize = 24;

/// The largest: layer II, 384 kbit/s at 32 kHz, padded.
inline constexpr std::uint32_t kMPEGAudioMaxFrameSize = 1729;

/// What the header of an MPEG audio frame tells (ISO/IEC 11172-3, 2.4.1.3 and 2.4.2.3; the lower rates of
/// ISO/IEC 13818-3, and those of MPEG-2.5 for layer III).
struct ezMPEGAudioHeader {
    std::uint32_t mLayer;        ///< 1 to 3
    std::uint32_t mBitRate;      ///< bits a second; 0: free format, not stated
    std::uint32_t mSamplingRate; ///< Hz
    std::uint32_t mChannels;     ///< 1 or 2
    std::uint32_t mSlotSize;     ///< bytes that padding adds
    std::uint32_t mFrameSize;    ///< bytes, header and padding included; 0 in free format
    std::uint32_t mMinFrameSize; ///< bytes at the lowest stated rate of the layer, without padding
    std::uint32_t mMaxFrameSize; ///< bytes at the highest rate of the layer, padding included
    std::uint32_t mMaxBitRate;   ///< bits a second, the highest of the layer
    std::uint32_t mSampleCount;  ///< samples of a channel in a frame
    std::uint32_t mTagOffset; ///< where encoders of layer III put the Xing header: after the side information
    bool mfPadded;
};

/// A layer's codec, as a record names it.
const char* ezMPEGAudioHeader_CodecOf(std::uint32_t aLayer);

/// Takes a header apart. False for bytes that are not one.
bool ezMPEGAudioHeader_Read(std::uint32_t aWord, ezMPEGAudioHeader& aHeader);

/// True when two headers may stand in one stream: padding and the kind of stereo may change, and in layer III
/// the rate.
bool ezMPEGAudioHeader_IsSameStream(std::uint32_t aFirst, std::uint32_t aSecond);
