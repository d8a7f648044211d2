#include "ezFormats/codecs/VideoFourCC.h"

#include "ezPlatform/text/Case.h"

#include <cstddef>
#include <string_view>

namespace {

using namespace std::string_view_literals;

/// Whose four characters they are: one set may name two codecs.
enum Users : unsigned {
    kFourCC = 1, ///< of a BITMAPINFOHEADER, in any case
    kEntry = 2,  ///< of the sample entries of ISO media and QuickTime, as they are
    kBoth = kFourCC | kEntry
};

struct Codes {
    std::string_view mCodes; ///< four characters each, a blank between two
    unsigned mUsers;
    VideoCode mMeaning;
};

constexpr const char* k420 = "4:2:0";
constexpr const char* k422 = "4:2:2";
constexpr const char* k444 = "4:4:4";

constexpr Codes kCodes[] = {
    {"mp4v XVID DIVX DX50 FMP4 3IV2"sv, kBoth, {"MPEG4"}},
    {"M4S2 MP4S 3IVX BLZ0 DXGM FVFW M4CC NDIG PM4V RMP4 SEDG SMP4 UMP4 WV1F XVIX"sv, kFourCC, {"MPEG4"}},
    {"DIV3 MP43"sv, kBoth, {"MSMPEG4v3", "", 8, k420}},
    {"AP41 COL0 COL1 DIV4 DIV5 DIV6 MPG3"sv, kFourCC, {"MSMPEG4v3", "", 8, k420}},
    {"DIV2 MP42"sv, kFourCC, {"MSMPEG4v2", "", 8, k420}},
    {"MP41 MPG4"sv, kFourCC, {"MSMPEG4v1", "", 8, k420}},
    {"avc1 H264 X264"sv, kBoth, {"H264"}},
    {"DAVC VSSH"sv, kFourCC, {"H264"}},
    {"avc2 avc3 avc4 dva1 dvav"sv, kEntry, {"H264"}},
    {"hvc1 hev1"sv, kBoth, {"H265"}},
    {"H265 HEVC X265"sv, kFourCC, {"H265"}},
    {"dvh1 dvhe"sv, kEntry, {"H265"}}, // of QuickTime's Dolby Vision, where others have a kind of DV
    {"vvc1 vvi1"sv, kEntry, {"H266"}},
    {"h261"sv, kBoth, {"H261"}},
    {"h263 s263"sv, kBoth, {"H263"}},
    {"H263"sv, kEntry, {"H263"}},
    {"U263 X263"sv, kFourCC, {"H263"}},
    {"FLV1"sv, kBoth, {"Sorenson"}},
    {"MPEG MPG1 PIM1"sv, kFourCC, {"MPEG1"}},
    {"m1v1 mp1v"sv, kEntry, {"MPEG1"}},
    {"mp2v"sv, kBoth, {"MPEG2"}},
    {"EM2V MMES MPG2"sv, kFourCC, {"MPEG2"}},
    {"m2v1 hdv1 hdv2 hdv3 hdv4 hdv5 hdv6 hdv7 hdv8 hdv9 hdva"sv, kEntry, {"MPEG2"}},
    {"mx3n mx3p mx4n mx4p mx5n mx5p xd54 xd55 xd59 xd5a xd5b xd5c xd5d xd5e xd5f"sv, kEntry, {"MPEG2"}},
    {"xdv1 xdv2 xdv3 xdv4 xdv5 xdv6 xdv7 xdv8 xdv9 xdva xdvb xdvc xdvd xdve xdvf"sv, kEntry, {"MPEG2"}},
    {"WMV1"sv, kBoth, {"WMV1", "", 8, k420}},
    {"WMV2"sv, kBoth, {"WMV2", "", 8, k420}},
    {"WMV3"sv, kBoth, {"WMV3", "", 8, k420}},
    {"WVC1"sv, kBoth, {"VC1", "Advanced", 8, k420}},
    {"WMVA"sv, kFourCC, {"VC1", "Advanced", 8, k420}},
    {"vc-1"sv, kEntry, {"VC1", "Advanced", 8, k420}},
    {"WMVP WVP2"sv, kFourCC, {"WMV-image"}},
    {"MSS1"sv, kFourCC, {"MSS1"}},
    {"MSS2"sv, kFourCC, {"MSS2"}},
    {"VP30 VP31"sv, kBoth, {"VP3"}},
    {"VP60 VP61 VP62 VP6F"sv, kBoth, {"VP6"}},
    {"VP70"sv, kBoth, {"VP7"}},
    {"VP80"sv, kBoth, {"VP8"}},
    {"VP90"sv, kBoth, {"VP9"}},
    {"vp08"sv, kEntry, {"VP8"}},
    {"vp09"sv, kEntry, {"VP9"}},
    {"av01"sv, kBoth, {"AV1"}},
    {"THEO"sv, kFourCC, {"Theora"}},
    {"drac"sv, kBoth, {"Dirac"}},
    {"SNOW"sv, kFourCC, {"Snow"}},
    {"MJPG AVRn AVDJ dmb1"sv, kBoth, {"MJPEG"}},
    {"LJPG"sv, kFourCC, {"MJPEG"}},
    {"mjpa mjpb jpeg"sv, kEntry, {"MJPEG"}},
    {"png "sv, kBoth, {"PNG"}},
    {"MPNG"sv, kFourCC, {"PNG"}},
    {"gif "sv, kEntry, {"GIF"}},
    {"mjp2"sv, kBoth, {"JPEG2000"}},
    {"IPJ2 LJ2C LJ2K MJ2C"sv, kFourCC, {"JPEG2000"}},
    {"dvsd dvcp dvpp"sv, kBoth, {"DV", "25"}},
    {"CDVC DV25 DVIS PDVC SLDV"sv, kFourCC, {"DV", "25"}},
    {"dvc "sv, kEntry, {"DV", "25"}},
    {"DVHD DVSL"sv, kFourCC, {"DV"}},
    {"DV50"sv, kFourCC, {"DV", "50"}},
    {"dv5n dv5p"sv, kEntry, {"DV", "50"}},
    {"DVH1"sv, kFourCC, {"DV", "100"}},
    {"dvh2 dvh3 dvh4 dvh5 dvh6 dvhp dvhq"sv, kEntry, {"DV", "100"}},
    {"apco"sv, kBoth, {"ProRes", "Proxy", 10, k422}},
    {"apcs"sv, kBoth, {"ProRes", "LT", 10, k422}},
    {"apcn"sv, kBoth, {"ProRes", "Standard", 10, k422}},
    {"apch"sv, kBoth, {"ProRes", "HQ", 10, k422}},
    {"ap4h"sv, kBoth, {"ProRes", "4444", 12, k444}},
    {"ap4x"sv, kBoth, {"ProRes", "4444XQ", 12, k444}},
    {"aprn aprh"sv, kEntry, {"ProResRAW"}},
    {"AVdn"sv, kBoth, {"DNxHD"}},
    {"AVdh"sv, kEntry, {"DNxHR"}},
    {"CFHD"sv, kBoth, {"CineForm"}},
    {"cvid"sv, kBoth, {"Cinepak"}},
    {"RT21"sv, kBoth, {"Indeo2"}},
    {"IV31 IV32"sv, kBoth, {"Indeo3"}},
    {"IV41"sv, kBoth, {"Indeo4"}},
    {"IV50"sv, kBoth, {"Indeo5"}},
    {"SVQ1"sv, kBoth, {"SVQ1"}},
    {"SVQ3"sv, kBoth, {"SVQ3"}},
    {"rle "sv, kEntry, {"Animation"}},
    {"smc "sv, kEntry, {"SMC"}},
    {"rpza"sv, kEntry, {"RPZA"}},
    {"RLE  MRLE \1\0\0\0 \2\0\0\0"sv, kFourCC, {"RLE"}}, // BI_RLE8, BI_RLE4
    {"CRAM MSVC WHAM"sv, kFourCC, {"MSVideo1"}},
    {"TSCC"sv, kFourCC, {"TSCC"}},
    {"TSC2"sv, kFourCC, {"TSCC2"}},
    {"FFV1"sv, kBoth, {"FFV1"}},
    {"FFVH HFYU"sv, kFourCC, {"HuffYUV"}},
    {"LAGS"sv, kFourCC, {"Lagarith"}},
    {"ULH0 ULH2 ULRA ULRG ULY0 ULY2"sv, kFourCC, {"UtVideo"}},
    {"ZMBV"sv, kFourCC, {"ZMBV"}},
    {"RV10"sv, kFourCC, {"RV10"}},
    {"RV20"sv, kFourCC, {"RV20"}},
    {"RV30"sv, kFourCC, {"RV30"}},
    {"RV40"sv, kFourCC, {"RV40"}},
    {"raw "sv, kBoth, {"raw"}},
    {"DIB  RGB  \0\0\0\0 \3\0\0\0"sv, kFourCC, {"raw"}}, // BI_RGB, BI_BITFIELDS
    {"2vuy yuv2 yuvs"sv, kBoth, {"raw", "", 8, k422}},
    {"HDYC UYVY V422 YUY2 YUYV YVYU"sv, kFourCC, {"raw", "", 8, k422}},
    {"I420 IYUV NV12 YV12"sv, kFourCC, {"raw", "", 8, k420}},
    {"Y800"sv, kFourCC, {"raw", "", 8, "grey"}},
    {"v210"sv, kBoth, {"raw", "", 10, k422}},
    {"v216"sv, kEntry, {"raw", "", 16, k422}},
    {"v308 v408"sv, kBoth, {"raw", "", 8, k444}},
    {"v410"sv, kBoth, {"raw", "", 10, k444}}};

const VideoCode* Find(BoxType aName, Users aUsers) {
    constexpr std::size_t kStep = 5;
    constexpr std::size_t kSize = 4;
    const ezCString text = aName.GetText();
    const std::string_view name = text.View();
    for (const Codes& codes : kCodes) {
        for (std::size_t at = 0; (codes.mUsers & aUsers) != 0 && at < codes.mCodes.size(); at += kStep) {
            const std::string_view code = codes.mCodes.substr(at, kSize);
            if (aUsers == kEntry ? code == name : ezIsEqualNoCase(code, name)) {
                return &codes.mMeaning;
            }
        }
    }
    return nullptr;
}

} // namespace

VideoFacts VideoCode::GetFacts() const {
    VideoFacts facts;
    facts.mCodec = mCodec;
    facts.mProfile = mProfile;
    facts.mBitDepth = mBitDepth;
    facts.mColours = mColours;
    return facts;
}

const VideoCode* VideoFourCC_Find(BoxType aFourCC) {
    return Find(aFourCC, kFourCC);
}

const VideoCode* VideoFourCC_FindEntry(BoxType aName) {
    return Find(aName, kEntry);
}
