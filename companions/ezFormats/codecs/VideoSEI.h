#pragma once

#include "ezFormats/codecs/DynamicRange.h"

#include <cstddef>
#include <cstdint>

// Supplemental enhancement information, as H.264 (7.3.2.3) and H.265 (7.3.5) write it alike.

/// @name payloadType (ITU-T H.264, D.1, H.265, D.2)
/// @{
inline constexpr std::uint32_t kSEI_PictureTiming = 1;
/// @}

/// A message, borrowed.
struct SEIMessage {
    std::uint32_t mType = 0;
    const unsigned char* mBytes = nullptr;
    std::size_t mSize = 0;
};

/// Walks the messages of an RBSP of them.
class SEIWalk {
public:
    /// @param aBytes  borrowed
    SEIWalk(const unsigned char* aBytes, std::size_t aSize) : mBytes(aBytes), mSize(aSize) {}

    /// The next message that is all there. False past the last.
    bool Next(SEIMessage& aMessage);

private:
    /// A number as a row of 255s and a last byte. False where it is not there, or beyond the bytes.
    bool ReadNumber(std::size_t& aNumber);

    const unsigned char* mBytes;
    std::size_t mSize;
    std::size_t mPosition = 0;
};

/// What the messages tell of a high dynamic range.
class SEIRange {
public:
    /// Takes what a message tells of it; any other tells nothing.
    void Take(const SEIMessage& aMessage);
    /// Takes what all messages of an RBSP tell of it.
    /// @return the picture timing message among them; without bytes where there is none
    SEIMessage TakeAll(const unsigned char* aBytes, std::size_t aSize);
    /// kHDR_... of a stream of these transfer_characteristics; null where its range is not high.
    const char* GetKind(std::uint32_t aTransfer) const;

private:
    DynamicRange mRange;         ///< but for the transfer
    bool mfHLGPreferred = false; ///< alternative transfer characteristics: HLG over what the sequence says
};
