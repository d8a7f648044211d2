#include "ezFormats/flv/FLVParser.h"

#include "companions/ezFormats/flv/FLVKit.h"

#include "companions/ezFormats/FormatFiles.h"
#include "companions/ezFormats/SparseStream.h"

namespace {

std::vector<std::string> UsualFiles() {
    const std::string metadata = Number("duration", 0.2) + Text("title", "Film") +
                                 Named("keyframes", Object(Named("times", List(NumberValue(0), 1))));
    const std::string avc = Video(0, Hex({0x17, 0, 0, 0, 0}) + Hex({1, 0x42, 0, 10, 0xFF, 0xE0, 0})) +
                            Video(0, Hex({0x17, 1, 0, 0, 0, 0, 0, 0, 1, 0x65}));
    const std::string enhanced =
        Video(0, Hex({0x90}) + "av01" + Hex({0x81, 5, 12, 0})) +
        Sound(0, Hex({0x95, 0}) + "Opus" + Hex({0}) + "OpusHead" + Hex({1, 2, 0, 0}));
    return {Header() + MetaData(metadata) + Frames(200),
            Header() + avc + Sound(0, Hex({0xAF, 0, 0x12, 0x10})), Header() + enhanced + Sound(0, MP3())};
}

std::vector<std::string> CostlyFiles() {
    const std::string large = Sorenson(320, 180, 70000);
    std::string pictures;
    for (std::uint32_t i = 0; i < 12; ++i) {
        pictures += Video(i * 40, large);
    }
    const std::string keys = Named("times", List(std::string(std::size_t{9} * 20000, '\0'), 20000));
    return {Header() + MetaData(keys) + pictures,
            Header() + MetaData(keys) + pictures + std::string(100000, 'j'),
            Header() + pictures.substr(0, 700000), Header() + Script(std::string(200000, '\0')) + pictures};
}

const FormatFiles kFiles("flv", {8, 512U << 10}, {"ct"}, UsualFiles, CostlyFiles);

} // namespace

TEST(FLVParser, ClassAndTypeFollowFromWhatTheTagsHold) {
    const Keys keys = {"cn", "ct", "mt", "vc", "ca", "ta"};
    const std::string film = "\"item.videoItem\"|\"FLV\"|\"video/x-flv\"|\"Sorenson\"|\"MP3\"|1";
    for (const unsigned flags : {0U, 1U, 4U, 5U, 0xFFU}) {
        EXPECT_EQ(Values(Film("", flags), keys), film) << flags;
        EXPECT_EQ(Values(Header(flags) + Sound(0, MP3()) + Sound(26, MP3()), keys),
                  "\"item.audioItem\"|\"FLV\"|\"video/x-flv\"||\"MP3\"|1")
            << flags;
        EXPECT_EQ(Values(Header(flags) + Video(0, Sorenson(320, 180)), keys),
                  "\"item.videoItem\"|\"FLV\"|\"video/x-flv\"|\"Sorenson\"||")
            << flags;
    }
}

TEST(FLVParser, TrackThatBeginsLateIsFound) {
    const Keys keys = {"vc", "ca"};
    const std::string late = Video(0, Sorenson(320, 180, 100000)) + Frames(400);
    EXPECT_EQ(Values(Header() + late, keys), "\"Sorenson\"|\"MP3\"");
    // That which the header does not promise shows at the end.
    EXPECT_EQ(Values(Header(1) + late, keys), "\"Sorenson\"|\"MP3\"");
    const std::string last = Video(0, Sorenson(320, 180, 70000));
    EXPECT_EQ(Values(Header() + last + last + last + Frames(400), keys), "\"Sorenson\"|\"MP3\"");
    EXPECT_EQ(Values(Header() + last + last + last + last + last + Frames(400), keys), "\"Sorenson\"|")
        << "after the windows";
}

TEST(FLVParser, TagsThatAreLookedAtAreCounted) {
    std::string tags;
    for (std::uint32_t i = 0; i < kFLV_MaxStartTags - 1; ++i) {
        tags += Video(0, "\x22");
    }
    const std::string sound = Sound(0, MP3()) + Video(0, Sorenson(320, 180, 60000));
    EXPECT_EQ(Values(Header() + tags + sound, {"ca"}), "\"MP3\"");
    EXPECT_EQ(Values(Header() + tags + Video(0, "\x22") + sound, {"ca"}), "");
}

TEST(FLVParser, WithoutATagOfPicturesOrSoundItIsRefused) {
    const std::string none = "FLVParser: malformed: ends before a tag of pictures or sound";
    EXPECT_EQ(Refusal(Header()), none);
    EXPECT_EQ(Refusal(Header() + MetaData(Number("duration", 1))), none);
    EXPECT_EQ(Refusal(Header() + Video(0, "")), none) << "nothing in it";
    EXPECT_EQ(Refusal(Header() + Video(0, "\x52seek")), none) << "a command";
    EXPECT_EQ(Refusal(Header() + OpenTag(kVideoTag, 0, Sorenson(320, 180), 1)), none) << "of a stream";
    EXPECT_EQ(Refusal("FLV\2" + Film().substr(4)), "FLVParser: malformed: begins with 464C5602");
}

TEST(FLVParser, HeaderMayBeLonger) {
    EXPECT_EQ(Values("FLV\1\5" + Big(13, 4) + "more" + Film().substr(9), {"vc"}), "\"Sorenson\"");
    EXPECT_EQ(Values("FLV\1\5" + Big(0, 4) + Film().substr(9), {"vc"}), "\"Sorenson\"") << "too short";
}

TEST(FLVParser, CodecsOwnSizeGoesBeforeTheMetadata) {
    const std::string size = Number("width", 640) + Number("height", 480) + Number("framerate", 25);
    const Keys keys = {"wi", "he", "fr", "pa"};
    EXPECT_EQ(Values(Film(size), keys), "320|180|25000|\"1:1\"");
    EXPECT_EQ(Values(Header() + MetaData(size) + Video(0, Hex({0x14, 0x06, 0xF8})), keys),
              "640|480|25000|\"1:1\"")
        << "no key frame";
    const auto stated = [&](double aWidth, double aHeight, double aRate) {
        const std::string metadata =
            Number("width", aWidth) + Number("height", aHeight) + Number("framerate", aRate);
        return Values(Header() + MetaData(metadata) + Video(0, Hex({0x22})), {"wi", "he", "fr"});
    };
    EXPECT_EQ(stated(640.4, 360, 23.976), "640|360|23976");
    EXPECT_EQ(stated(0, 360, 0), "||");
    EXPECT_EQ(stated(640, -360, -25), "||");
    EXPECT_EQ(stated(16384, 16384, 300), "16384|16384|300000");
    EXPECT_EQ(stated(16385, 16384, 300.1), "||");
    EXPECT_EQ(stated(kNoNumber, 360, 1000), "||");
    EXPECT_EQ(stated(kInfinite, 360, 1e300), "||");
}

TEST(FLVParser, LongFilesCostWhatShortOnesDo) {
    for (const std::uint64_t size : {UINT64_C(4000000), UINT64_C(400000000), UINT64_C(4500000000)}) {
        const std::string start = Film(Number("duration", 3600));
        const std::string end = Frames(1000, 3599000);
        SparseStream stream(size, {{0, start}, {size - end.size(), end}});
        FLVParser parser;
        const Record record(parser.Parse(stream));
        ASSERT_NE(record, nullptr) << size;
        EXPECT_EQ(record->GetUInt32(kezInfo_DurationMilliseconds, 0), 3600000U) << size;
        EXPECT_EQ(record->GetCString(kezInfo_DurationMethod, ""), "header") << size;
        EXPECT_EQ(stream.mReads, 2U) << size;
        EXPECT_LE(stream.mBytes, 64U << 10) << size;
    }
}
