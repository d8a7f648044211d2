#include "companions/ezFormats/FormatFiles.h"
#include "companions/ezFormats/PictureBytes.h"

#include "ezFormats/amr/AMRParser.h"
#include "ezFormats/codecs/AMRFrames.h"

#include "support/NumberBytes.h"

#include <gtest/gtest.h>

// AMR and AMR-WB files.

namespace {

const std::string kNarrow = "#!AMR\n";
const std::string kWide = "#!AMR-WB\n";

/// A frame of a type in a narrow or wide file; one byte where the type has no size.
std::string Frame(unsigned aType, bool afWide = false) {
    std::string frame(std::max(1U, AMRFrames_SizeOf(aType, afWide)), '\x55');
    frame[0] = static_cast<char>(aType << 3 | 4);
    return frame;
}
std::string Times(unsigned aCount, const std::string& aBytes) {
    std::string all;
    for (unsigned i = 0; i < aCount; ++i) {
        all += aBytes;
    }
    return all;
}

std::string Parsed(const std::string& aBytes) {
    return pictures::Parsed<AMRParser>(aBytes);
}
/// "type codec rate channels bit-rate milliseconds method".
std::string Facts(const std::string& aBytes) {
    const std::string record = Parsed(aBytes);
    std::string facts;
    for (const char* const key : {"mt", "ca", "sf", "ac", "ar", "dm", "md"}) {
        facts += pictures::ValueOf(record, key) + " ";
    }
    return facts;
}

std::vector<std::string> UsualFiles() {
    return {kNarrow + Times(20, Frame(7)), kWide + Times(10, Frame(2, true) + Frame(9, true)),
            "#!AMR_MC1.0\n" + Big(2, 4) + Times(20, Frame(0))};
}

std::vector<std::string> CostlyFiles() {
    const std::string talk = Times(9, Frame(7)) + Times(11, Frame(15)) + Frame(8);
    return {kNarrow + Times(3000, talk), kNarrow + Times(1000, talk) + std::string(300000, '\xFF'),
            kWide + Times(20000, Frame(8, true))};
}

const FormatFiles kFiles("amr", {32, 512U << 10}, {"ca", "ac", "sf", "ar", "ta"}, UsualFiles, CostlyFiles);

} // namespace

TEST(AMRFrames, SizeOfAFrameFollowsFromItsType) {
    constexpr std::uint32_t kSizes[][2] = {{13, 18}, {14, 24}, {16, 33}, {18, 37}, {20, 41}, {21, 47},
                                           {27, 51}, {32, 59}, {6, 61},  {0, 6},   {0, 0},   {0, 0},
                                           {0, 0},   {0, 0},   {0, 1},   {1, 1}};
    for (unsigned type = 0; type < 16; ++type) {
        EXPECT_EQ(AMRFrames_SizeOf(type, false), kSizes[type][0]) << type;
        EXPECT_EQ(AMRFrames_SizeOf(type, true), kSizes[type][1]) << type;
    }
}

TEST(AMRParser, RecordSaysWhatTheFramesSay) {
    EXPECT_EQ(Parsed(kNarrow + Times(200, Frame(7))),
              "ac=1\nar=12200\nca=\"AMR\"\ncn=\"item.audioItem\"\ndl=\"DLNA.ORG_OP=01\"\ndm=4000\ndu=4\n"
              "md=\"counted\"\nmt=\"audio/amr\"\nsf=8000\nta=1\n");
    EXPECT_EQ(Facts(kWide + Times(200, Frame(2, true))),
              "\"audio/amr-wb\" \"AMR-WB\" 16000 1 12650 4000 \"counted\" ");
}

TEST(AMRParser, LengthIsThatOfAllFramesWhateverTheirType) {
    EXPECT_EQ(Facts(kNarrow + Times(5000, Frame(7))),
              "\"audio/amr\" \"AMR\" 8000 1 12200 100000 \"constant rate\" ");
    // Comfort noise, and frames without data.
    EXPECT_EQ(Facts(kNarrow + Times(100, Times(5, Frame(7)) + Frame(8) + Times(4, Frame(15)))),
              "\"audio/amr\" \"AMR\" 8000 1 4294967295 20000 \"counted\" ");
    const std::string record =
        Parsed(kNarrow + Times(2000, Times(5, Frame(7)) + Frame(8) + Times(4, Frame(15)) + Frame(5)));
    EXPECT_EQ(pictures::ValueOf(record, "md"), "\"estimate: size and mean rate of places\"");
    const int length = std::stoi(pictures::ValueOf(record, "dm"));
    EXPECT_GE(length, 440000);
    EXPECT_LE(length, 450000);
}

TEST(AMRParser, BlockHoldsAFrameOfEachChannel) {
    EXPECT_EQ(Facts("#!AMR_MC1.0\n" + Big(2, 4) + Times(400, Frame(7))),
              "\"audio/amr\" \"AMR\" 8000 2 24400 4000 \"counted\" ");
    EXPECT_EQ(Facts("#!AMR-WB_MC1.0\n" + Big(6, 4) + Times(600, Frame(0, true))),
              "\"audio/amr-wb\" \"AMR-WB\" 16000 6 39600 2000 \"counted\" ");
}

TEST(AMRParser, WhatIsNotOneIsRefused) {
    const auto refusal = pictures::Refusal<AMRParser>;
    EXPECT_EQ(refusal("#!AMR", {}), "AMRParser: malformed: does not begin with a magic number");
    EXPECT_EQ(refusal("#!AMR-NB\n" + Times(9, Frame(7)), {}),
              "AMRParser: malformed: does not begin with a magic number");
    EXPECT_EQ(refusal(kNarrow, {}), "AMRParser: malformed: ends before the frames");
    EXPECT_EQ(refusal(kNarrow + Times(9, Frame(9)), {}), "AMRParser: malformed: no frames at 6");
    EXPECT_EQ(refusal(kNarrow + Times(9, "\x81"), {}), "AMRParser: malformed: no frames at 6");
    EXPECT_EQ(refusal("#!AMR_MC1.0\n" + Big(0, 4) + Times(9, Frame(7)), {}),
              "AMRParser: malformed: 0 channels");
    EXPECT_EQ(refusal("#!AMR_MC1.0\n" + Big(7, 4) + Times(9, Frame(7)), {}),
              "AMRParser: malformed: 7 channels");
    EXPECT_EQ(refusal("#!AMR_MC1.0\n\0\0", {}), "AMRParser: malformed: ends before the channel description");
}
