#pragma once

#include "ezFormats/ProfileRules.h"
#include "ezFormats/rules/ProfileRule.h"

#include <string_view>
#include <vector>

/// The rules of a table, in its order, without those that have a problem; and every problem, in the order of
/// the lines. Nothing behind the last rule that a table can have is read.
std::vector<ProfileRule> ProfileRules_Read(std::string_view aText,
                                           std::vector<ProfileRulesProblem>* aProblems);

/// Adds a problem for every rule that can never win.
void ProfileRules_FindLosers(const std::vector<ProfileRule>& aRules,
                             std::vector<ProfileRulesProblem>* aProblems);
