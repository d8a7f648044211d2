#include "ezFormats/codecs/H264Video.h"

#include "ezBytes/ByteReader.h"
#include "ezBytes/ByteSource.h"
#include "ezFormats/detail/Limits.h"

#include "companions/ezFormats/codecs/H264Bytes.h"
#include "companions/ezFormats/codecs/VideoFactsText.h"

#include <gtest/gtest.h>

namespace {

using h264::Stream264;

std::string Told(const std::string& aStream) {
    return Text(H264Video_ReadStream(Data(aStream), aStream.size()));
}

template <typename Change>
std::string ToldWith(Change aChange) {
    Stream264 stream;
    aChange(stream);
    return Told(stream.Bytes());
}

std::string ToldOfConfig(const std::string& aConfig, const std::string& aSample = "") {
    BlockBytes config(Data(aConfig), aConfig.size());
    BlockBytes sample(Data(aSample), aSample.size());
    const ByteReader first(sample);
    return Text(H264Video_ReadConfig(ByteReader(config), aSample.empty() ? nullptr : &first));
}

/// "avcC" of these sets, with sizes of so many bytes before the units of samples.
std::string Config(const std::vector<std::string>& aSPSs, const std::vector<std::string>& aPPSs,
                   unsigned aSizeBytes = 4) {
    return Hex({1, 77, 0, 31, 0xFC | static_cast<int>(aSizeBytes - 1),
                0xE0 | static_cast<int>(aSPSs.size())}) +
           Sized(aSPSs, 2) + Hex({static_cast<int>(aPPSs.size())}) + Sized(aPPSs, 2);
}

/// pic_timing of these delays and pic_struct
std::string Timing(unsigned aDelayBits, unsigned aStructure) {
    return Message(1, Bits().Put(0, aDelayBits).Put(aStructure, 4).Put(0, 8).Bytes());
}

} // namespace

TEST(H264Video, TellsWhatTheSequenceSays) {
    EXPECT_EQ(ToldWith([](Stream264&) {}), "H264 High@40 320x192 progressive cd=8 4:2:0");
    EXPECT_EQ(ToldWith([](Stream264& s) {
                  s.mHeight = 68;
                  s.mWidth = 120;
                  s.mBottom = 4;
                  s.mSigns.mAspect = 1;
                  s.mSigns.mUnits = 1001;
                  s.mSigns.mScale = 48000;
                  s.mfDelays = true;
              }),
              "H264 High@40 1920x1080 1:1 fr=23976 progressive cd=8 4:2:0 vr=1000000");
    EXPECT_EQ(ToldWith([](Stream264& s) { s.mfUsability = false; }),
              "H264 High@40 320x192 progressive cd=8 4:2:0");
    EXPECT_EQ(ToldWith([](Stream264& s) {
                  s.mfDelays = true;
                  s.mfConstant = false;
              }),
              "H264 High@40 320x192 progressive cd=8 4:2:0 mv=1000000");
}

TEST(H264Video, ProfilesAndLevelsHaveTheWordsAndNumbersOfTheRules) {
    const auto profile = [](unsigned aProfile, unsigned aConstraints, unsigned aLevel) {
        const std::string told = ToldWith([=](Stream264& s) {
            s.mProfile = aProfile;
            s.mConstraints = aConstraints;
            s.mLevel = aLevel;
        });
        return told.substr(5, told.find(' ', 5) - 5);
    };
    EXPECT_EQ(profile(66, 0, 30), "Baseline@30");
    EXPECT_EQ(profile(66, 0x40, 30), "ConstrainedBaseline@30");
    EXPECT_EQ(profile(77, 0x40, 31), "Main@31") << "constraints of another profile";
    EXPECT_EQ(profile(88, 0, 52), "Extended@52");
    EXPECT_EQ(profile(100, 0, 62), "High@62");
    EXPECT_EQ(profile(110, 0, 42), "High10@42");
    EXPECT_EQ(profile(122, 0, 50), "High422@50");
    EXPECT_EQ(profile(244, 0, 10), "High444@10");
    // Level 1b has a number of its own only in the profiles that came later.
    EXPECT_EQ(profile(66, 0x50, 11), "ConstrainedBaseline@9");
    EXPECT_EQ(profile(77, 0x10, 11), "Main@9");
    EXPECT_EQ(profile(88, 0x10, 11), "Extended@9");
    EXPECT_EQ(profile(77, 0, 11), "Main@11");
    EXPECT_EQ(profile(77, 0x10, 12), "Main@12");
    EXPECT_EQ(profile(100, 0x10, 11), "High@11");
    EXPECT_EQ(profile(100, 0, 9), "High@9");
}

TEST(H264Video, ANumberThatIsNoLevelIsNotTold) {
    const auto level = [](int aProfile, int aConstraints, int aLevel) {
        return ToldOfConfig(Hex({1, aProfile, aConstraints, aLevel, 0xFF, 0xE0, 0}));
    };
    EXPECT_EQ(level(100, 0, 62), "H264 High@62");
    EXPECT_EQ(level(100, 0, 63), "H264 High@?");
    EXPECT_EQ(level(100, 0, 255), "H264 High@?");
    EXPECT_EQ(level(100, 0, 0), "H264 High@?");
    EXPECT_EQ(level(77, 0x10, 11), "H264 Main@9");
}

TEST(H264Video, ShapesOfAPixelAreThoseOfTheTableOrStated) {
    const auto shape = [](unsigned anAspect, unsigned aWidth, unsigned aHeight) {
        Stream264 stream;
        stream.mSigns.mAspect = anAspect;
        stream.mSigns.mAspectWidth = aWidth;
        stream.mSigns.mAspectHeight = aHeight;
        const std::string bytes = stream.Bytes();
        return std::string(H264Video_ReadStream(Data(bytes), bytes.size())
                               .value_or(VideoFacts())
                               .mPixelAspect.GetText()
                               .c_str());
    };
    const std::vector<std::string> table = {"1:1",    "12:11", "10:11", "16:11", "40:33", "24:11",
                                            "20:11",  "32:11", "80:33", "18:11", "15:11", "64:33",
                                            "160:99", "4:3",   "3:2",   "2:1"};
    for (unsigned code = 1; code <= table.size(); ++code) {
        EXPECT_EQ(shape(code, 0, 0), table[code - 1]) << code;
    }
    EXPECT_EQ(shape(17, 0, 0), "") << "none yet";
    EXPECT_EQ(shape(254, 0, 0), "");
    EXPECT_EQ(shape(255, 128, 90), "64:45");
    EXPECT_EQ(shape(255, 65535, 1), "65535:1");
    EXPECT_EQ(shape(255, 0, 90), "") << "unspecified";
    EXPECT_EQ(shape(255, 128, 0), "");
}

TEST(H264Video, AClockThatIsNoneOfPicturesTellsNoRate) {
    const auto rate = [](std::uint32_t aUnits, std::uint32_t aScale) {
        Stream264 stream;
        stream.mSigns.mUnits = aUnits;
        stream.mSigns.mScale = aScale;
        const std::string bytes = stream.Bytes();
        return H264Video_ReadStream(Data(bytes), bytes.size()).value_or(VideoFacts()).mFrameRate;
    };
    EXPECT_EQ(rate(1, 50), 25000U);
    EXPECT_EQ(rate(1001, 60000), 29970U);
    EXPECT_EQ(rate(2, 50), 12500U);
    EXPECT_EQ(rate(1, 600), kVideo_MaxFrameRate);
    EXPECT_EQ(rate(1, 601), 0U);
    EXPECT_EQ(rate(1, 180000), 0U) << "the ticks of a varying rate";
    EXPECT_EQ(rate(1, 0xFFFFFFFF), 0U);
    EXPECT_EQ(rate(0xFFFFFFFF, 1), 0U);
    EXPECT_EQ(rate(0xFFFFFFFF, 0xFFFFFFFF), 500U);
    EXPECT_EQ(rate(1, 0), 0U);
}

TEST(H264Video, ColoursAndTheirDepthAreThoseOfTheHighProfiles) {
    const auto colours = [](unsigned aProfile, unsigned aFormat, unsigned aDepth, unsigned aMatrix) {
        const std::string told = ToldWith([=](Stream264& s) {
            s.mProfile = aProfile;
            s.mChromaFormat = aFormat;
            s.mBitDepth = aDepth;
            s.mSigns.mTransfer = 1;
            s.mSigns.mMatrix = aMatrix;
        });
        return told.substr(told.find("cd="));
    };
    EXPECT_EQ(colours(77, 0, 8, 1), "cd=8 4:2:0");
    EXPECT_EQ(colours(100, 0, 8, 1), "cd=8 grey");
    EXPECT_EQ(colours(110, 1, 10, 9), "cd=10 4:2:0");
    EXPECT_EQ(colours(122, 2, 10, 1), "cd=10 4:2:2");
    EXPECT_EQ(colours(244, 3, 14, 1), "cd=14 4:4:4");
    EXPECT_EQ(colours(244, 3, 8, 0), "cd=8 RGB");
    EXPECT_EQ(colours(100, 1, 8, 0), "cd=8 4:2:0") << "no format of RGB";
}

TEST(H264Video, HighDynamicRangeIsOfTheTransferAndTheMessages) {
    const auto kind = [](unsigned aTransfer, const std::string& aMessages) {
        Stream264 stream;
        stream.mSigns.mTransfer = aTransfer;
        stream.mMessages = aMessages;
        const std::string bytes = stream.Bytes();
        const char* told = H264Video_ReadStream(Data(bytes), bytes.size()).value_or(VideoFacts()).mHDR;
        return std::string(told != nullptr ? told : "");
    };
    EXPECT_EQ(kind(1, ""), "");
    EXPECT_EQ(kind(16, ""), "PQ");
    EXPECT_EQ(kind(18, ""), "HLG");
    EXPECT_EQ(kind(16, MasteringDisplay()), "HDR10");
    EXPECT_EQ(kind(16, LightLevel()), "HDR10");
    EXPECT_EQ(kind(16, MasteringDisplay() + RegisteredData(0xB5, 4)), "HDR10+");
    EXPECT_EQ(kind(16, RegisteredData(0xB5, 3)), "PQ") << "closed captions and others";
    EXPECT_EQ(kind(16, RegisteredData(0x26, 4)), "PQ");
    EXPECT_EQ(kind(1, MasteringDisplay() + RegisteredData(0xB5, 4)), "") << "of a range that is not high";
    EXPECT_EQ(kind(18, MasteringDisplay()), "HLG");
    EXPECT_EQ(kind(14, AlternativeTransfer(18)), "HLG") << "as broadcasts say it";
    EXPECT_EQ(kind(14, AlternativeTransfer(14)), "");
    EXPECT_EQ(kind(16, Hex({137, 24, 1, 2})), "PQ") << "a message that is cut";
    EXPECT_EQ(kind(16, Hex({0xFF, 0xFF, 0xFF})), "PQ");
    EXPECT_EQ(kind(16, Hex({0xFF, 5, 1, 0}) + LightLevel()), "HDR10") << "after a message of a high type";
}

TEST(H264Video, FieldsAreFoundInSlicesOrInTimingMessages) {
    const auto scan = [](bool afFields, unsigned aField, unsigned aDelayBits, unsigned aStructure) {
        Stream264 stream;
        stream.mfFields = afFields;
        stream.mField = aField;
        stream.mfStructure = true;
        stream.mfDelays = aDelayBits != 0;
        stream.mMessages = Timing(aDelayBits, aStructure);
        const std::string bytes = stream.Bytes();
        return std::string(H264Video_ReadStream(Data(bytes), bytes.size()).value_or(VideoFacts()).mScan);
    };
    EXPECT_EQ(scan(true, 0, 0, 0), "progressive") << "fields are possible, and not used";
    EXPECT_EQ(scan(true, 1, 0, 0), "interlaced");
    EXPECT_EQ(scan(false, 0, 0, 3), "progressive") << "frames alone";
    for (unsigned structure = 1; structure < 16; ++structure) {
        const std::string expected = structure <= 4 ? "interlaced" : "progressive";
        EXPECT_EQ(scan(true, 0, 0, structure), expected) << structure;
        EXPECT_EQ(scan(true, 0, 12, structure), expected) << structure << " after delays";
    }
}

TEST(H264Video, FramesThatAdaptToFieldsAreInterlacedUnlessAMessageSaysOtherwise) {
    const auto scan = [](bool afAdaptive, const std::string& aMessages) {
        Stream264 stream;
        stream.mfFields = true;
        stream.mfAdaptive = afAdaptive;
        stream.mfStructure = true;
        stream.mMessages = aMessages;
        const std::string bytes = stream.Bytes();
        return std::string(H264Video_ReadStream(Data(bytes), bytes.size()).value_or(VideoFacts()).mScan);
    };
    EXPECT_EQ(scan(true, ""), "interlaced");
    EXPECT_EQ(scan(false, ""), "progressive");
    EXPECT_EQ(scan(true, Timing(0, 0)), "progressive");
    EXPECT_EQ(scan(true, Timing(0, 3)), "interlaced");
}

TEST(H264Video, FieldsMayComeInALaterPicture) {
    Stream264 stream;
    stream.mfFields = true;
    Stream264 field = stream;
    field.mField = 1;
    EXPECT_EQ(Told(stream.Bytes() + StartCoded(stream.Picture())),
              "H264 High@40 320x384 progressive cd=8 4:2:0");
    EXPECT_EQ(Told(stream.Bytes() + StartCoded(field.Picture())),
              "H264 High@40 320x384 interlaced cd=8 4:2:0");
    EXPECT_EQ(Told(StartCoded(stream.Sets())), "H264 High@40 320x384 interlaced cd=8 4:2:0") << "no picture";
}

TEST(H264Video, TheSequenceIsThatOfTheFirstPicture) {
    Stream264 other;
    other.mLevel = 30;
    const std::string second = [] {
        Bits bits;
        bits.Put(77, 8).Put(0, 8).Put(21, 8).UE(1).UE(0).UE(2).UE(1).Put(0, 1).UE(9).UE(9).Put(3, 2).Put(0,
                                                                                                         2);
        return bits.Stop().Bytes();
    }();
    const Stream264 stream;
    EXPECT_EQ(Told(StartCoded({"\x67" + Escaped(second)}) + stream.Bytes()),
              "H264 High@40 320x192 progressive cd=8 4:2:0");
    EXPECT_EQ(Told(stream.Bytes() + other.Bytes()), "H264 High@40 320x192 progressive cd=8 4:2:0");
    EXPECT_EQ(Told(StartCoded(other.Sets()) + stream.Bytes()), "H264 High@40 320x192 progressive cd=8 4:2:0")
        << "a later set of the same ID";
    // A further view is passed over: its sets and slices are units of other types.
    EXPECT_EQ(
        Told(StartCoded({"\x6F" + Escaped(other.SPS()), "\x74" + Escaped(other.Slice())}) + stream.Bytes()),
        "H264 High@40 320x192 progressive cd=8 4:2:0");
    EXPECT_EQ(Told(StartCoded({"\x6F" + Escaped(other.SPS())})), "nothing");
}

TEST(H264Video, AStreamMayBeginAndEndAnywhere) {
    Stream264 stream;
    stream.mSigns.mAspect = 2;
    stream.mSigns.mUnits = 1;
    stream.mSigns.mScale = 50;
    const std::string bytes = stream.Bytes();
    const std::string whole = "H264 High@40 320x192 12:11 fr=25000 progressive cd=8 4:2:0";
    const std::size_t setEnd = 5 + Escaped(stream.SPS()).size();
    EXPECT_EQ(Told(Content(100, '\x47') + Hex({0, 0}) + bytes), whole);
    bool fSize = false;
    for (std::size_t size = 0; size <= bytes.size(); ++size) {
        const std::string told = Told(bytes.substr(0, size));
        fSize = fSize || told != "nothing";
        EXPECT_EQ(told.substr(0, 20), fSize ? whole.substr(0, 20) : "nothing") << size;
        if (size >= setEnd) {
            EXPECT_EQ(told, whole) << size;
        }
        Told(bytes.substr(bytes.size() - size)); // it ends
    }
    EXPECT_EQ(Told(std::string(5000, '\0')), "nothing");
    EXPECT_EQ(Told(std::string(5000, '\xFF')), "nothing");
    EXPECT_EQ(Told(Hex({0, 0, 1})), "nothing");
    EXPECT_EQ(Told(Hex({0, 0, 1, 0, 0, 1, 0x67})), "nothing");
}

TEST(H264Video, UsabilityThatBreaksOffLeavesTheSize) {
    Stream264 stream;
    stream.mSigns.mAspect = 3;
    stream.mfUsability = true;
    std::string set = stream.SPS();
    set.resize(set.size() - 2);
    EXPECT_EQ(Told(StartCoded({"\x67" + Escaped(set)})), "H264 High@40 320x192 10:11 progressive cd=8 4:2:0");
}

TEST(H264Video, ConfigurationHasProfileAndSets) {
    const Stream264 stream;
    const std::vector<std::string> sets = stream.Sets();
    const std::string told = "H264 High@40 320x192 progressive cd=8 4:2:0";
    EXPECT_EQ(ToldOfConfig(Config({sets[0]}, {sets[1]})), told);
    EXPECT_EQ(ToldOfConfig(Config({sets[0]}, {})), told);
    EXPECT_EQ(ToldOfConfig(Config({}, {})), "H264 Main@31") << "sets come with the pictures";
    EXPECT_EQ(ToldOfConfig(Config({"\x67" + std::string("broken")}, {})), "H264 Main@31");
    EXPECT_EQ(ToldOfConfig(Config({std::string(5000, '\x67')}, {})), "H264 Main@31");
    EXPECT_EQ(ToldOfConfig(""), "nothing");
    EXPECT_EQ(ToldOfConfig(Hex({2, 100, 0, 40, 0xFF, 0xE0, 0})), "nothing") << "another version";
    const std::string config = Config({sets[0]}, {sets[1]});
    for (std::size_t size = 0; size < config.size(); ++size) {
        const std::string expected = size < 4 ? "nothing" : "H264 ";
        EXPECT_EQ(ToldOfConfig(config.substr(0, size)).substr(0, expected.size()), expected) << size;
    }
    EXPECT_EQ(ToldOfConfig(Hex({1, 77, 0, 31, 0xFF, 0xFF, 0xFF, 0xFF, 0x67})), "H264 Main@31")
        << "beyond the end";
}

TEST(H264Video, FirstPictureTellsWhetherFieldsAreUsed) {
    Stream264 stream;
    stream.mfFields = true;
    stream.mSigns.mTransfer = 16;
    stream.mMessages = LightLevel();
    const std::vector<std::string> sets = stream.Sets();
    const std::string progressive = "H264 High@40 320x384 progressive cd=8 4:2:0 HDR10";
    for (const unsigned sizeBytes : {1U, 2U, 4U}) {
        const std::string config = Config({sets[0]}, {sets[1]}, sizeBytes);
        EXPECT_EQ(ToldOfConfig(config), "H264 High@40 320x384 interlaced cd=8 4:2:0 PQ")
            << "it may have them";
        EXPECT_EQ(ToldOfConfig(config, Sized(stream.Picture(), sizeBytes)), progressive) << sizeBytes;
        EXPECT_EQ(ToldOfConfig(config, Sized(stream.Picture(), sizeBytes).substr(0, 20)), progressive)
            << "as much as is there";
    }
    std::vector<std::string> inBand = sets;
    for (const std::string& unit : stream.Picture()) {
        inBand.push_back(unit);
    }
    EXPECT_EQ(ToldOfConfig(Config({}, {}), Sized(inBand, 4)), progressive);
    EXPECT_EQ(ToldOfConfig(Config({}, {}), Sized(inBand, 2)), "H264 Main@31") << "sizes that are wrong";
}

TEST(H264Video, UnitsBeforeThePictureAreBounded) {
    const Stream264 stream;
    const auto told = [&](std::uint32_t aCount) {
        std::vector<std::string> units(aCount, "\x09\xF0");
        units.push_back(stream.Sets()[0]);
        return ToldOfConfig(Config({}, {}), Sized(units, 4));
    };
    EXPECT_EQ(told(kNALUnits_MaxCount - 1), "H264 High@40 320x192 progressive cd=8 4:2:0");
    EXPECT_EQ(told(kNALUnits_MaxCount), "H264 Main@31");
}
