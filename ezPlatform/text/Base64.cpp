#include "ezPlatform/text/Base64.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace {

constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t kForeign = 0xFF;

constexpr std::array<std::uint8_t, 256> MakeValues() {
    std::array<std::uint8_t, 256> values = {};
    for (std::uint8_t& value : values) {
        value = kForeign;
    }
    for (std::size_t i = 0; i < kAlphabet.size(); ++i) {
        values[static_cast<unsigned char>(kAlphabet[i])] = static_cast<std::uint8_t>(i);
    }
    return values;
}

constexpr std::array<std::uint8_t, 256> kValues = MakeValues();

} // namespace

std::size_t ezBase64_Decode(const char* aText, void* anOutput, std::size_t aCapacity) {
    if (aText == nullptr) {
        return 0;
    }
    unsigned char* const output = static_cast<unsigned char*>(anOutput);
    std::size_t count = 0;
    std::uint32_t bits = 0;
    unsigned bitCount = 0;
    for (; *aText != '\0' && *aText != '=' && count < aCapacity; ++aText) {
        const std::uint8_t value = kValues[static_cast<unsigned char>(*aText)];
        if (value == kForeign) {
            continue;
        }
        bits = (bits << 6 | value) & 0xFFFF;
        bitCount += 6;
        if (bitCount >= 8) {
            bitCount -= 8;
            output[count++] = static_cast<unsigned char>(bits >> bitCount);
        }
    }
    return count;
}
