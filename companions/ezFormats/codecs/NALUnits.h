#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

class ByteReader;

// NAL units, as streams of H.264 and of H.265 have them.

/// A NAL unit from its header on, borrowed.
struct NALUnit {
    const unsigned char* mBytes = nullptr;
    std::size_t mSize = 0;
};

/// Walks the units of a byte stream (ITU-T H.264 and H.265, annex B), which may begin and end anywhere: what
/// stands before the first start code is no unit, and the last unit may be cut.
class NALUnitWalk {
public:
    /// @param aBytes  borrowed
    NALUnitWalk(const unsigned char* aBytes, std::size_t aSize) : mBytes(aBytes), mSize(aSize) {}

    /// The next unit, without the zeros after it; empty ones are passed over. False past the last.
    bool Next(NALUnit& aUnit);

private:
    /// Where the next start code begins; mSize where there is none.
    std::size_t FindStartCode(std::size_t aFrom) const;

    const unsigned char* mBytes;
    std::size_t mSize;
    std::size_t mStartCode = 0; ///< that of the next unit, once the first one is found
    bool mfBegun = false;
};

/// Takes the units of a stream one after the other.
class NALUnitTaker {
public:
    NALUnitTaker() = default;
    virtual ~NALUnitTaker();
    NALUnitTaker(const NALUnitTaker&) = delete;
    NALUnitTaker& operator=(const NALUnitTaker&) = delete;

    /// How many bytes of a unit are wanted that begins with aFirst; 0: it is of no interest.
    virtual std::size_t CountWanted(std::uint8_t aFirst) const = 0;
    /// Takes a unit, of which at least the wanted bytes are there, or all it has. True when no further one is
    /// wanted.
    virtual bool Take(const NALUnit& aUnit) = 0;
};

/// Gives the units of a byte stream to a taker, until it has enough.
void NALUnits_TakeStream(const unsigned char* aBytes, std::size_t aSize, NALUnitTaker& aTaker);

/// Gives units to a taker that each come after their size, a number of aSizeBytes (ISO/IEC 14496-15, 5.3.4.2
/// and 5.3.3.1): at most aCount of them, up to the end of aUnits, and until the taker has enough. What is
/// left of aUnits is what stands after them.
void NALUnits_TakeSized(ByteReader& aUnits, unsigned aSizeBytes, std::uint32_t aCount, NALUnitTaker& aTaker);

/// What a NAL unit carries, without emulation prevention bytes (ITU-T H.264, 7.4.1, H.265, 7.4.2): at most
/// aMaxSize bytes of it.
/// @param aHeaderSize  bytes of the unit that are its header, and not wanted
std::vector<unsigned char> NALUnit_ReadRBSP(const NALUnit& aUnit, std::size_t aHeaderSize,
                                            std::size_t aMaxSize);

/// Bits of an RBSP before its rbsp_stop_one_bit (ITU-T H.264, 7.3.2.11), which lies in the last byte that is
/// not zero.
std::size_t RBSP_CountBits(const unsigned char* aBytes, std::size_t aSize);
