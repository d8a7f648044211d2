#pragma once

#include "ezPlatform/base/Export.h"

#include <cstdarg>

/// A place where a host lets others take part: a callback, and pointers that it finds there by name.
struct ezHook;

/// @param anArguments  what the host gives at that place; the hook's documentation says what
using ezHookCallback = void (*)(ezHook* aHook, const char* aName, va_list anArguments);

/// Given back with ezHook_Delete.
EZPLATFORM_API ezHook* ezHook_New();
/// Frees the hook, not what its properties point to. Null is ignored.
EZPLATFORM_API void ezHook_Delete(ezHook* aHook);
/// The callback to call; null for none.
EZPLATFORM_API void ezHook_SetCallback(ezHook* aHook, ezHookCallback aCallback);
/// Files a borrowed pointer under a name; null takes it away. A null name files nothing.
EZPLATFORM_API void ezHook_SetVoidPtrProperty(ezHook* aHook, const char* aName, void* aValue);
/// The pointer under a name; null when there is none, or no hook, or no name.
EZPLATFORM_API void* ezHook_GetVoidPtrProperty(const ezHook* aHook, const char* aName);
/// Calls the callback, if there is one, with a name and further arguments.
EZPLATFORM_API void ezHook_Call(ezHook* aHook, const char* aName, ...);
