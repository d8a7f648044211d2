#include "ezFormats/ogg/OggLink.h"

#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/ogg/OGMStream.h"

#include <algorithm>
#include <cstring>

OggLink::OggLink(ByteReader aReader) : mHeadEnd(aReader.GetPosition()) {
    OggPage page;
    ByteReader body = aReader;
    while (mCount < mStreams.size() && ReadOggPage(aReader, &page, &body) && page.mfBegins) {
        mStreams[mCount++] = ReadOggStream(body, page.mSerial);
        if (aReader.HasFailed()) {
            break;
        }
        mHeadEnd = aReader.GetPosition();
    }
}

const OggStream* OggLink::Find(std::uint32_t aSerial) const {
    const OggStream* const stream = std::find_if(
        begin(), end(), [aSerial](const OggStream& aStream) { return aStream.mSerial == aSerial; });
    return stream != end() ? stream : nullptr;
}

const OggStream* OggLink::FindFirst(OggRole aRole) const {
    const OggStream* const stream =
        std::find_if(begin(), end(), [aRole](const OggStream& aStream) { return aStream.Is(aRole); });
    return stream != end() ? stream : nullptr;
}

std::uint32_t OggLink::Count(OggRole aRole) const {
    return static_cast<std::uint32_t>(
        std::count_if(begin(), end(), [aRole](const OggStream& aStream) { return aStream.Is(aRole); }));
}

std::uint64_t OggLink::GetPresented() const {
    const OggStream* const skeleton = FindFirst(OggRole::File);
    return skeleton != nullptr ? skeleton->mPresented : 0;
}

void OggLink::SetVideoAside() {
    const OggStream* const video = GetVideo();
    for (OggStream& stream : mStreams) {
        stream.mMark = &stream == video ? nullptr : stream.mMark;
    }
}

/// The stream of a serial number, where its frames tell more and none was seen.
OggStream* OggLink::FindForFrame(std::uint32_t aSerial) {
    for (const OggStream* const first : {GetSound(), GetVideo()}) {
        const bool fOGM = first != nullptr && first->mSerial == aSerial && first->IsOGM();
        if (fOGM && !first->mfFrameSeen) {
            return &mStreams[static_cast<std::size_t>(first - begin())];
        }
    }
    return nullptr;
}

void OggLink::ReadFrames(MediaBytes& aBytes) {
    OggPage page;
    ByteReader packet(aBytes);
    for (OggFrontPages pages(aBytes, *this); pages.Next(&page, &packet);) {
        OggStream* const stream = FindForFrame(page.mSerial);
        if (stream == nullptr) {
            continue;
        }
        ByteReader start(aBytes);
        start.Skip(page.mStart);
        for (OggPagePackets packets(start); !stream->mfFrameSeen && packets.Next(&packet);) {
            const auto size =
                static_cast<std::size_t>(std::min<std::uint64_t>(packet.GetLeft(), kOgg_MaxFrame));
            const bool fHere = size != 0 && aBytes.HasBuffered(packet.GetPosition(), size);
            if (fHere && !packets.HasBegunBefore() && OGMPacket_IsFrame(packet)) {
                stream->mfFrameSeen = true;
                OGMPacket_ReadFrame(packet, *stream);
            }
        }
    }
}

OggFrontPages::OggFrontPages(MediaBytes& aBytes, const OggLink& aLink) : mBytes(aBytes), mPages(aBytes) {
    mPages.Skip(aLink.GetHeadEnd());
}

/// True when the header of the page that the pages stand at is buffered.
bool OggFrontPages::HasHeader() const {
    const std::uint64_t start = mPages.GetPosition();
    if (!mBytes.HasBuffered(start, kOggPage_LeastHead)) {
        return false;
    }
    ByteReader header = mPages;
    header.Skip(kOggPage_LeastHead - 1);
    return mBytes.HasBuffered(start, kOggPage_LeastHead + header.ReadByte()); // sizes of so many segments
}

bool OggFrontPages::Next(OggPage* aPage, ByteReader* aBody) {
    if (mLeft == 0 || !HasHeader()) {
        return false;
    }
    --mLeft;
    return ReadOggPage(mPages, aPage, aBody);
}

/// Moves on to the next letter that a page may begin with.
bool OggPageSearch::FindLetter() {
    while (mPosition < mEnd && mBytes.HasBuffered(mPosition)) {
        const unsigned char* bytes = nullptr;
        const std::size_t count = mBytes.Borrow(mPosition, &bytes);
        const void* const letter = std::memchr(bytes, 'O', count);
        if (letter != nullptr) {
            mPosition += static_cast<std::size_t>(static_cast<const unsigned char*>(letter) - bytes);
            return mPosition < mEnd;
        }
        mPosition += count;
    }
    return false;
}

bool OggPageSearch::Next(OggPage* aPage) {
    for (; FindLetter() && mBytes.HasBuffered(mPosition, kOggPage_MaxHead); ++mPosition) {
        ByteReader reader(mBytes);
        reader.Skip(mPosition);
        ByteReader body = reader;
        if (ReadOggPage(reader, aPage, &body)) {
            ++mPosition;
            return true;
        }
    }
    return false;
}
