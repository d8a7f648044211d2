#pragma once

#include "ezFormats/asf/ASFHeader.h"

#include <cstdint>

class ByteReader;
class MediaBytes;

/// How long a file plays.
struct ASFLength {
    std::uint64_t mMilliseconds = 0; ///< 0: not known
    const char* mMethod = "header";
    std::uint64_t mBytes = 0; ///< of the packets, of a file of known size
};

/// The length that the header states; where that is void, or its bytes contradict it, that of the last
/// packets, or an estimate.
/// @param aRest  stands where the header ends
ASFLength MeasureASF(MediaBytes& aBytes, const ByteReader& aRest, const ASFHeader& aHeader,
                     std::uint32_t& aBudget);
