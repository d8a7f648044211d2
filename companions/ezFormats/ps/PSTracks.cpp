#include "ezFormats/ps/PSTracks.h"

#include "ezFormats/mpegsystem/PESHeader.h"
#include "ezFormats/ps/PSLimits.h"
#include "ezFormats/ps/PSPackets.h"
#include "ezFormats/ps/Substream.h"

#include "ezBytes/BitReader.h"

#include <algorithm>

namespace {

constexpr std::uint8_t kFirstVC1 = 0x55; ///< stream_id_extension of VC-1 (SMPTE RP 227)
constexpr std::uint8_t kLastVC1 = 0x5F;

/// Video by the first start code that its codec begins with, wherever the packet was cut. VC-1 has streams of
/// its own, and the code of its sequences is that of a slice of MPEG video.
StreamCodec LookForVideo(const unsigned char* aBytes, std::size_t aSize) {
    for (std::size_t i = 0; i + 12 <= aSize; ++i) {
        const bool fCode = aBytes[i + 2] == 1 || (aBytes[i + 2] == 0 && aBytes[i + 3] == 1);
        if (aBytes[i] != 0 || aBytes[i + 1] != 0 || !fCode) {
            continue;
        }
        const StreamCodec codec = StreamCodec_OfPayload(aBytes + i, aSize - i);
        if (codec != StreamCodec::VC1 && StreamCodec_GetKind(codec) == StreamKind::Video) {
            return codec;
        }
    }
    return StreamCodec::Unknown;
}

} // namespace

unsigned PSTrackID::GetNumber() const {
    if (mStream == kStreamID_Private1) {
        return mSubstream & 7U;
    }
    return mStream & (StreamID_IsAudio(mStream) ? 0x1FU : 0x0FU);
}

bool PSTracks::Read(const unsigned char* aBlock, const PSPacket& aPacket, PSContent& aContent) const {
    PESHeader header;
    const auto head = static_cast<std::size_t>(aPacket.mBytes - (aBlock + aPacket.mPlace));
    const std::size_t size = head + aPacket.mSize;
    if (!ReadPESHeader(aBlock + aPacket.mPlace, size, &header) || header.mHeaderSize > size) {
        return false;
    }
    const std::uint8_t stream = aPacket.mCode;
    aContent = PSContent();
    aContent.mID.mStream = stream;
    aContent.mfScrambled = header.mfScrambled;
    aContent.mPTS = header.mPTS;
    aContent.mBytes = aBlock + aPacket.mPlace + header.mHeaderSize;
    aContent.mSize = size - header.mHeaderSize;
    if (StreamID_IsVideo(stream) || StreamID_IsAudio(stream)) {
        aContent.mCodec = mMap[stream];
        return true;
    }
    if (stream == kStreamID_Extended) {
        aContent.mID.mSubstream = header.mExtension;
        const bool fVC1 = header.mExtension >= kFirstVC1 && header.mExtension <= kLastVC1;
        aContent.mCodec = fVC1 ? StreamCodec::VC1 : StreamCodec::Unknown;
        return fVC1;
    }
    return stream == kStreamID_Private1 && ReadSubstream(aContent);
}

/// What private stream 1 carries: a substream of a DVD, or one stream of sound without a number.
bool PSTracks::ReadSubstream(PSContent& aContent) const {
    const PSTrackID bare = {kStreamID_Private1, 0};
    const auto fIsBare = [&bare](const PSTrack& aTrack) { return aTrack.mID == bare; };
    if (aContent.mSize == 0) {
        return false;
    }
    const Substream substream = Substream_Of(aContent.mBytes[0]);
    const bool fBare = std::any_of(mTracks.begin(), mTracks.end(), fIsBare);
    if (fBare || substream.mCodec == StreamCodec::Unknown) {
        aContent.mCodec = StreamCodec_OfPayload(aContent.mBytes, aContent.mSize);
        return fBare || StreamCodec_GetKind(aContent.mCodec) == StreamKind::Audio;
    }
    aContent.mID.mSubstream = aContent.mBytes[0];
    aContent.mCodec = substream.mCodec;
    const std::size_t head = std::min(substream.mHeadSize, aContent.mSize);
    aContent.mBytes += head;
    aContent.mSize -= head;
    return true;
}

const PSTrack* PSTracks::Add(const PSContent& aContent) {
    const auto fIs = [&aContent](const PSTrack& aTrack) { return aTrack.mID == aContent.mID; };
    auto track = std::find_if(mTracks.begin(), mTracks.end(), fIs);
    if (track == mTracks.end()) {
        if (mTracks.size() == kPS_MaxTracks) {
            return nullptr;
        }
        mTracks.emplace_back();
        track = mTracks.end() - 1;
        track->mID = aContent.mID;
    }
    track->mfScrambled = track->mfScrambled || aContent.mfScrambled;
    if (track->mCodec == StreamCodec::Unknown) {
        track->mCodec = LookAt(aContent);
    }
    return &*track;
}

/// The codec as it is told, else by what begins in the packet.
StreamCodec PSTracks::LookAt(const PSContent& aContent) {
    if (aContent.mCodec != StreamCodec::Unknown || aContent.mfScrambled) {
        return aContent.mCodec;
    }
    return StreamID_IsVideo(aContent.mID.mStream) ? LookForVideo(aContent.mBytes, aContent.mSize)
                                                  : StreamCodec_OfPayload(aContent.mBytes, aContent.mSize);
}

void PSTracks::AddMap(const PSPacket& aPacket) {
    constexpr std::size_t kStart = 2; // version and marker
    ezBitReader bits(aPacket.mBytes, 8 * aPacket.mSize);
    bits.Skip(8 * kStart);
    bits.Skip(8 * std::size_t{bits.Read(16)}); // descriptors of the program
    std::size_t left = bits.Read(16);
    while (left >= 4 && !bits.HasFailed()) {
        const std::uint32_t type = bits.Read(8);
        const std::uint32_t stream = bits.Read(8);
        const std::size_t size = bits.Read(16);
        bits.Skip(8 * size);
        if (!bits.HasFailed()) {
            mMap[stream] = StreamCodec_OfType(static_cast<std::uint8_t>(type));
        }
        left -= std::min(left, 4 + size);
    }
}

StreamKind PSTrack::GetKind() const {
    if (StreamID_IsVideo(mID.mStream)) {
        return StreamKind::Video;
    }
    return StreamID_IsAudio(mID.mStream) ? StreamKind::Audio : StreamCodec_GetKind(mCodec);
}

const PSTrack* PSTracks::GetFirst(StreamKind aKind) const {
    const PSTrack* first = nullptr;
    for (const PSTrack& track : mTracks) {
        if (track.GetKind() == aKind &&
            (first == nullptr || track.mID.GetNumber() < first->mID.GetNumber())) {
            first = &track;
        }
    }
    return first;
}

std::uint32_t PSTracks::Count(StreamKind aKind) const {
    return static_cast<std::uint32_t>(
        std::count_if(mTracks.begin(), mTracks.end(),
                      [aKind](const PSTrack& aTrack) { return aTrack.GetKind() == aKind; }));
}
