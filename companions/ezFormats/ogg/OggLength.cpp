#include "ezFormats/ogg/OggLength.h"

#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/detail/MediaNumbers.h"
#include "ezFormats/ogg/OggLimits.h"

#include "ezPlatform/base/Checked.h"

#include <algorithm>
#include <optional>

namespace {

ByteReader ReaderAt(MediaBytes& aBytes, std::uint64_t aPosition) {
    ByteReader reader(aBytes);
    reader.Skip(aPosition);
    return reader;
}

/// Samples of the packets of Opus that end on a page, less those of one that began on the page before: its
/// first byte, which tells how many, is not here.
std::uint64_t OpusSamplesOn(OggPagePackets aPackets, ByteReader aPacket) {
    std::uint64_t samples = 0;
    while (aPackets.Next(&aPacket)) {
        const bool fWhole = aPackets.HasEnded() && !aPackets.HasBegunBefore();
        samples += fWhole ? OpusSamplesOf(aPacket) : 0;
    }
    return samples;
}

/// True for a stream whose positions tell a time.
bool HasClock(const OggStream* aStream) {
    return aStream != nullptr && aStream->mTicks != 0;
}

/// Microseconds up to what a position tells of; 0 where there is none.
std::uint64_t EndOf(const OggStream* aStream, std::uint64_t aGranule) {
    return aGranule != kOggPage_NoGranule ? aStream->TimeOf(aStream->CountAt(aGranule)) : 0;
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

/// What the first pages of a link say: microseconds before its sound and its video begin.
struct OggLength::Front {
    std::optional<std::uint64_t> mSound;
    std::optional<std::uint64_t> mVideo;
    std::uint64_t mSoundPage = 0; ///< where it begins in the file
    std::uint64_t mPictures = 0;  ///< of the video, up to its last page here
    bool mfVideoEnds = false;

    /// Of both the earlier one.
    std::uint64_t GetStart() const {
        return std::min(mSound.value_or(UINT64_MAX), mVideo.value_or(UINT64_MAX));
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
        const bool fSound = tail.mSound != kOggPage_NoGranule;
        const bool fVideo = tail.mVideo != kOggPage_NoGranule;
        const bool fBoth = (fSound || sound == nullptr) && (fVideo || video == nullptr);
        // Pages stand in the order of their ends: what is long before the last is not the longer.
        const bool fOneOfTwo = (fSound || fVideo) && count != 0;
        if (fBoth || fOneOfTwo || start == aLink.GetHeadEnd()) {
            break;
        }
        end = start + kOggPage_MaxHead; // a header may go across
    }
    return tail;
}

/// Samples that a page of sound holds; the most that they can be, where only a decoder knows. Pictures are
/// counted.
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
    mBytes.Load(aPage.mStart, kOggPage_MaxSize);
    return OpusSamplesOn(OggPagePackets(ReaderAt(mBytes, aPage.mStart)), aBody);
}

/// Microseconds before what the first page of a stream holds.
std::uint64_t OggLength::StartOf(const OggPage& aPage, ByteReader aBody, const OggStream& aStream) const {
    const std::uint64_t end = aStream.CountAt(aPage.mGranule);
    const std::uint64_t start = end - std::min(end, HeldBy(aPage, aBody, aStream));
    return aStream.TimeOf(ezSaturating_Add64(start, aStream.mPreSkip));
}

/// Takes what a page tells, of which those of headers have the position 0.
void OggLength::TakeFront(Front& aFront, const OggPage& aPage, ByteReader aBody) const {
    const OggStream* const stream = mLink.Find(aPage.mSerial);
    const bool fVideo = stream == mLink.GetVideo();
    if (stream == nullptr || (!fVideo && stream != mLink.GetSound())) {
        return;
    }
    aFront.mfVideoEnds = aFront.mfVideoEnds || (fVideo && aPage.mfEnds);
    if (aPage.mGranule == 0 || aPage.mGranule == kOggPage_NoGranule) {
        return;
    }
    if (fVideo) {
        aFront.mPictures = stream->CountAt(aPage.mGranule);
    }
    std::optional<std::uint64_t>& start = fVideo ? aFront.mVideo : aFront.mSound;
    if (!start && HasClock(stream)) {
        aFront.mSoundPage = fVideo ? aFront.mSoundPage : aPage.mStart;
        start = StartOf(aPage, aBody, *stream);
    }
}

/// Goes from page to page up to the first of sound.
void OggLength::ReadSoundStart(Front& aFront) const {
    ByteReader pages = ReaderAt(mBytes, mLink.GetHeadEnd());
    OggPage page;
    ByteReader body = pages;
    for (std::uint32_t i = 0; i < kOgg_MaxHeadPages && !aFront.mSound && ReadOggPage(pages, &page, &body);
         ++i) {
        TakeFront(aFront, page, body);
    }
}

/// Looks at the first pages of sound and of video, of which one may come long after the other. That they
/// begin in the middle is believed when both do.
void OggLength::ReadFilmStart(Front& aFront) const {
    for (const std::uint32_t size : {kOgg_FrontSize, kOgg_LargestFront}) {
        mBytes.LoadWindow(mLink.GetHeadEnd(), size);
        aFront = Front();
        OggPage page;
        ByteReader body(mBytes);
        for (OggFrontPages pages(mBytes, mLink); pages.Next(&page, &body);) {
            TakeFront(aFront, page, body);
        }
        const bool fBoth =
            (aFront.mSound || !HasClock(mLink.GetSound())) && (aFront.mVideo || !HasClock(mLink.GetVideo()));
        if (fBoth || aFront.GetStart() < kOgg_MinStart) {
            return;
        }
    }
}

void OggLength::ReadStart() {
    const bool fFilm = mLink.GetVideo() != nullptr;
    Front front;
    if (fFilm) {
        ReadFilmStart(front);
    } else {
        ReadSoundStart(front);
    }
    mSoundStart = mSoundStart != 0 ? mSoundStart : front.mSoundPage;
    const std::uint64_t start = front.GetStart();
    mStart = start >= kOgg_MinStart && start != UINT64_MAX ? start : 0;
    const bool fStill = front.mfVideoEnds && front.mPictures <= 1;
    if (fFilm && fStill && mLink.GetSound() != nullptr) {
        mfStill = mfStill || !mfChained;
        mLink.SetVideoAside();
    }
}

/// Adds the link that is measured, which ends at a place as its tail says.
void OggLength::Add(const Tail& aTail, std::uint64_t anEnd) {
    const std::uint64_t end =
        std::max(EndOf(mLink.GetSound(), aTail.mSound), EndOf(mLink.GetVideo(), aTail.mVideo));
    const std::uint64_t presented = mLink.GetPresented();
    const std::uint64_t start = std::max(mStart, presented < end ? presented : 0);
    const std::uint64_t length = end - std::min(start, end);
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
    const OggStream* const stream = mLink.Find(aPage.mSerial);
    const bool fPlays = stream != nullptr && (stream == mLink.GetSound() || stream == mLink.GetVideo());
    if (fPlays && aPage.mGranule != kOggPage_NoGranule) {
        mSeenEnd = aPage.mStart;
        mSeenTime = EndOf(stream, aPage.mGranule);
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
    ReadStart();
    return true;
}

void OggLength::Measure() {
    const std::uint64_t end = mBytes.GetEnd();
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
