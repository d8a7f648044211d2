#include "ez/MediaParserManager.h"

#include "detail/ParseReporter.h"

#include "ez/DLNAMediaMapper.h"
#include "ez/MediaParserStream.h"
#include "ez/MimeTypesDotIniParser.h"

#include "ezPlatform/base/Assert.h"
#include "ezPlatform/base/Log.h"
#include "ezPlatform/base/Owned.h"
#include "ezPlatform/containers/CustomHashTable.h"
#include "ezPlatform/dlna/ProtocolInfoList.h"
#include "ezPlatform/files/PathName.h"
#include "ezPlatform/media/MediaInfo.h"

#include <string_view>

namespace {

void ezParserList_Free(void* aList) {
    delete static_cast<ezParserList*>(aList);
}

/// Copies a number from one record to another; 0 where it has none.
void CopyNumber(ezMediaInfo& anInfo, const ezMediaInfo& aSource, const char* aKey) {
    anInfo.Set(aKey, aSource.GetUInt32(aKey, 0), true);
}

/// Lets a number that the media mapper knows replace that of a record. The new one stands first in the
/// message.
void MergeMappedNumber(ezMediaInfo& anInfo, const ezMediaInfo& aMapped, const char* aKey, const char* aName) {
    const uint32 own = anInfo.GetUInt32(aKey, 0);
    const uint32 mapped = aMapped.GetUInt32(aKey, 0);
    if (own != mapped && mapped != 0) {
        ezLog_F(EZLOGLEVEL_INFO, "ezMediaParserManager: Merging media mapper %s, replacing %lu by %lu\n",
                aName, static_cast<unsigned long>(mapped), static_cast<unsigned long>(own));
        anInfo.Set(aKey, mapped, true);
    }
}

/// Lets the media mapper's record replace the facts that it decides.
void MergeMapped(ezMediaInfo& anInfo, const ezMediaInfo& aMapped) {
    // A profile is what follows the first "=", whichever parameter stands there. Of a 4th field with further
    // ones only the profile counts: the same one keeps them.
    const ezCString mappedField = aMapped.GetCString(kezInfo_DLNA, "");
    const ezCString mappedProfile = mappedField.AfterFirst('=');
    const ezCString ownProfile = anInfo.GetCString(kezInfo_DLNA, "").AfterFirst('=').BeforeFirst(';');
    const ezCString ownType = anInfo.GetCString(kezInfo_MimeType, "");
    const ezCString mappedType = aMapped.GetCString(kezInfo_MimeType, "");
    if (mappedProfile == "LPCM") {
        CopyNumber(anInfo, aMapped, kezInfo_AudioChannelCount);
        CopyNumber(anInfo, aMapped, kezInfo_AudioBitRate);
        CopyNumber(anInfo, aMapped, kezInfo_AudioBitsPerSample);
    }
    if (ownProfile != mappedProfile || ownType != mappedType) {
        ezLog_F(EZLOGLEVEL_INFO,
                "ezMediaParserManager: Merging media mapper profile and mime type, replacing '%s' by '%s' "
                "and '%s' "
                "by '%s'\n",
                ownProfile.c_str(), mappedProfile.c_str(), ownType.c_str(), mappedType.c_str());
        anInfo.Set(kezInfo_DLNA, mappedField, true);
        anInfo.Set(kezInfo_MimeType, mappedType, true);
    }
    MergeMappedNumber(anInfo, aMapped, kezInfo_BitRate, "bitrate");
    MergeMappedNumber(anInfo, aMapped, kezInfo_Duration, "duration");
    if (ownType != mappedType) {
        anInfo.Set(kezInfo_ClassName, aMapped.GetCString(kezInfo_ClassName, ""), true);
    }
}

/// Tries those parsers of a list, which may be null, for which aIsWanted(parser) is true, in their order,
/// each from the place where the stream stands. The first answer is the result.
/// @param aReporter  the manager's
/// @param aWinner    what the message calls the parser that answers
template <typename IsWanted>
ezMediaInfo* TryParsers(const ezParserList* aList, ezMediaParserStream& aStream,
                        const std::unique_ptr<ParseReporter>& aReporter, const char* aWinner,
                        const IsWanted& aIsWanted) {
    // By index, up to the size at the start: a parser may add others while the list is walked.
    const std::size_t count = aList != nullptr ? aList->size() : 0;
    for (std::size_t i = 0; i < count; ++i) {
        ezBaseParser* parser = (*aList)[i];
        if (!aIsWanted(parser)) {
            continue;
        }
        const ezuint64 position = aStream.Tell();
        Report(aReporter.get(), &ParseReporter::ParserBegan, *parser, nullptr);
        ezMediaInfo* info = parser->Parse(aStream);
        Report(aReporter.get(), &ParseReporter::ParserEnded, *parser, info);
        if (info != nullptr) {
            ezLog_F(EZLOGLEVEL_DEBUG, "ezMediaParserManager: %s: %s\n", aWinner, parser->GetType().c_str());
        }
        aStream.Seek(position, ezMediaParserStream::SeekFromStart, true);
        if (info != nullptr) {
            return info;
        }
    }
    return nullptr;
}

} // namespace

ezMediaParserManager::ezMediaParserManager(ezPropertyList* anEnvironmentInfo)
    : mParserListByType(ezCustomHashTable_New_String_Other({nullptr, ezParserList_Free})),
      mParserListByMimeType(ezCustomHashTable_New_String_Other({nullptr, ezParserList_Free})),
      mEnvironmentInfo(anEnvironmentInfo) {}

ezMediaParserManager::~ezMediaParserManager() {
    // The borrowing lists first: their parsers go with the type lists.
    ezCustomHashTable_Delete(mParserListByMimeType);
    ezCustomHashTable_Delete(mParserListByType);
    delete mDLNAMediaMapperParser;
}

ezParserList* ezMediaParserManager::ParserListFrom(ezCustomHashTable* aHashTable, const ezCString& aType,
                                                   bool afAdd, bool afAutoDelete) {
    const ezCString key = aType.Lower();
    ezParserList* list = static_cast<ezParserList*>(ezCustomHashTable_Lookup(aHashTable, key));
    if (list == nullptr && afAdd) {
        list = new ezParserList;
        list->SetAutoDelete(afAutoDelete);
        ezCustomHashTable_Add(aHashTable, key, list);
    }
    return list;
}

ezParserList* ezMediaParserManager::ParserListFromType(const ezCString& aType, bool afAdd) {
    return ParserListFrom(mParserListByType, aType, afAdd, true);
}

ezParserList* ezMediaParserManager::ParserListFromMimeType(const ezCString& aMimeType, bool afAdd) {
    return ParserListFrom(mParserListByMimeType, aMimeType, afAdd, false);
}

bool ezMediaParserManager::Add(ezMediaParser* aMediaParser) {
    if (aMediaParser == nullptr) {
        return false;
    }
    aMediaParser->mManager = this;
    aMediaParser->SetEnvironmentInfo(mEnvironmentInfo);
    ParserListFromType(aMediaParser->GetType(), true)->push_back(aMediaParser);
    AddToMimeTypeList(aMediaParser);
    return true;
}

void ezMediaParserManager::AddToMimeTypeList(ezBaseParser* aMediaParser) {
    const ezCString text = aMediaParser->GetDLNAInfo();
    std::string_view rest = text.View();
    while (!rest.empty()) {
        // Up to the next ":" wherever that is: an entry without one runs on into its successor.
        const std::string_view candidate = rest.substr(0, rest.find(':'));
        if (candidate.find('/') != std::string_view::npos) {
            ezParserList* list = ParserListFromMimeType(ezCString(candidate), true);
            if (list->find(aMediaParser) == list->end()) {
                list->push_back(aMediaParser);
            }
        }
        const std::size_t comma = rest.find(',');
        rest.remove_prefix(comma == std::string_view::npos ? rest.size() : comma + 1);
    }
}

void ezMediaParserManager::AddStandardParsers(int aParseOptions) {
    if (!ezAssert(mMimeTypesDotIniParser == nullptr, "mMimeTypesDotIniParser == NULL",
                  "MediaParserManager")) {
        return;
    }
    mMimeTypesDotIniParser = new ezMimeTypesDotIniParser(mEnvironmentInfo, aParseOptions);
    Add(mMimeTypesDotIniParser);
}

void ezMediaParserManager::AddDLNAMediaMapperParser(DLNAMediaMapper* aMediaMapper) {
    if (ezAssert(mDLNAMediaMapperParser == nullptr, "mDLNAMediaMapperParser == NULL", "MediaParserManager") &&
        aMediaMapper != nullptr) {
        mDLNAMediaMapperParser = new DLNAMediaMapperParser(aMediaMapper, mEnvironmentInfo);
    }
}

// Private steps are inline: an exported class would have them called through the library's table of
// functions.

inline bool ezMediaParserManager::MayBeAsked() const {
    return ezAssert(mReporter == nullptr || !mReporter->IsTelling(), "!IsTelling()", "MediaParserManager");
}

bool ezMediaParserManager::BeginParser(const ezBaseParser* aParser) {
    if (mDoneParsers.find(aParser) != mDoneParsers.end()) {
        return false;
    }
    mDoneParsers.push_back(aParser);
    return true;
}

void ezMediaParserManager::SetObserver(ezParseObserver* anObserver) {
    if (!MayBeAsked() || !ezAssert(mReporter == nullptr || !mReporter->IsInRequest(), "!IsInRequest()",
                                   "MediaParserManager")) {
        return;
    }
    mReporter = anObserver != nullptr ? std::make_unique<ParseReporter>(*anObserver) : nullptr;
}

void ezMediaParserManager::TellRefusal(const ezBaseParser& aParser, ezParseRefusal aCause,
                                       const char* aText) {
    if (MayBeAsked()) {
        Report(mReporter.get(), &ParseReporter::ParserRefused, aParser, aCause,
               aText != nullptr ? aText : "");
    }
}

ezMediaInfo* ezMediaParserManager::ParseFromType(const ezCString& aType, ezMediaParserStream& aStream) {
    if (!MayBeAsked()) {
        return nullptr;
    }
    ezLog_F(EZLOGLEVEL_DEBUG, "ezMediaParserManager: Parsing type: %s\n", aType.c_str());
    const ezParserList* const list = ParserListFromType(aType, false);
    Report(mReporter.get(), &ParseReporter::TypeBegan, aType);
    ezMediaInfo* info = TryParsers(list, aStream, mReporter, "Winner",
                                   [this](const ezBaseParser* aParser) { return BeginParser(aParser); });
    Report(mReporter.get(), &ParseReporter::TypeEnded, aType, list != nullptr, info != nullptr);
    if (info != nullptr) {
        return info;
    }
    ezLog_F(EZLOGLEVEL_DEBUG, "ezMediaParserManager: No info for type %s\n", aType.c_str());
    return nullptr;
}

inline ezMediaInfo* ezMediaParserManager::Identify(ezMediaParserStream& aStream) {
    mDoneParsers.erase();
    ezMediaInfo* info = ParseFromType("*", aStream);
    // Of a host that overrides ParseFromType.
    Report(mReporter.get(), &ParseReporter::Stated, info, ezParseStep::Parser, nullptr);
    info = MediaMapperValidate(aStream, info);
    if (info == nullptr) {
        return nullptr;
    }
    aStream.CopyInfo(info);
    Report(mReporter.get(), &ParseReporter::Stated, info, ezParseStep::Stream, nullptr);
    // This message alone names the class without its prefix.
    ezLog_F(EZLOGLEVEL_DEBUG,
            "MediaParserManager: Parsed: Title: %s, Creator: %s, Genre: %s, Album: %s, Other: %s\n",
            info->mTitle.c_str(), info->mCreator.c_str(), info->mGenre.c_str(), info->mAlbum.c_str(),
            info->GetOtherProperties().c_str());
    info->Finish(true);
    if (!info->IsValid()) {
        delete info;
        return nullptr;
    }
    return info;
}

ezMediaInfo* ezMediaParserManager::Parse(ezMediaParserStream& aStream) {
    if (!MayBeAsked()) {
        return nullptr;
    }
    ReportRequest(mReporter.get(), ezParseRequest::Identify, &aStream);
    ezMediaInfo* info = Identify(aStream);
    Report(mReporter.get(), &ParseReporter::RequestEnded, ezParseRequest::Identify, info);
    return info;
}

ezMediaInfo* ezMediaParserManager::ParseCoverArt(const ezCString& aMimeType, ezMediaParserStream& aStream) {
    if (!MayBeAsked()) {
        return nullptr;
    }
    ReportRequest(mReporter.get(), ezParseRequest::CoverArt, &aStream);
    const ezParserList* list = ParserListFromMimeType(aMimeType, false);
    if (list != nullptr) {
        mDoneParsers.erase();
    }
    ezMediaInfo* info = TryParsers(list, aStream, mReporter, "Cover Art Winner",
                                   [](const ezBaseParser* aParser) { return aParser->CanExtractCoverArt(); });
    Report(mReporter.get(), &ParseReporter::RequestEnded, ezParseRequest::CoverArt, info);
    return info;
}

ezMediaInfo* ezMediaParserManager::MediaMapperValidate(ezMediaParserStream& aStream, ezMediaInfo* anInfo) {
    if (mDLNAMediaMapperParser == nullptr || !ezPathName::MakeFilePath(aStream.GetFullPath()).IsValid()) {
        return anInfo;
    }
    ezMediaInfo* mapped = mDLNAMediaMapperParser->Parse(aStream);
    Report(mReporter.get(), &ParseReporter::MediaMapperAsked, *mDLNAMediaMapperParser, aStream);
    if (mapped == nullptr) {
        return anInfo;
    }
    if (anInfo == nullptr) {
        ezLog_F(EZLOGLEVEL_INFO, "ezMediaParserManager: Using media mapper\n");
        anInfo = mapped;
    } else {
        MergeMapped(*anInfo, *mapped);
        delete mapped;
    }
    Report(mReporter.get(), &ParseReporter::Mapped, *anInfo);
    return anInfo;
}

void ezMediaParserManager::AppendDLNAInfo(ezBaseParser* aMediaParser, ezCString& aDLNAInfo) {
    if (aMediaParser == nullptr) {
        return;
    }
    const ezCString text = aMediaParser->GetDLNAInfo();
    if (text.IsEmpty()) {
        return;
    }
    if (!aDLNAInfo.IsEmpty()) {
        aDLNAInfo += ",";
    }
    aDLNAInfo += text;
}

ezCString ezMediaParserManager::GetDLNAInfo() {
    ezCString text;
    const std::size_t typeCount = ezCustomHashTable_GetTupleCount(mParserListByType);
    for (std::size_t type = 0; type < typeCount; ++type) {
        const ezParserList* list = static_cast<ezParserList*>(ezCustomHashTable_Lookup(
            mParserListByType, ezCustomHashTable_GetKeyAtIndex(mParserListByType, type)));
        const std::size_t count = list->size();
        for (std::size_t i = 0; i < count; ++i) {
            AppendDLNAInfo((*list)[i], text);
        }
    }
    AppendDLNAInfo(mDLNAMediaMapperParser, text);
    return text;
}

ezCString ezMediaParserManager::GetDLNAInfoDTCP() {
    const ezOwned<ezDLNAProtocolInfoList_Delete> list(
        ezDLNAProtocolInfoList_NewFromProfileInfo(GetDLNAInfo().c_str(), 0));
    for (std::size_t i = 0; i < ezDLNAProtocolInfoList_GetCount(list.get()); ++i) {
        ezDLNAProtocolInfo_SetDTCPIP(ezDLNAProtocolInfoList_GetProtocolInfoAt(list.get(), i), nullptr, 0, 1);
    }
    return ezCString::FromAllocatedString(ezDLNAProtocolInfoList_GetMimeTypePNStr(list.get()));
}

inline bool ezMediaParserManager::Adjust(ezBaseParser& aParser, ezMediaInfo& anInfo) {
    Report(mReporter.get(), &ParseReporter::ParserBegan, aParser, &anInfo);
    const bool fAdjusted = aParser.AdjustDLNAInfo(&anInfo);
    Report(mReporter.get(), &ParseReporter::AdjusterEnded, aParser, anInfo, fAdjusted);
    return fAdjusted;
}

bool ezMediaParserManager::AdjustDLNAInfoFromType(const ezCString& aType, ezMediaInfo* anInfo) {
    if (!MayBeAsked()) {
        return false;
    }
    ezLog_F(EZLOGLEVEL_DEBUG, "ezMediaParserManager: Ajusting dlna info from type: %s\n", aType.c_str());
    const ezParserList* list = ParserListFromType(aType, false);
    if (!ezAssert(aType.Compare("*") != 0, "aType.Compare(\"*\") != 0", "MediaParserManager")) {
        return false;
    }
    const std::size_t count = list != nullptr && anInfo != nullptr ? list->size() : 0;
    Report(mReporter.get(), &ParseReporter::TypeBegan, aType);
    bool fAdjusted = false;
    for (std::size_t i = 0; i < count && !fAdjusted; ++i) {
        ezBaseParser* parser = (*list)[i];
        fAdjusted = BeginParser(parser) && Adjust(*parser, *anInfo);
    }
    Report(mReporter.get(), &ParseReporter::TypeEnded, aType, count != 0, fAdjusted);
    ezLog_F(EZLOGLEVEL_DEBUG, "MediaParserManager::AdjustDLNAInfoFromType (%s)\n",
            fAdjusted ? "success" : "failed");
    return fAdjusted;
}

bool ezMediaParserManager::AdjustDLNAInfo(ezMediaInfo* anInfo) {
    if (!MayBeAsked()) {
        return false;
    }
    const bool fHasStandardParser =
        ezAssert(mMimeTypesDotIniParser != nullptr, "mMimeTypesDotIniParser != NULL", "MediaParserManager");
    mDoneParsers.erase();
    ReportRequest(mReporter.get(), ezParseRequest::Adjust, nullptr);
    const bool fAdjusted =
        fHasStandardParser && anInfo != nullptr && mMimeTypesDotIniParser->AdjustDLNAInfo(anInfo);
    Report(mReporter.get(), &ParseReporter::RequestEnded, ezParseRequest::Adjust,
           fAdjusted ? anInfo : nullptr);
    return fAdjusted;
}
