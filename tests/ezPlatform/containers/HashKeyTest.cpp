#include "ezPlatform/containers/HashKey.h"

#include "ezPlatform/containers/HashSlots.h"
#include "support/ReplacedSystem.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <set>
#include <string>
#include <tuple>
#include <utility>

namespace {

using Words = std::pair<std::uint64_t, std::uint64_t>;

Words WordsOf(const ezHashKey& aKey) {
    return {aKey.mLow, aKey.mHigh};
}

/// The bytes 0, 1, 2 ...
std::string Counting(std::size_t aCount) {
    std::string text;
    for (std::size_t i = 0; i < aCount; ++i) {
        text += static_cast<char>(i);
    }
    return text;
}

ssize_t NoRandom(void* /*aBuffer*/, std::size_t /*aSize*/) {
    errno = ENOSYS;
    return -1;
}

int gOpened = 0;
int gClosed = 0;

} // namespace

// Of an independent implementation of SipHash-1-3: the hash of byte strings of CPython 3.11, with no seed and
// with the seed 1.
TEST(HashKey, HashesAsSipHash13) {
    const ezHashKey zero = {0, 0};
    const ezHashKey seeded = {UINT64_C(0xAED66CE184BE2329), UINT64_C(0xEBE9BBF1F1499052)};
    const std::tuple<std::string, std::uint64_t, std::uint64_t> kExpected[] = {
        {Counting(1), UINT64_C(0x68A914128E01E473), UINT64_C(0xECD3E5AFCECDA4B9)},
        {Counting(7), UINT64_C(0x2F098AB0C751325A), UINT64_C(0xFD15E78052A69DDF)},
        {Counting(8), UINT64_C(0xEAD411E67EBE2EEA), UINT64_C(0xC0B5739E7E28DD01)},
        {Counting(9), UINT64_C(0x75927F9D95124362), UINT64_C(0x208A1A5A0CBBF778)},
        {Counting(15), UINT64_C(0xF30EB725BB91C9EA), UINT64_C(0xFA87985F39E97A53)},
        {Counting(16), UINT64_C(0x8972188433A5C5B7), UINT64_C(0x12E9D283F9F37002)},
        {Counting(63), UINT64_C(0x385D3E39E5F37359), UINT64_C(0x542052345BC68274)},
        {"DLNA.ORG_PN", UINT64_C(0x12E83795CD8F4C99), UINT64_C(0xEF32675B0D69ED04)},
    };
    for (const auto& [text, unseeded, withSeed] : kExpected) {
        EXPECT_EQ(ezHashKey_Hash(zero, text), unseeded) << text.size();
        EXPECT_EQ(ezHashKey_Hash(seeded, text), withSeed) << text.size();
    }
}

TEST(HashKey, WithoutCaseItIsTheHashOfTheLowerCase) {
    const ezHashKey key = {1, 2};
    for (const char* text : {"", "A", "@AZ[`az{", "aBCDEFGHIJKLMNOPQRSTUVWXYZ\xC1\xDA", "abcdefgh",
                             "DLNA.ORG_FLAGS", "[\\]^_`{@", "\xC3\x84hnlich"}) {
        std::string lower = text;
        for (char& byte : lower) {
            byte = byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
        }
        EXPECT_EQ(ezHashKey_HashNoCase(key, text), ezHashKey_Hash(key, lower)) << text;
    }
}

TEST(HashKey, OfTheProcessIsReadOnceAndUsedByTheTables) {
    const ezHashKey key = ezHashKey_OfProcess();
    const ReplacedSystem system([](ezSystemCalls& aCalls) {
        aCalls.mGetRandom = [](void* /*aBuffer*/, std::size_t /*aSize*/) -> ssize_t {
            ADD_FAILURE() << "read again";
            return -1;
        };
    });
    EXPECT_EQ(WordsOf(ezHashKey_OfProcess()), WordsOf(key));
    EXPECT_EQ(ezHashSlots::Hash("Text"), static_cast<std::uint32_t>(ezHashKey_Hash(key, "Text")));
    EXPECT_EQ(ezHashSlots::HashNoCase("Text"), ezHashSlots::Hash("text"));
}

TEST(HashKey, ComesFromTheKernel) {
    const ReplacedSystem system([](ezSystemCalls& aCalls) {
        aCalls.mGetRandom = [](void* aBuffer, std::size_t aSize) {
            std::memset(aBuffer, 0x5A, aSize);
            return static_cast<ssize_t>(aSize);
        };
        aCalls.mOpen = [](const char* aPath, int /*aFlags*/, mode_t /*aMode*/) {
            ADD_FAILURE() << aPath;
            return -1;
        };
    });
    const std::uint64_t word = UINT64_C(0x5A5A5A5A5A5A5A5A);
    EXPECT_EQ(WordsOf(ezHashKey_Read()), Words(word, word));
}

TEST(HashKey, ComesFromTheDeviceWhereTheKernelHasNoneYetOrComesShort) {
    for (const bool fShort : {false, true}) {
        ReplacedSystem system([](ezSystemCalls& aCalls) {
            aCalls.mGetRandom = NoRandom;
            aCalls.mOpen = [](const char* aPath, int /*aFlags*/, mode_t /*aMode*/) {
                EXPECT_STREQ(aPath, "/dev/urandom");
                ++gOpened;
                return 77;
            };
            aCalls.mPRead = [](int aFile, void* aBuffer, std::size_t aSize, ezFileOffset /*anOffset*/) {
                EXPECT_EQ(aFile, 77);
                std::memset(aBuffer, 0x33, aSize);
                return static_cast<ssize_t>(aSize);
            };
            aCalls.mClose = [](int aFile) {
                EXPECT_EQ(aFile, 77);
                ++gClosed;
                return 0;
            };
        });
        if (fShort) {
            system.mCalls.mGetRandom = [](void* /*aBuffer*/, std::size_t /*aSize*/) -> ssize_t { return 3; };
        }
        gOpened = 0;
        gClosed = 0;
        const std::uint64_t word = UINT64_C(0x3333333333333333);
        EXPECT_EQ(WordsOf(ezHashKey_Read()), Words(word, word));
        EXPECT_EQ(gOpened, 1);
        EXPECT_EQ(gClosed, 1);
    }
}

TEST(HashKey, IsMadeUpWhereThereIsNoRandomAtAll) {
    ReplacedSystem system([](ezSystemCalls& aCalls) { aCalls.mGetRandom = NoRandom; });
    for (const bool fShort : {false, true}) {
        if (fShort) {
            system.mCalls.mPRead = [](int, void*, std::size_t, ezFileOffset) -> ssize_t { return 5; };
        } else {
            system.mCalls.mOpen = [](const char*, int, mode_t) { return -1; };
        }
        std::set<std::uint64_t> words;
        for (int i = 0; i < 5; ++i) {
            const ezHashKey key = ezHashKey_Read();
            words.insert(key.mLow);
            words.insert(key.mHigh);
        }
        EXPECT_EQ(words.size(), 10U) << "no two alike";
        system.mCalls.mOpen = ezSystem_Real().mOpen;
    }
}

TEST(HashKey, ReallyIsAnotherOneEachTime) {
    const ezHashKey first = ezHashKey_Read();
    const ezHashKey second = ezHashKey_Read();
    EXPECT_NE(first.mLow, second.mLow);
    EXPECT_NE(first.mHigh, second.mHigh);
}
