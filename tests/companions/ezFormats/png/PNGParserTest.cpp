#include "ezFormats/png/PNGParser.h"

#include "companions/ezFormats/FormatFiles.h"
#include "companions/ezFormats/PictureBytes.h"

#include "support/Samples.h"

#include <gtest/gtest.h>

using namespace pictures;

namespace {

std::string Parsed(const std::string& aBytes) {
    return pictures::Parsed<PNGParser>(aBytes);
}

std::string Refusal(const std::string& aBytes, const Delivery& aDelivery = Delivery()) {
    return pictures::Refusal<PNGParser>(aBytes, aDelivery);
}

/// A chunk that a parser steps over.
std::string Padding(std::size_t aSize) {
    return Chunk("prIv", std::string(aSize, '-'));
}

/// A directory of 65535 entries that the chunk is long enough for.
const std::string kEntries = Chunk("eXIf", "MM" + Big(42, 2) + Big(8, 4) + Big(0xFFFF, 2) +
                                               std::string(std::size_t{12} * 0xFFFF, 'e'));

std::vector<std::string> UsualFiles() {
    return {ReadSample("pictures/harbour.png"), PNG({}, Chunk("eXIf", Tiff(6)) + Padding(3)), PNG(),
            PNG({}, Padding(9000)), PNG({}, Padding(9000) + Chunk("eXIf", Tiff(3)) + Padding(9000))};
}

std::vector<std::string> CostlyFiles() {
    std::string distant;
    for (int i = 0; i < 100; ++i) {
        distant += Padding(16U << 10);
    }
    return {PNG({}, distant), PNG({}, kEntries + distant)};
}

const FormatFiles kFiles("png", {64, 384U << 10}, {"wi", "he", "cd", "cr", "pr"}, UsualFiles, CostlyFiles);

} // namespace

TEST(PNGParser, RecordSaysWhatTheHeaderSays) {
    EXPECT_EQ(Parsed(ReadSample("pictures/harbour.png")),
              "cd=8\n"
              "cn=\"item.imageItem\"\n"
              "cr=\"RGB\"\n"
              "dl=\"DLNA.ORG_PN=PNG_LRG;DLNA.ORG_OP=01;DLNA.ORG_FLAGS=00D00000000000000000000000000000\"\n"
              "he=240\n"
              "mt=\"image/png\"\n"
              "pr=\"plain\"\n"
              "wi=320\n");
}

TEST(PNGParser, HeaderThatNoPNGHasIsRefusedAndTheLogNamesTheValue) {
    const auto refusal = [](const char* aValues, std::uint32_t PNGHeader::*aSide, std::uint32_t aValue) {
        PNGHeader header;
        header.*aSide = aValue;
        EXPECT_EQ(Refusal(PNG(header)), std::string("PNGParser: malformed: ") + aValues);
    };
    refusal("width 0", &PNGHeader::mWidth, 0);
    refusal("width 2147483648", &PNGHeader::mWidth, 0x80000000);
    refusal("height 0", &PNGHeader::mHeight, 0);
    refusal("height 4294967295", &PNGHeader::mHeight, 0xFFFFFFFF);
    refusal("bit depth 0", &PNGHeader::mBitDepth, 0);
    refusal("bit depth 17", &PNGHeader::mBitDepth, 17);
    refusal("colour type 7", &PNGHeader::mColourType, 7);
    refusal("compression 1", &PNGHeader::mCompression, 1);
    refusal("filter 1", &PNGHeader::mFilter, 1);
    refusal("interlacing 2", &PNGHeader::mInterlacing, 2);
    refusal("bit depth 4 with colour type 2", &PNGHeader::mBitDepth, 4);
}

TEST(PNGParser, AMediaThatEndsWithinItsHeaderIsNotAskedForEachByteOfIt) {
    const std::string expected = "PNGParser: malformed: ends before the end of the header";
    for (const std::size_t length : {std::size_t{12}, std::size_t{14}, std::size_t{16}, std::size_t{20}}) {
        const std::string cut = PNG().substr(0, length); // 16: up to "IHDR"
        for (const bool fSizeKnown : {true, false}) {
            Delivery delivery;
            delivery.mfSizeKnown = fSizeKnown;
            AwkwardStream::Costs costs;
            EXPECT_EQ(pictures::Parsed<PNGParser>(cut, delivery, &costs), "null\n");
            // The start and its end, which stream and parser both look for, and once what is after it.
            EXPECT_LE(costs.mReads, 4U) << length;
            EXPECT_EQ(Refusal(cut, delivery), expected) << length << fSizeKnown;
        }
    }
}

TEST(PNGParser, HeaderIsBelievedOnlyWithItsCheckSum) {
    std::string damaged = PNG();
    damaged[19] = '\x41'; // the last byte of the width, 320: now 321
    EXPECT_EQ(Refusal(damaged), "PNGParser: malformed: header has check sum 118D4102, but states FE4F2A3C");
}

TEST(PNGParser, SampleOfAConformanceTestIsRead) {
    const std::string record = Parsed(ReadSample("conformance/B-PNG_L-1.png"));
    EXPECT_EQ(ValueOf(record, "wi"), "640");
    EXPECT_EQ(ValueOf(record, "he"), "480");
    EXPECT_EQ(ValueOf(record, "dl"),
              "\"DLNA.ORG_PN=PNG_LRG;DLNA.ORG_OP=01;DLNA.ORG_FLAGS=00D00000000000000000000000000000\"");
}

TEST(PNGParser, ColourTypesHaveTheirNamesAndTheirBitDepthsAlone) {
    const std::vector<std::pair<const char*, std::vector<unsigned>>> types = {
        {"\"grey\"", {1, 2, 4, 8, 16}}, {"", {}}, {"\"RGB\"", {8, 16}}, {"\"palette\"", {1, 2, 4, 8}},
        {"\"grey-alpha\"", {8, 16}},    {"", {}}, {"\"RGBA\"", {8, 16}}};
    for (unsigned type = 0; type < types.size(); ++type) {
        for (unsigned depth = 1; depth <= 16; ++depth) {
            PNGHeader header;
            header.mColourType = type;
            header.mBitDepth = depth;
            const std::vector<unsigned>& depths = types[type].second;
            const bool fAllowed = std::find(depths.begin(), depths.end(), depth) != depths.end();
            const std::string record = Parsed(PNG(header));
            EXPECT_EQ(ValueOf(record, "cr"), fAllowed ? types[type].first : "") << type << " " << depth;
            EXPECT_EQ(ValueOf(record, "cd"), fAllowed ? std::to_string(depth) : "") << type << " " << depth;
        }
    }
}

TEST(PNGParser, ProfileIsGivenByBothSidesColoursAndInterlacing) {
    struct Case {
        PNGHeader mHeader;
        bool mfProfile;
    };
    const std::vector<Case> cases = {
        {{4096, 4096}, true},   {{4097, 1}, false},   {{1, 4097}, false},   {{1, 1}, true},
        {{9, 9, 16, 0}, true}, // of 16 bits grey alone
        {{9, 9, 16, 2}, false}, {{9, 9, 8, 3}, true}, {{9, 9, 8, 6}, true}, {{9, 9, 8, 2, 0, 0, 1}, false}};
    for (const Case& test : cases) {
        const std::string record = Parsed(PNG(test.mHeader));
        EXPECT_EQ(ValueOf(record, "dl").find("PN=PNG_LRG;") != std::string::npos, test.mfProfile) << record;
        EXPECT_EQ(ValueOf(record, "dl") == "\"DLNA.ORG_OP=01\"", !test.mfProfile) << record;
    }
}

TEST(PNGParser, InterlacedPictureIsCalledSo) {
    PNGHeader header;
    header.mInterlacing = 1;
    EXPECT_EQ(ValueOf(Parsed(PNG(header)), "pr"), "\"interlaced\"");
}

TEST(PNGParser, DateIsThatOfTheExifChunkBeforeThePicture) {
    const std::string exif = Chunk("eXIf", PhotoTiff({{0x9003, "1999:12:31 23:59:58"}, {0x9011, "-05:00"}}));
    EXPECT_EQ(ValueOf(Parsed(PNG({}, exif)), "da"), "\"1999-12-31T23:59:58-05:00\"");
    EXPECT_EQ(ValueOf(Parsed(PNG({}, "", exif)), "da"), "") << "after the picture";
}

TEST(PNGParser, OrientationIsThatOfTheExifChunkBeforeThePicture) {
    for (unsigned orientation = 2; orientation <= 8; ++orientation) {
        for (const bool fLittle : {false, true}) {
            const std::string exif = Chunk("eXIf", Tiff(orientation, fLittle));
            EXPECT_EQ(ValueOf(Parsed(PNG({}, exif)), "ud"), std::to_string(orientation));
            EXPECT_EQ(ValueOf(Parsed(PNG({}, "", exif)), "ud"), "") << "after the picture";
        }
    }
    EXPECT_EQ(ValueOf(Parsed(PNG({}, Chunk("prIv", Tiff(6)))), "ud"), "") << "in another chunk";
    for (const unsigned none : {0U, 1U, 9U, 65535U}) {
        EXPECT_EQ(ValueOf(Parsed(PNG({}, Chunk("eXIf", Tiff(none)))), "ud"), "") << none;
    }
}

TEST(PNGParser, DamagedExifChunkCostsTheOrientationAlone) {
    const std::string whole = Tiff(6);
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const std::string record = Parsed(PNG({}, Chunk("eXIf", whole.substr(0, size))));
        EXPECT_EQ(ValueOf(record, "wi"), "320") << size;
        EXPECT_EQ(ValueOf(record, "ud"), size >= 32 ? "6" : "") << size; // the value's last byte is the 32nd
    }
    const std::string far = "MM" + Big(42, 2) + Big(0xFFFFFFFF, 4);
    EXPECT_EQ(ValueOf(Parsed(PNG({}, Chunk("eXIf", far))), "wi"), "320");
}

TEST(PNGParser, OtherFilesAreRefused) {
    EXPECT_EQ(Refusal("\xFF\xD8\xFF\xE0 a JPEG"), "PNGParser: malformed: begins with FFD8FFE02061204A");
    std::string asText = PNG();
    asText.erase(4, 1); // CRLF became LF on the way
    EXPECT_EQ(Refusal(asText), "PNGParser: malformed: begins with 89504E470A1A0A00");
    const std::string network = "\x8AMNG\r\n\x1A\n" + Chunk("MHDR", std::string(28, '\0'));
    EXPECT_EQ(Refusal(network), "PNGParser: malformed: begins with 8A4D4E470D0A1A0A");
}

TEST(PNGParser, HeaderStandsFirstAndHasItsLength) {
    const std::string header = PNGHeader().Bytes();
    EXPECT_EQ(Refusal(kPNGSignature + Chunk("CgBI", "1234") + Chunk("IHDR", header)),
              "PNGParser: malformed: first chunk is 43674249, of 4 bytes");
    EXPECT_EQ(Refusal(kPNGSignature + Chunk("IHDR", header + "x")),
              "PNGParser: malformed: first chunk is 49484452, of 14 bytes");
    EXPECT_EQ(Refusal(kPNGSignature + Chunk("ihdr", header)),
              "PNGParser: malformed: first chunk is 69686472, of 13 bytes");
}

TEST(PNGParser, HeaderThatIsCutIsRefused) {
    const std::string file = PNG();
    for (std::size_t size = 8; size < 33; ++size) {
        EXPECT_EQ(Refusal(file.substr(0, size)), "PNGParser: malformed: ends before the end of the header");
    }
}

TEST(PNGParser, FileWithoutAPictureIsRefused) {
    const std::string start = kPNGSignature + Chunk("IHDR", PNGHeader().Bytes());
    Delivery unknownSize;
    unknownSize.mfSizeKnown = false;
    for (const std::string& file : {start, start + Chunk("IEND", ""), start + Big(12, 4)}) {
        EXPECT_EQ(Refusal(file), "PNGParser: malformed: ends before the picture");
        EXPECT_EQ(Refusal(file, unknownSize), "PNGParser: malformed: ends before the picture");
    }
    const std::string tooLong = start + Big(0xFFFFFFFF, 4) + "tEXt";
    EXPECT_EQ(Refusal(tooLong), "PNGParser: malformed: ends before the picture");
    EXPECT_EQ(Refusal(tooLong, unknownSize), "PNGParser: read error: before the picture"); // no such place
    EXPECT_EQ(ValueOf(Parsed(start + Big(0xFFFFFFFF, 4) + "IDAT"), "wi"), "320");          // it has begun
}

TEST(PNGParser, ParseCostsOneReadOfTheStart) {
    AwkwardStream::Costs costs;
    pictures::Parsed<PNGParser>(ReadSample("conformance/B-PNG_L-1.png"), {}, &costs);
    EXPECT_EQ(costs.mReads, 1U);
    EXPECT_EQ(costs.mBytes, 8192U);
    EXPECT_EQ(costs.mSeeks, 2U); // the stream goes back to the start itself
}

TEST(PNGParser, LongChunksAreSteppedOverBySeeking) {
    AwkwardStream::Costs costs;
    const std::string file = PNG({}, Padding(1U << 20) + Chunk("eXIf", Tiff(8)) + Padding(1U << 20));
    EXPECT_EQ(ValueOf(pictures::Parsed<PNGParser>(file, {}, &costs), "ud"), "8");
    EXPECT_LE(costs.mReads, 3U);
    EXPECT_LE(costs.mSeeks, 4U);
    EXPECT_LE(costs.mBytes, 16U << 10);
}

TEST(PNGParser, DirectoryOfManyEntriesCostsLittleAndDistantChunksTheBudget) {
    for (const std::string& file : CostlyFiles()) {
        EXPECT_EQ(Refusal(file), "PNGParser: limit: budget used up before the picture");
    }
    AwkwardStream::Costs costs;
    EXPECT_EQ(ValueOf(pictures::Parsed<PNGParser>(PNG({}, kEntries), {}, &costs), "wi"), "320");
    EXPECT_LE(costs.mBytes, 40U << 10);
}

TEST(PNGParser, ChunksBeforeThePictureAreCounted) {
    std::string chunks;
    for (int i = 0; i < 255; ++i) {
        chunks += Chunk("tEXt", "a");
    }
    EXPECT_EQ(ValueOf(Parsed(PNG({}, chunks)), "wi"), "320");
    EXPECT_EQ(Refusal(PNG({}, chunks + Padding(1))),
              "PNGParser: limit: more than 256 chunks before the picture");
}

TEST(PNGParser, SourceThatCannotMoveIsRefusedWhereAChunkIsToBeSteppedOver) {
    Delivery unseekable;
    unseekable.mfSeekable = false;
    EXPECT_EQ(Refusal(UsualFiles().back(), unseekable), "PNGParser: read error: before the picture");
}

TEST(PNGParser, FileThatIsCutIsReadFromTheStartOfItsPictureOnAndADamagedHeaderNever) {
    for (const std::string& whole : {UsualFiles()[0], UsualFiles()[1]}) {
        for (std::size_t at = 0; at < whole.size(); ++at) {
            EXPECT_EQ(Parsed(whole.substr(0, at)) == "null\n", at < whole.find("IDAT") + 4) << at;
        }
        for (std::size_t at = 0; at < 33; ++at) { // the check sum ends there
            for (const int bits : {0x01, 0x80, 0xFF}) {
                std::string flipped = whole;
                flipped[at] = static_cast<char>(flipped[at] ^ bits);
                EXPECT_EQ(Parsed(flipped), "null\n") << at;
            }
        }
    }
}

TEST(PNGParser, SaysWhatItMayAnnounce) {
    EXPECT_EQ(PNGParser().GetDLNAInfo(), "image/png:DLNA.ORG_PN=PNG_LRG,image/png:*");
    EXPECT_EQ(PNGParser().GetType(), "png");
}
