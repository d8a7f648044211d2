#include "ezFormats/ps/PSBytes.h"

#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/ps/CDXA.h"
#include "ezFormats/ps/PSLimits.h"

#include <algorithm>
#include <cstring>

PSBytes::PSBytes(MediaBytes& aBytes) : mBytes(aBytes), mfDisc(IsCDXA(ByteReader(aBytes))) {}

std::optional<std::uint64_t> PSBytes::GetFileSize() const {
    return mBytes.GetSize();
}

std::uint64_t PSBytes::GetStreamSize(std::uint64_t aFileSize) const {
    return mfDisc ? aFileSize / kCDXA_SectorSize * kCDXA_DataSize : aFileSize;
}

std::uint64_t PSBytes::GetStart() const {
    return mfDisc ? kCDXA_HeaderSize : 0;
}

std::size_t PSBytes::GetWindowSize() const {
    return mfDisc ? kPS_WindowSize / kCDXA_SectorSize * kCDXA_SectorSize : kPS_WindowSize;
}

std::size_t PSBytes::Read(std::uint64_t aPlace, std::size_t aSize, const unsigned char** aPart) {
    const std::uint64_t sector = mfDisc ? (aPlace - kCDXA_HeaderSize) / kCDXA_SectorSize : 0;
    const std::uint64_t place = mfDisc ? kCDXA_HeaderSize + sector * kCDXA_SectorSize : aPlace;
    if (!mBytes.LoadWindow(place, aSize)) {
        return 0;
    }
    const std::size_t count = std::min(mBytes.Borrow(place, aPart), aSize);
    return mfDisc ? Unpack(aPart, count) : count;
}

/// Puts what the sectors carry in one piece.
std::size_t PSBytes::Unpack(const unsigned char** aPart, std::size_t aCount) {
    if (!ezFreed_Resize(mPart, kPS_WindowSize)) {
        return 0;
    }
    std::size_t kept = 0;
    for (std::size_t place = kCDXA_HeadSize; place < aCount; place += kCDXA_SectorSize) {
        const std::size_t size = std::min(kCDXA_DataSize, aCount - place);
        std::memcpy(mPart.get() + kept, *aPart + place, size);
        kept += size;
    }
    *aPart = mPart.get();
    return kept;
}
