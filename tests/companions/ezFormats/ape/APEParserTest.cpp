#include "ezFormats/ape/APEParser.h"

#include "companions/ezFormats/ChunkBytes.h"
#include "companions/ezFormats/FormatFiles.h"

#include "support/TailBytes.h"

#include <gtest/gtest.h>

using namespace chunks;
using namespace std::string_literals;

// APE files, both forms of their header. No encoder is at hand: the files are written here.

namespace {

/// The newer form: a descriptor, and the header after it.
struct Described {
    std::string mWord = "MAC ";
    unsigned mVersion = 3990;
    std::uint32_t mDescriptor = 52;
    std::uint32_t mFrameSamples = 73728;
    std::uint32_t mLast = 14472;
    std::uint32_t mFrames = 2;
    unsigned mBits = 16;
    unsigned mChannels = 2;
    std::uint32_t mRate = 44100;
    std::uint32_t mTable = 8;

    /// Descriptor, header, seek table, and the header of the WAV, of 44 bytes.
    std::string Bytes() const {
        std::string descriptor = mWord + Little(mVersion, 2) + Little(0, 2) + Little(mDescriptor) +
                                 Little(24) + Little(mTable) + Little(44) + std::string(28, '\0');
        descriptor.resize(mDescriptor);
        return descriptor + Little(2000, 2) + Little(0, 2) + Little(mFrameSamples) + Little(mLast) +
               Little(mFrames) + Little(mBits, 2) + Little(mChannels, 2) + Little(mRate) +
               std::string(mTable + 44, 'h');
    }
};

/// The older form.
struct Plain {
    unsigned mVersion = 3950;
    unsigned mLevel = 2000;
    unsigned mFlags = 32; ///< no head of a WAV
    unsigned mChannels = 2;
    std::uint32_t mRate = 44100;
    std::uint32_t mFrames = 2;
    std::uint32_t mLast = 88;
    std::uint32_t mHeadSize = 44;

    std::string Bytes(const std::string& aRest = std::string(12, '\0')) const {
        return "MAC " + Little(mVersion, 2) + Little(mLevel, 2) + Little(mFlags, 2) + Little(mChannels, 2) +
               Little(mRate) + Little(mHeadSize) + Little(0) + Little(mFrames) + Little(mLast) + aRest;
    }
};

std::string Refusal(const std::string& aBytes) {
    return pictures::Refusal<APEParser>(aBytes);
}
/// Milliseconds, bits, channels, sampling rate, mean bit rate.
std::string Facts(const std::string& aBytes) {
    return Values<APEParser>(aBytes, {"dm", "bs", "ac", "sf", "ea"});
}

const std::string kCover = APEItem("Cover Art (Front)", "cover.jpg\0\xFF\xD8\xFF\xE0 and so on"s, 2);
const std::string kTag = APE2(APEItem("Title", "Title") + APEItem("Artist", "One\0Two"s) + kCover);

std::vector<std::string> UsualFiles() {
    return {Described().Bytes() + Sound(400) + kTag, Plain().Bytes() + Sound(9000) + ID3v1("t", "", "", 17),
            ID3(3, 0, Frame23("TPE1", "\0A"s)) + Described().Bytes() + Sound(400)};
}

std::vector<std::string> CostlyFiles() {
    std::string items;
    for (unsigned i = 0; i < 20; ++i) {
        items += APEItem("Comment", std::string(70000, 'c'));
    }
    std::string tags;
    for (unsigned i = 0; i < 8; ++i) {
        tags += ID3(3, 0, Frame23("PRIV", std::string(70000, 'p')) + Frame23("TPE1", "\0A"s));
    }
    return {Described().Bytes() + Sound(9000) + APE2(items + kCover), tags + Plain().Bytes() + APE2(items)};
}

const FormatFiles kFiles("ape", {16, 256U << 10}, {"ca", "ac", "sf", "ta"}, UsualFiles, CostlyFiles);

} // namespace

TEST(APEParser, RecordSaysWhatHeaderAndTagSay) {
    EXPECT_EQ(pictures::Parsed<APEParser>(Described().Bytes() + Sound(90000) + kTag),
              "ac=2\nar=4294967295\nas=\"One\\nTwo\"\nbs=16\nca=\"APE\"\ncm=\"image/jpeg\"\n"
              "cn=\"item.audioItem\"\ncs=14\ndl=\"DLNA.ORG_OP=01\"\ndm=2000\ndu=2\nea=360000\n"
              "md=\"header\"\nmt=\"audio/x-ape\"\nsf=44100\nta=1\ntitle=\"Title\"\ncreator=\"One, Two\"\n");
}

TEST(APEParser, NewerFormStatesAllOfItself) {
    Described header;
    header.mBits = 24;
    header.mChannels = 6;
    header.mRate = 96000;
    EXPECT_EQ(Facts(header.Bytes() + Sound(9188)), "918|24|6|96000|80004");
    header.mDescriptor = 60;
    EXPECT_EQ(Facts(header.Bytes() + Sound(9188)), "918|24|6|96000|80004") << "a descriptor that goes on";
    header.mWord = "MACF";
    header.mBits = 32;
    EXPECT_EQ(Facts(header.Bytes() + Sound(9188)), "918|32|6|96000|80004") << "floating point";
    header.mVersion = 3920;
    EXPECT_EQ(Values<APEParser>(header.Bytes(), {"dm"}), "918") << "no level: not of the older form";
}

TEST(APEParser, OlderFormLeavesTheFramesToVersionAndLevel) {
    struct Case {
        unsigned mVersion;
        unsigned mLevel;
        std::uint32_t mFrameSamples;
    };
    for (const Case& aCase :
         {Case{3800, 3000, 9216}, Case{3800, 4000, 73728}, Case{3899, 2000, 9216}, Case{3900, 2000, 73728},
          Case{3949, 5000, 73728}, Case{3950, 1000, 294912}, Case{3979, 4000, 294912}}) {
        Plain header;
        header.mVersion = aCase.mVersion;
        header.mLevel = aCase.mLevel;
        header.mRate = 1000;
        EXPECT_EQ(Values<APEParser>(header.Bytes(), {"dm"}), std::to_string(aCase.mFrameSamples + 88))
            << aCase.mVersion << " " << aCase.mLevel;
    }
}

TEST(APEParser, FlagsOfTheOlderFormTellBitsAndWhatStandsBeforeTheFrames) {
    const auto facts = [](unsigned aFlags, const std::string& aBefore) {
        Plain header;
        header.mVersion = 3900;
        header.mLast = 14472;
        header.mFlags = aFlags;
        return Values<APEParser>(header.Bytes(aBefore) + Sound(2000), {"bs", "dm", "ea"});
    };
    const std::string places(8, '\0');
    EXPECT_EQ(facts(32, places), "16|2000|8000");
    EXPECT_EQ(facts(32 + 1, places), "8|2000|8000");
    EXPECT_EQ(facts(32 + 8, places), "24|2000|8000");
    EXPECT_EQ(facts(32 + 4, "peak" + places), "16|2000|8000");
    EXPECT_EQ(facts(32 + 16, Little(5) + std::string(20, '\0')), "16|2000|8000");
    EXPECT_EQ(facts(0, std::string(44, 'h') + places), "16|2000|8000");
}

TEST(APEParser, TagsAroundTheSoundAreReadAndNotCountedAsSound) {
    const auto facts = [](const std::string& aBefore, const std::string& aAfter) {
        return Values<APEParser>(aBefore + Described().Bytes() + Sound(90000) + aAfter,
                                 {"title", "creator", "ea"});
    };
    const std::string before = ID3(3, 0, Frame23("TIT2", "\0Before"s));
    const std::string lyrics = "LYRICSBEGINwordsLYRICSEND";
    EXPECT_EQ(facts("", ""), "||360000");
    EXPECT_EQ(facts("", kTag), "\"Title\"|\"One, Two\"|360000");
    EXPECT_EQ(facts("", kTag + lyrics + ID3v1("Old", "Old", "", 255)), "\"Title\"|\"One, Two\"|360000");
    EXPECT_EQ(facts(before, kTag), "\"Before\"|\"One, Two\"|360000");
    EXPECT_EQ(facts(before + before, APE1(APEItem("Artist", "Gr\xFC\xDF"))),
              "\"Before\"|\"Gr\xC3\xBC\xC3\x9F\"|360000");
}

TEST(APEParser, LengthThatTheSizeContradictsIsNotTold) {
    Described header;
    header.mFrames = 0;
    EXPECT_EQ(Values<APEParser>(header.Bytes() + Sound(9000), {"dm", "sf"}), "|44100");
    header.mFrames = 1;
    header.mLast = 441; // 10 ms
    EXPECT_EQ(Values<APEParser>(header.Bytes() + Sound(500000), {"dm"}), "10") << "400 Mbit/s";
    EXPECT_EQ(Values<APEParser>(header.Bytes() + Sound(500001), {"dm"}), "");
    header.mFrames = UINT32_MAX;
    EXPECT_EQ(Values<APEParser>(header.Bytes() + Sound(9), {"dm"}), "") << "longer than a year";
    header.mFrames = 40;
    header.mTable = 160;
    EXPECT_EQ(Values<APEParser>(header.Bytes(), {"dm"}), "65211") << "silence takes next to nothing";
    header.mLast = header.mFrameSamples + 1;
    EXPECT_EQ(Values<APEParser>(header.Bytes(), {"dm"}), "") << "more than a frame has";
    --header.mLast;
    EXPECT_EQ(Values<APEParser>(header.Bytes(), {"dm"}), "66873");
    header.mTable = 116;
    EXPECT_EQ(Values<APEParser>(header.Bytes(), {"dm"}), "66873") << "the file has room for the seek table";
    --header.mTable;
    EXPECT_EQ(Values<APEParser>(header.Bytes(), {"dm"}), "") << "and here it has not";
    EXPECT_EQ(Values<APEParser>(header.Bytes() + kTag, {"dm"}), "") << "a tag is none";
    Plain plain;
    plain.mFrames = 4;
    EXPECT_EQ(Values<APEParser>(plain.Bytes(std::string(16, '\0')), {"dm"}), "20064");
    EXPECT_EQ(Values<APEParser>(plain.Bytes(std::string(15, '\0')), {"dm"}), "");
}

TEST(APEParser, OtherVersionsAndWhatSaysNothingOfTheSoundAreRefused) {
    Described header;
    EXPECT_EQ(Refusal("MAD " + header.Bytes().substr(4)), "APEParser: malformed: begins with 4D414420");
    for (const unsigned version : {0U, 150U, 3799U, 4000U, 65535U}) {
        header.mVersion = version;
        EXPECT_EQ(Refusal(header.Bytes()), "APEParser: unsupported: version " + std::to_string(version));
    }
    header = {};
    EXPECT_EQ(Refusal(header.Bytes().substr(0, 75)),
              "APEParser: malformed: ends before the end of the header");
    EXPECT_EQ(Refusal("MAC "), "APEParser: malformed: ends before the end of the header");
    header.mChannels = 0;
    EXPECT_EQ(Refusal(header.Bytes()), "APEParser: malformed: 0 channels at 44100 Hz");
    Plain plain;
    plain.mRate = 0;
    EXPECT_EQ(Refusal(plain.Bytes()), "APEParser: malformed: 2 channels at 0 Hz");
    for (const std::uint32_t size : {0U, 23U, UINT32_MAX}) {
        EXPECT_EQ(Refusal(Described().Bytes().replace(8, 4, Little(size))),
                  "APEParser: malformed: ends before the end of the header")
            << size;
    }
}

TEST(APEParser, UsualFileCostsStartAndEndAndACoverAReadMore) {
    const auto costs = [](const std::string& aTag) {
        AwkwardStream::Costs counted;
        const std::string file = Described().Bytes() + Sound(90000) + aTag;
        EXPECT_NE(pictures::Parsed<APEParser>(file, {}, &counted), "null\n");
        return std::to_string(counted.mReads) + " " + std::to_string(counted.mBytes);
    };
    EXPECT_EQ(costs(kTag), "2 16384");
    EXPECT_EQ(costs(APE2(kCover + APEItem("Comment", std::string(100000, 'c')))), "3 20480");
}
