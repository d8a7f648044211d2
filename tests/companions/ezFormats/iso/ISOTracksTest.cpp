#include "companions/ezFormats/iso/ISOBytes.h"

#include "ezFormats/iso/ISOLimits.h"

#include <gtest/gtest.h>

using namespace iso;

namespace {

struct TimeRun {
    std::uint32_t mCount;
    std::uint32_t mTicks;
};

/// Frame rate, and whether it varies, of pictures that last so many ticks of 90 kHz, or of another clock.
std::string RateOf(const std::vector<TimeRun>& aRuns, std::uint32_t aTimescale = 90000) {
    Track track = VideoTrack();
    track.mTimescale = aTimescale;
    track.mDuration = aTimescale;
    for (const TimeRun& run : aRuns) {
        track.mTimes += Big(run.mCount, 4) + Big(run.mTicks, 4);
    }
    return Values(Parsed(File({track})), {"fr", "fv"});
}

Track TextTrack(std::uint32_t anID, const char* aHandler, const std::string& aLanguage = "") {
    Track track;
    track.mID = anID;
    track.mHandler = aHandler;
    track.mEntry = Box("tx3g", std::string(30, '\0'));
    track.mLanguage = aLanguage;
    return track;
}

std::string References(const std::string& aType, const std::vector<std::uint32_t>& aTracks) {
    std::string tracks;
    for (const std::uint32_t track : aTracks) {
        tracks += Big(track, 4);
    }
    return Box("tref", Box(aType, tracks));
}

std::string SubtitlesOf(const std::vector<Track>& aTracks) {
    return Values(Parsed(File(aTracks)), {"ts", "sl", "ta"});
}

} // namespace

TEST(ISOFrameRate, VariesWherePicturesDifferByMoreThanRounding) {
    EXPECT_EQ(RateOf({{25, 3600}}), "fr=25000");
    EXPECT_EQ(RateOf({{24, 3600}, {1, 90000}}), "fr=12755") << "the last lasts longer";
    EXPECT_EQ(RateOf({{10, 3600}, {10, 7200}, {5, 3600}}), "fr=17857 fv=1");
    EXPECT_EQ(RateOf({{10, 3600}, {1, 3690}, {14, 3600}}), "fr=24975") << "a millisecond";
    EXPECT_EQ(RateOf({{10, 3600}, {1, 3691}, {14, 3600}}), "fr=24975 fv=1");
    EXPECT_EQ(RateOf({{10, 33}, {5, 34}, {10, 33}}, 1000), "fr=30120");
    EXPECT_EQ(RateOf({{10, 33}, {5, 35}, {10, 33}}, 1000), "fr=29940 fv=1");
    EXPECT_EQ(RateOf({{10, 20}, {5, 21}, {10, 20}}, 600), "fr=29703") << "a tick is more";
    EXPECT_EQ(RateOf({{10, 1}, {1, 2}, {10, 1}}, 25), "fr=23864 fv=1") << "one is left out";
    EXPECT_EQ(RateOf({{1, 3600}}), "fr=25000");
    EXPECT_EQ(RateOf({{5, 0}, {5, 3600}, {5, 3600}}), "fr=37500 fv=1");
}

TEST(ISOFrameRate, OfMoreRunsThanCountTheFirstTellWhetherItVaries) {
    std::vector<TimeRun> runs(kISO_MaxTimeRuns + 1, {1, 3600});
    EXPECT_EQ(RateOf(runs), "fr=25000") << "averaged over the duration";
    runs[kISO_MaxTimeRuns - 1].mTicks = 7200;
    EXPECT_EQ(RateOf(runs), "fr=25000 fv=1");
    runs[kISO_MaxTimeRuns - 1].mTicks = 3600;
    runs[kISO_MaxTimeRuns].mTicks = 7200;
    EXPECT_EQ(RateOf(runs), "fr=25000") << "the one after them";
    runs.pop_back();
    runs[kISO_MaxTimeRuns - 2].mTicks = 7200;
    EXPECT_EQ(RateOf(runs), "fr=24903 fv=1") << "all of them";
}

TEST(ISOSubtitles, TracksAreCountedWithTheirLanguages) {
    const Track sound;
    EXPECT_EQ(SubtitlesOf({sound}), "ta=1");
    EXPECT_EQ(SubtitlesOf({sound, TextTrack(2, "sbtl", "de"), TextTrack(3, "subt", "en-GB"),
                           TextTrack(4, "clcp", "de"), TextTrack(5, "subp"), TextTrack(6, "text")}),
              "ts=5 sl=\"de,en-GB\" ta=1");
    EXPECT_EQ(SubtitlesOf({sound, TextTrack(2, "meta", "de"), TextTrack(3, "hint", "en")}), "ta=1");
    Track packed = TextTrack(2, "sbtl");
    packed.mPackedLanguage = ('f' - 0x60) << 10 | ('r' - 0x60) << 5 | ('a' - 0x60);
    EXPECT_EQ(SubtitlesOf({sound, packed}), "ts=1 sl=\"fr\" ta=1");
}

TEST(ISOSubtitles, ChaptersAreNone) {
    Track sound;
    sound.mMore = References("chap", {3, 9});
    EXPECT_EQ(SubtitlesOf({TextTrack(3, "text", "en"), sound, TextTrack(4, "text", "de")}),
              "ts=1 sl=\"de\" ta=1");
    sound.mMore = References("hint", {3});
    EXPECT_EQ(SubtitlesOf({sound, TextTrack(3, "text", "en")}), "ts=1 sl=\"en\" ta=1");
    sound.mMore = Box("tref", Box("chap", "xx"));
    EXPECT_EQ(SubtitlesOf({sound, TextTrack(3, "text", "en")}), "ts=1 sl=\"en\" ta=1");
    // Of a long list the first are known.
    std::vector<std::uint32_t> many(kISO_MaxChapterTracks - 1, 99);
    many.push_back(3);
    many.push_back(4);
    sound.mMore = References("chap", many);
    EXPECT_EQ(SubtitlesOf({sound, TextTrack(3, "text", "en"), TextTrack(4, "text", "de")}),
              "ts=1 sl=\"de\" ta=1");
}

TEST(ISOSubtitles, NoMoreAreCountedThanAFilmHas) {
    const auto count = [](std::uint32_t aCount) {
        std::vector<Track> tracks(1);
        for (std::uint32_t i = 0; i < aCount; ++i) {
            tracks.push_back(TextTrack(i + 2, "sbtl"));
        }
        return ValueOf(Parsed(File(tracks)), "ts");
    };
    EXPECT_EQ(count(kISO_MaxSubtitleTracks), std::to_string(kISO_MaxSubtitleTracks));
    EXPECT_EQ(count(kISO_MaxSubtitleTracks + 1), std::to_string(kISO_MaxSubtitleTracks));
}
