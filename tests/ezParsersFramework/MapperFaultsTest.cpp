#include "support/Catchers.h"
#include "support/FaultySystem.h"
#include "support/MapperFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

// Every system call around the media mapper's file goes wrong once, and for good: what the caller is told,
// what the table then holds, and that the file is the old one or the whole new one.

namespace {

const std::string kOwnTable = "own.mpg,video/mpeg,MPEG_PS_PAL\nsong.mp3,audio/mpeg,MP3\n";
const std::string kFactoryTable = "factory.mpg,video/mpeg,MPEG_PS_NTSC\n";

constexpr int kErrorsAlone = 2;

const std::string kTable = "'~/rw/_MediaMapper.txt'";
const std::string kNotOpened = "-3 Unable to open media mapper file: " + kTable;
const std::string kNotCreated = "-1 Unable to create media mapper file :|" + kTable;
const std::string kNotWritten = "-1 Unable to write media mapper file :|" + kTable;
const std::string kNoFolder = "-3 Unable to open media mapper file: ''";
const std::string kNoFolderLogged = "Failed saving media mapper fileUnable to create media mapper file :|''|";
const std::string kFactoryLogged =
    "Failed copying media mapper fileUnable to open media mapper file: '~/ro/MediaMapper.txt'|";
const std::string kNotCreatedLogged =
    "Failed saving media mapper fileUnable to create media mapper file :|" + kTable + "|";
const std::string kNotWrittenLogged =
    "Failed saving media mapper fileUnable to write media mapper file :|" + kTable + "|";

/// A text with the test's own folder written as "~", and line ends as "|".
std::string OneLine(std::string aText, const TemporaryFolder& aFolder) {
    for (std::size_t at = aText.find(aFolder.GetPath()); at != std::string::npos;
         at = aText.find(aFolder.GetPath())) {
        aText.replace(at, aFolder.GetPath().size(), "~");
    }
    std::replace(aText.begin(), aText.end(), '\n', '|');
    return aText;
}

std::string Told(const ezError& anError, const TemporaryFolder& aFolder) {
    return anError.IsError() ? std::to_string(anError.GetCode()) + " " + OneLine(anError.ToString(), aFolder)
                             : "good";
}

std::string Joined(const std::vector<std::string>& aTexts) {
    std::string joined;
    for (const std::string& text : aTexts) {
        joined += (joined.empty() ? "" : " ") + text;
    }
    return joined;
}

/// The entries that the next start of the server finds.
std::string NextStart(const MapperFolder& aFolder) {
    const FaultySystem system; // that fails nowhere
    const std::unique_ptr<OpenMapper> next = aFolder.New();
    const ezError error = next->Load();
    return error.IsError() ? Told(error, aFolder.Folder()) : Joined(next->Names());
}

std::string FilesIn(const std::string& aFolder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(aFolder)) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return Joined(names);
}

/// The folders above and of the table, each of which is made; the last also by its path with the "/".
std::size_t Mkdirs() {
    const MapperFolder folder;
    const std::string path = folder.WritablePath();
    return static_cast<std::size_t>(std::count(path.begin(), path.end(), '/'));
}

/// Performs with faults: what the operation tells, and expects that nothing is asserted.
std::string Perform(const std::vector<Fault>& aFaults, bool* afStruck,
                    const std::function<std::string()>& anOperation) {
    const AssertCatcher asserts;
    const FaultySystem system(aFaults);
    std::string told = anOperation();
    *afStruck = system.HasStruck();
    EXPECT_TRUE(asserts.Failures().empty());
    return told;
}

/// The errors alone.
std::string Logged(const LogCatcher& aLog, const TemporaryFolder& aFolder) {
    std::string text;
    for (const std::string& line : aLog.Texts()) {
        text += "; " + OneLine(line, aFolder);
    }
    return text;
}

/// The start of a server that has a table of its own.
std::string LoadOwn(const std::vector<Fault>& aFaults, bool* afStruck) {
    const LogCatcher log(kErrorsAlone);
    const MapperFolder folder;
    folder.WriteReadOnly(kFactoryTable);
    folder.WriteWritable(kOwnTable);
    std::unique_ptr<OpenMapper> mapper;
    const std::string told = Perform(aFaults, afStruck, [&] {
        mapper = folder.New();
        return Told(mapper->Load(), folder.Folder());
    });
    EXPECT_EQ(folder.ReadWritable(), kOwnTable);
    EXPECT_EQ(NextStart(folder), "song.mp3 own.mpg");
    return told + ": " + Joined(mapper->Names()) + Logged(log, folder.Folder());
}

/// The first start of a server, which copies the factory's table.
std::string LoadFirst(const std::vector<Fault>& aFaults, bool* afStruck) {
    const LogCatcher log(kErrorsAlone);
    const MapperFolder folder;
    folder.WriteReadOnly(kFactoryTable);
    std::unique_ptr<OpenMapper> mapper;
    const std::string told = Perform(aFaults, afStruck, [&] {
        mapper = folder.New();
        return Told(mapper->Load(), folder.Folder());
    });
    // Copied by now, or copied then: never a part, and never nothing.
    const bool fCopied = std::filesystem::exists(folder.WritablePath());
    EXPECT_EQ(NextStart(folder), fCopied ? "factory.mpg" : "factory.mpg factory.mpg");
    EXPECT_EQ(NextStart(folder), "factory.mpg");
    return told + ": " + Joined(mapper->Names()) + Logged(log, folder.Folder());
}

/// What a save of an added entry came to, and which table stands then.
std::string SaveAdded(const MapperFolder& aFolder, OpenMapper& aMapper, const std::vector<Fault>& aFaults,
                      bool* afStruck) {
    DLNAMediaMapperEntry* added = new DLNAMediaMapperEntry;
    EXPECT_TRUE(added->Set("added.mp3,audio/mpeg,MP3X"));
    aMapper.AddEntry(added);
    const std::string told =
        Perform(aFaults, afStruck, [&] { return Told(aMapper.Save(), aFolder.Folder()); });
    const LogCatcher quiet;
    // Again without a load in between: refused, whatever came of the first.
    const AssertCatcher asserts;
    EXPECT_EQ(Told(aMapper.Save(), aFolder.Folder()), kNotWritten);
    EXPECT_EQ(asserts.Failures(), AssertCatcher::Noted({"!mfSaved @ DLNAMediaMapper"}));
    return told + ": " + NextStart(aFolder);
}

std::string SaveOver(const std::vector<Fault>& aFaults, bool* afStruck) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper = folder.Loaded(kOwnTable);
    const std::string told = SaveAdded(folder, *mapper, aFaults, afStruck);
    // What was left beside it goes with the next save.
    const FaultySystem system;
    const std::unique_ptr<OpenMapper> next = folder.New();
    EXPECT_FALSE(next->Load().IsError());
    EXPECT_FALSE(next->Save().IsError());
    EXPECT_EQ(FilesIn(folder.Folder().Path("rw")), "_MediaMapper.txt");
    return told;
}

/// The table is a link to another disk, on which it does not stand yet.
std::string SaveThroughLink(const std::vector<Fault>& aFaults, bool* afStruck) {
    const MapperFolder folder;
    folder.WriteReadOnly(kFactoryTable);
    const std::unique_ptr<OpenMapper> mapper = folder.Loaded(kOwnTable);
    std::filesystem::remove(folder.WritablePath());
    std::filesystem::create_directory(folder.Folder().Path("disk"));
    std::filesystem::create_symlink("../disk/table.txt", folder.WritablePath());
    const std::string told = SaveAdded(folder, *mapper, aFaults, afStruck);
    EXPECT_TRUE(std::filesystem::is_symlink(folder.WritablePath()));
    return told;
}

} // namespace

TEST(MapperFaults, LoadReadsTheWholeTableOrTellsThatItCannot) {
    const std::string good = "good: song.mp3 own.mpg\n";
    const std::string refused = kNotOpened + ": \n";
    // Without its folder the mapper has no file of its own, and holds the factory's.
    const std::string noFolder = kNoFolder + ": factory.mpg; " + kNoFolderLogged + "\n";
    const std::string mkdirs = "1-" + std::to_string(Mkdirs()) + ": ";
    EXPECT_EQ(RunUndisturbed(LoadOwn) + "\n", good);
    ExpectOutcomes(LoadOwn,
                   {{SystemCall::Open, "1: " + refused, "1: " + refused},
                    {SystemCall::FStat, "1: " + refused, "1: " + refused},
                    {SystemCall::PRead, "1-2: " + refused, "1-2: " + refused},
                    {SystemCall::Close, "1: " + good, "1: " + good},
                    // The second one asks whether the table is there: what cannot be looked at is.
                    {SystemCall::Stat, "1: " + noFolder + "2: " + good, "1: " + noFolder + "2: " + good},
                    {SystemCall::Mkdir, mkdirs + good, mkdirs + good}});
}

TEST(MapperFaults, FirstStartCopiesTheWholeTableOrNothing) {
    const std::string good = "good: factory.mpg factory.mpg\n";
    const std::string noFactory = kNotOpened + ": ; " + kFactoryLogged + "\n";
    const std::string notCreated = kNotOpened + ": factory.mpg; " + kNotCreatedLogged + "\n";
    const std::string notWritten = kNotOpened + ": factory.mpg; " + kNotWrittenLogged + "\n";
    const std::string notReadBack = kNotOpened + ": factory.mpg\n";
    const std::string noFolder = kNoFolder + ": factory.mpg; " + kNoFolderLogged + "\n";
    EXPECT_EQ(RunUndisturbed(LoadFirst) + "\n", good);
    const std::string opens = "1: " + noFactory + "2-3: " + notCreated + "4: " + notReadBack;
    const std::string fstats = "1: " + noFactory + "2: " + notWritten + "3: " + notReadBack;
    const std::string preads = "1-2: " + noFactory + "3-4: " + notReadBack;
    const std::string stats = "1: " + noFolder + "2: " + kNotOpened + ": \n3: " + notWritten;
    ExpectOutcomes(LoadFirst, {{SystemCall::Open, opens, opens},
                               {SystemCall::Close, "1: " + good + "2: " + notWritten + "3: " + good,
                                "1-2: " + notWritten + "3: " + good},
                               {SystemCall::FStat, fstats, fstats},
                               {SystemCall::PRead, preads, preads},
                               {SystemCall::Stat, stats, stats},
                               {SystemCall::PWrite, "1: " + notWritten, "1: " + notWritten},
                               {SystemCall::FSync, "1: " + notWritten, "1: " + notWritten},
                               {SystemCall::Rename, "1: " + notWritten, "1: " + notWritten},
                               {SystemCall::Unlink, "1: " + good, "1: " + good}, // of what is not there
                               {SystemCall::RealPath, "1: " + notCreated, "1: " + notCreated},
                               {SystemCall::ReadLink, "1: " + notCreated, "1: " + notCreated},
                               {SystemCall::Mkdir, "1-" + std::to_string(Mkdirs()) + ": " + good,
                                "1-" + std::to_string(Mkdirs() - 1) + ": " + noFolder +
                                    std::to_string(Mkdirs()) + ": " + good}});
}

TEST(MapperFaults, SaveLeavesTheOldTableOrTheWholeNewOne) {
    const std::string saved = "good: song.mp3 added.mp3 own.mpg\n";
    const std::string notCreated = kNotCreated + ": song.mp3 own.mpg\n";
    const std::string notWritten = kNotWritten + ": song.mp3 own.mpg\n";
    EXPECT_EQ(RunUndisturbed(SaveOver) + "\n", saved);
    const std::string fstats = "1: " + notCreated + "2: " + notWritten;
    ExpectOutcomes(SaveOver, {{SystemCall::RealPath, "1: " + notCreated, "1: " + notCreated},
                              {SystemCall::Open, "1-2: " + notCreated, "1-2: " + notCreated},
                              {SystemCall::FStat, fstats, fstats},
                              // The first one closes the proof that the old file may be written.
                              {SystemCall::Close, "1: " + saved + "2: " + notWritten, "1-2: " + notWritten},
                              {SystemCall::Unlink, "1: " + saved, "1: " + saved},
                              {SystemCall::FChmod, "1: " + notCreated, "1: " + notCreated},
                              {SystemCall::PWrite, "1: " + notWritten, "1: " + notWritten},
                              {SystemCall::Stat, "1: " + notWritten, "1: " + notWritten},
                              {SystemCall::FSync, "1: " + notWritten, "1: " + notWritten},
                              {SystemCall::Rename, "1: " + notWritten, "1: " + notWritten}});
}

TEST(MapperFaults, SaveThroughALinkToNothingLeavesNothingOrTheWholeTable) {
    const std::string saved = "good: song.mp3 added.mp3 own.mpg\n";
    // Where nothing stands yet the next start copies the factory's table; an empty file would be taken for a
    // table without entries.
    const std::string notCreated = kNotCreated + ": factory.mpg factory.mpg\n";
    const std::string notWritten = kNotWritten + ": factory.mpg factory.mpg\n";
    EXPECT_EQ(RunUndisturbed(SaveThroughLink) + "\n", saved);
    ExpectOutcomes(SaveThroughLink, {{SystemCall::RealPath, "1-2: " + notCreated, "1-2: " + notCreated},
                                     {SystemCall::ReadLink, "1-2: " + notCreated, "1-2: " + notCreated},
                                     {SystemCall::Open, "1-2: " + notCreated, "1-2: " + notCreated},
                                     {SystemCall::FStat, "1: " + notWritten, "1: " + notWritten},
                                     {SystemCall::Close, "1: " + notWritten, "1: " + notWritten},
                                     {SystemCall::Unlink, "1: " + saved, "1: " + saved},
                                     {SystemCall::PWrite, "1: " + notWritten, "1: " + notWritten},
                                     {SystemCall::Stat, "1: " + notWritten, "1: " + notWritten},
                                     {SystemCall::FSync, "1: " + notWritten, "1: " + notWritten},
                                     {SystemCall::Rename, "1: " + notWritten, "1: " + notWritten}});
}

TEST(MapperFaults, ReadsAndWritesThatComeShortBeforeTheyFailAreNoTable) {
    const std::string loaded = ": good: song.mp3 own.mpg\n";
    FaultManner manner;
    manner.mMaximum = 1;
    manner.mCall = SystemCall::PRead;
    manner.mError = EIO;
    // A disk that gives the rest when it is asked again has given the whole table.
    EXPECT_EQ(SweepFaults(manner, LoadOwn), "1-2" + loaded);
    manner.mfForGood = true;
    // The second one finds the end.
    EXPECT_EQ(SweepFaults(manner, LoadOwn), "1: " + kNotOpened + ": \n2" + loaded);
    manner.mCall = SystemCall::PWrite;
    manner.mError = ENOSPC;
    for (const bool fForGood : {false, true}) {
        manner.mfForGood = fForGood;
        EXPECT_EQ(SweepFaults(manner, SaveOver), "1: " + kNotWritten + ": song.mp3 own.mpg\n");
        EXPECT_EQ(SweepFaults(manner, SaveThroughLink), "1: " + kNotWritten + ": factory.mpg factory.mpg\n");
        EXPECT_EQ(SweepFaults(manner, LoadFirst),
                  "1: " + kNotOpened + ": factory.mpg; " + kNotWrittenLogged + "\n");
    }
}

TEST(MapperFaults, InterruptionsAndShortReadsAndWritesChangeNothing) {
    for (const std::size_t maximum : {std::size_t{1}, std::size_t{7}}) {
        for (const FaultyOperation operation : {LoadOwn, LoadFirst, SaveOver, SaveThroughLink}) {
            EXPECT_EQ(RunInterrupted(maximum, operation), RunUndisturbed(operation));
        }
    }
}
