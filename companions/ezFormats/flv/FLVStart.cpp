#include "ezFormats/flv/FLVStart.h"

#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/flv/FLVLimits.h"

#include <algorithm>

namespace {

constexpr std::uint32_t kHeaderSize = 9;
constexpr std::uint32_t kMagic = 0x464C5601; // "FLV", version 1

std::vector<unsigned char> BytesOf(ByteReader aBody, std::size_t aSize) {
    std::vector<unsigned char> bytes(aSize);
    if (!bytes.empty() && !aBody.Read(bytes.data(), bytes.size())) {
        bytes.clear();
    }
    return bytes;
}

} // namespace

bool FLVHeader_IsAt(ByteReader aBytes) {
    return aBytes.ReadBig32() == kMagic;
}

FLVStart::FLVStart(MediaBytes& aBytes, const CodePage& aCodePage) : mBytes(aBytes), mCodePage(aCodePage) {
    constexpr std::uint32_t kSound = 4;
    constexpr std::uint32_t kVideo = 1;
    ByteReader reader(aBytes);
    reader.Skip(4);
    const std::uint32_t flags = reader.ReadByte();
    const std::uint32_t size = reader.ReadBig32();
    mfVideoPromised = (flags & kVideo) != 0;
    mfSoundPromised = (flags & kSound) != 0;
    mTags =
        std::uint64_t{std::max(size, kHeaderSize)} + kFLV_TagTrailerSize; // that of a tag before the first
    mNext = mTags;
}

void FLVStart::Read() {
    Walk();
    if (!mVideo.mfThere && !mSound.mfThere) { // the header promises neither, or the wrong one
        mfVideoPromised = true;
        mfSoundPromised = true;
        Walk();
    }
}

void FLVStart::ReadOn(FLVKind aKind) {
    bool& promised = aKind == FLVKind::Video ? mfVideoPromised : mfSoundPromised;
    if (!promised) {
        promised = true;
        Walk();
    }
}

/// A track is told by its first frame, and what sets the decoder up before it.
bool FLVStart::Wants(FLVKind aKind) const {
    return aKind == FLVKind::Video ? mfVideoPromised && !mVideo.mfFrame : mfSoundPromised && !mSound.mfFrame;
}

void FLVStart::Walk() {
    for (; mCount < kFLV_MaxStartTags && Load(mNext, kFLV_TagHeaderSize); ++mCount) {
        ByteReader reader(mBytes);
        reader.Skip(mNext);
        FLVTag tag(reader);
        if (!FLVTag_Read(reader, &tag)) {
            return;
        }
        mNext = tag.GetNext();
        if (tag.mKind == FLVKind::Script) {
            TakeMetadata(tag);
        } else {
            TakeMedia(tag);
        }
    }
}

/// Bytes of a tag, which are read where they are wanted: a window is.
bool FLVStart::Load(std::uint64_t aPosition, std::size_t aSize) {
    const bool fThere = mBytes.HasBuffered(aPosition, aSize);
    const bool fWanted = Wants(FLVKind::Video) || Wants(FLVKind::Sound);
    if (fThere || !fWanted || mWindows == kFLV_StartWindows.size()) {
        return fThere;
    }
    return mBytes.LoadWindow(aPosition, kFLV_StartWindows[mWindows++]);
}

/// All that is looked at of it at once: lists of key frames make it long.
void FLVStart::TakeMetadata(const FLVTag& aTag) {
    ByteReader content = aTag.mContent;
    const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(content.GetLeft(), kFLV_MaxMetadata));
    const std::uint64_t start = content.GetPosition();
    if (size != 0 && !mBytes.HasBuffered(start, size)) {
        mBytes.LoadWindow(start, size + kFLV_StartWindows[0]);
    }
    mMetadata.Take(content.Take(size), mCodePage);
}

void FLVStart::TakeMedia(const FLVTag& aTag) {
    FLVMedia media(aTag.mContent);
    if (!FLVMedia_Read(aTag, &media)) {
        return;
    }
    FLVTrack& track = aTag.mKind == FLVKind::Video ? mVideo : mSound;
    if (media.mPacket == FLVPacket::Other) {
        return;
    }
    if (!track.mfThere) {
        track.mfThere = true;
        track.mCodec = media.mCodec;
        track.mFirst = media.mFirst;
    }
    track.mfEncrypted = track.mfEncrypted || aTag.mfFiltered;
    const bool fOurs = media.mCodec == track.mCodec;
    if (media.mPacket == FLVPacket::Config && fOurs && track.mConfig.empty()) {
        track.mConfig = ReadBody(media.mBody, kFLV_MaxConfig);
    } else if (media.mPacket == FLVPacket::Frame) {
        if (!track.mfFrame && fOurs) {
            track.mFrame = ReadBody(media.mBody, kFLV_MaxFrame);
            track.mfFrame = true;
        }
        mFirstTime = std::min(mFirstTime.value_or(aTag.mTime), aTag.mTime);
    }
}

/// As many bytes as are looked at; of a body that is cut, what there is.
std::vector<unsigned char> FLVStart::ReadBody(const ByteReader& aBody, std::size_t aMost) {
    const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(aBody.GetLeft(), aMost));
    Load(aBody.GetPosition(), size);
    return BytesOf(aBody, size);
}
