#include "ezFormats/codecs/ConfigSound.h"

#include "ezFormats/codecs/AudioSpecificConfig.h"
#include "ezFormats/codecs/FLACStreamInfo.h"
#include "ezFormats/codecs/OpusHeader.h"

#include "ezBytes/ByteReader.h"

AudioFacts AACSound_ReadConfig(const unsigned char* aBytes, std::size_t aSize) {
    AudioFacts facts;
    facts.mCodec = "AAC";
    AudioSpecificConfig config;
    if (AudioSpecificConfig_Read(aBytes, aSize, config)) {
        const char* const name = config.GetCodecName();
        facts.mCodec = name != nullptr ? ezCString(name) : facts.mCodec;
        facts.mSamplingRate = config.mSamplingRate;
        facts.mChannels = config.mChannels;
    }
    return facts;
}

AudioFacts OpusSound_ReadConfig(const unsigned char* aBytes, std::size_t aSize) {
    BlockBytes block(aBytes, aSize);
    AudioFacts facts;
    facts.mCodec = "Opus";
    facts.mSamplingRate = kOpus_SamplingRate;
    facts.mChannels = ReadOpusHeader(ByteReader(block)).mChannels;
    return facts;
}

AudioFacts FLACSound_ReadConfig(const unsigned char* aBytes, std::size_t aSize) {
    BlockBytes block(aBytes, aSize);
    ByteReader reader(block);
    reader.Require(reader.ReadText(4) == "fLaC");
    const FLACStreamInfo info = ReadFLACStreamInfo(reader);
    AudioFacts facts;
    facts.mCodec = "FLAC";
    facts.mSamplingRate = info.mSamplingRate;
    facts.mChannels = info.mChannels;
    facts.mBitsPerSample = info.mBitsPerSample;
    return facts;
}
