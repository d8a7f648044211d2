#pragma once

#include "ezBytes/MatroskaSegment.h"

#include "ezPlatform/text/CString.h"

#include <cstdint>
#include <optional>
#include <vector>

/// What a track is, as far as it decides whether it is a cover (RFC 9559, 5.1.4.1).
struct MatroskaTrackHead {
    enum class Kind { Video, Sound, Other };

    std::uint64_t mNumber = 0;
    Kind mKind = Kind::Other;
    ezCString mCodecId;
};

/// Whether the pictures of a track stand alone, as covers do (JPEG, PNG), by its CodecID.
bool IsMatroskaStill(const ezCString& aCodecId);

/// Reads that of all tracks, kMatroska_MaxTracks at most. False where there is no Tracks element.
/// @param aBudget  borrowed, counts down elements
bool ReadMatroskaTrackHeads(MatroskaSegment& aSegment, std::uint32_t& aBudget,
                            std::vector<MatroskaTrackHead>* aHeads);

/// Finds the picture of a file of sound whose cover is a track of video, as some writers store it: all its
/// tracks of video are of pictures that stand alone (JPEG, PNG), and none has more than one of them among the
/// first kMatroska_MaxFirstBlocks blocks. Nothing for a film, and for what has no sound.
/// @param aBudget  borrowed, counts down elements
/// @return the first picture, all that the reader has left; of none that can be told by its first bytes, and
/// of one that is cut, no bytes
std::optional<ByteReader> FindCoverTrack(const MatroskaSegment& aSegment, std::uint32_t& aBudget,
                                         const std::vector<MatroskaTrackHead>& aHeads);
