#include "ez/MimeTypesDotIniParser.h"

#include "detail/BitRates.h"
#include "detail/FirstString.h"

#include "ez/DLNAFileParser.h"
#include "ez/Environment.h"
#include "ez/ExtensionMimeTypeMatcher.h"
#include "ez/MediaParserManager.h"
#include "ez/MediaParserStream.h"

#include "ezPlatform/config/Config.h"
#include "ezPlatform/containers/Items.h"
#include "ezPlatform/media/MediaInfo.h"

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
    ExtensionMimeTypeMatcher& matcher = *mExtensionMimeTypeMatcher;
    ezCString extension;
    ezCString mimeType;
    {
        ezMediaInfo known; // whose memory the parsers can have
        aStream.CopyInfo(&known);
        extension = known.GetCString(kezInfo_FileExtension, "");
        mimeType = known.GetCString(kezInfo_MimeType, "");
    }
    ezMediaInfo* info = nullptr;
    bool fAllTried = false;
    if ((mParseOptions & kParseOption_ParseWithAllParserEverytime) != 0) {
        info = ParseFromEntries(matcher.AllEntries(), aStream, false);
        fAllTried = true;
    }
    if (info == nullptr && !fAllTried && !mimeType.IsEmpty()) {
        info = ParseFromEntries(matcher.EntriesFromMimeType(mimeType), aStream, false);
    }
    if (info == nullptr && !fAllTried && extension.IsEmpty() &&
        (mParseOptions & kParseOption_ParseWithAllParserIfNoExtension) != 0) {
        info = ParseFromEntries(matcher.AllEntries(), aStream, false);
        fAllTried = true;
    }
    if (info == nullptr && !fAllTried && (mParseOptions & kParseOption_ParseWithAllParserIfFailed) != 0) {
        info = ParseFromEntries(matcher.AllEntries(), aStream, false);
    }
    // Also after all entries were tried: this pass alone may make a record of the entry.
    if (info == nullptr && !extension.IsEmpty()) {
        info = ParseFromEntries(matcher.EntriesFromExtension(extension), aStream, true);
    }
    return info;
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
    return info;
}

bool ezMimeTypesDotIniParser::ConsultTestFileName(ezMediaParserStream& aStream, ezMediaInfo*& anInfo) {
    ezMediaInfo* named = DLNAFileParser(mEnvironmentInfo).Parse(aStream);
    if (named == nullptr) {
        return false;
    }
    if (anInfo == nullptr) {
        anInfo = named;
        return true;
    }
    anInfo->Set(kezInfo_DLNA, named->GetCString(kezInfo_DLNA, ""), true);
    anInfo->Set(kezInfo_MimeType, named->GetCString(kezInfo_MimeType, ""), true);
    delete named;
    return true;
}

void ezMimeTypesDotIniParser::FillNames(ezMediaInfo& anInfo, const Entry& anEntry) {
    if (!anInfo.Has(kezInfo_MimeType)) {
        anInfo.Set(kezInfo_MimeType, FirstString(anEntry.mMimeTypes), true);
    }
    if (!anInfo.Has(kezInfo_ClassName)) {
        anInfo.Set(kezInfo_ClassName, FirstString(anEntry.mUPnPClasses), true);
    }
    if (!anInfo.Has(kezInfo_FileExtension)) {
        // The table's word for the MIME type, not the file's own extension: "song.mpga" reads "mp3".
        anInfo.Set(kezInfo_FileExtension, MimeTypeToFileExtension(anInfo.GetCString(kezInfo_MimeType, "")),
                   true);
    }
}

ezMediaInfo* ezMimeTypesDotIniParser::ParseFromEntries(ezPtrList* anEntries, ezMediaParserStream& aStream,
                                                       bool afForceCreateMediaInfo) {
    const uint32 context = GetCTTContext();
    ezMediaInfo* info = nullptr;
    Entry* entry = nullptr;
    bool fTestFile = false;
    for (Entry* candidate : ezItems<Entry>(anEntries)) {
        entry = candidate;
        info = TryEntry(*entry, aStream);
        if (context == kProperty_CTTContext_NameDecides || (info == nullptr && context != 0)) {
            fTestFile = ConsultTestFileName(aStream, info);
        }
        if (info != nullptr) {
            break;
        }
    }
    if (info == nullptr) {
        // Before the exclusion test: an excluded entry that stands last makes a record too.
        return afForceCreateMediaInfo && entry != nullptr ? NewInfoFromEntry(*entry) : nullptr;
    }
    if (mExtensionMimeTypeMatcher->IsExcludedEntry(entry)) {
        delete info;
        return nullptr;
    }
    if (context == kProperty_CTTContext_NameDecides && fTestFile) {
        info->Set(kezInfo_BitRate, 0, true);
        info->Set(kezInfo_MaxBitRate, 0, true);
        info->Set(kezInfo_EstimatedBitRate, 0, true);
    } else {
        CompleteBitRates(*info);
    }
    FillNames(*info, *entry);
    return info;
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
    return AdjustDLNAInfoFromEntries(entries, anInfo);
}

bool ezMimeTypesDotIniParser::AdjustDLNAInfoFromEntries(ezPtrList* anEntries, ezMediaInfo* anInfo) {
    for (const Entry* entry : ezItems<Entry>(anEntries)) {
        if (AdjustDLNAInfoFromTypes(entry->mTypes, anInfo)) {
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
