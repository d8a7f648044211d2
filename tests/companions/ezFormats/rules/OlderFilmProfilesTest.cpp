#include "companions/ezFormats/rules/FilmTable.h"

#include <gtest/gtest.h>

// The names of films in the codecs before H.264, by the facts of a record: MPEG-4 part 2, H.263, Windows
// Media and VC-1. The limits stand here once more, at each edge and one beyond.

namespace {

const std::string kAAC = "ca=AAC sf=48000 ac=2 ar=128000 ";
const std::string kAMR = "ca=AMR sf=8000 ac=1 ar=12200 ";
const std::string kG726 = "ca=G726 sf=8000 ac=1 ar=32000 ";
const std::string kWMA = "ca=WMA2 sf=44100 ac=2 ar=128000 ";
const std::string kSimple = "vc=MPEG4 vp=Simple vl=30 wi=352 he=288 fr=30000 ";
const std::string kAdvanced = "vc=MPEG4 vp=AdvancedSimple vl=50 wi=720 he=576 fr=30000 vr=8000000 ";

} // namespace

// MPEG-4 part 2 and H.263.

TEST(OlderFilmProfiles, SimpleMPEG4InMP4ByItsLevel) {
    FilmTable().Expect("mt=video/mp4 " + kSimple + "vr=384000 br=600000 ca=AAC sf=48000 ac=2 ar=216000",
                       {{"", "MPEG4_P2_MP4_SP_AAC"},
                        {"ar=216216", "MPEG4_P2_MP4_SP_AAC"},
                        {"ar=216217", "MPEG4_P2_MP4_SP_VGA_AAC"},
                        {"br=600600", "MPEG4_P2_MP4_SP_AAC"},
                        {"br=600601", "MPEG4_P2_MP4_SP_VGA_AAC"},
                        {"vr=384385", "MPEG4_P2_MP4_SP_VGA_AAC"},
                        {"wi=353", "MPEG4_P2_MP4_SP_VGA_AAC"},
                        {"fr=30031", ""},
                        {"vl=20 vr=128128", "MPEG4_P2_MP4_SP_AAC"},
                        {"vl=20 vr=128129", "MPEG4_P2_MP4_SP_VGA_AAC"},
                        {"vl=9 vr=128128", "MPEG4_P2_MP4_SP_AAC"},
                        {"vl=10 vr=64064", "MPEG4_P2_MP4_SP_AAC"},
                        {"vl=10 vr=64065", "MPEG4_P2_MP4_SP_VGA_AAC"},
                        {"vl=0 vr=64064", "MPEG4_P2_MP4_SP_AAC"},
                        {"ca=AAC-LTP", "MPEG4_P2_MP4_SP_AAC_LTP"},
                        {"ca=AAC-LTP vl=20 vr=128000", "MPEG4_P2_MP4_SP_AAC_LTP"},
                        {"ca=AAC-LTP vl=20 vr=128129", ""},
                        {"ca=AAC-LTP vl=10 vr=64000", "MPEG4_P2_MP4_SP_AAC_LTP"},
                        {"ca=AAC-LTP ar=216217", ""},
                        {"ca=HE-AAC", "MPEG4_P2_MP4_SP_HEAAC"},
                        {"ca=HE-AAC vl=20 vr=128000", "MPEG4_P2_MP4_SP_HEAAC"},
                        {"ca=HE-AAC vl=10 vr=64000", "MPEG4_P2_MP4_SP_HEAAC"},
                        {"ca=HE-AAC ar=216217", "MPEG4_P2_MP4_SP_VGA_HEAAC"},
                        {"ca=HE-AACv2", ""},
                        {"ca=AC3", ""},
                        {"ca=MP3", ""},
                        {"ca=encrypted:AAC", ""},
                        {"ca=", ""},
                        {"vc=encrypted:MPEG4", ""},
                        {"mt=video/quicktime", ""},
                        {"mt=video/x-msvideo ct=AVI ca=MP3", ""},
                        {"mt=video/x-matroska ct=MKV", ""}});
}

TEST(OlderFilmProfiles, SimpleMPEG4InMP4ByItsSize) {
    const FilmTable table;
    table.Expect("mt=video/mp4 " + kSimple + "vl=20 fr=15000 vr=128000 " + kAAC,
                 {{"", "MPEG4_P2_MP4_SP_L2_AAC"},
                  {"fr=15015", "MPEG4_P2_MP4_SP_L2_AAC"},
                  {"fr=15016 br=600000", "MPEG4_P2_MP4_SP_AAC"},
                  {"wi=176 he=144 fr=30000", "MPEG4_P2_MP4_SP_L2_AAC"},
                  {"wi=177 he=144 fr=30000 br=600000", "MPEG4_P2_MP4_SP_AAC"},
                  {"ar=128129 br=600000", "MPEG4_P2_MP4_SP_AAC"},
                  {"vr=128129", "MPEG4_P2_MP4_SP_VGA_AAC"},
                  {"vl=30 br=600000", "MPEG4_P2_MP4_SP_AAC"},
                  {kAMR, "MPEG4_P2_MP4_SP_L2_AMR"},
                  {kAMR + "ar=12213", ""},
                  {kAMR + "sf=16000", ""},
                  {kAMR + "vl=30", ""},
                  {kAMR + "ca=AMR-WB", ""}});
    table.Expect("mt=video/mp4 " + kSimple + "wi=640 he=480 vr=3000000 ca=AAC sf=48000 ac=2 ar=256000",
                 {{"", "MPEG4_P2_MP4_SP_VGA_AAC"},
                  {"he=360", "MPEG4_P2_MP4_SP_VGA_AAC"},
                  {"vr=3003000", "MPEG4_P2_MP4_SP_VGA_AAC"},
                  {"ar=256257", ""},
                  {"vr=3003001", "MPEG4_P2_MP4_ASP_L5_SO_AAC"},
                  {"wi=641", "MPEG4_P2_MP4_ASP_L5_SO_AAC"},
                  {"ca=HE-AAC", "MPEG4_P2_MP4_SP_VGA_HEAAC"},
                  {"ca=HE-AAC vr=3003001", "MPEG4_P2_MP4_ASP_L5_SO_HEAAC"},
                  {"vl=50 wi=720 he=576 fr=25000 vr=8008000", "MPEG4_P2_MP4_SP_L5_AAC"},
                  {"vl=50 wi=720 he=480 fr=30000 vr=8008000", "MPEG4_P2_MP4_SP_L5_AAC"},
                  {"vl=50 wi=720 he=480 fr=30000 vr=8008001", ""},
                  {"vl=30 wi=720 he=480 vr=384384", "MPEG4_P2_MP4_SP_L5_AAC"},
                  {"vl=20 wi=720 he=480 vr=128128", "MPEG4_P2_MP4_SP_L5_AAC"},
                  {"vl=10 wi=720 he=480 vr=64064", "MPEG4_P2_MP4_SP_L5_AAC"},
                  {"vl=10 wi=1280 he=720 vr=64064", "MPEG4_P2_MP4_SP_L6_AAC"},
                  {"vl=20 wi=1280 he=720 vr=128128", "MPEG4_P2_MP4_SP_L6_AAC"},
                  {"vl=30 wi=1280 he=720 vr=384384", "MPEG4_P2_MP4_SP_L6_AAC"},
                  {"vl=30 wi=1280 he=720 vr=384385", ""},
                  {"vl=40 wi=640 he=480 vr=4004000", "MPEG4_P2_MP4_SP_L6_AAC"},
                  {"vl=50 wi=1280 he=720 vr=8008000", "MPEG4_P2_MP4_SP_L6_AAC"},
                  {"vl=60 wi=1280 he=720 vr=12012000", "MPEG4_P2_MP4_SP_L6_AAC"},
                  {"vl=60 wi=1280 he=720 vr=12012001", ""},
                  {"vl=60 wi=1281 he=720 vr=12000000", ""},
                  {"vl=60 wi=1280 he=720 fr=30031 vr=12000000", ""}});
}

TEST(OlderFilmProfiles, AdvancedSimpleMPEG4InMP4) {
    const FilmTable table;
    table.Expect("mt=video/mp4 " + kAdvanced + kAAC,
                 {{"", "MPEG4_P2_MP4_ASP_AAC"},
                  {"vl=0", "MPEG4_P2_MP4_ASP_AAC"},
                  {"vl=39", "MPEG4_P2_MP4_ASP_AAC"},
                  {"vl=51", ""},
                  {"wi=352 he=288", "MPEG4_P2_MP4_ASP_AAC"},
                  {"wi=721", ""},
                  {"he=577", ""},
                  {"fr=30031", ""},
                  {"vr=8008000", "MPEG4_P2_MP4_ASP_AAC"},
                  {"vr=8008001", ""},
                  {"ar=256256", "MPEG4_P2_MP4_ASP_AAC"},
                  {"ar=256257", ""},
                  {"ac=6", ""},
                  {"ca=HE-AAC", "MPEG4_P2_MP4_ASP_HEAAC"},
                  {"ca=HE-AAC ar=256257", "MPEG4_P2_MP4_ASP_HEAAC_MULT5"},
                  {"ca=HE-AAC ac=6", "MPEG4_P2_MP4_ASP_HEAAC_MULT5"},
                  {"ca=HE-AAC ac=6 ar=1441440", "MPEG4_P2_MP4_ASP_HEAAC_MULT5"},
                  {"ca=HE-AAC ac=6 ar=1441441", ""},
                  {"ca=HE-AAC ac=7", ""},
                  {"ca=AC3", ""},
                  {"ca=", ""},
                  {"vp=Core vl=20", ""},
                  {"vp=Main vl=40", ""},
                  {"mt=video/avi ct=AVI", ""}});
    // Simple objects alone: a stream of the simple profile.
    table.Expect("mt=video/mp4 " + kSimple + "wi=352 he=576 vr=2000000 " + kAAC,
                 {{"", "MPEG4_P2_MP4_ASP_L4_SO_AAC"},
                  {"vl=40 vr=2002000", "MPEG4_P2_MP4_SP_L6_AAC"},
                  {"vr=2002000", "MPEG4_P2_MP4_ASP_L4_SO_AAC"},
                  {"vr=2002001", "MPEG4_P2_MP4_ASP_L5_SO_AAC"},
                  {"wi=353", "MPEG4_P2_MP4_ASP_L5_SO_AAC"},
                  {"wi=720 vr=8008000", "MPEG4_P2_MP4_ASP_L5_SO_AAC"},
                  {"wi=720 vr=8008001", ""},
                  {"wi=721", ""},
                  {"he=577", ""},
                  {"fr=30031", ""},
                  {"ar=256257", ""},
                  {"ca=HE-AAC", "MPEG4_P2_MP4_ASP_L4_SO_HEAAC"},
                  {"ca=HE-AAC vl=40", "MPEG4_P2_MP4_ASP_L4_SO_HEAAC"},
                  {"ca=HE-AAC vl=50", "MPEG4_P2_MP4_ASP_L5_SO_HEAAC"},
                  {"ca=HE-AAC vl=60", ""},
                  {"ca=HE-AAC wi=720", "MPEG4_P2_MP4_ASP_L5_SO_HEAAC"},
                  {"ca=HE-AAC ac=6", "MPEG4_P2_MP4_ASP_L4_SO_HEAAC_MULT5"},
                  {"ca=HE-AAC ac=6 wi=720", "MPEG4_P2_MP4_ASP_L5_SO_HEAAC_MULT5"},
                  {"ca=AMR ac=1 sf=8000 ar=12200", ""}});
}

TEST(OlderFilmProfiles, MPEG4InTransportStreams) {
    const FilmTable table;
    const std::string mp1 = "ca=MP1 sf=48000 ac=2 ar=384000 ";
    table.ExpectOfPackets(kSimple + "vr=384000 br=600000 ca=AAC sf=48000 ac=2 ar=216000",
                          {{"", "MPEG4_P2_TS_SP_AAC"},
                           {"vl=20 vr=128000", "MPEG4_P2_TS_SP_AAC"},
                           {"vl=10 vr=64000", "MPEG4_P2_TS_SP_AAC"},
                           {"vl=10 vr=64065", ""},
                           {"vl=20 vr=128129", ""},
                           {"vr=384385", ""},
                           {"vl=40", ""},
                           {"br=600601", ""},
                           {"wi=353", ""},
                           {"he=289", ""},
                           {"fr=30031", ""},
                           {"ar=216217", ""},
                           {"sf=24000", ""}, // may be the core of HE-AAC
                           {"ca=HE-AAC", ""},
                           {"ca=", ""},
                           {"ct=", ""}});
    table.ExpectOfPackets(kSimple + "vr=384000 br=2000000 ca=AC3 sf=48000 ac=6 ar=640000",
                          {{"", "MPEG4_P2_TS_SP_AC3"},
                           {"vl=20 vr=128000", "MPEG4_P2_TS_SP_AC3"},
                           {"vl=10 vr=64000", "MPEG4_P2_TS_SP_AC3"},
                           {"vl=10 vr=64065", ""},
                           {"ar=640641", ""},
                           {"ca=EAC3", ""},
                           {"ca=DTS", ""},
                           {"ca=MP3 ac=2 ar=320320", "MPEG4_P2_TS_SP_MPEG1_L3"},
                           {"ca=MP3 ac=2 ar=320321", ""},
                           {"ca=MP3 ac=2 ar=320000 vl=20 vr=128000", "MPEG4_P2_TS_SP_MPEG1_L3"},
                           {"ca=MP3 ac=2 ar=320000 vl=10 vr=64000", "MPEG4_P2_TS_SP_MPEG1_L3"},
                           {"ca=MP3 ac=2 ar=64000 sf=22050", ""},
                           {"ca=MP2 ac=2 ar=384384", "MPEG4_P2_TS_SP_MPEG2_L2"},
                           {"ca=MP2 ac=2 ar=384385", ""},
                           {mp1, "MPEG4_P2_TS_SP_MPEG2_L2"},
                           {mp1 + "vl=20 vr=128000", "MPEG4_P2_TS_SP_MPEG2_L2"},
                           {mp1 + "vl=10 vr=64000", "MPEG4_P2_TS_SP_MPEG2_L2"}});
    table.ExpectOfPackets("vc=MPEG4 vp=Core vl=20 wi=352 he=288 fr=30000 vr=2000000 ca=AC3 sf=48000 ac=6 "
                          "ar=448000",
                          {{"", "MPEG4_P2_TS_CO_AC3"},
                           {"vl=10", "MPEG4_P2_TS_CO_AC3"},
                           {"vl=21", ""},
                           {"vl=0", ""},
                           {"vr=2002000", "MPEG4_P2_TS_CO_AC3"},
                           {"vr=2002001", ""},
                           {"wi=353", ""},
                           {"fr=30031", ""},
                           {"ca=MP2 ac=2 ar=384000", "MPEG4_P2_TS_CO_MPEG2_L2"},
                           {mp1, "MPEG4_P2_TS_CO_MPEG2_L2"},
                           {"ca=AAC ac=2", ""}, // no list has CO with these
                           {"ca=MP3 ac=2 ar=128000", ""}});
    table.ExpectOfPackets(kAdvanced + kAAC, {{"", "MPEG4_P2_TS_ASP_AAC"},
                                             {"vr=8008001", ""},
                                             {"wi=721", ""},
                                             {"fr=30031", ""},
                                             {"vl=51", ""},
                                             {"ar=256257", ""},
                                             {"sf=24000", ""},
                                             {"ca=AC3 ac=6 ar=640000", "MPEG4_P2_TS_ASP_AC3"},
                                             {"ca=AC3 ac=6 ar=640641", ""},
                                             {"ca=MP3", "MPEG4_P2_TS_ASP_MPEG1_L3"},
                                             {"ca=MP3 ar=320321", ""},
                                             {"ca=MP2", "MPEG4_P2_TS_ASP_MPEG2_L2"},
                                             {mp1, "MPEG4_P2_TS_ASP_MPEG2_L2"},
                                             {mp1 + "ar=384385", ""}});
}

TEST(OlderFilmProfiles, MPEG4InASFHasSoundOfTelephones) {
    FilmTable().Expect("mt=video/x-ms-wmv ct=ASF " + kSimple + "vr=384000 " + kG726,
                       {{"", "MPEG4_P2_ASF_SP_G726 as video/x-ms-asf"},
                        {"mt=video/x-ms-asf", "MPEG4_P2_ASF_SP_G726"},
                        {"vl=20 vr=128000", "MPEG4_P2_ASF_SP_G726 as video/x-ms-asf"},
                        {"vl=10 vr=64000", "MPEG4_P2_ASF_SP_G726 as video/x-ms-asf"},
                        {"vr=384385", "MPEG4_P2_ASF_ASP_L4_SO_G726 as video/x-ms-asf"},
                        {"he=576 vr=2002000", "MPEG4_P2_ASF_ASP_L4_SO_G726 as video/x-ms-asf"},
                        {"he=576 vr=2002001", "MPEG4_P2_ASF_ASP_L5_SO_G726 as video/x-ms-asf"},
                        {"wi=720 he=576 vr=8008000", "MPEG4_P2_ASF_ASP_L5_SO_G726 as video/x-ms-asf"},
                        {"wi=720 he=576 vr=8008001", ""},
                        {"wi=721", ""},
                        {"fr=30031", ""},
                        {"vl=60", ""},
                        {"vp=AdvancedSimple", ""},
                        {"ar=24000", ""},
                        {"ar=32033", ""},
                        {"sf=16000", ""},
                        {"ac=2", ""},
                        {"ca=WMA2 ac=1 sf=44100 ar=64000", ""},
                        {"ca=", ""}});
}

TEST(OlderFilmProfiles, SmallPicturesIn3GPP) {
    const FilmTable table;
    table.Expect("mt=video/3gpp ct=3GP vc=MPEG4 vp=Simple vl=9 wi=176 he=144 fr=15000 vr=128000 " + kAAC,
                 {{"", "MPEG4_P2_3GPP_SP_L0B_AAC"},
                  {"vl=0", "MPEG4_P2_3GPP_SP_L0B_AAC"},
                  {"vl=10", ""},
                  {"wi=128 he=96", "MPEG4_P2_3GPP_SP_L0B_AAC"},
                  {"wi=177", ""},
                  {"he=145", ""},
                  {"fr=15016", ""},
                  {"vr=128128", "MPEG4_P2_3GPP_SP_L0B_AAC"},
                  {"vr=128129", ""},
                  {"ar=128129", ""},
                  {kAMR, "MPEG4_P2_3GPP_SP_L0B_AMR"},
                  {kAMR + "ar=4750", "MPEG4_P2_3GPP_SP_L0B_AMR"},
                  {kAMR + "ar=4749", ""},
                  {kAMR + "ar=12213", ""},
                  {"ca=HE-AAC", ""},
                  {"mt=video/3gpp2", ""}});
    table.Expect("mt=video/3gpp ct=3GP vc=H263 vp=0 vl=10 wi=176 he=144 fr=15000 vr=64000 br=150000 "
                 "ca=AAC sf=8000 ac=1 ar=86000",
                 {{"", "MPEG4_H263_MP4_P0_L10_AAC"},
                  {"wi=128 he=96", "MPEG4_H263_MP4_P0_L10_AAC"},
                  {"ar=86087", ""},
                  {"vr=64065", ""},
                  {"br=150151", ""},
                  {"fr=15016", ""},
                  {"wi=177", ""},
                  {"vl=45", ""},
                  {"vl=9", ""},
                  {"ca=AAC-LTP", "MPEG4_H263_MP4_P0_L10_AAC_LTP"},
                  {"ca=AAC-LTP ar=86087", ""},
                  {"ca=HE-AAC", ""},
                  {"ca=AMR-WB+ sf=16000 ar=24000", "MPEG4_H263_3GPP_P0_L10_AMR_WBplus"},
                  {"ca=AMR-WB+ sf=16000 ar=48049", ""},
                  {"ca=AMR ar=12200", ""},
                  {"vp=3 ca=AMR ar=12200", "MPEG4_H263_3GPP_P3_L10_AMR"},
                  {"vp=3 ca=AMR ar=12213", ""},
                  {"vp=3 vl=20 ca=AMR ar=12200", ""},
                  {"vp=3", ""},
                  {"mt=video/mp4 ct=MP4", ""},
                  {"mt=video/x-flv ct=FLV vc=Sorenson", ""}});
}

// Windows Media.

TEST(OlderFilmProfiles, SimpleWMV9) {
    FilmTable().Expect(
        "mt=video/x-ms-wmv ct=ASF vc=WMV3 vp=Simple wi=176 he=144 fr=15000 vr=96000 "
        "ca=WMA2 sf=44100 ac=2 ar=192999",
        {{"", "WMVSPLL_BASE"},
         {"ca=WMA1", "WMVSPLL_BASE"},
         {"vr=96096", "WMVSPLL_BASE"},
         {"vr=96097", "WMVSPML_BASE"},
         {"fr=15016", "WMVSPML_BASE"},
         {"wi=177", "WMVSPML_BASE"},
         {"he=145", "WMVSPML_BASE"},
         {"wi=240 he=176 fr=30000 vr=384384", "WMVSPML_BASE"},
         {"wi=240 he=176 fr=30031 vr=384000", ""},
         {"wi=241 he=176 fr=30000 vr=384000", "WMVMED_BASE"},
         {"wi=352 he=288 vr=384000", "WMVSPML_BASE"},
         {"wi=352 he=288 fr=15016", "WMVMED_BASE"},
         {"wi=353 he=288", "WMVMED_BASE"},
         {"vr=384385", "WMVMED_BASE"},
         {"ar=193192", "WMVMED_FULL"}, // a thousandth above 192999 is measured; one more is not
         {"ca=MP3 ar=320320", "WMVSPML_MP3"},
         {"ca=MP3 ar=320321", ""},
         {"ca=MP3 ar=128000 sf=22050", ""},
         {"ca=MP3 ar=128000 vr=384385", ""},
         {"ca=WMA-Pro", "WMVMED_PRO"},
         {"ca=WMA-voice sf=8000 ac=1 ar=8000", ""},
         {"ca=AAC", ""},
         {"ca=", ""}});
}

TEST(OlderFilmProfiles, MainWMV9) {
    const FilmTable table;
    const std::string medium = "mt=video/x-ms-wmv ct=ASF vc=WMV3 vp=Main wi=720 he=576 fr=25000 vr=10000000 ";
    table.Expect(medium + kWMA, {{"", "WMVMED_BASE"},
                                 {"wi=176 he=144 fr=15000 vr=96000", "WMVMED_BASE"},
                                 {"he=480 fr=30000", "WMVMED_BASE"},
                                 {"he=480 fr=30031", ""},
                                 {"he=480 fr=29970", "WMVMED_BASE"},
                                 {"fr=25026", "WMVHIGH_FULL"},
                                 {"wi=721", "WMVHIGH_FULL"},
                                 {"vr=10010000", "WMVMED_BASE"},
                                 {"vr=10010001", "WMVHIGH_FULL"},
                                 {"vr=20020001", ""},
                                 {"wi=1920 he=1080 fr=30000 vr=20020000", "WMVHIGH_FULL"},
                                 {"wi=1921 he=1080", ""},
                                 {"wi=1920 he=1081", ""},
                                 {"wi=1920 he=1080 fr=30031", ""},
                                 {"ar=385385", "WMVMED_FULL"},
                                 {"ar=385386", ""},
                                 {"ar=385385 wi=1920", "WMVHIGH_FULL"},
                                 {"sf=96000", ""},
                                 {"ac=6", ""},
                                 {"ca=WMA-lossless bs=16", ""},
                                 {"ca=WMA-voice sf=8000 ac=1 ar=8000", ""},
                                 {"ca=MP3", ""},
                                 {"ca=encrypted:WMA2", ""},
                                 {"vc=encrypted:WMV3", ""},
                                 {"vp=", ""},
                                 {"vp=Complex", ""},
                                 {"ca=", ""},
                                 {"mt=video/x-matroska ct=MKV", ""},
                                 {"mt=video/x-msvideo ct=AVI", ""}});
    table.Expect(medium + "ca=WMA-Pro sf=96000 ac=8 ar=1500000", {{"", "WMVMED_PRO"},
                                                                  {"ar=1501500", "WMVMED_PRO"},
                                                                  {"ar=1501501", ""},
                                                                  {"sf=96001", ""},
                                                                  {"ac=9", ""},
                                                                  {"wi=1920 he=1080", "WMVHIGH_PRO"},
                                                                  {"wi=1920 he=1080 ar=1501501", ""},
                                                                  {"vr=10010001", "WMVHIGH_PRO"}});
}

TEST(OlderFilmProfiles, AdvancedVC1) {
    const FilmTable table;
    const FilmTable on("", true);
    const std::string vc1 = "mt=video/x-ms-wmv ct=ASF vc=VC1 vp=Advanced ";
    const std::string first = vc1 + "vl=10 wi=720 he=576 fr=25000 vr=10000000 ";
    const std::string second = vc1 + "vl=20 wi=1280 he=720 fr=30000 vr=20000000 ";
    table.Expect(first + kWMA, {{"", "VC1_ASF_AP_L1_WMA as video/x-ms-asf"},
                                {"mt=video/x-ms-asf", "VC1_ASF_AP_L1_WMA"},
                                {"vl=0", "VC1_ASF_AP_L1_WMA as video/x-ms-asf"},
                                {"he=480 fr=30000", "VC1_ASF_AP_L1_WMA as video/x-ms-asf"},
                                {"he=480 fr=30031", "VC1_ASF_AP_L2_WMA as video/x-ms-asf"},
                                {"fr=25026", "VC1_ASF_AP_L2_WMA as video/x-ms-asf"},
                                {"vr=10010001", "VC1_ASF_AP_L2_WMA as video/x-ms-asf"},
                                {"vl=20", "VC1_ASF_AP_L2_WMA as video/x-ms-asf"},
                                {"wi=721", "VC1_ASF_AP_L2_WMA as video/x-ms-asf"},
                                {"ca=WMA1 ar=385385", "VC1_ASF_AP_L1_WMA as video/x-ms-asf"},
                                {"ar=385386", ""},
                                {"ca=WMA-lossless bs=16", ""},
                                {"ca=WMA-voice sf=8000 ac=1 ar=8000", ""},
                                {"ca=MP3", ""},
                                {"ca=", ""},
                                {"vp=Main", ""},
                                {"vc=encrypted:VC1", ""},
                                {"mt=video/mp2t ct=TS ca=AC3", ""}});
    table.Expect(second + kWMA, {{"", "VC1_ASF_AP_L2_WMA as video/x-ms-asf"},
                                 {"wi=720 he=480 fr=60000", "VC1_ASF_AP_L2_WMA as video/x-ms-asf"},
                                 {"wi=720 he=480 fr=60061", ""},
                                 {"wi=720 he=481 fr=60000", ""},
                                 {"fr=30031", ""},
                                 {"vr=20020001", ""},
                                 {"wi=1281", ""},
                                 {"vl=30", ""},
                                 {"vl=30 wi=1920 he=1080", ""}});
    const std::string pro = "ca=WMA-Pro sf=48000 ac=6 ar=440000";
    table.Expect("", {{first + pro, ""}, {second + pro, ""}});
    on.Expect("", {{first + pro, "VC1_ASF_AP_L1_WMA as video/x-ms-asf"},
                   {second + pro, "VC1_ASF_AP_L2_WMA as video/x-ms-asf"},
                   {first + pro + " ar=1501501", ""},
                   {first + kWMA + "ca=WMA-lossless bs=16", ""}});
}

// What servers are known to call by a name that is another's.

TEST(OlderFilmProfiles, NamesOfOthersAreNotGiven) {
    const std::string wmv = "mt=video/x-ms-wmv ct=ASF ";
    const std::string small = "wi=320 he=240 fr=25000 vr=100000 ";
    const std::string high = "vc=WMV3 vp=Main wi=1920 he=1080 fr=24000 vr=9000000 ";
    FilmTable().Expect(
        "", {{wmv + "vc=WMV1 " + small + kWMA, ""}, // and not WMVMED
             {wmv + "vc=WMV2 " + small + kWMA, ""},
             {wmv + "vc=MSMPEG4v3 " + small + kWMA, ""},
             {wmv + "vc=MSS2 " + small + kWMA, ""},
             {wmv + high + kWMA, "WMVHIGH_FULL"}, // there is no WMVHIGH_BASE
             {wmv + "vc=WMV3 vp=Simple wi=176 he=144 fr=15000 vr=96000 ca=MP3 sf=44100 ac=2 ar=128000",
              "WMVSPML_MP3"}, // nor a WMVSPLL_MP3
             // Limits are in bits: eight times as much would be another's name, or none.
             {wmv + "vc=WMV3 vp=Simple wi=176 he=144 fr=15000 vr=768000 " + kWMA, "WMVMED_BASE"},
             {wmv + "vc=WMV3 vp=Main wi=720 he=480 fr=29970 vr=80000000 " + kWMA, ""},
             {wmv + high + "ca=WMA2 sf=44100 ac=2 ar=3080000", ""},
             {wmv + high + "ca=WMA2 sf=96000 ac=2 ar=192000", ""}, // WMA Pro is another codec
             {wmv + "vc=VC1 vp=Advanced vl=30 wi=1920 he=1080 fr=24000 vr=9000000 " + kWMA, ""}, // no L3
             {"mt=video/x-ms-wmv ct=ASF vc=MPEG2 vp=Main vl=20 wi=720 he=576 fr=25000 vr=6000000 br=7000000 "
              "ca=MP2 sf=48000 ac=2 ar=192000",
              ""}, // a recording of television in ASF has none
             {"mt=video/x-msvideo ct=AVI " + kAdvanced + "ca=MP3 sf=48000 ac=2 ar=128000", ""},
             {"mt=video/x-flv ct=FLV vc=H264 vp=Main vl=30 wi=640 he=360 fr=25000 vr=900000 " + kAAC, ""},
             {"mt=video/ogg ct=Ogg vc=Theora wi=640 he=360 fr=25000 ca=Vorbis sf=48000 ac=2 ar=128000", ""},
             {"mt=video/mp4 " + kAdvanced + "ca=AC3 sf=48000 ac=2 ar=192000", ""},
             {"mt=video/mp4 " + kAdvanced + "ca=MP3 sf=48000 ac=2 ar=192000", ""}});
}

TEST(OlderFilmProfiles, WithoutAFactThatAProfileAsksForThereIsNone) {
    const std::vector<std::string> records = {
        "mt=video/mp4 vc=MPEG4 vp=AdvancedSimple vl=50 wi=720 he=576 fr=25000 vr=6000000 ca=AAC sf=48000 "
        "ac=2 ar=128000",
        "mt=video/mp2t ct=TS vc=MPEG4 vp=Simple vl=30 wi=352 he=288 fr=25000 vr=300000 ca=AC3 sf=48000 ac=2 "
        "ar=192000",
        "mt=video/x-ms-wmv vc=MPEG4 vp=Simple vl=30 wi=352 he=288 fr=25000 vr=300000 ca=G726 sf=8000 ac=1 "
        "ar=32000",
        "mt=video/3gpp vc=H263 vp=0 vl=10 wi=176 he=144 fr=15000 vr=64000 br=150000 ca=AAC sf=8000 ac=1 "
        "ar=64000",
        "mt=video/x-ms-wmv vc=WMV3 vp=Main wi=720 he=576 fr=25000 vr=6000000 ca=WMA2 sf=48000 ac=2 ar=128000",
        "mt=video/x-ms-wmv vc=VC1 vp=Advanced vl=10 wi=720 he=576 fr=25000 vr=6000000 ca=WMA2 sf=48000 ac=2 "
        "ar=128000"};
    for (const std::string& record : records) {
        ExpectEachFactAskedFor(record);
    }
}
