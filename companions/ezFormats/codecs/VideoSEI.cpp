#include "ezFormats/codecs/VideoSEI.h"

// Clauses are those of ITU-T H.265.

namespace {

// payloadType (D.2.1); H.264 numbers them alike
constexpr std::uint32_t kRegisteredUserData = 4;
constexpr std::uint32_t kMasteringDisplay = 137;
constexpr std::uint32_t kContentLightLevel = 144;
constexpr std::uint32_t kAlternativeTransfer = 147;

constexpr unsigned char kMore = 0xFF; ///< the number goes on

} // namespace

bool SEIWalk::ReadNumber(std::size_t& aNumber) {
    aNumber = 0;
    while (mPosition < mSize) {
        const unsigned char byte = mBytes[mPosition++];
        aNumber += byte; // below 255 times the bytes there are
        if (byte != kMore) {
            return true;
        }
    }
    return false;
}

bool SEIWalk::Next(SEIMessage& aMessage) {
    std::size_t type = 0;
    std::size_t size = 0;
    if (!ReadNumber(type) || !ReadNumber(size) || size > mSize - mPosition) {
        mPosition = mSize;
        return false;
    }
    aMessage = {static_cast<std::uint32_t>(type), mBytes + mPosition, size};
    mPosition += size;
    return true;
}

void SEIRange::Take(const SEIMessage& aMessage) {
    switch (aMessage.mType) {
    case kMasteringDisplay:
    case kContentLightLevel:
        mRange.mfStaticMetadata = true;
        break;
    case kAlternativeTransfer: // preferred_transfer_characteristics (D.3.38)
        mfHLGPreferred = aMessage.mSize != 0 && aMessage.mBytes[0] == DynamicRange::kTransferHLG;
        break;
    case kRegisteredUserData:
        mRange.TakeRegistered(aMessage.mBytes, aMessage.mSize);
        break;
    default:
        break;
    }
}

SEIMessage SEIRange::TakeAll(const unsigned char* aBytes, std::size_t aSize) {
    SEIWalk walk(aBytes, aSize);
    SEIMessage message;
    SEIMessage timing;
    while (walk.Next(message)) {
        Take(message);
        if (message.mType == kSEI_PictureTiming) {
            timing = message;
        }
    }
    return timing;
}

const char* SEIRange::GetKind(std::uint32_t aTransfer) const {
    DynamicRange range = mRange;
    range.mTransfer = mfHLGPreferred ? DynamicRange::kTransferHLG : aTransfer;
    return range.GetKind();
}
