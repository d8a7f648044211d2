#include "ezHosting/detail/SubtitleContent.h"

#include "ezHosting/detail/SubtitleLimits.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace {

constexpr std::string_view kCue = "1\r\n00:00:28,050 --> 00:00:30,550\r\nHello\r\n\r\n";

/// "srt UTF-8 en", or "-".
std::string InWords(std::string_view aHead, bool afWhole = true) {
    const auto content = ReadSubtitleContent(aHead, afWhole, "windows-1251");
    if (!content) {
        return "-";
    }
    std::string words = ezSubtitleKind_GetName(content->mKind);
    words += content->mEncoding.empty() ? "" : " " + content->mEncoding;
    return words + (content->mLanguages.empty() ? "" : " " + content->mLanguages);
}

/// Plain letters in UTF-16.
std::string Utf16Of(std::string_view aText, bool afLittle) {
    std::string bytes = afLittle ? "\xFF\xFE" : "\xFE\xFF";
    for (const char letter : aText) {
        bytes += afLittle ? std::string{letter, '\0'} : std::string{'\0', letter};
    }
    return bytes;
}

struct ContentRow {
    std::string_view mHead;
    const char* mTold;
};

} // namespace

TEST(SubtitleContent, IsRecognisedWhateverItsName) {
    using namespace std::string_view_literals;
    const ContentRow kRows[] = {
        {kCue, "srt UTF-8"},
        {"1\n00:00:28,050 --> 00:00:30,550\n", "srt UTF-8"},
        {"1\r00:00:28,050 --> 00:00:30,550\r", "srt UTF-8"},
        {" 0\r\n00:00:16,012 --> 00:00:25,834 X1:100\r\n", "srt UTF-8"},
        {"\n\n\n7\n0:0:1.5-->0:0:2.75\n", "srt UTF-8"},
        {"00:00:28,050 --> 00:00:30,550\n", "srt UTF-8"},                        // without its number
        {"Made by somebody\n\n1\n00:00:28,050 --> 00:00:30,550\n", "srt UTF-8"}, // a line of its maker's
        {"1\ntext\n00:00:28,050 --> 00:00:30,550\n", "-"},                       // the times follow no number
        {"1\n00:00:28,050 -> 00:00:30,550\n", "-"},
        {"1\n00:00:28 --> 00:00:30\n", "-"},
        {"WEBVTT", "vtt UTF-8"},
        {"WEBVTT\t00:11.000 --> 00:13.000\n", "vtt UTF-8"},
        {"WEBVTT - Title\n\n00:11.000 --> 00:13.000\n", "vtt UTF-8"},
        {"WEBVTT\r\n\r\n", "vtt UTF-8"},
        {"WEBVTTX\n", "-"},
        {" WEBVTT\n", "-"},
        {"[Script Info]\r\nScriptType: v4.00\r\n[V4 Styles]\r\n", "ssa UTF-8"},
        {"; made by\n\n[script info]\nScriptType: v4.00+\n\n[V4+ Styles]\n", "ass UTF-8"},
        {"! made by\n; somebody\n[Script Info]\n", "ssa UTF-8"},
        {"[Script]\n[V4+ Styles]\n", "-"},
        {"{25}{50}Hello|you", "sub UTF-8"},
        {"{1}{1}23.976\n{25}{50}Hello\n", "sub UTF-8"},
        {"{DEFAULT}{}{C:$0000FF}\n{25}{}Hello\n", "sub UTF-8"},
        {"{a}{b}Hello", "-"},
        {"{25}{50", "-"},
        {"{25}[50]Hello", "-"},
        {"[25][50]Hello", "-"},
        {"# VobSub index file, v7 (do not modify this line!)\n#\nid: en, index: 0\ntimestamp: x\nid: fr, "
         "index: 1\n"
         "id: --, index: 2\n",
         "idx en,fr"},
        {"# VobSub index file, v7\n", "idx"},
        {"<SAMI>\n<HEAD><STYLE TYPE=\"text/css\"><!--\nP { margin: 1pt; }\n.ENCC { Name: English; lang: "
         "en-US; "
         "SAMIType: CC; }\n.FRCC {Name:French;lang:fr-FR}\n--></STYLE></HEAD><BODY>lang: de</BODY>",
         "smi UTF-8 en-US,fr-FR"},
        {"<!-- a -->\n<sami >", "smi UTF-8"},
        {"<SAMIX>", "-"},
        {"<?xml version=\"1.0\"?>\n<!DOCTYPE tt>\n<!-- <x> --><tt xmlns=\"http://www.w3.org/ns/ttml\" "
         "xml:lang=\"pt-br\">",
         "ttml UTF-8 pt-BR"},
        {"<tt:tt xml:lang = 'en'>", "ttml UTF-8 en"},
        {"<tt>", "ttml UTF-8"},
        {"<tt xml:lang=\"\"><p xml:lang=\"en\">", "ttml UTF-8"},
        {"<tt><body xml:lang=\"en\">", "ttml UTF-8"}, // of a part of the text
        {"<?style a>b?><tt>", "ttml UTF-8"},
        {"<ttx>", "-"},
        {"<html>", "-"},
        {"PG\x00\x00\x00\x01\x00\x00\x00\x00\x14"sv, "sup"},
        {"PG\x00\x00\x00\x01\x00\x00\x00\x00\x15"sv, "sup"},
        {"PG\x00\x00\x00\x01\x00\x00\x00\x00\x16\x00\x13"sv, "sup"},
        {"PG\x00\x00\x00\x01\x00\x00\x00\x00\x17"sv, "sup"},
        {"PG\x00\x00\x00\x01\x00\x00\x00\x00\x80"sv, "sup"},
        {"PG\x00\x00\x00\x01\x00\x00\x00\x00\x18\x00\x13"sv, "-"},
        {"PG\x00\x00\x00\x01\x00\x00\x00\x00"sv, "-"},
        {"\x00\x00\x01\xBA\x44\x00\x04"sv, "-"}, // pictures of VobSub, which the index tells
        {"", "-"},
        {"\xEF\xBB\xBF", "-"},
        {"\xFF", "-"},
        {"\xFF\xFE", "-"},
        {"<", "-"},
        {"<!--", "-"},
        {"Dear friend,\n1\n2\n3\n", "-"},
    };
    for (const ContentRow& row : kRows) {
        EXPECT_EQ(InWords(row.mHead), row.mTold) << row.mHead;
    }
}

TEST(SubtitleContent, HasAnEncodingByItsMarkElseByItsLetters) {
    const std::string cue(kCue);
    EXPECT_EQ(InWords("\xEF\xBB\xBF" + cue), "srt UTF-8");
    EXPECT_EQ(InWords("\xEF\xBB\xBF" + cue + "\xCF"), "srt UTF-8"); // the mark says so
    EXPECT_EQ(InWords(cue + "Gr\xC3\xBC\xC3\x9F"
                            "e"),
              "srt UTF-8");
    EXPECT_EQ(InWords(cue + "\xCF\xF0\xE8\xE2\xE5\xF2"), "srt windows-1251");
    EXPECT_EQ(InWords(Utf16Of(cue, true)), "srt UTF-16LE");
    EXPECT_EQ(InWords(Utf16Of(cue, false)), "srt UTF-16BE");
    EXPECT_EQ(InWords(Utf16Of("<SAMI><STYLE>.A{lang:ko-KR}</STYLE>", true)), "smi UTF-16LE ko-KR");
    // A character that the end of what is read cuts is one of a longer file, and none of a whole one.
    for (const char* cut : {"\xC3", "\xE4\xB8", "\xF0\x9F\x98"}) {
        EXPECT_EQ(InWords(cue + cut, false), "srt UTF-8") << cut;
        EXPECT_EQ(InWords(cue + cut, true), "srt windows-1251") << cut;
    }
    EXPECT_EQ(InWords(cue + "\xCF\xF0", false), "srt windows-1251");
    EXPECT_EQ(InWords(cue + "\x80", false), "srt windows-1251"); // begins no character
}

TEST(SubtitleContent, IsLookedForInTheFirstLines) {
    const auto after = [](std::size_t aLines) {
        std::string text;
        for (std::size_t i = 0; i < aLines; ++i) {
            text += "x\n";
        }
        return text + std::string(kCue);
    };
    EXPECT_EQ(InWords(after(kSubtitle_MaxLines - 2)), "srt UTF-8");
    EXPECT_EQ(InWords(after(kSubtitle_MaxLines - 1)), "-");
}

TEST(SubtitleContent, CutAnywhereIsReadToItsEndAndNoFurther) {
    for (const std::string_view whole :
         {kCue, std::string_view("<?xml?><!-- --><tt xml:lang='en'>"),
          std::string_view("{DEFAULT}{}\n{25}{50}"), std::string_view("<SAMI><STYLE>.A{lang:en}</STYLE>"),
          std::string_view("[Script Info]\n[V4+ Styles]")}) {
        for (std::size_t size = 0; size < whole.size(); ++size) {
            const std::string cut(whole.substr(0, size)); // a block of its own, which the sanitizers watch
            const auto content = ReadSubtitleContent(std::string_view(cut), true, "x");
            EXPECT_TRUE(!content || !content->mEncoding.empty()) << cut;
        }
    }
}

TEST(SubtitleKinds, HaveANameAndTheTypesOfText) {
    struct Row {
        ezSubtitleKind mKind;
        const char* mName;
        const char* mMimeTypes;
    };
    constexpr Row kRows[] = {
        {ezSubtitleKind::SubRip, "srt", "application/x-subrip,text/srt,smi/caption"},
        {ezSubtitleKind::WebVTT, "vtt", "text/vtt"},
        {ezSubtitleKind::SubStation, "ssa", "text/x-ssa"},
        {ezSubtitleKind::AdvancedSubStation, "ass", "text/x-ass,text/x-ssa"},
        {ezSubtitleKind::MicroDVD, "sub", "text/x-microdvd"},
        {ezSubtitleKind::SAMI, "smi", "application/smil,text/x-sami"},
        {ezSubtitleKind::TTML, "ttml", "application/ttml+xml"},
        {ezSubtitleKind::PresentationGraphics, "sup", ""},
        {ezSubtitleKind::VobSub, "idx", ""},
    };
    for (const Row& row : kRows) {
        EXPECT_STREQ(ezSubtitleKind_GetName(row.mKind), row.mName);
        EXPECT_STREQ(ezSubtitleKind_GetMimeTypes(row.mKind), row.mMimeTypes) << row.mName;
    }
}
