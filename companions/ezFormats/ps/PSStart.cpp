#include "ezFormats/ps/PSStart.h"

#include "ezFormats/codecs/EncryptedCodec.h"
#include "ezFormats/detail/MediaNumbers.h"
#include "ezFormats/mpegsystem/MPEGSystemLimits.h"
#include "ezFormats/mpegsystem/PESHeader.h"
#include "ezFormats/mpegsystem/StreamSound.h"
#include "ezFormats/mpegsystem/StreamVideo.h"
#include "ezFormats/ps/PSBytes.h"
#include "ezFormats/ps/PSLimits.h"
#include "ezFormats/ps/PSPackets.h"

#include "ezBytes/BitReader.h"

namespace {

constexpr std::uint64_t kMilli = 1000;
constexpr std::uint64_t kSampleTicks = 90; // of plain samples, which have no frames: a millisecond

/// What a pack of a DVD's navigation tells of the video object that it belongs to: in its second packet, the
/// data search information, of which the object's number is one field.
void ReadNavigation(const PSPacket& aPacket, PSClock& aClock) {
    constexpr std::uint32_t kSearchInformation = 1;
    constexpr std::size_t kObject = 24;
    ezBitReader bits(aPacket.mBytes, 8 * aPacket.mSize);
    const bool fSearch = bits.Read(8) == kSearchInformation;
    bits.Skip(8 * kObject);
    const std::uint32_t object = bits.Read(16);
    if (fSearch && !bits.HasFailed()) {
        aClock.AddObject(object);
    }
}

/// The codec of a track of which nothing can be read: that which such streams have.
const char* NameOf(const PSTrack& aTrack) {
    switch (aTrack.mCodec) {
    case StreamCodec::AC3:
        return "AC3";
    case StreamCodec::DTS:
        return "DTS";
    case StreamCodec::Unknown:
    case StreamCodec::MPEGVideo:
    case StreamCodec::MPEGAudio:
        return StreamID_IsVideo(aTrack.mID.mStream) ? "MPEG2" : "MP2";
    default:
        return StreamCodec_GetName(aTrack.mCodec);
    }
}

bool IsMedia(StreamKind aKind) {
    return aKind == StreamKind::Video || aKind == StreamKind::Audio;
}

} // namespace

bool PSWindow::Read(PSBytes& aBytes, std::uint64_t aPlace, std::size_t aSize) {
    mSize = aBytes.Read(aPlace, aSize, &mBytes);
    return mSize != 0;
}

void ReadPSWindow(const PSWindow& aWindow, PSTracks& aTracks, PSClock& aClock) {
    const unsigned char* const block = aWindow.mBytes;
    PSPackets packets(block, aWindow.mSize);
    PSPacket packet;
    PSContent content;
    PackHeader pack;
    while (packets.Next(packet)) {
        if (packet.mCode == kStreamID_Pack && PackHeader_Read(packet.mBytes, packet.mSize, pack)) {
            aClock.AddClock(pack.mClock);
        } else if (packet.mCode == kStreamID_Map) {
            aTracks.AddMap(packet);
        } else if (packet.mCode == kStreamID_Private2) {
            ReadNavigation(packet, aClock);
        } else if (aTracks.Read(block, packet, content)) {
            const PSTrack* const track = aTracks.Add(content);
            if (track != nullptr && IsMedia(track->GetKind())) {
                aClock.AddContent(content);
            }
        }
    }
    aClock.AddBytes(aWindow.mSize);
}

PSStart::PSStart()
    : mVideoPayload{{}, StreamPayload(kMPEGSystem_VideoPayload)},
      mAudioPayload{{}, StreamPayload(kMPEGSystem_AudioPayload)} {}

bool PSStart::Read(PSBytes& aBytes) {
    mEnd = aBytes.GetStart();
    for (std::uint32_t i = 0; i < kPS_MaxStartWindows; ++i) {
        if (!mWindow.Read(aBytes, mEnd, aBytes.GetWindowSize())) {
            break;
        }
        if (i == 0 && !IsStream()) {
            return false;
        }
        PSClock unused; // before the frames are known
        ReadPSWindow(mWindow, mTracks, unused);
        Gather(StreamKind::Video, mVideoPayload);
        Gather(StreamKind::Audio, mAudioPayload);
        ReadFacts();
        mClock.SetFrames(mFrames);
        ReadPSWindow(mWindow, mTracks, mClock);
        mEnd += aBytes.GetWindowSize();
        if (IsComplete() || mEnd >= aBytes.GetFileSize().value_or(UINT64_MAX)) {
            break;
        }
    }
    return mEnd != aBytes.GetStart();
}

/// Whether the window holds a stream from its start on, or after some junk: a pack header begins it, or
/// packets in a row do.
bool PSStart::IsStream() {
    PSPackets packets(mWindow.mBytes, mWindow.mSize);
    PSPacket packet;
    PSContent content;
    PackHeader pack;
    bool fSyntax = false;
    bool fMore = true;
    while (packets.CountInOrder() < kPS_LeastPackets && (fMore = packets.Next(packet))) {
        const unsigned char* const start = mWindow.mBytes + packet.mPlace;
        PESHeader header;
        if (packets.CountInOrder() == 0 && packet.mPlace > kPS_MaxJunk) {
            return false;
        }
        if (packet.mCode == kStreamID_Pack && PackHeader_Read(packet.mBytes, packet.mSize, pack)) {
            mfMPEG1 = fSyntax ? mfMPEG1 : !pack.mfMPEG2;
            fSyntax = true;
        } else if (!fSyntax && mTracks.Read(mWindow.mBytes, packet, content)) {
            mfMPEG1 = ReadPESHeader(start, mWindow.mSize - packet.mPlace, &header) && header.mfMPEG1;
            fSyntax = true;
        }
    }
    // A still picture may be one packet.
    return fMore || (packets.IsInOrder() && packets.CountInOrder() != 0);
}

/// Takes the payload of the track of a kind that plays first.
void PSStart::Gather(StreamKind aKind, Gathered& aGathered) {
    const PSTrack* const track = mTracks.GetFirst(aKind);
    if (track == nullptr) {
        return;
    }
    if (!aGathered.mID.has_value() || !(*aGathered.mID == track->mID)) {
        const std::size_t most =
            aKind == StreamKind::Video ? kMPEGSystem_VideoPayload : kMPEGSystem_AudioPayload;
        aGathered = {track->mID, StreamPayload(most)};
    }
    PSPackets packets(mWindow.mBytes, mWindow.mSize);
    PSPacket packet;
    PSContent content;
    while (!aGathered.mPayload.IsFull() && packets.Next(packet)) {
        if (mTracks.Read(mWindow.mBytes, packet, content) && content.mID == track->mID &&
            !content.mfScrambled) {
            aGathered.mPayload.Begin(content.mBytes, content.mSize);
        }
    }
}

void PSStart::ReadFacts() {
    const PSTrack* const video = mTracks.GetFirst(StreamKind::Video);
    if (video != nullptr) {
        const StreamPayload& payload = mVideoPayload.mPayload;
        mVideo = ReadStreamVideo(video->mCodec, payload.GetBytes(), payload.GetSize()).value_or(VideoFacts());
        const bool fPictures = video->mCodec == StreamCodec::MPEGVideo && mVideo->mFrameRate != 0;
        mFrames.mPictureTicks =
            fPictures ? MediaNumber_Scale(kStreamClock_Rate, kMilli, mVideo->mFrameRate) : 0;
        if (video->mfScrambled) {
            mVideo = VideoFacts();
            mVideo->mCodec = EncryptedCodecName(NameOf(*video));
        }
    }
    const PSTrack* const audio = mTracks.GetFirst(StreamKind::Audio);
    if (audio != nullptr) {
        ReadSound(*audio);
    }
}

void PSStart::ReadSound(const PSTrack& aTrack) {
    const StreamPayload& payload = mAudioPayload.mPayload;
    // Packets of MPEG audio need not begin with a frame.
    const bool fFrames = aTrack.mCodec == StreamCodec::Unknown && StreamID_IsAudio(aTrack.mID.mStream);
    const StreamCodec codec = fFrames ? StreamCodec::MPEGAudio : aTrack.mCodec;
    const StreamSound sound = ReadStreamSound(codec, payload.GetBytes(), payload.GetSize());
    mAudio = sound.mFacts;
    if (mAudio->mCodec.IsEmpty()) {
        mAudio->mCodec = StreamCodec_GetName(aTrack.mCodec);
    }
    if (aTrack.mfScrambled) {
        mAudio = AudioFacts();
        mAudio->mCodec = EncryptedCodecName(NameOf(aTrack));
    }
    const std::uint32_t rate = mAudio->mBitRate != 0 ? mAudio->mBitRate : mAudio->mEstimatedBitRate;
    mFrames.mSoundTicks = sound.mFrameTicks != 0 ? sound.mFrameTicks : kSampleTicks;
    mFrames.mSoundBytes = MediaNumber_Scale(mFrames.mSoundTicks, rate, 8 * std::uint64_t{kStreamClock_Rate});
    if (mFrames.mSoundBytes == 0) {
        mFrames.mSoundTicks = 0;
    }
}

/// A film may have its sound later; a stream of sound alone has no pictures.
bool PSStart::IsComplete() const {
    const bool fAudio = mAudio.has_value() && !mAudio->mCodec.IsEmpty();
    return fAudio && (!mVideo.has_value() || (!mVideo->mCodec.IsEmpty()));
}
