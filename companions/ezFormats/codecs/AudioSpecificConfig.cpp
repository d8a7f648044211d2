#include "ezFormats/codecs/AudioSpecificConfig.h"

#include "ezBytes/BitReader.h"
#include "ezFormats/codecs/AACSamplingRates.h"

#include <algorithm>
#include <array>

namespace {

/// @name Audio object types (ISO/IEC 14496-3, table 1.1)
/// @{
constexpr std::uint32_t kAOT_SBR = 5;
constexpr std::uint32_t kAOT_Scalable = 6;
constexpr std::uint32_t kAOT_ERScalable = 20;
constexpr std::uint32_t kAOT_BSAC = 22;
constexpr std::uint32_t kAOT_PS = 29;
constexpr std::uint32_t kAOT_Escape = 31;
/// @}

struct ObjectType {
    std::uint32_t mType;
    const char* mName;
    bool mfGeneral; ///< followed by a GASpecificConfig
};
constexpr std::array<ObjectType, 15> kObjectTypes = {{{1, "AAC-Main", true},
                                                      {2, "AAC", true},
                                                      {3, "AAC-SSR", true},
                                                      {4, "AAC-LTP", true},
                                                      {6, "AAC-Scalable", true},
                                                      {17, "AAC-ER", true},
                                                      {19, "AAC-ER-LTP", true},
                                                      {20, "AAC-ER-Scalable", true},
                                                      {23, "AAC-LD", true},
                                                      {32, "MP1", false},
                                                      {33, "MP2", false},
                                                      {34, "MP3", false},
                                                      {36, "ALS", false},
                                                      {39, "AAC-ELD", false},
                                                      {42, "xHE-AAC", false}}};

const ObjectType* FindObjectType(std::uint32_t aType) {
    const auto* const found = std::find_if(kObjectTypes.begin(), kObjectTypes.end(),
                                           [=](const ObjectType& aKnown) { return aKnown.mType == aType; });
    return found != kObjectTypes.end() ? found : nullptr;
}

constexpr std::uint32_t kRateExplicit = 15;

/// Channels by channelConfiguration (1.6.3.5); 0: told by a program_config_element, or reserved.
constexpr std::array<std::uint32_t, 16> kChannels = {0, 1, 2, 3, 4, 5, 6, 8, 0, 0, 0, 7, 8, 24, 8, 0};

/// syncExtensionType: stands before an extension that decoders of before its time step over (1.6.2.1).
constexpr std::uint32_t kSyncSBR = 0x2B7;
constexpr std::uint32_t kSyncPS = 0x548;

/// GetAudioObjectType (1.6.2.1)
std::uint32_t ReadObjectType(ezBitReader& aBits) {
    const std::uint32_t type = aBits.Read(5);
    return type == kAOT_Escape ? 32 + aBits.Read(6) : type;
}

/// samplingFrequencyIndex, and samplingFrequency where it asks for that.
std::uint32_t ReadSamplingRate(ezBitReader& aBits) {
    const std::uint32_t index = aBits.Read(4);
    if (index == kRateExplicit) {
        return aBits.Read(24);
    }
    return aBits.Require(index < kAACSamplingRates.size()) ? kAACSamplingRates[index] : 0;
}

/// So many elements of one channel or of two.
std::uint32_t ReadElements(ezBitReader& aBits, std::uint32_t aCount) {
    std::uint32_t channels = 0;
    for (std::uint32_t i = 0; i < aCount; ++i) {
        channels += 1 + aBits.Read(1); // *_element_is_cpe
        aBits.Skip(4);                 // *_element_tag_select
    }
    return channels;
}

/// The channels of a program_config_element (4.4.1.1), which stands so many bits after a byte's start.
std::uint32_t ReadProgram(ezBitReader& aBits, std::size_t aBitsBefore) {
    const std::size_t start = aBits.GetBitsLeft() + aBitsBefore;
    aBits.Skip(4 + 2 + 4); // element_instance_tag, object_type, sampling_frequency_index
    const std::uint32_t front = aBits.Read(4);
    const std::uint32_t side = aBits.Read(4);
    const std::uint32_t back = aBits.Read(4);
    const std::uint32_t lfe = aBits.Read(2);
    const std::uint32_t data = aBits.Read(3);
    const std::uint32_t coupling = aBits.Read(4);
    aBits.Skip(aBits.ReadFlag() ? 4 : 0);     // mono_mixdown_element_number
    aBits.Skip(aBits.ReadFlag() ? 4 : 0);     // stereo_mixdown_element_number
    aBits.Skip(aBits.ReadFlag() ? 2 + 1 : 0); // matrix_mixdown_idx, pseudo_surround_enable
    const std::uint32_t channels = ReadElements(aBits, front + side + back) + lfe;
    aBits.Skip(std::size_t{4} * (lfe + data)); // their tags
    aBits.Skip(std::size_t{5} * coupling);     // cc_element_is_ind_sw and tag
    const std::size_t used = start - aBits.GetBitsLeft();
    aBits.Skip((8 - used % 8) % 8);             // byte_alignment
    aBits.Skip(std::size_t{8} * aBits.Read(8)); // comment_field_bytes, comment_field_data
    return aBits.HasFailed() ? 0 : channels;
}

/// Steps over GASpecificConfig (4.4.1); channels may be told there.
void ReadGeneralAudio(ezBitReader& aBits, std::size_t aSize, bool afProgram, AudioSpecificConfig& aConfig) {
    const std::uint32_t type = aConfig.mObjectType;
    aBits.Skip(1);                         // frameLengthFlag
    aBits.Skip(aBits.ReadFlag() ? 14 : 0); // dependsOnCoreCoder: coreCoderDelay
    const bool fExtension = aBits.ReadFlag();
    if (afProgram) {
        aConfig.mChannels = ReadProgram(aBits, 8 * aSize - aBits.GetBitsLeft());
    }
    aBits.Skip(type == kAOT_Scalable || type == kAOT_ERScalable ? 3 : 0); // layerNr
    if (fExtension) {
        aBits.Skip(type == kAOT_BSAC ? 5 + 11 : 0); // numOfSubFrame, layer_length
        // aacSectionDataResilienceFlag, aacScalefactorDataResilienceFlag, aacSpectralDataResilienceFlag
        aBits.Skip(type == 17 || type == 19 || type == 20 || type == 23 ? 3 : 0);
        aBits.Skip(1); // extensionFlag3
    }
    aBits.Skip(type >= 17 && type <= 27 ? 2 : 0); // epConfig
}

/// Signalling that old decoders step over, as it stands after all else (1.6.5): SBR, and then PS.
void ReadLateExtensions(ezBitReader& aBits, AudioSpecificConfig& aConfig) {
    if (aBits.GetBitsLeft() < 16 || aBits.Read(11) != kSyncSBR || ReadObjectType(aBits) != kAOT_SBR ||
        !aBits.ReadFlag()) {
        return;
    }
    const std::uint32_t rate = ReadSamplingRate(aBits);
    if (aBits.HasFailed() || rate == 0) {
        return;
    }
    aConfig.mfSBR = true;
    aConfig.mSamplingRate = rate;
    aConfig.mfPS = aBits.GetBitsLeft() >= 12 && aBits.Read(11) == kSyncPS && aBits.ReadFlag();
}

} // namespace

const char* AudioSpecificConfig::GetCodecName() const {
    constexpr std::uint32_t kAOT_LC = 2;
    const ObjectType* const type = FindObjectType(mObjectType);
    if (type == nullptr) {
        return nullptr;
    }
    if (mObjectType == kAOT_LC && mfSBR) {
        return mfPS ? "HE-AACv2" : "HE-AAC";
    }
    return type->mName;
}

bool AudioSpecificConfig_Read(const unsigned char* aBytes, std::size_t aSize, AudioSpecificConfig& aConfig) {
    AudioSpecificConfig config;
    ezBitReader bits(aBytes, 8 * aSize);
    config.mObjectType = ReadObjectType(bits);
    config.mSamplingRate = ReadSamplingRate(bits);
    const std::uint32_t channels = bits.Read(4);
    config.mChannels = kChannels[channels];
    config.mfPS = config.mObjectType == kAOT_PS;
    config.mfSBR = config.mfPS || config.mObjectType == kAOT_SBR;
    if (config.mfSBR) {
        config.mSamplingRate = ReadSamplingRate(bits);
        config.mObjectType = ReadObjectType(bits);
    }
    if (bits.HasFailed() || config.mSamplingRate == 0) {
        return false;
    }
    const ObjectType* const type = FindObjectType(config.mObjectType);
    if (type != nullptr && type->mfGeneral) {
        ReadGeneralAudio(bits, aSize, channels == 0, config);
        if (!config.mfSBR) {
            ReadLateExtensions(bits, config);
        }
    }
    if (config.mfPS && config.mChannels == 1) {
        config.mChannels = 2; // of which one channel is coded
    }
    aConfig = config;
    return true;
}
