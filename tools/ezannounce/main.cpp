#include "Arguments.h"
#include "ConfigFolders.h"
#include "Console.h"
#include "Host.h"
#include "MapperTable.h"
#include "Verbs.h"

#include "ezPlatform/base/Log.h"

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

int Run(const Arguments& anArguments, Console& aConsole) {
    for (const auto* folder : {&anArguments.mConfigFolder, &anArguments.mStateFolder}) {
        const std::string problem = CheckFolder(*folder);
        if (!problem.empty()) {
            aConsole.Error(**folder, problem);
            return kExitWrongUsage;
        }
    }
    if (anArguments.mLogLevel) {
        _ezLog_Level = *anArguments.mLogLevel;
    }
    const ConfigFolders folders = FindConfigFolders(anArguments);
    if (anArguments.mVerb == Verb::Mapper && anArguments.mMapperVerb != MapperVerb::Show) {
        return RunMapper(anArguments, folders, aConsole);
    }
    if (anArguments.mfElementary) {
        return RunRaces(anArguments, aConsole);
    }
    if (anArguments.mVerb == Verb::Playlist) {
        return RunPlaylist(anArguments, aConsole);
    }
    Host host(anArguments, folders);
    if (!host.HasMediaTypes()) {
        const bool fOneFolder = folders.mReadOnly == folders.mReadWrite;
        aConsole.Error(kMediaTypesFileName, "no media types found in " + folders.mReadOnly +
                                                (fOneFolder ? "" : " or " + folders.mReadWrite) +
                                                "; --config names the folder of the file");
    }
    if (anArguments.mfMapper) {
        std::unique_ptr<DLNAMediaMapper> mapper =
            OpenMapper(folders, host.GetManager().GetMimeTypesDotIniParser(), anArguments.mfNoCopy, aConsole);
        if (mapper == nullptr) {
            return kExitSomeFailed; // without the table the answers would not be those that were asked for
        }
        host.Use(std::move(mapper));
    }
    switch (anArguments.mVerb) {
    case Verb::Parse:
        return RunParse(anArguments, host, aConsole);
    case Verb::Capabilities:
        return RunCapabilities(anArguments, host, aConsole);
    case Verb::Mapper:
        return RunMapperShow(anArguments, folders, host, aConsole);
    case Verb::Thumbnail:
        return RunThumbnail(anArguments, host, aConsole);
    case Verb::ContactSheet:
        return RunContactSheet(anArguments, host, aConsole);
    case Verb::Types:
    case Verb::Playlist:
        break;
    }
    return RunTypes(anArguments, host, aConsole);
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
    try {
        return RunCommandLine(anArgCount, anArgs);
    } catch (const std::exception& exception) {
        std::fprintf(stderr, "ezannounce: %s\n", exception.what());
        return kExitSomeFailed;
    }
}
