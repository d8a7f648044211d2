#include "ezFormats/codecs/AudioSpecificConfig.h"

#include "ezBytes/BitReader.h"
#include "ezFormats/codecs/AACSamplingRates.h"

#include <algorithm>
#include <array>

namespace {

/// @name Audio object types (ISO/IEC 14496-3, table 1.1)
/// @{
constexpr std::uint32_t kTypeReplicated = 5;
constexpr std::uint32_t kTypeScalable = 6;
constexpr std::uint32_t kTypeErrorResilientScalable = 20;
constexpr std::uint32_t kTypeSlicedArithmetic = 22;
constexpr std::uint32_t kTypeParametricStereo = 29;
constexpr std::uint32_t kTypeEscape = 31;
/// @}

struct ObjectType {
    std::uint32_t mType;
    const char* mName;
    bool mfGeneral; ///< set up as general audio is
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

/// Channels by configuration; 0: told elsewhere, or reserved.
constexpr std::array<std::uint32_t, 16> kChannels = {0, 1, 2, 3, 4, 5, 6, 8, 0, 0, 0, 7, 8, 24, 8, 0};

/// What stands before an extension that decoders of before its time step over.
constexpr std::uint32_t kSyncReplicated = 0x2B7;
constexpr std::uint32_t kSyncParametricStereo = 0x548;

std::uint32_t ReadObjectType(ezBitReader& aBits) {
    const std::uint32_t type = aBits.Read(5);
    return type == kTypeEscape ? 32 + aBits.Read(6) : type;
}

std::uint32_t ReadSamplingRate(ezBitReader& aBits) {
    const std::uint32_t index = aBits.Read(4);
    if (index == kRateExplicit) {
        return aBits.Read(24);
    }
    return aBits.Require(index < kAACSamplingRates.size()) ? kAACSamplingRates[index] : 0;
}

/// So many elements of one channel or two, as a bit before each number tells.
std::uint32_t ReadElements(ezBitReader& aBits, std::uint32_t aCount) {
    std::uint32_t channels = 0;
    for (std::uint32_t i = 0; i < aCount; ++i) {
        channels += 1 + aBits.Read(1);
        aBits.Skip(4);
    }
    return channels;
}

/// The channels of a configuration that is spelled out (program_config_element), which stands so many bits
/// behind a byte's start.
std::uint32_t ReadProgram(ezBitReader& aBits, std::size_t aBitsBefore) {
    const std::size_t start = aBits.GetBitsLeft() + aBitsBefore;
    aBits.Skip(10);
    const std::uint32_t front = aBits.Read(4);
    const std::uint32_t side = aBits.Read(4);
    const std::uint32_t back = aBits.Read(4);
    const std::uint32_t low = aBits.Read(2);
    const std::uint32_t data = aBits.Read(3);
    const std::uint32_t coupled = aBits.Read(4);
    aBits.Skip(aBits.ReadFlag() ? 4 : 0); // mixed down to one channel
    aBits.Skip(aBits.ReadFlag() ? 4 : 0); // to two
    aBits.Skip(aBits.ReadFlag() ? 3 : 0); // by a matrix
    const std::uint32_t channels = ReadElements(aBits, front + side + back) + low;
    aBits.Skip(std::size_t{4} * (low + data) + std::size_t{5} * coupled);
    const std::size_t used = start - aBits.GetBitsLeft();
    aBits.Skip((8 - used % 8) % 8);
    aBits.Skip(std::size_t{8} * aBits.Read(8)); // a comment
    return aBits.HasFailed() ? 0 : channels;
}

/// Steps over the set-up of general audio; channels may be told there.
void ReadGeneralAudio(ezBitReader& aBits, std::size_t aSize, bool afProgram, AudioSpecificConfig& aConfig) {
    const std::uint32_t type = aConfig.mObjectType;
    aBits.Skip(1);                         // length of frames
    aBits.Skip(aBits.ReadFlag() ? 14 : 0); // delay of a core
    const bool fExtension = aBits.ReadFlag();
    if (afProgram) {
        aConfig.mChannels = ReadProgram(aBits, 8 * aSize - aBits.GetBitsLeft());
    }
    aBits.Skip(type == kTypeScalable || type == kTypeErrorResilientScalable ? 3 : 0);
    if (fExtension) {
        aBits.Skip(type == kTypeSlicedArithmetic ? 16 : 0);
        aBits.Skip(type == 17 || type == 19 || type == 20 || type == 23 ? 3 : 0);
        aBits.Skip(1);
    }
    aBits.Skip(type >= 17 && type <= 27 ? 2 : 0); // protection against errors
}

/// The extensions that may stand behind everything else, where old decoders do not look.
void ReadLateExtensions(ezBitReader& aBits, AudioSpecificConfig& aConfig) {
    if (aBits.GetBitsLeft() < 16 || aBits.Read(11) != kSyncReplicated ||
        ReadObjectType(aBits) != kTypeReplicated || !aBits.ReadFlag()) {
        return;
    }
    const std::uint32_t rate = ReadSamplingRate(aBits);
    if (aBits.HasFailed() || rate == 0) {
        return;
    }
    aConfig.mfBandReplicated = true;
    aConfig.mSamplingRate = rate;
    aConfig.mfParametricStereo =
        aBits.GetBitsLeft() >= 12 && aBits.Read(11) == kSyncParametricStereo && aBits.ReadFlag();
}

} // namespace

const char* AudioSpecificConfig::GetCodecName() const {
    constexpr std::uint32_t kLowComplexity = 2;
    const ObjectType* const type = FindObjectType(mObjectType);
    if (type == nullptr) {
        return nullptr;
    }
    if (mObjectType == kLowComplexity && mfBandReplicated) {
        return mfParametricStereo ? "HE-AACv2" : "HE-AAC";
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
    config.mfParametricStereo = config.mObjectType == kTypeParametricStereo;
    config.mfBandReplicated = config.mfParametricStereo || config.mObjectType == kTypeReplicated;
    if (config.mfBandReplicated) {
        config.mSamplingRate = ReadSamplingRate(bits);
        config.mObjectType = ReadObjectType(bits);
    }
    if (bits.HasFailed() || config.mSamplingRate == 0) {
        return false;
    }
    const ObjectType* const type = FindObjectType(config.mObjectType);
    if (type != nullptr && type->mfGeneral) {
        ReadGeneralAudio(bits, aSize, channels == 0, config);
        if (!config.mfBandReplicated) {
            ReadLateExtensions(bits, config);
        }
    }
    if (config.mfParametricStereo && config.mChannels == 1) {
        config.mChannels = 2; // of which one channel is coded
    }
    aConfig = config;
    return true;
}
