#include "ezFormats/matroska/MatroskaCodecs.h"

#include "ezFormats/codecs/AV1Video.h"
#include "ezFormats/codecs/BitmapVideo.h"
#include "ezFormats/codecs/CodecWord.h"
#include "ezFormats/codecs/ConfigSound.h"
#include "ezFormats/codecs/DynamicRange.h"
#include "ezFormats/codecs/EncryptedCodec.h"
#include "ezFormats/codecs/FrameSound.h"
#include "ezFormats/codecs/FrameVideo.h"
#include "ezFormats/codecs/H264Video.h"
#include "ezFormats/codecs/H265Video.h"
#include "ezFormats/codecs/MJPEGVideo.h"
#include "ezFormats/codecs/MPEG4Visual.h"
#include "ezFormats/codecs/MPEGVideo.h"
#include "ezFormats/codecs/ProResVideo.h"
#include "ezFormats/codecs/TheoraHeader.h"
#include "ezFormats/codecs/VPXVideo.h"
#include "ezFormats/codecs/VideoFourCC.h"
#include "ezFormats/codecs/VorbisHeader.h"
#include "ezFormats/codecs/WaveFormat.h"
#include "ezFormats/codecs/XiphLacing.h"
#include "ezFormats/detail/MediaNumbers.h"

#include "ezBytes/ByteSource.h"

#include "ezPlatform/text/Case.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;

/// What a codec is told by: each may be empty.
struct CodecData {
    Bytes mPrivate;
    Bytes mFrame; ///< the first one, as much of it as is looked at
};

/// What is special about a codec.
enum CodecTraits : unsigned {
    kPlain = 0,
    kWantsFrame = 1, ///< its first frame tells more
    kLossless = 2,   ///< the bits of a sample are told of it
};

/// A codec by its CodecID, and what reads its data.
template <typename Facts>
struct Codec {
    std::string_view mId; ///< whatever follows a "/" after it
    const char* mName;    ///< as a record has it; empty: the data tell
    void (*mRead)(const CodecData& aData, Facts& aFacts);
    unsigned mTraits = kPlain;
};

template <typename Facts>
void ReadNothing(const CodecData& /*aData*/, Facts& /*aFacts*/) {}

/// What belongs to an id goes before what belongs to the start of it.
template <typename Facts, std::size_t Size>
const Codec<Facts>* FindCodec(const Codec<Facts> (&aCodecs)[Size], const ezCString& anId) {
    for (const Codec<Facts>& codec : aCodecs) {
        const std::string_view id = anId.View();
        const bool fEnds =
            id.size() == codec.mId.size() || (id.size() > codec.mId.size() && id[codec.mId.size()] == '/');
        if (fEnds && ezIsEqualNoCase(id.substr(0, codec.mId.size()), codec.mId)) {
            return &codec;
        }
    }
    return nullptr;
}

// --- Pictures

void Take(const std::optional<VideoFacts>& aFound, VideoFacts& aFacts) {
    if (aFound) {
        aFacts.Complete(*aFound);
    }
}

/// Writers that leave "avcC" out put what it has in front of the first picture, as a byte stream has it.
template <std::optional<VideoFacts> (*ReadConfig)(ByteReader aConfig, const ByteReader* aFirstSample),
          VideoReader ReadStream>
void ReadUnits(const CodecData& aData, VideoFacts& aFacts) {
    BlockBytes config(aData.mPrivate.data(), aData.mPrivate.size());
    BlockBytes frame(aData.mFrame.data(), aData.mFrame.size());
    const ByteReader sample(frame);
    Take(ReadConfig(ByteReader(config), aData.mFrame.empty() ? nullptr : &sample), aFacts);
    Take(ReadStream(aData.mFrame.data(), aData.mFrame.size()), aFacts);
}

/// The headers stand before the first picture, or in its frame.
void ReadMPEGVideo(const CodecData& aData, VideoFacts& aFacts) {
    Bytes stream = aData.mPrivate;
    stream.insert(stream.end(), aData.mFrame.begin(), aData.mFrame.end());
    Take(MPEGVideo_Read(stream.data(), stream.size()), aFacts);
}

/// One reader for what sets the decoder up, and one for the first frame, where there are such things.
template <VideoReader ReadPrivate, VideoReader ReadFrame>
void ReadBoth(const CodecData& aData, VideoFacts& aFacts) {
    if constexpr (ReadPrivate != nullptr) {
        Take(ReadPrivate(aData.mPrivate.data(), aData.mPrivate.size()), aFacts);
    }
    if constexpr (ReadFrame != nullptr) {
        Take(ReadFrame(aData.mFrame.data(), aData.mFrame.size()), aFacts);
    }
}

/// BITMAPINFOHEADER, and after it what the codec needs.
void ReadBitmapInfo(const CodecData& aData, VideoFacts& aFacts) {
    BlockBytes block(aData.mPrivate.data(), aData.mPrivate.size());
    const std::optional<VideoFacts> found =
        BitmapVideo_Read(ByteReader(block), aData.mFrame.data(), aData.mFrame.size());
    if (found) {
        aFacts.mCodec = found->mCodec;
        aFacts.Complete(*found);
    }
}

/// What a sample entry's name says, with what the first frame tells, which is more sure.
void TakeEntry(BoxType aName, const CodecData& aData, VideoFacts& aFacts) {
    const VideoCode* const code = VideoFourCC_FindEntry(aName);
    VideoFacts named;
    named.mCodec = CodecWord_Of(aName.GetText().View());
    if (code != nullptr) {
        named = code->GetFacts();
    }
    Take(FrameVideo_Read(named.mCodec, aData.mFrame.data(), aData.mFrame.size()), aFacts);
    aFacts.Complete(named);
}

/// The description of a sample of QuickTime: a size, and the four characters of the codec.
void ReadQuickTime(const CodecData& aData, VideoFacts& aFacts) {
    BlockBytes block(aData.mPrivate.data(), aData.mPrivate.size());
    ByteReader reader(block);
    reader.Skip(4);
    const BoxType name = BoxType::Read(reader);
    if (!reader.HasFailed()) {
        TakeEntry(name, aData, aFacts);
    }
}

/// The same without its size: these tell the profile, the frame what its pictures are.
void ReadProRes(const CodecData& aData, VideoFacts& aFacts) {
    BlockBytes block(aData.mPrivate.data(), aData.mPrivate.size());
    ByteReader reader(block);
    Take(ProResVideo_Read(aData.mFrame.data(), aData.mFrame.size()), aFacts);
    const VideoCode* const code = VideoFourCC_FindEntry(BoxType::Read(reader));
    if (code != nullptr) {
        aFacts.Complete(code->GetFacts());
    }
}

constexpr auto kNoVideo = ReadNothing<VideoFacts>;
constexpr Codec<VideoFacts> kVideoCodecs[] = {
    {"V_MPEG4/ISO/AVC", "H264", ReadUnits<H264Video_ReadConfig, H264Video_ReadStream>, kWantsFrame},
    {"V_MPEGH/ISO/HEVC", "H265", ReadUnits<H265Video_ReadConfig, H265Video_ReadStream>, kWantsFrame},
    {"V_MPEGI/ISO/VVC", "H266", kNoVideo},
    {"V_AV1", "AV1", ReadBoth<AV1Video_ReadConfig, AV1Video_Read>, kWantsFrame},
    {"V_VP8", "VP8", ReadBoth<nullptr, VP8Video_Read>, kWantsFrame},
    {"V_VP9", "VP9", ReadBoth<VP9Video_ReadFeatures, VP9Video_Read>, kWantsFrame},
    {"V_MPEG1", "MPEG1", ReadMPEGVideo, kWantsFrame},
    {"V_MPEG2", "MPEG2", ReadMPEGVideo, kWantsFrame},
    {"V_MPEG4/MS/V3", "MSMPEG4v3", kNoVideo},
    {"V_MPEG4/ISO", "MPEG4", ReadBoth<MPEG4Visual_Read, MPEG4Visual_Read>, kWantsFrame},
    {"V_MS/VFW/FOURCC", "", ReadBitmapInfo, kWantsFrame},
    {"V_QUICKTIME", "", ReadQuickTime, kWantsFrame},
    {"V_MJPEG", "MJPEG", ReadBoth<nullptr, MJPEGVideo_Read>, kWantsFrame},
    {"V_PNG", "PNG", kNoVideo},
    {"V_THEORA", "Theora", ReadBoth<TheoraVideo_ReadConfig, nullptr>},
    {"V_PRORES", "ProRes", ReadProRes, kWantsFrame},
    {"V_FFV1", "FFV1", kNoVideo},
    {"V_SNOW", "Snow", kNoVideo},
    {"V_DIRAC", "Dirac", kNoVideo},
    {"V_REAL/RV10", "RV10", kNoVideo},
    {"V_REAL/RV20", "RV20", kNoVideo},
    {"V_REAL/RV30", "RV30", kNoVideo},
    {"V_REAL/RV40", "RV40", kNoVideo},
    {"V_UNCOMPRESSED", "raw", kNoVideo}};

// --- Sound

/// Three headers, of which the first tells.
void ReadVorbis(const CodecData& aData, AudioFacts& aFacts) {
    BlockBytes block(aData.mPrivate.data(), aData.mPrivate.size());
    ByteReader reader(block);
    reader.Skip(XiphLacing_FirstAt(aData.mPrivate.data(), aData.mPrivate.size()));
    const VorbisHeader header = ReadVorbisHeader(reader);
    aFacts.mSamplingRate = header.mSamplingRate;
    aFacts.mChannels = header.mSamplingRate != 0 ? header.mChannels : 0;
    aFacts.mBitRate = header.mBitRate;
    aFacts.mMaxBitRate = header.mMaxBitRate;
}

/// The configuration of Apple's lossless codec, of which some writers leave the head of its box.
void ReadALAC(const CodecData& aData, AudioFacts& aFacts) {
    constexpr std::size_t kBoxHead = 12;
    constexpr std::size_t kSize = 24;
    BlockBytes block(aData.mPrivate.data(), aData.mPrivate.size());
    ByteReader reader(block);
    ByteReader type = reader;
    type.Skip(4);
    reader.Skip(aData.mPrivate.size() >= kBoxHead + kSize && BoxType::Read(type) == "alac" ? kBoxHead : 0);
    reader.Skip(5); // length of a frame, version
    const std::uint32_t bits = reader.ReadByte();
    reader.Skip(3);
    const std::uint32_t channels = reader.ReadByte();
    reader.Skip(10); // longest run, largest frame, and a mean rate that many writers state of plain samples
    const std::uint32_t sampling = reader.ReadBig32();
    if (!reader.HasFailed()) {
        aFacts.mBitsPerSample = bits;
        aFacts.mChannels = channels;
        aFacts.mSamplingRate = sampling;
    }
}

void ReadWave(const CodecData& aData, AudioFacts& aFacts) {
    BlockBytes block(aData.mPrivate.data(), aData.mPrivate.size());
    WaveFormat format;
    if (!ReadWaveFormat(ByteReader(block), false, &format)) {
        return;
    }
    aFacts = format.GetFacts();
    const std::uint32_t rate = MediaNumber_BitRate(format.mAverageBytes, 1, 1);
    (format.mRate == WaveFormat::Rate::Varying ? aFacts.mEstimatedBitRate : aFacts.mBitRate) = rate;
}

template <AudioFacts (*Read)(const unsigned char* aBytes, std::size_t aSize)>
void ReadConfigBy(const CodecData& aData, AudioFacts& aFacts) {
    aFacts = Read(aData.mPrivate.data(), aData.mPrivate.size());
}

template <AudioFacts (*Read)(const unsigned char* aBytes, std::size_t aSize)>
void ReadFrameBy(const CodecData& aData, AudioFacts& aFacts) {
    aFacts = Read(aData.mFrame.data(), aData.mFrame.size());
}

constexpr auto kNoSound = ReadNothing<AudioFacts>;
constexpr Codec<AudioFacts> kSoundCodecs[] = {
    {"A_AAC/MPEG2/LC/SBR", "HE-AAC", kNoSound},
    {"A_AAC/MPEG4/LC/SBR", "HE-AAC", kNoSound},
    {"A_AAC/MPEG4/LTP", "AAC-LTP", kNoSound},
    {"A_AAC/MPEG2/MAIN", "AAC-Main", kNoSound},
    {"A_AAC/MPEG4/MAIN", "AAC-Main", kNoSound},
    {"A_AAC/MPEG2/SSR", "AAC-SSR", kNoSound},
    {"A_AAC/MPEG4/SSR", "AAC-SSR", kNoSound},
    {"A_AAC", "AAC", ReadConfigBy<AACSound_ReadConfig>},
    {"A_AC3", "AC3", ReadFrameBy<AC3Sound_Read>, kWantsFrame},
    {"A_EAC3", "EAC3", ReadFrameBy<AC3Sound_Read>, kWantsFrame},
    {"A_DTS", "DTS", ReadFrameBy<DTSSound_Read>, kWantsFrame},
    {"A_TRUEHD", "TrueHD", ReadFrameBy<MLPSound_Read>, kWantsFrame | kLossless},
    {"A_MLP", "MLP", ReadFrameBy<MLPSound_Read>, kWantsFrame | kLossless},
    {"A_MPEG/L3", "MP3", ReadFrameBy<MPEGSound_Read>, kWantsFrame},
    {"A_MPEG/L2", "MP2", ReadFrameBy<MPEGSound_Read>, kWantsFrame},
    {"A_MPEG/L1", "MP1", ReadFrameBy<MPEGSound_Read>, kWantsFrame},
    {"A_OPUS", "Opus", ReadConfigBy<OpusSound_ReadConfig>},
    {"A_VORBIS", "Vorbis", ReadVorbis},
    {"A_FLAC", "FLAC", ReadConfigBy<FLACSound_ReadConfig>, kLossless},
    {"A_ALAC", "ALAC", ReadALAC, kLossless},
    {"A_WAVPACK4", "WavPack", kNoSound, kLossless},
    {"A_TTA1", "TTA", kNoSound, kLossless},
    {"A_MPC", "Musepack", kNoSound},
    {"A_PCM/FLOAT/IEEE", "PCM-float", kNoSound, kLossless},
    {"A_PCM/INT", "LPCM", kNoSound, kLossless},
    {"A_ATRAC/AT1", "ATRAC1", kNoSound},
    {"A_REAL/COOK", "Cook", kNoSound},
    {"A_REAL/SIPR", "Sipro", kNoSound},
    {"A_REAL/RALF", "RealLossless", kNoSound},
    {"A_REAL/ATRC", "ATRAC3", kNoSound},
    {"A_REAL/14_4", "RealAudio1", kNoSound},
    {"A_REAL/28_8", "RealAudio2", kNoSound},
    {"A_MS/ACM", "", ReadWave, kLossless}};

/// An id that no table has, without what stands for the kind.
ezCString NameOf(const ezCString& anId) {
    const std::string_view id = anId.View();
    return CodecWord_Of(id.size() > 1 && id[1] == '_' ? id.substr(2) : id);
}

template <typename Facts, std::size_t Size>
bool HasTrait(const Codec<Facts> (&aCodecs)[Size], const MatroskaTrack& aTrack, CodecTraits aTrait) {
    const Codec<Facts>* const codec = FindCodec(aCodecs, aTrack.mCodecId);
    return codec != nullptr && (codec->mTraits & aTrait) != 0;
}

template <typename Facts, std::size_t Size>
Facts ReadCodec(const Codec<Facts> (&aCodecs)[Size], const MatroskaTrack& aTrack,
                const std::optional<ByteReader>& aFrame) {
    Facts facts;
    const Codec<Facts>* const codec = FindCodec(aCodecs, aTrack.mCodecId);
    if (codec == nullptr) {
        facts.mCodec = NameOf(aTrack.mCodecId);
        return facts;
    }
    const bool fFrame = aFrame && !aTrack.mEncoding.mfEncrypted;
    codec->mRead({aTrack.ReadPrivate(), fFrame ? aTrack.ReadFrame(*aFrame) : Bytes()}, facts);
    if (facts.mCodec.IsEmpty()) {
        facts.mCodec = *codec->mName != '\0' ? ezCString(codec->mName) : NameOf(aTrack.mCodecId);
    }
    return facts;
}

} // namespace

bool MatroskaCodec_WantsFrame(const MatroskaTrack& aTrack) {
    const bool fTells =
        HasTrait(kVideoCodecs, aTrack, kWantsFrame) || HasTrait(kSoundCodecs, aTrack, kWantsFrame);
    return fTells && !aTrack.mEncoding.mfEncrypted;
}

VideoFacts MatroskaCodec_ReadVideo(const MatroskaTrack& aTrack, const std::optional<ByteReader>& aFrame) {
    constexpr std::uint32_t kNanos = 1'000'000'000;
    const VideoFacts codec = ReadCodec(kVideoCodecs, aTrack, aFrame);
    VideoFacts facts = aTrack.mVideo;
    facts.mFrameRate = MediaNumber_FrameRate(1, aTrack.mFrameTime, kNanos);
    // Metadata may stand in the codec alone, where the container says only how bright colours are meant.
    const bool fDolby = facts.mHDR != nullptr && std::string_view(facts.mHDR) == kHDR_DolbyVision;
    DynamicRange range;
    range.TakeKind(codec.mHDR);
    range.TakeKind(facts.mHDR);
    facts.mHDR = fDolby ? kHDR_DolbyVision : range.GetKind();
    facts.Complete(codec);
    if (!facts.mPixelAspect.IsKnown()) {
        facts.mPixelAspect = VideoRatio::Of(1, 1); // what players take where nothing says otherwise
    }
    facts.mCodec = aTrack.mEncoding.mfEncrypted ? EncryptedCodecName(facts.mCodec) : facts.mCodec;
    return facts;
}

AudioFacts MatroskaCodec_ReadSound(const MatroskaTrack& aTrack, const std::optional<ByteReader>& aFrame) {
    AudioFacts facts = ReadCodec(kSoundCodecs, aTrack, aFrame);
    // The entry alone may say that a decoder of today doubles the rate of the core.
    if (facts.mCodec == "AAC" && aTrack.mSound.mSamplingRate == 2 * facts.mSamplingRate) {
        facts.mCodec = "HE-AAC";
        facts.mSamplingRate = aTrack.mSound.mSamplingRate;
    }
    AudioFacts stated = aTrack.mSound;
    stated.mBitsPerSample = HasTrait(kSoundCodecs, aTrack, kLossless) ? stated.mBitsPerSample : 0;
    facts.Complete(stated);
    if (facts.mCodec == "LPCM" || facts.mCodec == "PCM-float") {
        const std::uint64_t bits = std::uint64_t{facts.mChannels} * facts.mBitsPerSample;
        facts.mBitRate = MediaNumber_BitRate(bits, 8, facts.mSamplingRate);
    }
    facts.mCodec = aTrack.mEncoding.mfEncrypted ? EncryptedCodecName(facts.mCodec) : facts.mCodec;
    return facts;
}
