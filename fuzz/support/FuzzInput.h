#pragma once

#include <cstddef>
#include <cstdint>

/// Reads decisions off the bytes that a fuzzer made. After their end every decision is 0.
class FuzzInput {
public:
    FuzzInput(const std::uint8_t* aData, std::size_t aSize) : mData(aData), mLeft(aSize) {}

    bool IsEmpty() const { return mLeft == 0; }

    std::uint8_t Byte() {
        if (mLeft == 0) {
            return 0;
        }
        --mLeft;
        return *mData++;
    }

    /// A number of aBytes bytes, the lowest first.
    std::uint64_t Number(std::size_t aBytes) {
        std::uint64_t number = 0;
        for (std::size_t i = 0; i < aBytes; ++i) {
            number |= static_cast<std::uint64_t>(Byte()) << (8 * i);
        }
        return number;
    }

    bool Flag() { return (Byte() & 1) != 0; }

private:
    const std::uint8_t* mData;
    std::size_t mLeft;
};
