#include "ezFormats/videostream/VideoStreamParser.h"

#include "ezBytes/ByteReader.h"
#include "ezFormats/codecs/NALUnits.h"
#include "ezFormats/codecs/VC1Video.h"
#include "ezFormats/detail/FilmRecord.h"
#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/detail/MediaNumbers.h"
#include "ezFormats/frames/OtherFormat.h"
#include "ezFormats/mpegsystem/PESHeader.h"
#include "ezFormats/videostream/ConstantRate.h"
#include "ezFormats/videostream/RCVHeader.h"
#include "ezFormats/videostream/VideoStreamRace.h"

#include "ezPlatform/base/Checked.h"
#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace {

constexpr std::uint32_t kMicro = 1000000;
constexpr std::uint64_t kBitMicros = std::uint64_t{8} * kMicro;
constexpr std::string_view kOurMark = "MPEG video"; ///< as OtherFormatAt names what is read here

/// The bytes from the start on that are buffered after a read of so many.
std::size_t ReadStart(MediaBytes& aBytes, std::size_t aSize, const unsigned char** aStart) {
    aBytes.LoadWindow(0, aSize);
    return std::min(aBytes.Borrow(0, aStart), aSize);
}

/// Whether pictures stand in packets: no stream of pictures alone has a start code of so large a number
/// (ISO/IEC 13818-1, table 2-22; 13818-2, table 6-1; 14496-2, table 6-3; the first bit of a unit of H.264 and
/// of H.265 is 0). A recording that was cut may begin with any packet.
bool HasPackets(const unsigned char* aBytes, std::size_t aSize) {
    NALUnitWalk walk(aBytes, aSize);
    NALUnit unit;
    bool fFound = false;
    while (!fFound && walk.Next(unit)) {
        fFound = *unit.mBytes >= kStreamID_FirstVideo;
    }
    return fFound;
}

/// Whether the size by a stated rate is a length.
bool HasConstantRate(const FilmFacts& aFilm) {
    const std::uint32_t rate = aFilm.mVideo->mBitRate;
    return rate != 0 && rate <= kVideoStream_MaxBitRate && aFilm.mSize.has_value();
}

/// By a rate that is stated as a constant one: not too short by what a buffer holds.
void EstimateLength(FilmFacts& aFilm) {
    if (HasConstantRate(aFilm)) {
        const std::uint64_t whole = MediaNumber_Scale(*aFilm.mSize, kBitMicros, aFilm.mVideo->mBitRate);
        aFilm.mDuration =
            MediaNumber_Microseconds(ezSaturating_Add64(whole, kVideoStream_BufferTime), kMicro);
        aFilm.mDurationMethod = "estimate: size and stated rate";
        aFilm.mDurationBound = 2 * kVideoStream_BufferTime;
    }
}

/// The length of a stream that states a constant rate; none where its pictures do not keep it.
/// @param aStart  from the start of the file on; no longer there after that
void TellLength(MediaBytes& aBytes, const unsigned char* aStart, std::size_t aSize, FilmFacts& aFilm) {
    const VideoFacts& video = *aFilm.mVideo;
    const bool fMPEG = video.mCodec == "MPEG1" || video.mCodec == "MPEG2";
    if (!fMPEG || !HasConstantRate(aFilm)) {
        EstimateLength(aFilm);
        return;
    }
    ConstantRate rate(video.mBitRate, video.mFrameRate);
    const std::optional<bool> kept = rate.LookAtStart(aStart, aSize);
    const std::uint64_t measured = kept.value_or(false) ? rate.Measure(aBytes, *aFilm.mSize) : 0;
    if (measured != 0) {
        aFilm.mDuration = MediaNumber_Microseconds(measured, kMicro);
        aFilm.mDurationMethod = "constant rate";
    } else if (kept.value_or(true)) {
        EstimateLength(aFilm);
    }
}

/// Microseconds of as many frames as the head of VC-1 states; 0 where the file is too short for so many, or
/// too large.
std::uint64_t LengthOf(const RCVHeader& aHead, std::uint64_t anEnd, const FilmFacts& aFilm) {
    const std::uint64_t length = MediaNumber_Microseconds(aHead.mFrames, aHead.mFrameRate);
    const std::uint64_t rate = MediaNumber_Scale(aFilm.mSize.value_or(0), kBitMicros, length);
    return aHead.mLeastSize <= anEnd && rate <= kVideoStream_MaxBitRate ? length : 0;
}

} // namespace

/// The head of a file of VC-1; or a start code, before which nothing but zeros stands, and what makes a
/// stream soon after it.
bool VideoStreamParser::IsAt(ByteReader aBytes) {
    if (RCVHeader_Read(aBytes).has_value()) {
        return true;
    }
    ByteReader head = aBytes;
    if (head.ReadBig(2) != 0 || head.HasFailed()) {
        return false;
    }
    std::vector<unsigned char> start;
    bool fBegun = false;
    while (start.size() < kVideoStream_MagicSize) {
        const unsigned char byte = aBytes.ReadByte();
        if (aBytes.HasFailed()) {
            break;
        }
        fBegun = fBegun || (byte == 1 && start.size() >= 2);
        if (!fBegun && byte != 0) {
            return false;
        }
        start.push_back(byte);
    }
    return fBegun && VideoStreamRace().Push(start.data(), start.size()) != nullptr &&
           !HasPackets(start.data(), start.size());
}

bool VideoStreamParser::ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) {
    const std::optional<RCVHeader> head = RCVHeader_Read(ByteReader(aBytes));
    if (!head.has_value()) {
        return ReadStream(aBytes, anInfo);
    }
    FilmFacts film;
    film.mVideo = head->mVideo;
    if (film.mVideo->mCodec == "VC1") { // of which the first frame has the headers
        const unsigned char* start = nullptr;
        const std::size_t size = aBytes.Borrow(0, &start);
        film.mVideo = VC1Video_ReadStream(start, size).value_or(VideoFacts());
        film.mVideo->Complete(head->mVideo);
    }
    film.mSize = aBytes.GetSize();
    film.mDuration = LengthOf(*head, aBytes.GetEnd(), film);
    if (film.mDuration == 0) {
        EstimateLength(film);
    }
    anInfo.Set(kezInfo_MimeType, kVideoStream_MimeVC1, true);
    film.Store(anInfo);
    return true;
}

bool VideoStreamParser::ReadStream(MediaBytes& aBytes, ezMediaInfo& anInfo) const {
    const char* const other = OtherFormatAt(aBytes, 0);
    if (other != nullptr && std::string_view(other) != kOurMark) {
        return Refuse(Cause::Unsupported, "%s at 0", other);
    }
    VideoStreamRace race;
    const VideoStreamCodec* codec = nullptr;
    const unsigned char* start = nullptr;
    std::size_t size = 0;
    std::size_t window = 0;
    while (codec == nullptr && size == window && window != kVideoStream_MaxWindow) {
        window = window == 0 ? kVideoStream_WindowSize : kVideoStream_MaxWindow;
        const std::size_t before = size;
        size = ReadStart(aBytes, window, &start);
        codec = size > before ? race.Push(start + before, size - before) : nullptr;
    }
    if (codec != nullptr && HasPackets(start, size)) {
        return Refuse(Cause::Unsupported, "packets of a program stream");
    }
    FilmFacts film;
    film.mVideo = codec != nullptr ? codec->mRead(start, size) : std::nullopt;
    if (!film.mVideo.has_value() && !aBytes.HasLostBytes()) {
        return Refuse(Cause::Malformed, "no picture with its headers within %zu bytes", size);
    }
    film.mSize = aBytes.GetSize();
    if (film.mVideo.has_value()) {
        TellLength(aBytes, start, size, film);
    }
    if (aBytes.HasLostBytes()) {
        return RefuseCut(aBytes, "a picture with its headers, or the last");
    }
    anInfo.Set(kezInfo_MimeType, codec->mMimeType, true);
    film.Store(anInfo);
    return true;
}
