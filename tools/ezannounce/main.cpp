#include "arguments/Arguments.h"
#include "capabilities/CapabilitiesVerb.h"
#include "contact-sheet/ContactSheetVerb.h"
#include "host/Host.h"
#include "mapper/MapperShowVerb.h"
#include "mapper/MapperTable.h"
#include "mapper/MapperVerb.h"
#include "output/Console.h"
#include "parse/ParseVerb.h"
#include "playlist/PlaylistVerb.h"
#include "profiles/ProfileTable.h"
#include "profiles/ProfilesVerb.h"
#include "race/RaceVerb.h"
#include "thumbnail/ThumbnailVerb.h"
#include "types/TypesVerb.h"

#include "ez/ExtensionMimeTypeMatcher.h"
#include "ez/MediaParserManager.h"
#include "ezPlatform/base/Log.h"
#include "ezPlatform/base/StandardDescriptors.h"
#include "ezPlatform/containers/PtrList.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <optional>
#include <sys/stat.h>

namespace {

/// What is wrong with a folder that was given; "" when nothing is.
std::string CheckFolder(const std::optional<std::string>& aFolder) {
    struct stat status = {};
    if (!aFolder) {
        return {};
    }
    if (stat(aFolder->c_str(), &status) != 0) {
        return std::strerror(errno);
    }
    return S_ISDIR(status.st_mode) ? "" : "not a folder";
}

/// False, after an error line, when what was given is not a folder.
bool CheckFolders(const Arguments& anArguments, Console& aConsole) {
    for (const auto* folder : {&anArguments.mConfigFolder, &anArguments.mStateFolder}) {
        const std::string problem = CheckFolder(*folder);
        if (!problem.empty()) {
            aConsole.Error(**folder, problem);
            return false;
        }
    }
    return true;
}

/// What has no need of a host; nothing for all else.
std::optional<int> RunWithoutHost(const Arguments& anArguments, const ezHostFolders& aFolders,
                                  Console& aConsole) {
    if (anArguments.mVerb == Verb::Mapper && anArguments.mMapperVerb != MapperVerb::Show) {
        return RunMapper(anArguments, aFolders, aConsole);
    }
    if (anArguments.mfElementary) {
        return RunRaces(anArguments, aConsole);
    }
    if (anArguments.mVerb == Verb::Playlist) {
        return RunPlaylist(anArguments, aConsole);
    }
    if (anArguments.mVerb == Verb::Profiles) {
        return RunProfiles(anArguments, aConsole);
    }
    return std::nullopt;
}

int RunOnHost(const Arguments& anArguments, Host& aHost, Console& aConsole) {
    switch (anArguments.mVerb) {
    case Verb::Parse:
        return RunParse(anArguments, aHost, aConsole);
    case Verb::Capabilities:
        return RunCapabilities(anArguments, aHost, aConsole);
    case Verb::Mapper:
        return RunMapperShow(anArguments, aHost, aConsole);
    case Verb::Thumbnail:
        return RunThumbnail(anArguments, aHost, aConsole);
    case Verb::ContactSheet:
        return RunContactSheet(anArguments, aHost, aConsole);
    case Verb::Types:
    case Verb::Playlist:
    case Verb::Profiles:
        break;
    }
    return RunTypes(anArguments, aHost, aConsole);
}

/// False, after an error line, where the answers would not be those that were asked for. That there are no
/// media types is only told: what formats declare can be shown, and every file be said not to be recognised.
bool MakeReady(const Arguments& anArguments, Host& aHost, Console& aConsole) {
    const ezHost& host = aHost.Get();
    if (!host.IsReady()) {
        aConsole.Error(host.GetError());
        return false;
    }
    if (ezPtrList_GetCount(host.GetMediaTypes().AllEntries()) == 0) {
        aConsole.Error(host.GetFolders().WhyNoTable() + "; --config names the folder of the file");
    }
    if (!anArguments.mfMapper) {
        return true;
    }
    std::unique_ptr<DLNAMediaMapper> mapper = OpenMapper(
        host.GetFolders(), host.GetManager().GetMimeTypesDotIniParser(), anArguments.mfNoCopy, aConsole);
    if (mapper == nullptr) {
        return false;
    }
    aHost.Use(std::move(mapper));
    return true;
}

int Run(const Arguments& anArguments, Console& aConsole) {
    if (!CheckFolders(anArguments, aConsole)) {
        return kExitWrongUsage;
    }
    if (anArguments.mLogLevel) {
        _ezLog_Level = *anArguments.mLogLevel;
    }
    const ezHostFolders folders =
        FindHostFolders(anArguments.mConfigFolder.value_or(""), anArguments.mStateFolder.value_or(""));
    if (const std::optional<int> status = RunWithoutHost(anArguments, folders, aConsole)) {
        return *status;
    }
    const bool fAnnounces = anArguments.mVerb == Verb::Parse || anArguments.mVerb == Verb::Capabilities;
    const ProfileTable rules = fAnnounces ? OpenProfileTable(anArguments, folders, aConsole) : ProfileTable();
    if (rules.mStatus == kExitWrongUsage) {
        return kExitWrongUsage;
    }
    Host host(anArguments, rules.mRules);
    if (!MakeReady(anArguments, host, aConsole)) {
        return kExitSomeFailed;
    }
    const int status = RunOnHost(anArguments, host, aConsole);
    return status == kExitSuccess ? rules.mStatus : status;
}

int RunCommandLine(int anArgCount, char** anArgs) {
    Console console;
    Arguments arguments;
    const ArgumentsResult result = ReadArguments(anArgCount, anArgs, arguments);
    int status = result.mStatus;
    if (result.mfRun) {
        status = Run(arguments, console);
    } else {
        console.Print(result.mText);
        if (!result.mError.empty()) {
            console.Error(result.mError);
            console.Error("\"ezannounce --help\" shows the usage");
        }
    }
    if (!console.Finish() && status == kExitSuccess) {
        status = kExitSomeFailed;
    }
    return status;
}

} // namespace

int main(int anArgCount, char** anArgs) {
    if (!ezKeepStandardDescriptors()) {
        return kExitSomeFailed; // what is printed could go into a file
    }
    try {
        return RunCommandLine(anArgCount, anArgs);
    } catch (const std::exception& exception) {
        std::fprintf(stderr, "ezannounce: %s\n", exception.what());
        return kExitSomeFailed;
    }
}
