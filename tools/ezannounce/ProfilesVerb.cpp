#include "Console.h"
#include "SafeText.h"
#include "Unreadable.h"
#include "Verbs.h"

#include "ezFormats/ProfileRules.h"

namespace {

/// Writes the problems of a table of profile rules. True when there is none.
bool CheckRules(const std::string& aPath, Console& aConsole) {
    std::vector<ProfileRulesProblem> problems;
    ProfileRules::FromFile(aPath.c_str(), &problems);
    if (problems.size() == 1 && problems.front().mLine == 0) {
        const std::string why = WhyUnreadable(aPath);
        aConsole.Error(aPath, why == "cannot be opened" ? problems.front().mText : why);
        return false;
    }
    const std::string name = ForTerminal(aPath);
    for (const ProfileRulesProblem& problem : problems) {
        aConsole.Print(name + ":" + std::to_string(problem.mLine) + ": " + problem.mText + "\n");
    }
    aConsole.Print(name + ": problems: " + std::to_string(problems.size()) + "\n");
    return problems.empty();
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
