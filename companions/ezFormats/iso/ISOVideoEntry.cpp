#include "ezFormats/iso/ISOCodec.h"

#include "ezBytes/BoxWalk.h"
#include "ezFormats/codecs/AV1Video.h"
#include "ezFormats/codecs/CodecWord.h"
#include "ezFormats/codecs/ESDescriptor.h"
#include "ezFormats/codecs/ESDescriptorLimits.h"
#include "ezFormats/codecs/EncryptedCodec.h"
#include "ezFormats/codecs/FrameVideo.h"
#include "ezFormats/codecs/H263Video.h"
#include "ezFormats/codecs/H264Video.h"
#include "ezFormats/codecs/H265Video.h"
#include "ezFormats/codecs/MPEG4Visual.h"
#include "ezFormats/codecs/MPEGVideo.h"
#include "ezFormats/codecs/VC1Video.h"
#include "ezFormats/codecs/VPXVideo.h"
#include "ezFormats/codecs/VideoFourCC.h"
#include "ezFormats/detail/Limits.h"
#include "ezFormats/iso/ISOLimits.h"
#include "ezFormats/iso/ISOPictureSigns.h"
#include "ezFormats/iso/ISOSampleEntry.h"

#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <vector>

namespace {

/// The names of entries each sample of which is a picture file.
bool IsOfPictures(BoxType aFormat) {
    constexpr std::array<BoxType, 3> kNames = {{"jpeg", "png ", "gif "}};
    return std::find(kNames.begin(), kNames.end(), aFormat) != kNames.end();
}

/// The names of entries whose pictures need a decoder of Dolby Vision (Dolby Vision Streams within the ISO
/// Base Media File Format, 3.1).
bool IsDolbyVision(BoxType aFormat) {
    constexpr std::array<BoxType, 4> kNames = {{"dva1", "dvav", "dvh1", "dvhe"}};
    return std::find(kNames.begin(), kNames.end(), aFormat) != kNames.end();
}

struct VideoObject {
    std::uint32_t mObjectType;
    const char* mName;
    const char* mProfile;
    bool mfPictures;
    VideoReader mReadConfig; ///< of what sets a decoder up; null: it is not looked at
};
/// Object type indications of "mp4v"; those of MPEG-2 tell the profile.
constexpr std::array<VideoObject, 13> kObjects = {{{0x20, "MPEG4", nullptr, false, MPEG4Visual_Read},
                                                   {0x21, "H264", nullptr, false, nullptr},
                                                   {0x23, "H265", nullptr, false, nullptr},
                                                   {0x60, "MPEG2", "Simple", false, MPEGVideo_Read},
                                                   {0x61, "MPEG2", "Main", false, MPEGVideo_Read},
                                                   {0x62, "MPEG2", "SNR", false, MPEGVideo_Read},
                                                   {0x63, "MPEG2", "Spatial", false, MPEGVideo_Read},
                                                   {0x64, "MPEG2", "High", false, MPEGVideo_Read},
                                                   {0x65, "MPEG2", "4:2:2", false, MPEGVideo_Read},
                                                   {0x6A, "MPEG1", nullptr, false, MPEGVideo_Read},
                                                   {0x6C, "MJPEG", nullptr, true, nullptr},
                                                   {0x6D, "PNG", nullptr, true, nullptr},
                                                   {0xA3, "VC1", nullptr, false, VC1Video_ReadConfig}}};

struct ISOVideoEntry : ISOEntryFacts {
    VideoFacts mFacts;   ///< of the codec's own headers
    bool mfSize = false; ///< the entry states a size
    bool mfOpen = false; ///< these headers stand in the samples, or leave open whether there are fields
    bool mfFieldsUnseen = false;         ///< there may be fields, and the first sample is none
    const ByteReader* mSample = nullptr; ///< the first one; null: it is not looked at
    ISOPictureSigns mSigns;
};

/// Takes what the codec's own headers tell, where they tell anything.
void TakeCodec(const std::optional<VideoFacts>& aFacts, ISOVideoEntry& anEntry) {
    if (aFacts.has_value()) {
        anEntry.mFacts = *aFacts;
        TakeRates(aFacts->mMaxBitRate, aFacts->mBitRate, anEntry);
    }
}

/// Takes it from a box; what is longer than any configuration counts up to there.
template <VideoReader Read>
void ReadConfig(ByteReader aBox, ISOVideoEntry& anEntry) {
    std::array<unsigned char, kESDescriptor_MaxConfig> bytes = {};
    const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(aBox.GetLeft(), bytes.size()));
    if (aBox.Read(bytes.data(), size)) {
        TakeCodec(Read(bytes.data(), size), anEntry);
    }
}

template <void (*Read)(ByteReader aBox, ISOPictureSigns& aSigns)>
void ReadSigns(ByteReader aBox, ISOVideoEntry& anEntry) {
    Read(aBox, anEntry.mSigns);
}

bool MayHaveFields(const VideoFacts& aFacts) {
    return aFacts.mScan != nullptr && std::string_view(aFacts.mScan) == kScan_Interlaced;
}

/// Of "avcC" (ISO/IEC 14496-15, 5.3.3.1).
void ReadAVC(ByteReader aBox, ISOVideoEntry& anEntry) {
    const std::optional<VideoFacts> facts = H264Video_ReadConfig(aBox);
    if (!facts.has_value()) {
        return;
    }
    const bool fFields = MayHaveFields(*facts);
    anEntry.mfOpen = fFields || facts->mWidth == 0;
    if (anEntry.mfOpen && anEntry.mSample != nullptr) {
        TakeCodec(H264Video_ReadConfig(aBox, anEntry.mSample), anEntry);
        anEntry.mfFieldsUnseen = fFields && !MayHaveFields(anEntry.mFacts);
    } else {
        TakeCodec(facts, anEntry);
    }
}

/// Of "hvcC" (ISO/IEC 14496-15, 8.3.3.1). The size is that of the entry where it states one: writers differ
/// in what a frame of fields has.
void ReadHEVC(ByteReader aBox, ISOVideoEntry& anEntry) {
    std::optional<VideoFacts> facts = H265Video_ReadConfig(aBox);
    anEntry.mfOpen = facts.has_value() && facts->mWidth == 0;
    if (anEntry.mfOpen && anEntry.mSample != nullptr) {
        facts = H265Video_ReadConfig(aBox, anEntry.mSample);
    }
    if (facts.has_value() && anEntry.mfSize) {
        facts->mWidth = 0;
        facts->mHeight = 0;
    }
    TakeCodec(facts, anEntry);
}

constexpr std::array<ISOBoxReader<ISOVideoEntry>, 17> kBoxReaders = {
    {{"avcC", ReadAVC},
     {"hvcC", ReadHEVC},
     {"d263", ReadConfig<H263Video_ReadConfig>},
     {"av1C", ReadConfig<AV1Video_ReadConfig>},
     {"vpcC", ReadConfig<VP9Video_ReadConfig>},
     {"dvc1", ReadConfig<VC1Video_ReadConfig>},
     {"pasp", ReadSigns<ReadPixelAspect>},
     {"clap", ReadSigns<ReadCleanAperture>},
     {"fiel", ReadSigns<ReadFields>},
     {"colr", ReadSigns<ReadColours>},
     {"mdcv", ReadSigns<ReadStaticMetadata>},
     {"clli", ReadSigns<ReadStaticMetadata>},
     {"SmDm", ReadSigns<ReadStaticMetadata>},
     {"CoLL", ReadSigns<ReadStaticMetadata>},
     {"dvcC", ReadSigns<ReadDolbyVision>},
     {"dvvC", ReadSigns<ReadDolbyVision>},
     {"dvwC", ReadSigns<ReadDolbyVision>}}};

/// The fixed part: VisualSampleEntry (ISO/IEC 14496-12, 12.1.3).
void ReadPicture(ByteReader& aReader, VideoFacts& aFacts) {
    aReader.Skip(16); // pre_defined and reserved
    aFacts.mWidth = static_cast<std::uint32_t>(aReader.ReadBig(2));
    aFacts.mHeight = static_cast<std::uint32_t>(aReader.ReadBig(2));
    aReader.Skip(50); // resolution, frame_count, compressorname, depth, pre_defined
}

const VideoObject* FindObject(std::uint32_t aType) {
    const auto* const known = std::find_if(kObjects.begin(), kObjects.end(), [=](const VideoObject& aKnown) {
        return aKnown.mObjectType == aType;
    });
    return known != kObjects.end() ? known : nullptr;
}

/// Of "mp4v": the stream's descriptor tells what the samples are. True when it does.
bool NameByStream(ISOVideoEntry& anEntry, ISOVideo& aVideo) {
    const ESDescriptor& stream = *anEntry.mStream;
    const VideoObject* const object = FindObject(stream.mObjectType);
    if (object == nullptr) {
        return false;
    }
    if (object->mReadConfig != nullptr) {
        TakeCodec(object->mReadConfig(stream.mConfig.data(), stream.mConfigSize), anEntry);
    }
    aVideo.mCodec = object->mName;
    aVideo.mProfile = object->mProfile;
    aVideo.mfPictures = object->mfPictures;
    return true;
}

/// Names the codec by its four characters, and those that are not known by themselves.
void NameByFormat(BoxType aFormat, ISOVideo& aVideo) {
    const VideoCode* const code = VideoFourCC_FindEntry(aFormat);
    if (code == nullptr) {
        aVideo.mCodec = CodecWord_OfFormat(aFormat);
        return;
    }
    VideoFacts facts = code->GetFacts();
    facts.Complete(aVideo);
    static_cast<VideoFacts&>(aVideo) = facts;
    aVideo.mfPictures = IsOfPictures(aFormat);
}

/// Of codecs whose headers stand in the stream, which the entry has not told: what the first sample begins
/// with.
void TakeFrame(const ISOVideo& aVideo, ISOVideoEntry& anEntry) {
    const VideoFacts& facts = anEntry.mFacts;
    const bool fPictures = facts.mBitDepth != 0 && facts.mScan != nullptr;
    const bool fTold = facts.mWidth != 0 || fPictures || anEntry.mfOpen;
    if (fTold || !FrameVideo_Tells(aVideo.mCodec)) {
        return;
    }
    anEntry.mfOpen = true;
    if (anEntry.mSample == nullptr) {
        return;
    }
    std::vector<unsigned char> bytes(static_cast<std::size_t>(anEntry.mSample->GetLeft()));
    ByteReader sample = *anEntry.mSample;
    const std::optional<VideoFacts> found = sample.Read(bytes.data(), bytes.size())
                                                ? FrameVideo_Read(aVideo.mCodec, bytes.data(), bytes.size())
                                                : std::nullopt;
    anEntry.mFacts.Complete(found.value_or(VideoFacts()));
}

/// Puts together what the entry names and states, what the codec's headers tell, which is more sure, and how
/// the pictures are shown.
void Combine(const ISOVideoEntry& anEntry, ISOVideo& aVideo) {
    constexpr std::string_view kVC1 = "VC1"; // entries name no profile, and two have another word
    VideoFacts facts = anEntry.mFacts;
    if (facts.mCodec.IsEmpty() || aVideo.mCodec.View() != kVC1) {
        facts.mCodec = aVideo.mCodec;
    }
    facts.Complete(aVideo);
    if (anEntry.mfFieldsUnseen) {
        facts.mScan = nullptr;
    }
    anEntry.mSigns.ApplyTo(facts);
    if (anEntry.mfFieldsUnseen && facts.mScan == nullptr) {
        facts.mScan = kScan_Progressive;
    }
    facts.mBitRate = anEntry.mBitRate;
    facts.mMaxBitRate = anEntry.mMaxBitRate;
    static_cast<VideoFacts&>(aVideo) = facts;
}

} // namespace

ISOVideo ReadVideoDescription(ByteReader aTable, std::uint32_t& aBoxBudget, const ByteReader* aSample) {
    ISOSampleEntry sample(aTable, aBoxBudget);
    ISOVideoEntry entry;
    entry.mSample = aSample;
    ISOVideo video;
    ReadPicture(sample.mContent, video);
    entry.mfSize = video.mWidth != 0 && video.mHeight != 0;
    if (sample.mContent.HasFailed()) {
        ISOVideo named;
        named.mCodec = CodecWord_OfFormat(sample.mFormat);
        return named;
    }
    ReadBoxes(sample.mContent, kBoxReaders, aBoxBudget, entry);
    const bool fEncrypted = sample.mFormat == "encv" || sample.mFormat.GetText().StartsWith("drm");
    const BoxType format = fEncrypted ? entry.mOriginal.value_or(sample.mFormat) : sample.mFormat;
    if (!entry.mStream.has_value() || format != "mp4v") {
        NameByFormat(format, video);
    } else if (!NameByStream(entry, video)) {
        video.mCodec = CodecWord_OfFormat(format);
    }
    if (!fEncrypted) {
        TakeFrame(video, entry);
    }
    entry.mSigns.mfDolbyVision = entry.mSigns.mfDolbyVision || IsDolbyVision(format);
    Combine(entry, video);
    video.mfWantsSample = entry.mfOpen && !fEncrypted && aSample == nullptr;
    if (fEncrypted) {
        video.mCodec = EncryptedCodecName(video.mCodec);
    }
    return video;
}
