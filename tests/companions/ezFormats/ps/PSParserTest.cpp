#include "ezFormats/ps/PSParser.h"

#include "companions/ezFormats/FormatFiles.h"
#include "companions/ezFormats/codecs/VC1Bytes.h"
#include "companions/ezFormats/ps/PSKit.h"

#include "support/Samples.h"

#include <gtest/gtest.h>

using namespace ps;
using namespace std::string_literals;

namespace {

std::vector<std::string> UsualFiles() {
    Film small;
    small.mFrames = 2;
    Film old = small;
    old.mfMPEG1 = true;
    old.mVideo = MPEG1();
    Film disc = small;
    disc.mAudioStream = 0xBD;
    disc.mAudio = Sub(0x80, AC3());
    disc.mAudioTicks = kAC3Ticks;
    return {small.Bytes(), old.Bytes(), disc.Bytes()};
}

std::vector<std::string> CostlyFiles() {
    const std::string pictures = Packet(0xE0, std::string(60000, '\x33'));
    std::string silent;
    std::string restarting;
    std::string empty;
    for (unsigned i = 0; i < 60; ++i) {
        silent += Pack(i * kSecond) + pictures + pictures;
        restarting += Pack(0) + Pack(kSecond) + Packet(0xE0, MPEG2(), 1) + pictures + pictures;
        empty += Plain(0xBE, std::string(65535, '\xFF'));
    }
    return {silent, restarting, Pack(0) + empty, CDXA(restarting)};
}

const FormatFiles kFiles("mpg", {24, 8U << 20}, {"mt"}, UsualFiles, CostlyFiles);

} // namespace

TEST(PSParser, RecordSaysWhatTheHeadersAndStampsSay) {
    EXPECT_EQ(pictures::Parsed<PSParser>(ReadSample("video/river-ferry.mpg")), "ac=1\n"
                                                                               "ar=32000\n"
                                                                               "br=129725\n"
                                                                               "ca=\"MP2\"\n"
                                                                               "cd=8\n"
                                                                               "cn=\"item.videoItem\"\n"
                                                                               "cr=\"4:2:0\"\n"
                                                                               "ct=\"PS\"\n"
                                                                               "dl=\"DLNA.ORG_OP=01\"\n"
                                                                               "dm=3410\n"
                                                                               "dr=\"11:9\"\n"
                                                                               "du=3\n"
                                                                               "ev=97725\n"
                                                                               "fr=25000\n"
                                                                               "he=288\n"
                                                                               "mb=129725\n"
                                                                               "md=\"last frame\"\n"
                                                                               "mt=\"video/mpeg\"\n"
                                                                               "pa=\"1:1\"\n"
                                                                               "pr=\"progressive\"\n"
                                                                               "sf=48000\n"
                                                                               "ta=1\n"
                                                                               "vc=\"MPEG2\"\n"
                                                                               "vl=20\n"
                                                                               "vp=\"Main\"\n"
                                                                               "vt=1\n"
                                                                               "wi=352\n");
}

// ---- tracks ----

TEST(PSParser, SoundIsWhatItsStreamOrSubstreamCarries) {
    struct Case {
        const char* mWhat;
        unsigned mStream;
        std::string mSound;
        const char* mFacts; ///< codec, channels, rate, bits, bit rate, tracks of subtitles
    };
    const std::vector<Case> cases = {
        {"layer II", 0xC0, LayerII(), "\"MP2\"|2|48000||192000"},
        {"layer II, number 31", 0xDF, LayerII(), "\"MP2\"|2|48000||192000"},
        {"AC-3", 0xBD, Sub(0x80, AC3()), "\"AC3\"|6|48000||448000"},
        {"AC-3, number 7", 0xBD, Sub(0x87, AC3()), "\"AC3\"|6|48000||448000"},
        {"AC-3 without a substream", 0xBD, AC3(), "\"AC3\"|6|48000||448000"},
        {"E-AC-3 of discs of high density, but of AC-3 frames", 0xBD, Sub(0xC0, AC3()),
         "\"AC3\"|6|48000||448000"},
        {"plain samples", 0xBD, Sub(0xA0, LPCM()), "\"LPCM\"|2||16|48000"},
        {"of 24 bits at 96 kHz", 0xBD, Sub(0xA7, LPCM(0x91)), "\"LPCM\"|2||24|96000"},
        {"of 20 bits in eight channels", 0xBD, Sub(0xA0, LPCM(0x47)), "\"LPCM\"|8||20|48000"},
    };
    for (const Case& test : cases) {
        Film film;
        film.mAudioStream = test.mStream;
        film.mAudio = test.mSound;
        EXPECT_EQ(Values(film.Bytes(), {"ca", "ac", "sf", "bs", "ar"}), test.mFacts) << test.mWhat;
        EXPECT_EQ(Values(film.Bytes(), {"ta", "ts", "vc"}), "1||\"MPEG2\"") << test.mWhat;
    }
}

TEST(PSParser, TrackOfTheLowestNumberPlaysFirstAndAllAreCounted) {
    Film film;
    film.mAudioStream = 0xC1;
    film.mHead = Packet(0xBD, Sub(0x82, AC3()), 1) +
                 Packet(0xBD, Sub(0x80, LPCM()).replace(0, 1, "\xA0"), 1) + Packet(0xBD, "\x20pic", 1) +
                 Packet(0xBD, "\x21pic", 1) + Packet(0xBD, "\x3Fpic", 1) + Packet(0xE3, "other", 1);
    EXPECT_EQ(Values(film.Bytes(), {"ca", "ta", "ts", "vc"}), "\"LPCM\"|3|3|\"MPEG2\"");
}

TEST(PSParser, PicturesAreWhatTheMapSaysOrWhatTheyBeginWith) {
    struct Case {
        const char* mWhat;
        unsigned mStream;
        std::string mVideo;
        std::string mHead;
        const char* mCodec;
    };
    const std::string extended = Plain(0xFD, Big(0x81, 1) + Big(0x01, 1) + Big(3, 1) + Big(0x0F, 1) +
                                                 Big(0x81, 1) + Big(0x55, 1) + "VC-1");
    const std::vector<Case> cases = {
        {"MPEG-1", 0xE0, MPEG1(), "", "\"MPEG1\""},
        {"MPEG-2", 0xEF, MPEG2(), "", "\"MPEG2\""},
        {"H.264 by the map", 0xE0, "slices", Map(MapEntry(0x03, 0xC0, "\x0A\4eng\0"s) + MapEntry(0x1B, 0xE0)),
         "\"H264\""},
        {"H.264 by the look", 0xE0, "\0\0\0\1\x09\xF0"s + std::string(20, '\x33'), "", "\"H264\""},
        {"MPEG-4 by the look", 0xE0, "\0\0\1\xB0\xF3"s + std::string(20, '\x33'), "", "\"MPEG4\""},
        {"VC-1", 0, "", extended, "\"VC1\""},
        {"nothing known", 0xE0, std::string(40, '\x33'), "", ""},
    };
    for (const Case& test : cases) {
        Film film;
        film.mVideoStream = test.mStream;
        film.mVideo = test.mVideo;
        film.mHead = test.mHead;
        EXPECT_EQ(Values(film.Bytes(), {"vc", "vt", "cn"}), test.mCodec + "|1|\"item.videoItem\""s)
            << test.mWhat;
    }
}

TEST(PSParser, PicturesOfVC1TellAllThatTheirHeadersSay) {
    Film film;
    film.mVideoStream = 0;
    film.mHead = Plain(0xFD, Big(0x81, 1) + Big(0x01, 1) + Big(3, 1) + Big(0x0F, 1) + Big(0x81, 1) +
                                 Big(0x5F, 1) + vc1::Sequence().Bytes() + vc1::EntryPoint() + vc1::Frame(0));
    EXPECT_EQ(Values(film.Bytes(), {"vc", "vp", "vl", "wi", "he"}), "\"VC1\"|\"Advanced\"|20|1280|720");
}

TEST(PSParser, ContainerIsThatOfThePacksWhateverLiesInThem) {
    Film film;
    film.mfMPEG1 = true;
    EXPECT_EQ(Values(film.Bytes(), {"ct", "vc", "dm"}), "\"MPEG1\"|\"MPEG2\"|1008");
    film.mVideo = MPEG1();
    EXPECT_EQ(Values(film.Bytes(), {"ct", "vc", "dm"}), "\"MPEG1\"|\"MPEG1\"|1008");
    film.mfMPEG1 = false;
    EXPECT_EQ(Values(film.Bytes(), {"ct", "vc", "dm"}), "\"PS\"|\"MPEG1\"|1008");
}

TEST(PSParser, SoundAloneIsAudioInTheSameContainer) {
    Film film;
    film.mVideoStream = 0;
    EXPECT_EQ(Values(film.Bytes(), {"mt", "cn", "vt", "dm", "ar"}),
              "\"video/mpeg\"|\"item.audioItem\"||1008|192000");
}

TEST(PSParser, ScrambledTrackIsTheCodecAlone) {
    Film film;
    film.mScrambling = 1;
    EXPECT_EQ(Values(film.Bytes(), {"vc", "ca", "wi", "sf", "dl"}),
              "\"encrypted:MPEG2\"|\"encrypted:MP2\"|||\"DLNA.ORG_OP=01\"");
    film.mAudioStream = 0xBD;
    film.mAudio = Sub(0xA0, LPCM());
    EXPECT_EQ(Values(film.Bytes(), {"vc", "ca", "ac"}), "\"encrypted:MPEG2\"|\"encrypted:LPCM\"|");
}

TEST(PSParser, VideoWithoutAContainerIsLeftToOthers) {
    const std::string refusal = "PSParser: unsupported: MPEG video without packets";
    EXPECT_EQ(Values(MPEG1() + Film().Bytes(), {"vc"}), refusal);
    EXPECT_EQ(Values(MPEG2(), {"vc"}), refusal);
}

// ---- where a stream begins ----

TEST(PSParser, StreamMayBeginAnywhereWithinTheFirst64KiB) {
    const std::string film = Film().Bytes();
    const std::string facts = "\"MPEG2\"|\"MP2\"";
    EXPECT_EQ(Values("HTTP/1.1 200 OK\r\n\r\n" + film, {"vc", "ca"}), facts);
    EXPECT_EQ(Values(std::string(65536, 'j') + film, {"vc", "ca"}), facts);
    EXPECT_EQ(Values(std::string(65537, 'j') + film, {"vc", "ca"}),
              "PSParser: malformed: no packets in a row");
    // A recording that was cut; of a transport stream the packets do not follow each other.
    EXPECT_EQ(Values(film.substr(film.size() / 3), {"ca", "ct"}), "\"MP2\"|\"PS\"");
    EXPECT_EQ(Values(film.substr(14), {"vc", "ct"}), "\"MPEG2\"|\"PS\"");
    std::string transport;
    for (unsigned i = 0; i < 50; ++i) {
        std::string packet = Packet(i % 2 == 0 ? 0xE0 : 0xC0, MPEG2() + LayerII(), i);
        for (std::size_t place = 0; place < packet.size(); place += 184) {
            transport += "G\x40\x31\x10" + packet.substr(place, 184);
        }
    }
    EXPECT_EQ(Values(transport, {"vc"}), "PSParser: malformed: no packets in a row");
    EXPECT_EQ(Values("", {"vc"}), "PSParser: malformed: nothing to read");
    EXPECT_EQ(Values(Pack(0), {"vc"}), "PSParser: malformed: no packets in a row");
    EXPECT_EQ(Values(Pack(0) + Plain(0xBE, "\xFF\xFF") + Plain(0xBE, "\xFF") + Pack(1), {"vc"}),
              "PSParser: unsupported: no stream of pictures or sound");
}

TEST(PSParser, CutStreamIsOfTheCodecsThatAreSeenOnceTheyBegin) {
    // Slices of MPEG video have the codes with which other codecs begin: 15 that of VC-1's sequences; 9 and
    // 39 those of units of H.264, where the slice before ends with a byte of zeros.
    const std::string cut = "\0\0\1\x0F\xC2"s + std::string(20, '\x33') + "\0\0\0\1\x09\x5B"s +
                            std::string(20, '\x33') + "\0\0\0\1\x27\x42\x33"s + std::string(20, '\x33');
    Film film;
    film.mHead = Packet(0xE0, cut) + Packet(0xC0, LayerII().substr(300)) + Packet(0xE0, cut);
    EXPECT_EQ(Values(film.Bytes(), {"vc", "wi", "ca", "vt", "ta"}), "\"MPEG2\"|720|\"MP2\"|1|1");
    // No packet of sound begins with a frame.
    Film shifted;
    shifted.mAudio = LayerII().substr(300) + LayerII().substr(0, 300);
    EXPECT_EQ(Values(shifted.Bytes(), {"ca", "ar", "ta"}), "\"MP2\"|192000|1");
}

TEST(PSParser, StuffingPaddingAndOpenPacketsAreSteppedOver) {
    const std::string film = Film().Bytes();
    EXPECT_EQ(Values(Pack(0, 7) + Plain(0xBB, std::string(12, '\x80')) +
                         Plain(0xBE, std::string(900, '\xFF')) + std::string(20, '\0') + film + End(),
                     {"vc", "ca"}),
              "\"MPEG2\"|\"MP2\"");
    const std::string open = Code(0xE0) + "\0\0\x80\0\0"s + MPEG2();
    EXPECT_EQ(
        Values(Pack(0) + open + Packet(0xC0, LayerII(), 1) + Packet(0xC0, LayerII(), 2161), {"vc", "ca"}),
        "\"MPEG2\"|\"MP2\"");
}

TEST(PSParser, VideoCDIsReadThroughItsSectors) {
    Film film;
    film.mfMPEG1 = true;
    film.mVideo = MPEG1();
    film.mFrames = 50;
    const std::vector<const char*> keys = {"mt", "ct", "vc", "wi", "ca", "dm", "md"};
    EXPECT_EQ(Values(CDXA(film.Bytes()), keys),
              "\"video/mpeg\"|\"MPEG1\"|\"MPEG1\"|352|\"MP2\"|2016|\"last frame\"");
    film.mFill = 12000; // longer than both ends
    EXPECT_EQ(Values(CDXA(film.Bytes()), keys), Values(film.Bytes(), keys));
}

// ---- length ----

TEST(PSParser, LengthIsThatOfTheLongestTrackWithItsLastFrames) {
    const std::string exact = "|\"last frame\"";
    EXPECT_EQ(Length(Film().Bytes()), "1008" + exact) << "42 frames of 24 ms";
    Film film;
    film.mAudioStream = 0;
    EXPECT_EQ(Length(film.Bytes()), "1000" + exact);
    film.mFill = 40000; // a megabyte
    EXPECT_EQ(Length(film.Bytes()), "1000" + exact);
    film.mStart = (std::uint64_t{1} << 33) - kSecond / 3; // the clock comes round
    EXPECT_EQ(Length(film.Bytes()), "1000" + exact);
    // Sound that goes on for ten seconds after the pictures.
    Film sound;
    sound.mVideoStream = 0;
    sound.mFrames = 250;
    sound.mStart = film.mStart + kSecond;
    EXPECT_EQ(Length(film.Bytes() + sound.Bytes()), "11008" + exact);
    // A still picture.
    film.mFrames = 1;
    EXPECT_EQ(Length(film.Bytes()), "|");
}

TEST(PSParser, PartsWhoseClockBeginsAnewAreAddedUpWhereAllIsSeen) {
    Film film;
    film.mFrames = 50;
    Film other;
    EXPECT_EQ(Length(film.Bytes() + other.Bytes() + film.Bytes()), "5040|\"last frame\"");
    other.mStart += 1000 * kSecond; // a gap is nobody's time
    EXPECT_EQ(Length(film.Bytes() + other.Bytes()), "3024|\"last frame\"");
}

TEST(PSParser, LengthIsEstimatedByRatesWhereTheClockBeginsAnewUnseen) {
    Film film;
    film.mFrames = 250;
    film.mFill = 6000;
    const std::string bytes = film.Bytes(); // ten seconds in 1.9 MB
    const std::string estimate = "\"estimate: size and rates of places\"";
    EXPECT_EQ(Length(bytes), "10008|\"last frame\"");
    // Three of them: the stamps of both ends tell of one. An eighth more than their 30 s.
    EXPECT_EQ(Values(bytes + bytes + bytes, {"md"}), estimate);
    const std::string length = Values(bytes + bytes + bytes, {"dm"});
    EXPECT_NEAR(std::stod(length), 30000 * 1.125, 1500);
    // Two titles of a disc, whose stamps alone might be those of one.
    Film first = film;
    Film second = film;
    first.mHead = Navigation(1);
    second.mHead = Navigation(2);
    second.mStart += 10 * kSecond;
    EXPECT_EQ(Values(first.Bytes() + second.Bytes(), {"dm", "md"}), "20008|\"last frame\"");
    std::string last = second.Bytes();
    last.resize(last.size() - 100000);
    last += Navigation(2) + second.PackAt(second.mStart + 9 * kSecond) +
            Packet(0xC0, LayerII(), second.mStart + 9 * kSecond);
    EXPECT_EQ(Values(first.Bytes() + last, {"md"}), estimate);
}

TEST(PSParser, ShortRecordingBeforeALongOneIsNotLeftOut) {
    Film film;
    film.mFrames = 200;
    film.mFill = 20000;
    Film longer = film;
    longer.mFrames = 400; // at the file's middle its clock is past that of the start
    const std::string bytes = film.Bytes() + longer.Bytes();
    EXPECT_EQ(Values(bytes, {"md"}), "\"estimate: size and rates of places\"");
    EXPECT_GE(std::stod(Values(bytes, {"dm"})), 24000);
    EXPECT_EQ(Length(longer.Bytes()), "16008|\"last frame\"");
    // A film whose ends are quieter than what lies between is still what its stamps say.
    Film end = film;
    Film middle = film;
    end.mFrames = 50;
    end.mFill = 7000;
    std::string varying = end.Bytes();
    middle.mStart += 2 * kSecond;
    varying += middle.Bytes();
    end.mStart = middle.mStart + 8 * kSecond;
    EXPECT_EQ(Length(varying + end.Bytes()), "12016|\"last frame\"");
}

TEST(PSParser, WithoutASizeTheStartTellsAllButTheLength) {
    Delivery delivery;
    delivery.mfSizeKnown = false;
    EXPECT_EQ(
        Values(Film().Bytes(), {"vc", "ca", "wi", "dm", "dl"}, delivery),
        "\"MPEG2\"|\"MP2\"|720||\"DLNA.ORG_PN=MPEG_PS_PAL;DLNA.ORG_FLAGS=01500000000000000000000000000000\"");
}

TEST(PSParser, LongFilmCostsFourReads) {
    Film film;
    film.mFrames = 24;
    film.mFill = 10000;
    const std::string first = film.Bytes();
    for (const std::uint64_t size :
         {std::uint64_t{5} << 20, std::uint64_t{400} << 20, std::uint64_t{4500} << 20}) {
        const std::uint64_t seconds = size / first.size();
        Film middle = film;
        middle.mStart += seconds / 2 * kSecond;
        Film end = film;
        end.mStart += seconds * kSecond;
        const std::string last = end.Bytes();
        SparseStream stream(size, {{0, first}, {size / 2, middle.Bytes()}, {size - last.size(), last}});
        EXPECT_EQ(chunks::SparseValue<PSParser>(stream, "dm"), std::to_string(seconds * 1000 + 960)) << size;
        EXPECT_LE(stream.mReads, 4U) << size;
        EXPECT_LE(stream.mBytes, 512U << 10) << size;
    }
}
