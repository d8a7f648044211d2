#include "ezBytes/ChunkWalk.h"

#include "support/NumberBytes.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace {

using Strings = std::vector<std::string>;

/// A chunk of RIFF, its stuffing left to whoever calls.
std::string Chunk(const std::string& aName, const std::string& aContent) {
    return aName + Little(aContent.size()) + aContent;
}

BlockBytes BytesOf(const std::string& aBytes) {
    return {reinterpret_cast<const unsigned char*>(aBytes.data()), aBytes.size()};
}

/// The chunks as "name:content".
Strings ChunksOf(const std::string& aBytes, const ChunkLayout& aLayout = kChunks_RIFF,
                 std::uint32_t aBudget = 100) {
    BlockBytes bytes = BytesOf(aBytes);
    ByteReader reader(bytes);
    ChunkWalk walk(reader, aLayout, aBudget);
    Strings found;
    BoxType name;
    for (ByteReader content = reader; walk.Next(&name, &content);) {
        const auto size = static_cast<std::size_t>(content.GetLeft());
        found.push_back((name.GetText() + ":").c_str() + std::string(content.ReadText(size).View()));
    }
    return found;
}

} // namespace

TEST(ChunkWalk, ReadsEveryLayout) {
    const std::string guid = "=rest of GUID";
    const Strings expected = {"one :abc", "two :defg"};
    EXPECT_EQ(ChunksOf(Chunk("one ", "abc") + Big(0, 1) + Chunk("two ", "defg")), expected);
    EXPECT_EQ(ChunksOf("one " + Big(3, 4) + "abc" + Big(0, 1) + "two " + Big(4, 4) + "defg", kChunks_IFF),
              expected);
    EXPECT_EQ(ChunksOf("one " + Big(3, 8) + "abc" + Big(0, 1) + "two " + Big(4, 8) + "defg", kChunks_IFF64),
              expected);
    EXPECT_EQ(ChunksOf("one " + Big(3, 8) + "abc" + "two " + Big(4, 8) + "defg", kChunks_CAF), expected);
    EXPECT_EQ(ChunksOf("one rest of GUID" + Little(27, 8) + "abc" + Big(0, 5) + "two rest of GUID" +
                           Little(28, 8) + "defg",
                       kChunks_W64),
              expected);
}

TEST(ChunkWalk, GUIDNeedNotBeginWithLetters) {
    const std::string summary = Big(0xBC945F92, 4) + "rest of GUID" + Little(32, 8) + "contents";
    const std::string last = "two rest of GUID" + Little(28, 8) + "defg";
    EXPECT_EQ(ChunksOf(summary + last, kChunks_W64), (Strings{"\xBC\x94\x5F\x92:contents", "two :defg"}));
    EXPECT_EQ(ChunksOf(std::string(24, '\0') + last, kChunks_W64), Strings());
}

TEST(ChunkWalk, ForgottenStuffingIsNotSteppedOver) {
    const Strings expected = {"one :abc", "two :defg"};
    EXPECT_EQ(ChunksOf(Chunk("one ", "abc") + Chunk("two ", "defg")), expected);
    // "wo " and the length of the content, which is a printable character, look like a name.
    const std::string letters(100, 'd');
    EXPECT_EQ(ChunksOf(Chunk("one ", "abc") + Chunk("two ", letters)),
              (Strings{"one :abc", "two :" + letters}));
    // A size may lie there all the same, and one byte further on there is no name.
    EXPECT_EQ(ChunksOf(Chunk("one ", "abc") + "two " + Little(UINT32_MAX) + "defg"), expected);
    EXPECT_EQ(ChunksOf(Chunk("one ", "abc") + Big(0, 1) + "two " + Little(UINT32_MAX) + "defg"), expected);
    // The last one need not have any.
    EXPECT_EQ(ChunksOf(Chunk("one ", "abc")), Strings{"one :abc"});
    EXPECT_EQ(ChunksOf(Chunk("one ", "abc") + Big(0, 1)), Strings{"one :abc"});
    // One that is cut is looked for where it belongs.
    EXPECT_EQ(ChunksOf(Chunk("one ", "abc") + Big(0, 1) + "two " + Little(9) + "de"),
              (Strings{"one :abc", "two :de"}));
}

TEST(ChunkWalk, SizeThatLiesGivesWhatThereIs) {
    for (const std::uint64_t size :
         {std::uint64_t{3}, std::uint64_t{0x7FFFFFFF}, std::uint64_t{0xFFFFFFFF}}) {
        EXPECT_EQ(ChunksOf("data" + Little(size) + "ab"), Strings{"data:ab"}) << size;
    }
    for (const std::uint64_t size : {UINT64_MAX, UINT64_MAX - 1, UINT64_MAX - 16, std::uint64_t{1} << 63}) {
        EXPECT_EQ(ChunksOf("data" + Big(size, 8) + "ab", kChunks_CAF), Strings{"data:ab"}) << size;
        EXPECT_EQ(ChunksOf("data" + Big(size, 8) + "ab", kChunks_IFF64), Strings{"data:ab"}) << size;
        EXPECT_EQ(ChunksOf("datarest of GUID" + Little(size, 8) + "ab", kChunks_W64), Strings{"data:ab"});
    }
    EXPECT_EQ(ChunksOf("datarest of GUID" + Little(23, 8) + "ab", kChunks_W64), Strings())
        << "less than what stands before the content";
}

TEST(ChunkWalk, EndsWithTheBytesTheChunksAndTheBudget) {
    const std::string chunk = Chunk("one ", "ab");
    for (std::size_t length = 0; length < 8; ++length) {
        EXPECT_EQ(ChunksOf(chunk.substr(0, length)), Strings()) << length;
        EXPECT_EQ(ChunksOf(chunk + chunk.substr(0, length)), Strings{"one :ab"}) << length;
    }
    EXPECT_EQ(ChunksOf(chunk + std::string(16, '\0') + chunk), Strings{"one :ab"});
    EXPECT_EQ(ChunksOf(chunk + Chunk("\x1Fne ", "ab")), Strings{"one :ab"});
    EXPECT_EQ(ChunksOf(chunk + Chunk("on\x7F ", "ab")), Strings{"one :ab"});
    EXPECT_EQ(ChunksOf(chunk + chunk + chunk, kChunks_RIFF, 2), (Strings{"one :ab", "one :ab"}));
    EXPECT_EQ(ChunksOf(chunk, kChunks_RIFF, 0), Strings());
}

TEST(ChunkWalk, GoesOnWhereItIsTold) {
    const std::string file = "data" + Little(UINT32_MAX) + "abc" + Big(0, 1) + Chunk("LIST", "de");
    for (const std::uint64_t size : {std::uint64_t{3}, std::uint64_t{4}, std::uint64_t{5}, UINT64_MAX}) {
        BlockBytes bytes = BytesOf(file);
        ByteReader reader(bytes);
        std::uint32_t budget = 9;
        ChunkWalk walk(reader, kChunks_RIFF, budget);
        BoxType name;
        ByteReader content = reader;
        ASSERT_TRUE(walk.Next(&name, &content));
        EXPECT_EQ(walk.GetStatedSize(), UINT32_MAX);
        EXPECT_EQ(content.GetLeft(), file.size() - 8);
        walk.SetContentSize(size);
        EXPECT_EQ(walk.Next(&name, &content) && name == "LIST", size < 5) << size;
    }
}
