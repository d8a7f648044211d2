#include "ezPlatform/dlna/ProtocolInfo.h"

#include "ezPlatform/base/Memory.h"
#include "ezPlatform/containers/DistinctTexts.h"
#include "ezPlatform/text/CString.h"
#include "ezPlatform/text/StringList.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

namespace {

constexpr std::string_view kProfileName = "DLNA.ORG_PN";
constexpr std::string_view kOperationsName = "DLNA.ORG_OP";
constexpr std::string_view kPlaySpeedsName = "DLNA.ORG_PS";
constexpr std::string_view kConversionName = "DLNA.ORG_CI";
constexpr std::string_view kFlagsName = "DLNA.ORG_FLAGS";

constexpr std::size_t kFlagDigits = 8;
constexpr const char* kReservedFlags = "000000000000000000000000";

constexpr std::string_view kDTCPType = "application/x-dtcp1";
constexpr std::string_view kDTCPPrefix = "DTCP_";

/// DLNA.ORG_OP.
struct Operations {
    bool mfTimeSeek = false;
    bool mfByteSeek = false;
};

/// A play speed as a fraction in lowest terms.
struct Speed {
    bool mfNegative;
    std::uint64_t mNumerator;
    std::uint64_t mDenominator;

    bool IsNormal() const { return !mfNegative && mNumerator == 1 && mDenominator == 1; }
    bool operator<(const Speed& anOther) const {
        return std::tie(mfNegative, mNumerator, mDenominator) <
               std::tie(anOther.mfNegative, anOther.mNumerator, anOther.mDenominator);
    }
};

std::uint64_t GreatestCommonDivisor(std::uint64_t aLeft, std::uint64_t aRight) {
    while (aRight != 0) {
        const std::uint64_t rest = aLeft % aRight;
        aLeft = aRight;
        aRight = rest;
    }
    return aLeft;
}

std::optional<Speed> ReadSpeed(std::string_view aText) {
    Speed speed = {!aText.empty() && aText.front() == '-', 0, 1};
    if (speed.mfNegative) {
        aText.remove_prefix(1);
    }
    const std::size_t slash = aText.find('/');
    if (!ezReadDecimal(aText.substr(0, slash), &speed.mNumerator) || speed.mNumerator == 0) {
        return std::nullopt;
    }
    if (slash != std::string_view::npos &&
        (!ezReadDecimal(aText.substr(slash + 1), &speed.mDenominator) || speed.mDenominator == 0)) {
        return std::nullopt;
    }
    const std::uint64_t divisor = GreatestCommonDivisor(speed.mNumerator, speed.mDenominator);
    speed.mNumerator /= divisor;
    speed.mDenominator /= divisor;
    return speed;
}

/// A text that is taken apart at separators outside quotes. A quote that is never closed is a character like
/// any other.
class Splitter {
public:
    explicit Splitter(std::string_view aText) : mRest(aText) {}

    std::string_view GetRest() const { return mRest; }
    /// The text up to the next separator; takes it and the separator off the rest.
    std::string_view Next(char aSeparator);

private:
    std::size_t BehindQuoted(std::size_t aQuote);

    std::string_view mRest;
    bool mfQuotesClose = true; ///< behind a quote that is never closed there is none that is
};

/// Where the quoted text ends that begins at aQuote; just behind the quote when it is never closed.
std::size_t Splitter::BehindQuoted(std::size_t aQuote) {
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
        end = mRest[end] == '"' ? BehindQuoted(end) : end + 1;
    }
    const std::string_view part = mRest.substr(0, end);
    mRest.remove_prefix(std::min(end + 1, mRest.size()));
    return part;
}

/// The 4th field up to the next ";", which is taken off with it. A quote has no meaning there: if it had,
/// parameters written in another order could be read as others.
std::string_view TakeParameter(std::string_view& aRest) {
    const std::size_t end = std::min(aRest.find(';'), aRest.size());
    const std::string_view parameter = aRest.substr(0, end);
    aRest.remove_prefix(std::min(end + 1, aRest.size()));
    return parameter;
}

std::string_view ViewOf(const char* aText) {
    return aText != nullptr ? std::string_view(aText) : std::string_view();
}

char* Allocated(const std::string& aText) {
    return ezStrdup(aText.c_str());
}

} // namespace

struct ezDLNAProtocolInfo {
    std::string mProtocol = "http-get";
    std::string mNetwork = "*";
    std::string mMimeType = "*";

    std::string mProfile; ///< empty when not stated
    std::optional<Operations> mOperations;
    std::vector<std::pair<std::string, Speed>> mSpeeds;
    std::optional<bool> mfConverted;
    std::optional<uint32> mFlags;
    std::vector<std::pair<std::string, std::string>> mOthers;

    void AddSpeeds(std::string_view aList);
    /// False for a name that has no member of its own.
    bool SetKnown(std::string_view aName, std::string_view aValue);
    void Set(std::string_view aName, std::string_view aValue);
    void Remove(std::string_view aName);
    void Read4thField(std::string_view aText);
    /// Those whose names are not there yet.
    void AddOthers(const std::vector<std::pair<std::string, std::string>>& anOthers);

    std::string SpeedText() const;
    std::string FourthField() const;
};

void ezDLNAProtocolInfo::AddSpeeds(std::string_view aList) {
    std::set<Speed> known;
    for (const auto& speed : mSpeeds) {
        known.insert(speed.second);
    }
    const ezCSVStringList list = ezCSVStringList::FromText(ezCString(aList).Replace("\\,", ",", true));
    for (std::size_t i = 0; i < list.GetCount(); ++i) {
        const ezCString text = list.GetAt(i).TrimLeftRight();
        const std::optional<Speed> speed = ReadSpeed(text.View());
        if (speed && !speed->IsNormal() && known.insert(*speed).second) {
            mSpeeds.emplace_back(std::string(text.View()), *speed);
        }
    }
}

bool ezDLNAProtocolInfo::SetKnown(std::string_view aName, std::string_view aValue) {
    const auto isBit = [](char aCharacter) { return aCharacter == '0' || aCharacter == '1'; };
    if (aName == kProfileName) {
        mProfile = aValue;
    } else if (aName == kOperationsName) {
        mOperations.reset();
        if (aValue.size() == 2 && isBit(aValue[0]) && isBit(aValue[1])) {
            mOperations = Operations{aValue[0] == '1', aValue[1] == '1'};
        }
    } else if (aName == kPlaySpeedsName) {
        mSpeeds.clear();
        AddSpeeds(aValue);
    } else if (aName == kConversionName) {
        mfConverted.reset();
        if (aValue.size() == 1 && isBit(aValue[0])) {
            mfConverted = aValue[0] == '1';
        }
    } else if (aName == kFlagsName) {
        mFlags.reset();
        if (aValue.size() >= kFlagDigits &&
            aValue.find_first_not_of("0123456789abcdefABCDEF") == std::string_view::npos) {
            mFlags = ezHexWord(aValue.substr(0, kFlagDigits));
        }
    } else {
        return false;
    }
    return true;
}

void ezDLNAProtocolInfo::Set(std::string_view aName, std::string_view aValue) {
    if (aName.empty() || SetKnown(aName, aValue)) {
        return;
    }
    const auto found = std::find_if(mOthers.begin(), mOthers.end(),
                                    [&](const auto& anOther) { return anOther.first == aName; });
    if (found != mOthers.end()) {
        found->second = aValue;
    } else {
        mOthers.emplace_back(aName, aValue);
    }
}

void ezDLNAProtocolInfo::Remove(std::string_view aName) {
    SetKnown(aName, "");
    mOthers.erase(std::remove_if(mOthers.begin(), mOthers.end(),
                                 [&](const auto& anOther) { return anOther.first == aName; }),
                  mOthers.end());
}

void ezDLNAProtocolInfo::Read4thField(std::string_view aText) {
    ezDistinctTexts met;
    while (!aText.empty()) {
        const std::string_view parameter = TakeParameter(aText);
        const std::size_t equals = parameter.find('=');
        const std::string_view name = ezTrimmed(parameter.substr(0, equals));
        if (equals == std::string_view::npos || name.empty() || !met.Add(name)) {
            continue; // "*", an empty parameter, or a second one of the same name
        }
        const std::string_view value = parameter.substr(equals + 1);
        if (!SetKnown(name, value)) {
            mOthers.emplace_back(name, value);
        }
    }
}

void ezDLNAProtocolInfo::AddOthers(const std::vector<std::pair<std::string, std::string>>& anOthers) {
    ezDistinctTexts known;
    for (const auto& own : mOthers) {
        known.Add(own.first);
    }
    std::vector<std::pair<std::string, std::string>> added;
    for (const auto& other : anOthers) {
        if (known.Add(other.first)) {
            added.push_back(other);
        }
    }
    mOthers.insert(mOthers.end(), added.begin(), added.end());
}

std::string ezDLNAProtocolInfo::SpeedText() const {
    std::string text;
    for (const auto& speed : mSpeeds) {
        text += text.empty() ? "" : ",";
        text += speed.first;
    }
    return text;
}

std::string ezDLNAProtocolInfo::FourthField() const {
    std::string text;
    const auto append = [&](std::string_view aName, std::string_view aValue) {
        text += text.empty() ? "" : ";";
        text += aName;
        text += '=';
        text += aValue;
    };
    if (!mProfile.empty()) {
        append(kProfileName, mProfile);
    }
    if (mOperations) {
        append(kOperationsName,
               std::string(mOperations->mfTimeSeek ? "1" : "0") + (mOperations->mfByteSeek ? "1" : "0"));
    }
    if (!mSpeeds.empty()) {
        append(kPlaySpeedsName, SpeedText());
    }
    if (mfConverted) {
        append(kConversionName, *mfConverted ? "1" : "0");
    }
    if (mFlags) {
        append(kFlagsName,
               (ezCString::Format("%08lX", static_cast<unsigned long>(*mFlags)) + kReservedFlags).View());
    }
    for (const auto& [name, value] : mOthers) {
        append(name, value);
    }
    return text.empty() ? "*" : text;
}

ezDLNAProtocolInfo* ezDLNAProtocolInfo_New(const char* aText, std::size_t aLength, int /*aReserved*/) {
    ezDLNAProtocolInfo* info = new ezDLNAProtocolInfo;
    // A length promises no more than that many bytes, and a NUL ends what every text function can hand out.
    const std::string_view text =
        aText != nullptr && aLength != 0 ? std::string_view(aText, strnlen(aText, aLength)) : ViewOf(aText);
    if (text.empty()) {
        return info;
    }
    Splitter parts(text);
    const auto part = [&]() {
        const std::string_view field = parts.Next(':');
        return field.empty() ? std::string("*") : std::string(field);
    };
    info->mProtocol = part();
    info->mNetwork = part();
    info->mMimeType = part();
    info->Read4thField(parts.GetRest());
    return info;
}

void ezDLNAProtocolInfo_Delete(ezDLNAProtocolInfo* anInfo) {
    delete anInfo;
}

char* ezDLNAProtocolInfo_GetStr(const ezDLNAProtocolInfo* anInfo) {
    if (anInfo == nullptr) {
        return nullptr;
    }
    return Allocated(anInfo->mProtocol + ":" + anInfo->mNetwork + ":" + anInfo->mMimeType + ":" +
                     anInfo->FourthField());
}

char* ezDLNAProtocolInfo_Get4thFieldStr(const ezDLNAProtocolInfo* anInfo) {
    return anInfo != nullptr ? Allocated(anInfo->FourthField()) : nullptr;
}

const char* ezDLNAProtocolInfo_GetMimeType(const ezDLNAProtocolInfo* anInfo) {
    return anInfo != nullptr ? anInfo->mMimeType.c_str() : "";
}

void ezDLNAProtocolInfo_SetMimeType(ezDLNAProtocolInfo* anInfo, const char* aMimeType) {
    if (anInfo != nullptr) {
        const std::string_view mimeType = ViewOf(aMimeType);
        anInfo->mMimeType = mimeType.empty() ? std::string_view("*") : mimeType;
    }
}

const char* ezDLNAProtocolInfo_GetProfile(const ezDLNAProtocolInfo* anInfo) {
    return anInfo != nullptr ? anInfo->mProfile.c_str() : "";
}

void ezDLNAProtocolInfo_SetProfile(ezDLNAProtocolInfo* anInfo, const char* aProfile) {
    if (anInfo != nullptr) {
        anInfo->mProfile = ViewOf(aProfile);
    }
}

void ezDLNAProtocolInfo_SetPlaySpeeds(ezDLNAProtocolInfo* anInfo, const char* aSpeeds, int /*aReserved*/) {
    if (anInfo != nullptr) {
        anInfo->Set(kPlaySpeedsName, ViewOf(aSpeeds));
    }
}

char* ezDLNAProtocolInfo_GetPlaySpeedStr(const ezDLNAProtocolInfo* anInfo, int afEscape) {
    if (anInfo == nullptr) {
        return nullptr;
    }
    const std::string text = anInfo->SpeedText();
    return afEscape != 0 ? ezStrdup(ezCString(std::string_view(text)).Replace(",", "\\,", true).c_str())
                         : Allocated(text);
}

void ezDLNAProtocolInfo_RemovePlaySpeedSupport(ezDLNAProtocolInfo* anInfo) {
    if (anInfo != nullptr) {
        anInfo->mSpeeds.clear();
    }
}

void ezDLNAProtocolInfo_Set4thFieldValue(ezDLNAProtocolInfo* anInfo, const char* aName, const char* aValue) {
    if (anInfo != nullptr) {
        anInfo->Set(ViewOf(aName), ViewOf(aValue));
    }
}

void ezDLNAProtocolInfo_Remove4thFieldByName(ezDLNAProtocolInfo* anInfo, const char* aName) {
    if (anInfo != nullptr) {
        anInfo->Remove(ViewOf(aName));
    }
}

void ezDLNAProtocolInfo_SetDLNAVersion(ezDLNAProtocolInfo* anInfo, int aMajor, int aMinor,
                                       int /*aReserved*/) {
    if (anInfo != nullptr && (aMajor > 1 || (aMajor == 1 && aMinor >= 5))) {
        anInfo->mFlags = anInfo->mFlags.value_or(0) | kezDLNAFlag_DLNAVersion15;
    }
}

uint32 ezDLNAProtocolInfo_GetFlags(const ezDLNAProtocolInfo* anInfo) {
    return anInfo != nullptr ? anInfo->mFlags.value_or(0) : 0;
}

bool ezDLNAProtocolInfo_GetHTTPStalling(const ezDLNAProtocolInfo* anInfo) {
    return (ezDLNAProtocolInfo_GetFlags(anInfo) & kezDLNAFlag_HTTPStalling) != 0;
}

void ezDLNAProtocolInfo_SetHTTPStalling(ezDLNAProtocolInfo* anInfo, bool afStalling) {
    if (anInfo == nullptr || (!afStalling && !anInfo->mFlags)) {
        return;
    }
    const uint32 others = anInfo->mFlags.value_or(0) & ~kezDLNAFlag_HTTPStalling;
    anInfo->mFlags = others | (afStalling ? kezDLNAFlag_HTTPStalling : 0);
}

bool ezDLNAProtocolInfo_GetByteBasedSeek(const ezDLNAProtocolInfo* anInfo) {
    return anInfo != nullptr && anInfo->mOperations.value_or(Operations()).mfByteSeek;
}

void ezDLNAProtocolInfo_SetByteBasedSeek(ezDLNAProtocolInfo* anInfo, bool afSeek) {
    if (anInfo == nullptr || (!afSeek && !anInfo->mOperations)) {
        return;
    }
    anInfo->mOperations = Operations{anInfo->mOperations.value_or(Operations()).mfTimeSeek, afSeek};
}

bool ezDLNAProtocolInfo_GetTimeBasedSeek(const ezDLNAProtocolInfo* anInfo) {
    return anInfo != nullptr && anInfo->mOperations.value_or(Operations()).mfTimeSeek;
}

void ezDLNAProtocolInfo_SetTimeBasedSeek(ezDLNAProtocolInfo* anInfo, bool afSeek) {
    if (anInfo == nullptr || (!afSeek && !anInfo->mOperations)) {
        return;
    }
    anInfo->mOperations = Operations{afSeek, anInfo->mOperations.value_or(Operations()).mfByteSeek};
}

void ezDLNAProtocolInfo_Merge(ezDLNAProtocolInfo* anInfo, const ezDLNAProtocolInfo* anOther) {
    if (anInfo == nullptr || anOther == nullptr) {
        return;
    }
    if (anInfo->mMimeType == "*") {
        anInfo->mMimeType = anOther->mMimeType;
    }
    if (anInfo->mProfile.empty()) {
        anInfo->mProfile = anOther->mProfile;
    }
    if (anOther->mOperations) {
        const Operations own = anInfo->mOperations.value_or(Operations());
        anInfo->mOperations = Operations{own.mfTimeSeek || anOther->mOperations->mfTimeSeek,
                                         own.mfByteSeek || anOther->mOperations->mfByteSeek};
    }
    anInfo->AddSpeeds(anOther->SpeedText());
    if (anOther->mfConverted) {
        anInfo->mfConverted = anInfo->mfConverted.value_or(false) || *anOther->mfConverted;
    }
    if (anOther->mFlags) {
        anInfo->mFlags = anInfo->mFlags.value_or(0) | *anOther->mFlags;
    }
    anInfo->AddOthers(anOther->mOthers);
}

void ezDLNAProtocolInfo_MergePlaySpeeds(ezDLNAProtocolInfo* anInfo, const char* aSpeeds) {
    if (anInfo != nullptr) {
        anInfo->AddSpeeds(ViewOf(aSpeeds));
    }
}

void ezDLNAProtocolInfo_MergeWithMediaMapper(ezDLNAProtocolInfo* anInfo,
                                             const ezDLNAProtocolInfo* aTableInfo) {
    if (anInfo == nullptr || aTableInfo == nullptr) {
        return;
    }
    if (!aTableInfo->mSpeeds.empty()) {
        anInfo->mSpeeds = aTableInfo->mSpeeds;
    }
    if (aTableInfo->mOperations) {
        anInfo->mOperations = aTableInfo->mOperations;
    }
    // Every line of a table states the version; only what says more than that says something about stalling.
    if ((aTableInfo->mFlags.value_or(0) & ~kezDLNAFlag_DLNAVersion15) != 0) {
        ezDLNAProtocolInfo_SetHTTPStalling(anInfo, ezDLNAProtocolInfo_GetHTTPStalling(aTableInfo));
    }
}

void ezDLNAProtocolInfo_SetDTCPIP(ezDLNAProtocolInfo* anInfo, const char* aHost, unsigned aPort,
                                  int /*aReserved*/) {
    if (anInfo == nullptr) {
        return;
    }
    const std::string_view whole(anInfo->mMimeType);
    if (!ezIsEqualNoCase(ezTrimmed(whole.substr(0, whole.find(';'))), kDTCPType)) {
        std::string quoted;
        for (const char character : anInfo->mMimeType) {
            if (character == '"' || character == '\\') {
                quoted += '\\';
            }
            quoted += character;
        }
        std::string type(kDTCPType);
        if (aHost != nullptr && *aHost != '\0') {
            type += std::string(";DTCP1HOST=") + aHost + ";DTCP1PORT=" + std::to_string(aPort);
        }
        anInfo->mMimeType = type + ";CONTENTFORMAT=\"" + quoted + "\"";
    }
    if (!anInfo->mProfile.empty() &&
        std::string_view(anInfo->mProfile).substr(0, kDTCPPrefix.size()) != kDTCPPrefix) {
        anInfo->mProfile.insert(0, kDTCPPrefix);
    }
    if (anInfo->mFlags) {
        anInfo->mFlags = *anInfo->mFlags | kezDLNAFlag_LinkProtected;
    }
}

char* ezDLNAProtocolInfo_S_Get4thFieldValueFromStr(const char* a4thField, const char* aName) {
    const std::string_view wanted = ViewOf(aName);
    std::string_view rest = ViewOf(a4thField);
    while (!wanted.empty() && !rest.empty()) {
        const std::string_view parameter = TakeParameter(rest);
        const std::size_t equals = parameter.find('=');
        if (equals != std::string_view::npos && ezTrimmed(parameter.substr(0, equals)) == wanted) {
            return Allocated(std::string(parameter.substr(equals + 1)));
        }
    }
    return nullptr;
}
