#include "ezFormats/iso/ISOMovie.h"

#include "ezBytes/BoxWalk.h"
#include "ezBytes/LanguageTags.h"
#include "ezFormats/detail/MediaNumbers.h"
#include "ezFormats/iso/ISOLimits.h"
#include "ezFormats/iso/ISOTags.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

/// A duration and its timescale, of the movie or of a track's media.
struct Times {
    std::uint32_t mTimescale = 0;
    std::uint64_t mDuration = 0;  ///< 0: not told
    unsigned mPackedLanguage = 0; ///< of "mdhd" (8.4.2)
};

std::uint64_t ReadDuration(ByteReader& aReader, unsigned aBytes) {
    const std::uint64_t duration = aReader.ReadBig(aBytes);
    const bool fUnknown = duration == (aBytes == 4 ? UINT32_MAX : UINT64_MAX);
    return fUnknown ? 0 : duration;
}

/// Of "mvhd" and "mdhd", which begin alike (ISO/IEC 14496-12, 8.2.2 and 8.4.2).
Times ReadTimes(ByteReader aBox) {
    Times times;
    const unsigned size = aBox.ReadByte() == 1 ? 8 : 4;
    aBox.Skip(3 + 2 * size); // flags, creation and modification time
    times.mTimescale = aBox.ReadBig32();
    times.mDuration = ReadDuration(aBox, size);
    const bool fTold = !aBox.HasFailed();
    times.mPackedLanguage = static_cast<unsigned>(aBox.ReadBig(2)); // which "mvhd" has not
    return fTold ? times : Times();
}

/// The language of a track: that of "elng", where there is one, else the packed one of "mdhd".
struct Language {
    unsigned mPacked = 0;
    ezCString mTag;

    /// Adds it to a list as kezInfo_Languages has one.
    void AddTo(std::string& aList) const {
        if (mTag.IsEmpty()) {
            AddPackedLanguage(aList, mPacked);
        } else {
            AddLanguages(aList, mTag.View());
        }
    }
};

/// The language of "elng" (ISO/IEC 14496-12, 8.4.6).
ezCString ReadLanguage(ByteReader aBox) {
    aBox.Skip(4); // version and flags
    return aBox.ReadText(static_cast<std::size_t>(std::min(aBox.GetLeft(), kISO_MaxLanguageTag)))
        .BeforeFirst('\0');
}

/// The duration of "mehd" (8.8.2).
std::uint64_t ReadWholeDuration(ByteReader aBox) {
    const unsigned size = aBox.ReadByte() == 1 ? 8 : 4;
    aBox.Skip(3); // flags
    return ReadDuration(aBox, size);
}

/// What the edit list of a track presents ("elst", 8.6.6).
struct Edits {
    bool mfAny = false;           ///< some of the media is presented
    std::uint64_t mDuration = 0;  ///< ticks of the movie, delays included
    bool mfOpen = false;          ///< one goes on to the end of the media
    std::uint64_t mOpenStart = 0; ///< from this tick of the media on
};

Edits ReadEdits(ByteReader aBox) {
    Edits edits;
    const unsigned size = aBox.ReadByte() == 1 ? 8 : 4;
    const std::uint64_t empty = size == 8 ? UINT64_MAX : UINT32_MAX;
    aBox.Skip(3); // flags
    const std::uint32_t count = aBox.ReadBig32();
    aBox.Require(count <= kISO_MaxEdits);
    for (std::uint32_t i = 0; i < count && !aBox.HasFailed(); ++i) {
        const std::uint64_t duration = ReadDuration(aBox, size);
        const std::uint64_t start = aBox.ReadBig(size);
        aBox.Skip(4); // media_rate
        edits.mDuration = ezSaturating_Add64(edits.mDuration, duration);
        edits.mfAny = edits.mfAny || start != empty;
        if (duration == 0 && start != empty) {
            edits.mfOpen = true;
            edits.mOpenStart = start;
        }
    }
    return aBox.HasFailed() ? Edits() : edits;
}

/// A track as it is read.
struct TrackReading {
    explicit TrackReading(const ByteReader& aNone) : mMediaInformation(aNone) {}

    ISOTrack mTrack;
    Edits mEdits;
    Language mLanguage;
    std::vector<std::uint32_t> mChapters; ///< tracks that have those of this one
    bool mfMediaInformation = false;
    ByteReader mMediaInformation;
};

/// The content of the only box of a type in a box that holds it; true when it is there.
bool Enter(ByteReader& aReader, BoxType aType, std::uint32_t& aBoxBudget) {
    ByteReader content = aReader;
    const bool fFound = BoxWalk::Within(aReader, aBoxBudget).Find(aType, &content);
    aReader = content;
    return fFound;
}

/// Of "tkhd" (8.3.2).
void ReadTrackHead(ByteReader aBox, ISOTrack& aTrack) {
    const unsigned size = aBox.ReadByte() == 1 ? 8 : 4;
    aTrack.mfEnabled = (aBox.ReadBig(3) & 1U) != 0;
    aBox.Skip(std::uint64_t{2} * size); // creation and modification time
    aTrack.mID = aBox.ReadBig32();
    aBox.Skip(4 + size + 16); // reserved, duration, reserved, layer, alternate_group, volume, reserved
    aTrack.mMatrix = ISOMatrix::Read(aBox);
}

/// The matrix of "mvhd" (8.2.2).
ISOMatrix ReadMovieMatrix(ByteReader aBox) {
    const unsigned size = aBox.ReadByte() == 1 ? 8 : 4;
    aBox.Skip(3 + 3 * size + 4 + 16); // flags, times, timescale, duration, rate, volume, reserved
    return ISOMatrix::Read(aBox);
}

struct Handler {
    BoxType mType;
    ISOTrackKind mKind;
};
/// Subtitles are of Apple's and the standard's handlers, captions, pictures of discs, and texts, which are
/// chapters where another track says so.
constexpr std::array<Handler, 7> kHandlers = {{{"soun", ISOTrackKind::kAudio},
                                               {"vide", ISOTrackKind::kVideo},
                                               {"sbtl", ISOTrackKind::kSubtitle},
                                               {"subt", ISOTrackKind::kSubtitle},
                                               {"clcp", ISOTrackKind::kSubtitle},
                                               {"subp", ISOTrackKind::kSubtitle},
                                               {"text", ISOTrackKind::kSubtitle}}};

/// Of "hdlr" (8.4.3).
ISOTrackKind ReadKind(ByteReader aBox) {
    aBox.Skip(8); // version, flags, pre_defined (QuickTime's component type)
    const BoxType kind = BoxType::Read(aBox);
    const auto* const known = std::find_if(kHandlers.begin(), kHandlers.end(),
                                           [=](const Handler& aKnown) { return kind == aKnown.mType; });
    return known != kHandlers.end() ? known->mKind : ISOTrackKind::kOther;
}

/// The tracks of chapters that "tref" names (ISO/IEC 14496-12, 8.3.3, and QuickTime).
std::vector<std::uint32_t> ReadChapters(const ByteReader& aBox, std::uint32_t& aBoxBudget) {
    std::vector<std::uint32_t> tracks;
    ByteReader list = aBox;
    if (Enter(list, "chap", aBoxBudget)) {
        while (list.GetLeft() >= 4 && tracks.size() < kISO_MaxChapterTracks) {
            tracks.push_back(list.ReadBig32());
        }
    }
    return tracks;
}

/// The media of a track, but its tables: they are read when its kind is known.
void ReadMedia(const ByteReader& aBox, std::uint32_t& aBoxBudget, TrackReading& aReading) {
    BoxWalk walk = BoxWalk::Within(aBox, aBoxBudget);
    BoxType type;
    ByteReader content = aBox;
    while (walk.Next(&type, &content)) {
        if (type == "mdhd") {
            const Times times = ReadTimes(content);
            aReading.mTrack.mTimescale = times.mTimescale;
            aReading.mTrack.mDuration = times.mDuration;
            aReading.mLanguage.mPacked = times.mPackedLanguage;
        } else if (type == "elng") {
            aReading.mLanguage.mTag = ReadLanguage(content);
        } else if (type == "hdlr") {
            aReading.mTrack.mKind = ReadKind(content);
        } else if (type == "minf") {
            aReading.mfMediaInformation = true;
            aReading.mMediaInformation = content;
        }
    }
}

TrackReading ReadTrack(const ByteReader& aBox, std::uint32_t& aBoxBudget) {
    TrackReading reading(aBox);
    BoxWalk walk = BoxWalk::Within(aBox, aBoxBudget);
    BoxType type;
    ByteReader content = aBox;
    while (walk.Next(&type, &content)) {
        if (type == "tkhd") {
            ReadTrackHead(content, reading.mTrack);
        } else if (type == "edts" && Enter(content, "elst", aBoxBudget)) {
            reading.mEdits = ReadEdits(content);
        } else if (type == "tref") {
            reading.mChapters = ReadChapters(content, aBoxBudget);
        } else if (type == "mdia") {
            ReadMedia(content, aBoxBudget, reading);
        }
    }
    return reading;
}

/// Microseconds that a track is presented; 0: not told.
std::uint64_t PresentationOf(const TrackReading& aReading, std::uint32_t aMovieTimescale) {
    const ISOTrack& track = aReading.mTrack;
    const std::uint64_t media = MediaNumber_Microseconds(track.mDuration, track.mTimescale);
    const Edits& edits = aReading.mEdits;
    if (!edits.mfAny || aMovieTimescale == 0) {
        return media;
    }
    TimeSum edited;
    edited.Add(edits.mDuration, aMovieTimescale);
    if (edits.mfOpen) {
        edited.Add(track.mDuration - std::min(edits.mOpenStart, track.mDuration), track.mTimescale);
    }
    return edited.GetMicroseconds();
}

/// A track of one picture holds cover art, and one with more than a second between them those of chapters.
bool IsSlideShow(const ISOTrack& aTrack) {
    const std::uint64_t ticks = aTrack.mTables.mTicks;
    const std::uint64_t samples = aTrack.mTables.mTimedSamples;
    const std::uint64_t second = std::max(aTrack.mTimescale, 1U);
    return aTrack.mTables.mVideo.mfPictures &&
           (samples <= 1 || ticks == 0 || samples < ticks / second + (ticks % second != 0 ? 1 : 0));
}

/// True when a track is to take the place of the one that stands for its kind so far.
bool IsWanted(const std::optional<ISOTrack>& aKnown, const ISOTrack& aTrack) {
    return !aKnown.has_value() || (!aKnown->mfEnabled && aTrack.mfEnabled);
}

/// A track of subtitles, or of chapters, as far as it tells.
struct Subtitle {
    std::uint32_t mID;
    Language mLanguage;
};

/// Reads the movie's boxes, one after the other.
class MovieReading {
public:
    MovieReading(const CodePage& aCodePage, std::uint32_t& aBoxBudget) : mBoxBudget(aBoxBudget) {
        mTags.mCodePage = aCodePage;
    }

    void Read(const ByteReader& aBox);
    ISOMovie Take() { return std::move(mMovie); }

private:
    void TakeTrack(const ByteReader& aBox);
    void CountSubtitles();
    void TellLanguages();
    void TakeDuration(const TrackReading& aReading);
    void TakeFragmentDefaults(const ByteReader& aBox);
    void TakeTrackDefaults(ByteReader aBox);

    std::uint32_t& mBoxBudget;
    ISOMovie mMovie;
    ISOTags mTags;
    std::uint32_t mTimescale = 0;
    Language mPlayed; ///< of the audio track that stands for its kind
    std::vector<Subtitle> mSubtitles;
    std::vector<std::uint32_t> mChapters; ///< tracks that hold those of others
    bool mfEnabled = false;               ///< one of the tracks is
    std::uint64_t mDisabledDuration = 0;  ///< microseconds, the longest of the others
};

void MovieReading::TakeDuration(const TrackReading& aReading) {
    const bool fEnabled = aReading.mTrack.mfEnabled;
    std::uint64_t& longest = fEnabled ? mMovie.mDuration : mDisabledDuration;
    longest = std::max(longest, PresentationOf(aReading, mTimescale));
    mfEnabled = mfEnabled || fEnabled;
}

/// Which of the tracks hold chapters is known once all have been seen.
void MovieReading::CountSubtitles() {
    for (const Subtitle& track : mSubtitles) {
        if (std::find(mChapters.begin(), mChapters.end(), track.mID) == mChapters.end()) {
            ++mMovie.mSubtitleCount;
            track.mLanguage.AddTo(mMovie.mSubtitleLanguages);
        }
    }
}

/// Which of the audio tracks plays first is known once all have been seen.
void MovieReading::TellLanguages() {
    std::string languages;
    mPlayed.AddTo(languages);
    AddLanguages(languages, mMovie.mLanguages);
    mMovie.mLanguages = languages;
}

void MovieReading::TakeTrack(const ByteReader& aBox) {
    TrackReading reading = ReadTrack(aBox, mBoxBudget);
    ISOTrack& track = reading.mTrack;
    ++mMovie.mTrackCount;
    if (mChapters.size() < kISO_MaxChapterTracks) {
        mChapters.insert(mChapters.end(), reading.mChapters.begin(), reading.mChapters.end());
    }
    if (track.mKind == ISOTrackKind::kSubtitle && mSubtitles.size() < kISO_MaxSubtitleTracks) {
        mSubtitles.push_back({track.mID, reading.mLanguage});
    }
    if (track.mKind != ISOTrackKind::kAudio && track.mKind != ISOTrackKind::kVideo) {
        return;
    }
    const bool fAudio = track.mKind == ISOTrackKind::kAudio;
    std::optional<ISOTrack>& place = fAudio ? mMovie.mAudio : mMovie.mVideo;
    if (fAudio) {
        ++mMovie.mAudioCount;
        reading.mLanguage.AddTo(mMovie.mLanguages);
    }
    const bool fTables = IsWanted(place, track) && reading.mfMediaInformation &&
                         Enter(reading.mMediaInformation, "stbl", mBoxBudget);
    if (fTables) {
        track.mTables = ReadTables(reading.mMediaInformation, track.mKind, mBoxBudget);
        track.mDuration = track.mDuration != 0 ? track.mDuration : track.mTables.mTicks;
    }
    TakeDuration(reading);
    if (fTables && fAudio) {
        mPlayed = reading.mLanguage;
    }
    if (fTables && (fAudio || !IsSlideShow(track))) {
        place = std::move(track);
    }
}

/// Of "trex" (8.8.3).
void MovieReading::TakeTrackDefaults(ByteReader aBox) {
    aBox.Skip(4); // version and flags
    const std::uint32_t identifier = aBox.ReadBig32();
    aBox.Skip(4); // default_sample_description_index
    const std::uint32_t ticks = aBox.ReadBig32();
    const std::uint32_t size = aBox.ReadBig32();
    if (aBox.HasFailed()) {
        return;
    }
    for (std::optional<ISOTrack>* track : {&mMovie.mAudio, &mMovie.mVideo}) {
        if (track->has_value() && (*track)->mID == identifier) {
            (*track)->mDefaultTicks = ticks;
            (*track)->mDefaultSize = size;
        }
    }
}

void MovieReading::TakeFragmentDefaults(const ByteReader& aBox) {
    BoxWalk walk = BoxWalk::Within(aBox, mBoxBudget);
    BoxType type;
    ByteReader content = aBox;
    while (walk.Next(&type, &content)) {
        if (type == "mehd") {
            mMovie.mWholeDuration = MediaNumber_Microseconds(ReadWholeDuration(content), mTimescale);
        } else if (type == "trex") {
            TakeTrackDefaults(content);
        }
    }
}

void MovieReading::Read(const ByteReader& aBox) {
    ByteReader content = aBox;
    if (Enter(content, "mvhd", mBoxBudget)) { // edits count in its ticks, wherever it stands
        const Times times = ReadTimes(content);
        mTimescale = times.mTimescale;
        mMovie.mDuration = MediaNumber_Microseconds(times.mDuration, times.mTimescale);
        mMovie.mMatrix = ReadMovieMatrix(content);
    }
    std::optional<ByteReader> fragments;
    BoxWalk walk = BoxWalk::Within(aBox, mBoxBudget);
    BoxType type;
    while (walk.Next(&type, &content)) {
        if (type == "trak") {
            TakeTrack(content);
        } else if (type == "mvex") {
            fragments = content;
        } else if (type == "udta" || type == "meta") {
            ReadTags(content, type == "meta", mBoxBudget, mTags);
        }
    }
    CountSubtitles();
    TellLanguages();
    mMovie.mTexts = mTags.Merge();
    mMovie.mCover = mTags.mCover;
    if (!mfEnabled) {
        mMovie.mDuration = std::max(mMovie.mDuration, mDisabledDuration);
    }
    if (fragments.has_value()) { // which tracks they are for is known now
        mMovie.mfFragmented = true;
        TakeFragmentDefaults(*fragments);
    }
}

} // namespace

ISOMovie ReadMovie(const ByteReader& aBox, const CodePage& aCodePage, std::uint32_t& aBoxBudget) {
    MovieReading reading(aCodePage, aBoxBudget);
    reading.Read(aBox);
    return reading.Take();
}
