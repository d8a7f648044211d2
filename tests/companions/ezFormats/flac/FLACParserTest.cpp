#include "companions/ezFormats/FormatFiles.h"
#include "companions/ezFormats/PictureBytes.h"
#include "companions/ezFormats/SparseStream.h"
#include "companions/ezFormats/flac/FLACBytes.h"

#include "ezFormats/flac/FLACParser.h"

#include "support/Id3Bytes.h"
#include "support/Samples.h"
#include "support/TailBytes.h"

#include <gtest/gtest.h>

// FLAC files.

namespace {

using flac::File;
using flac::Frames;
using flac::Stream;
using namespace std::string_literals;

const std::string kJpeg = "\xFF\xD8\xFF\xE0 and so on";
const std::string kTexts = FlacBlock(4, Comments({"TITLE=Title", "Artist=One", "artist=Two"}));

/// Bytes of sound that a second of a stream can be.
const std::string kSecond(90000, 's');

std::string Parsed(const std::string& aBytes, AwkwardStream::Costs* aCosts = nullptr) {
    return pictures::Parsed<FLACParser>(aBytes, {}, aCosts);
}
std::string Value(const std::string& aBytes, const char* aKey) {
    return pictures::ValueOf(Parsed(aBytes), aKey);
}
/// "milliseconds method".
std::string Length(const std::string& aBytes) {
    return Value(aBytes, "dm") + " " + Value(aBytes, "md");
}

std::vector<std::string> UsualFiles() {
    Stream open;
    open.mSamples = 0;
    return {File(Stream(), kTexts + FlacBlock(6, PictureOfFlac(3, kJpeg)), std::string(3000, 's')),
            File(open, "", Frames(0, 12)),
            ID3(3, 0, Frame23("TPE1", "\0A"s)) + File(open, "", Frames(0, 3)) + ID3v1("t", "", "", 17)};
}

std::vector<std::string> CostlyFiles() {
    const std::string far = FlacBlock(6, std::string(70000, 'p'));
    std::string pictures;
    std::string comments;
    for (unsigned i = 0; i < 20; ++i) {
        pictures += far;
        comments += FlacBlock(4, Comments({std::string(9000, 'c'), "a=" + std::string(9000, 'b')}));
    }
    Stream open;
    open.mSamples = 0;
    std::string sync;
    for (unsigned i = 0; i < 30000; ++i) {
        sync += Big(0xFFF8C918, 4);
    }
    return {File(open, pictures, sync), File(open, comments + pictures, sync),
            ID3(3, 0, Frame23("PRIV", std::string(70000, 'p'))) +
                File(open, pictures, std::string(200000, '\xFF'))};
}

const FormatFiles kFiles("flac", {16, 1U << 20}, {"ca", "ac", "ta"}, UsualFiles, CostlyFiles);

} // namespace

TEST(FLACParser, RecordSaysWhatTheBlocksSay) {
    EXPECT_EQ(Parsed(File(Stream(), kTexts + FlacBlock(6, PictureOfFlac(3, kJpeg)), kSecond)),
              "ac=2\nar=4294967295\nas=\"One\\nTwo\"\nbs=16\nca=\"FLAC\"\ncm=\"image/jpeg\"\n"
              "cn=\"item.audioItem\"\ncs=14\ndl=\"DLNA.ORG_OP=01\"\ndm=1000\ndu=1\nea=720000\n"
              "md=\"header\"\nmt=\"audio/flac\"\nsf=44100\nta=1\ntitle=\"Title\"\ncreator=\"One, Two\"\n");
}

TEST(FLACParser, WhatIsNotOneIsRefused) {
    const auto refusal = pictures::Refusal<FLACParser>;
    EXPECT_EQ(refusal("fLaD" + std::string(50, '\0'), {}), "FLACParser: malformed: begins with 664C6144");
    EXPECT_EQ(refusal("fLaC" + FlacBlock(1, "p", true), {}), "FLACParser: malformed: ends before STREAMINFO");
    EXPECT_EQ(refusal("fLaC" + FlacBlock(0, std::string(33, 's')).substr(0, 36), {}),
              "FLACParser: malformed: ends before STREAMINFO");
    EXPECT_EQ(refusal("fLaC" + FlacBlock(0, "", true), {}), "FLACParser: malformed: ends before STREAMINFO");
    // A type that no block has.
    EXPECT_EQ(refusal("fLaC" + FlacBlock(127, "") + FlacBlock(0, Stream().Info()), {}),
              "FLACParser: malformed: ends before STREAMINFO");
}

TEST(FLACParser, EndThatCannotBeReadRefusesTheFile) {
    Stream open;
    open.mSamples = 0;
    const std::string file = File(open, kTexts, Frames(0, 1000, 200));
    Delivery failing;
    failing.mFailingOffset = file.size() - 100;
    EXPECT_EQ(pictures::Refusal<FLACParser>(file, failing),
              "FLACParser: read error: before all that tells the length");
}

TEST(FLACParser, OfTwoStreamInfosTheFirstCountsWhereverItStands) {
    Stream second;
    second.mRate = 48000;
    const std::string blocks = FlacBlock(0, Stream().Info()) + FlacBlock(0, second.Info(), true);
    EXPECT_EQ(Value("fLaC" + kTexts + blocks + kSecond, "sf"), "44100");
    EXPECT_EQ(Value("fLaC" + kTexts + blocks + kSecond, "title"), "\"Title\"");
}

TEST(FLACParser, MissingCountIsThatOfTheLastFrame) {
    Stream open;
    open.mSamples = 0;
    EXPECT_EQ(Length(File(open, "", Frames(0, 100))), "9287 \"last frame\"");
    EXPECT_EQ(Length(File(open, "", Frames(0, 10000, 2000))), "928798 \"last frame\""); // the last 64 KiB
    // The last block is shorter, and what follows it is no frame.
    const std::string last = flac::FrameHeader(100, 2, 0xFFF87918, Big(99, 2));
    EXPECT_EQ(Length(File(open, "", Frames(0, 100) + last + "s")), "9290 \"last frame\"");
    EXPECT_EQ(Length(File(open, "", Frames(0, 100) + last + "s" + ID3v1("t", "", "", 1))),
              "9290 \"last frame\"");
    // Blocks of any size state samples.
    const std::string variable = flac::FrameHeader(44000, 3, 0xFFF97918, Big(99, 2));
    EXPECT_EQ(Length(File(open, "", variable + "s")), "1000 \"last frame\"");
    EXPECT_EQ(Length(File(open, "", "no frame")), " ");
}

TEST(FLACParser, WhatLooksLikeAFrameAmongFramesDoesNotCount) {
    Stream open;
    open.mSamples = 0;
    const std::string odd = flac::FrameHeader(90000, 3);
    EXPECT_EQ(Length(File(open, "", Frames(0, 50) + odd + "x" + Frames(50, 50) + odd)),
              "9287 \"last frame\"");
}

TEST(FLACParser, CountThatTheSizeContradictsIsThatOfTheLastFrame) {
    // Two channels of 16 bits at 44100 Hz are 176400 bytes a second, and 4096 samples 16384.
    struct Row {
        std::uint64_t mStated; ///< samples
        std::size_t mBytes;    ///< of each of the ten frames
        const char* mLength;
    };
    constexpr Row kRows[] = {
        {40960, 10000, "928 \"header\""},         // as coders have it
        {40961, 160, "928 \"header\""},           // near silence, but not below a hundredth
        {655360, 10000, "14860 \"header\""},      // a sixteenth of it coded well
        {44100, 100, "928 \"last frame\""},       // silence: the frames agree more or less
        {44100 * 60, 5000, "928 \"last frame\""}, // cut
        {40960000, 10000, "928 \"last frame\""},  // too large
        {4096, 20000, "928 \"last frame\""},      // too small
    };
    for (const Row& row : kRows) {
        Stream stream;
        stream.mSamples = row.mStated;
        EXPECT_EQ(Length(File(stream, "", Frames(0, 10, row.mBytes))), row.mLength) << row.mStated;
    }
    Stream cut;
    cut.mSamples = 44100 * 600;
    EXPECT_EQ(Length(File(cut, "", "no frame")), "600000 \"header\"");
}

TEST(FLACParser, BitsThatNoSampleHasAreThoseOfTheFrames) {
    Stream stream;
    stream.mBits = 1; // as of a block of zeros; the least are 4
    EXPECT_EQ(Value(File(stream, "", "no frame"), "bs"), "");
    EXPECT_EQ(Value(File(stream, "", Frames(0, 10, 9000)), "bs"), "16");
    stream.mBits = 3;
    EXPECT_EQ(Value(File(stream, "", "no frame"), "bs"), "");
    stream.mBits = 4;
    EXPECT_EQ(Value(File(stream, "", "no frame"), "bs"), "4");
}

TEST(FLACParser, SamplingRateOfNothingIsThatOfTheFrames) {
    Stream open;
    open.mRate = 0;
    EXPECT_EQ(Value(File(open, "", Frames(0, 10, 9000)), "sf"), "44100");
    EXPECT_EQ(Length(File(open, "", Frames(0, 10, 9000))), "1000 \"header\"");
    EXPECT_EQ(Value(File(open, "", "no frame"), "sf"), "");
    EXPECT_EQ(Length(File(open, "", "no frame")), " ");
}

TEST(FLACParser, CountLongerThanAnyRecordingTellsNoLength) {
    Stream stream;
    stream.mRate = 1;
    stream.mSamples = std::uint64_t{366} * 24 * 60 * 60;
    EXPECT_EQ(Value(File(stream, "", "no frame"), "du"), "31622400");
    ++stream.mSamples;
    EXPECT_EQ(Value(File(stream, "", "no frame"), "du"), "");
}

TEST(FLACParser, TextsAndCoverComeFromCommentsThenTagsBeforeAndAfter) {
    const std::string tag = ID3(3, 0,
                                Frame23("TIT2", "\0Other"s) + Frame23("TALB", "\0Album"s) +
                                    Frame23("APIC", "\0image/png\0\3d\0\x89PNG\r\n\x1A\nours"s));
    const std::string end = ID3v1("Late", "Late artist", "Late album", 17);
    const auto texts = [](const std::string& aBytes) {
        return Value(aBytes, "title") + Value(aBytes, "creator") + Value(aBytes, "album") +
               Value(aBytes, "genre") + Value(aBytes, "cm");
    };
    const std::string picture = FlacBlock(6, PictureOfFlac(3, kJpeg));
    EXPECT_EQ(texts(tag + File(Stream(), kTexts + picture, kSecond) + end),
              "\"Title\"\"One, Two\"\"Album\"\"image/jpeg\"");
    EXPECT_EQ(texts(tag + File(Stream(), "", kSecond) + end), "\"Other\"\"Album\"\"image/png\"");
    EXPECT_EQ(texts(File(Stream(), "", kSecond) + end), "\"Late\"\"Late artist\"\"Late album\"\"Rock\"");
    // One that ends nowhere takes only its header with it.
    EXPECT_EQ(texts("ID3\3\0\0\x7F\x7F\x7F\x7F"s + File(Stream(), kTexts, kSecond)), "\"Title\"\"One, Two\"");
}

TEST(FLACParser, CoverIsThePictureOfTheFront) {
    const auto cover = [](const std::string& aBlocks) {
        const std::string record = Parsed(File(Stream(), aBlocks, kSecond));
        return pictures::ValueOf(record, "cm") + pictures::ValueOf(record, "cs");
    };
    const std::string back = FlacBlock(6, PictureOfFlac(4, "\x89PNG\r\n\x1A\n back", "image/png"));
    const std::string icon = FlacBlock(6, PictureOfFlac(1, "GIF89a"));
    const std::string front = FlacBlock(6, PictureOfFlac(3, kJpeg));
    EXPECT_EQ(cover(icon + back + front), "\"image/jpeg\"14");
    EXPECT_EQ(cover(icon + back), "\"image/png\"13");
    EXPECT_EQ(cover(icon), "");
    EXPECT_EQ(cover(FlacBlock(6, PictureOfFlac(3, "http://h/x", "-->"))), "");
    EXPECT_EQ(cover(FlacBlock(6, PictureOfFlac(3, kJpeg).substr(0, 50)) + back), "\"image/png\"13");
    // In a comment, as Ogg has it, and in its older form.
    EXPECT_EQ(cover(FlacBlock(4, Comments({PictureComment(PictureOfFlac(3, kJpeg))}))), "\"image/jpeg\"14");
    EXPECT_EQ(cover(FlacBlock(4, Comments({"COVERART=" + Base64(kJpeg)}))), "\"image/jpeg\"14");
}

TEST(FLACParser, UsualFileCostsTheStartAndAPictureAReadMore) {
    const auto costs = [](const std::string& aFile) {
        AwkwardStream::Costs counted;
        EXPECT_NE(Parsed(aFile, &counted), "null\n");
        return std::to_string(counted.mReads) + " " + std::to_string(counted.mBytes);
    };
    EXPECT_EQ(costs(File(Stream(), kTexts, kSecond)), "1 8192");
    EXPECT_EQ(costs(File(Stream(), "", kSecond)), "2 24576") << "no title: tags may stand at the end";
    const std::string picture = FlacBlock(6, PictureOfFlac(3, kJpeg + std::string(1U << 20, 'p')));
    EXPECT_EQ(costs(File(Stream(), kTexts + picture, kSecond)), "2 12288");
    EXPECT_EQ(costs(ID3(3, 0, Frame23("PRIV", std::string(300000, 'p'))) + File(Stream(), kTexts, kSecond)),
              "2 16384");
    Stream open;
    open.mSamples = 0;
    EXPECT_EQ(costs(File(open, kTexts, Frames(0, 10000, 2000))), "2 73728");
}

TEST(FLACParser, FourGiBCostNoMore) {
    Stream stream;
    stream.mSamples = std::uint64_t{1} << 31;
    SparseStream bytes((std::uint64_t{4} << 30) + 5, {{0, File(stream, kTexts, "")}});
    FLACParser parser;
    const Record record(parser.Parse(bytes));
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(record->GetUInt32("du", 0), 48695U);
    EXPECT_EQ(bytes.mReads, 1U);
}

TEST(FLACParser, BlocksAreCounted) {
    std::string blocks;
    for (unsigned i = 0; i < 126; ++i) {
        blocks += FlacBlock(1, "p");
    }
    Stream open;
    open.mSamples = 0;
    EXPECT_EQ(Length(File(open, blocks, Frames(0, 10))), "928 \"last frame\""); // 128 of them
    EXPECT_EQ(Length(File(open, blocks + FlacBlock(1, "p"), Frames(0, 10))), " ");
}

TEST(FLACParser, SaysWhatItMayAnnounce) {
    EXPECT_EQ(FLACParser().GetDLNAInfo(), "audio/flac:*");
    EXPECT_EQ(FLACParser().GetType(), "flac");
}
