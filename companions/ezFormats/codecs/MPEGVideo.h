#pragma once

#include "ezFormats/codecs/VideoFacts.h"

#include <cstddef>
#include <optional>

/// Reads the start of an elementary stream of MPEG-1 or MPEG-2 video, cut anywhere: the payloads of packets
/// joined, or what sets a decoder up. Some hundred KiB hold a sequence header of any stream that players can
/// tune in to. None without one.
///
/// - The codec is that of the stream, whatever holds it: MPEG-2 is what has a sequence extension. It is not
///   told where nothing follows the sequence header.
/// - The size is that of the coded picture. MPEG-2 cannot cut off the lines that round 1080 up to whole
///   blocks; so 1088 lines are 1080, as those who send them mean.
/// - The shape of a pixel follows from that of the display; where a sequence display extension states the
///   part of the picture that fills it, from that part.
/// - The frame rate is that of the sequence header. Film whose fields are repeated keeps the rate at which it
///   is shown, 29.97, as the rules of profiles count it.
/// - The scan is of what is coded: a stream that may hold fields (progressive_sequence 0) is interlaced,
///   unless there are pictures in these bytes and each is a progressive frame, as those of film with repeated
///   fields are.
/// - The rate that is stated is a constant one; the most, where the pictures say that it varies, or where
///   there is none to say so.
std::optional<VideoFacts> MPEGVideo_Read(const unsigned char* aBytes, std::size_t aSize);
