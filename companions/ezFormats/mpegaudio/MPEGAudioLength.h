#pragma once

#include "ezFormats/mpegaudio/MPEGAudioFrames.h"

#include "ezPlatform/text/CString.h"

#include <cstdint>
#include <optional>

class ByteSource;

/// What the Xing, "Info" or VBRI header of a file of layer III states. It stands in the first frame, which
/// holds no sound then.
struct MPEGAudioCount {
    enum class Kind { None, Constant, Variable };

    Kind mKind = Kind::None;
    std::uint32_t mFrames = 0;  ///< with sound; 0: not stated
    std::uint32_t mBytes = 0;   ///< of the frames, this one included; 0: not stated
    std::uint32_t mUnheard = 0; ///< samples of encoder delay and padding, together
};

/// The Xing or "Info" header after the side information of a frame, with the encoder's own part, or the VBRI
/// header.
MPEGAudioCount ReadMPEGAudioCount(ByteSource& aBytes, const MPEGAudioFrame& aFrame);

/// The frames of the places of a file that have the lowest and the highest rate.
struct MPEGAudioPlaces {
    MPEGAudioSurvey mSlowest;
    MPEGAudioSurvey mFastest;

    void Take(const MPEGAudioSurvey& aPlace);
};

/// What is known of the length and the rate of the sound.
struct MPEGAudioLength {
    bool mfKnown = false;
    std::uint64_t mMilliseconds = 0;
    ezCString mMethod;
    std::uint64_t mBound = 0;       ///< milliseconds by which an estimate may be too long; 0: nothing tells
    std::uint32_t mAverageRate = 0; ///< bits a second; 0: not known
};

/// The bytes of a file that hold sound, the frame of the Xing or VBRI header included.
struct MPEGAudioExtent {
    std::uint64_t mSoundSize = 0; ///< means nothing without a size of the file
    std::optional<std::uint64_t> mMediaSize;
    bool mfGoesOn = false; ///< more of the sound stands after the bytes of the count
};

/// Bytes that the counted frames take at most, the first one included; 0 where the count does not tell.
std::uint64_t SizeOfCount(const MPEGAudioCount& aCount, const MPEGAudioFrame& aSound);

/// The length that a count tells. Not known where the file can hold no such count of frames, or holds far
/// more; an estimate where the count is of another size than the file: it was cut, or others were put after
/// it.
///
/// @param aSound  a frame of the sound
MPEGAudioLength LengthOfCount(const MPEGAudioCount& aCount, const MPEGAudioFrame& aSound,
                              const MPEGAudioExtent& anExtent);

/// That of counted frames.
MPEGAudioLength LengthOfFrames(const MPEGAudioSurvey& aFrames, const MPEGAudioCount& aCount,
                               const MPEGAudioFrame& aSound);

/// That of bytes of a constant rate, which all frames that were looked at have: exact, but for what stands
/// after the last frame. In free format the rate is their mean.
MPEGAudioLength LengthOfRate(std::uint64_t aSize, const MPEGAudioSurvey& anAll, const MPEGAudioFrame& aSound);

/// That of bytes which go by as those looked at did: rounded up.
/// @param anAll     all frames that were looked at
/// @param aPlaces   the slowest is taken for the whole, and the fastest for the bound
MPEGAudioLength LengthOfSize(std::uint64_t aSize, const MPEGAudioSurvey& anAll,
                             const MPEGAudioPlaces& aPlaces, const MPEGAudioFrame& aSound);
