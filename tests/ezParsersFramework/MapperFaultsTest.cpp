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
    for (const auto& entry : std::filesystem::recursive_directory_iterator(aFolder)) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return Joined(names);
}

/// After an operation nothing of our own stands beside a table, unless it could not be removed, or not be
/// told whether it is our own.
void ExpectNothingBeside(const TemporaryFolder& aFolder, const std::vector<Fault>& aFaults) {
    const auto keeps = [](const Fault& aFault) {
        return aFault.mCall == SystemCall::Unlink || aFault.mCall == SystemCall::LStat ||
               aFault.mCall == SystemCall::FStat;
    };
    if (std::none_of(aFaults.begin(), aFaults.end(), keeps)) {
        EXPECT_EQ(FilesIn(aFolder.GetPath()).find(".ezsave"), std::string::npos);
    }
}

/// The folders above and of the table, each of which is made; the last also by its path with the "/".
std::size_t Mkdirs() {
    const MapperFolder folder;
    const std::string path = folder.WritablePath();
    return static_cast<std::size_t>(std::count(path.begin(), path.end(), '/'));
}

/// A trouble that there is all the time.
Fault Standing(SystemCall aCall, int anError) {
    Fault fault;
    fault.mCall = aCall;
    fault.mTimes = Fault::kForGood;
    fault.mError = anError;
    return fault;
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
    ExpectNothingBeside(folder.Folder(), aFaults);
    // Copied by now, or copied then: never a part, and never nothing.
    const bool fCopied = std::filesystem::exists(folder.WritablePath());
    EXPECT_EQ(NextStart(folder), fCopied ? "factory.mpg" : "factory.mpg factory.mpg");
    EXPECT_EQ(NextStart(folder), "factory.mpg");
    EXPECT_EQ(FilesIn(folder.Folder().Path("rw")), "_MediaMapper.txt");
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
    ExpectNothingBeside(aFolder.Folder(), aFaults);
    const LogCatcher quiet;
    // Again without a load in between: refused, whatever came of the first.
    const AssertCatcher asserts;
    EXPECT_EQ(Told(aMapper.Save(), aFolder.Folder()), kNotWritten);
    EXPECT_EQ(asserts.Failures(), AssertCatcher::Noted({"!mfSaved @ DLNAMediaMapper"}));
    return told + ": " + NextStart(aFolder);
}

/// What was left beside a table goes with the next save of a server that starts anew.
void ExpectNextSaveClears(const MapperFolder& aFolder, const std::string& aFolderOfTable,
                          const std::string& aTable) {
    const LogCatcher quiet;
    const FaultySystem system;
    const std::unique_ptr<OpenMapper> next = aFolder.New();
    EXPECT_FALSE(next->Load().IsError());
    EXPECT_FALSE(next->Save().IsError());
    EXPECT_EQ(FilesIn(aFolderOfTable), aTable);
}

std::string SaveOverTable(const std::string& aTable, const std::vector<Fault>& aFaults, bool* afStruck) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper = folder.Loaded(aTable);
    std::string told = SaveAdded(folder, *mapper, aFaults, afStruck);
    ExpectNextSaveClears(folder, folder.Folder().Path("rw"), "_MediaMapper.txt");
    return told;
}

std::string SaveOver(const std::vector<Fault>& aFaults, bool* afStruck) {
    return SaveOverTable(kOwnTable, aFaults, afStruck);
}

/// The old table is longer than the new one, which has no remarks.
std::string SaveOverLonger(const std::vector<Fault>& aFaults, bool* afStruck) {
    return SaveOverTable(kOwnTable + "#" + std::string(9000, '.') + "\n", aFaults, afStruck);
}

/// The table is a link to another disk.
std::string SaveThroughLink(const std::vector<Fault>& aFaults, bool* afStruck) {
    const MapperFolder folder;
    folder.WriteReadOnly(kFactoryTable);
    const std::unique_ptr<OpenMapper> mapper = folder.Loaded(kOwnTable);
    folder.Folder().MakeFolder("disk");
    std::filesystem::rename(folder.WritablePath(), folder.Folder().Path("disk/table.txt"));
    std::filesystem::create_symlink("../disk/table.txt", folder.WritablePath());
    std::string told = SaveAdded(folder, *mapper, aFaults, afStruck);
    ExpectNextSaveClears(folder, folder.Folder().Path("disk"), "table.txt");
    EXPECT_EQ(FilesIn(folder.Folder().Path("rw")), "_MediaMapper.txt");
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
                    // The second one asks whether the table is there: what cannot be looked at is. The third
                    // notes what it is like.
                    {SystemCall::Stat, "1: " + noFolder + "2-3: " + good, "1: " + noFolder + "2-3: " + good},
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
    const std::string opens =
        "1: " + noFactory + "2-4: " + notCreated + "5: " + notWritten + "6: " + notReadBack;
    const std::string preads = "1-2: " + noFactory + "3-4: " + notReadBack;
    const std::string stats = "1: " + noFolder + "2: " + kNotOpened + ": \n3: " + good;
    ExpectOutcomes(
        LoadFirst,
        {{SystemCall::Open, opens, opens},
         {SystemCall::Close, "1: " + good + "2: " + notWritten + "3-5: " + good,
          "1-2: " + notWritten + "3-5: " + good},
         {SystemCall::FStat, "1: " + noFactory + "2: " + good + "3: " + notWritten + "4: " + notReadBack,
          "1: " + noFactory + "2: " + notCreated + "3: " + notWritten + "4: " + notReadBack},
         {SystemCall::LStat, "1: " + notCreated + "2: " + good + "3: " + notWritten,
          "1-2: " + notCreated + "3: " + notWritten},
         {SystemCall::PRead, preads, preads},
         {SystemCall::Stat, stats, stats},
         {SystemCall::PWrite, "1: " + notWritten, "1: " + notWritten},
         {SystemCall::FSync, "1: " + notWritten, "1: " + notWritten},
         {SystemCall::Rename, "1: " + notWritten, "1: " + notWritten},
         {SystemCall::OpenDir, "1: " + good, "1: " + good},
         {SystemCall::ReadDir, "1-3: " + good, "1-3: " + good},
         {SystemCall::CloseDir, "1: " + good, "1: " + good},
         {SystemCall::FLock, "1: " + good, "1: " + good},
         {SystemCall::Mkdir, "1-" + std::to_string(Mkdirs()) + ": " + good,
          "1-" + std::to_string(Mkdirs() - 1) + ": " + noFolder + std::to_string(Mkdirs()) + ": " + good}});
}

TEST(MapperFaults, SaveLeavesTheOldTableOrTheWholeNewOne) {
    const std::string saved = "good: song.mp3 added.mp3 own.mpg\n";
    const std::string notCreated = kNotCreated + ": song.mp3 own.mpg\n";
    const std::string notWritten = kNotWritten + ": song.mp3 own.mpg\n";
    // One failure alone may be mended by asking for the place in another way, or for another name.
    const std::string fstats = "1: " + notCreated + "2-3: " + saved + "4: " + notWritten;
    const std::string lstats = "1-2: " + saved + "3: " + notWritten;
    for (const auto save : {SaveOver, SaveThroughLink}) {
        EXPECT_EQ(RunUndisturbed(save) + "\n", saved);
        ExpectOutcomes(
            save,
            {{SystemCall::ReadLink, "1: " + saved, "1: " + saved},
             // The last one holds the lock of the new file until it has its name.
             {SystemCall::Open, "1: " + notCreated + "2: " + saved + "3: " + notCreated + "4: " + notWritten,
              "1-3: " + notCreated + "4: " + notWritten},
             {SystemCall::FStat, fstats, "1-3: " + notCreated + "4: " + notWritten},
             {SystemCall::LStat, lstats, "1-2: " + notCreated + "3: " + notWritten},
             // The first one closes the proof that the old file may be written, the last ones what is done.
             {SystemCall::Close, "1: " + saved + "2: " + notWritten + "3-4: " + saved,
              "1-2: " + notWritten + "3-4: " + saved},
             // What cannot be cleared up is left for the next one, and where there are no locks no lock is
             // held.
             {SystemCall::OpenDir, "1: " + saved, "1: " + saved},
             {SystemCall::ReadDir, "1-4: " + saved, "1-4: " + saved},
             {SystemCall::CloseDir, "1: " + saved, "1: " + saved},
             {SystemCall::FLock, "1: " + saved, "1: " + saved},
             {SystemCall::FChmod, "1: " + notCreated, "1: " + notCreated},
             {SystemCall::PWrite, "1: " + notWritten, "1: " + notWritten},
             {SystemCall::FSync, "1: " + notWritten, "1: " + notWritten},
             {SystemCall::Rename, "1: " + notWritten, "1: " + notWritten}});
    }
}

// Where nothing stands an empty file would be taken for a table without entries, and where a link leads is
// not ours to choose.
TEST(MapperFaults, SaveThroughALinkToNothingIsRefused) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper = folder.Loaded(kOwnTable);
    std::filesystem::remove(folder.WritablePath());
    folder.Folder().MakeFolder("disk");
    std::filesystem::create_symlink("../disk/table.txt", folder.WritablePath());
    EXPECT_EQ(Told(mapper->Save(), folder.Folder()), kNotCreated);
    EXPECT_EQ(FilesIn(folder.Folder().Path("disk")), "");
    EXPECT_EQ(FilesIn(folder.Folder().Path("rw")), "_MediaMapper.txt");
}

// What cannot be put in place and cannot be removed either stays beside the table, and is no table.
TEST(MapperFaults, WhatCannotBeRemovedIsNeverTakenForATable) {
    const std::string notWritten = "1: " + kNotWritten + ": ";
    Fault kept = Standing(SystemCall::Unlink, EACCES);
    for (const SystemCall call :
         {SystemCall::PWrite, SystemCall::Rename, SystemCall::FSync, SystemCall::Close}) {
        FaultManner manner;
        manner.mCall = call;
        manner.mError = call == SystemCall::PWrite ? ENOSPC : EIO;
        manner.mfForGood = true;
        SCOPED_TRACE(NameOf(call));
        // The first close is that of the proof that the old table may be written.
        const std::string over = call == SystemCall::Close ? "1-2" + notWritten.substr(1) : notWritten;
        // The last ones are those of the lock and of the folder, when it is done.
        const std::string done = call == SystemCall::Close ? "3-4: good: song.mp3 added.mp3 own.mpg\n" : "";
        for (const auto save : {SaveOver, SaveThroughLink}) {
            manner.mMaximum = Fault::kWhole;
            EXPECT_EQ(SweepFaults(manner, Under(kept, save)), over + "song.mp3 own.mpg\n" + done);
            manner.mMaximum = 20;
            if (call == SystemCall::PWrite) {
                EXPECT_EQ(SweepFaults(manner, Under(kept, save)), notWritten + "song.mp3 own.mpg\n");
            }
        }
    }
}

// Only a refusal of the folder leads into the old table itself.
TEST(MapperFaults, SaveInPlaceLeavesTheOldTableOrTheWholeNewOne) {
    const std::string entries = "song.mp3 added.mp3 own.mpg\n";
    const std::string saved = "good: " + entries;
    const std::string notCreated = "1: " + kNotCreated + ": song.mp3 own.mpg\n";
    const std::string notWritten = "1: " + kNotWritten + ": song.mp3 own.mpg\n";
    for (const int refusal : {EACCES, EPERM, EROFS}) {
        Fault refused = Standing(SystemCall::Open, refusal);
        refused.mFrom = 3; // after the proof that the old table may be written, and its folder
        refused.mTimes = 1;
        // One failure alone on the way to the folder is mended by asking in another way.
        const std::string mended = notCreated + "2: " + saved + "3" + notCreated.substr(1);
        const std::string unopened = "1-3" + notCreated.substr(1);
        // The last close comes when all of it is on the disk, and cannot be taken back.
        const std::string closed = "1: " + kNotWritten + ": " + entries;
        std::vector<FaultOutcomes> outcomes = {
            {SystemCall::ReadLink, "1: " + saved, "1: " + saved},
            {SystemCall::Open, mended, unopened},
            {SystemCall::FStat, mended, unopened},
            {SystemCall::LStat, "1: " + saved, notCreated},
            {SystemCall::OpenDir, "1: " + saved, "1: " + saved},
            {SystemCall::ReadDir, "1-4: " + saved, "1-4: " + saved},
            {SystemCall::CloseDir, "1: " + saved, "1: " + saved},
            {SystemCall::FLock, "1: " + saved, "1: " + saved},
            // What is kept of the old one is read whole, or nothing is written.
            {SystemCall::PRead, notCreated, notCreated},
            {SystemCall::Memory, notCreated, notCreated},
            {SystemCall::PWrite, notWritten, notWritten},
            {SystemCall::FSync, notWritten, notWritten},
            {SystemCall::Close, closed + "2: " + saved, closed + "2: " + saved}};
        for (const bool fLonger : {false, true}) {
            SCOPED_TRACE(std::to_string(refusal) + (fLonger ? " longer" : ""));
            const FaultyOperation save = Under(refused, fLonger ? SaveOverLonger : SaveOver);
            EXPECT_EQ(RunUndisturbed(save) + "\n", saved);
            if (fLonger) {
                outcomes.push_back({SystemCall::FTruncate, notWritten, notWritten});
            }
            ExpectOutcomes(save, outcomes);
            // A disk that fills up half-way takes what it held before.
            FaultManner manner;
            manner.mCall = SystemCall::PWrite;
            manner.mMaximum = 20;
            manner.mError = ENOSPC;
            EXPECT_EQ(SweepFaults(manner, save), notWritten);
        }
    }
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
        EXPECT_EQ(SweepFaults(manner, SaveThroughLink), "1: " + kNotWritten + ": song.mp3 own.mpg\n");
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
