#include "ezFormats/FormatParser.h"

#include "ezFormats/detail/FormatDescription.h"
#include "ezFormats/detail/FormatMimeTypes.h"
#include "ezFormats/detail/Limits.h"
#include "ezFormats/detail/MediaBytes.h"

#include "ez/ExtensionMimeTypeMatcher.h"
#include "ez/MediaParserManager.h"
#include "ez/MediaParserStream.h"
#include "ez/MimeTypesDotIniParser.h"
#include "ez/UPnPClasses.h"
#include "ezPlatform/base/KnownSize.h"
#include "ezPlatform/base/Log.h"
#include "ezPlatform/config/PropertyList.h"
#include "ezPlatform/containers/PtrList.h"
#include "ezPlatform/dlna/DLNAField.h"
#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <string>
#include <string_view>
#include <utility>

namespace {

constexpr uint32 kImageFlags =
    kezDLNAFlag_DLNAVersion15 | kezDLNAFlag_BackgroundTransfer | kezDLNAFlag_InteractiveTransfer;
constexpr uint32 kStreamFlags =
    kezDLNAFlag_DLNAVersion15 | kezDLNAFlag_BackgroundTransfer | kezDLNAFlag_StreamingTransfer;

/// Of a format that is neither pictures nor video: sound, in an application type ("application/ogg") too.
/// Sound alone is sound, whatever its container usually holds.
const char* ClassOf(const ezMediaInfo& anInfo) {
    const ezCString type = anInfo.GetCString(kezInfo_MimeType, "");
    const char* const kind = ezUPnPClass_OfMimeType(ezTrimmed(type.View()), false);
    const bool fSound = anInfo.Has(kezInfo_AudioTrackCount) && !anInfo.Has(kezInfo_HasVideoTrack) &&
                        std::string_view(kind) == kezUPnPClass_VideoItem;
    return *kind == '\0' || fSound ? kezUPnPClass_AudioItem : kind;
}

/// A MIME type as it is compared: without parameters, in lower case.
ezCString BareType(const ezCString& aMimeType) {
    return aMimeType.BeforeFirst(';').TrimLeftRight().Lower();
}

/// The media types file of a host; null without one.
ezMimeTypesDotIniParser* TableOf(ezMediaParserManager* aManager) {
    return aManager != nullptr ? aManager->GetMimeTypesDotIniParser() : nullptr;
}

/// Gives a record the first MIME type of an entry where that is another name of its own.
void TakeTypeOf(const ExtensionMimeTypeMatcherEntry* anEntry, ezMediaInfo& anInfo) {
    void** const first = anEntry != nullptr ? ezPtrList_GetAt(anEntry->mMimeTypes, 0) : nullptr;
    if (first == nullptr) {
        return;
    }
    const char* const type = static_cast<const char*>(*first);
    if (FormatMimeType_IsOtherName(type, anInfo.GetCString(kezInfo_MimeType, "").View(),
                                   anInfo.GetCString(kezInfo_AudioCodec, "").View())) {
        anInfo.Set(kezInfo_MimeType, type, true);
    }
}

} // namespace

FormatParser::FormatParser(const FormatDescription& aDescription, std::shared_ptr<const ProfileRules> aRules)
    : ezMediaParser(aDescription.mType, nullptr, false),
      mDescription(aDescription),
      mRules(std::move(aRules)) {}

FormatParser::~FormatParser() = default;

ezMediaInfo* FormatParser::Parse(ezMediaParserStream& aStream) {
    MediaBytes bytes(aStream, mDescription.mBudget.mReads, mDescription.mBudget.mBytes);
    const unsigned char* start = nullptr;
    if (bytes.Borrow(0, &start) == 0) {
        Refuse(bytes.HasReadFailed() ? Cause::ReadError : Cause::Malformed, "nothing to read");
        return nullptr;
    }
    auto info = std::make_unique<ezMediaInfo>();
    if (!ReadFormat(bytes, *info)) {
        return nullptr;
    }
    info->Set(kezInfo_MimeType, mDescription.GetFirstMimeType(), false);
    const ezMimeTypesDotIniParser* const table = TableOf(mManager);
    Announce(*info, bytes.GetSize().has_value(),
             table != nullptr ? table->GetEntryInTrial(aStream) : nullptr);
    return info.release();
}

bool FormatParser::AdjustDLNAInfo(ezMediaInfo* anInfo) {
    if (anInfo == nullptr || !IsOurs(anInfo->GetCString(kezInfo_MimeType, ""))) {
        return false;
    }
    Announce(*anInfo, ezKnownSize(anInfo->GetUInt64(kezInfo_FileSize, 0)).has_value(), nullptr);
    return true;
}

ezCString FormatParser::GetDLNAInfo() {
    std::string types;
    for (const char* const type : mDescription.mMimeTypes) {
        types.append(types.empty() ? "" : ",").append(type);
    }
    return mRules->GetProfileInfo(types);
}

bool FormatParser::MayReadWholeMedia() const {
    const ezMimeTypesDotIniParser* const parser =
        mManager != nullptr ? mManager->GetMimeTypesDotIniParser() : nullptr;
    return parser != nullptr && parser->IsParseFullFileIfVBR();
}

const char* FormatParser::GetTextCodePage() const {
    const char* const name = ezPropertyList_Get_charPtr(mEnvironmentInfo, kProperty_TextCodePage);
    return name != nullptr ? name : "";
}

bool FormatParser::IsOurs(const ezCString& aMimeType) const {
    const ezCString bare = BareType(aMimeType);
    return mDescription.Announces(FormatMimeType_OwnName(bare.View()));
}

void FormatParser::SetClass(ezMediaInfo& anInfo, const char* aKind,
                            const ExtensionMimeTypeMatcherEntry* anEntry) const {
    if (anEntry != nullptr && anEntry->IsOfClass(aKind)) {
        return; // whoever tries the entry completes the record from it
    }
    ezMimeTypesDotIniParser* const table = TableOf(mManager);
    const ezCString listed = table != nullptr
                                 ? table->MimeTypeToClassName(anInfo.GetCString(kezInfo_MimeType, ""), aKind)
                                 : ezCString();
    anInfo.Set(kezInfo_ClassName, listed.IsEmpty() ? ezCString(aKind) : listed, false);
}

void FormatParser::Announce(ezMediaInfo& anInfo, bool afSizeKnown,
                            const ExtensionMimeTypeMatcherEntry* anEntry) const {
    ProfileMatch match = mRules->FindMatch(anInfo);
    if (!match.mMimeType.IsEmpty() && !anInfo.Has(kezInfo_DLNA)) {
        anInfo.Set(kezInfo_MimeType, match.mMimeType, true);
    }
    const char* const kind = ClassOf(anInfo);
    ezDLNAField field = ezDLNAField::OfProfile(std::move(match.mProfile));
    if (afSizeKnown) {
        field.SetByteSeek(true);
    }
    if (field.GetProfile().IsEmpty()) {
        TakeTypeOf(anEntry, anInfo);
    } else {
        field.SetFlags(std::string_view(kind) == kezUPnPClass_ImageItem ? kImageFlags : kStreamFlags);
    }
    SetClass(anInfo, kind, anEntry);
    anInfo.Set(kezInfo_DLNA, field.GetText(), false);
}

bool FormatParser::Refuse(Cause aCause, const char* aFormat, ...) const {
    const bool fObserved = mManager != nullptr && mManager->IsObserved();
    if (_ezLog_Level <= EZLOGLEVEL_DEBUG && !fObserved) {
        return false;
    }
    static constexpr std::array<const char*, 4> kCauses = {"malformed", "unsupported", "limit", "read error"};
    std::array<char, kRefusal_MaxText + 1> reason = {};
    va_list arguments;
    va_start(arguments, aFormat);
    std::vsnprintf(reason.data(), reason.size(), aFormat, arguments);
    va_end(arguments);
    ezLog_F(EZLOGLEVEL_DEBUG, "%s: %s: %s\n", mDescription.mName, kCauses[static_cast<std::size_t>(aCause)],
            reason.data());
    if (fObserved) {
        mManager->TellRefusal(*this, aCause, reason.data());
    }
    return false;
}

bool FormatParser::RefuseCut(const MediaBytes& aBytes, const char* aBefore) const {
    if (aBytes.HasReadFailed()) {
        return Refuse(Cause::ReadError, "before %s", aBefore);
    }
    if (aBytes.IsBudgetUsedUp()) {
        return Refuse(Cause::Limit, "budget used up before %s", aBefore);
    }
    return Refuse(Cause::Malformed, "ends before %s", aBefore);
}
