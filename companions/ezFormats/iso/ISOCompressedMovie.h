#pragma once

#include "ezBytes/ByteReader.h"
#include "ezBytes/InflatedBytes.h"

#include <cstdint>

/// A movie's header that QuickTime compressed: "moov" holds a box "cmov" alone, and that the algorithm
/// ("dcom") and the data ("cmvd"), after the size that comes out, which is a whole "moov" box.
class ISOCompressedMovie {
public:
    enum class Result {
        Plain,       ///< it is not compressed; the reader is left as it was
        Inflated,    ///< the reader is that of the inflated content, which lives as long as this object
        Damaged,     ///< or cut
        TooLarge,    ///< more than kISO_MaxInflatedMovie comes out
        Unsupported, ///< by another algorithm than zlib's, or built without zlib
    };

    /// @param aMovie  the content of "moov"
    Result Open(ByteReader& aMovie, std::uint32_t& aBoxBudget);

private:
    InflatedBytes mBytes;
};
