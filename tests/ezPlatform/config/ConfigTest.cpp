#include "ezPlatform/config/Config.h"

#include "ezPlatform/base/System.h"
#include "support/Patience.h"
#include "support/ScriptedSystem.h"
#include "support/Str.h"
#include "support/TemporaryFolder.h"
#include "support/TurkishLocale.h"
#include "support/Unprivileged.h"
#include "support/WorkingDirectory.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <malloc.h>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

constexpr const char* kFile = "types.ini";
constexpr const char* kByteOrderMark = "\xEF\xBB\xBF";

using Keys = std::vector<std::pair<std::string, std::string>>;

/// The names and values of a section, in the order enumerated.
Keys KeysOf(const ezConfig& aConfig, const ezCString& aSection, bool afMerged = true) {
    Keys keys;
    const std::size_t count = aConfig.GetKeyCount(aSection, afMerged);
    for (std::size_t i = 0; i < count; ++i) {
        const ezCString name = aConfig.GetKeyNameCString(aSection, i, afMerged);
        keys.emplace_back(Str(name), Str(aConfig.GetCString(aSection, name, "<absent>")));
    }
    EXPECT_EQ(Str(aConfig.GetKeyNameCString(aSection, count, afMerged)), "") << "after the end";
    EXPECT_EQ(Str(aConfig.GetKeyNameCString(aSection, SIZE_MAX, afMerged)), "") << "after the end";
    return keys;
}

/// A configuration of one file only.
class OneFile {
public:
    explicit OneFile(const std::string& aContent)
        : mPath(mFolder.Write(kFile, aContent)),
          mConfig(mFolder.GetPath().c_str(), mFolder.GetPath().c_str(), kFile) {}

    Keys In(const char* aSection) const { return KeysOf(mConfig, aSection); }
    std::string Get(const char* aSection, const char* aKey) const {
        return Str(mConfig.GetCString(aSection, aKey, "<absent>"));
    }

private:
    TemporaryFolder mFolder;
    std::string mPath;

public:
    const ezConfig mConfig;
};

Keys SectionA(const std::string& aContent) {
    return OneFile(aContent).In("A");
}

/// A read-only and a read-write folder.
struct TwoFolders {
    TemporaryFolder mReadOnly;
    TemporaryFolder mReadWrite;

    ezCString ReadOnly() const { return mReadOnly.GetPath().c_str(); }
    ezCString ReadWrite() const { return mReadWrite.GetPath().c_str(); }
};

} // namespace

// The lines of a file.

TEST(Config, KeysStandInTheirSectionInFileOrder) {
    const OneFile config("[A]\nz=1\na=2\nm=3\n[B]\na=4\n");
    EXPECT_EQ(config.In("A"), (Keys{{"z", "1"}, {"a", "2"}, {"m", "3"}}));
    EXPECT_EQ(config.In("B"), (Keys{{"a", "4"}}));
}

TEST(Config, SectionNamesAreExact) {
    const OneFile config("[MimeTypes]\na=1\n[mimetypes]\na=2\n[ Spaced ]\na=3\n[]\na=4\n");
    EXPECT_EQ(config.Get("MimeTypes", "a"), "1");
    EXPECT_EQ(config.Get("mimetypes", "a"), "2");
    EXPECT_EQ(config.Get(" Spaced ", "a"), "3");
    EXPECT_EQ(config.Get("", "a"), "4");
    for (const char* section : {"MIMETYPES", "MimeType", "MimeTypes ", "Spaced", "[MimeTypes]"}) {
        EXPECT_EQ(config.mConfig.GetKeyCount(section, true), 0U) << section;
        EXPECT_EQ(config.Get(section, "a"), "<absent>") << section;
        EXPECT_EQ(Str(config.mConfig.GetKeyNameCString(section, 0, true)), "") << section;
        EXPECT_EQ(Str(config.mConfig.GetKeyNameCString(section, 0, false)), "") << section;
    }
}

TEST(Config, KeysCompareWithoutCaseAndAreNamedAsWritten) {
    const OneFile config("[A]\nMpG=1\n");
    for (const char* key : {"MpG", "mpg", "MPG"}) {
        EXPECT_EQ(config.Get("A", key), "1") << key;
    }
    EXPECT_EQ(config.Get("A", "mp"), "<absent>");
    EXPECT_EQ(config.In("A"), (Keys{{"MpG", "1"}}));
}

TEST(Config, KeysFoldAToZOnlyWhateverTheLocale) {
    const TurkishLocale turkish;
    const OneFile config("[A]\nAVI=1\ntiff=2\nä=3\nÄ=4\nı=5\n");
    EXPECT_EQ(config.Get("A", "avi"), "1");
    EXPECT_EQ(config.Get("A", "TIFF"), "2");
    EXPECT_EQ(config.Get("A", "ä"), "3");
    EXPECT_EQ(config.Get("A", "Ä"), "4");
    EXPECT_EQ(config.Get("A", "I"), "<absent>");
    EXPECT_EQ(config.mConfig.GetKeyCount("A", true), 5U);
}

TEST(Config, OfDuplicatesThePlaceOfTheFirstAndTheValueOfTheLastCounts) {
    EXPECT_EQ(SectionA("[A]\nFirst=1\nb=2\nfirst=3\nc=4\nFIRST=5\n"),
              (Keys{{"First", "5"}, {"b", "2"}, {"c", "4"}}));
    EXPECT_EQ(SectionA("[A]\na=1\na=\n"), (Keys{{"a", ""}})) << "an empty value is a value";
}

TEST(Config, ASectionThatIsOpenedAgainGoesOn) {
    const OneFile config("[A]\na=1\nb=2\n[B]\nx=9\n[A]\nc=3\nA=4\n");
    EXPECT_EQ(config.In("A"), (Keys{{"a", "4"}, {"b", "2"}, {"c", "3"}}));
    EXPECT_EQ(config.In("B"), (Keys{{"x", "9"}}));
}

TEST(Config, ACommentBeginsInTheFirstColumnOnly) {
    EXPECT_EQ(
        SectionA("[A]\n;a=1\n#b=2\n ;c=3\n\t#d=4\n  ;x=y\ne=5;6\nf=;7\ng=#8\n;[B]\n#[B]\nh=9 # no\n"),
        (Keys{
            {";c", "3"}, {"#d", "4"}, {";x", "y"}, {"e", "5;6"}, {"f", ";7"}, {"g", "#8"}, {"h", "9 # no"}}));
}

TEST(Config, SpacesAroundTheEqualsSignAndAtBothEndsAreIgnored) {
    EXPECT_EQ(SectionA("[A]\n  a  =  1  \n\tb\t=\t2\t\nc = d e  f \n   g=7\n"),
              (Keys{{"a", "1"}, {"b", "2"}, {"c", "d e  f"}, {"g", "7"}}));
    EXPECT_EQ(SectionA("[A]\na b = 1\n"), (Keys{{"a b", "1"}}));
}

TEST(Config, TheFirstEqualsSignEndsTheKey) {
    EXPECT_EQ(SectionA("[A]\na=b=c\nd==\ne = = f\n"), (Keys{{"a", "b=c"}, {"d", "="}, {"e", "= f"}}));
    EXPECT_EQ(SectionA("[A]\nmpg=video/mpeg:DLNA.ORG_PN=MPEG_PS_PAL;DLNA.ORG_OP=01\n"),
              (Keys{{"mpg", "video/mpeg:DLNA.ORG_PN=MPEG_PS_PAL;DLNA.ORG_OP=01"}}));
}

TEST(Config, LinesWithoutAKeyDoNotCount) {
    EXPECT_EQ(SectionA("before=0\n\n[A]\n\n   \nword\n=1\n  = 2\n=\na=1\n\n"), (Keys{{"a", "1"}}));
    EXPECT_EQ(OneFile("a=1\nb=2\n").mConfig.GetKeyCount("", true), 0U) << "before the first section";
}

TEST(Config, AKeyWithoutAValueHasTheEmptyValue) {
    const OneFile config("[A]\na=\nb =  \n");
    EXPECT_EQ(config.In("A"), (Keys{{"a", ""}, {"b", ""}}));
    EXPECT_EQ(Str(config.mConfig.GetCString("A", "a", "default")), "");
    EXPECT_EQ(Str(config.mConfig.GetCString("A", "none", "default")), "default");
    EXPECT_EQ(Str(config.mConfig.GetCString("None", "a", "default")), "default");
}

TEST(Config, LinesEndWithOrWithoutACarriageReturn) {
    const Keys expected = {{"a", "1"}, {"b", "2"}};
    EXPECT_EQ(SectionA("[A]\na=1\nb=2\n"), expected);
    EXPECT_EQ(SectionA("[A]\r\na=1\r\nb=2\r\n"), expected);
    EXPECT_EQ(SectionA("[A]\r\na=1\nb=2\r\n"), expected);
    EXPECT_EQ(SectionA("[A]\na=1\nb=2"), expected) << "no line end at the end";
    EXPECT_EQ(SectionA("[A]\r\na=1\r\nb=2\r"), expected);
    EXPECT_EQ(SectionA("[A]\na=1\nb=2\n[B]"), expected);
}

TEST(Config, ALoneCarriageReturnEndsNoLine) {
    EXPECT_EQ(SectionA("[A]\na=1\rb=2\nc=3\n"), (Keys{{"a", "1\rb=2"}, {"c", "3"}}));
    EXPECT_EQ(SectionA("[A]\ra=1\n"), Keys());
}

TEST(Config, AByteOrderMarkIsDroppedAtTheStartOnly) {
    const std::string mark = kByteOrderMark;
    EXPECT_EQ(SectionA(mark + "[A]\na=1\n"), (Keys{{"a", "1"}}));
    EXPECT_EQ(SectionA(mark + ";[A]\n[A]\na=1\n"), (Keys{{"a", "1"}}));
    EXPECT_EQ(SectionA("[A]\n" + mark + "a=1\n"), (Keys{{mark + "a", "1"}}));
    EXPECT_EQ(SectionA(mark + mark + "[A]\na=1\n"), Keys()) << "the second is text";
    EXPECT_EQ(SectionA(mark), Keys());
    EXPECT_EQ(SectionA("\xEF\xBB"), Keys());
}

TEST(Config, NULBytesAreBytesLikeAnyOther) {
    const std::string nul(1, '\0');
    const OneFile config("[A]\na=1" + nul + "2\nb" + nul + "c=3\nd=4\n");
    EXPECT_EQ(config.In("A"), (Keys{{"a", "1" + nul + "2"}, {"b" + nul + "c", "3"}, {"d", "4"}}));
    EXPECT_EQ(config.Get("A", "b"), "<absent>");
    EXPECT_EQ(Str(config.mConfig.GetCString("A", Bytes("B" + nul + "C"), "")), "3");
}

TEST(Config, UTF8ValuesComeThrough) {
    EXPECT_EQ(SectionA("[A]\nTitre=Été – 夏\n"), (Keys{{"Titre", "Été – 夏"}}));
}

TEST(Config, ALineOf4MBIsOneLine) {
    const std::string value(4 * 1024 * 1024, 'v');
    EXPECT_EQ(SectionA("[A]\na=" + value + "\nb=2\n"), (Keys{{"a", value}, {"b", "2"}}));
    EXPECT_EQ(SectionA("[A]\n" + value + "\nb=2\n"), (Keys{{"b", "2"}}));
    EXPECT_EQ(SectionA("[A]\n;" + value + "\nb=2\n"), (Keys{{"b", "2"}}));
    EXPECT_EQ(SectionA("[A]\n" + value + "=1\nb=2\n"), (Keys{{value, "1"}, {"b", "2"}}));
}

TEST(Config, AHundredThousandKeysLoad) {
    std::string content = "[A]\n";
    for (int i = 0; i < 100000; ++i) {
        content += "Key" + std::to_string(i) + "=" + std::to_string(i * 7) + "\n";
    }
    const OneFile config(content);
    ASSERT_EQ(config.mConfig.GetKeyCount("A", true), 100000U);
    for (int i = 0; i < 100000; i += 9973) {
        EXPECT_EQ(config.Get("A", ("kEY" + std::to_string(i)).c_str()), std::to_string(i * 7));
        EXPECT_EQ(Str(config.mConfig.GetKeyNameCString("A", static_cast<std::size_t>(i), true)),
                  "Key" + std::to_string(i));
    }
    EXPECT_EQ(config.Get("A", "key99999"), "699993");
}

TEST(Config, AHundredThousandSectionsLoad) {
    std::string content;
    for (int i = 0; i < 100000; ++i) {
        content += "[" + std::to_string(i) + "]\na=" + std::to_string(i) + "\n";
    }
    const OneFile config(content);
    for (const char* section : {"0", "1", "50000", "99999"}) {
        EXPECT_EQ(config.Get(section, "a"), section);
    }
}

RC_GTEST_PROP(ConfigModel, BinaryGarbageGivesWellFormedKeys, ()) {
    const std::string garbage = *rc::gen::arbitrary<std::string>();
    const auto bytes = rc::gen::container<std::string>(
        rc::gen::oneOf(rc::gen::arbitrary<char>(), rc::gen::element('=', '\n', '[', ']', ';', ' ', 'a')));
    const OneFile config(garbage + "\n[A]\n" + *bytes);
    for (const bool afMerged : {true, false}) {
        std::vector<std::string> seen;
        for (std::size_t i = 0; i < config.mConfig.GetKeyCount("A", afMerged); ++i) {
            const ezCString name = config.mConfig.GetKeyNameCString("A", i, afMerged);
            const ezCString value = config.mConfig.GetCString("A", name, "\n");
            RC_ASSERT(!name.IsEmpty());
            RC_ASSERT(Str(name).find_first_of("=\n") == std::string::npos);
            RC_ASSERT(Str(name.TrimLeftRight()) == Str(name));
            RC_ASSERT(Str(value).find('\n') == std::string::npos);
            RC_ASSERT(Str(value.TrimLeftRight()) == Str(value));
            for (const std::string& other : seen) {
                RC_ASSERT(Bytes(other).CompareNoCase(name) != 0);
            }
            seen.push_back(Str(name));
        }
    }
}

namespace {

/// The rules said a second time, the slow way, for lines that are either "[name]" or no section at all.
class Rules {
public:
    void Read(const std::vector<std::string>& aLines) {
        Keys* section = nullptr;
        for (const std::string& line : aLines) {
            if (line[0] == '[') {
                section = &mSections[line == "[A]" ? 0 : 1];
                continue;
            }
            const std::size_t equals = line.find('=');
            if (section == nullptr || equals == std::string::npos || line[0] == ';' || line[0] == '#') {
                continue;
            }
            const std::string name = WithoutBlanks(line.substr(0, equals));
            if (!name.empty()) {
                Set(*section, name, WithoutBlanks(line.substr(equals + 1)));
            }
        }
    }

    Keys mSections[2];

private:
    static std::string WithoutBlanks(std::string aText) {
        while (!aText.empty() && (aText[0] == ' ' || aText[0] == '\t' || aText[0] == '\r')) {
            aText.erase(0, 1);
        }
        while (!aText.empty() && (aText.back() == ' ' || aText.back() == '\t' || aText.back() == '\r')) {
            aText.pop_back();
        }
        return aText;
    }

    static bool IsSameKey(const std::string& aLeft, const std::string& aRight) {
        if (aLeft.size() != aRight.size()) {
            return false;
        }
        for (std::size_t i = 0; i < aLeft.size(); ++i) {
            const bool pair = (aLeft[i] == 'a' && aRight[i] == 'A') || (aLeft[i] == 'A' && aRight[i] == 'a');
            if (aLeft[i] != aRight[i] && !pair) {
                return false;
            }
        }
        return true;
    }

    static void Set(Keys& aSection, const std::string& aName, const std::string& aValue) {
        for (auto& key : aSection) {
            if (IsSameKey(key.first, aName)) {
                key.second = aValue;
                return;
            }
        }
        aSection.emplace_back(aName, aValue);
    }
};

std::string Joined(const std::vector<std::string>& aLines) {
    std::string text;
    for (const std::string& line : aLines) {
        text += line + "\n";
    }
    return text;
}

} // namespace

RC_GTEST_PROP(ConfigModel, TwoFilesReadAsTheRulesSay, ()) {
    const auto character = rc::gen::element('a', 'A', 'b', '=', '=', ';', '#', ' ', '\t', '\r', '\0', ']');
    const auto line = rc::gen::oneOf(rc::gen::element<std::string>("[A]", "[B]"),
                                     rc::gen::container<std::string>(character),
                                     rc::gen::container<std::string>(5, character));
    const auto lines = rc::gen::container<std::vector<std::string>>(line);
    const std::vector<std::string> readOnly = *lines;
    const std::vector<std::string> readWrite = *lines;
    const TwoFolders folders;
    folders.mReadOnly.Write(kFile, Joined(readOnly));
    folders.mReadWrite.Write(kFile, Joined(readWrite));
    const ezConfig config(folders.ReadOnly(), folders.ReadWrite(), kFile);

    Rules model;
    model.Read(readOnly);
    model.Read(readWrite);
    Rules readWriteOnly;
    readWriteOnly.Read(readWrite);
    RC_ASSERT(KeysOf(config, "A") == model.mSections[0]);
    RC_ASSERT(KeysOf(config, "B") == model.mSections[1]);
    RC_ASSERT(config.GetKeyCount("A", false) == readWriteOnly.mSections[0].size());
    RC_ASSERT(config.GetKeyCount("B", false) == readWriteOnly.mSections[1].size());
}

// Two files.

TEST(Config, TheReadWriteFileLiesOverTheReadOnlyOneKeyByKey) {
    const TwoFolders folders;
    folders.mReadOnly.Write(kFile, "[A]\nz=1\nShared=2\na=3\n[Maker]\nm=4\n");
    folders.mReadWrite.Write(kFile, "[A]\nnew=5\nSHARED=6\nb=7\n[User]\nu=8\n");
    const ezConfig config(folders.ReadOnly(), folders.ReadWrite(), kFile);
    EXPECT_EQ(KeysOf(config, "A"), (Keys{{"z", "1"}, {"Shared", "6"}, {"a", "3"}, {"new", "5"}, {"b", "7"}}))
        << "read-only keys first, the value in force from the read-write file";
    EXPECT_EQ(KeysOf(config, "Maker"), (Keys{{"m", "4"}}));
    EXPECT_EQ(KeysOf(config, "User"), (Keys{{"u", "8"}}));
}

TEST(Config, WithoutMergingOnlyTheKeysOfTheReadWriteFileAreThere) {
    const TwoFolders folders;
    folders.mReadOnly.Write(kFile, "[A]\nz=1\nshared=2\n[Maker]\nm=4\n");
    folders.mReadWrite.Write(kFile, "[A]\nnew=5\nshared=6\nNew=7\n");
    const ezConfig config(folders.ReadOnly(), folders.ReadWrite(), kFile);
    const std::size_t count = config.GetKeyCount("A", false);
    ASSERT_EQ(count, 2U);
    std::vector<std::string> names;
    for (std::size_t i = 0; i < count; ++i) {
        names.push_back(Str(config.GetKeyNameCString("A", i, false)));
    }
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<std::string>{"new", "shared"}));
    EXPECT_EQ(Str(config.GetKeyNameCString("A", 2, false)), "");
    EXPECT_EQ(config.GetKeyCount("Maker", false), 0U);
    EXPECT_EQ(config.GetKeyCount("Maker", true), 1U);
    EXPECT_EQ(Str(config.GetCString("A", "z", "")), "1") << "the value in force counts both files";
}

TEST(Config, AnEmptyReadWriteValueLiesOverToo) {
    const TwoFolders folders;
    folders.mReadOnly.Write(kFile, "[A]\na=1\n");
    folders.mReadWrite.Write(kFile, "[A]\na=\n");
    const ezConfig config(folders.ReadOnly(), folders.ReadWrite(), kFile);
    EXPECT_EQ(Str(config.GetCString("A", "a", "default")), "");
}

TEST(Config, EitherFileMayBeMissing) {
    const TwoFolders folders;
    folders.mReadOnly.Write(kFile, "[A]\na=1\n");
    const ezConfig readOnly(folders.ReadOnly(), folders.ReadWrite(), kFile);
    EXPECT_EQ(KeysOf(readOnly, "A"), (Keys{{"a", "1"}}));
    EXPECT_EQ(readOnly.GetKeyCount("A", false), 0U);

    const ezConfig readWrite(folders.ReadWrite(), folders.ReadOnly(), kFile);
    EXPECT_EQ(KeysOf(readWrite, "A"), (Keys{{"a", "1"}}));
    EXPECT_EQ(readWrite.GetKeyCount("A", false), 1U);

    const ezConfig neither(folders.ReadOnly(), folders.ReadWrite(), "other.ini");
    EXPECT_EQ(neither.GetKeyCount("A", true), 0U);
    const ezConfig noFolder("/no/such/folder", "/no/such/folder", kFile);
    EXPECT_EQ(noFolder.GetKeyCount("A", true), 0U);
}

TEST(Config, TheSameFileIsReadOnce) {
    const TemporaryFolder folder;
    folder.Write("real/" + std::string(kFile), "[A]\na=1\nb=2\na=3\n");
    const std::string real = folder.Path("real");
    ASSERT_EQ(symlink(real.c_str(), folder.Path("link").c_str()), 0);
    std::filesystem::create_directory(folder.Path("hard"));
    ASSERT_EQ(link((real + "/" + kFile).c_str(), (folder.Path("hard") + "/" + kFile).c_str()), 0);
    const std::vector<std::pair<std::string, std::string>> pairs = {
        {real, real},
        {real, real + "/"},
        {real + "/", real},
        {real + "/", real + "/"},
        {real, folder.Path("link")},
        {folder.Path("link"), real},
        {real, folder.GetPath() + "/./real"},
        {real, folder.Path("hard")},
    };
    for (const auto& pair : pairs) {
        const ScriptedSystem system;
        const ezConfig config(pair.first.c_str(), pair.second.c_str(), kFile);
        EXPECT_EQ(system.GetCounts().mOpen, 1U) << pair.first << " " << pair.second;
        EXPECT_EQ(system.GetCounts().mPRead, 1U) << pair.first << " " << pair.second;
        EXPECT_EQ(system.GetCounts().mClose, 1U);
        EXPECT_EQ(KeysOf(config, "A"), (Keys{{"a", "3"}, {"b", "2"}}));
        EXPECT_EQ(KeysOf(config, "A", false), (Keys{{"a", "3"}, {"b", "2"}})) << "it is the read-write file";
    }
}

TEST(Config, DifferentFilesOfTheSameContentAreBothRead) {
    const TwoFolders folders;
    folders.mReadOnly.Write(kFile, "[A]\na=1\n");
    folders.mReadWrite.Write(kFile, "[A]\na=1\n");
    const ScriptedSystem system;
    const ezConfig config(folders.ReadOnly(), folders.ReadWrite(), kFile);
    EXPECT_EQ(system.GetCounts().mOpen, 2U);
    EXPECT_EQ(system.GetCounts().mClose, 2U);
    EXPECT_EQ(KeysOf(config, "A"), (Keys{{"a", "1"}}));
}

TEST(Config, FilesAreReadByTheConstructorOnly) {
    const TwoFolders folders;
    const std::string path = folders.mReadOnly.Write(kFile, "[A]\na=1\n");
    folders.mReadWrite.Write(kFile, "[A]\nb=2\n");
    const ezConfig config(folders.ReadOnly(), folders.ReadWrite(), kFile);
    folders.mReadOnly.Write(kFile, "[A]\na=9\n");
    std::filesystem::remove(folders.mReadWrite.Path(kFile));
    const ScriptedSystem system;
    EXPECT_EQ(KeysOf(config, "A"), (Keys{{"a", "1"}, {"b", "2"}}));
    EXPECT_EQ(system.GetCounts().All(), 0U);
}

TEST(Config, AFolderMayEndInASlash) {
    const TwoFolders folders;
    folders.mReadOnly.Write(kFile, "[A]\na=1\n");
    folders.mReadWrite.Write(kFile, "[A]\nb=2\n");
    const ezConfig config(folders.ReadOnly() + "/", folders.ReadWrite() + "/", kFile);
    EXPECT_EQ(KeysOf(config, "A"), (Keys{{"a", "1"}, {"b", "2"}}));
}

TEST(Config, AnEmptyFolderIsTheWorkingDirectory) {
    const TwoFolders folders;
    folders.mReadOnly.Write(kFile, "[A]\na=1\n");
    folders.mReadWrite.Write(kFile, "[A]\nb=2\n");
    const WorkingDirectory directory(folders.mReadOnly.GetPath());
    const ezConfig config("", folders.ReadWrite(), kFile);
    EXPECT_EQ(KeysOf(config, "A"), (Keys{{"a", "1"}, {"b", "2"}}));
    const ScriptedSystem system;
    const ezConfig both("", ".", kFile);
    EXPECT_EQ(KeysOf(both, "A"), (Keys{{"a", "1"}}));
    EXPECT_EQ(system.GetCounts().mOpen, 1U);
}

// What cannot be read.

TEST(Config, WhatIsNotARegularFileHasNoSections) {
    const TwoFolders folders;
    folders.mReadOnly.Write(kFile, "[A]\na=1\n");
    std::filesystem::create_directory(folders.mReadWrite.Path(kFile));
    const ezConfig config(folders.ReadOnly(), folders.ReadWrite(), kFile);
    EXPECT_EQ(KeysOf(config, "A"), (Keys{{"a", "1"}}));

    const TemporaryFolder pipes;
    ASSERT_EQ(mkfifo(pipes.Path(kFile).c_str(), 0600), 0);
    alarm(kPatience);
    const ezConfig pipe(pipes.GetPath().c_str(), folders.ReadOnly(), kFile);
    alarm(0);
    EXPECT_EQ(KeysOf(pipe, "A"), (Keys{{"a", "1"}}));
}

TEST(Config, AFileOverTheLimitHasNoSectionsAndIsNotRead) {
    const TwoFolders folders;
    const std::string path = folders.mReadWrite.Write(kFile, "[A]\na=1\n");
    folders.mReadOnly.Write(kFile, "[A]\nb=2\n");
    EXPECT_EQ(ezFileOffset{ezConfig::kMaximumFileSize}, 64 * 1024 * 1024);
    ASSERT_EQ(truncate(path.c_str(), ezConfig::kMaximumFileSize + 1), 0);
    {
        const ScriptedSystem system;
        const ezConfig over(folders.ReadOnly(), folders.ReadWrite(), kFile);
        EXPECT_EQ(KeysOf(over, "A"), (Keys{{"b", "2"}}));
        EXPECT_EQ(system.GetCounts().mPRead, 1U);
        EXPECT_EQ(system.GetCounts().mAllocate, 1U);
    }
    ASSERT_EQ(truncate(path.c_str(), ezConfig::kMaximumFileSize), 0);
    const ezConfig at(folders.ReadOnly(), folders.ReadWrite(), kFile);
    EXPECT_EQ(KeysOf(at, "A"), (Keys{{"b", "2"}, {"a", "1"}})) << "at the limit it is read";
    ASSERT_EQ(truncate(path.c_str(), INT64_C(1) << 40), 0);
    const ezConfig farOver(folders.ReadOnly(), folders.ReadWrite(), kFile);
    EXPECT_EQ(KeysOf(farOver, "A"), (Keys{{"b", "2"}}));
}

TEST(Config, AnUnreadableFileHasNoSections) {
    const TwoFolders folders;
    folders.mReadOnly.Write(kFile, "[A]\na=1\n");
    const std::string path = folders.mReadWrite.Write(kFile, "[A]\nb=2\n");
    ASSERT_EQ(chmod(path.c_str(), 0), 0);
    for (const TemporaryFolder* folder : {&folders.mReadOnly, &folders.mReadWrite}) {
        ASSERT_EQ(chmod(folder->GetPath().c_str(), 0755), 0);
    }
    ASSERT_EQ(chmod(folders.mReadOnly.Path(kFile).c_str(), 0644), 0);
    const Unprivileged unprivileged;
    const ezConfig config(folders.ReadOnly(), folders.ReadWrite(), kFile);
    EXPECT_EQ(KeysOf(config, "A"), (Keys{{"a", "1"}}));
}

TEST(Config, AReadThatFailsIsAnOrdinaryFailure) {
    const TwoFolders folders;
    folders.mReadOnly.Write(kFile, "[A]\na=1\n");
    folders.mReadWrite.Write(kFile, "[A]\nb=2\n");
    ScriptedSystem system;
    system.mPReadOutcomes = {{EIO}};
    const ezConfig unread(folders.ReadOnly(), folders.ReadWrite(), kFile);
    EXPECT_EQ(KeysOf(unread, "A"), (Keys{{"b", "2"}}));

    system.mAllocateOutcomes = {{ENOMEM}};
    const ezConfig noMemory(folders.ReadOnly(), folders.ReadWrite(), kFile);
    EXPECT_EQ(KeysOf(noMemory, "A"), (Keys{{"b", "2"}}));

    system.mPReadOutcomes = {{EINTR}, {0, 2}, {EINTR}, {0, 3}};
    const ezConfig interrupted(folders.ReadOnly(), folders.ReadWrite(), kFile);
    EXPECT_EQ(KeysOf(interrupted, "A"), (Keys{{"a", "1"}, {"b", "2"}}));
}

TEST(Config, AnEmptyFileHasNoSections) {
    EXPECT_EQ(SectionA(""), Keys());
    EXPECT_EQ(SectionA("\n"), Keys());
    EXPECT_EQ(SectionA("[A]"), Keys());
}

// A device keeps its configuration for as long as it runs.
TEST(Config, OfAFileWithoutAKeyNothingStaysInMemory) {
    constexpr std::size_t kSize = std::size_t{8} << 20;
    const auto held = [] {
        const struct mallinfo2 info = mallinfo2(); // all zeros under a sanitizer, which has a heap of its own
        return info.uordblks + info.hblkhd;
    };
    for (const std::string& begin : {std::string("# "), std::string("[A]\n=x\n[B]\n# ")}) {
        const TwoFolders folders;
        folders.mReadWrite.Write(kFile, begin + std::string(kSize, 'r'));
        const std::size_t before = held();
        const ezConfig config(folders.ReadOnly(), folders.ReadWrite(), kFile);
        EXPECT_LT(held(), before + kSize / 2) << begin;
        EXPECT_EQ(KeysOf(config, "A"), Keys());
    }
}

TEST(Config, ANameWithANULOpensNothing) {
    const TemporaryFolder folder;
    folder.Write(kFile, "[A]\na=1\n");
    const ezCString name = Bytes(std::string(kFile) + std::string("\0x", 2));
    const ezConfig config(folder.GetPath().c_str(), folder.GetPath().c_str(), name);
    EXPECT_EQ(config.GetKeyCount("A", true), 0U);
}

// Where a device keeps its configuration.

TEST(ConfigConfig, ReadsTheFoldersFromTheFileInTheWorkingDirectory) {
    const TemporaryFolder folder;
    folder.Write("ConfigPath.ini", "[ConfigPath]\nReadOnly = /rom/config\nReadWrite=/data/config/\n");
    const WorkingDirectory directory(folder.GetPath());
    ezCString readOnly("before");
    ezCString readWrite;
    ezConfigConfig::GetConfigPaths(readOnly, readWrite, "ConfigPath.ini");
    EXPECT_EQ(Str(readOnly), "/rom/config");
    EXPECT_EQ(Str(readWrite), "/data/config/");
}

TEST(ConfigConfig, LeavesAFolderThatIsNotGiven) {
    const TemporaryFolder folder;
    folder.Write("One.ini", "[ConfigPath]\nreadwrite=/data\n");
    folder.Write("Other.ini", "[configpath]\nReadOnly=/rom\nReadWrite=/data\n");
    const WorkingDirectory directory(folder.GetPath());
    ezCString readOnly("ro");
    ezCString readWrite("rw");
    ezConfigConfig::GetConfigPaths(readOnly, readWrite, "One.ini");
    EXPECT_EQ(Str(readOnly), "ro");
    EXPECT_EQ(Str(readWrite), "/data");
    readWrite = "rw";
    for (const char* name : {"Other.ini", "Missing.ini"}) {
        ezConfigConfig::GetConfigPaths(readOnly, readWrite, name);
        EXPECT_EQ(Str(readOnly), "ro") << name;
        EXPECT_EQ(Str(readWrite), "rw") << name;
    }
}

TEST(ConfigConfig, ReadsItsFileOnce) {
    const TemporaryFolder folder;
    folder.Write("ConfigPath.ini", "[ConfigPath]\nReadOnly=/rom\n");
    const WorkingDirectory directory(folder.GetPath());
    const ScriptedSystem system;
    ezCString readOnly;
    ezCString readWrite;
    ezConfigConfig::GetConfigPaths(readOnly, readWrite, "ConfigPath.ini");
    EXPECT_EQ(Str(readOnly), "/rom");
    EXPECT_EQ(system.GetCounts().mOpen, 1U);
}

TEST(Config, FilesOfTwoDevicesAreTwoAlsoWithOneNumber) {
    const TemporaryFolder folder;
    folder.Write("ro/" + std::string(kFile), "[A]\na=1\n");
    folder.Write("rw/" + std::string(kFile), "[A]\nb=2\n");
    ezSystemCalls calls = ezSystem_Real();
    calls.mStat = [](const char* aPath, struct stat* aStatus) {
        const int result = ezSystem_Real().mStat(aPath, aStatus);
        aStatus->st_dev = std::string_view(aPath).find("/ro/") != std::string_view::npos ? 1 : 2;
        aStatus->st_ino = 7;
        return result;
    };
    ezSystem_Replace(&calls);
    const ezConfig config(folder.Path("ro").c_str(), folder.Path("rw").c_str(), kFile);
    ezSystem_Replace(nullptr);
    EXPECT_EQ(KeysOf(config, "A"), (Keys{{"a", "1"}, {"b", "2"}}));
}
