#include "ezFormats/avi/AVIParser.h"

#include "companions/ezFormats/FormatFiles.h"
#include "companions/ezFormats/avi/AVIBytes.h"
#include "companions/ezFormats/codecs/DTSBytes.h"
#include "companions/ezFormats/codecs/DVBytes.h"
#include "companions/ezFormats/codecs/MPEGVideoBytes.h"
#include "companions/ezFormats/elementary/EltStreamKit.h"

#include "support/PsBytes.h"
#include "support/Samples.h"

#include <gtest/gtest.h>

using namespace avi;
using namespace std::string_literals;
using chunks::Fmt;
using chunks::Info;
using chunks::Lying;

namespace {

/// The first frame of MPEG-4 video of 176x144, up to its picture.
const std::string kMPEG4 =
    Hex({0,    0, 1,    0xB0, 1,    0, 0,    1,    0xB5, 0x89, 0x13, 0,    0, 1, 0, 0,    0,    1,
         0x20, 0, 0xC4, 0x8D, 0x88, 0, 0xCD, 0x05, 0x84, 0x12, 0x14, 0x63, 0, 0, 1, 0xB6, 0x10, 0x63});

/// A frame of layer III: 44.1 kHz, two channels, 128 kbit/s.
std::string LayerIII() {
    return "\xFF\xFB\x90\0"s + std::string(413, '\x55');
}

Film WithSound(const Stream& aSound, const std::string& aFrame = std::string(8000, '\x11')) {
    Film film;
    film.mStreams.push_back(aSound);
    film.mMovi = Chunk("00dc", "picture") + Chunk("01wb", aFrame);
    return film;
}

std::vector<std::string> UsualFiles() {
    Film small;
    small.mStreams = {Stream(), FramedSound({0x55, 2, 44100, 16000, 1152, 0, ""}, 1152)};
    small.mStreams[0].mFormat = Bitmap("XVID");
    small.mStreams[0].mRest = Chunk("vprp", std::string(68, '\1'));
    small.mMovi = Chunk("00dc", kMPEG4) + Chunk("01wb", LayerIII()) + Frames(3, 20);
    small.mBefore = Info({{"INAM", "Title"}, {"IART", "Artist"}, {"IAS1", "deu"}});
    Film open = small;
    open.mStreams[0].mLength = 0;
    open.mAfter = Chunk("idx1", Entries(4));
    Film parts = small;
    parts.mStreams[0].mRest = SuperIndex{{{2000, 100, 4}, {4000, 100, 4}}}.Bytes();
    parts.mHead = List("odml", Chunk("dmlh", Little(8)));
    parts.mAfter = Chunk("idx1", Entries(4));
    return {small.Bytes(), open.Bytes(),
            parts.Bytes() + chunks::Riff(List("movi", Frames(4)), "RIFF", "AVIX")};
}

std::vector<std::string> CostlyFiles() {
    Film apart; // whatever is asked for lies beyond a block
    apart.mStreams = {Stream(), Sound({0x2000, 6, 48000, 56000, 1, 0, ""})};
    apart.mStreams[0].mLength = 0;
    apart.mMovi = Frames(30, 70000, "00pc");
    for (int i = 0; i < 20; ++i) {
        apart.mAfter += Chunk("JUNK", std::string(70000, 'j')) + Info({{"INAM", "Title"}});
    }
    Film unknown;
    unknown.mStreams[0].mLength = 0;
    unknown.mMovi = Frames(2000, 3000);
    Film indexed = unknown;
    indexed.mAfter = Chunk("idx1", Entries(60000));
    Film crowded; // a chunk is eight bytes
    crowded.mStreams[0].mLength = 0;
    crowded.mMovi = Frames(60000, 0);
    Film texts;
    for (int i = 0; i < 200; ++i) {
        texts.mBefore += Info({{"INAM", std::string(9000, 't')}});
    }
    return {apart.Bytes(), unknown.Bytes(), indexed.Bytes(), crowded.Bytes(), texts.Bytes()};
}

const FormatFiles kFiles("avi", {32, 1U << 20}, {"ct"}, UsualFiles, CostlyFiles);

} // namespace

TEST(AVIParser, RecordSaysWhatTheHeadersAndFramesSay) {
    EXPECT_EQ(pictures::Parsed<AVIParser>(ReadSample("video/kite-day.avi")), "ac=1\n"
                                                                             "br=81558\n"
                                                                             "ca=\"MP3\"\n"
                                                                             "cd=8\n"
                                                                             "cn=\"item.videoItem\"\n"
                                                                             "cr=\"4:2:0\"\n"
                                                                             "ct=\"AVI\"\n"
                                                                             "da=\"2001\"\n"
                                                                             "dl=\"DLNA.ORG_OP=01\"\n"
                                                                             "dm=4240\n"
                                                                             "dr=\"11:9\"\n"
                                                                             "du=4\n"
                                                                             "ea=32000\n"
                                                                             "ev=49558\n"
                                                                             "fr=25000\n"
                                                                             "he=144\n"
                                                                             "mb=81558\n"
                                                                             "md=\"header\"\n"
                                                                             "mt=\"video/x-msvideo\"\n"
                                                                             "pa=\"1:1\"\n"
                                                                             "pr=\"progressive\"\n"
                                                                             "sf=44100\n"
                                                                             "ta=1\n"
                                                                             "vc=\"MPEG4\"\n"
                                                                             "vl=10\n"
                                                                             "vp=\"Simple\"\n"
                                                                             "vt=1\n"
                                                                             "wi=176\n"
                                                                             "title=\"Kite Day\"\n"
                                                                             "creator=\"The Test Tones\"\n"
                                                                             "genre=\"Home\"\n"
                                                                             "album=\"Half a Second\"\n");
}

// ---- pictures ----

TEST(AVIParser, CodecIsThatOfTheFormatAndNotOfTheHandler) {
    struct Case {
        std::string mCompression;
        const char* mCodec;
    };
    const std::vector<Case> cases = {
        {"XVID", "MPEG4"},     {"DX50", "MPEG4"},    {"divx", "MPEG4"},    {"DIV3", "MSMPEG4v3"},
        {"MP42", "MSMPEG4v2"}, {"WMV3", "WMV3"},     {"WVC1", "VC1"},      {"H264", "H264"},
        {"HEVC", "H265"},      {"MJPG", "MJPEG"},    {"dvsd", "DV"},       {"cvid", "Cinepak"},
        {"MPG1", "MPEG1"},     {"\0\0\0\0"s, "raw"}, {"\1\0\0\0"s, "RLE"}, {"\2\0\0\0"s, "RLE"},
        {"\3\0\0\0"s, "raw"},  {"Qxyz", "Qxyz"},     {"a,\x01 "s, "a.."},
    };
    for (const Case& test : cases) {
        Film film;
        film.mStreams[0].mHandler = "mjpg";
        film.mStreams[0].mFormat = Bitmap(test.mCompression);
        EXPECT_EQ(Values(film.Bytes(), {"vc", "wi", "he", "vt"}), "\""s + test.mCodec + "\"|320|240|1");
    }
}

TEST(AVIParser, SizeIsThatOfTheFormatThenOfTheCodecThenOfTheWhole) {
    Film film;
    film.mStreams[0].mFormat = Bitmap("XVID", 640, static_cast<unsigned>(-480));
    film.mMovi = Chunk("00dc", kMPEG4);
    EXPECT_EQ(Values(film.Bytes(), {"wi", "he"}), "640|480") << "from the top down";
    film.mStreams[0].mFormat = Bitmap("XVID", 0, 240);
    EXPECT_EQ(Values(film.Bytes(), {"wi", "he"}), "176|144");
    film.mMovi = "";
    EXPECT_EQ(Values(film.Bytes(), {"wi", "he"}), "320|240");
    film.mStreams[0].mFormat = "";
    EXPECT_EQ(Values(film.Bytes(), {"wi", "he", "vc"}), "320|240|");
}

TEST(AVIParser, FrameRateIsTheRatioOfTheStreamAndNotTheRoundedTime) {
    Film film;
    film.mMicroseconds = 41708;
    film.mStreams[0].mScale = 1001;
    film.mStreams[0].mRate = 24000;
    EXPECT_EQ(Values(film.Bytes(), {"fr", "dm"}), "23976|4170");
    film.mStreams[0].mRate = 0;
    film.mStreams[0].mLength = 0;
    EXPECT_EQ(Values(film.Bytes(), {"fr", "dm"}), "23976|") << "of the time, where there is nothing better";
    film.mMicroseconds = 0;
    EXPECT_EQ(Values(film.Bytes(), {"fr"}), "");
}

TEST(AVIParser, FirstFrameOfTheCodecTellsProfileLevelAndScan) {
    Film film;
    film.mStreams[0].mFormat = Bitmap("XVID");
    film.mMovi = Chunk("00dc", "") + Chunk("00pc", "colours") + Chunk("JUNK", "") + Chunk("ix00", "index") +
                 Chunk("00dc", kMPEG4);
    EXPECT_EQ(Values(film.Bytes(), {"vp", "vl", "pr", "pa"}), "\"Simple\"|10|\"progressive\"|\"1:1\"")
        << "after an empty frame, and chunks that are not frames";
    film.mMovi = List("rec ", Chunk("01wb", "other") + Chunk("00dc", kMPEG4));
    EXPECT_EQ(Values(film.Bytes(), {"vp", "vl"}), "\"Simple\"|10") << "in a list of what belongs together";
    film.mMovi = Chunk("00dc", kMPEG4 + "\0\0\1\xB2"
                                        "DivX503b1393p\0"s) +
                 Frames(99);
    EXPECT_EQ(Values(film.Bytes(), {"vp", "fr", "dm"}), "\"Simple\"|25000|4000") << "packed frames";
    film.mStreams[0].mFormat = Bitmap("mpg2");
    film.mMovi =
        Chunk("00dc", mpegvideo::Sequence().Bytes() + mpegvideo::Group() + mpegvideo::Picture().Bytes());
    EXPECT_EQ(Values(film.Bytes(), {"vc", "vp"}), "\"MPEG2\"|\"Main\"");
}

TEST(AVIParser, DisplayAspectAndFieldsAreThoseOfTheStreamProperties) {
    const auto properties = [](unsigned aWidth, unsigned aHeight, unsigned aFields) {
        return Chunk("vprp",
                     std::string(20, '\0') + Little(aWidth << 16 | aHeight) + Little(0, 8) + Little(aFields));
    };
    Film film;
    film.mStreams[0].mRest = properties(16, 9, 2);
    EXPECT_EQ(Values(film.Bytes(), {"dr", "pa", "pr"}), "\"16:9\"|\"4:3\"|\"interlaced\"");
    film.mStreams[0].mRest = properties(4, 3, 1);
    EXPECT_EQ(Values(film.Bytes(), {"dr", "pa", "pr"}), "\"4:3\"|\"1:1\"|");
    film.mStreams[0].mRest = properties(0, 9, 0);
    EXPECT_EQ(Values(film.Bytes(), {"dr", "pa", "pr"}), "||");
    film.mStreams[0].mRest = Chunk("vprp", std::string(27, '\2'));
    EXPECT_EQ(Values(film.Bytes(), {"dr", "pa", "pr"}), "||") << "cut";
    film.mStreams[0].mFormat = Bitmap("XVID");
    film.mStreams[0].mRest = properties(16, 9, 2);
    film.mMovi = Chunk("00dc", kMPEG4);
    EXPECT_EQ(Values(film.Bytes(), {"dr", "pr"}), "\"16:9\"|\"progressive\"") << "the codec knows its fields";
}

// ---- sound ----

TEST(AVIParser, SoundIsWhatItsFormatSaysAndItsFirstFrame) {
    struct Case {
        const char* mWhat;
        Stream mStream;
        std::string mFrame;
        const char* mFacts; ///< codec, channels, rate, bits, bit rate, estimated bit rate
    };
    const std::string adts = Hex({0xFF, 0xF1, 0x50, 0x80, 0x04, 0x1F, 0xFC}) + std::string(25, '\x11');
    const std::vector<Case> cases = {
        {"plain samples", Sound({1, 2, 44100, 176400, 4, 16, ""}), "x", "\"LPCM\"|2||16|44100|"},
        {"extensible", Sound({0xFFFE, 6, 48000, 864000, 18, 24, chunks::Extension(24, 1)}), "x",
         "\"LPCM\"|6||24|48000|"},
        {"layer III of a constant rate", Sound({0x55, 2, 44100, 16000, 1, 0, ""}), LayerIII(),
         "\"MP3\"|2|44100||128000|"},
        {"layer III of a varying rate", FramedSound({0x55, 2, 44100, 15500, 1152, 0, ""}, 1152), LayerIII(),
         "\"MP3\"|2|44100|||124000"},
        {"layer III without a rate", FramedSound({0x55, 2, 44100, 0, 1152, 0, ""}, 1152), LayerIII(),
         "\"MP3\"|2|44100|||128000"},
        {"layer II", Sound({0x50, 2, 48000, 24000, 576, 0, ""}), ps::LayerII(), "\"MP2\"|2|48000||192000|"},
        {"AC-3 of six channels as five", Sound({0x2000, 5, 48000, 56000, 1, 0, ""}), ps::AC3(),
         "\"AC3\"|6|48000||448000|"},
        {"AC-3 that begins in a frame", Sound({0x2000, 5, 48000, 56000, 1, 0, ""}), "rest"s + ps::AC3(),
         "\"AC3\"|6|48000||448000|"},
        {"AC-3 without a frame", Sound({0x2000, 5, 48000, 56000, 1, 0, ""}), "", "\"AC3\"|5|48000||448000|"},
        {"DTS", Sound({0x2001, 2, 48000, 96000, 1, 0, ""}), dts::Core().Bytes(), "\"DTS\"|6|48000||768000|"},
        {"AAC by its configuration",
         FramedSound({0xFF, 2, 22050, 4000, 1024, 0, Little(2, 2) + "\x12\x10"}, 1024), "x",
         "\"AAC\"|2|44100|||32000"},
        {"AAC as ADTS", FramedSound({0x706D, 1, 8000, 4000, 1024, 0, ""}, 1024), adts,
         "\"AAC\"|2|44100|||32000"},
        {"the same by another tag", FramedSound({0x4143, 1, 8000, 4000, 1024, 0, ""}, 1024), adts,
         "\"AAC\"|2|44100|||32000"},
        {"Vorbis", FramedSound({0x566F, 2, 44100, 10000, 1024, 0, ""}, 1024), "x",
         "\"Vorbis\"|2|44100|||80000"},
        {"TrueSpeech", Sound({0x22, 1, 8000, 1067, 32, 1, ""}), "x", "\"TrueSpeech\"|1|8000||8536|"},
        {"unknown", Sound({0x4321, 1, 8000, 1000, 1, 0, ""}), "x", "\"WAVE-4321\"|1|8000|||8000"},
    };
    for (const Case& test : cases) {
        Film film = WithSound(test.mStream, test.mFrame);
        film.mAfter = Chunk("JUNK", std::string(200000, 'j'));
        EXPECT_EQ(Values(film.Bytes(), {"ca", "ac", "sf", "bs", "ar", "ea"}), test.mFacts) << test.mWhat;
        EXPECT_EQ(Values(film.Bytes(), {"ta", "vt", "cn"}), "1|1|\"item.videoItem\"") << test.mWhat;
    }
}

TEST(AVIParser, MeanRateOfSoundThatIsMoreThanTheWholeIsNotTold) {
    Film film = WithSound(FramedSound({0x55, 2, 44100, 16000, 1152, 0, ""}, 1152), LayerIII());
    film.mAfter = Chunk("JUNK", std::string(63300, 'j'));
    EXPECT_EQ(Values(film.Bytes(), {"ca", "dm", "br", "ea"}), "\"MP3\"|4000|128148|128000");
    film.mAfter = Chunk("JUNK", std::string(62000, 'j'));
    EXPECT_EQ(Values(film.Bytes(), {"ca", "dm", "br", "ea"}), "\"MP3\"|4000|125548|");
}

TEST(AVIParser, SoundAloneIsAudio) {
    Film film;
    film.mStreams = {Sound()};
    film.mMovi = Frames(4, 8000, "00wb");
    EXPECT_EQ(Values(film.Bytes(), {"cn", "ca", "vt", "dm", "mt"}),
              "\"item.audioItem\"|\"LPCM\"||4000|\"video/x-msvideo\"");
}

TEST(AVIParser, OnePictureBesideSoundIsItsCover) {
    const std::vector<const char*> keys = {"cn", "vt", "vc", "wi", "ca", "dm"};
    Film film = WithSound(Sound(), std::string(32000, '\x11'));
    film.mStreams[0].mLength = 1;
    film.mFrames = 1;
    EXPECT_EQ(Values(film.Bytes(), keys), "\"item.audioItem\"||||\"LPCM\"|4000");
    film.mStreams[0].mRest = SuperIndex{{{0, 0, 100}}}.Bytes();
    EXPECT_EQ(Values(film.Bytes(), {"cn", "dm"}), "\"item.videoItem\"|4000") << "the first part has one";
    film.mStreams[0].mRest = "";
    film.mFrames = 100;
    EXPECT_EQ(Values(film.Bytes(), {"cn"}), "\"item.videoItem\"") << "the main header counts more";
    film.mFrames = 1;
    film.mHead = List("odml", Chunk("dmlh", Little(100)));
    EXPECT_EQ(Values(film.Bytes(), {"cn"}), "\"item.videoItem\"") << "all parts have more";
    film.mHead = "";
    film.mStreams.pop_back();
    EXPECT_EQ(Values(film.Bytes(), {"cn", "dm"}), "\"item.videoItem\"|40") << "there is no sound";
}

TEST(AVIParser, StreamOfTheLowestNumberPlaysFirstUnlessItIsDisabled) {
    Film film;
    film.mStreams = {Sound({1, 1, 8000, 8000, 1, 8, ""}), Sound({1, 2, 8000, 16000, 2, 8, ""}), Stream(),
                     Stream()};
    film.mStreams[3].mFormat = Bitmap("MJPG", 64, 48);
    EXPECT_EQ(Values(film.Bytes(), {"ac", "ta", "vc"}), "1|2|\"XXXX\"");
    film.mStreams[0].mFlags = 1;
    film.mStreams[2].mFlags = 0x10001;
    EXPECT_EQ(Values(film.Bytes(), {"ac", "ta", "vc"}), "2|2|\"MJPEG\"");
    film.mStreams[1].mFlags = 1;
    film.mStreams[3].mFlags = 1;
    EXPECT_EQ(Values(film.Bytes(), {"ac", "ta", "vc"}), "1|2|\"XXXX\"") << "all are disabled";
}

TEST(AVIParser, SubtitlesAreCountedAndAreNoPictures) {
    Film film;
    Stream texts;
    texts.mKind = "txts";
    texts.mFormat = "";
    Stream pictures;
    pictures.mFormat = Bitmap("DXSB");
    Stream other;
    other.mKind = "mids";
    film.mStreams = {pictures, Stream(), texts, texts, other};
    EXPECT_EQ(Values(film.Bytes(), {"vc", "ts", "ta"}), "\"XXXX\"|3|");
    film.mStreams = {pictures, texts, other};
    EXPECT_EQ(Refusal(film.Bytes()), "AVIParser: malformed: ends before a stream of pictures or sound");
}

TEST(AVIParser, SoundOfDVLiesInItsFrames) {
    Film film;
    film.mStreams[0].mKind = "iavs";
    film.mStreams[0].mHandler = "dvsd";
    film.mStreams[0].mFormat = std::string(32, '\0');
    film.mMovi = Chunk("00__", DVSequence().Bytes());
    EXPECT_EQ(Values(film.Bytes(), {"vc", "wi", "he", "dr", "ca", "ac", "ar", "ta", "dm"}),
              "\"DV\"|720|576|\"16:9\"|\"LPCM\"|2|48000|1|4000");
    film.mMovi = Chunk("00__", DVSequence().Bytes().substr(0, 480));
    EXPECT_EQ(Values(film.Bytes(), {"vc", "ca", "ta"}), "\"DV\"||") << "none is told";
    film.mStreams[0].mKind = "vids";
    film.mStreams[0].mFormat = Bitmap("dvsd", 720, 576);
    film.mMovi = Chunk("00dc", DVSequence().Bytes());
    EXPECT_EQ(Values(film.Bytes(), {"vc", "dr", "ca", "ta"}), "\"DV\"|\"16:9\"||")
        << "sound has its own stream";
}

// ---- texts ----

TEST(AVIParser, TextsAreThoseOfTheListWhereverItStands) {
    const std::vector<const char*> keys = {"title", "creator", "album", "genre", "da", "tn", "la"};
    const std::string texts = Info({{"INAM", "B\xE5t"},
                                    {"IART", "Artist"},
                                    {"IPRD", "Album"},
                                    {"IGNR", "Home"},
                                    {"ICRD", "2005-06-07"},
                                    {"IPRT", "5/9"},
                                    {"IAS2", "eng"},
                                    {"IAS1", "de"}});
    const char* const told = "\"B\xC3\xA5t\"|\"Artist\"|\"Album\"|\"Home\"|\"2005-06-07\"|5|\"en,de\"";
    Film film;
    film.mHead = texts;
    EXPECT_EQ(Values(film.Bytes(), keys), told);
    film.mHead = "";
    film.mBefore = Chunk("JUNK", "") + texts;
    EXPECT_EQ(Values(film.Bytes(), keys), told) << "after stuffing of no size";
    film.mBefore = "";
    film.mAfter = Chunk("idx1", Entries(100)) + texts;
    EXPECT_EQ(Values(film.Bytes(), keys), told);
    film.mAfter = Info({{"ILNG", "fre"}});
    EXPECT_EQ(Values(film.Bytes(), {"la"}), "\"fr\"");
    film.mAfter = chunks::Chunk("LIST", "MID " + Chunk("INAM", "no text"));
    EXPECT_EQ(Values(film.Bytes(), {"title"}), "");
}

TEST(AVIParser, DateIsThatOfTheListOrElseOfTheCamera) {
    struct Case {
        std::string mText;
        const char* mDate;
    };
    const std::vector<Case> cases = {
        {"2009/10/27 12:14:34\0"s, "\"2009-10-27T12:14:34\""},
        {"2011-03-04", "\"2011-03-04\""},
        {"SAT MAY 05 14:03:59 2007\n\0"s, "\"2007-05-05T14:03:59\""},
        {"Wed Jan  2 02:03:55 1990\n\0"s, "\"1990-01-02T02:03:55\""},
        {"Wed Foo 02 02:03:55 1990\n\0"s, ""},
        {"Wed Feb 30 02:03:55 1990\n\0"s, ""},
        {"Wed Feb 28 02:03:55 199", ""},
        {"", ""},
    };
    for (const Case& test : cases) {
        Film film;
        film.mHead = Chunk("IDIT", test.mText);
        EXPECT_EQ(Values(film.Bytes(), {"da"}), test.mDate) << test.mText;
        film.mBefore = Info({{"ICRD", "1999"}});
        EXPECT_EQ(Values(film.Bytes(), {"da"}), "\"1999\"") << test.mText;
    }
}

// ---- damage ----

TEST(AVIParser, WhatIsNoSuchFileIsRefused) {
    EXPECT_EQ(Refusal("RIFF\0\0\0\0WAVE"s), "AVIParser: malformed: begins with 52494646");
    EXPECT_EQ(Refusal("RIFX\0\0\0\0AVI "s), "AVIParser: malformed: begins with 52494658");
    EXPECT_EQ(Refusal(chunks::Riff("", "RIFF", "AVI ")),
              "AVIParser: malformed: ends before a stream of pictures or sound");
    EXPECT_EQ(Refusal(chunks::Riff(List("movi", Frames(3)), "RIFF", "AVI ")),
              "AVIParser: malformed: ends before a stream of pictures or sound");
}

TEST(AVIParser, SizesOfListsThatLieAreNotNeeded) {
    const Film film;
    for (const std::uint64_t size : {std::uint64_t{0}, std::uint64_t{1}, std::uint64_t{UINT32_MAX}}) {
        const std::string stream =
            Lying("LIST", size, "strl" + Stream().Header() + Chunk("strf", Bitmap("MJPG")));
        const std::string header = Lying("LIST", size, "hdrl" + film.Main() + stream);
        const std::string file = Lying("RIFF", size, "AVI " + header + List("movi", Frames(100)));
        EXPECT_EQ(Values(file, {"vc", "wi", "fr", "dm"}), "\"MJPEG\"|320|25000|4000") << size;
    }
}

TEST(AVIParser, ChunksBeforeTheFirstFrameAndAfterTheLastAreBounded) {
    const auto stuffing = [](std::size_t aCount) { return Frames(aCount, 0, "JUNK"); };
    Film film;
    film.mStreams[0].mFormat = Bitmap("XVID");
    film.mMovi = stuffing(23) + Chunk("00dc", kMPEG4);
    film.mAfter = stuffing(7) + Info({{"INAM", "Title"}});
    EXPECT_EQ(Values(film.Bytes(), {"vp", "title"}), "\"Simple\"|\"Title\"");
    film.mMovi = stuffing(24) + Chunk("00dc", kMPEG4);
    film.mAfter = stuffing(8) + Info({{"INAM", "Title"}});
    EXPECT_EQ(Values(film.Bytes(), {"vp", "title"}), "|");
}

TEST(AVIParser, StreamsAreBoundedByTheirNumbers) {
    Film film;
    film.mStreams.assign(100, Sound());
    EXPECT_EQ(Values(film.Bytes(), {"ta"}), "100");
    film.mStreams.push_back(Stream());
    EXPECT_EQ(Values(film.Bytes(), {"ta", "vc"}), "100|") << "one more takes no other's place";
}
