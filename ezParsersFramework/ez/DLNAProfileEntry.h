#pragma once

#include "ez/MediaParserTypes.h"

class DLNAMediaMapperEntry;
struct ezDLNAProtocolInfo;

/// What a media mapper says of one DLNA profile, for a configuration that switches profiles and play speeds:
/// DLNAMediaMapper::NewProfileArray makes these, MergeBackProfileArray writes them back. Not locked.
class EZPARSERS_API DLNAProfileEntry {
public:
    /// Taken from the first entry of a profile.
    explicit DLNAProfileEntry(const DLNAMediaMapperEntry& anEntry);
    ~DLNAProfileEntry();

    DLNAProfileEntry(const DLNAProfileEntry&) = delete;
    DLNAProfileEntry& operator=(const DLNAProfileEntry&) = delete;

    /// What files of the profile support, by the entry that this was taken from.
    /// @{
    bool CanSupportByteSeek() const { return mfCanSupportByteSeek; }
    bool CanSupportTimeSeek() const { return mfCanSupportTimeSeek; }
    bool CanSupportPlaySpeed() const { return mfCanSupportPlaySpeed; }
    /// @}
    /// Whether play speeds are switched on for the profile: what EnablePlaySpeed said last, at first what the
    /// entry said.
    bool GetPlaySpeedEnabled() const { return mfPlaySpeedProfileEnabled; }
    /// Whether the entry announced its speeds when this was taken from it: they were switched on for the file
    /// and for the profile. EnablePlaySpeed does not change it.
    bool GetPlaySpeedMediaEnabled() const { return mfPlaySpeedMediaEnabled; }
    /// Whether the profile is switched on: what EnableProfile said last, at first what the entry said.
    bool GetProfileEnabled() const { return mfProfileEnabled; }
    /// Borrowed; its seek and stalling settings are the host's to change before MergeBack.
    ezDLNAProtocolInfo* GetDLNAProtocolInfo() const { return mDLNAProtocolInfo; }

    /// Without effect where files of the profile cannot be played at other speeds.
    void EnablePlaySpeed(bool afEnable) { mfPlaySpeedProfileEnabled = afEnable && mfCanSupportPlaySpeed; }
    /// Switches the profile on or off; entries learn of it by MergeBack.
    void EnableProfile(bool afEnable) { mfProfileEnabled = afEnable; }

    /// Writes the choices into an entry of the profile: its flag word and its protocolInfo object, not its
    /// mFullProfile. True when that changed something. *afProfileChanged, unless null, tells whether the
    /// profile was switched.
    bool MergeBack(DLNAMediaMapperEntry& anEntry, bool* afProfileChanged) const;

    /// Not 0 when the profile of a DLNAProfileEntry is the ezCString aName, to the letter.
    static int SearchProfile(const void* aRecord, const void* aName);

private:
    bool mfPlaySpeedProfileEnabled;
    ezDLNAProtocolInfo* mDLNAProtocolInfo; ///< owned
    bool mfCanSupportPlaySpeed;
    bool mfCanSupportTimeSeek;
    bool mfPlaySpeedMediaEnabled;
    bool mfProfileEnabled;
    bool mfCanSupportByteSeek;
};
