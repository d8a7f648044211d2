// The door: a protocolInfo. The input is its text; what follows the first line end in it is a second
// protocolInfo that is merged in, then a parameter's name, then a value.

#include "fuzz/support/Check.h"

#include "ezPlatform/base/Owned.h"
#include "ezPlatform/dlna/ProtocolInfo.h"
#include "ezPlatform/text/CString.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace {

using Info = ezOwned<ezDLNAProtocolInfo_Delete>;

Info Parsed(std::string_view aText) {
    return Info(ezDLNAProtocolInfo_New(aText.data(), aText.size(), 0));
}

std::string Taken(char* aText) {
    FuzzCheck(aText != nullptr);
    return std::string(ezCString::FromAllocatedString(aText).View());
}

std::string Text(const Info& anInfo) {
    return Taken(ezDLNAProtocolInfo_GetStr(anInfo.get()));
}

std::string Field(const Info& anInfo) {
    return Taken(ezDLNAProtocolInfo_Get4thFieldStr(anInfo.get()));
}

std::string Speeds(const Info& anInfo) {
    return Taken(ezDLNAProtocolInfo_GetPlaySpeedStr(anInfo.get(), 0));
}

/// The value of a parameter in the text; "none" when it is absent.
std::string Value(const Info& anInfo, const char* aName) {
    char* value = ezDLNAProtocolInfo_S_Get4thFieldValueFromStr(Field(anInfo).c_str(), aName);
    return value != nullptr ? Taken(value) : "none";
}

bool HasAny(std::string_view aText, std::string_view aCharacters) {
    return aText.find_first_of(aCharacters) != std::string_view::npos;
}

/// Whether quotes, which decide where a protocolInfo is separated, play a part.
bool IsQuoteless(std::string_view aText) {
    return !HasAny(aText, "\"\\");
}

bool IsPlain(std::string_view aText) {
    return IsQuoteless(aText) && !HasAny(aText, ";=:") && ezTrimmed(aText) == aText;
}

/// What is written is read back as it was written.
void CheckFixedPoint(const Info& anInfo) {
    const std::string text = Text(anInfo);
    FuzzCheck(Text(Parsed(text)) == text);
}

/// The text states what the object answers.
void CheckText(const Info& anInfo) {
    const std::string text = Text(anInfo);
    const std::string field = Field(anInfo);
    FuzzCheck(text.size() > field.size() && text.substr(text.size() - field.size()) == field);
    FuzzCheck(text[text.size() - field.size() - 1] == ':');
    FuzzCheck(!field.empty());

    const std::string profile = ezDLNAProtocolInfo_GetProfile(anInfo.get());
    const std::string speeds = Speeds(anInfo);
    FuzzCheck(Value(anInfo, "DLNA.ORG_PN") == (profile.empty() ? "none" : profile));
    FuzzCheck(Value(anInfo, "DLNA.ORG_PS") == (speeds.empty() ? "none" : speeds));

    const bool fTime = ezDLNAProtocolInfo_GetTimeBasedSeek(anInfo.get());
    const bool fByte = ezDLNAProtocolInfo_GetByteBasedSeek(anInfo.get());
    const std::string operations = Value(anInfo, "DLNA.ORG_OP");
    FuzzCheck(operations == std::string(fTime ? "1" : "0") + (fByte ? "1" : "0") ||
              (operations == "none" && !fTime && !fByte));
    const uint32 flags = ezDLNAProtocolInfo_GetFlags(anInfo.get());
    const std::string word(ezCString::Format("%08lX", static_cast<unsigned long>(flags)).View());
    const std::string stated = Value(anInfo, "DLNA.ORG_FLAGS");
    FuzzCheck(stated == word + std::string(24, '0') || (stated == "none" && flags == 0));

    // In the mandatory order.
    std::size_t last = 0;
    for (const char* name : {"DLNA.ORG_PN", "DLNA.ORG_OP", "DLNA.ORG_PS", "DLNA.ORG_CI", "DLNA.ORG_FLAGS"}) {
        if (Value(anInfo, name) != "none" && IsQuoteless(field)) {
            const std::size_t place = (";" + field).find(std::string(";") + name + "=");
            FuzzCheck(place != std::string::npos && place >= last);
            last = place;
        }
    }
}

void CheckSpeedList(const std::string& aText, const std::string& aList) {
    const Info info = Parsed(aText);
    ezDLNAProtocolInfo_SetPlaySpeeds(info.get(), aList.c_str(), 0);
    const std::string speeds = Speeds(info);
    FuzzCheck(("," + speeds + ",").find(",1,") == std::string::npos);
    FuzzCheck(ezCString(speeds.c_str()).Replace(",", "\\,", true) ==
              Taken(ezDLNAProtocolInfo_GetPlaySpeedStr(info.get(), 1)).c_str());
    CheckText(info);
    ezDLNAProtocolInfo_MergePlaySpeeds(info.get(), aList.c_str());
    FuzzCheck(Speeds(info) == speeds);
    ezDLNAProtocolInfo_SetPlaySpeeds(info.get(), speeds.c_str(), 0);
    FuzzCheck(Speeds(info) == speeds);
    ezDLNAProtocolInfo_RemovePlaySpeedSupport(info.get());
    FuzzCheck(Speeds(info).empty());
    CheckText(info);
    CheckFixedPoint(info);
    ezDLNAProtocolInfo_MergePlaySpeeds(info.get(), aList.c_str());
    FuzzCheck(Speeds(info) == speeds);
}

void CheckProfile(const std::string& aText, const std::string& aProfile) {
    const Info info = Parsed(aText);
    ezDLNAProtocolInfo_SetProfile(info.get(), aProfile.c_str());
    FuzzCheck(aProfile.c_str() == std::string(ezDLNAProtocolInfo_GetProfile(info.get())));
    if (IsPlain(aProfile)) {
        CheckText(info);
        CheckFixedPoint(info);
    }
    ezDLNAProtocolInfo_SetProfile(info.get(), nullptr);
    FuzzCheck(*ezDLNAProtocolInfo_GetProfile(info.get()) == '\0');
    CheckText(info);
    CheckFixedPoint(info);
}

void CheckParameter(const std::string& aText, const std::string& aName, const std::string& aValue) {
    const Info info = Parsed(aText);
    ezDLNAProtocolInfo_Set4thFieldValue(info.get(), aName.c_str(), aValue.c_str());
    const std::string text = Text(info);
    const bool fPlain = IsPlain(aName) && IsPlain(aValue) && IsQuoteless(aText);
    if (fPlain && !aName.empty() && !ezCString(aName.c_str()).StartsWith("DLNA.ORG_")) {
        FuzzCheck(Value(info, aName.c_str()) == aValue);
    }
    if (fPlain) {
        CheckText(info);
        CheckFixedPoint(info);
    }
    ezDLNAProtocolInfo_Set4thFieldValue(info.get(), aName.c_str(), aValue.c_str());
    FuzzCheck(Text(info) == text);
    ezDLNAProtocolInfo_Remove4thFieldByName(info.get(), aName.c_str());
    const std::string without = Text(info);
    if (IsQuoteless(aText)) {
        FuzzCheck(aName.empty() || Value(info, aName.c_str()) == "none");
    }
    ezDLNAProtocolInfo_Remove4thFieldByName(info.get(), aName.c_str());
    FuzzCheck(Text(info) == without);
}

struct Switch {
    bool (*mGet)(const ezDLNAProtocolInfo*);
    void (*mSet)(ezDLNAProtocolInfo*, bool);
    const char* mName; ///< the parameter that states it
};

constexpr std::array<Switch, 3> kSwitches = {{
    {ezDLNAProtocolInfo_GetHTTPStalling, ezDLNAProtocolInfo_SetHTTPStalling, "DLNA.ORG_FLAGS"},
    {ezDLNAProtocolInfo_GetByteBasedSeek, ezDLNAProtocolInfo_SetByteBasedSeek, "DLNA.ORG_OP"},
    {ezDLNAProtocolInfo_GetTimeBasedSeek, ezDLNAProtocolInfo_SetTimeBasedSeek, "DLNA.ORG_OP"},
}};

void CheckSwitches(const std::string& aText) {
    for (const Switch& own : kSwitches) {
        const Info info = Parsed(aText);
        const std::string before = Text(info);
        const bool fStated = Value(info, own.mName) != "none";
        own.mSet(info.get(), own.mGet(info.get()));
        FuzzCheck(Text(info) == before);
        own.mSet(info.get(), false);
        FuzzCheck(!own.mGet(info.get()) && (fStated || Text(info) == before));
        std::array<bool, 3> others = {};
        for (std::size_t i = 0; i < others.size(); ++i) {
            others[i] = kSwitches[i].mGet(info.get());
        }
        own.mSet(info.get(), true);
        for (std::size_t i = 0; i < others.size(); ++i) {
            FuzzCheck(kSwitches[i].mGet(info.get()) == (others[i] || kSwitches[i].mGet == own.mGet));
        }
        CheckText(info);
        CheckFixedPoint(info);
    }
    const Info info = Parsed(aText);
    const std::string before = Text(info);
    const uint32 flags = ezDLNAProtocolInfo_GetFlags(info.get());
    ezDLNAProtocolInfo_SetDLNAVersion(info.get(), 1, 4, 0);
    ezDLNAProtocolInfo_SetDLNAVersion(info.get(), 0, 9, 0);
    FuzzCheck(Text(info) == before);
    ezDLNAProtocolInfo_SetDLNAVersion(info.get(), 1, 5, 0);
    FuzzCheck(ezDLNAProtocolInfo_GetFlags(info.get()) == (flags | kezDLNAFlag_DLNAVersion15));
    CheckText(info);
    CheckFixedPoint(info);
}

void CheckMerges(const std::string& aText, const std::string& anOtherText) {
    const Info info = Parsed(aText);
    const Info other = Parsed(anOtherText);
    const std::string before = Text(info);
    const std::string otherBefore = Text(other);
    ezDLNAProtocolInfo_Merge(info.get(), Parsed(aText).get());
    ezDLNAProtocolInfo_Merge(info.get(), nullptr);
    FuzzCheck(Text(info) == before);

    const uint32 flags = ezDLNAProtocolInfo_GetFlags(info.get()) | ezDLNAProtocolInfo_GetFlags(other.get());
    std::array<bool, 3> united = {};
    for (std::size_t i = 0; i < united.size(); ++i) {
        united[i] = kSwitches[i].mGet(info.get()) || kSwitches[i].mGet(other.get());
    }
    ezDLNAProtocolInfo_Merge(info.get(), other.get());
    FuzzCheck(ezDLNAProtocolInfo_GetFlags(info.get()) == flags);
    for (std::size_t i = 0; i < united.size(); ++i) {
        FuzzCheck(kSwitches[i].mGet(info.get()) == united[i]);
    }
    const std::string merged = Text(info);
    ezDLNAProtocolInfo_Merge(info.get(), other.get());
    FuzzCheck(Text(info) == merged && Text(other) == otherBefore);
    // Quotes of both can pair up to what neither means.
    if (IsQuoteless(aText) && IsQuoteless(anOtherText)) {
        CheckText(info);
        CheckFixedPoint(info);
    }

    const Info mapped = Parsed(aText);
    const uint32 own = ezDLNAProtocolInfo_GetFlags(mapped.get());
    ezDLNAProtocolInfo_MergeWithMediaMapper(mapped.get(), nullptr);
    FuzzCheck(Text(mapped) == before);
    ezDLNAProtocolInfo_MergeWithMediaMapper(mapped.get(), other.get());
    FuzzCheck(((ezDLNAProtocolInfo_GetFlags(mapped.get()) ^ own) & ~kezDLNAFlag_HTTPStalling) == 0);
    FuzzCheck(Speeds(other).empty() || Speeds(mapped) == Speeds(other));
    const std::string adjusted = Text(mapped);
    ezDLNAProtocolInfo_MergeWithMediaMapper(mapped.get(), other.get());
    FuzzCheck(Text(mapped) == adjusted);
    CheckText(mapped);
    CheckFixedPoint(mapped);
}

void CheckLinkProtection(const std::string& aText, const char* aHost) {
    const Info info = Parsed(aText);
    const bool fFlags = Value(info, "DLNA.ORG_FLAGS") != "none";
    const std::string profile = ezDLNAProtocolInfo_GetProfile(info.get());
    const std::string before = Text(info);
    const std::size_t after =
        Field(info).size() + 1 + ezCString(ezDLNAProtocolInfo_GetMimeType(info.get())).GetLength();
    const std::string transport = before.substr(0, before.size() - after);
    ezDLNAProtocolInfo_SetDTCPIP(info.get(), aHost, 8080, 1);
    const std::string once = Text(info);
    ezDLNAProtocolInfo_SetDTCPIP(info.get(), "another.host", 1, 1);
    FuzzCheck(Text(info) == once);

    const ezCString type = ezDLNAProtocolInfo_GetMimeType(info.get());
    FuzzCheck(type.BeforeFirst(';').TrimLeftRight().CompareNoCase("application/x-dtcp1") == 0);
    const ezCString protectedProfile = ezDLNAProtocolInfo_GetProfile(info.get());
    FuzzCheck(protectedProfile.IsEmpty() == profile.empty());
    FuzzCheck(profile.empty() || protectedProfile.StartsWith("DTCP_"));
    FuzzCheck(((ezDLNAProtocolInfo_GetFlags(info.get()) & kezDLNAFlag_LinkProtected) != 0) == fFlags);
    // A quote in protocol or network, where none belongs, would pair up with those that are written here.
    if (IsQuoteless(transport)) {
        CheckText(info);
        CheckFixedPoint(info);
    }
}

void CheckNull() {
    FuzzCheck(ezDLNAProtocolInfo_GetStr(nullptr) == nullptr);
    FuzzCheck(ezDLNAProtocolInfo_Get4thFieldStr(nullptr) == nullptr);
    FuzzCheck(Text(Info(ezDLNAProtocolInfo_New(nullptr, 0, 0))) == "http-get:*:*:*");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    const FuzzHouse house;
    std::string input(aSize, '\0');
    std::copy_n(aData, aSize, input.begin());
    std::array<std::string, 4> pieces;
    std::string_view rest = input;
    for (std::string& piece : pieces) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        piece = rest.substr(0, end);
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    for (const std::size_t i : {2U, 3U}) {
        pieces[i] = pieces[i].c_str(); // given as C strings
    }
    const std::string& text = pieces[0];

    const Info info = Parsed(text);
    CheckText(info);
    CheckFixedPoint(info);
    // A text without an end of its own: just its bytes are read.
    const std::unique_ptr<char[]> bytes(new char[text.size()]);
    std::copy(text.begin(), text.end(), bytes.get());
    if (!text.empty()) {
        FuzzCheck(Text(Parsed(std::string_view(bytes.get(), text.size()))) == Text(info));
    }
    CheckProfile(text, pieces[3]);
    CheckSpeedList(text, pieces[3]);
    CheckParameter(text, pieces[2], pieces[3]);
    CheckSwitches(text);
    CheckMerges(text, pieces[1]);
    CheckMerges(pieces[1], text);
    CheckLinkProtection(text, nullptr);
    CheckLinkProtection(text, "192.168.1.2");
    CheckNull();
    return 0;
}
