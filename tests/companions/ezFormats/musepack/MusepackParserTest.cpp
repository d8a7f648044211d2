#include "ezFormats/musepack/MusepackParser.h"

#include "companions/ezFormats/ChunkBytes.h"
#include "companions/ezFormats/FormatFiles.h"

#include "support/TailBytes.h"

#include <gtest/gtest.h>

using namespace chunks;
using namespace std::string_literals;

namespace {

// ---- version 8 ----

/// Seven bits a byte.
std::string Sevens(std::uint64_t aValue) {
    std::string bytes(1, static_cast<char>(aValue & 0x7F));
    while ((aValue >>= 7) != 0) {
        bytes.insert(0, 1, static_cast<char>((aValue & 0x7F) | 0x80));
    }
    return bytes;
}
/// Of less than 128 bytes.
std::string Packet(const std::string& aKey, const std::string& aContent) {
    return aKey + Sevens(aContent.size() + 3) + aContent;
}
/// The header of the stream, after its check sum.
std::string Header(std::uint64_t aSamples, std::uint64_t aSilence = 0, unsigned aRate = 0,
                   unsigned aChannels = 2, unsigned aVersion = 8) {
    return Packet("SH", Big(0xAFAF516F, 4) + Big(aVersion, 1) + Sevens(aSamples) + Sevens(aSilence) +
                            Big(aRate << 13 | 27U << 8 | (aChannels - 1) << 4 | 0xB, 2));
}
const std::string kGain = Packet("RG", Big(1, 1) + std::string(8, '\0'));
const std::string kEncoder = Packet("EI", Big(0xA0011E01, 4));
/// Where the sound begins, and a second of 64 kbit/s.
std::string Audio(std::size_t aSize = 8000) {
    return "AP" + Sevens(aSize + 4) + Sound(aSize);
}
std::string Eight(const std::string& aPackets) {
    return "MPCK" + aPackets;
}

// ---- version 7 ----

struct Seven {
    std::uint32_t mFrames = 39;
    unsigned mRate = 0;
    bool mfGapless = true;
    unsigned mLast = 324; ///< samples of the last frame
    std::string mMagic = "MP+\7";
    std::size_t mThere = 8000;

    std::string Bytes() const {
        return mMagic + Little(mFrames) + Little(0x5C000000 | mRate << 16 | 0x1234) + std::string(8, 'g') +
               Little((mfGapless ? 0x80000000U : 0U) | mLast << 20 | 0x80000) + Sound(mThere);
    }
};

std::string Length(const std::string& aBytes, const Delivery& aDelivery = Delivery()) {
    return Values<MusepackParser>(aBytes, {"dm", "md"}, aDelivery);
}
std::string Refusal(const std::string& aBytes) {
    return pictures::Refusal<MusepackParser>(aBytes);
}

const std::string kCover = APEItem("Cover Art (Front)", "c.jpg\0\xFF\xD8\xFF\xE0"s + std::string(16, 'j'), 2);
const std::string kTag = APE2(APEItem("Title", "Song") + APEItem("Artist", "One\0Two"s) + kCover);

std::vector<std::string> UsualFiles() {
    Seven seven;
    seven.mFrames = 3;
    seven.mThere = 300;
    return {Eight(Header(4410) + kGain + kEncoder + Audio(100)) + kTag,
            Eight(kEncoder + Header(4410, 100) + Audio(100)), seven.Bytes() + kTag,
            TagWithCover() + seven.Bytes() + ID3v1("t", "a", "", 17)};
}

std::vector<std::string> CostlyFiles() {
    std::string chapters;
    for (int i = 0; i < 300; ++i) {
        chapters += "CT" + Sevens(16384 + 5) + Sound(16384);
    }
    std::string items;
    for (int i = 0; i < 50; ++i) {
        items += APEItem("Cover Art (Back)", "c.jpg\0\xFF\xD8\xFF\xE0"s + Sound(70000), 2);
    }
    return {Eight(chapters + Header(44100) + Audio()), Eight(Header(44100) + Audio()) + APE2(items),
            Seven().Bytes() + APE2(items) + ID3v1("t", "", "", 1)};
}

const FormatFiles kFiles("mpc", {16, 256U << 10}, {"ca", "sf", "ac"}, UsualFiles, CostlyFiles);

} // namespace

TEST(MusepackParser, RecordSaysWhatThePacketsAndTheTagSay) {
    EXPECT_EQ(pictures::Parsed<MusepackParser>(Eight(Header(44100) + kGain + kEncoder + Audio()) + kTag),
              "ac=2\n"
              "ar=4294967295\n"
              "as=\"One\\nTwo\"\n"
              "ca=\"MPC8\"\n"
              "cm=\"image/jpeg\"\n"
              "cn=\"item.audioItem\"\n"
              "cs=20\n"
              "dl=\"DLNA.ORG_OP=01\"\n"
              "dm=1000\n"
              "du=1\n"
              "ea=64184\n"
              "md=\"header\"\n"
              "mt=\"audio/x-musepack\"\n"
              "sf=44100\n"
              "ta=1\n"
              "title=\"Song\"\n"
              "creator=\"One, Two\"\n");
}

TEST(MusepackParser, RecordSaysWhatTheHeaderOfVersionSevenSays) {
    EXPECT_EQ(pictures::Parsed<MusepackParser>(Seven().Bytes() + kTag), "ac=2\n"
                                                                        "ar=4294967295\n"
                                                                        "as=\"One\\nTwo\"\n"
                                                                        "ca=\"MPC7\"\n"
                                                                        "cm=\"image/jpeg\"\n"
                                                                        "cn=\"item.audioItem\"\n"
                                                                        "cs=20\n"
                                                                        "dl=\"DLNA.ORG_OP=01\"\n"
                                                                        "dm=1000\n"
                                                                        "du=1\n"
                                                                        "ea=64000\n"
                                                                        "md=\"header\"\n"
                                                                        "mt=\"audio/x-musepack\"\n"
                                                                        "sf=44100\n"
                                                                        "ta=1\n"
                                                                        "title=\"Song\"\n"
                                                                        "creator=\"One, Two\"\n");
}

TEST(MusepackParser, SilenceBeforeTheSoundIsNotPlayed) {
    EXPECT_EQ(Length(Eight(Header(44100 + 481, 481) + Audio())), "1000|\"header\"");
    EXPECT_EQ(Length(Eight(Header(44100, 44100) + Audio())), "1000|\"header\"") << "all of it: not believed";
    EXPECT_EQ(Length(Eight(Header(44100, UINT32_MAX) + Audio())), "1000|\"header\"");
    EXPECT_EQ(Length(Eight(Header(0) + Audio())), "|") << "a writer that did not know";
}

TEST(MusepackParser, CountForWhichThereIsTooLittleSoundTellsNothing) {
    EXPECT_EQ(Length(Eight(Header(44100 * 640) + Audio())), "640000|\"header\"");
    EXPECT_EQ(Length(Eight(Header(44100 * 650) + Audio())), "|");
    EXPECT_EQ(Length(Eight(Header((std::uint64_t{1} << 62) - 1) + Audio())), "|");
    Seven seven;
    seven.mFrames = UINT32_MAX;
    EXPECT_EQ(Length(seven.Bytes()), "|");
    Delivery unknown;
    unknown.mfSizeKnown = false;
    EXPECT_EQ(Length(Eight(Header(44100) + Audio()), unknown), "1000|\"header\"");
    EXPECT_EQ(Length(Seven().Bytes(), unknown), "1000|\"header\"");
}

TEST(MusepackParser, PacketsStandInAnyOrderBeforeTheSound) {
    const std::string other = "XY" + Sevens(200 + 4) + Sound(200);
    for (const std::string& packets : {Header(44100) + other + kGain, other + Header(44100) + kEncoder,
                                       kGain + kEncoder + other + Header(44100)}) {
        EXPECT_EQ(Length(Eight(packets + Audio())), "1000|\"header\"");
    }
    const char* const cut = "MusepackParser: malformed: ends before the end of the header";
    EXPECT_EQ(Refusal(Eight(kGain + Audio() + Header(44100))), cut) << "after the sound";
    EXPECT_EQ(Refusal(Eight(kGain + Packet("SE", "") + Header(44100))), cut) << "after the end";
    EXPECT_EQ(Refusal(Eight("RG" + Sevens(2) + Header(44100))), cut) << "less than its own head";
    EXPECT_EQ(Refusal(Eight("RG" + Sevens(0) + Header(44100))), cut);
    EXPECT_EQ(Refusal(Eight("RG" + Sevens(1 << 20) + Header(44100))), cut) << "beyond the end";
    EXPECT_EQ(Refusal(Eight("RG" + std::string(20, '\xFF') + Header(44100))), cut) << "a size without an end";
    EXPECT_EQ(Refusal(Eight(Header(44100)).substr(0, 17)), cut);
    EXPECT_EQ(Refusal(Eight(Packet("SH", "short") + Audio())), cut);
}

TEST(MusepackParser, SoManyPacketsAreReadAndNoMore) {
    const auto file = [](std::uint32_t aCount) {
        std::string packets;
        for (std::uint32_t i = 0; i < aCount; ++i) {
            packets += Packet("CT", "");
        }
        return Eight(packets + Header(44100) + Audio());
    };
    EXPECT_EQ(Length(file(kMusepack_MaxPackets - 1)), "1000|\"header\"");
    EXPECT_EQ(Refusal(file(kMusepack_MaxPackets)),
              "MusepackParser: malformed: ends before the end of the header");
}

TEST(MusepackParser, RateAndChannelsAreCodes) {
    const std::vector<const char*> rates = {"44100", "48000", "37800", "32000"};
    for (unsigned code = 0; code < rates.size(); ++code) {
        EXPECT_EQ(Values<MusepackParser>(Eight(Header(9, 0, code) + Audio()), {"sf"}), rates[code]);
        Seven seven;
        seven.mRate = code;
        EXPECT_EQ(Values<MusepackParser>(seven.Bytes(), {"sf", "ac"}), rates[code] + "|2"s);
    }
    for (unsigned code = 4; code < 8; ++code) {
        EXPECT_EQ(Refusal(Eight(Header(9, 0, code) + Audio())),
                  "MusepackParser: malformed: sampling rate of number " + std::to_string(code));
    }
    for (const unsigned channels : {1U, 2U, 8U, 16U}) {
        EXPECT_EQ(Values<MusepackParser>(Eight(Header(9, 0, 0, channels) + Audio()), {"ac"}),
                  std::to_string(channels));
    }
}

TEST(MusepackParser, LengthOfVersionSevenIsThatOfItsFramesUpToTheLastSample) {
    struct Row {
        std::uint32_t mFrames;
        bool mfGapless;
        unsigned mLast;
        const char* mLength;
    };
    constexpr Row kRows[] = {{39, true, 324, "1000|\"header\""},
                             {39, true, 1152, "1018|\"header\""},
                             {39, true, 0, "1018|\"header\""},    // not one that a last frame can have
                             {39, true, 2047, "1018|\"header\""}, // neither
                             {39, false, 324, "1005|\"header\""},
                             {1, true, 1, "|"}, // a sample of 8000 bytes
                             {0, true, 324, "|"},
                             {0, false, 0, "|"}};
    for (const Row& row : kRows) {
        Seven seven;
        seven.mFrames = row.mFrames;
        seven.mfGapless = row.mfGapless;
        seven.mLast = row.mLast;
        EXPECT_EQ(Length(seven.Bytes()), row.mLength) << row.mFrames << " " << row.mLast;
    }
}

TEST(MusepackParser, TagsStandAroundTheSound) {
    const auto texts = [](const std::string& aBytes) {
        return Values<MusepackParser>(aBytes, {"title", "creator", "cs", "ea"});
    };
    const std::string seven = Seven().Bytes();
    EXPECT_EQ(texts(seven + kTag), "\"Song\"|\"One, Two\"|20|64000");
    EXPECT_EQ(texts(TagWithCover() + seven + kTag), "\"Tagged\"|\"Tagger\"|20|64000");
    EXPECT_EQ(texts(TagWithCover() + Eight(Header(44100) + Audio())), "\"Tagged\"|\"Tagger\"|20|64032");
    EXPECT_EQ(texts(seven + ID3v1("Last", "Least", "", 1)), "\"Last\"|\"Least\"||64000");
}

TEST(MusepackParser, WhatIsNotOneIsRefused) {
    EXPECT_EQ(Refusal("MPCL" + Header(9)), "MusepackParser: malformed: begins with 4D50434C");
    Seven other;
    for (const unsigned version : {0U, 6U, 8U, 15U}) {
        other.mMagic = "MP+" + Big(0x10 | version, 1);
        EXPECT_EQ(Refusal(other.Bytes()),
                  "MusepackParser: unsupported: stream version " + std::to_string(version));
    }
    other.mMagic = "MP+\x17";
    EXPECT_EQ(Length(other.Bytes()), "1000|\"header\"") << "7.1";
    EXPECT_EQ(Refusal(Eight(Header(9, 0, 0, 2, 9) + Audio())),
              "MusepackParser: unsupported: stream version 9");
    EXPECT_EQ(Refusal(Seven().Bytes().substr(0, 23)),
              "MusepackParser: malformed: ends before the end of the header");
    EXPECT_EQ(Length(Seven().Bytes().substr(0, 24)), "|");
}

TEST(MusepackParser, FileOfGigabytesCostsNoMoreThanASmallOne) {
    for (const std::uint64_t sound : {std::uint64_t{40000}, std::uint64_t{3} << 30}) {
        const std::string head = Eight(Header(sound) + kGain + "AP" + Sevens(sound));
        SparseStream stream(head.size() + sound + kTag.size(), {{0, head}, {head.size() + sound, kTag}});
        EXPECT_EQ(SparseValue<MusepackParser>(stream, "title"), "\"Song\"");
        EXPECT_EQ(stream.mReads, 2U);
        EXPECT_LE(stream.mBytes, 16384U);
    }
}
