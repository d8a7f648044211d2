#include "companions/ezFormats/FormatFiles.h"
#include "companions/ezFormats/PictureBytes.h"

#include "ezFormats/ac3/AC3Parser.h"
#include "ezFormats/frames/FrameLimits.h"

#include "support/Id3Bytes.h"
#include "support/TailBytes.h"

#include <gtest/gtest.h>

#include <utility>

// AC-3 and E-AC-3, frame by frame.

namespace {

using namespace std::string_literals;

std::string Sized(std::string aBytes, std::size_t aSize) {
    aBytes.resize(aSize, '1');
    return aBytes;
}

/// A frame of AC-3: 5.1 at 48 kHz and 384 kbit/s, if nothing else is said.
struct Core {
    unsigned mRate = 0;
    unsigned mSizeCode = 28;
    unsigned mBSID = 8;
    std::uint64_t mModeAndLFE = 0xE1; ///< as the byte has them
    std::size_t mSize = 1536;

    std::string Bytes() const {
        return Sized("\x0B\x77" + Big(0x1234, 2) + Big(mRate << 6 | mSizeCode, 1) + Big(mBSID << 3, 1) +
                         Big(mModeAndLFE, 1),
                     mSize);
    }
};

/// A frame of E-AC-3: 5.1 at 48 kHz, six blocks, if nothing else is said.
struct Enhanced {
    unsigned mType = 0;
    unsigned mSubstream = 0;
    std::size_t mSize = 768;
    unsigned mRateAndBlocks = 3; ///< fscod, numblkscod
    unsigned mMode = 7;
    unsigned mLFE = 1;
    unsigned mMap = 0;

    std::string Bytes() const {
        const unsigned map = mMap != 0 ? 1U << 20 | mMap << 4 : 0;
        return Sized("\x0B\x77" + Big(mType << 14 | mSubstream << 11 | (mSize / 2 - 1), 2) +
                         Big(mRateAndBlocks << 4 | mMode << 1 | mLFE, 1) + Big(16U << 27 | map, 4),
                     mSize);
    }
};

std::string Dependent(unsigned aMap, unsigned aSubstream = 0) {
    Enhanced frame;
    frame.mType = 1;
    frame.mSubstream = aSubstream;
    frame.mSize = 512;
    frame.mMode = 6;
    frame.mLFE = 0;
    frame.mMap = aMap;
    return frame.Bytes();
}
constexpr unsigned kRears = 0x1A00; ///< Ls, Rs, and the pair of Lrs and Rrs

std::string Times(unsigned aCount, const std::string& aBytes) {
    std::string all;
    for (unsigned i = 0; i < aCount; ++i) {
        all += aBytes;
    }
    return all;
}
std::string Swapped(std::string aBytes) {
    for (std::size_t i = 0; i + 1 < aBytes.size(); i += 2) {
        std::swap(aBytes[i], aBytes[i + 1]);
    }
    return aBytes;
}

/// Frames of 44.1 kHz and 192 kbit/s: 834 bytes, or two more to keep the rate.
std::string At44(unsigned aCount) {
    Core shorter;
    shorter.mRate = 1;
    shorter.mSizeCode = 20;
    shorter.mSize = 834;
    Core longer = shorter;
    longer.mSizeCode = 21;
    longer.mSize = 836;
    std::string frames;
    for (std::uint64_t i = 1; i <= aCount; ++i) {
        frames += (i * 1536 * 24000 / 44100 > frames.size() + 834 ? longer : shorter).Bytes();
    }
    return frames;
}

std::string Parsed(const std::string& aBytes) {
    return pictures::Parsed<AC3Parser>(aBytes);
}
std::string Value(const std::string& aBytes, const char* aKey) {
    return pictures::ValueOf(Parsed(aBytes), aKey);
}
/// "codec rate channels bit-rate milliseconds profile".
std::string Facts(const std::string& aBytes) {
    const std::string record = Parsed(aBytes);
    std::string facts;
    for (const char* const key : {"ca", "sf", "ac", "ar", "dm"}) {
        facts += pictures::ValueOf(record, key) + " ";
    }
    const std::string field = pictures::ValueOf(record, "dl");
    const std::size_t profile = field.find("PN=");
    return facts +
           (profile == std::string::npos ? "-" : field.substr(profile + 3, field.find(';') - profile - 3));
}

std::vector<std::string> UsualFiles() {
    Core small;
    small.mSizeCode = 0;
    small.mSize = 128;
    small.mModeAndLFE = 0x20;
    Enhanced enhanced;
    enhanced.mSize = 64;
    return {Times(8, small.Bytes()), Swapped(Times(8, small.Bytes())),
            ID3(3, 0, Frame23("TPE1", "\0A"s)) + Times(4, enhanced.Bytes() + Dependent(kRears).substr(0, 0))};
}

std::vector<std::string> CostlyFiles() {
    std::string syncs;
    for (unsigned i = 0; i < 20000; ++i) {
        syncs += Enhanced().Bytes().substr(0, 12);
    }
    Enhanced large;
    large.mSize = 4096;
    Enhanced larger = large;
    larger.mSize = 4000;
    const std::string parts = Times(63, Dependent(kRears));
    return {syncs, "x" + syncs, Times(40, large.Bytes() + larger.Bytes() + parts),
            Times(400, large.Bytes()) + std::string(100000, 'x') + Times(400, larger.Bytes())};
}

const FormatFiles kFiles("ac3", {32, 512U << 10}, {"ca", "ac", "sf", "ar", "ta"}, UsualFiles, CostlyFiles);

} // namespace

TEST(AC3Parser, RecordSaysWhatTheHeadersSay) {
    EXPECT_EQ(Parsed(Times(100, Core().Bytes())),
              "ac=6\nar=384000\nca=\"AC3\"\ncn=\"item.audioItem\"\n"
              "dl=\"DLNA.ORG_PN=AC3;DLNA.ORG_OP=01;DLNA.ORG_FLAGS=01500000000000000000000000000000\"\n"
              "dm=3200\ndu=3\nmd=\"constant rate\"\nmt=\"audio/vnd.dolby.dd-raw\"\nsf=48000\nta=1\n");
}

TEST(AC3Parser, EveryKindOfFrameTellsItsFacts) {
    struct Row {
        const char* mWhat;
        std::string mBytes;
        const char* mFacts;
    };
    Core half;
    half.mBSID = 9;
    Core quarter;
    quarter.mBSID = 10;
    Core twoMonos;
    twoMonos.mModeAndLFE = 0x00;
    Core slow;
    slow.mSizeCode = 0;
    slow.mSize = 128;
    Enhanced oneBlock;
    oneBlock.mRateAndBlocks = 0;
    oneBlock.mSize = 256;
    Enhanced at24;
    at24.mRateAndBlocks = 12;
    Enhanced converted;
    converted.mType = 2;
    Enhanced second;
    second.mSubstream = 1;
    const std::string frame = Enhanced().Bytes();
    const Row kRows[] = {
        {"5.1", Times(100, Core().Bytes()), "\"AC3\" 48000 6 384000 3200 AC3"},
        {"sizes that alternate", At44(1000), "\"AC3\" 44100 6 192000 34829 AC3"},
        {"half the rate", Times(100, half.Bytes()), "\"AC3\" 24000 6 192000 6400 -"},
        {"a quarter", Times(100, quarter.Bytes()), "\"AC3\" 12000 6 96000 12800 -"},
        {"dual mono", Times(100, twoMonos.Bytes()), "\"AC3\" 48000 2 384000 3200 AC3"},
        {"slower than the profile", Times(100, slow.Bytes()), "\"AC3\" 48000 6 32000 3200 -"},
        {"swapped", Swapped(Times(100, Core().Bytes())), "\"AC3\" 48000 6 384000 3200 AC3"},
        {"after a tag", ID3(3, 0, Frame23("TPE1", "\0A"s)) + Times(100, Core().Bytes()),
         "\"AC3\" 48000 6 384000 3200 AC3"},
        {"before a tag", Times(100, Core().Bytes()) + APE2(APEItem("Title", std::string(700, 'T'))),
         "\"AC3\" 48000 6 384000 3200 AC3"},
        {"enhanced", Times(100, frame), "\"EAC3\" 48000 6 192000 3200 EAC3"},
        {"enhanced, swapped", Swapped(Times(100, frame)), "\"EAC3\" 48000 6 192000 3200 EAC3"},
        {"made of AC-3", Times(100, converted.Bytes()), "\"EAC3\" 48000 6 192000 3200 EAC3"},
        {"of one block", Times(600, oneBlock.Bytes()), "\"EAC3\" 48000 6 384000 3200 EAC3"},
        {"at 24 kHz", Times(100, at24.Bytes()), "\"EAC3\" 24000 6 96000 6400 -"},
        {"7.1", Times(100, frame + Dependent(kRears)), "\"EAC3\" 48000 8 320000 3200 -"},
        {"channels that there are already", Times(100, frame + Dependent(0x1800)),
         "\"EAC3\" 48000 6 320000 3200 EAC3"},
        {"7.1 on AC-3", Times(100, Core().Bytes() + Dependent(kRears)), "\"EAC3\" 48000 8 512000 3200 -"},
        {"two programmes", Times(100, frame + second.Bytes() + Dependent(kRears)),
         "\"EAC3\" 48000 6 512000 3200 EAC3"},
    };
    for (const Row& row : kRows) {
        EXPECT_EQ(Facts(row.mBytes), row.mFacts) << row.mWhat;
    }
}

TEST(AC3Parser, LengthOfAProgrammeThatChangesIsAnEstimate) {
    Core stereo;
    stereo.mSizeCode = 20;
    stereo.mModeAndLFE = 0x40;
    stereo.mSize = 768;
    const std::string file = Times(200, Core().Bytes()) + Times(200, stereo.Bytes());
    EXPECT_EQ(Value(file, "md"), "\"estimate: size and mean rate of places\"");
}

TEST(AC3Parser, ShortFileIsOneWhereItsFramesReachItsEnd) {
    EXPECT_EQ(Facts(Core().Bytes()), "\"AC3\" 48000 6 384000 32 AC3");
    EXPECT_EQ(Facts(Times(3, Core().Bytes())), "\"AC3\" 48000 6 384000 96 AC3");
    EXPECT_EQ(pictures::Refusal<AC3Parser>(Times(3, Core().Bytes()) + "more"),
              "AC3Parser: malformed: 3 frames from 0 to 4608, and none after them");
}

TEST(AC3Parser, WhatCarriesItIsNotIt) {
    const auto refusal = pictures::Refusal<AC3Parser>;
    EXPECT_EQ(refusal("\0\0\x01\xBA"s + Times(20, Core().Bytes()), {}),
              "AC3Parser: unsupported: program stream at 0");
    for (const char* const box :
         {"ftyp", "styp", "sidx", "moof", "moov", "mdat"}) { // segments of ISO media too
        EXPECT_EQ(refusal(Big(24, 4) + box + std::string(16, '1') + Times(20, Core().Bytes()), {}),
                  "AC3Parser: unsupported: ISO media at 0");
    }
    std::string packets;
    for (unsigned i = 0; i < 400; ++i) {
        packets += "G123" + Core().Bytes().substr(0, 184);
    }
    EXPECT_EQ(refusal(packets, {}), "AC3Parser: unsupported: transport stream at 0");
    EXPECT_EQ(refusal("x" + packets, {}), "AC3Parser: malformed: no frames within 65536 bytes of 0");
    EXPECT_EQ(refusal(std::string(100000, '\x0B'), {}),
              "AC3Parser: malformed: no frames within 65536 bytes of 0");
}

TEST(AC3Parser, ConstantRateCostsWhatIsUsual) {
    AwkwardStream::Costs costs;
    pictures::Parsed<AC3Parser>(Times(4000, Core().Bytes()), {}, &costs);
    EXPECT_LE(costs.mReads, 4U);
    EXPECT_LE(costs.mBytes, 56U << 10);
}
