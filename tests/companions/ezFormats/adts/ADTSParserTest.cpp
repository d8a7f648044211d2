#include "companions/ezFormats/FormatFiles.h"
#include "companions/ezFormats/PictureBytes.h"
#include "companions/ezFormats/adts/ADTSBytes.h"

#include "ezFormats/adts/ADTSParser.h"

#include "support/Id3Bytes.h"
#include "support/TailBytes.h"

#include <gtest/gtest.h>

// AAC in ADTS frames.

namespace {

using namespace adts;
using namespace std::string_literals;

std::string Parsed(const std::string& aBytes) {
    return pictures::Parsed<ADTSParser>(aBytes);
}
std::string Value(const std::string& aBytes, const char* aKey) {
    return pictures::ValueOf(Parsed(aBytes), aKey);
}

std::vector<std::string> UsualFiles() {
    return {Frames(40, 100), Varying(30, 60, kMPEG2),
            ID3(3, 0, Frame23("TPE1", "\0A"s)) + Varying(20, 50, kLC24Mono) + ID3v1("t", "", "", 17)};
}

std::vector<std::string> CostlyFiles() {
    std::string syncs;
    for (unsigned i = 0; i < 30000; ++i) {
        syncs += "\xFF\xF1\x50\x80\x01\x1F\xFC"; // each its own size
    }
    std::string silence = Frames(40000, 17);
    return {syncs, "x" + syncs, silence + Varying(4000, 300),
            silence + "gap" + silence + Varying(3000, 300) + silence,
            ID3(3, 0, Frame23("PRIV", std::string(70000, 'p'))) + Varying(5000, 250) +
                APE2(APEItem("Cover", std::string(9000, 'c')))};
}

const FormatFiles kFiles("adts", {32, 512U << 10}, {"ca", "ar", "sf", "ta"}, UsualFiles, CostlyFiles);

} // namespace

TEST(ADTSParser, RecordSaysWhatTheHeadersSay) {
    EXPECT_EQ(
        Parsed(ID3(3, 0, Frame23("TIT2", "\0Title"s)) + Frames(100, 371)),
        "ac=2\nar=127821\nca=\"AAC\"\ncn=\"item.audioItem\"\n"
        "dl=\"DLNA.ORG_PN=AAC_ADTS_320;DLNA.ORG_OP=01;DLNA.ORG_FLAGS=01500000000000000000000000000000\"\n"
        "dm=2321\ndu=2\nmd=\"constant rate\"\nmt=\"audio/vnd.dlna.adts\"\nsf=44100\nta=1\n"
        "title=\"Title\"\n");
    // Without a profile, the usual type.
    EXPECT_EQ(Value(Frames(100, 371, kLC24Mono), "mt"), "\"audio/aac\"");
}

TEST(ADTSParser, EveryKindOfHeaderIsRead) {
    struct Row {
        std::uint32_t mFixed;
        const char* mFacts; ///< codec, sampling rate, channels
    };
    constexpr Row kRows[] = {
        {kLC44Stereo, "\"AAC\" 44100 2"},
        {kMPEG2, "\"AAC\" 44100 2"},
        {kWithCRC, "\"AAC\" 44100 2"},
        {kLC24Mono, "\"AAC\" 24000 1"},      // of the core: nothing says that it may play at 48 kHz
        {0xFFF1108, "\"AAC-Main\" 44100 2"}, // profile 0
        {0xFFF1908, "\"AAC-SSR\" 44100 2"},
        {0xFFF1D08, "\"AAC-LTP\" 44100 2"},
        {0xFFF14D8, "\"AAC\" 48000 6"},
        {0xFFF14DC, "\"AAC\" 48000 8"}, // channel configuration 7
        {0xFFF14C0, "\"AAC\" 48000 "},  // told within the frames
    };
    for (const Row& row : kRows) {
        const std::string record = Parsed(Frames(20, 300, row.mFixed));
        EXPECT_EQ(pictures::ValueOf(record, "ca") + " " + pictures::ValueOf(record, "sf") + " " +
                      pictures::ValueOf(record, "ac"),
                  row.mFacts)
            << std::hex << row.mFixed;
    }
}

TEST(ADTSParser, FrameOfSeveralBlocksIsAsLong) {
    std::string frames;
    for (unsigned i = 0; i < 40; ++i) {
        frames += Frame(300 + i % 3, kLC44Stereo, 1 + i % 4);
    }
    EXPECT_EQ(Value(frames, "dm"), "2321"); // 100 blocks of 1024 samples
}

TEST(ADTSParser, SilenceAtTheStartIsNoMeasureOfTheRest) {
    // 17 bytes a frame: the start alone would make it twenty times too long.
    const std::string record = Parsed(Frames(800, 17) + Varying(6000, 250));
    EXPECT_EQ(pictures::ValueOf(record, "md"), "\"estimate: size and mean rate of places\"");
    const int length = std::stoi(pictures::ValueOf(record, "dm"));
    constexpr int kTrue = 6800 * 10240 / 441;
    EXPECT_GE(length, kTrue);
    EXPECT_LE(length, kTrue + kTrue / 10);
    EXPECT_GE(std::stoi(pictures::ValueOf(record, "db")), length - kTrue);
}

TEST(ADTSParser, ShortFileIsOneWhereItsFramesReachItsEnd) {
    EXPECT_EQ(Value(Frames(3, 292), "dm"), "69");
    EXPECT_EQ(Value(Frames(1, 292), "dm"), "23");
    EXPECT_EQ(Value(Frames(2, 292) + Frame(400).substr(0, 90), "dm"), "69"); // the last is cut
    EXPECT_EQ(Value(Frames(3, 292) + ID3v1("t", "", "", 0), "dm"), "69");
    EXPECT_EQ(Value(Frames(3, 292) + APE2(APEItem("Title", "T")), "title"), "\"T\"");
    const auto refusal = pictures::Refusal<ADTSParser>;
    EXPECT_EQ(refusal(Frames(3, 292) + "more", {}),
              "ADTSParser: malformed: 3 frames from 0 to 876, and none after them");
    EXPECT_EQ(refusal(Frame(292).substr(0, 291), {}),
              "ADTSParser: malformed: 1 frames from 0 to 292, and none after them");
}

TEST(ADTSParser, FramesAreSearchedForWhereNothingElseBegins) {
    EXPECT_EQ(Value("junk of a cut frame" + Frames(8, 300), "sf"), "44100");
    const auto refusal = pictures::Refusal<ADTSParser>;
    EXPECT_EQ(refusal("junk of a cut frame" + Frames(7, 300), {}),
              "ADTSParser: malformed: no frames within 65536 bytes of 0");
    EXPECT_EQ(refusal("fLaC and more of it" + Frames(50, 300), {}), "ADTSParser: unsupported: FLAC at 0");
    EXPECT_EQ(refusal("    ftypM4A mdat" + Frames(50, 300), {}), "ADTSParser: unsupported: ISO media at 0");
    // Packets of a transport stream, each of which holds frames whole.
    std::string packets;
    for (unsigned i = 0; i < 40; ++i) {
        packets += "G123" + Frames(4, 46);
    }
    EXPECT_EQ(refusal(packets, {}), "ADTSParser: unsupported: transport stream at 0");
    EXPECT_EQ(refusal("x" + packets, {}), "ADTSParser: malformed: no frames within 65536 bytes of 0");
}

TEST(ADTSParser, TagBeforeTheFramesIsSteppedOver) {
    const std::string tag = ID3(3, 0, Frame23("TPE1", "\0A"s) + Frame23("PRIV", std::string(20000, 'p')));
    EXPECT_EQ(Value(tag + Frames(100, 371), "dm"), "2321");
    EXPECT_EQ(Value(tag + std::string(100, '\0') + Frames(100, 371), "dm"), "2321");
    EXPECT_EQ(Value(tag + tag + Frames(100, 371), "creator"), "\"A\"");
}

TEST(ADTSParser, UnknownSizeTellsNoLength) {
    Delivery pipe;
    pipe.mfSizeKnown = false;
    const std::string record = pictures::Parsed<ADTSParser>(Frames(1000, 371), pipe);
    EXPECT_EQ(pictures::ValueOf(record, "dm"), "");
    EXPECT_EQ(pictures::ValueOf(record, "ar"), "4294967295"); // one size at the start may be silence
    EXPECT_EQ(pictures::ValueOf(record, "ea"), "127821");
}
