#pragma once

#include <cstddef>
#include <cstdint>

/// Reads the bits of a borrowed block, most significant bit of a byte first. A read beyond the end fails and
/// gives 0, and from then on every read does: whoever walks a header asks once, in the end.
class ezBitReader {
public:
    ezBitReader(const unsigned char* aBytes, std::size_t aBitCount) : mBytes(aBytes), mBitCount(aBitCount) {}

    bool HasFailed() const { return mfFailed; }
    std::size_t GetBitsLeft() const { return mfFailed ? 0 : mBitCount - mPosition; }

    /// The next aCount bits, at most 32.
    std::uint32_t Read(unsigned aCount) {
        if (!Reserve(aCount)) {
            return 0;
        }
        std::uint64_t value = 0;
        for (unsigned i = 0; i < aCount; ++i, ++mPosition) {
            value = value << 1 | (mBytes[mPosition / 8] >> (7 - mPosition % 8) & 1U);
        }
        return static_cast<std::uint32_t>(value);
    }

    bool ReadFlag() { return Read(1) != 0; }

    void Skip(std::size_t aCount) {
        if (Reserve(aCount)) {
            mPosition += aCount;
        }
    }

    /// An Exp-Golomb number as H.264 codes them; one of more than 32 bits fails.
    std::uint32_t ReadUE() {
        unsigned zeros = 0;
        while (!HasFailed() && !ReadFlag()) {
            ++zeros;
        }
        if (zeros > 31) {
            mfFailed = true;
        }
        if (HasFailed()) {
            return 0;
        }
        const std::uint32_t rest = Read(zeros);
        return HasFailed() ? 0 : (UINT32_C(1) << zeros) - 1 + rest;
    }

    /// The same, signed: 0, 1, -1, 2, -2, ...
    std::int64_t ReadSE() {
        const std::int64_t code = ReadUE();
        return code % 2 != 0 ? (code + 1) / 2 : -(code / 2);
    }

    /// A number that must not exceed aMax; a larger one fails.
    std::uint32_t ReadUEUpTo(std::uint32_t aMax) {
        const std::uint32_t value = ReadUE();
        return Require(value <= aMax) ? value : 0;
    }
    std::int64_t ReadSEWithin(std::int64_t aMin, std::int64_t aMax) {
        const std::int64_t value = ReadSE();
        return Require(value >= aMin && value <= aMax) ? value : 0;
    }

    /// Fails the reader unless the bits read so far keep a rule.
    bool Require(bool afKept) {
        mfFailed = mfFailed || !afKept;
        return !mfFailed;
    }

private:
    bool Reserve(std::size_t aCount) { return Require(aCount <= mBitCount - mPosition); }

    const unsigned char* mBytes;
    std::size_t mBitCount;
    std::size_t mPosition = 0;
    bool mfFailed = false;
};
