#include "Announce.h"
#include "host/Explanation.h"
#include "host/Host.h"
#include "support/TemporaryFolder.h"
#include "support/WholeFile.h"

#include "ez/MediaParserManager.h"
#include "ez/MediaParserStream.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

TEST(Explain, TellsTheSourceOfEachFactInWords) {
    ProgramOptions options;
    options.mFolder = EZ_SAMPLES;
    const ProgramResult result = Announce({"--explain", "music/morning-walk.mp3", "README.md"}, options);
    EXPECT_EQ(result.mStatus, 1);
    std::string text = result.mOut;
    const std::size_t modified = text.find("  modified");
    ASSERT_NE(modified, std::string::npos);
    EXPECT_NE(text.substr(modified, text.find('\n', modified) - modified).find("Z              stream"),
              std::string::npos);
    text.erase(modified, text.find('\n', modified) + 1 - modified);
    EXPECT_EQ(
        text,
        "music/morning-walk.mp3\n"
        "  MIME type        audio/mpeg                        parser mp3 (MPEGAudioParser)\n"
        "  class            item.audioItem.musicTrack         entry \"mp3\" of the media types file\n"
        "  DLNA             DLNA.ORG_PN=MP3;DLNA.ORG_OP=01;DLNA.ORG_FLAGS=01500000000000000000000000000000  "
        "parser mp3 (MPEGAudioParser)\n"
        "  size             31.6 KiB                          stream\n"
        "  extension        mp3                               "
        "first extension of audio/mpeg in the media types file\n"
        "  duration         0:00:05.300                       parser mp3 (MPEGAudioParser)\n"
        "  milliseconds     5300                              parser mp3 (MPEGAudioParser)\n"
        "  duration from    header                            parser mp3 (MPEGAudioParser)\n"
        "  bit rate         48 kbit/s                         derived from the other bit rates\n"
        "  max. bit rate    48 kbit/s                         derived from the other bit rates\n"
        "  est. bit rate    48 kbit/s                         derived from the other bit rates\n"
        "  audio tracks     1                                 parser mp3 (MPEGAudioParser)\n"
        "  audio codec      MP3                               parser mp3 (MPEGAudioParser)\n"
        "  audio bit rate   48 kbit/s                         parser mp3 (MPEGAudioParser)\n"
        "  max. audio rate  48 kbit/s                         derived from the other bit rates\n"
        "  est. audio rate  48 kbit/s                         derived from the other bit rates\n"
        "  sampling rate    44.1 kHz                          parser mp3 (MPEGAudioParser)\n"
        "  channels         2                                 parser mp3 (MPEGAudioParser)\n"
        "  date             2001                              parser mp3 (MPEGAudioParser)\n"
        "  title            Morning Walk                      parser mp3 (MPEGAudioParser)\n"
        "  creator          The Test Tones                    parser mp3 (MPEGAudioParser)\n"
        "  genre            Folk                              parser mp3 (MPEGAudioParser)\n"
        "  album            Half a Second                     parser mp3 (MPEGAudioParser)\n"
        "  entries          mp3\n"
        "  tried            * (ezMimeTypesDotIniParser): answered\n"
        "                     mp3 (MPEGAudioParser): answered\n"
        "\n"
        "README.md\n"
        "  not recognised\n"
        "  entries          text (excluded)\n"
        "  tried            * (ezMimeTypesDotIniParser): declined\n"
        "                     text: there is no such parser\n");
}

TEST(Explain, TellsTheSameInJson) {
    const std::string path = EZ_SAMPLES "/conformance/B-LPCM-2.pcm";
    const ProgramResult result = Announce({"--explain", "--json", "--ctt", "1", path});
    const nlohmann::json media = nlohmann::json::parse(result.mOut);
    const nlohmann::json& explain = media["explain"];
    EXPECT_EQ(explain["facts"]["mime_type"]["source"], "file-name");
    EXPECT_EQ(explain["facts"]["class"]["source"], "file-name");
    EXPECT_EQ(explain["facts"]["dlna"]["source"], "file-name");
    EXPECT_EQ(
        explain["facts"]["extension"],
        nlohmann::json::parse(R"({"source": "types-file", "detail": "audio/L16;rate=44100;channels=2"})"));
    EXPECT_EQ(explain["facts"]["size"]["source"], "stream");
    EXPECT_EQ(explain["entries"], nlohmann::json::parse(R"([
        {"entry": "lpcm", "excluded": false, "pass": "extension", "result": "won"}])"));
    EXPECT_EQ(explain["tried"], nlohmann::json::parse(R"([
        {"type": "*", "parser": "ezMimeTypesDotIniParser", "result": "answered"},
        {"type": "lpcm", "parser": null, "result": "no-parser"},
        {"type": "any", "parser": "MagicParser", "result": "declined"}])"));
}

TEST(Explain, NamesTheParserThatReadAFactNotOneThatHadItRead) {
    const TemporaryFolder folder;
    const std::string path = folder.Path("harbour.mp3");
    std::filesystem::copy_file(EZ_SAMPLES "/pictures/harbour.jpg", path);
    const nlohmann::json media = nlohmann::json::parse(Announce({"--explain", "--json", path}).mOut);
    const nlohmann::json& explain = media["explain"];
    EXPECT_EQ(explain["facts"]["picture_width"],
              nlohmann::json::parse(R"({"source": "parser", "detail": "jpg", "parser": "JPEGParser"})"));
    EXPECT_EQ(explain["tried"][3],
              nlohmann::json::parse(R"({"type": "any", "parser": "MagicParser", "result": "answered"})"));
    EXPECT_EQ(explain["tried"][4],
              nlohmann::json::parse(R"({"type": "jpg", "parser": "JPEGParser", "result": "answered"})"));
}

TEST(Explain, LeavesAFactToTheParserWhereTheFileNameOnlySaysTheSame) {
    const std::string path = EZ_SAMPLES "/conformance/B-JPEG_S-1.jpg";
    const nlohmann::json media =
        nlohmann::json::parse(Announce({"--explain", "--json", "--ctt", "2", path}).mOut);
    EXPECT_EQ(media["explain"]["facts"]["mime_type"]["source"], "parser");
    EXPECT_EQ(media["explain"]["facts"]["dlna"]["source"], "file-name"); // it is shorter than the parser's
}

TEST(Explain, OfAnEmptyFolderShowsNothing) {
    const TemporaryFolder folder;
    EXPECT_EQ(Announce({"--explain", folder.GetPath()}).mOut, "");
}

/// Answers with what a test lays down, or declines.
class LaidDownParser : public ezMediaParser {
public:
    using Fill = std::function<void(ezMediaInfo&)>;

    LaidDownParser(const char* aType, Fill aFill)
        : ezMediaParser(aType, nullptr, false), mFill(std::move(aFill)) {}

    ezMediaInfo* Parse(ezMediaParserStream& /*aStream*/) override {
        if (!mFill) {
            return nullptr;
        }
        ezMediaInfo* info = new ezMediaInfo;
        mFill(*info);
        return info;
    }
    bool AdjustDLNAInfo(ezMediaInfo* /*anInfo*/) override { return false; }

private:
    Fill mFill;
};

namespace {

constexpr const char* kTypes = "[MimeTypesExcluded]\n"
                               "hid=hid@audio/hid\n"
                               "[MimeTypes]\n"
                               "one=med@audio/one@item.audioItem@two,lost\n"
                               "three=med@audio/three@item.videoItem@two\n"
                               "mp3=mp3,mpga@audio/mpeg@item.audioItem\n"
                               "wma=wma@audio/x-ms-wma@item.audioItem\n"
                               "none=non@audio/none@item.audioItem\n"
                               "shown=hid@audio/shown@item.audioItem\n";

/// A host with a media types file and parsers of the test's own.
class ExplainedHost {
public:
    explicit ExplainedHost(unsigned aCTTContext = 0, int aParseOptions = 0) {
        mFolder.Write(kezMediaTypesFileName, kTypes);
        Arguments arguments;
        arguments.mfExplain = true;
        arguments.mCTTContext = aCTTContext;
        arguments.mParseOptions = aParseOptions;
        arguments.mConfigFolder = mFolder.GetPath();
        mHost = std::make_unique<Host>(arguments);
    }

    ExplainedHost& Add(const char* aType, LaidDownParser::Fill aFill) {
        mHost->Get().GetManager().Add(new LaidDownParser(aType, std::move(aFill)));
        return *this;
    }

    Explanation Explain(const std::string& aName) {
        std::string reason;
        mAnnouncement = Announcement();
        EXPECT_TRUE(mHost->Announce(mFolder.Write(aName, "content"), mAnnouncement, reason)) << reason;
        return *mAnnouncement.mExplanation;
    }

    const Announcement& Last() const { return mAnnouncement; }

private:
    TemporaryFolder mFolder;
    std::unique_ptr<Host> mHost;
    Announcement mAnnouncement;
};

/// Name, or key where there is none, to source in words.
std::map<std::string, std::string> SourcesOf(const Explanation& anExplanation) {
    std::map<std::string, std::string> sources;
    for (const ExplainedFact& fact : anExplanation.mFacts) {
        sources[fact.mFact.mName.empty() ? fact.mFact.mKey : fact.mFact.mName] = InWords(fact.mSource);
    }
    return sources;
}

std::vector<std::string> AttemptsOf(const Explanation& anExplanation) {
    std::vector<std::string> attempts;
    for (const ExplainedAttempt& attempt : anExplanation.mAttempts) {
        attempts.push_back(std::string(attempt.mDepth, ' ') + InWords(attempt));
    }
    return attempts;
}

using Lines = std::vector<std::string>;

void FillAudio(ezMediaInfo& anInfo) {
    anInfo.Set(kezInfo_AudioTrackCount, 1, true);
    anInfo.Set(kezInfo_AudioBitRate, 128000, true);
    anInfo.Set("xx", "passed", true);
    anInfo.mTitle = "A Title";
}

} // namespace

TEST(Explain, TellsAParserFromTheEntryAndTheDerivedRates) {
    ExplainedHost host;
    host.Add("mp3", FillAudio);
    const std::map<std::string, std::string> sources = SourcesOf(host.Explain("song.mpga"));
    const std::string parser = "parser mp3 (LaidDownParser)";
    const std::string entry = "entry \"mp3\" of the media types file";
    const std::string rates = "derived from the other bit rates";
    const std::map<std::string, std::string> expected = {
        {"audio_tracks", parser},
        {"audio_bit_rate", parser},
        {"xx", parser},
        {"title", parser},
        {"mime_type", entry},
        {"class", entry},
        {"extension", "first extension of audio/mpeg in the media types file"},
        {"bit_rate", rates},
        {"max_bit_rate", rates},
        {"estimated_bit_rate", rates},
        {"audio_max_bit_rate", rates},
        {"audio_estimated_bit_rate", rates},
        {"size", "stream"},
        {"modified", "stream"}};
    EXPECT_EQ(sources, expected);
}

TEST(Explain, CountsARateThatBecameVariableAsDerived) {
    ExplainedHost host;
    host.Add("mp3", [](ezMediaInfo& anInfo) {
        FillAudio(anInfo);
        anInfo.Set(kezInfo_AudioMaxBitRate, 192000, true);
    });
    const std::map<std::string, std::string> sources = SourcesOf(host.Explain("song.mp3"));
    EXPECT_EQ(sources.at("audio_bit_rate"), "derived from the other bit rates");
    EXPECT_EQ(sources.at("audio_max_bit_rate"), "parser mp3 (LaidDownParser)");
}

TEST(Explain, ListsParsersThatDeclinedAndWhatTheirEntriesAskedFor) {
    ExplainedHost host;
    host.Add("one", nullptr).Add("one", nullptr).Add("two", nullptr).Add("THREE", FillAudio);
    const Explanation explanation = host.Explain("a.med");
    EXPECT_EQ(
        AttemptsOf(explanation),
        (Lines{"* (ezMimeTypesDotIniParser): answered", " one (LaidDownParser): declined, no reason given",
               " one (LaidDownParser): declined, no reason given",
               " two (LaidDownParser): declined, no reason given", " lost: there is no such parser",
               " three (LaidDownParser): answered"}));
    const std::map<std::string, std::string> sources = SourcesOf(explanation);
    EXPECT_EQ(sources.at("mime_type"), "entry \"three\" of the media types file");
    EXPECT_EQ(sources.at("title"), "parser three (LaidDownParser)");
}

TEST(Explain, TellsAParserThatWasTriedBefore) {
    ExplainedHost host;
    host.Add("two", nullptr);
    const Explanation explanation = host.Explain("a.med");
    EXPECT_EQ(AttemptsOf(explanation),
              (Lines{"* (ezMimeTypesDotIniParser): answered", " one: there is no such parser",
                     " two (LaidDownParser): declined, no reason given", " lost: there is no such parser",
                     " three: there is no such parser", " two: tried before"}));
    // Nobody answered, so the last entry of the extension made the record.
    EXPECT_EQ(SourcesOf(explanation).at("mime_type"), "entry \"three\" of the media types file");
    EXPECT_EQ(SourcesOf(explanation).at("extension"), "entry \"three\" of the media types file");
}

TEST(Explain, ForgetsTheRequestBefore) {
    ExplainedHost host;
    host.Add("mp3", FillAudio);
    host.Explain("a.mp3");
    const Explanation second = host.Explain("b.non");
    EXPECT_EQ(AttemptsOf(second),
              (Lines{"* (ezMimeTypesDotIniParser): answered", " none: there is no such parser"}));
    EXPECT_EQ(SourcesOf(second).at("mime_type"), "entry \"none\" of the media types file");
}

TEST(Explain, TellsAParserForAnyMediaThatAnsweredBesideTheMediaTypesFile) {
    ExplainedHost host;
    host.Add("*", [](ezMediaInfo& anInfo) { anInfo.Set(kezInfo_MimeType, "audio/any", true); });
    const Explanation explanation = host.Explain("a.unheard");
    EXPECT_EQ(AttemptsOf(explanation),
              (Lines{"* (ezMimeTypesDotIniParser): declined", "* (LaidDownParser): answered"}));
    EXPECT_EQ(SourcesOf(explanation).at("mime_type"), "parser * (LaidDownParser)");
    EXPECT_EQ(SourcesOf(explanation).at("extension"), "stream");
    EXPECT_TRUE(explanation.mEntries.empty());
}

TEST(Explain, DropsTheRecordToWhichAnExcludedEntryLed) {
    ExplainedHost host;
    host.Add("hid", FillAudio);
    const Explanation explanation = host.Explain("a.hid");
    EXPECT_FALSE(host.Last().mfRecognised);
    // The entry that follows, "shown", was not considered any more.
    EXPECT_EQ(InWords(explanation.mEntries), Lines{"hid (excluded)"});
    EXPECT_EQ(explanation.mEntries[0].mResult, ezEntryResult::Excluded);
    EXPECT_EQ(AttemptsOf(explanation),
              (Lines{"* (ezMimeTypesDotIniParser): declined", " hid (LaidDownParser): answered"}));
    EXPECT_TRUE(explanation.mFacts.empty());
}

TEST(Explain, TakesTheRecordOfAnEntryForWhatItIsWhenAnAnswerWasDropped) {
    // All entries are tried first, which the excluded one ends; the extension then makes a record.
    ExplainedHost host(0, 4);
    host.Add("hid", FillAudio);
    const Explanation explanation = host.Explain("a.wma");
    EXPECT_TRUE(host.Last().mfRecognised);
    EXPECT_EQ(SourcesOf(explanation).at("mime_type"), "entry \"wma\" of the media types file");
    EXPECT_EQ(SourcesOf(explanation).count("title"), 0U);
}

TEST(Explain, FindsTheEntryAmongAllWhereAllAreTried) {
    ExplainedHost host(0, 4);
    host.Add("mp3", FillAudio);
    const Explanation explanation = host.Explain("a.wma");
    EXPECT_EQ(SourcesOf(explanation).at("mime_type"), "entry \"mp3\" of the media types file");
}

TEST(Explain, TellsTheFileNameOnlyWhereItCounts) {
    const auto fillOwn = [](ezMediaInfo& anInfo) {
        FillAudio(anInfo);
        anInfo.Set(kezInfo_MimeType, "audio/own", true);
        anInfo.Set(kezInfo_ClassName, "item.audioItem.own", true);
        anInfo.Set(kezInfo_DLNA, "DLNA.ORG_PN=OWN", true);
    };
    const std::string parser = "parser wma (LaidDownParser)";
    const std::string name = "file name (conformance test)";
    {
        ExplainedHost host(1);
        host.Add("wma", fillOwn);
        const std::map<std::string, std::string> sources = SourcesOf(host.Explain("B-WAB-1.wma"));
        EXPECT_EQ(sources.at("mime_type"), parser);
        EXPECT_EQ(sources.at("dlna"), parser);
    }
    {
        ExplainedHost host(2);
        host.Add("wma", fillOwn);
        const std::map<std::string, std::string> sources = SourcesOf(host.Explain("B-WAB-1.wma"));
        EXPECT_EQ(sources.at("mime_type"), name);
        EXPECT_EQ(sources.at("dlna"), name);
        EXPECT_EQ(sources.at("class"), parser);
        EXPECT_EQ(sources.at("audio_bit_rate"), parser);
        EXPECT_EQ(sources.count("bit_rate"), 0U); // cleared, so not known
    }
    {
        ExplainedHost host(1);
        const std::map<std::string, std::string> sources = SourcesOf(host.Explain("B-WAB-1.wma"));
        EXPECT_EQ(sources.at("mime_type"), name);
        EXPECT_EQ(sources.at("class"), name);
    }
    {
        ExplainedHost host(0);
        const std::map<std::string, std::string> sources = SourcesOf(host.Explain("B-WAB-1.wma"));
        EXPECT_EQ(sources.at("mime_type"), "entry \"wma\" of the media types file");
    }
}

TEST(Explain, TakesNothingDownUnlessAsked) {
    const TemporaryFolder folder;
    folder.Write(kezMediaTypesFileName, kTypes);
    Arguments arguments;
    arguments.mConfigFolder = folder.GetPath();
    Host host(arguments);
    Announcement announcement;
    std::string reason;
    ASSERT_TRUE(host.Announce(folder.Write("a.mp3", ""), announcement, reason));
    EXPECT_TRUE(announcement.mfRecognised);
    EXPECT_EQ(announcement.mExplanation, nullptr);
}

TEST(Explain, AnswersTheSameWhetherItTakesDownOrNot) {
    for (const char* context : {"0", "1", "2"}) {
        const std::vector<std::string> plain =
            LinesOf(Announce({"--json", "--ctt", context, EZ_SAMPLES}).mOut);
        const std::vector<std::string> explained =
            LinesOf(Announce({"--json", "--explain", "--ctt", context, EZ_SAMPLES}).mOut);
        ASSERT_EQ(plain.size(), explained.size());
        for (std::size_t i = 0; i < plain.size(); ++i) {
            nlohmann::json media = nlohmann::json::parse(explained[i]);
            media.erase("explain");
            EXPECT_EQ(media, nlohmann::json::parse(plain[i]));
        }
    }
}

TEST(Explain, ShowsTheSubtitlesNextToAFilm) {
    const TemporaryFolder folder;
    const std::string film = folder.Write("Film.mp4", ReadWholeFile(EZ_SAMPLES "/video/kite-day.mp4"));
    folder.Write("Film.en.sdh.default.srt", "1\n00:00:28,050 --> 00:00:30,550\n");
    folder.Write("Subs/Film.\x1B[31m.de.vtt", "WEBVTT\n");
    const std::string text = Announce({"--explain", film}).mOut;
    const std::string lines =
        "\n  subtitle files   Film.en.sdh.default.srt           srt, en, hearing impaired, default, UTF-8\n"
        "                   Subs/Film.\\x1b[31m.de.vtt         vtt, de, UTF-8, \"[31m\"\n"
        "  entries ";
    EXPECT_NE(text.find(lines), std::string::npos) << text;
    EXPECT_EQ(Announce({film}).mOut.find("Film.en"), std::string::npos); // the table does not ask
    EXPECT_EQ(Announce({"--explain", EZ_SAMPLES "/music/morning-walk.mp3"}).mOut.find("subtitle files"),
              std::string::npos);
    for (const char* name : {"SUBS", "SUBs", "SUbs", "subs"}) { // more than are looked into
        folder.MakeFolder(name);
    }
    const std::string more = Announce({"--explain", film}).mOut;
    EXPECT_NE(more.find("                   -                                 more may be there\n"),
              std::string::npos)
        << more;
}
