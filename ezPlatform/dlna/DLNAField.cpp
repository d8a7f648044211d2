#include "ezPlatform/dlna/DLNAField.h"

#include "ezPlatform/containers/DistinctTexts.h"
#include "ezPlatform/text/StringList.h"

#include <algorithm>
#include <array>
#include <set>
#include <tuple>

namespace {

constexpr std::size_t kFlagDigits = 8;
constexpr std::string_view kReservedFlags = "000000000000000000000000";

constexpr std::string_view kDTCPPrefix = "DTCP_";

constexpr const char* kAnything = "*";
constexpr std::size_t kUsualLength = 128;

std::uint64_t GreatestCommonDivisor(std::uint64_t aLeft, std::uint64_t aRight) {
    while (aRight != 0) {
        const std::uint64_t rest = aLeft % aRight;
        aLeft = aRight;
        aRight = rest;
    }
    return aLeft;
}

/// One parameter of a field; without "=" the name is all of it.
struct NextParameter {
    std::string_view mName;
    std::optional<std::string_view> mValue;
};

/// The field up to the next ";", which is taken off with it. A quote has no meaning there: if it had,
/// parameters written in another order could be read as others.
NextParameter TakeParameter(std::string_view& aRest) {
    const std::size_t end = std::min(aRest.find(';'), aRest.size());
    const std::string_view parameter = aRest.substr(0, end);
    aRest.remove_prefix(std::min(end + 1, aRest.size()));
    const std::size_t equals = parameter.find('=');
    NextParameter next = {ezTrimmed(parameter.substr(0, equals)), std::nullopt};
    if (equals != std::string_view::npos) {
        next.mValue = parameter.substr(equals + 1);
    }
    return next;
}

void Append(std::string& aText, std::string_view aName, std::string_view aValue) {
    if (!aText.empty()) {
        aText.push_back(';');
    }
    aText.append(aName).push_back('=');
    aText.append(aValue);
}

/// The value of DLNA.ORG_FLAGS: what is known, and the digits that are reserved.
std::string FlagsText(uint32 aFlags) {
    std::array<char, kFlagDigits> digits = {};
    for (std::size_t i = 0; i < kFlagDigits; ++i) {
        digits[i] = "0123456789ABCDEF"[(aFlags >> (4 * (kFlagDigits - 1 - i))) & 0xF];
    }
    std::string text;
    text.reserve(kFlagDigits + kReservedFlags.size());
    return text.append(digits.data(), digits.size()).append(kReservedFlags);
}

bool IsBit(char aCharacter) {
    return aCharacter == '0' || aCharacter == '1';
}

} // namespace

ezDLNAField::ezDLNAField(std::string_view aText) {
    std::string_view rest = aText.substr(0, aText.find('\0'));
    ezDistinctTexts met;
    while (!rest.empty()) {
        const NextParameter parameter = TakeParameter(rest);
        if (!parameter.mValue || parameter.mName.empty() || !met.Add(parameter.mName)) {
            continue; // "*", an empty parameter, or a second one of the same name
        }
        if (!SetKnown(parameter.mName, *parameter.mValue)) {
            mOthers.emplace_back(parameter.mName, *parameter.mValue);
        }
    }
}

ezDLNAField ezDLNAField::OfProfile(ezCString aProfile) {
    ezDLNAField field;
    field.SetProfile(std::move(aProfile));
    return field;
}

ezCString ezDLNAField::TextOfProfile(std::string_view aProfile) {
    std::string text;
    text.reserve(kezDLNAParameter_Profile.size() + 1 + aProfile.size());
    Append(text, kezDLNAParameter_Profile, aProfile);
    return ezCString(std::string_view(text));
}

std::string_view ezDLNAField::ProfileIn(std::string_view aText) {
    return ValueIn(aText, kezDLNAParameter_Profile).value_or(std::string_view());
}

std::optional<std::string_view> ezDLNAField::ValueIn(std::string_view aText, std::string_view aName) {
    while (!aName.empty() && !aText.empty()) {
        const NextParameter parameter = TakeParameter(aText);
        if (parameter.mValue && parameter.mName == aName) {
            return parameter.mValue;
        }
    }
    return std::nullopt;
}

ezCString ezDLNAField::GetText() const {
    std::string text;
    text.reserve(kUsualLength);
    if (!mProfile.IsEmpty()) {
        Append(text, kezDLNAParameter_Profile, mProfile.View());
    }
    if (mOperations) {
        const char digits[] = {mOperations->mfTimeSeek ? '1' : '0', mOperations->mfByteSeek ? '1' : '0'};
        Append(text, kezDLNAParameter_Operations, std::string_view(digits, sizeof digits));
    }
    if (!mSpeeds.empty()) {
        Append(text, kezDLNAParameter_PlaySpeeds, GetPlaySpeeds().View());
    }
    if (mfConverted) {
        Append(text, kezDLNAParameter_Conversion, *mfConverted ? "1" : "0");
    }
    if (mFlags) {
        Append(text, kezDLNAParameter_Flags, FlagsText(*mFlags));
    }
    for (const auto& [name, value] : mOthers) {
        Append(text, name, value);
    }
    return text.empty() ? ezCString(kAnything) : ezCString(std::string_view(text));
}

void ezDLNAField::SetTimeSeek(bool afSeek) {
    if (afSeek || mOperations) {
        mOperations = Operations{afSeek, GetByteSeek()};
    }
}

void ezDLNAField::SetByteSeek(bool afSeek) {
    if (afSeek || mOperations) {
        mOperations = Operations{GetTimeSeek(), afSeek};
    }
}

std::optional<ezDLNAField::Speed> ezDLNAField::ReadSpeed(std::string_view aText) {
    Speed speed = {std::string(aText), !aText.empty() && aText.front() == '-', 0, 1};
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
    const bool fNormal = !speed.mfNegative && speed.mNumerator == 1 && speed.mDenominator == 1;
    return fNormal ? std::nullopt : std::optional<Speed>(std::move(speed));
}

/// By the number that a speed is, not by its text.
bool ezDLNAField::IsBefore(const Speed& aLeft, const Speed& aRight) {
    return std::tie(aLeft.mfNegative, aLeft.mNumerator, aLeft.mDenominator) <
           std::tie(aRight.mfNegative, aRight.mNumerator, aRight.mDenominator);
}

std::vector<ezDLNAField::Speed> ezDLNAField::ReadSpeeds(std::string_view aList) {
    std::vector<Speed> speeds;
    const ezCSVStringList list = ezCSVStringList::FromText(ezCString(aList).Replace("\\,", ",", true));
    for (std::size_t i = 0; i < list.GetCount(); ++i) {
        if (std::optional<Speed> speed = ReadSpeed(ezTrimmed(list.GetAt(i).View()))) {
            speeds.push_back(std::move(*speed));
        }
    }
    return speeds;
}

void ezDLNAField::AddSpeeds(const std::vector<Speed>& aSpeeds) {
    std::set<Speed, decltype(&IsBefore)> known(mSpeeds.begin(), mSpeeds.end(), &IsBefore);
    for (const Speed& speed : aSpeeds) {
        if (known.insert(speed).second) {
            mSpeeds.push_back(speed);
        }
    }
}

ezCString ezDLNAField::GetPlaySpeeds() const {
    std::string text;
    for (const Speed& speed : mSpeeds) {
        text.append(text.empty() ? "" : ",").append(speed.mText);
    }
    return ezCString(std::string_view(text));
}

void ezDLNAField::SetPlaySpeeds(std::string_view aList) {
    mSpeeds.clear();
    AddPlaySpeeds(aList);
}

void ezDLNAField::AddPlaySpeeds(std::string_view aList) {
    AddSpeeds(ReadSpeeds(aList));
}

void ezDLNAField::SetHTTPStalling(bool afStalling) {
    if (afStalling || mFlags) {
        mFlags = (GetFlags() & ~kezDLNAFlag_HTTPStalling) | (afStalling ? kezDLNAFlag_HTTPStalling : 0);
    }
}

bool ezDLNAField::SetKnown(std::string_view aName, std::string_view aValue) {
    if (aName == kezDLNAParameter_Profile) {
        mProfile = ezCString(aValue);
    } else if (aName == kezDLNAParameter_Operations) {
        mOperations.reset();
        if (aValue.size() == 2 && IsBit(aValue[0]) && IsBit(aValue[1])) {
            mOperations = Operations{aValue[0] == '1', aValue[1] == '1'};
        }
    } else if (aName == kezDLNAParameter_PlaySpeeds) {
        SetPlaySpeeds(aValue);
    } else if (aName == kezDLNAParameter_Conversion) {
        mfConverted.reset();
        if (aValue.size() == 1 && IsBit(aValue[0])) {
            mfConverted = aValue[0] == '1';
        }
    } else if (aName == kezDLNAParameter_Flags) {
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

void ezDLNAField::Set(std::string_view aName, std::string_view aValue) {
    if (aName.empty() || SetKnown(aName, aValue)) {
        return;
    }
    const auto found = std::find_if(mOthers.begin(), mOthers.end(),
                                    [&](const Parameter& anOther) { return anOther.first == aName; });
    if (found != mOthers.end()) {
        found->second = aValue;
    } else {
        mOthers.emplace_back(aName, aValue);
    }
}

void ezDLNAField::Remove(std::string_view aName) {
    SetKnown(aName, "");
    mOthers.erase(std::remove_if(mOthers.begin(), mOthers.end(),
                                 [&](const Parameter& anOther) { return anOther.first == aName; }),
                  mOthers.end());
}

void ezDLNAField::AddOthers(const std::vector<Parameter>& anOthers) {
    ezDistinctTexts known;
    for (const Parameter& own : mOthers) {
        known.Add(own.first);
    }
    std::vector<Parameter> added;
    for (const Parameter& other : anOthers) {
        if (known.Add(other.first)) {
            added.push_back(other);
        }
    }
    mOthers.insert(mOthers.end(), added.begin(), added.end());
}

void ezDLNAField::Merge(const ezDLNAField& anOther) {
    if (mProfile.IsEmpty()) {
        mProfile = anOther.mProfile;
    }
    if (anOther.mOperations) {
        mOperations =
            Operations{GetTimeSeek() || anOther.GetTimeSeek(), GetByteSeek() || anOther.GetByteSeek()};
    }
    AddSpeeds(anOther.mSpeeds);
    if (anOther.mfConverted) {
        mfConverted = mfConverted.value_or(false) || *anOther.mfConverted;
    }
    if (anOther.mFlags) {
        AddFlags(*anOther.mFlags);
    }
    AddOthers(anOther.mOthers);
}

void ezDLNAField::MergeWithMediaMapper(const ezDLNAField& aTableField) {
    if (!aTableField.mSpeeds.empty()) {
        mSpeeds = aTableField.mSpeeds;
    }
    if (aTableField.mOperations) {
        mOperations = aTableField.mOperations;
    }
    // Every line of a table states the version; only what says more than that says something about stalling.
    if ((aTableField.GetFlags() & ~kezDLNAFlag_DLNAVersion15) != 0) {
        SetHTTPStalling((aTableField.GetFlags() & kezDLNAFlag_HTTPStalling) != 0);
    }
}

void ezDLNAField::SetLinkProtected() {
    if (!mProfile.IsEmpty() && !mProfile.StartsWith(kDTCPPrefix)) {
        mProfile = ezCString(kDTCPPrefix) + mProfile;
    }
    if (mFlags) {
        AddFlags(kezDLNAFlag_LinkProtected);
    }
}
