#include "companions/ezFormats/rules/ProfileKit.h"

#include "ezFormats/rules/ProfileNames.h"

#include <gtest/gtest.h>

// Which names are DLNA's. Lists of them stand as they are read best: "{_ISO,,_T}" is each of its items.

namespace {

/// A text with alternatives in braces, in every way.
std::vector<std::string> Expanded(const std::string& aText) {
    const std::size_t open = aText.find('{');
    if (open == std::string::npos) {
        return {aText};
    }
    const std::size_t close = aText.find('}', open);
    std::istringstream items(aText.substr(open + 1, close - open - 1) + ",");
    std::vector<std::string> texts;
    for (std::string item; std::getline(items, item, ',');) {
        for (std::string& text : Expanded(aText.substr(0, open) + item + aText.substr(close + 1))) {
            texts.push_back(std::move(text));
        }
    }
    return texts;
}

/// What the check says of a name in a table.
std::vector<std::string> ProblemsOfName(const std::string& aName) {
    return ProblemsOf(aName + " audio/mpeg");
}

} // namespace

TEST(ProfileNames, AreThoseOfPublicLists) {
    std::size_t count = 0;
    for (const char* const names :
         {"MPEG1",
          "MPEG_PS_{PAL,NTSC}{,_XAC3}",
          "MPEG_PS_{SD,HD}_DTS",
          "MPEG_PS_HD_DTSHD{,_HRA,_MA}",
          "MPEG_ES_{PAL,NTSC}{,_XAC3}",
          "MPEG_TS_SD_EU{_ISO,,_T}",
          "MPEG_TS_{SD,HD}_{NA,KO}{,_XAC3}{_ISO,,_T}",
          "MPEG_TS_SD_EU_AC3_{ISO,T}",
          "MPEG_TS_JP_T",
          "MPEG_TS_SD_JP_MPEG1_L2_T",
          "MPEG_TS_MP_LL_AAC{_ISO,,_T}",
          "MPEG_TS_SD_{50,60}_{L2,AC3}_T",
          "MPEG_TS_HD_{,X_}{50,60}_L2_{ISO,T}",
          "MPEG_TS_NA{,_3DFC}_ISO",
          "MPEG_TS_{SD,HD}_NA_MPEG1_L2_{ISO,T}",
          "MPEG_TS_DTS_{ISO,T}",
          "MPEG_TS_DTSHD_{HRA,MA}_{ISO,T}",
          "DIRECTV_TS_SD",
          "AVC_MP4_BL_CIF15_{AAC_520,AAC,HEAAC,AMR,AAC_350,AAC_LTP}",
          "AVC_MP4_BL_{L12_CIF15,L1B_QCIF15}_HEAAC",
          "AVC_MP4_BL_CIF30_{AAC_940,AAC_MULT5,AC3,MPEG1_L3,HEAAC_L2}",
          "AVC_MP4_BL_L2_CIF30_AAC",
          "AVC_MP4_BL_L3_SD_AAC",
          "AVC_MP4_BL_L3L_SD_{AAC,HEAAC}",
          "AVC_MP4_BL_{L31,L32}_HD_AAC",
          "AVC_MP4_MP_SD_{AAC_MULT5,AC3,MPEG1_L3,EAC3,HEAAC_L2,HEAAC_L4}",
          "AVC_MP4_MP_SD_{AAC_LTP,AAC_LTP_MULT5,AAC_LTP_MULT7,ATRAC3plus,BSAC,AAC_LC}",
          "AVC_MP4_MP_HD_{720p,1080i}_AAC",
          "AVC_MP4_HP_HD_{AAC,EAC3,HEAAC_L2,DTS,DTSHD}",
          "AVC_MP4_HP_{SD,HD}_HEAACv2_L4",
          "AVC_MP4_HD_HEAACv2_L6",
          "AVC_MP4_{EU,LPCM}",
          "AVC_3GPP_BL_QCIF15_{AAC,AAC_LTP,HEAAC,AMR,AMR_WBplus}",
          "AVC_3GPP_BL_{CIF15,CIF30}_AMR_WBplus",
          "AVC_TS_BL_CIF15_{AAC_540,AAC,AAC_LTP,BSAC}{_ISO,,_T}",
          "AVC_TS_BL_CIF30_{AAC_940,AAC_MULT5,AC3,MPEG1_L3,HEAAC_L2}{_ISO,,_T}",
          "AVC_TS_MP_SD_{AAC_MULT5,AC3,MPEG1_L3,HEAAC_L2,AAC_LTP,BSAC}{_ISO,,_T}",
          "AVC_TS_MP_HD_{AAC_MULT5,AAC,AC3,MPEG1_L3,HEAAC_L2,AAC_LTP}{_ISO,,_T}",
          "AVC_TS_HP_HD_AC3{_ISO,,_T}",
          "AVC_TS_HP_{SD,HD}_{EAC3,MPEG1_L2,HEAACv2_L4}_{ISO,T}",
          "AVC_TS_HP_SD_AC3_{ISO,T}",
          "AVC_TS_HD_{24,50,60}_AC3{_ISO,,_T}",
          "AVC_TS_HD_{24,50,60}_{AC3_X,LPCM}_T",
          "AVC_TS_NA_{ISO,T}",
          "AVC_TS_EU_ISO",
          "AVC_TS_{SD,HD}_EU{_ISO,,_T}",
          "AVC_TS_JP_AAC_T",
          "AVC_TS_HD_DTS_{ISO,T}",
          "AVC_TS_NA_3DFC_ISO",
          "AVC_TS_SHP_HD_EU_{AC3,HEAACv2_L4}_T",
          "AVC_MKV_{MP,HP}_HD_{AAC_MULT5,AC3,MPEG1_L3,EAC3,HEAAC_L4}",
          "AVC_MKV_HP_HD_{DTS,DTSE,DTSL,MLP}",
          "DASH_{AVC_MP4_SD,AVC_MP4_HD,AVC_TS_SD_ISO,AVC_TS_HD_ISO,HEVC_MP4_UHD_NA}",
          "MPEG4_P2_TS_{SP,ASP,CO}_{AC3,MPEG2_L2}{_ISO,,_T}",
          "MPEG4_P2_TS_{SP,ASP}_{AAC,MPEG1_L3}{_ISO,,_T}",
          "MPEG4_P2_MP4_SP_{AAC,HEAAC,ATRAC3plus,AAC_LTP,L2_AAC,L2_AMR,VGA_AAC,VGA_HEAAC,L5_AAC,L6_AAC}",
          "MPEG4_P2_MP4_ASP_{AAC,HEAAC,HEAAC_MULT5,ATRAC3plus}",
          "MPEG4_P2_MP4_ASP_{L4,L5}_SO_{AAC,HEAAC,HEAAC_MULT5}",
          "MPEG4_P2_ASF_{SP,ASP_L4_SO,ASP_L5_SO}_G726",
          "MPEG4_P2_3GPP_SP_L0B_{AAC,AMR}",
          "MPEG4_H263_MP4_P0_L10_AAC{,_LTP}",
          "MPEG4_H263_3GPP_{P0_L10_AMR_WBplus,P3_L10_AMR}",
          "MPEG4_P2_MP4_NDSD",
          "WMV{SPLL,SPML,MED,HM}_BASE",
          "WMV{MED,HIGH}_{FULL,PRO}",
          "WMVSPML_MP3",
          "VC1_ASF_AP_{L1,L2}_WMA",
          "VC1_TS_AP_{L1,L2}_AC3_ISO",
          "LPCM{,_low,_MPS}",
          "MP3{,X}",
          "AAC_{ADTS,ISO}{,_192,_320}",
          "AAC_MULT5_{ADTS,ISO}",
          "AAC_LTP_{ISO,MULT5_ISO,MULT7_ISO}",
          "HEAAC_{L2,L3,MULT5}_{ADTS,ISO}",
          "HEAAC_L2_{ADTS,ISO}_320",
          "HEAACv2_{L2,L2_320,L2_128,L3,L4,MULT5}",
          "BSAC{,_MULT5}_ISO",
          "{AC3,EAC3,ATRAC3plus}",
          "WMA{BASE,FULL,PRO,LSL,LSL_MULT5}",
          "{DTS,DTSHD_MA,DTSHD_HRA,DTSHD_LBR}",
          "AMR_{3GPP,WBplus}",
          "JPEG_{TN,SM,MED,LRG,SM_ICO,LRG_ICO}",
          "JPEG_RES_{1,640,4096}_{1,480,4096}",
          "PNG_{TN,LRG,SM_ICO,LRG_ICO}",
          "GIF_LRG"}) {
        for (const std::string& name : Expanded(names)) {
            EXPECT_TRUE(ProfileNames_Has(name)) << name;
            ++count;
        }
    }
    EXPECT_GT(count, 380U);
}

// What servers send nevertheless, and what slips of theirs would make of a name.
TEST(ProfileNames, AreNotThoseThatNoListHas) {
    for (const char* const names :
         {"{AVI,MKV,MATROSKA,FLV,OGV,OGG,FLAC,DSF,DFF,WAV,WTV,DVR_MS,MP2_MPS,LPCM16_44_STEREO}",
          "WMA_{BASE,FULL,PRO}",
          "{WMVHIGH_BASE,WMVSPLL_MP3,BMP_LRG,TIFF_LRG,PNG_SM,PNG_MED}",
          "{VC_ASF_AP_L2_WMA,VC1_ASF_AP_L3_WMA}",
          "AVC_MP4_{HP_HD,BL,MP_SD}",
          "AVC_TS_{NA,JP}",
          "MPEG_TS_SD_JP",
          "MPEG_TS_HD_EU{_ISO,,_T}",
          "AVC_MP4_BL_CIF30_AAC_520",
          "AVC_MP4_MP_HD_AC3",
          "AVC_TS_BL_CIF15_AC3{_ISO,,_T}",
          "MPEG4_P2_TS_{SP,ASP}_AC3_L3",
          "MPEG4_P2_TS_CO_{AAC,MPEG1_L3}{_ISO,,_T}",
          "AVC_TS_EU{,_T}",
          "MPEG_TS_SD_EU_AC3",
          "AVC_TS_HP_SD_AC3",
          "MPEG_TS_JP{_ISO,}",
          "MPEG_TS_SD_50_L2{_ISO,}",
          "AVC_TS_JP_AAC{_ISO,}",
          "AVC_TS_HD_50_LPCM{_ISO,}",
          "{mp3,MP,MP3XX,MP3_ISO,MP4,AMR_WBPLUS,AAA,ZZZ}",
          "{DTCP,WMDRM}_MP3",
          "JPEG_RES_{,640,640_,_480,0_480,640_480_1,640x480,10000_1}"}) {
        for (const std::string& name : Expanded(names)) {
            EXPECT_FALSE(ProfileNames_Has(name)) << name;
            EXPECT_EQ(ProblemsOfName(name),
                      std::vector<std::string>{"1: DLNA knows no profile \"" + name + "\""});
        }
    }
    EXPECT_EQ(ProblemsOfName("MP3"), std::vector<std::string>());
    EXPECT_FALSE(ProfileNames_Has(""));
}
