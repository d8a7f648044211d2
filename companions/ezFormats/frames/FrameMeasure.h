#pragma once

#include "ezFormats/frames/CodedFrames.h"

#include <cstdint>

class MediaBytes;
struct SoundFacts;

/// The length and the rate of the sound of a file that is nothing but frames.
///
/// Frames of one size or one stated rate at the start, in the middle and at the end are of a constant rate:
/// the size of the sound tells its length. Else a short sound is counted, and of a long one the start, the
/// end and six places between them are looked at. What was seen counts as it is; the rest goes by as those
/// places do on average, and by a third of what they differ longer: a renderer stops at an announced time
/// that is too short.
class FrameMeasure {
public:
    /// All borrowed; the frames have been found.
    FrameMeasure(MediaBytes& aBytes, CodedFrames& aFrames);

    /// Looks at the frames at the start, while they are buffered.
    void LookAtStart();
    /// Looks at the whole.
    /// @param anEnd           where the sound ends, of a file of known size
    /// @param afMayReadWhole  frames of a varying rate may be counted, however many there are
    void Finish(std::uint64_t anEnd, bool afMayReadWhole);

    /// The length, how it is known, and the rates, all but the codec. Without Finish, as of a file of unknown
    /// size, the rates alone.
    void Tell(SoundFacts& aSound) const;

private:
    /// Places between the start and the end.
    struct Places {
        FrameSurvey mAll;
        FrameSurvey mSlowest; ///< the most samples a byte
        FrameSurvey mFastest; ///< the fewest
        void Take(const FrameSurvey& aPlace);
    };

    std::uint64_t LastPlace(std::uint64_t anEnd) const;
    bool LookAt(std::uint64_t aPlace, std::uint64_t anEnd, FrameSurvey* aSurvey);
    void TakeConstant();
    bool CountAll(std::uint64_t anEnd, bool afMayReadWhole);
    Places LookAround(const FrameSurvey& aLast, std::uint64_t anEnd);
    void PassSilence(const FrameSurvey& aInner, std::uint64_t anEnd);
    void Estimate(const Places& aPlaces, const FrameSurvey& aLast);

    MediaBytes& mBytes;
    CodedFrames& mFrames;
    std::uint32_t mPlaceSize;
    FrameSurvey mStart;         ///< from the first frame on
    FrameSurvey mWholeStart;    ///< the same, of which the rest begins with a frame like the first
    FrameSurvey mAll;           ///< all that was looked at
    std::uint64_t mSize = 0;    ///< bytes of the sound
    std::uint64_t mSamples = 0; ///< of a channel; 0: not known
    std::uint64_t mBound = 0;   ///< samples by which an estimate may be too long
    const char* mMethod = "";
    bool mfConstant = false;
};
