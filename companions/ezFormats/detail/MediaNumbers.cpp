#include "ezFormats/detail/MediaNumbers.h"

#include "ezFormats/detail/Limits.h"

#include "ezPlatform/media/MediaInfo.h"

#include <cstddef>

namespace {

constexpr std::uint64_t kTopBit = UINT64_C(1) << 63;
constexpr std::uint64_t kMicro = 1000000;

/// What a record can tell as a number.
std::uint32_t AsRate(std::uint64_t aValue) {
    return aValue < kezMediaInfo_VariableRate ? static_cast<std::uint32_t>(aValue) : 0;
}

} // namespace

std::uint64_t MediaNumber_Scale(std::uint64_t aValue, std::uint64_t aFactor, std::uint64_t aDivisor) {
    if (aDivisor == 0 || aDivisor >= kTopBit) {
        return 0;
    }
    if (aFactor == 0 || aValue <= UINT64_MAX / aFactor) {
        return aValue * aFactor / aDivisor;
    }
    const std::uint64_t whole = aValue / aDivisor;
    const std::uint64_t rest = aValue % aDivisor;
    std::uint64_t quotient = 0;
    std::uint64_t remainder = 0;
    const auto carry = [&] {
        if (remainder >= aDivisor) {
            remainder -= aDivisor;
            quotient = ezSaturating_Add64(quotient, 1);
        }
    };
    for (unsigned bit = 64; bit-- > 0;) {
        quotient = ezSaturating_Add64(quotient, quotient); // at the largest number it stays
        remainder *= 2;
        carry();
        if ((aFactor >> bit & 1U) != 0) {
            quotient = ezSaturating_Add64(quotient, whole);
            remainder += rest;
            carry();
        }
    }
    return quotient;
}

std::uint64_t MediaNumber_Microseconds(std::uint64_t aTicks, std::uint32_t aTimescale) {
    const std::uint64_t time = MediaNumber_Scale(aTicks, kMicro, aTimescale);
    return time <= kMedia_MaxSeconds * kMicro ? time : 0;
}

void TimeSum::Add(std::uint64_t aTicks, std::uint32_t aTimescale) {
    const std::uint64_t time = MediaNumber_Microseconds(aTicks, aTimescale);
    for (Part& part : mParts) {
        if (time != 0 && (part.mTimescale == 0 || part.mTimescale == aTimescale)) {
            part.mTimescale = aTimescale;
            part.mTicks = ezSaturating_Add64(part.mTicks, aTicks);
            return;
        }
    }
    mRest = ezSaturating_Add64(mRest, time);
}

std::uint64_t TimeSum::GetMicroseconds() const {
    std::uint64_t sum = mRest;
    std::array<std::uint64_t, 2> rests = {};
    for (std::size_t i = 0; i < mParts.size(); ++i) {
        const Part& part = mParts[i];
        if (part.mTimescale != 0) {
            sum = ezSaturating_Add64(sum, MediaNumber_Scale(part.mTicks, kMicro, part.mTimescale));
            rests[i] = part.mTicks % part.mTimescale * kMicro % part.mTimescale; // of a microsecond
        }
    }
    // Together they may be one more: a / A + b / B >= 1, where no product has more than 64 bits.
    const std::uint64_t first = mParts[0].mTimescale;
    const std::uint64_t second = mParts[1].mTimescale;
    const bool fCarry = second != 0 && rests[0] * second >= (second - rests[1]) * first;
    sum = ezSaturating_Add64(sum, fCarry ? 1 : 0);
    return sum <= kMedia_MaxSeconds * kMicro ? sum : 0;
}

std::uint32_t MediaNumber_BitRate(std::uint64_t aBytes, std::uint64_t aTicks, std::uint32_t aTimescale) {
    return aBytes > UINT64_MAX / 8 ? 0 : AsRate(MediaNumber_Scale(aBytes * 8, aTimescale, aTicks));
}

std::uint32_t MediaNumber_FrameRate(std::uint64_t aPictures, std::uint64_t aTicks, std::uint32_t aTimescale) {
    constexpr std::uint64_t kTwice = 2000;
    const std::uint64_t twice =
        aPictures > UINT64_MAX / kTwice ? 0 : MediaNumber_Scale(aPictures * kTwice, aTimescale, aTicks);
    return AsRate(twice / 2 + twice % 2);
}
