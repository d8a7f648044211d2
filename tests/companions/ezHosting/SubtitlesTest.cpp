#include "ezHosting/Subtitles.h"

#include "ezHosting/CancellableStream.h"
#include "ezHosting/Host.h"
#include "ezHosting/detail/SubtitleKinds.h"
#include "ezHosting/detail/SubtitleLimits.h"
#include "support/FaultySystem.h"
#include "support/Folders.h"
#include "support/Guide.h"
#include "support/TemporaryFolder.h"
#include "support/Unprivileged.h"
#include "support/WholeFile.h"
#include "support/WorkingDirectory.h"

#include "ez/ExtensionMimeTypeMatcher.h"
#include "ezPlatform/containers/Items.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <set>
#include <string>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr const char* kCue = "1\n00:00:28,050 --> 00:00:30,550\nHello\n";
const std::string kPictures("\0\0\1\xBA", 4); ///< a pack of a program stream
constexpr const char* kIndex = "# VobSub index file, v7\nid: en, index: 0\nid: fr, index: 1\n";

/// The media types of the samples.
ExtensionMimeTypeMatcher& Types() {
    static const std::unique_ptr<ExtensionMimeTypeMatcher> types = [] {
        auto made = std::make_unique<ExtensionMimeTypeMatcher>(EZ_SAMPLES, EZ_SAMPLES, "");
        made->Load();
        return made;
    }();
    return *types;
}

/// "Film.en.srt en forced", relative to a folder; a "?" last where more may be there.
std::vector<std::string> InWords(const ezSubtitles& aSubtitles, const std::string& aFolder) {
    std::vector<std::string> lines;
    for (const ezSubtitleFile& file : aSubtitles.mFiles) {
        EXPECT_EQ(file.mPath.compare(0, aFolder.size(), aFolder), 0) << file.mPath;
        std::string line = file.mPath.substr(aFolder.size());
        line += file.mLanguages.empty() ? "" : " " + file.mLanguages;
        line += file.mfForced ? " forced" : "";
        line += file.mfHearingImpaired ? " hearing" : "";
        line += file.mfDefault ? " default" : "";
        line += file.mTitle.empty() ? "" : " (" + file.mTitle + ")";
        lines.push_back(line);
    }
    if (!aSubtitles.mfWhole) {
        lines.push_back("?");
    }
    return lines;
}

using Lines = std::vector<std::string>;

Lines Find(const TemporaryFolder& aFolder, const std::string& aFilm) {
    ezSubtitleFinder finder(Types());
    return InWords(finder.Find(aFolder.Path(aFilm)), aFolder.GetPath() + "/");
}

/// A socket at a path; below 0 for none.
int Listen(const std::string& aPath) {
    struct sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    aPath.copy(static_cast<char*>(address.sun_path), sizeof(address.sun_path) - 1);
    const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const void* const bytes = &address;
    const bool fBound = bind(listener, static_cast<const struct sockaddr*>(bytes), sizeof(address)) == 0;
    return fBound ? listener : -1;
}

/// A folder with files, and what is told of films in it.
struct FolderRow {
    const char* mWhy;
    Lines mFiles; ///< of which the subtitles hold a cue
    std::vector<std::pair<const char*, Lines>> mFilms;
};

} // namespace

TEST(Subtitles, AreThoseThatTheirNamesGiveToAFilm) {
    const std::vector<FolderRow> rows = {
        {"the same base name, with languages and flags",
         {"Film.mkv", "Film.srt", "Film.en.srt", "Film.eng.vtt", "Film.English.ass", "Film.pt-BR.srt",
          "Film.en.forced.srt", "Film.default.de.sdh.srt", "Film.hi.srt", "Film.en.hi.srt", "Film.nfo",
          "Other.srt"},
         {{"Film.mkv",
           {"Film.English.ass en", "Film.default.de.sdh.srt de hearing default",
            "Film.en.forced.srt en forced", "Film.en.hi.srt en hearing", "Film.en.srt en", "Film.eng.vtt en",
            "Film.hi.srt hi", "Film.pt-BR.srt pt-BR", "Film.srt"}}}},
        {"a name as it is written before one in other letters",
         {"Film.mkv", "FILM.a.SRT", "film.SRT", "Film.srt", "Film.z.Srt"},
         {{"Film.mkv", {"Film.srt", "Film.z.Srt (z)", "FILM.a.SRT (a)", "film.SRT"}}}},
        {"films that differ in letters have their own, and those of neither",
         {"Film.mkv", "FILM.mkv", "Film.srt", "FILM.srt", "film.srt"},
         {{"Film.mkv", {"Film.srt", "film.srt"}}, {"FILM.mkv", {"FILM.srt", "film.srt"}}}},
        {"dots in the base name",
         {"Movie.2010.1080p.mkv", "Movie.2010.1080p.en.srt", "Movie.2010.srt", "Movie.2010.1080p-de.srt"},
         {{"Movie.2010.1080p.mkv", {"Movie.2010.1080p-de.srt de", "Movie.2010.1080p.en.srt en"}}}},
        {"a language in the base name is the film's own",
         {"Movie.en.mkv", "Movie.en.srt", "Movie.en.fr.srt"},
         {{"Movie.en.mkv", {"Movie.en.fr.srt fr", "Movie.en.srt"}}}},
        {"the longest base name wins",
         {"Movie.mkv", "Movie.en.mkv", "Movie.en.srt", "Movie.fr.srt"},
         {{"Movie.mkv", {"Movie.fr.srt fr"}}, {"Movie.en.mkv", {"Movie.en.srt"}}}},
        {"a film whose name begins another's",
         {"Film.mkv", "Film 2.mkv", "Film 2.srt", "Film.2.mkv", "Film.2.en.srt", "Film-2.srt", "Films.srt"},
         {{"Film.mkv", {}}, {"Film 2.mkv", {"Film 2.srt"}}, {"Film.2.mkv", {"Film.2.en.srt en"}}}},
        {"the same where that other one is not there",
         {"Film.mkv", "Film 2.srt", "Film.2.en.srt", "Film-2.srt"},
         {{"Film.mkv", {"Film.2.en.srt en"}}}},
        {"a separator that is no dot, where all of the word means something",
         {"Film.mkv", "Film-en.srt", "Film_fr.srt", "Film (de).srt", "Film-en-sdh.srt", "Film_Noir.srt",
          "Film en.srt"},
         {{"Film.mkv",
           {"Film (de).srt de", "Film-en-sdh.srt en hearing", "Film-en.srt en", "Film_fr.srt fr"}}}},
        {"which a film of that name has for itself",
         {"Film.mkv", "Film-en.mkv", "Film-en.srt", "Film-en.de.srt"},
         {{"Film.mkv", {}}, {"Film-en.mkv", {"Film-en.de.srt de", "Film-en.srt"}}}},
        {"one film in two containers, and a part of it that is no film",
         {"Film.mkv", "Film.mp4", "Film.en.jpg", "Film.en.srt"},
         {{"Film.mkv", {"Film.en.srt en"}}, {"Film.mp4", {"Film.en.srt en"}}}},
        {"words that mean nothing are a title",
         {"Film.mkv", "Film.Director's Cut.en.srt"},
         {{"Film.mkv", {"Film.Director's Cut.en.srt en (Director's Cut)"}}}},
        {"folders for subtitles, by the film's name",
         {"A.mkv", "B.mkv", "Subs/A.en.srt", "SUBTITLES/A.fr.srt", "Subs/B.srt", "Subs/English.srt",
          "Other/A.de.srt", "Subs/Deep/A.it.srt", "A.srt"},
         {{"A.mkv", {"A.srt", "Subs/A.en.srt en", "SUBTITLES/A.fr.srt fr"}}, {"B.mkv", {"Subs/B.srt"}}}},
        {"and by any name where the film is the only one",
         {"Film.mkv", "Subs/English.srt", "Subs/2_English.srt", "Subs/3_French (Canadian).srt",
          "Subs/SDH.eng.HI.srt", "Subs/whatever.srt", "Subs/Film.de.srt", "sample.mkv", "Film-trailer.mp4"},
         {{"Film.mkv",
           {"Subs/Film.de.srt de", "Subs/2_English.srt en", "Subs/3_French (Canadian).srt fr (Canadian)",
            "Subs/English.srt en", "Subs/SDH.eng.HI.srt en hearing", "Subs/whatever.srt (whatever)"}},
          {"sample.mkv", {}}}},
        {"a trailer alone, which is no film of its folder",
         {"Film-trailer.mp4", "Subs/English.srt", "Subs/Film-trailer.srt"},
         {{"Film-trailer.mp4", {"Subs/Film-trailer.srt"}}}},
        {"what lies beside the only film by its name's end",
         {"Film.mkv", "Film.sample.mkv", "Film_trailer.mkv", "My Trailer.mkv", "Subs/English.srt"},
         {{"Film.mkv", {"Subs/English.srt en"}}}},
        {"which is a word of its own", {"Film.mkv", "Resample.mkv", "Subs/English.srt"}, {{"Film.mkv", {}}}},
        {"a name of another film that ends before a blank or a bracket",
         {"Film.mkv", "Film.en.mkv", "Film.en (de).srt", "Film.en(fr).srt", "Film.en[it].srt"},
         {{"Film.mkv", {}},
          {"Film.en.mkv", {"Film.en (de).srt de", "Film.en(fr).srt fr", "Film.en[it].srt it"}}}},
        {"a folder that is no film for all its name",
         {"Film.mkv", "Film.2.mkv/index", "Film.2.en.srt"},
         {{"Film.mkv", {"Film.2.en.srt en"}}}},
        {"all extensions that such files have",
         {"Film.mkv", "Film.a.srt", "Film.b.vtt", "Film.c.ass", "Film.d.ssa", "Film.e.sub", "Film.f.smi",
          "Film.g.sami", "Film.h.sup", "Film.i.ttml", "Film.j.dfxp", "Film.k.txt", "Film.l.idx"},
         {{"Film.mkv",
           {"Film.a.srt (a)", "Film.b.vtt (b)", "Film.c.ass (c)", "Film.d.ssa (d)", "Film.e.sub (e)",
            "Film.f.smi (f)", "Film.g.sami (g)", "Film.h.sup (h)", "Film.i.ttml (i)", "Film.j.dfxp (j)",
            "Film.k.txt (k)", "Film.l.idx (l)"}}}},
        {"a folder of its own in one for subtitles",
         {"S01E01.mkv", "S01E02.mkv", "Subs/S01E01/2_English.srt", "Subs/s01e01/3_French.srt",
          "Subs/S01E02/4_de.srt"},
         {{"S01E01.mkv", {"Subs/S01E01/2_English.srt en", "Subs/s01e01/3_French.srt fr"}},
          {"S01E02.mkv", {"Subs/S01E02/4_de.srt de"}}}},
        {"a film that is not there, or that is no film by its name",
         {"Film.en.srt", "Film.srt"},
         {{"Film.mkv", {"Film.en.srt en", "Film.srt"}},
          {"Film.unheard", {"Film.en.srt en", "Film.srt"}},
          {"Film", {"Film.en.srt en", "Film.srt"}},
          {"none/Film.mkv", {}}}},
        {"a text of any name only by what it looks like",
         {"Film.mkv", "Film.txt", "Film.en.txt", "Film.doc"},
         {{"Film.mkv", {"Film.en.txt en", "Film.txt"}}}},
    };
    for (const FolderRow& row : rows) {
        const TemporaryFolder folder;
        for (const std::string& file : row.mFiles) {
            folder.Write(file, kCue);
        }
        for (const auto& [film, lines] : row.mFilms) {
            EXPECT_EQ(Find(folder, film), lines) << row.mWhy << ": " << film;
        }
    }
}

TEST(Subtitles, AreToldWithWhatTheyHold) {
    const TemporaryFolder folder;
    const std::string film = folder.Write("Film.mkv", "");
    folder.Write("Film.a.srt", "WEBVTT\n"); // by the content
    folder.Write("Film.b.txt", "{1}{2}text");
    folder.Write("Film.c.txt", "WEBVTT\n"); // a text that may be about anything
    folder.Write("Film.d.srt", "Dear friend,\n");
    folder.Write("Film.e.srt", kIndex); // an index has its own extension
    folder.Write("Film.f.srt", std::string(kCue) + "\xCF\xF0");
    folder.Write("Film.g.smi", "<SAMI><STYLE>.A{lang:ko-KR}</STYLE>");
    folder.Write("Film.en.smi", "<SAMI><STYLE>.A{lang:ko-KR}</STYLE>"); // the name counts more
    folder.Write("Film.idx", kIndex);
    folder.Write("Film.SUB", kPictures);
    folder.Write("Film.de.idx", kIndex);
    folder.Write("Film.de.sub", kPictures);
    folder.Write("Film.DE.sub", kPictures);
    folder.Write("Film.fr.idx", kIndex); // without pictures
    folder.Write("Film.h.idx", "id: en, index: 0\n");
    folder.Write("Film.h.sub", "{1}{2}text"); // of its own kind, for all the index beside it
    folder.Write("Film.i.sub", kPictures);    // pictures without an index
    folder.Write("Film.j.idx", kIndex);
    folder.Write("Film.j.sub", "{1}{2}text"); // no pictures
    folder.Write("Film.k.idx", kIndex);
    folder.Write("Film.k.sub", kPictures.substr(0, 3));
    folder.Write("Film.empty.srt", "");
    ezSubtitleFinder finder(Types(), "1251");
    std::vector<std::string> lines;
    const ezSubtitles found = finder.Find(film);
    EXPECT_TRUE(found.mfWhole);
    for (const ezSubtitleFile& file : found.mFiles) {
        std::string line = file.mPath.substr(folder.GetPath().size() + 1);
        line += std::string(" ") + ezSubtitleKind_GetName(file.mKind);
        line += " " + (file.mLanguages.empty() ? "-" : file.mLanguages);
        line += " " + (file.mEncoding.empty() ? "-" : file.mEncoding);
        line +=
            file.mPicturesPath.empty() ? "" : " " + file.mPicturesPath.substr(folder.GetPath().size() + 1);
        lines.push_back(line);
    }
    EXPECT_EQ(
        lines,
        (Lines{"Film.a.srt vtt - UTF-8", "Film.b.txt sub - UTF-8", "Film.de.idx idx de - Film.de.sub",
               "Film.en.smi smi en UTF-8", "Film.f.srt srt - windows-1251", "Film.g.smi smi ko-KR UTF-8",
               "Film.h.sub sub - UTF-8", "Film.idx idx en,fr - Film.SUB", "Film.j.sub sub - UTF-8"}));
    // What the system does not know counts as Windows-1252.
    ezSubtitleFinder unknown(Types(), "no such page");
    EXPECT_EQ(unknown.Find(film).mFiles[4].mEncoding, "windows-1252");
}

TEST(Subtitles, AreRegularFilesOrLinksToThem) {
    const TemporaryFolder folder;
    const std::string film = folder.Write("Film.mkv", "");
    folder.Write("elsewhere/text", kCue);
    folder.Write("elsewhere/English.srt", kCue);
    folder.MakeFolder("Film.folder.srt");
    ASSERT_EQ(mkfifo(folder.Path("Film.pipe.srt").c_str(), 0600), 0); // nobody writes: it would be waited for
    ASSERT_EQ(symlink("Film.pipe.srt", folder.Path("Film.en.srt").c_str()), 0);
    ASSERT_EQ(symlink("elsewhere/text", folder.Path("Film.de.srt").c_str()), 0);
    ASSERT_EQ(symlink("nowhere", folder.Path("Film.fr.srt").c_str()), 0);
    ASSERT_EQ(symlink("Film.it.srt", folder.Path("Film.it.srt").c_str()), 0);
    const int listener = Listen(folder.Path("socket"));
    ASSERT_GE(listener, 0);
    ASSERT_EQ(symlink("socket", folder.Path("Film.es.srt").c_str()), 0);
    ASSERT_EQ(symlink("elsewhere", folder.Path("Subs").c_str()), 0);
    ASSERT_EQ(symlink(".", folder.Path("subtitles").c_str()), 0); // back into the same folder
    EXPECT_EQ(Find(folder, "Film.mkv"),
              (Lines{"Film.de.srt de", "Subs/English.srt en", "subtitles/Film.de.srt de"}));
    close(listener);
}

TEST(Subtitles, MayHaveNamesOfAnyBytes) {
    const TemporaryFolder folder;
    const std::string base = "F\xFF\n\\\x1B[31m";
    folder.Write(base + ".mkv", "");
    folder.Write(base + ".en.srt", kCue);
    folder.Write(base + ".\xCF\xF0\n.srt", kCue);
    folder.Write(std::string(250, 'x') + ".mkv", "");
    folder.Write(std::string(250, 'x') + ".srt", kCue);
    ezSubtitleFinder finder(Types(), "1251");
    const ezSubtitles found = finder.Find(folder.Path(base + ".mkv"));
    ASSERT_EQ(found.mFiles.size(), 2U);
    EXPECT_EQ(found.mFiles[0].mPath, folder.Path(base + ".en.srt"));
    EXPECT_EQ(found.mFiles[1].mTitle, "\xD0\x9F\xD1\x80"); // UTF-8, in one line
    EXPECT_EQ(finder.Find(folder.Path(std::string(250, 'x') + ".mkv")).mFiles.size(), 1U);
    for (const std::string& path :
         {std::string(), folder.GetPath() + "/", folder.Path(std::string("F\0.mkv", 6)),
          std::string("http://host/F.mkv"), folder.Path(std::string(5000, 'x') + "/F.mkv")}) {
        const ezSubtitles none = finder.Find(path);
        EXPECT_TRUE(none.mFiles.empty() && none.mfWhole) << path.substr(0, 80);
    }
    const WorkingDirectory directory(folder.GetPath());
    ASSERT_EQ(finder.Find(base + ".mkv").mFiles.size(), 2U);
    EXPECT_EQ(finder.Find(base + ".mkv").mFiles[0].mPath, base + ".en.srt"); // as relative as the film's
}

TEST(Subtitles, AreNoMediaByTheMediaTypesFile) {
    for (const std::string_view extension : kSubtitleExtensions) {
        ezPtrList* const entries = Types().EntriesFromExtension(ezCString(extension));
        ASSERT_NE(entries, nullptr) << extension;
        for (ExtensionMimeTypeMatcherEntry* entry : ezItems<ExtensionMimeTypeMatcherEntry>(entries)) {
            EXPECT_TRUE(Types().IsExcludedEntry(entry)) << extension;
        }
    }
    const TemporaryFolder folder;
    const std::string path = folder.Write("Film.srt", kCue);
    ezHost host(EZ_SAMPLES);
    EXPECT_EQ(host.Identify(path), nullptr);
}

TEST(Subtitles, AreToldAsTheGuideSays) {
    const std::string guide = ReadWholeFile(EZ_SAMPLES "/../docs/hosting.md");
    const auto rows = GuideTable(guide, {"name", "told as"});
    EXPECT_GE(rows.size(), 25U);
    for (const std::vector<std::string>& row : rows) {
        ASSERT_EQ(row.size(), 2U);
        const std::string name = GuideNames(row[0]).at(0);
        const TemporaryFolder folder;
        folder.Write(name, kCue);
        ezSubtitleFinder finder(Types());
        const ezSubtitles found = finder.Find(folder.Path("Film.mkv"));
        std::string told = found.mFiles.empty() ? "not the film's" : "";
        for (const ezSubtitleFile& file : found.mFiles) {
            told = file.mLanguages;
            told += file.mfForced ? ", forced" : "";
            told += file.mfHearingImpaired ? ", hearing impaired" : "";
            told += file.mfDefault ? ", default" : "";
            told += file.mTitle.empty() ? "" : ", \"" + file.mTitle + "\"";
        }
        EXPECT_EQ(told, row[1]) << name;
    }
}

TEST(Subtitles, AreListedByTheLinesOfTheGuide) {
    const TemporaryFolder folder;
    const std::string film = folder.Write("Film.mkv", "");
    folder.Write("Film.en.forced.srt", kCue);
    const ezHost host(EZ_SAMPLES);
    testing::internal::CaptureStdout();
    // clang-format off
    ezSubtitleFinder finder(host.GetMediaTypes());
    for (const ezSubtitleFile& file : finder.Find(film).mFiles) {
        std::printf("%s: %s, %s, %s%s\n", file.mPath.c_str(), ezSubtitleKind_GetName(file.mKind),
                    file.mLanguages.c_str(), file.mEncoding.c_str(), file.mfForced ? ", forced" : "");
    }
    // clang-format on
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              folder.Path("Film.en.forced.srt") + ": srt, en, UTF-8, forced\n");
}

// ---- what it costs ----

TEST(Subtitles, CostOneListingOfAFolderAndOneReadOfEachFile) {
    const TemporaryFolder folder;
    for (int i = 0; i < 50; ++i) {
        folder.Write("Film " + std::to_string(i) + ".mkv", "");
        folder.Write("Film " + std::to_string(i) + ".en.srt", kCue);
        folder.Write("Subs/Film " + std::to_string(i) + ".fr.srt",
                     std::string(kCue) + std::string(300'000, 'x'));
    }
    ezSubtitleFinder finder(Types());
    const FaultySystem counted;
    for (int i = 0; i < 50; ++i) {
        const std::string film = folder.Path("Film " + std::to_string(i) + ".mkv");
        EXPECT_EQ(finder.Find(film).mFiles.size(), 2U) << i;
    }
    EXPECT_EQ(counted.Count(SystemCall::Open), 100U);
    EXPECT_EQ(counted.Count(SystemCall::PRead), 100U);
    EXPECT_EQ(counted.Count(SystemCall::FStat), 100U);
    EXPECT_EQ(counted.Count(SystemCall::Close), 100U);
    EXPECT_EQ(counted.Count(SystemCall::Stat), 0U);
}

TEST(Subtitles, AreNotNoticedWhereTheyComeAfterTheListing) {
    const TemporaryFolder folder;
    const std::string film = folder.Write("Film.mkv", "");
    ezSubtitleFinder finder(Types());
    EXPECT_TRUE(finder.Find(film).mFiles.empty());
    folder.Write("Film.srt", kCue);
    EXPECT_TRUE(finder.Find(film).mFiles.empty());
    EXPECT_EQ(Find(folder, "Film.mkv"), Lines{"Film.srt"});
    folder.Write("Subs/Film.srt", kCue); // nor in a folder for them that was listed
    ezSubtitleFinder later(Types());
    EXPECT_EQ(later.Find(film).mFiles.size(), 2U);
    folder.Write("Subs/Film.en.srt", kCue);
    EXPECT_EQ(later.Find(film).mFiles.size(), 2U);
    finder.Find(folder.Path("other/Film.mkv")); // it keeps those of one folder
    EXPECT_EQ(finder.Find(film).mFiles.size(), 3U);
}

TEST(Subtitles, OfOneFilmAreBounded) {
    const TemporaryFolder folder;
    folder.Write("Film.mkv", "");
    for (std::size_t i = 0; i < kSubtitles_MaxTried; ++i) {
        folder.Write("Film." + std::to_string(1000 + i) + ".srt", kCue);
    }
    EXPECT_EQ(Find(folder, "Film.mkv").size(), kSubtitles_MaxTried);
    folder.Write("Film.zz.srt", kCue);
    const Lines lines = Find(folder, "Film.mkv");
    ASSERT_EQ(lines.size(), kSubtitles_MaxTried + 1);
    EXPECT_EQ(lines.back(), "?");
    EXPECT_EQ(lines[0], "Film.1000.srt");
}

TEST(Subtitles, InFoldersOfTheSameNameAreBounded) {
    const TemporaryFolder folder;
    folder.Write("Film.mkv", "");
    for (const char* name : {"SUBS", "Subs", "subs", "Subtitles"}) {
        folder.Write(std::string(name) + "/en.srt", kCue);
    }
    static_assert(kSubtitles_MaxFolders == 4);
    EXPECT_EQ(Find(folder, "Film.mkv"),
              (Lines{"SUBS/en.srt en", "Subs/en.srt en", "subs/en.srt en", "Subtitles/en.srt en"}));
    folder.MakeFolder("suBs");
    EXPECT_EQ(Find(folder, "Film.mkv").back(), "?");
}

TEST(Subtitles, InFoldersOfTheFilmsNameAreBounded) {
    const TemporaryFolder folder;
    folder.Write("Film.mkv", "");
    folder.Write("Other.mkv", "");
    for (const char* name : {"FILM", "FIlm", "FilM", "Film"}) {
        folder.Write(std::string("Subs/") + name + "/en.srt", kCue);
    }
    EXPECT_EQ(Find(folder, "Film.mkv"), (Lines{"Subs/FILM/en.srt en", "Subs/FIlm/en.srt en",
                                               "Subs/FilM/en.srt en", "Subs/Film/en.srt en"}));
    folder.Write("Subs/film/en.srt", kCue);
    const Lines lines = Find(folder, "Film.mkv");
    ASSERT_EQ(lines.size(), 5U);
    EXPECT_EQ(lines.back(), "?");
}

TEST(Subtitles, WithNamesThatGoOnAfterTheFilmsAreBounded) {
    const MemoryFolder folder;
    folder.Write("Film.mkv", "");
    folder.Write("Film.x.mkv", "");
    folder.Write("Film.zz.srt", kCue);
    for (std::size_t i = 1; i < kSubtitles_MaxNames; ++i) { // of the other film
        folder.Write("Film.x." + std::to_string(i) + ".srt", "");
    }
    EXPECT_EQ(Find(folder, "Film.mkv"), Lines{"Film.zz.srt (zz)"});
    folder.Write("Film.x.more.srt", "");
    EXPECT_EQ(Find(folder, "Film.mkv"), Lines{"?"});
}

TEST(Subtitles, AreListedUpToABoundOfTheirNames) {
    const MemoryFolder folder;
    const std::string film = folder.Write("Film.mkv", "");
    const std::size_t kept = std::string("Film").size();
    const std::string first = folder.Write("x0" + std::string(244, 'x') + ".srt", ""); // 250 bytes
    const auto add = [&](const std::string& aName) {
        ASSERT_EQ(symlink(first.c_str(), folder.Path(aName).c_str()), 0) << aName;
    };
    constexpr std::size_t kNames = kSubtitles_MaxNameBytes / 250 - 1;
    for (std::size_t i = 1; i < kNames; ++i) {
        const std::string number = std::to_string(i);
        add("x" + number + std::string(245 - number.size(), 'x') + ".srt");
    }
    constexpr std::size_t kRest = kSubtitles_MaxNameBytes - kNames * 250;
    add(std::string(kRest / 2 - 4, 'y') + ".srt");
    add(std::string(kRest - kRest / 2 - kept - 1 - 4, 'z') + ".srt");
    EXPECT_EQ(Find(folder, "Film.mkv"), Lines{}); // a byte is left
    folder.Write("z.srt", "");
    EXPECT_EQ(Find(folder, "Film.mkv"), Lines{"?"});
}

TEST(Subtitles, AreToldByTheirFirstBytes) {
    const TemporaryFolder folder;
    folder.Write("Film.mkv", "");
    const std::string cue(kCue);
    const std::string filled = cue + std::string(kSubtitle_HeadSize - cue.size() - 1, 'x') + "\xC3";
    folder.Write("Film.a.srt", filled);          // a whole text, and its end is no UTF-8
    folder.Write("Film.b.srt", filled + "\xBC"); // one that is read up to the middle of a letter
    folder.Write("Film.c.srt", filled + "x");    // what comes later is not looked at
    ezSubtitleFinder finder(Types());
    std::vector<std::string> encodings;
    for (const ezSubtitleFile& file : finder.Find(folder.Path("Film.mkv")).mFiles) {
        encodings.push_back(file.mEncoding);
    }
    EXPECT_EQ(encodings, (Lines{"windows-1252", "UTF-8", "UTF-8"}));
}

TEST(Subtitles, OfAHugeFolderAreFoundByOneBoundedPass) {
    const MemoryFolder folder;
    folder.Write("Film.mkv", "");
    folder.Write("Film.en.srt", kCue);
    for (int i = 0; i < 100'000; ++i) { // links to one file: quick to make
        const std::string name = folder.Path("x" + std::to_string(i) + ".de.srt");
        ASSERT_EQ(link(folder.Path("Film.en.srt").c_str(), name.c_str()), 0) << name;
        if (i % 30'000 == 29'999) { // file systems bound the links of a file
            std::filesystem::remove(folder.Path("Film.en.srt"));
            folder.Write("Film.en.srt", kCue);
        }
    }
    Types(); // loaded beforehand: only the look for subtitles is counted
    const FaultySystem counted;
    EXPECT_EQ(Find(folder, "Film.mkv"), Lines{"Film.en.srt en"});
    EXPECT_EQ(counted.Count(SystemCall::Open), 1U);
    for (int i = 0; i < 40'000; ++i) {
        const std::string name = folder.Path("y" + std::to_string(i) + ".de.srt");
        ASSERT_EQ(symlink("x1.de.srt", name.c_str()), 0) << name;
    }
    static_assert(kSubtitles_MaxEntries < 140'000);
    EXPECT_EQ(Find(folder, "Film.mkv").back(), "?"); // what is listed later is not seen
}

TEST(Subtitles, EndWithACancellation) {
    const TemporaryFolder folder;
    const std::string film = folder.Write("Film.mkv", "");
    folder.Write("Film.srt", kCue);
    ezCancellation cancellation;
    ezSubtitleFinder finder(Types(), "", &cancellation);
    EXPECT_EQ(finder.Find(film).mFiles.size(), 1U);
    cancellation.Cancel();
    const FaultySystem counted;
    const ezSubtitles found = finder.Find(film);
    EXPECT_TRUE(found.mFiles.empty());
    EXPECT_FALSE(found.mfWhole);
    EXPECT_EQ(counted.Count(SystemCall::Open), 0U);
}

TEST(Subtitles, ThatCannotBeReadLeaveWordOfIt) {
    const TemporaryFolder folder;
    folder.Write("Film.mkv", "");
    folder.Write("Film.en.srt", kCue);
    folder.Write("Film.fr.srt", kCue);
    const auto find = [&](const std::vector<Fault>& aFaults, bool* afStruck) {
        const FaultySystem system(aFaults);
        std::string text;
        for (const std::string& line : Find(folder, "Film.mkv")) {
            text += line + ";";
        }
        *afStruck = system.HasStruck();
        return text;
    };
    EXPECT_EQ(RunUndisturbed(find), "Film.en.srt en;Film.fr.srt fr;");
    const std::string once = "1: Film.fr.srt fr;?;\n2: Film.en.srt en;?;\n";
    const std::string forGood = "1: ?;\n2: Film.en.srt en;?;\n";
    ExpectOutcomes(find, {{SystemCall::Open, once, forGood},
                          {SystemCall::Close, "1-2: Film.en.srt en;Film.fr.srt fr;\n",
                           "1-2: Film.en.srt en;Film.fr.srt fr;\n"},
                          {SystemCall::FStat, once, forGood},
                          {SystemCall::PRead, once, forGood}});
    EXPECT_EQ(RunInterrupted(1, find), "Film.en.srt en;Film.fr.srt fr;");
}

TEST(Subtitles, WhosePicturesCannotBeReadLeaveWordOfIt) {
    const TemporaryFolder folder;
    folder.Write("Film.idx", kIndex);
    folder.Write("Film.sub", kPictures);
    EXPECT_EQ(Find(folder, "Film.mkv"), Lines{"Film.idx en,fr"});
    const FaultySystem system({{SystemCall::PRead, 2, 1, EIO}}); // after the index
    EXPECT_EQ(Find(folder, "Film.mkv"), Lines{"?"});
}

TEST(Subtitles, ThatMayNotBeReadLeaveWordOfIt) {
    const TemporaryFolder folder;
    folder.Write("Film.srt", kCue);
    folder.Write("Film.en.srt", kCue);
    folder.Write("Subs/Film.srt", kCue);
    std::filesystem::permissions(folder.GetPath(), std::filesystem::perms(0755));
    EXPECT_EQ(Find(folder, "Film.mkv"), (Lines{"Film.en.srt en", "Film.srt", "Subs/Film.srt"}));
    const auto refuse = [&folder](const char* aName) {
        std::filesystem::permissions(folder.Path(aName), std::filesystem::perms::none);
        const Unprivileged user;
        return Find(folder, "Film.mkv");
    };
    EXPECT_EQ(refuse("Subs"), (Lines{"Film.en.srt en", "Film.srt", "?"}));
    std::filesystem::remove_all(folder.Path("Subs"));
    EXPECT_EQ(refuse("Film.en.srt"), (Lines{"Film.srt", "?"}));
    EXPECT_EQ(refuse("."), Lines{"?"});
    std::filesystem::permissions(folder.GetPath(), std::filesystem::perms(0700));
}
