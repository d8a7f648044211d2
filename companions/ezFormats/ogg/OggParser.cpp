#include "ezFormats/ogg/OggParser.h"

#include "ezFormats/detail/Containers.h"
#include "ezFormats/detail/Limits.h"
#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/detail/MediaNumbers.h"
#include "ezFormats/detail/SoundRecord.h"
#include "ezFormats/ogg/OggFilm.h"
#include "ezFormats/ogg/OggLength.h"
#include "ezFormats/ogg/OggLink.h"
#include "ezFormats/tags/CommentTexts.h"
#include "ezFormats/tags/CoverFacts.h"
#include "ezFormats/tags/MusicTexts.h"

#include "ezBytes/ByteReader.h"
#include "ezBytes/CodePage.h"
#include "ezBytes/OggTags.h"

#include "ezPlatform/media/MediaInfo.h"

#include <optional>

namespace {

constexpr std::uint32_t kMagic = 0x4F676753; // "OggS"
constexpr std::uint64_t kMicro = 1000000;
constexpr std::uint64_t kMilli = 1000; // microseconds of one

/// Takes what the comments of a stream tell besides.
void TakeComments(MediaBytes& aBytes, const OggLink& aLink, const OggStream* aStream,
                  const CodePage& aCodePage, MusicTexts& aTexts, CoverFacts& aCover) {
    if (aStream == nullptr) {
        return;
    }
    ByteReader pages(aBytes);
    pages.Skip(aLink.GetHeadEnd());
    const auto others =
        static_cast<std::uint32_t>(aLink.end() - aLink.begin() - 1); // whose headers are between
    OggTags tags(aBytes, pages, aStream->mSerial, *aStream->mMark, kOgg_MaxCommentPages + others);
    bool fPicture = false;
    for (ByteReader body = pages; tags.Next(&fPicture, &body);) {
        if (fPicture) {
            aCover.OfferBlock(body);
        } else {
            ReadCommentTexts(body, aCodePage, aTexts, aCover);
        }
        if (aCover.IsFinal()) {
            break;
        }
    }
}

/// Puts the facts of a file of sound into a record: those of the first.
void StoreSong(const MediaBytes& aBytes, const OggLink& aLink, const OggLength& aLength,
               ezMediaInfo& anInfo) {
    SoundFacts facts;
    static_cast<AudioFacts&>(facts) = aLink.GetSound()->mSound;
    facts.mEstimatedBitRate = 0; // of a song it is what was seen, and not what the encoder aimed at
    facts.mSamples = aLink.GetSound()->mSamples;
    const std::uint64_t length = aLength.GetMicroseconds();
    if (length != 0) {
        facts.mSamples = MediaNumber_Scale(length, facts.mSamplingRate, kMicro);
        facts.mDurationMethod = aLength.GetMethod();
        if (aLink.Count(OggRole::Sound) == 1 && aLength.GetSoundStart() != 0) { // else others are among them
            facts.mBytes = aBytes.GetEnd() - aLength.GetSoundStart();
        }
    }
    facts.Store(anInfo);
    anInfo.Set(kezInfo_Container, kContainer_Ogg, true);
    anInfo.Set(kezInfo_AudioTrackCount, aLink.Count(OggRole::Sound), true);
    if (length / kMilli != 0 && length <= kMedia_MaxSeconds * kMicro) { // more is no recording
        anInfo.SetDuration(length / kMilli, aLength.GetMethod());
    }
}

} // namespace

bool OggParser::IsAt(ByteReader aBytes) {
    return aBytes.ReadBig32() == kMagic && aBytes.ReadByte() == 0 && !aBytes.HasFailed();
}

bool OggParser::ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) {
    const ByteReader reader(aBytes);
    ByteReader start = reader;
    const std::uint32_t magic = start.ReadBig32();
    if (magic != kMagic) {
        return Refuse(Cause::Malformed, "begins with %08X", unsigned{magic});
    }
    OggLink link(reader);
    if (link.GetSound() == nullptr && link.GetVideo() == nullptr) {
        return link.GetHeadEnd() == 0 ? RefuseCut(aBytes, "the end of the first page")
                                      : Refuse(Cause::Unsupported, "no stream of sound or video");
    }
    const CodePage codePage(GetTextCodePage());
    std::optional<FilmFacts> film;
    if (link.GetVideo() != nullptr) {
        aBytes.Load(link.GetHeadEnd(), kOgg_FrontSize);
        link.ReadFrames(aBytes);
        film = OggFilm_Read(aBytes, link, codePage);
    }
    MusicTexts texts;
    CoverFacts cover;
    TakeComments(aBytes, link, link.GetSound(), codePage, texts, cover);
    TakeComments(aBytes, link, link.GetVideo(), codePage, texts, cover);
    OggLength length(aBytes, link);
    length.ReadStart();
    if (aBytes.GetSize()) {
        length.Measure();
    }
    // The length of what could be read would be another one.
    if (aBytes.HasLostBytes()) {
        return RefuseCut(aBytes, "all that tells the length");
    }
    if (film && !length.IsStill()) {
        OggFilm_Store(*film, length, anInfo);
        texts.mLanguages = ezCString(); // those of the tracks are told
    } else {
        StoreSong(aBytes, link, length, anInfo);
    }
    texts.Store(anInfo);
    cover.Store(anInfo);
    return true;
}
