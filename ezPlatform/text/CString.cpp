#include "ezPlatform/text/CString.h"

#include "ezPlatform/base/Memory.h"
#include "ezPlatform/base/UInt64.h"

#include <algorithm>
#include <cinttypes>
#include <cstdarg>
#include <cstdio>

namespace {

constexpr const char* kWhiteSpace = " \t\r\n\v\f";

constexpr char UpperCharacter(char aCharacter) {
    return aCharacter >= 'a' && aCharacter <= 'z' ? static_cast<char>(aCharacter - 'a' + 'A') : aCharacter;
}

} // namespace

ezCString::ezCString(const char* aText) : mText(aText != nullptr ? aText : "") {}

ezCString::ezCString(const char* aText, std::size_t aLength)
    : mText(aText != nullptr ? aText : "", aText != nullptr ? aLength : 0) {}

ezCString::ezCString(std::string_view aText) : mText(aText) {}

ezCString ezCString::Format(const char* aFormat, ...) {
    ezCString text;
    std::va_list args;
    va_start(args, aFormat);
    std::va_list measured;
    va_copy(measured, args);
    const int length = std::vsnprintf(nullptr, 0, aFormat, measured);
    va_end(measured);
    if (length > 0) {
        const std::size_t size = static_cast<std::size_t>(length);
        text.mText.resize(size + 1); // vsnprintf ends its output with a NUL
        std::vsnprintf(&text.mText[0], size + 1, aFormat, args);
        text.mText.resize(size);
    }
    va_end(args);
    return text;
}

ezCString ezCString::FromAllocatedString(char* aText) {
    ezCString text(aText);
    ezFree(aText);
    return text;
}

ezCString ezCString::Left(std::size_t aCount) const {
    return ezCString(View().substr(0, aCount));
}

ezCString ezCString::Mid(std::size_t aStart, std::ptrdiff_t aCount) const {
    if (aStart >= mText.size()) {
        return ezCString();
    }
    const std::size_t count = aCount < 0 ? std::string_view::npos : static_cast<std::size_t>(aCount);
    return ezCString(View().substr(aStart, count));
}

ezCString ezCString::BeforeFirst(char aCharacter) const {
    return ezCString(View().substr(0, mText.find(aCharacter)));
}

ezCString ezCString::AfterFirst(char aCharacter) const {
    const std::size_t at = mText.find(aCharacter);
    return at == std::string::npos ? ezCString() : ezCString(View().substr(at + 1));
}

ezCString ezCString::BeforeLast(char aCharacter) const {
    return ezCString(View().substr(0, mText.rfind(aCharacter)));
}

ezCString ezCString::AfterLast(char aCharacter) const {
    const std::size_t at = mText.rfind(aCharacter);
    return at == std::string::npos ? *this : ezCString(View().substr(at + 1));
}

ezCString ezCString::Lower() const {
    ezCString lower = *this;
    std::transform(lower.mText.begin(), lower.mText.end(), lower.mText.begin(), ezLower);
    return lower;
}

ezCString ezCString::Upper() const {
    ezCString upper = *this;
    std::transform(upper.mText.begin(), upper.mText.end(), upper.mText.begin(), UpperCharacter);
    return upper;
}

ezCString ezCString::TrimLeftRight() const {
    return ezCString(ezTrimmed(View()));
}

ezCString ezCString::Pad(std::size_t aCount, char aCharacter, bool afAtEnd) const {
    ezCString text = *this;
    if (aCount > mText.size()) {
        text.mText.insert(afAtEnd ? mText.size() : 0, aCount - mText.size(), aCharacter);
    }
    return text;
}

ezCString ezCString::Replace(const char* aFind, const char* aWith, bool afAll) const {
    const std::string_view find(aFind != nullptr ? aFind : "");
    const std::string_view with(aWith != nullptr ? aWith : "");
    ezCString text;
    std::size_t from = 0;
    std::size_t at = find.empty() ? std::string::npos : mText.find(find);
    while (at != std::string::npos) {
        text.mText.append(mText, from, at - from);
        text.mText += with;
        from = at + find.size();
        at = afAll ? mText.find(find, from) : std::string::npos;
    }
    text.mText.append(mText, from, std::string::npos);
    return text;
}

bool ezCString::Contains(const char* aText) const {
    return aText != nullptr && mText.find(aText) != std::string::npos;
}

bool ezCString::StartsWith(std::string_view aText) const {
    return View().substr(0, aText.size()) == aText;
}

int ezCString::CompareNoCase(const ezCString& aText) const {
    return ezCompareNoCase(mText, aText.mText);
}

ezCString& ezCString::operator+=(const ezCString& aText) {
    mText += aText.mText;
    return *this;
}

ezCString ezuint64::ToCString() const {
    return ezCString::Format("%" PRIu64, mValue);
}

std::string_view ezTrimmed(std::string_view aText) {
    const std::size_t first = aText.find_first_not_of(kWhiteSpace);
    if (first == std::string_view::npos) {
        return {};
    }
    return aText.substr(first, aText.find_last_not_of(kWhiteSpace) - first + 1);
}

bool ezReadDecimal(std::string_view aText, std::uint64_t* aValue) {
    if (aText.empty()) {
        return false;
    }
    std::uint64_t value = 0;
    for (const char character : aText) {
        if (character < '0' || character > '9') {
            return false;
        }
        const std::uint64_t digit = static_cast<std::uint64_t>(character - '0');
        if (value > (UINT64_MAX - digit) / 10) {
            return false;
        }
        value = value * 10 + digit;
    }
    *aValue = value;
    return true;
}

bool ezReadDecimal32(std::string_view aText, uint32* aValue) {
    std::uint64_t value = 0;
    if (!ezReadDecimal(aText, &value) || value > UINT32_MAX) {
        return false;
    }
    *aValue = static_cast<uint32>(value);
    return true;
}

bool ezReadInt32(std::string_view aText, std::int32_t* aValue) {
    const bool fNegative = !aText.empty() && aText.front() == '-';
    std::uint64_t magnitude = 0;
    if (!ezReadDecimal(fNegative ? aText.substr(1) : aText, &magnitude)) {
        return false;
    }
    const std::uint64_t limit = static_cast<std::uint64_t>(INT32_MAX) + (fNegative ? 1 : 0);
    if (magnitude > limit) {
        return false;
    }
    const std::int64_t value = static_cast<std::int64_t>(magnitude);
    *aValue = static_cast<std::int32_t>(fNegative ? -value : value);
    return true;
}

uint32 ezHexWord(std::string_view aText) {
    if (aText.empty() || aText.size() > 8) {
        return 0;
    }
    uint32 value = 0;
    for (const char character : aText) {
        const char lower = ezLower(character);
        uint32 digit = 0;
        if (lower >= '0' && lower <= '9') {
            digit = static_cast<uint32>(lower - '0');
        } else if (lower >= 'a' && lower <= 'f') {
            digit = static_cast<uint32>(lower - 'a') + 10;
        } else {
            return 0;
        }
        value = value << 4 | digit;
    }
    return value;
}
