#include "ezFormats/flv/FLVTag.h"

#include "ezBytes/BoxWalk.h"

#include <algorithm>

namespace {

/// The numbers of what Enhanced RTMP packs otherwise; they differ between pictures and sound.
struct ExtendedPackets {
    std::uint32_t mSeveral;                 ///< several tracks
    std::uint32_t mFrameWithoutComposition; ///< a frame where others state when they are shown
};
constexpr ExtendedPackets kVideoPackets = {6, 3};
constexpr ExtendedPackets kSoundPackets = {5, UINT32_MAX};
constexpr std::uint32_t kConfigPacket = 0;
constexpr std::uint32_t kFramePacket = 1;
constexpr std::uint32_t kModified = 7;

FLVPacket PacketOf(std::uint32_t aNumber) {
    return aNumber == kConfigPacket  ? FLVPacket::Config
           : aNumber == kFramePacket ? FLVPacket::Frame
                                     : FLVPacket::Other;
}

/// Steps over what modifies a packet (ModEx), which the kind of the packet follows.
std::uint32_t ReadModified(ByteReader& aReader, std::uint32_t aPacket) {
    while (aPacket == kModified && !aReader.HasFailed()) {
        const std::uint32_t size = aReader.ReadByte() + 1U;
        aReader.Skip(size == 256 ? aReader.ReadBig(2) + 1 : size);
        aPacket = aReader.ReadByte() & 15U;
    }
    return aPacket;
}

/// What follows the first byte of an extended header; the body of the first track is left.
/// @param aPacket  the four low bits of that byte
std::uint32_t ReadExtended(const ExtendedPackets& aPackets, std::uint32_t aPacket, FLVMedia& aMedia) {
    constexpr std::uint32_t kOneTrack = 0;
    ByteReader& reader = aMedia.mBody;
    std::uint32_t packet = ReadModified(reader, aPacket);
    const bool fSeveral = packet == aPackets.mSeveral;
    std::uint32_t tracks = kOneTrack;
    if (fSeveral) {
        const std::uint32_t byte = reader.ReadByte();
        tracks = byte >> 4;
        packet = byte & 15U;
    }
    aMedia.mCodec = reader.ReadBig32(); // of all tracks, or of the first
    if (fSeveral) {
        reader.Skip(1); // number of the track
        reader = tracks != kOneTrack ? reader.Take(reader.ReadBig(3)) : reader;
    }
    return packet;
}

/// Those that state how much later than it is decoded a picture is shown.
bool HasComposition(std::uint32_t aCodec) {
    constexpr BoxType kCodecs[] = {"avc1", "hvc1", "vvc1"};
    return std::find(std::begin(kCodecs), std::end(kCodecs), BoxType(aCodec)) != std::end(kCodecs);
}

void ReadExtendedVideo(FLVMedia& aMedia) {
    const std::uint32_t packet = ReadExtended(kVideoPackets, aMedia.mFirst & 15U, aMedia);
    const bool fShort = packet == kVideoPackets.mFrameWithoutComposition;
    aMedia.mPacket = fShort ? FLVPacket::Frame : PacketOf(packet);
    aMedia.mBody.Skip(packet == kFramePacket && HasComposition(aMedia.mCodec) ? 3 : 0);
}

/// VIDEODATA (E.4.3)
void ReadVideo(FLVMedia& aMedia) {
    constexpr std::uint32_t kCommand = 5; // frame type of what is no picture
    constexpr std::uint32_t kH264 = 7;
    constexpr std::uint32_t kH265 = 12; // laid out as H.264 is
    if ((aMedia.mFirst & 0x80U) != 0) {
        ReadExtendedVideo(aMedia);
    } else {
        aMedia.mCodec = aMedia.mFirst & 15U;
        aMedia.mPacket = FLVPacket::Frame;
        if (aMedia.mCodec == kH264 || aMedia.mCodec == kH265) {
            aMedia.mPacket = PacketOf(aMedia.mBody.ReadByte());
            aMedia.mBody.Skip(3); // CompositionTime
        }
    }
    aMedia.mPacket = (aMedia.mFirst >> 4 & 7U) == kCommand ? FLVPacket::Other : aMedia.mPacket;
}

/// AUDIODATA (E.4.2)
void ReadSound(FLVMedia& aMedia) {
    constexpr std::uint32_t kExtended = 9;
    constexpr std::uint32_t kAAC = 10;
    aMedia.mCodec = std::uint32_t{aMedia.mFirst} >> 4;
    aMedia.mPacket = FLVPacket::Frame;
    if (aMedia.mCodec == kExtended) {
        aMedia.mPacket = PacketOf(ReadExtended(kSoundPackets, aMedia.mFirst & 15U, aMedia));
    } else if (aMedia.mCodec == kAAC) {
        aMedia.mPacket = PacketOf(aMedia.mBody.ReadByte());
    }
}

} // namespace

bool FLVTag_Read(ByteReader aReader, FLVTag* aTag) {
    constexpr std::uint32_t kReserved = 0xC0;
    constexpr std::uint32_t kFilter = 0x20;
    aTag->mStart = aReader.GetPosition();
    const std::uint32_t type = aReader.ReadByte();
    aTag->mSize = static_cast<std::uint32_t>(aReader.ReadBig(3));
    aTag->mTime = static_cast<std::uint32_t>(aReader.ReadBig(3));
    aTag->mTime |= std::uint32_t{aReader.ReadByte()} << 24;
    const std::uint64_t stream = aReader.ReadBig(3);
    aTag->mKind = static_cast<FLVKind>(type & 31U);
    aTag->mfFiltered = (type & kFilter) != 0;
    aTag->mContent = aReader.Take(std::min<std::uint64_t>(aTag->mSize, aReader.GetLeft()));
    const bool fKind = aTag->IsMedia() || aTag->mKind == FLVKind::Script;
    return !aReader.HasFailed() && (type & kReserved) == 0 && fKind && stream == 0;
}

bool FLVMedia_Read(const FLVTag& aTag, FLVMedia* aMedia) {
    aMedia->mBody = aTag.mContent;
    aMedia->mFirst = aMedia->mBody.ReadByte();
    if (!aTag.IsMedia() || aMedia->mBody.HasFailed()) {
        return false;
    }
    (aTag.mKind == FLVKind::Video ? ReadVideo : ReadSound)(*aMedia);
    return !aMedia->mBody.HasFailed();
}
