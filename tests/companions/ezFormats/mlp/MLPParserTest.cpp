#include "companions/ezFormats/FormatFiles.h"
#include "companions/ezFormats/PictureBytes.h"
#include "companions/ezFormats/codecs/MLPBytes.h"

#include "ezFormats/mlp/MLPParser.h"

#include "support/Id3Bytes.h"
#include "support/TailBytes.h"

#include <gtest/gtest.h>

// TrueHD and MLP.

namespace {

using namespace mlp;
using namespace std::string_literals;

const std::string kSixSync = Sync(kTrueHD, kSixAt48);
const std::string kTwoSync = Sync(kMLP, kTwoAt44);

/// A frame of AC-3 of 32 kbit/s at 48 kHz.
const std::string kAC3 = Big(0x0B77, 2) + Big(0, 2) + Big(0x004043, 3) + std::string(121, '\x33');

std::string Facts(const std::string& aBytes) {
    std::string facts;
    const std::string record = pictures::Parsed<MLPParser>(aBytes);
    for (const char* key : {"ca", "ac", "sf", "bs", "ar", "dm", "md"}) {
        facts += (facts.empty() ? "" : "|") + pictures::ValueOf(record, key);
    }
    return facts;
}

std::string Times(unsigned aCount, const std::string& aUnit) {
    std::string units;
    for (unsigned i = 0; i < aCount; ++i) {
        units += aUnit;
    }
    return units;
}

/// Units with a frame of AC-3 before each so-manieth.
std::string WithAC3(unsigned aCount, unsigned aEvery) {
    std::string stream;
    for (unsigned i = 0; i < aCount; ++i) {
        stream += (i % aEvery == 0 ? kAC3 : "") + Unit(i % 8 == 0 ? kSixSync : "", 100 + i % 7 * 6);
    }
    return stream;
}

std::vector<std::string> UsualFiles() {
    return {Units(9, 60, kSixSync), Units(9, 60, kTwoSync), WithAC3(6, 3)};
}

std::vector<std::string> CostlyFiles() {
    std::string syncs;
    for (unsigned i = 0; i < 3000; ++i) {
        syncs += Big(8190 / 2 - i % 500, 2) + Big(0, 2) + kSixSync + "\x20"s;
    }
    const std::string tag = ID3(3, 0, Frame23("PRIV", std::string(70000, 'p')));
    return {syncs, "x" + syncs, Units(9000, 60, kSixSync, 128, 40),
            tag + Units(200, 3000, kTwoSync, 8, 500) + ID3v1("t", "", "", 0), WithAC3(9000, 2)};
}

const FormatFiles kFiles("mlp", {32, 512U << 10}, {"ca", "ar", "sf", "ta"}, UsualFiles, CostlyFiles);

} // namespace

TEST(MLPParser, RecordSaysWhatTheSyncSays) {
    EXPECT_EQ(
        pictures::Parsed<MLPParser>(ID3(3, 0, Frame23("TIT2", "\0Title"s)) + Units(1200, 60, kSixSync)),
        "ac=6\nar=4294967295\nca=\"TrueHD\"\ncn=\"item.audioItem\"\ndl=\"DLNA.ORG_OP=01\"\ndm=1000\ndu=1\n"
        "ea=748512\nma=9597000\nmd=\"counted\"\nmt=\"audio/vnd.dolby.mlp\"\nsf=48000\nta=1\n"
        "title=\"Title\"\n");
}

TEST(MLPParser, BothSyncsAreRead) {
    EXPECT_EQ(Facts(Units(441, 60, kTwoSync)), "\"MLP\"|2|44100|24|4294967295|400|\"counted\"");
    EXPECT_EQ(Facts(Units(300, 60, Sync(kTrueHD, 0x20000001))),
              "\"TrueHD\"|2|192000||4294967295|250|\"counted\"");
    EXPECT_EQ(Facts(Units(600, 120, Sync(kTrueHD, 0x00078000 | 0x1FFF), 8, 0)),
              "\"TrueHD\"|20|48000||1152000|500|\"constant rate\"")
        << "of one size";
}

TEST(MLPParser, UnitsBetweenTwoSyncsAreKnownByTheirSum) {
    const std::string units = Units(300, 60, kSixSync, 100);
    EXPECT_EQ(Facts(units), "\"TrueHD\"|6|48000||4294967295|250|\"counted\"");
    std::string damaged = units;
    damaged[60 + 66 + 1] = static_cast<char>(damaged[60 + 66 + 1] ^ 1); // the size of the third
    EXPECT_EQ(pictures::Refusal<MLPParser>(damaged.substr(0, 5000), {}),
              "MLPParser: malformed: 2 frames from 0 to 126, and none after them");
    // Of a stream, all units have the substreams that its syncs tell.
    EXPECT_EQ(
        pictures::Refusal<MLPParser>(Unit(kSixSync, 60, 1) + Times(3, Unit("", 60, 2)), {}).substr(0, 30),
        "MLPParser: malformed: 1 frames");
}

TEST(MLPParser, FramesOfAC3BetweenTheUnitsTakeNoTime) {
    EXPECT_EQ(Facts(WithAC3(600, 38)), "\"TrueHD\"|6|48000||4294967295|500|\"counted\"");
    EXPECT_EQ(Facts(WithAC3(600, 38).substr(kAC3.size())), "\"TrueHD\"|6|48000||4294967295|500|\"counted\"");
    // AC-3 alone is another format.
    EXPECT_EQ(pictures::Refusal<MLPParser>(Times(20, kAC3), {}), "MLPParser: unsupported: AC-3 at 0");
}

TEST(MLPParser, LengthOfALongStreamIsNotTooShort) {
    const std::string record = pictures::Parsed<MLPParser>(Units(24000, 60, kSixSync, 16, 30));
    EXPECT_EQ(pictures::ValueOf(record, "md"), "\"estimate: size and mean rate of places\"");
    EXPECT_GE(std::stoi(pictures::ValueOf(record, "dm")), 20000);
    EXPECT_LE(std::stoi(pictures::ValueOf(record, "dm")), 20400);
}

TEST(MLPParser, LengthIsNotTooShortWhereUnitsWithASyncAreLarger) {
    // Every place begins with such a unit.
    std::string stream;
    for (unsigned i = 0; i < 24000; ++i) {
        stream += i % 16 == 0 ? Unit(kSixSync, 160) : Unit("", 60);
    }
    const std::string record = pictures::Parsed<MLPParser>(stream);
    EXPECT_EQ(pictures::ValueOf(record, "md"), "\"estimate: size and mean rate of places\"");
    EXPECT_GE(std::stoi(pictures::ValueOf(record, "dm")), 20000);
    EXPECT_LE(std::stoi(pictures::ValueOf(record, "dm")), 20020);
}
