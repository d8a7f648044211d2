#include "host/Facts.h"

#include "ezPlatform/dlna/DLNAField.h"
#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>
#include <string_view>

namespace {

/// A record has pictures in so many seconds.
constexpr unsigned kFrameRateDivisor = 1000;
/// Lengths below this, in milliseconds, are shown with their fraction.
constexpr std::uint64_t kShort = 10000;
/// What a record has for the level just below 1.
constexpr std::uint64_t kLevelBelowOne = 9;

/// Lines and Tags are texts that list several values.
enum class Kind {
    Text,
    Lines,
    Tags,
    Bytes,
    Seconds,
    Milliseconds,
    Rate,
    Hertz,
    Count,
    Flag,
    FrameRate,
    Level
};

struct KnownKey {
    const char* mKey;
    const char* mName;
    const char* mLabel;
    Kind mKind;
};

constexpr std::array<KnownKey, 53> kKnownKeys = {{
    {kezInfo_MimeType, "mime_type", "MIME type", Kind::Text},
    {kezInfo_ClassName, "class", "class", Kind::Text},
    {kezInfo_DLNA, "dlna", "DLNA", Kind::Text},
    {kezInfo_Container, "container", "container", Kind::Text},
    {kezInfo_FileSize, "size", "size", Kind::Bytes},
    {kezInfo_FileExtension, "extension", "extension", Kind::Text},
    {kezInfo_Duration, "duration", "duration", Kind::Seconds},
    {kezInfo_DurationMilliseconds, "duration_ms", "milliseconds", Kind::Milliseconds},
    {kezInfo_DurationMethod, "duration_from", "duration from", Kind::Text},
    {kezInfo_DurationBound, "duration_bound_ms", "shorter by ms", Kind::Milliseconds},
    {kezInfo_BitRate, "bit_rate", "bit rate", Kind::Rate},
    {kezInfo_MaxBitRate, "max_bit_rate", "max. bit rate", Kind::Rate},
    {kezInfo_EstimatedBitRate, "estimated_bit_rate", "est. bit rate", Kind::Rate},
    {kezInfo_AudioTrackCount, "audio_tracks", "audio tracks", Kind::Count},
    {kezInfo_AudioCodec, "audio_codec", "audio codec", Kind::Text},
    {kezInfo_AudioBitRate, "audio_bit_rate", "audio bit rate", Kind::Rate},
    {kezInfo_AudioMaxBitRate, "audio_max_bit_rate", "max. audio rate", Kind::Rate},
    {kezInfo_AudioEstimatedBitRate, "audio_estimated_bit_rate", "est. audio rate", Kind::Rate},
    {kezInfo_AudioSamplingRate, "sampling_rate", "sampling rate", Kind::Hertz},
    {kezInfo_AudioChannelCount, "channels", "channels", Kind::Count},
    {kezInfo_AudioBitsPerSample, "bits_per_sample", "bits per sample", Kind::Count},
    {kezInfo_HasVideoTrack, "has_video", "video", Kind::Flag},
    {kezInfo_VideoCodec, "video_codec", "video codec", Kind::Text},
    {kezInfo_VideoProfile, "video_profile", "video profile", Kind::Text},
    {kezInfo_VideoLevel, "video_level", "video level", Kind::Level},
    {kezInfo_PictureWidth, "picture_width", "picture width", Kind::Count},
    {kezInfo_PictureHeight, "picture_height", "picture height", Kind::Count},
    {kezInfo_PixelAspect, "pixel_aspect", "pixel aspect", Kind::Text},
    {kezInfo_DisplayAspect, "display_aspect", "display aspect", Kind::Text},
    {kezInfo_FrameRate, "frame_rate", "frame rate", Kind::FrameRate},
    {kezInfo_FrameRateVaries, "frame_rate_varies", "rate varies", Kind::Flag},
    {kezInfo_PictureProcess, "process", "process", Kind::Text},
    {kezInfo_PictureColours, "colours", "colours", Kind::Text},
    {kezInfo_PictureBitDepth, "bit_depth", "bit depth", Kind::Count},
    {kezInfo_HDR, "hdr", "HDR", Kind::Text},
    {kezInfo_Orientation, "orientation", "orientation", Kind::Count},
    {kezInfo_VideoBitRate, "video_bit_rate", "video bit rate", Kind::Rate},
    {kezInfo_VideoMaxBitRate, "video_max_bit_rate", "max. video rate", Kind::Rate},
    {kezInfo_VideoEstimatedBitRate, "video_estimated_bit_rate", "est. video rate", Kind::Rate},
    {kezInfo_Languages, "languages", "languages", Kind::Tags},
    {kezInfo_SubtitleTrackCount, "subtitle_tracks", "subtitle tracks", Kind::Count},
    {kezInfo_SubtitleLanguages, "subtitle_languages", "subtitles", Kind::Tags},
    {kezInfo_ProgramCount, "programs", "programs", Kind::Count},
    {kezInfo_Date, "date", "date", Kind::Text},
    {kezInfo_DiscNumber, "disc", "disc", Kind::Count},
    {kezInfo_TrackNumber, "track", "track", Kind::Count},
    {kezInfo_Compilation, "compilation", "compilation", Kind::Flag},
    {kezInfo_AlbumArtist, "album_artist", "album artist", Kind::Text},
    {kezInfo_Composer, "composer", "composer", Kind::Text},
    {kezInfo_Creators, "creators", "creators", Kind::Lines},
    {kezInfo_Genres, "genres", "genres", Kind::Lines},
    {kezInfo_CoverMimeType, "cover_type", "cover", Kind::Text},
    {kezInfo_CoverSize, "cover_size", "size of cover", Kind::Bytes},
}};

/// What a record of LPCM media has under the key of the audio bit rate.
constexpr KnownKey kLpcmSamplingRate = {kezInfo_AudioBitRate, "sampling_rate", "sampling rate", Kind::Hertz};
constexpr KnownKey kUnnamed = {"", "", "", Kind::Text};

/// Rates that a record of LPCM media derives from its sampling rate as if that were a bit rate.
constexpr std::array<std::string_view, 5> kDerivedFromAudioRate = {
    kezInfo_BitRate, kezInfo_MaxBitRate, kezInfo_EstimatedBitRate, kezInfo_AudioMaxBitRate,
    kezInfo_AudioEstimatedBitRate};

/// "1.5 k" of 1500: at most one decimal, which is not written when it is 0.
std::string Scaled(double aValue, const char* aUnit) {
    std::array<char, 64> text = {};
    std::snprintf(text.data(), text.size(), "%.1f", aValue);
    std::string words = text.data();
    if (words.size() > 2 && words.compare(words.size() - 2, 2, ".0") == 0) {
        words.resize(words.size() - 2);
    }
    return words + " " + aUnit;
}

std::string ThousandsInWords(std::uint64_t aValue, const char* aUnit) {
    if (aValue < 1000) {
        return std::to_string(aValue) + " " + aUnit;
    }
    if (aValue < 1000000) {
        return Scaled(static_cast<double>(aValue) / 1000.0, (std::string("k") + aUnit).c_str());
    }
    return Scaled(static_cast<double>(aValue) / 1000000.0, (std::string("M") + aUnit).c_str());
}

std::string DurationInWords(std::uint64_t aSeconds) {
    std::array<char, 64> text = {};
    std::snprintf(text.data(), text.size(), "%llu:%02u:%02u",
                  static_cast<unsigned long long>(aSeconds / 3600), static_cast<unsigned>(aSeconds / 60 % 60),
                  static_cast<unsigned>(aSeconds % 60));
    return text.data();
}

/// A short length with its fraction, where that is known.
std::string DurationInWords(const ezMediaInfo& anInfo) {
    const std::uint64_t milliseconds = anInfo.GetUInt64(kezInfo_DurationMilliseconds, kShort).ToUInt64();
    if (milliseconds >= kShort) {
        return DurationInWords(anInfo.GetUInt64(kezInfo_Duration, 0).ToUInt64());
    }
    return DurationInWords(milliseconds / 1000) + "." + std::to_string(1000 + milliseconds % 1000).substr(1);
}

/// "29.97" of 29970, "25" of 25000.
std::string ThousandthsInWords(std::uint64_t aNumber) {
    std::string fraction = std::to_string(kFrameRateDivisor + aNumber % kFrameRateDivisor).substr(1);
    fraction.erase(fraction.find_last_not_of('0') + 1);
    return std::to_string(aNumber / kFrameRateDivisor) + (fraction.empty() ? "" : ".") + fraction;
}

/// "3.1" of 31, "3" of 30. The level just below 1 is "0b" in MPEG-4 part 2 and "1b" elsewhere.
std::string LevelInWords(std::uint64_t aNumber, bool afMpeg4) {
    if (aNumber == kLevelBelowOne) {
        return afMpeg4 ? "0b" : "1b";
    }
    const std::uint64_t tenths = aNumber % 10;
    return std::to_string(aNumber / 10) + (tenths != 0 ? "." + std::to_string(tenths) : "");
}

std::string NumberInWords(Kind aKind, std::uint64_t aNumber) {
    switch (aKind) {
    case Kind::Bytes:
        return SizeInWords(aNumber);
    case Kind::Rate:
        return aNumber == kezMediaInfo_VariableRate ? "variable" : ThousandsInWords(aNumber, "bit/s");
    case Kind::Hertz:
        return ThousandsInWords(aNumber, "Hz");
    case Kind::Flag:
        return aNumber != 0 ? "yes" : "no";
    case Kind::FrameRate:
        return ThousandthsInWords(aNumber);
    case Kind::Text:
    case Kind::Lines:
    case Kind::Tags:
    case Kind::Seconds:
    case Kind::Milliseconds:
    case Kind::Count:
    case Kind::Level:
        break;
    }
    return std::to_string(aNumber);
}

/// 0 of these means that nobody knows, so there is nothing to tell.
bool IsUnknown(Kind aKind, std::uint64_t aNumber) {
    constexpr std::array<Kind, 4> kKinds = {Kind::Rate, Kind::Hertz, Kind::Count, Kind::FrameRate};
    return aNumber == 0 && std::find(kKinds.begin(), kKinds.end(), aKind) != kKinds.end();
}

bool IsText(Kind aKind) {
    return aKind == Kind::Text || aKind == Kind::Lines || aKind == Kind::Tags;
}

std::string ValuesInWords(const std::vector<std::string>& aValues) {
    std::string words;
    for (const std::string& value : aValues) {
        words += words.empty() ? value : "; " + value;
    }
    return words;
}

class FactMaker {
public:
    explicit FactMaker(const ezMediaInfo& anInfo) : mInfo(anInfo) {}

    std::vector<Fact> Make() {
        for (const KnownKey& known : kKnownKeys) {
            if (mInfo.Has(known.mKey)) {
                AddKey(known.mKey, KindOfKey(known));
            }
        }
        AddText("title", "mTitle", mInfo.mTitle);
        AddText("creator", "mCreator", mInfo.mCreator);
        AddText("genre", "mGenre", mInfo.mGenre);
        AddText("album", "mAlbum", mInfo.mAlbum);
        AddText("modified", "mLastModificationTime", Iso8601(mInfo.mLastModificationTime).c_str());
        for (std::size_t i = 0; i < mInfo.GetCount(); ++i) {
            const ezCString key = mInfo.GetKeyAt(i);
            const auto* known = std::find_if(kKnownKeys.begin(), kKnownKeys.end(),
                                             [&](const KnownKey& aKey) { return key == aKey.mKey; });
            if (known == kKnownKeys.end()) {
                AddKey(key.c_str(), kUnnamed);
            }
        }
        // Keys without a name after all others.
        std::stable_partition(mFacts.begin(), mFacts.end(),
                              [](const Fact& aFact) { return !aFact.mName.empty(); });
        return std::move(mFacts);
    }

private:
    /// By its codec, or, where the media mapper alone tells, by its profile.
    bool IsLpcm() const {
        if (mInfo.Has(kezInfo_AudioCodec)) {
            return mInfo.GetCString(kezInfo_AudioCodec, "") == "LPCM";
        }
        const ezCString field = mInfo.GetCString(kezInfo_DLNA, "");
        return ezDLNAField::ProfileIn(field.View()) == "LPCM";
    }

    const KnownKey& KindOfKey(const KnownKey& aKnown) const {
        if (IsLpcm()) {
            const std::string_view key = aKnown.mKey;
            if (key == kezInfo_AudioBitRate) {
                return kLpcmSamplingRate;
            }
            const bool fDerived = std::find(kDerivedFromAudioRate.begin(), kDerivedFromAudioRate.end(),
                                            key) != kDerivedFromAudioRate.end();
            if (fDerived && mInfo.GetUInt64(aKnown.mKey, 0) == mInfo.GetUInt64(kezInfo_AudioBitRate, 0)) {
                return kUnnamed;
            }
        }
        return aKnown;
    }

    bool IsToBeShownAsNumber(const char* aKey, const KnownKey& aKnown) const {
        if (IsText(aKnown.mKind)) {
            return aKnown.mName[0] == '\0' && mInfo.IsNumber(aKey);
        }
        // Only what does not read as a number gives the two defaults back.
        return mInfo.GetUInt64(aKey, 0) == mInfo.GetUInt64(aKey, 1);
    }

    /// False for a number that tells nothing.
    bool FillNumber(Fact& aFact, Kind aKind) const {
        aFact.mNumber = mInfo.GetUInt64(aFact.mKey.c_str(), 0).ToUInt64();
        if (IsUnknown(aKind, aFact.mNumber)) {
            return false;
        }
        aFact.mfNumber = true;
        aFact.mfFlag = aKind == Kind::Flag;
        aFact.mDivisor = aKind == Kind::FrameRate ? kFrameRateDivisor : 1;
        aFact.mWords = aKind == Kind::Seconds ? DurationInWords(mInfo) : NumberInWords(aKind, aFact.mNumber);
        if (aKind == Kind::Level) {
            aFact.mWords = LevelInWords(aFact.mNumber, mInfo.GetCString(kezInfo_VideoCodec, "") == "MPEG4");
        }
        if (aKind == Kind::Level || (aKind == Kind::Rate && aFact.mNumber == kezMediaInfo_VariableRate)) {
            aFact.mfNumber = false;
            aFact.mText = aFact.mWords;
        }
        return true;
    }

    void AddKey(const char* aKey, const KnownKey& aKnown) {
        Fact fact;
        fact.mKey = aKey;
        fact.mName = aKnown.mName;
        fact.mLabel = fact.mName.empty() ? fact.mKey : aKnown.mLabel;
        if (IsToBeShownAsNumber(aKey, aKnown)) {
            if (!FillNumber(fact, aKnown.mKind)) {
                return;
            }
        } else {
            fact.mText = mInfo.GetCString(aKey, "").View();
            fact.mWords = fact.mText;
            if (aKnown.mKind == Kind::Lines || aKnown.mKind == Kind::Tags) {
                fact.mValues = ListedValues(fact.mText, aKnown.mKind == Kind::Lines ? '\n' : ',');
                fact.mWords = ValuesInWords(fact.mValues);
            } else if (aKnown.mKind != Kind::Text) {
                // A parser that writes a text where a number is meant: shown, but not under the name by which
                // programs look for a number.
                fact.mName.clear();
                fact.mLabel = fact.mKey;
            }
        }
        mFacts.push_back(fact);
    }

    void AddText(const char* aName, const char* aMember, const ezCString& aText) {
        if (!aText.IsEmpty()) {
            Fact fact;
            fact.mMember = aMember;
            fact.mName = aName;
            fact.mLabel = aName;
            fact.mText = aText.View();
            fact.mWords = fact.mText;
            mFacts.push_back(fact);
        }
    }

    const ezMediaInfo& mInfo;
    std::vector<Fact> mFacts;
};

} // namespace

std::vector<Fact> FactsOf(const ezMediaInfo& anInfo) {
    return FactMaker(anInfo).Make();
}

const Fact* FindFactNamed(const std::vector<Fact>& aFacts, std::string_view aName) {
    const auto fact =
        std::find_if(aFacts.begin(), aFacts.end(), [&](const Fact& aFact) { return aFact.mName == aName; });
    return fact != aFacts.end() ? &*fact : nullptr;
}

std::string AnnouncedFourthField(const ezMediaInfo& anInfo) {
    return anInfo.GetCString(kezInfo_DLNA, "*").c_str();
}

std::string ProtocolInfo(const ezMediaInfo& anInfo) {
    return std::string("http-get:*:") + anInfo.GetCString(kezInfo_MimeType, "").c_str() + ":" +
           AnnouncedFourthField(anInfo);
}

std::string Iso8601(const ezDateTime& aTime) {
    const std::time_t seconds = static_cast<std::time_t>(aTime.GetUnixTime());
    std::tm parts = {};
    if (!aTime.IsSet() || gmtime_r(&seconds, &parts) == nullptr) {
        return {};
    }
    std::array<char, 64> text = {};
    const std::size_t length = std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts);
    return std::string(text.data(), length);
}

std::vector<std::string> ListedValues(std::string_view aText, char aSeparator) {
    std::vector<std::string> values;
    for (std::size_t start = 0; start <= aText.size();) {
        const std::size_t end = std::min(aText.find(aSeparator, start), aText.size());
        values.emplace_back(aText.substr(start, end - start));
        start = end + 1;
    }
    return values;
}

std::string SizeInWords(std::uint64_t aSize) {
    constexpr std::array<const char*, 6> kUnits = {"KiB", "MiB", "GiB", "TiB", "PiB", "EiB"};
    constexpr double kStep = 1024.0;
    if (aSize < 1024) {
        return std::to_string(aSize) + " B";
    }
    double value = static_cast<double>(aSize) / kStep;
    std::size_t unit = 0;
    // Compared with what would be written as "1024.0".
    while (value >= 1023.95 && unit + 1 < kUnits.size()) {
        value /= kStep;
        ++unit;
    }
    return Scaled(value, kUnits[unit]);
}
