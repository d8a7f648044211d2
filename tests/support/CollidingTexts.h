#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

/// Texts that all have one hash where the C++ library hashes without a key (the 64-bit MurmurHash2 of
/// libstdc++, on little-endian machines): what a stranger sends who wants a table to be slow.
///
/// A block of eight bytes enters that hash as h = (h ^ K) * m, K being a bijection of the block. Another
/// block whose K differs in the highest bit changes only the highest bit of h, and a second such block
/// changes it back. So each pair of blocks may be either of two without a change of the hash, whatever stands
/// around it.

namespace colliding {

constexpr std::uint64_t kFactor = UINT64_C(0xC6A4A7935BD1E995);

constexpr std::uint64_t Mixed(std::uint64_t aWord) {
    return aWord ^ aWord >> 47; // undone by itself
}

/// The number whose product with kFactor is 1.
constexpr std::uint64_t Inverse() {
    std::uint64_t inverse = kFactor;
    for (int i = 0; i < 6; ++i) {
        inverse *= 2 - kFactor * inverse;
    }
    return inverse;
}

/// Whether a word is eight bytes that stand for themselves in a parameter and a key, none in upper case.
inline bool IsPlain(std::uint64_t aWord) {
    for (int i = 0; i < 8; ++i, aWord >>= 8) {
        const auto byte = static_cast<unsigned char>(aWord & 0xFF);
        const bool fPlain = byte > ' ' && byte != 0x7F && !(byte >= 'A' && byte <= 'Z') &&
                            std::strchr(";=,\\\"#[]", byte) == nullptr;
        if (!fPlain) {
            return false;
        }
    }
    return true;
}

inline std::string TextOf(std::uint64_t aWord) {
    std::string text;
    for (int i = 0; i < 8; ++i) {
        text += static_cast<char>(aWord >> (8 * i) & 0xFF);
    }
    return text;
}

/// Two blocks that differ, in the hash, in the highest bit alone.
inline std::pair<std::string, std::string> Twins(std::uint64_t& aState) {
    while (true) {
        aState = aState * UINT64_C(6364136223846793005) + UINT64_C(1442695040888963407);
        const std::uint64_t word = Mixed(aState * kFactor);
        const std::uint64_t flipped = Mixed(word * kFactor) * kFactor ^ UINT64_C(1) << 63;
        const std::uint64_t twin = Mixed(flipped * Inverse()) * Inverse();
        if (IsPlain(word) && IsPlain(twin)) {
            return {TextOf(word), TextOf(twin)};
        }
    }
}

} // namespace colliding

/// So many different texts of one hash, of 16 bytes for each power of two in their number.
inline std::vector<std::string> CollidingTexts(std::size_t aCount) {
    std::uint64_t state = 1;
    std::vector<std::string> texts(1);
    while (texts.size() < aCount) {
        const auto first = colliding::Twins(state);
        const auto second = colliding::Twins(state);
        std::vector<std::string> longer;
        longer.reserve(2 * texts.size());
        for (const std::string& text : texts) {
            longer.push_back(text + first.first + second.first);
            longer.push_back(text + first.second + second.second);
        }
        texts = std::move(longer);
    }
    texts.resize(aCount);
    return texts;
}
