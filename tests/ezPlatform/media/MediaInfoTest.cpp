#include "ezPlatform/media/MediaInfo.h"

#include "support/Catchers.h"
#include "support/IntegerTypes.h"
#include "support/Str.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <type_traits>
#include <vector>

namespace {

const char* const kNegative = "aValue >= 0 @ UInt64";

std::vector<std::string> KeysOf(const ezMediaInfo& anInfo) {
    std::vector<std::string> keys;
    for (std::size_t i = 0; i < anInfo.GetCount(); ++i) {
        keys.push_back(Str(anInfo.GetKeyAt(i)));
    }
    return keys;
}

std::string Text(const ezMediaInfo& anInfo, const char* aKey) {
    return Str(anInfo.GetCString(aKey, "<absent>"));
}

std::uint64_t Number(const ezMediaInfo& anInfo, const char* aKey) {
    return anInfo.GetUInt64(aKey, 4711).ToUInt64();
}

template <typename Integer>
class MediaInfoOfType : public testing::Test {};

} // namespace

TEST(MediaInfo, KeysHaveTheirNames) {
    const std::pair<const char*, const char*> keys[] = {
        {kezInfo_MimeType, "mt"},
        {kezInfo_ClassName, "cn"},
        {kezInfo_DLNA, "dl"},
        {kezInfo_Duration, "du"},
        {kezInfo_BitRate, "br"},
        {kezInfo_MaxBitRate, "mb"},
        {kezInfo_EstimatedBitRate, "eb"},
        {kezInfo_AudioTrackCount, "ta"},
        {kezInfo_HasVideoTrack, "vt"},
        {kezInfo_AudioBitRate, "ar"},
        {kezInfo_AudioMaxBitRate, "ma"},
        {kezInfo_AudioEstimatedBitRate, "ea"},
        {kezInfo_VideoBitRate, "vr"},
        {kezInfo_VideoMaxBitRate, "mv"},
        {kezInfo_VideoEstimatedBitRate, "ev"},
        {kezInfo_AudioChannelCount, "ac"},
        {kezInfo_AudioBitsPerSample, "bs"},
        {kezInfo_AudioCodec, "ca"},
        {kezInfo_FileSize, "fs"},
        {kezInfo_FileExtension, "fe"},
        {kezInfo_AudioSamplingRate, "sf"},
        {kezInfo_VideoCodec, "vc"},
        {kezInfo_PictureWidth, "wi"},
        {kezInfo_PictureHeight, "he"},
        {kezInfo_DurationMethod, "md"},
        {kezInfo_FrameRate, "fr"},
        {kezInfo_VideoProfile, "vp"},
        {kezInfo_VideoLevel, "vl"},
        {kezInfo_PictureProcess, "pr"},
        {kezInfo_PictureColours, "cr"},
        {kezInfo_PictureBitDepth, "cd"},
        {kezInfo_Orientation, "ud"},
        {kezInfo_DurationMilliseconds, "dm"},
        {kezInfo_DurationBound, "db"},
        {kezInfo_Date, "da"},
        {kezInfo_TrackNumber, "tn"},
        {kezInfo_DiscNumber, "dn"},
        {kezInfo_AlbumArtist, "aa"},
        {kezInfo_Composer, "co"},
        {kezInfo_Compilation, "cp"},
        {kezInfo_Creators, "as"},
        {kezInfo_Genres, "gs"},
        {kezInfo_Languages, "la"},
        {kezInfo_PixelAspect, "pa"},
        {kezInfo_DisplayAspect, "dr"},
        {kezInfo_FrameRateVaries, "fv"},
        {kezInfo_HDR, "hd"},
        {kezInfo_SubtitleTrackCount, "ts"},
        {kezInfo_SubtitleLanguages, "sl"},
        {kezInfo_ProgramCount, "np"},
    };
    std::set<std::string> names;
    for (const auto& key : keys) {
        EXPECT_STREQ(key.first, key.second);
        EXPECT_TRUE(names.insert(key.second).second) << key.second << " means two things";
    }
    EXPECT_EQ(kezMediaInfo_VariableRate, 4294967295U);
}

TEST(MediaInfo, ANewRecordIsEmptyAndNotValid) {
    const ezMediaInfo info;
    EXPECT_EQ(info.GetCount(), 0U);
    EXPECT_FALSE(info.IsValid());
    EXPECT_FALSE(info.Has("mt"));
    EXPECT_FALSE(info.IsNumber("mt"));
    EXPECT_EQ(Text(info, "mt"), "<absent>");
    EXPECT_EQ(info.GetUInt32("br", 7), 7U);
    EXPECT_EQ(info.GetUInt64("br", UINT64_MAX).ToUInt64(), UINT64_MAX);
    EXPECT_EQ(Str(info.GetOtherProperties()), "");
    EXPECT_TRUE(info.mFullPath.IsEmpty());
    EXPECT_TRUE(info.mTitle.IsEmpty());
    EXPECT_TRUE(info.mCreator.IsEmpty());
    EXPECT_TRUE(info.mGenre.IsEmpty());
    EXPECT_TRUE(info.mAlbum.IsEmpty());
    EXPECT_FALSE(info.mLastModificationTime.IsSet());
}

// Numbers of every type.

TYPED_TEST_SUITE(MediaInfoOfType, IntegerTypes, IntegerTypeNames);

TYPED_TEST(MediaInfoOfType, KeepsEveryValueThatIsNotNegative) {
    const AssertCatcher assertions;
    const TypeParam largest = std::numeric_limits<TypeParam>::max();
    for (const TypeParam value : {TypeParam{0}, TypeParam{1}, largest}) {
        ezMediaInfo info;
        info.Set("fs", value, true);
        EXPECT_TRUE(info.Has("fs"));
        EXPECT_TRUE(info.IsNumber("fs"));
        EXPECT_EQ(Number(info, "fs"), static_cast<std::uint64_t>(value));
        EXPECT_EQ(Text(info, "fs"), std::to_string(static_cast<std::uint64_t>(value)));
    }
    EXPECT_TRUE(assertions.Failures().empty());
}

TYPED_TEST(MediaInfoOfType, KeepsANegativeValueOf32BitsAsItsPattern) {
    if constexpr (std::is_signed<TypeParam>::value) {
        const AssertCatcher assertions;
        ezMediaInfo info;
        info.Set("br", static_cast<TypeParam>(-1), true);
        EXPECT_EQ(Number(info, "br"), 0xFFFFFFFFU) << "the same on 32 and 64 bits";
        EXPECT_EQ(info.GetUInt32("br", 0), 0xFFFFFFFFU);
        EXPECT_EQ(Text(info, "br"), "4294967295");
        info.Set("br", static_cast<TypeParam>(-2), true);
        EXPECT_EQ(Number(info, "br"), 0xFFFFFFFEU);
        info.Set("br", static_cast<TypeParam>(-128), true);
        EXPECT_EQ(Number(info, "br"), 0xFFFFFF80U);
        EXPECT_TRUE(assertions.Failures().empty());
    } else {
        ezMediaInfo info;
        info.Set("br", static_cast<TypeParam>(-1), true);
        EXPECT_EQ(Number(info, "br"), std::numeric_limits<TypeParam>::max());
    }
}

TEST(MediaInfo, TheSmallest32BitValueIsKeptAsItsPattern) {
    const AssertCatcher assertions;
    ezMediaInfo info;
    info.Set("a", std::numeric_limits<int>::min(), true);
    info.Set("b", std::int64_t{INT32_MIN}, true);
    EXPECT_EQ(Number(info, "a"), 0x80000000U);
    EXPECT_EQ(Number(info, "b"), 0x80000000U);
    EXPECT_TRUE(assertions.Failures().empty());
}

TEST(MediaInfo, AMoreNegativeValueIsACallersMistakeAnd0) {
    const AssertCatcher assertions;
    ezMediaInfo info;
    info.Set("a", std::int64_t{INT32_MIN} - 1, true);
    info.Set("b", std::numeric_limits<long long>::min(), true);
    EXPECT_TRUE(info.IsNumber("a"));
    EXPECT_EQ(Number(info, "a"), 0U);
    EXPECT_EQ(Number(info, "b"), 0U);
    EXPECT_EQ(assertions.Failures(), AssertCatcher::Noted({kNegative, kNegative}));
}

TEST(MediaInfo, TakesABoolAndAnEzuint64AsNumbers) {
    ezMediaInfo info;
    info.Set("vt", true, true);
    info.Set("ta", false, true);
    info.Set("fs", ezuint64(UINT64_MAX), true);
    EXPECT_EQ(Number(info, "vt"), 1U);
    EXPECT_EQ(Number(info, "ta"), 0U);
    EXPECT_EQ(Number(info, "fs"), UINT64_MAX);
    EXPECT_TRUE(info.IsNumber("vt"));
    EXPECT_TRUE(info.IsNumber("fs"));
}

TEST(MediaInfo, ALiteral0IsANumberNotAText) {
    ezMediaInfo info;
    info.Set("br", 0, true);
    EXPECT_TRUE(info.Has("br"));
    EXPECT_TRUE(info.IsNumber("br"));
    EXPECT_EQ(info.GetUInt32("br", 9), 0U) << "0 is a value, not the absence of one";
}

// Reading.

TEST(MediaInfo, ANumberReadsAsDecimalText) {
    ezMediaInfo info;
    info.Set("du", 0, true);
    EXPECT_EQ(Text(info, "du"), "0");
    info.Set("du", UINT64_MAX, true);
    EXPECT_EQ(Text(info, "du"), "18446744073709551615");
}

TEST(MediaInfo, ATextThatIsAWholeDecimalNumberReadsAsThatNumber) {
    ezMediaInfo info;
    info.Set("du", "3600", true);
    EXPECT_FALSE(info.IsNumber("du"));
    EXPECT_EQ(info.GetUInt32("du", 1), 3600U);
    EXPECT_EQ(Number(info, "du"), 3600U);
    EXPECT_EQ(Text(info, "du"), "3600");
    info.Set("du", "007", true);
    EXPECT_EQ(Number(info, "du"), 7U);
    EXPECT_EQ(Text(info, "du"), "007") << "a text stays as it is";
    info.Set("du", "18446744073709551615", true);
    EXPECT_EQ(Number(info, "du"), UINT64_MAX);
    EXPECT_EQ(info.GetUInt32("du", 1), UINT32_MAX) << "saturates like a number";
}

TEST(MediaInfo, ATextThatIsNoNumberReadsAsTheDefault) {
    ezMediaInfo info;
    for (const char* text :
         {"x", "1x", " 1", "1 ", "-1", "+1", "1.5", "0x10", "18446744073709551616", "0:01:00"}) {
        info.Set("du", text, true);
        EXPECT_EQ(info.GetUInt32("du", 5), 5U) << text;
        EXPECT_EQ(info.GetUInt64("du", 6).ToUInt64(), 6U) << text;
        EXPECT_EQ(Text(info, "du"), text);
    }
}

TEST(MediaInfo, GetUInt32Saturates) {
    ezMediaInfo info;
    info.Set("fs", UINT32_MAX, true);
    EXPECT_EQ(info.GetUInt32("fs", 0), UINT32_MAX);
    info.Set("fs", std::uint64_t{UINT32_MAX} + 1, true);
    EXPECT_EQ(info.GetUInt32("fs", 0), UINT32_MAX);
    EXPECT_EQ(Number(info, "fs"), 0x100000000U);
    info.Set("fs", UINT64_MAX, true);
    EXPECT_EQ(info.GetUInt32("fs", 0), UINT32_MAX);
}

// Setting.

TEST(MediaInfo, WithoutOverwriteAValueThatIsThereStays) {
    ezMediaInfo info;
    info.Set("fe", "mpg", false);
    EXPECT_EQ(Text(info, "fe"), "mpg") << "an absent value is set";
    info.Set("fe", "avi", false);
    info.Set("fe", 5, false);
    info.Set("fe", -1, false);
    info.Set("fe", ezuint64(6), false);
    info.Set("fe", "", false);
    EXPECT_EQ(Text(info, "fe"), "mpg");
    EXPECT_FALSE(info.IsNumber("fe"));
    info.Set("br", 0, false);
    info.Set("br", 128000, false);
    info.Set("br", "128000", false);
    EXPECT_EQ(Number(info, "br"), 0U) << "a number of 0 is there";
    EXPECT_TRUE(info.IsNumber("br"));
}

TEST(MediaInfo, WithOverwriteTheNewValueTakesItsPlaceAndItsKind) {
    ezMediaInfo info;
    info.Set("x", "text", true);
    info.Set("x", 5, true);
    EXPECT_TRUE(info.IsNumber("x"));
    EXPECT_EQ(Text(info, "x"), "5");
    info.Set("x", "other", true);
    EXPECT_FALSE(info.IsNumber("x"));
    EXPECT_EQ(Text(info, "x"), "other");
    EXPECT_EQ(Number(info, "x"), 4711U) << "nothing is left of the number";
    EXPECT_EQ(info.GetCount(), 1U);
}

TEST(MediaInfo, AnEmptyTextCountsAsAbsent) {
    const char* nothing = nullptr;
    ezMediaInfo info;
    info.Set("mt", "", true);
    info.Set("cn", ezCString(), false);
    info.Set("dl", nothing, true);
    EXPECT_EQ(info.GetCount(), 0U);
    EXPECT_FALSE(info.Has("mt"));
    EXPECT_EQ(Text(info, "mt"), "<absent>");
    info.Set("mt", "audio/L16", true);
    info.Set("br", 5, true);
    info.Set("mt", "", true);
    info.Set("br", "", true);
    EXPECT_FALSE(info.Has("mt"));
    EXPECT_FALSE(info.Has("br")) << "also of a number";
    EXPECT_EQ(info.GetCount(), 0U);
    info.Set("mt", "video/mpeg", false);
    EXPECT_EQ(Text(info, "mt"), "video/mpeg") << "absent, so it is set without overwriting";
}

TEST(MediaInfo, TextsKeepEveryByte) {
    ezMediaInfo info;
    const std::string text("a\0\xFF\n", 4);
    info.Set("x", Bytes(text), true);
    EXPECT_EQ(Text(info, "x"), text);
    info.Set("x", Bytes(std::string(1, '\0')), true);
    EXPECT_TRUE(info.Has("x")) << "a NUL is a byte, not the empty text";
}

TEST(MediaInfo, KeysAreExactAndCopied) {
    ezMediaInfo info;
    std::string key = "mt";
    info.Set(key.c_str(), "a", true);
    key = "xx";
    EXPECT_TRUE(info.Has("mt"));
    for (const char* other : {"MT", "m", "mtt", "", "xx"}) {
        EXPECT_FALSE(info.Has(other)) << other;
    }
}

TEST(MediaInfo, AValueMayBeSetFromTheRecordItself) {
    ezMediaInfo info;
    info.Set("fe", "a text of more bytes than are kept in place", true);
    info.Set("xe", info.GetCString("fe", ""), true);
    info.Set("fe", info.GetCString("fe", ""), true);
    EXPECT_EQ(Text(info, "xe"), Text(info, "fe"));
    EXPECT_EQ(Text(info, "fe"), "a text of more bytes than are kept in place");
}

TEST(MediaInfo, KeysStandInByteOrderWhateverTheOrderSet) {
    ezMediaInfo info;
    for (const char* key : {"mt", "ac", "vt", "ma", "a", "Zz", "\xC3\xA4", "mb"}) {
        info.Set(key, 1, true);
    }
    EXPECT_EQ(KeysOf(info), (std::vector<std::string>{"Zz", "a", "ac", "ma", "mb", "mt", "vt", "\xC3\xA4"}));
    info.Set("ac", "", true);
    info.Set("mt", "x", true);
    EXPECT_EQ(KeysOf(info), (std::vector<std::string>{"Zz", "a", "ma", "mb", "mt", "vt", "\xC3\xA4"}));
}

TEST(MediaInfo, HoldsMoreKeysThanARecordUsuallyHas) {
    ezMediaInfo info;
    for (int i = 999; i >= 0; --i) {
        info.Set(("k" + std::to_string(i)).c_str(), i, true);
    }
    EXPECT_EQ(info.GetCount(), 1000U);
    for (int i = 0; i < 1000; ++i) {
        EXPECT_EQ(Number(info, ("k" + std::to_string(i)).c_str()), static_cast<std::uint64_t>(i));
    }
    const std::vector<std::string> keys = KeysOf(info);
    EXPECT_TRUE(std::is_sorted(keys.begin(), keys.end()));
}

TEST(MediaInfo, KeysOfAnyLengthAreKeys) {
    ezMediaInfo info;
    info.Set("duration", 12, true);
    info.Set("dura", "1", true);
    info.Set("dur", 3, true);
    info.Set("duration in frames", "a text", true);
    EXPECT_EQ(KeysOf(info), (std::vector<std::string>{"dur", "dura", "duration", "duration in frames"}));
    EXPECT_EQ(Str(info.GetOtherProperties()), "dur=3, dura=1, duration=12, duration in frames=a text");
    EXPECT_EQ(Number(info, "dura"), 1U);
    info.Set("duration", "", true);
    info.Set("dura", 7, true);
    EXPECT_FALSE(info.Has("duration"));
    EXPECT_TRUE(info.IsNumber("dura"));
    EXPECT_EQ(Text(info, "duration in frames"), "a text");
    EXPECT_EQ(info.GetCount(), 3U);
}

// The record.

TEST(MediaInfo, IsValidWhenItHasAMimeType) {
    ezMediaInfo info;
    info.Set("cn", "item.audioItem", true);
    info.mFullPath = "/media/a.pcm";
    EXPECT_FALSE(info.IsValid());
    info.Set("mt", "audio/L16", true);
    EXPECT_TRUE(info.IsValid());
    info.Set("mt", "", true);
    EXPECT_FALSE(info.IsValid());
}

TEST(MediaInfo, ADuplicateHasEverythingAndGoesItsOwnWay) {
    ezMediaInfo info;
    info.Set("mt", "audio/L16", true);
    info.Set("br", 128, true);
    info.mFullPath = "/media/a.pcm";
    info.mLastModificationTime = ezDateTime(1500000000, 5);
    info.mTitle = "title";
    info.mCreator = "creator";
    info.mGenre = "genre";
    info.mAlbum = "album";
    const std::unique_ptr<ezMediaInfo> copy(info.Duplicate());
    ASSERT_NE(copy, nullptr);
    ASSERT_NE(copy.get(), &info);

    info.Set("mt", "video/mpeg", true);
    info.Set("br", "", true);
    info.Set("du", 1, true);
    info.mFullPath = "";
    info.mTitle = "other";
    EXPECT_EQ(KeysOf(*copy), (std::vector<std::string>{"br", "mt"}));
    EXPECT_EQ(Text(*copy, "mt"), "audio/L16");
    EXPECT_EQ(Number(*copy, "br"), 128U);
    EXPECT_TRUE(copy->IsNumber("br"));
    EXPECT_FALSE(copy->IsNumber("mt"));
    EXPECT_EQ(Str(copy->mFullPath), "/media/a.pcm");
    EXPECT_TRUE(copy->mLastModificationTime == ezDateTime(1500000000, 5));
    EXPECT_EQ(Str(copy->mTitle), "title");
    EXPECT_EQ(Str(copy->mCreator), "creator");
    EXPECT_EQ(Str(copy->mGenre), "genre");
    EXPECT_EQ(Str(copy->mAlbum), "album");

    copy->Set("mt", "image/jpeg", true);
    EXPECT_EQ(Text(info, "mt"), "video/mpeg");
}

TEST(MediaInfo, ADuplicateOutlivesItsOriginal) {
    auto info = std::make_unique<ezMediaInfo>();
    info->Set("mt", "audio/L16 with more bytes than are kept in place", true);
    const std::unique_ptr<ezMediaInfo> copy(info->Duplicate());
    info.reset();
    EXPECT_EQ(Text(*copy, "mt"), "audio/L16 with more bytes than are kept in place");
}

TEST(MediaInfo, FinishingChangesNothingThatCanBeSeen) {
    ezMediaInfo info;
    info.Set("mt", "audio/L16", true);
    info.Set("br", 0, true);
    info.mTitle = "title";
    for (const bool afComplete : {true, false}) {
        info.Finish(afComplete);
        EXPECT_EQ(Str(info.GetOtherProperties()), "br=0, mt=audio/L16");
        EXPECT_TRUE(info.IsNumber("br"));
        EXPECT_TRUE(info.IsValid());
        EXPECT_EQ(Str(info.mTitle), "title");
        EXPECT_TRUE(info.mFullPath.IsEmpty());
    }
    ezMediaInfo empty;
    empty.Finish(true);
    EXPECT_EQ(empty.GetCount(), 0U);
    EXPECT_FALSE(empty.IsValid());
    info.Set("br", 5, true);
    EXPECT_EQ(Number(info, "br"), 5U) << "a finished record may still be changed";
}

TEST(MediaInfo, OtherPropertiesAreOneLineInKeyOrder) {
    ezMediaInfo info;
    info.Set("mt", "audio/L16", true);
    EXPECT_EQ(Str(info.GetOtherProperties()), "mt=audio/L16");
    info.Set("ac", 2, true);
    info.mTitle = "title";
    EXPECT_EQ(Str(info.GetOtherProperties()), "ac=2, mt=audio/L16");
}

namespace {

/// What the model holds: a number or a text that is not empty.
struct Value {
    std::string mText;
    std::uint64_t mNumber;
    bool mfNumber;
};

std::uint64_t PatternOf(std::int64_t aValue) {
    return aValue < 0 ? static_cast<std::uint64_t>(aValue + (std::int64_t{1} << 32))
                      : static_cast<std::uint64_t>(aValue);
}

} // namespace

RC_GTEST_PROP(MediaInfoModel, IsAMapOfTextsAndNumbers, ()) {
    // Those of four bytes and more are held in another way.
    const std::vector<std::string> keys = {"a",
                                           "ac",
                                           "mt",
                                           "vt",
                                           "Z",
                                           "",
                                           "abc",
                                           "abcd",
                                           "abce",
                                           "abcde",
                                           "abcd\x01",
                                           "abcd\xFF",
                                           "an extraordinary key",
                                           "an extraordinary kez"};
    ezMediaInfo info;
    std::map<std::string, Value> model;
    const int steps = *rc::gen::inRange(0, 50);
    for (int step = 0; step < steps; ++step) {
        const std::string key = *rc::gen::elementOf(keys);
        const bool overwrite = *rc::gen::arbitrary<bool>();
        Value value = {"", 0, false};
        switch (*rc::gen::inRange(0, 4)) {
        case 0:
            value.mText = *rc::gen::container<std::string>(*rc::gen::inRange<std::size_t>(0, 12),
                                                           rc::gen::element('1', '0', 'x'));
            info.Set(key.c_str(), Bytes(value.mText), overwrite);
            break;
        case 1: {
            const int number = *rc::gen::arbitrary<int>();
            value = {"", PatternOf(number), true};
            info.Set(key.c_str(), number, overwrite);
            break;
        }
        case 2: {
            const auto number = *rc::gen::inRange<std::int64_t>(INT32_MIN, INT64_MAX);
            value = {"", PatternOf(number), true};
            info.Set(key.c_str(), number, overwrite);
            break;
        }
        default:
            value = {"", *rc::gen::arbitrary<std::uint64_t>(), true};
            info.Set(key.c_str(), value.mNumber, overwrite);
        }
        const bool there = model.count(key) != 0;
        if (!there || overwrite) {
            if (value.mfNumber || !value.mText.empty()) {
                model[key] = value;
            } else {
                model.erase(key);
            }
        }

        std::vector<std::string> modelKeys;
        for (const auto& entry : model) {
            modelKeys.push_back(entry.first);
        }
        RC_ASSERT(KeysOf(info) == modelKeys);
        const std::unique_ptr<ezMediaInfo> copy(info.Duplicate());
        for (const std::string& asked : keys) {
            const auto found = model.find(asked);
            const bool has = found != model.end();
            std::string text = has ? found->second.mText : "<absent>";
            std::uint64_t number = 4711;
            if (has && found->second.mfNumber) {
                number = found->second.mNumber;
                text = std::to_string(number);
            } else if (has && text.find('x') == std::string::npos) {
                number = std::stoull(text);
            }
            for (const ezMediaInfo* record :
                 {static_cast<const ezMediaInfo*>(&info), static_cast<const ezMediaInfo*>(copy.get())}) {
                RC_ASSERT(record->Has(asked.c_str()) == has);
                RC_ASSERT(record->IsNumber(asked.c_str()) == (has && found->second.mfNumber));
                RC_ASSERT(Text(*record, asked.c_str()) == text);
                RC_ASSERT(Number(*record, asked.c_str()) == number);
                RC_ASSERT(record->GetUInt32(asked.c_str(), 4711) ==
                          std::min<std::uint64_t>(number, UINT32_MAX));
            }
        }
        RC_ASSERT(info.IsValid() == (model.count("mt") != 0));
    }
}
