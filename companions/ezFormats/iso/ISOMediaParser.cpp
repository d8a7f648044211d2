#include "ezFormats/iso/ISOMediaParser.h"

#include "ezBytes/BoxWalk.h"
#include "ezBytes/ByteSource.h"
#include "ezBytes/CodePage.h"
#include "ezFormats/codecs/CodecWord.h"
#include "ezFormats/codecs/EncryptedCodec.h"
#include "ezFormats/detail/Containers.h"
#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/detail/MediaNumbers.h"
#include "ezFormats/iso/ISOCompressedMovie.h"
#include "ezFormats/iso/ISOFragments.h"
#include "ezFormats/iso/ISOLimits.h"
#include "ezFormats/iso/ISOMovie.h"
#include "ezFormats/iso/ISORecord.h"
#include "ezFormats/iso/ISOSampleEntry.h"

#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <vector>

namespace {

constexpr BoxType kQuickTime = "qt  ";

/// What a file may begin with: QuickTime files of before "ftyp" have one of the others.
constexpr std::array<BoxType, 6> kFirstBoxes = {"ftyp", "moov", "mdat", "wide", "free", "skip"};

/// Major brands of files that hold pictures.
constexpr std::array<BoxType, 14> kPictureBrands = {"mif1", "mif2", "msf1", "heic", "heix", "heim", "heis",
                                                    "hevc", "hevx", "avif", "avis", "jp2 ", "mj2s", "crx "};

struct BrandTypes {
    std::string_view mStart; ///< of the brand
    const char* mVideo;
    const char* mAudio;
    const char* mContainer;
};
/// The first that fits decides.
constexpr std::array<BrandTypes, 5> kBrandTypes = {
    {{"qt  ", "video/quicktime", "video/quicktime", kContainer_MOV},
     {"3g2", "video/3gpp2", "audio/3gpp2", kContainer_3G2},
     {"kddi", "video/3gpp2", "audio/3gpp2", kContainer_3G2},
     {"3g", "video/3gpp", "audio/3gpp", kContainer_3GP},
     {"", "video/mp4", "audio/mp4", kContainer_MP4}}};

template <std::size_t Size>
bool IsIn(const std::array<BoxType, Size>& aTypes, BoxType aType) {
    return std::find(aTypes.begin(), aTypes.end(), aType) != aTypes.end();
}

/// Video that 3GPP's files hold (TS 26.244): profile, and ten times the level at most. Of H.264 that is what
/// their players know; phones record VGA by it, and whatever is larger as an MP4 under the old brand.
struct AllowedVideo {
    std::string_view mCodec;
    const char* mProfile; ///< null: any
    std::uint32_t mMaxLevel;
};
constexpr std::array<AllowedVideo, 4> kVideoOf3GPP = {{{"H263", nullptr, UINT32_MAX},
                                                       {"MPEG4", "Simple", UINT32_MAX},
                                                       {"H264", "Baseline", 30},
                                                       {"H264", "ConstrainedBaseline", 30}}};
constexpr std::array<std::string_view, 7> kAudioOf3GPP = {"AMR",     "AMR-WB", "AMR-WB+", "AAC",
                                                          "AAC-LTP", "HE-AAC", "HE-AACv2"};

bool IsVideoOf3GPP(const ISOVideo& aVideo) {
    return std::any_of(kVideoOf3GPP.begin(), kVideoOf3GPP.end(), [&](const AllowedVideo& anAllowed) {
        const bool fLevel = aVideo.mLevel == VideoFacts::kNoLevel || aVideo.mLevel <= anAllowed.mMaxLevel;
        const bool fProfile = aVideo.mProfile.IsEmpty() || anAllowed.mProfile == nullptr ||
                              aVideo.mProfile == anAllowed.mProfile;
        return PlainCodecName(aVideo.mCodec) == anAllowed.mCodec && fProfile && fLevel;
    });
}

bool IsAudioOf3GPP(const ISOAudio& anAudio) {
    return std::find(kAudioOf3GPP.begin(), kAudioOf3GPP.end(), PlainCodecName(anAudio.mCodec)) !=
           kAudioOf3GPP.end();
}

bool IsOf3GPP(const ISOMovie& aMovie) {
    return (!aMovie.mVideo.has_value() || IsVideoOf3GPP(aMovie.mVideo->mTables.mVideo)) &&
           (!aMovie.mAudio.has_value() || IsAudioOf3GPP(aMovie.mAudio->mTables.mAudio));
}

/// What an MP4 may be compatible with.
bool IsPlainBrand(BoxType aBrand) {
    return aBrand.StartsWith("iso") || aBrand.StartsWith("mp4");
}

const BrandTypes& TypesOf(BoxType aBrand) {
    return *std::find_if(kBrandTypes.begin(), kBrandTypes.end(),
                         [&](const BrandTypes& aKnown) { return aBrand.StartsWith(aKnown.mStart); });
}

/// What the boxes at the top tell.
struct Top {
    std::optional<BoxType> mFirst; ///< type of the first one
    BoxType mBrand = kQuickTime;
    bool mfPlain = false; ///< one of the brands that it is compatible with is of plain MP4
    std::optional<ByteReader> mMovie;
};

/// The brands of "ftyp" (ISO/IEC 14496-12, 4.3): the major one, its version, and those that the file is
/// compatible with.
void ReadBrands(ByteReader aBox, Top& aTop) {
    aTop.mBrand = BoxType::Read(aBox);
    aBox.Skip(4); // minor_version
    for (std::uint32_t i = 0; i < kISO_MaxBrands && aBox.GetLeft() >= 4; ++i) {
        aTop.mfPlain = aTop.mfPlain || IsPlainBrand(BoxType::Read(aBox));
    }
}

/// Phones put 3GPP's brand first also where what they recorded is beyond it.
const BrandTypes& TypesOf(const Top& aTop, const ISOMovie& aMovie) {
    constexpr BoxType kPlain = "isom";
    const bool f3GPP = aTop.mBrand.StartsWith("3g") && !aTop.mBrand.StartsWith("3g2");
    return TypesOf(f3GPP && aTop.mfPlain && !IsOf3GPP(aMovie) ? kPlain : aTop.mBrand);
}

/// Looks for "moov" from the start on.
Top FindMovie(MediaBytes& aBytes, std::uint32_t& aBoxBudget) {
    Top top;
    BoxWalk walk(ByteReader(aBytes), aBoxBudget, kISO_MaxMissing);
    BoxType type;
    ByteReader content(aBytes);
    while (!top.mMovie.has_value() && walk.Next(&type, &content)) {
        top.mFirst = top.mFirst.value_or(type);
        if (!IsIn(kFirstBoxes, *top.mFirst)) {
            break;
        }
        if (type == "moov") {
            top.mMovie = content;
        } else if (type == "ftyp") {
            ReadBrands(content, top);
            if (IsIn(kPictureBrands, top.mBrand)) {
                break;
            }
        } else if (content.GetLeft() > kISO_TailSize) {
            aBytes.Load(content.GetEnd(), kISO_TailSize);
        }
    }
    return top;
}

/// The duration of a movie with fragments, which may have been told before they are reached.
void ReadFragmentsOf(MediaBytes& aBytes, std::uint64_t aStart, std::uint32_t& aBoxBudget, ISOMedia& aMedia) {
    const ISOMovie& movie = aMedia.mMovie;
    const bool fTold = movie.mWholeDuration != 0;
    aMedia.mFragments = ReadFragments(aBytes, aStart, movie,
                                      fTold ? kISO_FragmentsForRates : kISO_MaxFragments, !fTold, aBoxBudget);
    const ISOFragments& fragments = aMedia.mFragments;
    aMedia.mfFragmentsCounted = fragments.mfComplete && !fragments.mfIndexed;
    if (fTold) {
        aMedia.mDuration = std::max(aMedia.mDuration, movie.mWholeDuration);
        return;
    }
    std::uint64_t duration = fragments.mDuration;
    const char* method = fragments.mfIndexed ? "header" : "counted";
    std::uint64_t bound = 0;
    if (!fragments.mfComplete) {
        // What follows may run slower; players stop at the announced time, so an eighth more.
        const std::uint64_t size = aMedia.mSize.value_or(0);
        const std::uint64_t all = size - std::min(fragments.mStart, size);
        const std::uint64_t estimate = MediaNumber_Scale(duration, all, fragments.mEnd - fragments.mStart);
        duration = MediaNumber_Microseconds(ezSaturating_Add64(estimate, estimate / 8), 1000000);
        method = "estimate: the first fragments, by their share of the bytes";
        bound = estimate / 4; // it may as well run faster by an eighth
    }
    if (duration > aMedia.mDuration) {
        aMedia.mDuration = duration;
        aMedia.mDurationMethod = method;
        aMedia.mDurationBound = bound;
        aMedia.mfDurationEstimated = !fragments.mfComplete;
    }
    if (fragments.mfIndexed) { // nothing has been seen of those that the indices tell of
        aMedia.mFragments = ReadFragments(aBytes, aStart, movie, kISO_FragmentsForRates, false, aBoxBudget);
    }
}

/// What the entry of the video leaves open is asked of its first sample. Of a stream without a size that is
/// looked for only where it is near the movie, or before it.
void LookAtFirstSample(MediaBytes& aBytes, std::uint64_t aMovieEnd, std::uint32_t& aBoxBudget,
                       ISOMedia& aMedia) {
    if (!aMedia.mMovie.mVideo.has_value()) {
        return;
    }
    ISOTables& tables = aMedia.mMovie.mVideo->mTables;
    const ISOSamplePlace& own = tables.mFirstSample;
    const ISOSamplePlace place = own.mSize != 0 ? own : aMedia.mFragments.mVideo.mFirstSample;
    const std::uint64_t end = aBytes.GetSize().value_or(ezSaturating_Add64(aMovieEnd, kISO_TailSize));
    if (!tables.mDescription.has_value() || place.mSize == 0 || place.mPosition >= end) {
        return;
    }
    ByteReader sample(aBytes);
    sample.Skip(place.mPosition);
    const std::uint64_t there = std::min(place.mSize, sample.GetLeft());
    std::vector<unsigned char> bytes(
        static_cast<std::size_t>(std::min<std::uint64_t>(there, kISO_MaxSample)));
    if (sample.Read(bytes.data(), bytes.size())) {
        BlockBytes block(bytes.data(), bytes.size());
        const ByteReader start(block);
        tables.mVideo = ReadVideoDescription(*tables.mDescription, aBoxBudget, &start);
    }
}

} // namespace

/// A first box that is one (ISO/IEC 14496-12, 4.2).
bool ISOMediaParser::IsAt(ByteReader aBytes) {
    constexpr std::uint32_t kBoxHeaderSize = 8;
    const std::uint32_t size = aBytes.ReadBig32();
    const BoxType type = BoxType::Read(aBytes);
    const bool fSize = size == 1 || size >= kBoxHeaderSize; // 1: it is stated elsewhere
    return fSize && IsIn(kFirstBoxes, type);
}

/// True when the reader is that of the movie's boxes; else the file has been refused.
bool ISOMediaParser::OpenMovie(const MediaBytes& aBytes, ISOCompressedMovie& aCompressed, ByteReader& aMovie,
                               std::uint32_t& aBoxBudget) const {
    switch (aCompressed.Open(aMovie, aBoxBudget)) {
    case ISOCompressedMovie::Result::Plain:
    case ISOCompressedMovie::Result::Inflated:
        return true;
    case ISOCompressedMovie::Result::TooLarge:
        return Refuse(Cause::Limit, "compressed header of more than %u bytes", kISO_MaxInflatedMovie);
    case ISOCompressedMovie::Result::Unsupported:
        return Refuse(Cause::Unsupported, "compressed header");
    case ISOCompressedMovie::Result::Damaged:
        break;
    }
    return aBytes.HasReadFailed() || aBytes.IsBudgetUsedUp()
               ? RefuseCut(aBytes, "the end of a compressed header")
               : Refuse(Cause::Malformed, "damaged compressed header");
}

bool ISOMediaParser::ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) {
    std::uint32_t boxBudget = kISO_MaxBoxes;
    const Top top = FindMovie(aBytes, boxBudget);
    if (!top.mFirst.has_value()) {
        return RefuseCut(aBytes, "the end of its first box");
    }
    if (!IsIn(kFirstBoxes, *top.mFirst)) {
        return Refuse(Cause::Malformed, "begins with a box \"%s\"", CodecWord_OfFormat(*top.mFirst).c_str());
    }
    if (IsIn(kPictureBrands, top.mBrand)) {
        return Refuse(Cause::Unsupported, "pictures of the brand \"%s\"",
                      CodecWord_OfFormat(top.mBrand).c_str());
    }
    if (!top.mMovie.has_value()) {
        return RefuseCut(aBytes, "a \"moov\" box");
    }
    ISOCompressedMovie compressed;
    ByteReader movie = *top.mMovie;
    if (!OpenMovie(aBytes, compressed, movie, boxBudget)) {
        return false;
    }
    ISOMedia media;
    media.mMovie = ReadMovie(movie, CodePage(GetTextCodePage()), boxBudget);
    media.mSize = aBytes.GetSize();
    media.mDuration = media.mMovie.mDuration;
    if (aBytes.HasReadFailed()) {
        return RefuseCut(aBytes, "the end of \"moov\"");
    }
    const bool fVideo = media.mMovie.mVideo.has_value();
    if (!fVideo && media.mMovie.mAudioCount == 0) {
        return Refuse(Cause::Unsupported, "no audio or video in %u tracks", media.mMovie.mTrackCount);
    }
    if (media.mMovie.mfFragmented) {
        ReadFragmentsOf(aBytes, top.mMovie->GetEnd(), boxBudget, media);
    }
    LookAtFirstSample(aBytes, top.mMovie->GetEnd(), boxBudget, media);
    const BrandTypes& types = TypesOf(top, media.mMovie);
    anInfo.Set(kezInfo_MimeType, fVideo ? types.mVideo : types.mAudio, true);
    StoreFacts(media, types.mContainer, anInfo);
    // After "moov", the end of a file of unknown size may be met as an error of the stream.
    if (aBytes.HasLostBytes()) {
        return RefuseCut(aBytes, "the end of the fragments");
    }
    return true;
}
