#include "companions/ezFormats/rules/ProfileKit.h"
#include "companions/ezFormats/rules/ProfileOracle.h"

#include "ezFormats/rules/ProfileRuleOrder.h"
#include "ezFormats/rules/ProfileRuleReader.h"
#include "ezFormats/rules/ProfileRuleTable.h"

#include <gtest/gtest.h>

// Profiles of families that have no parser yet, written as rules: the language can say what DLNA asks of
// them.

namespace {

bool IsAnyType(std::string_view aMimeType) {
    return aMimeType.find('/') != std::string_view::npos && aMimeType.find(';') == std::string_view::npos;
}

/// A table of any MIME types.
class Family {
public:
    explicit Family(const std::string& aTable)
        : mList(ProfileRules_Read(aTable, &mProblems, IsAnyType)), mTable(mList) {
        ProfileRules_FindLosers(mList.mRules, &mProblems);
        for (const ProfileRulesProblem& problem : mProblems) {
            ADD_FAILURE() << problem.mLine << ": " << problem.mText;
        }
    }

    /// "profile MIME type", as a record is announced; "" without a profile.
    std::string Announced(const std::string& aRecord) const {
        const std::unique_ptr<ezMediaInfo> info = RecordOf(aRecord);
        const ezCString type = info->GetCString(kezInfo_MimeType, "");
        const ProfileRuleTable::Match match =
            mTable.FindMet(ProfileRuleList_FindMimeType(mList, type.View()), *info);
        const ProfileRule* const plain = FirstMet(mList, *info);
        if (match.mRule == ProfileRuleTable::kNone) {
            EXPECT_EQ(plain, nullptr) << aRecord;
            return "";
        }
        EXPECT_EQ(plain, &mList.mRules[match.mRule]) << aRecord;
        return Str(mList.mRules[match.mRule].mProfile) + " " + Str(mList.mMimeTypes[match.mMimeType]);
    }

private:
    std::vector<ProfileRulesProblem> mProblems;
    ProfileRuleList mList;
    ProfileRuleTable mTable;
};

struct Media {
    std::string mRecord;
    std::string mAnnounced;
};

void ExpectAnnounced(const Family& aFamily, const std::vector<Media>& aMedia) {
    for (const Media& media : aMedia) {
        EXPECT_EQ(aFamily.Announced(media.mRecord), media.mAnnounced) << media.mRecord;
    }
}

} // namespace

TEST(ProfileFamilies, ProgramStreams) {
    const std::string pal =
        " video/mpeg container=PS video-codec=MPEG2 video-profile=Simple,Main "
        "video-level=Low-Main size=720x576@25,704x576@25,544x576@25,480x576@25,352x576@25,"
        "352x288@25 video-bit-rate=1-9.8M ";
    const std::string ntsc =
        " video/mpeg container=PS video-codec=MPEG2 video-profile=Simple,Main video-level=Low-Main "
        "size=720x480@29.97,704x480@29.97,544x480@29.97,480x480@29.97,352x480@29.97,352x240@29.97 "
        "video-bit-rate=1-9.8M ";
    const std::string ac3 = "audio-codec=AC3 sampling-rate=48k channels=1-6 audio-bit-rate=";
    const std::string mp2 = "audio-codec=MP2 sampling-rate=48k channels=";
    const Family family(
        "MPEG1 video/mpeg container=MPEG1 video-codec=MPEG1 size=352x288@25,352x240@29.97,352x240@23.976 "
        "video-bit-rate=1150000-1151929 audio-codec=MP2 sampling-rate=44.1k channels=2 "
        "audio-bit-rate=224k\n" +
        ("MPEG_PS_PAL" + pal + ac3 + "1-448k\n") +
        ("MPEG_PS_PAL" + pal + mp2 + "1 audio-bit-rate=64k-192k\n") +
        ("MPEG_PS_PAL" + pal + mp2 + "2 audio-bit-rate=64k-384k\n") +
        ("MPEG_PS_PAL" + pal + "audio-codec=LPCM sampling-rate=48k channels=1-2 bits-per-sample=16\n") +
        ("MPEG_PS_PAL_XAC3" + pal + ac3 + "1-640k\n") + ("MPEG_PS_NTSC" + ntsc + ac3 + "1-448k\n") +
        ("MPEG_PS_NTSC_XAC3" + ntsc + ac3 + "1-640k\n"));
    const std::string ps = "mt=video/mpeg ct=PS vc=MPEG2 vp=Main vl=20 vr=9800000 ";
    const std::string dvd = ps + "wi=720 he=576 fr=25000 ";
    ExpectAnnounced(
        family,
        {{dvd + "ca=AC3 sf=48000 ac=6 ar=448000", "MPEG_PS_PAL video/mpeg"},
         {dvd + "ca=AC3 sf=48000 ac=6 ar=640000", "MPEG_PS_PAL_XAC3 video/mpeg"},
         {dvd + "ca=AC3 sf=48000 ac=6 ar=641000", ""},
         {dvd + "ca=AC3 sf=44100 ac=6 ar=448000", ""},
         {dvd + "ca=MP2 sf=48000 ac=1 ar=192000", "MPEG_PS_PAL video/mpeg"},
         {dvd + "ca=MP2 sf=48000 ac=1 ar=224000", ""},
         {dvd + "ca=MP2 sf=48000 ac=2 ar=384000", "MPEG_PS_PAL video/mpeg"},
         {dvd + "ca=LPCM ar=48000 ac=2 bs=16", "MPEG_PS_PAL video/mpeg"},
         {dvd + "ca=LPCM ar=48000 ac=2 bs=20", ""},
         {dvd + "ca=DTS sf=48000 ac=6 ar=768000", ""},
         {ps + "wi=720 he=480 fr=29970 ca=AC3 sf=48000 ac=2 ar=192000", "MPEG_PS_NTSC video/mpeg"},
         {ps + "wi=720 he=480 fr=25000 ca=AC3 sf=48000 ac=2 ar=192000", ""},
         {ps + "wi=640 he=480 fr=29970 ca=AC3 sf=48000 ac=2 ar=192000", ""},
         {"mt=video/mpeg ct=TS vc=MPEG2 vp=Main vl=20 vr=1 wi=720 he=576 fr=25000 ca=AC3 sf=48000 ac=2 ar=1",
          ""},
         {"mt=video/mpeg ct=PS vc=MPEG2 vp=Main vl=40 vr=1 wi=720 he=576 fr=25000 ca=AC3 sf=48000 ac=2 ar=1",
          ""},
         {"mt=video/mpeg ct=MPEG1 vc=MPEG1 wi=352 he=240 fr=29970 vr=1150000 ca=MP2 sf=44100 ac=2 ar=224000",
          "MPEG1 video/mpeg"},
         {"mt=video/mpeg ct=MPEG1 vc=MPEG1 wi=352 he=288 fr=29970 vr=1150000 ca=MP2 sf=44100 ac=2 ar=224000",
          ""}});
}

TEST(ProfileFamilies, TransportStreamsByTheirPackets) {
    std::string table;
    for (const auto& [suffix, start] :
         {std::pair<const char*, const char*>{"_ISO", " video/mp2t>video/mpeg container=TS "},
          {"", " video/vnd.dlna.mpeg-tts container=TTS-zero "},
          {"_T", " video/vnd.dlna.mpeg-tts container=TTS "}}) {
        const std::string mpeg2 = start + std::string("video-codec=MPEG2 video-profile=Simple,Main ");
        const std::string eu = mpeg2 +
                               "video-level=Low-Main size=720x576@25,544x576@25,480x576@25,352x576@25,"
                               "352x288@25 video-bit-rate=1-15M sampling-rate=32k,44.1k,48k ";
        const std::string us =
            "bit-rate=1-19392700 audio-codec=AC3 sampling-rate=48k audio-bit-rate=1-448k\n";
        const std::string sd = std::string("MPEG_TS_SD_NA") + suffix + mpeg2 + "video-level=Low-Main ";
        table += std::string("MPEG_TS_SD_EU") + suffix + eu + "audio-codec=AC3 audio-bit-rate=1-448k\n";
        table += std::string("MPEG_TS_SD_EU") + suffix + eu + "audio-codec=MP2 audio-bit-rate=1-384k\n";
        table += std::string("MPEG_TS_SD_EU") + suffix + eu + "audio-codec=MP1 audio-bit-rate=1-448k\n";
        table += sd + "size=720x480,544x480,480x480,352x480 frame-rate=29.97 " + us;
        table += sd + "size=704x480,640x480 frame-rate=23.976,24,29.97,30 " + us;
        table += sd + "size=704x480,640x480 frame-rate=59.94,60 process=progressive " + us;
        table += std::string("MPEG_TS_HD_NA") + suffix + mpeg2 +
                 "video-level=Main-High size=1920x1080,1440x1080,1280x1080,1280x720 "
                 "frame-rate=23.976,24,29.97,30 " +
                 us;
        table += std::string("AVC_TS_HP_HD_AC3") + (*suffix == '\0' ? "_T" : suffix) + start +
                 "video-codec=H264 video-profile=Main,High video-level=1-4 size=-1920x1152 "
                 "video-bit-rate=1-30M audio-codec=AC3 sampling-rate=48k audio-bit-rate=64k-640k\n";
    }
    table += "MPEG_TS_JP_T video/vnd.dlna.mpeg-tts container=TTS video-codec=MPEG2 video-profile=Main "
             "video-level=Main-High size=1920x1080@29.97,1440x1080@29.97,1280x720@59.94,720x480@29.97,"
             "720x480@59.94 audio-codec=AAC sampling-rate=48k channels=1-6\n"
             "MPEG_TS_MP_LL_AAC_ISO video/mp2t>video/mpeg container=TS video-codec=MPEG2 video-profile=Main "
             "video-level=Low size=-352x288@1-30 video-bit-rate=1-4M audio-codec=AAC audio-bit-rate=1-256k\n";
    const Family family(table);
    const std::string pal = "vc=MPEG2 vp=Main vl=20 vr=6000000 wi=720 he=576 fr=25000 ";
    const std::string mp2 = "ca=MP2 sf=48000 ac=2 ar=192000";
    const std::string ac3 = " br=19392700 ca=AC3 sf=48000 ac=6 ar=448000";
    ExpectAnnounced(
        family,
        {{"mt=video/mp2t ct=TS " + pal + mp2, "MPEG_TS_SD_EU_ISO video/mpeg"},
         {"mt=video/mpeg ct=TS " + pal + mp2, "MPEG_TS_SD_EU_ISO video/mpeg"},
         {"mt=video/vnd.dlna.mpeg-tts ct=TTS " + pal + mp2, "MPEG_TS_SD_EU_T video/vnd.dlna.mpeg-tts"},
         {"mt=video/vnd.dlna.mpeg-tts ct=TTS-zero " + pal + mp2, "MPEG_TS_SD_EU video/vnd.dlna.mpeg-tts"},
         {"mt=video/mp2t " + pal + mp2, ""}, // as of a stream that is scrambled or holds several programs
         {"mt=video/mp2t ct=TS vc=MPEG2 vp=Main vl=20 vr=1 wi=704 he=576 fr=25000 " + mp2, ""},
         {"mt=video/mp2t ct=TS vc=MPEG2 vp=Main vl=20 wi=720 he=480 fr=29970" + ac3,
          "MPEG_TS_SD_NA_ISO video/mpeg"},
         {"mt=video/mp2t ct=TS vc=MPEG2 vp=Main vl=20 wi=720 he=480 fr=23976" + ac3, ""},
         {"mt=video/mp2t ct=TS vc=MPEG2 vp=Main vl=20 wi=704 he=480 fr=23976" + ac3,
          "MPEG_TS_SD_NA_ISO video/mpeg"},
         {"mt=video/mp2t ct=TS vc=MPEG2 vp=Main vl=20 pr=progressive wi=640 he=480 fr=59940" + ac3,
          "MPEG_TS_SD_NA_ISO video/mpeg"},
         {"mt=video/mp2t ct=TS vc=MPEG2 vp=Main vl=20 pr=interlaced wi=640 he=480 fr=59940" + ac3, ""},
         {"mt=video/mp2t ct=TS vc=MPEG2 vp=Main vl=30 wi=1440 he=1080 fr=29970" + ac3,
          "MPEG_TS_HD_NA_ISO video/mpeg"},
         {"mt=video/mp2t ct=TS vc=MPEG2 vp=High vl=30 wi=1440 he=1080 fr=29970" + ac3, ""},
         {"mt=video/vnd.dlna.mpeg-tts ct=TTS vc=H264 vp=High vl=40 wi=1920 he=1080 vr=20000000 fr=25000" +
              ac3,
          "AVC_TS_HP_HD_AC3_T video/vnd.dlna.mpeg-tts"},
         {"mt=video/vnd.dlna.mpeg-tts ct=TTS vc=MPEG2 vp=Main vl=40 wi=1920 he=1080 fr=29970 ca=AAC sf=48000 "
          "ac=6",
          "MPEG_TS_JP_T video/vnd.dlna.mpeg-tts"},
         {"mt=video/mp2t ct=TS vc=MPEG2 vp=Main vl=10 wi=320 he=240 fr=30000 vr=4000000 ca=AAC ar=256000",
          "MPEG_TS_MP_LL_AAC_ISO video/mpeg"},
         {"mt=video/mp2t ct=TS vc=MPEG2 vp=Main vl=20 wi=320 he=240 fr=30000 vr=4000000 ca=AAC ar=256000",
          ""}});
}

TEST(ProfileFamilies, CamcordersByTheirFields) {
    const std::string start = " video/vnd.dlna.mpeg-tts container=TTS video-codec=H264 "
                              "video-profile=Main,High audio-codec=AC3 audio-bit-rate=64k-640k ";
    const Family family("AVC_TS_HD_50_AC3_T" + start +
                        "process=interlaced size=1920x1080@25,1440x1080@25,720x576@25\n" +
                        ("AVC_TS_HD_50_AC3_T" + start + "process=progressive size=1280x720@50\n") +
                        ("AVC_TS_HD_60_AC3_T" + start +
                         "process=interlaced size=1920x1080@29.97,1440x1080@29.97,720x480@29.97\n") +
                        ("AVC_TS_HD_60_AC3_T" + start + "process=progressive size=1280x720@59.94\n") +
                        ("AVC_TS_HD_24_AC3_T" + start +
                         "process=progressive size=1920x1080,1280x720 frame-rate=23.976,24\n"));
    const std::string film =
        "mt=video/vnd.dlna.mpeg-tts ct=TTS vc=H264 vp=High ca=AC3 ar=256000 wi=1920 he=1080 ";
    ExpectAnnounced(family, {{film + "pr=interlaced fr=25000", "AVC_TS_HD_50_AC3_T video/vnd.dlna.mpeg-tts"},
                             {film + "pr=interlaced fr=29970", "AVC_TS_HD_60_AC3_T video/vnd.dlna.mpeg-tts"},
                             {film + "pr=progressive fr=23976", "AVC_TS_HD_24_AC3_T video/vnd.dlna.mpeg-tts"},
                             {film + "pr=progressive fr=25000", ""}});
}

TEST(ProfileFamilies, MatroskaAndAVI) {
    const std::string sizes = " size=-1920x1152@1-25,-1920x1080@1-30,-1280x720@1-60 ";
    const std::string start = " video/x-matroska container=MKV video-codec=H264 video-profile=";
    const std::string ac3 = "audio-codec=AC3 channels=1-6 audio-bit-rate=64k-640k\n";
    const Family family(
        "AVC_MKV_MP_HD_AC3" + start + "Main video-level=1b-4" + sizes + "video-bit-rate=1-20M " + ac3 +
        ("AVC_MKV_HP_HD_AC3" + start + "Main,High video-level=1b-4" + sizes + "video-bit-rate=1-30M " + ac3) +
        "MPEG4_P2_MP4_ASP_AAC video/mp4 container=MP4 video-codec=MPEG4\n");
    const std::string film = "mt=video/x-matroska ct=MKV vc=H264 ca=AC3 ac=6 ar=640000 vl=40 ";
    ExpectAnnounced(
        family,
        {{film + "vp=Main vr=20000000 wi=1920 he=1080 fr=30000", "AVC_MKV_MP_HD_AC3 video/x-matroska"},
         {film + "vp=Main vr=30000000 wi=1920 he=1152 fr=25000", "AVC_MKV_HP_HD_AC3 video/x-matroska"},
         {film + "vp=High vr=1 wi=1280 he=720 fr=60000", "AVC_MKV_HP_HD_AC3 video/x-matroska"},
         {film + "vp=High vr=1 wi=1920 he=1152 fr=30000", ""},
         {film + "vp=High vr=1 wi=1920 he=1080 fr=60000", ""},
         {"mt=video/x-matroska ct=WebM vc=VP9 ca=Opus ac=2 wi=640 he=360 fr=30000", ""},
         {"mt=video/avi ct=AVI vc=MPEG4 vp=AdvancedSimple ca=MP3 wi=640 he=360 fr=25000", ""}});
}

TEST(ProfileFamilies, WindowsMedia) {
    const std::string base =
        " audio-codec=WMA1,WMA2 sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-192999\n";
    const std::string full =
        " audio-codec=WMA1,WMA2 sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-385k\n";
    const std::string pro = " audio-codec=WMA-Pro sampling-rate=8k-96k channels=1-8 audio-bit-rate=1-1500k\n";
    const std::string medium = " video/x-ms-wmv container=ASF video-codec=WMV3 video-profile=Simple,Main "
                               "video-level=Low-Medium size=-720x480@1-30,-720x576@1-25 video-bit-rate=1-10M";
    const std::string vc1 =
        " video/x-ms-wmv>video/x-ms-asf container=ASF video-codec=VC1 video-profile=Advanced ";
    const Family family(
        "WMVSPLL_BASE video/x-ms-wmv container=ASF video-codec=WMV3 video-profile=Simple video-level=Low "
        "size=-176x144@1-15 video-bit-rate=1-96k" +
        base +
        "WMVSPML_BASE video/x-ms-wmv container=ASF video-codec=WMV3 video-profile=Simple "
        "video-level=Low-Medium "
        "size=-240x176@1-30,-352x288@1-15 video-bit-rate=1-384k" +
        base + ("WMVMED_BASE" + medium + base) + ("WMVMED_FULL" + medium + full) +
        ("WMVMED_PRO" + medium + pro) +
        "WMVHIGH_FULL video/x-ms-wmv container=ASF video-codec=WMV3 video-profile=Simple,Main "
        "video-level=Low-High size=-1920x1080@1-30 video-bit-rate=1-20M" +
        full +
        ("VC1_ASF_AP_L1_WMA" + vc1 + "video-level=0-1 size=-720x480@1-30,-720x576@1-25 video-bit-rate=1-10M" +
         full) +
        ("VC1_ASF_AP_L2_WMA" + vc1 +
         "video-level=0-2 size=-720x480@1-60,-1280x720@1-30 video-bit-rate=1-20M" + full) +
        "MPEG4_P2_ASF_SP_G726 video/x-ms-asf container=ASF video-codec=MPEG4 video-profile=Simple "
        "video-level=0-3 size=-352x288@1-30 audio-codec=G726 sampling-rate=8k channels=1 "
        "audio-bit-rate=32k\n" +
        ("WMABASE audio/x-ms-wma" + base) + ("WMAFULL audio/x-ms-wma" + full) +
        ("WMAPRO audio/x-ms-wma" + pro) +
        "WMALSL audio/x-ms-wma audio-codec=WMA-lossless channels=1-2 bits-per-sample=16\n");
    const std::string wmv = "mt=video/x-ms-wmv ct=ASF vc=WMV3 ";
    const std::string wma = "ca=WMA2 sf=44100 ac=2 ar=128000";
    ExpectAnnounced(
        family,
        {{wmv + "vp=Simple vl=10 wi=176 he=144 fr=15000 vr=96000 " + wma, "WMVSPLL_BASE video/x-ms-wmv"},
         {wmv + "vp=Simple vl=20 wi=240 he=176 fr=30000 vr=96000 " + wma, "WMVSPML_BASE video/x-ms-wmv"},
         {wmv + "vp=Main vl=20 wi=720 he=480 fr=29970 vr=2000000 " + wma, "WMVMED_BASE video/x-ms-wmv"},
         {wmv + "vp=Main vl=20 wi=720 he=480 fr=29970 vr=2000000 ca=WMA2 sf=44100 ac=2 ar=256000",
          "WMVMED_FULL video/x-ms-wmv"},
         {wmv + "vp=Main vl=20 wi=720 he=480 fr=29970 vr=2000000 ca=WMA-Pro sf=96000 ac=6 ar=440000",
          "WMVMED_PRO video/x-ms-wmv"},
         {wmv + "vp=Main vl=40 wi=1920 he=1080 fr=25000 vr=9000000 " + wma, "WMVHIGH_FULL video/x-ms-wmv"},
         {"mt=video/x-ms-wmv ct=ASF vc=WMV2 wi=320 he=240 fr=25000 vr=100000 " + wma, ""},
         {"mt=video/x-ms-wmv ct=ASF vc=VC1 vp=Advanced vl=10 wi=720 he=576 fr=25000 vr=1 " + wma,
          "VC1_ASF_AP_L1_WMA video/x-ms-asf"},
         {"mt=video/x-ms-asf ct=ASF vc=VC1 vp=Advanced vl=20 wi=1280 he=720 fr=24000 vr=1 " + wma,
          "VC1_ASF_AP_L2_WMA video/x-ms-asf"},
         {"mt=video/x-ms-wmv ct=ASF vc=VC1 vp=Advanced vl=30 wi=1920 he=1080 fr=24000 vr=1 " + wma, ""},
         {"mt=video/x-ms-asf ct=ASF vc=MPEG4 vp=Simple vl=30 wi=352 he=288 fr=25000 ca=G726 sf=8000 ac=1 "
          "ar=32000",
          "MPEG4_P2_ASF_SP_G726 video/x-ms-asf"},
         {"mt=audio/x-ms-wma " + wma, "WMABASE audio/x-ms-wma"},
         {"mt=audio/x-ms-wma ca=WMA2 sf=48000 ac=2 ar=192999", "WMABASE audio/x-ms-wma"},
         {"mt=audio/x-ms-wma ca=WMA2 sf=48000 ac=2 ar=256000", "WMAFULL audio/x-ms-wma"},
         {"mt=audio/x-ms-wma ca=WMA-voice sf=8000 ac=1 ar=8000", ""},
         {"mt=audio/x-ms-wma ca=WMA-lossless sf=44100 ac=2 bs=16", "WMALSL audio/x-ms-wma"},
         {"mt=audio/x-ms-wma ca=WMA-lossless sf=44100 ac=2 bs=24", ""}});
}

TEST(ProfileFamilies, SoundAndPicturesOfTheirOwn) {
    const Family family("AAC_ADTS_320 audio/aac>audio/vnd.dlna.adts audio-codec=AAC sampling-rate=8k-48k "
                        "channels=1-2 audio-bit-rate=1-320k\n"
                        "AAC_ADTS audio/aac>audio/vnd.dlna.adts audio-codec=AAC sampling-rate=8k-48k "
                        "channels=1-2 audio-bit-rate=1-576k\n"
                        "AC3 audio/ac3>audio/vnd.dolby.dd-raw audio-codec=AC3 sampling-rate=32k,44.1k,48k "
                        "channels=1-6 audio-bit-rate=32k-640k\n"
                        "GIF_LRG image/gif size=-1600x1200\n");
    ExpectAnnounced(
        family, {{"mt=audio/aac ca=AAC sf=44100 ac=2 ar=320000", "AAC_ADTS_320 audio/vnd.dlna.adts"},
                 {"mt=audio/vnd.dlna.adts ca=AAC sf=44100 ac=2 ar=321000", "AAC_ADTS audio/vnd.dlna.adts"},
                 {"mt=audio/aac ca=HE-AAC sf=44100 ac=2 ar=64000", ""},
                 {"mt=audio/ac3 ca=AC3 sf=48000 ac=6 ar=448000", "AC3 audio/vnd.dolby.dd-raw"},
                 {"mt=image/gif wi=1600 he=1200", "GIF_LRG image/gif"},
                 {"mt=image/gif wi=1601 he=1200", ""}});
}

// Raw samples have no header, so no parser of files gives their type: the name or the operator's table does.
TEST(ProfileFamilies, RawSamplesByTheFactsOfTheirType) {
    const Family family(
        "LPCM audio/L16 audio-codec=LPCM sampling-rate=44.1k,48k channels=1-2 bits-per-sample=16\n"
        "LPCM_low audio/L16 audio-codec=LPCM sampling-rate=8k-32k channels=1-2 "
        "bits-per-sample=16\n");
    ExpectAnnounced(family,
                    {{"mt=audio/L16;rate=44100;channels=2 ca=LPCM ar=44100 ac=2 bs=16", "LPCM audio/l16"},
                     {"mt=audio/l16;rate=48000 ca=LPCM ar=48000 ac=1 bs=16", "LPCM audio/l16"},
                     {"mt=audio/L16;rate=22050;channels=1 ca=LPCM ar=22050 ac=1 bs=16", "LPCM_low audio/l16"},
                     {"mt=audio/L16;rate=96000;channels=2 ca=LPCM ar=96000 ac=2 bs=16", ""},
                     {"mt=audio/L16 ca=LPCM ar=44100 ac=6 bs=16", ""},
                     {"mt=audio/L16", ""}, // rate and channels are not known
                     {"mt=audio/wav ca=LPCM ar=44100 ac=2 bs=16", ""},
                     {"mt=audio/x-aiff ca=LPCM ar=44100 ac=2 bs=16", ""}});
}
