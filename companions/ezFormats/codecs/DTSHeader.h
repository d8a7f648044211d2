#pragma once

#include "ezFormats/codecs/AudioFacts.h"

#include <array>
#include <cstddef>
#include <cstdint>

/// How the words of 16 bits of a coded stream stand in its bytes. DTS has four forms, which the first word of
/// a frame tells (ETSI TS 102 114, 5.3.1 and annex A); those of 14 bits are for players that take a stream
/// for samples.
struct ezWordForm {
    std::uint32_t mSync; ///< the first four bytes, as they stand
    bool mfSwapped;      ///< of each two bytes the second comes first
    unsigned mWordBits;  ///< that count in two bytes

    /// Bytes that so many bytes of the stream take.
    std::uint32_t GetStoredSize(std::uint32_t aSize) const {
        return mWordBits == 16 ? aSize : (8 * aSize + mWordBits - 1) / mWordBits * 2;
    }
};

inline constexpr std::array<ezWordForm, 4> kDTSForms = {
    {{0x7FFE8001, false, 16}, {0xFE7F0180, true, 16}, {0x1FFFE800, false, 14}, {0xFF1F00E8, true, 14}}};

/// The form whose first four bytes these are; null for none.
const ezWordForm* ezDTSForm_Of(std::uint32_t aWord);

/// That of an extension substream, which has the first two of the forms; null for none.
const ezWordForm* ezDTSExtensionForm_Of(std::uint32_t aWord);

/// Puts what stands in a form in the order of the stream.
/// @param aCount    bytes there; of an odd one out nothing is taken
/// @param aStream   as many bytes, at least
/// @return bytes of the stream
std::size_t ezWordForm_Unpack(const ezWordForm& aForm, const unsigned char* aBytes, std::size_t aCount,
                              unsigned char* aStream);

/// What the header of a core frame tells (ETSI TS 102 114, 5.3.1).
struct ezDTSHeader {
    std::uint32_t mSamplingRate = 0; ///< Hz, of what is heard
    std::uint32_t mChannels = 0;     ///< low frequencies included
    std::uint32_t mFrameSize = 0;    ///< bytes of the stream
    std::uint32_t mSampleCount = 0;  ///< of a channel in the frame, at the sampling rate
    std::uint32_t mRateFactor = 1;   ///< an extension doubles the rate of the core
    std::uint32_t mSame = 0;         ///< what is the same in every header of a stream
};

/// Bytes of a core frame up to its low frequencies.
inline constexpr std::size_t kDTSHeaderSize = 11;

inline constexpr std::uint32_t kDTSMinFrameSize = 96;
inline constexpr std::uint32_t kDTSMaxFrameSize = 16384;

/// Takes the kDTSHeaderSize bytes of a header apart, in the order of the stream. False for bytes that are
/// none.
bool ezDTSHeader_Read(const unsigned char* aBytes, ezDTSHeader& aHeader);

/// Where an extension substream stands in a frame, and how long it is (ETSI TS 102 114, 7.4.1).
struct ezDTSSubstream {
    std::uint32_t mIndex = 0;      ///< among those of a frame
    std::uint32_t mHeaderSize = 0; ///< bytes
    std::uint32_t mSize = 0;       ///< bytes, header included
    std::uint32_t mClock = 0;      ///< ticks a second; 0: not told, as what is the same in all frames may be
    std::uint32_t mTicks = 0;      ///< that the frame takes
};

/// Takes the first kDTSExtensionMinSize bytes of one apart, or more. False for bytes that are not one.
bool ezDTSSubstream_Read(const unsigned char* aBytes, std::size_t aCount, ezDTSSubstream* aSubstream);

/// What the header of an extension substream tells (ETSI TS 102 114, 7.4 and 7.5), of the first asset.
/// Numbers are 0 where it does not.
struct ezDTSExtension {
    enum class Kind {
        Unknown,
        HighResolution, ///< more of a core
        MasterAudio,    ///< lossless, with a core or without
        LowBitRate,     ///< "Express", without a core
    };

    Kind mKind = Kind::Unknown;
    std::uint32_t mSamplingRate = 0; ///< Hz
    std::uint32_t mChannels = 0;
    std::uint32_t mBitsPerSample = 0;

    /// As kezInfo_AudioCodec names it.
    const char* GetCodecName() const;
};

/// Bytes of an extension that tell its size and its time.
inline constexpr std::size_t kDTSExtensionMinSize = 11;

/// Takes the start of an extension substream apart, in the order of the stream: what does not lie within
/// aCount bytes is not told. False for bytes that are not one.
bool ezDTSExtension_Read(const unsigned char* aBytes, std::size_t aCount, ezDTSExtension& anExtension);

/// The same of bytes as they are stored, in the order of the stream or swapped in words. More than
/// kDTS_ExtensionLookSize of them are not looked at.
bool ezDTSExtension_ReadStored(const unsigned char* aBytes, std::size_t aCount, ezDTSExtension& anExtension);

/// Makes facts of a core those of all that its frame holds.
void ezDTSExtension_Store(const ezDTSExtension& anExtension, AudioFacts& aFacts);

/// Channels by a mask of loudspeakers, of which some bits are pairs (7.5.2.1, nuSpkrActivityMask).
std::uint32_t ezDTSChannelsOfMask(std::uint32_t aMask);

/// Name of the codec by StreamConstruction (annex E); empty for a reserved one.
const char* ezDTSNameOfConstruction(std::uint32_t aConstruction);
