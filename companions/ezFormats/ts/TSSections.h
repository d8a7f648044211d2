#pragma once

#include "ezFormats/ts/TSPackets.h"

#include <cstddef>
#include <cstdint>
#include <vector>

/// A section of a table (ISO/IEC 13818-1, 2.4.4.11), borrowed, from its table_id on, without its check sum.
struct TSSection {
    const unsigned char* mBytes = nullptr;
    std::size_t mSize = 0;

    std::uint8_t GetTable() const { return mBytes[0]; }
    /// Of sections with the long head, of 8 bytes.
    std::uint16_t GetID() const { return static_cast<std::uint16_t>(mBytes[3] << 8 | mBytes[4]); }
    bool IsCurrent() const { return (mBytes[5] & 1U) != 0; }
    std::uint8_t GetNumber() const { return mBytes[6]; }
};

/// Joins the sections of one PID, which begin anywhere in a packet and go over several. One whose check sum
/// is wrong, or of which a packet was lost, tells nothing.
class TSSectionReader {
public:
    /// The packets of the PID, one after the other.
    void Take(const TSPacket& aPacket);

    /// The next section that the packets so far made whole; borrowed until the next Take.
    bool Next(TSSection* aSection);

private:
    void Append(const unsigned char* aBytes, std::size_t aSize);

    std::vector<unsigned char> mBytes; ///< from the start of a section on
    std::size_t mPlace = 0;            ///< of the next section in them
    bool mfJoined = false;             ///< what comes next goes on where they end
    unsigned mContinuity = 0;
};

/// The sum of a section, its check sum included (annex A): 0 where it is right.
std::uint32_t TSSection_CheckSum(const unsigned char* aBytes, std::size_t aSize);
