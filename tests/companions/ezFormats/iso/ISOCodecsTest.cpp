#include "companions/ezFormats/iso/ISOBytes.h"

#include "companions/ezFormats/elementary/EltStreamKit.h"

#include "ezFormats/codecs/AudioSpecificConfig.h"
#include "ezFormats/codecs/MPEG4Visual.h"
#include "ezFormats/detail/MediaNumbers.h"

#include <gtest/gtest.h>

using namespace iso;

namespace {

std::string Audio(const std::string& anEntry) {
    return Values(Parsed(AudioFile(anEntry)), {"ca", "sf", "ac", "bs"});
}

std::string Video(const std::string& anEntry) {
    return Values(Parsed(VideoFile(anEntry)), {"vc", "vp", "vl", "wi", "he", "pr"});
}

/// The facts of a decoder's configuration in the stream's descriptor.
std::string Config(const std::string& aConfig, unsigned anObjectType = 0x40) {
    return Audio(AudioEntry("mp4a", ESDS(anObjectType, aConfig), 2, 16, 11111));
}

/// A sequence set of H.264 after its first byte: profile, constraints, level, and a picture of so many
/// blocks of 16 pixels, less so many pairs of rows.
std::string SequenceSet(unsigned aProfile, unsigned aConstraints, unsigned aLevel, unsigned aWidth,
                        unsigned aHeight, unsigned aCut = 0, bool afFrames = true) {
    Bits bits;
    bits.Put(aProfile, 8).Put(aConstraints, 8).Put(aLevel, 8).UE(0);
    if (aProfile == 100) {
        bits.UE(1).UE(0).UE(0).Put(0, 2); // 4:2:0, 8 bits, nothing special
    }
    bits.UE(0).UE(2).UE(1).Put(0, 1).UE(aWidth - 1).UE(aHeight - 1).Put(afFrames ? 1 : 0, 1);
    if (!afFrames) {
        bits.Put(0, 1);
    }
    bits.Put(1, 1).Put(aCut != 0 ? 1 : 0, 1);
    if (aCut != 0) {
        bits.UE(0).UE(0).UE(0).UE(aCut);
    }
    return bits.Put(0, 1).Stop().Bytes();
}

/// The decoder's configuration with one sequence set.
std::string AVCC(unsigned aProfile, unsigned aConstraints, unsigned aLevel, const std::string& aSet) {
    return Box("avcC", Big(1, 1) + Big(aProfile, 1) + Big(aConstraints, 1) + Big(aLevel, 1) + Big(0xFF, 1) +
                           Big(0xE1, 1) + Big(aSet.size() + 1, 2) + "\x67" + aSet + Big(1, 1) + Big(1, 2) +
                           "\x68");
}

std::string H264(const std::string& aSet) {
    return Video(VideoEntry("avc1", AVCC(77, 0, 30, aSet)));
}

/// A layer of MPEG-4 video.
std::string Layer(unsigned aWidth, unsigned aHeight, bool afInterlaced, bool afFull = false) {
    Bits bits;
    bits.Put(0, 1).Put(1, 8).Put(afFull ? 1 : 0, 1);
    if (afFull) {
        bits.Put(2, 4)
            .Put(1, 3)
            .Put(15, 4)
            .Put(0x0101, 16)
            .Put(1, 1)
            .Put(2, 3)
            .Put(1, 1)
            .Put(0, 40)
            .Put(0, 39);
    } else {
        bits.Put(1, 4).Put(0, 1);
    }
    bits.Put(0, 2).Put(1, 1).Put(30000, 16).Put(1, 1).Put(afFull ? 1 : 0, 1).Put(0, afFull ? 15 : 0);
    bits.Put(1, 1)
        .Put(aWidth, 13)
        .Put(1, 1)
        .Put(aHeight, 13)
        .Put(1, 1)
        .Put(afInterlaced ? 1 : 0, 1)
        .Put(0, 7);
    return Hex({0, 0, 1, 0x20}) + bits.Bytes();
}

std::string MPEG4(unsigned aProfile, const std::string& aLayer) {
    const std::string config =
        Hex({0, 0, 1, 0xB0, static_cast<int>(aProfile), 0, 0, 1, 0xB5, 9, 0, 0, 1, 0}) + aLayer;
    return Video(VideoEntry("mp4v", ESDS(0x20, config)));
}

} // namespace

// ---- numbers ----

TEST(MediaNumbers, ProductsOfAnySizeAreDivided) {
    EXPECT_EQ(MediaNumber_Scale(7, 3, 2), 10U);
    EXPECT_EQ(MediaNumber_Scale(UINT64_MAX, UINT64_MAX, UINT64_MAX / 2), UINT64_MAX); // does not fit
    EXPECT_EQ(MediaNumber_Scale(UINT64_MAX, 1000, 2000), UINT64_MAX / 2);
    EXPECT_EQ(MediaNumber_Scale(UINT64_C(1) << 62, UINT64_C(1) << 62, UINT64_C(1) << 62), UINT64_C(1) << 62);
    EXPECT_EQ(MediaNumber_Scale(1, 1, 0), 0U);
    EXPECT_EQ(MediaNumber_Scale(1, 1, UINT64_C(1) << 63), 0U);
    EXPECT_EQ(MediaNumber_BitRate(UINT64_MAX, 1, 1), 0U);
    EXPECT_EQ(MediaNumber_BitRate(1000, 1001, 1000), 7992U);
    EXPECT_EQ(MediaNumber_FrameRate(1, 1001, 30000), 29970U);
    EXPECT_EQ(MediaNumber_FrameRate(UINT64_MAX, 1, 1), 0U);
}

TEST(MediaNumbers, TimesAreAddedBeforeTheRemainderIsDropped) {
    const auto sum = [](std::initializer_list<std::pair<std::uint64_t, std::uint32_t>> aTimes) {
        TimeSum times;
        for (const auto& [ticks, timescale] : aTimes) {
            times.Add(ticks, timescale);
        }
        return times.GetMicroseconds();
    };
    EXPECT_EQ(sum({}), 0U);
    EXPECT_EQ(sum({{25, 3}}), 8333333U);
    EXPECT_EQ(sum({{25, 3}, {25, 3}, {10, 3}}), 20000000U);
    // A third and two thirds, of two timescales; and a little less than two thirds.
    EXPECT_EQ(sum({{1, 3}, {60000, 90000}}), 1000000U);
    EXPECT_EQ(sum({{1, 3}, {59999, 90000}}), 999988U);
    EXPECT_EQ(sum({{1, 3}, {UINT64_C(2863311528), 4294967293}}), 999999U);
    EXPECT_EQ(sum({{1, 3}, {UINT64_C(2863311529), 4294967293}}), 1000000U);
    EXPECT_EQ(sum({{UINT32_MAX - 1, UINT32_MAX}, {UINT32_MAX - 2, UINT32_MAX - 1}}), 1999999U);
    EXPECT_EQ(sum({{1, 3}, {1, 3000}, {1, 3}, {1, 7}}), 333333U + 333333U + 333U + 1U + 142857U);
    EXPECT_EQ(sum({{5, 0}, {2, 1}}), 2000000U); // no timescale
    // A year and a day are a recording, and the second after them is none.
    const std::uint64_t year = UINT64_C(366) * 24 * 60 * 60;
    EXPECT_EQ(sum({{year, 1}}), year * 1000000);
    EXPECT_EQ(sum({{year, 1}, {1, 1000000}}), 0U);
    EXPECT_EQ(sum({{year + 1, 1}, {7, 1}}), 7000000U);
}

// ---- audio ----

TEST(ISOAudio, RateAndChannelsAreThoseOfTheDecoder) {
    // 00010 0011 0001 000: low complexity, 48 kHz, one channel; the entry says otherwise.
    EXPECT_EQ(Config("\x11\x88"), "ca=\"AAC\" sf=48000 ac=1");
    // 00001 0100 0110 000: Main, six channels; 00010 1111 and 24 bits: 12345 Hz, two.
    EXPECT_EQ(Config(Hex({0x0A, 0x30})), "ca=\"AAC-Main\" sf=44100 ac=6");
    EXPECT_EQ(Config(Bits().Put(2, 5).Put(15, 4).Put(12345, 24).Put(2, 4).Put(0, 3).Bytes()),
              "ca=\"AAC\" sf=12345 ac=2");
    // MPEG-2's low complexity is told by the stream's type, and its decoder alike.
    EXPECT_EQ(Config("\x11\x88", 0x67), "ca=\"AAC\" sf=48000 ac=1");
    // A length of four bytes, as QuickTime writes it.
    EXPECT_EQ(Audio(AudioEntry("mp4a", ESDS(0x40, "\x11\x88", 0, 0, 4))), "ca=\"AAC\" sf=48000 ac=1");
}

TEST(ISOAudio, ChannelsThatAreSpelledOutAreCounted) {
    // Configuration 0: one pair and one single in front, a pair after, one low channel, and a comment.
    Bits bits;
    bits.Put(2, 5).Put(3, 4).Put(0, 4).Put(0, 3);
    bits.Put(0, 4).Put(1, 2).Put(3, 4).Put(2, 4).Put(0, 4).Put(1, 4).Put(1, 2).Put(0, 3).Put(0, 4).Put(0, 3);
    bits.Put(0, 1).Put(0, 4).Put(1, 1).Put(0, 4).Put(1, 1).Put(1, 4).Put(0, 4); // elements
    std::string config = bits.Bytes() + Hex({2}) + "ok";
    EXPECT_EQ(Config(config), "ca=\"AAC\" sf=48000 ac=6");
    // After it, where old decoders do not look: band replication at 96 kHz.
    config += Bits().Put(0x2B7, 11).Put(5, 5).Put(1, 1).Put(0, 4).Bytes();
    EXPECT_EQ(Config(config), "ca=\"HE-AAC\" sf=96000 ac=6");
    // Cut within: told by the entry.
    EXPECT_EQ(Config(config.substr(0, 4)), "ca=\"AAC\" sf=48000 ac=2");
}

TEST(ISOAudio, BandReplicationAndParametricStereoAreNamedWhenTheyAreAnnounced) {
    // Before the core: 00101 0111 0010 0100 00010 000.
    EXPECT_EQ(Config(Bits().Put(5, 5).Put(7, 4).Put(2, 4).Put(4, 4).Put(2, 5).Put(0, 3).Bytes()),
              "ca=\"HE-AAC\" sf=44100 ac=2");
    EXPECT_EQ(Config(Bits().Put(29, 5).Put(7, 4).Put(1, 4).Put(4, 4).Put(2, 5).Put(0, 3).Bytes()),
              "ca=\"HE-AACv2\" sf=44100 ac=2");
    // After it.
    const auto after = [](std::uint64_t aStereo) {
        Bits bits;
        bits.Put(2, 5).Put(7, 4).Put(1, 4).Put(0, 3).Put(0x2B7, 11).Put(5, 5).Put(1, 1).Put(4, 4);
        return bits.Put(0x548, 11).Put(aStereo, 1).Put(0, 4).Bytes();
    };
    EXPECT_EQ(Config(after(0)), "ca=\"HE-AAC\" sf=44100 ac=1");
    EXPECT_EQ(Config(after(1)), "ca=\"HE-AACv2\" sf=44100 ac=2");
    // What was written here: 56 E5 00 says that there is none.
    EXPECT_EQ(Config(Hex({0x12, 0x10, 0x56, 0xE5, 0x00})), "ca=\"AAC\" sf=44100 ac=2");
}

TEST(ISOAudio, OtherObjectsOfMPEG4AudioHaveTheirNames) {
    const auto name = [](unsigned aType) {
        Bits bits;
        if (aType < 32) {
            bits.Put(aType, 5);
        } else {
            bits.Put(31, 5).Put(aType - 32, 6);
        }
        const std::string record = Config(bits.Put(4, 4).Put(2, 4).Put(0, 16).Bytes());
        return record.substr(0, record.find(' '));
    };
    EXPECT_EQ(name(3), "ca=\"AAC-SSR\"");
    EXPECT_EQ(name(4), "ca=\"AAC-LTP\"");
    EXPECT_EQ(name(23), "ca=\"AAC-LD\"");
    EXPECT_EQ(name(33), "ca=\"MP2\"");
    EXPECT_EQ(name(34), "ca=\"MP3\"");
    EXPECT_EQ(name(39), "ca=\"AAC-ELD\"");
    EXPECT_EQ(name(42), "ca=\"xHE-AAC\"");
    EXPECT_EQ(name(60), "ca=\"mp4a\""); // reserved
}

TEST(ISOAudio, ConfigurationThatIsNoneNamesTheFormatAlone) {
    EXPECT_EQ(Config(""), "ca=\"mp4a\" sf=11111 ac=2");
    EXPECT_EQ(Config("\x12"), "ca=\"mp4a\" sf=11111 ac=2");
    EXPECT_EQ(Config(Bits().Put(2, 5).Put(13, 4).Put(2, 4).Put(0, 3).Bytes()), // a reserved rate
              "ca=\"mp4a\" sf=11111 ac=2");
    EXPECT_EQ(Audio(AudioEntry("mp4a", "")), "ca=\"mp4a\" sf=44100 ac=2");
    // A length that goes on for ever, and one beyond the box.
    EXPECT_EQ(Audio(AudioEntry("mp4a", FullBox("esds", Hex({3, 0x80, 0x80, 0x80, 0x80, 0x80})))),
              "ca=\"mp4a\" sf=44100 ac=2");
    EXPECT_EQ(Audio(AudioEntry("mp4a", FullBox("esds", Hex({3, 100, 0, 1, 0})))),
              "ca=\"mp4a\" sf=44100 ac=2");
}

TEST(ISOAudio, ObjectTypesOfStreamsAreNamed) {
    EXPECT_EQ(Config("", 0x6B), "ca=\"MP3\" sf=11111 ac=2");
    EXPECT_EQ(Config("", 0x69), "ca=\"MP3\" sf=11111 ac=2");
    // Of codecs with more channels the 2 of every such entry tells nothing.
    EXPECT_EQ(Config("", 0xA5), "ca=\"AC3\" sf=11111");
    EXPECT_EQ(Config("", 0xA6), "ca=\"EAC3\" sf=11111");
    EXPECT_EQ(Config("", 0xA9), "ca=\"DTS\" sf=11111");
    EXPECT_EQ(Config("", 0xAA), "ca=\"DTS-HD\" sf=11111");
    EXPECT_EQ(Config("", 0xAB), "ca=\"DTS-HD-MA\" sf=11111");
    EXPECT_EQ(Config("", 0xAC), "ca=\"DTS-HD-LBR\" sf=11111");
    EXPECT_EQ(Config("", 0xAE), "ca=\"AC4\" sf=11111");
    EXPECT_EQ(Config("", 0xAD), "ca=\"Opus\" sf=48000 ac=2");
    EXPECT_EQ(Audio(AudioEntry("mp4a", ESDS(0xA9, ""), 6, 16, 48000)), "ca=\"DTS\" sf=48000 ac=6");
    EXPECT_EQ(Config("", 0xC0), "ca=\"mp4a\" sf=11111 ac=2");
}

TEST(ISOAudio, DolbyStreamsAreDescribedByTheirBoxes) {
    // 00 01000 000 111 1 01110 00000: 48 kHz, five channels and the low one, 384 kbit/s.
    const std::string ac3 = Parsed(AudioFile(AudioEntry("ac-3", Box("dac3", Hex({0x10, 0x3D, 0xC0})))));
    EXPECT_EQ(Values(ac3, {"ca", "sf", "ac", "ar"}), "ca=\"AC3\" sf=48000 ac=6 ar=384000");
    // 01 01000 000 010 0 01010 00000: 44.1 kHz, two channels, 192 kbit/s.
    const std::string stereo = Parsed(AudioFile(AudioEntry("ac-3", Box("dac3", Hex({0x50, 0x11, 0x40})))));
    EXPECT_EQ(Values(stereo, {"ca", "sf", "ac", "ar"}), "ca=\"AC3\" sf=44100 ac=2 ar=192000");
    // 0000011000000 000; 00 10000 0 0 000 111 1: 192 kbit/s, 48 kHz, five and one.
    const std::string eac3 =
        Parsed(AudioFile(AudioEntry("ec-3", Box("dec3", Hex({0x06, 0x00, 0x20, 0x0F, 0x00})))));
    EXPECT_EQ(Values(eac3, {"ca", "sf", "ac", "ar"}), "ca=\"EAC3\" sf=48000 ac=6 ar=192000");
    // 000 0001 0 00000010: and a dependent substream, with the pair at the rear.
    const std::string rears =
        Parsed(AudioFile(AudioEntry("ec-3", Box("dec3", Hex({0x06, 0x00, 0x20, 0x0F, 0x02, 0x02})))));
    EXPECT_EQ(Values(rears, {"ca", "sf", "ac", "ar"}), "ca=\"EAC3\" sf=48000 ac=8 ar=192000");
    // A reserved rate: what the entry says.
    EXPECT_EQ(Audio(AudioEntry("ac-3", Box("dac3", Hex({0xD0, 0x3D, 0xC0})))), "ca=\"AC3\" sf=44100 ac=2");
}

TEST(ISOAudio, OtherFormatsHaveTheirNames) {
    EXPECT_EQ(Audio(AudioEntry(".mp3", "")), "ca=\"MP3\" sf=44100 ac=2");
    EXPECT_EQ(Audio(AudioEntry(std::string("ms\0\x55", 4), "")), "ca=\"MP3\" sf=44100 ac=2");
    EXPECT_EQ(Audio(AudioEntry("samr", "", 2, 16, 8000)), "ca=\"AMR\" sf=8000 ac=1");
    EXPECT_EQ(Audio(AudioEntry("sawb", "", 2, 16, 0)), "ca=\"AMR-WB\" sf=16000 ac=1");
    EXPECT_EQ(Audio(AudioEntry("sawp", "", 2, 16, 32000)), "ca=\"AMR-WB+\" sf=32000 ac=2");
    EXPECT_EQ(Audio(AudioEntry("QDM2", "")), "ca=\"QDM2\" sf=44100 ac=2");
    EXPECT_EQ(Audio(AudioEntry(std::string("a\1 \n", 4), "")), "ca=\"a...\" sf=44100 ac=2");
    // 24 bits, one channel, 96 kHz, which the entry has no room for. The rate is measured: here writers state
    // that of the samples before they are coded.
    const std::string cookie = Big(4096, 4) + Big(0, 1) + Big(24, 1) + Big(0x280A0E, 3) + Big(1, 1) +
                               Big(255, 2) + Big(0, 4) + Big(1500000, 4) + Big(96000, 4);
    EXPECT_EQ(Values(Parsed(AudioFile(AudioEntry("alac", FullBox("alac", cookie)))),
                     {"ca", "sf", "ac", "bs", "ar"}),
              "ca=\"ALAC\" sf=96000 ac=1 bs=24 ar=8000");
}

TEST(ISOAudio, PlainSamplesKeepTheirSamplingRateWhereOthersHaveTheBitRate) {
    const auto plain = [](const std::string& anEntry) {
        return Values(Parsed(AudioFile(anEntry)), {"ca", "sf", "ac", "bs", "ar", "ea"});
    };
    EXPECT_EQ(plain(AudioEntry("sowt", "")), "ca=\"LPCM\" ac=2 bs=16 ar=44100");
    EXPECT_EQ(plain(AudioEntry("twos", "", 1, 8, 8000)), "ca=\"LPCM\" ac=1 bs=8 ar=8000");
    EXPECT_EQ(plain(AudioEntry("in24", "")), "ca=\"LPCM\" ac=2 bs=24 ar=44100");
    EXPECT_EQ(plain(AudioEntry("ipcm", FullBox("pcmC", Big(1, 1) + Big(24, 1)))),
              "ca=\"LPCM\" ac=2 bs=24 ar=44100");
    // QuickTime's second version: 96000 as a floating point number, 3 channels, 24 bits; and no integers.
    EXPECT_EQ(plain(AudioEntry2("lpcm", UINT64_C(0x40F7700000000000), 3, 24, 0xC)),
              "ca=\"LPCM\" ac=3 bs=24 ar=96000");
    EXPECT_EQ(plain(AudioEntry("raw ", "")), "ca=\"LPCM\" ac=2 bs=8 ar=44100");
    // Those with a fraction are told as those of other files: with a rate of bits.
    EXPECT_EQ(plain(AudioEntry("fl32", "")), "ca=\"PCM-float\" sf=44100 ac=2 bs=32 ar=2822400");
    EXPECT_EQ(plain(AudioEntry("fl64", "")), "ca=\"PCM-float\" sf=44100 ac=2 bs=64 ar=5644800");
    EXPECT_EQ(plain(AudioEntry("fpcm", FullBox("pcmC", Big(0, 1) + Big(32, 1)))),
              "ca=\"PCM-float\" sf=44100 ac=2 bs=32 ar=2822400");
    const auto floats = [&](std::uint64_t aRate) { return Audio(AudioEntry2("lpcm", aRate, 3, 32, 0x9)); };
    EXPECT_EQ(floats(UINT64_C(0x40F7700000000000)), "ca=\"PCM-float\" sf=96000 ac=3 bs=32");
    EXPECT_EQ(floats(UINT64_C(0x7FF8000000000000)), "ca=\"PCM-float\" ac=3 bs=32");
    EXPECT_EQ(floats(UINT64_C(0x416312D000000000)), "ca=\"PCM-float\" sf=10000000 ac=3 bs=32");
    EXPECT_EQ(floats(UINT64_C(0x416312D000000001)), "ca=\"PCM-float\" ac=3 bs=32");
    // Numbers that the other versions have no room for are damage.
    EXPECT_EQ(plain(AudioEntry2("lpcm", UINT64_C(0x40F7700000000000), 0x10000, 0xFFFFFFFF, 0xC)),
              "ca=\"LPCM\" ar=96000");
}

TEST(ISOAudio, QuickTimeKeepsTheDescriptorInABoxOfItsOwn) {
    const std::string wave = Box("wave", Box("frma", "mp4a") + Box("mp4a", Big(0, 4)) +
                                             ESDS(0x40, "\x11\x88") + Big(8, 4) + Big(0, 4));
    EXPECT_EQ(Audio(AudioEntry1("mp4a", wave)), "ca=\"AAC\" sf=48000 ac=1");
    EXPECT_EQ(Audio(AudioEntry1("mp4a", Box("wave", wave))), "ca=\"mp4a\" sf=44100 ac=2"); // none within one
    // In a table of version 1, a first version is ISO's: nothing is put in, and a rate may have its own box.
    Track track;
    track.mTableVersion = 1;
    const std::string rate = FullBox("srat", Big(96000, 4));
    track.mEntry = Box(".mp3", Big(0, 6) + Big(1, 2) + Big(1, 2) + Big(0, 6) + Big(2, 2) + Big(16, 2) +
                                   Big(0, 4) + Big(0, 4) + rate);
    EXPECT_EQ(Values(Parsed(File({track})), {"ca", "sf", "ac"}), "ca=\"MP3\" sf=96000 ac=2");
}

TEST(ISOAudio, EncryptedSamplesAreNamedAndKeepNoProfile) {
    const std::string info = Box("sinf", Box("frma", "mp4a"));
    const std::string plain = Parsed(AudioFile(AAC(64000, 64000)));
    EXPECT_EQ(ValueOf(plain, "dl"),
              "\"DLNA.ORG_PN=AAC_ISO_320;DLNA.ORG_OP=01;DLNA.ORG_FLAGS=01500000000000000000000000000000\"");
    for (const char* format : {"enca", "drms"}) {
        const std::string record =
            Parsed(AudioFile(AudioEntry(format, ESDS(0x40, kAACConfig, 64000, 64000) + info)));
        EXPECT_EQ(Values(record, {"ca", "sf", "dl"}), "ca=\"encrypted:AAC\" sf=44100 dl=\"DLNA.ORG_OP=01\"");
    }
    EXPECT_EQ(Audio(AudioEntry("enca", "")), "ca=\"encrypted:enca\" sf=44100 ac=2");
    const std::string video = VideoEntry("encv", Box("sinf", Box("frma", "avc1")));
    EXPECT_EQ(Video(video), "vc=\"encrypted:H264\" wi=320 he=240");
}

// ---- video ----

TEST(ISOVideo, SequenceSetTellsProfileLevelAndPicture) {
    EXPECT_EQ(H264(SequenceSet(66, 0x80, 30, 20, 15)),
              "vc=\"H264\" vp=\"Baseline\" vl=30 wi=320 he=240 pr=\"progressive\"");
    EXPECT_EQ(H264(SequenceSet(66, 0xC0, 30, 20, 15)),
              "vc=\"H264\" vp=\"ConstrainedBaseline\" vl=30 wi=320 he=240 pr=\"progressive\"");
    EXPECT_EQ(H264(SequenceSet(77, 0, 40, 120, 34, 2, false)), // 1088 rows less 2 * 4
              "vc=\"H264\" vp=\"Main\" vl=40 wi=1920 he=1080 pr=\"interlaced\"");
    EXPECT_EQ(H264(SequenceSet(100, 0, 41, 120, 68, 4)),
              "vc=\"H264\" vp=\"High\" vl=41 wi=1920 he=1080 pr=\"progressive\"");
    // Level 1b: 1.1 with a constraint.
    EXPECT_EQ(H264(SequenceSet(66, 0xD0, 11, 11, 9)),
              "vc=\"H264\" vp=\"ConstrainedBaseline\" vl=9 wi=176 he=144 pr=\"progressive\"");
    EXPECT_EQ(H264(SequenceSet(100, 0x10, 11, 11, 9)),
              "vc=\"H264\" vp=\"High\" vl=11 wi=176 he=144 pr=\"progressive\"");
}

TEST(ISOVideo, SequenceSetThatIsNoneLeavesTheEntry) {
    EXPECT_EQ(H264("broken"), "vc=\"H264\" vp=\"Main\" vl=30 wi=320 he=240");
    EXPECT_EQ(Video(VideoEntry("avc1", "")), "vc=\"H264\" wi=320 he=240");
    EXPECT_EQ(Video(VideoEntry("avc3", Box("avcC", Hex({1, 100, 0, 40, 0xFF, 0xE0})))),
              "vc=\"H264\" vp=\"High\" vl=40 wi=320 he=240"); // the sets come with the pictures
    EXPECT_EQ(Video(VideoEntry("avc1", Box("avcC", Hex({2, 100, 0, 40, 0xFF, 0xE0})))),
              "vc=\"H264\" wi=320 he=240"); // of a version that is not known
    EXPECT_EQ(Video(VideoEntry("avc1", Box("avcC", Hex({1, 100, 0, 40, 0xFF, 0xE1, 0xFF, 0xFF, 0x67, 1})))),
              "vc=\"H264\" vp=\"High\" vl=40 wi=320 he=240"); // longer than the box
}

TEST(ISOVideo, HEVCIsDescribedByItsBox) {
    const auto box = [](int aProfile, int aSource, int aLevel) {
        return Box("hvcC", Hex({1, aProfile, 0, 0, 0, 0, aSource, 0, 0, 0, 0, 0, aLevel}));
    };
    EXPECT_EQ(Video(VideoEntry("hvc1", box(0x01, 0x90, 93))),
              "vc=\"H265\" vp=\"Main\" vl=31 wi=320 he=240 pr=\"progressive\"");
    EXPECT_EQ(Video(VideoEntry("hev1", box(0x22, 0x40, 153))),
              "vc=\"H265\" vp=\"Main10\" vl=51 wi=320 he=240 pr=\"interlaced\"");
    EXPECT_EQ(Video(VideoEntry("hev1", Box("hvcC", ""))), "vc=\"H265\" wi=320 he=240");
}

TEST(ISOVideo, MPEG4VideoIsDescribedByItsHeaders) {
    EXPECT_EQ(MPEG4(0x03, Layer(352, 288, false)),
              "vc=\"MPEG4\" vp=\"Simple\" vl=30 wi=352 he=288 pr=\"progressive\"");
    EXPECT_EQ(MPEG4(0x08, Layer(176, 144, false)),
              "vc=\"MPEG4\" vp=\"Simple\" vl=0 wi=176 he=144 pr=\"progressive\"");
    EXPECT_EQ(MPEG4(0x09, Layer(176, 144, false)),
              "vc=\"MPEG4\" vp=\"Simple\" vl=9 wi=176 he=144 pr=\"progressive\"");
    EXPECT_EQ(MPEG4(0xF5, Layer(720, 576, true, true)),
              "vc=\"MPEG4\" vp=\"AdvancedSimple\" vl=50 wi=720 he=576 pr=\"interlaced\"");
    EXPECT_EQ(MPEG4(0xF7, ""), "vc=\"MPEG4\" vp=\"AdvancedSimple\" vl=39 wi=320 he=240");
    EXPECT_EQ(MPEG4(0xFE, Layer(0, 576, true)), "vc=\"MPEG4\" wi=320 he=240"); // no profile, no picture
}

TEST(ISOVideo, OtherFormatsHaveTheirNames) {
    EXPECT_EQ(Video(VideoEntry("s263", Box("d263", "made" + Hex({0, 10, 0})))),
              "vc=\"H263\" vp=\"0\" vl=10 wi=320 he=240");
    EXPECT_EQ(Video(VideoEntry("mp4v", ESDS(0x61, ""))), "vc=\"MPEG2\" vp=\"Main\" wi=320 he=240");
    EXPECT_EQ(Video(VideoEntry("mp4v", ESDS(0x6A, ""))), "vc=\"MPEG1\" wi=320 he=240");
    EXPECT_EQ(Video(VideoEntry("mp4v", ESDS(0x99, ""))), "vc=\"mp4v\" wi=320 he=240");
    EXPECT_EQ(Video(VideoEntry("mjpa", "")), "vc=\"MJPEG\" wi=320 he=240");
    EXPECT_EQ(Video(VideoEntry("SVQ3", "")), "vc=\"SVQ3\" wi=320 he=240");
    EXPECT_EQ(Video(VideoEntry("rle ", "")), "vc=\"Animation\" wi=320 he=240");
    EXPECT_EQ(Video(VideoEntry("apch", "")), "vc=\"ProRes\" vp=\"HQ\" wi=320 he=240");
    EXPECT_EQ(Video(VideoEntry("dv5p", "")), "vc=\"DV\" vp=\"50\" wi=320 he=240");
    EXPECT_EQ(Video(VideoEntry("XVID", "")), "vc=\"MPEG4\" wi=320 he=240");
    EXPECT_EQ(Video(VideoEntry("xvid", "")), "vc=\"xvid\" wi=320 he=240");
    EXPECT_EQ(Video(Box("avc1", "short")), "vc=\"avc1\"");
}

// ---- profiles ----

TEST(ISOVideo, ProfilesFollowFromTheFacts) {
    const auto profile = [](const std::string& aVideo, const std::string& anAudio, const char* aBrand) {
        Track audio;
        audio.mEntry = anAudio;
        const std::string field = ValueOf(Parsed(FileType(aBrand) + Movie({audio, VideoTrack(aVideo)}) +
                                                 Box("mdat", std::string(2000, '.'))),
                                          "dl");
        return field.substr(1, field.find(';') - 1);
    };
    const std::string config = Hex({0, 0, 1, 0xB0, 2, 0, 0, 1, 0}) + Layer(176, 144, false);
    const std::string simple = VideoEntry("mp4v", ESDS(0x20, config, 64000, 64000));
    EXPECT_EQ(profile(simple, AAC(96000, 96000), "isom"), "DLNA.ORG_PN=MPEG4_P2_MP4_SP_L2_AAC");
    const std::string high =
        VideoEntry("avc1", AVCC(100, 0, 40, SequenceSet(100, 0, 40, 120, 68, 4)) +
                               Box("btrt", Big(0, 4) + Big(12000000, 4) + Big(9000000, 4)));
    EXPECT_EQ(profile(high, AAC(96000, 96000), "isom"), "DLNA.ORG_PN=AVC_MP4_HP_HD_AAC");
}
