#include "companions/ezFormats/FormatFiles.h"
#include "companions/ezFormats/ts/TSFilms.h"

#include <gtest/gtest.h>

using namespace ts;
using namespace std::string_literals;

namespace {

std::vector<std::string> UsualFiles() {
    const Film film;
    return {film.Bytes(),
            Stamped(film.Bytes(), 1000),
            Stamped(film.Bytes(), 0),
            WithParity(film.Bytes()),
            "junk" + film.Bytes(),
            film.Add(Packets().Table(0, Pat()).Table(kMap, Pmt(kStreams)).Mark(0, 0x80)).Bytes(),
            film.Add(Packets()).Bytes()};
}

std::vector<std::string> CostlyFiles() {
    const std::string head = Packets().Table(0, Pat()).Table(kMap, Pmt(kStreams)).Bytes();
    Packets nothing;
    nothing.Null(60000);
    Film jumps;
    jumps.mNulls = 4000;
    const std::string film = jumps.Bytes();
    Packets streams;
    for (unsigned i = 0; i < 8192; ++i) {
        streams.Add(i, Pes(0xE0, i, "x"));
    }
    return {head + nothing.Bytes(),
            Film().Bytes() + nothing.Bytes(),
            Film().Bytes() + nothing.Bytes() + film,
            film + std::string(9000000, 'G'),
            streams.Bytes(),
            std::string(200000, 'G')};
}

const FormatFiles kFiles("ts", {24, 8U << 20}, {"mt"}, UsualFiles, CostlyFiles);

} // namespace

TEST(TSParser, RecordSaysWhatTheStreamSays) {
    EXPECT_EQ(pictures::Parsed<TSParser>(Film().Bytes()),
              "ac=1\n"
              "ar=32000\n"
              "br=131600\n"
              "ca=\"AC3\"\n"
              "cd=8\n"
              "cn=\"item.videoItem\"\n"
              "cr=\"4:2:0\"\n"
              "ct=\"TS\"\n"
              "dl=\"DLNA.ORG_PN=MPEG_TS_SD_EU_ISO;DLNA.ORG_OP=01;DLNA.ORG_FLAGS="
              "01500000000000000000000000000000\"\n"
              "dm=160\n"
              "dr=\"11:9\"\n"
              "du=0\n"
              "ev=62800\n"
              "fr=25000\n"
              "he=288\n"
              "la=\"de\"\n"
              "mb=532000\n"
              "md=\"last frame\"\n"
              "mt=\"video/mpeg\"\n"
              "mv=500000\n"
              "pa=\"1:1\"\n"
              "pr=\"progressive\"\n"
              "sf=44100\n"
              "ta=1\n"
              "vc=\"MPEG2\"\n"
              "vl=20\n"
              "vp=\"Main\"\n"
              "vt=1\n"
              "wi=352\n");
}

// ---- packets ----

TEST(TSParser, AllLanguagesOfADescriptorAreTold) {
    const std::string page(5, '\1');
    Film film;
    film.mStreams = {{0x02, kVideo},
                     {0x81, kSound, Descriptor(0x0A, "deu" + std::string(1, '\0') + "eng" + page.substr(4))},
                     {0x06, kOther, Descriptor(0x59, "deu" + page + "fra" + page)}};
    EXPECT_EQ(Values(film.Bytes(), {"la", "sl", "ts"}), "de,en de,fr 1");
}

TEST(TSParser, PacketsOfEachSizeAreTold) {
    const std::string film = Film().Bytes();
    const auto words = [](const std::string& aBytes) { return Values(aBytes, {"mt", "ct", "wi", "dm"}); };
    EXPECT_EQ(words(film), "video/mpeg TS 352 160"); // as its profile asks
    EXPECT_EQ(words(WithParity(film)), "video/mp2t - 352 160");
    EXPECT_EQ(words(Stamped(film, 1000)), "video/vnd.dlna.mpeg-tts TTS 352 160");
    EXPECT_EQ(words(Stamped(film, 0)), "video/vnd.dlna.mpeg-tts TTS-zero 352 160");
}

TEST(TSParser, StampsAreZeroOnlyWhereAllOfThemAre) {
    std::string film = Stamped(Film().Bytes(), 0);
    film[film.size() - 189] = '\1'; // of the last packet
    EXPECT_EQ(Values(film, {"ct"}), "TTS");
    EXPECT_EQ(Values(Stamped(Film().Bytes(), 1), {"ct"}), "TTS"); // the first of all is 0
    const std::string few = Stamped(Packets().Table(0, Pat()).Table(kMap, Pmt(kStreams)).Null(5).Bytes(), 0);
    EXPECT_EQ(Values(few, {"ct"}), "-"); // too few of them to tell
}

TEST(TSParser, JunkBeforeThePacketsIsPassedOver) {
    const std::string film = Film().Bytes();
    const std::string whole = Values(film, {"wi", "ca", "dm", "ct"});
    for (const std::size_t size : {1U, 4U, 47U, 187U, 188U, 5000U, 65000U}) {
        std::string junk(size, '\x47'); // every packet's first byte
        for (std::size_t i = 0; i < size; i += 3) {
            junk[i] = 'x';
        }
        EXPECT_EQ(Values(junk + film, {"wi", "ca", "dm", "ct"}), whole) << size;
    }
    EXPECT_EQ(Refusal(std::string(70000, 'x') + film),
              "TSParser: malformed: no packets of a transport stream within 65536 bytes");
}

TEST(TSParser, ShortClipNeedsItsTables) {
    const Film film;
    const std::string clip = film.Bytes().substr(0, 5 * kPacket);
    EXPECT_EQ(Values(clip, {"wi"}), "352");
    EXPECT_EQ(Values(clip.substr(0, 3 * kPacket), {"vc"}), "MPEG2");
    EXPECT_EQ(Values(Stamped(clip, 7), {"ct"}), "TTS");
    EXPECT_NE(Refusal(clip.substr(0, 2 * kPacket)), "");
    EXPECT_NE(Refusal(film.Add(Packets()).Bytes().substr(0, 5 * kPacket)), "");
}

TEST(TSParser, WhatLooksLikePacketsIsNone) {
    EXPECT_NE(Refusal(std::string(30000, 'G')), "");
    std::string comb(kPacket * 40, 'x');
    for (std::size_t i = 0; i < comb.size(); i += kPacket) {
        comb[i] = 'G';
    }
    EXPECT_NE(Refusal(comb), "");
    EXPECT_NE(Refusal("<?xml version=\"1.0\"?><!DOCTYPE TS><TS version=\"2.1\"></TS>"), "");
}

TEST(TSParser, DamagedPacketsAndLostBytesCostThemselvesAlone) {
    Film film;
    film.mPictures = 12;
    const std::string whole = film.Bytes();
    const std::vector<const char*> keys = {"wi", "ca", "dm"};
    const std::string facts = Values(whole, keys);
    std::string error = whole;
    error[kPacket * 9 + 1] = static_cast<char>(error[kPacket * 9 + 1] | '\x80');
    EXPECT_EQ(Values(error, keys), facts);
    EXPECT_EQ(Values(whole.substr(0, kPacket * 10) + whole.substr(kPacket * 10 + 50), keys), facts);
    std::string sync = whole;
    sync[kPacket * 9] = 'x';
    EXPECT_EQ(Values(sync, keys), facts);
}

// ---- tables ----

TEST(TSParser, TableThatIsDamagedTellsNothingAndTheNextOneDoes) {
    std::string pat = Pat();
    pat[9] = '\x7F';
    Packets packets;
    packets.Table(0, pat).Table(0, Pat()).Table(kMap, Pmt(kStreams));
    EXPECT_EQ(Values(Film().Add(packets).Bytes(), {"ta", "la"}), "1 de");
}

TEST(TSParser, TableGoesOverPackets) {
    Film film;
    for (unsigned i = 0; i < 30; ++i) {
        film.mStreams.push_back({0x81, 0x200 + i, Language("fra")});
    }
    EXPECT_EQ(Values(film.Bytes(), {"ta", "la"}), "31 de,fr");
}

TEST(TSParser, WithoutTablesTheStreamsTell) {
    Film film;
    film.mPictures = 8;
    EXPECT_EQ(Values(film.Add(Packets()).Bytes(), {"vc", "wi", "ca", "ac", "dm", "la"}),
              "MPEG2 352 AC3 1 320 -");
}

TEST(TSParser, FirstProgramWithPicturesThatAreThereCounts) {
    Packets packets;
    packets.Table(0, Pat({{0, 0x10}, {7, 0x90}, {8, 0x91}, {9, kMap}}));
    packets.Table(0x90, Pmt({{0x03, 0x95}}, "", 7));
    packets.Table(0x91, Pmt({{0x1B, 0x96}}, "", 8)); // none of whose packets are there
    packets.Table(kMap, Pmt(kStreams, "", 9));
    packets.Add(0x95, Pes(0xC0, kSecond, "sound of the radio"));
    const std::string film = Film().Add(packets).Bytes();
    EXPECT_EQ(Values(film, {"np", "ct", "vc", "ca"}), "3 - MPEG2 AC3");
    EXPECT_EQ(Values(Film().Bytes(), {"np"}), "-");
}

TEST(TSParser, SoundOfTheFirstProgramCountsWhereNoneHasPictures) {
    Packets packets;
    packets.Table(0, Pat({{7, 0x90}, {8, 0x91}}));
    packets.Table(0x90, Pmt({{0x81, 0x95, Language("eng")}}, "", 7, 0x95));
    packets.Table(0x91, Pmt({{0x81, 0x96, Language("fra")}}, "", 8, 0x96));
    for (unsigned i = 0; i < 9; ++i) { // and more than are read at first
        packets.Add(0x96, Pes(0xBD, kSecond + i * 3135, Frame()), i * 3135);
        packets.Add(0x95, Pes(0xBD, kSecond + i * 3135, Frame()), i * 3135);
        packets.Null(400);
    }
    EXPECT_EQ(Values(packets.Bytes(), {"np", "cn", "ca", "la", "dm"}), "2 item.audioItem AC3 en 313");
}

TEST(TSParser, FirstMapCounts) {
    Packets packets;
    packets.Table(0, Pat()).Table(kMap, Pmt(kStreams));
    packets.Table(kMap, Pmt({{0x02, kVideo}, {0x03, kOther}}, "", 1, kVideo, 1));
    EXPECT_EQ(Values(Film().Add(packets).Bytes(), {"ta", "ca"}), "1 AC3");
}
