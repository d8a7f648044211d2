#include "ezHosting/HostFolders.h"

#include "ezHosting/detail/FolderSearch.h"
#include "ezHosting/detail/Places.h"
#include "support/TemporaryFolder.h"
#include "support/Unprivileged.h"
#include "support/WorkingDirectory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr const char* kIni = "mediaCTRLMediaTypes.ini";
constexpr const char* kTable = "[MimeTypes]\na=a@audio/a@item.audioItem\n";

/// What is met, with what was looked at: "READ_ONLY WRITABLE | PATH: NOTE; PATH: NOTE", a path within the
/// stage without its folder.
std::string TextOf(const ezHostFolders& aFolders, const std::string& aStage) {
    std::string text = aFolders.mReadOnly + " " + aFolders.mWritable + " |";
    for (const ezHostFolders::Place& place : aFolders.mPlaces) {
        text += " " + place.mPath + ": " + (place.mNote.empty() ? "there" : place.mNote) + ";";
    }
    for (std::size_t at = text.find(aStage + "/"); at != std::string::npos; at = text.find(aStage + "/")) {
        text.erase(at, aStage.size() + 1);
    }
    return text;
}

/// A working directory "work", folders "ro" and "rw" beside it, and "inst" as the installed one.
struct Stage {
    const char* mConfigPath; ///< of "ConfigPath.ini"; null for none
    std::vector<const char*> mTables;
    const char* mConfigFolder;
    const char* mStateFolder;
    const char* mFound;
};

const Stage kStages[] = {
    // The order of the places.
    {"ReadOnly=../ro\n",
     {"ro", "work", "inst"},
     "",
     "",
     "../ro . | ConfigPath.ini: names the read-only folder; ../ro/mediaCTRLMediaTypes.ini: there; "
     "./mediaCTRLMediaTypes.ini: there;"},
    {nullptr, {"work", "inst"}, "", "", ". . | ConfigPath.ini: not found; ./mediaCTRLMediaTypes.ini: there;"},
    {nullptr,
     {"inst"},
     "",
     "",
     "inst . | ConfigPath.ini: not found; ./mediaCTRLMediaTypes.ini: not found; "
     "inst/mediaCTRLMediaTypes.ini: there;"},
    {nullptr,
     {},
     "",
     "",
     ". . | ConfigPath.ini: not found; ./mediaCTRLMediaTypes.ini: not found; "
     "inst/mediaCTRLMediaTypes.ini: not found;"},
    // The operator has decided, also for a folder without a table.
    {"ReadOnly=../ro\n",
     {"inst"},
     "",
     "",
     "../ro . | ConfigPath.ini: names the read-only folder; ../ro/mediaCTRLMediaTypes.ini: not found; "
     "./mediaCTRLMediaTypes.ini: not found;"},
    {"ReadOnly=../ro\nReadWrite=../rw\n",
     {"rw", "work"},
     "",
     "",
     "../ro ../rw | ConfigPath.ini: names the read-only folder; ../ro/mediaCTRLMediaTypes.ini: not found; "
     "../rw/mediaCTRLMediaTypes.ini: there;"},
    // Only the writable folder is named: the other is looked for.
    {"ReadWrite=../rw\n",
     {"inst"},
     "",
     "",
     "inst ../rw | ConfigPath.ini: names no read-only folder; ./mediaCTRLMediaTypes.ini: not found; "
     "inst/mediaCTRLMediaTypes.ini: there; ../rw/mediaCTRLMediaTypes.ini: not found;"},
    {"ReadWrite=../rw\n",
     {"rw"},
     "",
     "",
     ". ../rw | ConfigPath.ini: names no read-only folder; ./mediaCTRLMediaTypes.ini: not found; "
     "inst/mediaCTRLMediaTypes.ini: not found; ../rw/mediaCTRLMediaTypes.ini: there;"},
    {"ReadOnly=\n",
     {"work"},
     "",
     "",
     ". . | ConfigPath.ini: names no read-only folder; ./mediaCTRLMediaTypes.ini: there;"},
    // A folder that is given decides, whatever it holds, and is the writable one too.
    {"ReadOnly=../rw\n",
     {"ro", "rw", "work", "inst"},
     "../ro",
     "",
     "../ro ../ro | ../ro/mediaCTRLMediaTypes.ini: there;"},
    {nullptr,
     {"rw", "work", "inst"},
     "../ro/",
     "",
     "../ro/ ../ro/ | ../ro/mediaCTRLMediaTypes.ini: not found;"},
    // So does a writable one.
    {nullptr,
     {"rw"},
     "../ro",
     "../rw",
     "../ro ../rw | ../ro/mediaCTRLMediaTypes.ini: not found; ../rw/mediaCTRLMediaTypes.ini: there;"},
    {"ReadWrite=../ro\n",
     {"work"},
     "",
     "../rw",
     ". ../rw | ConfigPath.ini: names no read-only folder; ./mediaCTRLMediaTypes.ini: there; "
     "../rw/mediaCTRLMediaTypes.ini: not found;"},
};

/// Whether one of the two folders is among those with a table.
bool IsTableExpected(const std::string& aFound) {
    return aFound.substr(aFound.find('|')).find(": there") != std::string::npos;
}

} // namespace

TEST(HostFolders, AreFoundInTheirOrder) {
    for (const Stage& stage : kStages) {
        const TemporaryFolder folder;
        for (const char* name : {"work", "ro", "rw", "inst"}) {
            folder.MakeFolder(name);
        }
        if (stage.mConfigPath != nullptr) {
            folder.Write("work/ConfigPath.ini", std::string("[ConfigPath]\n") + stage.mConfigPath);
        }
        for (const char* name : stage.mTables) {
            folder.Write(std::string(name) + "/" + kIni, kTable);
        }
        const WorkingDirectory working(folder.Path("work"));
        const ezHostFolders folders =
            SearchHostFolders(stage.mConfigFolder, stage.mStateFolder, folder.Path("inst"));
        EXPECT_EQ(TextOf(folders, folder.GetPath()), stage.mFound);
        EXPECT_EQ(folders.HasTable(), IsTableExpected(stage.mFound)) << stage.mFound;
    }
}

TEST(HostFolders, WithoutAnInstalledOneAreTheWorkingDirectory) {
    const TemporaryFolder folder;
    const WorkingDirectory working(folder.GetPath());
    EXPECT_EQ(TextOf(SearchHostFolders("", "", ""), folder.GetPath()),
              ". . | ConfigPath.ini: not found; ./mediaCTRLMediaTypes.ini: not found;");
}

TEST(HostFolders, AreNotLedAstrayByWhatIsNoFile) {
    const TemporaryFolder folder;
    folder.MakeFolder(std::string("directory/") + kIni);
    folder.MakeFolder("cycle");
    fs::create_symlink(kIni, folder.Path(std::string("cycle/") + kIni));
    folder.MakeFolder("dangling");
    fs::create_symlink("nowhere", folder.Path(std::string("dangling/") + kIni));
    folder.Write("real/table", kTable);
    fs::create_symlink("table", folder.Path(std::string("real/") + kIni));
    folder.Write("file", "");
    struct {
        std::string mFolder;
        const char* mNote;
    } const rows[] = {
        {folder.Path("directory"), "not a regular file"},
        {folder.Path("cycle"), "Too many levels of symbolic links"},
        {folder.Path("dangling"), "not found"},
        {folder.Path("real"), ""},
        {folder.Path("file"), "not found"}, // which is no folder
        {std::string("a\0b", 3), "not found"},
        {std::string(300, 'x'), "File name too long"},
        {std::string(5'000'000, 'x'), "File name too long"},
        {folder.Path("none"), "not found"},
    };
    for (const auto& row : rows) {
        const ezHostFolders folders = FindHostFolders(row.mFolder);
        EXPECT_EQ(folders.mReadOnly, row.mFolder);
        ASSERT_EQ(folders.mPlaces.size(), 1U);
        EXPECT_EQ(folders.mPlaces[0].mNote, row.mNote) << row.mFolder.substr(0, 100);
        EXPECT_EQ(folders.HasTable(), row.mNote[0] == '\0');
    }
}

TEST(HostFolders, OfAConfigPathOfMegabytesLeadNowhere) {
    const TemporaryFolder folder;
    folder.Write("ConfigPath.ini", "[ConfigPath]\nReadOnly=" + std::string(5'000'000, 'x') + "\n");
    const WorkingDirectory working(folder.GetPath());
    const ezHostFolders folders = SearchHostFolders("", "", "");
    EXPECT_FALSE(folders.HasTable());
    EXPECT_LT(WhyNoTable(folders).size(), 3000U);
}

TEST(HostFolders, OfAConfigPathThatCannotBeReadAreThoseWithoutIt) {
    const TemporaryFolder folder;
    const WorkingDirectory working(folder.GetPath());
    folder.MakeFolder("ConfigPath.ini");
    EXPECT_EQ(TextOf(SearchHostFolders("", "", ""), folder.GetPath()),
              ". . | ConfigPath.ini: not a regular file; ./mediaCTRLMediaTypes.ini: not found;");
    fs::remove("ConfigPath.ini");
    folder.Write("ConfigPath.ini", "[ConfigPath]\nReadOnly=/etc\n");
    fs::permissions("ConfigPath.ini", fs::perms::none);
    fs::permissions(".", fs::perms::all);
    const Unprivileged unprivileged;
    EXPECT_EQ(TextOf(SearchHostFolders("", "", ""), folder.GetPath()),
              ". . | ConfigPath.ini: Permission denied; ./mediaCTRLMediaTypes.ini: not found;");
}

TEST(HostFolders, WithoutATableAreAllNamed) {
    const TemporaryFolder folder;
    const WorkingDirectory working(folder.GetPath());
    EXPECT_EQ(WhyNoTable(SearchHostFolders("", "", "/srv/share")),
              "no media types: ConfigPath.ini: not found; ./mediaCTRLMediaTypes.ini: not found; "
              "/srv/share/mediaCTRLMediaTypes.ini: not found");
    folder.Write("ConfigPath.ini", "[ConfigPath]\nReadOnly=ro\nReadWrite=rw\n");
    folder.Write(std::string("ro/") + kIni, "");
    folder.MakeFolder(std::string("rw/") + kIni);
    EXPECT_EQ(WhyNoTable(SearchHostFolders("", "", "/srv/share")),
              "no media types: ConfigPath.ini: names the read-only folder; "
              "ro/mediaCTRLMediaTypes.ini: no types were read from it; "
              "rw/mediaCTRLMediaTypes.ini: not a regular file");
    fs::resize_file(folder.Path(std::string("ro/") + kIni), (std::uintmax_t{64} << 20) + 1);
    EXPECT_EQ(WhyNoTable(FindHostFolders("ro")), "no media types: ro/mediaCTRLMediaTypes.ini: too large");
    EXPECT_EQ(FindHostFolders("ro").WhyNoTable(), "no media types: ro/mediaCTRLMediaTypes.ini: too large");
    fs::resize_file(folder.Path(std::string("ro/") + kIni), std::uintmax_t{64} << 20);
    EXPECT_EQ(WhyNoTable(FindHostFolders("ro")),
              "no media types: ro/mediaCTRLMediaTypes.ini: no types were read from it");
}
