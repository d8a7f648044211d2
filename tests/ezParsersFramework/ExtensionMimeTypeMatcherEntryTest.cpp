#include "ez/ExtensionMimeTypeMatcherEntry.h"

#include "MatcherKit.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using Entry = ExtensionMimeTypeMatcherEntry;

/// How a value is taken apart under the key "key".
std::string Split(const ezCString& aValue) {
    return Text(ExtensionMimeTypeMatcherEntry("key", aValue));
}

} // namespace

TEST(ExtensionMimeTypeMatcherEntry, HoldsTheFieldsInOrder) {
    const Entry entry("mp4", "mp4,m4v@video/mp4@item.videoItem");
    EXPECT_EQ(Of(entry.mExtensions), (Strings{"mp4", "m4v"}));
    EXPECT_EQ(Of(entry.mMimeTypes), (Strings{"video/mp4"}));
    EXPECT_EQ(Of(entry.mUPnPClasses), (Strings{"item.videoItem"}));
    EXPECT_EQ(Of(entry.mTypes), (Strings{"mp4"}));
}

TEST(ExtensionMimeTypeMatcherEntry, FurtherTypesFollowTheKey) {
    EXPECT_EQ(Split("a@b@c@d,e"), "a@b@c@key,d,e");
}

TEST(ExtensionMimeTypeMatcherEntry, FewerFieldsLeaveTheOtherListsEmptyButNotNull) {
    const Entry entry("key", "a");
    EXPECT_EQ(Text(entry), "a@@@key");
    EXPECT_NE(entry.mMimeTypes, nullptr);
    EXPECT_NE(entry.mUPnPClasses, nullptr);
    EXPECT_EQ(Split("a@b"), "a@b@@key");
    EXPECT_EQ(Split(""), "@@@key");
}

TEST(ExtensionMimeTypeMatcherEntry, AllButClassesIsLowerCase) {
    EXPECT_EQ(Split("MP3,Mp2@Audio/MPEG,AUDIO/X@item.audioItem,ITEM.Audio@TyPe,T2"),
              "mp3,mp2@audio/mpeg,audio/x@item.audioItem,ITEM.Audio@key,type,t2");
}

TEST(ExtensionMimeTypeMatcherEntry, LowerCaseTouchesNothingButAToZ) {
    EXPECT_EQ(Split("\xC3\x84[Z]^@\xC3\x84/B"), "\xC3\x84[z]^@\xC3\x84/b@@key");
}

TEST(ExtensionMimeTypeMatcherEntry, KeepsTheKeyAsItIsPassed) {
    EXPECT_EQ(Text(Entry("KeY", "a")), "a@@@KeY");
}

TEST(ExtensionMimeTypeMatcherEntry, FieldsAfterTheFourthAreIgnored) {
    EXPECT_EQ(Split("a@b@c@d@e"), "a@b@c@key,d");
    EXPECT_EQ(Split("a@b@c@d@e@f@g@"), "a@b@c@key,d");
}

TEST(ExtensionMimeTypeMatcherEntry, EmptyFieldIsDroppedAndWhatFollowsMovesUp) {
    EXPECT_EQ(Split("@video/mpeg@item.videoItem"), "video/mpeg@item.videoitem@@key");
    EXPECT_EQ(Split("@video/mp4"), "video/mp4@@@key");
    EXPECT_EQ(Split("a@@b"), "a@b@@key");
    EXPECT_EQ(Split("@@@a"), "a@@@key");
    EXPECT_EQ(Split("a@b@@C"), "a@b@C@key");
}

TEST(ExtensionMimeTypeMatcherEntry, FieldOfBlanksIsEmpty) {
    EXPECT_EQ(Split("a@ \t @b"), "a@b@@key");
    EXPECT_EQ(Split(" @b"), "b@@@key");
}

TEST(ExtensionMimeTypeMatcherEntry, EmptyFieldsDoNotCountTowardsTheFour) {
    EXPECT_EQ(Split("@a@@b@@c@@d@@e"), "a@b@c@key,d");
}

TEST(ExtensionMimeTypeMatcherEntry, FieldWithoutItemsIsNotEmpty) {
    // A comma holds the place of a field that has nothing to say.
    EXPECT_EQ(Split(",@video/mp4"), "@video/mp4@@key");
    EXPECT_EQ(Split("a@ , ,@item"), "a@@item@key");
}

TEST(ExtensionMimeTypeMatcherEntry, SeparatorAtTheEndAddsNothing) {
    EXPECT_EQ(Split("a@"), "a@@@key");
    EXPECT_EQ(Split("a,@b,@c,@d,"), "a@b@c@key,d");
    EXPECT_EQ(Split("a@b@c@d@"), "a@b@c@key,d");
    EXPECT_EQ(Split("@"), "@@@key");
    EXPECT_EQ(Split(","), "@@@key");
}

TEST(ExtensionMimeTypeMatcherEntry, EmptyItemsAreDropped) {
    EXPECT_EQ(Split(",a,,b, ,c"), "a,b,c@@@key");
    EXPECT_EQ(Split("a@,b,,c@,D,,E@,f,,g"), "a@b,c@D,E@key,f,g");
}

TEST(ExtensionMimeTypeMatcherEntry, FieldsAndItemsAreTrimmed) {
    EXPECT_EQ(Split("  a , b\t@\t video/mp4 ,\tx/y @ item.A , item.B @ t , u  "),
              "a,b@video/mp4,x/y@item.A,item.B@key,t,u");
    EXPECT_EQ(Split("a b@c d"), "a b@c d@@key"); // blanks inside stay
}

TEST(ExtensionMimeTypeMatcherEntry, ItemsThatStandTwiceAreKeptTwice) {
    EXPECT_EQ(Split("a,A,a@m,m@c,c@t,t,key"), "a,a,a@m,m@c,c@key,t,t,key");
}

TEST(ExtensionMimeTypeMatcherEntry, NothingQuotesOrEscapesASeparator) {
    EXPECT_EQ(Split("\"a,b\""), "\"a,b\"@@@key");
    EXPECT_EQ(Of(Entry("key", "\"a,b\"").mExtensions), (Strings{"\"a", "b\""}));
    EXPECT_EQ(Of(Entry("key", "a\\,b").mExtensions), (Strings{"a\\", "b"}));
    EXPECT_EQ(Split("a\\@b"), "a\\@b@@key");
    EXPECT_EQ(Split("'a@b'"), "'a@b'@@key");
}
