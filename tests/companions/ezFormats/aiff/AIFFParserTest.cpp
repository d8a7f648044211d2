#include "ezFormats/aiff/AIFFParser.h"

#include "companions/ezFormats/ChunkBytes.h"
#include "companions/ezFormats/FormatFiles.h"

#include "support/Samples.h"

#include <gtest/gtest.h>

using namespace chunks;
using namespace std::string_literals;

namespace {

/// Sampling rates as numbers of 80 bits.
const std::string k8000 = Big(0x400B, 2) + Big(0xFA00000000000000, 8);
const std::string kMacintosh = Big(0x400D, 2) + Big(0xADDD173AB9C7E49B, 8); // 22254.545 Hz, and some more

struct Common {
    unsigned mChannels = 1;
    std::uint32_t mFrames = 8000;
    unsigned mBits = 16;
    std::string mRate = k8000;
    std::string mCodec; ///< of AIFF-C, with its name

    std::string Chunk() const {
        return BigChunk("COMM", Big(mChannels, 2) + Big(mFrames, 4) + Big(mBits, 2) + mRate + mCodec);
    }
};

std::string Form(const std::string& aChunks, const std::string& aKind = "AIFF") {
    return "FORM" + Big(aChunks.size() + 4, 4) + aKind + aChunks;
}

/// The sound, after the place of its first sample and a size of blocks.
std::string Ssnd(std::size_t aSize) {
    return BigChunk("SSND", std::string(8, '\0') + Sound(aSize));
}
std::string LyingSsnd(std::uint64_t aSize, std::size_t aThere) {
    return "SSND" + Big(aSize, 4) + std::string(8, '\0') + Sound(aThere);
}

std::string Aiff(const std::string& aSsnd, const std::string& aAfter = "", const std::string& aBefore = "") {
    return Form(Common().Chunk() + aBefore + aSsnd + aAfter);
}
std::string Aifc(const std::string& aCodec, Common aCommon, std::size_t aSound) {
    aCommon.mCodec = aCodec + "\4name\0"s;
    return Form(BigChunk("FVER", Big(0xA2805140, 4)) + aCommon.Chunk() + Ssnd(aSound), "AIFC");
}

std::string Length(const std::string& aBytes, const Delivery& aDelivery = Delivery()) {
    return Values<AIFFParser>(aBytes, {"dm", "md"}, aDelivery);
}
std::string Texts(const std::string& aBytes) {
    return Values<AIFFParser>(aBytes, {"title", "creator"});
}
std::string Refusal(const std::string& aBytes) {
    return pictures::Refusal<AIFFParser>(aBytes);
}

std::vector<std::string> UsualFiles() {
    const std::string tags =
        BigChunk("NAME", "Title") + BigChunk("AUTH", "Artist") + BigChunk("ID3 ", TagWithCover());
    return {Aiff(Ssnd(16000), tags),
            Aiff(Ssnd(300), "", tags),
            Form(Common{1, 151, 16, k8000, ""}.Chunk() + Ssnd(303) + tags),
            Form(Ssnd(300) + Common().Chunk()),
            Form(Common{1, 0, 16, k8000, ""}.Chunk() + LyingSsnd(UINT32_MAX, 400)),
            Aifc("ima4", {2, 3, 16, k8000, ""}, 204),
            Aifc("fl32", {1, 100, 25, k8000, ""}, 400)};
}

std::vector<std::string> CostlyFiles() {
    std::string distant;
    std::string tags;
    for (int i = 0; i < 100; ++i) {
        distant += BigChunk("ANNO", std::string(std::size_t{16} << 10, 'x'));
        tags +=
            BigChunk("ID3 ", ID3(3, 0, Frame23("PRIV", Sound(9000)) + Frame23("APIC", Apic(0, Sound(9000)))));
    }
    return {Aiff(Ssnd(2), distant), Aiff(Ssnd(2), "", distant), Aiff("", tags), Form(distant)};
}

const FormatFiles kFiles("aiff", {32, 256U << 10}, {"ac"}, UsualFiles, CostlyFiles);

} // namespace

TEST(AIFFParser, RecordSaysWhatTheChunksSay) {
    EXPECT_EQ(pictures::Parsed<AIFFParser>(ReadSample("formats/cover.aiff")), "ac=1\n"
                                                                              "ar=8000\n"
                                                                              "br=128000\n"
                                                                              "bs=16\n"
                                                                              "ca=\"LPCM\"\n"
                                                                              "cm=\"image/jpeg\"\n"
                                                                              "cn=\"item.audioItem\"\n"
                                                                              "cs=1748\n"
                                                                              "da=\"2001\"\n"
                                                                              "dl=\"DLNA.ORG_OP=01\"\n"
                                                                              "dm=250\n"
                                                                              "du=0\n"
                                                                              "md=\"header\"\n"
                                                                              "mt=\"audio/x-aiff\"\n"
                                                                              "ta=1\n"
                                                                              "title=\"Six Bells\"\n"
                                                                              "creator=\"The Test Tones\"\n"
                                                                              "genre=\"Ambient\"\n"
                                                                              "album=\"Half a Second\"\n");
}

TEST(AIFFParser, LengthIsThatOfTheFramesIfThereIsSoMuchSound) {
    EXPECT_EQ(Length(Aiff(Ssnd(16000))), "1000|\"header\"");
    EXPECT_EQ(Length(Aiff(Ssnd(16000), BigChunk("APPL", Sound(900)))), "1000|\"header\"")
        << "what follows is no sound";
    EXPECT_EQ(Length(Aiff(Ssnd(17000))), "1000|\"header\"") << "more than was counted";
    EXPECT_EQ(Length(Aiff(Ssnd(8000))), "500|\"header\"") << "less";
    EXPECT_EQ(Length(Aiff(LyingSsnd(16008, 8000))), "500|\"constant rate\"") << "cut";
    EXPECT_EQ(Length(Aiff("")), "|") << "no sound";
    EXPECT_EQ(Length(Aiff(LyingSsnd(16008, 0))), "|") << "cut where it begins";
    // A place of the first sample that is not the start.
    EXPECT_EQ(Length(Aiff(BigChunk("SSND", Big(8000, 4) + Big(0, 4) + Sound(16000)))), "500|\"header\"");
    EXPECT_EQ(Length(Aiff(BigChunk("SSND", Big(UINT32_MAX, 4) + Big(0, 4) + Sound(16000)))),
              "1000|\"header\"");
}

TEST(AIFFParser, StreamedSoundIsMeasuredByTheFile) {
    const std::string common = Common{1, 0, 16, k8000, ""}.Chunk();
    EXPECT_EQ(Length(Form(common + Ssnd(16000))), "1000|\"header\"");
    for (const std::uint64_t size :
         {std::uint64_t{0}, std::uint64_t{16009}, std::uint64_t{0x80000000}, std::uint64_t{UINT32_MAX}}) {
        EXPECT_EQ(Length(Form(common + LyingSsnd(size, 16000))), "1000|\"constant rate\"") << size;
    }
    for (const std::uint64_t size : {1U, 7U, 8U}) {
        EXPECT_EQ(Length(Form(common + "SSND" + Big(size, 4) + std::string(size, '\0'))), "|") << size;
    }
    Delivery unknown;
    unknown.mfSizeKnown = false;
    EXPECT_EQ(Length(Form(common + LyingSsnd(UINT32_MAX, 16000)), unknown), "|");
    EXPECT_EQ(Length(Aiff(LyingSsnd(UINT32_MAX, 16000)), unknown), "1000|\"header\"");
    // Chunks may follow all the same.
    EXPECT_EQ(
        Values<AIFFParser>(Form("SSND" + Big(0, 4) + common + BigChunk("NAME", "Title")), {"ar", "title"}),
        "8000|\"Title\"");
}

TEST(AIFFParser, CodecOfAIFFCTellsHowTheSoundIsPacked) {
    struct Case {
        const char* mName;
        Common mCommon;
        std::size_t mSound;
        const char* mFacts; ///< codec, milliseconds, bits, rate
    };
    const std::vector<Case> cases = {
        {"NONE", {1, 8000, 16, k8000, ""}, 16000, "\"LPCM\"|1000|16|8000"},
        {"twos", {1, 8000, 16, k8000, ""}, 16000, "\"LPCM\"|1000|16|8000"},
        {"sowt", {2, 8000, 16, k8000, ""}, 32000, "\"LPCM\"|1000|16|8000"},
        {"in24", {1, 8000, 16, k8000, ""}, 24000, "\"LPCM\"|1000|24|8000"},
        {"NONE", {1, 8000, 12, k8000, ""}, 16000, "\"LPCM\"|1000|12|8000"},
        {"fl32", {1, 8000, 25, k8000, ""}, 32000, "\"PCM-float\"|1000|32|256000"},
        {"FL64", {1, 8000, 0, k8000, ""}, 64000, "\"PCM-float\"|1000|64|512000"},
        {"ulaw", {2, 8000, 16, k8000, ""}, 16000, "\"ulaw\"|1000||128000"},
        {"ALAW", {1, 8000, 16, k8000, ""}, 8000, "\"alaw\"|1000||64000"},
        {"ima4", {1, 125, 16, k8000, ""}, 4250, "\"ima4\"|1000||34000"},   // packets
        {"ima4", {1, 7990, 16, k8000, ""}, 4250, "\"ima4\"|998||34000"},   // samples
        {"ima4", {1, 16000, 16, k8000, ""}, 4250, "\"ima4\"|1000||34000"}, // neither
        {"MAC6", {1, 1000, 8, k8000, ""}, 1000, "\"MAC6\"|750||10666"},
        {"QDM2", {1, 8000, 16, k8000, ""}, 2000, "\"QDM2\"|1000||4294967295"},
        {"QDM2", {1, 8000, 16, k8000, ""}, 0, "\"QDM2\"|||4294967295"}};
    for (const Case& test : cases) {
        EXPECT_EQ(Values<AIFFParser>(Aifc(test.mName, test.mCommon, test.mSound), {"ca", "dm", "bs", "ar"}),
                  test.mFacts)
            << test.mName;
    }
}

TEST(AIFFParser, SamplingRateIsRounded) {
    const auto rate = [](const std::string& aRate) {
        return Values<AIFFParser>(Form(Common{1, 1, 16, aRate, ""}.Chunk() + Ssnd(2)), {"ar"});
    };
    const auto number = [](unsigned anExponent, std::uint64_t aMantissa) {
        return Big(anExponent, 2) + Big(aMantissa, 8);
    };
    EXPECT_EQ(rate(k8000), "8000");
    EXPECT_EQ(rate(kMacintosh), "22255");
    EXPECT_EQ(rate(number(0x400E, 0xAC44000000000000)), "44100");
    EXPECT_EQ(rate(number(0x4010, 0xBB80000000000000)), "192000");
    EXPECT_EQ(rate(number(0x3FFF, 0x8000000000000000)), "1");
    for (const std::string& wrong :
         {number(0x3FFE, UINT64_MAX), number(0x4016, UINT64_MAX), number(0x403F, 1ULL << 63),
          number(0xFFFF, UINT64_MAX), number(0x7FFF, UINT64_MAX), number(0, 0),
          number(0xC00B, 0xFA00000000000000), number(0x400B, 0)}) {
        EXPECT_EQ(rate(wrong), "AIFFParser: malformed: 1 channels at 0 Hz");
    }
}

TEST(AIFFParser, TextsAreThoseOfTheTagThenOfTheChunks) {
    const std::string chunks = BigChunk("NAME", "Named") + BigChunk("AUTH", "One") + BigChunk("AUTH", "Two") +
                               BigChunk("(c) ", "Nobody") + BigChunk("ANNO", "Noted");
    EXPECT_EQ(Texts(Aiff(Ssnd(2), chunks)), "\"Named\"|\"One, Two\"");
    EXPECT_EQ(Texts(Aiff(Ssnd(2), "", chunks)), "\"Named\"|\"One, Two\"");
    for (const char* const name : {"ID3 ", "id3 "}) {
        const std::string tag = BigChunk(name, ID3(3, 0, Frame23("TIT2", "\0Tagged"s)));
        EXPECT_EQ(Texts(Aiff(Ssnd(2), tag, chunks)), "\"Tagged\"|\"One, Two\"");
    }
    // The size of the chunk lies, and that of the tag tells.
    EXPECT_EQ(Texts(Aiff(Ssnd(2), "ID3 " + Big(0x9C080000, 4) + TagWithCover())), "\"Tagged\"|\"Tagger\"");
    EXPECT_EQ(Texts(Aiff(Ssnd(2), BigChunk("NAME", "Gr\xFC\xDF"))), "\"Gr\xC3\xBC\xC3\x9F\"|");
    // A name of odd length whose stuffing was forgotten.
    EXPECT_EQ(Texts(Aiff(Ssnd(2), "NAME" + Big(3, 4) + "Odd" + BigChunk("AUTH", "Me"))), "\"Odd\"|\"Me\"");
}

TEST(AIFFParser, WhatIsNotAnAIFFIsRefused) {
    EXPECT_EQ(Refusal("RIFF....WAVE"), "AIFFParser: malformed: begins with 52494646");
    EXPECT_EQ(Refusal(Form(Common().Chunk(), "ILBM")), "AIFFParser: unsupported: FORM of the kind \"ILBM\"");
    EXPECT_EQ(Refusal(Form(Common().Chunk(), "8SVX")), "AIFFParser: unsupported: FORM of the kind \"8SVX\"");
    EXPECT_EQ(Refusal("FORM"), "AIFFParser: unsupported: FORM of the kind \"\"");
    EXPECT_EQ(Refusal(Form(Ssnd(2))), "AIFFParser: malformed: ends before the description of the sound");
    EXPECT_EQ(Refusal(Form(BigChunk("COMM", "short") + Ssnd(2))),
              "AIFFParser: malformed: ends before the description of the sound");
    EXPECT_EQ(Refusal(Form(Common{0, 1, 16, k8000, ""}.Chunk())),
              "AIFFParser: malformed: 0 channels at 8000 Hz");
}

TEST(AIFFParser, FileOfGigabytesCostsNoMoreThanASmallOne) {
    for (const std::uint64_t sound : {std::uint64_t{20000}, std::uint64_t{0xFFFF0000}}) {
        const std::string head = Form(Common().Chunk() + "SSND" + Big(sound + 8, 4) + std::string(8, '\0'));
        const std::string tag = BigChunk("ID3 ", TagWithCover());
        SparseStream stream(head.size() + sound + tag.size(), {{0, head}, {head.size() + sound, tag}});
        EXPECT_EQ(SparseValue<AIFFParser>(stream, "title"), "\"Tagged\"");
        EXPECT_EQ(stream.mReads, 2U);
        EXPECT_LE(stream.mBytes, 16384U);
    }
}

TEST(AIFFParser, SoManyChunksAreReadAndNoMore) {
    const auto file = [](std::uint32_t aCount) {
        std::string chunks;
        for (std::uint32_t i = 0; i < aCount; ++i) {
            chunks += BigChunk("ANNO", "");
        }
        return Form(chunks + Common().Chunk() + Ssnd(16000));
    };
    EXPECT_EQ(Length(file(kAIFF_MaxChunks - 2)), "1000|\"header\"");
    EXPECT_EQ(Refusal(file(kAIFF_MaxChunks)),
              "AIFFParser: malformed: ends before the description of the sound");
}
