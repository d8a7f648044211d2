#pragma once

#include "ezFormats/ProfileRules.h"
#include "ezFormats/detail/FormatMimeTypes.h"
#include "ezFormats/rules/ProfileRule.h"

#include <string_view>
#include <vector>

/// True for a MIME type that some parser may state.
using ProfileMimeTypeCheck = bool (*)(std::string_view aMimeType);

/// The rules of a table, in its order, without those that have a problem, whether they count or not; and
/// every problem, in the order of the lines. A line with endings is a rule for each. Nothing after the last
/// rule that a table can have is read.
ProfileRuleList ProfileRules_Read(std::string_view aText, std::vector<ProfileRulesProblem>* aProblems,
                                  ProfileMimeTypeCheck aCheck = FormatMimeType_IsStated);
