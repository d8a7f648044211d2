#include "ezFormats/ps/PSPackets.h"

#include "ezBytes/BitReader.h"
#include "ezFormats/mpegsystem/PESHeader.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr std::size_t kCodeSize = 4;
constexpr std::size_t kHeadSize = 6; // start code and length
constexpr std::size_t kPackSizeMPEG2 = 14;
constexpr std::size_t kPackSizeMPEG1 = 12;

/// A clock of 33 bits in three groups, a marker bit after each.
std::uint64_t ReadClock(ezBitReader& aBits) {
    std::uint64_t clock = 0;
    for (const unsigned bits : {3U, 15U, 15U}) {
        clock = clock << bits | aBits.Read(bits);
        aBits.Require(aBits.ReadFlag());
    }
    return clock;
}

} // namespace

bool PackHeader_Read(const unsigned char* aBytes, std::size_t aSize, PackHeader& aHeader) {
    ezBitReader bits(aBytes, 8 * aSize);
    bits.Require(bits.Read(32) == (0x100U | kStreamID_Pack));
    aHeader.mfMPEG2 = bits.ReadFlag() ? false : bits.ReadFlag();
    if (aHeader.mfMPEG2) {
        aHeader.mClock = ReadClock(bits);
        bits.Skip(9); // system_clock_reference_extension
        bits.Require(bits.ReadFlag());
        aHeader.mMuxRate = bits.Read(22);
        bits.Require(bits.Read(2) == 3);
        bits.Skip(5);
        aHeader.mSize = kPackSizeMPEG2 + bits.Read(3);
    } else { // "0010", of which two bits are read
        bits.Require(aSize > kCodeSize && (aBytes[kCodeSize] & 0xF0U) == 0x20U);
        bits.Skip(2);
        aHeader.mClock = ReadClock(bits);
        bits.Require(bits.ReadFlag());
        aHeader.mMuxRate = bits.Read(22);
        bits.Require(bits.ReadFlag());
        aHeader.mSize = kPackSizeMPEG1;
    }
    return !bits.HasFailed();
}

bool PSPackets::IsCode(std::size_t aPlace) const {
    return mSize - aPlace >= kCodeSize && mBytes[aPlace] == 0 && mBytes[aPlace + 1] == 0 &&
           mBytes[aPlace + 2] == 1 && mBytes[aPlace + 3] >= kStreamID_End;
}

std::size_t PSPackets::FindCode(std::size_t aPlace) const {
    // The third byte of a code is the rarest of those that are the same in all.
    for (std::size_t place = aPlace; mSize - std::min(place, mSize) >= kCodeSize; ++place) {
        const void* const found = std::memchr(mBytes + place + 2, 1, mSize - place - 3);
        if (found == nullptr) {
            break;
        }
        place = static_cast<std::size_t>(static_cast<const unsigned char*>(found) - mBytes) - 2;
        if (IsCode(place)) {
            return place;
        }
    }
    return mSize;
}

/// Nothing but zeros stands up to a place.
bool PSPackets::IsEmptyUpTo(std::size_t aPlace) const {
    return std::all_of(mBytes + mPlace, mBytes + aPlace, [](unsigned char aByte) { return aByte == 0; });
}

std::size_t PSPackets::EndOf(const PSPacket& aPacket) const {
    return static_cast<std::size_t>(aPacket.mBytes - mBytes) + aPacket.mSize;
}

bool PSPackets::Take(std::size_t aPlace, PSPacket& aPacket) const {
    const unsigned char* const bytes = mBytes + aPlace;
    const std::size_t left = mSize - aPlace;
    aPacket.mCode = bytes[3];
    aPacket.mPlace = aPlace;
    aPacket.mBytes = bytes;
    aPacket.mfWhole = true;
    if (aPacket.mCode == kStreamID_End) {
        aPacket.mSize = kCodeSize;
        return true;
    }
    if (aPacket.mCode == kStreamID_Pack) {
        PackHeader header;
        const bool fRead = PackHeader_Read(bytes, left, header);
        aPacket.mSize = std::min(header.mSize, left);
        return fRead;
    }
    if (left < kHeadSize) {
        return false;
    }
    std::size_t size = std::size_t{bytes[4]} << 8 | bytes[5];
    aPacket.mBytes = bytes + kHeadSize;
    const bool fStated = size != 0 || !StreamID_IsVideo(aPacket.mCode);
    if (!fStated) { // as transport streams have it: up to the next code
        size = FindCode(aPlace + kHeadSize) - aPlace - kHeadSize;
    }
    aPacket.mSize = std::min(size, left - kHeadSize);
    aPacket.mfWhole = fStated && aPacket.mSize == size;
    return true;
}

bool PSPackets::IsConvincing(const PSPacket& aPacket) const {
    return aPacket.mCode == kStreamID_Pack ||
           (aPacket.mCode != kStreamID_End && aPacket.mfWhole && IsCode(EndOf(aPacket)));
}

bool PSPackets::Next(PSPacket& aPacket) {
    while (mPlace < mSize) {
        const std::size_t place = FindCode(mPlace);
        if (place == mSize) {
            break;
        }
        mfInOrder = mfInOrder && IsEmptyUpTo(place);
        const bool fTaken = Take(place, aPacket) && (mfInOrder || IsConvincing(aPacket));
        mInOrder += fTaken && mfInOrder ? 1 : 0;
        mfInOrder = fTaken;
        mPlace = fTaken ? EndOf(aPacket) : place + kCodeSize;
        if (fTaken) {
            return true;
        }
    }
    mPlace = mSize;
    return false;
}
