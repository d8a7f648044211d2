#include "ezFormats/wavpack/WavPackParser.h"

#include "companions/ezFormats/ChunkBytes.h"
#include "companions/ezFormats/FormatFiles.h"

#include "support/Samples.h"
#include "support/TailBytes.h"

#include <gtest/gtest.h>

using namespace chunks;
using namespace std::string_literals;

namespace {

/// A sub-block: its number in six bits, and what it holds.
std::string SubBlock(unsigned aNumber, const std::string& aContent) {
    const std::size_t words = (aContent.size() + 1) / 2;
    const unsigned odd = aContent.size() % 2 != 0 ? 0x40 : 0;
    const bool fLarge = words > 255;
    return Big(aNumber | odd | (fLarge ? 0x80U : 0U), 1) + Little(words, fLarge ? 3 : 1) + aContent +
           std::string(aContent.size() % 2, '\0');
}

constexpr std::uint32_t kUnknown = 0xFFFFFFFF;
constexpr std::uint32_t kFirst = 0x800; ///< of a group
constexpr std::uint32_t kLast = 0x1000;
constexpr std::uint32_t kMono = 4;
constexpr std::uint32_t kDSD = 0x80000000;
constexpr std::uint32_t Rate(unsigned aNumber) {
    return aNumber << 23;
}

struct Block {
    std::uint32_t mTotal = 88200;
    std::uint32_t mIndex = 0;
    std::uint32_t mSamples = 22050;
    std::uint32_t mFlags = Rate(9) | kFirst | kLast | 1;
    unsigned mVersion = 0x410;
    unsigned mIndexHigh = 0;
    unsigned mTotalHigh = 0;
    std::uint32_t mUncounted = 8; ///< bytes that the size leaves out

    std::string Bytes(const std::string& aSubBlocks) const {
        return "wvpk" + Little(32 + aSubBlocks.size() - mUncounted) + Little(mVersion, 2) +
               Big(mIndexHigh, 1) + Big(mTotalHigh, 1) + Little(mTotal) + Little(mIndex) + Little(mSamples) +
               Little(mFlags) + "sums" + aSubBlocks;
    }
};

const std::string kSound = SubBlock(0x0A, Sound(3000));

/// A file of a block, with another total, flags or sub-blocks.
std::string File(std::uint32_t aFlags, const std::string& aSubBlocks = "") {
    Block block;
    block.mFlags = aFlags;
    return block.Bytes(aSubBlocks + kSound);
}
/// Blocks one after the other whose file does not state how many samples there are.
std::string Uncounted(unsigned aCount, std::size_t aSize = 3000, std::uint32_t aIndex = 0) {
    std::string file;
    for (unsigned i = 0; i < aCount; ++i) {
        Block block;
        block.mTotal = kUnknown;
        block.mIndex = aIndex + i * 22050;
        file += block.Bytes(SubBlock(0x0A, Sound(aSize)));
    }
    return file;
}

std::string Refusal(const std::string& aBytes) {
    return pictures::Refusal<WavPackParser>(aBytes);
}
std::string Length(const std::string& aBytes, const Delivery& aDelivery = Delivery()) {
    return Values<WavPackParser>(aBytes, {"dm", "md"}, aDelivery);
}
std::string Value(const std::string& aBytes, const char* aKey) {
    return Values<WavPackParser>(aBytes, {aKey});
}

const std::string kCover = APEItem("Cover Art (Front)", "cover.png\0\x89PNG\r\n\x1A\nours"s, 2);
const std::string kTag = APE2(APEItem("Title", "Title") + APEItem("Artist", "One\0Two"s) + kCover);

Block Silent() {
    Block block;
    block.mSamples = 0;
    block.mFlags = 0;
    return block;
}

std::vector<std::string> UsualFiles() {
    return {Block().Bytes(SubBlock(0x21, "RIFF") + SubBlock(0x0A, Sound(300))) + kTag,
            ID3(3, 0, Frame23("TPE1", "\0A"s)) + Uncounted(2, 200) + ID3v1("t", "", "", 17),
            File(Rate(12) | kDSD | kFirst | kLast, SubBlock(0x0E, "\2" + Sound(100)))};
}

std::vector<std::string> CostlyFiles() {
    std::string silent;
    for (unsigned i = 0; i < 31; ++i) {
        silent += Silent().Bytes(SubBlock(0x21, std::string(20000, 'R')));
    }
    std::string items;
    for (unsigned i = 0; i < 20; ++i) {
        items += APEItem("Comment", std::string(70000, 'c'));
    }
    return {silent + Uncounted(1, 600000) + APE2(items + kCover), Uncounted(1, 900000) + APE2(items + kCover),
            Uncounted(1, 100) + std::string(600000, 'w') + kTag};
}

const FormatFiles kFiles("wv", {8, 1U << 20}, {"ca", "sf", "bs", "ta"}, UsualFiles, CostlyFiles);

} // namespace

TEST(WavPackParser, RecordSaysWhatBlockAndTagSay) {
    EXPECT_EQ(
        pictures::Parsed<WavPackParser>(Block().Bytes(kSound) + kTag),
        "ac=2\nar=4294967295\nas=\"One\\nTwo\"\nbs=16\nca=\"WavPack\"\ncm=\"image/png\"\n"
        "cn=\"item.audioItem\"\ncs=12\ndl=\"DLNA.ORG_OP=01\"\ndm=2000\ndu=2\nea=12144\n"
        "md=\"header\"\nmt=\"audio/x-wavpack\"\nsf=44100\nta=1\ntitle=\"Title\"\ncreator=\"One, Two\"\n");
}

TEST(WavPackParser, FlagsTellRateBitsAndChannels) {
    const std::vector<unsigned> rates = {6000,  8000,  9600,  11025, 12000, 16000, 22050, 24000,
                                         32000, 44100, 48000, 64000, 88200, 96000, 192000};
    for (unsigned number = 0; number < rates.size(); ++number) {
        EXPECT_EQ(Value(File(Rate(number) | kLast), "sf"), std::to_string(rates[number]));
    }
    const auto facts = [](std::uint32_t aFlags) {
        return Values<WavPackParser>(File(aFlags | Rate(9) | kLast), {"bs", "ac"});
    };
    EXPECT_EQ(facts(0), "8|2");
    EXPECT_EQ(facts(1), "16|2");
    EXPECT_EQ(facts(2 | kMono), "24|1");
    EXPECT_EQ(facts(3 | 0x80), "32|2") << "floating point";
    EXPECT_EQ(facts(2 | 4U << 13), "20|2") << "four bits are always 0";
    EXPECT_EQ(facts(0 | 31U << 13), "8|2") << "more than there are";
    EXPECT_EQ(facts(1 | 8), "16|2") << "lossy";
    EXPECT_EQ(facts(1 | 1U << 30), "16|2") << "both channels are the same";
}

TEST(WavPackParser, RateThatIsNotListedIsThatOfASubBlock) {
    const std::uint32_t flags = Rate(15) | kLast | 1;
    EXPECT_EQ(Value(File(flags, SubBlock(0x27, Little(40000, 3))), "sf"), "40000");
    EXPECT_EQ(Value(File(flags, SubBlock(0x27, Little(0x80000000U + 20000000))), "sf"), "20000000");
    EXPECT_EQ(Value(File(flags, SubBlock(0x21, Sound(900)) + SubBlock(0x27, Little(40000, 3))), "sf"),
              "40000");
    EXPECT_EQ(Refusal(File(flags)), "WavPackParser: malformed: no sampling rate, or none that there is");
    EXPECT_EQ(Refusal(File(flags, SubBlock(0x27, "\1"))),
              "WavPackParser: malformed: no sampling rate, or none that there is");
}

TEST(WavPackParser, DSDIsToldByItsOwnRateAndOneBit) {
    const auto facts = [](const std::string& aSubBlock) {
        Block block;
        block.mTotal = 352800;
        block.mFlags = Rate(12) | kDSD | kFirst | kLast;
        return Values<WavPackParser>(block.Bytes(aSubBlock), {"sf", "bs", "dm", "ea"});
    };
    EXPECT_EQ(facts(SubBlock(0x0E, "\2" + Sound(12463))), "2822400|1|1000|100000");
    EXPECT_EQ(facts(SubBlock(0x0E, "\3" + Sound(12463))), "5644800|1|500|200000");
    EXPECT_EQ(facts(SubBlock(0x0E, "\2" + Sound(90000)).substr(0, 12468)), "2822400|1|1000|100000") << "cut";
    EXPECT_EQ(facts(SubBlock(0x0E, Big(12, 1) + Sound(9))).substr(0, 10), "2890137600");
    const std::string none = "WavPackParser: malformed: no sampling rate, or none that there is";
    EXPECT_EQ(Refusal(File(Rate(12) | kDSD, SubBlock(0x0E, Big(13, 1)))), none) << "more than 32 bits";
    EXPECT_EQ(Refusal(File(Rate(12) | kDSD, SubBlock(0x0E, Big(kWavPack_MaxShift + 1, 1)))), none);
    EXPECT_EQ(Refusal(File(Rate(12) | kDSD)), none) << "a rate that is not told to be doubled";
    const std::string cut = File(Rate(12) | kDSD, SubBlock(0x21, "RIFF") + SubBlock(0x0E, "\2"));
    EXPECT_EQ(Refusal(cut.substr(0, 38 + 2)), none) << "before it is told";
    EXPECT_EQ(Value(cut.substr(0, 38 + 3), "sf"), "2822400");
}

TEST(WavPackParser, ChannelsAreCountedByASubBlockOrByTheBlocksOfAGroup) {
    const auto group = [](std::initializer_list<std::uint32_t> aFlags) {
        std::string file;
        for (const std::uint32_t flags : aFlags) {
            file += File(flags | Rate(9) | 1);
        }
        return Value(file, "ac");
    };
    EXPECT_EQ(Value(File(Rate(9) | kFirst, SubBlock(0x0D, "\6\x3F")), "ac"), "6");
    EXPECT_EQ(Value(File(Rate(9) | kFirst, SubBlock(0x0D, "\xFF\xFB\0\xFF\xFF\3"s)), "ac"), "256");
    EXPECT_EQ(Value(File(Rate(9) | kFirst, SubBlock(0x0D, "\xFF\xFB\x5F\xFF\xFF\3"s)), "ac"), "4096");
    EXPECT_EQ(group({kFirst, kMono, kMono, kLast}), "6");
    EXPECT_EQ(group({kFirst | kLast, kFirst | kLast}), "2") << "the next block has later samples";
    EXPECT_EQ(group({kFirst, kMono}), "") << "not all of them are there";
    std::string many;
    for (std::uint32_t i = 0; i < kWavPack_MaxBlocks; ++i) {
        Block block;
        block.mFlags = Rate(9) | kMono;
        many += block.Bytes("");
    }
    EXPECT_EQ(Value(many + File(Rate(9) | kLast), "ac"), "34");
    EXPECT_EQ(Value(many + File(Rate(9)) + File(Rate(9) | kLast), "ac"), "");
}

TEST(WavPackParser, FirstBlocksMayHaveNoSamples) {
    std::string silent;
    for (std::uint32_t i = 1; i < kWavPack_MaxBlocks; ++i) {
        silent += Silent().Bytes(SubBlock(0x21, "RIFF"));
    }
    EXPECT_EQ(Values<WavPackParser>(silent + Block().Bytes(kSound), {"dm", "sf", "bs"}), "2000|44100|16");
    EXPECT_EQ(Refusal(silent + Silent().Bytes("") + Block().Bytes(kSound)),
              "WavPackParser: malformed: ends before a block with samples");
    EXPECT_EQ(Refusal(Silent().Bytes(SubBlock(0x21, "RIFF"))),
              "WavPackParser: malformed: ends before a block with samples");
}

TEST(WavPackParser, CountIsOf40Bits) {
    const auto length = [](unsigned aHigh, std::uint32_t aLow, const Delivery& aDelivery) {
        Block block;
        block.mTotal = aLow;
        block.mTotalHigh = aHigh;
        return Length(block.Bytes(kSound), aDelivery);
    };
    Delivery pipe; // where no size contradicts
    pipe.mfSizeKnown = false;
    EXPECT_EQ(length(0, 88200, pipe), "2000|\"header\"");
    EXPECT_EQ(length(1, 0, pipe), "97391548|\"header\"") << "2^32-1 of them";
    EXPECT_EQ(length(1, 45, pipe), "97391549|\"header\"");
    EXPECT_EQ(length(0, kUnknown, pipe), "|");
    EXPECT_EQ(length(255, kUnknown, pipe), "|");
    EXPECT_EQ(length(0, 0, pipe), "|");
}

TEST(WavPackParser, CountThatIsMissingOrCannotBeIsThatOfTheLastBlock) {
    EXPECT_EQ(Length(Uncounted(4)), "2000|\"last block\"");
    EXPECT_EQ(Length(Uncounted(4) + kTag + ID3v1("t", "", "", 1)), "2000|\"last block\"");
    EXPECT_EQ(Length(Uncounted(4, 3000, 441000)), "2000|\"last block\"") << "cut out of a longer one";
    EXPECT_EQ(Length(Uncounted(4) + Silent().Bytes(SubBlock(0x22, "end"))), "2000|\"last block\"");
    EXPECT_EQ(Length(Uncounted(4).substr(0, 3 * 3034 + 500)), "2000|\"last block\"") << "the last one is cut";
    EXPECT_EQ(Length(ID3(3, 0, Frame23("TPE1", "\0A"s)) + Uncounted(4)), "2000|\"last block\"");
    Block block;
    block.mTotal = 0xFFFFFFF0; // a day
    EXPECT_EQ(Length(block.Bytes(kSound)), "500|\"last block\"");
    block.mTotal = 1;
    EXPECT_EQ(Length(block.Bytes(kSound)), "500|\"last block\"");
    block.mTotal = 0;
    block.mIndexHigh = 1;
    EXPECT_EQ(Length(block.Bytes(kSound)), "500|\"last block\"") << "it begins late";
}

TEST(WavPackParser, WhatLooksLikeABlockAndIsNoneIsPassedOver) {
    Block wrong;
    wrong.mIndex = 4410000;
    std::string none;
    wrong.mVersion = 0x411;
    none += wrong.Bytes("");
    wrong.mVersion = 0x401;
    none += wrong.Bytes("");
    wrong.mVersion = 0x410;
    wrong.mUncounted = 9;
    none += wrong.Bytes("");
    wrong.mUncounted = 10;
    none += wrong.Bytes("");
    const std::string sound = SubBlock(0x0A, Sound(100) + none + "wvpk" + Sound(100));
    Block block;
    block.mTotal = kUnknown;
    EXPECT_EQ(Length(block.Bytes(sound)), "500|\"last block\"");
    block.mVersion = 0x402;
    EXPECT_EQ(Length(block.Bytes(sound)), "500|\"last block\"") << "the first version";
}

TEST(WavPackParser, LastBlockIsLookedForFromTheEndAndNotFurtherThanItMay) {
    // Where a part of what is searched ends, the header may go across.
    for (std::size_t size = 65536 - 80; size < 65536 + 40; ++size) {
        ASSERT_EQ(Length(Uncounted(2, size)), "1000|\"last block\"") << size;
    }
    const auto length = [](std::size_t aSize) { return Length(Uncounted(3, aSize)); };
    const std::size_t most = kWavPack_SearchSize - 32 - 4;
    EXPECT_EQ(length(most), "1500|\"last block\"");
    EXPECT_EQ(length(most + 2), "|");
}

TEST(WavPackParser, CountThatCannotBeIsNotTold) {
    const auto length = [](std::uint32_t aTotal) {
        Block block;
        block.mTotal = aTotal;
        return Length(block.Bytes(SubBlock(0x0A, Sound(kWavPack_SearchSize))));
    };
    EXPECT_EQ(length(44100 * 26217), "26217000|\"header\"") << "a hundred bits a second";
    EXPECT_EQ(length(44100 * 26218), "|") << "and no block in what is searched";
    EXPECT_EQ(length(290), "6|\"header\"") << "400 Mbit/s";
    EXPECT_EQ(length(289), "|");
    // Silence of a low rate: the last block agrees, and is believed.
    Block silent;
    silent.mFlags = Rate(0) | kFirst | kLast;
    silent.mTotal = silent.mSamples = 48000;
    EXPECT_EQ(Length(silent.Bytes(SubBlock(0x0A, Sound(20)))), "8000|\"last block\"");
}

TEST(WavPackParser, FilesOfCorrectionsAreNoSoundOfTheirOwn) {
    const std::string correction = SubBlock(0x07, "") + SubBlock(0x2A, "md") + SubBlock(0x0B, Sound(3000));
    EXPECT_EQ(Refusal(Block().Bytes(correction)), "WavPackParser: unsupported: corrections of another file");
}

TEST(WavPackParser, WhatIsNoBlockIsRefused) {
    EXPECT_EQ(Refusal("wvpl" + Block().Bytes(kSound).substr(4)), "WavPackParser: malformed: no block at 0");
    EXPECT_EQ(Refusal(Block().Bytes(kSound).substr(0, 31)), "WavPackParser: malformed: no block at 0");
    for (const unsigned version : {0U, 3U, 0x401U, 0x411U}) {
        Block block;
        block.mVersion = version;
        EXPECT_EQ(Refusal(block.Bytes(kSound)), "WavPackParser: malformed: no block at 0") << version;
    }
    for (const std::uint32_t size : {0U, 22U, 25U, kUnknown}) {
        EXPECT_EQ(Refusal(Block().Bytes(kSound).replace(4, 4, Little(size))),
                  "WavPackParser: malformed: no block at 0")
            << size;
    }
    EXPECT_EQ(Value(Block().Bytes(kSound).replace(4, 4, Little(kUnknown - 1)), "sf"), "44100");
}

TEST(WavPackParser, SoManySubBlocksAreReadAndNoMore) {
    const auto rate = [](std::uint32_t aCount) {
        std::string subBlocks;
        for (std::uint32_t i = 1; i < aCount; ++i) {
            subBlocks += SubBlock(0x21, "");
        }
        return Values<WavPackParser>(File(Rate(15) | kLast, subBlocks + SubBlock(0x27, Little(40000, 3))),
                                     {"sf"});
    };
    EXPECT_EQ(rate(kWavPack_MaxSubBlocks), "40000");
    EXPECT_EQ(rate(kWavPack_MaxSubBlocks + 1),
              "WavPackParser: malformed: no sampling rate, or none that there is");
}

TEST(WavPackParser, UsualFileCostsStartAndEndAndACoverAReadMore) {
    const auto costs = [](const std::string& aFile) {
        AwkwardStream::Costs counted;
        EXPECT_NE(pictures::Parsed<WavPackParser>(aFile, {}, &counted), "null\n");
        return std::to_string(counted.mReads) + " " + std::to_string(counted.mBytes);
    };
    const std::string sound = Block().Bytes(SubBlock(0x0A, Sound(90000)));
    EXPECT_EQ(costs(sound + kTag), "2 24576");
    EXPECT_EQ(costs(sound + APE2(kCover + APEItem("Comment", std::string(100000, 'c')))), "3 28672");
    EXPECT_EQ(costs(Uncounted(8, 20000) + kTag), "3 90112");
}
