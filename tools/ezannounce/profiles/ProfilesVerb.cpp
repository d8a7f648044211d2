#include "profiles/ProfilesVerb.h"

#include "arguments/Arguments.h"
#include "output/Console.h"
#include "output/SafeText.h"
#include "profiles/ProfileTable.h"

namespace {

/// Writes the problems of a table of profile rules. True when there are none.
bool CheckRules(const std::string& aPath, Console& aConsole) {
    const ProfileRulesFile file = ReadProfileRules(aPath);
    if (!file.mUnreadable.empty()) {
        aConsole.Error(aPath, file.mUnreadable);
        return false;
    }
    const std::string name = ForTerminal(aPath);
    for (const ProfileRulesProblem& problem : file.mProblems) {
        aConsole.Print(name + ":" + std::to_string(problem.mLine) + ": " + problem.mText + "\n");
    }
    aConsole.Print(name + ": problems: " + std::to_string(file.mProblems.size()) + "\n");
    return file.mProblems.empty();
}

} // namespace

int RunProfiles(const Arguments& anArguments, Console& aConsole) {
    if (anArguments.mOperands.empty()) {
        aConsole.Print(ProfileRules::BuiltInText());
        return kExitSuccess;
    }
    bool fSound = true;
    for (const std::string& path : anArguments.mOperands) {
        fSound = CheckRules(path, aConsole) && fSound;
    }
    return fSound ? kExitSuccess : kExitSomeFailed;
}
