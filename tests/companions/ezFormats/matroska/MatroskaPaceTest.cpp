#include "ezFormats/matroska/MatroskaParser.h"

#include "companions/ezFormats/ChunkBytes.h"
#include "companions/ezFormats/FormatFiles.h"
#include "companions/ezFormats/matroska/MatroskaBytes.h"

#include "support/Samples.h"

#include <gtest/gtest.h>

using namespace matroska;
using namespace std::string_literals;
using ebml::Head;
using ebml::Info;
using ebml::Segment;
using ebml::Tracks;

namespace {

const std::string kVideo = Track(1, 1, "V_THEORA", Picture() + Number(0x23E383, 40'000'000));
const std::string kSound = Track(2, 2, "A_AAC", Sound());

/// What is told of a second of these tracks and blocks, with ticks of so many nanoseconds.
std::string Told(const std::string& aTracks, const std::string& aBlocks,
                 const std::vector<const char*>& aKeys, std::uint64_t aTick = 1'000'000) {
    const double ticks = 1e9 / static_cast<double>(aTick);
    return chunks::Values<MatroskaParser>(Head() + Segment(Info(Number(0x2AD7B1, aTick) + Duration(ticks)) +
                                                           Tracks(aTracks) + Cluster(0, aBlocks)),
                                          aKeys);
}

/// The estimated rates of sound and pictures, next to some of the latter.
std::string Rates(const std::string& aBlocks, const std::string& aSound = kSound) {
    return Told(kVideo + aSound, Block(1, 0, std::string(1000, 'v')) + aBlocks, {"ea"});
}

/// A block of sound of so many bytes.
std::string Heard(int aTime, std::size_t aSize) {
    return Block(2, aTime, std::string(aSize, 's'));
}

/// Pictures at these ticks, in this order.
std::string Seen(const std::vector<int>& aTimes) {
    std::string blocks;
    for (const int time : aTimes) {
        blocks += Block(1, time, "v");
    }
    return blocks;
}

/// Pictures of so many ticks each, rounded as writers do.
std::string Paced(double aTicks, int aCount) {
    std::vector<int> times;
    for (int i = 0; i < aCount; ++i) {
        times.push_back(static_cast<int>(i * aTicks + 0.5));
    }
    return Seen(times);
}

std::string FrameRate(const std::string& aBlocks, std::uint64_t aTick = 1'000'000) {
    return Told(Track(1, 1, "V_THEORA", Picture()), aBlocks, {"fr"}, aTick);
}

} // namespace

TEST(MatroskaPace, SoundIsMeasuredByItsFirstBlocks) {
    EXPECT_EQ(Rates(Heard(0, 300) + Heard(20, 200) + Heard(40, 9999)),
              "100000"); // the last lasts nobody knows
    EXPECT_EQ(Rates(Heard(500, 300) + Heard(520, 200) + Heard(540, 9999)), "100000");
    EXPECT_EQ(Rates(Heard(0, 300) + Block(1, 10, std::string(5000, 'v')) + Heard(20, 200) + Heard(40, 1)),
              "100000");
    EXPECT_EQ(Rates(Heard(0, 300)), "");
    EXPECT_EQ(Rates(Heard(0, 300) + Heard(0, 300)), "");
    EXPECT_EQ(Rates(Heard(40, 300) + Heard(20, 300) + Heard(0, 300)), ""); // times that run backward
    EXPECT_EQ(Rates(""), "");
    // the track states how long its frames are, of which several make a block
    const std::string paced = Track(2, 2, "A_AAC", Sound() + Number(0x23E383, 20'000'000));
    EXPECT_EQ(Rates(Heard(0, 250), paced), "100000");
    EXPECT_EQ(Rates(Block(2, 0, "\3"s + std::string(1000, 's'), 0x84), paced), "100000");
    EXPECT_EQ(Rates(Block(2, 0, "\1\x82"s + std::string(500, 's'), 0x86), paced), "100000");
}

TEST(MatroskaPace, SoundIsNotMeasuredWhereItsRateIsKnown) {
    const std::string blocks = Heard(0, 300) + Heard(20, 200) + Heard(40, 200);
    EXPECT_EQ(Told(kSound, blocks, {"ea"}).size(), 4U) << "of sound alone all bytes are";
    const std::string mp2 = "\xFF\xFD\x84\x04"s + std::string(380, 'm'); // 128 kbit/s
    EXPECT_EQ(Told(kVideo + Track(2, 2, "A_MPEG/L2", Sound()),
                   Block(1, 0, "v") + Block(2, 0, mp2) + Block(2, 24, mp2), {"ar", "ea"}),
              "128000|");
}

TEST(MatroskaPace, PicturesHaveWhatTheSoundLeaves) {
    const std::string told =
        Told(kVideo + kSound, Heard(0, 250) + Heard(20, 250) + Block(1, 0, std::string(50'000, 'v')),
             {"ea", "ev", "br"});
    const auto number = [&](std::size_t anIndex) {
        std::string rest = told;
        for (; anIndex > 0; --anIndex) {
            rest = rest.substr(rest.find('|') + 1);
        }
        return std::stoul(rest);
    };
    EXPECT_EQ(number(0), 100000U) << told;
    EXPECT_EQ(number(0) + number(1), number(2)) << told;
}

TEST(MatroskaPace, FrameRateIsTheOnlyOneInUseThatAllTimesKeepTo) {
    EXPECT_EQ(FrameRate(Paced(40, 5)), "25000");
    EXPECT_EQ(FrameRate(Paced(40, 4)), ""); // the fourth one may not be the last of its distance
    EXPECT_EQ(FrameRate(Paced(100, 6)), "10000");
    EXPECT_EQ(FrameRate(Paced(1001 / 30.0, 8)), ""); // as many as of 30, in a quarter of a second
    EXPECT_EQ(FrameRate(Paced(1001 / 30.0, 50)), "29970");
    EXPECT_EQ(FrameRate(Paced(1000 / 30.0, 50)), "30000");
    EXPECT_EQ(FrameRate(Paced(1001 / 24.0, 40)), "23976");
    EXPECT_EQ(FrameRate(Paced(3336.667, 8), 10'000), "29970");
    EXPECT_EQ(FrameRate(Paced(90, 8)), ""); // no rate that is in use
    EXPECT_EQ(FrameRate(Seen({0, 40, 80, 160, 200, 240})), "");
    EXPECT_EQ(FrameRate(Seen({0, 40, 80, 120, 160, 210, 250})), "");
    EXPECT_EQ(FrameRate(Seen({7, 7, 7, 7, 7, 7})), "");
    // as they are decoded: what is later than those to come is left aside
    EXPECT_EQ(FrameRate(Seen({0, 160, 80, 40, 120, 320, 240, 200})), "25000");
    EXPECT_EQ(FrameRate(Seen({0, 160, 80, 40, 120})), "");
}

TEST(MatroskaPace, FrameRateThatIsStatedStays) {
    const std::string stated = Track(1, 1, "V_THEORA", Picture() + Number(0x23E383, 41'708'333));
    EXPECT_EQ(Told(stated, Paced(40, 10), {"fr"}), "23976");
}

TEST(MatroskaPace, NameOfAFilmFollowsFromItsSizeUpToTheLimits) {
    const std::string film = ReadSample("video/kite-day.mkv");
    const double seconds = std::stod(chunks::Values<MatroskaParser>(film, {"dm"})) / 1000;
    const auto name = [&](double aMegabits) {
        const auto size = static_cast<std::uint64_t>(seconds * aMegabits * 1e6 / 8);
        SparseStream stream(size, {{0, film}});
        const std::string told = chunks::SparseValue<MatroskaParser>(stream, "dl");
        return told.substr(0, told.find(';'));
    };
    EXPECT_EQ(name(1), "\"DLNA.ORG_PN=AVC_MKV_MP_HD_AAC_MULT5");
    EXPECT_EQ(name(20), "\"DLNA.ORG_PN=AVC_MKV_MP_HD_AAC_MULT5");
    EXPECT_EQ(name(20.1), "\"DLNA.ORG_PN=AVC_MKV_HP_HD_AAC_MULT5");
    EXPECT_EQ(name(30), "\"DLNA.ORG_PN=AVC_MKV_HP_HD_AAC_MULT5");
    EXPECT_EQ(name(30.1).find("DLNA.ORG_PN"), std::string::npos);
}

TEST(MatroskaPace, CostsOneReadMoreAtAnySize) {
    const auto costs = [](std::uint64_t aSize, const std::string& aTracks, std::size_t aPicture) {
        std::string blocks;
        for (int time = 0; time < 400; time += 20) {
            blocks += Block(1, time, std::string(aPicture, 'v')) + Heard(time, 250);
        }
        const std::string front =
            Info(Duration(static_cast<double>(aSize / 250))) + Tracks(aTracks) + Cluster(0, blocks);
        SparseStream stream(aSize, {{0, Head() + ebml::Id(0x18538067) + ebml::Size(aSize, 8) + front}});
        chunks::SparseValue<MatroskaParser>(stream, "ea");
        return std::make_pair(stream.mReads, stream.mBytes);
    };
    const std::string known = Track(2, 2, "A_PCM/INT/LIT", Sound(48000, 2, Number(0x6264, 16)));
    for (const std::uint64_t size :
         {std::uint64_t{8} << 20, std::uint64_t{4500} << 20, std::uint64_t{60} << 30}) {
        for (const std::size_t picture : {std::size_t{20}, std::size_t{3000}, std::size_t{100'000}}) {
            const auto without = costs(size, kVideo + known, picture);
            const auto with = costs(size, kVideo + kSound, picture);
            EXPECT_LE(with.first, without.first + 1) << size << " " << picture;
            EXPECT_LE(with.second, without.second + (64U << 10)) << size << " " << picture;
        }
    }
}
