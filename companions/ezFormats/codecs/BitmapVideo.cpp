#include "ezFormats/codecs/BitmapVideo.h"

#include "ezFormats/codecs/BitmapVideoLimits.h"
#include "ezFormats/codecs/CodecWord.h"
#include "ezFormats/codecs/FrameVideo.h"
#include "ezFormats/codecs/H264Video.h"
#include "ezFormats/codecs/H265Video.h"
#include "ezFormats/codecs/TheoraHeader.h"
#include "ezFormats/codecs/VC1Video.h"
#include "ezFormats/codecs/VideoFourCC.h"

#include "ezBytes/BoxWalk.h"
#include "ezBytes/ByteSource.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace {

/// Of H.264 and H.265 either the record that ISO media have, or the start of a byte stream.
template <std::optional<VideoFacts> (*ReadConfig)(ByteReader aConfig, const ByteReader* aFirstSample),
          VideoReader ReadStream>
std::optional<VideoFacts> ReadSets(const unsigned char* aBytes, std::size_t aSize) {
    BlockBytes bytes(aBytes, aSize);
    const std::optional<VideoFacts> facts = ReadConfig(ByteReader(bytes), nullptr);
    return facts ? facts : ReadStream(aBytes, aSize);
}

/// What sets the decoder of a codec up, where that is not only a part of its stream.
struct SetUp {
    std::string_view mCodec;
    VideoReader mRead;
};
constexpr SetUp kSetUps[] = {{"Theora", TheoraVideo_ReadConfig},
                             {"WMV3", VC1Video_ReadStructC},
                             {"H264", ReadSets<H264Video_ReadConfig, H264Video_ReadStream>},
                             {"H265", ReadSets<H265Video_ReadConfig, H265Video_ReadStream>}};

std::optional<VideoFacts> ReadSetUp(const ezCString& aCodec, const std::vector<unsigned char>& aData) {
    for (const SetUp& setUp : kSetUps) {
        if (setUp.mCodec == aCodec.View()) {
            return aData.empty() ? std::nullopt : setUp.mRead(aData.data(), aData.size());
        }
    }
    return FrameVideo_Read(aCodec, aData.data(), aData.size());
}

/// Size and codec, up to the end of the header.
VideoFacts ReadHeader(ByteReader& aHeader, const VideoCode** aCode) {
    VideoFacts facts;
    aHeader.Skip(4); // its size, to which some add what follows
    const std::uint32_t width = aHeader.ReadLittle32();
    const std::uint32_t height = aHeader.ReadLittle32();
    aHeader.Skip(2 + 2); // planes, bits of a pixel
    const BoxType name = BoxType::Read(aHeader);
    *aCode = VideoFourCC_Find(name);
    facts.mCodec = *aCode != nullptr ? ezCString((*aCode)->mCodec) : CodecWord_Of(name.GetText().View());
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

} // namespace

std::optional<VideoFacts> BitmapVideo_Read(ByteReader aHeader, const unsigned char* aFrame,
                                           std::size_t aFrameSize) {
    const VideoCode* code = nullptr;
    VideoFacts facts = ReadHeader(aHeader, &code);
    if (aHeader.HasFailed()) {
        return std::nullopt;
    }
    if (code == nullptr) {
        return facts;
    }
    VideoFacts found; // what was found first counts
    for (const std::optional<VideoFacts>& told :
         {ReadSetUp(facts.mCodec, ReadData(aHeader)), FrameVideo_Read(facts.mCodec, aFrame, aFrameSize)}) {
        found.Complete(told.value_or(VideoFacts()));
    }
    facts.Complete(found);
    facts.mCodec = found.mCodec.IsEmpty() ? facts.mCodec : found.mCodec;
    facts.Complete(code->GetFacts());
    return facts;
}
