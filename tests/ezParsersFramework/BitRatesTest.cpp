#include "detail/BitRates.h"

#include "support/Folders.h"
#include "support/Guide.h"
#include "support/Record.h"
#include "support/WholeFile.h"

#include "ezPlatform/media/MediaInfo.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr uint32 kMark = 0xFFFFFFFF;

using Rates = std::map<std::string, uint32>;

/// What the record of these numbers holds after it was completed. Every value is checked to be a number.
Rates Completed(const Rates& aRates) {
    ezMediaInfo info;
    for (const auto& rate : aRates) {
        info.Set(rate.first.c_str(), rate.second, true);
    }
    CompleteBitRates(info);
    Rates completed;
    for (std::size_t i = 0; i < info.GetCount(); ++i) {
        const ezCString key = info.GetKeyAt(i);
        EXPECT_TRUE(info.IsNumber(key.c_str())) << key.c_str();
        completed[key.c_str()] = info.GetUInt32(key.c_str(), 0);
    }
    return completed;
}

/// The value of one key after completion; none when the key is absent.
std::optional<uint32> After(const Rates& aRates, const char* aKey) {
    const Rates completed = Completed(aRates);
    const auto found = completed.find(aKey);
    return found != completed.end() ? std::optional<uint32>(found->second) : std::nullopt;
}

using Rows = std::vector<std::vector<std::string>>;

/// The rules as the architecture page tells them.
Rows PageRules() {
    return GuideTable(ReadWholeFile(EZ_SAMPLES "/../docs/architecture.md"),
                      {"rule", "key", "where it is", "becomes"});
}

/// The rates of a record while the rules of the page are applied to it.
class Page {
public:
    explicit Page(Rates aRates) : mRates(std::move(aRates)), mfWholeGiven(Of("eb") != 0) {}

    /// What becomes of the rates by some rules. A word that the page does not use ends the test.
    const Rates& Apply(const Rows& aRules) {
        for (const std::vector<std::string>& rule : aRules) {
            for (const std::string& key : GuideNames(rule.at(1))) {
                mKey = key;
                if (kConditions.at(rule.at(2))(*this)) {
                    mRates[key] = kValues.at(rule.at(3))(*this);
                }
            }
        }
        return mRates;
    }

private:
    using Condition = std::function<bool(const Page&)>;
    using Value = std::function<uint32(const Page&)>;
    static const std::map<std::string, Condition> kConditions;
    static const std::map<std::string, Value> kValues;

    /// The kind of the key that the rule is about ("ma"): 'm' for a maximum, 'e' for an estimate, '-' for a
    /// rate.
    char Kind() const { return mKey[0] == 'm' || mKey[0] == 'e' ? mKey[0] : '-'; }
    static std::string Key(char aKind, char aTrack) {
        return aKind == '-' ? std::string{aTrack, 'r'} : std::string{aKind, aTrack};
    }
    uint32 Of(const std::string& aKey) const {
        const auto found = mRates.find(aKey);
        return found != mRates.end() ? found->second : 0;
    }
    uint32 Own() const { return Of(mKey); }
    char Track() const { return mKey == "ar" || mKey.back() == 'a' ? 'a' : 'v'; }
    char OtherTrack() const { return Track() == 'a' ? 'v' : 'a'; }
    uint32 OfTrack(char aKind) const { return Of(Key(aKind, Track())); }
    uint32 OfOther(char aKind) const { return Of(Key(aKind, OtherTrack())); }
    bool Has(char aTrack) const { return Of(aTrack == 'a' ? "ta" : "vt") != 0; }

    /// The sum of both tracks' of the kind of this key, where each track there is has one.
    std::optional<uint32> Sum() const {
        const uint32 audio = Of(Key(mKey == "br" ? '-' : Kind(), 'a'));
        const uint32 video = Of(Key(mKey == "br" ? '-' : Kind(), 'v'));
        const auto isOne = [&](uint32 aRate) { return aRate != 0 && (mKey != "br" || aRate != kMark); };
        const bool fKnown = (isOne(audio) || !Has('a')) && (isOne(video) || !Has('v'));
        return fKnown ? std::optional<uint32>(audio + video) : std::nullopt;
    }

    Rates mRates;
    bool mfWholeGiven;
    std::string mKey;
};

const std::map<std::string, Page::Condition> Page::kConditions = {
    {"0", [](const Page& aPage) { return aPage.Own() == 0; }},
    {"another than its maximum, which is known",
     [](const Page& aPage) { return aPage.OfTrack('m') != 0 && aPage.Own() != aPage.OfTrack('m'); }},
    {"0, of two tracks of which the other's is known, and the whole's was given", [](const Page& aPage) {
         return aPage.Own() == 0 && aPage.Has('a') && aPage.Has('v') && aPage.OfOther('e') != 0 &&
                aPage.mfWholeGiven;
     }}};

const std::map<std::string, Page::Value> Page::kValues = {
    {"the mark", [](const Page& /*aPage*/) { return kMark; }},
    {"the rate, or its mark", [](const Page& aPage) { return aPage.OfTrack('-'); }},
    {"the rate, else the estimate, else 0; the mark is neither",
     [](const Page& aPage) -> uint32 {
         const uint32 rate = aPage.OfTrack('-');
         const uint32 estimate = aPage.OfTrack('e');
         return rate != 0 && rate != kMark ? rate : estimate != kMark ? estimate : 0;
     }},
    {"the sum, if each track there is has one, else 0",
     [](const Page& aPage) { return aPage.Sum().value_or(0); }},
    {"the sum, if each track there is has one; else the mark, if one has it or one track is not there; else "
     "0",
     [](const Page& aPage) {
         const bool fMark =
             aPage.Of("ar") == kMark || aPage.Of("vr") == kMark || !aPage.Has('a') || !aPage.Has('v');
         return aPage.Sum().value_or(fMark ? kMark : 0);
     }},
    {"the whole's less the other's", [](const Page& aPage) { return aPage.Of("eb") - aPage.OfOther('e'); }}};

/// What the page says of rates.
Rates Told(const Rates& aRates) {
    static const Rows kRules = PageRules();
    return Page(aRates).Apply(kRules);
}

} // namespace

TEST(BitRates, ConstantAudioAloneGivesEveryRate) {
    EXPECT_EQ(Completed({{"ta", 1}, {"vt", 0}, {"ar", 128000}, {"vr", 0}}), (Rates{{"ta", 1},
                                                                                   {"vt", 0},
                                                                                   {"ar", 128000},
                                                                                   {"vr", 0},
                                                                                   {"ma", 128000},
                                                                                   {"mv", 0},
                                                                                   {"ea", 128000},
                                                                                   {"ev", 0},
                                                                                   {"mb", 128000},
                                                                                   {"br", 128000},
                                                                                   {"eb", 128000}}));
}

TEST(BitRates, ConstantAudioAndVideoAddUp) {
    EXPECT_EQ(Completed({{"ta", 1}, {"vt", 1}, {"ar", 128000}, {"vr", 1000000}}), (Rates{{"ta", 1},
                                                                                         {"vt", 1},
                                                                                         {"ar", 128000},
                                                                                         {"vr", 1000000},
                                                                                         {"ma", 128000},
                                                                                         {"mv", 1000000},
                                                                                         {"ea", 128000},
                                                                                         {"ev", 1000000},
                                                                                         {"mb", 1128000},
                                                                                         {"br", 1128000},
                                                                                         {"eb", 1128000}}));
}

TEST(BitRates, RecordThatKnowsNothingGetsZeroesButNoTrackRates) {
    EXPECT_EQ(Completed({}),
              (Rates{{"ma", 0}, {"mv", 0}, {"ea", 0}, {"ev", 0}, {"mb", 0}, {"br", 0}, {"eb", 0}}));
}

TEST(BitRates, RecordThatKnowsEverythingStaysAsItIs) {
    const Rates full = {{"ta", 1},      {"vt", 1},       {"ar", 128000},  {"ma", 128000},
                        {"ea", 128000}, {"vr", 1000000}, {"mv", 1000000}, {"ev", 1000000},
                        {"br", 7},      {"mb", 8},       {"eb", 9}};
    EXPECT_EQ(Completed(full), full);
}

TEST(BitRates, OtherKeysAreLeftAlone) {
    ezMediaInfo info;
    info.Set("mt", "audio/mpeg", true);
    info.Set("dl", "DLNA.ORG_PN=MP3", true);
    info.mTitle = "Morning";
    CompleteBitRates(info);
    EXPECT_EQ(DumpRecord(&info), "br=0\n"
                                 "dl=\"DLNA.ORG_PN=MP3\"\n"
                                 "ea=0\n"
                                 "eb=0\n"
                                 "ev=0\n"
                                 "ma=0\n"
                                 "mb=0\n"
                                 "mt=\"audio/mpeg\"\n"
                                 "mv=0\n"
                                 "title=\"Morning\"\n");
}

TEST(BitRates, RateGivenAsTextIsReadAsItsNumber) {
    ezMediaInfo info;
    info.Set("ar", "128000", true);
    info.Set("ta", "1", true);
    CompleteBitRates(info);
    EXPECT_EQ(info.GetUInt32("br", 1), 128000U);
    EXPECT_FALSE(info.IsNumber("ar")); // not written: it equals its maximum
}

// Steps 1 and 2: the maximum of a track.

TEST(BitRates, AudioMaximumIsTheRate) {
    EXPECT_EQ(After({{"ar", 128000}, {"ea", 96000}}, "ma"), 128000U);
    EXPECT_EQ(After({{"ar", kMark - 1}, {"ea", 96000}}, "ma"), kMark - 1);
}

TEST(BitRates, AudioMaximumIsTheEstimateWhereTheRateIsUnknown) {
    EXPECT_EQ(After({{"ea", 96000}}, "ma"), 96000U);
    EXPECT_EQ(After({{"ar", 0}, {"ea", 96000}}, "ma"), 96000U);
}

TEST(BitRates, AudioMaximumIsTheEstimateWhereTheRateVaries) {
    EXPECT_EQ(After({{"ar", kMark}, {"ea", 96000}}, "ma"), 96000U);
}

TEST(BitRates, AudioMaximumStaysZeroWhereNothingIsKnown) {
    EXPECT_EQ(After({}, "ma"), 0U);
    EXPECT_EQ(After({{"ar", kMark}}, "ma"), 0U);
    EXPECT_EQ(After({{"ar", kMark}, {"ea", kMark}}, "ma"), 0U);
    EXPECT_EQ(After({{"ar", 0}, {"ea", kMark}}, "ma"), 0U);
}

TEST(BitRates, GivenAudioMaximumStays) {
    EXPECT_EQ(After({{"ma", 192000}, {"ar", 128000}, {"ea", 96000}}, "ma"), 192000U);
    EXPECT_EQ(After({{"ma", kMark}, {"ar", 128000}}, "ma"), kMark);
}

TEST(BitRates, VideoMaximumIsTheRate) {
    EXPECT_EQ(After({{"vr", 128000}, {"ev", 96000}}, "mv"), 128000U);
    EXPECT_EQ(After({{"vr", kMark - 1}, {"ev", 96000}}, "mv"), kMark - 1);
}

TEST(BitRates, VideoMaximumIsTheEstimateWhereTheRateIsUnknown) {
    EXPECT_EQ(After({{"ev", 96000}}, "mv"), 96000U);
    EXPECT_EQ(After({{"vr", 0}, {"ev", 96000}}, "mv"), 96000U);
}

TEST(BitRates, VideoMaximumIsTheEstimateWhereTheRateVaries) {
    EXPECT_EQ(After({{"vr", kMark}, {"ev", 96000}}, "mv"), 96000U);
}

TEST(BitRates, VideoMaximumStaysZeroWhereNothingIsKnown) {
    EXPECT_EQ(After({}, "mv"), 0U);
    EXPECT_EQ(After({{"vr", kMark}}, "mv"), 0U);
    EXPECT_EQ(After({{"vr", kMark}, {"ev", kMark}}, "mv"), 0U);
    EXPECT_EQ(After({{"vr", 0}, {"ev", kMark}}, "mv"), 0U);
}

TEST(BitRates, GivenVideoMaximumStays) {
    EXPECT_EQ(After({{"mv", 192000}, {"vr", 128000}, {"ev", 96000}}, "mv"), 192000U);
    EXPECT_EQ(After({{"mv", kMark}, {"vr", 128000}}, "mv"), kMark);
}

TEST(BitRates, MaximaOfTheTracksDoNotMix) {
    const Rates completed = Completed({{"ar", 1}, {"vr", 2}, {"ea", 3}, {"ev", 4}});
    EXPECT_EQ(completed.at("ma"), 1U);
    EXPECT_EQ(completed.at("mv"), 2U);
    EXPECT_EQ(completed.at("ea"), 3U);
    EXPECT_EQ(completed.at("ev"), 4U);
}

// Steps 3 and 4: the estimate of a track.

TEST(BitRates, EstimateOfATrackIsItsRate) {
    EXPECT_EQ(After({{"ar", 128000}}, "ea"), 128000U);
    EXPECT_EQ(After({{"vr", 128000}}, "ev"), 128000U);
}

TEST(BitRates, EstimateOfATrackIsItsRateEvenWhenThatVaries) {
    EXPECT_EQ(After({{"ar", kMark}}, "ea"), kMark);
    EXPECT_EQ(After({{"vr", kMark}}, "ev"), kMark);
}

TEST(BitRates, EstimateTakesTheRateBeforeItIsMarkedVariable) {
    EXPECT_EQ(After({{"ar", 128000}, {"ma", 192000}}, "ea"), 128000U);
    EXPECT_EQ(After({{"vr", 128000}, {"mv", 192000}}, "ev"), 128000U);
}

TEST(BitRates, MaximumDoesNotTakeTheEstimateThatIsDerivedLater) {
    // The estimate becomes "variable"; the maximum was looked up before.
    const Rates completed = Completed({{"ta", 1}, {"ar", kMark}});
    EXPECT_EQ(completed.at("ma"), 0U);
    EXPECT_EQ(completed.at("ea"), kMark);
}

TEST(BitRates, GivenEstimateOfATrackStays) {
    EXPECT_EQ(After({{"ar", 128000}, {"ea", 96000}}, "ea"), 96000U);
    EXPECT_EQ(After({{"vr", 128000}, {"ev", 96000}}, "ev"), 96000U);
}

// Step 5: the maximum of the whole.

TEST(BitRates, WholeMaximumIsTheSumOfTheMaxima) {
    EXPECT_EQ(After({{"ta", 1}, {"vt", 1}, {"ma", 1000}, {"mv", 20000}}, "mb"), 21000U);
    EXPECT_EQ(After({{"ta", 1}, {"vt", 1}, {"ar", 1000}, {"vr", 20000}}, "mb"), 21000U);
}

TEST(BitRates, WholeMaximumNeedsTheMaximumOfEachTrackThereIs) {
    EXPECT_EQ(After({{"ta", 1}, {"vt", 1}, {"ma", 1000}}, "mb"), 0U);
    EXPECT_EQ(After({{"ta", 1}, {"vt", 1}, {"mv", 1000}}, "mb"), 0U);
    EXPECT_EQ(After({{"ta", 1}}, "mb"), 0U);
    EXPECT_EQ(After({{"vt", 1}}, "mb"), 0U);
}

TEST(BitRates, WholeMaximumDoesWithoutATrackThatIsNotThere) {
    EXPECT_EQ(After({{"ta", 1}, {"ma", 1000}}, "mb"), 1000U);
    EXPECT_EQ(After({{"vt", 1}, {"mv", 1000}}, "mb"), 1000U);
    EXPECT_EQ(After({}, "mb"), 0U);
}

TEST(BitRates, WholeMaximumCountsARateWithoutATrack) {
    EXPECT_EQ(After({{"ma", 1000}, {"mv", 20000}}, "mb"), 21000U);
}

TEST(BitRates, GivenWholeMaximumStays) {
    EXPECT_EQ(After({{"ta", 1}, {"ma", 1000}, {"mb", 5}}, "mb"), 5U);
    EXPECT_EQ(After({{"ta", 1}, {"vt", 1}, {"ma", 1000}, {"mb", 5}}, "mb"), 5U);
}

TEST(BitRates, TrackCountAboveOneIsAudio) {
    EXPECT_EQ(After({{"ta", 2}, {"vt", 1}, {"mv", 1000}}, "mb"), 0U);
    EXPECT_EQ(After({{"ta", 1}, {"vt", 7}, {"ma", 1000}}, "mb"), 0U);
}

// Steps 6 and 7: a rate that differs from its maximum varies.

TEST(BitRates, AudioRateThatDiffersFromItsMaximumIsMarkedVariable) {
    const Rates completed = Completed({{"ta", 1}, {"ma", 192000}, {"ar", 128000}});
    EXPECT_EQ(completed.at("ar"), kMark);
    EXPECT_EQ(completed.at("br"), kMark);
    EXPECT_EQ(completed.at("ma"), 192000U);
    EXPECT_EQ(completed.at("ea"), 128000U);
}

TEST(BitRates, AudioRateThatEqualsItsMaximumStays) {
    EXPECT_EQ(After({{"ma", 128000}, {"ar", 128000}}, "ar"), 128000U);
}

TEST(BitRates, UnknownAudioRateWithAMaximumIsMarkedVariable) {
    EXPECT_EQ(After({{"ma", 192000}}, "ar"), kMark);
    EXPECT_EQ(After({{"ea", 96000}}, "ar"), kMark); // the maximum that comes from the estimate counts
}

TEST(BitRates, AudioRateWithoutAMaximumIsNotWritten) {
    EXPECT_EQ(After({}, "ar"), std::nullopt);
    EXPECT_EQ(After({{"ar", 0}}, "ar"), 0U);
    EXPECT_EQ(After({{"ar", kMark}}, "ar"), kMark);
}

TEST(BitRates, VideoRateThatDiffersFromItsMaximumIsMarkedVariable) {
    const Rates completed = Completed({{"vt", 1}, {"mv", 192000}, {"vr", 128000}});
    EXPECT_EQ(completed.at("vr"), kMark);
    EXPECT_EQ(completed.at("br"), kMark);
    EXPECT_EQ(completed.at("mv"), 192000U);
    EXPECT_EQ(completed.at("ev"), 128000U);
}

TEST(BitRates, VideoRateThatEqualsItsMaximumStays) {
    EXPECT_EQ(After({{"mv", 128000}, {"vr", 128000}}, "vr"), 128000U);
}

TEST(BitRates, UnknownVideoRateWithAMaximumIsMarkedVariable) {
    EXPECT_EQ(After({{"mv", 192000}}, "vr"), kMark);
    EXPECT_EQ(After({{"ev", 96000}}, "vr"), kMark);
}

TEST(BitRates, VideoRateWithoutAMaximumIsNotWritten) {
    EXPECT_EQ(After({}, "vr"), std::nullopt);
    EXPECT_EQ(After({{"vr", 0}}, "vr"), 0U);
    EXPECT_EQ(After({{"vr", kMark}}, "vr"), kMark);
}

// Step 8: the rate of the whole.

TEST(BitRates, WholeRateStaysZeroWhereARateIsUnknownButNotVariable) {
    EXPECT_EQ(Completed({{"ta", 1}, {"vt", 1}, {"ar", 128000}, {"vr", 0}}).at("br"), 0U);
    EXPECT_EQ(Completed({{"ta", 1}, {"vt", 1}, {"ar", 0}, {"vr", 128000}}).at("br"), 0U);
    EXPECT_EQ(Completed({{"ta", 1}, {"vt", 1}}).at("br"), 0U);
}

TEST(BitRates, WholeRateVariesWhereATrackVaries) {
    EXPECT_EQ(After({{"ta", 1}, {"vt", 1}, {"ar", kMark}, {"vr", 1000}}, "br"), kMark);
    EXPECT_EQ(After({{"ta", 1}, {"vt", 1}, {"ar", 1000}, {"vr", kMark}}, "br"), kMark);
    EXPECT_EQ(After({{"ta", 1}, {"vt", 1}, {"ar", kMark}, {"vr", 0}}, "br"), kMark);
    EXPECT_EQ(After({{"ta", 1}, {"vt", 1}, {"ar", 0}, {"vr", kMark}}, "br"), kMark);
    EXPECT_EQ(After({{"ta", 1}, {"vt", 1}, {"ar", kMark}, {"vr", kMark}}, "br"), kMark);
}

TEST(BitRates, WholeRateVariesWhereTheOnlyTrackIsUnknown) {
    // Odd, and kept: the track that is not there counts like one that varies.
    EXPECT_EQ(After({{"ta", 1}}, "br"), kMark);
    EXPECT_EQ(After({{"vt", 1}}, "br"), kMark);
}

TEST(BitRates, WholeRateIsTheRateOfTheOnlyTrack) {
    EXPECT_EQ(After({{"ta", 1}, {"ar", 128000}}, "br"), 128000U);
    EXPECT_EQ(After({{"vt", 1}, {"vr", 128000}}, "br"), 128000U);
}

TEST(BitRates, WholeRateCountsARateWithoutATrack) {
    EXPECT_EQ(After({{"ar", 1000}, {"vr", 20000}}, "br"), 21000U);
    EXPECT_EQ(After({{"ta", 1}, {"ar", 128000}, {"vr", kMark}}, "br"), 127999U); // wraps
}

TEST(BitRates, GivenWholeRateStays) {
    EXPECT_EQ(After({{"ta", 1}, {"ar", 128000}, {"br", 5}}, "br"), 5U);
    EXPECT_EQ(After({{"ta", 1}, {"ar", 128000}, {"br", kMark}}, "br"), kMark);
}

// Step 9: the estimate of the whole.

TEST(BitRates, WholeEstimateIsTheSumOfTheEstimates) {
    EXPECT_EQ(After({{"ta", 1}, {"vt", 1}, {"ea", 1000}, {"ev", 20000}}, "eb"), 21000U);
    EXPECT_EQ(After({{"ta", 1}, {"vt", 1}, {"ar", 1000}, {"vr", 20000}}, "eb"), 21000U);
}

TEST(BitRates, WholeEstimateNeedsTheEstimateOfEachTrackThereIs) {
    EXPECT_EQ(After({{"ta", 1}, {"vt", 1}, {"ea", 1000}}, "eb"), 0U);
    EXPECT_EQ(After({{"ta", 1}, {"vt", 1}, {"ev", 1000}}, "eb"), 0U);
    EXPECT_EQ(After({{"ta", 1}}, "eb"), 0U);
    EXPECT_EQ(After({{"vt", 1}}, "eb"), 0U);
}

TEST(BitRates, WholeEstimateDoesWithoutATrackThatIsNotThere) {
    EXPECT_EQ(After({{"ta", 1}, {"ea", 1000}}, "eb"), 1000U);
    EXPECT_EQ(After({{"vt", 1}, {"ev", 1000}}, "eb"), 1000U);
    EXPECT_EQ(After({{"ea", 1000}, {"ev", 20000}}, "eb"), 21000U);
}

TEST(BitRates, WholeEstimateTakesAVariableEstimateAsItIs) {
    EXPECT_EQ(After({{"ta", 1}, {"ar", kMark}}, "eb"), kMark);
    EXPECT_EQ(After({{"ta", 1}, {"vt", 1}, {"ar", kMark}, {"vr", 1000}}, "eb"), 999U); // wraps
}

// Step 10: a given estimate of the whole.

TEST(BitRates, GivenWholeEstimateTellsTheVideoEstimate) {
    const Rates completed = Completed({{"eb", 1000000}, {"ta", 1}, {"vt", 1}, {"ar", 128000}, {"vr", 0}});
    EXPECT_EQ(completed.at("ea"), 128000U);
    EXPECT_EQ(completed.at("ev"), 872000U);
    EXPECT_EQ(completed.at("eb"), 1000000U);
}

TEST(BitRates, GivenWholeEstimateTellsTheAudioEstimate) {
    const Rates completed = Completed({{"eb", 1000000}, {"ta", 1}, {"vt", 1}, {"vr", 900000}});
    EXPECT_EQ(completed.at("ea"), 100000U);
    EXPECT_EQ(completed.at("ev"), 900000U);
    EXPECT_EQ(completed.at("eb"), 1000000U);
}

TEST(BitRates, GivenWholeEstimateTellsNothingWhereBothOrNoneAreKnown) {
    Rates completed = Completed({{"eb", 1000000}, {"ta", 1}, {"vt", 1}, {"ea", 1}, {"ev", 2}});
    EXPECT_EQ(completed.at("ea"), 1U);
    EXPECT_EQ(completed.at("ev"), 2U);
    EXPECT_EQ(completed.at("eb"), 1000000U);
    completed = Completed({{"eb", 1000000}, {"ta", 1}, {"vt", 1}});
    EXPECT_EQ(completed.at("ea"), 0U);
    EXPECT_EQ(completed.at("ev"), 0U);
    EXPECT_EQ(completed.at("eb"), 1000000U);
}

TEST(BitRates, GivenWholeEstimateTellsNothingWithoutBothTracks) {
    EXPECT_EQ(After({{"eb", 1000000}, {"ta", 1}, {"ar", 128000}}, "ev"), 0U);
    EXPECT_EQ(After({{"eb", 1000000}, {"vt", 1}, {"ar", 128000}}, "ev"), 0U);
    EXPECT_EQ(After({{"eb", 1000000}, {"ta", 1}, {"vr", 128000}}, "ea"), 0U);
    EXPECT_EQ(After({{"eb", 1000000}, {"vt", 1}, {"vr", 128000}}, "ea"), 0U);
    EXPECT_EQ(After({{"eb", 1000000}, {"ar", 128000}}, "ev"), 0U);
}

TEST(BitRates, DividedEstimateDoesNotReachBackToTheMaximum) {
    // The video estimate comes last, so the maximum of video and of the whole are not known.
    const Rates completed = Completed({{"eb", 1000000}, {"ta", 1}, {"vt", 1}, {"ar", 128000}});
    EXPECT_EQ(completed.at("mv"), 0U);
    EXPECT_EQ(completed.at("mb"), 0U);
    EXPECT_EQ(completed.at("br"), 0U);
}

// Sums and differences are of 32 bits.

TEST(BitRates, SumsWrapAt32Bits) {
    EXPECT_EQ(After({{"ta", 1}, {"vt", 1}, {"ma", 0x80000000}, {"mv", 0x80000001}}, "mb"), 1U);
    EXPECT_EQ(After({{"ta", 1}, {"vt", 1}, {"ar", 0x80000000}, {"vr", 0x80000001}}, "br"), 1U);
    EXPECT_EQ(After({{"ta", 1}, {"vt", 1}, {"ea", 0x80000000}, {"ev", 0x80000001}}, "eb"), 1U);
    EXPECT_EQ(After({{"ta", 1}, {"vt", 1}, {"ma", 0x80000000}, {"mv", 0x80000000}}, "mb"), 0U);
}

TEST(BitRates, DifferencesWrapAt32Bits) {
    EXPECT_EQ(After({{"eb", 1000}, {"ta", 1}, {"vt", 1}, {"ar", 1001}}, "ev"), kMark);
    EXPECT_EQ(After({{"eb", 1000}, {"ta", 1}, {"vt", 1}, {"vr", 1001}}, "ea"), kMark);
    EXPECT_EQ(After({{"eb", 1000}, {"ta", 1}, {"vt", 1}, {"ar", kMark}}, "ev"), 1001U);
}

// Every combination.

namespace {

rc::Gen<uint32> AnyRate() {
    return rc::gen::weightedOneOf<uint32>(
        {{5, rc::gen::element<uint32>(0, 1, 1000, 128000, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFE, kMark)},
         {1, rc::gen::arbitrary<uint32>()}});
}

Rates AnyRates() {
    Rates rates;
    for (const char* key : {"ta", "vt"}) {
        if (*rc::gen::arbitrary<bool>()) {
            rates[key] = *rc::gen::element<uint32>(0, 1, 1, 2, kMark);
        }
    }
    for (const char* key : {"ar", "ma", "ea", "vr", "mv", "ev", "br", "mb", "eb"}) {
        if (*rc::gen::arbitrary<bool>()) {
            rates[key] = *AnyRate();
        }
    }
    return rates;
}

} // namespace

RC_GTEST_PROP(BitRates, AreCompletedAsTold, ()) {
    const Rates rates = AnyRates();
    RC_ASSERT(Completed(rates) == Told(rates));
}

namespace {

/// Calls a function with every mix of two tracks, the rates of both unknown, known or variable, and those of
/// the whole unknown or known, near ones far from another, until it returns false.
template <typename Function>
void ForEveryMix(const Function& aFunction) {
    const char* keys[] = {"ar", "ma", "ea", "vr", "mv", "ev", "br", "mb", "eb"};
    const uint32 known[] = {1000, 1000, 700, 20000, 30000, 20000, 21000, 31000, 22000};
    bool fGoOn = true;
    constexpr uint32 kMixes = 4 * 729 * 8;
    for (uint32 i = 0; fGoOn && i < kMixes; ++i) {
        const uint32 mix = i * 7919 % kMixes;
        Rates rates = {{"ta", mix & 1}, {"vt", (mix >> 1) & 1}};
        uint32 kinds = mix / 4;
        for (std::size_t key = 0; key < 9; ++key) {
            const uint32 kindCount = key < 6 ? 3 : 2;
            rates[keys[key]] = kinds % kindCount == 0 ? 0 : kinds % kindCount == 1 ? known[key] : kMark;
            kinds /= kindCount;
        }
        fGoOn = aFunction(rates);
    }
}

} // namespace

TEST(BitRates, AreCompletedAsThePageTellsForEveryMixOfUnknownKnownAndVariable) {
    ForEveryMix([](const Rates& aRates) {
        EXPECT_EQ(Completed(aRates), Told(aRates));
        return !testing::Test::HasFailure();
    });
}

TEST(BitRates, RuleThatChangesOnThePageIsNoticed) {
    const Rows rules = PageRules();
    ASSERT_EQ(rules.size(), 7U);
    const auto expectNoticed = [&rules](const Rows& aChanged, std::size_t aRule) {
        bool fNoticed = false;
        ForEveryMix([&](const Rates& aRates) {
            fNoticed = Page(aRates).Apply(aChanged) != Page(aRates).Apply(rules);
            return !fNoticed;
        });
        EXPECT_TRUE(fNoticed) << rules[aRule][0];
    };
    for (std::size_t i = 0; i < rules.size(); ++i) {
        Rows without = rules;
        without.erase(without.begin() + static_cast<std::ptrdiff_t>(i));
        expectNoticed(without, i);
        for (std::size_t other = 0; other < rules.size(); ++other) {
            for (const std::size_t column : {2U, 3U}) {
                Rows changed = rules;
                changed[i][column] = rules[other][column];
                if (changed != rules) {
                    expectNoticed(changed, i);
                }
            }
        }
    }
    Rows reworded = rules;
    reworded[0][2] = "0 or so";
    EXPECT_THROW(Page(Rates()).Apply(reworded), std::out_of_range);
}
