#include "ezPlatform/files/PathName.h"

#include "ezPlatform/files/File.h"
#include "support/Str.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <string>

namespace {

struct Taken {
    const char* mPath;
    const char* mFullName;
    const char* mFileName;
    const char* mExtension;
    bool mfAbsolute;
};

const Taken kTaken[] = {
    {"film.mpg", "film.mpg", "film", "mpg", false},
    {"/media/film.mpg", "film.mpg", "film", "mpg", true},
    {"media/film.MPG", "film.MPG", "film", "MPG", false},
    {"/media/film", "film", "film", "", true},
    {"film", "film", "film", "", false},
    {"a.tar.gz", "a.tar.gz", "a.tar", "gz", false},
    {"/x/a.tar.gz", "a.tar.gz", "a.tar", "gz", true},
    // The dot of a folder is no extension of what lies in it.
    {"/media.d/film", "film", "film", "", true},
    {"../film", "film", "film", "", false},
    {"..\\film", "film", "film", "", false},
    // A leading dot starts a name.
    {".profile", ".profile", ".profile", "", false},
    {"/home/.profile", ".profile", ".profile", "", true},
    {"C:\\.profile", ".profile", ".profile", "", true},
    {".profile.bak", ".profile.bak", ".profile", "bak", false},
    {".", ".", ".", "", false},
    {"/.", ".", ".", "", true},
    // A dot with nothing after it.
    {"film.", "film.", "film", "", false},
    {"film.mpg.", "film.mpg.", "film.mpg", "", false},
    {"a..b", "a..b", "a.", "b", false},
    // Separators.
    {"/", "", "", "", true},
    {"\\", "", "", "", true},
    {"//", "", "", "", true},
    {"/media/", "", "", "", true},
    {"media.d/", "", "", "", false},
    {"media\\film.mpg", "film.mpg", "film", "mpg", false},
    {"\\media\\film.mpg", "film.mpg", "film", "mpg", true},
    {"/media\\sub/film.mpg", "film.mpg", "film", "mpg", true},
    {"\\\\server\\share\\film.mpg", "film.mpg", "film", "mpg", true},
    // Drive letters.
    {"C:\\film.mpg", "film.mpg", "film", "mpg", true},
    {"c:/film.mpg", "film.mpg", "film", "mpg", true},
    {"z:/", "", "", "", true},
    {"A:\\", "", "", "", true},
    {"C:film.mpg", "C:film.mpg", "C:film", "mpg", false},
    {"C:", "C:", "C:", "", false},
    {"1:/film", "film", "film", "", false},
    {"@:/film", "film", "film", "", false},
    {"[:/film", "film", "film", "", false},
    {"`:/film", "film", "film", "", false},
    {"{:/film", "film", "film", "", false},
    {"CC:/film", "film", "film", "", false},
    {":/film", "film", "film", "", false},
    // A URL is never absolute.
    {"http://x", "x", "x", "", false},
    {"http://host/a/film.mpg", "film.mpg", "film", "mpg", false},
    {"file:///x", "x", "x", "", false},
    {"file:///media/film.mpg", "film.mpg", "film", "mpg", false},
    {"", "", "", "", false},
    {" /film", "film", "film", "", false},
};

} // namespace

TEST(PathName, TakesPathsApart) {
    for (const Taken& taken : kTaken) {
        const ezPathName path = ezPathName::MakeFilePath(taken.mPath);
        EXPECT_EQ(Str(path.GetFullPath()), taken.mPath);
        EXPECT_EQ(Str(path.GetFullName()), taken.mFullName) << taken.mPath;
        EXPECT_EQ(Str(path.GetFileName()), taken.mFileName) << taken.mPath;
        EXPECT_EQ(Str(path.GetExtension()), taken.mExtension) << taken.mPath;
        EXPECT_EQ(path.IsAbsolute(), taken.mfAbsolute) << taken.mPath;
        EXPECT_EQ(path.IsValid(), taken.mPath[0] != '\0') << taken.mPath;
    }
}

TEST(PathName, TheParentFolderHasNoExtension) {
    for (const char* text : {"..", "/media/..", "C:\\.."}) {
        const ezPathName path = ezPathName::MakeFilePath(text);
        EXPECT_EQ(Str(path.GetFullName()), "..") << text;
        EXPECT_EQ(Str(path.GetExtension()), "") << text;
    }
}

TEST(PathName, IsInvalidAndEmptyWhenMadeOfNothing) {
    const ezPathName path;
    EXPECT_FALSE(path.IsValid());
    EXPECT_FALSE(path.IsAbsolute());
    EXPECT_EQ(Str(path.GetFullPath()), "");
    EXPECT_EQ(Str(path.GetFullName()), "");
    EXPECT_EQ(Str(path.GetFileName()), "");
    EXPECT_EQ(Str(path.GetExtension()), "");
}

TEST(PathName, NothingIsResolvedOrMadeAbsolute) {
    const char* text = "./a/..//b/./missing.mpg";
    EXPECT_EQ(Str(ezPathName::MakeFilePath(text).GetFullPath()), text);
}

TEST(PathName, APOSIXNameThatHoldsABackslashStillOpens) {
    const TemporaryFolder folder;
    const std::string text = folder.Write("side\\film.mpg", "content");
    const ezPathName path = ezPathName::MakeFilePath(text.c_str());
    EXPECT_EQ(Str(path.GetFullPath()), text);
    EXPECT_EQ(Str(path.GetFullName()), "film.mpg") << "its names are those after the backslash";
    EXPECT_TRUE(ezFile(path.GetFullPath(), ezFileOpenMode_Read).Open());
}

TEST(PathName, KeepsEveryByteOfThePath) {
    const std::string text("/a\0b/c\0.\xFF", 9);
    const ezPathName path = ezPathName::MakeFilePath(Bytes(text));
    EXPECT_EQ(Str(path.GetFullPath()), text);
    EXPECT_EQ(Str(path.GetFileName()), std::string("c\0", 2));
    EXPECT_EQ(Str(path.GetExtension()), "\xFF");
}

RC_GTEST_PROP(PathNameModel, NameAndExtensionAreTheLastComponent, ()) {
    const std::string text =
        *rc::gen::container<std::string>(rc::gen::element('a', 'B', '.', '/', '\\', ':', '\0'));
    const ezPathName path = ezPathName::MakeFilePath(Bytes(text));
    const std::string fullName = Str(path.GetFullName());
    const std::string fileName = Str(path.GetFileName());
    const std::string extension = Str(path.GetExtension());

    RC_ASSERT(Str(path.GetFullPath()) == text);
    RC_ASSERT(fullName.find_first_of("/\\") == std::string::npos);
    RC_ASSERT(text.substr(text.size() - fullName.size()) == fullName);
    RC_ASSERT(
        (fullName.size() == text.size() || text.find_last_of("/\\") == text.size() - fullName.size() - 1));
    RC_ASSERT(extension.find('.') == std::string::npos);
    const bool hasExtension = fullName.find('.', 1) != std::string::npos;
    RC_ASSERT(fullName == (hasExtension ? fileName + "." + extension : fileName));
    RC_ASSERT((hasExtension || extension.empty()));
}
