#include "ez/DLNAMediaMapper.h"

#include "ezPlatform/dlna/ProtocolInfo.h"

#include "support/MapperFolder.h"
#include "support/Str.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

using Entry = DLNAMediaMapperEntry;
using Record = DLNAProfileEntry;
using Texts = std::vector<std::string>;

namespace {

const std::string kFlags = kVersionFlags;

struct ArrayDeleter {
    void operator()(ezArray* anArray) const { ezArray_Delete(anArray); }
};

/// The records of a mapper.
class Records {
public:
    explicit Records(DLNAMediaMapper& aMapper) : mArray(aMapper.NewProfileArray()) {}

    ezArray* Get() const { return mArray.get(); }
    std::size_t GetCount() const { return ezArray_GetCount(Get()); }
    Record* At(std::size_t anIndex) const { return static_cast<Record*>(ezArray_At(Get(), anIndex)); }
    Record* Of(const char* aProfile) const {
        const std::ptrdiff_t index =
            ezArray_Search(Get(), aProfile, DLNAMediaMapper::DLNAProfileEntry_Search);
        return index >= 0 ? At(static_cast<std::size_t>(index)) : nullptr;
    }
    Texts Dump() const;

private:
    std::unique_ptr<ezArray, ArrayDeleter> mArray;
};

std::string TextOf(const Record& aRecord) {
    return Taken(ezDLNAProtocolInfo_GetStr(aRecord.GetDLNAProtocolInfo()));
}

std::string Switches(const Record& aRecord) {
    std::string text;
    for (const bool fIs :
         {aRecord.GetPlaySpeedEnabled(), aRecord.CanSupportPlaySpeed(), aRecord.CanSupportTimeSeek(),
          aRecord.GetPlaySpeedMediaEnabled(), aRecord.GetProfileEnabled(), aRecord.CanSupportByteSeek()}) {
        text += fIs ? '1' : '0';
    }
    return text;
}

Texts Records::Dump() const {
    Texts texts;
    for (std::size_t i = 0; i < GetCount(); ++i) {
        texts.push_back(TextOf(*At(i)) + " " + Switches(*At(i)));
    }
    return texts;
}

/// A line with play speeds, further parameters and a flag word.
std::string Line(const std::string& aName, const std::string& aMimeType, const std::string& aProfile,
                 const std::string& aSpeeds, const std::string& aParameters, const char* aFlags) {
    return aName + "," + aMimeType + "," + aProfile + ",," + aSpeeds + ",,,,,,,," + aParameters +
           "BRELVO.COM_GOLDENDMS=" + aFlags + "\n";
}

/// A record of the line's entry, and the entry.
struct RecordOf {
    explicit RecordOf(const char* aMimeType, const char* aSpeeds, const char* aFlags,
                      const char* aParameters = "")
        : mEntry(), mRecord() {
        EXPECT_TRUE(mEntry.Set(
            ezCString(Line("c.x", aMimeType, "P", aSpeeds, aParameters, aFlags).c_str()).TrimLeftRight()));
        mRecord = std::make_unique<Record>(mEntry);
    }

    Entry mEntry;
    std::unique_ptr<Record> mRecord;
};

} // namespace

static_assert(!std::is_polymorphic<Record>::value, "no virtual operations");

TEST(DLNAProfileEntry, TakesItsFactsFromTheEntry) {
    const auto facts = [](const char* aMimeType, const char* aSpeeds, const char* aFlags) {
        return Switches(*RecordOf(aMimeType, aSpeeds, aFlags).mRecord);
    };
    // play speed enabled and supported, time seek, play speed of the media, profile, byte seek
    EXPECT_EQ(facts("video/mpeg", "2", "60000000"), "111111");
    EXPECT_EQ(facts("video/mpeg", "2", "20000000"), "111011");
    EXPECT_EQ(facts("video/mpeg", "2", "40000000"),
              "011011"); // enabled for the media, but not for the profile
    EXPECT_EQ(facts("video/mpeg", "", "60000000"), "111011");
    EXPECT_EQ(facts("video/mpeg", "2", "00000000"), "011011");
    EXPECT_EQ(facts("video/mpeg", "2", "E0000000"), "001011");
    EXPECT_EQ(facts("image/jpeg", "2", "60000000"), "000011");
    EXPECT_EQ(facts("audio/mpeg", "2", "10000000"), "011001");
    EXPECT_EQ(facts("audio/mpeg", "2", "01000000"), "011010");
    EXPECT_EQ(TextOf(*RecordOf("video/mpeg", "2", "60000000", "A_B=1;").mRecord),
              "http-get:*:video/mpeg:DLNA.ORG_PN=P;DLNA.ORG_PS=2;" + kFlags + ";A_B=1");
}

TEST(DLNAProfileEntry, ProtocolInfoIsParsedFromTheFullProfileAlone) {
    RecordOf at("video/mpeg", "2", "60000000");
    ezDLNAProtocolInfo_SetByteBasedSeek(at.mEntry.mDLNAProtocolInfo, true);
    at.mEntry.Get(); // takes the profile off the object
    EXPECT_EQ(TextOf(Record(at.mEntry)), "http-get:*:video/mpeg:DLNA.ORG_PN=P;DLNA.ORG_PS=2;" + kFlags);
}

TEST(DLNAProfileEntry, PlaySpeedIsNeverEnabledWhereItIsNotSupported) {
    Record& able = *RecordOf("video/mpeg", "", "00000000").mRecord.release();
    able.EnablePlaySpeed(true);
    EXPECT_TRUE(able.GetPlaySpeedEnabled());
    able.EnablePlaySpeed(false);
    EXPECT_FALSE(able.GetPlaySpeedEnabled());
    DLNAMediaMapper::DLNAProfileEntry_Free(&able);
    const RecordOf unable("image/jpeg", "", "00000000");
    unable.mRecord->EnablePlaySpeed(true);
    EXPECT_FALSE(unable.mRecord->GetPlaySpeedEnabled());
}

TEST(DLNAProfileEntry, ProfileIsSwitched) {
    const RecordOf at("image/jpeg", "", "00000000");
    at.mRecord->EnableProfile(false);
    EXPECT_FALSE(at.mRecord->GetProfileEnabled());
    at.mRecord->EnableProfile(true);
    EXPECT_TRUE(at.mRecord->GetProfileEnabled());
}

TEST(DLNAProfileEntry, IsSearchedByItsProfileToTheLetter) {
    const RecordOf at("image/jpeg", "", "00000000");
    for (const char* name : {"P", "p", "", "PP", "P "}) {
        const ezCString text(name);
        const int wanted = std::string(name) == "P" ? 1 : 0;
        EXPECT_EQ(Record::SearchProfile(at.mRecord.get(), &text), wanted) << name;
        EXPECT_EQ(DLNAMediaMapper::DLNAProfileEntry_Search(at.mRecord.get(), name), wanted) << name;
    }
}

TEST(DLNAProfileEntry, SortsByTheBytesOfItsProfile) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper = folder.Loaded(
        "1.x,video/mpeg,b\n2.x,video/mpeg,B\n3.x,video/mpeg,\xC3\xA9\n4.x,video/mpeg,A\n5.x,video/mpeg,AA\n");
    const Records records(*mapper);
    ASSERT_EQ(records.GetCount(), 5U);
    const Texts wanted = {"A", "AA", "B", "b", "\xC3\xA9"};
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_EQ(ezDLNAProtocolInfo_GetProfile(records.At(i)->GetDLNAProtocolInfo()), wanted[i]);
        for (std::size_t j = 0; j < 5; ++j) {
            const int order = DLNAMediaMapper::DLNAProfileEntry_Sort(records.At(i), records.At(j));
            EXPECT_EQ(order < 0, i < j);
            EXPECT_EQ(order == 0, i == j);
        }
    }
}

TEST(DLNAProfileEntry, ArrayHasOneRecordForEachProfile) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper =
        folder.Loaded("1.mpg,video/mpeg,P\n2.mp3,audio/mpeg,M\n3.mpg,video/mp2p,P,,,,,,,,,,DLNA.ORG_OP=01\n");
    EXPECT_EQ(Records(*mapper).Dump(), (Texts{"http-get:*:audio/mpeg:DLNA.ORG_PN=M;" + kFlags + " 011011",
                                              "http-get:*:video/mpeg:DLNA.ORG_PN=P;" + kFlags + " 011011"}));
    EXPECT_EQ(Records(*folder.Loaded("")).GetCount(), 0U);
}

TEST(DLNAProfileEntry, EnabledPlaySpeedsOfLaterEntriesAreMergedIn) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper =
        folder.Loaded(Line("1.mpg", "video/mpeg", "P", "2", "", "20000000") +
                      Line("2.mpg", "video/mpeg", "P", "4\\,8", "DLNA.ORG_OP=01;", "60000000") +
                      Line("3.mpg", "video/mpeg", "P", "-2", "", "40000000") +
                      Line("4.mpg", "video/mpeg", "P", "-4\\,4", "", "60000000"));
    // The first entry's own speeds are not enabled for its media, the third's not for its profile.
    EXPECT_EQ(Records(*mapper).Dump(),
              (Texts{"http-get:*:video/mpeg:DLNA.ORG_PN=P;DLNA.ORG_PS=4,8,-4;" + kFlags + " 111011"}));
}

TEST(DLNAProfileEntry, StatedPlaySpeedsThatAreNotEnabledAreNotMergedIn) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper = folder.Loaded(
        "1.mpg,video/mpeg,P\n" + Line("2.mpg", "video/mpeg", "P", "", "DLNA.ORG_PS=8;", "60000000"));
    EXPECT_EQ(Records(*mapper).Dump(), (Texts{"http-get:*:video/mpeg:DLNA.ORG_PN=P;" + kFlags + " 011011"}));
}

TEST(DLNAProfileEntry, LaterEntryThatCanPlayAtSpeedsTakesThePlaceOfOneThatCannot) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper =
        folder.Loaded(Line("1.mpg", "video/mpeg", "P", "", "A_A=1;", "90000000") +
                      Line("2.mpg", "video/mpeg", "P", "2", "B_B=1;", "60000000") +
                      Line("3.mpg", "video/mpeg", "P", "4", "C_C=1;", "60000000") +
                      Line("4.jpg", "image/jpeg", "O", "", "", "00000000"));
    // With everything of its own: the first entry was disabled.
    EXPECT_EQ(Records(*mapper).Dump(),
              (Texts{"http-get:*:image/jpeg:DLNA.ORG_PN=O;" + kFlags + " 000011",
                     "http-get:*:video/mpeg:DLNA.ORG_PN=P;DLNA.ORG_PS=2,4;" + kFlags + ";B_B=1 111111"}));
    EXPECT_FALSE(mapper->IsDisabledProfile("P"));
}

TEST(DLNAProfileEntry, RecordThatCannotPlayAtSpeedsDoesNotTakeAPlace) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper =
        folder.Loaded(Line("1.mpg", "image/x", "P", "", "A_A=1;", "00000000") +
                      Line("2.mpg", "image/y", "P", "", "B_B=1;", "00000000"));
    EXPECT_EQ(Records(*mapper).Dump(),
              (Texts{"http-get:*:image/x:DLNA.ORG_PN=P;" + kFlags + ";A_A=1 000011"}));
}

TEST(DLNAProfileEntry, ArrayIsSortedWhateverTheOrderOfTheEntries) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper =
        folder.Loaded("1.mpg,video/mpeg,A\n2.mpg,video/mpeg,B\n3.mpg,video/mpeg,C\n");
    mapper->At(0)->mProfile = "Z"; // edited, and not sorted again
    mapper->At(0)->ComputeDLNAProtocolInfo();
    const Records records(*mapper);
    ASSERT_EQ(records.GetCount(), 3U);
    EXPECT_EQ(records.At(0), records.Of("B"));
    EXPECT_EQ(records.At(1), records.Of("C"));
    EXPECT_EQ(records.At(2), records.Of("Z"));
}

TEST(DLNAProfileEntry, ArrayIsMadeAnewEachTime) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper = folder.Loaded("1.mpg,video/mpeg,P\n");
    const Records first(*mapper);
    first.At(0)->EnableProfile(false);
    const Records second(*mapper);
    EXPECT_NE(first.Get(), second.Get());
    EXPECT_TRUE(second.At(0)->GetProfileEnabled());
}

namespace {

std::string DrawnLine(int aNumber) {
    return Line(std::to_string(aNumber) + ".mpg",
                *rc::gen::element<std::string>("video/mpeg", "audio/mpeg", "image/jpeg", "*"),
                *rc::gen::element<std::string>("P", "p", "PQ", "Q", "Q;DLNA.ORG_PN=X", ";"),
                *rc::gen::element<std::string>("", "2", "-2\\,2", "1/2\\,4", "4\\,2\\,x", "1"),
                *rc::gen::element<std::string>("", "DLNA.ORG_OP=01;", "A_B=1;", "DLNA.ORG_PS=16;"),
                (*rc::gen::element<std::string>("00000000", "60000000", "20000000", "40000000", "10000000",
                                                "E0000000", "70000000", "01000000"))
                    .c_str());
}

} // namespace

RC_GTEST_PROP(DLNAProfileEntry, ArrayIsThatOfTheWalkOverAllRecords, ()) {
    static const MapperFolder folder;
    const int count = *rc::gen::inRange(0, 20);
    std::string table;
    for (int i = 0; i < count; ++i) {
        table += DrawnLine(i);
    }
    const std::unique_ptr<OpenMapper> mapper = folder.Loaded(table);
    std::vector<std::unique_ptr<Record>> wanted;
    for (std::size_t i = 0; i < mapper->GetCount(); ++i) {
        std::unique_ptr<Record> record = std::make_unique<Record>(*mapper->At(i));
        const std::string name = ezDLNAProtocolInfo_GetProfile(record->GetDLNAProtocolInfo());
        std::size_t found = 0;
        while (found < wanted.size() &&
               ezDLNAProtocolInfo_GetProfile(wanted[found]->GetDLNAProtocolInfo()) != name) {
            ++found;
        }
        if (found == wanted.size()) {
            wanted.push_back(std::move(record));
            continue;
        }
        const std::string speeds =
            record->GetPlaySpeedMediaEnabled()
                ? Taken(ezDLNAProtocolInfo_GetPlaySpeedStr(record->GetDLNAProtocolInfo(), 0))
                : "";
        if (!speeds.empty()) {
            ezDLNAProtocolInfo_MergePlaySpeeds(wanted[found]->GetDLNAProtocolInfo(), speeds.c_str());
        }
        if (record->CanSupportPlaySpeed() && !wanted[found]->CanSupportPlaySpeed()) {
            wanted[found] = std::move(record);
        } else if (!speeds.empty()) {
            ezDLNAProtocolInfo_MergePlaySpeeds(wanted[found]->GetDLNAProtocolInfo(), speeds.c_str());
        }
    }
    std::stable_sort(wanted.begin(), wanted.end(),
                     [](const std::unique_ptr<Record>& aLeft, const std::unique_ptr<Record>& aRight) {
                         return std::string(ezDLNAProtocolInfo_GetProfile(aLeft->GetDLNAProtocolInfo())) <
                                ezDLNAProtocolInfo_GetProfile(aRight->GetDLNAProtocolInfo());
                     });
    Texts texts;
    for (const std::unique_ptr<Record>& record : wanted) {
        texts.push_back(TextOf(*record) + " " + Switches(*record));
    }
    RC_ASSERT(Records(*mapper).Dump() == texts);
}

// Writing choices back

TEST(DLNAProfileEntry, MergeBackOfWhatStandsChangesNothing) {
    RecordOf at("video/mpeg", "2", "70000001", "DLNA.ORG_OP=01;");
    const std::string before = Taken(ezDLNAProtocolInfo_GetStr(at.mEntry.mDLNAProtocolInfo));
    bool fProfileChanged = true;
    EXPECT_FALSE(at.mRecord->MergeBack(at.mEntry, &fProfileChanged));
    EXPECT_FALSE(fProfileChanged);
    EXPECT_EQ(at.mEntry.mGoldenDMSFlags, 0x70000001U);
    EXPECT_EQ(Taken(ezDLNAProtocolInfo_GetStr(at.mEntry.mDLNAProtocolInfo)), before);
    EXPECT_FALSE(at.mRecord->MergeBack(at.mEntry, nullptr));
}

TEST(DLNAProfileEntry, MergeBackWritesTheSwitchesIntoTheFlagWord) {
    RecordOf at("video/mpeg", "2", "4F000001");
    bool fProfileChanged = true;
    at.mRecord->EnablePlaySpeed(true);
    EXPECT_TRUE(at.mRecord->MergeBack(at.mEntry, &fProfileChanged));
    EXPECT_FALSE(fProfileChanged);
    EXPECT_EQ(at.mEntry.mGoldenDMSFlags, 0x6F000001U);
    at.mRecord->EnableProfile(false);
    EXPECT_TRUE(at.mRecord->MergeBack(at.mEntry, &fProfileChanged));
    EXPECT_TRUE(fProfileChanged);
    EXPECT_EQ(at.mEntry.mGoldenDMSFlags, 0x7F000001U);
    at.mRecord->EnableProfile(true);
    at.mRecord->EnablePlaySpeed(false);
    fProfileChanged = false;
    EXPECT_TRUE(at.mRecord->MergeBack(at.mEntry, &fProfileChanged));
    EXPECT_TRUE(fProfileChanged);
    EXPECT_EQ(at.mEntry.mGoldenDMSFlags, 0x4F000001U);
    at.mRecord->EnableProfile(false);
    EXPECT_TRUE(at.mRecord->MergeBack(at.mEntry, nullptr));
    EXPECT_EQ(at.mEntry.mGoldenDMSFlags, 0x5F000001U);
}

TEST(DLNAProfileEntry, MergeBackComparesTheBitItselfAndNotWhatTheMediaCanDo) {
    RecordOf at("image/jpeg", "", "20000000"); // set, though a picture has no speeds
    EXPECT_FALSE(at.mRecord->GetPlaySpeedEnabled());
    EXPECT_TRUE(at.mRecord->MergeBack(at.mEntry, nullptr));
    EXPECT_EQ(at.mEntry.mGoldenDMSFlags, 0U);
}

TEST(DLNAProfileEntry, MergeBackCopiesStallingAndSeeksIntoTheObjectAlone) {
    struct Case {
        void (*mSet)(ezDLNAProtocolInfo*, bool);
        const char* mObject;
    };
    for (const Case& at :
         {Case{ezDLNAProtocolInfo_SetHTTPStalling, "DLNA.ORG_FLAGS=00300000000000000000000000000000"},
          Case{ezDLNAProtocolInfo_SetByteBasedSeek,
               "DLNA.ORG_OP=01;DLNA.ORG_FLAGS=00100000000000000000000000000000"},
          Case{ezDLNAProtocolInfo_SetTimeBasedSeek,
               "DLNA.ORG_OP=10;DLNA.ORG_FLAGS=00100000000000000000000000000000"}}) {
        const RecordOf from("video/mpeg", "", "00000000");
        RecordOf to("video/mpeg", "", "00000000");
        const std::string full = Str(to.mEntry.mFullProfile);
        at.mSet(from.mRecord->GetDLNAProtocolInfo(), true);
        bool fProfileChanged = true;
        EXPECT_TRUE(from.mRecord->MergeBack(to.mEntry, &fProfileChanged));
        EXPECT_FALSE(fProfileChanged);
        EXPECT_EQ(Taken(ezDLNAProtocolInfo_GetStr(to.mEntry.mDLNAProtocolInfo)),
                  std::string("http-get:*:video/mpeg:DLNA.ORG_PN=P;") + at.mObject);
        EXPECT_EQ(Str(to.mEntry.mFullProfile), full);
        EXPECT_FALSE(from.mRecord->MergeBack(to.mEntry, nullptr)); // now they agree
        EXPECT_EQ(Str(to.mEntry.Get()),
                  std::string("c.x,video/mpeg,P,,,,,,,,,,") + at.mObject + ";BRELVO.COM_GOLDENDMS=00000000");
        // And back to false.
        at.mSet(from.mRecord->GetDLNAProtocolInfo(), false);
        EXPECT_TRUE(from.mRecord->MergeBack(to.mEntry, nullptr));
    }
}

TEST(DLNAProfileEntry, SettingsThatAreFalseAndNotStatedWriteNothing) {
    const RecordOf from("video/mpeg", "", "10000000"); // states neither
    RecordOf to("video/mpeg", "", "00000000");
    const std::string before = Taken(ezDLNAProtocolInfo_GetStr(to.mEntry.mDLNAProtocolInfo));
    EXPECT_TRUE(from.mRecord->MergeBack(to.mEntry, nullptr));
    EXPECT_EQ(Taken(ezDLNAProtocolInfo_GetStr(to.mEntry.mDLNAProtocolInfo)), before);

    RecordOf stating("video/mpeg", "", "00000000", "DLNA.ORG_OP=11;DLNA.ORG_FLAGS=00200000;");
    EXPECT_TRUE(from.mRecord->MergeBack(stating.mEntry, nullptr));
    EXPECT_EQ(Taken(ezDLNAProtocolInfo_GetStr(stating.mEntry.mDLNAProtocolInfo)),
              "http-get:*:video/mpeg:DLNA.ORG_PN=P;DLNA.ORG_OP=00;" + kFlags);
}

TEST(DLNAProfileEntry, MergeBackIntoAnEntryNeverComputedComputesIt) {
    const RecordOf from("video/mpeg", "", "10000000", "DLNA.ORG_OP=01;");
    Entry entry;
    entry.mFileName = "c.x";
    entry.mMimeType = "video/mpeg";
    entry.mProfile = "P";
    bool fProfileChanged = false;
    EXPECT_TRUE(from.mRecord->MergeBack(entry, &fProfileChanged));
    EXPECT_TRUE(fProfileChanged);
    EXPECT_EQ(Str(entry.Get()),
              "c.x,video/mpeg,P,,,,,,,,,,DLNA.ORG_OP=01;" + kFlags + ";BRELVO.COM_GOLDENDMS=10000000");
}

TEST(DLNAProfileEntry, ArrayIsMergedBackIntoEveryEntryOfItsProfiles) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper =
        folder.Loaded("1.mpg,video/mpeg,P\n2.mpg,video/mpeg,P,,,,,,,,,,BRELVO.COM_GOLDENDMS=10000000\n"
                      "3.mpg,video/mpeg,Q\n4.mpg,video/mpeg,R\n");
    const Records records(*mapper);
    bool fProfileChanged = true;
    mapper->At(1)->mGoldenDMSFlags = 0;
    EXPECT_FALSE(mapper->MergeBackProfileArray(records.Get(), &fProfileChanged));
    EXPECT_FALSE(fProfileChanged);

    records.Of("Q")->EnablePlaySpeed(true);
    fProfileChanged = true;
    EXPECT_TRUE(mapper->MergeBackProfileArray(records.Get(), &fProfileChanged));
    EXPECT_FALSE(fProfileChanged);
    EXPECT_EQ(mapper->At(2)->mGoldenDMSFlags, 0x20000000U);

    records.Of("P")->EnableProfile(false);
    records.Of("R")->EnablePlaySpeed(true); // a change after it that switches no profile
    EXPECT_TRUE(mapper->MergeBackProfileArray(records.Get(), &fProfileChanged));
    EXPECT_TRUE(fProfileChanged);
    EXPECT_EQ(mapper->At(0)->mGoldenDMSFlags, 0x10000000U);
    EXPECT_EQ(mapper->At(1)->mGoldenDMSFlags, 0x10000000U);
    EXPECT_EQ(mapper->At(2)->mGoldenDMSFlags, 0x20000000U);
    EXPECT_EQ(mapper->At(3)->mGoldenDMSFlags, 0x20000000U);

    EXPECT_FALSE(mapper->MergeBackProfileArray(records.Get(), nullptr));
    records.Of("P")->EnableProfile(true);
    EXPECT_TRUE(mapper->MergeBackProfileArray(records.Get(), nullptr));
    EXPECT_EQ(mapper->At(0)->mGoldenDMSFlags, 0U);
}

TEST(DLNAProfileEntry, OfTwoRecordsOfOneProfileTheFirstIsMergedBack) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper = folder.Loaded("a.mp3,audio/mpeg,MP3\n");
    ezArray* const records = mapper->NewProfileArray();
    DLNAProfileEntry* const second = new DLNAProfileEntry(*mapper->At(0));
    second->EnableProfile(false);
    ezArray_Append(records, second);
    EXPECT_FALSE(mapper->MergeBackProfileArray(records, nullptr));
    EXPECT_TRUE(mapper->At(0)->ProfileEnabled());
    ezArray_Delete(records);
}

TEST(DLNAProfileEntry, EntriesWithoutARecordStay) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper = folder.Loaded("1.mpg,video/mpeg,P\n2.mpg,video/mpeg,Q\n");
    const Records records(*mapper);
    records.Of("P")->EnableProfile(false);
    records.Of("Q")->EnableProfile(false);
    mapper->At(0)->mProfile = "p"; // no record to the letter
    EXPECT_TRUE(mapper->MergeBackProfileArray(records.Get(), nullptr));
    EXPECT_EQ(mapper->At(0)->mGoldenDMSFlags, 0U);
    EXPECT_EQ(mapper->At(1)->mGoldenDMSFlags, 0x10000000U);
    bool fProfileChanged = true;
    EXPECT_FALSE(mapper->MergeBackProfileArray(nullptr, &fProfileChanged));
    EXPECT_FALSE(fProfileChanged);
}

TEST(DLNAProfileEntry, OfTwoRecordsOfAProfileTheFirstCounts) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper = folder.Loaded("1.mpg,video/mpeg,P\n");
    const Records records(*mapper);
    Record* second = new Record(*mapper->At(0));
    second->EnableProfile(false);
    ezArray_Append(records.Get(), second);
    EXPECT_FALSE(mapper->MergeBackProfileArray(records.Get(), nullptr));
    EXPECT_EQ(mapper->At(0)->mGoldenDMSFlags, 0U);
}

TEST(DLNAProfileEntry, ChoicesMergedBackAreSavedAndNothingElseIsMadeAnew) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper =
        folder.Loaded(Line("1.mpg", "video/mpeg", "P", "-2\\,2", "", "60000000") + "2.jpg,image/jpeg,J\n");
    const std::string before = folder.ReadWritable();
    const std::string full = Str(mapper->At(1)->mFullProfile);
    const std::string merged = Taken(ezDLNAProtocolInfo_GetStr(mapper->GetMergedDLNAProtocolInfo("P")));
    const Records records(*mapper);
    records.Of("P")->EnableProfile(false);
    records.Of("P")->EnablePlaySpeed(false);
    ezDLNAProtocolInfo_SetByteBasedSeek(records.Of("P")->GetDLNAProtocolInfo(), true);
    ezDLNAProtocolInfo_SetHTTPStalling(records.Of("P")->GetDLNAProtocolInfo(), true);
    EXPECT_TRUE(mapper->MergeBackProfileArray(records.Get(), nullptr));
    EXPECT_EQ(folder.ReadWritable(), before);
    EXPECT_EQ(Str(mapper->At(1)->mFullProfile), full);
    EXPECT_EQ(Taken(ezDLNAProtocolInfo_GetStr(mapper->GetMergedDLNAProtocolInfo("P"))), merged);
    EXPECT_FALSE(mapper->IsDisabledProfile("P"));
    EXPECT_FALSE(mapper->Save().IsError());
    const std::string after = folder.ReadWritable();
    EXPECT_EQ(after.substr(after.find("\n\n") + 2),
              "2.jpg,image/jpeg,J,,,,,,,,,," + kFlags +
                  ";BRELVO.COM_GOLDENDMS=00000000\n"
                  "1.mpg,video/"
                  "mpeg,P,,-2\\,2,,,,,,,,DLNA.ORG_OP=01;DLNA.ORG_FLAGS=00300000000000000000000000000000;"
                  "BRELVO.COM_GOLDENDMS=50000000\n");
    const std::unique_ptr<OpenMapper> next = folder.New();
    EXPECT_FALSE(next->Load().IsError());
    EXPECT_TRUE(next->IsDisabledProfile("P"));
}
