#include "support/RecordingObserver.h"

#include "ez/BaseParser.h"
#include "ez/DLNAMediaMapperEntry.h"
#include "ez/ExtensionMimeTypeMatcherEntry.h"
#include "ez/MediaParserStream.h"

#include "ezPlatform/containers/PtrList.h"
#include "ezPlatform/media/MediaInfo.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>

namespace {

template <typename Enum, std::size_t kCount>
std::string NameIn(const std::array<const char*, kCount>& aNames, Enum aValue) {
    return aNames.at(static_cast<std::size_t>(aValue));
}

std::string NameOf(ezParseRequest aRequest) {
    return NameIn(std::array<const char*, 3>{"Identify", "CoverArt", "Adjust"}, aRequest);
}

std::string NameOf(ezParsePass aPass) {
    return NameIn(
        std::array<const char*, 6>{"AllFirst", "MimeType", "NoExtension", "Failed", "Extension", "Adjust"},
        aPass);
}

std::string NameOf(ezEntryResult aResult) {
    return NameIn(std::array<const char*, 4>{"Declined", "Won", "Excluded", "MadeRecord"}, aResult);
}

std::string NameOf(ezTypeResult aResult) {
    return NameIn(std::array<const char*, 4>{"Answered", "Declined", "NoParser", "TriedBefore"}, aResult);
}

std::string NameOf(ezParseRefusal aCause) {
    return NameIn(std::array<const char*, 4>{"Malformed", "Unsupported", "Limit", "ReadError"}, aCause);
}

std::string NameOf(ezParseStep aStep) {
    return NameIn(std::array<const char*, 8>{"Parser", "TestFileName", "EntryAlone", "BitRates", "EntryNames",
                                             "TypesExtension", "MediaMapper", "Stream"},
                  aStep);
}

std::string NameOf(const ezBaseParser& aParser) {
    return aParser.GetType().c_str();
}

std::string NameOf(const ExtensionMimeTypeMatcherEntry& anEntry) {
    return static_cast<const char*>(*ezPtrList_GetAt(anEntry.mTypes, 0)); // the key, which is always there
}

std::string NameOf(const ezMediaInfo* anInfo) {
    return anInfo != nullptr ? anInfo->GetCString(kezInfo_MimeType, "?").c_str() : "-";
}

std::string TextOr(const char* aText) {
    return aText != nullptr ? aText : "-";
}

} // namespace

RecordingObserver::~RecordingObserver() {
    EXPECT_TRUE(mOpen.empty()) << "still within " << mOpen.back();
}

std::vector<std::string> RecordingObserver::LinesOf(std::initializer_list<const char*> anOperations) const {
    std::vector<std::string> lines;
    for (const std::string& line : mLines) {
        const std::size_t start = line.find_first_not_of(' ');
        const std::string operation = line.substr(start, line.find(' ', start) - start);
        if (std::find(anOperations.begin(), anOperations.end(), operation) != anOperations.end()) {
            lines.push_back(line.substr(start));
        }
    }
    return lines;
}

std::string RecordingObserver::Text() const {
    std::string text;
    for (const std::string& line : mLines) {
        text += line + "\n";
    }
    return text;
}

void RecordingObserver::Note(const std::string& anOperation, const std::string& aText) {
    mLines.push_back(std::string(2 * mOpen.size(), ' ') + anOperation + " " + aText);
    if (mOnCall) {
        mOnCall(anOperation);
    }
}

void RecordingObserver::Begin(const std::string& aPair, const std::string& aSubject,
                              const std::string& aMore) {
    Note(aPair + "Began", aSubject + (aMore.empty() ? "" : " ") + aMore);
    mOpen.push_back(aPair + " " + aSubject);
}

void RecordingObserver::End(const std::string& aPair, const std::string& aSubject,
                            const std::string& aResult) {
    const std::string ended = aPair + " " + aSubject;
    if (mOpen.empty() || mOpen.back() != ended) {
        ADD_FAILURE() << ended << " ended within " << (mOpen.empty() ? "nothing" : mOpen.back());
    } else {
        mOpen.pop_back();
    }
    Note(aPair + "Ended", aSubject + " " + aResult);
}

void RecordingObserver::RequestBegan(ezParseRequest aRequest, const ezMediaParserStream* aStream) {
    Begin("Request", NameOf(aRequest), aStream != nullptr ? aStream->GetFullPath().c_str() : "-");
}

void RecordingObserver::RequestEnded(ezParseRequest aRequest, const ezMediaInfo* anInfo) {
    End("Request", NameOf(aRequest), NameOf(anInfo));
}

void RecordingObserver::PassBegan(ezParsePass aPass) {
    Begin("Pass", NameOf(aPass));
}

void RecordingObserver::PassEnded(ezParsePass aPass, bool afAnswered) {
    End("Pass", NameOf(aPass), afAnswered ? "answered" : "-");
}

void RecordingObserver::EntryBegan(const ExtensionMimeTypeMatcherEntry& anEntry, bool afExcluded) {
    Begin("Entry", NameOf(anEntry), afExcluded ? "excluded" : "");
}

void RecordingObserver::EntryEnded(const ExtensionMimeTypeMatcherEntry& anEntry, ezEntryResult aResult) {
    End("Entry", NameOf(anEntry), NameOf(aResult));
}

void RecordingObserver::TypeBegan(const char* aType) {
    Begin("Type", aType);
}

void RecordingObserver::TypeEnded(const char* aType, ezTypeResult aResult) {
    End("Type", aType, NameOf(aResult));
}

void RecordingObserver::ParserBegan(const ezBaseParser& aParser, const char* aName) {
    Begin("Parser", NameOf(aParser), aName);
}

void RecordingObserver::ParserRefused(const ezBaseParser& aParser, ezParseRefusal aCause, const char* aText) {
    Note("ParserRefused", NameOf(aParser) + " " + NameOf(aCause) + " " + aText);
}

void RecordingObserver::ParserEnded(const ezBaseParser& aParser, const ezMediaInfo* anInfo) {
    End("Parser", NameOf(aParser), NameOf(anInfo));
}

void RecordingObserver::TestFileNameAsked(const ezMediaInfo* anInfo) {
    Note("TestFileNameAsked", NameOf(anInfo));
}

void RecordingObserver::MediaMapperAsked(const DLNAMediaMapperEntry* anEntry) {
    Note("MediaMapperAsked", anEntry != nullptr ? anEntry->mFileName.c_str() : "-");
}

void RecordingObserver::MediaMapperChanged(const char* aKey, const char* anOld, const char* aNew) {
    Note("MediaMapperChanged", std::string(aKey) + " " + TextOr(anOld) + " " + TextOr(aNew));
}

void RecordingObserver::FactStated(const char* aKey, const ezFactSource& aSource) {
    EXPECT_TRUE(aSource.mStep == ezParseStep::Parser || aSource.mParser == nullptr) << aKey;
    const bool fEntry = aSource.mStep == ezParseStep::EntryAlone || aSource.mStep == ezParseStep::EntryNames;
    EXPECT_EQ(aSource.mEntry != nullptr, fEntry) << aKey;
    Note("FactStated", std::string(aKey) + " " + NameOf(aSource.mStep) +
                           (aSource.mParser != nullptr ? " " + NameOf(*aSource.mParser) : "") +
                           (aSource.mEntry != nullptr ? " " + NameOf(*aSource.mEntry) : ""));
}
