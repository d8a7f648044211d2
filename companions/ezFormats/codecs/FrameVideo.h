#pragma once

#include "ezFormats/codecs/VideoFacts.h"

#include "ezPlatform/text/CString.h"

#include <cstddef>
#include <optional>

// What the first frame of a track tells of its pictures, where nothing else in the file does: of codecs whose
// headers stand in the stream, with their frames as AVI, ASF, Matroska and QuickTime hold them.

/// Whether the frames of a codec tell anything.
/// @param aCodec  as kezInfo_VideoCodec has it
bool FrameVideo_Tells(const ezCString& aCodec);

/// What a frame tells, cut anywhere. Nothing for a codec whose frames do not, and where none begins there.
std::optional<VideoFacts> FrameVideo_Read(const ezCString& aCodec, const unsigned char* aBytes,
                                          std::size_t aSize);
