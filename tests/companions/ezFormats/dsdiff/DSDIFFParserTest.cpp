#include "ezFormats/dsdiff/DSDIFFParser.h"

#include "companions/ezFormats/ChunkBytes.h"
#include "companions/ezFormats/FormatFiles.h"

#include <gtest/gtest.h>

using namespace chunks;
using namespace std::string_literals;

namespace {

std::string LyingChunk(const std::string& aName, std::uint64_t aSize, const std::string& aContent) {
    return aName + Big(aSize, 8) + aContent;
}
std::string LongChunk(const std::string& aName, const std::string& aContent) {
    return LyingChunk(aName, aContent.size(), aContent) + std::string(aContent.size() % 2, '\0');
}

std::string Form(const std::string& aChunks, const std::string& aKind = "DSD ") {
    return "FRM8" + Big(aChunks.size() + 4, 8) + aKind + LongChunk("FVER", Big(0x01050000, 4)) + aChunks;
}

/// What describes the sound: two channels at a thousandth of the usual rate.
std::string Prop(const std::string& aCompression = "DSD ", std::uint32_t aRate = 2824,
                 std::uint32_t aChannels = 2) {
    return LongChunk("PROP", "SND " + LongChunk("FS  ", Big(aRate, 4)) +
                                 LongChunk("CHNL", Big(aChannels, 2) + "SLFTSRGT") +
                                 LongChunk("CMPR", aCompression + "\x0Enot compressed") +
                                 LongChunk("ABSS", Big(0, 8)));
}

/// A second of it.
std::string Dsd() {
    return LongChunk("DSD ", Sound(706));
}
std::string Dst(std::uint32_t aFrames, unsigned aFramesASecond, std::size_t aSize) {
    return LongChunk("DST ", LongChunk("FRTE", Big(aFrames, 4) + Big(aFramesASecond, 2)) +
                                 LongChunk("DSTF", Sound(aSize)));
}

/// A text of "DIIN", after its length.
std::string Text(const std::string& aName, const std::string& aText) {
    return LongChunk(aName, Big(aText.size(), 4) + aText);
}
std::string Diin() {
    return LongChunk("DIIN", LongChunk("EMID", "some") + Text("DIAR", "Noter") + Text("DITI", "Noted"));
}

std::string Length(const std::string& aBytes, const Delivery& aDelivery = Delivery()) {
    return Values<DSDIFFParser>(aBytes, {"dm", "md"}, aDelivery);
}
std::string Texts(const std::string& aBytes) {
    return Values<DSDIFFParser>(aBytes, {"title", "creator"});
}
std::string Refusal(const std::string& aBytes) {
    return pictures::Refusal<DSDIFFParser>(aBytes);
}

std::vector<std::string> UsualFiles() {
    const std::string tags = Diin() + LongChunk("ID3 ", TagWithCover());
    return {Form(Prop() + LongChunk("DSD ", Sound(301)) + tags), Form(tags + Dsd() + Prop()),
            Form(Prop("DST ") + Dst(75, 75, 200) + tags), Form(Prop() + LyingChunk("DSD ", 0, "") + tags)};
}

std::vector<std::string> CostlyFiles() {
    std::string distant;
    std::string tags;
    for (int i = 0; i < 100; ++i) {
        distant += LongChunk("COMT", std::string(std::size_t{16} << 10, 'x'));
        tags += LongChunk("ID3 ",
                          ID3(3, 0, Frame23("PRIV", Sound(9000)) + Frame23("APIC", Apic(0, Sound(9000)))));
    }
    return {Form(Prop() + Dsd() + distant), Form(distant + Prop() + Dsd()), Form(Prop() + tags),
            Form(distant)};
}

const FormatFiles kFiles("dff", {16, 256U << 10}, {"ca", "sf", "ac", "bs"}, UsualFiles, CostlyFiles);

} // namespace

TEST(DSDIFFParser, RecordSaysWhatTheChunksSay) {
    EXPECT_EQ(pictures::Parsed<DSDIFFParser>(Form(Prop("DSD ", 2822400) + LongChunk("DSD ", Sound(7056)) +
                                                  LongChunk("ID3 ", TagWithCover()))),
              "ac=2\n"
              "ar=5644800\n"
              "bs=1\n"
              "ca=\"DSD\"\n"
              "cm=\"image/jpeg\"\n"
              "cn=\"item.audioItem\"\n"
              "cs=20\n"
              "dl=\"DLNA.ORG_OP=01\"\n"
              "dm=10\n"
              "du=0\n"
              "md=\"header\"\n"
              "mt=\"audio/x-dff\"\n"
              "sf=2822400\n"
              "ta=1\n"
              "title=\"Tagged\"\n"
              "creator=\"Tagger\"\n");
}

TEST(DSDIFFParser, LengthIsThatOfTheSound) {
    EXPECT_EQ(Length(Form(Prop() + Dsd())), "1000|\"header\"");
    EXPECT_EQ(Length(Form(Dsd() + Prop())), "1000|\"header\"");
    EXPECT_EQ(Length(Form(Prop() + Dsd() + LongChunk("MANF", Sound(900)))), "1000|\"header\"");
    EXPECT_EQ(Length(Form(Prop() + Dsd() + LongChunk("DSD ", Sound(9000)))), "1000|\"header\"");
    EXPECT_EQ(Length(Form(Prop())), "|");
    for (const std::uint64_t size :
         {std::uint64_t{0}, std::uint64_t{707}, std::uint64_t{1} << 63, UINT64_MAX - 1, UINT64_MAX}) {
        EXPECT_EQ(Length(Form(Prop() + LyingChunk("DSD ", size, Sound(706)))), "1000|\"constant rate\"")
            << size;
    }
    Delivery unknown;
    unknown.mfSizeKnown = false;
    EXPECT_EQ(Length(Form(Prop() + Dsd()), unknown), "1000|\"header\"");
    EXPECT_EQ(Length(Form(Prop() + LyingChunk("DSD ", UINT64_MAX, Sound(706))), unknown), "|");
    // Chunks may follow all the same.
    EXPECT_EQ(Texts(Form(Prop() + LyingChunk("DSD ", 0, "") + Diin())), "\"Noted\"|\"Noter\"");
}

TEST(DSDIFFParser, CompressedSoundIsMeasuredByItsFrames) {
    struct Row {
        std::uint32_t mFrames;
        unsigned mFramesASecond;
        std::size_t mSize;
        const char* mFacts; ///< milliseconds, rate, its mean
    };
    constexpr Row kRows[] = {{75, 75, 10000, "1000|\"header\"|4294967295|80240"},
                             {30, 75, 10000, "400|\"header\"|4294967295|200600"},
                             {0, 75, 10000, "||4294967295|"},
                             {75, 0, 10000, "||4294967295|"},
                             {UINT32_MAX, 75, 10000, "||4294967295|"}}; // less than 100 bits a second
    for (const Row& row : kRows) {
        const std::string file = Form(Prop("DST ", 2850) + Dst(row.mFrames, row.mFramesASecond, row.mSize));
        EXPECT_EQ(Values<DSDIFFParser>(file, {"dm", "md", "ar", "ea"}), row.mFacts) << row.mFrames;
        EXPECT_EQ(Values<DSDIFFParser>(file, {"ca", "sf", "bs", "ac"}), "\"DST\"|2850|1|2");
    }
    EXPECT_EQ(Length(Form(Prop("DST ") + LongChunk("DST ", LongChunk("DSTF", Sound(200))))), "|")
        << "no count before the frames";
    EXPECT_EQ(Values<DSDIFFParser>(Form(Prop("DST ")), {"ca", "dm"}), "\"DST\"|") << "no sound";
    EXPECT_EQ(Values<DSDIFFParser>(Form(Prop("DST ") + Dsd()), {"ca", "dm"}), "\"DSD\"|1000")
        << "the sound that is there counts";
}

TEST(DSDIFFParser, TextsAreThoseOfTheTagThenOfTheChunks) {
    EXPECT_EQ(Texts(Form(Prop() + Dsd() + Diin())), "\"Noted\"|\"Noter\"");
    EXPECT_EQ(Texts(Form(Diin() + Prop() + Dsd())), "\"Noted\"|\"Noter\"");
    for (const char* const name : {"ID3 ", "id3 "}) {
        const std::string tag = LongChunk(name, ID3(3, 0, Frame23("TIT2", "\0Tagged"s)));
        EXPECT_EQ(Texts(Form(Prop() + Dsd() + Diin() + tag)), "\"Tagged\"|\"Noter\"");
        EXPECT_EQ(Texts(Form(Prop() + Dsd() + tag + Diin())), "\"Tagged\"|\"Noter\"");
    }
    const auto noted = [](const std::string& aChunks) {
        return Texts(Form(Prop() + Dsd() + LongChunk("DIIN", aChunks)));
    };
    EXPECT_EQ(noted(Text("DITI", "Gr\xFC\xDF") + Text("DIAR", "Odd")), "\"Gr\xC3\xBC\xC3\x9F\"|\"Odd\"");
    EXPECT_EQ(noted(LongChunk("DITI", Big(UINT32_MAX, 4) + "lost") + Text("DIAR", "Me")), "|\"Me\"");
    EXPECT_EQ(noted(LongChunk("DITI", Big(2, 4) + "no more")), "\"no\"|");
    EXPECT_EQ(noted(LongChunk("DITI", "123")), "|");
}

TEST(DSDIFFParser, WhatIsNotOneIsRefused) {
    EXPECT_EQ(Refusal("DSD ...."), "DSDIFFParser: malformed: begins with 44534420");
    EXPECT_EQ(Refusal(Form(Prop(), "8SVX")), "DSDIFFParser: unsupported: FRM8 of the kind \"8SVX\"");
    const char* const cut = "DSDIFFParser: malformed: ends before the description of the sound";
    EXPECT_EQ(Refusal(Form(Dsd())), cut);
    EXPECT_EQ(Refusal(Form(LongChunk("PROP", "TXT " + Prop().substr(16)) + Dsd())), cut);
    EXPECT_EQ(Refusal(Form(Prop("DSD ", 0) + Dsd())), cut);
    EXPECT_EQ(Refusal(Form(Prop("DSD ", 2824, 0) + Dsd())), cut);
}

TEST(DSDIFFParser, FileOfGigabytesCostsNoMoreThanASmallOne) {
    for (const std::uint64_t sound : {std::uint64_t{20000}, std::uint64_t{8} << 30}) {
        const std::string head = Form(Prop() + "DSD " + Big(sound, 8));
        const std::string tag = LongChunk("ID3 ", TagWithCover());
        SparseStream stream(head.size() + sound + tag.size(), {{0, head}, {head.size() + sound, tag}});
        EXPECT_EQ(SparseValue<DSDIFFParser>(stream, "title"), "\"Tagged\"");
        EXPECT_EQ(stream.mReads, 2U);
        EXPECT_LE(stream.mBytes, 16384U);
    }
}

TEST(DSDIFFParser, SoManyChunksAreReadAndNoMore) {
    const auto file = [](std::uint32_t aCount) {
        std::string chunks;
        for (std::uint32_t i = 0; i < aCount; ++i) {
            chunks += LongChunk("COMT", "");
        }
        return Form(chunks + Prop() + Dsd());
    };
    // The version, the description and its four, and the sound.
    EXPECT_EQ(Length(file(kDSDIFF_MaxChunks - 7)), "1000|\"header\"");
    EXPECT_EQ(Length(file(kDSDIFF_MaxChunks - 6)), "|");
}
