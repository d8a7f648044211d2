#include "companions/ezFormats/FormatFiles.h"
#include "companions/ezFormats/PictureBytes.h"
#include "companions/ezFormats/codecs/DTSBytes.h"

#include "ezFormats/dts/DTSLimits.h"
#include "ezFormats/dts/DTSParser.h"

#include "support/Id3Bytes.h"
#include "support/TailBytes.h"

#include <gtest/gtest.h>

// DTS and DTS-HD.

namespace {

using dts::Core;
using dts::Extension;
using namespace std::string_literals;

std::string Facts(const std::string& aBytes, const Delivery& aDelivery = {}) {
    std::string facts;
    const std::string record = pictures::Parsed<DTSParser>(aBytes, aDelivery);
    for (const char* key : {"mt", "ca", "ac", "sf", "bs", "ar", "dm", "md"}) {
        facts += (facts.empty() ? "" : "|") + pictures::ValueOf(record, key);
    }
    return facts;
}

std::string Times(unsigned aCount, const std::string& aFrame) {
    std::string frames;
    for (unsigned i = 0; i < aCount; ++i) {
        frames += aFrame;
    }
    return frames;
}

/// Frames with an extension of a size of its own each, which have a core or none.
std::string Varying(unsigned aCount, const std::string& aCore, Extension anExtension = {}) {
    std::string frames;
    for (unsigned i = 0; i < aCount; ++i) {
        anExtension.mSize = 200 + i * 7 % 11 * 40;
        frames += aCore + anExtension.Bytes();
    }
    return frames;
}

Extension MasterAudio() {
    Extension extension;
    extension.mRate = 13;
    extension.mChannels = 8;
    return extension;
}

Extension Express() {
    Extension extension;
    extension.mMode = 2;
    extension.mFrames = 8;
    extension.mClock = 2;
    extension.mChannels = 2;
    return extension;
}

std::string Chunk(const std::string& anID, const std::string& aContent) {
    return anID + Big(aContent.size(), 8) + aContent;
}

/// What a head tells of the sound: frames, samples of each, rate.
std::string Audio(std::uint32_t aFrames, unsigned aSamples, std::uint32_t aRate = 48000) {
    return Chunk("AUPR-HDR", Big(8, 3) + Big(aRate, 3) + Big(aFrames, 4) + Big(aSamples, 2) + Big(0, 12));
}

const std::string kHead = Chunk("DTSHDHDR", Big(0, 16));

std::vector<std::string> UsualFiles() {
    Core core;
    core.mSize = 96;
    Extension extension = Express();
    extension.mSize = 120;
    const std::string both = core.Bytes() + extension.Bytes();
    return {Times(5, core.Bytes()), dts::Swapped(Times(5, both)), Times(5, dts::Words14(core.Bytes())),
            kHead + Audio(5, 4096) + Chunk("STRMDATA", Times(5, extension.Bytes()))};
}

std::vector<std::string> CostlyFiles() {
    std::string syncs;
    for (unsigned i = 0; i < 9000; ++i) {
        Core core;
        core.mSize = 96 + i;
        syncs += core.Header();
    }
    const std::string tag = ID3(3, 0, Frame23("PRIV", std::string(70000, 'p')));
    return {syncs, "x" + syncs, Times(500, Core().Bytes()) + Varying(700, Core().Bytes()),
            tag + Varying(900, Core().Bytes(), MasterAudio()) + ID3v1("t", "", "", 0),
            kHead + Times(40, Chunk("NAVI-TBL", std::string(9000, 'n'))) + Chunk("STRMDATA", syncs)};
}

const FormatFiles kFiles("dts", {32, 512U << 10}, {"ca", "ar", "sf", "ta"}, UsualFiles, CostlyFiles);

} // namespace

TEST(DTSParser, RecordSaysWhatTheFirstFrameSays) {
    EXPECT_EQ(
        pictures::Parsed<DTSParser>(ID3(3, 0, Frame23("TIT2", "\0Title"s)) + Times(100, Core().Bytes())),
        "ac=6\nar=768000\nca=\"DTS\"\ncn=\"item.audioItem\"\ndl=\"DLNA.ORG_OP=01\"\ndm=1066\ndu=1\n"
        "md=\"constant rate\"\nmt=\"audio/vnd.dts\"\nsf=48000\nta=1\ntitle=\"Title\"\n");
}

TEST(DTSParser, AllFormsAreRead) {
    const std::string frame = Core().Bytes();
    const std::string stream = Times(20, frame);
    const std::string facts = "\"audio/vnd.dts\"|\"DTS\"|6|48000|";
    EXPECT_EQ(Facts(stream), facts + "|768000|213|\"constant rate\"");
    EXPECT_EQ(Facts(dts::Swapped(stream)), facts + "|768000|213|\"constant rate\"");
    // In words of 14 bits it takes more bytes for the same time.
    const std::string words = Times(20, dts::Words14(frame));
    EXPECT_EQ(Facts(words), facts + "|879000|213|\"constant rate\"");
    EXPECT_EQ(Facts(dts::Swapped(words)), facts + "|879000|213|\"constant rate\"");
}

TEST(DTSParser, ExtensionsTellTheCodecAndWhatIsHeard) {
    const std::string core = Core().Bytes();
    Extension resolution;
    resolution.mMask = 0x020;
    EXPECT_EQ(Facts(Varying(20, core, resolution)),
              "\"audio/vnd.dts.hd\"|\"DTS-HD-HRA\"|6|48000||4294967295|213|\"counted\"");
    EXPECT_EQ(Facts(Varying(20, core, MasterAudio())),
              "\"audio/vnd.dts.hd\"|\"DTS-HD-MA\"|8|96000|24|4294967295|213|\"counted\"");
    EXPECT_EQ(Facts(dts::Swapped(Varying(20, core, MasterAudio()))),
              "\"audio/vnd.dts.hd\"|\"DTS-HD-MA\"|8|96000|24|4294967295|213|\"counted\"");
    // Without a core, and of several substreams a frame.
    EXPECT_EQ(Facts(Varying(20, "", MasterAudio())),
              "\"audio/vnd.dts.hd\"|\"DTS-HD-MA\"|8|96000|24|4294967295|213|\"counted\"");
    Extension second;
    second.mIndex = 1;
    EXPECT_EQ(Facts(Times(10, Express().Bytes() + second.Bytes())),
              "\"audio/vnd.dts.hd\"|\"DTS-HD-LBR\"|2|48000||96000|853|\"counted\"");
    EXPECT_EQ(Facts(Times(10, core + MasterAudio().Bytes() + second.Bytes())),
              "\"audio/vnd.dts.hd\"|\"DTS-HD-MA\"|8|96000|24|1536000|106|\"constant rate\"");
    // An extension that tells neither leaves what the core says.
    Extension bare;
    bare.mfStatic = false;
    EXPECT_EQ(Facts(Times(10, core + bare.Bytes())),
              "\"audio/vnd.dts.hd\"|\"DTS-HD-MA\"|6|48000||1152000|106|\"counted\"");
}

TEST(DTSParser, FieldsThatAreTheSameNeedNotBeInEveryFrame) {
    Extension bare = Express();
    bare.mfStatic = false;
    EXPECT_EQ(Facts(Express().Bytes() + Times(9, bare.Bytes())),
              "\"audio/vnd.dts.hd\"|\"DTS-HD-LBR\"|2|48000||48000|853|\"counted\"");
    EXPECT_EQ(pictures::Refusal<DTSParser>(Times(10, bare.Bytes()), {}),
              "DTSParser: malformed: no frames within 65536 bytes of 0");
}

TEST(DTSParser, LengthOfAConstantRateIsToldByTheSize) {
    EXPECT_EQ(Facts(Times(3000, Core().Bytes())),
              "\"audio/vnd.dts\"|\"DTS\"|6|48000||768000|32000|\"constant rate\"");
    Delivery pipe;
    pipe.mfSizeKnown = false;
    EXPECT_EQ(Facts(Times(300, Core().Bytes()), pipe), "\"audio/vnd.dts\"|\"DTS\"|6|48000||4294967295||");
    // A rate that varies is estimated, and not shorter than it is.
    const std::string facts = Facts(Varying(1500, Core().Bytes(), MasterAudio()));
    EXPECT_EQ(facts.substr(0, facts.rfind('|', facts.rfind('|') - 1)),
              "\"audio/vnd.dts.hd\"|\"DTS-HD-MA\"|8|96000|24|4294967295");
    EXPECT_GE(std::stoi(facts.substr(facts.rfind('|', facts.rfind('|') - 1) + 1)), 16000);
    EXPECT_LE(std::stoi(facts.substr(facts.rfind('|', facts.rfind('|') - 1) + 1)), 16100);
}

TEST(DTSParser, HeadOfAFileTellsTheLength) {
    const std::string frames = Times(10, Express().Bytes());
    const std::string facts = "\"audio/vnd.dts.hd\"|\"DTS-HD-LBR\"|2|48000||48000|";
    EXPECT_EQ(Facts(kHead + Audio(12, 4096) + Chunk("STRMDATA", frames)), facts + "1024|\"header\"");
    EXPECT_EQ(Facts(kHead + Chunk("FILEINFO", "abc") + Audio(6, 4096, 24000) + Chunk("STRMDATA", frames) +
                    Chunk("BUILDVER", "1.0")),
              facts + "1024|\"header\"");
    EXPECT_EQ(Facts(kHead + Audio(12, 4096) + "STRMDATA" + Big(UINT64_MAX, 8) + frames),
              facts + "1024|\"header\"");
    // One that cannot be, and none: the frames tell.
    for (const std::string& audio : {Audio(0, 4096), Audio(12, 0), Audio(12, 4096, 0),
                                     Audio(UINT32_MAX, 65535), Chunk("AUPR-HDR", Big(8, 8)), ""s}) {
        EXPECT_EQ(Facts(kHead + audio + Chunk("STRMDATA", frames)), facts + "853|\"counted\"");
    }
    // A core in such a file is DTS all the same.
    EXPECT_EQ(Facts(kHead + Chunk("STRMDATA", Times(10, Core().Bytes()))),
              "\"audio/vnd.dts.hd\"|\"DTS\"|6|48000||768000|106|\"counted\"");
}

TEST(DTSParser, HeadWithoutAStreamIsRefused) {
    const auto refusal = pictures::Refusal<DTSParser>;
    EXPECT_EQ(refusal(kHead, {}), "DTSParser: malformed: ends before the stream");
    EXPECT_EQ(refusal(kHead + "AUPR-HDR" + Big(UINT64_MAX, 8), {}),
              "DTSParser: malformed: ends before the stream");
    EXPECT_EQ(refusal(kHead + Chunk("STRMDATA", "no frames, whatever their number"), {}),
              "DTSParser: malformed: no frames at 48");
    EXPECT_EQ(refusal(kHead + Chunk("STRMDATA", ""), {}), "DTSParser: malformed: ends before the frames");
    const std::string stream = Chunk("STRMDATA", Times(5, Core().Bytes()));
    EXPECT_NE(Facts(kHead + Times(kDTS_MaxChunks - 2, Chunk("TIMECODE", "")) + stream), Facts(""));
    EXPECT_EQ(refusal(kHead + Times(kDTS_MaxChunks - 1, Chunk("TIMECODE", "")) + stream, {}),
              "DTSParser: limit: more than 64 chunks before the stream");
}

TEST(DTSParser, WhatIsNotDTSIsRefused) {
    const auto refusal = pictures::Refusal<DTSParser>;
    EXPECT_EQ(refusal("fLaC" + Times(10, Core().Bytes()), {}), "DTSParser: unsupported: FLAC at 0");
    EXPECT_EQ(refusal(Core().Bytes() + std::string(5000, 'x'), {}),
              "DTSParser: malformed: 1 frames from 0 to 1024, and none after them");
    // Four frames in a row are searched for.
    EXPECT_EQ(Facts("cut" + Times(4, Core().Bytes())).substr(0, 21), "\"audio/vnd.dts\"|\"DTS\"");
    EXPECT_EQ(refusal("cut" + Times(3, Core().Bytes()), {}),
              "DTSParser: malformed: no frames within 65536 bytes of 0");
}
