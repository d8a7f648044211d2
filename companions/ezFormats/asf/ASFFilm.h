#pragma once

#include "ezFormats/asf/ASFHeader.h"
#include "ezFormats/asf/ASFLength.h"
#include "ezFormats/asf/ASFTexts.h"
#include "ezFormats/codecs/AudioFacts.h"

#include <cstdint>

class ByteReader;
class MediaBytes;
class ezMediaInfo;

/// What is told of the sound of a stream, its rates by what the header states of it.
/// @param afVaries  the rate does
AudioFacts ReadASFSound(const ASFStreamFacts& aStream, bool afEncrypted, bool afVaries);

/// Puts all that is told of a file with a stream of video into a record, but for its texts.
/// @param aRest    stands where the header ends
/// @param aBudget  borrowed, counts down the objects
void StoreASFFilm(MediaBytes& aBytes, const ByteReader& aRest, const ASFHeader& aHeader,
                  const ASFLength& aLength, const ASFTexts& aTexts, std::uint32_t& aBudget,
                  ezMediaInfo& anInfo);
