#include "ezBytes/EBMLWalk.h"

#include "ezBytes/Limits.h"

#include "support/EbmlBytes.h"
#include "support/Str.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

// Elements of EBML, and what they hold.

namespace {

using ebml::Element;
using ebml::Size;
using ebml::Unknown;
using Strings = std::vector<std::string>;

/// Bytes of which nobody knows how many there are.
class Endless : public BlockBytes {
public:
    using BlockBytes::BlockBytes;
    std::optional<std::uint64_t> GetSize() const override { return std::nullopt; }
};

BlockBytes BytesOf(const std::string& aBytes) {
    return {reinterpret_cast<const unsigned char*>(aBytes.data()), aBytes.size()};
}

/// What a function makes of a content.
template <typename Function>
auto Of(Function aFunction, const std::string& aContent) {
    BlockBytes bytes = BytesOf(aContent);
    return aFunction(ByteReader(bytes));
}

/// An element as "id:content", with "~" where its size is unknown and "!" where it is cut.
std::string Told(EBMLElement& anElement) {
    const auto size = static_cast<std::size_t>(anElement.mContent.GetLeft());
    return std::to_string(anElement.mId) +
           (anElement.mfUnknownSize ? "~"
            : anElement.mfCut       ? "!"
                                    : ":") +
           Str(anElement.mContent.ReadText(size));
}

Strings ElementsOf(const std::string& aBytes, std::uint32_t aBudget = 100, bool* afFailed = nullptr) {
    BlockBytes bytes = BytesOf(aBytes);
    EBMLWalk walk(ByteReader(bytes), aBudget);
    Strings found;
    for (EBMLElement element{ByteReader(bytes)}; walk.Next(&element);) {
        found.push_back(Told(element));
    }
    if (afFailed != nullptr) {
        *afFailed = walk.HasFailed();
    }
    return found;
}

/// The outer elements are 0x81 and 0x82.
bool IsInner(EBMLId anId) {
    return anId != 0x81 && anId != 0x82;
}

/// The outer elements, and in brackets those within one that is of unknown size.
Strings NestedOf(const std::string& aBytes) {
    std::uint32_t budget = 100;
    BlockBytes bytes = BytesOf(aBytes);
    EBMLWalk outer(ByteReader(bytes), budget);
    EBMLElement element{ByteReader(bytes)};
    Strings found;
    while (outer.Next(&element)) {
        if (!element.mfUnknownSize) {
            found.push_back(Told(element));
            continue;
        }
        EBMLWalk inner(element.mContent, budget, IsInner);
        while (inner.Next(&element)) {
            found.push_back("[" + Told(element) + "]");
        }
        outer.ContinueAfter(inner);
    }
    return found;
}

} // namespace

TEST(EBMLWalk, ReadsIdsAndSizesOfEveryLength) {
    EXPECT_EQ(ElementsOf("\x81\x81"
                         "a"),
              Strings({"129:a"}));
    for (const std::uint32_t id : {0x81U, 0x4282U, 0x2AD7B1U, 0x1A45DFA3U}) {
        for (unsigned bytes = 1; bytes <= 8; ++bytes) {
            EXPECT_EQ(ElementsOf(ebml::Id(id) + Size(3, bytes) + "abc" + Element(0x83, "d")),
                      (Strings{std::to_string(id) + ":abc", "131:d"}))
                << id << " " << bytes;
        }
    }
}

TEST(EBMLWalk, WhatHasNoMarkerEndsTheWalkAndSaysSo) {
    for (const std::string& wrong : {Big(0x08, 1) + Big(0, 4), Big(0, 8), Big(0x8100, 2) + Big(0, 8)}) {
        bool fFailed = false;
        EXPECT_EQ(ElementsOf(Element(0x83, "a") + wrong + Element(0x83, "b"), 100, &fFailed),
                  Strings({"131:a"}));
        EXPECT_TRUE(fFailed);
    }
    bool fFailed = true;
    EXPECT_EQ(ElementsOf("", 100, &fFailed), Strings());
    EXPECT_FALSE(fFailed);
}

TEST(EBMLWalk, SizeBeyondTheEndIsCutToWhatThereIs) {
    EXPECT_EQ(ElementsOf(ebml::Id(0x83) + Size(4) + "abc"), Strings({"131!abc"}));
    EXPECT_EQ(ElementsOf(ebml::Id(0x83) + Size((std::uint64_t{1} << 56) - 2, 8) + "abc"),
              Strings({"131!abc"}));
}

TEST(EBMLWalk, SizeNextToTheLargestIsCountedWhereTheEndIsUnknown) {
    const std::string text = ebml::Id(0x83) + Size((std::uint64_t{1} << 56) - 2, 8);
    Endless bytes(reinterpret_cast<const unsigned char*>(text.data()), text.size());
    std::uint32_t budget = 10;
    EBMLWalk walk(ByteReader(bytes), budget);
    EBMLElement element{ByteReader(bytes)};
    ASSERT_TRUE(walk.Next(&element));
    EXPECT_FALSE(element.mfCut);
    EXPECT_EQ(walk.GetPosition(), (std::uint64_t{1} << 56) - 2 + text.size());
    EXPECT_FALSE(walk.Next(&element));
}

TEST(EBMLWalk, EveryTruncationGivesTheWholeOnesAndAtMostOneCut) {
    const std::string whole =
        Element(0x83, "abc") + Element(0x4282, std::string(200, 'd')) + Element(0x84, "");
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const Strings found = ElementsOf(whole.substr(0, size));
        EXPECT_LE(found.size(), 2U);
        EXPECT_TRUE(size < 5 || found[0] == "131:abc") << size;
    }
    EXPECT_EQ(ElementsOf(whole).size(), 3U);
}

TEST(EBMLWalk, VoidsAndCheckSumsAreSteppedOverAnywhere) {
    const std::string stuffing =
        Element(kEBML_Void, std::string(1000, 'v')) + Element(kEBML_CheckSum, "sums");
    EXPECT_EQ(ElementsOf(stuffing + Element(0x83, "a") + stuffing + Element(0x84, "b") + stuffing),
              (Strings{"131:a", "132:b"}));
    EXPECT_EQ(NestedOf(Unknown(0x81, "") + stuffing + Element(0x83, "a") + stuffing + Element(0x82, "b")),
              (Strings{"[131:a]", "130:b"}));
}

TEST(EBMLWalk, BudgetCountsWhatIsSteppedOverToo) {
    const std::string bytes = Element(kEBML_Void, "") + Element(0x83, "a") + Element(0x84, "b");
    EXPECT_EQ(ElementsOf(bytes, 3), (Strings{"131:a", "132:b"}));
    EXPECT_EQ(ElementsOf(bytes, 2), Strings({"131:a"}));
    EXPECT_EQ(ElementsOf(bytes, 0), Strings());
}

TEST(EBMLWalk, UnknownSizeEndsAtWhatCannotBeInIt) {
    for (unsigned bytes = 1; bytes <= 8; ++bytes) {
        EXPECT_EQ(NestedOf(Unknown(0x81, "", bytes) + Element(0x83, "a") + Element(0x84, "b") +
                           Element(0x82, "c") + Unknown(0x81, "", bytes) + Element(0x83, "d")),
                  (Strings{"[131:a]", "[132:b]", "130:c", "[131:d]"}));
    }
    // one that holds nothing, and one after the other
    EXPECT_EQ(NestedOf(Unknown(0x81, "") + Unknown(0x81, "") + Element(0x82, "c")), Strings({"130:c"}));
    EXPECT_EQ(NestedOf(Unknown(0x81, "")), Strings());
}

TEST(EBMLWalk, UnknownSizeThatNobodyWalksEndsTheWalkAroundIt) {
    EXPECT_EQ(ElementsOf(Unknown(0x83, "abc", 1)), Strings({"131~abc"}));
}

TEST(EBMLWalk, DamageWithinAnUnknownSizeEndsBothWalks) {
    EXPECT_EQ(NestedOf(Unknown(0x81, "") + Element(0x83, "a") + Big(0, 4) + Element(0x82, "b")),
              Strings({"[131:a]"}));
}

TEST(EBMLWalk, FindsTheFirstOfAnId) {
    const std::string text = Element(0x83, "a") + Element(0x84, "b") + Element(0x84, "c");
    BlockBytes bytes = BytesOf(text);
    std::uint32_t budget = 10;
    EBMLWalk walk(ByteReader(bytes), budget);
    EBMLElement element{ByteReader(bytes)};
    ASSERT_TRUE(walk.Find(0x84, &element));
    EXPECT_EQ(Told(element), "132:b");
    EXPECT_EQ(element.mStart, 3U);
    EXPECT_FALSE(walk.Find(0x83, &element));
}

TEST(EBMLValues, NumbersAreOfOneToEightBytesAndElseTheDefault) {
    const auto number = [](ByteReader aContent) { return ReadEBMLNumber(aContent, 7); };
    const auto sign = [](ByteReader aContent) { return ReadEBMLSigned(aContent, 7); };
    EXPECT_EQ(Of(number, ""), 7U);
    EXPECT_EQ(Of(sign, ""), 7);
    for (unsigned bytes = 1; bytes <= 8; ++bytes) {
        EXPECT_EQ(Of(number, Big(0x80, bytes)), 0x80U);
        EXPECT_EQ(Of(sign, Big(UINT64_MAX, bytes)), -1);
        EXPECT_EQ(Of(sign, Big(0x7F, bytes)), 0x7F);
    }
    EXPECT_EQ(Of(number, Big(UINT64_MAX, 8)), UINT64_MAX);
    EXPECT_EQ(Of(sign, Big(std::uint64_t{1} << 63, 8)), INT64_MIN);
    EXPECT_EQ(Of(number, Big(1, 9)), 7U);
    EXPECT_EQ(Of(sign, Big(1, 9)), 7);
}

TEST(EBMLValues, FloatsAreOfFourOrEightBytesAndFinite) {
    const auto number = [](ByteReader aContent) { return ReadEBMLFloat(aContent, 2.5); };
    EXPECT_EQ(Of(number, ""), 2.5);
    EXPECT_EQ(Of(number, "\x3F\xC0" + Big(0, 2)), 1.5);
    EXPECT_EQ(Of(number, "\xC0\x04" + Big(0, 6)), -2.5);
    EXPECT_EQ(Of(number, Big(0, 3)), 2.5);
    EXPECT_EQ(Of(number, Big(0, 10)), 2.5);
    EXPECT_EQ(Of(number, "\x7F\xC0" + Big(0, 2)), 2.5);
    EXPECT_EQ(Of(number, "\x7F\xF0" + Big(0, 6)), 2.5);
}

TEST(EBMLValues, TextsEndAtTheFirstNulAndAreBounded) {
    const auto text = [](ByteReader aContent) { return Str(ReadEBMLText(aContent)); };
    EXPECT_EQ(Of(text, ""), "");
    EXPECT_EQ(Of(text, std::string("caf\xC3\xA9\0\0", 7)), "caf\xC3\xA9");
    EXPECT_EQ(Of(text, std::string("a\0b", 3)), "a");
    const std::string padding(kEBML_MaxText - 1, ' ');
    EXPECT_EQ(Of(text, padding + "a"), "a");
    EXPECT_EQ(Of(text, " " + padding + "a"), "");
}

TEST(EBMLValues, DatesHaveEightBytes) {
    EXPECT_EQ(Of(ReadEBMLDate, Big(UINT64_MAX, 8)), -1);
    EXPECT_EQ(Of(ReadEBMLDate, Big(1, 7)), std::nullopt);
    EXPECT_EQ(Of(ReadEBMLDate, ""), std::nullopt);
    const std::string cut(7, '\1');
    Endless bytes(reinterpret_cast<const unsigned char*>(cut.data()), cut.size());
    EXPECT_EQ(ReadEBMLDate(ByteReader(bytes).Take(8)), std::nullopt);
}
