#pragma once

#include <cstdint>

/// Divides by one number many times, exactly. A division of 64 bits takes many times as long as this does, on
/// the processors of devices a hundred times.
class Divider {
public:
    /// @param aDivisor not 0
    explicit Divider(std::uint32_t aDivisor) : mDivisor(aDivisor) {
        unsigned bits = 0;
        for (std::uint32_t rest = aDivisor; rest != 0; rest >>= 1) {
            ++bits;
        }
        // The inverse is too large by at most the divisor in 2 to the power of the shift. Times a dividend of
        // 8 bits more that is below 1, and so the quotient is too large by less than 1 in the divisor: cut,
        // it is the same. With more bits the inverse would not fit.
        if (bits <= kMaximumBits) {
            mShift = 2 * bits + 8;
            mInverse = static_cast<std::uint32_t>((std::uint64_t{1} << mShift) / aDivisor + 1);
        }
    }

    /// The quotient, cut. aDividend is below 256 times the divisor.
    unsigned char Divide(std::uint64_t aDividend) const {
        if (mInverse == 0) {
            return static_cast<unsigned char>(aDividend / mDivisor);
        }
        return static_cast<unsigned char>((std::uint64_t{static_cast<std::uint32_t>(aDividend)} * mInverse) >>
                                          mShift);
    }

private:
    static constexpr unsigned kMaximumBits = 22;

    std::uint32_t mDivisor;
    std::uint32_t mInverse = 0; ///< 0: the divisor is too large for one
    unsigned mShift = 0;
};
