#include "companions/ezFormats/rules/FilmTable.h"

#include <gtest/gtest.h>

// The names of films, by the facts of a record. The limits of the profiles stand here once more, at each edge
// and one beyond, so that no slip of the table goes unseen.

namespace {

const std::string kMPEG2 = "vc=MPEG2 vp=Main vl=20 pr=interlaced ";
const std::string kPAL = kMPEG2 + "wi=720 he=576 fr=25000 vr=6000000 br=7000000 ";
const std::string kNTSC = kMPEG2 + "wi=720 he=480 fr=29970 vr=6000000 br=7000000 ";
const std::string kAC3 = "ca=AC3 sf=48000 ac=6 ar=448000 ";
const std::string kMP2 = "ca=MP2 sf=48000 ac=2 ar=192000 ";
const std::string kAAC = "ca=AAC sf=48000 ac=2 ar=128000 ";

} // namespace

// MPEG-1 and MPEG-2.

TEST(FilmProfiles, SystemStreamsOfMPEG1) {
    FilmTable().Expect(
        "mt=video/mpeg ct=MPEG1 vc=MPEG1 pr=progressive wi=352 he=288 fr=25000 vr=1150000 br=1400000 "
        "ca=MP2 sf=44100 ac=2 ar=224000",
        {{"", "MPEG1"},
         {"he=240 fr=29970", "MPEG1"},
         {"he=240 fr=23976", "MPEG1"},
         {"vr=1151929", "MPEG1"},
         {"vr=1153080", "MPEG1"}, // measured
         {"vr=1153081", ""},
         {"vr=1149999", ""},
         {"vr=4294967295", ""},
         {"he=240", ""},
         {"fr=29970", ""},
         {"he=240 fr=24000", ""},
         {"he=240 fr=30000", ""},
         {"wi=353", ""},
         {"wi=351", ""},
         {"he=287", ""},
         {"fr=0", ""},
         {"ar=224224", "MPEG1"},
         {"ar=224225", ""},
         {"ar=223999", ""},
         {"sf=48000", ""},
         {"ac=1", ""},
         {"ca=MP3", ""},
         {"ca=MP1", ""},
         {"vc=MPEG2 vp=Main vl=20", ""}, // in packs of MPEG-1
         {"ct=PS", ""},
         {"ct=x", ""},
         {"ct=TS", ""}});
}

TEST(FilmProfiles, ProgramStreamsOfEurope) {
    const FilmTable table;
    const std::string start = "mt=video/mpeg ct=PS " + kPAL;
    table.Expect(start + kAC3, {{"", "MPEG_PS_PAL"},
                                {"wi=704", "MPEG_PS_PAL"},
                                {"wi=544", "MPEG_PS_PAL"},
                                {"wi=480", "MPEG_PS_PAL"},
                                {"wi=352", "MPEG_PS_PAL"},
                                {"wi=352 he=288", "MPEG_PS_PAL"},
                                {"pr=progressive", "MPEG_PS_PAL"},
                                {"vp=Simple", "MPEG_PS_PAL"},
                                {"vl=10", "MPEG_PS_PAL"},
                                {"wi=721", ""},
                                {"wi=719", ""},
                                {"wi=640", ""},
                                {"wi=720 he=288", ""},
                                {"he=577", ""},
                                {"he=480", ""},
                                {"fr=29970", ""},
                                {"fr=23976", ""},
                                {"fr=50000", ""},
                                {"fr=24989", ""},
                                {"fr=25026", ""},
                                {"vr=9800000", "MPEG_PS_PAL"},
                                {"vr=9809800", "MPEG_PS_PAL"},
                                {"vr=9809801", ""},
                                {"vr=0", ""},
                                {"vl=30", ""},
                                {"vl=40", ""},
                                {"vp=High", ""},
                                {"vp=4:2:2", ""},
                                {"vc=MPEG1", ""},
                                {"vc=H264", ""},
                                {"ct=TS", "MPEG_TS_SD_EU_ISO"}, // as it was announced before
                                {"ct=MPEG1", ""},
                                {"ct=", ""}, // as of one that is scrambled
                                {"ca=", ""}});
    table.Expect(start + kAC3, {{"ac=1 ar=64000", "MPEG_PS_PAL"},
                                {"ar=448448", "MPEG_PS_PAL"},
                                {"ar=448449", "MPEG_PS_PAL_XAC3"},
                                {"ar=512000", "MPEG_PS_PAL_XAC3"},
                                {"ar=640640", "MPEG_PS_PAL_XAC3"},
                                {"ar=640641", ""},
                                {"sf=44100", ""},
                                {"ac=7", ""},
                                {"ca=EAC3", ""},
                                {"ca=DTS", ""},
                                {"ca=encrypted:AC3", ""},
                                {"ca=MLP", ""}});
    table.Expect(start + kMP2, {{"", "MPEG_PS_PAL"},
                                {"ar=64000", "MPEG_PS_PAL"},
                                {"ar=384384", "MPEG_PS_PAL"},
                                {"ar=384385", ""},
                                {"ar=63999", ""},
                                {"ac=1", "MPEG_PS_PAL"},
                                {"ac=1 ar=192192", "MPEG_PS_PAL"},
                                {"ac=1 ar=192193", ""},
                                {"ac=1 ar=63999", ""},
                                {"ac=6", ""},
                                {"sf=44100", ""},
                                {"ca=MP1", ""},
                                {"ca=MP3", ""},
                                {"ca=AAC", ""}});
    table.Expect(start + "ca=LPCM sf=48000 ac=2 bs=16", {{"", "MPEG_PS_PAL"},
                                                         {"ac=1", "MPEG_PS_PAL"},
                                                         {"ac=3", ""},
                                                         {"bs=20", ""},
                                                         {"bs=24", ""},
                                                         {"sf=96000", ""}});
}

TEST(FilmProfiles, ProgramStreamsOfNorthAmerica) {
    const std::string start = "mt=video/mpeg ct=PS " + kNTSC;
    FilmTable().Expect(start + kAC3, {{"", "MPEG_PS_NTSC"},
                                      {"wi=704", "MPEG_PS_NTSC"},
                                      {"wi=544", "MPEG_PS_NTSC"},
                                      {"wi=480", "MPEG_PS_NTSC"},
                                      {"wi=352", "MPEG_PS_NTSC"},
                                      {"wi=352 he=240", "MPEG_PS_NTSC"},
                                      {"ar=448449", "MPEG_PS_NTSC_XAC3"},
                                      {"ar=640000", "MPEG_PS_NTSC_XAC3"},
                                      {"ar=640641", ""},
                                      {"vr=9809801", ""},
                                      {"wi=640", ""},
                                      {"wi=720 he=240", ""},
                                      {"he=576", ""},
                                      {"fr=23976", ""}, // a film without pulldown
                                      {"fr=30000", ""},
                                      {"fr=59940", ""},
                                      {"fr=25000", ""},
                                      {kMP2, "MPEG_PS_NTSC"},
                                      {"ca=MP2 ac=1 ar=192000", "MPEG_PS_NTSC"},
                                      {"ca=MP2 ac=1 ar=224000", ""},
                                      {"ca=LPCM ac=2 bs=16", "MPEG_PS_NTSC"},
                                      {"ca=LPCM ac=2 bs=20", ""}});
}

TEST(FilmProfiles, TransportStreamsOfEurope) {
    FilmTable().ExpectOfPackets(kPAL + kAC3, {{"", "MPEG_TS_SD_EU"},
                                              {"wi=544", "MPEG_TS_SD_EU"},
                                              {"wi=480", "MPEG_TS_SD_EU"},
                                              {"wi=352", "MPEG_TS_SD_EU"},
                                              {"wi=352 he=288", "MPEG_TS_SD_EU"},
                                              {"wi=704", ""},
                                              {"wi=640", ""},
                                              {"he=480", ""},
                                              {"fr=50000", ""},
                                              {"fr=29970", ""},
                                              {"vr=15000000", "MPEG_TS_SD_EU"},
                                              {"vr=15015001", ""},
                                              {"vl=30", ""},
                                              {"vp=Simple vl=10", "MPEG_TS_SD_EU"},
                                              {"vp=High", ""},
                                              {"sf=32000", "MPEG_TS_SD_EU"},
                                              {"sf=44100", "MPEG_TS_SD_EU"},
                                              {"sf=24000", ""},
                                              {"ar=448448", "MPEG_TS_SD_EU"},
                                              {"ar=448449", ""},
                                              {"ca=MP2 ac=2 ar=384384", "MPEG_TS_SD_EU"},
                                              {"ca=MP2 ac=2 ar=384385", ""},
                                              {"ca=MP1 ac=2 ar=448448", "MPEG_TS_SD_EU"},
                                              {"ca=MP1 ac=2 ar=448449", ""},
                                              {"ca=AAC ac=2", ""},
                                              {"ca=EAC3", ""},
                                              {"ca=DTS", ""},
                                              {"vc=encrypted:MPEG2", ""},
                                              {"ca=", ""},
                                              {"ct=", ""}, // of 204 bytes, scrambled, or of several programs
                                              {"ct=PS", ""},
                                              // High definition of Europe has no name.
                                              {"vl=40 wi=1920 he=1080 vr=15000000", ""},
                                              {"vl=40 wi=1280 he=720 fr=50000 pr=progressive", ""}});
}

TEST(FilmProfiles, TransportStreamsOfNorthAmerica) {
    const FilmTable table;
    table.ExpectOfPackets(kNTSC + kAC3, {{"", "MPEG_TS_SD_NA"},
                                         {"wi=544", "MPEG_TS_SD_NA"},
                                         {"wi=480", "MPEG_TS_SD_NA"},
                                         {"wi=352", "MPEG_TS_SD_NA"},
                                         {"wi=720 fr=30000", ""},
                                         {"wi=720 fr=23976 pr=progressive", ""},
                                         {"wi=720 fr=59940 pr=progressive", ""},
                                         {"wi=352 he=240", ""},
                                         {"wi=528", ""},
                                         {"wi=720 fr=25000", ""},
                                         {"br=19412092", "MPEG_TS_SD_NA"},
                                         {"br=19412093", ""},
                                         {"br=0", ""},
                                         {"sf=44100", ""},
                                         {"ar=448449", "MPEG_TS_SD_NA_XAC3"},
                                         {"ar=640000", "MPEG_TS_SD_NA_XAC3"},
                                         {"ar=640641", ""},
                                         {"ca=MP2", ""},
                                         {"vl=30", ""}});
    for (const std::string width : {"wi=704 ", "wi=640 "}) {
        table.ExpectOfPackets(kNTSC + kAC3 + width,
                              {{"", "MPEG_TS_SD_NA"},
                               {"fr=30000", "MPEG_TS_SD_NA"},
                               {"fr=30031", ""},
                               {"fr=29959", ""},
                               {"fr=23976", ""}, // of fields
                               {"fr=24000 pr=progressive", "MPEG_TS_SD_NA"},
                               {"fr=23966 pr=progressive", "MPEG_TS_SD_NA"},
                               {"fr=25000 pr=progressive", ""},
                               {"fr=59940 vl=30 pr=progressive", "MPEG_TS_SD_NA"},
                               {"fr=60000 vl=30 pr=progressive", "MPEG_TS_SD_NA"},
                               {"fr=59940 vl=30", ""},
                               {"fr=50000 vl=30 pr=progressive", ""},
                               {"fr=24000 pr=progressive ar=640000", "MPEG_TS_SD_NA_XAC3"}});
    }
}

TEST(FilmProfiles, HighDefinitionOfNorthAmerica) {
    const std::string start = kMPEG2 + "vl=40 wi=1920 he=1080 fr=29970 vr=18000000 br=19392700 " + kAC3;
    FilmTable().ExpectOfPackets(start, {{"", "MPEG_TS_HD_NA"},
                                        {"wi=1440", "MPEG_TS_HD_NA"},
                                        {"wi=1280", "MPEG_TS_HD_NA"},
                                        {"wi=1280 he=720 pr=progressive", "MPEG_TS_HD_NA"},
                                        {"wi=1280 he=720 fr=59940 pr=progressive", ""}, // is inferred
                                        {"wi=1280 he=720 fr=50000 pr=progressive", ""},
                                        {"he=1088", ""}, // a record states the lines that are seen
                                        {"wi=960", ""},
                                        {"fr=30000", "MPEG_TS_HD_NA"},
                                        {"fr=25000", ""},
                                        {"fr=23976", ""},
                                        {"fr=23976 pr=progressive", "MPEG_TS_HD_NA"},
                                        {"fr=24000 pr=progressive", "MPEG_TS_HD_NA"},
                                        {"vl=30 wi=1440", "MPEG_TS_HD_NA"},
                                        {"vp=High", ""},
                                        {"br=19412093", ""},
                                        {"ar=640000", "MPEG_TS_HD_NA_XAC3"},
                                        {"sf=32000", ""},
                                        {"ca=AAC", ""}});
    FilmTable("", true).ExpectOfPackets(
        start, {{"wi=1280 he=720 fr=59940 pr=progressive", "MPEG_TS_HD_NA"},
                {"wi=1280 he=720 fr=60000 pr=progressive", "MPEG_TS_HD_NA"},
                {"wi=1280 he=720 fr=60000 pr=progressive ar=640000", "MPEG_TS_HD_NA_XAC3"},
                {"wi=1280 he=720 fr=59940", "MPEG_TS_NA|_ISO|"},
                {"wi=1280 he=720 fr=50000 pr=progressive", ""}});
}

TEST(FilmProfiles, RegionsNameTheSameOtherwise) {
    const std::string sd = kNTSC + "wi=704 " + kAC3;
    const std::string hd = kMPEG2 + "vl=40 wi=1920 he=1080 fr=29970 vr=18000000 br=19000000 " + kAC3;
    const FilmTable korea("KO");
    korea.ExpectOfPackets(sd, {{"", "MPEG_TS_SD_KO"},
                               {"wi=640", "MPEG_TS_SD_KO"},
                               {"fr=24000 pr=progressive", "MPEG_TS_SD_KO"},
                               {"fr=60000 vl=30 pr=progressive", "MPEG_TS_SD_KO"},
                               {"wi=720", "MPEG_TS_SD_NA"},
                               {"wi=544", "MPEG_TS_SD_NA"},
                               {"ar=640000", "MPEG_TS_SD_NA_XAC3"}});
    korea.ExpectOfPackets(hd, {{"", "MPEG_TS_HD_NA"}});
    korea.ExpectOfPackets(kPAL + kAC3, {{"", "MPEG_TS_SD_EU"}});
    FilmTable("KO", true)
        .ExpectOfPackets(hd, {{"", "MPEG_TS_HD_KO"},
                              {"ar=640000", "MPEG_TS_HD_KO_XAC3"},
                              {"fr=59940 wi=1280 he=720 pr=progressive", "MPEG_TS_HD_KO"}});
    FilmTable("KO", true).ExpectOfPackets(sd, {{"", "MPEG_TS_SD_KO"}, {"ar=640000", "MPEG_TS_SD_KO_XAC3"}});
    for (const char* const other : {"", "EU", "NA", "JP"}) {
        FilmTable(other).ExpectOfPackets(sd, {{"", "MPEG_TS_SD_NA"}});
        FilmTable(other).ExpectOfPackets(kPAL + kAC3, {{"", "MPEG_TS_SD_EU"}});
    }
    const std::string film =
        "vc=H264 vp=High vl=40 pr=interlaced wi=1920 he=1080 vr=10000000 br=11000000 " + kAC3;
    const auto name = [&film](const char* aRegion, bool afInferred, const char* aRate) {
        return FilmTable(aRegion, afInferred).Announced("mt=video/mp2t ct=TS " + film + aRate);
    };
    EXPECT_EQ(name("EU", false, "fr=25000"), "AVC_TS_HD_50_AC3_ISO as video/mpeg");
    EXPECT_EQ(name("EU", true, "fr=25000"), "AVC_TS_EU_ISO as video/mpeg");
    EXPECT_EQ(name("", true, "fr=25000"), "AVC_TS_HD_50_AC3_ISO as video/mpeg");
    EXPECT_EQ(name("EU", true, "fr=29970"), "AVC_TS_HD_60_AC3_ISO as video/mpeg");
    EXPECT_EQ(name("NA", true, "fr=29970"), "AVC_TS_NA_ISO as video/mpeg");
    EXPECT_EQ(name("NA", true, "fr=25000"), "AVC_TS_HD_50_AC3_ISO as video/mpeg");
}

TEST(FilmProfiles, LowLevelWithAAC) {
    FilmTable().ExpectOfPackets(
        "vc=MPEG2 vp=Main vl=10 wi=352 he=288 fr=30000 vr=4000000 ca=AAC sf=48000 ac=2 ar=256000",
        {{"", "MPEG_TS_MP_LL_AAC"},
         {"wi=320 he=240", "MPEG_TS_MP_LL_AAC"},
         {"wi=353", ""},
         {"he=289", ""},
         {"fr=30031", ""},
         {"vr=4004001", ""},
         {"ar=256257", ""},
         {"vl=20", ""},
         {"vp=Simple", ""},
         {"sf=24000", ""}, // may be the core of HE-AAC
         {"ca=HE-AAC", ""}});
}

TEST(FilmProfiles, InferredNamesOfMPEG2) {
    const FilmTable on("", true);
    const FilmTable off;
    const std::string l2 = kMPEG2 + "vr=9000000 br=10000000 ca=MP2 sf=48000 ac=2 ar=384000 ";
    const std::vector<std::pair<std::string, std::vector<FilmRow>>> groups = {
        {kPAL + kAC3,
         {{"", "MPEG_TS_SD_EU_AC3|_ISO|_T|/MPEG_TS_SD_EU"}, {"wi=704", "MPEG_TS_SD_50_AC3|_T|"}}},
        {l2,
         {{"wi=704 he=576 fr=25000", "MPEG_TS_SD_50_L2|_T|"},
          {"wi=720 he=480 fr=29970", "MPEG_TS_SD_JP_MPEG1_L2|_T|"},
          {"wi=704 he=480 fr=29970", "MPEG_TS_SD_60_L2|_T|"},
          {"wi=704 he=480 fr=29970 ar=384385", ""},
          {"wi=704 he=480 fr=30000", ""},
          {"vl=30 wi=1440 he=1080 fr=25000", "MPEG_TS_HD_50_L2|_ISO|_T|"},
          {"vl=30 wi=1440 he=1080 fr=29970", "MPEG_TS_HD_60_L2|_ISO|_T|"},
          {"vl=30 wi=1440 he=1080 fr=25000 pr=progressive", ""},
          {"vl=30 wi=1280 he=720 fr=50000 pr=progressive", "MPEG_TS_HD_50_L2|_ISO|_T|"},
          {"vl=30 wi=1280 he=720 fr=59940 pr=progressive", "MPEG_TS_HD_60_L2|_ISO|_T|"},
          {"vl=40 wi=1920 he=1080 fr=25000", ""}}},
        {kMPEG2 + "vl=40 wi=1920 he=1080 fr=29970 vr=20000000 br=38000000 " + kAC3,
         {{"", "MPEG_TS_NA|_ISO|"}, {"br=38849511", ""}, {"wi=528 he=480 vl=20", "MPEG_TS_NA|_ISO|"}}},
        {kMPEG2 + "vl=40 wi=1920 he=1080 fr=29970 vr=16000000 br=18000000 ca=AAC sf=48000 ac=6 ar=384000 ",
         {{"", "MPEG_TS_JP|_T|"},
          {"wi=1440", "MPEG_TS_JP|_T|"},
          {"wi=720 he=480", "MPEG_TS_JP|_T|"},
          {"wi=1280 he=720 fr=59940 pr=progressive", "MPEG_TS_JP|_T|"},
          {"wi=1280 he=720 fr=59940", ""},
          {"fr=25000", ""},
          {"sf=44100", ""},
          {"ac=7", ""}}}};
    for (const auto& [facts, rows] : groups) {
        on.ExpectOfPackets(facts, rows);
        for (const FilmRow& row : rows) {
            const std::string name = off.Announced("mt=video/vnd.dlna.mpeg-tts ct=TTS " + facts + row.mFacts);
            EXPECT_TRUE(name.empty() || name == "MPEG_TS_SD_EU_T") << facts << row.mFacts << " is " << name;
        }
    }
}

// H.264.

TEST(FilmProfiles, SmallH264InTransportStreams) {
    const std::string start = "vc=H264 vp=Baseline vl=12 wi=352 he=288 fr=15000 vr=384000 br=540000 " + kAAC;
    FilmTable().ExpectOfPackets(start,
                                {{"", "AVC_TS_BL_CIF15_AAC_540"},
                                 {"vl=9", "AVC_TS_BL_CIF15_AAC_540"},
                                 {"vp=ConstrainedBaseline", "AVC_TS_BL_CIF15_AAC_540"},
                                 {"wi=320 he=240 fr=20000", "AVC_TS_BL_CIF15_AAC_540"},
                                 {"wi=320 he=180 fr=26000", "AVC_TS_BL_CIF15_AAC_540"},
                                 {"wi=176 he=144 fr=30000", "AVC_TS_BL_CIF15_AAC_540"},
                                 {"br=540541", "AVC_TS_BL_CIF15_AAC"},
                                 {"br=600000 ar=200000", "AVC_TS_BL_CIF15_AAC"},
                                 {"br=600601", "AVC_TS_BL_CIF30_AAC_940"},
                                 {"fr=15016", "AVC_TS_BL_CIF30_AAC_940"},
                                 {"vl=13 fr=30000 vr=768000 br=940000", "AVC_TS_BL_CIF30_AAC_940"},
                                 {"br=940941", "AVC_TS_BL_CIF30_AAC_MULT5"},
                                 {"vl=20", "AVC_TS_BL_CIF30_AAC_MULT5"},
                                 {"vl=20 vr=2000000 br=3000000 ac=6 ar=400000", "AVC_TS_BL_CIF30_AAC_MULT5"},
                                 {"vr=2002001 br=3000000", ""},
                                 {"br=3003001", ""},
                                 {"vl=21", ""},
                                 {"vp=Main", "AVC_TS_MP_SD_AAC_MULT5"},
                                 {"vp=ConstrainedBaseline vl=21", "AVC_TS_MP_SD_AAC_MULT5"},
                                 {"vp=Extended", ""},
                                 {"wi=353", ""},
                                 {"fr=30031", ""},
                                 {"sf=24000", ""},
                                 {"ca=AAC-LTP", "AVC_TS_BL_CIF15_AAC_LTP"},
                                 {"ca=AC3 ac=6 ar=640000", "AVC_TS_BL_CIF30_AC3"},
                                 {"ca=AC3 ac=6 ar=640641", ""},
                                 {"ca=MP3 ar=320000", "AVC_TS_BL_CIF30_MPEG1_L3"},
                                 {"ca=MP3 ar=320321", ""},
                                 {"ca=HE-AAC", "AVC_TS_BL_CIF30_HEAAC_L2"},
                                 {"ca=MP2", ""},
                                 {"vc=H265", ""},
                                 {"ca=", ""},
                                 {"ct=", ""}});
}

TEST(FilmProfiles, MainH264InTransportStreams) {
    const FilmTable table;
    table.ExpectOfPackets("vc=H264 vp=Main vl=30 wi=720 he=576 fr=25000 vr=10000000 " + kAAC,
                          {{"", "AVC_TS_MP_SD_AAC_MULT5"},
                           {"ac=6 ar=1440000", "AVC_TS_MP_SD_AAC_MULT5"},
                           {"ac=6 ar=1441441", ""},
                           {"he=480 fr=30000", "AVC_TS_MP_SD_AAC_MULT5"},
                           {"wi=128 he=96 fr=30000", "AVC_TS_MP_SD_AAC_MULT5"},
                           {"he=480 fr=30031", "AVC_TS_MP_HD_AAC"},
                           {"fr=30000", "AVC_TS_MP_HD_AAC"},
                           {"vr=10010001", "AVC_TS_MP_HD_AAC"},
                           {"vl=31", "AVC_TS_MP_HD_AAC"},
                           {"wi=721", "AVC_TS_MP_HD_AAC"},
                           {"vp=ConstrainedBaseline", "AVC_TS_MP_SD_AAC_MULT5"},
                           {"vp=Baseline", ""},
                           {"vp=High", ""},
                           {"ca=AC3 ac=6 ar=640000", "AVC_TS_MP_SD_AC3"},
                           {"ca=MP3 ar=320000", "AVC_TS_MP_SD_MPEG1_L3"},
                           {"ca=HE-AAC", "AVC_TS_MP_SD_HEAAC_L2"},
                           {"ca=HE-AAC ac=6", ""},
                           {"ca=AAC-LTP", "AVC_TS_MP_SD_AAC_LTP"},
                           {"ca=AAC-LTP ac=6", "AVC_TS_MP_SD_AAC_LTP_MULT5"},
                           {"ca=AAC-LTP ac=8 ar=4032000", "AVC_TS_MP_SD_AAC_LTP_MULT7"},
                           {"ca=DTS", ""},
                           {"ca=EAC3 ac=6 ar=640000", ""},
                           {"ca=MP2", ""}});
    table.ExpectOfPackets("vc=H264 vp=Main vl=40 wi=1920 he=1080 fr=30000 pr=progressive vr=20000000 " + kAAC,
                          {{"", "AVC_TS_MP_HD_AAC"},
                           {"ar=576577", "AVC_TS_MP_HD_AAC_MULT5"},
                           {"ac=6", "AVC_TS_MP_HD_AAC_MULT5"},
                           {"he=1152 fr=25000", "AVC_TS_MP_HD_AAC"},
                           {"he=1152", ""},
                           {"he=1153 fr=25000", ""},
                           {"wi=1921", ""},
                           {"fr=50000", ""},
                           {"wi=1280 he=720 fr=60000", "AVC_TS_MP_HD_AAC"},
                           {"wi=1280 he=721 fr=60000", ""},
                           {"vl=41", ""},
                           {"vr=20020001", ""},
                           {"ca=AC3 ac=6 ar=640000", "AVC_TS_MP_HD_AC3"},
                           {"ca=AC3 ac=6 ar=640000 vr=20020001", "AVC_TS_HP_HD_AC3"},
                           {"ca=MP3 ar=320000", "AVC_TS_MP_HD_MPEG1_L3"},
                           {"ca=HE-AAC", "AVC_TS_MP_HD_HEAAC_L2"},
                           {"ca=AAC-LTP", "AVC_TS_MP_HD_AAC_LTP"},
                           {"ca=AAC-LTP ac=6", "AVC_TS_MP_HD_AAC_LTP_MULT5"},
                           {"ca=AAC-LTP ac=8", "AVC_TS_MP_HD_AAC_LTP_MULT7"},
                           {"vp=High", ""},
                           {"ca=", ""}});
}

TEST(FilmProfiles, HighH264InTransportStreams) {
    const std::string start =
        "vc=H264 vp=High vl=40 wi=1920 he=1080 fr=25000 pr=progressive vr=30000000 br=32000000 " + kAC3;
    FilmTable().ExpectOfPackets(start, {{"", "AVC_TS_HP_HD_AC3"},
                                        {"vp=Main", "AVC_TS_HP_HD_AC3"},
                                        {"vp=Baseline", ""},
                                        {"vp=High10", ""},
                                        {"vr=30030001", ""},
                                        {"vl=41", ""},
                                        {"wi=720 he=576 vl=30", "AVC_TS_HP_HD_AC3"},
                                        {"he=1152", "AVC_TS_HP_HD_AC3"},
                                        {"fr=30000", "AVC_TS_HP_HD_AC3"},
                                        {"fr=50000", ""},
                                        {"ar=640641", ""},
                                        {"ar=63999", ""},
                                        {"ac=7", ""},
                                        {"ca=EAC3", ""},
                                        {"ca=AAC ac=2", ""},
                                        {"ca=MP2 ac=2 ar=192000", ""},
                                        {"ca=HE-AACv2 ac=2", ""}});
    FilmTable("", true).ExpectOfPackets(start, {{"", "AVC_TS_HP_HD_AC3"},
                                                {"ca=EAC3 ar=3024000", "AVC_TS_HP_HD_EAC3|_ISO|_T|"},
                                                {"ca=EAC3 ar=3027025", ""},
                                                {"ca=MP2 ac=2 ar=192000", "AVC_TS_HP_HD_MPEG1_L2|_ISO|_T|"},
                                                {"ca=HE-AACv2 ac=2", "AVC_TS_HP_HD_HEAACv2_L4|_ISO|_T|"},
                                                {"ca=HE-AAC", "AVC_TS_HP_HD_HEAACv2_L4|_ISO|_T|"}});
    FilmTable("", true).ExpectOfPackets(
        "vc=H264 vp=High vl=30 wi=720 he=576 fr=25000 vr=12500000 " + kAC3,
        {{"", "AVC_TS_HP_SD_AC3|_ISO|_T|/AVC_TS_HP_HD_AC3"},
         {"ca=EAC3", "AVC_TS_HP_SD_EAC3|_ISO|_T|/AVC_TS_SD_EU"},
         {"ca=MP2 ac=2 ar=192000", "AVC_TS_HP_SD_MPEG1_L2|_ISO|_T|/AVC_TS_SD_EU"},
         {"ca=HE-AAC", "AVC_TS_HP_SD_HEAACv2_L4|_ISO|_T|/AVC_TS_SD_EU"}});
}

TEST(FilmProfiles, CamcordersByTheirFields) {
    const std::string start =
        "vc=H264 vp=High vl=40 pr=interlaced wi=1920 he=1080 vr=17000000 br=24000000 " + kAC3;
    const FilmTable table;
    table.ExpectOfPackets(start + "fr=25000", {{"", "AVC_TS_HD_50_AC3"},
                                               {"vp=Main", "AVC_TS_HD_50_AC3"},
                                               {"wi=1440", "AVC_TS_HD_50_AC3"},
                                               {"wi=720 he=576", "AVC_TS_HD_50_AC3"},
                                               {"wi=720 he=576 vp=Main vl=30 vr=9000000", "AVC_TS_MP_SD_AC3"},
                                               {"wi=1280 he=720 fr=50000 pr=progressive", "AVC_TS_HD_50_AC3"},
                                               {"wi=1280 he=720 fr=50000", "AVC_TS_HP_HD_AC3"},
                                               {"pr=progressive", "AVC_TS_HP_HD_AC3"},
                                               {"wi=1280", "AVC_TS_HP_HD_AC3"},
                                               {"br=24024000", "AVC_TS_HD_50_AC3"},
                                               {"br=24024001", "AVC_TS_HP_HD_AC3"},
                                               {"sf=44100", "AVC_TS_HP_HD_AC3"},
                                               {"vl=41", ""},
                                               {"ca=LPCM sf=48000 ac=2 bs=16", "AVC_TS_HD_50_LPCM|_T|"},
                                               {"ca=LPCM sf=48000 ac=6 bs=16", ""},
                                               {"ca=LPCM sf=48000 ac=2 bs=24", ""},
                                               {"ca=LPCM sf=96000 ac=2 bs=16", ""}});
    table.ExpectOfPackets(start + "fr=29970", {{"", "AVC_TS_HD_60_AC3"},
                                               {"wi=1440", "AVC_TS_HD_60_AC3"},
                                               {"wi=720 he=480", "AVC_TS_HD_60_AC3"},
                                               {"fr=30000", "AVC_TS_HP_HD_AC3"},
                                               {"wi=1280 he=720 fr=59940 pr=progressive", "AVC_TS_HD_60_AC3"},
                                               {"ca=LPCM sf=48000 ac=2 bs=16", "AVC_TS_HD_60_LPCM|_T|"}});
    const std::string film = start + "pr=progressive fr=23976";
    table.ExpectOfPackets(film, {{"", "AVC_TS_HP_HD_AC3"}, {"ca=LPCM sf=48000 ac=2 bs=16", ""}});
    FilmTable("", true).ExpectOfPackets(film, {{"", "AVC_TS_HD_24_AC3"},
                                               {"fr=24000", "AVC_TS_HD_24_AC3"},
                                               {"wi=1280 he=720", "AVC_TS_HD_24_AC3"},
                                               {"fr=25000", "AVC_TS_HP_HD_AC3"},
                                               {"ca=LPCM sf=48000 ac=2 bs=16", "AVC_TS_HD_24_LPCM|_T|"}});
}

TEST(FilmProfiles, InferredNamesOfBroadcasts) {
    const std::string start =
        "vc=H264 vp=High vl=40 pr=interlaced wi=1920 he=1080 fr=25000 vr=10000000 br=11000000 ";
    const std::string heaac = "ca=HE-AACv2 sf=48000 ac=2 ar=64000 ";
    FilmTable("EU", true)
        .ExpectOfPackets(start + heaac, {{"wi=960", "AVC_TS_EU|_ISO|/AVC_TS_HD_EU"},
                                         {"wi=704 he=576 vl=30", "AVC_TS_SD_EU"},
                                         {"wi=1000", "AVC_TS_HD_EU"},
                                         {"wi=1280 he=720 fr=50000", "AVC_TS_EU|_ISO|/AVC_TS_HD_EU"},
                                         {"fr=30000", "AVC_TS_HP_HD_HEAACv2_L4|_ISO|_T|"}});
    FilmTable("JP", true)
        .ExpectOfPackets(start + "fr=29970 ca=AAC sf=48000 ac=2 ar=192000",
                         {{"", "AVC_TS_JP_AAC|_T|"}, {"wi=1440", "AVC_TS_JP_AAC|_T|"}, {"fr=24000", ""}});
    FilmTable("NA", true)
        .ExpectOfPackets(start + kAC3,
                         {{"fr=59940 wi=1280 he=720 pr=progressive", "AVC_TS_NA|_ISO|_T|/AVC_TS_HD_60_AC3"},
                          {"fr=25000", "AVC_TS_HD_50_AC3"}});
    for (const char* const region : {"", "EU", "NA", "JP", "KO"}) {
        FilmTable(region).ExpectOfPackets(start + heaac,
                                          {{"", ""}, {"fr=29970", ""}, {"wi=720 he=576 vl=30", ""}});
    }
}

TEST(FilmProfiles, H264InMatroska) {
    const FilmTable table;
    const std::string start = "mt=video/x-matroska ct=MKV vc=H264 vl=40 pr=progressive ";
    const std::string full = start + "wi=1920 he=1080 fr=30000 ";
    table.Expect(full + "vp=Main vr=20000000 " + kAAC,
                 {{"", "AVC_MKV_MP_HD_AAC_MULT5"},
                  {"ac=6 ar=1440000", "AVC_MKV_MP_HD_AAC_MULT5"},
                  {"ac=6 ar=1441441", ""},
                  {"vp=ConstrainedBaseline", "AVC_MKV_MP_HD_AAC_MULT5"},
                  {"vp=Baseline", ""},
                  {"vp=High", "AVC_MKV_HP_HD_AAC_MULT5"},
                  {"vp=High10", ""},
                  {"vr=20020001", "AVC_MKV_HP_HD_AAC_MULT5"},
                  {"vr=30030001", ""},
                  {"he=1152 fr=25000", "AVC_MKV_MP_HD_AAC_MULT5"},
                  {"he=1152", ""},
                  {"fr=50000", ""},
                  {"wi=1280 he=720 fr=60000", "AVC_MKV_MP_HD_AAC_MULT5"},
                  {"wi=3840 he=2160", ""},
                  {"vl=41", ""},
                  {"ca=AC3 ac=6 ar=640000", "AVC_MKV_MP_HD_AC3"},
                  {"ca=EAC3 ac=6 ar=3024000", "AVC_MKV_MP_HD_EAC3"},
                  {"ca=HE-AAC ac=6", "AVC_MKV_MP_HD_HEAAC_L4"},
                  {"ca=MP3 ar=320000", "AVC_MKV_MP_HD_MPEG1_L3"},
                  {"ca=MP3 ar=320321", ""},
                  {"ca=DTS ac=6", ""},
                  {"ca=FLAC", ""},
                  {"ca=Opus", ""},
                  {"ca=MLP", ""},
                  {"ca=", ""},
                  {"vc=H265", ""},
                  {"mt=video/webm ct=WebM", ""},
                  {"fr=4294967295", ""},
                  {"vr=4294967295", ""}});
    table.Expect(full + "vp=High vr=30000000 " + kAC3, {{"", "AVC_MKV_HP_HD_AC3"},
                                                        {"ar=640641", ""},
                                                        {"vr=30030001", ""},
                                                        {"ca=EAC3", "AVC_MKV_HP_HD_EAC3"},
                                                        {"ca=EAC3 vr=35000000", "AVC_MKV_HP_HD_EAC3"},
                                                        {"ca=EAC3 vr=35035001", ""},
                                                        {"ca=HE-AAC", "AVC_MKV_HP_HD_HEAAC_L4"},
                                                        {"ca=MP3 ac=2 ar=320000", "AVC_MKV_HP_HD_MPEG1_L3"}});
}

TEST(FilmProfiles, H264InMP4WithOtherSound) {
    const FilmTable table;
    const std::string small =
        "mt=video/mp4 vc=H264 vp=Baseline vl=12 wi=320 he=240 fr=20000 vr=384000 br=600000 ";
    table.Expect(small + "ca=HE-AAC sf=48000 ac=2 ar=48000",
                 {{"", "AVC_MP4_BL_L12_CIF15_HEAAC"},
                  {"wi=352 he=288 fr=15000", "AVC_MP4_BL_CIF15_HEAAC"},
                  {"wi=352 he=288 fr=15016", "AVC_MP4_BL_CIF30_HEAAC_L2"},
                  {"vr=384385 br=600000", "AVC_MP4_BL_CIF30_HEAAC_L2"},
                  {"br=600601", "AVC_MP4_BL_CIF30_HEAAC_L2"},
                  {"vl=20", "AVC_MP4_BL_CIF30_HEAAC_L2"},
                  {"vr=2000000 br=3000000", "AVC_MP4_BL_CIF30_HEAAC_L2"},
                  {"br=3003001", ""},
                  {"vl=21", ""},
                  {"ca=HE-AACv2", ""}});
    table.Expect("mt=video/mp4 vc=H264 vp=Baseline vl=9 wi=176 he=144 fr=15000 vr=128000 br=256000 "
                 "ca=HE-AAC sf=48000 ac=2 ar=48000",
                 {{"", "AVC_MP4_BL_L1B_QCIF15_HEAAC"},
                  {"vl=10", "AVC_MP4_BL_L1B_QCIF15_HEAAC"},
                  {"vl=11", "AVC_MP4_BL_L12_CIF15_HEAAC"},
                  {"vr=128129", "AVC_MP4_BL_L12_CIF15_HEAAC"},
                  {"br=256257", "AVC_MP4_BL_L12_CIF15_HEAAC"},
                  {"fr=15016", "AVC_MP4_BL_L12_CIF15_HEAAC"},
                  {"wi=177", "AVC_MP4_BL_L12_CIF15_HEAAC"}});
    table.Expect(small + "ca=AMR sf=8000 ac=1 ar=12200",
                 {{"", "AVC_MP4_BL_CIF15_AMR"}, {"ar=12213", ""}, {"vl=13", ""}, {"br=600601", ""}});
    table.Expect(
        "mt=video/mp4 vc=H264 vp=ConstrainedBaseline vl=30 wi=720 he=576 fr=25000 vr=4500000 br=5000000 "
        "ca=HE-AAC sf=48000 ac=2 ar=64000",
        {{"", "AVC_MP4_BL_L3L_SD_HEAAC"},
         {"vr=4504501", ""},
         {"br=5005001", ""},
         {"vp=Baseline", ""},
         {"vl=31", ""}});
    table.Expect("mt=video/mp4 vc=H264 vp=Main vl=30 wi=720 he=576 fr=25000 vr=10000000 ca=EAC3 sf=48000 "
                 "ac=6 ar=3024000",
                 {{"", "AVC_MP4_MP_SD_EAC3"},
                  {"wi=864 he=480", "AVC_MP4_MP_SD_EAC3"},
                  {"wi=864 he=480 fr=30000", "AVC_MP4_HP_HD_EAC3"},
                  {"he=480 fr=30000", "AVC_MP4_MP_SD_EAC3"},
                  {"vr=10010001", "AVC_MP4_HP_HD_EAC3"},
                  {"vl=31", "AVC_MP4_HP_HD_EAC3"},
                  {"vp=High", "AVC_MP4_HP_HD_EAC3"},
                  {"ar=3027025", ""}});
}

TEST(FilmProfiles, H264In3GPP) {
    const FilmTable table;
    const std::string start =
        "mt=video/3gpp vc=H264 vp=Baseline wi=176 he=144 fr=15000 vr=128000 br=256000 vl=9 ";
    table.Expect(start + kAAC, {{"", "AVC_3GPP_BL_QCIF15_AAC"},
                                {"vl=10", "AVC_3GPP_BL_QCIF15_AAC"},
                                {"vl=11", ""},
                                {"vr=128129", ""},
                                {"br=256257", ""},
                                {"fr=15016", ""},
                                {"wi=177", ""},
                                {"ar=128129", ""},
                                {"ca=AAC-LTP", "AVC_3GPP_BL_QCIF15_AAC_LTP"},
                                {"ca=HE-AAC", "AVC_3GPP_BL_QCIF15_HEAAC"},
                                {"ca=AMR sf=8000 ac=1 ar=12200", "AVC_3GPP_BL_QCIF15_AMR"},
                                {"ca=AMR-WB+ ar=24000", "AVC_3GPP_BL_QCIF15_AMR_WBplus"},
                                {"ca=AMR-WB sf=16000 ac=1 ar=12650", ""},
                                {"mt=video/3gpp2", ""}});
    table.Expect(
        "mt=video/3gpp vc=H264 vp=Baseline vl=12 wi=352 he=288 fr=15000 vr=384000 br=600000 ca=AMR-WB+ "
        "sf=16000 ac=1 ar=24000",
        {{"", "AVC_3GPP_BL_CIF15_AMR_WBplus"},
         {"fr=30000", "AVC_3GPP_BL_CIF30_AMR_WBplus"},
         {"vl=20 vr=2000000 br=3000000", "AVC_3GPP_BL_CIF30_AMR_WBplus"},
         {"br=3003001", ""},
         {"ar=48049", ""}});
}

// What servers are known to call by a name that is another's.

TEST(FilmProfiles, NamesOfOthersAreNotGiven) {
    const std::string ts = "mt=video/mp2t ct=TS ";
    const std::string tts = "mt=video/vnd.dlna.mpeg-tts ct=TTS ";
    const std::string sd = "vc=H264 vp=Main vl=30 wi=720 he=576 fr=25000 vr=5000000 br=6000000 ";
    const std::string hd =
        "vc=H264 vp=High vl=40 wi=1920 he=1080 fr=25000 pr=interlaced vr=9000000 br=10000000 ";
    const std::string dts = "ca=DTS sf=48000 ac=6 ar=768000 ";
    FilmTable().Expect(
        "",
        {{ts + sd + dts, ""}, // DTS is not AC-3
         {ts + kPAL + dts, ""},
         {"mt=video/mpeg ct=PS " + kPAL + dts, ""},
         {ts + sd + "vp=High " + kAC3, "AVC_TS_HP_HD_AC3_ISO as video/mpeg"}, // and not MP
         {ts + sd + "vp=High " + kAAC, ""},
         {ts + kMPEG2 + "vl=40 pr=progressive wi=1280 he=720 fr=50000 br=15000000 " + kAC3, ""}, // not NA
         {"mt=video/mpeg ct=PS " + kPAL + kAC3, "MPEG_PS_PAL"}, // and not NTSC
         {ts + kPAL + "vc=H265 " + kAC3, ""},                   // HEVC has no name of MPEG-2,
         {ts + sd + "vc=H265 " + kAC3, ""},                     // nor of H.264
         {"mt=video/mp4 vc=H265 vl=40 vp=Main wi=1280 he=720 fr=25000 vr=900000 br=1000000 " + kAAC, ""},
         {"mt=video/x-matroska ct=MKV vc=H265 vl=40 vp=Main wi=1280 he=720 fr=25000 vr=900000 " + kAAC, ""},
         {"mt=video/mpeg ct=TS " + kPAL + kAC3, "MPEG_TS_SD_EU_ISO"}, // and not PS
         {"mt=video/mp4 vc=H264 vp=Baseline vl=20 wi=352 he=288 fr=25000 vr=3500000 br=3700000 " + kAAC,
          "AVC_MP4_BL_L3_SD_AAC"}, // and not MP_SD
         {"mt=video/mp4 vc=H264 vp=Baseline vl=20 wi=352 he=288 fr=25000 vr=3500000 br=3700000 " + kAC3, ""},
         {tts + kPAL + kMP2, "MPEG_TS_SD_EU_T"},                                     // and not _ISO
         {"mt=video/vnd.dlna.mpeg-tts ct=TTS-zero " + kPAL + kMP2, "MPEG_TS_SD_EU"}, // and not _T
         {"mt=video/vnd.dlna.mpeg-tts " + kPAL + kMP2, ""},
         {ts + hd + kAC3, "AVC_TS_HD_50_AC3_ISO as video/mpeg"}, // and not MPEG_TS_SD_EU_ISO
         {"mt=video/x-ms-wmv ct=ASF vc=WMV2 wi=320 he=240 fr=25000 vr=500000 ca=WMA2 sf=44100 ac=2 ar=64000",
          ""},
         {"mt=audio/x-ms-wma ca=WMA2 sf=48000 ac=2 ar=440000", ""}, // WMA Pro is another codec
         {"mt=audio/x-ms-wma ca=WMA2 sf=96000 ac=2 ar=192000", ""},
         {"mt=image/jpeg pr=progressive cr=4:2:0 cd=8 wi=640 he=480", ""},
         {"mt=audio/mpeg ca=MP3 sf=22050 ac=2 ar=64000", "MP3X"},     // and not MP3
         {"mt=audio/wav ca=LPCM sf=44100 ac=2 bs=16 ar=1411200", ""}, // little endian, with a header
         {"mt=audio/x-aiff ca=LPCM sf=44100 ac=2 bs=16 ar=1411200", ""}});
}

TEST(FilmProfiles, WithoutAFactThatAProfileAsksForThereIsNone) {
    const std::vector<std::string> records = {
        "mt=video/mpeg ct=PS vc=MPEG2 vp=Main vl=20 wi=720 he=576 fr=25000 vr=6000000 ca=AC3 sf=48000 ac=6 "
        "ar=448000",
        "mt=video/mp2t ct=TS vc=MPEG2 vp=Main vl=20 wi=720 he=480 fr=29970 br=6000000 ca=AC3 sf=48000 ac=6 "
        "ar=448000",
        "mt=video/vnd.dlna.mpeg-tts ct=TTS vc=H264 vp=High vl=40 wi=1280 he=720 fr=25000 vr=6000000 ca=AC3 "
        "sf=48000 "
        "ac=6 ar=448000",
        "mt=video/x-matroska vc=H264 vp=High vl=40 wi=1280 he=720 fr=25000 vr=6000000 ca=AAC sf=48000 ac=2 "
        "ar=128000",
        "mt=video/mp4 vc=H264 vp=High vl=40 wi=1280 he=720 fr=25000 vr=6000000 ca=AAC sf=48000 ac=2 "
        "ar=128000"};
    for (const std::string& record : records) {
        ExpectEachFactAskedFor(record);
    }
}
