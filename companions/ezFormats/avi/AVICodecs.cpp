#include "ezFormats/avi/AVICodecs.h"

#include "ezFormats/avi/AVILimits.h"
#include "ezFormats/codecs/ADTSHeader.h"
#include "ezFormats/codecs/AudioSpecificConfig.h"
#include "ezFormats/codecs/BitmapVideo.h"
#include "ezFormats/codecs/DVSound.h"
#include "ezFormats/codecs/DVVideo.h"
#include "ezFormats/codecs/FrameSound.h"
#include "ezFormats/codecs/FrameVideo.h"
#include "ezFormats/codecs/WaveFormat.h"
#include "ezFormats/detail/MediaNumbers.h"

#include "ezBytes/ByteSource.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;

/// Of a bitmap's format and the first frame. Pictures with sound are not described as a bitmap is, and are
/// always DV.
VideoFacts ReadPictures(const AVIStream& aStream, const Bytes& aFrame) {
    VideoFacts facts;
    if (aStream.mKind == AVIKind::Both) {
        facts = DVVideo_Read(aFrame.data(), aFrame.size()).value_or(facts);
        facts.mCodec = "DV";
        return facts;
    }
    BlockBytes format(aStream.mFormat.data(), aStream.mFormat.size());
    return BitmapVideo_Read(ByteReader(format), aFrame.data(), aFrame.size()).value_or(facts);
}

AudioFacts ReadADTS(const unsigned char* aBytes, std::size_t aSize) {
    AudioFacts facts;
    ezADTSHeader header = {};
    if (aSize >= kADTSHeaderSize && ezADTSHeader_Read(aBytes, header)) {
        facts.mCodec = "AAC";
        facts.mSamplingRate = header.mSamplingRate;
        facts.mChannels = header.mChannels;
    }
    return facts;
}

/// A codec of sound whose frames tell more than the format does.
struct Codec {
    std::uint32_t mTag;
    AudioFacts (*mRead)(const unsigned char* aBytes, std::size_t aSize);
};
constexpr Codec kCodecs[] = {{kWaveTag_MPEG, MPEGSound_Read},
                             {kWaveTag_MP3, MPEGSound_Read},
                             {0x2000, AC3Sound_Read},
                             {0x2001, DTSSound_Read},
                             {0x00FF, ReadADTS},
                             {0x706D, ReadADTS},
                             {0x4143, ReadADTS},
                             {0xA106, ReadADTS},
                             {0x1600, ReadADTS}};

const Codec* FindCodec(std::uint32_t aTag) {
    const auto* const found = std::find_if(std::begin(kCodecs), std::end(kCodecs),
                                           [=](const Codec& aCodec) { return aCodec.mTag == aTag; });
    return found != std::end(kCodecs) ? found : nullptr;
}

WaveFormat WaveOf(const AVIStream& aStream) {
    WaveFormat format;
    BlockBytes bytes(aStream.mFormat.data(), aStream.mFormat.size());
    ReadWaveFormat(ByteReader(bytes), false, &format);
    return format;
}

/// How a decoder of AAC is set up, after WAVEFORMATEX.
void TakeAACConfig(const Bytes& aFormat, AudioFacts& aFacts) {
    constexpr std::size_t kFormatSize = 18;
    const std::size_t start = std::min(aFormat.size(), kFormatSize);
    AudioSpecificConfig config;
    if (AudioSpecificConfig_Read(aFormat.data() + start, aFormat.size() - start, config) &&
        config.GetCodecName() != nullptr) {
        aFacts.mCodec = config.GetCodecName();
        aFacts.mSamplingRate = config.mSamplingRate;
        aFacts.mChannels = config.mChannels;
    }
}

/// The first frame need not begin where the chunk does: one that begins after it must go with the format.
AudioFacts ReadFirst(const Codec& aCodec, const WaveFormat& aFormat, const Bytes& aBytes) {
    for (std::size_t i = 0; i < aBytes.size(); ++i) {
        AudioFacts facts = aCodec.mRead(aBytes.data() + i, aBytes.size() - i);
        if (!facts.mCodec.IsEmpty() && (i == 0 || facts.mSamplingRate == aFormat.mSamplingRate)) {
            return facts;
        }
    }
    return {};
}

/// The rate that is stated is the codec's own where a frame says the same and all units are of one size; else
/// it is a mean, or what its writer takes for one.
void SetRate(const WaveFormat& aFormat, bool afFrames, AudioFacts& aFacts) {
    const std::uint32_t stated = MediaNumber_BitRate(aFormat.mAverageBytes, 1, 1);
    const std::uint32_t frame = std::max(aFacts.mBitRate, aFacts.mEstimatedBitRate);
    const std::uint32_t tolerance = frame / 50;
    if (aFacts.mBitRate != 0 || stated == 0) {
        return; // of a codec whose frames have one rate
    }
    const bool fSame = stated <= frame + tolerance && frame <= stated + tolerance;
    const bool fConstant = frame == 0 ? aFormat.mRate != WaveFormat::Rate::Varying : fSame && !afFrames;
    aFacts.mBitRate = !fConstant ? 0 : frame != 0 ? frame : stated;
    aFacts.mEstimatedBitRate = fConstant ? 0 : stated;
}

} // namespace

std::size_t AVICodec_GetVideoLook(const AVIStream& aStream) {
    return FrameVideo_Tells(ReadPictures(aStream, {}).mCodec) ? kAVI_MaxFrame : 0;
}

std::size_t AVICodec_GetSoundLook(const AVIStream& aStream) {
    const bool fFrames = aStream.mKind != AVIKind::Both && FindCodec(WaveOf(aStream).mTag) != nullptr;
    return aStream.mKind == AVIKind::Both ? kDVSound_SequenceSize : fFrames ? kAVI_MaxFrame : 0;
}

VideoFacts AVICodec_ReadVideo(const AVIStream& aStream, const Bytes& aFrame) {
    const VideoFacts coded = ReadPictures(aStream, aFrame);
    VideoFacts facts;
    facts.mFrameRate = aStream.GetFrameRate();
    facts.mPixelAspect = VideoRatio::OfPixel(aStream.mDisplayAspect, coded.mWidth, coded.mHeight);
    facts.Complete(coded);
    if (facts.mScan == nullptr && aStream.mFields == 2) {
        facts.mScan = kScan_Interlaced;
    }
    return facts;
}

AudioFacts AVICodec_ReadSound(const AVIStream& aStream, const Bytes& aFrame, std::uint32_t* aTrackCount) {
    *aTrackCount = 1;
    if (aStream.mKind == AVIKind::Both) {
        const DVSound sound = DVSound_Read(aFrame.data(), aFrame.size());
        *aTrackCount = sound.mTrackCount;
        return sound.mFacts;
    }
    const WaveFormat format = WaveOf(aStream);
    const Codec* const codec = FindCodec(format.mTag);
    AudioFacts facts;
    if (codec != nullptr && codec->mRead == ReadADTS) {
        TakeAACConfig(aStream.mFormat, facts);
    }
    if (codec != nullptr && facts.mCodec.IsEmpty()) {
        facts = ReadFirst(*codec, format, aFrame);
    }
    SetRate(format, aStream.mUnitSize == 0, facts);
    facts.Complete(format.GetFacts());
    return facts;
}
