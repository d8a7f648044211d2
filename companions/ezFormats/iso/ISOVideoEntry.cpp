#include "ezFormats/iso/ISOCodec.h"

#include "ezBytes/BoxWalk.h"
#include "ezFormats/codecs/AV1Video.h"
#include "ezFormats/codecs/EncryptedCodec.h"
#include "ezFormats/codecs/H263Video.h"
#include "ezFormats/codecs/H264Video.h"
#include "ezFormats/codecs/H265Video.h"
#include "ezFormats/codecs/MPEG4Visual.h"
#include "ezFormats/codecs/MPEGVideo.h"
#include "ezFormats/codecs/VPXVideo.h"
#include "ezFormats/detail/Limits.h"
#include "ezFormats/iso/ESDescriptor.h"
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

struct VideoFormat {
    BoxType mFormat;
    const char* mName;
    bool mfPictures;
};
constexpr std::array<VideoFormat, 31> kFormats = {
    {{"avc1", "H264", false},  {"avc2", "H264", false},  {"avc3", "H264", false},  {"avc4", "H264", false},
     {"dva1", "H264", false},  {"dvav", "H264", false},  {"hvc1", "H265", false},  {"hev1", "H265", false},
     {"dvh1", "H265", false},  {"dvhe", "H265", false},  {"mp4v", "MPEG4", false}, {"XVID", "MPEG4", false},
     {"DIVX", "MPEG4", false}, {"s263", "H263", false},  {"H263", "H263", false},  {"h263", "H263", false},
     {"m2v1", "MPEG2", false}, {"mp2v", "MPEG2", false}, {"hdv1", "MPEG2", false}, {"hdv2", "MPEG2", false},
     {"hdv3", "MPEG2", false}, {"m1v1", "MPEG1", false}, {"mp1v", "MPEG1", false}, {"vc-1", "VC1", false},
     {"av01", "AV1", false},   {"vp08", "VP8", false},   {"vp09", "VP9", false},   {"mjpa", "MJPEG", false},
     {"mjpb", "MJPEG", false}, {"jpeg", "MJPEG", true},  {"png ", "PNG", true}}};

/// The names of entries whose pictures need a decoder of Dolby Vision (Dolby Vision Streams within the ISO
/// Base Media File Format, 3.1).
bool IsDolbyVision(BoxType aFormat) {
    constexpr std::array<BoxType, 4> kNames = {{"dva1", "dvav", "dvh1", "dvhe"}};
    return std::find(kNames.begin(), kNames.end(), aFormat) != kNames.end();
}

/// Reads what sets a decoder up.
using ConfigReader = std::optional<VideoFacts> (*)(const unsigned char* aBytes, std::size_t aSize);

struct VideoObject {
    std::uint32_t mObjectType;
    const char* mName;
    const char* mProfile;
    bool mfPictures;
    ConfigReader mReadConfig; ///< null: it is not looked at
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
                                                   {0xA3, "VC1", nullptr, false, nullptr}}};

struct ISOVideoEntry : ISOEntryFacts {
    VideoFacts mFacts;   ///< of the codec's own headers
    bool mfSize = false; ///< the entry states a size
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
template <ConfigReader Read>
void ReadConfig(ByteReader aBox, ISOVideoEntry& anEntry) {
    std::array<unsigned char, kISO_MaxDecoderConfig> bytes = {};
    const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(aBox.GetLeft(), bytes.size()));
    if (aBox.Read(bytes.data(), size)) {
        TakeCodec(Read(bytes.data(), size), anEntry);
    }
}

template <void (*Read)(ByteReader aBox, ISOPictureSigns& aSigns)>
void ReadSigns(ByteReader aBox, ISOVideoEntry& anEntry) {
    Read(aBox, anEntry.mSigns);
}

/// Of "avcC" (ISO/IEC 14496-15, 5.3.3.1).
void ReadAVC(ByteReader aBox, ISOVideoEntry& anEntry) {
    TakeCodec(H264Video_ReadConfig(aBox), anEntry);
}

/// Of "hvcC" (ISO/IEC 14496-15, 8.3.3.1). The size is that of the entry where it states one: writers differ
/// in what a frame of fields has.
void ReadHEVC(ByteReader aBox, ISOVideoEntry& anEntry) {
    std::optional<VideoFacts> facts = H265Video_ReadConfig(aBox);
    if (facts.has_value() && anEntry.mfSize) {
        facts->mWidth = 0;
        facts->mHeight = 0;
    }
    TakeCodec(facts, anEntry);
}

constexpr std::array<ISOBoxReader<ISOVideoEntry>, 16> kBoxReaders = {
    {{"avcC", ReadAVC},
     {"hvcC", ReadHEVC},
     {"d263", ReadConfig<H263Video_ReadConfig>},
     {"av1C", ReadConfig<AV1Video_ReadConfig>},
     {"vpcC", ReadConfig<VP9Video_ReadConfig>},
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

/// Names the codec by its four characters; true where they stand for one.
bool NameByFormat(BoxType aFormat, ISOVideo& aVideo) {
    const auto* const known = std::find_if(kFormats.begin(), kFormats.end(), [&](const VideoFormat& aKnown) {
        return aFormat == aKnown.mFormat;
    });
    if (known == kFormats.end()) {
        return false;
    }
    aVideo.mCodec = known->mName;
    aVideo.mfPictures = known->mfPictures;
    return true;
}

/// Puts together what the entry names and states, what the codec's headers tell, which is more sure, and how
/// the pictures are shown.
void Combine(const ISOVideoEntry& anEntry, ISOVideo& aVideo) {
    VideoFacts facts = anEntry.mFacts;
    facts.mCodec = aVideo.mCodec;
    facts.Complete(aVideo);
    anEntry.mSigns.ApplyTo(facts);
    facts.mBitRate = anEntry.mBitRate;
    facts.mMaxBitRate = anEntry.mMaxBitRate;
    static_cast<VideoFacts&>(aVideo) = facts;
}

} // namespace

ISOVideo ReadVideoDescription(ByteReader aTable, std::uint32_t& aBoxBudget) {
    ISOSampleEntry sample(aTable, aBoxBudget);
    ISOVideoEntry entry;
    ISOVideo video;
    ReadPicture(sample.mContent, video);
    entry.mfSize = video.mWidth != 0 && video.mHeight != 0;
    if (sample.mContent.HasFailed()) {
        ISOVideo named;
        named.mCodec = ISOFormatName(sample.mFormat);
        return named;
    }
    ReadBoxes(sample.mContent, kBoxReaders, aBoxBudget, entry);
    const bool fEncrypted = sample.mFormat == "encv" || sample.mFormat.GetText().StartsWith("drm");
    const BoxType format = fEncrypted ? entry.mOriginal.value_or(sample.mFormat) : sample.mFormat;
    const bool fNamed = entry.mStream.has_value() && format == "mp4v" ? NameByStream(entry, video)
                                                                      : NameByFormat(format, video);
    if (!fNamed) {
        video.mCodec = ISOFormatName(format);
    }
    entry.mSigns.mfDolbyVision = entry.mSigns.mfDolbyVision || IsDolbyVision(format);
    Combine(entry, video);
    if (fEncrypted) {
        video.mCodec = EncryptedCodecName(video.mCodec);
    }
    return video;
}
