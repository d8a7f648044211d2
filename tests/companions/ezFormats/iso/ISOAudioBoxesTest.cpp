#include "companions/ezFormats/iso/ISOBytes.h"

#include "companions/ezFormats/elementary/EltStreamKit.h"

#include "ezFormats/codecs/AMRFrames.h"
#include "ezFormats/codecs/FLACStreamInfo.h"

#include <gtest/gtest.h>

using namespace iso;

// What the boxes of single codecs tell of audio, and the rates that they lead to.

namespace {

std::string Audio(const std::string& anEntry) {
    return Values(Parsed(AudioFile(anEntry)), {"ca", "sf", "ac", "bs"});
}

/// Samples of a constant size, a second of them.
std::string Constant(const std::string& anEntry, std::uint32_t aCount, std::uint32_t aSize,
                     const std::string& aBrand = "qt  ") {
    Track track;
    track.mEntry = anEntry;
    track.mSizeTable = FullBox("stsz", Big(aSize, 4) + Big(aCount, 4));
    return FileType(aBrand) + Movie({track}) + Box("mdat", std::string(std::size_t{aCount} * aSize, '.'));
}

// ---- FLAC ----

/// The first block: 4096 samples a block, then rate, channels, bits and so many samples.
std::string StreamInfo(std::uint32_t aRate, unsigned aChannels, unsigned aBits, unsigned aKind = 0x80) {
    return Big(aKind, 1) + Big(34, 3) +
           Bits()
               .Put(4096, 16)
               .Put(4096, 16)
               .Put(0, 48)
               .Put(aRate, 20)
               .Put(aChannels - 1, 3)
               .Put(aBits - 1, 5)
               .Put(96000, 36)
               .Bytes() +
           Big(0, 16);
}

std::string FLAC(const std::string& aBlocks) {
    return Audio(AudioEntry("fLaC", FullBox("dfLa", aBlocks), 2, 16, 48000));
}

// ---- DTS ----

/// The box of DTS: how the streams are made up, and which loudspeakers there are.
std::string DTSBox(unsigned aConstruction, unsigned aLayout, std::uint32_t aRate = 96000) {
    return Box("ddts", Bits()
                           .Put(aRate, 32)
                           .Put(5000000, 32)
                           .Put(3000000, 32)
                           .Put(24, 8)
                           .Put(1, 2) // FrameDuration
                           .Put(aConstruction, 5)
                           .Put(1, 1)
                           .Put(9, 6)
                           .Put(1500, 14)
                           .Put(0, 1)
                           .Put(0, 3) // core, downmix, representation
                           .Put(aLayout, 16)
                           .Put(0, 8)
                           .Bytes());
}

std::string DTS(const char* aFormat, const std::string& aBox) {
    return Values(Parsed(AudioFile(AudioEntry(aFormat, aBox, 2, 16, 48000))),
                  {"ca", "sf", "ac", "bs", "ar", "ma"});
}

// ---- AC-4 and MPEG-H ----

/// The box of AC-4: a rate of bits that is not known, and one presentation. From the presentation's mode of
/// channels on anything.
std::string AC4(unsigned aMode, unsigned aTop = 0, unsigned aConfig = 31, bool afChannels = true,
                std::uint32_t aRate = 0, bool afIdentified = false) {
    Bits bits;
    bits.Put(1, 3).Put(2, 7).Put(1, 1).Put(2, 4).Put(1, 9).Put(afIdentified ? 1 : 0, 1);
    if (afIdentified) {
        bits.Put(77, 16).Put(1, 1).Put(0, 64).Put(0, 64);
    }
    bits.Put(1, 2).Put(aRate, 32).Put(UINT32_MAX, 32);
    bits.Put(0, afIdentified ? 4 : 5); // up to a byte's start
    bits.Put(1, 8).Put(18, 8).Put(aConfig, 5).Put(0, 3).Put(1, 1).Put(3, 5).Put(0, 2 + 2 + 5 + 10);
    bits.Put(afChannels ? 1 : 0, 1).Put(aMode, 5).Put(aTop, 3).Put(0, 64);
    return Values(Parsed(AudioFile(AudioEntry("ac-4", Box("dac4", bits.Bytes()), 5, 16, 32000))),
                  {"ca", "sf", "ac", "ar"});
}

std::string MPEGH(unsigned aLayout, unsigned aRateIndex, std::uint32_t aRate = 0, unsigned aVersion = 1) {
    const std::string box = Bits()
                                .Put(aVersion, 8)
                                .Put(12, 8)
                                .Put(aLayout, 8)
                                .Put(20, 16)
                                .Put(12, 8)
                                .Put(aRateIndex, 5)
                                .Put(aRate, 24)
                                .Put(0, 64)
                                .Bytes();
    return Audio(AudioEntry("mha1", Box("mhaC", box), 5, 16, 32000));
}

// ---- immersive audio ----

std::string Leb(std::uint64_t aNumber) {
    std::string bytes;
    do {
        const std::uint64_t rest = aNumber >> 7;
        bytes += Big((aNumber & 0x7F) | (rest != 0 ? 0x80U : 0U), 1);
        aNumber = rest;
    } while (aNumber != 0);
    return bytes;
}

std::string Unit(unsigned aKind, const std::string& aContent, unsigned aFlags = 0) {
    return Big(aKind << 3 | aFlags, 1) + Leb(aContent.size()) + aContent;
}

std::string CodecUnit(const std::string& aType, const std::string& aConfig) {
    return Unit(0, Leb(200) + aType + Leb(960) + Big(0xFFFC, 2) + aConfig);
}

const std::string kHead = Unit(31, "iamf" + Big(0, 2));
const std::string kPCM = CodecUnit("ipcm", Big(1, 1) + Big(16, 1) + Big(16000, 4));

/// An element of one stream, of so many layers.
std::string Element(const std::vector<unsigned>& aLayouts, const std::string& aParameters = Leb(0)) {
    std::string layers = Big(aLayouts.size() << 5, 1);
    for (const unsigned layout : aLayouts) {
        layers += Big(layout << 4, 1) + Big(1, 1) + Big(1, 1);
    }
    return Unit(1, Leb(300) + Big(0, 1) + Leb(200) + Leb(1) + Leb(0) + aParameters + layers);
}

std::string IAMF(const std::string& aUnits) {
    return Audio(AudioEntry("iamf", Box("iacb", Big(1, 1) + Leb(aUnits.size()) + aUnits), 0, 16, 0));
}

} // namespace

TEST(ISOAudioBoxes, FLACIsDescribedByItsFirstBlock) {
    EXPECT_EQ(FLAC(StreamInfo(96000, 2, 24)), "ca=\"FLAC\" sf=96000 ac=2 bs=24");
    EXPECT_EQ(FLAC(StreamInfo(44100, 6, 16, 0)), "ca=\"FLAC\" sf=44100 ac=6 bs=16"); // not the last block
    EXPECT_EQ(FLAC(StreamInfo(655350, 8, 32)), "ca=\"FLAC\" sf=655350 ac=8 bs=32");
    EXPECT_EQ(FLAC(StreamInfo(1, 1, 4)), "ca=\"FLAC\" sf=1 ac=1 bs=4");
    // What is none leaves the entry.
    const std::string entry = "ca=\"FLAC\" sf=48000 ac=2 bs=16";
    EXPECT_EQ(FLAC(StreamInfo(0, 2, 24)), entry);
    EXPECT_EQ(FLAC(StreamInfo(96000, 2, 24, 4)), entry); // comments
    const std::string block = StreamInfo(96000, 2, 24).substr(0, 22);
    EXPECT_EQ(FLAC(block), "ca=\"FLAC\" sf=96000 ac=2 bs=24");
    for (std::size_t size = 0; size < block.size(); ++size) {
        EXPECT_EQ(FLAC(block.substr(0, size)), entry) << size;
    }
}

TEST(ISOAudioBoxes, OpusHasTheChannelsOfItsBoxAndOneRate) {
    const auto opus = [](const std::string& aBox) { return Audio(AudioEntry("Opus", aBox, 2, 16, 16000)); };
    EXPECT_EQ(opus(Box("dOps", Big(0, 1) + Big(6, 1) + Big(312, 2) + Big(16000, 4) + Big(0, 3))),
              "ca=\"Opus\" sf=48000 ac=6");
    EXPECT_EQ(opus(Box("dOps", Big(0, 2) + Big(312, 2))), "ca=\"Opus\" sf=48000 ac=2"); // of no channels
    EXPECT_EQ(opus(Box("dOps", Big(0, 1))), "ca=\"Opus\" sf=48000 ac=2");
    EXPECT_EQ(opus(""), "ca=\"Opus\" sf=48000 ac=2");
}

TEST(ISOAudioBoxes, DTSIsNamedByWhatItsStreamsAreMadeOf) {
    struct Case {
        unsigned mFirst;
        unsigned mLast;
        const char* mName;
    };
    const std::vector<Case> cases = {{0, 0, "DTS-HD"},      {1, 4, "DTS"},          {5, 13, "DTS-HD-HRA"},
                                     {14, 17, "DTS-HD-MA"}, {18, 18, "DTS-HD-LBR"}, {19, 20, "DTS-HD-HRA"},
                                     {21, 21, "DTS-HD-MA"}, {22, 31, "DTS-HD"}};
    for (const Case& one : cases) {
        for (unsigned construction = one.mFirst; construction <= one.mLast; ++construction) {
            const std::string name = one.mName;
            EXPECT_EQ(DTS("dtsh", DTSBox(construction, 0x000F)), "ca=\"" + name + "\" sf=96000 ac=6" +
                                                                     (name == "DTS-HD-MA" ? " bs=24" : "") +
                                                                     " ar=3000000 ma=5000000")
                << construction;
        }
    }
    EXPECT_EQ(DTS("dtsl", DTSBox(0, 0x084B)), "ca=\"DTS-HD-MA\" sf=96000 ac=8 bs=24 ar=3000000 ma=5000000");
    // Without a box of its own the entry and the four characters are all there is.
    EXPECT_EQ(DTS("dtsc", ""), "ca=\"DTS\" sf=48000 ac=2 ar=8000");
    EXPECT_EQ(DTS("dtsh", ""), "ca=\"DTS-HD\" sf=48000 ac=2 ar=8000");
    EXPECT_EQ(DTS("dtsl", ""), "ca=\"DTS-HD-MA\" sf=48000 ac=2 ar=8000");
    EXPECT_EQ(DTS("dtse", ""), "ca=\"DTS-HD-LBR\" sf=48000 ac=2 ar=8000");
    EXPECT_EQ(DTS("dtse", DTSBox(18, 2, 0)), "ca=\"DTS-HD-LBR\" sf=48000 ac=2 ar=8000"); // no rate
    EXPECT_EQ(DTS("dtsh", DTSBox(14, 0)),
              "ca=\"DTS-HD-MA\" sf=96000 ac=2 bs=24 ar=3000000 ma=5000000"); // no loudspeakers
    const std::string box = DTSBox(14, 2);
    EXPECT_EQ(DTS("dtsh", Box("ddts", box.substr(8, 17))), "ca=\"DTS-HD\" sf=48000 ac=2 ar=8000"); // cut
    // A stream told by its object type has the box as well.
    EXPECT_EQ(Audio(AudioEntry("mp4a", ESDS(0xAA, "") + DTSBox(5, 0xF), 2, 16, 48000)),
              "ca=\"DTS-HD-HRA\" sf=96000 ac=6");
}

TEST(ISOAudioBoxes, AC4HasTheChannelsOfItsFirstPresentation) {
    const std::vector<unsigned> channels = {1, 2, 3, 5, 6, 7, 8, 7, 8, 7, 8};
    for (unsigned mode = 0; mode < channels.size(); ++mode) {
        EXPECT_EQ(AC4(mode), "ca=\"AC4\" sf=48000 ac=" + std::to_string(channels[mode]) + " ar=8000") << mode;
    }
    EXPECT_EQ(AC4(15), "ca=\"AC4\" sf=48000 ac=24 ar=8000");
    // With loudspeakers above: both pairs behind, and how many pairs on top.
    EXPECT_EQ(AC4(12, 6), "ca=\"AC4\" sf=48000 ac=12 ar=8000");
    EXPECT_EQ(AC4(12, 2), "ca=\"AC4\" sf=48000 ac=10 ar=8000");
    EXPECT_EQ(AC4(12, 1), "ca=\"AC4\" sf=48000 ac=8 ar=8000");
    EXPECT_EQ(AC4(11, 0), "ca=\"AC4\" sf=48000 ac=5 ar=8000");
    EXPECT_EQ(AC4(13, 7), "ca=\"AC4\" sf=48000 ac=13 ar=8000"); // a count of nobody
    EXPECT_EQ(AC4(14, 6), "ca=\"AC4\" sf=48000 ac=14 ar=8000");
    const std::string entry = "ca=\"AC4\" sf=48000 ac=5 ar=8000";
    EXPECT_EQ(AC4(16), entry);
    EXPECT_EQ(AC4(1, 0, 31, false), entry) << "of objects";
    EXPECT_EQ(AC4(1, 0, 6), entry) << "a presentation of nothing";
    EXPECT_EQ(AC4(1, 0, 5), "ca=\"AC4\" sf=48000 ac=2 ar=8000");
    EXPECT_EQ(AC4(1, 0, 31, true, 64000), "ca=\"AC4\" sf=48000 ac=2 ar=64000");
    EXPECT_EQ(AC4(1, 0, 31, true, UINT32_MAX), "ca=\"AC4\" sf=48000 ac=2 ar=8000");
    EXPECT_EQ(AC4(4, 0, 31, true, 64000, true), "ca=\"AC4\" sf=48000 ac=6 ar=64000")
        << "of a named programme";
    // As a file states it: of two presentations the first is of two channels.
    const std::string stated =
        Hex({0x20, 0xA4, 0x02, 0x40, 0x00, 0x00, 0x00, 0x1F, 0xFF, 0xFF, 0xFF, 0xE0, 0x02, 0x12,
             0xF8, 0x80, 0x00, 0x00, 0x42, 0x00, 0x00, 0x02, 0x50, 0x10, 0x00, 0x00, 0x03, 0x10});
    const auto box = [](const std::string& aContent) {
        return Audio(AudioEntry("ac-4", Box("dac4", aContent), 5, 16, 32000));
    };
    EXPECT_EQ(box(stated), "ca=\"AC4\" sf=48000 ac=2");
    for (std::size_t size = 0; size < 20; ++size) {
        EXPECT_EQ(box(stated.substr(0, size)), size < 3    ? "ca=\"AC4\" sf=32000 ac=5"
                                               : size < 19 ? "ca=\"AC4\" sf=48000 ac=5"
                                                           : "ca=\"AC4\" sf=48000 ac=2")
            << size;
    }
    EXPECT_EQ(box(Hex({0x00, 0x80, 0x02, 0x40})), "ca=\"AC4\" sf=44100 ac=5") << "of the first version";
    EXPECT_EQ(box(Hex({0x40, 0xA4, 0x02, 0x40})), "ca=\"AC4\" sf=32000 ac=5") << "of a later one";
}

TEST(ISOAudioBoxes, MPEGHHasTheLoudspeakersOfItsLayout) {
    const std::vector<unsigned> speakers = {5, 1, 2,  3, 4,  5,  6,  8,  2,  3,  4,
                                            7, 8, 24, 8, 12, 10, 12, 14, 12, 14, 5};
    for (unsigned layout = 0; layout < speakers.size(); ++layout) { // 5 is that of the entry
        EXPECT_EQ(MPEGH(layout, 3), "ca=\"MPEG-H\" sf=48000 ac=" + std::to_string(speakers[layout]))
            << layout;
    }
    const std::vector<unsigned> rates = {96000, 88200, 64000, 48000, 44100, 32000, 24000, 22050,
                                         16000, 12000, 11025, 8000,  7350,  32000, 32000, 57600,
                                         51200, 40000, 38400, 34150, 28800, 25600, 20000, 19200,
                                         17075, 14400, 12800, 9600,  32000, 32000, 32000, 12345};
    for (unsigned index = 0; index < rates.size(); ++index) { // 32000 is that of the entry
        EXPECT_EQ(MPEGH(6, index, 12345), "ca=\"MPEG-H\" sf=" + std::to_string(rates[index]) + " ac=6")
            << index;
    }
    EXPECT_EQ(MPEGH(6, 3, 0, 2), "ca=\"MPEG-H\" sf=32000 ac=5") << "of a later version";
    EXPECT_EQ(Audio(AudioEntry("mhm1", Box("mhaC", "\1"), 2, 16, 48000)), "ca=\"MPEG-H\" sf=48000 ac=2");
    EXPECT_EQ(Audio(AudioEntry("mhm1", "", 0, 16, 48000)), "ca=\"MPEG-H\" sf=48000");
}

TEST(ISOAudioBoxes, TrueHDIsDescribedByItsLargestPresentation) {
    const auto truehd = [](std::uint32_t aFormat, std::uint32_t aPeak = 0x186A) {
        return Parsed(AudioFile(
            AudioEntry("mlpa", Box("dmlp", Big(aFormat, 4) + Big(aPeak, 2) + Big(0, 4)), 2, 16, 0)));
    };
    const std::vector<const char*> keys = {"ca", "sf", "ac", "ma"};
    // Left and right, middle, low, and two pairs; 3125 sixteenths of a bit for each of 48000 samples.
    EXPECT_EQ(Values(truehd(0x0017804F), keys), "ca=\"TrueHD\" sf=48000 ac=8 ma=9375000");
    EXPECT_EQ(Values(truehd(0x10178000, 0), keys), "ca=\"TrueHD\" sf=96000 ac=6"); // up to six alone
    EXPECT_EQ(Values(truehd(0x20008001, 0), keys), "ca=\"TrueHD\" sf=192000 ac=2");
    EXPECT_EQ(Values(truehd(0x80001FFF, 0), keys), "ca=\"TrueHD\" sf=44100 ac=20"); // all there are
    EXPECT_EQ(Values(truehd(0x90000002, 0), keys), "ca=\"TrueHD\" sf=88200 ac=1");
    EXPECT_EQ(Values(truehd(0xA0001000, 0), keys), "ca=\"TrueHD\" sf=176400 ac=1");
    EXPECT_EQ(Values(truehd(0x00000000, 0), keys), "ca=\"TrueHD\" sf=48000 ac=2"); // that of the entry
    for (const std::uint32_t nobody : {3U, 7U, 11U, 15U}) {
        EXPECT_EQ(Values(truehd(nobody << 28 | 0x17804F), keys), "ca=\"TrueHD\" ac=2") << nobody;
    }
    EXPECT_EQ(Audio(AudioEntry("mlpa", Box("dmlp", Big(0x0017804F, 4) + Big(0, 1)))),
              "ca=\"TrueHD\" sf=44100 ac=2");
}

TEST(ISOAudioBoxes, ImmersiveAudioIsDescribedByItsUnits) {
    EXPECT_EQ(IAMF(kHead + kPCM + Element({1})), "ca=\"IAMF\" sf=16000 ac=2");
    // The finest layer of the largest element.
    EXPECT_EQ(IAMF(kHead + kPCM + Element({0, 1, 2}) + Element({1})), "ca=\"IAMF\" sf=16000 ac=6");
    EXPECT_EQ(IAMF(kHead + kPCM + Element({1}) + Element({7})), "ca=\"IAMF\" sf=16000 ac=12");
    EXPECT_EQ(IAMF(kHead + kPCM + Element({9})), "ca=\"IAMF\" sf=16000 ac=2");
    EXPECT_EQ(IAMF(kHead + kPCM + Element({10})), "ca=\"IAMF\" sf=16000"); // a layout of nobody
    EXPECT_EQ(IAMF(kHead + kPCM + Element({})), "ca=\"IAMF\" sf=16000");
    // A gain of the output stands before the next layer.
    const std::string gain =
        Unit(1, Leb(300) + Big(0, 1) + Leb(200) + Leb(1) + Leb(0) + Leb(0) + Big(2 << 5, 1) + Big(0x18, 1) +
                    Big(1, 2) + Big(0, 3) + Big(0x20, 1) + Big(1, 2));
    EXPECT_EQ(IAMF(kHead + kPCM + gain), "ca=\"IAMF\" sf=16000 ac=6");
    // A sphere of four channels.
    const std::string sphere =
        Unit(1, Leb(300) + Big(0x20, 1) + Leb(200) + Leb(2) + Leb(0) + Leb(1) + Leb(0) + Leb(0) + Big(4, 1));
    EXPECT_EQ(IAMF(kHead + kPCM + sphere), "ca=\"IAMF\" sf=16000 ac=4");
    EXPECT_EQ(IAMF(kHead + kPCM + Unit(1, Leb(300) + Big(0x40, 1) + Leb(200) + Leb(0) + Leb(0))),
              "ca=\"IAMF\" sf=16000"); // a kind of nobody
}

TEST(ISOAudioBoxes, CodecsOfImmersiveAudioTellTheirRates) {
    const auto rate = [](const std::string& aUnit) { return IAMF(kHead + aUnit + Element({1})); };
    EXPECT_EQ(rate(CodecUnit("Opus", Big(0x01020138, 4) + Big(16000, 4))), "ca=\"IAMF\" sf=48000 ac=2");
    EXPECT_EQ(rate(CodecUnit("fLaC", StreamInfo(88200, 2, 24))), "ca=\"IAMF\" sf=88200 ac=2");
    const std::string decoder =
        Descriptor(4, Big(0x40, 1) + Big(0x15, 1) + Big(0, 3) + Big(0, 8) + Descriptor(5, kAACConfig));
    EXPECT_EQ(rate(CodecUnit("mp4a", decoder)), "ca=\"IAMF\" sf=44100 ac=2");
    EXPECT_EQ(rate(CodecUnit("mp4a", decoder.substr(0, 10))), "ca=\"IAMF\" ac=2");
    EXPECT_EQ(rate(CodecUnit("what", Big(0, 20))), "ca=\"IAMF\" ac=2");
    EXPECT_EQ(rate(kPCM + CodecUnit("Opus", "")), "ca=\"IAMF\" sf=16000 ac=2"); // the first
}

TEST(ISOAudioBoxes, UnitsOfImmersiveAudioAreSteppedOverByTheirSizes) {
    // A unit of another kind, and heads that are longer: trimmed samples, bytes of a later version.
    EXPECT_EQ(IAMF(kHead + Unit(2, std::string(200, 'm')) + kPCM + Element({1})),
              "ca=\"IAMF\" sf=16000 ac=2");
    const std::string pcm = kPCM.substr(2);
    EXPECT_EQ(IAMF(Unit(0, Leb(5) + Leb(700) + pcm, 2) + Unit(0, "", 0)), "ca=\"IAMF\" sf=16000");
    EXPECT_EQ(IAMF(Unit(0, Leb(3) + "new" + pcm, 1)), "ca=\"IAMF\" sf=16000");
    // Parameters of an element: how to mix it down, with times of its own; a gain told with the frames; and
    // one of a later version.
    const std::string mixing = Leb(1) + Leb(7) + Leb(16000) + Big(0, 1) + Leb(960) + Leb(0) + Leb(2) +
                               Leb(480) + Leb(480) + Big(0x20, 1) + Big(0, 1);
    const std::string equal = Leb(1) + Leb(7) + Leb(16000) + Big(0, 1) + Leb(960) + Leb(960) + Big(0, 2);
    const std::string gain = Leb(2) + Leb(8) + Leb(16000) + Big(0x80, 1);
    const std::string later = Leb(900) + Leb(130) + std::string(130, 'p');
    EXPECT_EQ(IAMF(kHead + kPCM + Element({5}, Leb(4) + mixing + gain + later + equal)),
              "ca=\"IAMF\" sf=16000 ac=8");
}

TEST(ISOAudioBoxes, DamagedImmersiveAudioTellsWhatStandsBeforeTheDamage) {
    const std::string whole =
        kHead + kPCM + Element({2}, Leb(1) + Leb(2) + Leb(8) + Leb(16000) + Big(0x80, 1));
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const std::string units = whole.substr(0, size);
        const bool fCodec = size >= kHead.size() + kPCM.size();
        EXPECT_EQ(IAMF(units), fCodec ? "ca=\"IAMF\" sf=16000" : "ca=\"IAMF\"") << size;
        // The same with the size of the whole: nothing is told of units that are not there.
        EXPECT_EQ(Audio(AudioEntry("iamf", Box("iacb", Big(1, 1) + Leb(whole.size()) + units), 0, 16, 0)),
                  "ca=\"IAMF\"")
            << size;
    }
    // Numbers that go on for ever, or are too large; counts beyond the unit.
    EXPECT_EQ(IAMF(kHead + Big(0, 1) + std::string(9, '\x80')), "ca=\"IAMF\"");
    EXPECT_EQ(IAMF(kHead + Big(0, 1) + Leb(UINT64_C(0x100000000)) + kPCM), "ca=\"IAMF\"");
    EXPECT_EQ(IAMF(kHead + kPCM + Unit(1, Leb(1) + Big(0, 1) + Leb(1) + Leb(UINT32_MAX))),
              "ca=\"IAMF\" sf=16000");
    EXPECT_EQ(IAMF(kHead + kPCM + Unit(1, Leb(1) + Big(0, 1) + Leb(1) + Leb(0) + Leb(UINT32_MAX))),
              "ca=\"IAMF\" sf=16000");
    EXPECT_EQ(IAMF(kHead + kPCM +
                   Element({1}, Leb(1) + Leb(1) + Leb(7) + Leb(1) + Big(0, 1) + Leb(960) + Leb(0) +
                                    Leb(UINT32_MAX))),
              "ca=\"IAMF\" sf=16000");
}

// ---- AMR ----

TEST(ISOAudioBoxes, RateOfAMRIsThatOfItsFrameType) {
    struct Case {
        std::uint64_t mBytes; ///< of a hundred frames
        bool mfWide;
        std::uint32_t mRate;
    };
    const std::vector<Case> cases = {
        {1300, false, 4750},  {1400, false, 5150}, {1600, false, 5900},  {1800, false, 6700},
        {2000, false, 7400},  {2100, false, 7950}, {2700, false, 10200}, {3200, false, 12200},
        {1800, true, 6600},   {2400, true, 8850},  {3300, true, 12650},  {3700, true, 14250},
        {4100, true, 15850},  {4700, true, 18250}, {5100, true, 19850},  {5900, true, 23050},
        {6100, true, 23850},  {1, false, 4750},    {1301, false, 5150},  {1399, false, 5150},
        {2701, false, 12200}, {3201, false, 0},    {6101, true, 0},      {0, false, 0},
        {UINT64_MAX, true, 0}};
    for (const Case& one : cases) {
        EXPECT_EQ(AMRFrames_BitRate(one.mBytes, 100, one.mfWide), one.mRate) << one.mBytes << one.mfWide;
    }
    EXPECT_EQ(AMRFrames_BitRate(100, 0, false), 0U);
}

TEST(ISOAudioBoxes, AMRIsJudgedByItsFramesAndNotByItsBytes) {
    const auto amr = [](const char* aFormat, unsigned aFrames, std::uint32_t aCount, std::uint32_t aSize) {
        const std::string box =
            Box("damr", "made" + Big(0, 1) + Big(0x81FF, 2) + Big(0, 1) + Big(aFrames, 1));
        return Parsed(Constant(AudioEntry(aFormat, box), aCount, aSize, "3gp4"));
    };
    const std::string narrow = amr("samr", 1, 50, 32); // 12800 bits of the file
    EXPECT_EQ(Values(narrow, {"mt", "ca", "ar", "ea"}), "mt=\"audio/3gpp\" ca=\"AMR\" ar=12200");
    EXPECT_EQ(ValueOf(narrow, "dl").substr(0, 21), "\"DLNA.ORG_PN=AMR_3GPP");
    EXPECT_EQ(ValueOf(amr("samr", 10, 5, 320), "ar"), "12200"); // ten frames a sample
    EXPECT_EQ(ValueOf(amr("samr", 0, 50, 32), "ar"), "12200");  // not told: one
    EXPECT_EQ(ValueOf(amr("sawb", 1, 50, 59), "ar"), "23050");
    EXPECT_EQ(ValueOf(amr("sawb", 1, 50, 62), "ar"), "24800"); // larger than any: as it is
    EXPECT_EQ(ValueOf(amr("samr", 1, 50, 33), "ar"), "13200");
    // Without the box there is one frame, and of varying frames the mean counts: 14 and 20 bytes.
    Track track;
    track.mEntry = AudioEntry("samr", "");
    track.mSizes = {14, 20};
    EXPECT_EQ(ValueOf(Parsed(File({track})), "ar"), "6700");
    // What an entry states as its rate counts the bytes of the file as well.
    const std::string stated =
        AudioEntry("samr", Box("btrt", Big(0, 4) + Big(13000, 4) + Big(12800, 4)), 1, 16, 8000);
    const std::string record = Parsed(Constant(stated, 50, 32, "3gp4"));
    EXPECT_EQ(Values(record, {"ar", "ma"}), "ar=12200");
    EXPECT_EQ(ValueOf(record, "dl"), ValueOf(narrow, "dl"));
    // After the movie the same.
    Track fragmented = EmptyTrack();
    fragmented.mEntry = track.mEntry;
    const std::string run =
        Box("moof", Box("traf", FullBox("tfhd", Big(1, 4)) + FullBox("trun", Big(50, 4))));
    EXPECT_EQ(ValueOf(Parsed(FileType("3gp6") + Movie({fragmented}, Extends("", 20, 32)) + run), "ar"),
              "12200");
}

// ---- packets of QuickTime ----

TEST(ISOAudioBoxes, ConstantPacketsTellTheirRateAndTheirTableDoesNot) {
    const auto rate = [](const std::string& anEntry, std::uint32_t aSize = 1) {
        return ValueOf(Parsed(Constant(anEntry, 44100, aSize)), "ar");
    };
    // 370 bytes for 4096 samples; the table has a byte for each of these.
    EXPECT_EQ(rate(AudioEntry1("QDM2", "", 0, 4096, 370)), std::to_string(UINT64_C(370) * 8 * 44100 / 4096));
    EXPECT_EQ(rate(AudioEntry1("QDM2", "", 0xFFFF, 4096, 370)), "31869");
    // Where packets vary, and where none are told, the table is what there is.
    EXPECT_EQ(rate(AudioEntry1("QDM2", "", 0xFFFE, 4096, 370)), "352800");
    EXPECT_EQ(rate(AudioEntry1("QDM2", "", 0, 4096, 0)), "352800");
    EXPECT_EQ(rate(AudioEntry1("QDM2", "", 0, 0, 370)), "352800");
    // Sizes that are told one by one are those of packets.
    Track track;
    track.mEntry = AudioEntry1("QDM2", "", 0, 4096, 370);
    EXPECT_EQ(ValueOf(Parsed(File({track})), "ar"), "8000");
    // A rate that the stream states goes before.
    EXPECT_EQ(rate(AudioEntry1("mp4a", Box("wave", ESDS(0x40, kAACConfig, 0, 64000)), 0, 1024, 371)),
              "64000");
}

TEST(ISOAudioBoxes, CodecsOfOnePacketHaveItWhereTheEntryDoesNotTell) {
    const auto rate = [](const char* aFormat, unsigned aChannels) {
        return ValueOf(Parsed(Constant(AudioEntry(aFormat, "", aChannels), 44100, 1)), "ar");
    };
    EXPECT_EQ(rate("ulaw", 1), "352800");
    EXPECT_EQ(rate("ulaw", 2), "705600");
    EXPECT_EQ(rate("alaw", 2), "705600");
    EXPECT_EQ(rate("ima4", 2), std::to_string(2 * 34 * 8 * 44100 / 64));
    EXPECT_EQ(rate("MAC3", 1), std::to_string(2 * 8 * 44100 / 6));
    EXPECT_EQ(rate("MAC6", 1), std::to_string(8 * 44100 / 6));
    EXPECT_EQ(ValueOf(Parsed(Constant(AudioEntry1("ima4", "", 0, 64, 68), 44100, 1)), "ar"),
              std::to_string(68 * 8 * 44100 / 64));
}
