#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

// The entries of the fuzz targets. One that finds a contract broken ends the program, with the condition on
// standard error.
extern "C" {
int Fuzz_media_types_ini(const std::uint8_t* aData, std::size_t aSize);
int Fuzz_media_parser_stream(const std::uint8_t* aData, std::size_t aSize);
int Fuzz_file_name(const std::uint8_t* aData, std::size_t aSize);
int Fuzz_mapper_line(const std::uint8_t* aData, std::size_t aSize);
int Fuzz_mapper_file(const std::uint8_t* aData, std::size_t aSize);
int Fuzz_protocol_info(const std::uint8_t* aData, std::size_t aSize);
int Fuzz_profile_info_list(const std::uint8_t* aData, std::size_t aSize);
int Fuzz_uri(const std::uint8_t* aData, std::size_t aSize);
int Fuzz_playlist_asx(const std::uint8_t* aData, std::size_t aSize);
int Fuzz_playlist_m3u(const std::uint8_t* aData, std::size_t aSize);
int Fuzz_playlist_pls(const std::uint8_t* aData, std::size_t aSize);
int Fuzz_playlist_wpl(const std::uint8_t* aData, std::size_t aSize);
int Fuzz_playlist_xspf(const std::uint8_t* aData, std::size_t aSize);
}

namespace {

using Entry = int (*)(const std::uint8_t* aData, std::size_t aSize);

std::vector<std::filesystem::path> InputsIn(const std::filesystem::path& aFolder) {
    std::vector<std::filesystem::path> paths;
    for (const auto& item : std::filesystem::directory_iterator(aFolder)) {
        if (item.is_regular_file() && item.path().filename() != "README.md") {
            paths.push_back(item.path());
        }
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

void Replay(Entry anEntry, const std::filesystem::path& aPath) {
    std::ifstream file(aPath, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    // A block of just this size, so that a sanitizer sees every read beside it.
    const std::unique_ptr<std::uint8_t[]> bytes(new std::uint8_t[text.size()]);
    std::copy(text.begin(), text.end(), bytes.get());
    std::printf("replaying %s, %zu bytes\n", aPath.filename().c_str(), text.size());
    std::fflush(stdout);
    EXPECT_EQ(0, anEntry(bytes.get(), text.size()));
}

void ReplayDoor(Entry anEntry, const std::string& aDoor) {
    const std::filesystem::path fuzz = EZ_FUZZ_FOLDER;
    const std::vector<std::filesystem::path> seeds = InputsIn(fuzz / "corpus" / aDoor);
    ASSERT_FALSE(seeds.empty());
    for (const std::filesystem::path& path : seeds) {
        Replay(anEntry, path);
    }
    for (const std::filesystem::path& path : InputsIn(fuzz / "regressions" / aDoor)) {
        Replay(anEntry, path);
    }
    EXPECT_EQ(0, anEntry(nullptr, 0));
}

} // namespace

TEST(FuzzReplay, MediaTypesIniKeepsItsContractForEveryKeptInput) {
    ReplayDoor(Fuzz_media_types_ini, "media_types_ini");
}

TEST(FuzzReplay, MediaParserStreamKeepsItsContractForEveryKeptInput) {
    ReplayDoor(Fuzz_media_parser_stream, "media_parser_stream");
}

TEST(FuzzReplay, FileNamesKeepTheirContractForEveryKeptInput) {
    ReplayDoor(Fuzz_file_name, "file_name");
}

TEST(FuzzReplay, MediaMapperLinesKeepTheirContractForEveryKeptInput) {
    ReplayDoor(Fuzz_mapper_line, "mapper_line");
}

TEST(FuzzReplay, MediaMapperFilesKeepTheirContractForEveryKeptInput) {
    ReplayDoor(Fuzz_mapper_file, "mapper_file");
}

TEST(FuzzReplay, ProtocolInfosKeepTheirContractForEveryKeptInput) {
    ReplayDoor(Fuzz_protocol_info, "protocol_info");
}

TEST(FuzzReplay, ProfileInfoListsKeepTheirContractForEveryKeptInput) {
    ReplayDoor(Fuzz_profile_info_list, "profile_info_list");
}

TEST(FuzzReplay, URIsKeepTheirContractForEveryKeptInput) {
    ReplayDoor(Fuzz_uri, "uri");
}

#ifdef EZ_HAS_PLAYLISTS
TEST(FuzzReplay, M3UPlaylistsKeepTheirContractForEveryKeptInput) {
    ReplayDoor(Fuzz_playlist_m3u, "playlist_m3u");
}

TEST(FuzzReplay, PLSPlaylistsKeepTheirContractForEveryKeptInput) {
    ReplayDoor(Fuzz_playlist_pls, "playlist_pls");
}

TEST(FuzzReplay, ASXPlaylistsKeepTheirContractForEveryKeptInput) {
    ReplayDoor(Fuzz_playlist_asx, "playlist_asx");
}
#endif

#ifdef EZ_HAS_XML_PLAYLISTS
TEST(FuzzReplay, WPLPlaylistsKeepTheirContractForEveryKeptInput) {
    ReplayDoor(Fuzz_playlist_wpl, "playlist_wpl");
}

TEST(FuzzReplay, XSPFPlaylistsKeepTheirContractForEveryKeptInput) {
    ReplayDoor(Fuzz_playlist_xspf, "playlist_xspf");
}
#endif
