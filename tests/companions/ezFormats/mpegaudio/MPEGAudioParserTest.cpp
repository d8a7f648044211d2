#include "companions/ezFormats/mpegaudio/MPEGAudioKit.h"

#include <gtest/gtest.h>

using namespace mpegaudio;

namespace {

struct Kind {
    std::uint32_t mWord;
    std::size_t mSize;
    const char* mFacts; ///< codec, Hz, channels, rate
    const char* mDLNA;
};

const char* const kPlain = "DLNA.ORG_OP=01";
const char* const kMP3Field =
    "DLNA.ORG_PN=MP3;DLNA.ORG_OP=01;DLNA.ORG_FLAGS=01500000000000000000000000000000";
const char* const kMP3XField =
    "DLNA.ORG_PN=MP3X;DLNA.ORG_OP=01;DLNA.ORG_FLAGS=01500000000000000000000000000000";

const Kind kKinds[] = {
    {kMP3, 417, "MP3 44100 2 128000", kMP3Field},       {kMP3At320, 1044, "MP3 44100 2 320000", kMP3Field},
    {0xFFFA94C0, 384, "MP3 48000 1 128000", kMP3Field}, // check sum
    {kLSF, 192, "MP3 24000 1 64000", kMP3XField},       {0xFFF31000, 26, "MP3 22050 2 8000", kMP3XField},
    {kMPEG25, 288, "MP3 8000 1 32000", kPlain},         {kMP2, 576, "MP2 48000 2 192000", kPlain},
    {0xFFF58400, 384, "MP2 24000 2 64000", kPlain},     {kMP1, 416, "MP1 44100 2 384000", kPlain},
    {kFree, 700, "MP3 44100 2 214375", kPlain},         {kFree, 836, "MP3 44100 2 256025", kPlain},
};

} // namespace

TEST(MPEGAudioParser, TellsWhatTheFramesSay) {
    for (const Kind& kind : kKinds) {
        const std::string file = Frames(kind.mWord, kind.mSize, 12);
        const std::string facts =
            Value(file, "ca") + " " + Value(file, "sf") + " " + Value(file, "ac") + " " + Value(file, "ar");
        EXPECT_EQ(facts, kind.mFacts) << std::hex << kind.mWord;
        EXPECT_EQ(Value(file, "dl"), kind.mDLNA) << std::hex << kind.mWord;
        EXPECT_EQ(Value(file, "mt"), "audio/mpeg");
        EXPECT_EQ(Value(file, "cn"), "item.audioItem");
        EXPECT_EQ(Value(file, "ta"), "1");
    }
}

// What the independent prober reports of the samples: codec, rates, channels; and 5.3 s, 12.5 s and 3.1 s of
// music, without the samples that the encoder added.
TEST(MPEGAudioParser, SamplesAreAnnouncedAsAnIndependentProberSeesThem) {
    const std::string common = "sf=44100\nta=1\n";
    const std::string dlna = std::string("da=\"2001\"\ndl=\"") + kMP3Field + "\"\n";
    const std::string tags = "\"\ncreator=\"The Test Tones\"\ngenre=\"Folk\"\nalbum=\"Half a Second\"\n";
    EXPECT_EQ(DumpRecord(Read(ReadSample("music/morning-walk.mp3")).get()),
              "ac=2\nar=48000\nca=\"MP3\"\ncn=\"item.audioItem\"\n" + dlna +
                  "dm=5300\ndu=5\nmd=\"header\"\nmt=\"audio/mpeg\"\n" + common + "title=\"Morning Walk" +
                  tags);
    EXPECT_EQ(DumpRecord(Read(ReadSample("music/night-ferry.mp3")).get()),
              "ac=2\nar=32000\nca=\"MP3\"\ncm=\"image/jpeg\"\ncn=\"item.audioItem\"\ncs=7150\n" + dlna +
                  "dm=12500\ndu=12\nmd=\"header\"\nmt=\"audio/mpeg\"\n" + common + "title=\"Night Ferry" +
                  tags);
    EXPECT_EQ(DumpRecord(Read(ReadSample("music/uneven-road-vbr.mp3")).get()),
              "ac=2\nar=4294967295\nca=\"MP3\"\ncn=\"item.audioItem\"\n" + dlna +
                  "dm=3100\ndu=3\nea=33580\nma=320000\nmd=\"header\"\nmt=\"audio/mpeg\"\n" + common +
                  "title=\"Uneven Road" + tags);
    EXPECT_EQ(DumpRecord(Read(ReadSample("elementary/slow-clock.mp2")).get()),
              "ac=2\nar=192000\nca=\"MP2\"\ncn=\"item.audioItem\"\ndl=\"DLNA.ORG_OP=01\"\n"
              "dm=504\ndu=0\nmd=\"counted\"\nmt=\"audio/mpeg\"\nsf=48000\nta=1\n");
}

TEST(MPEGAudioParser, TagsBeforeTheFramesAreSteppedOverWhateverTheirSize) {
    const std::string small = ID3(3, 0, Frame23("PRIV", "x"));
    const std::string large = ID3(4, 0, Frame24("PRIV", std::string(100000, '\xFF')));
    const std::string footer = ID3(4, 0x10, Frame24("PRIV", "x")) + "3DI" + std::string(7, 'f');
    for (const std::string& tags :
         {small, large, footer, small + small, large + footer + small, small + large + large, APE2("x"),
          ID3(9, 0, "unknown version"), ID3(3, 0, ""), small + std::string(2000, '\0')}) {
        EXPECT_EQ(Length(tags + Song()), "0 counted") << tags.size();
    }
    std::string seven;
    for (unsigned i = 0; i < 7; ++i) {
        seven += large;
    }
    EXPECT_EQ(Length(seven + Song()), "0 counted");
}

TEST(MPEGAudioParser, FramesAreSearchedAfterATagThatClaimsMoreThanTheFile) {
    std::string tag = ID3(3, 0, Frame23("TIT2", "\0The title"s));
    tag.replace(6, 4, Syncsafe(200000));
    EXPECT_EQ(Texts(tag + Song(20)), "The title|||");
    EXPECT_EQ(Refusal(tag + std::string(20000, 'x')),
              "MPEGAudioParser: malformed: no frames within 65536 bytes of 10, after a tag that claims the "
              "whole file\n");
    EXPECT_EQ(Refusal(ID3(3, 0, Frame23("TIT2", "\0The title"s))),
              "MPEGAudioParser: malformed: no frames within 65536 bytes of 10, after a tag that claims the "
              "whole file\n");
}

TEST(MPEGAudioParser, JunkBeforeTheFramesIsBounded) {
    EXPECT_EQ(Length(std::string(300, 'j') + Song()), "0 counted");
    EXPECT_EQ(Length(Song().substr(200)), "0 counted") << "37 whole frames";
    EXPECT_EQ(Length(std::string(60000, 'j') + Song()), "0 counted");
    EXPECT_EQ(Length(std::string(66000, 'j') + Song()), "none none");
    // Sync words in the junk, with and without a chain of a few frames.
    EXPECT_EQ(Length(std::string(3000, '\xFF') + Song()), "0 counted");
    EXPECT_EQ(Length("j" + Frames(kMP2, 576, 7) + "junk" + Song()), "0 counted");
    EXPECT_EQ(Value("j" + Frames(kMP2, 576, 8) + "junk" + Song(), "ca"), "MP2");
}

TEST(MPEGAudioParser, FourFramesInARowMakeAStream) {
    const std::string other(5000, 'x');
    EXPECT_EQ(Value(Song(4) + other, "ca"), "MP3");
    EXPECT_EQ(Refusal(Song(3) + other),
              "MPEGAudioParser: malformed: 3 frames from 0 to 1251, and none after them\n");
    EXPECT_EQ(Refusal(Song(1) + other),
              "MPEGAudioParser: malformed: 1 frames from 0 to 417, and none after them\n");
    // Frames of other streams do not count.
    EXPECT_EQ(Value(Song(3) + Frame(0xFFFB9400, 384) + other, "ca"), "none");
    EXPECT_EQ(Value(Song(3) + Frame(0xFFFD9000, 417) + other, "ca"), "none");
}

TEST(MPEGAudioParser, AShortFileMayHoldFewerFrames) {
    EXPECT_EQ(Length(Song(1)), "0 counted");
    EXPECT_EQ(Length(Song(3)), "0 counted");
    EXPECT_EQ(Length(Song(3) + ID3v1("t", "a", "b", 0)), "0 counted");
    EXPECT_EQ(Length(Song(3).substr(0, 1000)), "0 counted") << "the last is cut";
    EXPECT_EQ(Length(Song(1).substr(0, 416)), "none none");
    EXPECT_EQ(Length("j" + Song(7)), "none none");
}

TEST(MPEGAudioParser, TheFrameOfTheEncoderMayDifferInWhatDoesNotCountThere) {
    const std::string count = CountFrame("Info", Fields(152, 153 * 417), 0xFFFB900C); // original, copyright
    EXPECT_EQ(Length(count + Song(152)), "3 header");                                 // 3.971 s
    EXPECT_EQ(Value(CountFrame("Info", Fields(152, 0), 0xFFFBE000, 1044) + Song(152), "ar"), "128000");
}

TEST(MPEGAudioParser, FreeFormatIsMeasuredByTheDistanceOfItsHeaders) {
    // 320 frames of 1152 samples are 8.36 s; one in ten is padded by a byte.
    std::string file;
    for (unsigned i = 0; i < 320; ++i) {
        const bool fPadded = i % 10 == 3;
        file += Frame(fPadded ? kFree | 0x200 : kFree, fPadded ? 701 : 700, i);
    }
    EXPECT_EQ(Value(file, "ca"), "MP3");
    EXPECT_EQ(Length(file), "8 constant rate");
    // 700.1 bytes a frame are 214,405 bits a second; in what was looked at a byte more or less is padding.
    EXPECT_NEAR(std::stod(Value(file, "ar")), 214405, 306.25 / 20);
    EXPECT_EQ(Value(file, "dl"), kPlain) << "a rate within the limits of MP3";
    EXPECT_EQ(Value(Frames(kFree, 2000, 12), "ar"), "612500") << "more than a frame can state";
    Delivery unknown;
    unknown.mfSizeKnown = false;
    EXPECT_EQ(DumpRecord(Read(file, unknown).get()),
              "ac=2\nar=" + Value(file, "ar") +
                  "\nca=\"MP3\"\ncn=\"item.audioItem\"\ndl=\"*\"\nmt=\"audio/mpeg\"\n"
                  "pr=\"free-format\"\nsf=44100\nta=1\n");
    EXPECT_EQ(Value(file, "ea"), "-");
    EXPECT_EQ(Value(file, "ma"), "-");
    EXPECT_EQ(Length(ID3(3, 0, "") + Frames(kFree, 2000, 8)), "0 counted");
    EXPECT_EQ(Length(Frames(kFree, 700, 7)), "none none") << "it takes eight";
    // Sampled sound that repeats itself, unless a file begins with it.
    std::string tone;
    for (unsigned i = 0; i < 50; ++i) {
        tone += Frame(kFree, 700);
    }
    EXPECT_EQ(Value("jj" + tone, "ca"), "none");
    EXPECT_EQ(Value(tone, "ca"), "MP3") << "frames of silence";
    // Silence before the sound: its second frame is the first that differs from the next one, and twice the
    // distance is not taken for the length of a frame.
    const std::string silence = Frame(kFree, 400, 1);
    EXPECT_EQ(Length("j" + silence + silence + Frames(kFree, 400, 38)), "1 counted"); // 39 frames: 1.019 s
}

TEST(MPEGAudioParser, ALeadingTagThatClaimsTheFileEndsWithItsHeader) {
    // Five frames make a stream where they are expected, and do not where they are searched for.
    const std::string claims = APEEnd(2000, 0x7FFFFFFF, 0xA0000000);
    EXPECT_EQ(Length(claims + Song(5)), "0 counted");
    EXPECT_EQ(Length(claims + "j" + Song(5)), "none none");
    EXPECT_EQ(Length("ID3\3\0\0"s + Syncsafe(0xFFFFFFF) + Song(5)), "0 counted");
}

TEST(MPEGAudioParser, FilesOfOtherFormatsAreRefusedWhateverSoundTheyHold) {
    const std::string song = Song(40);
    const std::string starts[] = {"RIFF\1\2\3\4WAVE",
                                  "BW64\xFF\xFF\xFF\xFFWAVE",
                                  "riff\x2E\x91\xCF\x11",
                                  "caff\0\1\0\0"s,
                                  Big(32, 4) + "ftypisom",
                                  Big(8, 4) + "mdat",
                                  "\xFF\xD8\xFF\xE0",
                                  "\x89PNG\r\n\x1A\n",
                                  "OggS",
                                  "fLaC",
                                  "\x1A\x45\xDF\xA3",
                                  "\0\0\1\xBA"s,
                                  "\x0B\x77",
                                  "\x30\x26\xB2\x75\x8E\x66\xCF\x11"};
    for (const std::string& start : starts) {
        EXPECT_EQ(Value(start + song, "ca"), "none") << start;
        EXPECT_EQ(Value(ID3(3, 0, "") + start + song, "ca"), "none") << start;
    }
    EXPECT_EQ(Refusal("RIFF" + song), "MPEGAudioParser: unsupported: RIFF at 0\n");
    EXPECT_EQ(Refusal(std::string(70000, 'a')),
              "MPEGAudioParser: malformed: no frames within 65536 bytes of 0\n");
}

TEST(MPEGAudioParser, PacketsOfTransportAndProgramStreamsAreNoFile) {
    std::string transport;
    for (unsigned i = 0; i < 300; ++i) {
        transport += Big(0x47010010, 4) + Frames(0xFFF314C0, 24, 7) + std::string(16, '\xFF');
    }
    EXPECT_EQ(Refusal(transport), "MPEGAudioParser: unsupported: transport stream at 0\n");
    std::string timed;
    for (unsigned i = 0; i < 300; ++i) {
        timed += Big(i, 4) + transport.substr(0, 188);
    }
    EXPECT_EQ(Refusal(timed), "MPEGAudioParser: unsupported: transport stream at 0\n");
    EXPECT_EQ(Value(transport.substr(100), "ca"), "none") << "begun within a packet";
}
