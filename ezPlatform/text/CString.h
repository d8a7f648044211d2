#pragma once

#include "ezPlatform/base/Export.h"
#include "ezPlatform/base/Types.h"
#include "ezPlatform/text/Case.h"

#include <cstddef>
#include <string>
#include <string_view>

/// A text: bytes, UTF-8 by convention, any byte allowed (NUL included).
///
/// Case folding and case-blind comparison touch A to Z only and never depend on the locale. Positions and
/// counts are bytes. Operations that make a text leave this one as it is and return a new one.
class EZPLATFORM_API ezCString {
public:
    ezCString() = default;
    /// A null pointer gives the empty text.
    ezCString(const char* aText); // implicit: literals are everyday arguments
    /// Copies aLength bytes, NUL included. A null pointer gives the empty text, whatever the length.
    ezCString(const char* aText, std::size_t aLength);
    /// Copies the bytes of a view.
    explicit ezCString(std::string_view aText);

    /// Text by a printf format.
    static ezCString Format(const char* aFormat, ...) __attribute__((format(printf, 1, 2)));
    /// Takes a text over that a platform function allocated, and frees it with ezFree. Null gives the empty
    /// text.
    static ezCString FromAllocatedString(char* aText);

    /// The text with a NUL after it, never null, valid until this text changes. A NUL within ends it early
    /// for whoever reads it as a C string.
    const char* c_str() const { return mText.c_str(); }
    /// Bytes, without the NUL that c_str() puts after them.
    std::size_t GetLength() const { return mText.size(); }
    /// True when there is no byte.
    bool IsEmpty() const { return mText.empty(); }
    /// The bytes, valid until this text changes.
    std::string_view View() const { return mText; }

    /// The first aCount bytes; all of them when there are fewer.
    ezCString Left(std::size_t aCount) const;
    /// aCount bytes from aStart; a count of -1 means to the end. Clamps: a start past the end gives "".
    ezCString Mid(std::size_t aStart, std::ptrdiff_t aCount = -1) const;

    /// What stands before or after the first or last aCharacter. Where the character is absent, AfterFirst
    /// gives the empty text and the other three the whole text: whoever splits a base from an extension tests
    /// for the dot.
    /// @{
    ezCString BeforeFirst(char aCharacter) const;
    ezCString AfterFirst(char aCharacter) const;
    ezCString BeforeLast(char aCharacter) const;
    ezCString AfterLast(char aCharacter) const;
    /// @}

    /// With every A to Z as a to z, or the other way round; all other bytes stay.
    /// @{
    ezCString Lower() const;
    ezCString Upper() const;
    /// @}
    /// Without the blanks, tabs, line ends, vertical tabs and form feeds at both ends.
    ezCString TrimLeftRight() const;

    /// At least aCount bytes long: with aCharacter put after the text as often as that takes, or before it
    /// without afAtEnd. A text that is long enough stays as it is.
    ezCString Pad(std::size_t aCount, char aCharacter, bool afAtEnd) const;

    /// With aWith in place of every occurrence of aFind, or of the first alone without afAll. An empty
    /// aFind occurs nowhere. Null is the empty text.
    ezCString Replace(const char* aFind, const char* aWith, bool afAll) const;
    /// The last byte; NUL for the empty text.
    char Last() const { return mText.empty() ? '\0' : mText.back(); }

    /// True when aText stands somewhere in this text, to the letter; "" stands in every text, null in none.
    bool Contains(const char* aText) const;
    /// True when this text begins with aText, to the letter; every text begins with "".
    bool StartsWith(std::string_view aText) const;

    /// Below, equal to or above 0 as this text sorts before, with or after the other, byte by byte.
    int Compare(const ezCString& aText) const { return mText.compare(aText.mText); }
    /// The same with A to Z taken as a to z.
    int CompareNoCase(const ezCString& aText) const;

    /// Appends aText, which may be this very text.
    ezCString& operator+=(const ezCString& aText);

    /// A new text: aLeft, then aRight.
    friend ezCString operator+(const ezCString& aLeft, const ezCString& aRight) {
        ezCString sum = aLeft;
        sum += aRight;
        return sum;
    }
    /// Equal when all bytes are, case included; a null pointer equals the empty text. A C string ends at its
    /// first NUL, the text does not.
    /// @{
    friend bool operator==(const ezCString& aLeft, const ezCString& aRight) {
        return aLeft.mText == aRight.mText;
    }
    friend bool operator!=(const ezCString& aLeft, const ezCString& aRight) { return !(aLeft == aRight); }
    friend bool operator==(const ezCString& aLeft, const char* aRight) {
        return aRight == nullptr ? aLeft.IsEmpty() : aLeft.mText == aRight;
    }
    friend bool operator!=(const ezCString& aLeft, const char* aRight) { return !(aLeft == aRight); }
    /// @}
    /// True when aLeft sorts before aRight, byte by byte as Compare does.
    friend bool operator<(const ezCString& aLeft, const ezCString& aRight) {
        return aLeft.mText < aRight.mText;
    }

private:
    std::string mText;
};

/// The text without white space at both ends, as a view into the given text.
EZPLATFORM_API std::string_view ezTrimmed(std::string_view aText);

/// True when the whole text is ASCII digits, at least one, and fits; only then is *aValue written.
/// @{
EZPLATFORM_API bool ezReadDecimal(std::string_view aText, std::uint64_t* aValue);
EZPLATFORM_API bool ezReadDecimal32(std::string_view aText, uint32* aValue);
/// @}
/// The same with an optional "-" before the digits.
EZPLATFORM_API bool ezReadInt32(std::string_view aText, std::int32_t* aValue);

/// One to eight hexadecimal digits of either case as a number; 0 for any other text.
EZPLATFORM_API uint32 ezHexWord(std::string_view aText);
