#include "ezPlatform/text/Conversions.h"

#include "ezPlatform/text/CString.h"

#include <algorithm>
#include <string_view>

namespace {

/// Two digits, 00 to 59.
bool ReadSixtieths(std::string_view aText, std::uint64_t* aValue) {
    return aText.size() == 2 && ezReadDecimal(aText, aValue) && *aValue <= 59;
}

bool IsDigits(std::string_view aText) {
    return aText.find_first_not_of("0123456789") == std::string_view::npos;
}

/// Whether one number of any length is below another one.
bool IsBelow(std::string_view aLeft, std::string_view aRight) {
    aLeft.remove_prefix(std::min(aLeft.find_first_not_of('0'), aLeft.size()));
    aRight.remove_prefix(std::min(aRight.find_first_not_of('0'), aRight.size()));
    return aLeft.size() != aRight.size() ? aLeft.size() < aRight.size() : aLeft < aRight;
}

/// What may follow the point: digits, or two numbers of which the first is the smaller.
bool IsFraction(std::string_view aText) {
    const std::size_t slash = aText.find('/');
    if (slash == std::string_view::npos) {
        return IsDigits(aText);
    }
    const std::string_view numerator = aText.substr(0, slash);
    const std::string_view denominator = aText.substr(slash + 1);
    return !numerator.empty() && IsDigits(numerator) && IsDigits(denominator) &&
           IsBelow(numerator, denominator);
}

} // namespace

int ezConvert_dlnadurationstrtouint32(const char* aText, uint32* aResult, int /*aReserved*/) {
    if (aText == nullptr || aResult == nullptr) {
        return -1;
    }
    std::string_view text(aText);
    const std::size_t point = text.find('.');
    if (point != std::string_view::npos) {
        if (!IsFraction(text.substr(point + 1))) {
            return -1;
        }
        text = text.substr(0, point);
    }
    const std::size_t first = text.find(':');
    const std::size_t second = first == std::string_view::npos ? first : text.find(':', first + 1);
    if (second == std::string_view::npos) {
        return -1;
    }
    std::uint64_t hours = 0;
    std::uint64_t minutes = 0;
    std::uint64_t seconds = 0;
    if (!ezReadDecimal(text.substr(0, first), &hours) ||
        !ReadSixtieths(text.substr(first + 1, second - first - 1), &minutes) ||
        !ReadSixtieths(text.substr(second + 1), &seconds) || hours > UINT32_MAX / 3600) {
        return -1;
    }
    const std::uint64_t total = hours * 3600 + minutes * 60 + seconds;
    if (total > UINT32_MAX) {
        return -1;
    }
    *aResult = static_cast<uint32>(total);
    return 0;
}
