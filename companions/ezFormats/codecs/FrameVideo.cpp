#include "ezFormats/codecs/FrameVideo.h"

#include "ezFormats/codecs/AV1Video.h"
#include "ezFormats/codecs/DVVideo.h"
#include "ezFormats/codecs/H263Video.h"
#include "ezFormats/codecs/H264Video.h"
#include "ezFormats/codecs/H265Video.h"
#include "ezFormats/codecs/MJPEGVideo.h"
#include "ezFormats/codecs/MPEG4Visual.h"
#include "ezFormats/codecs/MPEGVideo.h"
#include "ezFormats/codecs/ProResVideo.h"
#include "ezFormats/codecs/VC1Video.h"
#include "ezFormats/codecs/VP6Video.h"
#include "ezFormats/codecs/VPXVideo.h"

#include <string_view>

namespace {

struct Codec {
    std::string_view mName;
    VideoReader mRead;
};
constexpr Codec kCodecs[] = {{"MPEG4", MPEG4Visual_Read},    {"H264", H264Video_ReadStream},
                             {"H265", H265Video_ReadStream}, {"MPEG1", MPEGVideo_Read},
                             {"MPEG2", MPEGVideo_Read},      {"MJPEG", MJPEGVideo_Read},
                             {"DV", DVVideo_Read},           {"VC1", VC1Video_ReadStream},
                             {"H263", H263Video_Read},       {"Sorenson", SorensonVideo_Read},
                             {"VP6", VP6Video_Read},         {"ProRes", ProResVideo_Read},
                             {"AV1", AV1Video_Read},         {"VP8", VP8Video_Read},
                             {"VP9", VP9Video_Read}};

VideoReader FindReader(const ezCString& aCodec) {
    for (const Codec& codec : kCodecs) {
        if (codec.mName == aCodec.View()) {
            return codec.mRead;
        }
    }
    return nullptr;
}

} // namespace

bool FrameVideo_Tells(const ezCString& aCodec) {
    return FindReader(aCodec) != nullptr;
}

std::optional<VideoFacts> FrameVideo_Read(const ezCString& aCodec, const unsigned char* aBytes,
                                          std::size_t aSize) {
    const VideoReader read = FindReader(aCodec);
    return read != nullptr && aSize != 0 ? read(aBytes, aSize) : std::nullopt;
}
