#include "host/Facts.h"
#include "output/SafeText.h"

#include "ezBytes/Utf8.h"
#include "ezPlatform/base/DateTime.h"
#include "ezPlatform/media/MediaInfo.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace {

/// Name, or "values." and key where there is none, to the words shown.
std::map<std::string, std::string> WordsOf(const ezMediaInfo& anInfo) {
    std::map<std::string, std::string> words;
    for (const Fact& fact : FactsOf(anInfo)) {
        words[fact.mName.empty() ? "values." + fact.mKey : fact.mName] = fact.mWords;
    }
    return words;
}

using Words = std::map<std::string, std::string>;

} // namespace

TEST(Facts, RatesAreShownInWordsUnknownOnesNotAndVariableOnesAsSuch) {
    ezMediaInfo info;
    info.Set(kezInfo_BitRate, kezMediaInfo_VariableRate, true);
    info.Set(kezInfo_MaxBitRate, 0, true);
    info.Set(kezInfo_EstimatedBitRate, 1411200, true);
    info.Set(kezInfo_AudioBitRate, 128000, true);
    info.Set(kezInfo_VideoBitRate, 999, true);
    EXPECT_EQ(WordsOf(info), (Words{{"bit_rate", "variable"},
                                    {"estimated_bit_rate", "1.4 Mbit/s"},
                                    {"audio_bit_rate", "128 kbit/s"},
                                    {"video_bit_rate", "999 bit/s"}}));
    const Fact rate = FactsOf(info).at(0);
    EXPECT_FALSE(rate.mfNumber);
    EXPECT_EQ(rate.mText, "variable");
}

TEST(Facts, ARateIsShownInTheUnitThatItReaches) {
    const std::pair<std::uint64_t, const char*> table[] = {
        {999, "999 bit/s"}, {1000, "1 kbit/s"}, {1049, "1 kbit/s"}, {1000000, "1 Mbit/s"}};
    for (const auto& [rate, words] : table) {
        ezMediaInfo info;
        info.Set(kezInfo_BitRate, rate, true);
        EXPECT_EQ(WordsOf(info), (Words{{"bit_rate", words}}));
    }
}

TEST(Facts, AShortLengthHasItsFraction) {
    const struct {
        std::uint64_t mMilliseconds;
        const char* mMethod;
        const char* mWords;
        std::uint64_t mSeconds;
    } table[] = {{0, "header", "0:00:00.000", 0},     {7, "header", "0:00:00.007", 0},
                 {9999, "counted", "0:00:09.999", 9}, {9999, "estimate: rate", "0:00:09.999", 10},
                 {10000, "header", "0:00:10", 10},    {10999, "header", "0:00:10", 10},
                 {3723004, "header", "1:02:03", 3723}};
    for (const auto& row : table) {
        ezMediaInfo info;
        info.SetDuration(row.mMilliseconds, row.mMethod);
        const std::vector<Fact> facts = FactsOf(info);
        const Fact* const duration = FindFactNamed(facts, "duration");
        ASSERT_NE(duration, nullptr);
        EXPECT_EQ(duration->mWords, row.mWords);
        EXPECT_EQ(duration->mNumber, row.mSeconds);
        EXPECT_EQ(FindFactNamed(facts, "duration_ms")->mNumber, row.mMilliseconds);
    }
    ezMediaInfo seconds; // as a media mapper states them
    seconds.Set(kezInfo_Duration, 5, true);
    EXPECT_EQ(WordsOf(seconds), (Words{{"duration", "0:00:05"}}));
}

TEST(Facts, LpcmKeepsItsSamplingRateUnderTheAudioBitRate) {
    ezMediaInfo info;
    info.Set(kezInfo_AudioCodec, "LPCM", true);
    info.Set(kezInfo_AudioBitRate, 48000, true);
    info.Set(kezInfo_BitRate, 48000, true);
    info.Set(kezInfo_AudioMaxBitRate, 48000, true);
    info.Set(kezInfo_MaxBitRate, 1536000, true); // not made of the sampling rate
    EXPECT_EQ(WordsOf(info), (Words{{"audio_codec", "LPCM"},
                                    {"sampling_rate", "48 kHz"},
                                    {"max_bit_rate", "1.5 Mbit/s"},
                                    {"values.br", "48000"},
                                    {"values.ma", "48000"}}));
}

TEST(Facts, EveryKeyOfARecordIsAmongThem) {
    ezMediaInfo info;
    info.Set(kezInfo_MimeType, "a/b", true);
    info.Set("zz", "text", true);
    info.Set("yy", 0, true);
    info.Set(kezInfo_HasVideoTrack, 1, true);
    info.Set(kezInfo_Duration, 3725, true);
    info.Set(kezInfo_AudioChannelCount, 0, true);
    info.mTitle = "T";
    info.mCreator = "C";
    info.mGenre = "G";
    info.mAlbum = "A";
    EXPECT_EQ(WordsOf(info), (Words{{"mime_type", "a/b"},
                                    {"values.zz", "text"},
                                    {"values.yy", "0"},
                                    {"has_video", "yes"},
                                    {"duration", "1:02:05"},
                                    {"title", "T"},
                                    {"creator", "C"},
                                    {"genre", "G"},
                                    {"album", "A"}}));
}

TEST(Facts, FrameRatesAreOfASecondAndLevelsAsTheCodecWritesThem) {
    const std::map<uint32, std::string> rates = {
        {29970, "29.97"}, {25000, "25"}, {23976, "23.976"}, {12500, "12.5"}, {5, "0.005"}};
    for (const auto& [rate, words] : rates) {
        ezMediaInfo info;
        info.Set(kezInfo_FrameRate, rate, true);
        EXPECT_EQ(WordsOf(info), (Words{{"frame_rate", words}}));
        EXPECT_EQ(FactsOf(info).at(0).mDivisor, 1000U);
    }
    const std::map<uint32, std::string> levels = {{0, "0"}, {9, "1b"}, {10, "1"}, {31, "3.1"}, {62, "6.2"}};
    for (const auto& [level, words] : levels) {
        ezMediaInfo info;
        info.Set(kezInfo_VideoLevel, level, true);
        EXPECT_EQ(WordsOf(info), (Words{{"video_level", words}}));
        EXPECT_FALSE(FactsOf(info).at(0).mfNumber);
        EXPECT_EQ(FactsOf(info).at(0).mText, words);
    }
    ezMediaInfo info;
    info.Set(kezInfo_VideoCodec, "MPEG4", true);
    info.Set(kezInfo_VideoLevel, 9, true);
    info.Set(kezInfo_FrameRate, 0, true); // not known
    EXPECT_EQ(WordsOf(info), (Words{{"video_codec", "MPEG4"}, {"video_level", "0b"}}));
}

TEST(Facts, OfPicturesHaveNamesAndLabels) {
    ezMediaInfo info;
    info.Set(kezInfo_Container, "TTS-zero", true);
    info.Set(kezInfo_VideoProfile, "Main", true);
    info.Set(kezInfo_PictureProcess, "baseline", true);
    info.Set(kezInfo_PictureColours, "4:2:0", true);
    info.Set(kezInfo_PictureBitDepth, 8, true);
    info.Set(kezInfo_Orientation, 6, true);
    info.Set(kezInfo_DurationMethod, "estimate: of the first frames", true);
    EXPECT_EQ(WordsOf(info), (Words{{"container", "TTS-zero"},
                                    {"video_profile", "Main"},
                                    {"process", "baseline"},
                                    {"colours", "4:2:0"},
                                    {"bit_depth", "8"},
                                    {"orientation", "6"},
                                    {"duration_from", "estimate: of the first frames"}}));
    EXPECT_EQ(FactsOf(info).at(0).mLabel, "container");
    EXPECT_EQ(FactsOf(info).at(1).mLabel, "duration from");
}

TEST(Facts, OfWhatIsAnnouncedHaveNamesAndLabels) {
    ezMediaInfo info;
    info.Set(kezInfo_Date, "1999", true); // a text, though it reads as a number
    info.Set(kezInfo_TrackNumber, 3, true);
    info.Set(kezInfo_DiscNumber, 2, true);
    info.Set(kezInfo_AlbumArtist, "Band", true);
    info.Set(kezInfo_Composer, "Writer", true);
    info.Set(kezInfo_Compilation, 1, true);
    info.Set(kezInfo_Creators, "One, Two\nThree", true);
    info.Set(kezInfo_Genres, "Rock\nPop", true);
    info.Set(kezInfo_Languages, "en,pt-BR", true);
    info.Set(kezInfo_DurationBound, 1500, true);
    info.Set(kezInfo_CoverMimeType, "image/jpeg", true);
    info.Set(kezInfo_CoverSize, 2048, true);
    EXPECT_EQ(WordsOf(info), (Words{{"date", "1999"},
                                    {"track", "3"},
                                    {"disc", "2"},
                                    {"album_artist", "Band"},
                                    {"composer", "Writer"},
                                    {"compilation", "yes"},
                                    {"creators", "One, Two; Three"},
                                    {"genres", "Rock; Pop"},
                                    {"languages", "en; pt-BR"},
                                    {"duration_bound_ms", "1500"},
                                    {"cover_type", "image/jpeg"},
                                    {"cover_size", "2 KiB"}}));
    const std::vector<Fact> facts = FactsOf(info);
    EXPECT_EQ(FindFactNamed(facts, "creators")->mValues, (std::vector<std::string>{"One, Two", "Three"}));
    EXPECT_EQ(FindFactNamed(facts, "languages")->mValues, (std::vector<std::string>{"en", "pt-BR"}));
    EXPECT_FALSE(FindFactNamed(facts, "date")->mfNumber);
    EXPECT_TRUE(FindFactNamed(facts, "date")->mValues.empty());
    EXPECT_TRUE(FindFactNamed(facts, "compilation")->mfFlag);
}

TEST(Facts, ATextWhereANumberIsMeantLosesItsName) {
    ezMediaInfo info;
    info.Set(kezInfo_Duration, "0:00:12.5", true);
    info.Set(kezInfo_BitRate, "64000", true); // reads as a number
    EXPECT_EQ(WordsOf(info), (Words{{"values.du", "0:00:12.5"}, {"bit_rate", "64 kbit/s"}}));
}

TEST(Facts, TheFourthFieldIsAnAsteriskWhereThereIsNone) {
    ezMediaInfo info;
    info.Set(kezInfo_MimeType, "audio/mpeg", true);
    EXPECT_EQ(ProtocolInfo(info), "http-get:*:audio/mpeg:*");
    info.Set(kezInfo_DLNA, "DLNA.ORG_PN=MP3", true);
    EXPECT_EQ(ProtocolInfo(info), "http-get:*:audio/mpeg:DLNA.ORG_PN=MP3");
    EXPECT_EQ(AnnouncedFourthField(info), "DLNA.ORG_PN=MP3");
}

TEST(Facts, SizesAreShownInUnits) {
    EXPECT_EQ(SizeInWords(0), "0 B");
    EXPECT_EQ(SizeInWords(1023), "1023 B");
    EXPECT_EQ(SizeInWords(1024), "1 KiB");
    EXPECT_EQ(SizeInWords(1536), "1.5 KiB");
    EXPECT_EQ(SizeInWords(1048575), "1 MiB");
    EXPECT_EQ(SizeInWords(6442450944U), "6 GiB");
    EXPECT_EQ(SizeInWords(UINT64_MAX), "16 EiB");
}

TEST(Facts, TimesAreIso8601InUtc) {
    EXPECT_EQ(Iso8601(ezDateTime()), "");
    EXPECT_EQ(Iso8601(ezDateTime(0, 0)), "1970-01-01T00:00:00Z");
    EXPECT_EQ(Iso8601(ezDateTime(951827696, 999999999)), "2000-02-29T12:34:56Z");
    EXPECT_EQ(Iso8601(ezDateTime(4294967296, 0)), "2106-02-07T06:28:16Z");
    EXPECT_EQ(Iso8601(ezDateTime(INT64_MAX, 0)), "");
}

TEST(SafeText, TellsUtf8FromOtherBytes) {
    for (const char* text : {"", "a", "\xC3\xA4", "\xE2\x82\xAC", "\xF0\x9F\x8E\xB5", "\xF4\x8F\xBF\xBF"}) {
        EXPECT_TRUE(IsWholeUtf8(text)) << text;
    }
    for (const char* text :
         {"\x80", "\xC3", "\xC3(", "\xC0\x80", "\xE0\x80\x80", "\xED\xA0\x80", "\xF0\x80\x80\x80",
          "\xF4\x90\x80\x80", "\xF8\x88\x80\x80\x80", "\xFF", "a\xE2\x82"}) {
        EXPECT_FALSE(IsWholeUtf8(text)) << text;
    }
}

TEST(SafeText, EveryByteCanBeTold) {
    EXPECT_EQ(ForTerminal(std::string("\0\x1F\x7F", 3)), "\\x00\\x1f\\x7f");
    EXPECT_EQ(ForTerminal("\\n\n"), "\\\\n\\n");
    EXPECT_EQ(ForTerminal("\xE2\x82"), "\\xe2\\x82");
    EXPECT_EQ(ForTerminal("\xEF\xBB\xBF"), "\\xef\\xbb\\xbf");
    EXPECT_EQ(ForTerminal("\xE2\x82\xAC"), "\xE2\x82\xAC");
    EXPECT_EQ(HexBytes("\x0F\xA0z"), "0fa07a");
}

TEST(SafeText, IsCutBetweenCharacters) {
    EXPECT_EQ(CutToTerminalWidth("abc", 2), "ab");
    EXPECT_EQ(CutToTerminalWidth("abc", 3), "abc");
    EXPECT_EQ(CutToTerminalWidth("\xC3\xA4\xC3\xA4", 1), "\xC3\xA4");
    EXPECT_EQ(CutToTerminalWidth("", 5), "");
}
