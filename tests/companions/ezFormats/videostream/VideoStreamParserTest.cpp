#include "ezFormats/videostream/VideoStreamParser.h"

#include "ezBytes/ByteReader.h"
#include "ezBytes/ByteSource.h"

#include "companions/ezFormats/FormatFiles.h"
#include "companions/ezFormats/FormatHost.h"
#include "companions/ezFormats/PictureBytes.h"
#include "companions/ezFormats/SparseStream.h"
#include "companions/ezFormats/videostream/VideoStreamKit.h"

#include "support/Samples.h"
#include "support/TsBytes.h"

#include <gtest/gtest.h>

// Video without a container.

using namespace videostream;
using namespace std::string_literals;

namespace {

constexpr std::size_t kFirstWindow = 128U << 10;
constexpr std::size_t kWindow = 384U << 10;
constexpr std::size_t kEnd = 128U << 10;

std::vector<std::string> UsualFiles() {
    return {H264(), H265(), MPEG1(), MPEG2(1000), mpeg4::Stream(), VC1(), RCV().Bytes()};
}

std::vector<std::string> CostlyFiles() {
    // What looks for its headers or its picture until the end.
    std::string pictures;
    std::string sets;
    std::string codes;
    const h264::Stream264 stream;
    while (sets.size() < (700U << 10)) {
        pictures += StartCoded(stream.Picture());
        sets += StartCoded(stream.Sets());
        codes += Hex({0, 0, 1, 0xB3});
    }
    mpegvideo::Picture late;
    late.mDelay = 1000;
    const std::string constant = mpegvideo::Sequence().Bytes() + late.Bytes() + Content(30000) + late.Bytes();
    return {std::string(300U << 10, '5') + constant + Content(300U << 10),
            std::string(700U << 10, '\0'),
            pictures,
            sets,
            codes,
            std::string(700U << 10, 'j') + H264()};
}

const FormatFiles kFiles("h264", {8, 512U << 10}, {"vc", "vt", "wi", "he"}, UsualFiles, CostlyFiles);

std::string Values(const std::string& aBytes, const std::vector<const char*>& aKeys,
                   const Delivery& aDelivery = {}) {
    const std::string record = pictures::Refusal<VideoStreamParser>(aBytes, aDelivery);
    if (record.find("mt=") == std::string::npos) {
        return record;
    }
    std::string values;
    for (const char* key : aKeys) {
        values += (key == aKeys.front() ? "" : "|") + pictures::ValueOf(record, key);
    }
    return values;
}

bool IsAt(const std::string& aBytes) {
    BlockBytes bytes(Data(aBytes), aBytes.size());
    return VideoStreamParser::IsAt(ByteReader(bytes));
}

/// Of the codec, and found by the bytes alone.
std::string CodecOf(const std::string& aBytes) {
    return Values(aBytes, {"vc"}) + (IsAt(aBytes) ? " at its start" : "");
}

} // namespace

TEST(VideoStreamParser, RecordSaysWhatTheHeadersSay) {
    EXPECT_EQ(pictures::Parsed<VideoStreamParser>(ReadSample("elementary/harbour-light.h264")),
              "cd=8\n"
              "cn=\"item.videoItem\"\n"
              "cr=\"4:2:0\"\n"
              "dl=\"DLNA.ORG_OP=01\"\n"
              "dr=\"16:9\"\n"
              "fr=25000\n"
              "he=180\n"
              "mt=\"video/h264\"\n"
              "pa=\"1:1\"\n"
              "pr=\"progressive\"\n"
              "vc=\"H264\"\n"
              "vl=12\n"
              "vp=\"High\"\n"
              "vt=1\n"
              "wi=320\n");
}

TEST(VideoStreamParser, EachCodecHasItsTypeAndItsFacts) {
    struct Case {
        std::string mFile;
        const char* mFacts;
    };
    h264::Stream264 fields;
    fields.mfFields = true;
    fields.mField = 1;
    mpeg4::Layer layer;
    layer.mfInterlaced = true;
    vc1::Sequence sequence;
    sequence.mDisplayWidth = 1280;
    sequence.mDisplayHeight = 720;
    sequence.mRate = 1;
    sequence.mDivisor = 2;
    const std::vector<Case> cases = {
        {H264(), "\"video/h264\"|\"H264\"|\"High\"|40|320|192|\"progressive\"|"},
        {fields.Bytes(), "\"video/h264\"|\"H264\"|\"High\"|40|320|384|\"interlaced\"|"},
        {H265(), "\"video/h265\"|\"H265\"|\"Main\"|31|320|180|\"progressive\"|"},
        {MPEG1(), "\"video/mpeg\"|\"MPEG1\"|||352|288|\"progressive\"|25000"},
        {MPEG2(), "\"video/mpeg\"|\"MPEG2\"|\"Main\"|20|720|576|\"progressive\"|25000"},
        {Hex({0, 0, 1, 0xB0, 0xF5, 0, 0, 1, 0xB5, 9}) + mpeg4::Stream(layer),
         "\"video/mp4v-es\"|\"MPEG4\"|\"AdvancedSimple\"|50|352|288|\"interlaced\"|25000"},
        {VC1(), "\"video/x-vc1\"|\"VC1\"|\"Advanced\"|20|1280|720|\"progressive\"|"},
        {sequence.Bytes() + vc1::EntryPoint() + vc1::Frame(0) + Content(40),
         "\"video/x-vc1\"|\"VC1\"|\"Advanced\"|20|1280|720|\"progressive\"|23976"},
    };
    for (const Case& test : cases) {
        EXPECT_EQ(Values(test.mFile, {"mt", "vc", "vp", "vl", "wi", "he", "pr", "fr"}), test.mFacts);
        EXPECT_EQ(Values(test.mFile, {"cn", "dl", "ct", "dm", "md"}),
                  "\"item.videoItem\"|\"DLNA.ORG_OP=01\"|||");
        EXPECT_TRUE(IsAt(test.mFile)) << test.mFacts;
    }
}

TEST(VideoStreamParser, WhatStandsBeforeTheHeadersIsPassed) {
    const h264::Stream264 stream;
    const std::string sets = StartCoded(stream.Sets());
    const std::string picture = StartCoded(stream.Picture());
    const std::string delimiter = StartCoded({Hex({9, 0xF0})});
    const std::string message = StartCoded({"\x06" + Message(5, Content(300)) + '\x80'});
    const std::string filler = StartCoded({"\x0C" + std::string(3000, '\xFF') + '\x80'});
    const std::string view = StartCoded({"\x6F" + Escaped(stream.SPS()), "\x6E" + Hex({0xC0, 0, 7})});
    std::string threes; // each start code of three bytes
    for (const std::string& unit : stream.Sets()) {
        threes += Hex({0, 0, 1}) + unit;
    }
    threes += Hex({0, 0, 1}) + stream.Picture()[0];
    const std::string delimiter265 = StartCoded({Hex({0x46, 1, 0x50})});
    const std::string message265 = StartCoded({Hex({0x4E, 1}) + Message(5, Content(300)) + '\x80'});
    for (const std::string& file :
         {delimiter + sets + picture, message + sets + picture, filler + sets + picture,
          delimiter + sets + view + picture, sets + filler + message + picture, threes,
          std::string(5000, '\0') + H264(), delimiter + message + filler + H264()}) {
        EXPECT_EQ(CodecOf(file), "\"H264\" at its start") << file.size();
    }
    EXPECT_EQ(CodecOf(delimiter265 + H265()), "\"H265\" at its start");
    EXPECT_EQ(CodecOf(message265 + H265()), "\"H265\" at its start");
    EXPECT_EQ(CodecOf(mpegvideo::Code(0xB7) + MPEG2()), "\"MPEG2\" at its start") << "the end of a sequence";
    EXPECT_EQ(CodecOf(mpeg4::Stream() + Hex({0, 0, 1, 0xC3, 0xFF})), "\"MPEG4\" at its start") << "stuffing";
    EXPECT_EQ(CodecOf(Hex({0, 0, 1, 0x0A}) + VC1()), "\"VC1\" at its start") << "of a sequence";
}

TEST(VideoStreamParser, CutRecordingIsOneWhereItsHeadersComeWithinTheWindow) {
    const h264::Stream264 stream;
    std::string pictures;
    while (pictures.size() < kWindow) {
        pictures += StartCoded({stream.Picture()[0] + Content(2000, '\x55')});
    }
    const std::string refusal =
        "VideoStreamParser: malformed: no picture with its headers within 393216 bytes";
    EXPECT_EQ(CodecOf(pictures + H264()), refusal);
    const std::string some = pictures.substr(0, kWindow - H264().size());
    EXPECT_EQ(CodecOf(some + H264()), "\"H264\"") << "and not by its start";
    EXPECT_EQ(CodecOf(some + '5' + H264().substr(0, H264().size() - 20)), "\"H264\"");
    EXPECT_EQ(CodecOf(pictures.substr(0, 6000) + H264()), "\"H264\" at its start");
    EXPECT_EQ(CodecOf("HTTP/1.1 200 OK\r\n\r\n" + H264()), "\"H264\"") << "junk is passed where it is asked";
    // Headers alone are no stream, and neither is a picture that refers to others.
    EXPECT_EQ(CodecOf(StartCoded(stream.Sets())),
              "VideoStreamParser: malformed: no picture with its headers within 24 bytes");
}

TEST(VideoStreamParser, FilesOfOthersAreLeftToThem) {
    const std::string pack = ReadSample("video/river-ferry.mpg");
    const std::string transport = ReadSample("video/river-ferry.ts");
    struct Case {
        std::string mFile;
        const char* mRefusal;
    };
    const std::vector<Case> cases = {
        {pack, "unsupported: program stream at 0"},
        {transport, "unsupported: transport stream at 0"},
        {pack.substr(pack.find("\0\0\1\xE0"s)), "unsupported: packets of a program stream"},
        {MPEG2() + Hex({0, 0, 1, 0xE0, 0, 0}), "unsupported: packets of a program stream"},
        {H264() + Hex({0, 0, 1, 0xFF, 0, 0}), "unsupported: packets of a program stream"},
        {transport.substr(100), "malformed: no picture with its headers within 78296 bytes"},
        {"RIFF\x10\0\0\0AVI "s + H264(), "unsupported: RIFF at 0"},
        {"\0\0\0\x18"s + "ftypisom" + H264(), "unsupported: ISO media at 0"},
        {"\x1A\x45\xDF\xA3" + H264(), "unsupported: Matroska at 0"},
        {ReadSample("music/morning-walk.mp3"), ""},
        {std::string(9000, '\0'), "malformed: no picture with its headers within 9000 bytes"},
        {"", "malformed: nothing to read"},
        {Hex({0, 0, 1}), "malformed: no picture with its headers within 3 bytes"},
        {Hex({0, 0, 1, 0xB3}) + std::string(9000, '\x35'),
         "malformed: no picture with its headers within 9004 bytes"},
    };
    for (const Case& test : cases) {
        const std::string told = Values(test.mFile, {"vc"});
        EXPECT_EQ(told.rfind("VideoStreamParser: ", 0), 0U) << told;
        EXPECT_NE(told.find(test.mRefusal), std::string::npos) << told;
        EXPECT_FALSE(IsAt(test.mFile)) << told;
    }
}

TEST(VideoStreamParser, NamesThatLieLeadToTheParserOfTheContent) {
    const std::string film = ReadSample("video/river-ferry.mpg");
    const std::string cut = film.substr(film.find("\0\0\1\xE0"s));
    FormatHost host;
    EXPECT_EQ(host.Winner(cut, "/a.m2v"), "mpg") << "a recording that begins with packets, and has sound";
    EXPECT_EQ(host.Winner(cut, "/a.mp4"), "-");
    EXPECT_EQ(host.Winner(ReadSample("formats/parity.ts").substr(100), "/a.h264"), "ts");
    EXPECT_EQ(host.Winner(std::string(300, '\0') + MPEG2(), "/a.mpg"), "h264");
    EXPECT_EQ(host.Winner(H264(), "/a.mp3"), "h264");
    EXPECT_EQ(host.Winner(mpeg4::Stream(), "/a.m4v"), "h264");
}

namespace {

/// MPEG-2 of 6 Mbit/s: fifty pictures of 40 ms, as long as they take to arrive, with these delays.
struct Constant {
    unsigned mFirst = 1000;
    unsigned mSecond = 1000;
    unsigned mLast = 1000;
    std::size_t mLastSize = 30000;

    std::string Bytes() const {
        std::string file = mpegvideo::Sequence().Bytes();
        for (unsigned i = 0; i < 50; ++i) {
            mpegvideo::Picture picture;
            picture.mDelay = i == 0 ? mFirst : i < 49 ? mSecond : mLast;
            const std::string bytes = picture.Bytes();
            file += bytes + std::string((i < 49 ? 30000 : mLastSize) - bytes.size(), '\x35');
        }
        return file;
    }
};

std::string LengthOf(const std::string& aFile, const Delivery& aDelivery = {}) {
    return Values(aFile, {"dm", "db", "md", "vr", "mv"}, aDelivery);
}

} // namespace

TEST(VideoStreamParser, PicturesOfAConstantRateTellTheLengthByTheirDelays) {
    EXPECT_EQ(LengthOf(Constant().Bytes()), "2000||\"constant rate\"|6000000|");
    Constant later;
    later.mLast = 10000;
    EXPECT_EQ(LengthOf(later.Bytes()), "2100||\"constant rate\"|6000000|") << "a tenth of a second";
    Constant earlier;
    earlier.mFirst = 5000;
    earlier.mSecond = 5000;
    earlier.mLast = 1500; // 39 ms: rounded, as the length is of whole fields
    EXPECT_EQ(LengthOf(earlier.Bytes()), "1960||\"constant rate\"|6000000|");
    Constant untold;
    untold.mLast = 0xFFFF;
    EXPECT_EQ(LengthOf(untold.Bytes()), "3001|2001|\"estimate: size and stated rate\"|6000000|");
    // Of the first picture the second is too far, or too near, for the rate to be kept.
    Constant broken;
    broken.mSecond = 5000;
    EXPECT_EQ(LengthOf(broken.Bytes()), "|||6000000|");
    broken.mSecond = 1000;
    broken.mFirst = 3800;
    EXPECT_EQ(LengthOf(broken.Bytes()), "|||6000000|");
    // The last picture begins before the end that is read.
    Constant large;
    large.mLastSize = kEnd;
    EXPECT_EQ(LengthOf(large.Bytes()), "2000||\"constant rate\"|6000000|");
    large.mLastSize = kEnd + 1; // what is not seen may be longer than it is
    EXPECT_EQ(LengthOf(large.Bytes()), "3135|2001|\"estimate: size and stated rate\"|6000000|");
}

TEST(VideoStreamParser, ConstantRateTellsTheLengthRoughlyWherePicturesDoNot) {
    const auto told = [](const std::string& aStream) {
        std::string file = aStream;
        file.resize(1500000, '\x35');
        return LengthOf(file);
    };
    // Two seconds at 6 Mbit/s, and what a buffer holds.
    EXPECT_EQ(told(MPEG2(1000)), "3000|2000|\"estimate: size and stated rate\"|6000000|");
    EXPECT_EQ(told(MPEG1(1000)), "3000|2000|\"estimate: size and stated rate\"|6000000|");
    h264::Stream264 stream;
    stream.mSigns.mUnits = 1;
    stream.mSigns.mScale = 50;
    stream.mfDelays = true;
    EXPECT_EQ(told(stream.Bytes()), "13000|2000|\"estimate: size and stated rate\"|1000000|");
    stream.mfConstant = false;
    EXPECT_EQ(told(stream.Bytes()), "||||1000000") << "the most";
    EXPECT_EQ(told(MPEG2()), "||||6000000") << "of a rate that varies it is the most";
    Delivery unknown;
    unknown.mfSizeKnown = false;
    EXPECT_EQ(LengthOf(MPEG2(1000), unknown), "||\"none: the end was not read\"|6000000|");
    EXPECT_EQ(LengthOf(H264(), unknown), "||\"none: the end was not read\"||");
}

TEST(VideoStreamParser, HeadOfVC1TellsProfileLevelSizeAndHowManyFramesThereAre) {
    struct Case {
        void (*mChange)(RCV&);
        const char* mFacts; ///< codec, profile, level, size, frame rate, length, rates
    };
    const std::vector<Case> cases = {
        {[](RCV&) {}, "\"WMV3\"|\"Main\"|20|320|240|25000|4000|\"header\"|||"},
        {[](RCV& f) { f.mStructC[0] = '\x0E'; }, "\"WMV3\"|\"Simple\"|20|320|240|25000|4000|\"header\"|||"},
        {[](RCV& f) { f.mLevel = 0; }, "\"WMV3\"|\"Main\"|10|320|240|25000|4000|\"header\"|||"},
        {[](RCV& f) { f.mLevel = 4; }, "\"WMV3\"|\"Main\"|40|320|240|25000|4000|\"header\"|||"},
        {[](RCV& f) { f.mLevel = 7; }, "\"WMV3\"|\"Main\"||320|240|25000|4000|\"header\"|||"},
        {[](RCV& f) { f.mFrameRate = UINT32_MAX; }, "\"WMV3\"|\"Main\"|20|320|240||||||"},
        {[](RCV& f) { f.mFrameRate = 0; }, "\"WMV3\"|\"Main\"|20|320|240||||||"},
        {[](RCV& f) { f.mFrames = 0; }, "\"WMV3\"|\"Main\"|20|320|240|25000|||||"},
        {[](RCV& f) { f.mFrames = 0xFFFFFF; }, "\"WMV3\"|\"Main\"|20|320|240|25000|||||"},
        {[](RCV& f) { f.mRate = 300000; }, "\"WMV3\"|\"Main\"|20|320|240|25000|4000|\"header\"||300000|"},
        {[](RCV& f) {
             f.mRate = 32288;
             f.mfConstant = true;
         },
         "\"WMV3\"|\"Main\"|20|320|240|25000|4000|\"header\"|32288||"},
        {[](RCV& f) {
             f.mRate = 32288;
             f.mfConstant = true;
             f.mFrames = 0;
         },
         "\"WMV3\"|\"Main\"|20|320|240|25000|2000|\"estimate: size and stated rate\"|32288||2000"},
        {[](RCV& f) {
             f.mRate = 400000000;
             f.mfConstant = true;
             f.mFrames = 0;
         },
         "\"WMV3\"|\"Main\"|20|320|240|25000|1001|\"estimate: size and stated rate\"|400000000||1001"},
        {[](RCV& f) { // no film is so fast
             f.mRate = 400000001;
             f.mfConstant = true;
             f.mFrames = 0;
         },
         "\"WMV3\"|\"Main\"|20|320|240|25000|||400000001||"},
        // 500 frames need 4036 bytes; one more shows that the file is cut.
        {[](RCV& f) { f.mFrames = 500; }, "\"WMV3\"|\"Main\"|20|320|240|25000|20000|\"header\"|||"},
        {[](RCV& f) { f.mFrames = 501; }, "\"WMV3\"|\"Main\"|20|320|240|25000|||||"},
        // One frame of 40 ms has two million bytes, or is not all there is.
        {[](RCV& f) {
             f.mFrames = 1;
             f.mMedia.resize(2000000 - 36);
         },
         "\"WMV3\"|\"Main\"|20|320|240|25000|40|\"header\"|||"},
        {[](RCV& f) {
             f.mFrames = 1;
             f.mMedia.resize(2000001 - 36);
         },
         "\"WMV3\"|\"Main\"|20|320|240|25000|||||"},
        {[](RCV& f) {
             f.mStructC = Hex({0xC0, 0, 0, 0});
             f.mMedia.replace(8, VC1().size(), VC1());
         },
         "\"VC1\"|\"Advanced\"|20|1280|720|25000|4000|\"header\"|||"},
        {[](RCV& f) {
             f.mStructC = Hex({0xC0, 0, 0, 0});
         },
         "\"VC1\"|\"Advanced\"||320|240|25000|4000|\"header\"|||"},
    };
    for (const Case& test : cases) {
        RCV file;
        test.mChange(file);
        EXPECT_EQ(Values(file.Bytes(), {"vc", "vp", "vl", "wi", "he", "fr", "dm", "md", "vr", "mv", "db"}),
                  test.mFacts);
        EXPECT_EQ(Values(file.Bytes(), {"mt", "cn", "ct"}), "\"video/x-vc1\"|\"item.videoItem\"|");
        EXPECT_TRUE(IsAt(file.Bytes()));
    }
}

TEST(VideoStreamParser, WhatBreaksTheHeadOfVC1IsNoSuchFile) {
    const std::vector<void (*)(RCV&)> kBroken = {
        [](RCV& f) { f.mMark = 0x85; },         [](RCV& f) { f.mStructC += '\0'; },
        [](RCV& f) { f.mSizeOfB = 8; },         [](RCV& f) { f.mWidth = 0; },
        [](RCV& f) { f.mHeight = 0; },          [](RCV& f) { f.mWidth = 8193; },
        [](RCV& f) { f.mHeight = UINT32_MAX; },
    };
    for (const auto& breaking : kBroken) {
        RCV file;
        breaking(file);
        EXPECT_FALSE(IsAt(file.Bytes()));
        EXPECT_EQ(Values(file.Bytes(), {"vc"}),
                  "VideoStreamParser: malformed: no picture with its headers within " +
                      std::to_string(file.Bytes().size()) + " bytes");
    }
    RCV largest;
    largest.mWidth = 8192;
    largest.mHeight = 8192;
    EXPECT_TRUE(IsAt(largest.Bytes()));
    EXPECT_FALSE(IsAt(largest.Bytes().substr(0, 35)));
}

TEST(VideoStreamParser, CostsTheSameHoweverLongTheFileIs) {
    for (const std::uint64_t megabytes : {4U, 400U, 4500U}) {
        const std::string late = std::string(kFirstWindow, '5') + H264();
        for (const auto& [file, reads, bytes] :
             {std::tuple{H264(), 2U, kFirstWindow},
              {MPEG2(1000), 2U, kFirstWindow},
              {Constant().Bytes().substr(0, kFirstWindow), 3U, kFirstWindow + kEnd},
              {RCV().Bytes(), 1U, std::size_t{8192}},
              {late, 3U, kWindow}}) {
            SparseStream stream(megabytes << 20, {{0, file}});
            VideoStreamParser parser;
            EXPECT_NE(Record(parser.Parse(stream)), nullptr);
            EXPECT_LE(stream.mReads, reads) << megabytes;
            EXPECT_LE(stream.mBytes, bytes) << megabytes;
        }
    }
}
