#pragma once

#include "ezFormats/ProfileRules.h"
#include "ezFormats/rules/ProfileRule.h"

#include <vector>

/// Adds a problem for every rule that can never win, whichever region is preferred and whether inferred rules
/// count or not.
void ProfileRules_FindLosers(const std::vector<ProfileRule>& aRules,
                             std::vector<ProfileRulesProblem>* aProblems);

/// The rules that can win by what the table prefers, in the order in which they are asked: those of its
/// region first.
ProfileRuleList ProfileRules_InForce(ProfileRuleList aList);
