#include "ez/DLNAProfileEntry.h"

#include "ez/DLNAMediaMapperEntry.h"

#include "ezPlatform/dlna/ProtocolInfo.h"

DLNAProfileEntry::DLNAProfileEntry(const DLNAMediaMapperEntry& anEntry)
    : mfPlaySpeedProfileEnabled(anEntry.GetPlaySpeedProfileEnabled()),
      mDLNAProtocolInfo(
          ezDLNAProtocolInfo_New(anEntry.mFullProfile.c_str(), anEntry.mFullProfile.GetLength(), 0)),
      mfCanSupportPlaySpeed(anEntry.CanSupportPlaySpeed()),
      mfCanSupportTimeSeek(anEntry.CanSupportTimeSeek()),
      mfPlaySpeedMediaEnabled(mfPlaySpeedProfileEnabled && anEntry.GetPlaySpeedMediaEnabled()),
      mfProfileEnabled(anEntry.ProfileEnabled()),
      mfCanSupportByteSeek(anEntry.CanSupportByteSeek()) {}

DLNAProfileEntry::~DLNAProfileEntry() {
    ezDLNAProtocolInfo_Delete(mDLNAProtocolInfo);
}

bool DLNAProfileEntry::MergeBack(DLNAMediaMapperEntry& anEntry, bool* afProfileChanged) const {
    if (anEntry.mDLNAProtocolInfo == nullptr) {
        anEntry.ComputeDLNAProtocolInfo();
    }
    ezDLNAProtocolInfo* target = anEntry.mDLNAProtocolInfo;
    const bool fStalling = ezDLNAProtocolInfo_GetHTTPStalling(mDLNAProtocolInfo);
    const bool fByteSeek = ezDLNAProtocolInfo_GetByteBasedSeek(mDLNAProtocolInfo);
    const bool fTimeSeek = ezDLNAProtocolInfo_GetTimeBasedSeek(mDLNAProtocolInfo);
    const bool fProfileChanged = anEntry.ProfileEnabled() != mfProfileEnabled;
    const bool fSpeedBit = (anEntry.mGoldenDMSFlags & kDLNAMediaMapperPlaySpeed_ProfileEnabled) != 0;
    const bool fChanged = fSpeedBit != mfPlaySpeedProfileEnabled || fProfileChanged ||
                          ezDLNAProtocolInfo_GetHTTPStalling(target) != fStalling ||
                          ezDLNAProtocolInfo_GetByteBasedSeek(target) != fByteSeek ||
                          ezDLNAProtocolInfo_GetTimeBasedSeek(target) != fTimeSeek;
    const auto setFlag = [&](uint32 aFlag, bool afSet) {
        anEntry.mGoldenDMSFlags = (anEntry.mGoldenDMSFlags & ~aFlag) | (afSet ? aFlag : 0);
    };
    setFlag(kDLNAMediaMapperPlaySpeed_ProfileEnabled, mfPlaySpeedProfileEnabled);
    setFlag(kDLNAMediaMapperProfile_Disabled, !mfProfileEnabled);
    ezDLNAProtocolInfo_SetHTTPStalling(target, fStalling);
    ezDLNAProtocolInfo_SetByteBasedSeek(target, fByteSeek);
    ezDLNAProtocolInfo_SetTimeBasedSeek(target, fTimeSeek);
    if (afProfileChanged != nullptr) {
        *afProfileChanged = fProfileChanged;
    }
    return fChanged;
}

int DLNAProfileEntry::SearchProfile(const void* aRecord, const void* aName) {
    const DLNAProfileEntry* record = static_cast<const DLNAProfileEntry*>(aRecord);
    return *static_cast<const ezCString*>(aName) == ezDLNAProtocolInfo_GetProfile(record->mDLNAProtocolInfo)
               ? 1
               : 0;
}
