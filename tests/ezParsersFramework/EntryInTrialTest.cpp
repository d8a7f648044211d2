#include "ez/ExtensionMimeTypeMatcher.h"
#include "ez/MediaParserManager.h"
#include "ez/MimeTypesDotIniParser.h"

#include "support/AwkwardStream.h"
#include "support/Record.h"
#include "support/ScriptedParser.h"
#include "support/TemporaryFolder.h"

#include "ezPlatform/containers/PtrList.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

// What a parser can learn of the line of the media types file that led to it.

namespace {

constexpr const char* kTable = "[MimeTypesExcluded]\n"
                               "hidden=hid@image/jpeg@item.imageItem.hidden\n"
                               "[MimeTypes]\n"
                               "song=mp3@audio/mpeg@item.audioItem.musicTrack\n"
                               "bare=bar@image/jpeg\n"
                               "film=mp4@video/mp4,audio/mpeg@item.videoItem,item.audioItem@song\n"
                               "near=jpn@image/jpeg@item.imageItemOfOurs\n"
                               "photo=jpg@image/jpeg,image/png@item.imageItem.photo\n"
                               "image=jpi@image/jpeg@item.imageItem\n";

class Host {
public:
    Host() {
        mFolder.Write("mediaCTRLMediaTypes.ini", kTable);
        mEnvironment.Set("ReadOnlyConfigPath", mFolder.GetPath());
        mEnvironment.Set("ReadWriteConfigPath", mFolder.GetPath());
        mManager = std::make_unique<ezMediaParserManager>(mEnvironment.Get());
        mManager->AddStandardParsers(kParseOption_Default);
    }

    ezMediaParserManager& Manager() { return *mManager; }
    ezMimeTypesDotIniParser& Table() { return *mManager->GetMimeTypesDotIniParser(); }
    ScriptedParser& Add(const char* aType) {
        auto* const parser = new ScriptedParser(mTrace, aType, aType);
        mManager->Add(parser);
        return *parser;
    }
    /// The type of the line that is tried on a stream; "-" where none is.
    std::string InTrial(const ezMediaParserStream& aStream) {
        const ExtensionMimeTypeMatcherEntry* const entry = Table().GetEntryInTrial(aStream);
        return entry == nullptr ? "-" : static_cast<const char*>(*ezPtrList_GetAt(entry->mTypes, 0));
    }

private:
    TemporaryFolder mFolder;
    ezEnvironment mEnvironment;
    ParserTrace mTrace;
    std::unique_ptr<ezMediaParserManager> mManager;
};

ezMediaInfo* NewInfo(const char* aMimeType) {
    auto* const info = new ezMediaInfo;
    info->Set(kezInfo_MimeType, aMimeType, true);
    return info;
}

AwkwardStream Named(const char* aPath) {
    return AwkwardStream("content", Delivery(), aPath);
}

} // namespace

TEST(EntryInTrial, IsTheLineThatNamesTheParserAndNoneOutsideATrial) {
    Host host;
    std::string seen;
    host.Add("song").AnsweringWith([&](ezMediaParserStream& aStream) -> ezMediaInfo* {
        seen += host.InTrial(aStream) + " ";
        return NewInfo("audio/mpeg");
    });
    AwkwardStream film = Named("/a.mp4");
    AwkwardStream song = Named("/a.mp3");
    EXPECT_EQ(host.InTrial(film), "-");
    Record(host.Manager().Parse(film));
    Record(host.Manager().Parse(song));
    EXPECT_EQ(seen, "film song ");
    EXPECT_EQ(host.InTrial(film), "-");
    EXPECT_EQ(host.InTrial(song), "-");
    Record(host.Manager().ParseFromType("song", song)); // the host asks by itself
    EXPECT_EQ(seen, "film song ");                      // each runs once a request: nothing was asked
    AwkwardStream other = Named("/none");
    Record(host.Manager().Parse(other)); // a new request, which tries nothing
    Record(host.Manager().ParseFromType("song", song));
    EXPECT_EQ(seen, "film song - ");
}

TEST(EntryInTrial, AnotherStreamThatAParserHasIdentifiedLeavesTheLineOfItsOwn) {
    Host host;
    std::string seen;
    host.Add("film").AnsweringWith([&](ezMediaParserStream& aStream) -> ezMediaInfo* {
        AwkwardStream cover = Named("/cover.jpg");
        seen += host.InTrial(aStream) + "/" + host.InTrial(cover) + " ";
        const Record inner(host.Manager().Parse(cover));
        seen += host.InTrial(aStream) + "/" + host.InTrial(cover);
        return NewInfo("video/mp4");
    });
    host.Add("photo").AnsweringWith([&](ezMediaParserStream& aStream) -> ezMediaInfo* {
        seen += host.InTrial(aStream) + " ";
        return NewInfo("image/jpeg");
    });
    AwkwardStream film = Named("/a.mp4");
    const Record record(host.Manager().Parse(film));
    EXPECT_EQ(seen, "film/- photo film/-");
    EXPECT_STREQ(record->GetCString(kezInfo_ClassName, "").c_str(), "item.videoItem");
}

TEST(EntryInTrial, IsOfItsFirstClassAndOfThoseThatItIsDerivedFrom) {
    const ExtensionMimeTypeMatcherEntry song("song",
                                             "mp3@audio/mpeg@item.audioItem.musicTrack,item.videoItem");
    EXPECT_TRUE(song.IsOfClass("item.audioItem"));
    EXPECT_TRUE(song.IsOfClass("item.audioItem.musicTrack"));
    EXPECT_FALSE(song.IsOfClass("item.audioItem.music"));
    EXPECT_FALSE(song.IsOfClass("item.audioItem.musicTrack.live"));
    EXPECT_FALSE(song.IsOfClass("item.videoItem"));
    EXPECT_FALSE(song.IsOfClass("Item.audioItem"));
    EXPECT_FALSE(song.IsOfClass(""));
    EXPECT_FALSE(ExtensionMimeTypeMatcherEntry("none", "mp3@audio/mpeg").IsOfClass("item.audioItem"));
}

TEST(EntryInTrial, ClassOfAMimeTypeIsThatOfTheFirstPublishedLineOfTheKind) {
    Host host;
    const auto classOf = [&host](const char* aMimeType, const char* aKind) {
        return std::string(host.Table().MimeTypeToClassName(aMimeType, aKind).c_str());
    };
    EXPECT_EQ(classOf("image/jpeg", "item.imageItem"), "item.imageItem.photo");
    EXPECT_EQ(classOf("IMAGE/jpeg;q=1", "item.imageItem"), "item.imageItem.photo");
    EXPECT_EQ(classOf("audio/mpeg", "item.videoItem"), "item.videoItem");
    EXPECT_EQ(classOf("audio/mpeg", "item.audioItem"), "item.audioItem.musicTrack");
    EXPECT_EQ(classOf("image/png", "item.audioItem"), "");
    EXPECT_EQ(classOf("image/gif", "item.imageItem"), "");
    EXPECT_EQ(classOf("", "item.imageItem"), "");
}
