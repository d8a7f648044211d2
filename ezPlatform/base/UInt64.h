#pragma once

#include "ezPlatform/base/Export.h"
#include "ezPlatform/base/Types.h"

#include <type_traits>

class ezCString;

/// Unsigned 64-bit value for positions, sizes and durations.
///
/// Takes every integer type; a negative value is the assertion "aValue >= 0" and, where the handler returns,
/// 0. Arithmetic wraps like the built-in type: whoever adds to a position guards the sum. A position is moved
/// back by subtraction, never by adding a negative number. Dividing by 0 is the assertion "aValue != 0" and
/// gives 0.
class EZPLATFORM_API ezuint64 {
public:
    constexpr ezuint64() = default;

    /// Takes a value of any integer type, but no bool. A negative one is the assertion "aValue >= 0" and,
    /// where the handler returns, 0.
    template <typename Integer, typename = std::enable_if_t<std::is_integral<Integer>::value &&
                                                            !std::is_same<Integer, bool>::value>>
    ezuint64(Integer aValue) : mValue(FromInteger(aValue)) {} // implicit: `position + 4` is everyday use

    /// The value as the built-in type, whole.
    std::uint64_t ToUInt64() const { return mValue; }

    /// The value as 32 bits; 0xFFFFFFFF when it is larger.
    uint32 ToUInt32() const { return mValue > UINT32_MAX ? UINT32_MAX : static_cast<uint32>(mValue); }

    /// The value in decimal. Who calls it includes ezPlatform/text/CString.h, where it is made.
    ezCString ToCString() const;

    /// The value as a file offset; -1, which every file operation refuses, when it is above 2^63-1.
    ezFileOffset ToFileOffset() const {
        return mValue > static_cast<std::uint64_t>(INT64_MAX) ? -1 : static_cast<ezFileOffset>(mValue);
    }

    /// Adds to or subtracts from this value; wraps at 2^64.
    /// @{
    ezuint64& operator+=(const ezuint64& aValue) {
        mValue += aValue.mValue;
        return *this;
    }
    ezuint64& operator-=(const ezuint64& aValue) {
        mValue -= aValue.mValue;
        return *this;
    }
    /// @}

    /// Sum, difference and product; they wrap at 2^64.
    /// @{
    friend ezuint64 operator+(const ezuint64& aLeft, const ezuint64& aRight) {
        return aLeft.mValue + aRight.mValue;
    }
    friend ezuint64 operator-(const ezuint64& aLeft, const ezuint64& aRight) {
        return aLeft.mValue - aRight.mValue;
    }
    friend ezuint64 operator*(const ezuint64& aLeft, const ezuint64& aRight) {
        return aLeft.mValue * aRight.mValue;
    }
    /// @}
    /// The quotient without its fraction. A divisor of 0 is the assertion "aValue != 0" and gives 0.
    friend ezuint64 operator/(const ezuint64& aLeft, const ezuint64& aRight) {
        return Divide(aLeft.mValue, aRight.mValue);
    }

    /// Compare as unsigned numbers; a built-in integer on either side is converted first.
    /// @{
    friend bool operator==(const ezuint64& aLeft, const ezuint64& aRight) {
        return aLeft.mValue == aRight.mValue;
    }
    friend bool operator!=(const ezuint64& aLeft, const ezuint64& aRight) {
        return aLeft.mValue != aRight.mValue;
    }
    friend bool operator<(const ezuint64& aLeft, const ezuint64& aRight) {
        return aLeft.mValue < aRight.mValue;
    }
    friend bool operator<=(const ezuint64& aLeft, const ezuint64& aRight) {
        return aLeft.mValue <= aRight.mValue;
    }
    friend bool operator>(const ezuint64& aLeft, const ezuint64& aRight) {
        return aLeft.mValue > aRight.mValue;
    }
    friend bool operator>=(const ezuint64& aLeft, const ezuint64& aRight) {
        return aLeft.mValue >= aRight.mValue;
    }
    /// @}

private:
    template <typename Integer>
    static std::uint64_t FromInteger(Integer aValue) {
        if constexpr (std::is_signed<Integer>::value) {
            return FromSigned(aValue);
        } else {
            return aValue;
        }
    }

    static std::uint64_t FromSigned(std::int64_t aValue);
    static std::uint64_t Divide(std::uint64_t aLeft, std::uint64_t aRight);

    std::uint64_t mValue = 0;
};

/// The largest ezuint64; as a position it means none.
inline constexpr std::uint64_t kezuint64_Max = UINT64_MAX;
