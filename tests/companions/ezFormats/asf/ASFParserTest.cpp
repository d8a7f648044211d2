#include "ezFormats/asf/ASFParser.h"

#include "companions/ezFormats/ChunkBytes.h"
#include "companions/ezFormats/FormatFiles.h"

#include "support/AsfBytes.h"
#include "support/Samples.h"

#include <gtest/gtest.h>

using namespace asf;
using namespace std::string_literals;

namespace {

constexpr std::uint32_t kPacketSize = 1000;
constexpr std::uint64_t kSecond = 10000000; // 100 ns

const std::string kJpeg = "\xFF\xD8\xFF\xE0"s + std::string(16, 'j');

std::string Values(const std::string& aBytes, const std::vector<const char*>& aKeys,
                   const Delivery& aDelivery = Delivery()) {
    return chunks::Values<ASFParser>(aBytes, aKeys, aDelivery);
}
std::string Refusal(const std::string& aBytes) {
    return pictures::Refusal<ASFParser>(aBytes);
}

/// Packets of one stream, one every 100 ms from a time on.
std::string Packets(std::uint32_t aCount, std::uint32_t aFrom = 0, unsigned aStream = 1) {
    std::string packets;
    for (std::uint32_t i = 0; i < aCount; ++i) {
        packets += Packet(kPacketSize, aStream, aFrom + i * 100);
    }
    return packets;
}

/// So many of those, of a tenth of a second, after a preroll of three seconds.
File FileOf(std::uint32_t aCount) {
    return {aCount, aCount * kSecond / 10 + 3 * kSecond, 3000, 2, kPacketSize, 80000, 0, 0};
}

/// A second of sound, and more objects after those that each file has.
std::string Asf(const std::string& anObjects, const File& aFile = FileOf(10)) {
    return Header(aFile.Bytes() + anObjects) + Data(Packets(10), 10);
}
std::string Song(const std::string& anObjects = "", const Wave& aFormat = Wave()) {
    return Asf(Sound(aFormat) + anObjects);
}
/// The same sound with File Properties that say something else, and those packets.
std::string Timed(const File& aFile, const std::string& aPackets, const std::string& aRest = "") {
    return Header(aFile.Bytes() + Sound(Wave())) + Data(aPackets, aFile.mPackets) + aRest;
}
std::string Length(const std::string& aBytes, const Delivery& aDelivery = Delivery()) {
    return Values(aBytes, {"dm", "md"}, aDelivery);
}

std::vector<std::string> UsualFiles() {
    const std::string texts = Description(Utf16("Title"), Utf16("Artist")) +
                              ExtendedContent({Text("WM/AlbumTitle", "Album"), PictureAttribute(3, kJpeg)});
    File live = FileOf(4);
    live.mFlags = 9;
    live.mPlay = 0;
    return {Song(texts),
            Header(FileOf(4).Bytes() +
                   HeaderExtension(ExtendedStream(1, 64000, Sound(Wave())) +
                                   Library({Text("WM/Composer", "Composer")})) +
                   BitRates({{1, 65000}})) +
                Data(Packets(4), 4),
            Header(FileOf(4).Bytes() + Sound(Wave()) + Video()) + Data(Packets(4), 4),
            Header(FileOf(4).Bytes() + Sound(Wave()) + Video("MP4S") +
                   HeaderExtension(Languages({"en"}) + ExtendedStream(2, 64000, "", {}, {}, 400000))) +
                Data(PacketOf(kPacketSize, {{2, 0, 0, "\0\0\1\xB0\3\0\0\1\xB5"s}}) + Packets(3), 4),
            Header(FileOf(4).Bytes() + Sound(Wave()) +
                   Binary(kBinaryVideo, kFormMPEG2Video, std::string(140, '\1'), 2, kSubtypeMPEG2Video)) +
                Data(Packets(4), 4),
            Timed(live, Packets(4, 3000)),
            Song(Object(kContentEncryption, "key"))};
}

std::vector<std::string> CostlyFiles() {
    std::vector<Attribute> pictures;
    std::string objects;
    for (unsigned i = 0; i < 100; ++i) {
        pictures.push_back(PictureAttribute(0, std::string(20000, 'p')));
        objects += Object(kPadding, std::string(20000, 'p'));
    }
    File live = FileOf(300);
    live.mFlags = 1;
    return {Song(ExtendedContent(pictures) + Library(pictures)),
            Song(objects),
            Asf(objects),
            Asf(objects + Sound(Wave())),
            Song(Video("MP4S") + objects),
            Song(ExtendedContent(pictures) + Library(pictures) + Video("H264")),
            Timed(live, std::string(std::size_t{300} * kPacketSize, '\0')),
            Timed(live, std::string(std::size_t{300} * kPacketSize, '\1'))};
}

const FormatFiles kFiles("wma", {16, 1U << 20}, {"mt"}, UsualFiles, CostlyFiles);

} // namespace

TEST(ASFParser, RecordSaysWhatTheHeaderSays) {
    EXPECT_EQ(pictures::Parsed<ASFParser>(ReadSample("music/paper-lantern.wma")),
              "ac=2\n"
              "ar=32000\n"
              "ca=\"WMA2\"\n"
              "cn=\"item.audioItem\"\n"
              "ct=\"ASF\"\n"
              "da=\"2001\"\n"
              "dl=\"DLNA.ORG_PN=WMABASE;DLNA.ORG_OP=01;DLNA.ORG_FLAGS=01500000000000000000000000000000\"\n"
              "dm=6222\n"
              "du=6\n"
              "md=\"header\"\n"
              "mt=\"audio/x-ms-wma\"\n"
              "sf=44100\n"
              "ta=1\n"
              "title=\"Paper Lantern\"\n"
              "creator=\"The Test Tones\"\n"
              "genre=\"Jazz\"\n"
              "album=\"Half a Second\"\n");
}

// ---- length ----

TEST(ASFParser, PrerollInMillisecondsIsTakenOffThePlayDuration) {
    File file = FileOf(40);
    file.mPlay = 71110000;
    file.mPreroll = 3100;
    file.mSend = 50000000; // how long sending takes is another matter
    EXPECT_EQ(Length(Timed(file, Packets(40))), "4011|\"header\"");
    file.mPreroll = 0;
    EXPECT_EQ(Length(Timed(file, Packets(40))), "7111|\"header\"");
    file.mPlay += 9999; // a part of a millisecond
    EXPECT_EQ(Length(Timed(file, Packets(40))), "7111|\"header\"");
}

TEST(ASFParser, LengthOfABroadcastIsThatOfItsLastFrame) {
    File live = FileOf(10);
    live.mFlags = 9;
    EXPECT_EQ(Length(Timed(live, Packets(10, 3000))), "1000|\"last frame\"");
    live.mPlay = 0;
    live.mPackets = UINT32_MAX;
    EXPECT_EQ(Length(Timed(live, Packets(10, 3000))), "1000|\"last frame\"");
    // Sizes are void, too.
    for (const std::uint64_t size :
         {std::uint64_t{0}, std::uint64_t{50}, std::uint64_t{1} << 63, UINT64_MAX}) {
        std::string bytes = Timed(live, Packets(10, 3000));
        const std::string stated = kData + Little(50 + 10 * kPacketSize, 8);
        bytes.replace(bytes.find(stated), stated.size(), kData + Little(size, 8));
        EXPECT_EQ(Length(bytes), "1000|\"last frame\"") << size;
    }
    // A capture that began in the middle; and zeros where it broke off.
    EXPECT_EQ(Length(Timed(live, Packets(10, 9000000))), "1000|\"last frame\"");
    EXPECT_EQ(Length(Timed(live, Packets(10, 3999))), "1999|\"last frame\"");
    EXPECT_EQ(Length(Timed(live, Packets(10, 4000))), "1000|\"last frame\"");
    EXPECT_EQ(Length(Timed(live, Packets(10, 3000) + std::string(99000, '\0'))), "1000|\"last frame\"");
    // What follows the packets is none of them.
    live.mPackets = 10;
    EXPECT_EQ(Length(Timed(live, Packets(10, 3000), Object(kIndex, Packet(2000, 1, 99000)))),
              "1000|\"last frame\"");
}

TEST(ASFParser, StatedLengthThatCannotBeIsVoidAsThatOfABroadcast) {
    struct Case {
        const char* mWhat;
        std::uint64_t mPlay;
        std::uint64_t mPreroll;
    };
    for (const Case& test : std::vector<Case>{{"not stated", 0, 3000},
                                              {"less than the preroll", 2 * kSecond, 3000},
                                              {"as long as the preroll", 3 * kSecond, 3000},
                                              {"longer than a year", 400 * 86400 * kSecond, 3000},
                                              {"all ones", UINT64_MAX, 3000},
                                              {"more than the bytes can hold", 3 * kSecond + 10000, 3000},
                                              {"less than the bytes can hold", 9999 * kSecond, 3000}}) {
        File file = FileOf(10);
        file.mPlay = test.mPlay;
        file.mPreroll = test.mPreroll;
        const std::string length = Length(Timed(file, Packets(100, 3000)));
        const bool fShort = test.mPlay == 3 * kSecond + 10000; // ten packets in a millisecond: 80 Mbit/s
        EXPECT_EQ(length, fShort ? "1|\"header\"" : "10000|\"last frame\"") << test.mWhat;
    }
    File file = FileOf(10);
    file.mPreroll = UINT64_MAX;
    EXPECT_EQ(Length(Timed(file, Packets(10, 3000))), "625|\"estimate: size and stated rate\"")
        << "nothing is after such a preroll";
}

TEST(ASFParser, WhereNoPacketTellsTheLengthIsEstimatedByTheStatedRates) {
    File live = FileOf(10);
    live.mFlags = 1;
    live.mMaxBitRate = 80000;
    const std::string zeros(std::size_t{300} * kPacketSize, '\0');
    const std::string estimate = "|\"estimate: size and stated rate\"";
    // By the sound's 128000; of sound that states none by the most that the file states.
    EXPECT_EQ(Length(Timed(live, zeros)), "18750" + estimate);
    Wave silent;
    silent.mAverage = 16; // as writers leave it
    const auto file = [&](const std::string& aSound) {
        return Header(live.Bytes() + aSound) + Data(zeros, 300);
    };
    EXPECT_EQ(Length(file(Sound(silent))), "30000" + estimate);
    EXPECT_EQ(Length(file(Sound(silent) + BitRates({{1, 40000}}))), "60000" + estimate);
    EXPECT_EQ(Length(file(Sound(silent) + HeaderExtension(ExtendedStream(1, 50000)))), "48000" + estimate);
    live.mMaxBitRate = UINT32_MAX;
    EXPECT_EQ(Length(file(Sound(silent))), "|");
    // Packets that are not of one size cannot be told apart.
    live.mMaxPacketSize = kPacketSize + 1;
    EXPECT_EQ(Length(Timed(live, Packets(16, 3000))), "1000" + estimate);
    live.mMaxPacketSize = 0;
    live.mPacketSize = 0;
    EXPECT_EQ(Length(Timed(live, Packets(16, 3000))), "1000" + estimate);
    EXPECT_EQ(Length(Header(live.Bytes() + Sound(Wave()))), "|") << "no packets at all";
}

TEST(ASFParser, PacketsOfEveryFormTellTheirTimes) {
    const auto filled = [](std::string aPacket) {
        aPacket.resize(kPacketSize, '\0');
        return aPacket;
    };
    const std::string timed = Little(50) + Little(3900); // bytes of the media object, and its time
    const std::string sent = Little(0) + Little(0, 2);
    const std::vector<std::pair<const char*, std::string>> packets = {
        {"without correction", "\0\x5D"s + sent + "\x81\0"s + Little(0) + "\x08" + timed},
        {"of numbers of two bytes", "\x10\xAA"s + Little(0, 2) + sent + "\x81\0\0\0\0\x08\0"s + timed},
        {"of numbers of four bytes", "\x7E\xFF"s + Little(kPacketSize) + Little(7) + Little(0) + sent +
                                         "\x81"s + Little(0) + Little(0) + Little(8) + timed},
        {"of several payloads", "\x01\x5D"s + sent + "\x82" + "\x82\0"s + Little(0) + "\x08" + timed +
                                    Little(3, 2) + "abc" + "\x81\0"s + Little(0) + "\x08" + timed +
                                    Little(3, 2) + "abc"},
        {"of a part of a frame", "\x01\x5D"s + sent + "\x82" + "\x81\0"s + Little(0) + "\x08" + timed +
                                     Little(3, 2) + "abc" + "\x81\0"s + Little(3) + "\0"s + Little(2, 2) +
                                     "ab"},
        {"of several frames in one, 100 ms apart",
         "\x01\x5D"s + sent + "\x81" + "\x81\0"s + Little(3700) + "\x01\x64" + Little(6, 2) + "\1a\1b\1c"},
        {"that ends before those of all do",
         "\x20\x5D\x17"s + sent + "\x81\0"s + Little(3700) + "\x01\x64" + "\1a\1b\1c"}};
    File live = FileOf(2);
    live.mFlags = 1;
    for (const auto& [what, packet] : packets) {
        EXPECT_EQ(Length(Timed(live, Packet(kPacketSize, 1, 3800) + filled(packet))), "1000|\"last frame\"")
            << what;
    }
    // The times of commands are none of the sound's, and neither is what does not end in its packet.
    live.mPackets = 3;
    EXPECT_EQ(Length(Timed(live, Packet(kPacketSize, 1, 3800) + Packet(kPacketSize, 1, 3900) +
                                     Packet(kPacketSize, 3, 9000))),
              "1000|\"last frame\"");
    EXPECT_EQ(Length(Timed(live, Packet(kPacketSize, 1, 3800) + Packet(kPacketSize, 1, 3900) +
                                     filled("\x01\x5D"s + sent + "\x81" + "\x81\0"s + Little(0) + "\x08" +
                                            Little(50) + Little(9000) + Little(9999, 2)))),
              "1000|\"last frame\"");
}

// ---- sound ----

TEST(ASFParser, CodecIsThatOfTheTagWithItsRates) {
    struct Case {
        Wave mFormat;
        const char* mFacts; ///< codec, channels, rate, bits, bit rate, mean, most
    };
    const std::string wmaPro = "\x18\0\x3F\0\0\0"s + std::string(12, '\0');
    for (const Case& test : std::vector<Case>{
             {{0x160, 1, 22050, 2500, 93, 16, ""}, "\"WMA1\"|1|22050||20000||"},
             {{0x161, 2, 44100, 16000, 743, 16, ""}, "\"WMA2\"|2|44100||128000||"},
             {{0x162, 6, 96000, 55000, 9000, 24, wmaPro}, "\"WMA-Pro\"|6|96000|24|440000||"},
             {{0x163, 2, 44100, 144000, 13375, 16, "\x10\0"s},
              "\"WMA-lossless\"|2|44100|16|4294967295|80000|1152000"},
             {{0x163, 2, 44100, 144000, 13375, 24, ""},
              "\"WMA-lossless\"|2|44100|24|4294967295|80000|1152000"},
             {{0x00A, 1, 8000, 1000, 185, 16, ""}, "\"WMA-voice\"|1|8000||8000||"},
             {{0x042, 1, 8000, 666, 20, 0, ""}, "\"G723.1\"|1|8000||5328||"},
             {{0x055, 2, 44100, 16000, 1, 0, ""}, "\"MP3\"|2|44100||4294967295|80000|"},
             {{0x0FF, 2, 44100, 16000, 1, 0, ""}, "\"AAC\"|2|44100||4294967295|80000|"},
             {{0x161, 1, 8000, 16, 1, 16, ""}, "\"WMA2\"|1|8000||4294967295|80000|"},
             {{0x161, 0, 0, 0, 0, 0, ""}, "\"WMA2\"||||4294967295||"},
             {{0xBEEF, 2, 44100, 16000, 1, 0, ""}, "\"WAVE-BEEF\"|2|44100||4294967295|80000|"}}) {
        EXPECT_EQ(Values(Song("", test.mFormat), {"ca", "ac", "sf", "bs", "ar", "ea", "ma"}), test.mFacts);
    }
    EXPECT_EQ(Values(Song("", {1, 2, 44100, 176400, 4, 16, ""}), {"ca", "ar", "br", "bs"}),
              "\"LPCM\"|44100|1411200|16");
}

TEST(ASFParser, StatedMeanOfAVaryingRateIsItsPeak) {
    const Attribute varies = {"IsVBR", Little(1), 2};
    const Attribute constant = {"IsVBR", Little(0), 2};
    const auto rates = [](const std::string& anObjects) {
        return Values(Song(anObjects), {"ar", "ea", "ma"});
    };
    EXPECT_EQ(rates(ExtendedContent({varies})), "4294967295|80000|128000");
    EXPECT_EQ(rates(ExtendedContent({constant})), "128000||");
    EXPECT_EQ(rates(HeaderExtension(Library({{"IsVBR", Little(1, 2), 2, 1}}, kMetadata))),
              "4294967295|80000|128000");
    EXPECT_EQ(rates(ExtendedContent({varies}) + HeaderExtension(ExtendedStream(1, 200000))),
              "4294967295|80000|200000");
    // What is said of the sound itself counts first, and what is said of another stream not at all.
    const auto saidOf = [](unsigned aStream, std::uint64_t aNumber) {
        return HeaderExtension(Library({{"IsVBR", Little(aNumber, 2), 2, aStream}}, kMetadata));
    };
    EXPECT_EQ(rates(ExtendedContent({varies}) + saidOf(1, 0)), "128000||");
    EXPECT_EQ(rates(ExtendedContent({constant}) + saidOf(1, 1)), "4294967295|80000|128000");
    EXPECT_EQ(rates(saidOf(2, 1)), "128000||");
    EXPECT_EQ(rates(ExtendedContent({varies}) + saidOf(2, 0)), "4294967295|80000|128000");
}

TEST(ASFParser, LargestOfSeveralStreamsCounts) {
    const Wave low = {0x161, 1, 8000, 1000, 640, 16, ""};
    const Wave high = {0x161, 2, 44100, 8000, 743, 16, ""};
    const std::string low1 = Sound(low, 1);
    const std::string high2 = Sound(high, 2);
    const std::string facts = "2|2|44100|64000";
    EXPECT_EQ(Values(Asf(low1 + high2), {"ta", "ac", "sf", "ar"}), facts);
    EXPECT_EQ(Values(Asf(high2 + low1), {"ta", "ac", "sf", "ar"}), facts);
    // By what is told of them elsewhere, even before they are.
    EXPECT_EQ(Values(Asf(BitRates({{1, 9000}, {2, 10000}}) + low1 + high2), {"ac"}), "2");
    EXPECT_EQ(Values(Asf(BitRates({{1, 99000}, {2, 10000}}) + low1 + high2), {"ac"}), "1");
    // The mean of one of several is as it is stated.
    const std::string varies = ExtendedContent({{"IsVBR", Little(1), 2}});
    EXPECT_EQ(Values(Asf(low1 + high2 + varies + BitRates({{2, 60000}})), {"ea", "ma"}), "60000|64000");
    EXPECT_EQ(Values(Asf(low1 + high2 + varies), {"ea", "ma"}), "|64000");
    // Of two of one number the first counts, and others are no sound.
    EXPECT_EQ(Values(Asf(low1 + Sound(high, 1)), {"ta", "ac"}), "1|1");
    EXPECT_EQ(Values(Asf(low1 + Stream(3, kCommandMedia, "")), {"ta", "ac"}), "1|1");
}

TEST(ASFParser, StreamMayBeDescribedInTheExtensionAlone) {
    const std::string first = ExtendedStream(1, 10000, Sound({0x161, 1, 16000, 1250, 400, 16, ""}, 1),
                                             {Utf16("A name"), "", Utf16("Another")}, {"", "data"});
    const std::string second = Sound({0x161, 1, 8000, 1000, 640, 16, ""}, 2);
    EXPECT_EQ(Values(Asf(HeaderExtension(first) + second), {"ta", "sf", "ar"}), "2|16000|10000");
    EXPECT_EQ(Values(Asf(HeaderExtension(first)), {"ta", "sf"}), "1|16000");
    EXPECT_EQ(Refusal(Asf(HeaderExtension(HeaderExtension(first)))),
              "ASFParser: malformed: ends before the streams")
        << "an extension within one is none";
}

TEST(ASFParser, EncryptedSoundIsNamedAndKeepsNoProfile) {
    const std::vector<const char*> keys = {"ca", "dl", "dm"};
    const std::string encrypted = "\"encrypted:WMA2\"|\"DLNA.ORG_OP=01\"|1000";
    for (const std::string& kind : {kContentEncryption, kExtendedEncryption, kAdvancedEncryption}) {
        EXPECT_EQ(Values(Song(Object(kind, "whose")), keys), encrypted);
    }
    EXPECT_EQ(Values(Asf(Sound(Wave(), 1, 0x8000)), keys), encrypted);
    EXPECT_EQ(Values(Song(Object(kDigitalSignature, "whose")), {"ca"}), "\"WMA2\"") << "looks like a key";
}

TEST(ASFParser, ProfileIsThatOfTheCodecWithinItsLimits) {
    struct Case {
        Wave mFormat;
        const char* mProfile;
    };
    // A rate may lie a thousandth above a bound, which stands beside the last that does.
    for (const Case& test : std::vector<Case>{{{0x160, 2, 44100, 16000, 743, 16, ""}, "WMABASE"},
                                              {{0x161, 2, 48000, 24148, 743, 16, ""}, "WMABASE"}, // 192999
                                              {{0x161, 2, 48000, 24149, 743, 16, ""}, "WMAFULL"},
                                              {{0x161, 2, 48000, 48173, 743, 16, ""}, "WMAFULL"}, // 385000
                                              {{0x161, 2, 48000, 48174, 743, 16, ""}, ""},
                                              {{0x161, 2, 96000, 16000, 743, 16, ""}, ""}, // not Pro by that
                                              {{0x161, 3, 48000, 16000, 743, 16, ""}, ""},
                                              {{0x162, 9, 96000, 16000, 743, 24, ""}, ""},
                                              {{0x162, 2, 44100, 16000, 743, 16, ""}, "WMAPRO"},
                                              {{0x162, 8, 96000, 187687, 743, 24, ""}, "WMAPRO"}, // 1500000
                                              {{0x162, 8, 96000, 187688, 743, 24, ""}, ""},
                                              {{0x163, 2, 44100, 144000, 743, 16, ""}, "WMALSL"},
                                              {{0x163, 2, 44100, 144000, 743, 24, ""}, ""},
                                              {{0x163, 6, 48000, 288000, 743, 16, ""}, "WMALSL_MULT5"},
                                              {{0x163, 8, 48000, 288000, 743, 16, ""}, ""},
                                              {{0x00A, 1, 8000, 1000, 185, 16, ""}, ""},
                                              {{0x055, 2, 44100, 16000, 1, 0, ""}, ""}}) {
        const std::string field = Values(Song("", test.mFormat), {"dl"});
        const std::string start = "\"DLNA.ORG_PN=";
        const std::string profile =
            field.rfind(start, 0) == 0 ? field.substr(start.size(), field.find(';') - start.size()) : "";
        EXPECT_EQ(profile, test.mProfile) << std::hex << test.mFormat.mTag << " " << std::dec
                                          << test.mFormat.mRate << " " << test.mFormat.mAverage;
    }
}

// ---- video ----

TEST(ASFParser, FileWithVideoIsAFilm) {
    const std::vector<const char*> keys = {"mt", "cn", "vt", "dm", "ca", "dl"};
    const std::string film = "\"video/x-ms-wmv\"|\"item.videoItem\"|1|1000|";
    EXPECT_EQ(Values(Song(Video()), keys), film + "\"WMA2\"|\"DLNA.ORG_OP=01\"");
    EXPECT_EQ(Values(Asf(Video()), keys), film + "|\"DLNA.ORG_OP=01\"");
    // The rate of the whole is that of all its bytes, whatever the header has for the most.
    File unstated = FileOf(10);
    const std::string bytes = Asf(Video(), unstated);
    unstated.mMaxBitRate = UINT32_MAX;
    const std::string whole = std::to_string(bytes.size() * 8);
    EXPECT_EQ(Values(Asf(Video(), unstated), {"br", "mb"}), whole + "|" + whole);
    // Recorders of television have their own form of streams, which need not hold pictures.
    const std::string sound = Binary(kBinarySound, kFormWave, Wave().Bytes(), 1);
    EXPECT_EQ(Values(Asf(sound), {"mt", "ca"}), "\"audio/x-ms-wma\"|\"WMA2\"");
}

// ---- texts ----

TEST(ASFParser, TextsAreThoseOfTheDescriptionThenOfTheAttributes) {
    const std::vector<const char*> keys = {"title", "creator", "album", "genre", "aa", "co",
                                           "da",    "tn",      "dn",    "cp",    "la"};
    const std::vector<Attribute> attributes = {
        Text("WM/AlbumTitle", "Album"), Text("WM/Genre", "Rock"),    Text("WM/AlbumArtist", "Band"),
        Text("WM/Composer", "Writer"),  Text("WM/Year", "1999"),     Text("WM/TrackNumber", "3/12"),
        Text("WM/Track", "7"),          Text("WM/PartOfSet", "2/2"), {"WM/IsCompilation", Little(1), 2},
        Text("WM/Language", "de"),      Text("Title", "Another"),    Text("WM/Mood", "none")};
    const std::string expected =
        "\"Title\"|\"Artist\"|\"Album\"|\"Rock\"|\"Band\"|\"Writer\"|\"1999\"|3|2|1|\"de\"";
    const std::string description = Description(Utf16("Title"), Utf16("Artist"));
    EXPECT_EQ(Values(Song(description + ExtendedContent(attributes)), keys), expected);
    EXPECT_EQ(Values(Song(ExtendedContent(attributes) + description), keys), expected);
    EXPECT_EQ(Values(Song(HeaderExtension(Library(attributes)) + description), keys), expected);
    // Further values stand in the library, which comes first in the file.
    EXPECT_EQ(Values(Song(HeaderExtension(Library({Text("WM/Composer", "Two"), Text("Author", "C")})) +
                          ExtendedContent({Text("WM/Composer", "One"), Text("Author", "B")}) +
                          Description("", Utf16("A"))),
                     {"co", "creator", "as"}),
              "\"One, Two\"|\"A, B, C\"|\"A\\nB\\nC\"");
}

TEST(ASFParser, TextsNeedNoEndAndMayBeEmpty) {
    const auto title = [](const std::string& aTitle) {
        return Values(Song(Description(aTitle, "") + ExtendedContent({Text("Title", "Second")})), {"title"});
    };
    EXPECT_EQ(title(Utf16("Title", false)), "\"Title\"");
    EXPECT_EQ(title(Utf16("Title") + Utf16("rest")), "\"Title\"");
    EXPECT_EQ(title(Utf16("Title", false) + "x"), "\"Title\"") << "half a letter";
    for (const std::size_t count : {127U, 128U, 129U, 1024U}) {
        const std::string letters(count, 't');
        EXPECT_EQ(title(Utf16(letters, false)), "\"" + letters + "\"");
    }
    EXPECT_EQ(title(""), "\"Second\"");
    EXPECT_EQ(title("\0\0"s), "\"Second\"");
    EXPECT_EQ(title("\0"s), "\"Second\"");
    EXPECT_EQ(title("\xDF\0\x42\x30\x3D\xD8\xB5\xDF"s), "\"\xC3\x9F\xE3\x81\x82\xF0\x9F\x9E\xB5\"");
    // A description that ends early, and one that is longer than its object.
    EXPECT_EQ(Values(Song(Object(kContentDescription, "\x10\0"s)), {"title", "ca"}), "|\"WMA2\"");
    EXPECT_EQ(Values(Song(Object(kContentDescription, Little(6, 2) + Little(900, 2) + Little(0, 6) +
                                                          Utf16("abc", false) + "rest")),
                     {"title", "creator"}),
              "\"abc\"|");
}

TEST(ASFParser, ValuesOfNumbersAreReadInEverySize) {
    const auto track = [](const Attribute& anAttribute) {
        return Values(Song(ExtendedContent({anAttribute})), {"tn"});
    };
    EXPECT_EQ(track({"WM/TrackNumber", Little(7), 3}), "7");
    EXPECT_EQ(track({"WM/TrackNumber", Little(7, 8), 4}), "7");
    EXPECT_EQ(track({"WM/TrackNumber", Little(7, 2), 5}), "7");
    EXPECT_EQ(track({"WM/TrackNumber", Little(7, 9), 4}), "");
    EXPECT_EQ(track({"WM/TrackNumber", Utf16("7"), 1}), "") << "bytes are no number";
    EXPECT_EQ(track({"WM/TrackNumber", Little(7, 16), 6}), "");
    // The older name counts from 0.
    EXPECT_EQ(track({"WM/Track", Little(0), 3}), "1");
    EXPECT_EQ(track(Text("WM/Track", "0")), "1");
    EXPECT_EQ(track(Text("WM/Track", "11")), "12");
    EXPECT_EQ(track(Text("WM/Track", "A1")), "");
    EXPECT_EQ(Values(Song(ExtendedContent({{"WM/IsCompilation", Little(0), 2}})), {"cp"}), "");
    EXPECT_EQ(Values(Song(HeaderExtension(Library({{"WM/IsCompilation", Little(1, 2), 2}}))), {"cp"}), "1");
}

TEST(ASFParser, NamesLongerThanAnyAreNoneOfThem) {
    const auto named = [](const std::string& aName) {
        return Values(Song(ExtendedContent({Text(aName, "x"), Text("Title", "Title")})), {"title"});
    };
    EXPECT_EQ(named(std::string(63, 'n')), "\"Title\"");
    EXPECT_EQ(named(std::string(64, 'n')), "\"Title\"");
    EXPECT_EQ(named(std::string(9000, 'n')), "\"Title\"");
    EXPECT_EQ(named("Title\x7F"), "\"Title\"") << "no letter";
    EXPECT_EQ(named("Title"), "\"x\"");
    // The end of the list is where one does not end, however many are left.
    std::string list = ExtendedContent({Text("WM/AlbumTitle", "Album"), Text("Title", "Title")});
    list.replace(24, 2, "\xFF\xFF");
    EXPECT_EQ(Values(Song(list), {"album", "title", "ca"}), "\"Album\"|\"Title\"|\"WMA2\"");
}

// ---- covers ----

TEST(ASFParser, CoverIsTheFrontOneWhereverItIs) {
    const std::string png = "\x89PNG\r\n\x1A\n" + std::string(8, 'p');
    const std::vector<const char*> keys = {"cm", "cs"};
    const std::string front = "\"image/jpeg\"|20";
    const Attribute other = {"WM/Picture", Picture(0, png, "image/png", "of the band"), 1};
    EXPECT_EQ(Values(Song(ExtendedContent({PictureAttribute(3, kJpeg)})), keys), front);
    EXPECT_EQ(Values(Song(HeaderExtension(Library({PictureAttribute(3, kJpeg)}))), keys), front);
    EXPECT_EQ(
        Values(Song(HeaderExtension(Library({other})) + ExtendedContent({PictureAttribute(3, kJpeg)})), keys),
        front);
    EXPECT_EQ(
        Values(Song(ExtendedContent({other}) + HeaderExtension(Library({PictureAttribute(3, kJpeg)}))), keys),
        front);
    EXPECT_EQ(Values(Song(ExtendedContent({other})), keys), "\"image/png\"|16");
    EXPECT_EQ(Values(Song(ExtendedContent({PictureAttribute(1, kJpeg)})), keys), "|") << "an icon";
    EXPECT_EQ(Values(Song(ExtendedContent({{"WM/Picture", Picture(3, kJpeg, ""), 1}})), keys), front)
        << "told by its bytes";
    EXPECT_EQ(Values(Song(ExtendedContent({{"WM/Picture", Picture(3, "http://", "-->"), 1}})), keys), "|");
    EXPECT_EQ(Values(Song(ExtendedContent({{"WM/Picture", Picture(3, ""), 1}})), keys), "|");
    std::string cut = Picture(3, kJpeg);
    cut.pop_back();
    EXPECT_EQ(Values(Song(ExtendedContent({{"WM/Picture", cut, 1}})), keys), "|");
    EXPECT_EQ(Values(Song(ExtendedContent({{"WM/Picture", "\3\4\0\0\0no end of units"s, 1}})), keys), "|");
}

TEST(ASFParser, LargePictureIsSteppedOver) {
    const std::string picture = "\xFF\xD8\xFF\xE0"s + std::string(std::size_t{400} << 10, 'j');
    const std::string head = HeaderExtension(Library({PictureAttribute(3, picture)})) + Sound(Wave()) +
                             Description(Utf16("Title"), "");
    AwkwardStream::Costs costs;
    const std::string record = pictures::Parsed<ASFParser>(Asf(head), {}, &costs);
    EXPECT_EQ(pictures::ValueOf(record, "cs"), std::to_string(picture.size()));
    EXPECT_EQ(pictures::ValueOf(record, "title"), "\"Title\"");
    EXPECT_EQ(pictures::ValueOf(record, "dm"), "1000");
    EXPECT_LE(costs.mReads, 2U);
    EXPECT_LE(costs.mBytes, 16U << 10);
}

TEST(ASFParser, FourPicturesOfAListAreLookedAt) {
    const auto cover = [](std::size_t aBefore) {
        std::vector<Attribute> list(aBefore, PictureAttribute(4, kJpeg + "back"));
        list.push_back(PictureAttribute(3, kJpeg));
        return Values(Song(ExtendedContent(list)), {"cs"});
    };
    EXPECT_EQ(cover(kASF_MaxPictures - 1), "20");
    EXPECT_EQ(cover(kASF_MaxPictures), "24");
}

// ---- what is wrong ----

TEST(ASFParser, WhatHasNoStreamIsRefused) {
    EXPECT_EQ(Refusal("RIFF....WAVE"), "ASFParser: malformed: begins with 52494646");
    EXPECT_EQ(Refusal(kHeader), "ASFParser: malformed: ends before the objects of the header");
    EXPECT_EQ(Refusal(kHeader + Little(23, 8) + std::string(99, 'x')),
              "ASFParser: malformed: ends before the objects of the header");
    EXPECT_EQ(Refusal(Asf("")), "ASFParser: malformed: ends before the streams");
    EXPECT_EQ(Refusal(Asf(Stream(1, kCommandMedia, ""))),
              "ASFParser: unsupported: no stream of sound or video");
    EXPECT_EQ(Refusal(Asf(Stream(1, kAudioMedia, "short"))),
              "ASFParser: unsupported: no stream of sound or video");
    // An object that has not even the size of its head ends the list.
    EXPECT_EQ(Refusal(Asf(kExtendedContent + Little(0, 8) + Sound(Wave()))),
              "ASFParser: malformed: ends before the streams");
    EXPECT_EQ(Values(Song(kPadding + Little(0, 8)), {"ca", "dm"}), "\"WMA2\"|1000");
}

TEST(ASFParser, SizesThatLieAreHeldAgainstWhatTheyLieIn) {
    for (const std::uint64_t size : {std::uint64_t{1} << 40, UINT64_MAX, UINT64_MAX - 23}) {
        std::string header = Song();
        header.replace(16, 8, Little(size, 8));
        EXPECT_EQ(Values(header, {"ca", "sf"}), "\"WMA2\"|44100") << size;
        std::string stream = Sound(Wave());
        stream.replace(16, 8, Little(size, 8));
        EXPECT_EQ(Values(Asf(stream), {"ca", "dm"}), "\"WMA2\"|1000") << size;
    }
    // A header that was written anew, and the packets where they were: they are not found, nor asked for.
    EXPECT_EQ(Length(Header(FileOf(10).Bytes() + Sound(Wave())) + "rest" + Data(Packets(10), 10)),
              "1000|\"header\"");
}

TEST(ASFParser, SoManyStreamsAreToldApart) {
    const auto count = [](unsigned aCount) {
        std::string streams;
        for (unsigned i = 1; i <= aCount; ++i) {
            streams += Sound(Wave(), i);
        }
        return Values(Asf(streams), {"ta"});
    };
    EXPECT_EQ(count(kASF_MaxStreams), std::to_string(kASF_MaxStreams));
    EXPECT_EQ(count(kASF_MaxStreams + 1), std::to_string(kASF_MaxStreams));
}

TEST(ASFParser, SoManyObjectsAreReadAndNoMore) {
    const auto file = [](std::uint32_t aCount) {
        std::string objects;
        for (std::uint32_t i = 0; i < aCount; ++i) {
            objects += Object(kPadding, "");
        }
        return Header(objects + Sound(Wave()));
    };
    EXPECT_EQ(Values(file(kASF_MaxObjects - 1), {"ca"}), "\"WMA2\"");
    EXPECT_EQ(Refusal(file(kASF_MaxObjects)), "ASFParser: malformed: ends before the streams");
}

TEST(ASFParser, FileOfGigabytesCostsNoMoreThanASmallOne) {
    for (const std::uint32_t count : {100U, 4000000U}) {
        File file = FileOf(count);
        const std::string head =
            Header(file.Bytes() + Sound(Wave())) +
            Data("", 0).replace(16, 8, Little(50 + std::uint64_t{count} * kPacketSize, 8));
        SparseStream stated(head.size() + std::uint64_t{count} * kPacketSize, {{0, head}});
        EXPECT_EQ(chunks::SparseValue<ASFParser>(stated, "dm"), std::to_string(count * 100));
        EXPECT_EQ(stated.mReads, 1U);
        file.mFlags = 1;
        const std::string live = Header(file.Bytes() + Sound(Wave()));
        const std::uint64_t size = head.size() + std::uint64_t{count} * kPacketSize;
        SparseStream stream(size, {{0, live + head.substr(live.size()) + Packets(1, 3000)},
                                   {size - 2 * kPacketSize, Packets(2, 2800 + count * 100)}});
        EXPECT_EQ(chunks::SparseValue<ASFParser>(stream, "dm"), std::to_string(count * 100));
        EXPECT_LE(stream.mReads, 3U);
        EXPECT_LE(stream.mBytes, std::uint64_t{80} << 10);
    }
}
