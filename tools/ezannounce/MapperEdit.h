#pragma once

#include "Arguments.h"

#include "ez/DLNAMediaMapper.h"

#include <optional>
#include <string>

class Console;

/// Switches profiles or play speeds as the arguments ask, says what that changed, and saves. All or nothing:
/// with a profile that no entry has, or that cannot play at speeds, nothing is changed. Where nothing changes
/// nothing is saved, so that the file keeps its comments. The exit status; none, with nothing said or saved,
/// where somebody else wrote the file since the table was loaded, so that the edit is due again.
/// @param aMapper  freshly loaded: it is saved at most once
/// @param aPath    of the file that a save writes
std::optional<int> EditMapper(const Arguments& anArguments, DLNAMediaMapper& aMapper,
                              const std::string& aPath, Console& aConsole);
