#include "ez/ExtensionMimeTypeMatcher.h"
#include "ez/FileMediaParserStream.h"
#include "ez/MediaParserManager.h"
#include "ez/MimeTypesDotIniParser.h"

#include "support/Folders.h"
#include "support/Golden.h"
#include "support/Record.h"

#include "ez/Environment.h"
#include "ezPlatform/containers/Items.h"
#include "ezPlatform/media/MediaInfo.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace {

using Entry = ExtensionMimeTypeMatcherEntry;

/// Every file below the samples but the playlists, by name.
std::vector<std::filesystem::path> Samples() {
    std::vector<std::filesystem::path> samples;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(EZ_SAMPLES)) {
        if (entry.is_regular_file() && entry.path().parent_path().filename() != "playlists") {
            samples.push_back(entry.path());
        }
    }
    std::sort(samples.begin(), samples.end(), [](const auto& aLeft, const auto& aRight) {
        return aLeft.filename().string() < aRight.filename().string();
    });
    return samples;
}

/// A host as small as can be, with the media types file of the samples.
class Host {
public:
    explicit Host(uint32 aCTTContext) {
        mEnvironment.SetCTTContext(aCTTContext);
        mManager = std::make_unique<ezMediaParserManager>(mEnvironment.Get());
        mManager->AddStandardParsers(kParseOption_Default);
    }

    Record Parse(const std::filesystem::path& aPath) {
        ezFileMediaParserStream stream(ezCString(aPath.c_str()));
        EXPECT_TRUE(stream.Open()) << aPath;
        return Record(mManager->Parse(stream));
    }

private:
    ezEnvironment mEnvironment{EZ_SAMPLES, EZ_SAMPLES};
    std::unique_ptr<ezMediaParserManager> mManager;
};

/// A record without what differs from place to place: the folder and the time.
std::string Dump(Record aRecord, const std::filesystem::path& aPath) {
    if (aRecord != nullptr) {
        EXPECT_EQ(aRecord->mFullPath, aPath.c_str());
        EXPECT_TRUE(aRecord->mLastModificationTime.IsSet()) << aPath;
        aRecord->mFullPath = aPath.filename().c_str();
        aRecord->mLastModificationTime = ezDateTime();
    }
    return DumpRecord(aRecord.get());
}

/// What lies in the folder of the samples itself is about them.
bool IsMedia(const std::filesystem::path& aPath) {
    return aPath.parent_path() != std::filesystem::path(EZ_SAMPLES);
}

} // namespace

TEST(Samples, AreIdentifiedAsRecorded) {
    Host outside(0);
    Host within(1);
    std::set<std::string> recorded;
    for (const std::filesystem::path& path : Samples()) {
        if (IsMedia(path)) {
            const std::string file = EZ_TEST_DATA "/samples/" + path.filename().string() + ".expected";
            ExpectRecorded(file, "[CTTContext 0]\n" + Dump(outside.Parse(path), path) + "\n[CTTContext 1]\n" +
                                     Dump(within.Parse(path), path));
            EXPECT_TRUE(recorded.insert(file).second) << path;
        }
    }
    ExpectNoOtherRecords(EZ_TEST_DATA "/samples", recorded);
}

TEST(Samples, SecondParseFindsTheSame) {
    for (const uint32 context : {0U, 1U, 2U}) {
        Host host(context);
        for (const std::filesystem::path& path : Samples()) {
            const std::string first = Dump(host.Parse(path), path);
            EXPECT_EQ(Dump(host.Parse(path), path), first) << path;
        }
    }
}

TEST(Samples, EveryMediaIsIdentifiedAndNothingElse) {
    std::size_t mediaCount = 0;
    for (const uint32 context : {0U, 1U, 2U}) {
        Host host(context);
        for (const std::filesystem::path& path : Samples()) {
            const bool fMedia = IsMedia(path);
            mediaCount += fMedia ? 1 : 0;
            EXPECT_EQ(host.Parse(path) != nullptr, fMedia) << path;
        }
    }
    EXPECT_GE(mediaCount, 3U * 27U);
}

namespace {

/// The table of the samples.
class Table {
public:
    Table() { EXPECT_TRUE(mMatcher.Load()); }
    ExtensionMimeTypeMatcher* operator->() { return &mMatcher; }

    std::vector<Entry*> Entries(bool afExcluded) {
        std::vector<Entry*> entries;
        for (Entry* entry : ezItems<Entry>(mMatcher.AllEntries())) {
            if (mMatcher.IsExcludedEntry(entry) == afExcluded) {
                entries.push_back(entry);
            }
        }
        return entries;
    }

private:
    ExtensionMimeTypeMatcher mMatcher{EZ_SAMPLES, EZ_SAMPLES, ""};
};

std::string KeyOf(const Entry& anEntry) {
    return static_cast<const char*>(*ezPtrList_GetAt(anEntry.mTypes, 0));
}

} // namespace

TEST(SampleMediaTypes, AreManyAndComplete) {
    Table table;
    EXPECT_GE(table.Entries(false).size(), 70U);
    EXPECT_GE(table.Entries(true).size(), 20U);
    for (const Entry* entry : table.Entries(false)) {
        EXPECT_GT(ezPtrList_GetCount(entry->mExtensions), 0U) << KeyOf(*entry);
        EXPECT_GT(ezPtrList_GetCount(entry->mMimeTypes), 0U) << KeyOf(*entry);
        EXPECT_EQ(ezPtrList_GetCount(entry->mUPnPClasses), 1U) << KeyOf(*entry);
        for (const char* mimeType : ezItems<const char>(entry->mMimeTypes)) {
            EXPECT_NE(std::string(mimeType).find('/'), std::string::npos) << KeyOf(*entry);
        }
        for (const char* extension : ezItems<const char>(entry->mExtensions)) {
            EXPECT_EQ(std::string(extension).find_first_of("/. "), std::string::npos) << KeyOf(*entry);
        }
        for (const char* className : ezItems<const char>(entry->mUPnPClasses)) {
            const std::set<std::string> known = {"item.videoItem", "item.audioItem.musicTrack",
                                                 "item.audioItem.audioBook", "item.imageItem.photo",
                                                 "item.playlistItem"};
            EXPECT_EQ(known.count(className), 1U) << KeyOf(*entry);
        }
    }
}

TEST(SampleMediaTypes, ExcludedOnesHaveNoClassWithWhichTheyWouldBeAnnounced) {
    Table table;
    for (const Entry* entry : table.Entries(true)) {
        EXPECT_EQ(ezPtrList_GetCount(entry->mUPnPClasses), 0U) << KeyOf(*entry);
        EXPECT_GT(ezPtrList_GetCount(entry->mExtensions), 0U) << KeyOf(*entry);
    }
}

TEST(SampleMediaTypes, EachExtensionStandsInOneEntry) {
    Table table;
    for (const Entry* entry : ezItems<Entry>(table->AllEntries())) {
        for (const char* extension : ezItems<const char>(entry->mExtensions)) {
            EXPECT_EQ(ezPtrList_GetCount(table->EntriesFromExtension(extension)), 1U) << extension;
        }
    }
}

TEST(SampleMediaTypes, NoMimeTypeIsBothExcludedAndNot) {
    Table table;
    for (const Entry* entry : table.Entries(true)) {
        for (const char* mimeType : ezItems<const char>(entry->mMimeTypes)) {
            for (Entry* other : ezItems<Entry>(table->EntriesFromMimeType(mimeType))) {
                EXPECT_TRUE(table->IsExcludedEntry(other)) << mimeType;
            }
        }
    }
}
