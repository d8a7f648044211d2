#include "ez/DLNAMediaMapperParser.h"

#include "ez/DLNAMediaMapper.h"
#include "ez/MediaParserStream.h"
#include "ez/UPnPClasses.h"

#include "ezPlatform/base/Owned.h"
#include "ezPlatform/containers/Array.h"
#include "ezPlatform/dlna/DLNAField.h"
#include "ezPlatform/dlna/ProtocolInfo.h"
#include "ezPlatform/media/MediaInfo.h"
#include "ezPlatform/text/Conversions.h"
#include "ezPlatform/text/MimeTypeInfo.h"

namespace {

/// A text as part of a comma-separated list.
ezCString Escaped(const ezCString& aText) {
    return aText.Replace(",", "\\,", true);
}

/// A profile as a parser declares it: MIME type, and of the 4th field the profile and its play speeds.
ezCString Declared(const ezDLNAProtocolInfo* anInfo) {
    const ezDLNAField& field = *ezDLNAProtocolInfo_GetField(anInfo);
    ezDLNAField declared = ezDLNAField::OfProfile(field.GetProfile());
    declared.AddPlaySpeeds(field);
    ezCString text = ezDLNAProtocolInfo_GetMimeType(anInfo);
    if (!declared.GetProfile().IsEmpty()) {
        text += ":" + declared.GetText();
    } else if (!declared.GetPlaySpeeds().IsEmpty()) {
        text += declared.GetText(); // without a profile the speeds follow the MIME type with no ":" between
    }
    return Escaped(text);
}

/// Sets a key to the number that a parameter of a MIME type states, if it states one.
void SetFromPart(ezMediaInfo& anInfo, const char* aKey, const ezMimeTypeInfo* aType, const char* aPart) {
    const char* text = ezMimeTypeInfo_GetPartValueByName(aType, aPart);
    uint32 value = 0;
    if (text != nullptr && ezReadDecimal32(text, &value)) {
        anInfo.Set(aKey, value, true);
    }
}

} // namespace

DLNAMediaMapperParser::DLNAMediaMapperParser(DLNAMediaMapper* aMediaMapper, ezPropertyList* anEnvironmentInfo)
    : ezMediaParser("MediaMapper", anEnvironmentInfo, false), mMediaMapper(aMediaMapper) {
    CacheDLNAInfo();
}

DLNAMediaMapperParser::~DLNAMediaMapperParser() = default;

void DLNAMediaMapperParser::CacheDLNAInfo() {
    const ezOwned<ezArray_Delete> records(mMediaMapper->NewProfileArray());
    for (std::size_t i = 0; i < ezArray_GetCount(records.get()); ++i) {
        const DLNAProfileEntry* record = static_cast<DLNAProfileEntry*>(ezArray_At(records.get(), i));
        if (record->GetProfileEnabled()) {
            mDLNAInfo += mDLNAInfo.IsEmpty() ? "" : ",";
            mDLNAInfo += Declared(record->GetDLNAProtocolInfo());
        }
    }
}

const DLNAMediaMapperEntry* DLNAMediaMapperParser::FindEntry(const ezMediaParserStream& aStream) const {
    const ezPathName path = ezPathName::MakeFilePath(aStream.GetFullPath());
    return path.IsValid() ? mMediaMapper->GetFileEntry(path.GetFullName()) : nullptr;
}

ezMediaInfo* DLNAMediaMapperParser::Parse(ezMediaParserStream& aStream) {
    const DLNAMediaMapperEntry* const entry = FindEntry(aStream);
    if (entry == nullptr) {
        return nullptr;
    }
    ezMediaInfo* info = new ezMediaInfo;
    info->Set(kezInfo_MimeType, entry->mMimeType, true);
    // With case: a type in capitals has no class.
    info->Set(kezInfo_ClassName, ezUPnPClass_OfMimeType(entry->mMimeType.View(), true), true);
    info->Set(kezInfo_DLNA, ezDLNAField::TextOfProfile(entry->mProfile.View()), true);
    info->Set(kezInfo_BitRate, entry->mBitRate, true);
    uint32 duration = 0;
    if (ezConvert_dlnadurationstrtouint32(entry->mDuration.c_str(), &duration, 0) == 0) {
        info->Set(kezInfo_Duration, duration, true);
    }
    if (entry->mProfile == "LPCM") {
        const ezOwned<ezMimeTypeInfo_Delete> type(ezMimeTypeInfo_New(entry->mMimeType.c_str()));
        SetFromPart(*info, kezInfo_AudioChannelCount, type.get(), "channels");
        SetFromPart(*info, kezInfo_AudioBitRate, type.get(), "rate");
        info->Set(kezInfo_AudioBitsPerSample, 16, true);
    }
    return info;
}

bool DLNAMediaMapperParser::AdjustDLNAInfo(ezMediaInfo* /*anInfo*/) {
    return false;
}

ezCString DLNAMediaMapperParser::GetDLNAInfo() {
    return mDLNAInfo;
}
