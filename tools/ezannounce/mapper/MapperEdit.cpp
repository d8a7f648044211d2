#include "mapper/MapperEdit.h"

#include "mapper/Limits.h"
#include "mapper/MapperCheck.h"
#include "mapper/MapperTable.h"
#include "output/Console.h"
#include "output/SafeText.h"

#include "ezPlatform/containers/Array.h"
#include "ezPlatform/dlna/ProtocolInfo.h"

#include <algorithm>
#include <array>
#include <optional>

namespace {

using Entry = DLNAMediaMapperEntry;

/// What merging back can change of an entry.
struct Switches {
    bool mfEnabled;
    bool mfSpeeds;
    bool mfByteSeek;
    bool mfTimeSeek;
    bool mfStalling;
};

Switches SwitchesOf(const Entry& anEntry) {
    const ezDLNAProtocolInfo* info = anEntry.mDLNAProtocolInfo;
    return {anEntry.ProfileEnabled(),
            (anEntry.mGoldenDMSFlags & kDLNAMediaMapperPlaySpeed_ProfileEnabled) != 0,
            ezDLNAProtocolInfo_GetByteBasedSeek(info), ezDLNAProtocolInfo_GetTimeBasedSeek(info),
            ezDLNAProtocolInfo_GetHTTPStalling(info)};
}

/// "profile off -> on, byte seek on -> off"; "" for no difference.
std::string Difference(const Switches& anOld, const Switches& aNew) {
    struct Named {
        const char* mName;
        bool Switches::*mSwitch;
    };
    constexpr std::array<Named, 5> kSwitches = {{{"profile", &Switches::mfEnabled},
                                                 {"play speeds", &Switches::mfSpeeds},
                                                 {"byte seek", &Switches::mfByteSeek},
                                                 {"time seek", &Switches::mfTimeSeek},
                                                 {"stalling", &Switches::mfStalling}}};
    std::string words;
    for (const Named& named : kSwitches) {
        if (anOld.*named.mSwitch != aNew.*named.mSwitch) {
            words += words.empty() ? "" : ", ";
            words += std::string(named.mName) + (aNew.*named.mSwitch ? " off -> on" : " on -> off");
        }
    }
    return words;
}

std::string ProfileOf(const DLNAProfileEntry& aRecord) {
    return ezDLNAProtocolInfo_GetProfile(aRecord.GetDLNAProtocolInfo());
}

DLNAProfileEntry& RecordAt(const ezArray* anArray, std::size_t anIndex) {
    return *static_cast<DLNAProfileEntry*>(ezArray_At(anArray, anIndex));
}

/// The records of some profiles. Merging back all records would give every entry the seeks of the first entry
/// of its profile, also where nobody asked for that.
class AskedRecords {
public:
    AskedRecords(DLNAMediaMapper& aMapper, const std::vector<std::string>& aProfiles)
        : mRecords(aMapper.NewProfileArray()) {
        for (std::size_t i = ezArray_GetCount(mRecords); i > 0; --i) {
            const std::string profile = ProfileOf(RecordAt(mRecords, i - 1));
            if (std::find(aProfiles.begin(), aProfiles.end(), profile) == aProfiles.end()) {
                ezArray_Remove(mRecords, i - 1);
            }
        }
    }
    ~AskedRecords() { ezArray_Delete(mRecords); }
    AskedRecords(const AskedRecords&) = delete;
    AskedRecords& operator=(const AskedRecords&) = delete;

    ezArray* Get() const { return mRecords; }

    DLNAProfileEntry* Find(const std::string& aProfile) const {
        const std::ptrdiff_t index =
            ezArray_Search(mRecords, aProfile.c_str(), DLNAMediaMapper::DLNAProfileEntry_Search);
        return index >= 0 ? &RecordAt(mRecords, static_cast<std::size_t>(index)) : nullptr;
    }

private:
    ezArray* mRecords;
};

/// What stands against switching a profile; "" when nothing does.
std::string WhyNot(const Arguments& anArguments, const DLNAProfileEntry* aRecord) {
    if (aRecord == nullptr) {
        return "no entry has this profile";
    }
    const bool fSpeedsOn = anArguments.mMapperVerb == MapperVerb::Speeds && anArguments.mfSpeedsOn;
    return fSpeedsOn && !aRecord->CanSupportPlaySpeed() ? "this profile cannot play at speeds" : "";
}

void Switch(const Arguments& anArguments, DLNAProfileEntry& aRecord) {
    if (anArguments.mMapperVerb == MapperVerb::Speeds) {
        aRecord.EnablePlaySpeed(anArguments.mfSpeedsOn);
    } else {
        aRecord.EnableProfile(anArguments.mMapperVerb == MapperVerb::Enable);
    }
}

/// Merges the records back. Which entries that changed, a line each; "" when none.
std::string MergeBack(DLNAMediaMapper& aMapper, const AskedRecords& aRecords) {
    const std::vector<Entry*> entries = EntriesOf(aMapper);
    std::vector<Switches> old;
    old.reserve(entries.size());
    for (const Entry* entry : entries) {
        old.push_back(SwitchesOf(*entry));
    }
    if (!aMapper.MergeBackProfileArray(aRecords.Get(), nullptr)) {
        return {};
    }
    std::string lines;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const std::string difference = Difference(old[i], SwitchesOf(*entries[i]));
        if (!difference.empty()) {
            lines += ForTerminal(entries[i]->mFileName.View()) + " (" +
                     ForTerminal(entries[i]->mProfile.View()) + "): " + difference + "\n";
        }
    }
    return lines;
}

/// Play speeds of a profile are announced only for entries that list some and have them on themselves.
void TellSilentSpeeds(DLNAMediaMapper& aMapper, const std::string& aProfile, Console& aConsole) {
    for (const Entry* entry : EntriesOf(aMapper)) {
        if (entry->mProfile.View() == aProfile && entry->GetPlaySpeedMediaEnabled()) {
            return;
        }
    }
    aConsole.Error(aProfile, "no entry has play speeds of its own that are on, so none are announced");
}

int Save(DLNAMediaMapper& aMapper, const std::string& aPath, Console& aConsole) {
    MapperCheck check;
    if (CheckMapperFile(aPath, check) && check.mLostLineCount > 0) {
        aConsole.Error(aPath, "lines that this save does not keep as they were: " +
                                  std::to_string(check.mLostLineCount) +
                                  " (\"mapper check\" names them beforehand)");
    }
    const ezError error = aMapper.Save();
    if (error.IsError()) {
        aConsole.Error(aPath, OneLine(error));
        return kExitSomeFailed;
    }
    TellTooLong(aMapper, aPath, aConsole);
    aConsole.Print("saved " + ForTerminal(aPath) + ", entries: " + std::to_string(EntriesOf(aMapper).size()) +
                   "\n");
    return kExitSuccess;
}

/// None, with nothing said or saved, where somebody else wrote the file since the table was loaded.
std::optional<int> EditOnce(const Arguments& anArguments, DLNAMediaMapper& aMapper, const std::string& aPath,
                            Console& aConsole) {
    if (anArguments.mMapperVerb == MapperVerb::Save) {
        return aMapper.HasChangedSinceLoad() ? std::nullopt : std::optional(Save(aMapper, aPath, aConsole));
    }
    const AskedRecords records(aMapper, anArguments.mOperands);
    bool fRefused = false;
    for (const std::string& profile : anArguments.mOperands) {
        const std::string reason = WhyNot(anArguments, records.Find(profile));
        if (!reason.empty()) {
            aConsole.Error(profile, reason);
            fRefused = true;
        }
    }
    if (fRefused) {
        return kExitSomeFailed;
    }
    for (const std::string& profile : anArguments.mOperands) {
        Switch(anArguments, *records.Find(profile));
    }
    const std::string changes = MergeBack(aMapper, records);
    if (aMapper.HasChangedSinceLoad()) {
        return std::nullopt;
    }
    aConsole.Print(changes);
    if (anArguments.mMapperVerb == MapperVerb::Speeds && anArguments.mfSpeedsOn) {
        for (const std::string& profile : anArguments.mOperands) {
            TellSilentSpeeds(aMapper, profile, aConsole);
        }
    }
    if (changes.empty()) {
        aConsole.Print("nothing changed, nothing saved\n");
        return kExitSuccess;
    }
    return Save(aMapper, aPath, aConsole);
}

} // namespace

int EditMapper(const Arguments& anArguments, const MapperOpener& anOpen, const std::string& aPath,
               Console& aConsole) {
    for (int tries = 0; tries < kMapperEdit_MaxTries; ++tries) {
        const std::unique_ptr<DLNAMediaMapper> mapper = anOpen();
        if (mapper == nullptr) {
            return kExitSomeFailed;
        }
        if (const std::optional<int> status = EditOnce(anArguments, *mapper, aPath, aConsole)) {
            return *status;
        }
    }
    aConsole.Error(aPath, "somebody else writes it again and again");
    return kExitSomeFailed;
}
