#pragma once

#include <cstddef>
#include <cstdint>

/// What the headers of a codec, or of what holds it, tell of a high dynamic range.
struct DynamicRange {
    /// @name transfer_characteristics (ITU-T H.273, table 3), which all codecs and containers number alike
    /// @{
    static constexpr std::uint32_t kTransferUnspecified = 2;
    static constexpr std::uint32_t kTransferPQ = 16;  ///< SMPTE ST 2084
    static constexpr std::uint32_t kTransferHLG = 18; ///< ARIB STD-B67
    /// @}

    std::uint32_t mTransfer = kTransferUnspecified;
    bool mfStaticMetadata = false;  ///< mastering display colour volume, or content light level
    bool mfDynamicMetadata = false; ///< SMPTE ST 2094-40

    /// Takes user data registered by ITU-T T.35, from the country on: those that are not of it tell nothing.
    void TakeRegistered(const unsigned char* aBytes, std::size_t aSize);

    /// Takes what another source of the same pictures tells: kHDR_...; null tells nothing. What transfer it
    /// stands for goes before the one that is there.
    void TakeKind(const char* aKind);

    /// kHDR_...; null where the range is not high.
    const char* GetKind() const;
};
