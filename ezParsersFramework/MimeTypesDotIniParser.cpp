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

/// What a pass needs besides parse options: bits above those.
constexpr int kNeed_MimeType = 0x100;    ///< the stream states one
constexpr int kNeed_Extension = 0x200;   ///< the stream has one
constexpr int kNeed_NoExtension = 0x400; ///< it has none
constexpr int kNeed_Untried = 0x800;     ///< no pass has walked over all entries yet

/// The options that a pass can need.
constexpr int kPassOptions = kParseOption_ParseWithAllParserEverytime |
                             kParseOption_ParseWithAllParserIfNoExtension |
                             kParseOption_ParseWithAllParserIfFailed;

/// The entries that a pass walks.
enum class Walks { All, OfMimeType, OfExtension };

struct Pass {
    ezParsePass mPass;
    int mNeeds; ///< parse options and needs: all of them
    Walks mWalks;
    bool mfMakesRecord; ///< where nothing answers, the last entry alone does
};

/// The passes in their order; the first to answer is the last to be made. That of the extension comes after a
/// walk over all entries too, for the record that it makes.
constexpr std::array<Pass, 5> kPasses = {{
    {ezParsePass::AllFirst, kParseOption_ParseWithAllParserEverytime, Walks::All, false},
    {ezParsePass::MimeType, kNeed_MimeType | kNeed_Untried, Walks::OfMimeType, false},
    {ezParsePass::NoExtension,
     kParseOption_ParseWithAllParserIfNoExtension | kNeed_NoExtension | kNeed_Untried, Walks::All, false},
    {ezParsePass::Failed, kParseOption_ParseWithAllParserIfFailed | kNeed_Untried, Walks::All, false},
    {ezParsePass::Extension, kNeed_Extension, Walks::OfExtension, true},
}};

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

// Private steps are inline: an exported class would have them called through the library's table of
// functions.

inline ParseReporter* ezMimeTypesDotIniParser::Reporter() const {
    return mManager != nullptr ? mManager->mReporter.get() : nullptr;
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
    int met = (mParseOptions & kPassOptions) | kNeed_Untried | (mimeType.IsEmpty() ? 0 : kNeed_MimeType) |
              (extension.IsEmpty() ? kNeed_NoExtension : kNeed_Extension);
    for (const Pass& pass : kPasses) {
        if ((met & pass.mNeeds) != pass.mNeeds) {
            continue;
        }
        ezPtrList* const entries = EntriesOf(*mExtensionMimeTypeMatcher, pass.mWalks, extension, mimeType);
        Report(Reporter(), &ParseReporter::PassBegan, pass.mPass);
        ezMediaInfo* const info = ParseFromEntries(entries, aStream, pass.mfMakesRecord);
        Report(Reporter(), &ParseReporter::PassEnded, pass.mPass, info != nullptr);
        if (info != nullptr) {
            return info;
        }
        if (pass.mWalks == Walks::All) {
            met &= ~kNeed_Untried;
        }
    }
    return nullptr;
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
    // Of a host that overrides ParseFromType.
    Report(Reporter(), &ParseReporter::Stated, info, ezParseStep::Parser, nullptr);
    return info;
}

bool ezMimeTypesDotIniParser::ConsultTestFileName(ezMediaParserStream& aStream, ezMediaInfo*& anInfo) {
    ezMediaInfo* named = DLNAFileParser(mEnvironmentInfo).Parse(aStream);
    Report(Reporter(), &ParseReporter::TestFileNameAsked, named);
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
    Report(Reporter(), &ParseReporter::Stated, anInfo, ezParseStep::TestFileName, nullptr);
    return true;
}

void ezMimeTypesDotIniParser::FillNames(ezMediaInfo& anInfo, const Entry& anEntry) {
    if (!anInfo.Has(kezInfo_MimeType)) {
        anInfo.Set(kezInfo_MimeType, FirstString(anEntry.mMimeTypes), true);
    }
    if (!anInfo.Has(kezInfo_ClassName)) {
        anInfo.Set(kezInfo_ClassName, FirstString(anEntry.mUPnPClasses), true);
    }
    Report(Reporter(), &ParseReporter::Stated, &anInfo, ezParseStep::EntryNames, &anEntry);
    if (!anInfo.Has(kezInfo_FileExtension)) {
        // The table's word for the MIME type, not the file's own extension: "song.mpga" reads "mp3".
        anInfo.Set(kezInfo_FileExtension, MimeTypeToFileExtension(anInfo.GetCString(kezInfo_MimeType, "")),
                   true);
    }
    Report(Reporter(), &ParseReporter::Stated, &anInfo, ezParseStep::TypesExtension, nullptr);
}

inline void ezMimeTypesDotIniParser::Complete(ezMediaInfo& anInfo, const Entry& anEntry,
                                              bool afRatesCleared) {
    if (afRatesCleared) {
        anInfo.Set(kezInfo_BitRate, 0, true);
        anInfo.Set(kezInfo_MaxBitRate, 0, true);
        anInfo.Set(kezInfo_EstimatedBitRate, 0, true);
    } else {
        CompleteBitRates(anInfo);
    }
    Report(Reporter(), &ParseReporter::Stated, &anInfo, ezParseStep::BitRates, nullptr);
    FillNames(anInfo, anEntry);
}

inline ezEntryResult ezMimeTypesDotIniParser::ParseFromEntry(Entry& anEntry, ezMediaParserStream& aStream,
                                                             uint32 aContext, bool afAlone,
                                                             ezMediaInfo*& anInfo) {
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
        Report(Reporter(), &ParseReporter::Stated, anInfo, ezParseStep::EntryAlone, &anEntry);
        return ezEntryResult::MadeRecord;
    }
    if (mExtensionMimeTypeMatcher->IsExcludedEntry(&anEntry)) {
        Report(Reporter(), &ParseReporter::Dropped, *anInfo);
        delete std::exchange(anInfo, nullptr);
        return ezEntryResult::Excluded;
    }
    Complete(*anInfo, anEntry, fNameDecides && fTestFile);
    return ezEntryResult::Won;
}

ezMediaInfo* ezMimeTypesDotIniParser::ParseFromEntries(ezPtrList* anEntries, ezMediaParserStream& aStream,
                                                       bool afForceCreateMediaInfo) {
    const uint32 context = GetCTTContext();
    const std::size_t count = ezPtrList_GetCount(anEntries);
    std::size_t walked = 0;
    for (Entry* entry : ezItems<Entry>(anEntries)) {
        Report(Reporter(), &ParseReporter::EntryBegan, *entry, *mExtensionMimeTypeMatcher);
        const bool fLast = ++walked == count;
        ezMediaInfo* info = nullptr;
        const ezEntryResult result =
            ParseFromEntry(*entry, aStream, context, afForceCreateMediaInfo && fLast, info);
        Report(Reporter(), &ParseReporter::EntryEnded, *entry, result);
        if (result != ezEntryResult::Declined) {
            return info;
        }
    }
    return nullptr;
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
    Report(Reporter(), &ParseReporter::PassBegan, ezParsePass::Adjust);
    const bool fAdjusted = AdjustDLNAInfoFromEntries(entries, anInfo);
    Report(Reporter(), &ParseReporter::PassEnded, ezParsePass::Adjust, fAdjusted);
    return fAdjusted;
}

bool ezMimeTypesDotIniParser::AdjustDLNAInfoFromEntries(ezPtrList* anEntries, ezMediaInfo* anInfo) {
    for (Entry* entry : ezItems<Entry>(anEntries)) {
        Report(Reporter(), &ParseReporter::EntryBegan, *entry, *mExtensionMimeTypeMatcher);
        const bool fAdjusted = AdjustDLNAInfoFromTypes(entry->mTypes, anInfo);
        Report(Reporter(), &ParseReporter::EntryEnded, *entry,
               fAdjusted ? ezEntryResult::Won : ezEntryResult::Declined);
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
