#include "ezFormats/videostream/VideoStreamRace.h"

#include "ezFormats/codecs/H264Video.h"
#include "ezFormats/codecs/H265Video.h"
#include "ezFormats/codecs/MPEG4Visual.h"
#include "ezFormats/codecs/MPEGVideo.h"
#include "ezFormats/codecs/VC1Video.h"
#include "ezFormats/elementary/VideoCandidates.h"
#include "ezFormats/videostream/VideoStreamLimits.h"

#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <memory>

namespace {

constexpr VideoStreamCodec kCodecs[] = {
    {"H264", "video/h264", H264Video_ReadStream}, {"H265", "video/h265", H265Video_ReadStream},
    {"MPEG1", "video/mpeg", MPEGVideo_Read},      {"MPEG2", "video/mpeg", MPEGVideo_Read},
    {"MPEG4", "video/mp4v-es", MPEG4Visual_Read}, {"VC1", kVideoStream_MimeVC1, VC1Video_ReadStream},
};

} // namespace

VideoStreamRace::VideoStreamRace() : mRace(nullptr, new ezMediaInfo) {
    AddVideoCandidates(mRace);
    mRace.Open();
}

const VideoStreamCodec* VideoStreamRace::Push(const unsigned char* aBytes, std::size_t aSize) {
    std::size_t place = 0;
    while (place < aSize && mRace.GetParserStatus() == ezElementaryStreamParser::MSS_IN_PROGRESS) {
        const std::size_t size = std::min(kVideoStream_PacketSize, aSize - place);
        mRace.AddPacket(aBytes + place, static_cast<std::uint32_t>(size), false);
        place += size;
    }
    if (mRace.GetParserStatus() != ezElementaryStreamParser::MSS_COMPLETED) {
        return nullptr;
    }
    const std::unique_ptr<ezMediaInfo> record(mRace.Close());
    const ezCString name = record->GetCString(kezInfo_VideoCodec, "");
    const auto* const codec =
        std::find_if(std::begin(kCodecs), std::end(kCodecs),
                     [&](const VideoStreamCodec& aCodec) { return name == aCodec.mName; });
    return codec != std::end(kCodecs) ? codec : nullptr;
}
