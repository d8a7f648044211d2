#include "ezFormats/ogg/OggFilm.h"

#include "ezBytes/LanguageTags.h"
#include "ezFormats/detail/Containers.h"
#include "ezFormats/detail/Limits.h"
#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/ogg/OggLength.h"
#include "ezFormats/ogg/OggLimits.h"
#include "ezFormats/ogg/OggLink.h"
#include "ezFormats/tags/CommentTexts.h"
#include "ezFormats/tags/CoverFacts.h"
#include "ezFormats/tags/MusicTexts.h"

#include "ezBytes/ByteReader.h"
#include "ezBytes/OggTags.h"

#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::uint32_t kMicro = 1000000;

/// The languages that the comments of a stream state, which stand on the page.
ezCString LanguagesOn(MediaBytes& aBytes, const OggPage& aPage, const OggStream& aStream,
                      const CodePage& aCodePage) {
    ByteReader page(aBytes);
    page.Skip(aPage.mStart);
    OggTags tags(aBytes, page, aPage.mSerial, *aStream.mMark, 1);
    MusicTexts texts;
    CoverFacts cover;
    bool fPicture = false;
    for (ByteReader body = page; tags.Next(&fPicture, &body);) {
        if (!fPicture) {
            ReadCommentTexts(body, aCodePage, texts, cover);
        }
    }
    return texts.mLanguages;
}

/// Takes the languages of all sounds and texts whose comments, on the first page after that with which a
/// stream begins, are buffered.
void TakeLanguages(MediaBytes& aBytes, const OggLink& aLink, const CodePage& aCodePage, FilmFacts& aFilm) {
    std::array<bool, kOgg_MaxStreams> seen = {};
    OggPage page;
    ByteReader body(aBytes);
    for (OggFrontPages pages(aBytes, aLink); pages.Next(&page, &body);) {
        const OggStream* const stream = aLink.Find(page.mSerial);
        if (stream == nullptr || seen[static_cast<std::size_t>(stream - aLink.begin())]) {
            continue;
        }
        seen[static_cast<std::size_t>(stream - aLink.begin())] = true;
        const bool fText = stream->Is(OggRole::Text);
        const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(body.GetLeft(), kOggPage_MaxSize));
        if (size != 0 && aBytes.HasBuffered(body.GetPosition(), size) &&
            (fText || stream->Is(OggRole::Sound))) {
            AddLanguages(fText ? aFilm.mSubtitleLanguages : aFilm.mLanguages,
                         LanguagesOn(aBytes, page, *stream, aCodePage).View());
        }
    }
    for (const OggStream& stream : aLink) {
        AddLanguages(aFilm.mSubtitleLanguages, stream.mLanguages);
    }
}

/// Drops the rates at which encoders aimed, where more is known: a track takes less than the whole, and what
/// the sound leaves of that is nearer the video's than its aim.
void DropAims(FilmFacts& aFilm) {
    const std::uint32_t whole = aFilm.GetWholeBitRate();
    if (whole == 0) {
        return;
    }
    std::uint32_t sound = 0;
    if (aFilm.mAudio) {
        std::uint32_t& aim = aFilm.mAudio->mEstimatedBitRate;
        aim = aim < whole ? aim : 0;
        sound = aFilm.mAudio->mBitRate != 0 ? aFilm.mAudio->mBitRate : aim;
    }
    std::uint32_t& aim = aFilm.mVideo->mEstimatedBitRate;
    aim = sound == 0 && aim < whole ? aim : 0;
}

} // namespace

FilmFacts OggFilm_Read(MediaBytes& aBytes, const OggLink& aLink, const CodePage& aCodePage) {
    FilmFacts film;
    film.mContainer = kContainer_Ogg;
    film.mSize = aBytes.GetSize();
    film.mVideo = aLink.GetVideo()->mVideo;
    if (!film.mVideo->mPixelAspect.IsKnown()) {
        film.mVideo->mPixelAspect = VideoRatio::Of(1, 1); // what players take where nothing says otherwise
    }
    if (aLink.GetSound() != nullptr) {
        film.mAudio = aLink.GetSound()->mSound;
    }
    film.mAudioCount = aLink.Count(OggRole::Sound);
    film.mSubtitleCount = aLink.Count(OggRole::Text);
    TakeLanguages(aBytes, aLink, aCodePage, film);
    return film;
}

void OggFilm_Store(FilmFacts aFilm, const OggLength& aLength, ezMediaInfo& anInfo) {
    if (aLength.GetMicroseconds() <= kMedia_MaxSeconds * kMicro) { // more is no film
        aFilm.mDuration = aLength.GetMicroseconds();
        aFilm.mDurationMethod = aLength.GetMethod();
    }
    DropAims(aFilm);
    aFilm.Store(anInfo);
    anInfo.Set(kezInfo_MimeType, "video/ogg", true);
}
