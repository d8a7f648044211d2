#pragma once

#include "ezPlatform/base/Export.h"
#include "ezPlatform/text/CString.h"

/// Makes a folder and those above it that are missing. True when the folder exists in the end; the empty path
/// is the working folder.
EZPLATFORM_API bool ezDir_CreateRecursively(const ezCString& aPath);
