#include "host/RequestNotes.h"

#include "ez/DLNAMediaMapperEntry.h"
#include "ez/ExtensionMimeTypeMatcherEntry.h"
#include "ez/MediaParser.h"
#include "ezPlatform/media/MediaInfo.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace {

using Lines = std::vector<std::string>;

class IdleParser : public ezMediaParser {
public:
    explicit IdleParser(const char* aType) : ezMediaParser(aType, nullptr, false) {}

    ezMediaInfo* Parse(ezMediaParserStream& /*aStream*/) override { return nullptr; }
    bool AdjustDLNAInfo(ezMediaInfo* /*anInfo*/) override { return false; }
};

/// Tells notes what a manager could tell.
class Teller {
public:
    Teller() { mNotes.RequestBegan(ezParseRequest::Identify, nullptr); }

    void Decline(const char* aType, const ezBaseParser& aParser, const char* aName,
                 const Lines& aReasons = {}) {
        mNotes.TypeBegan(aType);
        mNotes.ParserBegan(aParser, aName);
        for (const std::string& reason : aReasons) {
            mNotes.ParserRefused(aParser, ezParseRefusal::Malformed, reason.c_str());
        }
        mNotes.ParserEnded(aParser, nullptr);
        mNotes.TypeEnded(aType, ezTypeResult::Declined);
    }

    void Miss(const char* aType, ezTypeResult aResult) {
        mNotes.TypeBegan(aType);
        mNotes.TypeEnded(aType, aResult);
    }

    void Consider(ezParsePass aPass, const ExtensionMimeTypeMatcherEntry& anEntry, bool afExcluded,
                  ezEntryResult aResult) {
        mNotes.PassBegan(aPass);
        mNotes.EntryBegan(anEntry, afExcluded);
        mNotes.EntryEnded(anEntry, aResult);
        mNotes.PassEnded(aPass, aResult != ezEntryResult::Declined);
    }

    Lines Attempts() const {
        Lines lines;
        for (const ExplainedAttempt& attempt : mNotes.Explain(nullptr).mAttempts) {
            lines.push_back(std::string(attempt.mDepth, ' ') + InWords(attempt));
        }
        return lines;
    }

    Lines Entries() const { return InWords(mNotes.Explain(nullptr).mEntries); }

    RequestNotes mNotes;
    const IdleParser mFirst{"one"};
    const IdleParser mSecond{"two"};
    const ExtensionMimeTypeMatcherEntry mMp3{"mp3", "mp3@audio/mpeg@item.audioItem"};
    const ExtensionMimeTypeMatcherEntry mTxt{"txt", "txt@text/plain"};
};

} // namespace

TEST(RequestNotes, TellHowParsersFaredInTheOrderInWhichTheyBegan) {
    Teller teller;
    const ezMediaInfo info;
    RequestNotes& notes = teller.mNotes;
    notes.TypeBegan("*");
    notes.ParserBegan(teller.mFirst, "First");
    teller.Miss("lost", ezTypeResult::NoParser);
    teller.Decline("two", teller.mSecond, "Second", {"no end", "no start"});
    teller.Miss("TWO", ezTypeResult::TriedBefore);
    notes.ParserEnded(teller.mFirst, nullptr);
    const IdleParser third("*");
    notes.ParserBegan(third, "Third");
    notes.ParserRefused(third, ezParseRefusal::Limit, "nearly");
    notes.ParserEnded(third, &info);
    notes.TypeEnded("*", ezTypeResult::Answered);
    EXPECT_EQ(teller.Attempts(), (Lines{"* (First): declined", " lost: there is no such parser",
                                        " two (Second): declined: malformed: no end; malformed: no start",
                                        " TWO: tried before", "* (Third): answered"}));
}

TEST(RequestNotes, SayThatNoReasonWasGivenOnlyWhereNobodyElseWasAsked) {
    Teller teller;
    teller.Decline("one", teller.mFirst, "First");
    EXPECT_EQ(teller.Attempts(), (Lines{"one (First): declined, no reason given"}));
    RequestNotes& notes = teller.mNotes;
    notes.TypeBegan("two");
    notes.ParserBegan(teller.mSecond, "Second");
    notes.PassBegan(ezParsePass::Extension);
    notes.PassEnded(ezParsePass::Extension, false);
    notes.ParserEnded(teller.mSecond, nullptr);
    EXPECT_EQ(teller.Attempts(), (Lines{"one (First): declined, no reason given", "two (Second): declined"}));
}

TEST(RequestNotes, NameParsersThatAreAskedForCoverArtByTheirOwnType) {
    Teller teller;
    RequestNotes& notes = teller.mNotes;
    notes.TypeBegan("One");
    notes.ParserBegan(teller.mFirst, "First");
    notes.RequestBegan(ezParseRequest::CoverArt, nullptr);
    notes.ParserBegan(teller.mSecond, "Second");
    notes.ParserEnded(teller.mSecond, nullptr);
    notes.RequestEnded(ezParseRequest::CoverArt, nullptr);
    notes.ParserEnded(teller.mFirst, nullptr);
    notes.TypeEnded("One", ezTypeResult::Declined);
    EXPECT_EQ(teller.Attempts(),
              (Lines{"One (First): declined, no reason given", " two (Second): declined, no reason given"}));
    RequestNotes alone;
    alone.RequestBegan(ezParseRequest::CoverArt, nullptr);
    alone.ParserBegan(teller.mSecond, "Second");
    alone.ParserEnded(teller.mSecond, nullptr);
    alone.RequestEnded(ezParseRequest::CoverArt, nullptr);
    EXPECT_EQ(InWords(alone.Explain(nullptr).mAttempts.at(0)), "two (Second): declined, no reason given");
}

TEST(RequestNotes, NameTheCausesForWhichParsersRefuse) {
    EXPECT_EQ(InWords(ezParseRefusal::Malformed, "a"), "malformed: a");
    EXPECT_EQ(InWords(ezParseRefusal::Unsupported, "b"), "unsupported: b");
    EXPECT_EQ(InWords(ezParseRefusal::Limit, "c"), "limit: c");
    EXPECT_EQ(InWords(ezParseRefusal::ReadError, "d"), "read error: d");
}

TEST(RequestNotes, SayWhatLedToEntriesWhereItWasNotTheExtensionAlone) {
    Teller teller;
    EXPECT_EQ(teller.Entries(), (Lines{"none"}));
    teller.Consider(ezParsePass::Extension, teller.mMp3, false, ezEntryResult::Declined);
    teller.Consider(ezParsePass::Extension, teller.mTxt, true, ezEntryResult::Excluded);
    EXPECT_EQ(teller.Entries(), (Lines{"mp3, txt (excluded)"}));
    teller.mNotes.RequestEnded(ezParseRequest::Identify, nullptr);

    teller.mNotes.RequestBegan(ezParseRequest::Identify, nullptr);
    for (const ezParsePass pass : {ezParsePass::AllFirst, ezParsePass::MimeType, ezParsePass::NoExtension,
                                   ezParsePass::Failed, ezParsePass::Extension}) {
        teller.Consider(pass, teller.mTxt, true, ezEntryResult::Declined);
        teller.Consider(pass, teller.mMp3, false, ezEntryResult::Won);
    }
    EXPECT_EQ(teller.Entries(),
              (Lines{"all, tried first: txt (excluded), mp3", "of the MIME type: txt (excluded), mp3",
                     "all, without an extension: txt (excluded), mp3",
                     "all, after a failure: txt (excluded), mp3", "of the extension: txt (excluded), mp3"}));
}

TEST(RequestNotes, TellWhichStepStatedAFact) {
    Teller teller;
    RequestNotes& notes = teller.mNotes;
    notes.TypeBegan("mp3");
    notes.ParserBegan(teller.mFirst, "First");
    notes.ParserEnded(teller.mFirst, nullptr);
    notes.TypeEnded("mp3", ezTypeResult::Answered);
    ezMediaInfo info;
    info.Set(kezInfo_MimeType, "audio/mpeg", true);
    info.Set(kezInfo_ClassName, "item.audioItem", true);
    info.Set(kezInfo_DLNA, "*", true);
    info.Set(kezInfo_FileExtension, "mp3", true);
    info.Set(kezInfo_BitRate, 8, true);
    info.Set(kezInfo_FileSize, 9, true);
    info.mTitle = "Title";
    info.mLastModificationTime = ezDateTime(1, 0);
    notes.FactStated(kezInfo_ClassName, {ezParseStep::EntryNames, nullptr, &teller.mMp3});
    notes.FactStated(kezInfo_DLNA, {ezParseStep::TestFileName, nullptr, nullptr});
    notes.FactStated(kezInfo_BitRate, {ezParseStep::BitRates, nullptr, nullptr});
    notes.FactStated(kezInfo_FileExtension, {ezParseStep::TypesExtension, nullptr, nullptr});
    notes.FactStated(kezInfo_FileSize, {ezParseStep::Stream, nullptr, nullptr});
    notes.FactStated(kezInfo_MimeType, {ezParseStep::EntryAlone, nullptr, &teller.mTxt});
    notes.FactStated("mLastModificationTime", {ezParseStep::Stream, nullptr, nullptr});
    notes.FactStated("mTitle", {ezParseStep::Parser, &teller.mFirst, nullptr});
    std::map<std::string, std::string> sources;
    for (const ExplainedFact& fact : notes.Explain(&info).mFacts) {
        sources[fact.mFact.mName] = std::string(CodeOf(fact.mSource.mStep)) + "|" + InWords(fact.mSource);
    }
    const std::map<std::string, std::string> expected = {
        {"mime_type", "entry|entry \"txt\" of the media types file"},
        {"class", "entry|entry \"mp3\" of the media types file"},
        {"dlna", "file-name|file name (conformance test)"},
        {"extension", "types-file|first extension of audio/mpeg in the media types file"},
        {"bit_rate", "bit-rates|derived from the other bit rates"},
        {"size", "stream|stream"},
        {"modified", "stream|stream"},
        {"title", "parser|parser mp3 (First)"}};
    EXPECT_EQ(sources, expected);
}

TEST(RequestNotes, TellWhatTheMediaMapperReplaced) {
    Teller teller;
    RequestNotes& notes = teller.mNotes;
    ezMediaInfo info;
    info.Set(kezInfo_MimeType, "video/mpeg", true);
    info.Set(kezInfo_FileExtension, "jpg", true);
    info.Set(kezInfo_Duration, 6, true);
    EXPECT_FALSE(notes.GetMapperAnswer(info));
    DLNAMediaMapperEntry entry;
    entry.mFileName = "a.jpg";
    entry.mProfile = "PS";
    notes.MediaMapperAsked(&entry);
    notes.MediaMapperChanged(kezInfo_ClassName, "item.imageItem", nullptr);
    notes.MediaMapperChanged(kezInfo_DurationMilliseconds, "5300", nullptr);
    notes.MediaMapperChanged(kezInfo_Duration, "5", "6");
    notes.MediaMapperChanged(kezInfo_BitRate, nullptr, "0"); // which shows nowhere
    notes.MediaMapperChanged(kezInfo_MimeType, "image/jpeg", "video/mpeg");
    notes.FactStated(kezInfo_MimeType, {ezParseStep::MediaMapper, nullptr, nullptr});
    notes.FactStated(kezInfo_FileExtension, {ezParseStep::TypesExtension, nullptr, nullptr});
    notes.FactStated(kezInfo_Duration, {ezParseStep::MediaMapper, nullptr, nullptr});

    const std::optional<MapperAnswer> answer = notes.GetMapperAnswer(info);
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->mFileName, "a.jpg");
    EXPECT_EQ(answer->mProfile, "PS");
    Lines overrides;
    for (const Override& change : answer->mOverrides) {
        overrides.push_back(NameOf(change) + ": " + InWords(change));
    }
    EXPECT_EQ(overrides, (Lines{"mime_type: image/jpeg -> video/mpeg", "class: item.imageItem -> nothing",
                                "duration: 0:00:05.300 -> 0:00:06", "duration_ms: 5300 -> nothing"}));
    Lines sources;
    for (const ExplainedFact& fact : notes.Explain(&info).mFacts) {
        sources.push_back(InWords(fact.mSource));
    }
    EXPECT_EQ(sources, (Lines{"media mapper: image/jpeg -> video/mpeg",
                              "first extension of image/jpeg in the media types file",
                              "media mapper: 0:00:05.300 -> 0:00:06"}));
}

TEST(RequestNotes, KeepWhatAParserHadIdentifiedOnTheWayApart) {
    Teller teller;
    RequestNotes& notes = teller.mNotes;
    notes.TypeBegan("one");
    notes.ParserBegan(teller.mFirst, "First");
    notes.RequestBegan(ezParseRequest::Identify, nullptr);
    teller.Decline("two", teller.mSecond, "Second", {"of another stream"});
    teller.Consider(ezParsePass::AllFirst, teller.mMp3, false, ezEntryResult::Won);
    const DLNAMediaMapperEntry entry;
    notes.MediaMapperAsked(&entry);
    notes.MediaMapperChanged(kezInfo_MimeType, nullptr, "audio/other");
    notes.FactStated(kezInfo_MimeType, {ezParseStep::MediaMapper, nullptr, nullptr});
    notes.RequestEnded(ezParseRequest::Identify, nullptr);
    notes.ParserRefused(teller.mFirst, ezParseRefusal::Unsupported, "of this one");
    notes.ParserEnded(teller.mFirst, nullptr);
    notes.TypeEnded("one", ezTypeResult::Declined);
    notes.FactStated(kezInfo_MimeType, {ezParseStep::Stream, nullptr, nullptr});

    EXPECT_EQ(teller.Attempts(), (Lines{"one (First): declined: unsupported: of this one",
                                        " two (Second): declined: malformed: of another stream"}));
    EXPECT_EQ(teller.Entries(), (Lines{"none"}));
    ezMediaInfo info;
    info.Set(kezInfo_MimeType, "audio/this", true);
    EXPECT_FALSE(notes.GetMapperAnswer(info));
    ASSERT_EQ(notes.Explain(&info).mFacts.size(), 1U);
    EXPECT_EQ(InWords(notes.Explain(&info).mFacts[0].mSource), "stream");
}

TEST(RequestNotes, ForgetTheRequestBefore) {
    Teller teller;
    RequestNotes& notes = teller.mNotes;
    teller.Decline("one", teller.mFirst, "First");
    teller.Consider(ezParsePass::AllFirst, teller.mMp3, false, ezEntryResult::Won);
    const DLNAMediaMapperEntry entry;
    notes.MediaMapperAsked(&entry);
    notes.MediaMapperChanged(kezInfo_MimeType, "audio/old", "audio/new");
    notes.RequestEnded(ezParseRequest::Identify, nullptr);

    notes.RequestBegan(ezParseRequest::Identify, nullptr);
    EXPECT_TRUE(teller.Attempts().empty());
    EXPECT_EQ(teller.Entries(), (Lines{"none"}));
    ezMediaInfo info;
    info.Set(kezInfo_MimeType, "audio/new", true);
    EXPECT_FALSE(notes.GetMapperAnswer(info));
    notes.FactStated(kezInfo_MimeType, {ezParseStep::Stream, nullptr, nullptr});
    EXPECT_TRUE(notes.Explain(&info).mFacts[0].mSource.mDetail.empty());
}
