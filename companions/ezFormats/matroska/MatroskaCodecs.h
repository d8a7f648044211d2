#pragma once

#include "ezFormats/codecs/AudioFacts.h"
#include "ezFormats/codecs/VideoFacts.h"
#include "ezFormats/matroska/MatroskaTracks.h"

#include "ezBytes/ByteReader.h"

#include <optional>

/// Whether the first frame of a track tells what its entry does not.
bool MatroskaCodec_WantsFrame(const MatroskaTrack& aTrack);

/// All that is told of a track, by its entry, by what sets its decoder up, and by its first frame where there
/// is one. Of what is encrypted by its entry alone.
/// @param aFrame  stands at the first frame of the track
VideoFacts MatroskaCodec_ReadVideo(const MatroskaTrack& aTrack, const std::optional<ByteReader>& aFrame);
AudioFacts MatroskaCodec_ReadSound(const MatroskaTrack& aTrack, const std::optional<ByteReader>& aFrame);
