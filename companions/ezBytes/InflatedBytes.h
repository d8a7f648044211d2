#pragma once

#include "ezBytes/ByteReader.h"
#include "ezBytes/ByteSource.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

/// What a format itself compresses with zlib (RFC 1950): compressed frames of ID3v2, and the movie header of
/// QuickTime in a "cmov" box. Inflated whole into a block of memory, and then read as any bytes are:
///
///     InflatedBytes movie;
///     if (movie.Inflate(compressed, kLimit) == InflatedBytes::Result::Whole) {
///         ByteReader reader(movie);
///
/// Throws nothing, whatever the bytes. The memory is at most twice the bound that the caller gives, and
/// zlib's own 40 KiB while it works.
class InflatedBytes : public ByteSource {
public:
    enum class Result {
        Whole,       ///< all of it, and its checksum holds
        Damaged,     ///< no zlib data, or damaged, or they end early
        TooLarge,    ///< more than the bound
        Unavailable, ///< built without zlib
    };

    ~InflatedBytes() override;

    /// True when the library was built with zlib.
    static bool IsAvailable();

    /// Inflates what stands in a reader from its position on, up to the end of the zlib data. Unless the
    /// result is Whole there are no bytes afterwards; those of an earlier call are gone in any case.
    /// @param aCompressed  left after what was read, which may be more than the data have; no more is read
    ///                     than data of aMaxSize bytes can take, whatever the reader holds
    /// @param aMaxSize     bytes that come out at most
    Result Inflate(ByteReader& aCompressed, std::size_t aMaxSize);

    /// The same of what the data begin with: where they are more than the bound, TooLarge, the first aMaxSize
    /// bytes are there all the same. What follows those is not read, and may be damaged.
    Result InflateHead(ByteReader& aCompressed, std::size_t aMaxSize);

    std::optional<std::uint64_t> GetSize() const override { return mBytes.size(); }
    std::size_t Borrow(std::uint64_t aPosition, const unsigned char** aBytes) override;

private:
    /// Leaves in mBytes what came out, one byte above the bound at most.
    Result Run(ByteReader& aCompressed, std::size_t aMaxSize);

    std::vector<unsigned char> mBytes;
};
