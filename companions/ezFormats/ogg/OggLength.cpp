#include "ezFormats/ogg/OggLength.h"

#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/detail/MediaNumbers.h"
#include "ezFormats/ogg/OggLimits.h"

#include "ezPlatform/base/Checked.h"

#include <algorithm>

namespace {

ByteReader ReaderAt(MediaBytes& aBytes, std::uint64_t aPosition) {
    ByteReader reader(aBytes);
    reader.Skip(aPosition);
    return reader;
}

/// Samples of the packets of Opus that end on a page, less those of one that began on the page before: its
/// first byte, which tells how many, is not here.
std::uint64_t OpusSamplesOn(const OggPage& aPage, ByteReader aBody, ByteReader aTable) {
    std::uint64_t samples = 0;
    std::uint64_t size = 0;
    bool fHere = !aPage.mfContinues;
    while (aTable.GetLeft() != 0) {
        const unsigned segment = aTable.ReadByte();
        size += segment;
        if (segment == 255) {
            continue;
        }
        const ByteReader packet = aBody.Take(size);
        samples += fHere ? OpusSamplesOf(packet) : 0;
        fHere = true;
        size = 0;
    }
    return samples;
}

} // namespace

/// What the last pages before a place say.
struct OggLength::Tail {
    bool mfPage = false;           ///< there is one that tells a position
    std::uint32_t mLastSerial = 0; ///< of the last of them
    std::uint64_t mSound = kOggPage_NoGranule;
    std::uint64_t mVideo = kOggPage_NoGranule;

    /// Takes what another one, of pages before these, tells besides.
    void Complete(const Tail& aBefore) {
        mLastSerial = mfPage ? mLastSerial : aBefore.mLastSerial;
        mfPage = mfPage || aBefore.mfPage;
        mSound = mSound != kOggPage_NoGranule ? mSound : aBefore.mSound;
        mVideo = mVideo != kOggPage_NoGranule ? mVideo : aBefore.mVideo;
    }
};

OggLength::OggLength(MediaBytes& aBytes, const OggLink& aFirst) : mBytes(aBytes), mLink(aFirst) {}

/// Reads back from a place until each stream told where it ends.
OggLength::Tail OggLength::ReadTail(const OggLink& aLink, std::uint64_t anEnd) const {
    const OggStream* const sound = aLink.GetSound();
    const OggStream* const video = aLink.GetVideo();
    Tail tail;
    std::uint64_t end = anEnd;
    for (std::uint32_t count = 0; count < kOgg_MaxTails && end > aLink.GetHeadEnd(); ++count) {
        const std::uint64_t start =
            std::max(aLink.GetHeadEnd(), end - std::min<std::uint64_t>(end, kOgg_TailSize));
        mBytes.Load(start, kOgg_TailSize);
        Tail here;
        OggPage page;
        for (OggPageSearch search(mBytes, start, end); search.Next(&page);) {
            if (page.mGranule == kOggPage_NoGranule) {
                continue;
            }
            here.mfPage = true;
            here.mLastSerial = page.mSerial;
            here.mSound = sound != nullptr && sound->mSerial == page.mSerial ? page.mGranule : here.mSound;
            here.mVideo = video != nullptr && video->mSerial == page.mSerial ? page.mGranule : here.mVideo;
        }
        tail.Complete(here);
        const bool fSound = sound == nullptr || tail.mSound != kOggPage_NoGranule;
        const bool fVideo = video == nullptr || tail.mVideo != kOggPage_NoGranule;
        if ((fSound && fVideo) || start == aLink.GetHeadEnd()) {
            break;
        }
        end = start + kOggPage_MaxHead; // a header may go across
    }
    return tail;
}

/// Samples that a page of sound holds; the most that they can be, where only a decoder knows.
std::uint64_t OggLength::HeldBy(const OggPage& aPage, ByteReader aBody, const OggStream& aStream) const {
    constexpr std::uint64_t kLeastOpus = 120;
    if (aStream.mMark->mKind != OggKind::Opus) {
        return std::uint64_t{aPage.mEndings} * aStream.mPacketSamples;
    }
    const std::uint64_t least = aPage.mEndings * kLeastOpus;
    const std::uint64_t before = aPage.mGranule - std::min(aPage.mGranule, least);
    if (aStream.TimeOf(before) < kOgg_MinStart) {
        return aPage.mGranule; // so it starts at 0 anyway
    }
    ByteReader table = ReaderAt(mBytes, aPage.mStart + 26);
    mBytes.Load(aPage.mStart, kOggPage_MaxSize);
    return OpusSamplesOn(aPage, aBody, table.Take(table.ReadByte()));
}

/// Finds out when the sound of the link starts.
void OggLength::FindStart() {
    mStart = 0;
    const OggStream* const sound = mLink.GetSound();
    ByteReader pages = ReaderAt(mBytes, mLink.GetHeadEnd());
    OggPage page;
    ByteReader body = pages;
    for (std::uint32_t i = 0; i < kOgg_MaxHeadPages && sound != nullptr && ReadOggPage(pages, &page, &body);
         ++i) {
        if (page.mSerial != sound->mSerial || page.mGranule == 0 || page.mGranule == kOggPage_NoGranule) {
            continue;
        }
        mSoundStart = mSoundStart != 0 ? mSoundStart : page.mStart;
        const std::uint64_t held = HeldBy(page, body, *sound);
        const std::uint64_t start = page.mGranule - std::min(page.mGranule, held);
        const std::uint64_t time = sound->TimeOf(ezSaturating_Add64(start, sound->mPreSkip));
        mStart = time >= kOgg_MinStart ? time : 0;
        return;
    }
}

/// Adds the link that is measured, which ends at a place as its tail says.
void OggLength::Add(const Tail& aTail, std::uint64_t anEnd) {
    std::uint64_t length = 0;
    if (aTail.mSound != kOggPage_NoGranule) {
        const std::uint64_t end = mLink.GetSound()->TimeOf(aTail.mSound);
        length = end - std::min(mStart, end);
    }
    if (aTail.mVideo != kOggPage_NoGranule && mStart == 0) {
        length = std::max(length, mLink.GetVideo()->TimeOf(aTail.mVideo));
    }
    mMicroseconds = ezSaturating_Add64(mMicroseconds, length);
    mSeenEnd = anEnd;
    mSeenTime = 0;
}

/// The first page that begins within one's length of a place.
bool OggLength::FindPage(std::uint64_t aPosition, OggPage* aPage) const {
    for (const std::uint32_t size : {kOgg_ProbeSize, kOgg_TailSize}) {
        if (!mBytes.Load(aPosition, size)) {
            return false;
        }
        if (OggPageSearch(mBytes, aPosition, aPosition + size).Next(aPage)) {
            return true;
        }
    }
    return false;
}

/// Notes how far the measured link has come at a page of it.
void OggLength::Note(const OggPage& aPage) {
    const OggStream* const sound = mLink.GetSound();
    if (sound != nullptr && sound->mSerial == aPage.mSerial && aPage.mGranule != kOggPage_NoGranule) {
        mSeenEnd = aPage.mStart;
        mSeenTime = sound->TimeOf(aPage.mGranule);
    }
}

/// Where the link after this one begins: by halves, and then page by page. 0 where none does.
std::uint64_t OggLength::FindBorder() {
    std::uint64_t low = mLink.GetHeadEnd();
    std::uint64_t high = mBytes.GetEnd();
    OggPage page;
    while (high - low > kOgg_TailSize) {
        const std::uint64_t middle = low + (high - low) / 2;
        if (!FindPage(middle, &page)) {
            return 0;
        }
        if (mLink.Find(page.mSerial) != nullptr) {
            Note(page);
            low = std::min(page.mStart, high);
        } else {
            high = middle;
        }
    }
    for (unsigned window = 0; window < 2 && mBytes.Load(low, kOgg_TailSize); ++window) {
        for (OggPageSearch search(mBytes, low, low + kOgg_TailSize); search.Next(&page);) {
            if (page.mfBegins && mLink.Find(page.mSerial) == nullptr) {
                return page.mStart;
            }
        }
        low += kOgg_TailSize - kOggPage_MaxHead;
    }
    return 0;
}

/// The rest goes on as the part that was measured, and an eighth more, so that it is not short.
void OggLength::Estimate() {
    const std::uint64_t seen = ezSaturating_Add64(mMicroseconds, mSeenTime);
    const std::uint64_t all = MediaNumber_Scale(seen, mBytes.GetEnd(), mSeenEnd);
    mMicroseconds = ezSaturating_Add64(all, all / 8);
    mMethod = "estimate: of the first links";
}

/// Adds the link that is measured, which ends at a place. False where the reads did not last for it.
bool OggLength::AddLink(std::uint64_t anEnd) {
    const Tail tail = ReadTail(mLink, anEnd);
    if (mBytes.IsBudgetUsedUp()) {
        return false;
    }
    Add(tail, anEnd);
    return true;
}

/// Goes on to the next link. False where there is none to go on to.
bool OggLength::PassLink() {
    const std::uint64_t border = FindBorder();
    if (border == 0 || !AddLink(border)) {
        return false;
    }
    mfChained = true;
    mLink = OggLink(ReaderAt(mBytes, border));
    FindStart();
    return true;
}

void OggLength::Measure() {
    const std::uint64_t end = mBytes.GetEnd();
    FindStart();
    const Tail tail = ReadTail(mLink, end);
    for (std::uint32_t count = 0; mLink.Find(tail.mLastSerial) == nullptr && count < kOgg_MaxLinks; ++count) {
        if (!PassLink()) {
            break; // or what stands at the end belongs to nothing
        }
    }
    if (!mfChained && !mBytes.IsBudgetUsedUp()) {
        Add(tail, end);
    } else if (!AddLink(end)) {
        mfChained = true;
        Estimate();
    }
}
