#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

/// One of the MIME types that formats state, as a bit of its own. Case and parameters of aMimeType do not
/// matter; 0 for any other.
std::uint32_t FormatMimeType_Bit(std::string_view aMimeType);
/// The type of the bit 1 << anIndex; empty after the last one.
std::string_view FormatMimeType_At(std::size_t anIndex);

/// True when a MIME type is only another name of aType for media of an audio codec (empty: of none), so that
/// an operator may have it announced. Case does not matter; a type with parameters is no such name.
bool FormatMimeType_IsOtherName(std::string_view aName, std::string_view aType, std::string_view aCodec);
/// The type that a MIME type, in lower case and without parameters, is another name of; itself when it is
/// none.
std::string_view FormatMimeType_OwnName(std::string_view aMimeType);
