#include "ezFormats/avi/AVIParser.h"

#include "ezFormats/avi/AVICodecs.h"
#include "ezFormats/avi/AVIFile.h"
#include "ezFormats/avi/AVIFrames.h"
#include "ezFormats/avi/AVILength.h"
#include "ezFormats/detail/Containers.h"
#include "ezFormats/detail/FilmRecord.h"
#include "ezFormats/detail/MediaBytes.h"

#include "ezBytes/ByteReader.h"
#include "ezBytes/CodePage.h"

#include "ezPlatform/media/MediaInfo.h"

namespace {

/// The tracks that play first, by what their first frames tell.
void ReadTracks(const AVIFile& aFile, std::uint32_t& aBudget, FilmFacts& aFilm) {
    const AVIHeader& header = aFile.GetHeader();
    const AVIStream* const video = header.FindVideo();
    const AVIStream* const sound = header.FindSound();
    AVIFirstFrame picture;
    AVIFirstFrame heard;
    if (video != nullptr) {
        picture = {video, AVICodec_GetVideoLook(*video), {}};
    }
    if (sound != nullptr) {
        heard = {sound, AVICodec_GetSoundLook(*sound), {}};
    }
    FindAVIFirstFrames(aFile, picture, heard, aBudget);
    if (video != nullptr) {
        VideoFacts facts;
        facts.mWidth = header.mWidth;
        facts.mHeight = header.mHeight;
        facts.mFrameRate = VideoClock_FrameRate(header.mMicrosecondsPerFrame, 1000000);
        aFilm.mVideo = AVICodec_ReadVideo(*video, picture.mBytes);
        aFilm.mVideo->Complete(facts);
    }
    if (sound != nullptr) {
        std::uint32_t count = 0;
        const AudioFacts facts = AVICodec_ReadSound(*sound, heard.mBytes, &count);
        if (count != 0) {
            aFilm.mAudio = facts;
            aFilm.mAudioCount = count;
        }
    }
    for (const AVIStream& stream : header.GetStreams()) {
        aFilm.mAudioCount += stream.HasSound() && &stream != sound ? 1 : 0;
        aFilm.mSubtitleCount += stream.mKind == AVIKind::Subtitles ? 1 : 0;
    }
}

/// A mean rate of sound that is no less than that of the whole: writers that do not know it state any.
void DropWrongMean(FilmFacts& aFilm) {
    const std::uint32_t whole = aFilm.GetWholeBitRate();
    if (whole != 0 && aFilm.mAudio && aFilm.mAudio->mEstimatedBitRate >= whole) {
        aFilm.mAudio->mEstimatedBitRate = 0;
    }
}

void StoreTexts(const AVIFile& aFile, ezMediaInfo& anInfo) {
    MusicTexts texts = aFile.GetTexts();
    texts.mDate = texts.mDate.IsEmpty() ? aFile.GetHeader().mDate : texts.mDate;
    texts.mLanguages =
        aFile.GetLanguages().empty() ? texts.mLanguages : ezCString(); // those of the streams count
    texts.Store(anInfo);
}

} // namespace

bool AVIParser::IsAt(ByteReader aBytes) {
    std::uint32_t stated = 0;
    return ReadAVIHead(aBytes, &stated);
}

bool AVIParser::ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) {
    const CodePage codePage{GetTextCodePage()};
    std::uint32_t budget = kAVI_MaxChunks;
    AVIFile file(aBytes, codePage, budget);
    if (!file.ReadHead()) {
        return Refuse(Cause::Malformed, "begins with %08X", unsigned{ByteReader(aBytes).ReadBig32()});
    }
    FilmFacts film;
    ReadTracks(file, budget, film);
    if (!film.mVideo && !film.mAudio) {
        return RefuseCut(aBytes, "a stream of pictures or sound");
    }
    file.ReadTail();
    const AVILength length = MeasureAVI(aBytes, file, budget);
    // The length of what could be read would be another one.
    if (aBytes.HasLostBytes()) {
        return RefuseCut(aBytes, "all that tells the length");
    }
    film.mContainer = kContainer_AVI;
    film.mLanguages = file.GetLanguages();
    film.mDuration = length.mMicroseconds;
    film.mDurationMethod = length.mMethod;
    film.mDurationBound = length.mBound;
    film.mSize = file.GetSize();
    DropWrongMean(film);
    film.Store(anInfo);
    StoreTexts(file, anInfo);
    return true;
}
