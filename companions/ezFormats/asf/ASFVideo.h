#pragma once

#include "ezFormats/codecs/VideoFacts.h"

#include "ezBytes/ASFObjects.h"

#include <cstdint>

class ByteReader;
class MediaBytes;
struct ASFFileProperties;

/// What the format of a stream of video tells of it, and the headers of its codec that stand there.
VideoFacts ReadASFVideo(const ASFStream& aStream);

/// Takes what the first media object of a stream tells, where its codec may tell more there than is told
/// already: as much of it as the first packets hold.
/// @param aRest    stands where the header ends
/// @param aBudget  borrowed, counts down the objects up to the packets
void TakeASFFrame(MediaBytes& aBytes, const ByteReader& aRest, const ASFFileProperties& aFile,
                  unsigned aStream, std::uint32_t& aBudget, VideoFacts& aVideo);
