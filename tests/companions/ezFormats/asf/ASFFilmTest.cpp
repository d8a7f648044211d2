#include "ezFormats/asf/ASFParser.h"

#include "companions/ezFormats/ChunkBytes.h"
#include "companions/ezFormats/codecs/MPEGVideoBytes.h"
#include "companions/ezFormats/codecs/VC1Bytes.h"

#include "support/AsfBytes.h"

#include <gtest/gtest.h>

using namespace asf;
using namespace std::string_literals;

namespace {

constexpr std::uint32_t kPacketSize = 1000;
constexpr std::uint64_t kSecond = 10000000; // 100 ns
constexpr std::uint64_t kNTSC = 333667;     // 100 ns of a picture

std::string Values(const std::string& aBytes, const std::vector<const char*>& aKeys) {
    return chunks::Values<ASFParser>(aBytes, aKeys);
}

/// Ten packets of a second, after a preroll of three.
File TenPackets() {
    return {10, 4 * kSecond, 3000, 2, kPacketSize, 80000, 0, 0};
}
std::string Film(const std::string& anObjects, std::string aPackets = "") {
    aPackets.resize(std::size_t{10} * kPacketSize, '\x11');
    return Header(TenPackets().Bytes() + anObjects) + asf::Data(aPackets, 10);
}
/// What is told of one stream of video.
std::string Video(const std::string& aCodec, const std::string& aData, const std::vector<const char*>& aKeys,
                  const std::string& aPackets = "") {
    return Values(Film(asf::Video(aCodec, 2, aData), aPackets), aKeys);
}

std::string Pictures(std::uint64_t aFrameTime, unsigned aNumber = 2) {
    return HeaderExtension(ExtendedStream(aNumber, 64000, "", {}, {}, aFrameTime));
}
std::string Number(unsigned aStream, const char* aName, std::uint32_t aNumber) {
    return Attribute{aName, Little(aNumber), 3, aStream}.Library();
}
std::string Aspect(const std::vector<std::string>& aNumbers) {
    std::string all = Little(aNumbers.size(), 2);
    for (const std::string& number : aNumbers) {
        all += number;
    }
    return HeaderExtension(Object(kMetadata, all));
}

/// A stream of sound, and its language and rate.
std::string Spoken(unsigned aNumber, unsigned aLanguage, unsigned aBytes, unsigned aRate = 44100) {
    return HeaderExtension(ExtendedStream(aNumber, aBytes * 8, "", {}, {}, 0, aLanguage)) +
           Sound({0x161, 2, aRate, aBytes, 743, 16, ""}, aNumber);
}

/// VIDEOINFOHEADER, and of the second kind the shape of the display.
std::string Info(const std::string& aCodec, std::uint64_t aFrameTime) {
    return std::string(32, 'r') + Little(5000000) + Little(0) + Little(aFrameTime, 8) +
           Bitmap(aCodec, 720, 480);
}
std::string Info2(unsigned aWidth, unsigned aHeight, const std::string& aCodec = "\0\0\0\0"s) {
    return std::string(32, 'r') + Little(5000000) + Little(0) + Little(kNTSC, 8) + Little(1) + Little(0) +
           Little(aWidth) + Little(aHeight) + Little(0) + Little(0) + Bitmap(aCodec, 720, 480);
}
std::string MPEG2Info(const std::string& aSequence) {
    return Info2(4, 3) + Little(0) + Little(aSequence.size()) + Little(4) + Little(8) + Little(0) + aSequence;
}
std::string Recorded(const std::string& aForm, const std::string& aFormat,
                     const std::string& aSubtype = kSubtypeMPEG2Video) {
    return Binary(kBinaryVideo, aForm, aFormat, 2, aSubtype);
}

} // namespace

TEST(ASFFilm, CodecAndItsTypeAreThoseOfTheFourCharacters) {
    const std::string simple = "\0\0\1\xB0\3\0\0\1\xB5"s;
    struct Case {
        const char* mCodec;
        std::string mData;
        const char* mFacts; ///< type, codec, profile, level, scan
    };
    const Case kCases[] = {
        {"WMV1", "", "\"video/x-ms-wmv\"|\"WMV1\"|||"},
        {"WMV2", "1234", "\"video/x-ms-wmv\"|\"WMV2\"|||"},
        {"WMV3", "\x4E\x39\x0A\1\0"s, "\"video/x-ms-wmv\"|\"WMV3\"|\"Main\"||\"progressive\""},
        {"WMV3", "\x0E\x39\x0A\1"s, "\"video/x-ms-wmv\"|\"WMV3\"|\"Simple\"||\"progressive\""},
        {"WVC1", "\x29"s + vc1::Sequence().Bytes() + vc1::EntryPoint(),
         "\"video/x-ms-asf\"|\"VC1\"|\"Advanced\"|20|\"progressive\""},
        {"WMVA", "", "\"video/x-ms-asf\"|\"VC1\"|\"Advanced\"||"},
        {"WMVP", "", "\"video/x-ms-asf\"|\"WMV-image\"|||"},
        {"WVP2", "", "\"video/x-ms-asf\"|\"WMV-image\"|||"},
        {"MSS1", "", "\"video/x-ms-asf\"|\"MSS1\"|||"},
        {"MSS2", "", "\"video/x-ms-asf\"|\"MSS2\"|||"},
        {"MP43", "", "\"video/x-ms-asf\"|\"MSMPEG4v3\"|||"},
        {"MP4S", simple, "\"video/x-ms-asf\"|\"MPEG4\"|\"Simple\"|30|"},
        {"M4S2", simple, "\"video/x-ms-asf\"|\"MPEG4\"|\"Simple\"|30|"},
        {"H264", "", "\"video/x-ms-asf\"|\"H264\"|||"},
        {"MP2V", "", "\"video/x-ms-asf\"|\"MPEG2\"|||"}};
    for (const Case& test : kCases) {
        EXPECT_EQ(Video(test.mCodec, test.mData, {"mt", "vc", "vp", "vl", "pr"}), test.mFacts) << test.mCodec;
    }
    vc1::Sequence interlaced;
    interlaced.mfInterlaced = true;
    interlaced.mWidth = 1440;
    interlaced.mHeight = 1080;
    interlaced.mDisplayWidth = 1920;
    interlaced.mDisplayHeight = 1080;
    interlaced.mRate = 3;
    interlaced.mDivisor = 2;
    EXPECT_EQ(Video("WVC1", "\x29"s + interlaced.Bytes(), {"pr", "fr", "pa", "dr"}),
              "\"interlaced\"|29970|\"4:3\"|\"16:9\"")
        << "the size is that of the format, the rest that of the sequence";
}

TEST(ASFFilm, SizeIsThatOfTheFormat) {
    EXPECT_EQ(Video("WMV2", "", {"wi", "he", "cr", "cd"}), "320|240|\"4:2:0\"|8");
    // One that ends early has the sizes before the bitmap alone.
    EXPECT_EQ(
        Values(Film(Stream(2, kVideoMedia, Little(640) + Little(480) + "\2")), {"vt", "vc", "wi", "he"}),
        "1||640|480");
    EXPECT_EQ(Values(Film(Stream(2, kVideoMedia, Little(640) + "\1\2")), {"vt", "vc", "wi"}), "1||");
}

TEST(ASFFilm, FrameRateIsThatOfTheExtendedProperties) {
    struct Case {
        std::uint64_t mTime; ///< 100 ns
        const char* mRate;
    };
    constexpr Case kCases[] = {
        {kNTSC, "29970"},  {417083, "23976"},  {400000, "25000"},         {333333, "30000"},
        {200000, "50000"}, {10000000, "1000"}, {33334, "299994"},         {33333, ""},
        {0, ""},           {UINT64_MAX, ""},   {3689348814740704323U, ""}};
    for (const Case& rate : kCases) {
        EXPECT_EQ(Values(Film(asf::Video() + Pictures(rate.mTime)), {"fr"}), rate.mRate) << rate.mTime;
    }
    EXPECT_EQ(Values(Film(asf::Video() + Pictures(kNTSC, 1)), {"fr"}), "") << "that of another stream";
    vc1::Sequence sequence;
    sequence.mDisplayWidth = 320;
    sequence.mDisplayHeight = 240;
    sequence.mRate = 2;
    const std::string stream = asf::Video("WVC1", 2, sequence.Bytes());
    EXPECT_EQ(Values(Film(stream), {"fr"}), "25000");
    EXPECT_EQ(Values(Film(Pictures(kNTSC) + stream), {"fr"}), "29970") << "what holds it goes first";
}

TEST(ASFFilm, ShapeOfAPixelIsThatOfTheMetadata) {
    const auto shapes = [](const std::string& anObjects) {
        return Values(Film(asf::Video() + anObjects), {"pa", "dr"});
    };
    const std::string file = Number(0, "AspectRatioX", 8) + Number(0, "AspectRatioY", 9);
    const std::string x2 = Number(2, "AspectRatioX", 64);
    const std::string y2 = Number(2, "AspectRatioY", 45);
    EXPECT_EQ(shapes(""), "|");
    EXPECT_EQ(shapes(Aspect({x2, y2})), "\"64:45\"|\"256:135\"");
    EXPECT_EQ(shapes(Aspect({Number(2, "AspectRatioX", 2), Number(2, "AspectRatioY", 2)})),
              "\"1:1\"|\"4:3\"");
    EXPECT_EQ(shapes(Aspect({x2})), "|");
    EXPECT_EQ(shapes(Aspect({x2, Number(2, "AspectRatioY", 0)})), "|");
    EXPECT_EQ(shapes(Aspect({Number(1, "AspectRatioX", 64), Number(1, "AspectRatioY", 45)})), "|");
    const std::string content =
        ExtendedContent({{"AspectRatioX", Little(8), 3}, {"AspectRatioY", Little(9), 3}});
    EXPECT_EQ(shapes(content), "\"8:9\"|\"32:27\"");
    EXPECT_EQ(shapes(content + Aspect({x2, y2})), "\"64:45\"|\"256:135\"") << "what is said of it goes first";
}

TEST(ASFFilm, RatesAreThoseThatAreStatedUnlessThePacketsHaveLess) {
    // Ten packets of a second are 80000 bits a second.
    const std::vector<const char*> keys = {"vr", "mv", "ev", "ar"};
    const std::string both = Sound({0x161, 2, 44100, 2000, 743, 16, ""}) + asf::Video();
    const auto rates = [&](const std::string& anObjects) { return Values(Film(both + anObjects), keys); };
    EXPECT_EQ(rates(BitRates({{1, 17000}, {2, 60000}})), "60000|||16000");
    EXPECT_EQ(rates(BitRates({{1, 17000}, {2, 60000}}) + Pictures(kNTSC)), "60000|64000||16000");
    EXPECT_EQ(rates(BitRates({{1, 40000}, {2, 60000}})), "60000|||16000") << "a quarter more";
    EXPECT_EQ(rates(BitRates({{1, 40000}, {2, 60001}})), "||64000|16000");
    EXPECT_EQ(rates(BitRates({{1, 40000}, {2, 200000}}) + Pictures(kNTSC)), "|64000|64000|16000");
    EXPECT_EQ(rates(BitRates({{2, 999}})), "||64000|16000");
    EXPECT_EQ(rates(""), "||64000|16000") << "what the sound leaves";
}

TEST(ASFFilm, ProfileIsThatOfWhatTheFileTellsInBits) {
    const std::string simple = "\x0F\0\0\0"s;
    const std::string main = "\x4F\0\0\0"s;
    const auto advanced = [](unsigned aLevel) {
        vc1::Sequence sequence;
        sequence.mLevel = aLevel;
        return "\x29"s + sequence.Bytes();
    };
    const Wave wma;
    const Wave full = {0x161, 2, 48000, 48000, 743, 16, ""};
    const Wave pro = {0x162, 6, 48000, 55000, 743, 24, ""};
    const Wave lossless = {0x163, 2, 44100, 48000, 743, 16, ""};
    const Wave voice = {0x00A, 1, 8000, 1000, 185, 16, ""};
    const Wave mp3 = {0x055, 2, 44100, 16000, 1, 0, ""};
    const Wave g726 = {0x045, 1, 8000, 4000, 1, 4, ""};
    struct Case {
        const char* mCodec;
        std::string mData;
        unsigned mWidth;
        unsigned mHeight;
        unsigned mRate; ///< pictures a second
        std::uint32_t mBitRate;
        Wave mSound;
        const char* mProfile;
    };
    // A rate may lie a thousandth above a bound.
    const Case kCases[] = {
        {"WMV3", simple, 176, 144, 15, 96096, wma, "WMVSPLL_BASE"},
        {"WMV3", simple, 176, 144, 15, 96097, wma, "WMVSPML_BASE"},
        {"WMV3", simple, 352, 288, 15, 384384, wma, "WMVSPML_BASE"},
        {"WMV3", simple, 352, 288, 15, 384384, mp3, "WMVSPML_MP3"},
        {"WMV3", simple, 352, 288, 15, 384385, wma, "WMVMED_BASE"},
        {"WMV3", simple, 352, 288, 15, 384385, mp3, ""},
        {"WMV3", main, 720, 576, 25, 10010000, wma, "WMVMED_BASE"},
        {"WMV3", main, 720, 576, 25, 10010000, full, "WMVMED_FULL"},
        {"WMV3", main, 720, 576, 25, 10010000, pro, "WMVMED_PRO"},
        {"WMV3", main, 720, 576, 25, 10010001, wma, "WMVHIGH_FULL"},
        {"WMV3", main, 1920, 1080, 30, 20020000, pro, "WMVHIGH_PRO"},
        {"WMV3", main, 1920, 1080, 30, 20020001, pro, ""},
        {"WMV3", main, 720, 576, 25, 900000, lossless, ""},
        {"WMV3", main, 720, 576, 25, 900000, voice, ""},
        {"WMV1", "", 320, 240, 25, 300000, wma, ""},
        {"WMV2", main, 320, 240, 25, 300000, wma, ""},
        {"WVC1", advanced(1), 720, 576, 25, 10010000, full, "VC1_ASF_AP_L1_WMA"},
        {"WVC1", advanced(1), 720, 576, 25, 10010001, full, "VC1_ASF_AP_L2_WMA"},
        {"WVC1", advanced(2), 1280, 720, 30, 20020000, wma, "VC1_ASF_AP_L2_WMA"},
        {"WVC1", advanced(2), 1280, 720, 30, 20020001, wma, ""},
        {"WVC1", advanced(3), 1920, 1080, 30, 900000, wma, ""},
        {"WVC1", advanced(1), 720, 576, 25, 900000, lossless, ""},
        {"WVC1", advanced(1), 720, 576, 25, 900000, voice, ""},
        {"MP4S", "\0\0\1\xB0\3\0\0\1\xB5"s, 352, 288, 30, 384384, g726, "MPEG4_P2_ASF_SP_G726"},
        {"MP4S", "\0\0\1\xB0\3\0\0\1\xB5"s, 352, 288, 30, 384385, g726, "MPEG4_P2_ASF_ASP_L4_SO_G726"}};
    for (const Case& film : kCases) {
        const std::string video =
            Stream(2, kVideoMedia, VideoFormat(film.mCodec, film.mWidth, film.mHeight, film.mData));
        const std::string rates =
            BitRates({{1, film.mSound.mAverage * 8}}) +
            HeaderExtension(ExtendedStream(2, film.mBitRate, "", {}, {}, kSecond / film.mRate));
        const std::string field = Values(Film(Sound(film.mSound) + video + rates), {"dl"});
        const std::string name = film.mProfile == ""s ? "" : "DLNA.ORG_PN="s + film.mProfile + ";";
        EXPECT_EQ(field.substr(1, name.size()), name) << film.mCodec << " " << film.mBitRate << " " << field;
        EXPECT_EQ(field.find("PN=") != field.npos, !name.empty()) << film.mCodec << " " << field;
    }
}

TEST(ASFFilm, OfStreamsThatExcludeEachOtherByRateTheLargestCountsOnce) {
    const std::string sounds =
        Sound({0x161, 1, 8000, 1000, 640, 16, ""}, 1) + Sound({0x161, 2, 44100, 8000, 743, 16, ""}, 3);
    const std::string videos =
        asf::Video("WMV2", 2) + Stream(4, kVideoMedia, VideoFormat("WMV3", 640, 480, "\x4F\0\0\0"s));
    const std::string rates = BitRates({{1, 9000}, {2, 20000}, {3, 65000}, {4, 90000}});
    const std::vector<const char*> keys = {"ta", "sf", "vc", "wi"};
    const auto film = [&](const std::string& anObjects) {
        return Values(Film(sounds + videos + rates + anObjects), keys);
    };
    const std::string chosen = "44100|\"WMV3\"|640";
    EXPECT_EQ(film(Exclusion(kBitRateExclusion, kByBitRate, {1, 3})), "1|" + chosen);
    EXPECT_EQ(film(HeaderExtension(Exclusion(kAdvancedExclusion, kByBitRate, {3, 1}) +
                                   Exclusion(kAdvancedExclusion, kByBitRate, {2, 4}))),
              "1|" + chosen);
    EXPECT_EQ(film(HeaderExtension(Exclusion(kAdvancedExclusion, kByLanguage, {1, 3}))), "2|" + chosen);
    EXPECT_EQ(film(""), "2|" + chosen) << "who knows why there are two";
    EXPECT_EQ(
        Values(Film(HeaderExtension(Exclusion(kAdvancedExclusion, kByBitRate, {1, 3})) + sounds + videos),
               {"ta"}),
        "1")
        << "before they are described";
    // Lists that lie about their count, or name what is not there.
    std::string lying = Exclusion(kBitRateExclusion, kByBitRate, {1});
    lying.replace(24 + 16, 2, "\xFF\xFF");
    EXPECT_EQ(film(lying), "2|" + chosen);
    EXPECT_EQ(film(Exclusion(kBitRateExclusion, kByBitRate, {9, 0, 127})), "2|" + chosen);
}

TEST(ASFFilm, LanguagesAreTracksAndTheFirstPlays) {
    const std::string names = HeaderExtension(Languages({"en-us", "fr", "", "de-DE"}));
    const std::vector<const char*> keys = {"ta", "la", "sf"};
    const auto film = [&](const std::string& anObjects) {
        return Values(Film(asf::Video("WMV2", 9) + anObjects), keys);
    };
    const std::string english = Spoken(1, 0, 8000, 32000);
    const std::string french = Spoken(2, 1, 16000, 48000);
    EXPECT_EQ(film(names + english + french), "2|\"en-US,fr\"|32000") << "not the one of the higher rate";
    EXPECT_EQ(film(french + english + names), "2|\"en-US,fr\"|32000");
    EXPECT_EQ(film(names + english + french + Spoken(3, 0, 20000, 44100)), "3|\"en-US,fr\"|44100")
        << "of one language the higher";
    EXPECT_EQ(film(names + english + Spoken(3, 0, 4000) + french +
                   Exclusion(kBitRateExclusion, kByBitRate, {1, 3})),
              "2|\"en-US,fr\"|32000");
    EXPECT_EQ(film(names + Spoken(1, 2, 8000) + Spoken(2, 3, 8000) + Spoken(3, 4, 8000)), "3|\"de-DE\"|44100")
        << "one without a name, and one that is not in the list";
    EXPECT_EQ(film(english + french), "2||32000");
    // A tag tells the language where the streams do not.
    const std::string tag = ExtendedContent({Text("WM/Language", "it")});
    EXPECT_EQ(film(names + english + tag), "1|\"en-US\"|32000");
    EXPECT_EQ(film(english + tag), "1|\"it\"|32000");
}

TEST(ASFFilm, SoManyLanguagesAreToldApart) {
    const auto last = [](std::size_t aPlace) {
        std::vector<std::string> names(aPlace, "en");
        names.emplace_back("fr");
        return Values(Film(asf::Video() + HeaderExtension(Languages(names)) +
                           Spoken(1, static_cast<unsigned>(aPlace), 8000)),
                      {"la"});
    };
    EXPECT_EQ(last(kASF_MaxLanguages - 1), "\"fr\"");
    EXPECT_EQ(last(kASF_MaxLanguages), "");
}

TEST(ASFFilm, RecordingOfTelevisionIsReadInItsOwnForm) {
    mpegvideo::Sequence sequence;
    sequence.mHeight = 480;
    sequence.mRate = 4;
    sequence.mAspect = 3;
    const std::string header = sequence.Bytes();
    const std::vector<const char*> keys = {"mt", "vc", "vp", "wi", "he", "fr", "pa", "pr"};
    const auto told = [&](const std::string& aStream, const std::string& aPackets = "") {
        return Values(Film(aStream, aPackets), keys);
    };
    const std::string full = "\"video/x-ms-dvr\"|\"MPEG2\"|\"Main\"|720|480|29970|\"32:27\"|\"interlaced\"";
    EXPECT_EQ(told(Recorded(kFormMPEG2Video, MPEG2Info(header))), full);
    EXPECT_EQ(told(Recorded(kFormMPEG2Video, MPEG2Info("")), PacketOf(kPacketSize, {{2, 0, 0, header}})),
              full)
        << "the header stands in the stream alone";
    const std::string plain = "\"video/x-ms-dvr\"|\"MPEG2\"||720|480|29970|\"8:9\"|";
    EXPECT_EQ(told(Recorded(kFormMPEG2Video, MPEG2Info(""))), plain);
    EXPECT_EQ(told(Recorded(kFormVideo2, Info2(4, 3))), plain);
    EXPECT_EQ(told(Recorded(kFormVideo, Info("\0\0\0\0"s, 400000))),
              "\"video/x-ms-dvr\"|\"MPEG2\"||720|480|25000||");
    EXPECT_EQ(told(Recorded(kFormVideo2, Info2(16, 9, "WMV2"), std::string(16, 's'))),
              "\"video/x-ms-wmv\"|\"WMV2\"||720|480|29970|\"32:27\"|");
    EXPECT_EQ(told(Recorded(std::string(16, 'f'), "", std::string(16, 's'))), "\"video/x-ms-asf\"|||||||");
    // A size that lies about what follows it.
    std::string lying = MPEG2Info(header);
    lying.replace(116, 4, "\xFF\xFF\xFF\xFF");
    EXPECT_EQ(told(Recorded(kFormMPEG2Video, lying)), full);
}

TEST(ASFFilm, SoundOfARecordingGoesByItsSubtype) {
    const auto codec = [](const std::string& aSubtype, unsigned aTag) {
        const std::string sound =
            Binary(kBinarySound, kFormWave, Wave{aTag, 2, 48000, 24000, 768, 0, ""}.Bytes(), 1, aSubtype);
        return Values(Film(sound + Recorded(kFormVideo2, Info2(4, 3))), {"ca", "sf", "ta"});
    };
    EXPECT_EQ(codec(kSubtypeAC3, 0), "\"AC3\"|48000|1");
    EXPECT_EQ(codec(kSubtypeMPEG2Audio, 0x50), "\"MP2\"|48000|1");
    EXPECT_EQ(codec(std::string(16, 's'), 0x50), "\"MP2\"|48000|1");
    EXPECT_EQ(Values(Film(Binary(kBinarySound, kFormVideo, Wave().Bytes(), 1) + asf::Video()), {"ca", "ta"}),
              "|")
        << "not the form of sound";
}

TEST(ASFFilm, FirstMediaObjectTellsWhatTheHeaderLeavesOut) {
    const std::string layer = "\0\0\1\xB0\xF5\0\0\1\x20\x00\x84\x40\x06\x70\xC2\xC1\x09\x06"s;
    const std::string none = "\"MPEG4\"||";
    const std::string all = "\"MPEG4\"|\"AdvancedSimple\"|\"interlaced\"";
    const auto told = [](const std::vector<std::vector<Piece>>& aPackets) {
        std::string packets;
        for (const std::vector<Piece>& pieces : aPackets) {
            packets += PacketOf(kPacketSize, pieces);
        }
        return Video("MP4S", "", {"vc", "vp", "pr"}, packets);
    };
    const std::string first = layer.substr(0, 7);
    const std::string rest = layer.substr(7);
    EXPECT_EQ(told({{{2, 0, 0, layer}}}), all);
    EXPECT_EQ(told({{{2, 0, 0, first}, {2, 0, 7, rest}}}), all);
    EXPECT_EQ(told({{{1, 0, 0, "sound"}, {2, 0, 0, first}, {1, 1, 0, "sound"}}, {{2, 0, 7, rest}}}), all);
    EXPECT_EQ(told({{{2, 8, 99, "the end of another"}, {2, 9, 0, layer}}}), all);
    EXPECT_EQ(told({{{1, 0, 0, layer}}}), none) << "of another stream";
    const std::string half = "\"MPEG4\"|\"AdvancedSimple\"|";
    EXPECT_EQ(told({{{2, 0, 0, first}, {2, 0, 8, rest}}}), half) << "a piece is missing";
    EXPECT_EQ(told({{{2, 0, 0, first}, {2, 1, 7, rest}}}), half) << "of another object";
    EXPECT_EQ(told({{{2, 0, 0, "no header"}, {2, 1, 0, layer}}}), none) << "the first object counts";
    EXPECT_EQ(told({}), none);
    // Several objects in one payload, each after its size.
    const std::string several = "\x01\x5D"s + std::string(6, '\0') + "\x81" + "\x82\0"s + Little(3000) +
                                "\x01\x64" + Little(layer.size() + 3, 2) + static_cast<char>(layer.size()) +
                                layer + "\1x";
    EXPECT_EQ(
        Video("MP4S", "", {"vc", "vp", "pr"}, several + std::string(kPacketSize - several.size(), '\0')),
        all);
    // What an encrypted one begins with is nothing.
    EXPECT_EQ(Values(Film(asf::Video("MP4S", 2, "", 0x8000), PacketOf(kPacketSize, {{2, 0, 0, layer}})),
                     {"vc", "vp"}),
              "\"encrypted:MP4S\"|"s.replace(11, 4, "MPEG4"));
}

TEST(ASFFilm, FirstMediaObjectThatCannotBeReadRefusesTheFile) {
    const std::string padding = Object(kPadding, std::string(5000, '\0'));
    const std::string file = Film(padding + asf::Video("MP4S"));
    Delivery failing;
    failing.mFailingOffset = file.size() - std::size_t{5} * kPacketSize;
    EXPECT_EQ(chunks::Values<ASFParser>(file, {"vc"}, failing),
              "ASFParser: read error: before all that tells the length and the first picture");
    EXPECT_EQ(chunks::Values<ASFParser>(Film(padding + asf::Video("WMV1")), {"vc"}, failing), "\"WMV1\"")
        << "of which no frame is read";
}

TEST(ASFFilm, SoMuchIsLookedThroughForTheFirstMediaObject) {
    const std::string layer = "\0\0\1\xB0\xF5\0\0\1\x20\x00\x84\x40\x06\x70\xC2\xC1\x09\x06"s;
    const auto film = [&](std::size_t aBefore, std::size_t aWithin) {
        std::string packets(aBefore, '\x11');
        packets += PacketOf(kPacketSize, {{2, 0, 0, std::string(aWithin, 'v') + layer}});
        File file = TenPackets();
        file.mPackets = 40;
        packets.resize(std::size_t{40} * kPacketSize, '\x11');
        return Values(Header(file.Bytes() + asf::Video("MP4S")) + asf::Data(packets, 40), {"vp"});
    };
    constexpr std::size_t kPackets = kASF_FrameWindow / kPacketSize;
    EXPECT_EQ(film((kPackets - 1) * kPacketSize, 0), "\"AdvancedSimple\"");
    EXPECT_EQ(film(kPackets * kPacketSize, 0), "");
    const auto large = [&](std::size_t aBefore) {
        constexpr std::size_t kLarge = 20000;
        File file = {1, 4 * kSecond, 3000, 2, kLarge, 80000, 0, 0};
        return Values(Header(file.Bytes() + asf::Video("MP4S")) +
                          asf::Data(PacketOf(kLarge, {{2, 0, 0, std::string(aBefore, 'v') + layer}}), 1),
                      {"vp"});
    };
    EXPECT_EQ(large(kASF_MaxFrame - layer.size()), "\"AdvancedSimple\"");
    EXPECT_EQ(large(kASF_MaxFrame), "");
}

TEST(ASFFilm, EncryptedOneIsNamedAndHasNoContainerThatARuleAsksFor) {
    const std::vector<const char*> keys = {"mt", "ct", "vc", "ca", "dm", "dl"};
    const std::string encrypted =
        "\"video/x-ms-wmv\"||\"encrypted:WMV2\"|\"encrypted:WMA2\"|1000|\"DLNA.ORG_OP=01\"";
    const std::string both = Sound(Wave()) + asf::Video();
    for (const std::string& kind : {kContentEncryption, kExtendedEncryption, kAdvancedEncryption}) {
        EXPECT_EQ(Values(Film(both + Object(kind, "whose")), keys), encrypted);
    }
    EXPECT_EQ(Values(Film(Sound(Wave()) + asf::Video("WMV2", 2, "", 0x8000)), {"ct", "vc", "ca"}),
              "|\"encrypted:WMV2\"|\"WMA2\"");
    EXPECT_EQ(Values(Film(Sound(Wave(), 1, 0x8000) + asf::Video()), {"ct", "vc", "ca"}),
              "\"ASF\"|\"WMV2\"|\"encrypted:WMA2\"");
}

TEST(ASFFilm, TextsOfARecordingAreThoseOfTheProgramme) {
    const std::string texts =
        ExtendedContent({Text("WM/SubTitle", "The episode"), Text("WM/SubTitleDescription", "What happens"),
                         Text("WM/MediaOriginalBroadcastDateTime", "2006-10-02T04:00:00Z")});
    EXPECT_EQ(Values(Film(asf::Video() + Description(Utf16("The series"), "") + texts), {"title", "da"}),
              "\"The series\"|\"2006-10-02T04:00:00Z\"");
    EXPECT_EQ(Values(Film(asf::Video() + texts + ExtendedContent({})), {"title"}), "");
    EXPECT_EQ(
        Values(Film(asf::Video() + ExtendedContent({Text("WM/MediaOriginalBroadcastDateTime", "2006-10-02"),
                                                    Text("WM/Year", "1999")})),
               {"da"}),
        "\"1999\"");
}

TEST(ASFFilm, CommandsAreNoSubtitles) {
    EXPECT_EQ(Values(Film(asf::Video() + Stream(3, kCommandMedia, "")), {"ts", "vt", "ta"}), "|1|");
}

TEST(ASFFilm, FilmOfGigabytesCostsNoMoreThanASmallOne) {
    const std::string objects =
        Sound(Wave()) + asf::Video("MP4S") + Object(kPadding, std::string(3000, '\0')) + Pictures(400000);
    for (const std::uint64_t count : {std::uint64_t{4000}, std::uint64_t{400000}, std::uint64_t{4500000}}) {
        File file = TenPackets();
        file.mPackets = count;
        file.mPlay = 3 * kSecond + count * kSecond / 100;
        const std::string head = Header(file.Bytes() + objects) +
                                 asf::Data("", count).replace(16, 8, Little(50 + count * kPacketSize, 8));
        SparseStream stream(head.size() + count * kPacketSize, {{0, head}});
        EXPECT_EQ(chunks::SparseValue<ASFParser>(stream, "dm"), std::to_string(count * 10));
        EXPECT_EQ(stream.mReads, 2U);
        EXPECT_LE(stream.mBytes, std::uint64_t{40} << 10);
    }
}
