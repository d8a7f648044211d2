#include "ezFormats/ts/TSSections.h"

#include <algorithm>

namespace {

constexpr std::size_t kHeadSize = 3;
constexpr std::size_t kLongHeadSize = 8;
constexpr std::size_t kCheckSumSize = 4;
constexpr unsigned char kStuffing = 0xFF;                    ///< in place of a table_id: no section follows
constexpr std::size_t kKeptSize = 3 + 4093 + kTSPacket_Size; ///< the longest section, and a packet

std::size_t SizeOf(const unsigned char* aHead) {
    return kHeadSize + (std::size_t{aHead[1] & 0xFU} << 8 | aHead[2]);
}

} // namespace

std::uint32_t TSSection_CheckSum(const unsigned char* aBytes, std::size_t aSize) {
    constexpr std::uint32_t kPolynomial = 0x04C11DB7;
    std::uint32_t sum = 0xFFFFFFFF;
    for (std::size_t i = 0; i < aSize; ++i) {
        sum ^= std::uint32_t{aBytes[i]} << 24;
        for (int bit = 0; bit < 8; ++bit) {
            sum = sum << 1 ^ ((sum >> 31) != 0 ? kPolynomial : 0U);
        }
    }
    return sum;
}

void TSSectionReader::Append(const unsigned char* aBytes, std::size_t aSize) {
    if (mPlace != 0) {
        mBytes.erase(mBytes.begin(), mBytes.begin() + static_cast<std::ptrdiff_t>(mPlace));
        mPlace = 0;
    }
    const std::size_t room = kKeptSize - std::min(mBytes.size(), kKeptSize);
    mBytes.insert(mBytes.end(), aBytes, aBytes + std::min(aSize, room));
}

void TSSectionReader::Take(const TSPacket& aPacket) {
    if (aPacket.mPayloadSize == 0 || aPacket.mfScrambled) {
        return;
    }
    if (mfJoined && aPacket.mContinuity == mContinuity) {
        return; // sent twice
    }
    mfJoined = mfJoined && aPacket.mContinuity == ((mContinuity + 1) & 0xFU);
    mContinuity = aPacket.mContinuity;
    const unsigned char* const payload = aPacket.mPayload;
    if (!aPacket.mfStart) {
        if (mfJoined) {
            Append(payload, aPacket.mPayloadSize);
        }
        return;
    }
    const std::size_t start = std::size_t{payload[0]} + 1; // pointer_field
    if (start > aPacket.mPayloadSize) {
        mfJoined = false;
        return;
    }
    if (mfJoined) {
        Append(payload + 1, start - 1);
    }
    const std::size_t left = mBytes.size() - mPlace;
    const bool fEnded = mfJoined && left >= kHeadSize && SizeOf(mBytes.data() + mPlace) == left;
    if (!fEnded) { // else it is damaged, and not to take the next one's bytes
        mBytes.clear();
        mPlace = 0;
    }
    Append(payload + start, aPacket.mPayloadSize - start);
    mfJoined = true;
}

bool TSSectionReader::Next(TSSection* aSection) {
    while (mBytes.size() - mPlace >= kHeadSize) {
        if (mBytes[mPlace] == kStuffing) {
            mPlace = mBytes.size();
            return false;
        }
        const unsigned char* const bytes = mBytes.data() + mPlace;
        const std::size_t size = SizeOf(bytes);
        if (mBytes.size() - mPlace < size) {
            return false;
        }
        mPlace += size;
        if (size >= kLongHeadSize + kCheckSumSize && TSSection_CheckSum(bytes, size) == 0) {
            aSection->mBytes = bytes;
            aSection->mSize = size - kCheckSumSize;
            return true;
        }
    }
    return false;
}
