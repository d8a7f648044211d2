#pragma once

#include "ezPlatform/base/UInt64.h"

#include <cstdint>
#include <optional>

/// @name A size that may not be known
/// The interfaces that hosts know (ezStream::GetSize, ezMediaParserStream::GetMediaSize, the key "fs" of a
/// record) write 0 for a size that is not known; inside it is one without a value. These two convert, and
/// nothing else does.
/// @{
/// Takes a size from such an interface.
inline std::optional<std::uint64_t> ezKnownSize(const ezuint64& aSize) {
    const std::uint64_t size = aSize.ToUInt64();
    return size != 0 ? std::optional<std::uint64_t>(size) : std::nullopt;
}
/// Hands a size to such an interface. A known size of 0 cannot be told there.
inline ezuint64 ezSizeOrZero(const std::optional<std::uint64_t>& aSize) {
    return aSize.value_or(0);
}
/// @}
