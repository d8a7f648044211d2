#include "mapper/MapperVerb.h"

#include "arguments/Arguments.h"
#include "host/Unreadable.h"
#include "mapper/Limits.h"
#include "mapper/MapperCheck.h"
#include "mapper/MapperEdit.h"
#include "mapper/MapperFacts.h"
#include "mapper/MapperLock.h"
#include "mapper/MapperTable.h"
#include "output/Columns.h"
#include "output/Console.h"
#include "output/JsonLine.h"
#include "output/SafeText.h"

#include "ezHosting/HostFolders.h"
#include "ezPlatform/containers/Array.h"
#include "ezPlatform/dlna/ProtocolInfo.h"
#include "ezPlatform/files/Dir.h"

#include <optional>

namespace {

using Json = nlohmann::ordered_json;

int RunList(const Arguments& anArguments, DLNAMediaMapper& aMapper, Console& aConsole) {
    std::vector<std::vector<std::string>> rows = {
        {"#", "FILE NAME", "MIME TYPE", "PROFILE", "DURATION", "SPEEDS", "BIT RATE", "FLAGS"}};
    std::size_t index = 0;
    for (const DLNAMediaMapperEntry* entry : EntriesOf(aMapper)) {
        if (anArguments.mfJson) {
            Json object = {{"index", index}};
            object.update(JsonOf(*entry));
            aConsole.Print(JsonLineOf(object));
        } else {
            rows.push_back({std::to_string(index), entry->mFileName.c_str(), entry->mMimeType.c_str(),
                            entry->mProfile.c_str(), entry->mDuration.c_str(), Joined(SpeedsOf(*entry)),
                            entry->mBitRate != 0 ? std::to_string(entry->mBitRate) : "",
                            Joined(FlagsInWords(entry->mGoldenDMSFlags))});
        }
        ++index;
    }
    if (rows.size() > 1) {
        aConsole.Print(InColumns(rows));
    }
    return kExitSuccess;
}

const char* YesOrNo(bool afYes) {
    return afYes ? "yes" : "no";
}

/// A seek that the entries state, do not state, or cannot have.
std::string SeekInWords(bool afPossible, bool afStated) {
    return afPossible ? YesOrNo(afStated) : "not possible";
}

int RunProfiles(const Arguments& anArguments, DLNAMediaMapper& aMapper, Console& aConsole) {
    std::vector<std::vector<std::string>> rows = {
        {"PROFILE", "MIME TYPE", "ENABLED", "PLAY SPEED", "BYTE SEEK", "TIME SEEK", "STALLING", "SPEEDS"}};
    ezArray* records = aMapper.NewProfileArray();
    for (std::size_t i = 0; i < ezArray_GetCount(records); ++i) {
        const DLNAProfileEntry& record = *static_cast<DLNAProfileEntry*>(ezArray_At(records, i));
        const ezDLNAProtocolInfo* info = record.GetDLNAProtocolInfo();
        const bool fByteSeek = ezDLNAProtocolInfo_GetByteBasedSeek(info);
        const bool fTimeSeek = ezDLNAProtocolInfo_GetTimeBasedSeek(info);
        const bool fStalling = ezDLNAProtocolInfo_GetHTTPStalling(info);
        const ezCString speeds = ezCString::FromAllocatedString(ezDLNAProtocolInfo_GetPlaySpeedStr(info, 0));
        if (anArguments.mfJson) {
            const ezCSVStringList list = ezCSVStringList::FromText(speeds);
            Json speedArray = Json::array();
            for (std::size_t speed = 0; speed < list.GetCount(); ++speed) {
                speedArray.push_back(list.GetAt(speed).c_str());
            }
            aConsole.Print(JsonLineOf({{"profile", ezDLNAProtocolInfo_GetProfile(info)},
                                       {"mime_type", ezDLNAProtocolInfo_GetMimeType(info)},
                                       {"enabled", record.GetProfileEnabled()},
                                       {"play_speed_possible", record.CanSupportPlaySpeed()},
                                       {"play_speed_enabled", record.GetPlaySpeedEnabled()},
                                       {"byte_seek_possible", record.CanSupportByteSeek()},
                                       {"byte_seek", fByteSeek},
                                       {"time_seek_possible", record.CanSupportTimeSeek()},
                                       {"time_seek", fTimeSeek},
                                       {"stalling", fStalling},
                                       {"speeds", std::move(speedArray)}}));
        } else {
            const std::string speed = record.CanSupportPlaySpeed()
                                          ? (record.GetPlaySpeedEnabled() ? "enabled" : "possible")
                                          : "not possible";
            rows.push_back({ezDLNAProtocolInfo_GetProfile(info), ezDLNAProtocolInfo_GetMimeType(info),
                            YesOrNo(record.GetProfileEnabled()), speed,
                            SeekInWords(record.CanSupportByteSeek(), fByteSeek),
                            SeekInWords(record.CanSupportTimeSeek(), fTimeSeek), YesOrNo(fStalling),
                            speeds.c_str()});
        }
    }
    ezArray_Delete(records);
    if (rows.size() > 1) {
        aConsole.Print(InColumns(rows));
    }
    return kExitSuccess;
}

/// Reads the text alone: no table is loaded, so nothing is ever copied.
int RunCheck(const Arguments& anArguments, const ezHostFolders& aFolders, Console& aConsole) {
    const MapperFiles files = FindMapperFiles(aFolders);
    std::string path = files.mfWritableExists ? files.mWritable : files.mReadOnly;
    if (!anArguments.mOperands.empty()) {
        path = anArguments.mOperands.front();
    }
    MapperCheck check;
    if (!CheckMapperFile(path, check)) {
        std::error_code ignored;
        const bool fLarge = std::filesystem::is_regular_file(path, ignored) &&
                            std::filesystem::file_size(path, ignored) > kMapperCheck_MaxBytes;
        static_assert(kMapperCheck_MaxBytes == std::uint64_t{64} << 20, "the text says so");
        aConsole.Error(path, fLarge ? "larger than 64 MiB, and so no table to check" : WhyUnreadable(path));
        return kExitSomeFailed;
    }
    const std::string name = ForTerminal(path);
    for (const MapperFinding& finding : check.mFindings) {
        aConsole.Print(name + ":" + std::to_string(finding.mLine) + ": " + ForTerminal(finding.mText) + "\n");
    }
    aConsole.Print(name + ": entries: " + std::to_string(check.mEntryCount) +
                   ", findings: " + std::to_string(check.mFindings.size() + check.mUnnamedCount) +
                   (check.mUnnamedCount != 0 ? ", not named: " + std::to_string(check.mUnnamedCount) : "") +
                   "\n");
    return check.mFindings.empty() ? kExitSuccess : kExitSomeFailed;
}

/// Edits one after the other with whoever else edits with this tool. Who writes the file without the lock, as
/// a server may, does it between a load and a save of ours at times; then the edit is made again.
int RunEdit(const Arguments& anArguments, const ezHostFolders& aFolders, Console& aConsole) {
    const MapperFiles files = FindMapperFiles(aFolders);
    std::optional<MapperLock> lock;
    if (files.mfReadOnlyExists || files.mfWritableExists) {
        ezDir_CreateRecursively(ezPathName::MakeDirPath(ezCString(aFolders.mWritable)).GetFullPath());
        lock.emplace(files.mWritable);
        if (!lock->GetReason().empty()) {
            aConsole.Error(files.mWritable, lock->GetReason());
            return kExitSomeFailed;
        }
    }
    const auto open = [&] { return OpenMapper(aFolders, nullptr, anArguments.mfNoCopy, aConsole); };
    return EditMapper(anArguments, open, files.mWritable, aConsole);
}

} // namespace

int RunMapper(const Arguments& anArguments, const ezHostFolders& aFolders, Console& aConsole) {
    if (anArguments.mMapperVerb == MapperVerb::Check) {
        return RunCheck(anArguments, aFolders, aConsole);
    }
    const bool fLists = anArguments.mMapperVerb == MapperVerb::List;
    if (!fLists && anArguments.mMapperVerb != MapperVerb::Profiles) {
        return RunEdit(anArguments, aFolders, aConsole);
    }
    const std::unique_ptr<DLNAMediaMapper> mapper =
        OpenMapper(aFolders, nullptr, anArguments.mfNoCopy, aConsole);
    if (mapper == nullptr) {
        return kExitSomeFailed;
    }
    return fLists ? RunList(anArguments, *mapper, aConsole) : RunProfiles(anArguments, *mapper, aConsole);
}
