#pragma once

#include "ez/DLNAMediaMapper.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <vector>

/// The bits of a flag word in words, "no byte seek" among them; those without a name as one number.
std::vector<std::string> FlagsInWords(uint32 aFlags);

/// The duration in whole seconds, where the text of the entry converts.
std::optional<uint32> SecondsOf(const DLNAMediaMapperEntry& anEntry);

std::vector<std::string> SpeedsOf(const DLNAMediaMapperEntry& anEntry);

/// The line as a save would write it. The entry is as it was afterwards.
std::string LineOf(DLNAMediaMapperEntry& anEntry);

/// What an entry states, for programs.
nlohmann::ordered_json JsonOf(const DLNAMediaMapperEntry& anEntry);

std::string Joined(const std::vector<std::string>& aTexts);
