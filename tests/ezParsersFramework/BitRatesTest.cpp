#include "detail/BitRates.h"

#include "support/Record.h"

#include "ezPlatform/media/MediaInfo.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <map>
#include <optional>
#include <string>

namespace {

constexpr uint32 U = 0xFFFFFFFF;

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

/// The ten steps once more, in the order and in the letters in which they are told.
Rates Told(Rates aRates) {
    const auto read = [&](const char* aKey) {
        const auto found = aRates.find(aKey);
        return found != aRates.end() ? found->second : 0;
    };
    const auto write = [&](const char* aKey, uint32 aValue) { aRates[aKey] = aValue; };

    const bool hasAudio = read("ta") != 0;
    const bool hasVideo = read("vt") != 0;
    uint32 A = read("ar");
    uint32 MA = read("ma");
    uint32 V = read("vr");
    uint32 MV = read("mv");
    uint32 EA = read("ea");
    uint32 EV = read("ev");
    uint32 BR = read("br");
    uint32 MB = read("mb");
    uint32 EB = read("eb");

    // 1. The maximum of audio: its rate, else its estimate.
    if (MA == 0) {
        if (A != 0 && A != U) {
            MA = A;
        } else if (EA != 0 && EA != U) {
            MA = EA;
        }
        write("ma", MA);
    }
    // 2. The same for video.
    if (MV == 0) {
        if (V != 0 && V != U) {
            MV = V;
        } else if (EV != 0 && EV != U) {
            MV = EV;
        }
        write("mv", MV);
    }
    // 3. and 4. The estimates: the rates as they are.
    if (EA == 0) {
        EA = A;
        write("ea", EA);
    }
    if (EV == 0) {
        EV = V;
        write("ev", EV);
    }
    // 5. The maximum of the whole.
    if (MB == 0) {
        if ((MA != 0 || !hasAudio) && (MV != 0 || !hasVideo)) {
            MB = MA + MV;
        }
        write("mb", MB);
    }
    // 6. and 7. A rate that differs from its maximum varies.
    if (MA != 0 && A != MA) {
        A = U;
        write("ar", A);
    }
    if (MV != 0 && V != MV) {
        V = U;
        write("vr", V);
    }
    // 8. The rate of the whole.
    if (BR == 0) {
        if (((A != 0 && A != U) || !hasAudio) && ((V != 0 && V != U) || !hasVideo)) {
            BR = A + V;
        } else if (A == U || !hasAudio || V == U || !hasVideo) {
            BR = U;
        }
        write("br", BR);
    }
    // 9. The estimate of the whole.
    if (EB == 0) {
        if ((EA != 0 || !hasAudio) && (EV != 0 || !hasVideo)) {
            EB = EA + EV;
        }
        write("eb", EB);
    } else if (hasAudio && hasVideo) {
        // 10. A given estimate of the whole tells the part that is missing.
        if (EA == 0 && EV != 0) {
            write("ea", EB - EV);
        }
        if (EA != 0 && EV == 0) {
            write("ev", EB - EA);
        }
    }
    return aRates;
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
    EXPECT_EQ(After({{"ar", U - 1}, {"ea", 96000}}, "ma"), U - 1);
}

TEST(BitRates, AudioMaximumIsTheEstimateWhereTheRateIsUnknown) {
    EXPECT_EQ(After({{"ea", 96000}}, "ma"), 96000U);
    EXPECT_EQ(After({{"ar", 0}, {"ea", 96000}}, "ma"), 96000U);
}

TEST(BitRates, AudioMaximumIsTheEstimateWhereTheRateVaries) {
    EXPECT_EQ(After({{"ar", U}, {"ea", 96000}}, "ma"), 96000U);
}

TEST(BitRates, AudioMaximumStaysZeroWhereNothingIsKnown) {
    EXPECT_EQ(After({}, "ma"), 0U);
    EXPECT_EQ(After({{"ar", U}}, "ma"), 0U);
    EXPECT_EQ(After({{"ar", U}, {"ea", U}}, "ma"), 0U);
    EXPECT_EQ(After({{"ar", 0}, {"ea", U}}, "ma"), 0U);
}

TEST(BitRates, GivenAudioMaximumStays) {
    EXPECT_EQ(After({{"ma", 192000}, {"ar", 128000}, {"ea", 96000}}, "ma"), 192000U);
    EXPECT_EQ(After({{"ma", U}, {"ar", 128000}}, "ma"), U);
}

TEST(BitRates, VideoMaximumIsTheRate) {
    EXPECT_EQ(After({{"vr", 128000}, {"ev", 96000}}, "mv"), 128000U);
    EXPECT_EQ(After({{"vr", U - 1}, {"ev", 96000}}, "mv"), U - 1);
}

TEST(BitRates, VideoMaximumIsTheEstimateWhereTheRateIsUnknown) {
    EXPECT_EQ(After({{"ev", 96000}}, "mv"), 96000U);
    EXPECT_EQ(After({{"vr", 0}, {"ev", 96000}}, "mv"), 96000U);
}

TEST(BitRates, VideoMaximumIsTheEstimateWhereTheRateVaries) {
    EXPECT_EQ(After({{"vr", U}, {"ev", 96000}}, "mv"), 96000U);
}

TEST(BitRates, VideoMaximumStaysZeroWhereNothingIsKnown) {
    EXPECT_EQ(After({}, "mv"), 0U);
    EXPECT_EQ(After({{"vr", U}}, "mv"), 0U);
    EXPECT_EQ(After({{"vr", U}, {"ev", U}}, "mv"), 0U);
    EXPECT_EQ(After({{"vr", 0}, {"ev", U}}, "mv"), 0U);
}

TEST(BitRates, GivenVideoMaximumStays) {
    EXPECT_EQ(After({{"mv", 192000}, {"vr", 128000}, {"ev", 96000}}, "mv"), 192000U);
    EXPECT_EQ(After({{"mv", U}, {"vr", 128000}}, "mv"), U);
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
    EXPECT_EQ(After({{"ar", U}}, "ea"), U);
    EXPECT_EQ(After({{"vr", U}}, "ev"), U);
}

TEST(BitRates, EstimateTakesTheRateBeforeItIsMarkedVariable) {
    EXPECT_EQ(After({{"ar", 128000}, {"ma", 192000}}, "ea"), 128000U);
    EXPECT_EQ(After({{"vr", 128000}, {"mv", 192000}}, "ev"), 128000U);
}

TEST(BitRates, MaximumDoesNotTakeTheEstimateThatIsDerivedLater) {
    // The estimate becomes "variable"; the maximum was looked up before.
    const Rates completed = Completed({{"ta", 1}, {"ar", U}});
    EXPECT_EQ(completed.at("ma"), 0U);
    EXPECT_EQ(completed.at("ea"), U);
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
    EXPECT_EQ(completed.at("ar"), U);
    EXPECT_EQ(completed.at("br"), U);
    EXPECT_EQ(completed.at("ma"), 192000U);
    EXPECT_EQ(completed.at("ea"), 128000U);
}

TEST(BitRates, AudioRateThatEqualsItsMaximumStays) {
    EXPECT_EQ(After({{"ma", 128000}, {"ar", 128000}}, "ar"), 128000U);
}

TEST(BitRates, UnknownAudioRateWithAMaximumIsMarkedVariable) {
    EXPECT_EQ(After({{"ma", 192000}}, "ar"), U);
    EXPECT_EQ(After({{"ea", 96000}}, "ar"), U); // the maximum that comes from the estimate counts
}

TEST(BitRates, AudioRateWithoutAMaximumIsNotWritten) {
    EXPECT_EQ(After({}, "ar"), std::nullopt);
    EXPECT_EQ(After({{"ar", 0}}, "ar"), 0U);
    EXPECT_EQ(After({{"ar", U}}, "ar"), U);
}

TEST(BitRates, VideoRateThatDiffersFromItsMaximumIsMarkedVariable) {
    const Rates completed = Completed({{"vt", 1}, {"mv", 192000}, {"vr", 128000}});
    EXPECT_EQ(completed.at("vr"), U);
    EXPECT_EQ(completed.at("br"), U);
    EXPECT_EQ(completed.at("mv"), 192000U);
    EXPECT_EQ(completed.at("ev"), 128000U);
}

TEST(BitRates, VideoRateThatEqualsItsMaximumStays) {
    EXPECT_EQ(After({{"mv", 128000}, {"vr", 128000}}, "vr"), 128000U);
}

TEST(BitRates, UnknownVideoRateWithAMaximumIsMarkedVariable) {
    EXPECT_EQ(After({{"mv", 192000}}, "vr"), U);
    EXPECT_EQ(After({{"ev", 96000}}, "vr"), U);
}

TEST(BitRates, VideoRateWithoutAMaximumIsNotWritten) {
    EXPECT_EQ(After({}, "vr"), std::nullopt);
    EXPECT_EQ(After({{"vr", 0}}, "vr"), 0U);
    EXPECT_EQ(After({{"vr", U}}, "vr"), U);
}

// Step 8: the rate of the whole.

TEST(BitRates, WholeRateStaysZeroWhereARateIsUnknownButNotVariable) {
    EXPECT_EQ(Completed({{"ta", 1}, {"vt", 1}, {"ar", 128000}, {"vr", 0}}).at("br"), 0U);
    EXPECT_EQ(Completed({{"ta", 1}, {"vt", 1}, {"ar", 0}, {"vr", 128000}}).at("br"), 0U);
    EXPECT_EQ(Completed({{"ta", 1}, {"vt", 1}}).at("br"), 0U);
}

TEST(BitRates, WholeRateVariesWhereATrackVaries) {
    EXPECT_EQ(After({{"ta", 1}, {"vt", 1}, {"ar", U}, {"vr", 1000}}, "br"), U);
    EXPECT_EQ(After({{"ta", 1}, {"vt", 1}, {"ar", 1000}, {"vr", U}}, "br"), U);
    EXPECT_EQ(After({{"ta", 1}, {"vt", 1}, {"ar", U}, {"vr", 0}}, "br"), U);
    EXPECT_EQ(After({{"ta", 1}, {"vt", 1}, {"ar", 0}, {"vr", U}}, "br"), U);
    EXPECT_EQ(After({{"ta", 1}, {"vt", 1}, {"ar", U}, {"vr", U}}, "br"), U);
}

TEST(BitRates, WholeRateVariesWhereTheOnlyTrackIsUnknown) {
    // Odd, and kept: the track that is not there counts like one that varies.
    EXPECT_EQ(After({{"ta", 1}}, "br"), U);
    EXPECT_EQ(After({{"vt", 1}}, "br"), U);
}

TEST(BitRates, WholeRateIsTheRateOfTheOnlyTrack) {
    EXPECT_EQ(After({{"ta", 1}, {"ar", 128000}}, "br"), 128000U);
    EXPECT_EQ(After({{"vt", 1}, {"vr", 128000}}, "br"), 128000U);
}

TEST(BitRates, WholeRateCountsARateWithoutATrack) {
    EXPECT_EQ(After({{"ar", 1000}, {"vr", 20000}}, "br"), 21000U);
    EXPECT_EQ(After({{"ta", 1}, {"ar", 128000}, {"vr", U}}, "br"), 127999U); // wraps
}

TEST(BitRates, GivenWholeRateStays) {
    EXPECT_EQ(After({{"ta", 1}, {"ar", 128000}, {"br", 5}}, "br"), 5U);
    EXPECT_EQ(After({{"ta", 1}, {"ar", 128000}, {"br", U}}, "br"), U);
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
    EXPECT_EQ(After({{"ta", 1}, {"ar", U}}, "eb"), U);
    EXPECT_EQ(After({{"ta", 1}, {"vt", 1}, {"ar", U}, {"vr", 1000}}, "eb"), 999U); // wraps
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
    EXPECT_EQ(After({{"eb", 1000}, {"ta", 1}, {"vt", 1}, {"ar", 1001}}, "ev"), U);
    EXPECT_EQ(After({{"eb", 1000}, {"ta", 1}, {"vt", 1}, {"vr", 1001}}, "ea"), U);
    EXPECT_EQ(After({{"eb", 1000}, {"ta", 1}, {"vt", 1}, {"ar", U}}, "ev"), 1001U);
}

// Every combination.

namespace {

rc::Gen<uint32> AnyRate() {
    return rc::gen::weightedOneOf<uint32>(
        {{5, rc::gen::element<uint32>(0, 1, 1000, 128000, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFE, U)},
         {1, rc::gen::arbitrary<uint32>()}});
}

Rates AnyRates() {
    Rates rates;
    for (const char* key : {"ta", "vt"}) {
        if (*rc::gen::arbitrary<bool>()) {
            rates[key] = *rc::gen::element<uint32>(0, 1, 1, 2, U);
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

TEST(BitRates, AreCompletedAsToldForEveryMixOfUnknownKnownAndVariable) {
    // Two tracks, the rates of both unknown, known or variable, and those of the whole unknown or known.
    const char* keys[] = {"ar", "ma", "ea", "vr", "mv", "ev", "br", "mb", "eb"};
    const uint32 known[] = {1000, 1000, 700, 20000, 30000, 20000, 21000, 31000, 22000};
    for (uint32 mix = 0; mix < 4 * 729 * 8; ++mix) {
        Rates rates = {{"ta", mix & 1}, {"vt", (mix >> 1) & 1}};
        uint32 kinds = mix / 4;
        for (std::size_t i = 0; i < 9; ++i) {
            const uint32 kindCount = i < 6 ? 3 : 2;
            rates[keys[i]] = kinds % kindCount == 0 ? 0 : kinds % kindCount == 1 ? known[i] : U;
            kinds /= kindCount;
        }
        ASSERT_EQ(Completed(rates), Told(rates));
    }
}
