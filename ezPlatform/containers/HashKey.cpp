#include "ezPlatform/containers/HashKey.h"

#include "ezPlatform/base/System.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr std::size_t kWordSize = 8;

constexpr std::uint64_t Rotated(std::uint64_t aWord, int aCount) {
    return aWord << aCount | aWord >> (64 - aCount);
}

/// The state of SipHash, begun as the paper has it: with "somepseudorandomlygeneratedbytes".
class Sip {
public:
    explicit Sip(const ezHashKey& aKey)
        : mA(aKey.mLow ^ UINT64_C(0x736F6D6570736575)),
          mB(aKey.mHigh ^ UINT64_C(0x646F72616E646F6D)),
          mC(aKey.mLow ^ UINT64_C(0x6C7967656E657261)),
          mD(aKey.mHigh ^ UINT64_C(0x7465646279746573)) {}

    void Take(std::uint64_t aWord) {
        mD ^= aWord;
        Round();
        mA ^= aWord;
    }

    std::uint64_t Finish() {
        mC ^= 0xFF;
        Round();
        Round();
        Round();
        return mA ^ mB ^ mC ^ mD;
    }

private:
    void Round() {
        mA += mB;
        mB = Rotated(mB, 13) ^ mA;
        mA = Rotated(mA, 32);
        mC += mD;
        mD = Rotated(mD, 16) ^ mC;
        mA += mD;
        mD = Rotated(mD, 21) ^ mA;
        mC += mB;
        mB = Rotated(mB, 17) ^ mC;
        mC = Rotated(mC, 32);
    }

    std::uint64_t mA;
    std::uint64_t mB;
    std::uint64_t mC;
    std::uint64_t mD;
};

/// Eight bytes, the first one lowest, on every machine.
std::uint64_t WordAt(const char* aBytes) {
    std::uint64_t word = 0;
    std::memcpy(&word, aBytes, kWordSize);
#if __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
    word = __builtin_bswap64(word);
#endif
    return word;
}

/// What is left of a text after its whole words. Of a text that has one, it ends a word that overlaps it.
std::uint64_t RestOf(std::string_view aText) {
    const std::size_t count = aText.size() % kWordSize;
    if (count != 0 && aText.size() >= kWordSize) {
        return WordAt(aText.data() + aText.size() - kWordSize) >> (8 * (kWordSize - count));
    }
    std::uint64_t word = 0;
    for (std::size_t i = count; i != 0; --i) {
        word = word << 8 | static_cast<unsigned char>(aText[i - 1]);
    }
    return word;
}

/// The lower case of eight bytes at a time: a byte of A to Z gets bit 5.
std::uint64_t LowerWord(std::uint64_t aWord) {
    constexpr std::uint64_t kEach = UINT64_C(0x0101010101010101);
    constexpr std::uint64_t kHighest = 0x80 * kEach;
    const std::uint64_t low = aWord & ~kHighest;
    const std::uint64_t fromA = low + (0x80 - 'A') * kEach; // the highest bit tells
    const std::uint64_t afterZ = low + (0x7F - 'Z') * kEach;
    return aWord | (fromA & ~afterZ & ~aWord & kHighest) >> 2;
}

template <bool kNoCase>
std::uint64_t HashOf(const ezHashKey& aKey, std::string_view aText) {
    Sip sip(aKey);
    const auto taken = [](std::uint64_t aWord) { return kNoCase ? LowerWord(aWord) : aWord; };
    for (std::size_t at = 0; at + kWordSize <= aText.size(); at += kWordSize) {
        sip.Take(taken(WordAt(aText.data() + at)));
    }
    sip.Take(taken(RestOf(aText)) | static_cast<std::uint64_t>(aText.size() & 0xFF) << 56);
    return sip.Finish();
}

bool ReadUrandom(unsigned char* aBytes, std::size_t aCount) {
    const int file = ezSystem().mOpen("/dev/urandom", O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, 0);
    if (file < 0) {
        return false;
    }
    const ssize_t count = ezSystem().mPRead(file, aBytes, aCount, 0);
    ezSystem().mClose(file);
    return count >= 0 && static_cast<std::size_t>(count) == aCount;
}

/// What an outsider does not know for certain. Not random.
void MakeUp(unsigned char* aBytes, std::size_t aCount) {
    timespec time = {};
    clock_gettime(CLOCK_REALTIME, &time);
    const std::uint64_t sources[] = {static_cast<std::uint64_t>(time.tv_sec),
                                     static_cast<std::uint64_t>(time.tv_nsec),
                                     static_cast<std::uint64_t>(getpid()),
                                     static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(&MakeUp)),
                                     static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(&time))};
    const std::string_view text(reinterpret_cast<const char*>(sources), sizeof sources);
    for (std::size_t i = 0; i < aCount; i += kWordSize) {
        const std::uint64_t word = ezHashKey_Hash({i, aCount}, text);
        std::memcpy(aBytes + i, &word, std::min(kWordSize, aCount - i));
    }
}

} // namespace

std::uint64_t ezHashKey_Hash(const ezHashKey& aKey, std::string_view aText) {
    return HashOf<false>(aKey, aText);
}

std::uint64_t ezHashKey_HashNoCase(const ezHashKey& aKey, std::string_view aText) {
    return HashOf<true>(aKey, aText);
}

const ezHashKey& ezHashKey_OfProcess() {
    // The one piece of global state besides log and assertions: written once, by whoever comes first.
    static const ezHashKey kKey = ezHashKey_Read();
    return kKey;
}

ezHashKey ezHashKey_Read() {
    unsigned char bytes[sizeof(ezHashKey)] = {};
    if (ezSystem().mGetRandom(bytes, sizeof bytes) != static_cast<ssize_t>(sizeof bytes) &&
        !ReadUrandom(bytes, sizeof bytes)) {
        MakeUp(bytes, sizeof bytes);
    }
    ezHashKey key = {};
    std::memcpy(&key, bytes, sizeof key);
    return key;
}
