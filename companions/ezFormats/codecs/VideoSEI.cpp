#include "ezFormats/codecs/VideoSEI.h"

#include "ezFormats/codecs/VideoFacts.h"

#include <algorithm>
#include <array>

// Clauses are those of ITU-T H.265.

namespace {

// payloadType (D.2.1); H.264 numbers them alike
constexpr std::uint32_t kRegisteredUserData = 4;
constexpr std::uint32_t kMasteringDisplay = 137;
constexpr std::uint32_t kContentLightLevel = 144;
constexpr std::uint32_t kAlternativeTransfer = 147;

/// How user data registered by ITU-T T.35 begin that are ST 2094-40: country, provider, the provider's kind
/// of data, and the application (CTA-861-G, annex S).
constexpr std::array<unsigned char, 6> kDynamicMetadata = {0xB5, 0x00, 0x3C, 0x00, 0x01, 0x04};

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

void HDRSigns::Take(const SEIMessage& aMessage) {
    switch (aMessage.mType) {
    case kMasteringDisplay:
    case kContentLightLevel:
        mfStaticMetadata = true;
        break;
    case kAlternativeTransfer: // preferred_transfer_characteristics (D.3.38)
        mfHLGPreferred = aMessage.mSize != 0 && aMessage.mBytes[0] == ezVideoUsability::kTransferHLG;
        break;
    case kRegisteredUserData:
        mfDynamicMetadata = mfDynamicMetadata ||
                            (aMessage.mSize >= kDynamicMetadata.size() &&
                             std::equal(kDynamicMetadata.begin(), kDynamicMetadata.end(), aMessage.mBytes));
        break;
    default:
        break;
    }
}

const char* HDRSigns::GetKind(std::uint32_t aTransfer) const {
    if (mfHLGPreferred || aTransfer == ezVideoUsability::kTransferHLG) {
        return kHDR_HLG;
    }
    if (aTransfer != ezVideoUsability::kTransferPQ) {
        return nullptr;
    }
    return mfDynamicMetadata ? kHDR_HDR10Plus : mfStaticMetadata ? kHDR_HDR10 : kHDR_PQ;
}
