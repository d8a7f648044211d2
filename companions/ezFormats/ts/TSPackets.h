#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

/// The packets of a transport stream (ISO/IEC 13818-1, 2.4.3.2), in a block of memory.

inline constexpr std::size_t kTSPacket_Size = 188;
inline constexpr std::size_t kTSPacket_StampedSize = 192; ///< a time stamp of four bytes before each
inline constexpr std::size_t kTSPacket_ParitySize = 204;  ///< 16 bytes of parity after each

inline constexpr unsigned kTSPacket_PIDCount = 0x2000;
inline constexpr std::uint16_t kTSPacket_NullPID = 0x1FFF;

/// How packets stand in a file.
struct TSLayout {
    std::size_t mPacketSize = kTSPacket_Size; ///< from one packet to the next
    std::uint64_t mStart = 0;                 ///< of the first packet's sync_byte, in the file

    bool IsStamped() const { return mPacketSize == kTSPacket_StampedSize; }
};

/// A packet, its bytes borrowed.
struct TSPacket {
    std::uint64_t mPosition = 0; ///< of its sync_byte, in the file
    std::uint16_t mPID = 0;
    unsigned mContinuity = 0;            ///< continuity_counter
    bool mfStart = false;                ///< a section or a packet of a stream begins in it
    bool mfScrambled = false;            ///< transport_scrambling_control; the payload is not to be read
    bool mfDiscontinuity = false;        ///< what stands before it tells nothing of it
    std::optional<std::uint64_t> mClock; ///< program_clock_reference_base
    const unsigned char* mPayload = nullptr;
    std::size_t mPayloadSize = 0;
    std::uint32_t mStamp = 0; ///< of a stamped packet, as far as it is there
    bool mfStamp = false;
};

/// Walks over the packets of a block. Packets that are damaged, and say so, are passed over; so are bytes
/// that are of none, up to the next packets.
class TSPacketWalk {
public:
    /// @param aBlock     borrowed
    /// @param aPosition  of the block in the file
    TSPacketWalk(const TSLayout& aLayout, const unsigned char* aBlock, std::size_t aSize,
                 std::uint64_t aPosition);

    /// False after the last whole packet of the block.
    bool Next(TSPacket* aPacket);

    /// Where the walk stands, in the file: where the next block is to begin.
    std::uint64_t GetPosition() const { return mPosition + mPlace; }

private:
    bool FindSync();
    bool Read(TSPacket* aPacket) const;

    const TSLayout mLayout;
    const unsigned char* mBlock;
    std::size_t mSize;
    std::uint64_t mPosition;
    std::size_t mPlace = 0;
};

/// Tells how packets stand in the start of a file: their size, and where the first is.
///
/// Eight packets in a row make a stream, of which the tables or the start of some stream's packet are there;
/// fewer where the file has no more, if its tables are. Of several sizes that fit, the one with tables wins.
///
/// @param aBlock   the start of the file
/// @param afWhole  it is all of it
/// @return none where there is no such stream
std::optional<TSLayout> FindTSLayout(const unsigned char* aBlock, std::size_t aSize, bool afWhole);
