#include "ezPlatform/text/Base64.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace {

std::string Decoded(const std::string& aText, std::size_t aCapacity = 1000) {
    std::vector<char> output(aCapacity + 1, '#'); // on the heap and exact but for one guard
    const std::size_t count = ezBase64_Decode(aText.c_str(), output.data(), aCapacity);
    EXPECT_LE(count, aCapacity);
    EXPECT_EQ(output[aCapacity], '#');
    return {output.data(), count};
}

/// Written apart from the decoder: bits of the bytes, six at a time.
std::string Encoded(const std::string& aBytes, bool afPad) {
    const std::string alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string bits;
    for (const char byte : aBytes) {
        for (int bit = 7; bit >= 0; --bit) {
            bits += ((static_cast<unsigned char>(byte) >> bit) & 1) != 0 ? '1' : '0';
        }
    }
    while (bits.size() % 6 != 0) {
        bits += '0';
    }
    std::string text;
    for (std::size_t i = 0; i < bits.size(); i += 6) {
        text += alphabet[std::stoul(bits.substr(i, 6), nullptr, 2)];
    }
    while (afPad && text.size() % 4 != 0) {
        text += '=';
    }
    return text;
}

TEST(Base64, TheVectorsOfTheStandardDecode) {
    EXPECT_EQ(Decoded(""), "");
    EXPECT_EQ(Decoded("Zg=="), "f");
    EXPECT_EQ(Decoded("Zm8="), "fo");
    EXPECT_EQ(Decoded("Zm9v"), "foo");
    EXPECT_EQ(Decoded("Zm9vYg=="), "foob");
    EXPECT_EQ(Decoded("Zm9vYmE="), "fooba");
    EXPECT_EQ(Decoded("Zm9vYmFy"), "foobar");
    EXPECT_EQ(Decoded("FPucA9l+"), "\x14\xfb\x9c\x03\xd9\x7e");
    EXPECT_EQ(Decoded("FPucA9k="), "\x14\xfb\x9c\x03\xd9");
    EXPECT_EQ(Decoded("FPucAw=="), "\x14\xfb\x9c\x03");
    EXPECT_EQ(Decoded("AA=="), std::string(1, '\0'));
    EXPECT_EQ(Decoded("/w=="), "\xff");
    EXPECT_EQ(Decoded("+/8="), "\xfb\xff");
    EXPECT_EQ(Decoded("////"), "\xff\xff\xff");
}

TEST(Base64, EveryLengthDecodesWithAndWithoutItsPadding) {
    std::mt19937 random(1);
    for (std::size_t length = 0; length < 200; ++length) {
        std::string bytes;
        for (std::size_t i = 0; i < length; ++i) {
            bytes += static_cast<char>(random() & 0xFF);
        }
        EXPECT_EQ(Decoded(Encoded(bytes, true)), bytes) << length;
        EXPECT_EQ(Decoded(Encoded(bytes, false)), bytes) << length;
    }
}

TEST(Base64, LineEndsBlanksAndRubbishAreSkipped) {
    EXPECT_EQ(Decoded("Zm9v\r\nYm\tFy \n"), "foobar");
    EXPECT_EQ(Decoded("\xef\xbb\xbfZm9v*!YmFy\x7f\x80\xff"), "foobar");
}

TEST(Base64, TheOtherAlphabetIsRubbish) {
    EXPECT_EQ(Decoded("Zm-9_v"), "foo");
}

TEST(Base64, TheFirstPaddingEndsTheData) {
    EXPECT_EQ(Decoded("Zg==Zg=="), "f");
    EXPECT_EQ(Decoded("Zm8==="), "fo");
    EXPECT_EQ(Decoded("====Zm9v"), "");
}

TEST(Base64, OfATextCutShortTheWholeBytesCount) {
    EXPECT_EQ(Decoded("Zm9vY"), "foo");
    EXPECT_EQ(Decoded("Zm9vYm"), "foob");
    EXPECT_EQ(Decoded("Zm9vYmF"), "fooba");
    EXPECT_EQ(Decoded("Z"), "");
}

TEST(Base64, UnusedBitsMayBeAnything) {
    EXPECT_EQ(Decoded("Zh=="), "f");
}

TEST(Base64, ATextEndsAtItsZero) {
    const char text[] = "Zm9v\0YmFy";
    char output[8] = {};
    EXPECT_EQ(ezBase64_Decode(text, output, sizeof output), 3U);
}

TEST(Base64, ANullTextIsEmpty) {
    char output = '#';
    EXPECT_EQ(ezBase64_Decode(nullptr, &output, 1), 0U);
    EXPECT_EQ(output, '#');
}

TEST(Base64, NothingIsWrittenAfterTheCapacity) {
    for (std::size_t capacity = 0; capacity < 8; ++capacity) {
        EXPECT_EQ(Decoded("Zm9vYmFy", capacity), std::string("foobar").substr(0, capacity));
    }
    EXPECT_EQ(ezBase64_Decode("Zm9v", nullptr, 0), 0U);
}

TEST(Base64, NeverMoreThanThreeBytesForFourCharacters) {
    std::mt19937 random(2);
    for (int i = 0; i < 20000; ++i) {
        std::string text;
        for (std::size_t length = random() % 40; length > 0; --length) {
            const bool fForeign = random() % 3 == 0;
            text += fForeign ? static_cast<char>(1 + random() % 255) : "AZaz09+/="[random() % 9];
        }
        EXPECT_LE(Decoded(text).size(), text.size() * 3 / 4) << text;
    }
}

} // namespace
