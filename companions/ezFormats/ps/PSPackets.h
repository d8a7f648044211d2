#pragma once

#include <cstddef>
#include <cstdint>

/// A pack header: of a program stream, or of the system stream of MPEG-1.
struct PackHeader {
    bool mfMPEG2 = false;
    std::uint64_t mClock = 0;   ///< system clock reference: ticks of 90 kHz, 33 bits
    std::uint32_t mMuxRate = 0; ///< units of 50 bytes a second: what the stream never goes beyond
    std::size_t mSize = 0;      ///< bytes, start code and stuffing included
};

/// Takes a pack header apart, start code included (ISO/IEC 13818-1, 2.5.3.3; ISO/IEC 11172-1, 2.4.3.2). False
/// for bytes that are not one, or not all of one up to its stuffing.
bool PackHeader_Read(const unsigned char* aBytes, std::size_t aSize, PackHeader& aHeader);

/// One packet of a stream, or a pack header.
struct PSPacket {
    std::uint8_t mCode = 0;
    std::size_t mPlace = 0;                ///< of its start code in the block
    const unsigned char* mBytes = nullptr; ///< what stands after the length; of a pack header all of it
    std::size_t mSize = 0;                 ///< bytes of these within the block
    bool mfWhole = false;                  ///< all of them lie within the block, and so many were stated
};

/// Walks over the packets in a block of a program stream or a system stream. Start codes are not aligned, and
/// the block may begin and end anywhere: packets are taken where one follows the other, and after a gap from
/// the next pack header on, or from a packet that ends where another begins.
class PSPackets {
public:
    /// aBytes is borrowed.
    PSPackets(const unsigned char* aBytes, std::size_t aSize) : mBytes(aBytes), mSize(aSize) {}

    /// False at the end of the block.
    bool Next(PSPacket& aPacket);
    /// Packets and pack headers that followed directly upon another.
    std::size_t CountInOrder() const { return mInOrder; }
    /// Whether what comes next follows without a gap.
    bool IsInOrder() const { return mfInOrder; }

private:
    /// Where the next start code of a system stream stands from a place on; the end where there is none.
    std::size_t FindCode(std::size_t aPlace) const;
    bool IsCode(std::size_t aPlace) const;
    bool IsEmptyUpTo(std::size_t aPlace) const;
    bool Take(std::size_t aPlace, PSPacket& aPacket) const;
    /// Whether what begins there, and would end there, is believed without another one before it.
    bool IsConvincing(const PSPacket& aPacket) const;
    std::size_t EndOf(const PSPacket& aPacket) const;

    const unsigned char* mBytes;
    std::size_t mSize;
    std::size_t mPlace = 0;
    std::size_t mInOrder = 0;
    bool mfInOrder = false;
};
