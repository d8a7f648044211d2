#pragma once

#include "ez/DLNAMediaMapper.h"
#include "ezPlatform/dlna/ProtocolInfo.h"

#include <array>
#include <string>
#include <string_view>

/// What the media mapper's targets know of an entry.

inline std::string MapperEntry_Text(const ezCString& aText) {
    return std::string(aText.View());
}

/// A text that a platform function allocated.
inline std::string MapperEntry_Taken(char* aText) {
    return MapperEntry_Text(ezCString::FromAllocatedString(aText));
}

inline bool MapperEntry_HasAny(const ezCString& aText, std::string_view aCharacters) {
    return aText.View().find_first_of(aCharacters) != std::string_view::npos;
}

/// All that must outlive a line: every member but the further parameters as they were written.
inline std::string MapperEntry_Dump(const DLNAMediaMapperEntry& anEntry) {
    std::string text;
    for (const ezCString* member :
         {&anEntry.mFileName, &anEntry.mMimeType, &anEntry.mProfile, &anEntry.mDuration,
          &anEntry.mMandatoryBits, &anEntry.mIFOFileName, &anEntry.mLargest, &anEntry.mWidth,
          &anEntry.mHeight, &anEntry.mLPOptions, &anEntry.mFullProfile}) {
        text += MapperEntry_Text(*member) + "|";
    }
    text += MapperEntry_Text(anEntry.mSupportedPlaySpeeds.Join()) + "|" + std::to_string(anEntry.mBitRate) +
            "|" + std::to_string(anEntry.mGoldenDMSFlags) + "|";
    for (const bool fBit : {anEntry.mfMandatory, anEntry.mfCVPNA1Mandatory, anEntry.mfCVPEUMandatory}) {
        text += fBit ? "1" : "0";
    }
    return text;
}

/// Whether MIME type and profile stand in a protocolInfo as what they are.
inline bool MapperEntry_IsPlain(const DLNAMediaMapperEntry& anEntry) {
    return !MapperEntry_HasAny(anEntry.mMimeType, ":\"\\") && !MapperEntry_HasAny(anEntry.mProfile, ";\"\\");
}

/// Whether the line of an entry gives the entry again. Commas are written as they are, a backslash before one
/// takes it in, a rate beyond the signed numbers is not read back, and play speeds have a field of their own.
inline bool MapperEntry_SurvivesItsLine(const DLNAMediaMapperEntry& anEntry) {
    for (const ezCString* member :
         {&anEntry.mFileName, &anEntry.mMimeType, &anEntry.mProfile, &anEntry.mDuration,
          &anEntry.mMandatoryBits, &anEntry.mIFOFileName, &anEntry.mLargest, &anEntry.mWidth,
          &anEntry.mHeight, &anEntry.mLPOptions, &anEntry.m4thFieldPart}) {
        if (MapperEntry_HasAny(*member, ",") || member->Last() == '\\') {
            return false;
        }
    }
    char* speeds = ezDLNAProtocolInfo_S_Get4thFieldValueFromStr(anEntry.m4thFieldPart.c_str(), "DLNA.ORG_PS");
    const bool fHasSpeeds = speeds != nullptr;
    MapperEntry_Taken(speeds);
    return MapperEntry_IsPlain(anEntry) && !fHasSpeeds && anEntry.mBitRate <= 0x7FFFFFFF;
}
