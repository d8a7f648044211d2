#include "ez/MimeTypesDotIniParser.h"

#include "detail/BitRates.h"
#include "detail/FirstString.h"
#include "detail/ParseReporter.h"

#include "ez/DLNAFileParser.h"
#include "ez/Environment.h"
#include "ez/ExtensionMimeTypeMatcher.h"
#include "ez/MediaParserManager.h"
#include "ez/MediaParserStream.h"

#include "ezPlatform/config/Config.h"
#include "ezPlatform/containers/Items.h"
#include "ezPlatform/media/MediaInfo.h"

#include <array>
#include <memory>
#include <utility>

namespace {

using Entry = ExtensionMimeTypeMatcherEntry;

ExtensionMimeTypeMatcher* NewLoadedMatcher(const ezCString& aReadOnlyPath, const ezCString& aReadWritePath,
                                           const ezCString& aFileName) {
    ExtensionMimeTypeMatcher* matcher =
        new ExtensionMimeTypeMatcher(aReadOnlyPath, aReadWritePath, aFileName);
    matcher->Load();
    return matcher;
}

ExtensionMimeTypeMatcher* NewMatcherFromEnvironment(const ezPropertyList* anEnvironmentInfo) {
    ezCString readOnly(ezPropertyList_Get_charPtr(anEnvironmentInfo, kProperty_ReadOnlyConfigPath));
    ezCString readWrite(ezPropertyList_Get_charPtr(anEnvironmentInfo, kProperty_ReadWriteConfigPath));
    if (readOnly.IsEmpty() && readWrite.IsEmpty()) {
        ezConfigConfig::GetConfigPaths(readOnly, readWrite, kezConfigPathFileName);
    }
    if (readOnly.IsEmpty()) {
        readOnly = ".";
    }
    if (readWrite.IsEmpty()) {
        readWrite = ".";
    }
    return NewLoadedMatcher(readOnly, readWrite, kezMediaTypesFileName);
}

/// A record made of nothing but an entry; null when the entry does not say what the media is.
ezMediaInfo* NewInfoFromEntry(const Entry& anEntry) {
    if (ezPtrList_GetCount(anEntry.mMimeTypes) == 0 || ezPtrList_GetCount(anEntry.mUPnPClasses) == 0) {
        return nullptr;
    }
    ezMediaInfo* info = new ezMediaInfo;
    info->Set(kezInfo_MimeType, FirstString(anEntry.mMimeTypes), true);
    info->Set(kezInfo_ClassName, FirstString(anEntry.mUPnPClasses), true);
    info->Set(kezInfo_FileExtension, FirstString(anEntry.mExtensions), true);
    return info;
}

/// What must hold of a stream for a pass to be made.
enum class Needs { Nothing, MimeType, Extension, NoExtension };

/// The entries that a pass walks.
enum class Walks { All, OfMimeType, OfExtension };

struct Pass {
    ezParsePass mPass;
    int mOption; ///< the pass is made with this one alone; 0 for always
    Needs mNeeds;
    Walks mWalks;
    /// Made after a walk over all entries too, as the last entry alone makes a record.
    bool mfMakesRecord;
};

/// In their order. The first to answer is the last to be made, and after a walk over all entries none but the
/// one that makes a record.
constexpr std::array<Pass, 5> kPasses = {{
    {ezParsePass::AllFirst, kParseOption_ParseWithAllParserEverytime, Needs::Nothing, Walks::All, false},
    {ezParsePass::MimeType, 0, Needs::MimeType, Walks::OfMimeType, false},
    {ezParsePass::NoExtension, kParseOption_ParseWithAllParserIfNoExtension, Needs::NoExtension, Walks::All,
     false},
    {ezParsePass::Failed, kParseOption_ParseWithAllParserIfFailed, Needs::Nothing, Walks::All, false},
    {ezParsePass::Extension, 0, Needs::Extension, Walks::OfExtension, true},
}};

bool IsMet(Needs aNeeds, const ezCString& anExtension, const ezCString& aMimeType) {
    switch (aNeeds) {
    case Needs::MimeType:
        return !aMimeType.IsEmpty();
    case Needs::Extension:
        return !anExtension.IsEmpty();
    case Needs::NoExtension:
        return anExtension.IsEmpty();
    case Needs::Nothing:
        break;
    }
    return true;
}

ezPtrList* EntriesOf(ExtensionMimeTypeMatcher& aMatcher, Walks aWalks, const ezCString& anExtension,
                     const ezCString& aMimeType) {
    return aWalks == Walks::OfMimeType    ? aMatcher.EntriesFromMimeType(aMimeType)
           : aWalks == Walks::OfExtension ? aMatcher.EntriesFromExtension(anExtension)
                                          : aMatcher.AllEntries();
}

} // namespace

ezMimeTypesDotIniParser::ezMimeTypesDotIniParser(const ezCString& aReadOnlyConfigPath,
                                                 const ezCString& aReadWriteConfigPath,
                                                 const ezCString& aConfigFileName, int aParseOptions)
    : ezMediaParser("*", nullptr, false),
      mExtensionMimeTypeMatcher(NewLoadedMatcher(aReadOnlyConfigPath, aReadWriteConfigPath, aConfigFileName)),
      mParseOptions(aParseOptions) {}

ezMimeTypesDotIniParser::ezMimeTypesDotIniParser(ezPropertyList* anEnvironmentInfo, int aParseOptions)
    : ezMediaParser("*", anEnvironmentInfo, false),
      mExtensionMimeTypeMatcher(NewMatcherFromEnvironment(anEnvironmentInfo)),
      mParseOptions(aParseOptions) {}

ezMimeTypesDotIniParser::~ezMimeTypesDotIniParser() {
    delete mExtensionMimeTypeMatcher;
}

ezMediaInfo* ezMimeTypesDotIniParser::Parse(ezMediaParserStream& aStream) {
    ezCString extension;
    ezCString mimeType;
    {
        ezMediaInfo known; // whose memory the parsers can have
        aStream.CopyInfo(&known);
        extension = known.GetCString(kezInfo_FileExtension, "");
        mimeType = known.GetCString(kezInfo_MimeType, "");
    }
    ParseReporter* const reporter = Reporter();
    ezMediaInfo* info = nullptr;
    bool fAllTried = false;
    for (const Pass& pass : kPasses) {
        const bool fChosen = pass.mOption == 0 || (mParseOptions & pass.mOption) != 0;
        if (info != nullptr || !fChosen || (fAllTried && !pass.mfMakesRecord) ||
            !IsMet(pass.mNeeds, extension, mimeType)) {
            continue;
        }
        if (reporter != nullptr) {
            reporter->PassBegan(pass.mPass);
        }
        info = ParseFromEntries(EntriesOf(*mExtensionMimeTypeMatcher, pass.mWalks, extension, mimeType),
                                aStream, pass.mfMakesRecord);
        fAllTried = fAllTried || pass.mWalks == Walks::All;
        if (reporter != nullptr) {
            reporter->PassEnded(pass.mPass, info != nullptr);
        }
    }
    return info;
}

ParseReporter* ezMimeTypesDotIniParser::Reporter() const {
    return mManager != nullptr ? mManager->mReporter.get() : nullptr;
}

ezMediaInfo* ezMimeTypesDotIniParser::ParseFromTypes(ezPtrList* aTypes, ezMediaParserStream& aStream) {
    if (mManager == nullptr) {
        return nullptr;
    }
    for (const char* type : ezItems<const char>(aTypes)) {
        if (ezMediaInfo* info = mManager->ParseFromType(type, aStream)) {
            return info;
        }
    }
    return nullptr;
}

ezMediaInfo* ezMimeTypesDotIniParser::TryEntry(const Entry& anEntry, ezMediaParserStream& aStream) {
    // A parser may have the manager identify another stream, and then goes on with its own.
    const Entry* const outerEntry = std::exchange(mEntryInTrial, &anEntry);
    const ezMediaParserStream* const outerStream = std::exchange(mStreamInTrial, &aStream);
    ezMediaInfo* const info = ParseFromTypes(anEntry.mTypes, aStream);
    mEntryInTrial = outerEntry;
    mStreamInTrial = outerStream;
    ParseReporter* const reporter = Reporter();
    if (reporter != nullptr && info != nullptr) {
        reporter->Stated(*info, ezParseStep::Parser); // of a host that overrides ParseFromType
    }
    return info;
}

bool ezMimeTypesDotIniParser::ConsultTestFileName(ezMediaParserStream& aStream, ezMediaInfo*& anInfo) {
    ezMediaInfo* named = DLNAFileParser(mEnvironmentInfo).Parse(aStream);
    ParseReporter* const reporter = Reporter();
    if (reporter != nullptr) {
        reporter->TestFileNameAsked(named);
    }
    if (named == nullptr) {
        return false;
    }
    if (anInfo == nullptr) {
        anInfo = named;
    } else {
        anInfo->Set(kezInfo_DLNA, named->GetCString(kezInfo_DLNA, ""), true);
        anInfo->Set(kezInfo_MimeType, named->GetCString(kezInfo_MimeType, ""), true);
        delete named;
    }
    if (reporter != nullptr) {
        reporter->Stated(*anInfo, ezParseStep::TestFileName);
    }
    return true;
}

void ezMimeTypesDotIniParser::FillNames(ezMediaInfo& anInfo, const Entry& anEntry) {
    ParseReporter* const reporter = Reporter();
    if (!anInfo.Has(kezInfo_MimeType)) {
        anInfo.Set(kezInfo_MimeType, FirstString(anEntry.mMimeTypes), true);
    }
    if (!anInfo.Has(kezInfo_ClassName)) {
        anInfo.Set(kezInfo_ClassName, FirstString(anEntry.mUPnPClasses), true);
    }
    if (reporter != nullptr) {
        reporter->Stated(anInfo, ezParseStep::EntryNames, &anEntry);
    }
    if (!anInfo.Has(kezInfo_FileExtension)) {
        // The table's word for the MIME type, not the file's own extension: "song.mpga" reads "mp3".
        anInfo.Set(kezInfo_FileExtension, MimeTypeToFileExtension(anInfo.GetCString(kezInfo_MimeType, "")),
                   true);
    }
    if (reporter != nullptr) {
        reporter->Stated(anInfo, ezParseStep::TypesExtension);
    }
}

ezMediaInfo* ezMimeTypesDotIniParser::ParseFromEntries(ezPtrList* anEntries, ezMediaParserStream& aStream,
                                                       bool afForceCreateMediaInfo) {
    ParseReporter* const reporter = Reporter();
    const uint32 context = GetCTTContext();
    const std::size_t count = ezPtrList_GetCount(anEntries);
    std::size_t walked = 0;
    for (Entry* entry : ezItems<Entry>(anEntries)) {
        if (reporter != nullptr) {
            reporter->EntryBegan(*entry, mExtensionMimeTypeMatcher->IsExcludedEntry(entry));
        }
        const bool fLast = ++walked == count;
        ezMediaInfo* info = nullptr;
        const ezEntryResult result =
            ParseFromEntry(*entry, aStream, context, afForceCreateMediaInfo && fLast, info);
        if (reporter != nullptr) {
            reporter->EntryEnded(*entry, result);
        }
        if (result != ezEntryResult::Declined) {
            return info;
        }
    }
    return nullptr;
}

ezEntryResult ezMimeTypesDotIniParser::ParseFromEntry(Entry& anEntry, ezMediaParserStream& aStream,
                                                      uint32 aContext, bool afAlone, ezMediaInfo*& anInfo) {
    ParseReporter* const reporter = Reporter();
    const bool fNameDecides = aContext == kProperty_CTTContext_NameDecides;
    anInfo = TryEntry(anEntry, aStream);
    const bool fTestFile =
        (fNameDecides || (anInfo == nullptr && aContext != 0)) && ConsultTestFileName(aStream, anInfo);
    if (anInfo == nullptr) {
        // Before the exclusion test: an excluded entry that stands last makes a record too.
        anInfo = afAlone ? NewInfoFromEntry(anEntry) : nullptr;
        if (anInfo == nullptr) {
            return ezEntryResult::Declined;
        }
        if (reporter != nullptr) {
            reporter->Stated(*anInfo, ezParseStep::EntryAlone, &anEntry);
        }
        return ezEntryResult::MadeRecord;
    }
    if (mExtensionMimeTypeMatcher->IsExcludedEntry(&anEntry)) {
        if (reporter != nullptr) {
            reporter->Dropped(*anInfo);
        }
        delete std::exchange(anInfo, nullptr);
        return ezEntryResult::Excluded;
    }
    Complete(*anInfo, anEntry, fNameDecides && fTestFile);
    return ezEntryResult::Won;
}

void ezMimeTypesDotIniParser::Complete(ezMediaInfo& anInfo, const Entry& anEntry, bool afRatesCleared) {
    if (afRatesCleared) {
        anInfo.Set(kezInfo_BitRate, 0, true);
        anInfo.Set(kezInfo_MaxBitRate, 0, true);
        anInfo.Set(kezInfo_EstimatedBitRate, 0, true);
    } else {
        CompleteBitRates(anInfo);
    }
    if (ParseReporter* const reporter = Reporter()) {
        reporter->Stated(anInfo, ezParseStep::BitRates);
    }
    FillNames(anInfo, anEntry);
}

ezCString ezMimeTypesDotIniParser::GetDLNAInfo() {
    return GetCTTContext() != 0 ? DLNAFileParser(mEnvironmentInfo).GetDLNAInfo() : ezCString();
}

bool ezMimeTypesDotIniParser::AdjustDLNAInfo(ezMediaInfo* anInfo) {
    if (anInfo == nullptr) {
        return false;
    }
    ezPtrList* entries = nullptr;
    const ezCString mimeType = anInfo->GetCString(kezInfo_MimeType, "");
    if (!mimeType.IsEmpty()) {
        entries = mExtensionMimeTypeMatcher->EntriesFromMimeType(mimeType);
    }
    if (entries == nullptr) {
        // Only an empty extension is asked for, and no entry lists that: a MIME type or nothing.
        const ezCString extension = anInfo->GetCString(kezInfo_FileExtension, "");
        if (extension.IsEmpty()) {
            entries = mExtensionMimeTypeMatcher->EntriesFromExtension(extension);
        }
    }
    ParseReporter* const reporter = Reporter();
    if (reporter != nullptr) {
        reporter->PassBegan(ezParsePass::Adjust);
    }
    const bool fAdjusted = AdjustDLNAInfoFromEntries(entries, anInfo);
    if (reporter != nullptr) {
        reporter->PassEnded(ezParsePass::Adjust, fAdjusted);
    }
    return fAdjusted;
}

bool ezMimeTypesDotIniParser::AdjustDLNAInfoFromEntries(ezPtrList* anEntries, ezMediaInfo* anInfo) {
    ParseReporter* const reporter = Reporter();
    for (Entry* entry : ezItems<Entry>(anEntries)) {
        if (reporter != nullptr) {
            reporter->EntryBegan(*entry, mExtensionMimeTypeMatcher->IsExcludedEntry(entry));
        }
        const bool fAdjusted = AdjustDLNAInfoFromTypes(entry->mTypes, anInfo);
        if (reporter != nullptr) {
            reporter->EntryEnded(*entry, fAdjusted ? ezEntryResult::Won : ezEntryResult::Declined);
        }
        if (fAdjusted) {
            return true;
        }
    }
    return false;
}

bool ezMimeTypesDotIniParser::AdjustDLNAInfoFromTypes(ezPtrList* aTypes, ezMediaInfo* anInfo) {
    if (mManager == nullptr) {
        return false;
    }
    for (const char* type : ezItems<const char>(aTypes)) {
        // A type "*" is not passed over: it runs into the manager's assertion, so that whoever deploys such a
        // table learns of it.
        if (mManager->AdjustDLNAInfoFromType(type, anInfo)) {
            return true;
        }
    }
    return false;
}

ezCString ezMimeTypesDotIniParser::MimeTypeToClassName(const ezCString& aMimeType, const char* aClass) {
    ExtensionMimeTypeMatcher& matcher = *mExtensionMimeTypeMatcher;
    for (Entry* entry : ezItems<Entry>(matcher.EntriesFromMimeType(aMimeType))) {
        if (entry->IsOfClass(aClass) && !matcher.IsExcludedEntry(entry)) {
            return FirstString(entry->mUPnPClasses);
        }
    }
    return ezCString();
}

ezCString ezMimeTypesDotIniParser::FileExtensionToMimeType(const ezCString& anExtension) {
    return mExtensionMimeTypeMatcher->FileExtensionToMimeType(anExtension);
}

ezCString ezMimeTypesDotIniParser::MimeTypeToFileExtension(const ezCString& aMimeType) {
    return mExtensionMimeTypeMatcher->MimeTypeToFileExtension(aMimeType);
}

ezCSVStringList ezMimeTypesDotIniParser::MimeTypeToFileExtensionList(const ezCString& aMimeType) {
    return mExtensionMimeTypeMatcher->MimeTypeToFileExtensionList(aMimeType);
}

ezCSVStringList ezMimeTypesDotIniParser::ExtensionToExtensionList(const ezCString& anExtension) {
    return mExtensionMimeTypeMatcher->ExtensionToExtensionList(anExtension);
}
