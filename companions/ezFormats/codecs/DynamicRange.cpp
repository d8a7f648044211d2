#include "ezFormats/codecs/DynamicRange.h"

#include "ezFormats/codecs/VideoFacts.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace {

/// How those begin that are ST 2094-40: country, provider, the provider's kind of data, and the application
/// (CTA-861-G, annex S).
constexpr std::array<unsigned char, 6> kDynamicMetadata = {0xB5, 0x00, 0x3C, 0x00, 0x01, 0x04};

} // namespace

void DynamicRange::TakeRegistered(const unsigned char* aBytes, std::size_t aSize) {
    mfDynamicMetadata =
        mfDynamicMetadata || (aSize >= kDynamicMetadata.size() &&
                              std::equal(kDynamicMetadata.begin(), kDynamicMetadata.end(), aBytes));
}

void DynamicRange::TakeKind(const char* aKind) {
    const std::string_view kind = aKind != nullptr ? aKind : "";
    if (kind == kHDR_HLG) {
        mTransfer = kTransferHLG;
    } else if (kind == kHDR_PQ || kind == kHDR_HDR10 || kind == kHDR_HDR10Plus) {
        mTransfer = kTransferPQ;
        mfStaticMetadata = mfStaticMetadata || kind == kHDR_HDR10;
        mfDynamicMetadata = mfDynamicMetadata || kind == kHDR_HDR10Plus;
    }
}

const char* DynamicRange::GetKind() const {
    if (mTransfer == kTransferHLG) {
        return kHDR_HLG;
    }
    if (mTransfer != kTransferPQ) {
        return nullptr;
    }
    return mfDynamicMetadata ? kHDR_HDR10Plus : mfStaticMetadata ? kHDR_HDR10 : kHDR_PQ;
}
