#include "ezPlatform/files/CacheName.h"

#include "ezPlatform/files/Limits.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string>

namespace {

constexpr std::array<std::uint32_t, 64> kRoundConstants = {
    0x428A2F98, 0x71374491, 0xB5C0FBCF, 0xE9B5DBA5, 0x3956C25B, 0x59F111F1, 0x923F82A4, 0xAB1C5ED5,
    0xD807AA98, 0x12835B01, 0x243185BE, 0x550C7DC3, 0x72BE5D74, 0x80DEB1FE, 0x9BDC06A7, 0xC19BF174,
    0xE49B69C1, 0xEFBE4786, 0x0FC19DC6, 0x240CA1CC, 0x2DE92C6F, 0x4A7484AA, 0x5CB0A9DC, 0x76F988DA,
    0x983E5152, 0xA831C66D, 0xB00327C8, 0xBF597FC7, 0xC6E00BF3, 0xD5A79147, 0x06CA6351, 0x14292967,
    0x27B70A85, 0x2E1B2138, 0x4D2C6DFC, 0x53380D13, 0x650A7354, 0x766A0ABB, 0x81C2C92E, 0x92722C85,
    0xA2BFE8A1, 0xA81A664B, 0xC24B8B70, 0xC76C51A3, 0xD192E819, 0xD6990624, 0xF40E3585, 0x106AA070,
    0x19A4C116, 0x1E376C08, 0x2748774C, 0x34B0BCB5, 0x391C0CB3, 0x4ED8AA4A, 0x5B9CCA4F, 0x682E6FF3,
    0x748F82EE, 0x78A5636F, 0x84C87814, 0x8CC70208, 0x90BEFFFA, 0xA4506CEB, 0xBEF9A3F7, 0xC67178F2};

constexpr std::size_t kBlock = 64;
using State = std::array<std::uint32_t, 8>;

constexpr std::uint32_t RotatedRight(std::uint32_t aWord, unsigned aCount) {
    return aWord >> aCount | aWord << (32 - aCount);
}

void DigestBlock(State& aState, const unsigned char* aBlock) {
    std::array<std::uint32_t, 64> words = {};
    for (std::size_t i = 0; i < 16; ++i) {
        words[i] = std::uint32_t{aBlock[4 * i]} << 24 | std::uint32_t{aBlock[4 * i + 1]} << 16 |
                   std::uint32_t{aBlock[4 * i + 2]} << 8 | std::uint32_t{aBlock[4 * i + 3]};
    }
    for (std::size_t i = 16; i < 64; ++i) {
        const std::uint32_t a = words[i - 15];
        const std::uint32_t b = words[i - 2];
        words[i] = words[i - 16] + (RotatedRight(a, 7) ^ RotatedRight(a, 18) ^ a >> 3) + words[i - 7] +
                   (RotatedRight(b, 17) ^ RotatedRight(b, 19) ^ b >> 10);
    }
    State s = aState;
    for (std::size_t i = 0; i < 64; ++i) {
        const std::uint32_t first =
            s[7] + (RotatedRight(s[4], 6) ^ RotatedRight(s[4], 11) ^ RotatedRight(s[4], 25)) +
            ((s[4] & s[5]) ^ (~s[4] & s[6])) + kRoundConstants[i] + words[i];
        const std::uint32_t second =
            (RotatedRight(s[0], 2) ^ RotatedRight(s[0], 13) ^ RotatedRight(s[0], 22)) +
            ((s[0] & s[1]) ^ (s[0] & s[2]) ^ (s[1] & s[2]));
        s = {first + second, s[0], s[1], s[2], s[3] + first, s[4], s[5], s[6]};
    }
    for (std::size_t i = 0; i < s.size(); ++i) {
        aState[i] += s[i];
    }
}

State Digest(std::string_view aText) {
    State state = {0x6A09E667, 0xBB67AE85, 0x3C6EF372, 0xA54FF53A,
                   0x510E527F, 0x9B05688C, 0x1F83D9AB, 0x5BE0CD19};
    std::array<unsigned char, kBlock> block = {};
    std::size_t position = 0;
    for (; aText.size() - position >= kBlock; position += kBlock) {
        std::memcpy(block.data(), aText.data() + position, kBlock);
        DigestBlock(state, block.data());
    }
    // The rest, the bit 1, zeros, and the length in bits at the end of a block.
    const std::size_t rest = aText.size() - position;
    block.fill(0);
    std::copy(aText.begin() + static_cast<std::ptrdiff_t>(position), aText.end(), block.begin());
    block[rest] = 0x80;
    if (rest >= kBlock - 8) {
        DigestBlock(state, block.data());
        block.fill(0);
    }
    const std::uint64_t bits = std::uint64_t{aText.size()} * 8;
    for (std::size_t i = 0; i < 8; ++i) {
        block[kBlock - 1 - i] = static_cast<unsigned char>(bits >> 8 * i);
    }
    DigestBlock(state, block.data());
    return state;
}

bool IsPlain(char aCharacter) {
    return (aCharacter >= 'a' && aCharacter <= 'z') || (aCharacter >= '0' && aCharacter <= '9') ||
           aCharacter == '_' || aCharacter == '-' || aCharacter == '.';
}

void AppendEscaped(std::string& aName, char aCharacter) {
    static constexpr char kDigits[] = "0123456789abcdef";
    const auto byte = static_cast<unsigned char>(aCharacter);
    aName += '%';
    aName += kDigits[byte >> 4];
    aName += kDigits[byte & 15];
}

} // namespace

ezCString ezCacheName(std::string_view aText) {
    std::string name;
    name.reserve(std::min(aText.size(), kCacheName_MaxSize) + 8);
    for (std::size_t i = 0; i < aText.size() && name.size() <= kCacheName_MaxSize; ++i) {
        // A first dot hides a file, and some file systems drop a last one.
        const bool fOuterDot = aText[i] == '.' && (i == 0 || i + 1 == aText.size());
        if (IsPlain(aText[i]) && !fOuterDot) {
            name += aText[i];
        } else {
            AppendEscaped(name, aText[i]);
        }
    }
    if (name.empty()) {
        return "%";
    }
    if (name.size() > kCacheName_MaxSize) {
        // A "%" before anything but two digits stands in no other name.
        name = name.substr(0, kCacheName_KeptOfLong) + "%-";
        for (const std::uint32_t word : Digest(aText)) {
            name += ezCString::Format("%08lx", static_cast<unsigned long>(word)).View();
        }
    }
    return ezCString(name);
}
