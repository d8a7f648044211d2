#include "ezFormats/dsf/DSFParser.h"

#include "companions/ezFormats/ChunkBytes.h"
#include "companions/ezFormats/FormatFiles.h"

#include <gtest/gtest.h>

using namespace chunks;
using namespace std::string_literals;

namespace {

constexpr std::size_t kBlock = 4096; // of a channel

/// A file with a second of sound at a thousandth of the usual rate, unless said otherwise.
struct Dsf {
    std::uint32_t mFormat = 0;
    std::uint32_t mChannels = 2;
    std::uint32_t mRate = 2822;
    std::uint32_t mOrder = 1;
    std::uint64_t mSamples = 2822;
    std::uint64_t mDataSize = 2 * kBlock + 12; ///< as it is stated
    std::uint64_t mFormatSize = 52;
    std::size_t mThere = 2 * kBlock; ///< bytes of sound
    std::string mTag;
    std::uint64_t mTagPlace = 0; ///< 0: after the sound, where there is a tag

    std::string Bytes() const {
        const std::string format = Little(1) + Little(mFormat) + Little(2) + Little(mChannels) +
                                   Little(mRate) + Little(mOrder) + Little(mSamples, 8) + Little(kBlock) +
                                   Little(0);
        const std::string chunks = "fmt " + Little(mFormatSize, 8) + format + "data" + Little(mDataSize, 8);
        const std::uint64_t after = 28 + chunks.size() + mThere;
        const std::uint64_t place = mTagPlace != 0 ? mTagPlace : mTag.empty() ? 0 : after;
        return "DSD " + Little(28, 8) + Little(after + mTag.size(), 8) + Little(place, 8) + chunks +
               Sound(mThere) + mTag;
    }
};

Dsf WithTag(const std::string& aTag) {
    Dsf file;
    file.mTag = aTag;
    return file;
}

std::string Length(const Dsf& aFile, const Delivery& aDelivery = Delivery()) {
    return Values<DSFParser>(aFile.Bytes(), {"dm", "md"}, aDelivery);
}
std::string Refusal(const std::string& aBytes) {
    return pictures::Refusal<DSFParser>(aBytes);
}

std::vector<std::string> UsualFiles() {
    Dsf small;
    small.mThere = 300;
    Dsf tagged = WithTag(TagWithCover());
    tagged.mThere = 300;
    Dsf uncounted = tagged;
    uncounted.mSamples = 0;
    uncounted.mDataSize = 312;
    return {small.Bytes(), tagged.Bytes(), uncounted.Bytes()};
}

std::vector<std::string> CostlyFiles() {
    std::string frames;
    for (int i = 0; i < 100; ++i) {
        frames += Frame23("PRIV", Sound(70000)) + Frame23("APIC", Apic(0, Sound(70000)));
    }
    Dsf distant = WithTag(ID3(3, 0, frames));
    distant.mThere = 100000;
    return {distant.Bytes(), WithTag(ID3(3, 0x80, std::string(300000, '\xFF'))).Bytes()};
}

const FormatFiles kFiles("dsf", {16, 256U << 10}, {"ca", "sf", "ac", "bs", "ar"}, UsualFiles, CostlyFiles);

} // namespace

TEST(DSFParser, RecordSaysWhatTheChunksAndTheTagSay) {
    Dsf file = WithTag(TagWithCover());
    file.mRate = 2822400;
    file.mSamples = 30000;
    EXPECT_EQ(pictures::Parsed<DSFParser>(file.Bytes()), "ac=2\n"
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
                                                         "mt=\"audio/x-dsf\"\n"
                                                         "sf=2822400\n"
                                                         "ta=1\n"
                                                         "title=\"Tagged\"\n"
                                                         "creator=\"Tagger\"\n");
}

TEST(DSFParser, LengthIsThatOfTheCountIfThereAreSoManySamples) {
    struct Row {
        std::uint64_t mSamples;
        std::uint64_t mDataSize; ///< stated
        std::size_t mThere;
        const char* mLength;
    };
    constexpr Row kRows[] = {
        {2822, 8204, 8192, "1000|\"header\""}, // filled up to blocks
        {32768, 8204, 8192, "11611|\"header\""},
        {32769, 8204, 8192, "11611|\"constant rate\""}, // more than there are
        {5644, 8204, 100, "141|\"constant rate\""},     // cut
        {397, 8204, 100, "140|\"header\""},
        {0, 8204, 8192, "11611|\"constant rate\""},
        {0, UINT64_MAX, 8192, "11611|\"constant rate\""},
        {2822, UINT64_MAX, 8192, "1000|\"header\""},
        {UINT64_MAX, UINT64_MAX, 8192, "11611|\"constant rate\""},
        {2822, 11, 8192, "|"}, // no sample
        {0, 12, 0, "|"},
    };
    for (const Row& row : kRows) {
        Dsf file;
        file.mSamples = row.mSamples;
        file.mDataSize = row.mDataSize;
        file.mThere = row.mThere;
        EXPECT_EQ(Length(file), row.mLength) << row.mSamples << " " << row.mDataSize;
        // The tag after the sound is none.
        file.mTag = TagWithCover();
        EXPECT_EQ(Length(file), row.mLength) << row.mSamples << " " << row.mDataSize;
    }
}

TEST(DSFParser, OfUnknownSizeTheCountStandsAndTheTagIsNotLookedFor) {
    Delivery unknown;
    unknown.mfSizeKnown = false;
    Dsf file = WithTag(TagWithCover());
    EXPECT_EQ(Values<DSFParser>(file.Bytes(), {"dm", "ar", "title"}, unknown), "1000|5644|");
    file.mSamples = 0;
    EXPECT_EQ(Values<DSFParser>(file.Bytes(), {"dm", "ar", "title"}, unknown), "|5644|");
}

TEST(DSFParser, SampleHasOneBitWhateverTheirOrder) {
    for (const std::uint32_t order : {1U, 8U, 0U}) {
        Dsf file;
        file.mOrder = order;
        file.mRate = 5644800;
        file.mChannels = 6;
        EXPECT_EQ(Values<DSFParser>(file.Bytes(), {"bs", "sf", "ac", "ar"}), "1|5644800|6|33868800");
    }
}

TEST(DSFParser, TagIsReadWhereTheHeadSaysThatItStands) {
    const auto title = [](const Dsf& aFile) { return Values<DSFParser>(aFile.Bytes(), {"title"}); };
    EXPECT_EQ(title(WithTag(TagWithCover())), "\"Tagged\"");
    EXPECT_EQ(title(WithTag("no tag")), "");
    Dsf late = WithTag("more" + TagWithCover());
    EXPECT_EQ(title(late), "");
    late.mTagPlace = 92 + 2 * kBlock + 4;
    EXPECT_EQ(title(late), "\"Tagged\"");
    for (const std::uint64_t place : {std::uint64_t{1}, std::uint64_t{28}, std::uint64_t{92},
                                      std::uint64_t{1} << 40, UINT64_MAX - 1, UINT64_MAX}) {
        late.mTagPlace = place;
        EXPECT_EQ(title(late), "") << place;
    }
    // Of a tag that claims more than there is, what is there.
    EXPECT_EQ(title(WithTag(TagWithCover().replace(6, 4, Syncsafe(1 << 20)))), "\"Tagged\"");
}

TEST(DSFParser, FormatMayBeLongerAndIsThenSteppedOver) {
    Dsf file;
    file.mFormatSize = 60;
    std::string bytes = file.Bytes();
    bytes.insert(80, 8, '\0');
    EXPECT_EQ(Values<DSFParser>(bytes, {"dm", "md"}), "1000|\"header\"");
}

TEST(DSFParser, WhatIsNotOneIsRefused) {
    const std::string file = Dsf().Bytes();
    const auto changed = [&](std::size_t aPlace, const std::string& aBytes) {
        return Refusal(std::string(file).replace(aPlace, aBytes.size(), aBytes));
    };
    EXPECT_EQ(Refusal("FRM8" + file), "DSFParser: malformed: begins with 46524D38");
    EXPECT_EQ(changed(4, "\x1D"), "DSFParser: malformed: begins with 44534420");
    EXPECT_EQ(changed(28, "FMT "), "DSFParser: malformed: ends before the description of the sound");
    EXPECT_EQ(changed(32, Little(51, 8)), "DSFParser: malformed: ends before the description of the sound");
    EXPECT_EQ(changed(32, Little(UINT64_MAX, 8)),
              "DSFParser: malformed: ends before the description of the sound");
    EXPECT_EQ(Refusal(file.substr(0, 79)), "DSFParser: malformed: ends before the description of the sound");
    EXPECT_EQ(Values<DSFParser>(file.substr(0, 80), {"sf", "dm"}), "2822|") << "without any sound";
    Dsf wrong;
    wrong.mFormat = 1;
    EXPECT_EQ(Refusal(wrong.Bytes()), "DSFParser: unsupported: format 1");
    wrong = Dsf();
    wrong.mChannels = 0;
    EXPECT_EQ(Refusal(wrong.Bytes()), "DSFParser: malformed: 0 channels at 2822 Hz");
    wrong.mChannels = 65536;
    EXPECT_EQ(Refusal(wrong.Bytes()), "DSFParser: malformed: 65536 channels at 2822 Hz");
    wrong.mChannels = 2;
    wrong.mRate = 0;
    EXPECT_EQ(Refusal(wrong.Bytes()), "DSFParser: malformed: 2 channels at 0 Hz");
}

TEST(DSFParser, FileOfGigabytesCostsNoMoreThanASmallOne) {
    for (const std::uint64_t sound : {std::uint64_t{20480}, std::uint64_t{8} << 30}) {
        Dsf file;
        file.mThere = 0;
        file.mTagPlace = 92 + sound;
        file.mDataSize = 12 + sound;
        const std::string tag = TagWithCover() + std::string(9000, '\0');
        SparseStream stream(92 + sound + tag.size(), {{0, file.Bytes()}, {92 + sound, tag}});
        EXPECT_EQ(SparseValue<DSFParser>(stream, "title"), "\"Tagged\"");
        EXPECT_EQ(stream.mReads, 2U);
        EXPECT_LE(stream.mBytes, 16384U);
    }
}
