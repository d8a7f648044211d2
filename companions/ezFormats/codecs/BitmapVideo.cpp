#include "ezFormats/codecs/BitmapVideo.h"

#include "ezFormats/codecs/BitmapVideoLimits.h"
#include "ezFormats/codecs/H264Video.h"
#include "ezFormats/codecs/H265Video.h"
#include "ezFormats/codecs/MPEG4Visual.h"
#include "ezFormats/codecs/MPEGVideo.h"
#include "ezFormats/codecs/TheoraHeader.h"
#include "ezFormats/codecs/VC1Video.h"
#include "ezFormats/codecs/VideoFourCC.h"

#include "ezBytes/BoxWalk.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace {

using Reader = std::optional<VideoFacts> (*)(const unsigned char* aBytes, std::size_t aSize);

/// A codec, what is so of all its streams, and what reads its headers.
struct Codec {
    std::string_view mName;
    const char* mProfile; ///< the only one that goes by this name
    bool mfPlain;         ///< always of 4:2:0 and 8 bits
    Reader mReadData;
    Reader mReadFrame;
};
constexpr Codec kCodecs[] = {
    {"H264", "", false, H264Video_ReadStream, H264Video_ReadStream},
    {"H265", "", false, H265Video_ReadStream, H265Video_ReadStream},
    {"MPEG1", "", false, MPEGVideo_Read, MPEGVideo_Read},
    {"MPEG2", "", false, MPEGVideo_Read, MPEGVideo_Read},
    {"MPEG4", "", false, MPEG4Visual_Read, MPEG4Visual_Read},
    {"MSMPEG4v1", "", true, nullptr, nullptr},
    {"MSMPEG4v2", "", true, nullptr, nullptr},
    {"MSMPEG4v3", "", true, nullptr, nullptr},
    {"Theora", "", false, TheoraVideo_ReadConfig, nullptr},
    {"VC1", "Advanced", true, VC1Video_ReadStream, VC1Video_ReadStream},
    {"WMV1", "", true, nullptr, nullptr},
    {"WMV2", "", true, nullptr, nullptr},
    {"WMV3", "", true, VC1Video_ReadStructC, nullptr},
};

const Codec* FindCodec(std::string_view aName) {
    const auto* const found = std::find_if(std::begin(kCodecs), std::end(kCodecs),
                                           [=](const Codec& aCodec) { return aCodec.mName == aName; });
    return found != std::end(kCodecs) ? found : nullptr;
}

/// Size and codec, up to the end of the header.
VideoFacts ReadHeader(ByteReader& aHeader) {
    VideoFacts facts;
    aHeader.Skip(4); // its size, to which some add what follows
    const std::uint32_t width = aHeader.ReadLittle32();
    const std::uint32_t height = aHeader.ReadLittle32();
    aHeader.Skip(2 + 2); // planes, bits of a pixel
    facts.mCodec = VideoFourCC_GetWord(BoxType::Read(aHeader));
    // The rows of a picture may stand the first of them first: its height is then negative.
    const std::uint32_t rows = height > INT32_MAX ? 0 - height : height;
    if (width <= INT32_MAX && width != 0 && rows != 0) {
        facts.mWidth = width;
        facts.mHeight = rows;
    }
    return facts;
}

std::vector<unsigned char> ReadData(ByteReader& aHeader) {
    aHeader.Skip(4 + 4 + 4 + 4 + 4); // bytes of a picture, pixels in a metre, colours
    std::vector<unsigned char> data(
        static_cast<std::size_t>(std::min(aHeader.GetLeft(), kBitmapVideo_MaxData)));
    if (!aHeader.Read(data.data(), data.size())) {
        data.clear();
    }
    return data;
}

/// What was found first counts.
void Take(Reader aReader, const unsigned char* aBytes, std::size_t aSize, VideoFacts& aFound) {
    const std::optional<VideoFacts> facts =
        aReader != nullptr && aSize != 0 ? aReader(aBytes, aSize) : std::nullopt;
    if (facts) {
        aFound.Complete(*facts);
    }
}

} // namespace

std::optional<VideoFacts> BitmapVideo_Read(ByteReader aHeader, const unsigned char* aFrame,
                                           std::size_t aFrameSize) {
    VideoFacts facts = ReadHeader(aHeader);
    if (aHeader.HasFailed()) {
        return std::nullopt;
    }
    const Codec* const codec = FindCodec(facts.mCodec.View());
    if (codec == nullptr) {
        return facts;
    }
    const std::vector<unsigned char> data = ReadData(aHeader);
    VideoFacts found;
    Take(codec->mReadData, data.data(), data.size(), found);
    Take(codec->mReadFrame, aFrame, aFrameSize, found);
    facts.Complete(found);
    facts.mCodec = found.mCodec.IsEmpty() ? facts.mCodec : found.mCodec;
    VideoFacts always;
    always.mProfile = codec->mProfile;
    always.mBitDepth = codec->mfPlain ? 8 : 0;
    always.mColours = codec->mfPlain ? "4:2:0" : nullptr;
    facts.Complete(always);
    return facts;
}

bool BitmapVideo_WantsFrame(const VideoFacts& aFacts) {
    const Codec* const codec = FindCodec(aFacts.mCodec.View());
    return codec != nullptr && codec->mReadFrame != nullptr;
}
