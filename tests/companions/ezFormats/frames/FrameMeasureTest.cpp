#include "companions/ezFormats/PictureBytes.h"
#include "companions/ezFormats/SparseStream.h"
#include "companions/ezFormats/adts/ADTSBytes.h"

#include "ezFormats/adts/ADTSParser.h"
#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/frames/CodedFrames.h"
#include "ezFormats/frames/FrameLimits.h"
#include "ezFormats/frames/FrameMeasure.h"

#include "support/AwkwardStream.h"

#include "support/Id3Bytes.h"
#include "support/TailBytes.h"

#include <gtest/gtest.h>

// How the length of a file is told that is nothing but frames: of a format of our own, and with ADTS for what
// a whole parse costs.

namespace {

using adts::Frame;
using adts::Frames;
using adts::Varying;

/// "#", a size in two bytes, and a kind: capital letters for frames of 100 samples, small ones for parts of
/// the frame before. Every digit is a frame of a stated rate of so many times 8000 bits a second.
class ToyFrames : public FrameReader {
public:
    ToyFrames() : FrameReader({4, 4, 60000, 6, 2, true}) {}

    bool Read(const unsigned char* aBytes, CodedFrame* aFrame) const override {
        const bool fPart = aBytes[3] >= 'a';
        const bool fStated = aBytes[3] <= '9';
        aFrame->mSize = std::uint32_t{aBytes[1]} << 8 | aBytes[2];
        aFrame->mSamples = fPart ? 0 : 100;
        aFrame->mSamplingRate = 1000;
        aFrame->mChannels = 1;
        aFrame->mBitRate = fStated ? 8000U * (aBytes[3] - '0') : 0;
        aFrame->mKind = fStated ? '0' : aBytes[3] & 0xDFU;
        return aBytes[0] == '#';
    }
};

std::string Toy(std::size_t aSize, char aKind = 'A') {
    return "#" + Big(aSize, 2) + aKind + std::string(aSize - 4, '.');
}
std::string Times(unsigned aCount, const std::string& aBytes) {
    std::string all;
    for (unsigned i = 0; i < aCount; ++i) {
        all += aBytes;
    }
    return all;
}

/// "samples bound method bit-rate", or the number of frames in a row where they are too few.
std::string Measured(const std::string& aBytes, AwkwardStream::Costs* aCosts = nullptr) {
    AwkwardStream stream(aBytes, Delivery());
    MediaBytes bytes(stream, kFrames_MaxReads, kFrames_MaxBytes);
    const ToyFrames toy;
    CodedFrames frames(bytes, toy);
    if (!frames.Find(0, true) || frames.GetCount() < kFrames_ChainLength) {
        return std::to_string(frames.GetCount());
    }
    FrameMeasure measure(bytes, frames);
    measure.LookAtStart();
    measure.Finish(aBytes.size(), false);
    SoundFacts sound;
    measure.Tell(sound);
    if (aCosts != nullptr) {
        *aCosts = stream.GetCosts();
    }
    return std::to_string(sound.mSamples) + " " + std::to_string(sound.mBoundSamples) + " " +
           sound.mDurationMethod + " " + std::to_string(sound.mBitRate);
}

std::string Length(const std::string& aBytes) {
    const std::string record = pictures::Parsed<ADTSParser>(aBytes);
    return pictures::ValueOf(record, "dm") + " " + pictures::ValueOf(record, "md");
}

} // namespace

TEST(CodedFrames, StartIsAChainOfFourOrASearchedOneOfMore) {
    struct Row {
        std::string mBytes;
        const char* mMeasured;
    };
    const std::string junk = std::string(5000, 'j');
    const Row kRows[] = {
        {Toy(50) + Toy(60) + Toy(70) + Toy(80), "400 0 counted 0"},
        {Toy(50) + Toy(60) + Toy(70), "3"},                // a short file: its parser decides
        {Toy(50) + Toy(60) + Toy(70) + Toy(80, 'B'), "3"}, // another stream
        {junk + Times(6, Toy(50)), "600 0 counted 4000"},
        {junk + Times(5, Toy(50)), "0"},
        {std::string(kFrames_SearchSize, 'j') + Times(6, Toy(50)), "0"},
        {Times(4, Toy(50, 'a')), "0"}, // parts of no frame
        {"", "0"},
        {"#", "0"},
        {"#" + Big(0, 2) + "A", "0"},
    };
    for (const Row& row : kRows) {
        EXPECT_EQ(Measured(row.mBytes), row.mMeasured) << row.mBytes.substr(0, 8);
    }
}

TEST(CodedFrames, PartsBelongToTheFrameBeforeThem) {
    const std::string unit = Toy(50) + Toy(30, 'a') + Toy(20, 'a');
    EXPECT_EQ(Measured(Times(10, unit)), "1000 0 counted 8000"); // 100 bytes in a tenth of a second
    EXPECT_EQ(Measured(Times(10, Toy(50) + Toy(30, 'b'))), "1"); // parts of another stream
    EXPECT_EQ(Measured(Toy(9, 'a') + Times(10, unit)), "1000 0 counted 8000"); // a start that was cut off
    // Never more than a stream has.
    EXPECT_EQ(Measured(Times(4, Toy(50) + Times(kFrames_MaxParts, Toy(4, 'a')))), "400 0 counted 24480");
    EXPECT_EQ(Measured(Times(4, Toy(50) + Times(kFrames_MaxParts + 1, Toy(4, 'a')))), "1");
}

TEST(FrameMeasure, OneSizeAtThreePlacesIsAConstantRate) {
    EXPECT_EQ(Measured(Times(1000, Toy(1000))), "100000 0 constant rate 80000");
    EXPECT_EQ(Measured(Times(1000, Toy(600) + Toy(400, 'a'))), "100000 0 constant rate 80000");
    // The last one is cut: what is there of it counts.
    EXPECT_EQ(Measured(Times(999, Toy(1000)) + Toy(1000).substr(0, 500)), "99950 0 constant rate 80000");
    // Stated rates are of one stream where sizes differ: a tenth of a second of 8000 bits is 100 bytes.
    EXPECT_EQ(Measured(Times(1000, Toy(90, '1') + Toy(110, '1'))), "200000 0 constant rate 8000");
}

TEST(FrameMeasure, OneSizeAtTheStartAloneIsNone) {
    for (const std::string& file : {Times(300, Toy(1000)) + Times(300, Toy(500)),
                                    Times(200, Toy(1000)) + Times(200, Toy(500)) + Times(200, Toy(1000)),
                                    Times(2000, Toy(100, '1')) + Times(500, Toy(500, '5'))}) {
        EXPECT_NE(Measured(file).find(" estimate: "), std::string::npos) << Measured(file);
    }
}

TEST(FrameMeasure, ShortSoundOfAVaryingRateIsCounted) {
    const std::string pair = Toy(900) + Toy(1100);
    EXPECT_EQ(Measured(Times(65, pair)), "13000 0 counted 0"); // 130000 of 131072 bytes
    EXPECT_EQ(Measured(Times(30, pair) + std::string(3000, 'g') + Times(30, pair)), "12000 0 counted 0");
    EXPECT_NE(Measured(Times(66, pair)).find(" estimate: "), std::string::npos);
}

TEST(FrameMeasure, LongSoundIsTheMeanOfEightPlacesAndNeverShort) {
    struct Row {
        std::string mBytes;
        std::uint64_t mSamples; ///< that there are
        std::uint64_t mLongest; ///< that may be told
    };
    const std::string music = Times(20, Toy(700) + Toy(1300) + Toy(1000));
    const std::string loud = Times(20, Toy(1400) + Toy(2600) + Toy(2000));
    const Row kRows[] = {
        {Times(20, music), 120000, 125000},
        {Times(20, music + loud), 240000, 320000},
        {Times(12, music) + Times(12, loud), 144000, 190000},
        // Of silence, however long, stands nothing but itself.
        {Times(900, Toy(17)) + Times(20, music), 210000, 216000},
        {Times(5000, Toy(17)) + Times(20, music), 620000, 626000},
        {Times(20, music) + Times(900, Toy(17)), 210000, 225000},
    };
    for (const Row& row : kRows) {
        AwkwardStream::Costs costs;
        const std::string measured = Measured(row.mBytes, &costs);
        std::uint64_t samples = 0;
        std::uint64_t bound = 0;
        std::istringstream(measured) >> samples >> bound;
        EXPECT_GE(samples, row.mSamples) << measured;
        EXPECT_LE(samples, row.mLongest) << measured;
        // To a thousandth: a place begins and ends with a whole frame.
        EXPECT_LE(samples - bound, row.mSamples + row.mSamples / 1000) << measured;
        EXPECT_NE(measured.find(" estimate: size and mean rate of places 0"), std::string::npos) << measured;
        EXPECT_LE(costs.mReads, 16U);
    }
}

TEST(FrameMeasure, LargeFramesHaveLargerPlaces) {
    EXPECT_EQ(Measured(Times(60, Toy(15000))), "6000 0 constant rate 1200000");
}

TEST(FrameMeasure, WholeParseCostsWhatIsUsual) {
    AwkwardStream::Costs costs;
    pictures::Parsed<ADTSParser>(Frames(4000, 371), {}, &costs);
    EXPECT_LE(costs.mReads, 4U);
    EXPECT_LE(costs.mBytes, 56U << 10);
    pictures::Parsed<ADTSParser>(Varying(4000, 250), {}, &costs);
    EXPECT_LE(costs.mReads, 9U);
    EXPECT_LE(costs.mBytes, 144U << 10);
}

TEST(FrameMeasure, TagsAreNoSound) {
    const std::string sound = Frames(1000, 371);
    const std::string tagged = APE2(APEItem("Title", "T")) + sound +
                               APE2(APEItem("Artist", std::string(900, 'x'))) + ID3v1("t", "", "", 0);
    EXPECT_EQ(Length(sound), "23219 \"constant rate\"");
    EXPECT_EQ(Length(tagged), Length(sound));
}

TEST(FrameMeasure, SizeOfTerabytesCostsNoMore) {
    const std::string start = Frames(100, 371);
    SparseStream stream(std::uint64_t{1} << 42,
                        {{0, start}, {(std::uint64_t{1} << 42) - start.size(), start}});
    ADTSParser parser;
    EXPECT_NE(Record(parser.Parse(stream)), nullptr);
    EXPECT_LE(stream.mReads, 32U);
    EXPECT_LE(stream.mBytes, kFrames_MaxBytes);
}
