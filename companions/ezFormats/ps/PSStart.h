#pragma once

#include "ezFormats/codecs/AudioFacts.h"
#include "ezFormats/codecs/VideoFacts.h"
#include "ezFormats/mpegsystem/StreamPayload.h"
#include "ezFormats/ps/PSClock.h"
#include "ezFormats/ps/PSTracks.h"

#include <cstddef>
#include <cstdint>
#include <optional>

class PSBytes;
struct PSPacket;

/// A window of a stream, borrowed from its bytes until the next one is read.
struct PSWindow {
    /// Reads one. False where there is nothing to read.
    bool Read(PSBytes& aBytes, std::uint64_t aPlace, std::size_t aSize);

    const unsigned char* mBytes = nullptr;
    std::size_t mSize = 0;
};

/// Looks through a window for time stamps, and for tracks.
void ReadPSWindow(const PSWindow& aWindow, PSTracks& aTracks, PSClock& aClock);

/// What the start of a file tells: its tracks, what the first of its pictures and of its sound are, and its
/// clock there. As many windows are read as that takes.
class PSStart {
public:
    PSStart();

    /// False where no stream begins within kPS_MaxJunk.
    bool Read(PSBytes& aBytes);

    /// Of the older syntax: a system stream of MPEG-1.
    bool IsMPEG1() const { return mfMPEG1; }
    /// Where what was read ends in the file.
    std::uint64_t GetEnd() const { return mEnd; }
    /// Those of the sound.
    const PSFrames& GetFrames() const { return mFrames; }
    const PSClock& GetClock() const { return mClock; }
    PSTracks& GetTracks() { return mTracks; }
    PSWindow& GetWindow() { return mWindow; }

    /// The facts of the track of its kind that plays first, if there is one.
    const std::optional<VideoFacts>& GetVideo() const { return mVideo; }
    const std::optional<AudioFacts>& GetAudio() const { return mAudio; }

private:
    struct Gathered {
        std::optional<PSTrackID> mID;
        StreamPayload mPayload;
    };

    bool IsStream();
    void Gather(StreamKind aKind, Gathered& aGathered);
    void ReadFacts();
    void ReadSound(const PSTrack& aTrack);
    bool IsComplete() const;

    PSWindow mWindow;
    PSTracks mTracks;
    PSClock mClock;
    Gathered mVideoPayload;
    Gathered mAudioPayload;
    std::optional<VideoFacts> mVideo;
    std::optional<AudioFacts> mAudio;
    PSFrames mFrames;
    std::uint64_t mEnd = 0;
    bool mfMPEG1 = false;
};
