#pragma once

#include <string_view>

/// True for a MIME type that a format states, whatever its case; a type with parameters is not one.
bool FormatMimeType_IsStated(std::string_view aMimeType);

/// True when a MIME type is only another name of aType for media of an audio codec (empty: of none), so that
/// an operator may have it announced. Case does not matter; a type with parameters is not one.
bool FormatMimeType_IsOtherName(std::string_view aName, std::string_view aType, std::string_view aCodec);
/// The type that a MIME type, in lower case and without parameters, is another name of; itself when it is
/// none.
std::string_view FormatMimeType_OwnName(std::string_view aMimeType);
