#pragma once

#include "ezFormats/avi/AVIHeader.h"
#include "ezFormats/codecs/AudioFacts.h"
#include "ezFormats/codecs/VideoFacts.h"

#include <cstddef>
#include <cstdint>
#include <vector>

/// Bytes of the first frame of a stream that tell what its headers do not; 0 where it tells no more.
std::size_t AVICodec_GetVideoLook(const AVIStream& aStream);
std::size_t AVICodec_GetSoundLook(const AVIStream& aStream);

/// All that is told of a stream, by its headers, by what sets its decoder up, and by its first frame, which
/// may be empty.
VideoFacts AVICodec_ReadVideo(const AVIStream& aStream, const std::vector<unsigned char>& aFrame);
/// @param aTrackCount  set to how many tracks of sound the stream is
AudioFacts AVICodec_ReadSound(const AVIStream& aStream, const std::vector<unsigned char>& aFrame,
                              std::uint32_t* aTrackCount);
