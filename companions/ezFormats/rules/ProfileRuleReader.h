#pragma once

#include "ezFormats/ProfileRules.h"
#include "ezFormats/rules/ProfileRule.h"

#include <string_view>
#include <vector>

/// True for a MIME type, in lower case, that some parser may state.
using ProfileMimeTypeCheck = bool (*)(std::string_view aMimeType);
/// The check of this library's own parsers.
bool ProfileMimeType_IsGiven(std::string_view aMimeType);

/// The rules of a table, in its order, without those that have a problem; and every problem, in the order of
/// the lines. Nothing after the last rule that a table can have is read.
ProfileRuleList ProfileRules_Read(std::string_view aText, std::vector<ProfileRulesProblem>* aProblems,
                                  ProfileMimeTypeCheck aCheck = ProfileMimeType_IsGiven);

/// Adds a problem for every rule that can never win.
void ProfileRules_FindLosers(const std::vector<ProfileRule>& aRules,
                             std::vector<ProfileRulesProblem>* aProblems);
