#include "ezFormats/mpegsystem/StreamVideo.h"

#include "ezFormats/codecs/H264Video.h"
#include "ezFormats/codecs/H265Video.h"
#include "ezFormats/codecs/MPEG4Visual.h"
#include "ezFormats/codecs/MPEGVideo.h"
#include "ezFormats/codecs/VC1Video.h"

namespace {

struct CodecReader {
    StreamCodec mCodec;
    VideoReader mRead;
};

constexpr CodecReader kReaders[] = {
    {StreamCodec::MPEGVideo, MPEGVideo_Read},  {StreamCodec::MPEG4Visual, MPEG4Visual_Read},
    {StreamCodec::H264, H264Video_ReadStream}, {StreamCodec::H265, H265Video_ReadStream},
    {StreamCodec::VC1, VC1Video_ReadStream},
};

std::optional<VideoFacts> ReadAs(StreamCodec aCodec, const unsigned char* aBytes, std::size_t aSize) {
    for (const CodecReader& reader : kReaders) {
        if (reader.mCodec == aCodec) {
            return reader.mRead(aBytes, aSize);
        }
    }
    return std::nullopt;
}

} // namespace

std::optional<VideoFacts> ReadStreamVideo(StreamCodec aCodec, const unsigned char* aBytes,
                                          std::size_t aSize) {
    std::optional<VideoFacts> facts = ReadAs(aCodec, aBytes, aSize);
    const StreamCodec seen = StreamCodec_OfPayload(aBytes, aSize);
    if (!facts && seen != aCodec) {
        facts = ReadAs(seen, aBytes, aSize);
    }
    if (!facts) {
        facts.emplace();
    }
    if (facts->mCodec.IsEmpty()) {
        facts->mCodec = StreamCodec_GetName(aCodec);
    }
    return facts->mCodec.IsEmpty() && facts->mWidth == 0 ? std::nullopt : facts;
}
