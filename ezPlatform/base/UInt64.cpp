#include "ezPlatform/base/UInt64.h"

#include "ezPlatform/base/Assert.h"

std::uint64_t ezuint64::FromSigned(std::int64_t aValue) {
    return ezAssert(aValue >= 0, "aValue >= 0", "UInt64") ? static_cast<std::uint64_t>(aValue) : 0;
}

std::uint64_t ezuint64::Divide(std::uint64_t aLeft, std::uint64_t aRight) {
    return ezAssert(aRight != 0, "aValue != 0", "UInt64") ? aLeft / aRight : 0;
}
