#pragma once

#include "arguments/Arguments.h"

#include "ez/DLNAMediaMapper.h"

#include <functional>
#include <memory>
#include <string>

class Console;

using MapperOpener = std::function<std::unique_ptr<DLNAMediaMapper>()>;

/// Switches profiles or play speeds as the arguments ask, says what that changed, and saves. All or nothing:
/// with a profile that no entry has, or that cannot play at speeds, nothing is changed. Where nothing changes
/// nothing is saved, so that the file keeps its comments. Where somebody else wrote the file since the table
/// was loaded, nothing is said or saved, and the edit is made again on a fresh load: kMapperEdit_MaxTries
/// in all, after which it fails. The exit status.
/// @param anOpen  loads the table again at each call; null, after an error line, where it cannot
/// @param aPath   of the file that a save writes
int EditMapper(const Arguments& anArguments, const MapperOpener& anOpen, const std::string& aPath,
               Console& aConsole);
