#include "ezFormats/codecs/NALUnits.h"

#include "ezBytes/ByteReader.h"

#include <algorithm>

namespace {

constexpr std::size_t kStartCodeSize = 3;    ///< 00 00 01
constexpr unsigned char kEmulationThree = 3; ///< emulation_prevention_three_byte, after two zeros

} // namespace

std::size_t NALUnitWalk::FindStartCode(std::size_t aFrom) const {
    for (std::size_t i = aFrom; i + kStartCodeSize <= mSize;) {
        const unsigned char last = mBytes[i + 2];
        if (last == 1 && mBytes[i] == 0 && mBytes[i + 1] == 0) {
            return i;
        }
        i += last > 1 ? kStartCodeSize : 1; // such a byte is no part of a start code
    }
    return mSize;
}

bool NALUnitWalk::Next(NALUnit& aUnit) {
    if (!mfBegun) {
        mStartCode = FindStartCode(0);
        mfBegun = true;
    }
    while (mStartCode < mSize) {
        const std::size_t start = mStartCode + kStartCodeSize;
        mStartCode = FindStartCode(start);
        std::size_t end = mStartCode;
        while (end > start && mBytes[end - 1] == 0) {
            --end;
        }
        if (end > start) {
            aUnit = {mBytes + start, end - start};
            return true;
        }
    }
    return false;
}

NALUnitTaker::~NALUnitTaker() = default;

void NALUnits_TakeStream(const unsigned char* aBytes, std::size_t aSize, NALUnitTaker& aTaker) {
    NALUnitWalk walk(aBytes, aSize);
    NALUnit unit;
    bool fEnough = false;
    while (!fEnough && walk.Next(unit)) {
        fEnough = aTaker.CountWanted(unit.mBytes[0]) != 0 && aTaker.Take(unit);
    }
}

namespace {

/// True when the taker has enough.
bool TakeUnit(ByteReader aUnit, NALUnitTaker& aTaker) {
    const ByteReader whole = aUnit;
    const std::uint8_t first = aUnit.ReadByte();
    const std::size_t wanted = aUnit.HasFailed() ? 0 : aTaker.CountWanted(first);
    ByteReader reader = whole;
    std::vector<unsigned char> bytes(
        static_cast<std::size_t>(std::min<std::uint64_t>(wanted, whole.GetLeft())));
    if (bytes.empty() || !reader.Read(bytes.data(), bytes.size())) {
        return false;
    }
    return aTaker.Take({bytes.data(), bytes.size()});
}

} // namespace

void NALUnits_TakeSized(ByteReader& aUnits, unsigned aSizeBytes, std::uint32_t aCount, NALUnitTaker& aTaker) {
    bool fEnough = false;
    for (std::uint32_t i = 0; i < aCount && !fEnough && aUnits.GetLeft() != 0; ++i) {
        const std::uint64_t size = aUnits.ReadBig(aSizeBytes);
        // The last may be cut, as what holds it is.
        fEnough = TakeUnit(aUnits.Take(std::min(size, aUnits.GetLeft())), aTaker);
    }
}

std::vector<unsigned char> NALUnit_ReadRBSP(const NALUnit& aUnit, std::size_t aHeaderSize,
                                            std::size_t aMaxSize) {
    std::vector<unsigned char> bytes;
    bytes.reserve(std::min(aUnit.mSize, aMaxSize));
    unsigned zeros = 0;
    for (std::size_t i = aHeaderSize; i < aUnit.mSize && bytes.size() < aMaxSize; ++i) {
        const unsigned char byte = aUnit.mBytes[i];
        const bool fEmulationPrevention = zeros >= 2 && byte == kEmulationThree;
        zeros = byte == 0 ? zeros + 1 : 0;
        if (!fEmulationPrevention) {
            bytes.push_back(byte);
        }
    }
    return bytes;
}

std::size_t RBSP_CountBits(const unsigned char* aBytes, std::size_t aSize) {
    while (aSize > 0 && aBytes[aSize - 1] == 0) {
        --aSize;
    }
    if (aSize == 0) {
        return 0;
    }
    std::size_t count = 8 * aSize - 1;
    for (unsigned last = aBytes[aSize - 1]; last % 2 == 0; last /= 2) {
        --count;
    }
    return count;
}
