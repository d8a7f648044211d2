#include "ezFormats/ogg/OggLink.h"

#include "ezFormats/detail/MediaBytes.h"

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
    const auto* const end = mStreams.begin() + mCount;
    const auto* const stream = std::find_if(
        mStreams.begin(), end, [aSerial](const OggStream& aStream) { return aStream.mSerial == aSerial; });
    return stream != end ? stream : nullptr;
}

const OggStream* OggLink::GetSound() const {
    const auto* const end = mStreams.begin() + mCount;
    const auto* const stream =
        std::find_if(mStreams.begin(), end, [](const OggStream& aStream) { return aStream.IsSound(); });
    return stream != end ? stream : nullptr;
}

const OggStream* OggLink::GetVideo() const {
    const auto* const end = mStreams.begin() + mCount;
    const auto* const stream =
        std::find_if(mStreams.begin(), end, [](const OggStream& aStream) { return aStream.IsVideo(); });
    return stream != end ? stream : nullptr;
}

std::uint32_t OggLink::CountSounds() const {
    return static_cast<std::uint32_t>(
        std::count_if(mStreams.begin(), mStreams.begin() + mCount,
                      [](const OggStream& aStream) { return aStream.IsSound(); }));
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
