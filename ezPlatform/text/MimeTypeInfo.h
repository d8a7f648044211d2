#pragma once

#include "ezPlatform/base/Export.h"

/// A MIME type taken apart: "audio/L16;rate=44100;channels=2" (RFC 2045, blanks around ";" as in RFC 7231).
struct ezMimeTypeInfo;

/// Never null: a text that is no MIME type has no parameters, and a part that is no parameter (no "=", no
/// name, a quote that is never closed) is skipped. Given back with ezMimeTypeInfo_Delete.
EZPLATFORM_API ezMimeTypeInfo* ezMimeTypeInfo_New(const char* aMimeType);
/// Frees the object and with it every text that it handed out. Null is ignored.
EZPLATFORM_API void ezMimeTypeInfo_Delete(ezMimeTypeInfo* anInfo);
/// The value of a parameter (name of any case, the first of that name, quotes taken off), valid until the
/// object is deleted; null when there is none.
EZPLATFORM_API const char* ezMimeTypeInfo_GetPartValueByName(const ezMimeTypeInfo* anInfo, const char* aName);
