#include "ezFormats/riff/WAVParser.h"

#include "companions/ezFormats/ChunkBytes.h"
#include "companions/ezFormats/FormatFiles.h"

#include "support/Samples.h"

#include <gtest/gtest.h>

using namespace chunks;
using namespace std::string_literals;

namespace {

std::string Refusal(const std::string& aBytes) {
    return pictures::Refusal<WAVParser>(aBytes);
}

/// A file of 16000 bytes a second, its sound as it is given, and more chunks around it.
std::string Wav(const std::string& aData, const std::string& aBefore = "", const std::string& aAfter = "") {
    return Riff(Chunk("fmt ", Fmt().Bytes()) + aBefore + aData + aAfter);
}
std::string Wav(const Fmt& aFormat, const std::string& aSound, const std::string& aBefore = "") {
    return Riff(Chunk("fmt ", aFormat.Bytes()) + aBefore + Chunk("data", aSound));
}

std::string Fact(std::uint32_t aSamples) {
    return Chunk("fact", Little(aSamples));
}

std::string Ds64(std::uint64_t aData, std::uint64_t aSamples = 0, const std::string& aTable = Little(0)) {
    return Chunk("ds64", Little(0, 8) + Little(aData, 8) + Little(aSamples, 8) + aTable);
}

std::string Bext(const std::string& aDescription, const std::string& aDate, const std::string& aTime) {
    std::string description = aDescription;
    description.resize(256);
    return Chunk("bext", description + std::string(64, 'o') + aDate + aTime + std::string(264, '\0'));
}

/// The head of Wave64, and a chunk of it.
const std::string kWaveRest = "\xF3\xAC\xD3\x11\x8C\xD1\x00\xC0\x4F\x8E\xDB\x8A"s;
std::string Wave64(const std::string& aChunks, const std::string& aForm = "wave") {
    return "riff\x2E\x91\xCF\x11\xA5\xD6\x28\xDB\x04\xC1\x00\x00"s + Little(40 + aChunks.size(), 8) + aForm +
           kWaveRest + aChunks;
}
std::string Chunk64(const std::string& aName, const std::string& aContent) {
    return aName + kWaveRest + Little(24 + aContent.size(), 8) + aContent +
           std::string((8 - aContent.size() % 8) % 8, '\0');
}

/// Length and how it is known, of a file.
std::string Length(const std::string& aBytes, const Delivery& aDelivery = Delivery()) {
    return Values<WAVParser>(aBytes, {"dm", "md"}, aDelivery);
}

std::string Texts(const std::string& aBytes) {
    return Values<WAVParser>(aBytes, {"title", "creator", "album", "da"});
}

// ---- files for those that hold of every format ----

std::vector<std::string> UsualFiles() {
    const std::string tags = Info({{"INAM", "Title"}, {"IART", "Artist"}}) + Chunk("id3 ", TagWithCover());
    return {Wav(Chunk("data", Sound(300)), tags),
            Wav(Chunk("data", Sound(301)), "", tags),
            Wav(Chunk("data", Sound(20000)), "", tags),
            Wav(Fmt{0x11, 1, 8000, 4055, 256, 4, Little(2, 2) + Little(505, 2)}, Sound(512), Fact(1000)),
            Riff(Ds64(400) + Chunk("fmt ", Fmt().Bytes()) + Lying("data", UINT32_MAX, Sound(400)), "RF64"),
            Wave64(Chunk64("fmt ", Fmt().Bytes()) + Chunk64("data", Sound(21))),
            Wav(Lying("data", UINT32_MAX, Sound(400))),
            Wav(Fmt{1, 2, 44100, 176400, 4, 16, ""}, std::string(70000, '\0'))};
}

std::vector<std::string> CostlyFiles() {
    std::string distant;
    for (int i = 0; i < 100; ++i) {
        distant += Chunk("LIST", "INFO" + std::string(std::size_t{16} << 10, 'x'));
    }
    std::string tags;
    for (int i = 0; i < 100; ++i) {
        tags +=
            Chunk("id3 ", ID3(3, 0, Frame23("PRIV", Sound(9000)) + Frame23("APIC", Apic(0, Sound(9000)))));
    }
    std::string syncs; // of frames that do not follow each other
    for (int i = 0; i < 4000; ++i) {
        syncs += "\x7F\xFE\x80\x01\xFC\x3C\x7F\xF0"s;
    }
    return {Wav(Chunk("data", Sound(2)), "", distant), Wav(Chunk("data", Sound(2)), distant), Wav("", tags),
            Wav(Fmt{1, 2, 44100, 176400, 4, 16, ""}, std::string(9000, '\0') + syncs)};
}

const FormatFiles kFiles("wav", {32, 256U << 10}, {"ca", "ac"}, UsualFiles, CostlyFiles);

} // namespace

TEST(WAVParser, RecordSaysWhatTheChunksSay) {
    EXPECT_EQ(pictures::Parsed<WAVParser>(ReadSample("music/door-bell.wav")), "ac=1\n"
                                                                              "ar=8000\n"
                                                                              "br=128000\n"
                                                                              "bs=16\n"
                                                                              "ca=\"LPCM\"\n"
                                                                              "cn=\"item.audioItem\"\n"
                                                                              "da=\"2001\"\n"
                                                                              "dl=\"DLNA.ORG_OP=01\"\n"
                                                                              "dm=2200\n"
                                                                              "du=2\n"
                                                                              "md=\"header\"\n"
                                                                              "mt=\"audio/wav\"\n"
                                                                              "ta=1\n"
                                                                              "title=\"Door Bell\"\n"
                                                                              "creator=\"The Test Tones\"\n"
                                                                              "genre=\"Other\"\n"
                                                                              "album=\"Half a Second\"\n");
}

TEST(WAVParser, PlainSamplesTellTheirLengthByWhatTheyTake) {
    struct Case {
        Fmt mFormat;
        const char* mFacts; ///< codec, milliseconds, bits that count, bits a second
    };
    const std::vector<Case> cases = {
        {{1, 1, 8000, 8000, 1, 8, ""}, "\"LPCM\"|3000|8|64000"},
        {{1, 2, 8000, 32000, 4, 16, ""}, "\"LPCM\"|750|16|256000"},
        {{1, 2, 8000, 48000, 6, 24, ""}, "\"LPCM\"|500|24|384000"},
        {{1, 1, 8000, 32000, 4, 32, ""}, "\"LPCM\"|750|32|256000"},
        {{1, 1, 8000, 24000, 3, 20, ""}, "\"LPCM\"|1000|20|192000"},
        {{0xFFFE, 2, 8000, 64000, 8, 32, Extension(24, 1)}, "\"LPCM\"|375|24|512000"},     // 24 bits in 32
        {{0xFFFE, 6, 8000, 96000, 12, 16, Extension(16, 1, 3)}, "\"LPCM\"|250|16|768000"}, // mask of two
        {{0xFFFE, 1, 8000, 16000, 2, 16, Extension(0, 1)}, "\"LPCM\"|1500|16|128000"},
        {{0xFFFE, 1, 8000, 16000, 2, 16, Extension(99, 1)}, "\"LPCM\"|1500|16|128000"},
        {{1, 2, 8000, 0, 0, 16, ""}, "\"LPCM\"|750|16|256000"},    // block not stated
        {{1, 2, 8000, 0, 1, 16, ""}, "\"LPCM\"|750|16|256000"},    // and too small
        {{1, 2, 8000, 32000, 4, 0, ""}, "\"LPCM\"|750|16|256000"}, // bits not stated
        {{3, 1, 8000, 32000, 4, 32, ""}, "\"PCM-float\"|750|32|"},
        {{0xFFFE, 1, 8000, 64000, 8, 64, Extension(64, 3)}, "\"PCM-float\"|375|64|"},
        {{6, 1, 8000, 8000, 1, 8, ""}, "\"alaw\"|3000||"},
        {{7, 2, 8000, 16000, 2, 8, ""}, "\"ulaw\"|1500||"},
        {{7, 2, 8000, 32000, 4, 16, ""}, "\"ulaw\"|1500||"}, // the bits that are heard
        {{6, 1, 8000, 0, 0, 0, ""}, "\"alaw\"|3000||"},
        {{1, 1, 8000, 80000, 10, 80, ""}, "\"LPCM\"|300||640000"},
        {{1, 1, UINT32_MAX, 0, 1, 8, ""}, "\"LPCM\"||8|"}};
    for (const Case& test : cases) {
        EXPECT_EQ(Values<WAVParser>(Wav(test.mFormat, Sound(24000)), {"ca", "dm", "bs", "br"}), test.mFacts);
    }
    // A WAVEFORMAT ends before its bits.
    EXPECT_EQ(
        Values<WAVParser>(Riff(Chunk("fmt ", Fmt().Bytes().substr(0, 14)) + Chunk("data", Sound(16000))),
                          {"dm", "bs"}),
        "1000|16");
}

TEST(WAVParser, SizeOfTheSoundThatCannotBeIsMeasuredByTheFile) {
    const std::string sound = Sound(16000);
    for (const std::uint64_t size : {std::uint64_t{0}, std::uint64_t{16001}, std::uint64_t{0x7FFFFFFF},
                                     std::uint64_t{0x80000000}, std::uint64_t{UINT32_MAX}}) {
        EXPECT_EQ(Length(Wav(Lying("data", size, sound))), "1000|\"constant rate\"") << size;
    }
    EXPECT_EQ(Length(Wav(Lying("data", 8000, sound))), "500|\"header\"");
    EXPECT_EQ(Length(Wav(Chunk("data", ""))), "|");
    // A source that does not know its size cannot tell, and does not go on after the sound.
    Delivery unknown;
    unknown.mfSizeKnown = false;
    EXPECT_EQ(Length(Wav(Lying("data", UINT32_MAX, sound)), unknown), "|");
    EXPECT_EQ(Length(Wav(Lying("data", 0, sound)), unknown), "|");
    EXPECT_EQ(Length(Wav(Lying("data", 16000, sound)), unknown), "1000|\"header\"");
}

TEST(WAVParser, ChunksAfterSoundOfNoStatedSizeAreReadAllTheSame) {
    const std::string tags = Chunk("junk", Sound(7992)) + Info({{"INAM", "After"}});
    const std::string file = Wav(Lying("data", 0, ""), "", tags);
    EXPECT_EQ(Length(file), "501|\"constant rate\"");
    EXPECT_EQ(Texts(file), "\"After\"|||");
}

TEST(WAVParser, LargeSizesAreThoseOfDs64) {
    const std::string fmt = Chunk("fmt ", Fmt().Bytes());
    const std::string sound = Sound(16000);
    const std::string tag = Info({{"INAM", "After"}});
    const auto length = [&](const std::string& aDs64, std::uint64_t aData,
                            const std::string& aKind = "RF64") {
        const std::string file = Riff(aDs64 + fmt + Lying("data", aData, sound) + tag, aKind);
        return Length(file) + "|" + ValueOf(pictures::Parsed<WAVParser>(file), "title");
    };
    const std::string after = "1000|\"header\"|\"After\"";
    EXPECT_EQ(length(Ds64(16000), UINT32_MAX), after);
    EXPECT_EQ(length(Ds64(16000), UINT32_MAX, "BW64"), after);
    EXPECT_EQ(length(Ds64(16000), 16000), after);
    EXPECT_EQ(length(Ds64(16000), 0), after);
    EXPECT_EQ(length(Ds64(99), 16000), after) << "a size that is stated counts";
    for (const std::uint64_t size : {std::uint64_t{0}, std::uint64_t{1} << 40, UINT64_MAX, UINT64_MAX - 1}) {
        EXPECT_EQ(length(Ds64(size), UINT32_MAX), "1001|\"constant rate\"|") << size;
    }
    EXPECT_EQ(length("", UINT32_MAX), "1001|\"constant rate\"|") << "without one";
    EXPECT_EQ(length(Ds64(16000), UINT32_MAX, "RIFF"), "1001|\"constant rate\"|") << "not in a plain file";
}

TEST(WAVParser, SizesOfOtherChunksStandInTheTableOfDs64) {
    const std::string fmt = Chunk("fmt ", Fmt().Bytes());
    const std::string table = Little(2) + "junk" + Little(8, 8) + "axml" + Little(12, 8);
    const std::string chunks = Lying("axml", UINT32_MAX, Sound(12)) + fmt + Chunk("data", Sound(16000));
    EXPECT_EQ(Length(Riff(Ds64(16000, 0, table) + chunks, "BW64")), "1000|\"header\"");
    EXPECT_EQ(Refusal(Riff(Ds64(16000) + chunks, "BW64")),
              "WAVParser: malformed: ends before the description of the sound");
}

TEST(WAVParser, SizeThatLost32BitsIsCompletedByTheFile) {
    constexpr std::uint64_t k4GiB = std::uint64_t{1} << 32;
    const std::string tag = Info({{"INAM", "After"}});
    for (const std::uint64_t lost : {k4GiB, 3 * k4GiB}) {
        const std::uint64_t sound = lost + 16000;
        const std::uint64_t size = 12 + 24 + 8 + sound + tag.size();
        std::string head = Wav(Lying("data", 16000, ""));
        head.replace(4, 4, Little(size - 8));
        for (const std::uint64_t more : {0U, 1000U, 65535U}) { // what was appended and is not counted
            SparseStream stream(size + more, {{0, head + Sound(9000)}, {44 + sound, tag}});
            WAVParser parser;
            const std::string record = DumpRecord(Record(parser.Parse(stream)).get());
            EXPECT_EQ(ValueOf(record, "dm"), std::to_string(sound * 1000 / 16000)) << more;
            EXPECT_EQ(ValueOf(record, "md"), "\"constant rate\"");
            EXPECT_EQ(ValueOf(record, "title"), "\"After\"");
            EXPECT_LE(stream.mReads, 2U);
        }
        SparseStream stream(size + (1 << 20), {{0, head + Sound(9000)}});
        EXPECT_EQ(SparseValue<WAVParser>(stream, "dm"), "1000") << "what was appended is larger";
    }
}

TEST(WAVParser, FileOfManyGigabytesCostsNoMoreThanASmallOne) {
    const std::string fmt = Chunk("fmt ", Fmt().Bytes());
    const std::string tag = Chunk("id3 ", TagWithCover());
    const auto expectReads = [&](const std::string& aHead, std::uint64_t aSound, const std::string& aTag) {
        const std::uint64_t end = aHead.size() + aSound;
        SparseStream stream(end + aTag.size(), {{0, aHead + Sound(9000)}, {end, aTag}});
        EXPECT_EQ(SparseValue<WAVParser>(stream, "title"), "\"Tagged\"") << aSound;
        EXPECT_EQ(stream.mReads, 2U) << aSound;
        EXPECT_LE(stream.mBytes, 16384U) << aSound;
    };
    for (const std::uint64_t sound :
         {std::uint64_t{20000}, std::uint64_t{0xFFFFF000}, std::uint64_t{1} << 40}) {
        const std::uint64_t size = std::min<std::uint64_t>(sound, UINT32_MAX);
        if (size == sound) {
            expectReads(Wav(Lying("data", size, "")), sound, tag);
        }
        expectReads(Riff(Ds64(sound) + fmt + Lying("data", UINT32_MAX, ""), "RF64"), sound, tag);
        expectReads(Wave64(Chunk64("fmt ", Fmt().Bytes()) + "data" + kWaveRest + Little(24 + sound, 8)),
                    sound, Chunk64("id3 ", TagWithCover()));
    }
}

TEST(WAVParser, CodedSoundIsAsLongAsItIsStatedOrAsItsBlocksAre) {
    const Fmt ima = {0x11, 2, 8000, 8110, 512, 4, Little(2, 2) + Little(505, 2)};
    const Fmt gsm = {0x31, 1, 8000, 1625, 65, 0, Little(2, 2) + Little(320, 2)};
    const Fmt sbc = {0x1104, 1, 8000, 2000, 43, 0, ""};
    struct Case {
        Fmt mFormat;
        std::uint32_t mFact;
        const char* mFacts; ///< codec, milliseconds, how they are known, rate, its estimate
    };
    const std::vector<Case> cases = {
        {ima, 5000, "\"ADPCM-IMA\"|625|\"header\"|64887|"},
        {ima, 0, "\"ADPCM-IMA\"|631|\"header\"|64887|"},
        {ima, UINT32_MAX, "\"ADPCM-IMA\"|631|\"header\"|64887|"},
        {ima, 10100, "\"ADPCM-IMA\"|631|\"header\"|64887|"}, // of both channels
        {ima, 3000, "\"ADPCM-IMA\"|631|\"header\"|64887|"},  // of none
        {gsm, 25000, "\"GSM\"|3125|\"header\"|13000|"},
        {gsm, 0, "\"GSM\"|3150|\"header\"|13000|"},
        {{0x2000, 2, 48000, 24000, 768, 0, ""}, 0, "\"AC3\"|213|\"header\"|192000|"},
        {{0x2001, 2, 48000, 96000, 1024, 0, ""}, 0, "\"DTS\"|53|\"header\"|768000|"},
        {sbc, 16000, "\"SBC\"|2000|\"header\"|4294967295|20480"},
        {sbc, 0, "\"SBC\"|2560|\"estimate: size and mean rate\"|4294967295|16000"},
        {sbc, 1,
         "\"SBC\"|2560|\"estimate: size and mean rate\"|4294967295|16000"}, // not a rate of this sound
        {{0x9999, 1, 8000, 0, 1, 0, ""}, 8000, "\"WAVE-9999\"|1000|\"header\"|4294967295|40960"},
        {{0x9999, 1, 8000, 0, 0, 0, ""}, 0, "\"WAVE-9999\"|||4294967295|"}};
    for (const Case& test : cases) {
        EXPECT_EQ(Values<WAVParser>(Wav(test.mFormat, Sound(5120), Fact(test.mFact)),
                                    {"ca", "dm", "md", "ar", "ea"}),
                  test.mFacts)
            << test.mFact;
    }
    // Blocks that cannot hold what they state.
    const Fmt lying = {0x11, 1, 8000, 4000, 1, 4, Little(2, 2) + Little(65535, 2)};
    for (const std::uint32_t count : {0U, 5120U * 65535}) {
        EXPECT_EQ(Values<WAVParser>(Wav(lying, Sound(5120), Fact(count)), {"dm", "ar"}), "1280|32000");
    }
    // A file that is cut is as long as what there is.
    EXPECT_EQ(Length(Riff(Chunk("fmt ", ima.Bytes()) + Fact(5000) + Lying("data", 5120, Sound(2560)))),
              "315|\"constant rate\"");
}

TEST(WAVParser, MPEGAudioTellsItsLayerAndWhetherItsRateIsConstant) {
    const std::string layer3 = Big(0xFFE318C4, 4) + Sound(8000 - 4); // MPEG-2.5, 8 kbit/s, 8 kHz, mono
    const auto facts = [&](unsigned aTag, unsigned aAverage, const std::string& aSound, std::uint32_t aFact) {
        return Values<WAVParser>(Wav(Fmt{aTag, 1, 8000, aAverage, 1, 0, ""}, aSound, Fact(aFact)),
                                 {"ca", "dm", "md", "ar"});
    };
    EXPECT_EQ(facts(0x55, 1000, layer3, 72000), "\"MP3\"|9000|\"header\"|8000");
    EXPECT_EQ(facts(0x55, 1000, layer3, 0), "\"MP3\"|8000|\"constant rate\"|8000");
    EXPECT_EQ(facts(0x50, 1019, layer3, 0), "\"MP3\"|7850|\"constant rate\"|8000")
        << "the mean of two paddings";
    EXPECT_EQ(facts(0x55, 1200, layer3, 0), "\"MP3\"|6666|\"estimate: size and mean rate\"|4294967295");
    EXPECT_EQ(facts(0x50, 1000, Sound(8000), 0), "\"MP2\"|8000|\"estimate: size and mean rate\"|4294967295");
    EXPECT_EQ(facts(0x55, 1000, "", 0), "\"MP3\"|||4294967295");
}

TEST(WAVParser, NumbersOfRIFXStandTheOtherWay) {
    const Fmt format = {0xFFFE, 2, 44100, 264600, 6, 24, ""};
    const std::string extension = Big(22, 2) + Big(24, 2) + Big(3, 4) + Big(1, 2) + std::string(14, '\0');
    const std::string list = BigChunk("LIST", "INFO" + BigChunk("INAM", "Title"));
    const std::string chunks = BigChunk("fmt ", format.Bytes(Big) + extension) +
                               BigChunk("fact", Big(99, 4)) + list + BigChunk("data", Sound(39690));
    EXPECT_EQ(Values<WAVParser>("RIFX" + Big(chunks.size() + 4, 4) + "WAVE" + chunks,
                                {"ca", "dm", "ac", "bs", "title"}),
              "\"LPCM\"|150|2|24|\"Title\"");
}

TEST(WAVParser, ChunksOfWave64StandAtMultiplesOfEight) {
    const std::string file = Wave64(Chunk64("junk", Sound(3)) + Chunk64("fmt ", Fmt().Bytes() + "\0\0"s) +
                                    Chunk64("data", Sound(16001)));
    EXPECT_EQ(Values<WAVParser>(file, {"mt", "dm", "md"}), "\"audio/x-w64\"|1000|\"header\"");
    const auto data = [](std::uint64_t aSize) {
        return Wave64(Chunk64("fmt ", Fmt().Bytes()) + "data" + kWaveRest + Little(aSize, 8) + Sound(16000));
    };
    for (const std::uint64_t size : {std::uint64_t{0}, std::uint64_t{24}, std::uint64_t{1} << 40, UINT64_MAX,
                                     UINT64_MAX - 1, UINT64_MAX - 24}) {
        EXPECT_EQ(Length(data(size)), "1000|\"constant rate\"") << size;
    }
    EXPECT_EQ(Length(data(16)), "|") << "less than the head of the chunk";
    EXPECT_EQ(Refusal(Wave64("", "aiff")), "WAVParser: unsupported: riff of the form \"\"");
    std::string other = file;
    other[5] = '\0';
    EXPECT_EQ(Refusal(other), "WAVParser: malformed: begins with 72696666");
}

TEST(WAVParser, TextsAreThoseOfTheTagThenOfTheListThenOfTheBroadcastChunk) {
    const std::string data = Chunk("data", Sound(400));
    const std::string tag = ID3(3, 0, Frame23("TIT2", "\0Tagged"s));
    const std::string info =
        Info({{"INAM", "Listed"}, {"IART", "One"}, {"IART", "Two"}, {"ICRD", "1999-12-31"}});
    const std::string bext = Bext("Described", "2001-02-03", "04:05:06");
    EXPECT_EQ(Texts(Wav(data, bext)), "\"Described\"|||\"2001-02-03T04:05:06\"");
    EXPECT_EQ(Texts(Wav(data, bext, info)), "\"Listed\"|\"One, Two\"||\"1999-12-31\"");
    EXPECT_EQ(Texts(Wav(data, bext + info, Chunk("id3 ", tag))), "\"Tagged\"|\"One, Two\"||\"1999-12-31\"");
    EXPECT_EQ(Texts(Wav(data, info, Chunk("ID3 ", tag))), "\"Tagged\"|\"One, Two\"||\"1999-12-31\"");
    EXPECT_EQ(Texts(tag + Wav(data, info)), "\"Tagged\"|\"One, Two\"||\"1999-12-31\"") << "before the file";
    EXPECT_EQ(Texts(Wav(data, Info({{"INAM", "Gr\xFC\xDF"}, {"IPRD", "\xC3\x89t\xC3\xA9"}}))),
              "\"Gr\xC3\xBC\xC3\x9F\"||\"\xC3\x89t\xC3\xA9\"|")
        << "of a code page unless it is UTF-8";
    EXPECT_EQ(Texts(Wav(data, Chunk("LIST", "adtl" + Chunk("INAM", "no text")))), "|||");
    EXPECT_EQ(Texts(Wav(data, Lying("LIST", 4000, "INFO" + Chunk("INAM", "Cut")))), "\"Cut\"|||")
        << "what there is of it";
    EXPECT_EQ(Texts(Wav(data, Bext("", "2001_02.03", "04-05 06"))), "|||\"2001-02-03T04:05:06\"");
    EXPECT_EQ(Texts(Wav(data, Bext("", "2001-02-03", std::string(8, '\0')))), "|||\"2001-02-03\"");
    EXPECT_EQ(Texts(Wav(data, Bext("", "2001-13-03", "04:05:06"))), "|||");
    EXPECT_EQ(Texts(Wav(data, Chunk("bext", "short"))), "|||");
}

TEST(WAVParser, TextsOfWave64StandInItsSummary) {
    const auto item = [](const std::string& aName, const std::string& aText) {
        std::string text;
        for (const char character : aText) {
            text += character + "\0"s;
        }
        return aName + Little(text.size()) + text;
    };
    const std::string texts = Little(3) + item("INAM", "Title") + item("ICMT", "odd") + item("IART", "Me");
    const std::string guid = "\xBC\x94\x5F\x92\x5A\x52\xD2\x11\x86\xDC\x00\xC0\x4F\x8E\xDB\x8A"s;
    const std::string list =
        guid + Little(24 + texts.size(), 8) + texts + std::string((8 - texts.size() % 8) % 8, '\0');
    const std::string fmt = Chunk64("fmt ", Fmt().Bytes());
    const std::string data = Chunk64("data", Sound(16000));
    for (const std::string& chunks : {list + fmt + data, fmt + list + data, fmt + data + list}) {
        EXPECT_EQ(Values<WAVParser>(Wave64(chunks), {"dm", "title", "creator"}), "1000|\"Title\"|\"Me\"");
    }
    EXPECT_EQ(Length(Wave64(fmt + guid + Little(24, 8) + data)), "1000|\"header\"") << "without a count";
}

TEST(WAVParser, ForgottenStuffingLosesNoChunk) {
    const std::string list = "LIST" + Little(16) + "INFO" + "INAM" + Little(3) + "Odd" + "IART";
    const std::string info = Chunk("LIST", "INFO" + ("INAM" + Little(3) + "Odd") + Chunk("IART", "Me"));
    EXPECT_EQ(Texts(Wav(Lying("data", 301, Sound(301)) + info)), "\"Odd\"|\"Me\"||");
}

TEST(WAVParser, CoverIsThatOfTheTag) {
    EXPECT_EQ(Values<WAVParser>(Wav(Chunk("data", Sound(9000)), "", Chunk("id3 ", TagWithCover())),
                                {"cm", "cs", "title"}),
              "\"image/jpeg\"|20|\"Tagged\"");
    // A tag that claims more than its chunk.
    std::string tag = TagWithCover();
    tag.replace(6, 4, Syncsafe(100000));
    EXPECT_EQ(Values<WAVParser>(Wav(Chunk("data", Sound(9000)), "", Chunk("id3 ", tag)), {"cm", "title"}),
              "\"image/jpeg\"|\"Tagged\"");
}

TEST(WAVParser, CoverBeforeTheFileComesFirstAsThatOfItsThumbnail) {
    const std::string before = ID3(3, 0, Frame23("APIC", Apic(0, "\x89PNG\r\n\x1A\n" + Sound(4))));
    const std::string tag = Chunk("id3 ", TagWithCover());
    EXPECT_EQ(Values<WAVParser>(before + Wav(Chunk("data", Sound(90)), "", tag), {"cm", "cs", "title"}),
              "\"image/png\"|12|\"Tagged\"");
}

TEST(WAVParser, OtherFilesOfChunksAreRefusedByTheirForm) {
    for (const std::string form : {"AVI ", "WEBP", "RMID", "RMP3", "ACON", "CDXA"}) {
        EXPECT_EQ(Refusal(Riff(Chunk("fmt ", Fmt().Bytes()), "RIFF", form)),
                  "WAVParser: unsupported: RIFF of the form \"" + form.substr(0, form.find(' ')) + "\"");
    }
    EXPECT_EQ(Refusal(Riff("", "RIFF", "\x01\xFF\x02\x03")),
              "WAVParser: unsupported: RIFF of the form \"\xC3\xBF\"");
    EXPECT_EQ(Refusal("RIFF"), "WAVParser: unsupported: RIFF of the form \"\"");
    EXPECT_EQ(Refusal("FORM....AIFF"), "WAVParser: malformed: begins with 464F524D");
}

TEST(WAVParser, OldWavPackIsNoWAV) {
    EXPECT_EQ(Refusal(Wav(Lying("data", 90000, "wvpk" + Sound(400)))),
              "WAVParser: unsupported: WavPack of a version before 4");
}

TEST(WAVParser, WhatSaysNothingOfTheSoundIsRefused) {
    EXPECT_EQ(Refusal(Riff(Chunk("data", Sound(400)))),
              "WAVParser: malformed: ends before the description of the sound");
    EXPECT_EQ(Refusal(Riff(Chunk("fmt ", "short") + Chunk("data", Sound(400)))),
              "WAVParser: malformed: ends before the description of the sound");
    EXPECT_EQ(Refusal(Wav(Fmt{1, 0, 8000, 16000, 2, 16, ""}, Sound(9))),
              "WAVParser: malformed: 0 channels at 8000 Hz");
    EXPECT_EQ(Refusal(Wav(Fmt{1, 2, 0, 16000, 2, 16, ""}, Sound(9))),
              "WAVParser: malformed: 2 channels at 0 Hz");
    // After the sound it is late, but there.
    EXPECT_EQ(Length(Riff(Chunk("data", Sound(16000)) + Chunk("fmt ", Fmt().Bytes()))), "1000|\"header\"");
    // Nothing lasts longer than a year.
    EXPECT_EQ(Length(Wav(Fmt{1, 1, 1, 1, 1, 8, ""}, Sound(9000))), "9000000|\"header\"");
    SparseStream stream(
        UINT64_MAX - 1,
        {{0, Riff(Ds64(1ULL << 63) + Chunk("fmt ", Fmt().Bytes()) + Lying("data", UINT32_MAX, ""), "RF64")}});
    EXPECT_EQ(SparseValue<WAVParser>(stream, "dm"), "");
}

TEST(WAVParser, SoManyChunksAreReadAndNoMore) {
    const auto file = [](std::uint32_t aCount) {
        std::string chunks;
        for (std::uint32_t i = 0; i < aCount; ++i) {
            chunks += Chunk("junk", "");
        }
        return Riff(chunks + Chunk("fmt ", Fmt().Bytes()) + Chunk("data", Sound(16000)));
    };
    EXPECT_EQ(Length(file(kWAV_MaxChunks - 2)), "1000|\"header\"");
    EXPECT_EQ(Length(file(kWAV_MaxChunks - 1)), "|") << "without its sound";
    EXPECT_EQ(Refusal(file(kWAV_MaxChunks)),
              "WAVParser: malformed: ends before the description of the sound");
}
