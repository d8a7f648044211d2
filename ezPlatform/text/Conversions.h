#pragma once

#include "ezPlatform/base/Export.h"
#include "ezPlatform/base/Types.h"

/// Converts the duration of a res element (UPnP ContentDirectory: "H+:MM:SS", then an optional fraction ".F*"
/// or ".F0/F1" with F0 below F1) to whole seconds, the fraction dropped. 0 on success; -1, *aResult
/// untouched, for any other text: a sign, minutes or seconds over 59, blanks, more than 32 bits of seconds,
/// null. The last argument is reserved and 0.
EZPLATFORM_API int ezConvert_dlnadurationstrtouint32(const char* aText, uint32* aResult, int aReserved);
