#pragma once

#include "ezFormats/codecs/VideoFacts.h"

#include "ez/ElementaryStreamParser.h"

#include <cstddef>
#include <optional>

inline constexpr const char* kVideoStream_MimeVC1 = "video/x-vc1";

/// A codec whose streams stand in files without a container.
struct VideoStreamCodec {
    const char* mName; ///< as kezInfo_VideoCodec has it
    const char* mMimeType;
    VideoReader mRead;
};

/// Tells which codec the start of a file is a stream of: the push parsers of pictures race on it, so that
/// what makes a stream is asked in one place.
class VideoStreamRace {
public:
    VideoStreamRace();

    /// The codec, once the bytes that come after all before have decided; null before.
    const VideoStreamCodec* Push(const unsigned char* aBytes, std::size_t aSize);

private:
    ezUndeterminedEltStreamParser mRace;
};
