#pragma once

#include "arguments/Arguments.h"

#include "ezFormats/ProfileRules.h"

#include <memory>
#include <string>
#include <vector>

class Console;
struct ezHostFolders;

constexpr const char* kProfileRulesFileName = "ProfileRules.txt";

/// What came of reading a file of profile rules.
struct ProfileRulesFile {
    std::shared_ptr<const ProfileRules> mRules; ///< null where there is a problem
    std::vector<ProfileRulesProblem> mProblems; ///< by line
    std::string mUnreadable;                    ///< why the file as a whole cannot be taken; "" where it can
};

ProfileRulesFile ReadProfileRules(const std::string& aPath);

/// The profile rules in force.
struct ProfileTable {
    std::shared_ptr<const ProfileRules> mRules; ///< null for the built-in ones
    int mStatus = kExitSuccess;                 ///< what the exit status is at least
};

/// The rules that a person who gave these arguments wants: of --profiles, else of "ProfileRules.txt" in the
/// state folder, else of the one in the read-only folder, else the built-in ones. The problems of a file are
/// error lines. One that was named is then wrong usage and nothing is to be shown; in place of one that was
/// only found the built-in rules are in force, as in a server, and the status is that of a failure.
ProfileTable OpenProfileTable(const Arguments& anArguments, const ezHostFolders& aFolders, Console& aConsole);
