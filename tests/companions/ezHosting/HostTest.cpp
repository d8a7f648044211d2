#include "ezHosting/Host.h"

#include "support/AwkwardStream.h"
#include "support/Catchers.h"
#include "support/Folders.h"
#include "support/Record.h"
#include "support/ScriptedParser.h"
#include "support/Str.h"
#include "support/TemporaryFolder.h"
#include "support/Unprivileged.h"
#include "support/WholeFile.h"
#include "support/WorkingDirectory.h"

#include "ez/DLNAMediaMapper.h"
#include "ez/ExtensionMimeTypeMatcher.h"
#include "ez/FileMediaParserStream.h"
#include "ez/MediaParserManager.h"
#include "ez/PlaylistParserFactory.h"
#include "ezFormats/ProfileRules.h"
#include "ezPlatform/containers/Array.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <set>
#include <stdexcept>
#include <sys/stat.h>
#include <thread>
#include <type_traits>

namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

constexpr const char* kIni = "mediaCTRLMediaTypes.ini";
const std::string kWalk = EZ_SAMPLES "/music/morning-walk.mp3";
const std::string kMP3 = "DLNA.ORG_PN=MP3;DLNA.ORG_OP=01;DLNA.ORG_FLAGS=01500000000000000000000000000000";

static_assert(!std::is_copy_constructible_v<ezHost> && !std::is_copy_assignable_v<ezHost>);
static_assert(std::is_default_constructible_v<ezHost>);

/// A folder with a table of one line, or of these.
class ConfigFolder : public TemporaryFolder {
public:
    explicit ConfigFolder(const std::string& aLines = "a=a@audio/a@item.audioItem\n") {
        Write(kIni, "[MimeTypes]\n" + aLines);
    }
};

/// What Identify makes of a file: the MIME type, else the error, else "not recognised".
std::string Told(ezHost& aHost, const std::string& aPath) {
    const Record info = aHost.Identify(aPath);
    if (info != nullptr) {
        EXPECT_EQ(aHost.GetError(), "");
        return Str(info->GetCString(kezInfo_MimeType, ""));
    }
    return aHost.GetError().empty() ? "not recognised" : aHost.GetError();
}

/// The options that one statement makes.
ezHostOptions With(const std::function<void(ezHostOptions&)>& aSet) {
    ezHostOptions options;
    aSet(options);
    return options;
}

} // namespace

TEST(Host, OfAFolderIdentifiesFiles) {
    ezHost host(EZ_SAMPLES);
    ASSERT_TRUE(host.IsReady()) << host.GetError();
    EXPECT_EQ(host.GetError(), "");
    const Record info = host.Identify(kWalk);
    ASSERT_NE(info, nullptr) << host.GetError();
    EXPECT_EQ(Str(info->GetCString(kezInfo_MimeType, "")), "audio/mpeg");
    EXPECT_EQ(Str(info->GetCString(kezInfo_DLNA, "")), kMP3);
    EXPECT_EQ(Str(info->mFullPath), kWalk);
}

TEST(Host, AnswersLikeAManagerThatIsMadeByHand) {
    ezHost host(EZ_SAMPLES);
    for (const char* name : {"/music/evening-train.m4a", "/pictures/harbour.png", "/video/kite-day.mp4",
                             "/README.md", "/formats/vbr-with-header.mp3"}) {
        const std::string path = std::string(EZ_SAMPLES) + name;
        ezFileMediaParserStream stream{ezCString(path)};
        ASSERT_TRUE(stream.Open());
        const Record byHand(host.GetManager().Parse(stream));
        EXPECT_EQ(DumpRecord(host.Identify(path).get()), DumpRecord(byHand.get())) << name;
    }
}

TEST(Host, WithoutAFolderFindsItsConfiguration) {
    const ConfigFolder folder;
    const std::string media = folder.Write("song.a", "");
    const WorkingDirectory working(folder.GetPath());
    ezHost host;
    EXPECT_TRUE(host.IsReady()) << host.GetError();
    EXPECT_EQ(host.GetFolders().mReadOnly, ".");
    EXPECT_EQ(Told(host, media), "audio/a");
}

TEST(Host, HandsBothFoldersDown) {
    // A stray table in the working directory lies over none of a folder that was given.
    const ConfigFolder working("a=a@audio/stray@item.audioItem\n");
    const ConfigFolder given("a=a@audio/given@item.audioItem\n");
    const TemporaryFolder state;
    const std::string media = given.Write("song.a", "");
    const WorkingDirectory there(working.GetPath());
    ezHost host(given.GetPath());
    EXPECT_EQ(Told(host, media), "audio/given");
    state.Write(kIni, "[MimeTypes]\na=a@audio/state@item.audioItem\n");
    ezHost over(given.GetPath(), With([&](auto& some) { some.mStateFolder = state.GetPath(); }));
    EXPECT_EQ(Told(over, media), "audio/state");
    EXPECT_EQ(over.GetCapabilities().back(), "http-get:*:audio/state:*");
}

TEST(Host, TellsWhatCannotBeReadFromWhatIsNotRecognised) {
    const ConfigFolder folder;
    const std::string media = folder.Write("song.a", "");
    const std::string letter = folder.Write("letter.txt", "hello");
    const std::string secret = folder.Write("secret.a", "");
    fs::permissions(secret, fs::perms::none);
    const std::string pipe = folder.Path("pipe.a");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const std::string cycle = folder.Path("cycle.a");
    fs::create_symlink("cycle.a", cycle);
    fs::permissions(folder.GetPath(), fs::perms::all);
    const Unprivileged unprivileged;
    const std::string withNUL = media + std::string("\0.a", 3);
    const std::string megabytes = folder.Path(std::string(5'000'000, 'x'));
    const std::pair<std::string, std::string> rows[] = {
        {media, "audio/a"},
        {letter, "not recognised"},
        {folder.Path("none.a"), folder.Path("none.a") + ": not found"},
        {media, "audio/a"}, // and the error is gone
        {folder.GetPath(), folder.GetPath() + ": not a regular file"},
        {letter, "not recognised"},
        {media + "/a.a", media + "/a.a: not found"},
        {secret, secret + ": Permission denied"},
        {pipe, pipe + ": not a regular file"},
        {cycle, cycle + ": Too many levels of symbolic links"},
        {withNUL, media + "?.a: not found"},
        {media + "\nlog line", media + "?log line: not found"},
        {megabytes, megabytes.substr(0, 1024) + "...: File name too long"},
        {"", ": not found"},
    };
    ezHost host(folder.GetPath());
    for (const auto& [path, expected] : rows) {
        EXPECT_EQ(Told(host, path), expected);
        EXPECT_TRUE(host.IsReady());
    }
}

TEST(Host, IdentifiesWhatAStreamBrings) {
    ezHost host(EZ_SAMPLES);
    const std::string song = ReadWholeFile(kWalk);
    ezFileMediaParserStream file{ezCString(kWalk)};
    const std::string unopened = DumpRecord(host.Identify(file).get());
    EXPECT_NE(unopened.find("dl=\"" + kMP3 + "\""), std::string::npos) << unopened;
    EXPECT_NE(unopened.find("fs=32309\n"), std::string::npos);
    EXPECT_EQ(DumpRecord(host.Identify(file).get()), unopened); // open by now
    ASSERT_TRUE(file.Seek(20000, ezMediaParserStream::SeekFromStart, true));
    EXPECT_EQ(DumpRecord(host.Identify(file).get()), unopened); // from its start
    // Of one that moves forward alone.
    Delivery delivery;
    delivery.mMaximumRead = 100;
    delivery.mfSizeKnown = false;
    AwkwardStream trickle(song, delivery, "/media/walk.mp3");
    const Record info = host.Identify(trickle);
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(Str(info->GetCString(kezInfo_MimeType, "")), "audio/mpeg");
}

TEST(Host, SaysOfAStreamThatItCannotBeOpenedOrIsPastItsStart) {
    class Shut : public AwkwardStream {
    public:
        using AwkwardStream::AwkwardStream;
        bool Open() override { return false; }
    };
    ezHost host(EZ_SAMPLES);
    Shut shut("", Delivery(), "/media/shut.mp3");
    EXPECT_EQ(host.Identify(shut), nullptr);
    EXPECT_EQ(host.GetError(), "/media/shut.mp3: cannot be opened");
    Delivery delivery;
    delivery.mfSeekable = false;
    AwkwardStream past(std::string(20000, 'x'), delivery, "/media/past.mp3");
    std::string bytes(10000, '\0');
    ASSERT_TRUE(past.Read(bytes.size(), bytes.data()));
    EXPECT_EQ(host.Identify(past), nullptr);
    EXPECT_EQ(host.GetError(), "/media/past.mp3: cannot be read from its start");
    EXPECT_EQ(Told(host, kWalk), "audio/mpeg");
}

TEST(Host, ThatIsNotReadyIsSafeToUse) {
    const TemporaryFolder empty;
    ezHost host(empty.GetPath(), With([](auto& some) { some.mfMediaMapper = true; }));
    const std::string error = "no media types: " + empty.Path(kIni) + ": not found";
    EXPECT_FALSE(host.IsReady());
    EXPECT_EQ(host.GetError(), error);
    EXPECT_EQ(host.Identify(kWalk), nullptr);
    EXPECT_EQ(host.Identify("/nowhere"), nullptr);
    ezFileMediaParserStream stream{ezCString(kWalk)};
    EXPECT_EQ(host.Identify(stream), nullptr);
    EXPECT_EQ(host.GetError(), error);
    EXPECT_EQ(host.GetCapabilities(), Lines{});
    EXPECT_EQ(host.GetCapabilities(true), Lines{});
    EXPECT_NE(host.GetManager().GetMimeTypesDotIniParser(), nullptr);
    EXPECT_EQ(Str(host.GetMediaTypes().FileExtensionToMimeType("mp3")), "application/octet-stream");
    EXPECT_EQ(host.GetMediaMapper(), nullptr);
    EXPECT_EQ(host.GetPlaylists(), nullptr);
    EXPECT_EQ(host.GetThumbnails(), nullptr);
    EXPECT_FALSE(host.IsReady());
}

TEST(Host, WithoutATableIsReadyWhereThatIsAllowed) {
    for (const char* kind : {"missing", "empty", "folder", "binary"}) {
        const TemporaryFolder folder;
        const std::string which = kind;
        if (which == "folder") {
            folder.MakeFolder(kIni);
        } else if (which != "missing") {
            folder.Write(kIni, which == "empty" ? "" : std::string("\0\xFF[[\x01=@@\n\0", 10));
        }
        ezHost strict(folder.GetPath());
        const char* const why = which == "folder"    ? "not a regular file"
                                : which == "missing" ? "not found"
                                                     : "no types were read from it";
        EXPECT_FALSE(strict.IsReady());
        EXPECT_EQ(strict.GetError(), "no media types: " + folder.Path(kIni) + ": " + why);
        ezHost host(folder.GetPath(), With([](auto& some) { some.mfTableRequired = false; }));
        EXPECT_TRUE(host.IsReady());
        EXPECT_EQ(Told(host, kWalk), "not recognised");
        EXPECT_EQ(host.GetCapabilities().front(), "http-get:*:audio/mpeg:DLNA.ORG_PN=MP3");
    }
}

TEST(Host, OfATableThatMayNotBeReadSaysSo) {
    const ConfigFolder folder;
    fs::permissions(folder.Path(kIni), fs::perms::none);
    fs::permissions(folder.GetPath(), fs::perms::all);
    const Unprivileged unprivileged;
    ezHost host(folder.GetPath());
    EXPECT_EQ(host.GetError(), "no media types: " + folder.Path(kIni) + ": Permission denied");
}

TEST(HostChoices, AreThereOrAreErrors) {
    const ConfigFolder folder;
    const TemporaryFolder withMapper;
    withMapper.Write(kIni, ReadWholeFile(folder.Path(kIni)));
    withMapper.Write("MediaMapper.txt", "song.a,audio/a,A,0:02:05\n");
    const TemporaryFolder broken;
    broken.Write(kIni, ReadWholeFile(folder.Path(kIni)));
    broken.Write("MediaMapper.txt", "song.a,audio/a,A,0:02:05\n");
    broken.MakeFolder("_MediaMapper.txt");
    const bool fPlaylists =
#ifdef EZ_HAS_PLAYLISTS
        true;
#else
        false;
#endif
    const bool fThumbnails =
#ifdef EZ_HAS_THUMBNAILS
        true;
#else
        false;
#endif
    struct {
        std::string mFolder;
        std::function<void(ezHostOptions&)> mSet;
        std::string mError;
        std::string mThere; ///< of mapper, playlists and thumbnails
    } const rows[] = {
        {folder.GetPath(), [](auto&) {}, "", ""},
        {withMapper.GetPath(), [](auto& some) { some.mfMediaMapper = true; }, "", "m"},
        {folder.GetPath(), [](auto& some) { some.mfMediaMapper = true; },
         "no media mapper: " + folder.Path("_MediaMapper.txt") + ": not found; " +
             folder.Path("MediaMapper.txt") + ": not found",
         ""},
        {broken.GetPath(), [](auto& some) { some.mfMediaMapper = true; },
         "no media mapper: Unable to open media mapper file: '" + broken.Path("_MediaMapper.txt") + "'", ""},
        {folder.GetPath(), [](auto& some) { some.mfPlaylists = true; },
         fPlaylists ? "" : "no playlists: this library was built without ezPlaylists", fPlaylists ? "p" : ""},
        {folder.GetPath(),
         [&](auto& some) {
             some.mfThumbnails = true;
             some.mThumbnailFolder = folder.GetPath();
         },
         fThumbnails ? "" : "no thumbnails: this library was built without ezThumbnails",
         fThumbnails ? "t" : ""},
        {folder.GetPath(), [](auto& some) { some.mfThumbnails = true; },
         "no thumbnails: no folder for their cache is named", ""},
        {withMapper.GetPath(),
         [&](auto& some) {
             some.mfMediaMapper = some.mfPlaylists = some.mfThumbnails = fPlaylists && fThumbnails;
             some.mThumbnailFolder = folder.GetPath();
         },
         "", fPlaylists && fThumbnails ? "mpt" : ""},
    };
    for (const auto& row : rows) {
        ezHost host(row.mFolder, With(row.mSet));
        EXPECT_EQ(host.GetError(), row.mError);
        EXPECT_EQ(host.IsReady(), row.mError.empty());
        std::string there = host.GetMediaMapper() != nullptr ? "m" : "";
        there += host.GetPlaylists() != nullptr ? "p" : "";
        there += host.GetThumbnails() != nullptr ? "t" : "";
        EXPECT_EQ(there, row.mThere) << row.mError;
        EXPECT_EQ(Told(host, kWalk), row.mError.empty() ? "not recognised" : row.mError);
    }
}

TEST(HostChoices, WithoutFormatsLeaveTheExtension) {
    ezHost host(EZ_SAMPLES, With([](auto& some) { some.mfFormats = false; }));
    const Record info = host.Identify(kWalk);
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(Str(info->GetCString(kezInfo_MimeType, "")), "audio/mpeg");
    EXPECT_FALSE(info->Has(kezInfo_DLNA));
    const Lines capabilities = host.GetCapabilities();
    EXPECT_EQ(std::count(capabilities.begin(), capabilities.end(), "http-get:*:audio/mpeg:*"), 1);
}

TEST(HostChoices, ReachTheLibrary) {
    ScriptedParser* parser = nullptr;
    ParserTrace trace;
    ezHostOptions options;
    options.mCTTContext = kProperty_CTTContext_NameHelps;
    options.mSpecsLevel = kProperty_Parser_SpecsLevel_Advanced;
    options.mTextCodePage = "windows-1251";
    options.mParseOptions = kParseOption_ParseWithAllParserIfNoExtension;
    options.mAddParsers = [&](ezMediaParserManager& aManager) {
        parser = new ScriptedParser(trace, "own", "a");
        aManager.Add(parser);
    };
    const ConfigFolder folder;
    ezHost host(folder.GetPath(), options);
    ASSERT_NE(parser, nullptr);
    EXPECT_EQ(parser->GetCTTContext(), 1U);
    ezPropertyList* const environment = parser->mEnvironmentInfo;
    EXPECT_EQ(ezPropertyList_Get_uint32(environment, kProperty_Parser_SpecsLevel), 2U);
    EXPECT_STREQ(ezPropertyList_Get_charPtr(environment, kProperty_TextCodePage), "windows-1251");
    EXPECT_STREQ(ezPropertyList_Get_charPtr(environment, kProperty_ReadOnlyConfigPath),
                 folder.GetPath().c_str());
    trace.clear();
    EXPECT_EQ(Told(host, folder.Write("plain", "bytes")), "not recognised");
    EXPECT_EQ(trace, (ParserTrace{"parse own @0"})); // though there is no extension
}

TEST(HostChoices, OfProfileRulesReachTheFormats) {
    ezHostOptions options;
    options.mProfileRules = ProfileRules::FromText("MP3X audio/mpeg audio-codec=MP3\n", nullptr);
    ASSERT_NE(options.mProfileRules, nullptr);
    ezHost host(EZ_SAMPLES, options);
    const Record info = host.Identify(kWalk);
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(Str(info->GetCString(kezInfo_DLNA, "")).substr(0, 17), "DLNA.ORG_PN=MP3X;");
}

TEST(HostChoices, OfACodePageThatIsNotKnownAreAWarning) {
    const LogCatcher log(3);
    ezHost host(EZ_SAMPLES, With([](auto& some) { some.mTextCodePage = "klingon"; }));
    EXPECT_TRUE(host.IsReady());
    EXPECT_EQ(log.Texts(), (Lines{"TextCodePage: this system knows no such code page; texts without one are "
                                  "read as Windows-1252\n"}));
}

TEST(HostParsers, OfTheCallerAreTriedFirstAndDeletedWithTheHost) {
    ParserTrace trace;
    {
        ezHost host(EZ_SAMPLES, With([&](auto& some) {
                        some.mAddParsers = [&](ezMediaParserManager& aManager) {
                            aManager.Add((new ScriptedParser(trace, "own", "mp3"))->Answering("audio/own"));
                        };
                    }));
        host.GetManager().Add((new ScriptedParser(trace, "late", "mp3"))->Answering("audio/late"));
        EXPECT_EQ(Told(host, kWalk), "audio/own");
    }
    EXPECT_EQ(std::count(trace.begin(), trace.end(), "delete own"), 1);
    EXPECT_EQ(std::count(trace.begin(), trace.end(), "delete late"), 1);
    EXPECT_EQ(std::count(trace.begin(), trace.end(), "parse late @0"), 0);
}

TEST(HostParsers, AddedLaterAreTriedAfterTheFormats) {
    ParserTrace trace;
    ezHost host(EZ_SAMPLES);
    host.GetManager().Add((new ScriptedParser(trace, "late", "mp3"))->Answering("audio/late"));
    const TemporaryFolder folder;
    EXPECT_EQ(Told(host, folder.Write("letter.mp3", "no sound")), "audio/late"); // no format parser answers
    EXPECT_EQ(Told(host, kWalk), "audio/mpeg");
}

TEST(HostParsers, ThatThrowLeaveTheConstructorAndNothingElse) {
    ParserTrace trace;
    const ezHostOptions options = With([&](auto& some) {
        some.mAddParsers = [&](ezMediaParserManager& aManager) {
            aManager.Add(new ScriptedParser(trace, "own", "a"));
            throw std::runtime_error("no licence");
        };
    });
    EXPECT_THROW(ezHost(EZ_SAMPLES, options), std::runtime_error);
    EXPECT_EQ(trace.back(), "delete own");
}

TEST(HostCapabilities, NameEachProtocolInfoOnce) {
    ezHost host(EZ_SAMPLES);
    const Lines all = host.GetCapabilities();
    const std::set<std::string> distinct(all.begin(), all.end());
    EXPECT_EQ(distinct.size(), all.size());
    EXPECT_GE(all.size(), 60U);
    EXPECT_EQ(all, host.GetCapabilities());
    EXPECT_EQ(all.front(), "http-get:*:audio/mpeg:DLNA.ORG_PN=MP3");
    EXPECT_EQ(distinct.count("http-get:*:video/x-matroska:*"), 1U); // of the table alone
    EXPECT_EQ(distinct.count("http-get:*:application/pdf:*"), 0U);  // which excludes it
}

TEST(HostCapabilities, HaveParsersThenTheTableThenTheMapper) {
    const ConfigFolder folder("a=a@audio/a@item.audioItem\nmp3=mp3@audio/own@item.audioItem\n"
                              "bad=b@audio b@item.audioItem\n");
    folder.Write("MediaMapper.txt", "a.a,audio/a,A,0:02:05,,00000111\nb.a,audio/own,,0:02:05\n");
    ParserTrace trace;
    const auto declare = [&](ezMediaParserManager& aManager, const char* aText) {
        aManager.Add((new ScriptedParser(trace, aText, "own"))->Declaring(aText));
    };
    ezHostOptions options;
    options.mfFormats = false;
    options.mfMediaMapper = true;
    options.mAddParsers = [&](auto& aManager) {
        declare(aManager, "audio/own:*,audio/x:X");
        declare(aManager, "audio/x:X,audio/own:*");
    };
    ezHost host(folder.GetPath(), options);
    ASSERT_TRUE(host.IsReady()) << host.GetError();
    declare(host.GetManager(), "audio/late:*,audio/a:*");
    EXPECT_EQ(host.GetCapabilities(),
              (Lines{"http-get:*:audio/own:*", "http-get:*:audio/x:X", "http-get:*:audio/late:*",
                     "http-get:*:audio/a:*", "http-get:*:audio/a:DLNA.ORG_PN=A"}));
}

TEST(HostCapabilities, HaveALinkProtectedForm) {
    const ConfigFolder folder;
    ezHost host(folder.GetPath(), With([](auto& some) { some.mfFormats = false; }));
    EXPECT_EQ(host.GetCapabilities(true),
              (Lines{"http-get:*:application/x-dtcp1;CONTENTFORMAT=\"audio/a\":*"}));
}

TEST(HostMapper, WinsFromTheFirstStartOnAndHoldsEveryLineOnce) {
    const ConfigFolder folder;
    const TemporaryFolder state;
    const std::string media = folder.Write("song.a", "");
    folder.Write("MediaMapper.txt", "song.a,audio/mapped,NIGHT,0:02:05\n");
    ezHostOptions options;
    options.mfMediaMapper = true;
    options.mStateFolder = state.Path("state");
    for (int start = 0; start < 2; ++start) {
        ezHost host(folder.GetPath(), options);
        ASSERT_TRUE(host.IsReady()) << host.GetError();
        EXPECT_EQ(ezArray_GetCount(host.GetMediaMapper()->GetArray()), 1U) << start;
        const Record info = host.Identify(media);
        ASSERT_NE(info, nullptr);
        EXPECT_EQ(Str(info->GetCString(kezInfo_MimeType, "")), "audio/mapped");
        EXPECT_EQ(info->GetUInt32(kezInfo_Duration, 0), 125U);
        folder.Write("MediaMapper.txt", ""); // from here on the copy counts
        EXPECT_TRUE(fs::exists(state.Path("state/_MediaMapper.txt")));
    }
}

TEST(HostMapper, IsCopiedWholeByHostsThatStartAtOnce) {
    for (int round = 0; round < 20; ++round) {
        const ConfigFolder folder;
        std::string lines;
        for (int i = 0; i < 500; ++i) {
            lines += "song" + std::to_string(i) + ".a,audio/mapped,NIGHT,0:02:05\n";
        }
        folder.Write("MediaMapper.txt", lines);
        ezHostOptions options;
        options.mfMediaMapper = true;
        options.mfFormats = false;
        std::vector<std::string> told(4);
        std::vector<std::thread> threads;
        for (std::string& one : told) {
            threads.emplace_back([&] {
                const ezHost host(folder.GetPath(), options);
                DLNAMediaMapper* const mapper = host.GetMediaMapper();
                one = mapper != nullptr ? std::to_string(ezArray_GetCount(mapper->GetArray()))
                                        : host.GetError();
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        EXPECT_EQ(told, (std::vector<std::string>(4, "500")));
    }
}

TEST(HostMapper, OfTheCallerIsTakenOnce) {
    const ConfigFolder folder;
    const std::string media = folder.Write("song.a", "");
    folder.Write("_MediaMapper.txt", "song.a,audio/mapped,NIGHT,0:02:05\n");
    ezHost host(folder.GetPath());
    const auto newMapper = [&] {
        auto mapper = std::make_unique<DLNAMediaMapper>(host.GetManager().GetMimeTypesDotIniParser(), "",
                                                        folder.GetPath().c_str(), "", "MediaMapper.txt");
        EXPECT_FALSE(mapper->Load().IsError());
        return mapper;
    };
    EXPECT_EQ(Told(host, media), "audio/a");
    EXPECT_FALSE(host.UseMediaMapper(nullptr));
    std::unique_ptr<DLNAMediaMapper> first = newMapper();
    const DLNAMediaMapper* const taken = first.get();
    EXPECT_TRUE(host.UseMediaMapper(std::move(first)));
    EXPECT_FALSE(host.UseMediaMapper(newMapper()));
    EXPECT_EQ(host.GetMediaMapper(), taken);
    EXPECT_EQ(Told(host, media), "audio/mapped");
}

#ifdef EZ_HAS_PLAYLISTS
TEST(HostPlaylists, AreThoseOfTheCompanion) {
    ezHost host(EZ_SAMPLES, With([](auto& some) { some.mfPlaylists = true; }));
    ASSERT_TRUE(host.IsReady());
    for (const char* extension : {"m3u", "m3u8", "pls", "asx", "xspf", "wpl"}) {
        EXPECT_TRUE(host.GetPlaylists()->IsSupportedPlaylist("", extension)) << extension;
    }
    EXPECT_FALSE(host.GetPlaylists()->IsSupportedPlaylist("", "mp3"));
}
#endif

TEST(Hosts, AreIndependent) {
    const ConfigFolder one("a=a@audio/one@item.audioItem\n");
    const ConfigFolder two("a=a@audio/two@item.audioItem\n");
    const std::string media = one.Write("song.a", "");
    const ezHostOptions options;
    auto first = std::make_unique<ezHost>(one.GetPath(), options);
    ezHost second(two.GetPath(), options);
    EXPECT_EQ(Told(*first, media), "audio/one");
    EXPECT_EQ(Told(second, media), "audio/two");
    const Record kept = first->Identify(media);
    first.reset();
    EXPECT_EQ(Told(second, media), "audio/two");
    EXPECT_EQ(Str(kept->GetCString(kezInfo_MimeType, "")), "audio/one"); // the record outlives its host
}
