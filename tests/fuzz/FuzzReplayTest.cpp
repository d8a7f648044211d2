#include "support/Folders.h"
#include "support/WholeFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

namespace {

using Entry = int (*)(const std::uint8_t* aData, std::size_t aSize);

std::vector<std::filesystem::path> InputsIn(const std::filesystem::path& aFolder) {
    std::vector<std::filesystem::path> paths;
    if (!std::filesystem::exists(aFolder)) {
        return paths;
    }
    for (const auto& item : std::filesystem::recursive_directory_iterator(aFolder)) {
        if (item.is_regular_file() && item.path().filename() != "README.md") {
            paths.push_back(item.path());
        }
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

void Replay(Entry anEntry, const std::filesystem::path& aPath) {
    const std::string text = ReadWholeFile(aPath);
    // A block of just this size, so that a sanitizer sees every read beside it.
    const std::unique_ptr<std::uint8_t[]> bytes(new std::uint8_t[text.size()]);
    std::copy(text.begin(), text.end(), bytes.get());
    std::printf("replaying %s, %zu bytes\n", aPath.filename().c_str(), text.size());
    std::fflush(stdout);
    EXPECT_EQ(0, anEntry(bytes.get(), text.size()));
}

void ReplayDoor(Entry anEntry, const std::string& aDoor) {
    const std::filesystem::path fuzz = EZ_FUZZ_FOLDER;
    std::vector<std::filesystem::path> seeds = InputsIn(fuzz / "corpus" / aDoor);
    if (seeds.empty() && aDoor.compare(0, 7, "format_") == 0) {
        seeds = InputsIn(EZ_SAMPLES); // what a format has before seeds are made for its branches
    }
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

// A door's entry ends the program where it finds a contract broken, with the condition on standard error.
#define EZ_FUZZ_DOOR(DOOR)                                                                                   \
    extern "C" int Fuzz_##DOOR(const std::uint8_t* aData, std::size_t aSize);                                \
    TEST(FuzzReplay, EveryKeptInputKeepsTheContractOf_##DOOR) {                                              \
        ReplayDoor(Fuzz_##DOOR, #DOOR);                                                                      \
    }
#include "FuzzDoors.inc" // one line for each door that is built
