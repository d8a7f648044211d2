#include "ezFormats/flv/FLVParser.h"

#include "ezFormats/detail/Containers.h"
#include "ezFormats/detail/FilmRecord.h"
#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/detail/MediaNumbers.h"
#include "ezFormats/flv/FLVLength.h"
#include "ezFormats/flv/FLVStart.h"

#include "ezBytes/ByteReader.h"
#include "ezBytes/CodePage.h"

#include "ezPlatform/media/MediaInfo.h"

#include <optional>

namespace {

constexpr std::uint32_t kMicro = 1'000'000;
constexpr std::uint32_t kThousand = 1000; // seconds, of which a frame rate tells the pictures

/// What the codec's own headers do not tell is as the metadata state it.
VideoFacts VideoOf(const FLVStart& aStart) {
    const FLVMetadata& metadata = aStart.GetMetadata();
    VideoFacts facts = FLVCodec_ReadVideo(aStart.GetVideo());
    VideoFacts stated;
    stated.mWidth = metadata.GetWidth();
    stated.mHeight = metadata.GetHeight();
    stated.mFrameRate = metadata.GetFrameRate();
    stated.mPixelAspect = VideoRatio::Of(1, 1); // what players take where nothing says otherwise
    facts.Complete(stated);
    return facts;
}

/// What the encoder of the sound aimed at, where the codec tells no rate: some writers state a default, which
/// may be more than all of the file has.
void CompleteRate(const FLVMetadata& aMetadata, FilmFacts& aFilm) {
    AudioFacts stated;
    stated.mEstimatedBitRate = aMetadata.GetSoundRate();
    if (aFilm.mAudio.has_value() && stated.mEstimatedBitRate < aFilm.GetWholeBitRate()) {
        aFilm.mAudio->Complete(stated);
    }
}

/// Microseconds that a picture lasts; 0: not known.
std::uint64_t FrameTimeOf(const FilmFacts& aFilm) {
    return aFilm.mVideo.has_value() ? MediaNumber_Scale(kThousand, kMicro, aFilm.mVideo->mFrameRate) : 0;
}

} // namespace

bool FLVParser::IsAt(ByteReader aBytes) {
    return FLVHeader_IsAt(aBytes);
}

bool FLVParser::ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) {
    if (!IsAt(ByteReader(aBytes))) {
        return Refuse(Cause::Malformed, "begins with %08X", unsigned{ByteReader(aBytes).ReadBig32()});
    }
    const CodePage codePage{GetTextCodePage()};
    FLVStart start(aBytes, codePage);
    start.Read();
    std::optional<FLVEnd> end;
    if (aBytes.GetSize().has_value()) {
        end.emplace(aBytes, start.GetTags());
        for (const FLVKind kind : {FLVKind::Video, FLVKind::Sound}) {
            if (end->Has(kind)) {
                start.ReadOn(kind);
            }
        }
    }
    if (aBytes.HasLostBytes() || (!start.GetVideo().mfThere && !start.GetSound().mfThere)) {
        return RefuseCut(aBytes, "a tag of pictures or sound");
    }
    FilmFacts film;
    film.mContainer = kContainer_FLV;
    film.mSize = aBytes.GetSize();
    if (start.GetVideo().mfThere) {
        film.mVideo = VideoOf(start);
    }
    if (start.GetSound().mfThere) {
        film.mAudio = FLVCodec_ReadSound(start.GetSound());
        film.mAudioCount = 1;
    }
    const FLVLength length = MeasureFLV(aBytes, start, end.has_value() ? &*end : nullptr, FrameTimeOf(film));
    film.mDuration = length.mMicroseconds;
    film.mDurationMethod = length.mMethod;
    CompleteRate(start.GetMetadata(), film);
    film.Store(anInfo);
    start.GetMetadata().GetTexts().Store(anInfo);
    return true;
}
