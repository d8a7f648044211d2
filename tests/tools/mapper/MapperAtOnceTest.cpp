#include "Announce.h"
#include "mapper/MapperEdit.h"
#include "mapper/MapperLock.h"
#include "mapper/MapperTable.h"
#include "output/Console.h"
#include "support/TemporaryFolder.h"
#include "support/WholeFile.h"

#include "ezHosting/HostFolders.h"

#include <gtest/gtest.h>

#include <chrono>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <string>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

// Several that edit one media mapper file at once.

namespace {

using Words = std::vector<std::string>;

constexpr const char* kTable = "a.mp3,audio/mpeg,MP3\nb.mpg,video/mpeg,MPEG_PS_PAL\n";
const std::string kWord = ",,,,,,,,,,DLNA.ORG_FLAGS=00100000000000000000000000000000;BRELVO.COM_GOLDENDMS=";

class MapperAtOnce : public testing::Test {
protected:
    MapperAtOnce() {
        mFolder.Write("mediaCTRLMediaTypes.ini", "[MimeTypes]\nmp3=mp3@audio/mpeg@item.audioItem\n");
        mTable = mFolder.Write("_MediaMapper.txt", kTable);
    }

    ProgramResult Mapper(Words aWords, const ProgramOptions& anOptions = ProgramOptions()) const {
        aWords.insert(aWords.begin(), {"--config", mFolder.GetPath(), "mapper"});
        return RunTool(aWords, anOptions);
    }
    /// The entries of the file, in its order.
    std::string Entries() const {
        const std::string text = ReadWholeFile(mTable);
        return text.substr(text.find("\n\n") + 2);
    }
    std::string Lock() const { return mFolder.Path("._MediaMapper.txt.lock"); }

    const TemporaryFolder mFolder;
    std::string mTable;
};

std::string Switched(bool afMp3, bool afMpeg) {
    return std::string("a.mp3,audio/mpeg,MP3") + kWord + (afMp3 ? "00000000" : "10000000") +
           "\nb.mpg,video/mpeg,MPEG_PS_PAL" + kWord + (afMpeg ? "00000000" : "10000000") + "\n";
}

} // namespace

TEST_F(MapperAtOnce, BothEditsOfTwoToolsAreThere) {
    for (int round = 0; round < 10; ++round) {
        const bool fOn = round % 2 != 0;
        const char* verb = fOn ? "enable" : "disable";
        ProgramResult first;
        std::thread other([&] { first = Mapper({verb, "MP3"}); });
        const ProgramResult second = Mapper({verb, "MPEG_PS_PAL"});
        other.join();
        EXPECT_EQ(first.mStatus, 0) << first.mError;
        EXPECT_EQ(second.mStatus, 0) << second.mError;
        EXPECT_EQ(first.mError + second.mError, "");
        ASSERT_EQ(Entries(), Switched(fOn, fOn)) << round;
    }
}

TEST_F(MapperAtOnce, AnEditWaitsForTheLockAndSeesWhatWasSavedMeanwhile) {
    const int lock = open(Lock().c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    ASSERT_GE(lock, 0);
    ASSERT_EQ(flock(lock, LOCK_EX), 0);
    std::thread other;
    ProgramOptions options;
    options.mWhenStarted = [&](pid_t /*aProcess*/) {
        other = std::thread([&] {
            std::this_thread::sleep_for(std::chrono::milliseconds(300));
            EXPECT_EQ(ReadWholeFile(mTable), kTable) << "nothing was saved without the lock";
            mFolder.Write("new", "a.mp3,audio/mpeg,MP3,,,,,,,,,,BRELVO.COM_GOLDENDMS=10000000\n"
                                 "b.mpg,video/mpeg,MPEG_PS_PAL\n");
            std::filesystem::rename(mFolder.Path("new"), mTable);
            close(lock);
        });
    };
    const ProgramResult result = Mapper({"disable", "MPEG_PS_PAL"}, options);
    other.join();
    EXPECT_EQ(result.mStatus, 0) << result.mError;
    EXPECT_EQ(result.mOut, "b.mpg (MPEG_PS_PAL): profile on -> off\nsaved " + mTable + ", entries: 2\n");
    EXPECT_EQ(Entries(), Switched(false, false));
    struct stat status = {};
    ASSERT_EQ(stat(Lock().c_str(), &status), 0);
    EXPECT_EQ(status.st_size, 0);
}

TEST_F(MapperAtOnce, AnEditWaitsTenSecondsAndNotForEver) {
    EXPECT_EQ(kMapperLock_Patience, std::chrono::seconds(10));
    const MapperLock before(mTable);
    EXPECT_EQ(before.GetReason(), "");
    for (const int patience : {0, 100}) {
        const auto start = std::chrono::steady_clock::now();
        const MapperLock lock(mTable, std::chrono::milliseconds(patience));
        EXPECT_EQ(lock.GetReason(), "somebody else edits it");
        EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(patience));
    }
}

TEST_F(MapperAtOnce, WhoseLockIsGivenBackIsWaitedForNoLonger) {
    { const MapperLock before(mTable); }
    EXPECT_EQ(MapperLock(mTable, std::chrono::milliseconds(0)).GetReason(), "");
}

// Somebody who takes no part in the lock, as a server may.
TEST_F(MapperAtOnce, AnEditIsMadeTenTimesAtTheMostWhereTheFileIsWrittenMeanwhile) {
    for (const int writes : {0, 1, 9, 10, 11}) {
        mFolder.Write("_MediaMapper.txt", kTable);
        int loads = 0;
        Console console;
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        Arguments arguments;
        arguments.mMapperVerb = MapperVerb::Disable;
        arguments.mOperands = {"MP3"};
        const int status = EditMapper(
            arguments,
            [&] {
                auto mapper = OpenMapper(FindHostFolders(mFolder.GetPath()), nullptr, false, console);
                if (loads++ < writes) {
                    mFolder.Write("_MediaMapper.txt", kTable + ("#" + std::to_string(loads) + "\n"));
                }
                return mapper;
            },
            mTable, console);
        const std::string out = testing::internal::GetCapturedStdout();
        const std::string error = testing::internal::GetCapturedStderr();
        const bool fSaved = writes < 10;
        EXPECT_EQ(status, fSaved ? 0 : 1) << writes;
        EXPECT_EQ(loads, fSaved ? writes + 1 : 10) << writes;
        EXPECT_EQ(out, fSaved ? "a.mp3 (MP3): profile on -> off\nsaved " + mTable + ", entries: 2\n" : "");
        if (fSaved) {
            EXPECT_EQ(Entries(), Switched(false, true)) << writes;
        } else {
            EXPECT_EQ(error, "ezannounce: " + mTable + ": somebody else writes it again and again\n");
            EXPECT_EQ(ReadWholeFile(mTable), kTable + std::string("#10\n")) << "theirs stays";
        }
    }
}

TEST_F(MapperAtOnce, WhereTheTableCannotBeLoadedThereIsNoEdit) {
    Console console;
    Arguments arguments;
    arguments.mMapperVerb = MapperVerb::Save;
    int loads = 0;
    const auto open = [&]() -> std::unique_ptr<DLNAMediaMapper> {
        ++loads;
        return nullptr;
    };
    EXPECT_EQ(EditMapper(arguments, open, mTable, console), 1);
    EXPECT_EQ(loads, 1);
    EXPECT_EQ(ReadWholeFile(mTable), kTable);
}

TEST_F(MapperAtOnce, WhoOnlyLooksWaitsForNobody) {
    const int lock = open(Lock().c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    ASSERT_GE(lock, 0);
    ASSERT_EQ(flock(lock, LOCK_EX), 0);
    EXPECT_EQ(Mapper({"list"}).mStatus, 0);
    EXPECT_EQ(Mapper({"profiles"}).mStatus, 0);
    EXPECT_EQ(Mapper({"check"}).mStatus, 0);
    close(lock);
}

TEST_F(MapperAtOnce, ALockThatIsALinkIsNotFollowed) {
    const std::string strangers = mFolder.Path("strangers");
    ASSERT_EQ(symlink(strangers.c_str(), Lock().c_str()), 0);
    const ProgramResult result = Mapper({"disable", "MP3"});
    EXPECT_EQ(result.mStatus, 1);
    EXPECT_EQ(result.mError,
              "ezannounce: " + mTable + ": cannot be locked: Too many levels of symbolic links\n");
    EXPECT_FALSE(std::filesystem::exists(strangers));
    EXPECT_EQ(ReadWholeFile(mTable), kTable);
}

TEST_F(MapperAtOnce, WhereNoLockCanBeMadeTheTableIsEditedAllTheSame) {
    std::filesystem::permissions(mTable, std::filesystem::perms{0666});
    std::filesystem::permissions(mFolder.GetPath(), std::filesystem::perms{0555});
    ProgramOptions options;
    options.mfWithoutRights = true;
    const ProgramResult result = Mapper({"disable", "MP3"}, options);
    std::filesystem::permissions(mFolder.GetPath(), std::filesystem::perms{0755});
    EXPECT_EQ(result.mStatus, 0) << result.mError;
    EXPECT_EQ(Entries(), Switched(false, true));
    EXPECT_FALSE(std::filesystem::exists(Lock()));
}

TEST_F(MapperAtOnce, TheLockOfAnotherUserIsTaken) {
    const int lock = open(Lock().c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    close(lock);
    std::filesystem::permissions(mFolder.GetPath(), std::filesystem::perms{0777});
    std::filesystem::permissions(mTable, std::filesystem::perms{0666});
    ProgramOptions options;
    options.mfWithoutRights = true;
    EXPECT_EQ(Mapper({"disable", "MP3"}, options).mStatus, 0);
    EXPECT_EQ(Entries(), Switched(false, true));
}

TEST_F(MapperAtOnce, ALoadNamesTheLinesThatItSkips) {
    std::filesystem::remove(mTable);
    const std::string table = mFolder.Write("MediaMapper.txt", "bad\n" + std::string(kTable) + ",x,y\n");
    const std::string skipped = "ezannounce: " + table +
                                ":1: fewer than 3 fields: skipped\nezannounce: " + table +
                                ":4: empty file name: skipped\n";
    EXPECT_EQ(Mapper({"list", "--no-copy"}).mError, skipped);
    EXPECT_EQ(Mapper({"list"}).mError,
              "ezannounce: The first load copies '" + table + "' to '" + mTable + "'.\n" + skipped);
    EXPECT_EQ(Mapper({"list"}).mError, "") << "they are not in the copy";
    std::string lines;
    std::string told;
    for (int line = 1; line <= 11; ++line) {
        lines += "bad\n";
        if (line <= 10) {
            told += "ezannounce: " + mTable + ":" + std::to_string(line) + ": fewer than 3 fields: skipped\n";
        }
        mFolder.Write("_MediaMapper.txt", lines);
        EXPECT_EQ(Mapper({"list"}).mError,
                  line <= 10
                      ? told
                      : told + "ezannounce: " + mTable + ": more such lines; \"mapper check\" names them\n");
    }
}

TEST_F(MapperAtOnce, ASaveNamesTheLinesThatItMadeTooLong) {
    const std::string line = "a.mp3,audio/mpeg,MP3,,,,,,,,,";
    mFolder.Write("_MediaMapper.txt", line + std::string(1000 - line.size(), 'x') + "\n" + kTable);
    const ProgramResult result = Mapper({"save"});
    EXPECT_EQ(result.mStatus, 0);
    EXPECT_EQ(result.mOut, "saved " + mTable + ", entries: 3\n");
    EXPECT_EQ(result.mError,
              "ezannounce: " + mTable +
                  ": lines that this save does not keep as they were: 1 (\"mapper check\" names "
                  "them beforehand)\nezannounce: " +
                  mTable + ":7: longer than 1024 bytes as it is saved: skipped from the next load on\n");
    EXPECT_EQ(Mapper({"list"}).mError, "ezannounce: " + mTable + ":7: longer than 1024 bytes: skipped\n");
}
