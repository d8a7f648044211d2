#include "ez/DLNAMediaMapperEntry.h"

#include "ez/DLNAMediaMapper.h"

#include "ezPlatform/dlna/ProtocolInfo.h"

#include <array>
#include <utility>

namespace {

/// The 4th-field parameter that carries the flag word.
constexpr const char* kGoldenDMSName = EZ_VENDOR_DOMAIN "_GOLDENDMS";

constexpr std::size_t kRequiredFieldCount = 3;
constexpr std::size_t kPlaySpeedField = 4;
constexpr std::size_t kBitRateField = 6;

/// Where the fields of a line go that are plain text.
struct TextField {
    std::size_t mIndex;
    ezCString DLNAMediaMapperEntry::*mMember;
};

constexpr std::array<TextField, 3> kRequiredFields = {{
    {0, &DLNAMediaMapperEntry::mFileName},
    {1, &DLNAMediaMapperEntry::mMimeType},
    {2, &DLNAMediaMapperEntry::mProfile},
}};

constexpr std::array<TextField, 8> kOptionalFields = {{
    {3, &DLNAMediaMapperEntry::mDuration},
    {5, &DLNAMediaMapperEntry::mMandatoryBits},
    {7, &DLNAMediaMapperEntry::mIFOFileName},
    {8, &DLNAMediaMapperEntry::mLargest},
    {9, &DLNAMediaMapperEntry::mWidth},
    {10, &DLNAMediaMapperEntry::mHeight},
    {11, &DLNAMediaMapperEntry::mLPOptions},
    {12, &DLNAMediaMapperEntry::m4thFieldPart},
}};

} // namespace

DLNAMediaMapperEntry::~DLNAMediaMapperEntry() {
    ezDLNAProtocolInfo_Delete(mDLNAProtocolInfo);
}

bool DLNAMediaMapperEntry::Set(const ezCString& aLine) {
    // A NUL ends the line: protocolInfos are C strings, and one inside a parameter would hide the flag word.
    const ezCSVStringList fields = ezCSVStringList::FromText(aLine.c_str());
    if (fields.GetCount() < kRequiredFieldCount) {
        return false;
    }
    for (const TextField& field : kRequiredFields) {
        this->*field.mMember = GetTrimmed(fields, static_cast<std::ptrdiff_t>(field.mIndex));
    }
    if (!IsValid()) {
        return false;
    }
    for (const TextField& field : kOptionalFields) {
        if (field.mIndex < fields.GetCount()) {
            this->*field.mMember = GetTrimmed(fields, static_cast<std::ptrdiff_t>(field.mIndex));
        }
    }
    if (kPlaySpeedField < fields.GetCount()) {
        mSupportedPlaySpeeds = ezCSVStringList::FromText(GetTrimmed(fields, kPlaySpeedField));
        ValidatePlaySpeedList(mSupportedPlaySpeeds, true);
    }
    if (kBitRateField < fields.GetCount()) {
        // Signed: a negative rate is kept as its bit pattern, and so read back as 0 once it has been written.
        mBitRate = static_cast<uint32>(fields.GetAtInt32(kBitRateField, 0, nullptr));
    }
    const std::string_view bits = mMandatoryBits.View();
    const bool fHasBits = bits.size() == 8;
    mfMandatory = fHasBits && bits[7] == '1';
    mfCVPNA1Mandatory = fHasBits && bits[6] == '1';
    mfCVPEUMandatory = fHasBits && bits[5] == '1';
    mGoldenDMSFlags = ezHexWord(ezDLNAField::ValueIn(m4thFieldPart.View(), kGoldenDMSName).value_or(""));
    ComputeDLNAProtocolInfo();
    return true;
}

ezCString DLNAMediaMapperEntry::Get() {
    if (mDLNAProtocolInfo == nullptr) {
        ComputeDLNAProtocolInfo();
    }
    // Never computed anew here: choices that were merged back stand only in the object.
    ezDLNAField& field = *ezDLNAProtocolInfo_GetField(mDLNAProtocolInfo);
    field.SetProfile("");
    field.RemovePlaySpeeds();
    const ezCString flags = ezCString::Format("%08lX", static_cast<unsigned long>(mGoldenDMSFlags));
    field.Set(kGoldenDMSName, flags.View());
    const ezCString fourthField = field.GetText();
    const ezCString speeds = mSupportedPlaySpeeds.Join().Replace(",", "\\,", true);
    const ezCString bitRate =
        mBitRate != 0 ? ezCString::Format("%lu", static_cast<unsigned long>(mBitRate)) : ezCString();
    ezCSVStringList fields = ezCSVStringList::WithSeparator(',');
    const std::array<const ezCString*, 13> texts = {
        &mFileName,    &mMimeType, &mProfile, &mDuration, &speeds,     &mMandatoryBits, &bitRate,
        &mIFOFileName, &mLargest,  &mWidth,   &mHeight,   &mLPOptions, &fourthField};
    for (const ezCString* text : texts) {
        fields.Add(text->c_str());
    }
    return fields.Join();
}

void DLNAMediaMapperEntry::ComputeDLNAProtocolInfo() {
    // Read as one text, of which the first of a name counts: after a ";" in its column a profile goes on with
    // further parameters.
    ezCString text;
    if (!mProfile.IsEmpty()) {
        text += ezDLNAField::TextOfProfile(mProfile.View()) + ";";
    }
    if (GetPlaySpeedMediaEnabled() && GetPlaySpeedProfileEnabled()) {
        text += ezCString(kezDLNAParameter_PlaySpeeds) + "=" + mSupportedPlaySpeeds.Join() + ";";
    }
    ezDLNAField field((text + m4thFieldPart).View());
    field.AddFlags(kezDLNAFlag_DLNAVersion15);
    field.Remove(kGoldenDMSName);
    ezDLNAProtocolInfo_Delete(mDLNAProtocolInfo);
    mDLNAProtocolInfo = ezDLNAProtocolInfo_NewOf(mMimeType.c_str(), std::move(field));
    mFullProfile = ezCString::FromAllocatedString(ezDLNAProtocolInfo_GetStr(mDLNAProtocolInfo));
}

bool DLNAMediaMapperEntry::IsValid() const {
    return !mFileName.IsEmpty() && !mMimeType.IsEmpty() && !mProfile.IsEmpty();
}

void DLNAMediaMapperEntry::Reset() {
    for (const TextField& field : kRequiredFields) {
        this->*field.mMember = ezCString();
    }
    for (const TextField& field : kOptionalFields) {
        this->*field.mMember = ezCString();
    }
    mSupportedPlaySpeeds.Reset();
    mBitRate = 0;
    mFullProfile = ezCString();
    mGoldenDMSFlags = 0;
    ezDLNAProtocolInfo_Delete(mDLNAProtocolInfo);
    mDLNAProtocolInfo = nullptr;
    mfMandatory = false;
    mfCVPNA1Mandatory = false;
    mfCVPEUMandatory = false;
}

bool DLNAMediaMapperEntry::ProfileEnabled() const {
    return (mGoldenDMSFlags & kDLNAMediaMapperProfile_Disabled) == 0;
}

bool DLNAMediaMapperEntry::CanSupportByteSeek() const {
    return (mGoldenDMSFlags & kDLNAMediaMapperByteSeek_MediaNotSupported) == 0;
}

bool DLNAMediaMapperEntry::CanSupportTimeSeek() const {
    return DLNAMediaMapper::MimeTypeSupportTimeSeek(mMimeType);
}

bool DLNAMediaMapperEntry::CanSupportPlaySpeed() const {
    return DLNAMediaMapper::MimeTypeSupportPlaySpeed(mMimeType) && GetPlaySpeedMediaSupported();
}

bool DLNAMediaMapperEntry::GetPlaySpeedMediaSupported() const {
    return (mGoldenDMSFlags & kDLNAMediaMapperPlaySpeed_MediaNotSupported) == 0;
}

bool DLNAMediaMapperEntry::HasPlaySpeedDefined() const {
    if (!CanSupportPlaySpeed() || mSupportedPlaySpeeds.IsEmpty()) {
        return false;
    }
    return mSupportedPlaySpeeds.GetCount() > 1 || mSupportedPlaySpeeds.GetAt(0) != "1";
}

bool DLNAMediaMapperEntry::GetPlaySpeedMediaEnabled() const {
    return (mGoldenDMSFlags & kDLNAMediaMapperPlaySpeed_MediaEnabled) != 0 && HasPlaySpeedDefined();
}

bool DLNAMediaMapperEntry::GetPlaySpeedProfileEnabled() const {
    return (mGoldenDMSFlags & kDLNAMediaMapperPlaySpeed_ProfileEnabled) != 0 && CanSupportPlaySpeed();
}

void DLNAMediaMapperEntry::SetPlaySpeedMediaEnabled(bool afEnabled) {
    mGoldenDMSFlags &= ~kDLNAMediaMapperPlaySpeed_MediaEnabled;
    if (afEnabled && HasPlaySpeedDefined()) {
        mGoldenDMSFlags |= kDLNAMediaMapperPlaySpeed_MediaEnabled;
    }
}

void DLNAMediaMapperEntry::SetPlaySpeedProfileEnabled(bool afEnabled) {
    mGoldenDMSFlags &= ~kDLNAMediaMapperPlaySpeed_ProfileEnabled;
    if (afEnabled && CanSupportPlaySpeed()) {
        mGoldenDMSFlags |= kDLNAMediaMapperPlaySpeed_ProfileEnabled;
    }
}

ezCString DLNAMediaMapperEntry::GetTrimmed(const ezCSVStringList& aFields, std::ptrdiff_t anIndex) {
    return anIndex < 0 ? ezCString() : aFields.GetAt(static_cast<std::size_t>(anIndex)).TrimLeftRight();
}

void DLNAMediaMapperEntry::ValidatePlaySpeedList(ezCSVStringList& aSpeeds, bool /*afUnused*/) {
    aSpeeds.Remove("1");
    if (aSpeeds.IsEmpty()) {
        return;
    }
    ezDLNAField accepted;
    accepted.SetPlaySpeeds(aSpeeds.Join().View());
    aSpeeds = ezCSVStringList::FromText(accepted.GetPlaySpeeds());
    aSpeeds.Remove("1");
}
