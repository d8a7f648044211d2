#include "profiles/ProfileTable.h"

#include "host/Unreadable.h"
#include "output/Console.h"

#include "ezHosting/HostFolders.h"

#include <filesystem>
#include <system_error>

namespace {

/// The file in the configuration folders; "" where there is none.
std::string FindFile(const ezHostFolders& aFolders) {
    for (const std::string& folder : {aFolders.mWritable, aFolders.mReadOnly}) {
        const std::filesystem::path path = std::filesystem::path(folder) / kProfileRulesFileName;
        std::error_code ignored;
        // A link that leads nowhere is a mistake to be told, not a file that is not there.
        if (std::filesystem::exists(std::filesystem::symlink_status(path, ignored))) {
            return path.string();
        }
    }
    return {};
}

/// Says what is wrong with a file. True when something is.
bool TellProblems(const std::string& aPath, const ProfileRulesFile& aFile, Console& aConsole) {
    if (!aFile.mUnreadable.empty()) {
        aConsole.Error(aPath, aFile.mUnreadable);
        return true;
    }
    for (const ProfileRulesProblem& problem : aFile.mProblems) {
        aConsole.Error(aPath + ":" + std::to_string(problem.mLine), problem.mText);
    }
    return !aFile.mProblems.empty();
}

} // namespace

ProfileRulesFile ReadProfileRules(const std::string& aPath) {
    ProfileRulesFile file;
    file.mRules = ProfileRules::FromFile(ezCString(aPath), &file.mProblems);
    if (file.mProblems.size() == 1 && file.mProblems.front().mLine == 0) {
        const std::string why = WhyUnreadable(aPath);
        file.mUnreadable = why == "cannot be opened" ? file.mProblems.front().mText : why;
    }
    return file;
}

ProfileTable OpenProfileTable(const Arguments& anArguments, const ezHostFolders& aFolders,
                              Console& aConsole) {
    const std::string path = anArguments.mProfiles ? *anArguments.mProfiles : FindFile(aFolders);
    if (path.empty() && !anArguments.mProfiles) {
        return {};
    }
    const ProfileRulesFile file = ReadProfileRules(path);
    if (!TellProblems(path, file, aConsole)) {
        return {file.mRules, kExitSuccess};
    }
    if (anArguments.mProfiles) {
        return {nullptr, kExitWrongUsage};
    }
    aConsole.Error(path, "not used; the built-in table of profile rules stands in for it");
    return {nullptr, kExitSomeFailed};
}
