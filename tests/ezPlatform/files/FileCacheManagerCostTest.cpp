#include "ezPlatform/files/FileCacheManager.h"

#include "ezPlatform/files/File.h"
#include "support/ReplacedSystem.h"
#include "support/Str.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <fcntl.h>
#include <filesystem>
#include <iterator>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace {

std::size_t sLooks = 0; ///< at the state of a path

/// Counts them, and waits for no disk.
void CountLooks(ezSystemCalls& aCalls) {
    WithoutSync(aCalls);
    aCalls.mLStatAt = [](int aFolder, const char* aName, struct stat* aStatus) {
        ++sLooks;
        return ezSystem_Real().mLStatAt(aFolder, aName, aStatus);
    };
}

class FullFileCache : public testing::Test {
protected:
    /// Files of one byte, as many as the bound allows.
    void MakeFull(std::size_t aFiles) {
        const std::string files = mFolder.Path("ezcache/");
        std::filesystem::create_directories(files);
        for (std::size_t i = 0; i < aFiles; ++i) {
            const int file = open((files + "old" + std::to_string(i)).c_str(), O_WRONLY | O_CREAT, 0600);
            ASSERT_GE(file, 0);
            ASSERT_EQ(write(file, "x", 1), 1);
            close(file);
        }
        mCache = std::make_unique<ezFileCacheManager>(Bytes(mFolder.GetPath()), UINT64_MAX, aFiles);
    }
    void Miss() {
        const ezCString name = Bytes("new" + std::to_string(mNew++));
        bool fNew = false;
        const std::unique_ptr<ezFile> file(mCache->OpenCachedFile(name, &fNew, 0));
        ASSERT_TRUE(file != nullptr && fNew);
        ASSERT_EQ(file->Write("x", 1), 1);
        mCache->SetCachedFileState(name, file.get(), true);
    }
    std::size_t CountFiles() const {
        return static_cast<std::size_t>(
            std::distance(std::filesystem::directory_iterator(mFolder.Path("ezcache")),
                          std::filesystem::directory_iterator()));
    }
    /// The looks that a miss takes when so many have gone before, and a whole round of looking through.
    std::size_t LooksOfAMiss(std::size_t aMisses) {
        for (std::size_t i = 0; i < aMisses; ++i) {
            Miss();
        }
        sLooks = 0;
        for (std::size_t i = 0; i < aMisses; ++i) {
            Miss();
        }
        return sLooks / aMisses;
    }

    TemporaryFolder mFolder;
    std::unique_ptr<ezFileCacheManager> mCache;
    std::size_t mNew = 0;
};

TEST_F(FullFileCache, LooksThroughItsFolderOnceForEveryEighthThatGoes) {
    constexpr std::size_t kFiles = 16000;
    const ReplacedSystem system(CountLooks);
    MakeFull(kFiles);
    // 8 for the folder, two for whose the new file is, one for what goes, and one for what is perhaps
    // replaced.
    EXPECT_LE(LooksOfAMiss(kFiles / 8), 13U);
    EXPECT_EQ(CountFiles(), kFiles);
}

TEST_F(FullFileCache, OfFewFilesIsLookedThroughOnceForEveryEighthToo) {
    constexpr std::size_t kFiles = 800;
    const ReplacedSystem system(CountLooks);
    MakeFull(kFiles);
    EXPECT_LE(LooksOfAMiss(kFiles / 8), 13U);
    EXPECT_EQ(CountFiles(), kFiles);
}

} // namespace
