#include "ezFormats/au/AUParser.h"

#include "companions/ezFormats/ChunkBytes.h"
#include "companions/ezFormats/FormatFiles.h"

#include "support/Samples.h"

#include <gtest/gtest.h>

using namespace chunks;

namespace {

/// A head and what follows it.
std::string Au(std::uint64_t aSize, unsigned anEncoding, const std::string& aRest, std::uint32_t aRate = 8000,
               std::uint32_t aChannels = 1, std::uint32_t aStart = 24) {
    return ".snd" + Big(aStart, 4) + Big(aSize, 4) + Big(anEncoding, 4) + Big(aRate, 4) + Big(aChannels, 4) +
           aRest;
}

std::string Length(const std::string& aBytes, const Delivery& aDelivery = Delivery()) {
    return Values<AUParser>(aBytes, {"dm", "md"}, aDelivery);
}
std::string Refusal(const std::string& aBytes) {
    return pictures::Refusal<AUParser>(aBytes);
}

std::vector<std::string> UsualFiles() {
    return {Au(800, 1, Sound(800)), Au(UINT32_MAX, 3, Sound(9000)),
            Au(400, 23, "title=Tide" + Sound(400), 8000, 2, 34)};
}

std::vector<std::string> CostlyFiles() {
    return {Au(90000, 1, Sound(90000)), Au(800, 1, Sound(90000), 8000, 1, 80000)};
}

const FormatFiles kFiles("au", {1, 8U << 10}, {"ca", "ac"}, UsualFiles, CostlyFiles);

} // namespace

TEST(AUParser, RecordSaysWhatTheHeadSays) {
    EXPECT_EQ(pictures::Parsed<AUParser>(ReadSample("formats/ulaw.au")),
              "ac=1\n"
              "ar=64000\n"
              "ca=\"ulaw\"\n"
              "cn=\"item.audioItem\"\n"
              "dl=\"DLNA.ORG_OP=01\"\n"
              "dm=1200\n"
              "du=1\n"
              "md=\"header\"\n"
              "mt=\"audio/basic\"\n"
              "sf=8000\n"
              "ta=1\n"
              "title=\"\303\226d\303\266n \342\200\223 \345\244\234\343\201\256\346\261\275\350\273\212\"\n"
              "creator=\"The Test Tones\"\n"
              "genre=\"Folk\"\n"
              "album=\"Half a Second\"\n");
}

TEST(AUParser, EncodingTellsHowLongASampleIs) {
    const std::vector<std::pair<unsigned, const char*>> encodings = {
        {1, "\"ulaw\"|1500||"},        {2, "\"LPCM\"|1500|8|128000"},
        {3, "\"LPCM\"|750|16|256000"}, {4, "\"LPCM\"|500|24|384000"},
        {5, "\"LPCM\"|375|32|512000"}, {6, "\"PCM-float\"|375|32|"},
        {7, "\"PCM-float\"|187|64|"},  {8, "\"AU-8\"|||"},
        {23, "\"G721\"|3000||"},       {24, "\"G722\"|3000||"},
        {25, "\"G723\"|4000||"},       {26, "\"G723\"|2400||"},
        {27, "\"alaw\"|1500||"},       {UINT32_MAX, "\"AU-4294967295\"|||"}};
    for (const auto& [encoding, facts] : encodings) {
        EXPECT_EQ(Values<AUParser>(Au(24000, encoding, Sound(24000), 8000, 2), {"ca", "dm", "bs", "br"}),
                  facts)
            << encoding;
    }
}

TEST(AUParser, SizeThatCannotBeIsMeasuredByTheFile) {
    EXPECT_EQ(Length(Au(4000, 1, Sound(8000))), "500|\"header\"");
    for (const std::uint64_t size :
         {std::uint64_t{0}, std::uint64_t{8001}, std::uint64_t{0x80000000}, std::uint64_t{UINT32_MAX}}) {
        EXPECT_EQ(Length(Au(size, 1, Sound(8000))), "1000|\"constant rate\"") << size;
    }
    EXPECT_EQ(Length(Au(UINT32_MAX, 1, Sound(8000), 8000, 1, 4024)), "500|\"constant rate\"")
        << "after an annotation";
    EXPECT_EQ(Length(Au(UINT32_MAX, 1, Sound(8000), 8000, 1, 9000)), "|") << "after the file";
    Delivery unknown;
    unknown.mfSizeKnown = false;
    EXPECT_EQ(Length(Au(UINT32_MAX, 1, Sound(8000)), unknown), "|");
    EXPECT_EQ(Length(Au(8000, 1, Sound(8000)), unknown), "1000|\"header\"");
}

TEST(AUParser, TextsAreLinesOfTheAnnotation) {
    const auto texts = [](const std::string& aAnnotation) {
        return Values<AUParser>(Au(UINT32_MAX, 1, aAnnotation + Sound(9), 8000, 1,
                                   static_cast<std::uint32_t>(24 + aAnnotation.size())),
                                {"title", "creator", "dm"});
    };
    EXPECT_EQ(texts("title=Title\nARTIST=One\nartist=Two\nrate=9"), "\"Title\"|\"One, Two\"|1");
    EXPECT_EQ(texts("title=Gr\xFC\xDF" + std::string(4, '\0')), "\"Gr\xC3\xBC\xC3\x9F\"||1");
    EXPECT_EQ(texts("recorded at home"), "||1");
    EXPECT_EQ(texts("\n\n=\n=x\n"), "||1");
    EXPECT_EQ(texts(std::string(kAU_MaxAnnotation - 10, '\n') + "title=Late"), "\"Late\"||1");
    EXPECT_EQ(texts(std::string(kAU_MaxAnnotation, '\n') + "title=Late"), "||1");
    EXPECT_EQ(Values<AUParser>(Au(0, 1, "title=Title", 8000, 1, 99), {"title"}), "") << "after the file";
}

TEST(AUParser, HeadThatNoAUHasIsRefusedAndTheLogNamesTheValue) {
    EXPECT_EQ(Refusal("dns."), "AUParser: malformed: begins with 646E732E");
    EXPECT_EQ(Refusal(Au(0, 1, "").substr(0, 23)), "AUParser: malformed: ends before the end of the head");
    EXPECT_EQ(Refusal(Au(0, 1, "", 8000, 1, 23)), "AUParser: malformed: 1 channels at 8000 Hz, sound at 23");
    EXPECT_EQ(Refusal(Au(0, 1, "", 0)), "AUParser: malformed: 1 channels at 0 Hz, sound at 24");
    EXPECT_EQ(Refusal(Au(0, 1, "", 8000, 0)), "AUParser: malformed: 0 channels at 8000 Hz, sound at 24");
    EXPECT_EQ(Refusal(Au(0, 1, "", 8000, 65536)),
              "AUParser: malformed: 65536 channels at 8000 Hz, sound at 24");
    EXPECT_EQ(Values<AUParser>(Au(UINT32_MAX, 5, "", UINT32_MAX, 65535), {"ac"}), "65535");
}
