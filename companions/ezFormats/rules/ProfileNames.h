#pragma once

#include <string_view>

/// True for a media format profile of the DLNA guidelines (IEC 62481-2), to the letter: those that a rule
/// announces, and those that public sources name without limits, so that an operator can.
bool ProfileNames_Has(std::string_view aName);
