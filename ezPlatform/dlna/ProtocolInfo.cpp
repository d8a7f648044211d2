#include "ezPlatform/dlna/ProtocolInfo.h"

#include "ezPlatform/base/Memory.h"
#include "ezPlatform/text/CString.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

namespace {

constexpr std::string_view kDTCPType = "application/x-dtcp1";
constexpr const char* kAnything = "*";

/// A text that is taken apart at separators outside quotes. A quote that is never closed is a character like
/// any other.
class Splitter {
public:
    explicit Splitter(std::string_view aText) : mRest(aText) {}

    std::string_view GetRest() const { return mRest; }
    /// The text up to the next separator; takes it and the separator off the rest.
    std::string_view Next(char aSeparator);

private:
    std::size_t PastQuoted(std::size_t aQuote);

    std::string_view mRest;
    bool mfQuotesClose = true; ///< past a quote that is never closed no other is
};

/// Where the quoted text ends that begins at aQuote; just past the quote when it is never closed.
std::size_t Splitter::PastQuoted(std::size_t aQuote) {
    for (std::size_t i = aQuote + 1; mfQuotesClose && i < mRest.size(); ++i) {
        if (mRest[i] == '"') {
            return i + 1;
        }
        if (mRest[i] == '\\') {
            ++i;
        }
    }
    mfQuotesClose = false; // searched once, or a text of open quotes would cost the square of its length
    return aQuote + 1;
}

std::string_view Splitter::Next(char aSeparator) {
    std::size_t end = 0;
    while (end < mRest.size() && mRest[end] != aSeparator) {
        end = mRest[end] == '"' ? PastQuoted(end) : end + 1;
    }
    const std::string_view part = mRest.substr(0, end);
    mRest.remove_prefix(std::min(end + 1, mRest.size()));
    return part;
}

std::string_view ViewOf(const char* aText) {
    return aText != nullptr ? std::string_view(aText) : std::string_view();
}

char* Allocated(const ezCString& aText) {
    return ezStrdup(aText.c_str());
}

std::string OrAnything(std::string_view aText) {
    return std::string(aText.empty() ? std::string_view(kAnything) : aText);
}

/// A MIME type as it goes out link-protected (DTCP-IP).
std::string LinkProtectedType(const std::string& aMimeType, const char* aHost, unsigned aPort) {
    std::string type(kDTCPType);
    if (aHost != nullptr && *aHost != '\0') {
        type += std::string(";DTCP1HOST=") + aHost + ";DTCP1PORT=" + std::to_string(aPort);
    }
    type += ";CONTENTFORMAT=\"";
    for (const char character : aMimeType) {
        if (character == '"' || character == '\\') {
            type += '\\';
        }
        type += character;
    }
    return type + '"';
}

} // namespace

struct ezDLNAProtocolInfo {
    std::string mProtocol = "http-get";
    std::string mNetwork = kAnything;
    std::string mMimeType = kAnything;
    ezDLNAField mField;
};

ezDLNAProtocolInfo* ezDLNAProtocolInfo_New(const char* aText, std::size_t aLength, int /*aReserved*/) {
    ezDLNAProtocolInfo* info = new ezDLNAProtocolInfo;
    // A length promises no more than that many bytes, and a NUL ends what every text function can hand out.
    const std::string_view text =
        aText != nullptr && aLength != 0 ? std::string_view(aText, strnlen(aText, aLength)) : ViewOf(aText);
    if (text.empty()) {
        return info;
    }
    Splitter parts(text);
    info->mProtocol = OrAnything(parts.Next(':'));
    info->mNetwork = OrAnything(parts.Next(':'));
    info->mMimeType = OrAnything(parts.Next(':'));
    info->mField = ezDLNAField(parts.GetRest());
    return info;
}

ezDLNAProtocolInfo* ezDLNAProtocolInfo_NewOf(const char* aMimeType, ezDLNAField aField) {
    ezDLNAProtocolInfo* info = new ezDLNAProtocolInfo;
    info->mMimeType = OrAnything(ViewOf(aMimeType));
    info->mField = std::move(aField);
    return info;
}

void ezDLNAProtocolInfo_Delete(ezDLNAProtocolInfo* anInfo) {
    delete anInfo;
}

char* ezDLNAProtocolInfo_GetStr(const ezDLNAProtocolInfo* anInfo) {
    if (anInfo == nullptr) {
        return nullptr;
    }
    std::string text = anInfo->mProtocol + ":" + anInfo->mNetwork + ":" + anInfo->mMimeType + ":";
    return ezStrdup(text.append(anInfo->mField.GetText().View()).c_str());
}

char* ezDLNAProtocolInfo_Get4thFieldStr(const ezDLNAProtocolInfo* anInfo) {
    return anInfo != nullptr ? Allocated(anInfo->mField.GetText()) : nullptr;
}

const ezDLNAField* ezDLNAProtocolInfo_GetField(const ezDLNAProtocolInfo* anInfo) {
    return anInfo != nullptr ? &anInfo->mField : nullptr;
}

ezDLNAField* ezDLNAProtocolInfo_GetField(ezDLNAProtocolInfo* anInfo) {
    return anInfo != nullptr ? &anInfo->mField : nullptr;
}

const char* ezDLNAProtocolInfo_GetMimeType(const ezDLNAProtocolInfo* anInfo) {
    return anInfo != nullptr ? anInfo->mMimeType.c_str() : "";
}

void ezDLNAProtocolInfo_SetMimeType(ezDLNAProtocolInfo* anInfo, const char* aMimeType) {
    if (anInfo != nullptr) {
        anInfo->mMimeType = OrAnything(ViewOf(aMimeType));
    }
}

const char* ezDLNAProtocolInfo_GetProfile(const ezDLNAProtocolInfo* anInfo) {
    return anInfo != nullptr ? anInfo->mField.GetProfile().c_str() : "";
}

void ezDLNAProtocolInfo_SetProfile(ezDLNAProtocolInfo* anInfo, const char* aProfile) {
    if (anInfo != nullptr) {
        anInfo->mField.SetProfile(aProfile);
    }
}

void ezDLNAProtocolInfo_SetPlaySpeeds(ezDLNAProtocolInfo* anInfo, const char* aSpeeds, int /*aReserved*/) {
    if (anInfo != nullptr) {
        anInfo->mField.SetPlaySpeeds(ViewOf(aSpeeds));
    }
}

char* ezDLNAProtocolInfo_GetPlaySpeedStr(const ezDLNAProtocolInfo* anInfo, int afEscape) {
    if (anInfo == nullptr) {
        return nullptr;
    }
    const ezCString text = anInfo->mField.GetPlaySpeeds();
    return Allocated(afEscape != 0 ? text.Replace(",", "\\,", true) : text);
}

void ezDLNAProtocolInfo_RemovePlaySpeedSupport(ezDLNAProtocolInfo* anInfo) {
    if (anInfo != nullptr) {
        anInfo->mField.RemovePlaySpeeds();
    }
}

void ezDLNAProtocolInfo_Set4thFieldValue(ezDLNAProtocolInfo* anInfo, const char* aName, const char* aValue) {
    if (anInfo != nullptr) {
        anInfo->mField.Set(ViewOf(aName), ViewOf(aValue));
    }
}

void ezDLNAProtocolInfo_Remove4thFieldByName(ezDLNAProtocolInfo* anInfo, const char* aName) {
    if (anInfo != nullptr) {
        anInfo->mField.Remove(ViewOf(aName));
    }
}

void ezDLNAProtocolInfo_SetDLNAVersion(ezDLNAProtocolInfo* anInfo, int aMajor, int aMinor,
                                       int /*aReserved*/) {
    if (anInfo != nullptr && (aMajor > 1 || (aMajor == 1 && aMinor >= 5))) {
        anInfo->mField.AddFlags(kezDLNAFlag_DLNAVersion15);
    }
}

uint32 ezDLNAProtocolInfo_GetFlags(const ezDLNAProtocolInfo* anInfo) {
    return anInfo != nullptr ? anInfo->mField.GetFlags() : 0;
}

bool ezDLNAProtocolInfo_GetHTTPStalling(const ezDLNAProtocolInfo* anInfo) {
    return (ezDLNAProtocolInfo_GetFlags(anInfo) & kezDLNAFlag_HTTPStalling) != 0;
}

void ezDLNAProtocolInfo_SetHTTPStalling(ezDLNAProtocolInfo* anInfo, bool afStalling) {
    if (anInfo != nullptr) {
        anInfo->mField.SetHTTPStalling(afStalling);
    }
}

bool ezDLNAProtocolInfo_GetByteBasedSeek(const ezDLNAProtocolInfo* anInfo) {
    return anInfo != nullptr && anInfo->mField.GetByteSeek();
}

void ezDLNAProtocolInfo_SetByteBasedSeek(ezDLNAProtocolInfo* anInfo, bool afSeek) {
    if (anInfo != nullptr) {
        anInfo->mField.SetByteSeek(afSeek);
    }
}

bool ezDLNAProtocolInfo_GetTimeBasedSeek(const ezDLNAProtocolInfo* anInfo) {
    return anInfo != nullptr && anInfo->mField.GetTimeSeek();
}

void ezDLNAProtocolInfo_SetTimeBasedSeek(ezDLNAProtocolInfo* anInfo, bool afSeek) {
    if (anInfo != nullptr) {
        anInfo->mField.SetTimeSeek(afSeek);
    }
}

void ezDLNAProtocolInfo_Merge(ezDLNAProtocolInfo* anInfo, const ezDLNAProtocolInfo* anOther) {
    if (anInfo == nullptr || anOther == nullptr) {
        return;
    }
    if (anInfo->mMimeType == kAnything) {
        anInfo->mMimeType = anOther->mMimeType;
    }
    anInfo->mField.Merge(anOther->mField);
}

void ezDLNAProtocolInfo_MergePlaySpeeds(ezDLNAProtocolInfo* anInfo, const char* aSpeeds) {
    if (anInfo != nullptr) {
        anInfo->mField.AddPlaySpeeds(ViewOf(aSpeeds));
    }
}

void ezDLNAProtocolInfo_MergeWithMediaMapper(ezDLNAProtocolInfo* anInfo,
                                             const ezDLNAProtocolInfo* aTableInfo) {
    if (anInfo != nullptr && aTableInfo != nullptr) {
        anInfo->mField.MergeWithMediaMapper(aTableInfo->mField);
    }
}

void ezDLNAProtocolInfo_SetDTCPIP(ezDLNAProtocolInfo* anInfo, const char* aHost, unsigned aPort,
                                  int /*aReserved*/) {
    if (anInfo == nullptr) {
        return;
    }
    const std::string_view whole(anInfo->mMimeType);
    if (!ezIsEqualNoCase(ezTrimmed(whole.substr(0, whole.find(';'))), kDTCPType)) {
        anInfo->mMimeType = LinkProtectedType(anInfo->mMimeType, aHost, aPort);
    }
    anInfo->mField.SetLinkProtected();
}

char* ezDLNAProtocolInfo_S_Get4thFieldValueFromStr(const char* a4thField, const char* aName) {
    const std::optional<std::string_view> value = ezDLNAField::ValueIn(ViewOf(a4thField), ViewOf(aName));
    return value ? Allocated(ezCString(*value)) : nullptr;
}
