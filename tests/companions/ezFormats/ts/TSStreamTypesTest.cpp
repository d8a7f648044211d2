#include "companions/ezFormats/ts/TSFilms.h"

#include <gtest/gtest.h>

using namespace ts;
using namespace std::string_literals;

namespace {

std::string Layer2() {
    return ReadSample("elementary/slow-clock.mp2").substr(0, 1152);
}
std::string Adts() {
    return ReadSample("formats/5.1.aac").substr(0, 400);
}
std::string Dts() {
    return ReadSample("formats/surround.dts").substr(0, 1100);
}
std::string TrueHD() {
    return ReadSample("formats/truehd.thd").substr(0, 2000);
}
const std::string kLpcm = "\x00\xF0\x31\x40"s + std::string(240, '\0');
const std::string kHDMV = Registration("HDMV");
const std::string kATSC = Registration("GA94");

/// What the record says of the second of two streams: "codec tracks-of-sound tracks-of-subtitles".
struct TypeCase {
    Stream mStream;
    std::string mPayload;
    std::string mDescriptors; ///< of the program
    const char* mAnswer;
};

std::vector<TypeCase> TypeCases() {
    return {
        {{0x03, kSound}, Layer2(), "", "MP2 1 -"},
        {{0x04, kSound}, Layer2(), "", "MP2 1 -"},
        {{0x0F, kSound}, Adts(), "", "AAC 1 -"},
        {{0x0F, kSound}, "cut", "", "AAC 1 -"}, // the name alone
        {{0x80, kSound}, kLpcm, kHDMV, "LPCM 1 -"},
        {{0x81, kSound}, Frame(), "", "AC3 1 -"},
        {{0x82, kSound}, Dts(), kHDMV, "DTS 1 -"},
        {{0x82, kSound}, Dts(), "", "DTS 1 -"}, // nobody registered: the payload tells
        {{0x82, kSound}, "subtitles of ATSC", "", "- - 1"},
        {{0x82, 0x222}, "", "", "- - 1"}, // which need not be in packets of a stream
        {{0x82, kSound}, "subtitles of ATSC", kATSC, "- - 1"},
        {{0x83, kSound}, TrueHD(), kHDMV, "TrueHD 1 -"},
        {{0x86, kSound}, Dts(), kHDMV, "DTS 1 -"},
        {{0x86, kSound}, Dts(), "", "- - -"}, // SCTE 35
        {{0x90, kSound}, "pictures of text", kHDMV, "- - 1"},
        {{0x91, kSound}, "menus", kHDMV, "- - -"},
        {{0x15, kSound}, "ID3", "", "- - -"},
        {{0x1C, kSound}, "raw", "", "AAC 1 -"},
        {{0x2D, kSound}, "sound", "", "MPEG-H 1 -"},
        {{0x06, kSound, Descriptor(0x6A, "\0"s)}, Frame(), "", "AC3 1 -"},
        {{0x06, kSound, Descriptor(0x7B, "\0"s)}, Dts(), "", "DTS 1 -"},
        {{0x06, kSound, Descriptor(0x7F, "\x15\0"s)}, "sound", "", "AC4 1 -"},
        {{0x06, kSound, Descriptor(0x7F, "\x80\x02"s) + Registration("Opus")}, "sound", "", "Opus 1 -"},
        {{0x06, kSound, Registration("AC-3")}, Frame(), "", "AC3 1 -"},
        {{0x06, kSound, Registration("DTS2")}, Dts(), "", "DTS 1 -"},
        {{0x06, kSound, Registration("BSSD")}, "\x03\xC0\x00\x10"s + std::string(200, '\0'), "", "S302M 1 -"},
        {{0x06, kSound, Registration("KLVA")}, Frame(), "", "- - -"},
        {{0x06, kSound, Descriptor(0x59, "deu\x10\0\1\0\1"s)}, "bitmaps", "", "- - 1"},
        {{0x06, kSound, Descriptor(0x56, "fra\x10\x88"s)}, "teletext", "", "- - 1"},
        {{0x06, kSound, Descriptor(0xFD, "\0\x08\x3D"s)}, "captions", "", "- - 1"},
        {{0x06, kSound, Descriptor(0xFD, "\0\x0D\x3D"s)}, "carousel", "", "- - -"},
        {{0x06, kSound}, Adts(), "", "AAC 1 -"}, // no descriptor at all
        {{0x06, kSound}, Frame(), "", "AC3 1 -"},
        {{0x06, kSound}, "anything else there may be", "", "- - -"},
        {{0xC1, kSound}, Frame(), "", "encrypted:AC3 1 -"},
        {{0xCF, kSound}, Adts(), "", "encrypted:AAC 1 -"},
    };
}

} // namespace

TEST(TSStreamTypes, SayWithDescriptorsAndPayloadWhatAStreamIs) {
    for (const TypeCase& each : TypeCases()) {
        EXPECT_EQ(Values(Second(each.mStream, each.mPayload, 0xBD, each.mDescriptors), {"ca", "ta", "ts"}),
                  each.mAnswer)
            << std::hex << each.mStream.mType << " " << testing::PrintToString(each.mStream.mDescriptors);
    }
}

TEST(TSStreamTypes, PicturesAreNamedWhereNoReaderKnowsThem) {
    for (const auto& [type, name] : std::vector<std::pair<unsigned, const char*>>{{0x01, "MPEG1"},
                                                                                  {0x02, "MPEG2"},
                                                                                  {0x10, "MPEG4"},
                                                                                  {0x1B, "H264"},
                                                                                  {0x24, "H265"},
                                                                                  {0x33, "H266"},
                                                                                  {0x42, "AVS"},
                                                                                  {0xD2, "AVS2"},
                                                                                  {0xEA, "VC1"},
                                                                                  {0xDB, "encrypted:H264"}}) {
        Packets packets;
        packets.Table(0, Pat()).Table(kMap, Pmt({{0x20, kOther}, {type, kVideo}}));
        for (unsigned i = 0; i < 8; ++i) {
            packets.Add(kOther, Pes(0xE1, kSecond, "the other eye"));
            packets.Add(kVideo, Pes(0xE0, kSecond + i * 3600, "pictures"));
        }
        EXPECT_EQ(Values(packets.Bytes(), {"vc", "vt"}), std::string(name) + " 1");
    }
}

TEST(TSStreamTypes, LanguagesAreThoseOfTheTracksInTheirOrder) {
    Film film;
    film.mStreams.push_back({0x03, kOther, Descriptor(0x0A, "fra\0ita\3"s)});
    film.mStreams.push_back({0x06, 0x201, Descriptor(0x59, "deu\x10\0\1\0\1swe\x10\0\2\0\2"s)});
    film.mStreams.push_back(
        {0x06, 0x202, Descriptor(0x56, "eng\x08\0fin\x10\x88"s)}); // a page, and subtitles
    EXPECT_EQ(Values(film.Bytes(), {"la", "ta", "sl", "ts"}), "de,fr,it 2 de,sv,fi 2");
}

TEST(TSStreamTypes, ScrambledStreamsHaveNoFactsButTheirNames) {
    const Film film;
    const std::string head = Packets().Table(0, Pat()).Table(kMap, Pmt(kStreams)).Bytes();
    const std::string scrambled =
        head + film.Add(Packets().Mark(0, 0x80)).Bytes() + film.Add(Packets().Mark(0, 0xC0)).Bytes();
    EXPECT_EQ(Values(scrambled, {"vc", "ca", "wi", "ac", "dl"}),
              "encrypted:MPEG2 encrypted:AC3 - - DLNA.ORG_OP=01");
    Packets packets;
    packets.Table(0, Pat()).Table(kMap, Pmt(kStreams));
    for (unsigned i = 0; i < 8; ++i) { // scrambled by packets of the streams, not of the transport
        packets.Add(kVideo, Pes(0xE0, kSecond + i * 3600, Picture(), 2));
    }
    EXPECT_EQ(Values(packets.Bytes(), {"vc", "wi"}), "encrypted:MPEG2 -");
}

TEST(TSStreamTypes, SoundAloneIsOfItsClass) {
    Packets packets;
    packets.Table(0, Pat()).Table(kMap, Pmt({{0x81, kSound}}));
    for (unsigned i = 0; i < 8; ++i) {
        packets.Add(kSound, Pes(0xBD, kSecond + i * 3135, Frame()));
    }
    EXPECT_EQ(Values(packets.Bytes(), {"cn", "mt", "vt", "ca"}), "item.audioItem video/mp2t - AC3");
}
