#pragma once

#include "ezFormats/codecs/AudioFacts.h"
#include "ezFormats/codecs/TheoraHeader.h"
#include "ezFormats/codecs/VideoFacts.h"

#include "ezBytes/OggPages.h"

#include <cstdint>
#include <string>

class ByteReader;

/// What the first packet of a stream tells of it. What is 0 is not known.
struct OggStream {
    std::uint32_t mSerial = 0;
    const OggMark* mMark = nullptr; ///< null: of a kind that nothing is told of
    AudioFacts mSound;              ///< of sound; the nominal rate of Vorbis is an estimate
    VideoFacts mVideo;              ///< of video
    std::string mLanguages;         ///< of a text, as kezInfo_SubtitleLanguages has them
    std::uint64_t mSamples = 0;     ///< where the header counts them

    // The time of a position
    std::uint64_t mTicks = 0; ///< so many samples or pictures take mSeconds seconds; 0: no time is told
    std::uint64_t mSeconds = 1;
    std::uint32_t mPreSkip = 0;       ///< samples that are not heard
    std::uint32_t mPacketSamples = 0; ///< the most that a packet holds; 0 of Opus, where each tells
    TheoraClock mTheora;
    bool mfFrameSeen = false;     ///< what its first frame tells was taken
    std::uint64_t mPresented = 0; ///< of Skeleton: microseconds of what comes before the first that is shown

    bool Is(OggRole aRole) const { return mMark != nullptr && mMark->mRole == aRole; }
    bool IsOGM() const;
    /// Samples or pictures up to the end of what a position tells of.
    std::uint64_t CountAt(std::uint64_t aGranule) const;
    /// Microseconds of what is heard or seen of so many; 0 where the kind tells no time.
    std::uint64_t TimeOf(std::uint64_t aCount) const;
};

/// Reads the first packet of a stream. One whose numbers cannot be is of no kind.
OggStream ReadOggStream(const ByteReader& aPacket, std::uint32_t aSerial);

/// Samples at 48 kHz of the packet of Opus that a reader is at the start of (RFC 6716, 3.1).
std::uint32_t OpusSamplesOf(ByteReader aPacket);
