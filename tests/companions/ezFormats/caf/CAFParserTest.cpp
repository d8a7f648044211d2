#include "ezFormats/caf/CAFParser.h"

#include "ezFormats/detail/Limits.h"

#include "companions/ezFormats/ChunkBytes.h"
#include "companions/ezFormats/FormatFiles.h"

#include "support/Samples.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>

using namespace chunks;
using namespace std::string_literals;

namespace {

std::string Chunk64(const std::string& aName, const std::string& aContent) {
    return aName + Big(aContent.size(), 8) + aContent;
}

std::string Float(double aNumber) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &aNumber, sizeof bits);
    return Big(bits, 8);
}

struct Desc {
    const char* mFormat = "lpcm";
    std::uint32_t mFlags = 0;
    std::uint32_t mPacketBytes = 2;
    std::uint32_t mPacketSamples = 1;
    std::uint32_t mChannels = 1;
    std::uint32_t mBits = 16;
    double mRate = 8000;

    std::string Bytes() const {
        return Float(mRate) + mFormat + Big(mFlags, 4) + Big(mPacketBytes, 4) + Big(mPacketSamples, 4) +
               Big(mChannels, 4) + Big(mBits, 4);
    }
};

std::string Caf(const std::string& aChunks, unsigned aVersion = 1) {
    return "caff" + Big(aVersion, 2) + Big(0, 2) + aChunks;
}

/// The sound, after a count of edits.
std::string Data(std::size_t aSize) {
    return Chunk64("data", Big(0, 4) + Sound(aSize));
}
std::string LyingData(std::uint64_t aSize, std::size_t aThere) {
    return "data" + Big(aSize, 8) + Big(0, 4) + Sound(aThere);
}

std::string Pakt(std::uint64_t aSamples) {
    return Chunk64("pakt", Big(2, 8) + Big(aSamples, 8) + Big(0, 8) + "table");
}

std::string Info(const std::vector<std::string>& aTexts, std::uint32_t aCount) {
    std::string texts = Big(aCount, 4);
    for (const std::string& text : aTexts) {
        texts += text + std::string(1, '\0');
    }
    return Chunk64("info", texts);
}

std::string Length(const std::string& aBytes, const Delivery& aDelivery = Delivery()) {
    return Values<CAFParser>(aBytes, {"dm", "md"}, aDelivery);
}
std::string Texts(const std::string& aInfo) {
    return Values<CAFParser>(Caf(Chunk64("desc", Desc().Bytes()) + aInfo),
                             {"title", "creator", "album", "genre", "da", "tn"});
}
std::string Refusal(const std::string& aBytes) {
    return pictures::Refusal<CAFParser>(aBytes);
}

const std::string kDesc = Chunk64("desc", Desc().Bytes());
const Desc kVarying = {"alac", 1, 0, 4096, 2, 0, 8000};

std::vector<std::string> UsualFiles() {
    const std::string info = Info({"title", "Title", "artist", "Artist"}, 2);
    const std::string varying = Chunk64("desc", kVarying.Bytes());
    return {Caf(kDesc + info + Data(300)), Caf(kDesc + Data(20000) + info),
            Caf(varying + Pakt(8000) + Data(9000)), Caf(varying + Data(9000) + Pakt(8000) + info),
            Caf(kDesc + info + LyingData(UINT64_MAX, 300))};
}

std::vector<std::string> CostlyFiles() {
    std::string distant;
    std::string infos;
    for (int i = 0; i < 100; ++i) {
        distant += Chunk64("free", std::string(std::size_t{16} << 10, 'x'));
        infos += Info({std::string(9000, 'k'), std::string(9000, 'v')}, UINT32_MAX);
    }
    return {Caf(kDesc + Data(2) + distant), Caf(kDesc + distant + Data(2)), Caf(kDesc + infos), Caf(distant)};
}

const FormatFiles kFiles("caf", {32, 256U << 10}, {"ac"}, UsualFiles, CostlyFiles);

} // namespace

TEST(CAFParser, RecordSaysWhatTheChunksSay) {
    EXPECT_EQ(pictures::Parsed<CAFParser>(ReadSample("formats/alac.caf")),
              "ac=1\n"
              "ar=4294967295\n"
              "bs=16\n"
              "ca=\"ALAC\"\n"
              "cn=\"item.audioItem\"\n"
              "dl=\"DLNA.ORG_OP=01\"\n"
              "dm=1536\n"
              "du=1\n"
              "ea=39057\n"
              "md=\"header\"\n"
              "mt=\"audio/x-caf\"\n"
              "sf=8000\n"
              "ta=1\n"
              "title=\"\303\226d\303\266n \342\200\223 \345\244\234\343\201\256\346\261\275\350\273\212\"\n"
              "creator=\"The Test Tones\"\n"
              "genre=\"Folk\"\n"
              "album=\"Half a Second\"\n");
}

TEST(CAFParser, PacketsOfOneSizeTellTheLength) {
    struct Case {
        Desc mDesc;
        const char* mFacts; ///< codec, milliseconds, bits, rate
    };
    const std::vector<Case> cases = {{{"lpcm", 0, 2, 1, 1, 16, 8000}, "\"LPCM\"|1062|16|8000"},
                                     {{"lpcm", 2, 6, 1, 2, 24, 8000}, "\"LPCM\"|354|24|8000"},
                                     {{"lpcm", 1, 4, 1, 1, 32, 8000}, "\"PCM-float\"|531|32|256000"},
                                     {{"lpcm", 3, 8, 1, 1, 64, 8000}, "\"PCM-float\"|265|64|512000"},
                                     {{"ulaw", 0, 1, 1, 1, 8, 8000}, "\"ulaw\"|2125||64000"},
                                     {{"alaw", 0, 2, 1, 2, 8, 8000}, "\"alaw\"|1062||128000"},
                                     {{"ima4", 0, 34, 64, 1, 0, 8000}, "\"ima4\"|4000||34000"},
                                     {{"ima4", 0, 68, 64, 2, 0, 8000}, "\"ima4\"|2000||68000"}};
    for (const Case& test : cases) {
        EXPECT_EQ(Values<CAFParser>(Caf(Chunk64("desc", test.mDesc.Bytes()) + Data(17000) + Pakt(99)),
                                    {"ca", "dm", "bs", "ar"}),
                  test.mFacts);
    }
}

TEST(CAFParser, PacketTableTellsTheLengthOfPacketsThatVary) {
    const auto length = [](const Desc& aDesc, const std::string& aRest) {
        return Length(Caf(Chunk64("desc", aDesc.Bytes()) + aRest));
    };
    EXPECT_EQ(length(kVarying, Pakt(8000) + Data(9000)), "1000|\"header\"");
    EXPECT_EQ(length(kVarying, Data(9000) + Pakt(8000)), "1000|\"header\"");
    EXPECT_EQ(length(kVarying, Data(9000)), "|");
    EXPECT_EQ(length(kVarying, Data(9000) + Chunk64("pakt", Big(2, 8))), "|") << "cut";
    for (const std::uint64_t samples :
         {std::uint64_t{0}, std::uint64_t{1}, std::uint64_t{1} << 40, std::uint64_t{1} << 63, UINT64_MAX}) {
        EXPECT_EQ(length(kVarying, Data(9000) + Pakt(samples)), "|") << samples;
    }
    EXPECT_EQ(length(kVarying, Pakt(8000)), "|") << "no sound";
    EXPECT_EQ(length(kVarying, Pakt(8000) + LyingData(9004, 0)), "|") << "cut where it begins";
    EXPECT_EQ(length({"ima4", 0, 1, UINT32_MAX, 1, 0, 8000}, Data(9000) + Pakt(8000)), "1000|\"header\"")
        << "packets that cannot hold so much";
    EXPECT_EQ(length({"aac ", 0, 0, 1024, 2, 0, 8000}, Data(9000) + Pakt(8000)), "1000|\"header\"");
    EXPECT_EQ(length({"lpcm", 0, 2, 0, 1, 16, 8000}, Data(9000) + Pakt(8000)), "1000|\"header\"");
    Delivery unknown;
    unknown.mfSizeKnown = false;
    for (const std::string& data : {Data(9000), LyingData(UINT64_MAX, 9000)}) {
        EXPECT_EQ(Length(Caf(Chunk64("desc", kVarying.Bytes()) + Pakt(8000) + data), unknown),
                  "1000|\"header\"");
    }
    EXPECT_EQ(Length(Caf(Chunk64("desc", kVarying.Bytes()) + Data(9000) + Pakt(8000)), unknown),
              "1000|\"header\"");
}

TEST(CAFParser, SizeOfTheSoundThatCannotBeIsMeasuredByTheFile) {
    for (const std::uint64_t size :
         {std::uint64_t{0}, std::uint64_t{16005}, std::uint64_t{1} << 63, UINT64_MAX, UINT64_MAX - 1}) {
        EXPECT_EQ(Length(Caf(kDesc + LyingData(size, 16000))), "1000|\"constant rate\"") << size;
    }
    for (const std::uint64_t size : {1U, 3U, 4U}) {
        EXPECT_EQ(Length(Caf(kDesc + "data" + Big(size, 8) + std::string(size, '\0'))), "|") << size;
    }
    Delivery unknown;
    unknown.mfSizeKnown = false;
    EXPECT_EQ(Length(Caf(kDesc + LyingData(UINT64_MAX, 16000)), unknown), "|");
}

TEST(CAFParser, BitsOfLosslessPacketsStandInTheirFlags) {
    const std::vector<std::pair<std::uint32_t, const char*>> flags = {
        {0, ""}, {1, "16"}, {2, "20"}, {3, "24"}, {4, "32"}, {5, ""}, {UINT32_MAX, ""}};
    for (const auto& [flag, bits] : flags) {
        EXPECT_EQ(
            Values<CAFParser>(Caf(Chunk64("desc", Desc{"alac", flag, 0, 4096, 1, 7, 8000}.Bytes())), {"bs"}),
            bits)
            << flag;
    }
    // Or in what the decoder is told, with the boxes of QuickTime around it or without.
    const std::string config = Big(4096, 4) + Big(0, 1) + Big(24, 1) + std::string(18, '\0');
    const std::string boxes = Big(12, 4) + "frmaalac" + Big(36, 4) + "alac" + Big(0, 4);
    for (const std::string& cookie : {config, boxes + config, boxes.substr(12) + config}) {
        const std::string open = Chunk64("desc", Desc{"alac", 0, 0, 4096, 1, 0, 8000}.Bytes());
        EXPECT_EQ(Values<CAFParser>(Caf(open + Chunk64("kuki", cookie)), {"bs"}), "24");
    }
    EXPECT_EQ(
        Values<CAFParser>(Caf(Chunk64("desc", Desc{"flac", 0, 0, 4096, 1, 24, 8000}.Bytes())), {"ca", "bs"}),
        "\"FLAC\"|24");
    EXPECT_EQ(
        Values<CAFParser>(Caf(Chunk64("desc", Desc{"aac ", 0, 0, 1024, 1, 16, 8000}.Bytes())), {"ca", "bs"}),
        "\"AAC\"|");
}

TEST(CAFParser, TextsAreThoseOfInfo) {
    EXPECT_EQ(
        Texts(Info({"title", "Title", "artist", "One", "ARTIST", "Two", "album", "Album", "genre", "Rock",
                    "recorded date", "2001-02-03", "year", "1999", "track number", "3/12", "tempo", "9"},
                   9)),
        "\"Title\"|\"One, Two\"|\"Album\"|\"Rock\"|\"2001-02-03\"|3");
    EXPECT_EQ(Texts(Info({"year", "1999"}, 1)), "||||\"1999\"|");
    EXPECT_EQ(Texts(Info({"title", "Title", "artist", "Artist"}, 1)), "\"Title\"|||||")
        << "as many as are counted";
    EXPECT_EQ(Texts(Info({"title", "Title"}, UINT32_MAX)), "\"Title\"|||||");
    EXPECT_EQ(Texts(Chunk64("info", Big(1, 4) + "title\0no end"s)), "|||||");
    const std::string spaces(kCAF_MaxKey - 5, ' ');
    EXPECT_EQ(Texts(Info({"title" + spaces + "x", "Value"}, 1)), "|||||");
    const std::string text(kMusicTexts_MaxSize + 1, 't');
    EXPECT_EQ(Texts(Info({text, text, "lyrics", text, "title", "Title"}, 3)), "\"Title\"|||||")
        << "long ones are passed over";
}

TEST(CAFParser, WhatSaysNothingOfTheSoundIsRefused) {
    EXPECT_EQ(Refusal("FORM"), "CAFParser: malformed: begins with 464F524D");
    EXPECT_EQ(Refusal(Caf(kDesc, 2)), "CAFParser: unsupported: version 2");
    EXPECT_EQ(Refusal(Caf(Data(9))), "CAFParser: malformed: ends before the description of the sound");
    EXPECT_EQ(Refusal(Caf(Chunk64("desc", Desc().Bytes().substr(0, 31)))),
              "CAFParser: malformed: ends before the description of the sound");
    for (const double rate : {0.0, 0.5, -8000.0, 1e7 + 1, std::numeric_limits<double>::infinity(),
                              std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_EQ(Refusal(Caf(Chunk64("desc", Desc{"lpcm", 0, 2, 1, 1, 16, rate}.Bytes()))),
                  "CAFParser: malformed: 1 channels at 0 Hz");
    }
    EXPECT_EQ(Refusal(Caf(Chunk64("desc", Desc{"lpcm", 0, 2, 1, 0, 16, 8000}.Bytes()))),
              "CAFParser: malformed: 0 channels at 8000 Hz");
    EXPECT_EQ(Refusal(Caf(Chunk64("desc", Desc{"lpcm", 0, 2, 1, 65536, 16, 8000}.Bytes()))),
              "CAFParser: malformed: 65536 channels at 8000 Hz");
}

TEST(CAFParser, FileOfTerabytesCostsNoMoreThanASmallOne) {
    const std::string info = Info({"title", "Title"}, 1);
    for (const std::uint64_t sound : {std::uint64_t{20000}, std::uint64_t{1} << 40}) {
        const std::string head = Caf(kDesc + LyingData(sound + 4, 0));
        SparseStream stream(head.size() + sound + info.size(), {{0, head}, {head.size() + sound, info}});
        EXPECT_EQ(SparseValue<CAFParser>(stream, "title"), "\"Title\"");
        EXPECT_EQ(stream.mReads, 2U);
        EXPECT_LE(stream.mBytes, 16384U);
    }
}

TEST(CAFParser, SoManyChunksAreReadAndNoMore) {
    const auto file = [](std::uint32_t aCount) {
        std::string chunks;
        for (std::uint32_t i = 0; i < aCount; ++i) {
            chunks += Chunk64("free", "");
        }
        return Caf(chunks + kDesc + Data(16000));
    };
    EXPECT_EQ(Length(file(kCAF_MaxChunks - 2)), "1000|\"header\"");
    EXPECT_EQ(Refusal(file(kCAF_MaxChunks)),
              "CAFParser: malformed: ends before the description of the sound");
}
