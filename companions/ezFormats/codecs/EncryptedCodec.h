#pragma once

#include "ezPlatform/text/CString.h"

#include <string_view>

/// The names of codecs whose samples are encrypted: no rule for the plain codec is to meet them.

inline constexpr const char* kEncryptedCodec = "encrypted:";

/// The marked name of a codec.
inline ezCString EncryptedCodecName(const ezCString& aName) {
    return kEncryptedCodec + aName;
}

/// The name of a codec without that mark.
inline std::string_view PlainCodecName(const ezCString& aName) {
    const std::string_view mark = kEncryptedCodec;
    const std::string_view name = aName.View();
    return name.substr(0, mark.size()) == mark ? name.substr(mark.size()) : name;
}
