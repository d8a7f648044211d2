#pragma once

#include "Arguments.h"

#include "ez/DLNAMediaMapper.h"

#include <string>

class Console;

/// Switches profiles or play speeds as the arguments ask, says what that changed, and saves. All or nothing:
/// with a profile that no entry has, or that cannot play at speeds, nothing is changed. Where nothing changes
/// nothing is saved, so that the file keeps its comments. Returns the exit status.
/// @param aMapper  freshly loaded: it is saved at most once
/// @param aPath    of the file that a save writes
int EditMapper(const Arguments& anArguments, DLNAMediaMapper& aMapper, const std::string& aPath,
               Console& aConsole);
