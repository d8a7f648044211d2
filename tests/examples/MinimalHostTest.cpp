#include "support/Guide.h"
#include "support/RunProgram.h"
#include "support/TemporaryFolder.h"
#include "support/WholeFile.h"

#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <vector>

namespace {

/// The host as it is started in a folder.
ProgramResult RunIn(const std::string& aFolder, const std::vector<std::string>& anArguments) {
    ProgramOptions options;
    options.mFolder = aFolder;
    return RunProgram(EZ_MINIMAL_HOST, anArguments, options);
}

} // namespace

TEST(MinimalHost, IdentifiesSamplesWithTheTableThatWasInstalled) {
    const TemporaryFolder folder;
    const std::string walk = EZ_SAMPLES "/music/morning-walk.mp3";
    const std::string readme = EZ_SAMPLES "/README.md";
    const ProgramResult result = RunIn(folder.GetPath(), {walk, readme, "/nowhere.mp3"});
    EXPECT_EQ(result.mStatus, 0);
    EXPECT_EQ(result.mError, "");
    EXPECT_EQ(result.mOut,
              walk +
                  ": ac=2, ar=48000, br=48000, ca=MP3, cn=item.audioItem.musicTrack, da=2001, "
                  "dl=DLNA.ORG_PN=MP3;DLNA.ORG_OP=01;DLNA.ORG_FLAGS=01500000000000000000000000000000, "
                  "dm=5300, du=5, ea=48000, eb=48000, ev=0, fe=mp3, fs=32309, ma=48000, mb=48000, "
                  "md=header, mt=audio/mpeg, mv=0, sf=44100, ta=1\n" +
                  readme + ": not recognised \n/nowhere.mp3: not recognised /nowhere.mp3: not found\n");
}

TEST(MinimalHost, TakesTheTableOfItsWorkingDirectory) {
    const TemporaryFolder folder;
    const std::string media = folder.Write("song.own", "");
    EXPECT_EQ(RunIn(folder.GetPath(), {media}).mOut, media + ": not recognised \n");
    folder.Write("mediaCTRLMediaTypes.ini", "[MimeTypes]\nown=own@audio/own@item.audioItem\n");
    EXPECT_EQ(RunIn(folder.GetPath(), {media}).mOut, media + ": cn=item.audioItem, fe=own, mt=audio/own\n");
}

TEST(MinimalHost, SaysWhatIsWrongWithItsConfiguration) {
    const TemporaryFolder folder;
    folder.Write("ConfigPath.ini", "[ConfigPath]\nReadOnly=/nowhere\n");
    const ProgramResult result = RunIn(folder.GetPath(), {"song.mp3"});
    EXPECT_EQ(result.mStatus, 1);
    EXPECT_EQ(result.mOut,
              "song.mp3: not recognised no media types: ConfigPath.ini: names the read-only folder; "
              "/nowhere/mediaCTRLMediaTypes.ini: not found; ./mediaCTRLMediaTypes.ini: not found\n");
}

TEST(MinimalHost, IsAboutTenLines) {
    EXPECT_LE(LinesOf(ReadWholeFile(EZ_SOURCES "/examples/minimal-host/main.cpp")).size(), 17U);
}

TEST(MinimalHost, IsQuotedInTheReadmeAsItIs) {
    const std::string quoted =
        "```cpp\n" + ReadWholeFile(EZ_SOURCES "/examples/minimal-host/main.cpp") + "```\n";
    EXPECT_NE(ReadWholeFile(EZ_SOURCES "/README.md").find(quoted), std::string::npos);
}

TEST(HostingGuide, ShowsTheExamplesAsTheyAre) {
    const std::vector<std::string> sources = {
        ReadWholeFile(EZ_SOURCES "/examples/minimal-host/main.cpp"),
        ReadWholeFile(EZ_SOURCES "/examples/own-parser-host/main.cpp"),
        ReadWholeFile(EZ_SOURCES "/tests/companions/ezHosting/SubtitlesTest.cpp")};
    const std::vector<std::string> blocks = GuideBlocks(ReadWholeFile(EZ_SOURCES "/docs/hosting.md"), "cpp");
    EXPECT_EQ(blocks.size(), 3U);
    for (const std::string& block : blocks) {
        EXPECT_EQ(CountOfTextsWith(sources, block), 1U) << block;
    }
}

TEST(HostingGuide, NamesEveryOptionOfAHost) {
    const std::string header = ReadWholeFile(EZ_SOURCES "/companions/ezHosting/HostOptions.h");
    const std::string guide = ReadWholeFile(EZ_SOURCES "/docs/hosting.md");
    const std::regex field("[ >](mf?[A-Z][A-Za-z]*)( =|;)");
    std::size_t count = 0;
    for (std::sregex_iterator match(header.begin(), header.end(), field), end; match != end; ++match) {
        EXPECT_NE(guide.find((*match)[1].str()), std::string::npos) << (*match)[1];
        ++count;
    }
    EXPECT_EQ(count, 15U);
}
