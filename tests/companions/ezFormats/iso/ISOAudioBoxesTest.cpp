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
