#include "ezBytes/OggPages.h"

namespace {

using namespace std::string_view_literals;

/// @name Flags of a page (RFC 3533, 6)
/// @{
constexpr unsigned kContinues = 1;
constexpr unsigned kBegins = 2;
constexpr unsigned kEnds = 4;
/// @}

constexpr std::string_view kNoComments = "-"sv;
constexpr std::string_view kVorbisComments = "\x03vorbis"sv;
// A letter that would be read as a digit of the escape before it is written as its number, too.
constexpr OggMark kMarks[] = {
    {OggKind::Vorbis, OggRole::Sound, "\x01vorbis"sv, kVorbisComments},
    {OggKind::Opus, OggRole::Sound, "OpusHead"sv, "OpusTags"sv},
    {OggKind::FLAC, OggRole::Sound, "\x7F\x46LAC"sv, {}},
    {OggKind::Speex, OggRole::Sound, "Speex   "sv, {}},
    {OggKind::OGMSound, OggRole::Sound, "\x01\x61udio\0\0\0"sv, kVorbisComments},
    {OggKind::Theora, OggRole::Video, "\x80theora"sv, "\x81theora"sv},
    {OggKind::OGMVideo, OggRole::Video, "\x01video\0\0\0"sv, kVorbisComments},
    {OggKind::VP8, OggRole::Video, "OVP80\x01"sv, "OVP80\x02 "sv},
    {OggKind::Dirac, OggRole::Video, "BBCD"sv, kNoComments},
    {OggKind::Daala, OggRole::Video, "\x80\x64\x61\x61la"sv, "\x81\x64\x61\x61la"sv},
    {OggKind::OGMText, OggRole::Text, "\x01text\0\0\0\0"sv, kVorbisComments},
    {OggKind::Kate, OggRole::Text, "\x80kate\0\0\0"sv, "\x81kate\0\0\0\0"sv},
    {OggKind::CMML, OggRole::Text, "CMML\0\0\0\0"sv, kNoComments},
    {OggKind::Skeleton, OggRole::File, "fishead\0"sv, kNoComments},
};

} // namespace

bool ReadOggPage(ByteReader& aReader, OggPage* aPage, ByteReader* aBody) {
    constexpr std::uint32_t kCapture = 0x4F676753; // "OggS"
    *aPage = OggPage();
    aPage->mStart = aReader.GetPosition();
    aReader.Require(aReader.ReadBig32() == kCapture && aReader.ReadByte() == 0);
    const unsigned flags = aReader.ReadByte();
    aPage->mfContinues = (flags & kContinues) != 0;
    aPage->mfBegins = (flags & kBegins) != 0;
    aPage->mfEnds = (flags & kEnds) != 0;
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

OggPagePackets::OggPagePackets(ByteReader aPage) : mSizes(aPage), mBody(aPage) {
    aPage.Skip(5);
    mfContinues = (aPage.ReadByte() & kContinues) != 0;
    aPage.Skip(20); // position, stream, number, check sum
    const unsigned count = aPage.ReadByte();
    mSizes = aPage.Take(count);
    mBody = aPage;
}

bool OggPagePackets::Next(ByteReader* aPacket) {
    constexpr unsigned kGoesOn = 255;
    if (mSizes.GetLeft() == 0) {
        return false;
    }
    std::uint64_t size = 0;
    unsigned segment = kGoesOn;
    while (segment == kGoesOn && mSizes.GetLeft() != 0) {
        segment = mSizes.ReadByte();
        size += segment;
    }
    *aPacket = mBody.Take(size);
    mfBegunBefore = mfContinues;
    mfContinues = false;
    mfEnded = segment != kGoesOn;
    return !mSizes.HasFailed();
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
