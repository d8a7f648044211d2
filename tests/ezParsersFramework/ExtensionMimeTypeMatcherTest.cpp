#include "ez/ExtensionMimeTypeMatcher.h"

#include "MatcherKit.h"
#include "support/Catchers.h"
#include "support/ScriptedSystem.h"
#include "support/TemporaryFolder.h"

#include "ezPlatform/containers/HashTable.h"
#include "ezPlatform/containers/Items.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <filesystem>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace {

using Entry = ExtensionMimeTypeMatcherEntry;

constexpr const char* kFileName = "mediaCTRLMediaTypes.ini";

Strings Of(const ezStringList& aList) {
    Strings strings;
    for (std::size_t i = 0; i < aList.GetCount(); ++i) {
        strings.emplace_back(aList.GetAt(i).c_str());
    }
    return strings;
}

/// The keys of a list of entries; "(null)" for no list.
Strings Keys(const ezPtrList* anEntries) {
    if (anEntries == nullptr) {
        return {"(null)"};
    }
    Strings keys;
    for (const Entry* entry : ezItems<Entry>(anEntries)) {
        keys.push_back(Of(entry->mTypes).at(0));
    }
    return keys;
}

const Strings kNone = {"(null)"};

/// A loaded matcher over a file of its own, which both folders are.
class Table {
public:
    explicit Table(const std::string& aContent) {
        mFolder.Write(kFileName, aContent);
        mMatcher = std::make_unique<ExtensionMimeTypeMatcher>(mFolder.GetPath().c_str(),
                                                              mFolder.GetPath().c_str(), kFileName);
        EXPECT_TRUE(mMatcher->Load());
    }
    ExtensionMimeTypeMatcher* operator->() { return mMatcher.get(); }
    ExtensionMimeTypeMatcher& operator*() { return *mMatcher; }

    Entry* EntryAt(std::size_t anIndex) {
        return static_cast<Entry*>(*ezPtrList_GetAt(mMatcher->AllEntries(), anIndex));
    }

private:
    TemporaryFolder mFolder;
    std::unique_ptr<ExtensionMimeTypeMatcher> mMatcher;
};

/// Everything that can be asked, asked of a matcher that knows nothing.
void ExpectKnowsNothing(ExtensionMimeTypeMatcher& aMatcher) {
    ASSERT_NE(aMatcher.AllEntries(), nullptr);
    EXPECT_EQ(ezPtrList_GetCount(aMatcher.AllEntries()), 0U);
    for (const char* text : {"", "mp3", "audio/mpeg", "audio/mpeg;x=y", "txt", "text/plain"}) {
        EXPECT_EQ(aMatcher.EntriesFromExtension(text), nullptr) << text;
        EXPECT_EQ(aMatcher.EntriesFromMimeType(text), nullptr) << text;
        EXPECT_EQ(aMatcher.FileExtensionToMimeType(text), "application/octet-stream") << text;
        EXPECT_EQ(aMatcher.MimeTypeToFileExtension(text), "") << text;
        EXPECT_TRUE(aMatcher.MimeTypeToFileExtensionList(text).IsEmpty()) << text;
        EXPECT_TRUE(aMatcher.ExtensionToExtensionList(text).IsEmpty()) << text;
    }
    EXPECT_FALSE(aMatcher.IsExcludedEntry(nullptr));
}

} // namespace

// Building and loading.

TEST(ExtensionMimeTypeMatcher, KnowsNothingBeforeLoad) {
    TemporaryFolder folder;
    folder.Write(kFileName, "[MimeTypes]\nmp3=mp3@audio/mpeg@item.audioItem\n");
    ExtensionMimeTypeMatcher matcher(folder.GetPath().c_str(), folder.GetPath().c_str(), "");
    ExpectKnowsNothing(matcher);
}

TEST(ExtensionMimeTypeMatcher, EmptyFileNameIsTheUsualOne) {
    TemporaryFolder folder;
    folder.Write("mediaCTRLMediaTypes.ini", "[MimeTypes]\nusual=mp3\n");
    folder.Write("other.ini", "[MimeTypes]\nother=mp3\n");
    ExtensionMimeTypeMatcher usual(folder.GetPath().c_str(), folder.GetPath().c_str(), "");
    EXPECT_TRUE(usual.Load());
    EXPECT_EQ(Keys(usual.AllEntries()), (Strings{"usual"}));
    ExtensionMimeTypeMatcher other(folder.GetPath().c_str(), folder.GetPath().c_str(), "other.ini");
    EXPECT_TRUE(other.Load());
    EXPECT_EQ(Keys(other.AllEntries()), (Strings{"other"}));
}

TEST(ExtensionMimeTypeMatcher, ReadWriteFileLiesOverTheReadOnlyOne) {
    TemporaryFolder readOnly;
    TemporaryFolder readWrite;
    readOnly.Write(kFileName, "[MimeTypes]\na=a@x/ro\nb=b@x/ro\n");
    readWrite.Write(kFileName, "[MimeTypes]\nc=c@x/rw\nb=b@x/rw\n");
    ExtensionMimeTypeMatcher matcher(readOnly.GetPath().c_str(), readWrite.GetPath().c_str(), "");
    EXPECT_TRUE(matcher.Load());
    EXPECT_EQ(Keys(matcher.AllEntries()), (Strings{"a", "b", "c"}));
    EXPECT_EQ(matcher.FileExtensionToMimeType("a"), "x/ro");
    EXPECT_EQ(matcher.FileExtensionToMimeType("b"), "x/rw");
    EXPECT_EQ(matcher.FileExtensionToMimeType("c"), "x/rw");
}

TEST(ExtensionMimeTypeMatcher, EntriesStandInFileOrderExcludedOnesFirst) {
    Table table("[MimeTypes]\nz=1\na=2\n[MimeTypesExcluded]\ny=3\nb=4\n");
    EXPECT_EQ(Keys(table->AllEntries()), (Strings{"y", "b", "z", "a"}));
}

TEST(ExtensionMimeTypeMatcher, ReadsTwoSectionsAndNoOther) {
    Table table(
        "stray=s\n[MimeType]\na=a\n[MimeTypesOther]\nb=b\n[mimetypes]\nc=c\n[MIMETYPESEXCLUDED]\nd=d\n"
        "[MimeTypes]\ne=e\n[MimeTypesExcluded]\nf=f\n");
    EXPECT_EQ(Keys(table->AllEntries()), (Strings{"f", "e"}));
}

TEST(ExtensionMimeTypeMatcher, KeysAreLowerCased) {
    Table table("[MimeTypes]\nMP3=x\n[MimeTypesExcluded]\nTXT=y\n");
    EXPECT_EQ(Keys(table->AllEntries()), (Strings{"txt", "mp3"}));
}

TEST(ExtensionMimeTypeMatcher, OfDuplicateKeysTheFirstPlaceAndTheLastValueCount) {
    Table table("[MimeTypes]\nmp3=x\nb=b\nMP3=y\n");
    EXPECT_EQ(Keys(table->AllEntries()), (Strings{"mp3", "b"}));
    EXPECT_EQ(Text(*table.EntryAt(0)), "y@@@mp3");
}

TEST(ExtensionMimeTypeMatcher, KeyInBothSectionsMakesTwoEntries) {
    Table table("[MimeTypes]\nk=x@a/b\n[MimeTypesExcluded]\nk=x@c/d\n");
    EXPECT_EQ(Keys(table->EntriesFromExtension("x")), (Strings{"k", "k"}));
    EXPECT_TRUE(table->IsExcludedEntry(table.EntryAt(0)));
    EXPECT_FALSE(table->IsExcludedEntry(table.EntryAt(1)));
}

TEST(ExtensionMimeTypeMatcher, KeyWithoutAValueMakesNoEntry) {
    Table table("[MimeTypes]\na=\nb=   \t \nc\n=x\nd=d\n[MimeTypesExcluded]\ne=\n");
    EXPECT_EQ(Keys(table->AllEntries()), (Strings{"d"}));
}

TEST(ExtensionMimeTypeMatcher, ValueOfSeparatorsMakesAnEntryThatNothingFinds) {
    Table table("[MimeTypes]\na=@\nb= , \n");
    EXPECT_EQ(Keys(table->AllEntries()), (Strings{"a", "b"}));
    EXPECT_EQ(Text(*table.EntryAt(0)), "@@@a");
    EXPECT_EQ(table->EntriesFromExtension(""), nullptr);
    EXPECT_EQ(table->EntriesFromMimeType(""), nullptr);
    EXPECT_TRUE(table->ExtensionToExtensionList("").IsEmpty());
}

TEST(ExtensionMimeTypeMatcher, LoadMimeTypeAddsOneSection) {
    TemporaryFolder folder;
    folder.Write(kFileName, "[MimeTypes]\na=a\n[Mine]\nb=b@x/y\n[MimeTypesExcluded]\nc=c\n");
    ExtensionMimeTypeMatcher matcher(folder.GetPath().c_str(), folder.GetPath().c_str(), "");
    EXPECT_TRUE(matcher.LoadMimeType("Mine"));
    EXPECT_EQ(Keys(matcher.AllEntries()), (Strings{"b"}));
    EXPECT_EQ(matcher.FileExtensionToMimeType("b"), "x/y");
    EXPECT_TRUE(matcher.LoadMimeType("MimeTypesExcluded"));
    EXPECT_EQ(Keys(matcher.AllEntries()), (Strings{"b", "c"}));
    // What makes an entry excluded is Load, not the section.
    EXPECT_FALSE(matcher.IsExcludedEntry(static_cast<Entry*>(*ezPtrList_GetAt(matcher.AllEntries(), 1))));
    EXPECT_TRUE(matcher.LoadMimeType("NoSuchSection"));
    EXPECT_EQ(Keys(matcher.AllEntries()), (Strings{"b", "c"}));
}

TEST(ExtensionMimeTypeMatcher, LoadEmptiesTheTableFirst) {
    TemporaryFolder folder;
    folder.Write(kFileName, "[MimeTypes]\na=a\n[Mine]\nb=b@x/y\n");
    ExtensionMimeTypeMatcher matcher(folder.GetPath().c_str(), folder.GetPath().c_str(), "");
    EXPECT_TRUE(matcher.LoadMimeType("Mine"));
    EXPECT_TRUE(matcher.Load());
    EXPECT_EQ(Keys(matcher.AllEntries()), (Strings{"a"}));
    EXPECT_EQ(matcher.EntriesFromExtension("b"), nullptr);
}

// The index.

TEST(ExtensionMimeTypeMatcher, ExtensionIsFoundInAnyCase) {
    Table table("[MimeTypes]\nmp3=Mp3@audio/mpeg\n");
    ASSERT_NE(table->EntriesFromExtension("mp3"), nullptr);
    EXPECT_EQ(Keys(table->EntriesFromExtension("mp3")), (Strings{"mp3"}));
    EXPECT_EQ(table->EntriesFromExtension("MP3"), table->EntriesFromExtension("mp3"));
    EXPECT_EQ(table->EntriesFromExtension("mP3"), table->EntriesFromExtension("mp3"));
}

TEST(ExtensionMimeTypeMatcher, ExtensionIsFoundWholeOnly) {
    Table table("[MimeTypes]\nmp3=mp3@audio/mpeg\n");
    for (const char* extension : {"", "mp", "mp33", ".mp3", " mp3", "mp3 ", "mp3;x", "audio/mpeg"}) {
        EXPECT_EQ(table->EntriesFromExtension(extension), nullptr) << extension;
    }
    EXPECT_EQ(table->EntriesFromExtension(ezCString("mp3\0x", 5)), nullptr);
    EXPECT_EQ(table->EntriesFromExtension(ezCString("mp3\0", 4)), nullptr);
}

TEST(ExtensionMimeTypeMatcher, EveryExtensionAndMimeTypeOfAnEntryFindsIt) {
    Table table("[MimeTypes]\nk=a,b,c@x/a,x/b,x/c\n");
    for (const char* extension : {"a", "b", "c"}) {
        EXPECT_EQ(Keys(table->EntriesFromExtension(extension)), (Strings{"k"})) << extension;
    }
    for (const char* mimeType : {"x/a", "x/b", "x/c"}) {
        EXPECT_EQ(Keys(table->EntriesFromMimeType(mimeType)), (Strings{"k"})) << mimeType;
    }
}

TEST(ExtensionMimeTypeMatcher, ExtensionsAndMimeTypesAreApart) {
    Table table("[MimeTypes]\nk=a@b@item@c\n");
    EXPECT_EQ(table->EntriesFromExtension("b"), nullptr);
    EXPECT_EQ(table->EntriesFromMimeType("a"), nullptr);
    for (const char* text : {"k", "item", "c"}) {
        EXPECT_EQ(table->EntriesFromExtension(text), nullptr) << text;
        EXPECT_EQ(table->EntriesFromMimeType(text), nullptr) << text;
    }
}

TEST(ExtensionMimeTypeMatcher, EntriesOfAnExtensionStandInLoadOrder) {
    Table table("[MimeTypes]\nz=e@x/y\nother=f@x/z\na=d,e@x/y\n[MimeTypesExcluded]\nm=e@x/y\n");
    EXPECT_EQ(Keys(table->EntriesFromExtension("e")), (Strings{"m", "z", "a"}));
    EXPECT_EQ(Keys(table->EntriesFromMimeType("x/y")), (Strings{"m", "z", "a"}));
}

TEST(ExtensionMimeTypeMatcher, EntryThatListsAnItemTwiceStandsTwice) {
    Table table("[MimeTypes]\nk=a,b,A@x/y,X/Y\nl=a@x/y\n");
    EXPECT_EQ(Keys(table->EntriesFromExtension("a")), (Strings{"k", "k", "l"}));
    EXPECT_EQ(Keys(table->EntriesFromExtension("b")), (Strings{"k"}));
    EXPECT_EQ(Keys(table->EntriesFromMimeType("x/y")), (Strings{"k", "k", "l"}));
    EXPECT_EQ(Keys(table->AllEntries()), (Strings{"k", "l"}));
}

TEST(ExtensionMimeTypeMatcher, ListsLendTheEntriesOfTheTable) {
    Table table("[MimeTypes]\nk=a@x/y\n");
    EXPECT_EQ(*ezPtrList_GetAt(table->EntriesFromExtension("a"), 0), table.EntryAt(0));
    EXPECT_EQ(*ezPtrList_GetAt(table->EntriesFromMimeType("x/y"), 0), table.EntryAt(0));
    EXPECT_EQ(table->EntriesFromExtension("a"), table->EntriesFromExtension("a"));
}

TEST(ExtensionMimeTypeMatcher, MimeTypeIsFoundInAnyCase) {
    Table table("[MimeTypes]\nmp3=mp3@audio/mpeg\n");
    ASSERT_NE(table->EntriesFromMimeType("audio/mpeg"), nullptr);
    EXPECT_EQ(table->EntriesFromMimeType("AUDIO/MPEG"), table->EntriesFromMimeType("audio/mpeg"));
}

TEST(ExtensionMimeTypeMatcher, MimeTypeWithParametersIsFoundByWhatStandsBefore) {
    Table table("[MimeTypes]\nlpcm=pcm@audio/L16\n");
    EXPECT_EQ(Keys(table->EntriesFromMimeType("audio/L16;rate=44100")), (Strings{"lpcm"}));
    EXPECT_EQ(Keys(table->EntriesFromMimeType("audio/L16;rate=44100;channels=2")), (Strings{"lpcm"}));
    EXPECT_EQ(Keys(table->EntriesFromMimeType("AUDIO/L16;RATE=44100")), (Strings{"lpcm"}));
    EXPECT_EQ(Keys(table->EntriesFromMimeType("audio/l16;")), (Strings{"lpcm"}));
    EXPECT_EQ(table->EntriesFromMimeType("audio/l17;rate=44100"), nullptr);
}

TEST(ExtensionMimeTypeMatcher, MimeTypeListedWithItsParametersIsFoundFirst) {
    Table table("[MimeTypes]\nbare=a@audio/l16\nfull=b@audio/L16;rate=44100;channels=2\n");
    EXPECT_EQ(Keys(table->EntriesFromMimeType("audio/L16;rate=44100;channels=2")), (Strings{"full"}));
    EXPECT_EQ(Keys(table->EntriesFromMimeType("audio/L16;rate=44100")), (Strings{"bare"}));
    EXPECT_EQ(Keys(table->EntriesFromMimeType("audio/L16")), (Strings{"bare"}));
}

TEST(ExtensionMimeTypeMatcher, MimeTypeIsNotTrimmed) {
    Table table("[MimeTypes]\nlpcm=pcm@audio/L16\n");
    EXPECT_EQ(table->EntriesFromMimeType("audio/l16 ;rate=44100"), nullptr);
    EXPECT_EQ(table->EntriesFromMimeType(" audio/l16;rate=44100"), nullptr);
    EXPECT_EQ(table->EntriesFromMimeType("audio/l16 "), nullptr);
    EXPECT_EQ(table->EntriesFromMimeType(";audio/l16"), nullptr);
    EXPECT_EQ(table->EntriesFromMimeType(";"), nullptr);
}

TEST(ExtensionMimeTypeMatcher, EntriesFromHashTableLowersOnlyWhereAsked) {
    Table table("");
    ezHashTable* keys = ezHashTable_New();
    ezPtrList* upper = ezPtrList_New();
    ezPtrList* lower = ezPtrList_New();
    ezPtrList* binary = ezPtrList_New();
    ezHashTable_AddEntry(keys, "Key", 3, upper);
    ezHashTable_AddEntry(keys, "key", 3, lower);
    ezHashTable_AddEntry(keys, "k\0y", 3, binary);
    EXPECT_EQ(table->EntriesFromHashTable(keys, "Key", false), upper);
    EXPECT_EQ(table->EntriesFromHashTable(keys, "Key", true), lower);
    EXPECT_EQ(table->EntriesFromHashTable(keys, "key", false), lower);
    EXPECT_EQ(table->EntriesFromHashTable(keys, "KEY", false), nullptr);
    EXPECT_EQ(table->EntriesFromHashTable(keys, "KEY", true), lower);
    EXPECT_EQ(table->EntriesFromHashTable(keys, ezCString("k\0y", 3), false), binary);
    EXPECT_EQ(table->EntriesFromHashTable(keys, ezCString("K\0Y", 3), true), binary);
    EXPECT_EQ(table->EntriesFromHashTable(keys, "k", false), nullptr);
    EXPECT_EQ(table->EntriesFromHashTable(keys, "", true), nullptr);
    EXPECT_EQ(table->EntriesFromHashTable(nullptr, "key", true), nullptr);
    ezHashTable_Delete(keys);
    ezPtrList_Delete(upper);
    ezPtrList_Delete(lower);
    ezPtrList_Delete(binary);
}

// Questions.

TEST(ExtensionMimeTypeMatcher, UnknownExtensionAndMimeTypeGetTheDefaults) {
    Table table("[MimeTypes]\nmp3=mp3@audio/mpeg@item.audioItem\n");
    EXPECT_EQ(table->FileExtensionToMimeType("xyz"), "application/octet-stream");
    EXPECT_EQ(table->FileExtensionToMimeType(""), "application/octet-stream");
    EXPECT_EQ(table->MimeTypeToFileExtension("x/y"), "");
    EXPECT_EQ(table->MimeTypeToFileExtension(""), "");
    EXPECT_TRUE(table->MimeTypeToFileExtensionList("x/y").IsEmpty());
    EXPECT_TRUE(table->ExtensionToExtensionList("xyz").IsEmpty());
    EXPECT_TRUE(table->ExtensionToExtensionList("").IsEmpty());
}

TEST(ExtensionMimeTypeMatcher, MimeTypeOfAnExtensionIsTheFirstOfTheFirstEntry) {
    Table table("[MimeTypes]\na=e,f@x/a1,x/a2\nb=f,g@x/b\n");
    EXPECT_EQ(table->FileExtensionToMimeType("e"), "x/a1");
    EXPECT_EQ(table->FileExtensionToMimeType("f"), "x/a1");
    EXPECT_EQ(table->FileExtensionToMimeType("F"), "x/a1");
    EXPECT_EQ(table->FileExtensionToMimeType("g"), "x/b");
}

TEST(ExtensionMimeTypeMatcher, MimeTypeOfAnExtensionPassesOverEntriesWithoutOne) {
    Table table("[MimeTypes]\na=e\nb=e@,@item\nc=e@x/c\nd=e@x/d\nlone=l\n");
    EXPECT_EQ(table->FileExtensionToMimeType("e"), "x/c");
    EXPECT_EQ(table->FileExtensionToMimeType("l"), "application/octet-stream");
}

TEST(ExtensionMimeTypeMatcher, MimeTypeOfAnExtensionComesFromTheExcludedEntry) {
    Table table("[MimeTypes]\na=e@x/normal\nb=f@x/normal\n[MimeTypesExcluded]\nc=e@x/excluded\nd=f\n");
    EXPECT_EQ(table->FileExtensionToMimeType("e"), "x/excluded");
    EXPECT_EQ(table->FileExtensionToMimeType("f"), "x/normal"); // the excluded one has none
}

TEST(ExtensionMimeTypeMatcher, ExtensionOfAMimeTypeIsTheFirstOfTheFirstEntry) {
    Table table("[MimeTypes]\na=e1,e2@x/y,x/z\nb=f@x/y\n");
    EXPECT_EQ(table->MimeTypeToFileExtension("x/y"), "e1");
    EXPECT_EQ(table->MimeTypeToFileExtension("X/Z"), "e1");
    EXPECT_EQ(table->MimeTypeToFileExtension("x/y;q=1"), "e1");
}

TEST(ExtensionMimeTypeMatcher, ExtensionOfAMimeTypePassesOverEntriesWithoutOne) {
    Table table("[MimeTypes]\na=,@x/y\nb=f,g@x/y\nc=,@x/z\n");
    EXPECT_EQ(table->MimeTypeToFileExtension("x/y"), "f");
    EXPECT_EQ(table->MimeTypeToFileExtension("x/z"), "");
}

TEST(ExtensionMimeTypeMatcher, ExtensionOfAMimeTypeComesFromTheExcludedEntry) {
    Table table("[MimeTypes]\na=normal@x/y\n[MimeTypesExcluded]\nb=excluded@x/y\n");
    EXPECT_EQ(table->MimeTypeToFileExtension("x/y"), "excluded");
}

TEST(ExtensionMimeTypeMatcher, ExtensionListHoldsTheFirstExtensionOfEveryEntry) {
    Table table(
        "[MimeTypes]\na=e1,e2@x/y\nb=f1,e2@x/y\nc=,@x/y\nd=g@x/z\n[MimeTypesExcluded]\nh=h1,h2@x/y\n");
    EXPECT_EQ(Of(table->MimeTypeToFileExtensionList("x/y")), (Strings{"h1", "e1", "f1"}));
    EXPECT_EQ(Of(table->MimeTypeToFileExtensionList("X/Y;q=1")), (Strings{"h1", "e1", "f1"}));
    EXPECT_EQ(table->MimeTypeToFileExtension("x/y"), "h1");
}

TEST(ExtensionMimeTypeMatcher, ExtensionListHoldsEachExtensionOnce) {
    Table table("[MimeTypes]\na=e@x/y,x/y\nb=f@x/y\nc=E@x/y\n");
    EXPECT_EQ(Of(table->MimeTypeToFileExtensionList("x/y")), (Strings{"e", "f"}));
}

TEST(ExtensionMimeTypeMatcher, LongExtensionListsHoldEachExtensionOnceToo) {
    std::string content = "[MimeTypes]\n";
    Strings expected;
    for (int i = 0; i < 60; ++i) {
        const std::string extension = "e" + std::to_string(i % 40); // the last 20 again
        content += "k" + std::to_string(i) + "=" + extension + "@x/y\n";
        if (i < 40) {
            expected.push_back(extension);
        }
    }
    Table table(content);
    EXPECT_EQ(Of(table->MimeTypeToFileExtensionList("x/y")), expected);
}

TEST(ExtensionMimeTypeMatcher, ExtensionListsHaveABackslashBetweenTheElements) {
    Table table("[MimeTypes]\na=e,g@x/y\nb=f@x/y\n");
    EXPECT_EQ(table->MimeTypeToFileExtensionList("x/y").GetSeparator(), '\\');
    EXPECT_EQ(table->MimeTypeToFileExtensionList("x/y").Join(), "e\\f");
    EXPECT_EQ(table->MimeTypeToFileExtensionList("x/unknown").GetSeparator(), '\\');
    EXPECT_EQ(table->ExtensionToExtensionList("g").GetSeparator(), '\\');
    EXPECT_EQ(table->ExtensionToExtensionList("g").Join(), "e\\g");
    EXPECT_EQ(table->ExtensionToExtensionList("unknown").GetSeparator(), '\\');
}

TEST(ExtensionMimeTypeMatcher, SiblingsAreAllExtensionsOfTheFirstEntryThatListsIt) {
    Table table("[MimeTypes]\nmp4=mp4,m4v@video/mp4@item.videoItem\nother=m4v,mov@video/mp4\n");
    EXPECT_EQ(Of(table->ExtensionToExtensionList("m4v")), (Strings{"mp4", "m4v"}));
    EXPECT_EQ(Of(table->ExtensionToExtensionList("mp4")), (Strings{"mp4", "m4v"}));
    EXPECT_EQ(Of(table->ExtensionToExtensionList("mov")), (Strings{"m4v", "mov"}));
}

TEST(ExtensionMimeTypeMatcher, SiblingsAreAskedForInLowerCaseOnly) {
    Table table("[MimeTypes]\nmp4=MP4,M4V@video/mp4@item.videoItem\n");
    EXPECT_TRUE(table->ExtensionToExtensionList("M4V").IsEmpty());
    EXPECT_TRUE(table->ExtensionToExtensionList("m4V").IsEmpty());
    EXPECT_EQ(Of(table->ExtensionToExtensionList("m4v")), (Strings{"mp4", "m4v"}));
    for (const char* extension : {"m4", "m4v ", ".m4v", "mp4,m4v"}) {
        EXPECT_TRUE(table->ExtensionToExtensionList(extension).IsEmpty()) << extension;
    }
    EXPECT_TRUE(table->ExtensionToExtensionList(ezCString("m4v\0", 4)).IsEmpty());
}

TEST(ExtensionMimeTypeMatcher, SiblingsStandOnceEach) {
    Table table("[MimeTypes]\na=x,y,x,Y,z,x\n");
    EXPECT_EQ(Of(table->ExtensionToExtensionList("z")), (Strings{"x", "y", "z"}));
}

TEST(ExtensionMimeTypeMatcher, SiblingsDoNotComeFromExcludedEntries) {
    Table table("[MimeTypes]\nn=e,n@x/normal\n[MimeTypesExcluded]\nx=e,x@x/excluded\ny=only,y\n");
    EXPECT_EQ(Of(table->ExtensionToExtensionList("e")), (Strings{"e", "n"}));
    EXPECT_EQ(table->FileExtensionToMimeType("e"), "x/excluded"); // which does not skip them
    EXPECT_TRUE(table->ExtensionToExtensionList("only").IsEmpty());
    EXPECT_TRUE(table->ExtensionToExtensionList("x").IsEmpty());
}

TEST(ExtensionMimeTypeMatcher, TwoEntriesOfOneMimeType) {
    Table table("[MimeTypes]\na=first@x/y\nb=second@x/y\n");
    EXPECT_EQ(table->MimeTypeToFileExtension("x/y"), "first");
    EXPECT_EQ(Of(table->MimeTypeToFileExtensionList("x/y")), (Strings{"first", "second"}));
}

TEST(ExtensionMimeTypeMatcher, ExcludedIsAnEntryItselfAndNotItsLikeness) {
    Table table("[MimeTypes]\nk=e@x/y\n[MimeTypesExcluded]\nk=e@x/y\nl=f\n");
    EXPECT_TRUE(table->IsExcludedEntry(table.EntryAt(0)));
    EXPECT_TRUE(table->IsExcludedEntry(table.EntryAt(1)));
    EXPECT_FALSE(table->IsExcludedEntry(table.EntryAt(2)));
    Entry stranger("k", "e@x/y");
    EXPECT_FALSE(table->IsExcludedEntry(&stranger));
    EXPECT_FALSE(table->IsExcludedEntry(nullptr));
}

// Traces.

TEST(ExtensionMimeTypeMatcher, TracesItsFoldersAndItsFile) {
    LogCatcher log(4);
    const ExtensionMimeTypeMatcher usual("ro", "rw", "");
    const ExtensionMimeTypeMatcher named("ro folder", "", "my.ini");
    EXPECT_EQ(
        log.Texts(),
        (Strings{"ExtensionMimeTypeMatcher::ExtensionMimeTypeMatcher(ro, rw, mediaCTRLMediaTypes.ini)\n",
                 "ExtensionMimeTypeMatcher::ExtensionMimeTypeMatcher(ro folder, , my.ini)\n"}));
}

TEST(ExtensionMimeTypeMatcher, TracesEveryIndexedItemWithTheWholeValue) {
    TemporaryFolder folder;
    folder.Write(kFileName, "[MimeTypes]\nMP4=  MP4, m4v,mp4 @Video/MP4@item.videoItem  \nx=e@x/y,x/z\n"
                            "[MimeTypesExcluded]\nt=txt\n");
    ExtensionMimeTypeMatcher matcher(folder.GetPath().c_str(), folder.GetPath().c_str(), "");
    LogCatcher log(4);
    EXPECT_TRUE(matcher.Load());
    EXPECT_EQ(
        log.Texts(),
        (Strings{"ExtensionMimeTypeMatcher::Load(): Ext(txt) -> txt\n",
                 "ExtensionMimeTypeMatcher::Load(): Ext(mp4) -> MP4, m4v,mp4 @Video/MP4@item.videoItem\n",
                 "ExtensionMimeTypeMatcher::Load(): Ext(m4v) -> MP4, m4v,mp4 @Video/MP4@item.videoItem\n",
                 "ExtensionMimeTypeMatcher::Load(): Ext(mp4) -> MP4, m4v,mp4 @Video/MP4@item.videoItem\n",
                 "ExtensionMimeTypeMatcher::Load(): MimeType(video/mp4) -> "
                 "MP4, m4v,mp4 @Video/MP4@item.videoItem\n",
                 "ExtensionMimeTypeMatcher::Load(): Ext(e) -> e@x/y,x/z\n",
                 "ExtensionMimeTypeMatcher::Load(): MimeType(x/y) -> e@x/y,x/z\n",
                 "ExtensionMimeTypeMatcher::Load(): MimeType(x/z) -> e@x/y,x/z\n"}));
}

TEST(ExtensionMimeTypeMatcher, TracesCarryLevelModuleSourceAndLine) {
    LogCatcher log(4);
    Table table("[MimeTypes]\nx=e@x/y\n");
    ASSERT_EQ(log.Lines().size(), 3U);
    std::set<int> lines;
    for (const LogCatcher::Line& line : log.Lines()) {
        EXPECT_EQ(line.mLevel, 3);
        EXPECT_EQ(line.mModule, 10);
        EXPECT_EQ(line.mSource, "ExtensionMimeTypeMatcher");
        EXPECT_GT(line.mLine, 0);
        lines.insert(line.mLine);
    }
    EXPECT_EQ(lines.size(), 3U); // three places in the source
}

TEST(ExtensionMimeTypeMatcher, TracesOnlyAboveLevelThree) {
    LogCatcher log(3);
    Table table("[MimeTypes]\nx=e@x/y\n");
    EXPECT_EQ(log.Texts(), Strings{});
    EXPECT_EQ(Keys(table->AllEntries()), (Strings{"x"})); // not the trace does the work
}

TEST(ExtensionMimeTypeMatcher, TracePercentSignsOfTheFileAsTheyAre) {
    LogCatcher log(4);
    Table table("[MimeTypes]\nx=%s%n@%d%%\n");
    EXPECT_TRUE(log.Has("ExtensionMimeTypeMatcher::Load(): Ext(%s%n) -> %s%n@%d%%\n"));
    EXPECT_TRUE(log.Has("ExtensionMimeTypeMatcher::Load(): MimeType(%d%%) -> %s%n@%d%%\n"));
}

// Life after Cleanup.

namespace {

constexpr const char* kSmallTable = "[MimeTypes]\nmp3=mp3,mpga@audio/mpeg,audio/mp3@item.audioItem\n"
                                    "x=mp3@audio/mpeg\n[MimeTypesExcluded]\ntext=txt@text/plain\n";

/// Whatever the index and the excluded ones lead to belongs to the table.
void ExpectOwnsWhatItFinds(ExtensionMimeTypeMatcher& aMatcher) {
    std::set<const Entry*> owned;
    for (const Entry* entry : ezItems<Entry>(aMatcher.AllEntries())) {
        EXPECT_TRUE(owned.insert(entry).second);
    }
    for (const char* text : {"mp3", "mpga", "audio/mpeg", "audio/mp3", "txt", "text/plain"}) {
        for (const Entry* entry : ezItems<Entry>(aMatcher.EntriesFromExtension(text))) {
            EXPECT_EQ(owned.count(entry), 1U) << text;
        }
        for (const Entry* entry : ezItems<Entry>(aMatcher.EntriesFromMimeType(text))) {
            EXPECT_EQ(owned.count(entry), 1U) << text;
        }
    }
}

} // namespace

TEST(ExtensionMimeTypeMatcher, OwnsWhatItsIndexLeadsTo) {
    Table table(kSmallTable);
    ExpectOwnsWhatItFinds(*table);
}

TEST(ExtensionMimeTypeMatcher, KnowsNothingAfterCleanup) {
    Table table(kSmallTable);
    Entry* const excluded = table.EntryAt(0);
    EXPECT_TRUE(table->IsExcludedEntry(excluded));
    table->Cleanup();
    ExpectKnowsNothing(*table);
    EXPECT_FALSE(table->IsExcludedEntry(excluded)); // compared, never looked into
}

TEST(ExtensionMimeTypeMatcher, CleanupMayBeCalledAgain) {
    Table table(kSmallTable);
    table->Cleanup();
    table->Cleanup();
    ExpectKnowsNothing(*table);
    table->Cleanup();
}

TEST(ExtensionMimeTypeMatcher, CleanupBeforeLoadIsHarmless) {
    ExtensionMimeTypeMatcher matcher("", "", "no such file.ini");
    matcher.Cleanup();
    ExpectKnowsNothing(matcher);
}

TEST(ExtensionMimeTypeMatcher, LoadAfterCleanupStaysInItsMemory) {
    Table table(kSmallTable);
    table->Cleanup();
    EXPECT_TRUE(table->Load());
    ExpectOwnsWhatItFinds(*table);
    table->Cleanup();
    EXPECT_TRUE(table->LoadMimeType("MimeTypes"));
    ExpectOwnsWhatItFinds(*table);
    EXPECT_TRUE(table->LoadMimeType("MimeTypes"));
    ExpectOwnsWhatItFinds(*table);
    EXPECT_TRUE(table->Load());
    ExpectOwnsWhatItFinds(*table);
    table->Cleanup();
    ExpectKnowsNothing(*table);
}

// Files as they come.

TEST(ExtensionMimeTypeMatcher, MissingFileAndFoldersAreAnEmptyTable) {
    TemporaryFolder folder;
    const std::string missing = folder.Path("missing");
    for (const std::string& path : {folder.GetPath(), missing, folder.Write("file", "x"), std::string()}) {
        ExtensionMimeTypeMatcher matcher(path.c_str(), path.c_str(), "noSuchFile.ini");
        EXPECT_TRUE(matcher.Load()) << path;
        ExpectKnowsNothing(matcher);
    }
}

TEST(ExtensionMimeTypeMatcher, MissingSectionYieldsNoEntries) {
    Table none("[Other]\na=a\n");
    EXPECT_TRUE(Keys(none->AllEntries()).empty());
    Table normal("[MimeTypes]\na=a\n");
    EXPECT_EQ(Keys(normal->AllEntries()), (Strings{"a"}));
    Table excluded("[MimeTypesExcluded]\na=a\n");
    EXPECT_EQ(Keys(excluded->AllEntries()), (Strings{"a"}));
    EXPECT_TRUE(excluded->IsExcludedEntry(excluded.EntryAt(0)));
    Table empty("");
    ExpectKnowsNothing(*empty);
}

TEST(ExtensionMimeTypeMatcher, FileThatCannotBeOpenedOrReadIsAnEmptyTable) {
    TemporaryFolder folder;
    folder.Write(kFileName, kSmallTable);
    {
        ScriptedSystem system;
        system.mOpenOutcomes = {{EACCES}};
        ExtensionMimeTypeMatcher matcher(folder.GetPath().c_str(), folder.GetPath().c_str(), "");
        EXPECT_TRUE(matcher.Load());
        ExpectKnowsNothing(matcher);
    }
    {
        ScriptedSystem system;
        system.mPReadOutcomes = {{EIO}};
        ExtensionMimeTypeMatcher matcher(folder.GetPath().c_str(), folder.GetPath().c_str(), "");
        EXPECT_TRUE(matcher.Load());
        ExpectKnowsNothing(matcher);
    }
}

TEST(ExtensionMimeTypeMatcher, FileIsNotOpenedAfterConstruction) {
    TemporaryFolder folder;
    folder.Write(kFileName, kSmallTable);
    ExtensionMimeTypeMatcher matcher(folder.GetPath().c_str(), folder.GetPath().c_str(), "");
    ScriptedSystem system;
    EXPECT_TRUE(matcher.Load());
    matcher.FileExtensionToMimeType("mp3");
    EXPECT_EQ(system.GetCounts().All(), 0U);
    EXPECT_EQ(Keys(matcher.AllEntries()), (Strings{"text", "mp3", "x"}));
}

TEST(ExtensionMimeTypeMatcher, FolderInPlaceOfTheFileIsAnEmptyTable) {
    TemporaryFolder folder;
    std::filesystem::create_directory(folder.Path(kFileName));
    ExtensionMimeTypeMatcher matcher(folder.GetPath().c_str(), folder.GetPath().c_str(), "");
    EXPECT_TRUE(matcher.Load());
    ExpectKnowsNothing(matcher);
}

TEST(ExtensionMimeTypeMatcher, ByteOrderMarkIsDropped) {
    Table table("\xEF\xBB\xBF[MimeTypes]\nmp3=mp3@audio/mpeg\n");
    EXPECT_EQ(table->FileExtensionToMimeType("mp3"), "audio/mpeg");
}

TEST(ExtensionMimeTypeMatcher, LineEndsOfOtherSystemsAreLineEnds) {
    Table table("[MimeTypesExcluded]\r\ntext=txt\r\n\r\n[MimeTypes]\r\nmp3=mp3@audio/mpeg@item.audioItem\r\n"
                "last=l@x/y");
    EXPECT_EQ(Keys(table->AllEntries()), (Strings{"text", "mp3", "last"}));
    EXPECT_EQ(Text(*table.EntryAt(0)), "txt@@@text");
    EXPECT_EQ(Text(*table.EntryAt(1)), "mp3@audio/mpeg@item.audioItem@mp3");
    EXPECT_EQ(Text(*table.EntryAt(2)), "l@x/y@@last");
}

TEST(ExtensionMimeTypeMatcher, BadLinesHarmNoOther) {
    Table table("; comment=1\n[MimeTypes]\nno equals sign\n=no key\n;x=comment\n#y=comment\n[broken\n"
                "mp3=mp3@audio/mpeg@item.audioItem\n]]]=[[[\n");
    EXPECT_EQ(table->FileExtensionToMimeType("mp3"), "audio/mpeg");
    EXPECT_EQ(Keys(table->AllEntries()), (Strings{"mp3", "]]]"}));
}

TEST(ExtensionMimeTypeMatcher, BinaryFileIsRead) {
    // Bytes of a small generator; every third block a line that reaches the table.
    std::string content = "[MimeTypes]\n";
    uint32 state = 1;
    for (int block = 0; block < 300; ++block) {
        for (int i = 0; i < 40; ++i) {
            state = state * 1664525 + 1013904223;
            content += static_cast<char>(state >> 24);
        }
        content += block % 3 == 0 ? "\nk" + std::to_string(block) + "=\x01\xFF,\x80@\xFE@\x02@\x03\n" : "=";
    }
    Table table(content);
    const Strings keys = Keys(table->AllEntries());
    EXPECT_NE(std::find(keys.begin(), keys.end(), "k0"), keys.end());
    EXPECT_EQ(table->FileExtensionToMimeType("\x80"), "\xFE");
}

TEST(ExtensionMimeTypeMatcher, NoItemIsEmptyWhateverBytesTheFileHolds) {
    const char content[] = "[MimeTypes]\na=\0x,e@\0y,m/n@\0z,c@\0w,t\n";
    Table table(std::string(content, sizeof(content) - 1));
    for (const Entry* entry : ezItems<Entry>(table->AllEntries())) {
        for (const ezPtrList* list :
             {entry->mExtensions, entry->mMimeTypes, entry->mUPnPClasses, entry->mTypes}) {
            for (const char* item : ezItems<const char>(list)) {
                EXPECT_STRNE(item, "");
            }
        }
    }
    EXPECT_EQ(table->EntriesFromExtension(""), nullptr);
    EXPECT_EQ(table->EntriesFromMimeType(""), nullptr);
}

namespace {

/// One line of at least so many bytes: extensions e0, e1, ... and one MIME type.
std::string LongLine(std::size_t aSize) {
    std::string line = "long=";
    for (std::size_t i = 0; line.size() < aSize; ++i) {
        line += "e" + std::to_string(i) + ",";
    }
    return "[MimeTypes]\n" + line + "@x/long@item\nafter=a@x/after\n";
}

std::string ManyLines(std::size_t aCount) {
    std::string content = "[MimeTypesExcluded]\n";
    for (std::size_t i = 0; i < aCount; ++i) {
        const std::string number = std::to_string(i);
        content +=
            (i == aCount / 2 ? "[MimeTypes]\nk" : "k") + number + "=e" + number + "@x/" + number + ",x/all\n";
    }
    return content;
}

/// Processor seconds that loading a file takes.
double LoadTime(const std::string& aContent) {
    double best = 1e9;
    for (int i = 0; i < 2; ++i) {
        const std::clock_t begin = std::clock();
        Table table(aContent);
        best = std::min(best, static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC);
    }
    return best;
}

} // namespace

TEST(ExtensionMimeTypeMatcher, LineOfAMegabyteIsReadWhole) {
    Table table(LongLine(1 << 20));
    EXPECT_EQ(Keys(table->AllEntries()), (Strings{"long", "after"}));
    const std::size_t count = ezPtrList_GetCount(table.EntryAt(0)->mExtensions);
    EXPECT_GT(count, 100000U);
    EXPECT_EQ(table->FileExtensionToMimeType("e0"), "x/long");
    EXPECT_EQ(table->FileExtensionToMimeType(("e" + std::to_string(count - 1)).c_str()), "x/long");
    EXPECT_EQ(table->FileExtensionToMimeType("a"), "x/after");
    EXPECT_EQ(table->MimeTypeToFileExtension("x/long"), "e0");
}

TEST(ExtensionMimeTypeMatcher, ItemOfAMegabyteIsKeptWhole) {
    const std::string item(1 << 20, 'E');
    Table table("[MimeTypes]\n" + item + "=" + item + "@" + item + "/x\n");
    EXPECT_EQ(table->FileExtensionToMimeType(item.c_str()).GetLength(), item.size() + 2);
    EXPECT_EQ(table->MimeTypeToFileExtension((item + "/X;" + item).c_str()).GetLength(), item.size());
}

TEST(ExtensionMimeTypeMatcher, LongFieldOfSeparatorsIsReadInOneWalk) {
    Table table("[MimeTypes]\na=" + std::string(1 << 20, '@') + "e\nb=" + std::string(1 << 20, ',') + "f\n");
    EXPECT_EQ(Keys(table->EntriesFromExtension("e")), (Strings{"a"}));
    EXPECT_EQ(Keys(table->EntriesFromExtension("f")), (Strings{"b"}));
}

TEST(ExtensionMimeTypeMatcher, LoadIsLinearInTheFile) {
    // Eight times the file: eight times the work, where a square would be sixty-four times.
    EXPECT_LT(LoadTime(LongLine(512 * 1024)), 24 * LoadTime(LongLine(64 * 1024)));
    EXPECT_LT(LoadTime(ManyLines(16000)), 24 * LoadTime(ManyLines(2000)));
}
