#pragma once

#include "ezPlatform/base/Export.h"

#include <dirent.h>

/// Takes a descriptor that was just opened out of the places of standard input, output and error (0 to 2).
///
/// A daemon often has those closed, and the system gives the lowest number that is free: what somebody then
/// prints or logs would be written into the file. Whoever opens passes what was opened through here.
///
/// @return aFile itself where it is 3 or more, or negative (an open that failed; errno is kept). Else a
/// descriptor of 3 or more of the same open file, closed on exec, and aFile is closed; -1 with errno, aFile
/// closed too, where there is no room for one.
EZPLATFORM_API int ezDescriptor_AboveStandard(int aFile);

/// The same for a folder that was just opened: aFolder itself, null included, or the same folder, opened anew
/// at its start, and aFolder is closed; null with errno, aFolder closed too, where there is no room.
EZPLATFORM_API DIR* ezDescriptor_AboveStandard(DIR* aFolder);
