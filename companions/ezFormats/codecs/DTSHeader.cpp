#include "ezFormats/codecs/DTSHeader.h"

#include "ezFormats/detail/Limits.h"

#include "ezBytes/BitReader.h"

#include <algorithm>

namespace {

constexpr std::uint32_t kSyncCore = 0x7FFE8001;
constexpr std::uint32_t kSyncExtension = 0x64582025;

constexpr const char* kCore = "DTS";
constexpr const char* kHighResolution = "DTS-HD-HRA";
constexpr const char* kMasterAudio = "DTS-HD-MA";
constexpr const char* kLowBitRate = "DTS-HD-LBR";

// Codes of EXT_AUDIO_ID (5.3.1)
constexpr std::uint32_t kExtensionChannel = 0; ///< XCH: one more at the back
constexpr std::uint32_t kExtensionRate = 2;    ///< X96k: at twice the rate

/// Channels by AMODE; further codes are of the user's own.
constexpr std::array<std::uint32_t, 16> kChannels = {1, 2, 2, 2, 2, 3, 3, 4, 4, 5, 6, 6, 6, 7, 8, 8};

/// Hz by SFREQ; 0: invalid.
constexpr std::array<std::uint32_t, 16> kRates = {0,     8000, 16000, 32000, 0,     0,     11025, 22050,
                                                  44100, 0,    0,     12000, 24000, 48000, 0,     0};

/// Hz by nuMaxSampleRate (7.5.2.1).
constexpr std::array<std::uint32_t, 16> kExtensionRates = {8000,  16000, 32000,  64000,  128000, 22050,
                                                           44100, 88200, 176400, 352800, 12000,  24000,
                                                           48000, 96000, 192000, 384000};

/// Hz by nuRefClockCode (7.4.1); 0: none.
constexpr std::array<std::uint32_t, 4> kClocks = {32000, 44100, 48000, 0};

// --- The header of an extension

/// What of it decides how the rest is to be read.
struct Head {
    ezDTSSubstream mSubstream;
    unsigned mSizeBits = 0; ///< of the number that tells the size of a frame
    bool mfStatic = false;  ///< fields that are the same in every frame are there
    bool mfMixing = false;  ///< and so may be what is asked of a mixer
};

std::uint32_t CountBits(std::uint32_t aMask) {
    std::uint32_t count = 0;
    for (; aMask != 0; aMask &= aMask - 1) {
        ++count;
    }
    return count;
}

/// Which presentation has which assets, and what is asked of a mixer.
void SkipPresentations(ezBitReader& aBits, std::uint32_t aPresentations, Head& aHead) {
    std::uint32_t masks = 0;
    for (std::uint32_t i = 0; i < aPresentations; ++i) {
        masks += CountBits(aBits.Read(aHead.mSubstream.mIndex + 1)); // nuActiveExSSMask
    }
    aBits.Skip(std::size_t{8} * masks); // nuActiveAssetMask
    aHead.mfMixing = aBits.ReadFlag();  // bMixMetadataEnbl
    if (aHead.mfMixing) {
        aBits.Skip(2);                                      // nuMixMetadataAdjLevel
        const std::uint32_t bits = 4 * (aBits.Read(2) + 1); // nuBits4MixOutMask
        const std::uint32_t configs = aBits.Read(2) + 1;    // nuNumMixOutConfigs
        aBits.Skip(std::size_t{bits} * configs);            // nuMixOutChMask
    }
}

/// Up to the time that the frame takes (7.4.1).
bool ReadHead(ezBitReader& aBits, Head& aHead) {
    ezDTSSubstream& substream = aHead.mSubstream;
    const std::uint32_t sync = aBits.Read(32);
    aBits.Skip(8); // UserDefinedBits
    substream.mIndex = aBits.Read(2);
    const bool fLong = aBits.ReadFlag(); // bHeaderSizeType
    aHead.mSizeBits = fLong ? 20 : 16;
    substream.mHeaderSize = aBits.Read(fLong ? 12 : 8) + 1;
    substream.mSize = aBits.Read(aHead.mSizeBits) + 1;
    aHead.mfStatic = aBits.ReadFlag();
    if (aHead.mfStatic) {
        substream.mClock = kClocks[aBits.Read(2)];
        substream.mTicks = 512 * (aBits.Read(3) + 1);
    }
    return !aBits.HasFailed() && sync == kSyncExtension && substream.mHeaderSize >= kDTSExtensionMinSize &&
           substream.mHeaderSize < substream.mSize && (!aHead.mfStatic || substream.mClock != 0);
}

/// From there on to the descriptors of the assets.
void SkipToAssets(ezBitReader& aBits, Head& aHead) {
    std::uint32_t assets = 1;
    if (aHead.mfStatic) {
        aBits.Skip(aBits.ReadFlag() ? 32 + 4 : 0); // nuTimeStamp
        const std::uint32_t presentations = aBits.Read(3) + 1;
        assets = aBits.Read(3) + 1;
        SkipPresentations(aBits, presentations, aHead);
    }
    aBits.Skip(std::size_t{aHead.mSizeBits} * assets); // nuAssetFsize
}

/// Where channels stand, each of its own.
void SkipSpeakers(ezBitReader& aBits, std::uint32_t aChannels, bool& afStereo) {
    afStereo = aChannels > 2 && aBits.ReadFlag(); // bEmbeddedStereoFlag
    aBits.Skip(aChannels > 6 ? 1 : 0);            // bEmbeddedSixChFlag
    std::uint32_t maskBits = 0;
    if (aBits.ReadFlag()) { // bSpkrMaskEnabled
        maskBits = 4 * (aBits.Read(2) + 1);
        aBits.Skip(maskBits); // nuSpkrActivityMask
    }
    std::array<std::uint32_t, 8> speakers = {};
    const std::uint32_t sets = aBits.Read(3); // nuNumSpkrRemapSets
    for (std::uint32_t i = 0; i < sets; ++i) {
        speakers[i] = ezDTSChannelsOfMask(aBits.Read(maskBits)); // nuStndrSpkrLayoutMask
    }
    for (std::uint32_t i = 0; i < sets; ++i) {
        const std::uint32_t decoded = aBits.Read(5) + 1; // nuNumDecCh4Remap
        for (std::uint32_t speaker = 0; speaker < speakers[i]; ++speaker) {
            aBits.Skip(std::size_t{5} * CountBits(aBits.Read(decoded))); // nuSpkrRemapCodes
        }
    }
}

/// What is the same in every frame (7.5.2.1).
void ReadStaticFields(ezBitReader& aBits, ezDTSExtension& anExtension, bool& afStereo) {
    aBits.Skip(aBits.ReadFlag() ? 4 : 0);  // nuAssetTypeDescriptor
    aBits.Skip(aBits.ReadFlag() ? 24 : 0); // LanguageDescriptor
    if (aBits.ReadFlag()) {                // bInfoTextPresent
        aBits.Skip(std::size_t{8} * (aBits.Read(10) + 1));
    }
    const std::uint32_t resolution = aBits.Read(5) + 1;
    const std::uint32_t rate = kExtensionRates[aBits.Read(4)];
    const std::uint32_t channels = aBits.Read(8) + 1;
    if (aBits.HasFailed()) {
        return;
    }
    anExtension.mBitsPerSample = resolution;
    anExtension.mSamplingRate = rate;
    anExtension.mChannels = channels;
    if (aBits.ReadFlag()) { // bOne2OneMapChannels2Speakers
        SkipSpeakers(aBits, channels, afStereo);
    } else {
        aBits.Skip(3); // nuRepresentationType
    }
}

/// What changes from frame to frame (7.5.2.2), up to what is asked of a mixer. False where something is.
bool SkipDynamicFields(ezBitReader& aBits, bool afMixing, bool afStereo) {
    const bool fRange = aBits.ReadFlag(); // bDRCCoefPresent
    aBits.Skip(fRange ? 8 : 0);
    aBits.Skip(aBits.ReadFlag() ? 5 : 0);   // nuDialNormCode
    aBits.Skip(fRange && afStereo ? 8 : 0); // nuDRC2ChDmixCode
    return !afMixing || !aBits.ReadFlag();  // bMixMetadataPresent
}

/// By nuCodingMode and nuCoreExtensionMask (7.5.2.3).
ezDTSExtension::Kind ReadKind(ezBitReader& aBits) {
    constexpr std::uint32_t kMaskLowBitRate = 0x100;
    constexpr std::uint32_t kMaskLossless = 0x200;
    using Kind = ezDTSExtension::Kind;
    constexpr std::array<Kind, 4> kModes = {Kind::HighResolution, Kind::MasterAudio, Kind::LowBitRate,
                                            Kind::Unknown};
    const std::uint32_t mode = aBits.Read(2);
    const std::uint32_t mask = mode == 0 ? aBits.Read(12) : 0;
    if (aBits.HasFailed()) {
        return Kind::Unknown;
    }
    if ((mask & kMaskLossless) != 0) {
        return Kind::MasterAudio;
    }
    return (mask & kMaskLowBitRate) != 0 ? Kind::LowBitRate : kModes[mode];
}

/// By the word that the first asset begins with, which not every frame has.
ezDTSExtension::Kind KindOfAsset(const unsigned char* aBytes, std::size_t aCount, std::uint32_t aPlace) {
    struct Sync {
        std::uint32_t mWord;
        ezDTSExtension::Kind mKind;
    };
    using Kind = ezDTSExtension::Kind;
    constexpr std::array<Sync, 6> kSyncs = {{{0x41A29547, Kind::MasterAudio},      // XLL
                                             {0x0A801921, Kind::LowBitRate},       // LBR
                                             {0x655E315E, Kind::HighResolution},   // XBR
                                             {0x1D95F262, Kind::HighResolution},   // X96
                                             {0x47004A03, Kind::HighResolution},   // XXCH
                                             {0x02B09261, Kind::HighResolution}}}; // a core
    ezBitReader bits(aBytes, 8 * aCount);
    bits.Skip(std::size_t{8} * aPlace);
    const std::uint32_t word = bits.Read(32);
    for (const Sync& sync : kSyncs) {
        if (word == sync.mWord) {
            return sync.mKind;
        }
    }
    return Kind::Unknown;
}

} // namespace

const ezWordForm* ezDTSExtensionForm_Of(std::uint32_t aWord) {
    static constexpr std::array<ezWordForm, 2> kForms = {
        {{kSyncExtension, false, 16}, {0x58642520, true, 16}}};
    const auto* const form = std::find_if(kForms.begin(), kForms.end(),
                                          [aWord](const ezWordForm& aForm) { return aForm.mSync == aWord; });
    return form != kForms.end() ? form : nullptr;
}

const ezWordForm* ezDTSForm_Of(std::uint32_t aWord) {
    const auto* const form = std::find_if(kDTSForms.begin(), kDTSForms.end(),
                                          [aWord](const ezWordForm& aForm) { return aForm.mSync == aWord; });
    return form != kDTSForms.end() ? form : nullptr;
}

std::size_t ezWordForm_Unpack(const ezWordForm& aForm, const unsigned char* aBytes, std::size_t aCount,
                              unsigned char* aStream) {
    std::size_t bits = 0;
    std::uint32_t pending = 0; // bits % 8 of them count
    std::size_t stored = 0;
    for (std::size_t i = 0; i + 2 <= aCount; i += 2) {
        const std::uint32_t first = aBytes[aForm.mfSwapped ? i + 1 : i];
        const std::uint32_t second = aBytes[aForm.mfSwapped ? i : i + 1];
        const std::uint32_t mask = (UINT32_C(1) << aForm.mWordBits) - 1;
        pending = pending << aForm.mWordBits | ((first << 8 | second) & mask);
        bits += aForm.mWordBits;
        for (; stored < bits / 8; ++stored) {
            aStream[stored] = static_cast<unsigned char>(pending >> (bits - 8 * (stored + 1)));
        }
    }
    return stored;
}

bool ezDTSHeader_Read(const unsigned char* aBytes, ezDTSHeader& aHeader) {
    ezBitReader bits(aBytes, 8 * kDTSHeaderSize);
    const std::uint32_t sync = bits.Read(32);
    bits.Skip(1 + 5 + 1); // FTYPE, SHORT, CPF
    const std::uint32_t blocks = bits.Read(7) + 1;
    const std::uint32_t size = bits.Read(14) + 1;
    const std::uint32_t amode = bits.Read(6);
    const std::uint32_t sfreq = bits.Read(4);
    const std::uint32_t rate = bits.Read(5);
    bits.Skip(1 + 1 + 1 + 1 + 1); // MIX, DYNF, TIMEF, AUXF, HDCD
    const std::uint32_t extension = bits.Read(3);
    const bool fExtension = bits.ReadFlag();
    bits.Skip(1); // ASPF
    const std::uint32_t lff = bits.Read(2);
    constexpr std::uint32_t kMinBlocks = 8;
    if (sync != kSyncCore || blocks < kMinBlocks || size < kDTSMinFrameSize || amode >= kChannels.size() ||
        kRates[sfreq] == 0 || lff == 3) {
        return false;
    }
    aHeader.mRateFactor = fExtension && extension == kExtensionRate ? 2 : 1;
    aHeader.mSamplingRate = kRates[sfreq] * aHeader.mRateFactor;
    aHeader.mChannels =
        kChannels[amode] + (lff != 0 ? 1 : 0) + (fExtension && extension == kExtensionChannel ? 1 : 0);
    aHeader.mFrameSize = size;
    aHeader.mSampleCount = 32 * blocks * aHeader.mRateFactor;
    aHeader.mSame = amode << 16 | sfreq << 12 | rate << 4 | lff;
    return true;
}

const char* ezDTSExtension::GetCodecName() const {
    constexpr std::array<const char*, 4> kNames = {"DTS-HD", kHighResolution, kMasterAudio, kLowBitRate};
    return kNames[static_cast<std::size_t>(mKind)];
}

bool ezDTSSubstream_Read(const unsigned char* aBytes, std::size_t aCount, ezDTSSubstream* aSubstream) {
    ezBitReader bits(aBytes, 8 * aCount);
    Head head;
    if (!ReadHead(bits, head)) {
        return false;
    }
    *aSubstream = head.mSubstream;
    return true;
}

bool ezDTSExtension_Read(const unsigned char* aBytes, std::size_t aCount, ezDTSExtension& anExtension) {
    ezBitReader bits(aBytes, 8 * aCount);
    Head head;
    ezDTSExtension extension;
    if (!ReadHead(bits, head)) {
        return false;
    }
    bool fStereo = false;
    SkipToAssets(bits, head);
    bits.Skip(9 + 3); // nuAssetDescriptFsize, nuAssetIndex
    if (head.mfStatic) {
        ReadStaticFields(bits, extension, fStereo);
    }
    if (SkipDynamicFields(bits, head.mfMixing, fStereo)) {
        extension.mKind = ReadKind(bits);
    }
    if (extension.mKind == ezDTSExtension::Kind::Unknown) {
        extension.mKind = KindOfAsset(aBytes, aCount, head.mSubstream.mHeaderSize);
    }
    anExtension = extension;
    return true;
}

bool ezDTSExtension_ReadStored(const unsigned char* aBytes, std::size_t aCount, ezDTSExtension& anExtension) {
    ezBitReader word(aBytes, 8 * aCount);
    const ezWordForm* const form = ezDTSExtensionForm_Of(word.Read(32));
    std::array<unsigned char, kDTS_ExtensionLookSize> stream = {};
    if (form == nullptr || word.HasFailed()) {
        return false;
    }
    const std::size_t size =
        ezWordForm_Unpack(*form, aBytes, std::min<std::size_t>(aCount, stream.size()), stream.data());
    return ezDTSExtension_Read(stream.data(), size, anExtension);
}

void ezDTSExtension_Store(const ezDTSExtension& anExtension, AudioFacts& aFacts) {
    aFacts.mCodec = anExtension.GetCodecName();
    if (anExtension.mSamplingRate == 0) {
        return;
    }
    aFacts.mSamplingRate = anExtension.mSamplingRate;
    aFacts.mChannels = anExtension.mChannels;
    if (anExtension.mKind == ezDTSExtension::Kind::MasterAudio) {
        aFacts.mBitsPerSample = anExtension.mBitsPerSample;
    }
}

std::uint32_t ezDTSChannelsOfMask(std::uint32_t aMask) {
    constexpr std::uint32_t kPairs = 0xAE66;
    return CountBits(aMask & 0xFFFF) + CountBits(aMask & kPairs);
}

const char* ezDTSNameOfConstruction(std::uint32_t aConstruction) {
    constexpr std::array<const char*, 22> kNames = {"",
                                                    kCore,
                                                    kCore,
                                                    kCore,
                                                    kCore,
                                                    kHighResolution,
                                                    kHighResolution,
                                                    kHighResolution,
                                                    kHighResolution,
                                                    kHighResolution,
                                                    kHighResolution,
                                                    kHighResolution,
                                                    kHighResolution,
                                                    kHighResolution,
                                                    kMasterAudio,
                                                    kMasterAudio,
                                                    kMasterAudio,
                                                    kMasterAudio,
                                                    kLowBitRate,
                                                    kHighResolution,
                                                    kHighResolution,
                                                    kMasterAudio};
    return aConstruction < kNames.size() ? kNames[aConstruction] : "";
}
