#include "ezFormats/codecs/FloatRates.h"

#include "ezBytes/ByteReader.h"
#include "ezBytes/FloatBits.h"
#include "ezFormats/detail/Limits.h"

#include <cmath>

std::uint32_t ReadFloatRate(ByteReader& aReader) {
    const double rate = Float_OfBits64(aReader.ReadBig(8));
    return rate >= 1 && rate <= kSamplingRate_MaxFloat ? static_cast<std::uint32_t>(rate) : 0;
}

std::uint32_t ReadExtendedRate(ByteReader& aReader) {
    constexpr int kBias = 16383;
    constexpr int kFractionBits = 63;
    const auto head =
        static_cast<int>(aReader.ReadBig(2)); // with the sign on top: a negative one is too large
    const std::uint64_t mantissa = aReader.ReadBig(8);
    const int exponent = head - kBias;
    if (exponent < 0 || exponent > kFractionBits) {
        return 0;
    }
    const double rate = std::ldexp(static_cast<double>(mantissa), exponent - kFractionBits);
    return rate >= 1 && rate <= kSamplingRate_MaxFloat ? static_cast<std::uint32_t>(std::lround(rate)) : 0;
}
