#include "companions/ezFormats/rules/ProfileKit.h"

#include <gtest/gtest.h>

// The names of films, by the facts of a record. The limits of the profiles stand here once more, at each edge
// and one beyond, so that no slip of the table goes unseen.

namespace {

/// What a record is changed by, and the name that it then gets.
struct Row {
    std::string mFacts;
    const char* mProfile;
};

/// What a table is asked with: the library's, or one of an operator who prefers something.
class Table {
public:
    explicit Table(const std::string& aRegion = "", bool afInferred = false) {
        std::string text(ProfileRules::BuiltInText());
        if (afInferred) {
            text.replace(text.find("\ninferred off"), 13, "\ninferred on");
        }
        mRules = ProfileRules::FromText(text + (aRegion.empty() ? "" : "region " + aRegion + "\n"), nullptr);
    }

    /// "profile", or "profile as MIME type" where the record's own is not announced.
    std::string Announced(const std::string& aRecord) const {
        const ProfileMatch match = mRules->FindMatch(*RecordOf(aRecord));
        return Str(match.mProfile) + (match.mMimeType.IsEmpty() ? "" : " as " + Str(match.mMimeType));
    }

    void Expect(const std::string& aFacts, const std::vector<Row>& aRows) const {
        for (const Row& row : aRows) {
            EXPECT_EQ(Announced(aFacts + " " + row.mFacts), row.mProfile) << aFacts << " " << row.mFacts;
        }
    }

private:
    std::shared_ptr<const ProfileRules> mRules;
};

const std::string kAC3 = "ca=AC3 sf=48000 ac=6 ar=448000 ";
const std::string kAAC = "ca=AAC sf=48000 ac=2 ar=128000 ";

} // namespace

TEST(FilmProfiles, H264InMatroska) {
    const Table table;
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
    const Table table;
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
    const Table table;
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
