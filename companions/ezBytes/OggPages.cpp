#include "ezBytes/OggPages.h"

namespace {

using namespace std::string_view_literals;

constexpr OggMark kMarks[] = {
    {OggKind::Vorbis, "\x01vorbis"sv, "\x03vorbis"sv},
    {OggKind::Opus, "OpusHead"sv, "OpusTags"sv},
    {OggKind::FLAC,
     "\x7F"
     "FLAC"sv,
     ""sv},
    {OggKind::Speex, "Speex   "sv, ""sv},
    {OggKind::Theora, "\x80theora"sv, "\x81theora"sv},
    {OggKind::OGMSound,
     "\x01"
     "audio\0\0\0"sv,
     "\x03vorbis"sv},
    {OggKind::OGMVideo, "\x01video\0\0\0"sv, "\x03vorbis"sv},
    {OggKind::OtherVideo, "OVP80\x01"sv, "OVP80\x02 "sv},
    {OggKind::OtherVideo, "BBCD"sv, "-"sv}, // Dirac, which has none
};

} // namespace

bool ReadOggPage(ByteReader& aReader, OggPage* aPage, ByteReader* aBody) {
    constexpr std::uint32_t kCapture = 0x4F676753; // "OggS"
    *aPage = OggPage();
    aPage->mStart = aReader.GetPosition();
    aReader.Require(aReader.ReadBig32() == kCapture && aReader.ReadByte() == 0);
    const unsigned flags = aReader.ReadByte();
    aPage->mfContinues = (flags & 1) != 0;
    aPage->mfBegins = (flags & 2) != 0;
    const std::uint64_t granule = aReader.ReadLittle(8); // with a sign
    aPage->mGranule = granule <= INT64_MAX ? granule : kOggPage_NoGranule;
    aPage->mSerial = aReader.ReadLittle32();
    aReader.Skip(8); // number and check sum
    const unsigned segments = aReader.ReadByte();
    std::uint64_t size = 0;
    for (unsigned i = 0; i < segments; ++i) {
        const unsigned segment = aReader.ReadByte();
        size += segment;
        if (!aPage->mfFirstEnds) {
            aPage->mFirstSize = size;
            aPage->mfFirstEnds = segment < 255;
        }
        aPage->mEndings += segment < 255 ? 1 : 0;
    }
    const bool fHeader = !aReader.HasFailed();
    *aBody = aReader.Take(size);
    return fHeader;
}

OggPacketBytes::OggPacketBytes(ByteSource& aBytes, const ByteReader& aPages, std::uint32_t aSerial,
                               std::uint32_t aMaxPages)
    : PieceBytes(aBytes, {}), mPages(aPages), mSerial(aSerial), mLeft(aMaxPages) {}

OggPacketBytes::~OggPacketBytes() = default;

std::optional<std::uint64_t> OggPacketBytes::GetSize() const {
    return mfWhole ? PieceBytes::GetSize() : std::nullopt;
}

std::size_t OggPacketBytes::Borrow(std::uint64_t aPosition, const unsigned char** aBytes) {
    if (aPosition == UINT64_MAX || !Reach(aPosition + 1)) {
        return 0;
    }
    const std::size_t count = PieceBytes::Borrow(aPosition, aBytes);
    KeepBuffered(count != 0 ? *aBytes : nullptr, aPosition, count);
    return count;
}

bool OggPacketBytes::Reach(std::uint64_t anEnd) {
    while (GetKnownSize() < anEnd) {
        KeepBuffered(nullptr, 0, 0);
        if (!AddPage()) {
            return false;
        }
    }
    return true;
}

bool OggPacketBytes::Next() {
    while (!mfWhole) {
        if (!AddPage()) {
            return false;
        }
    }
    KeepBuffered(nullptr, 0, 0);
    Clear();
    mfBegun = false;
    mfWhole = false;
    return AddPage();
}

bool OggPacketBytes::AddPage() {
    OggPage page;
    ByteReader body = mPages;
    for (; mLeft != 0 && !mfWhole && ReadOggPage(mPages, &page, &body); --mLeft) {
        if (page.mSerial != mSerial) {
            continue;
        }
        if (page.mfBegins || page.mfContinues != mfBegun || body.HasFailed()) {
            break; // pages are missing
        }
        --mLeft;
        mfBegun = true;
        mfWhole = page.mfFirstEnds;
        Append({body.GetPosition(), page.mFirstSize});
        return true;
    }
    mLeft = 0;
    return false;
}

const OggMark* FindOggMark(ByteReader aHead) {
    for (const OggMark& mark : kMarks) {
        ByteReader head = aHead;
        if (head.ReadText(mark.mHead.size()).View() == mark.mHead) {
            return &mark;
        }
    }
    return nullptr;
}
