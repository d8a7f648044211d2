#pragma once

#include "ezBytes/ByteReader.h"

#include <cstdint>

/// The packets of an ASF file, each of one size (Advanced Systems Format 1.2, 5).

/// Where they are.
struct ASFData {
    std::uint64_t mStart = 0; ///< of the first packet; 0 where there is no Data object
    std::uint64_t mSize = 0;  ///< bytes of all of them, as it is stated; 0 where it is not
};

/// Looks for the Data object, from where the header ends.
/// @param aBudget  borrowed, counts down the objects
ASFData FindASFData(ByteReader aReader, std::uint32_t& aBudget);

/// A reader of the packet of that size which begins there; it has failed where it is not there.
ByteReader TakeASFPacket(ByteSource& aBytes, std::uint64_t aPosition, std::uint32_t aSize);

/// What a packet says of a piece of a media object (5.2.3).
struct ASFPayload {
    unsigned mStream = 0;      ///< number
    bool mfTimed = false;      ///< it says what follows
    std::uint32_t mTime = 0;   ///< milliseconds at which the object, the last of several, is presented
    std::uint32_t mStep = 0;   ///< milliseconds from each of several to the next; 0 of one
    std::uint32_t mObject = 0; ///< number of the media object, as far as it is told
    std::uint32_t mOffset = 0; ///< of the piece within it
};

/// The payloads of a packet.
class ASFPacket {
public:
    /// @param aPacket  all of it
    explicit ASFPacket(const ByteReader& aPacket);

    /// The next one. False after the last one, and where the packet is damaged.
    bool Next(ASFPayload* aPayload);

    /// What the last one holds of its media object; of several all of the first.
    const ByteReader& GetContent() const { return mContent; }

private:
    /// A number of 0, 1, 2 or 4 bytes, by two bits.
    std::uint32_t ReadSized(unsigned aSize);
    void TakeSeveral(ASFPayload& aPayload);

    ByteReader mReader;
    ByteReader mContent;
    unsigned mProperties = 0;   ///< how large the numbers of a payload are
    bool mfSeveral = false;     ///< each states its size
    unsigned mSizeOfSize = 0;   ///< how large that is
    unsigned mLeft = 0;         ///< payloads
    std::uint64_t mPadding = 0; ///< bytes at the packet's end
};
