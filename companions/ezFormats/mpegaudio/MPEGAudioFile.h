#pragma once

#include "ezFormats/mpegaudio/MPEGAudioFrames.h"
#include "ezFormats/mpegaudio/MPEGAudioLength.h"

#include <cstdint>

class ezMediaInfo;
class MediaBytes;

/// The length and the rates of the sound of a file.
class MPEGAudioMeasure {
public:
    /// All borrowed; the frames have been found.
    MPEGAudioMeasure(MediaBytes& aBytes, MPEGAudioFrames& aFrames);

    /// Looks at the frames at the start, as long as they are buffered.
    /// @param aStart  where they were looked for first
    void LookAtStart(std::uint64_t aStart);
    /// Looks at the whole.
    /// @param anEnd  of the sound; that of an unknown size where it is not known
    void Finish(std::uint64_t anEnd, bool afMayReadWhole);
    void Store(ezMediaInfo& anInfo) const;

private:
    void Estimate(std::uint64_t anEnd, bool afMayReadWhole);
    void TakeCountBefore(std::uint64_t aStart);
    bool GoesOnAfterCount(std::uint64_t anEnd);
    bool CountAll(std::uint64_t anEnd, bool afMayReadWhole);
    void LookAround(std::uint64_t anEnd, MPEGAudioPlaces* aPlaces);
    void LookAt(std::uint64_t aPlace, MPEGAudioPlaces* aPlaces);
    bool IsVariable() const;

    MediaBytes& mBytes;
    MPEGAudioFrames& mFrames;
    MPEGAudioFrame mSound; ///< the first frame with sound
    MPEGAudioCount mCount;
    MPEGAudioSurvey mSurvey;
    MPEGAudioLength mLength;
    bool mfAllSeen = false;
    bool mfPlaceMissed = false; ///< a place that was looked at has no frames
};
