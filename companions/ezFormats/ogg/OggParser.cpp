#include "ezFormats/ogg/OggParser.h"

#include "ezFormats/detail/Containers.h"
#include "ezFormats/detail/Limits.h"
#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/detail/MediaNumbers.h"
#include "ezFormats/detail/SoundRecord.h"
#include "ezFormats/ogg/OggLength.h"
#include "ezFormats/ogg/OggLink.h"
#include "ezFormats/tags/CommentTexts.h"
#include "ezFormats/tags/CoverFacts.h"
#include "ezFormats/tags/MusicTexts.h"

#include "ezBytes/ByteReader.h"
#include "ezBytes/CodePage.h"
#include "ezBytes/OggTags.h"

#include "ezPlatform/media/MediaInfo.h"

namespace {

constexpr std::uint32_t kMagic = 0x4F676753; // "OggS"
constexpr std::uint64_t kMicro = 1000000;

/// Takes what the comments of a stream tell besides.
void TakeComments(MediaBytes& aBytes, const OggLink& aLink, const OggStream* aStream,
                  const CodePage& aCodePage, MusicTexts& aTexts, CoverFacts& aCover) {
    if (aStream == nullptr) {
        return;
    }
    ByteReader pages(aBytes);
    pages.Skip(aLink.GetHeadEnd());
    OggTags tags(aBytes, pages, aStream->mSerial, *aStream->mMark, kOgg_MaxCommentPages);
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

/// The facts of the first stream of sound.
SoundFacts FactsOf(const OggStream& aSound) {
    SoundFacts facts;
    facts.mCodec = aSound.mCodec;
    facts.mSamplingRate = aSound.mSamplingRate;
    facts.mChannels = aSound.mChannels;
    facts.mBitsPerSample = aSound.mBitsPerSample;
    facts.mBitRate = aSound.mBitRate;
    facts.mMaxBitRate = aSound.mMaxBitRate;
    facts.mSamples = aSound.mSamples;
    return facts;
}

/// Takes the length that the pages tell.
void TakeLength(const MediaBytes& aBytes, const OggLength& aLength, bool afAlone, SoundFacts& aFacts) {
    aFacts.mSamples = MediaNumber_Scale(aLength.GetMicroseconds(), aFacts.mSamplingRate, kMicro);
    aFacts.mDurationMethod = aLength.GetMethod();
    if (afAlone && aLength.GetSoundStart() != 0) { // else others' bytes are among them
        aFacts.mBytes = aBytes.GetEnd() - aLength.GetSoundStart();
    }
}

void StoreVideo(const OggStream& aVideo, ezMediaInfo& anInfo) {
    anInfo.Set(kezInfo_MimeType, "video/ogg", true);
    anInfo.Set(kezInfo_HasVideoTrack, 1, true);
    if (!aVideo.mCodec.IsEmpty()) {
        anInfo.Set(kezInfo_VideoCodec, aVideo.mCodec, true);
    }
}

/// What is longer than any recording tells nothing.
void StoreLength(const OggLength& aLength, ezMediaInfo& anInfo) {
    const std::uint64_t milliseconds = aLength.GetMicroseconds() / 1000;
    if (milliseconds != 0 && milliseconds <= kSound_MaxSeconds * 1000) {
        anInfo.SetDuration(milliseconds, aLength.GetMethod());
    }
}

/// Puts all but the texts into a record.
void Store(const MediaBytes& aBytes, const OggLink& aLink, const OggLength& aLength, ezMediaInfo& anInfo) {
    const OggStream* const sound = aLink.GetSound();
    const OggStream* const video = aLink.GetVideo();
    anInfo.Set(kezInfo_Container, kContainer_Ogg, true);
    if (sound != nullptr) {
        SoundFacts facts = FactsOf(*sound);
        if (aLength.GetMicroseconds() != 0) {
            const bool fAlone = video == nullptr && aLink.CountSounds() == 1;
            TakeLength(aBytes, aLength, fAlone, facts);
        }
        facts.Store(anInfo);
        anInfo.Set(kezInfo_AudioTrackCount, aLink.CountSounds(), true);
    }
    StoreLength(aLength, anInfo);
    if (video != nullptr) {
        StoreVideo(*video, anInfo);
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
    const OggLink link(reader);
    const OggStream* const sound = link.GetSound();
    const OggStream* const video = link.GetVideo();
    if (sound == nullptr && video == nullptr) {
        return link.GetHeadEnd() == 0 ? RefuseCut(aBytes, "the end of the first page")
                                      : Refuse(Cause::Unsupported, "no stream of sound or video");
    }
    const CodePage codePage(GetTextCodePage());
    MusicTexts texts;
    CoverFacts cover;
    TakeComments(aBytes, link, sound, codePage, texts, cover);
    TakeComments(aBytes, link, video, codePage, texts, cover);
    OggLength length(aBytes, link);
    if (aBytes.GetSize()) {
        length.Measure();
    }
    // The length of what could be read would be another one.
    if (aBytes.HasLostBytes()) {
        return RefuseCut(aBytes, "all that tells the length");
    }
    Store(aBytes, link, length, anInfo);
    texts.Store(anInfo);
    cover.Store(anInfo);
    return true;
}
