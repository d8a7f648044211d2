#include "ezFormats/asf/ASFFilm.h"

#include "ezFormats/asf/ASFLimits.h"
#include "ezFormats/asf/ASFVideo.h"
#include "ezFormats/codecs/EncryptedCodec.h"
#include "ezFormats/detail/Containers.h"
#include "ezFormats/detail/FilmRecord.h"
#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/detail/MediaNumbers.h"

#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <string_view>

namespace {

constexpr std::uint32_t kMilli = 1000;

struct MimeRow {
    std::string_view mCodec;
    bool mfRecorded; ///< only in the form of recorders of television
    const char* mMimeType;
};
/// Films of all other codecs are "video/x-ms-asf".
constexpr MimeRow kMimeTypes[] = {{"WMV1", false, "video/x-ms-wmv"},
                                  {"WMV2", false, "video/x-ms-wmv"},
                                  {"WMV3", false, "video/x-ms-wmv"},
                                  {"MPEG1", true, "video/x-ms-dvr"},
                                  {"MPEG2", true, "video/x-ms-dvr"}};

const char* MimeTypeOf(const ezCString& aCodec, bool afRecorded) {
    const auto* const row =
        std::find_if(std::begin(kMimeTypes), std::end(kMimeTypes), [&](const MimeRow& aRow) {
            return aRow.mCodec == aCodec.View() && (afRecorded || !aRow.mfRecorded);
        });
    return row != std::end(kMimeTypes) ? row->mMimeType : "video/x-ms-asf";
}

/// What the stated means of all streams come to, in bits a second.
std::uint64_t SumOfMeans(const ASFHeader& aHeader) {
    std::uint64_t sum = 0;
    for (const ASFStreamFacts& stream : aHeader.mStreams) {
        sum += stream.mfDescribed ? stream.mMeanBitRate : 0;
    }
    return sum;
}

/// The most that is stated, and the mean; this not where the packets have less than all of these together, by
/// more than a quarter: writers that know no rate state one that is usual.
void TakeRates(const ASFStreamFacts& aStream, const ASFHeader& aHeader, const ASFLength& aLength,
               VideoFacts& aVideo) {
    const std::uint64_t whole = MediaNumber_BitRate(aLength.mBytes, aLength.mMilliseconds, kMilli);
    const bool fBelieved = whole == 0 || SumOfMeans(aHeader) <= whole + whole / 4;
    if (fBelieved && aStream.mMeanBitRate >= kASF_MinBitRate) {
        aVideo.mBitRate = aStream.mMeanBitRate;
    }
    if (aStream.mHighBitRate >= kASF_MinBitRate) {
        aVideo.mMaxBitRate = aStream.mHighBitRate;
    }
}

} // namespace

AudioFacts ReadASFSound(const ASFStreamFacts& aStream, bool afEncrypted, bool afVaries) {
    const WaveFormat& format = aStream.mSound;
    AudioFacts sound = format.GetFacts();
    sound.mCodec = afEncrypted || aStream.mfEncrypted ? EncryptedCodecName(sound.mCodec) : sound.mCodec;
    const std::uint32_t number = MediaNumber_BitRate(format.mAverageBytes, 1, 1);
    const std::uint32_t stated = number >= kASF_MinBitRate ? number : 0;
    const bool fConstant = format.mRate != WaveFormat::Rate::Varying || format.mTag == kWaveTag_WMAPro;
    if (fConstant && !afVaries && stated != 0) {
        sound.mBitRate = stated;
    } else if (format.mCodec.StartsWith("WMA")) { // the stated mean of a varying rate is its peak
        sound.mMaxBitRate = std::max(stated, aStream.mHighBitRate);
    }
    return sound;
}

void StoreASFFilm(MediaBytes& aBytes, const ByteReader& aRest, const ASFHeader& aHeader,
                  const ASFLength& aLength, const ASFTexts& aTexts, std::uint32_t& aBudget,
                  ezMediaInfo& anInfo) {
    const ASFStreamFacts& pictures = *aHeader.Find(ASFStreamKind::Video);
    const ASFStreamFacts* const sound = aHeader.Find(ASFStreamKind::Sound);
    const bool fEncrypted = aHeader.mfEncrypted || pictures.mfEncrypted;
    VideoFacts video = pictures.mVideo;
    if (!fEncrypted) {
        TakeASFFrame(aBytes, aRest, aHeader.mFile, pictures.mNumber, aBudget, video);
    }
    const std::uint32_t rate = VideoClock_FrameRate(pictures.mFrameTime, kASF_TicksPerSecond);
    video.mFrameRate = rate != 0 ? rate : video.mFrameRate;
    video.mPixelAspect = aTexts.mPixelAspect.IsKnown() ? aTexts.mPixelAspect : video.mPixelAspect;
    TakeRates(pictures, aHeader, aLength, video);
    anInfo.Set(kezInfo_MimeType, MimeTypeOf(video.mCodec, pictures.mfRecorded), true);
    video.mCodec = fEncrypted ? EncryptedCodecName(video.mCodec) : video.mCodec;
    FilmFacts film;
    film.mVideo = video;
    if (sound != nullptr) {
        film.mAudio = ReadASFSound(*sound, aHeader.mfEncrypted, aTexts.mfVaries);
        film.mAudio->mEstimatedBitRate = film.mAudio->mBitRate == 0 ? sound->mMeanBitRate : 0;
    }
    film.mContainer = fEncrypted ? "" : kContainer_ASF;
    film.mAudioCount = aHeader.Count(ASFStreamKind::Sound);
    film.mLanguages = aHeader.GetLanguages(ASFStreamKind::Sound);
    film.mDuration = aLength.mMilliseconds * kMilli;
    film.mDurationMethod = aLength.mMethod;
    film.mSize = aBytes.GetSize();
    film.mAttachedSize = film.mSize.value_or(0) - std::min(film.mSize.value_or(0), aLength.mBytes);
    film.Store(anInfo);
}
