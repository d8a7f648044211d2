#include "ezFormats/flv/FLVCodecs.h"

#include "ezFormats/codecs/AV1Video.h"
#include "ezFormats/codecs/CodecWord.h"
#include "ezFormats/codecs/ConfigSound.h"
#include "ezFormats/codecs/EncryptedCodec.h"
#include "ezFormats/codecs/FrameSound.h"
#include "ezFormats/codecs/H263Video.h"
#include "ezFormats/codecs/H264Video.h"
#include "ezFormats/codecs/H265Video.h"
#include "ezFormats/codecs/MPEG4Visual.h"
#include "ezFormats/codecs/VP6Video.h"
#include "ezFormats/codecs/VPXVideo.h"
#include "ezFormats/detail/MediaNumbers.h"

#include "ezBytes/BitReader.h"
#include "ezBytes/BoxWalk.h"
#include "ezBytes/ByteReader.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>

namespace {

/// A codec by its number or four characters.
template <typename Facts>
struct Codec {
    std::uint32_t mId;
    const char* mName; ///< as a record has it
    void (*mRead)(const FLVTrack& aTrack, Facts& aFacts);
};

template <typename Facts>
void ReadNothing(const FLVTrack& /*aTrack*/, Facts& /*aFacts*/) {}

template <typename Facts, std::size_t Size>
const Codec<Facts>* FindCodec(const Codec<Facts> (&aCodecs)[Size], std::uint32_t anId) {
    const Codec<Facts>* const end = std::end(aCodecs);
    const Codec<Facts>* const found = std::find_if(
        std::begin(aCodecs), end, [=](const Codec<Facts>& aCodec) { return aCodec.mId == anId; });
    return found != end ? found : nullptr;
}

/// One that no table has: "FLV-13", or its four characters.
ezCString NameOf(std::uint32_t anId) {
    constexpr std::uint32_t kNumbers = 16;
    return anId < kNumbers ? ezCString::Format("FLV-%u", unsigned{anId})
                           : CodecWord_Of(BoxType(anId).GetText().View());
}

// --- Pictures

void Take(const std::optional<VideoFacts>& aFound, VideoFacts& aFacts) {
    if (aFound.has_value()) {
        aFacts.Complete(*aFound);
    }
}

template <VideoReader ReadFrame>
void ReadPicture(const FLVTrack& aTrack, VideoFacts& aFacts) {
    Take(ReadFrame(aTrack.mFrame.data(), aTrack.mFrame.size()), aFacts);
}

/// One reader for what sets the decoder up, and one for the first frame.
template <VideoReader ReadConfig, VideoReader ReadFrame>
void ReadBoth(const FLVTrack& aTrack, VideoFacts& aFacts) {
    Take(ReadConfig(aTrack.mConfig.data(), aTrack.mConfig.size()), aFacts);
    Take(ReadFrame(aTrack.mFrame.data(), aTrack.mFrame.size()), aFacts);
}

template <std::optional<VideoFacts> (*ReadConfig)(ByteReader aConfig, const ByteReader* aFirstSample)>
void ReadUnits(const FLVTrack& aTrack, VideoFacts& aFacts) {
    BlockBytes config(aTrack.mConfig.data(), aTrack.mConfig.size());
    BlockBytes frame(aTrack.mFrame.data(), aTrack.mFrame.size());
    const ByteReader sample(frame);
    Take(ReadConfig(ByteReader(config), aTrack.mFrame.empty() ? nullptr : &sample), aFacts);
}

/// Screen video of either version (E.4.3.3): sizes of the blocks and of the picture. The second one may have
/// palettes.
template <bool IsRGB>
void ReadScreen(const FLVTrack& aTrack, VideoFacts& aFacts) {
    ezBitReader bits(aTrack.mFrame.data(), 8 * aTrack.mFrame.size());
    bits.Skip(4);
    const std::uint32_t width = bits.Read(12);
    bits.Skip(4);
    const std::uint32_t height = bits.Read(12);
    if (!bits.HasFailed() && width != 0 && height != 0) {
        aFacts.mWidth = width;
        aFacts.mHeight = height;
        aFacts.mScan = kScan_Progressive;
        aFacts.mColours = IsRGB ? "RGB" : nullptr;
        aFacts.mBitDepth = IsRGB ? 8 : 0;
    }
}

/// VP6 (E.4.3.4): what is cut off right and at the bottom stands in front, with transparency after it the
/// size of the first of two frames.
template <std::size_t HeadSize>
void ReadVP6(const FLVTrack& aTrack, VideoFacts& aFacts) {
    const std::vector<unsigned char>& frame = aTrack.mFrame;
    if (frame.size() <= HeadSize) {
        return;
    }
    std::optional<VideoFacts> facts = VP6Video_Read(frame.data() + HeadSize, frame.size() - HeadSize);
    if (facts.has_value()) { // both sides have 16 pixels at least
        facts->mWidth -= frame[0] >> 4;
        facts->mHeight -= frame[0] & 15U;
        Take(facts, aFacts);
    }
}

/// Some writers put version and flags in front, as the box has them; without these a record of such bytes has
/// no bit depth.
void ReadVP9(const FLVTrack& aTrack, VideoFacts& aFacts) {
    constexpr std::array<unsigned char, 4> kBoxHead = {1, 0, 0, 0};
    std::vector<unsigned char> box = aTrack.mConfig;
    if (box.size() < kBoxHead.size() || !std::equal(kBoxHead.begin(), kBoxHead.end(), box.begin())) {
        box.insert(box.begin(), kBoxHead.begin(), kBoxHead.end());
    }
    Take(VP9Video_ReadConfig(box.data(), box.size()), aFacts);
    ReadPicture<VP9Video_Read>(aTrack, aFacts);
}

constexpr auto kNoVideo = ReadNothing<VideoFacts>;
constexpr Codec<VideoFacts> kVideoCodecs[] = {
    {1, "MJPEG", kNoVideo},
    {2, "Sorenson", ReadPicture<SorensonVideo_Read>},
    {3, "ScreenVideo", ReadScreen<true>},
    {4, "VP6", ReadVP6<1>},
    {5, "VP6A", ReadVP6<4>},
    {6, "ScreenVideo2", ReadScreen<false>},
    {7, "H264", ReadUnits<H264Video_ReadConfig>},
    {8, "H263", ReadPicture<H263Video_Read>},
    {9, "MPEG4", ReadPicture<MPEG4Visual_Read>},
    {12, "H265", ReadUnits<H265Video_ReadConfig>},
    {BoxType("avc1").GetCode(), "H264", ReadUnits<H264Video_ReadConfig>},
    {BoxType("hvc1").GetCode(), "H265", ReadUnits<H265Video_ReadConfig>},
    {BoxType("vvc1").GetCode(), "H266", kNoVideo},
    {BoxType("av01").GetCode(), "AV1", ReadBoth<AV1Video_ReadConfig, AV1Video_Read>},
    {BoxType("vp09").GetCode(), "VP9", ReadVP9},
    {BoxType("vp08").GetCode(), "VP8", ReadPicture<VP8Video_Read>}};

// --- Sound

/// Rate, size of a sample and channels by the first byte (E.4.2.1).
void ReadMarks(const FLVTrack& aTrack, AudioFacts& aFacts) {
    constexpr std::uint32_t kRates[] = {5512, 11025, 22050, 44100};
    AudioFacts marks;
    marks.mSamplingRate = kRates[aTrack.mFirst >> 2 & 3U];
    marks.mChannels = (aTrack.mFirst & 1U) + 1U;
    aFacts.Complete(marks);
}

/// Sound of one rate, whatever it is marked with, and where they are not 0 of so many channels.
template <std::uint32_t SamplingRate, std::uint32_t Channels = 0>
void ReadFixed(const FLVTrack& aTrack, AudioFacts& aFacts) {
    aFacts.mSamplingRate = SamplingRate;
    aFacts.mChannels = Channels;
    ReadMarks(aTrack, aFacts);
}

/// Samples as they are: of one or two bytes.
void ReadSamples(const FLVTrack& aTrack, AudioFacts& aFacts) {
    ReadMarks(aTrack, aFacts);
    aFacts.mBitsPerSample = (aTrack.mFirst & 2U) != 0 ? 16 : 8;
    const std::uint64_t bits = std::uint64_t{aFacts.mChannels} * aFacts.mBitsPerSample;
    aFacts.mBitRate = MediaNumber_BitRate(bits, 8, aFacts.mSamplingRate);
}

template <AudioFacts (*ReadFrame)(const unsigned char* aBytes, std::size_t aSize)>
void ReadSoundFrame(const FLVTrack& aTrack, AudioFacts& aFacts) {
    const AudioFacts frame = ReadFrame(aTrack.mFrame.data(), aTrack.mFrame.size());
    if (!frame.mCodec.IsEmpty()) {
        aFacts = frame;
    }
}

/// What a frame does not tell is as it is marked, but for a rate that the number stands for.
template <std::uint32_t SamplingRate>
void ReadMPEGSound(const FLVTrack& aTrack, AudioFacts& aFacts) {
    ReadSoundFrame<MPEGSound_Read>(aTrack, aFacts);
    AudioFacts fixed;
    fixed.mSamplingRate = SamplingRate;
    aFacts.Complete(fixed);
    ReadMarks(aTrack, aFacts);
}

/// The marks are the same for all of a codec.
template <AudioFacts (*ReadConfig)(const unsigned char* aBytes, std::size_t aSize)>
void ReadSoundConfig(const FLVTrack& aTrack, AudioFacts& aFacts) {
    aFacts = ReadConfig(aTrack.mConfig.data(), aTrack.mConfig.size());
}

constexpr Codec<AudioFacts> kSoundCodecs[] = {
    {0, "LPCM", ReadSamples},
    {1, "ADPCM-SWF", ReadMarks},
    {2, "MP3", ReadMPEGSound<0>},
    {3, "LPCM", ReadSamples},
    {4, "Nellymoser", ReadFixed<16000, 1>},
    {5, "Nellymoser", ReadFixed<8000, 1>},
    {6, "Nellymoser", ReadMarks},
    {7, "alaw", ReadFixed<8000>},
    {8, "ulaw", ReadFixed<8000>},
    {10, "AAC", ReadSoundConfig<AACSound_ReadConfig>},
    {11, "Speex", ReadFixed<16000, 1>},
    {14, "MP3", ReadMPEGSound<8000>},
    {BoxType("mp4a").GetCode(), "AAC", ReadSoundConfig<AACSound_ReadConfig>},
    {BoxType(".mp3").GetCode(), "MP3", ReadSoundFrame<MPEGSound_Read>},
    {BoxType("ac-3").GetCode(), "AC3", ReadSoundFrame<AC3Sound_Read>},
    {BoxType("ec-3").GetCode(), "EAC3", ReadSoundFrame<AC3Sound_Read>},
    {BoxType("Opus").GetCode(), "Opus", ReadSoundConfig<OpusSound_ReadConfig>},
    {BoxType("fLaC").GetCode(), "FLAC", ReadSoundConfig<FLACSound_ReadConfig>}};

template <typename Facts, std::size_t Size>
Facts ReadCodec(const Codec<Facts> (&aCodecs)[Size], const FLVTrack& aTrack) {
    Facts facts;
    const Codec<Facts>* const codec = FindCodec(aCodecs, aTrack.mCodec);
    facts.mCodec = codec != nullptr ? ezCString(codec->mName) : NameOf(aTrack.mCodec);
    if (aTrack.mfEncrypted) {
        facts.mCodec = EncryptedCodecName(facts.mCodec);
    } else if (codec != nullptr) {
        codec->mRead(aTrack, facts);
    }
    return facts;
}

} // namespace

VideoFacts FLVCodec_ReadVideo(const FLVTrack& aTrack) {
    return ReadCodec(kVideoCodecs, aTrack);
}

AudioFacts FLVCodec_ReadSound(const FLVTrack& aTrack) {
    return ReadCodec(kSoundCodecs, aTrack);
}
