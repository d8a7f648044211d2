#pragma once

#include "ezPlatform/base/Export.h"

#include <cstddef>

/// Decodes a zero-terminated base64 text (RFC 4648, the alphabet with "+" and "/") into a block of aCapacity
/// bytes, and returns the count decoded, never above aCapacity: what does not fit is dropped.
///
/// Lenient, since tags are: a character outside the alphabet (a line end, a blank, rubbish, the "-" and "_"
/// of the other alphabet) is skipped; the first "=" ends the data, and so does the end of the text where
/// padding is missing. Of a group that is not complete the whole bytes count: two characters give one byte,
/// three give two, and a single one gives none. Unused bits may be anything. n characters never give more
/// than n * 3 / 4 bytes. A null text is empty.
EZPLATFORM_API std::size_t ezBase64_Decode(const char* aText, void* anOutput, std::size_t aCapacity);
