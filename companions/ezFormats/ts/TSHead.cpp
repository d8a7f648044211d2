#include "ezFormats/ts/TSHead.h"

#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/mpegsystem/MPEGSystemLimits.h"
#include "ezFormats/mpegsystem/PESHeader.h"
#include "ezFormats/mpegsystem/StreamVideo.h"
#include "ezFormats/ts/TSLimits.h"

#include <algorithm>

namespace {

/// A stream of a PID of which no table tells.
TSStream UntoldStream(std::uint16_t aPID, std::uint8_t aStreamID) {
    TSStream stream;
    stream.mPID = aPID;
    if (StreamID_IsVideo(aStreamID)) {
        stream.mCodec = StreamCodec::MPEGVideo; // unless the payload says another
    } else if (StreamID_IsAudio(aStreamID)) {
        stream.mCodec = StreamCodec::MPEGAudio;
    }
    return stream;
}

} // namespace

TSTrack::TSTrack(TSStream aStream, std::size_t aMaxPayload)
    : mStream(std::move(aStream)), mPayload(aMaxPayload) {}

void TSTrack::Read() {
    const unsigned char* const bytes = mPayload.GetBytes();
    const std::size_t size = mPayload.GetSize();
    if (mStream.mfEncrypted || mfRead || size == 0) {
        return;
    }
    if (mStream.mCodec == StreamCodec::Unknown) {
        mStream.mCodec = StreamCodec_OfPayload(bytes, size);
    }
    if (mStream.GetKind() == StreamKind::Video) {
        mVideo = ReadStreamVideo(mStream.mCodec, bytes, size);
        mfRead = mPayload.IsFull() || (mVideo && mVideo->mWidth != 0 && mVideo->mScan != nullptr);
    } else if (mStream.GetKind() == StreamKind::Audio) {
        mSound = ReadStreamSound(mStream.mCodec, bytes, size);
        mfRead = mPayload.IsFull() || mSound->mFacts.mSamplingRate != 0;
    } else {
        mfRead = true;
    }
}

TSHead::TSHead(MediaBytes& aBytes, const TSLayout& aLayout) : mBytes(aBytes), mLayout(aLayout) {}

const TSProgram* TSHead::GetProgram() const {
    return mProgram ? &mTables.GetPrograms()[*mProgram] : nullptr;
}

std::uint16_t TSHead::GetClockPID() const {
    const TSProgram* const program = GetProgram();
    if (program != nullptr && mScan.Find(program->mClockPID) != nullptr) {
        return program->mClockPID;
    }
    for (const TSTrack& track : mTracks) { // the clock of a stream whose map is wrong, or is not there
        const TSSeen* const seen = mScan.Find(track.mStream.mPID);
        if (seen != nullptr && seen->mClock.mFirst) {
            return track.mStream.mPID;
        }
    }
    return kTSPacket_NullPID;
}

const TSTrack* TSHead::FindTrack(StreamKind aKind) const {
    const TSTrack* first = nullptr;
    for (const TSTrack& track : mTracks) {
        if (track.mStream.GetKind() != aKind) {
            continue;
        }
        if (mScan.Find(track.mStream.mPID) != nullptr) {
            return &track;
        }
        first = first != nullptr ? first : &track;
    }
    return first;
}

bool TSHead::Occurs(const TSProgram& aProgram, StreamKind aKind) const {
    return std::any_of(aProgram.mStreams.begin(), aProgram.mStreams.end(), [&](const TSStream& aStream) {
        return aStream.GetKind() == aKind && mScan.Find(aStream.mPID) != nullptr;
    });
}

/// The first program with pictures that are there; else the first with sound; else the first of which there
/// is anything. False where another one may still come.
bool TSHead::ChooseProgram() {
    const std::vector<TSProgram>& programs = mTables.GetPrograms();
    for (const StreamKind kind : {StreamKind::Video, StreamKind::Audio, StreamKind::Unknown}) {
        for (std::size_t i = 0; i < programs.size(); ++i) {
            if (programs[i].mfMapped && Occurs(programs[i], kind)) {
                mProgram = i;
                return kind == StreamKind::Video || programs.size() == 1;
            }
        }
    }
    return false;
}

void TSHead::MakeTracks() {
    mTracks.clear();
    std::vector<TSStream> streams;
    if (GetProgram() != nullptr) {
        streams = GetProgram()->mStreams;
    } else {
        for (const std::uint16_t pid : mScan.GetStreamPIDs()) {
            streams.push_back(UntoldStream(pid, mScan.Find(pid)->mStreamID));
        }
    }
    bool fVideo = false;
    bool fAudio = false;
    for (TSStream& stream : streams) {
        const StreamKind kind = stream.GetKind();
        const bool fThere = mScan.Find(stream.mPID) != nullptr;
        const bool fFirstVideo = kind == StreamKind::Video && fThere && !fVideo;
        const bool fFirstAudio = kind == StreamKind::Audio && fThere && !fAudio;
        fVideo = fVideo || fFirstVideo;
        fAudio = fAudio || fFirstAudio;
        if (mTracks.size() < kTS_MaxStreams) {
            mTracks.emplace_back(std::move(stream), fFirstVideo   ? kMPEGSystem_VideoPayload
                                                    : fFirstAudio ? kMPEGSystem_AudioPayload
                                                                  : kMPEGSystem_OtherPayload);
        }
    }
}

void TSHead::Gather(const unsigned char* aBlock, std::size_t aSize, std::uint64_t aPosition) {
    TSPacketWalk walk(mLayout, aBlock, aSize, aPosition);
    for (TSPacket packet; walk.Next(&packet);) {
        if (packet.mPayloadSize == 0 || packet.mfScrambled) {
            continue;
        }
        const auto track = std::find_if(mTracks.begin(), mTracks.end(), [&](const TSTrack& aTrack) {
            return aTrack.mStream.mPID == packet.mPID;
        });
        if (track == mTracks.end()) {
            continue;
        }
        PESHeader header;
        if (!packet.mfStart) {
            track->mPayload.Add(packet.mPayload, packet.mPayloadSize);
        } else if (ReadPESHeader(packet.mPayload, packet.mPayloadSize, &header)) {
            track->mStream.mfEncrypted = track->mStream.mfEncrypted || header.mfScrambled;
            track->mPayload.Begin(packet.mPayload + header.mHeaderSize,
                                  packet.mPayloadSize - header.mHeaderSize);
        }
    }
}

bool TSHead::IsTold(const TSTrack& aTrack) const {
    const TSSeen* const seen = mScan.Find(aTrack.mStream.mPID);
    return seen != nullptr &&
           (seen->IsScrambled() || aTrack.mStream.mfEncrypted || (aTrack.mfRead && !seen->mStamps.IsEmpty()));
}

/// Whether all is told that usually stands in so many bytes.
bool TSHead::IsEnough() const {
    if (mEnd < kTS_TableWindow && GetProgram() == nullptr) {
        return false;
    }
    const TSTrack* const video = FindTrack(StreamKind::Video);
    const TSTrack* const audio = FindTrack(StreamKind::Audio);
    if (video == nullptr) {
        return audio != nullptr && IsTold(*audio);
    }
    return IsTold(*video) && (audio == nullptr || mEnd >= kTS_TableWindow || IsTold(*audio));
}

/// Goes on by so many bytes. False where there are none.
bool TSHead::ReadBlock(std::size_t aSize) {
    const unsigned char* block = nullptr;
    if (!mBytes.LoadWindow(mEnd, aSize)) {
        return false;
    }
    const std::size_t size = mBytes.Borrow(mEnd, &block);
    if (size < kTSPacket_Size) {
        return false;
    }
    TSPacketWalk walk(mLayout, block, size, mEnd);
    for (TSPacket packet; walk.Next(&packet);) {
        mScan.Take(packet);
        mTables.Take(packet);
    }
    const bool fLast = size < aSize || mEnd + size >= mBytes.GetEnd();
    if (mTracks.empty() && (ChooseProgram() || fLast || mEnd + size >= kTS_TableWindow)) {
        MakeTracks();
    }
    Gather(block, size, mEnd);
    for (TSTrack& track : mTracks) {
        track.Read();
    }
    const std::uint64_t end = std::max<std::uint64_t>(walk.GetPosition(), mEnd + 1);
    mEnd = end;
    return !fLast && end < mBytes.GetEnd();
}

void TSHead::Read() {
    std::size_t size = kTS_WindowSize;
    while (ReadBlock(size) && !IsEnough() && mEnd < kTS_MaxWindow) {
        size = std::min(std::max<std::size_t>(static_cast<std::size_t>(mEnd), size), kTS_LargestBlock);
    }
    for (TSTrack& track : mTracks) {
        TSStream& stream = track.mStream;
        stream.mCodec = stream.mCodec == StreamCodec::Unknown ? stream.mElse : stream.mCodec;
    }
}
