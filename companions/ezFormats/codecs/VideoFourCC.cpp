#include "ezFormats/codecs/VideoFourCC.h"

#include "ezFormats/codecs/CodecWord.h"

#include "ezPlatform/text/Case.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace {

struct Name {
    std::string_view mFourCC;
    const char* mCodec;
};
constexpr Name kNames[] = {
    {"XVID", "MPEG4"},     {"DIVX", "MPEG4"},     {"DX50", "MPEG4"},     {"FMP4", "MPEG4"},
    {"MP4V", "MPEG4"},     {"M4S2", "MPEG4"},     {"MP4S", "MPEG4"},     {"3IV2", "MPEG4"},
    {"BLZ0", "MPEG4"},     {"RMP4", "MPEG4"},     {"UMP4", "MPEG4"},     {"SEDG", "MPEG4"},
    {"DIV3", "MSMPEG4v3"}, {"DIV4", "MSMPEG4v3"}, {"DIV5", "MSMPEG4v3"}, {"DIV6", "MSMPEG4v3"},
    {"MP43", "MSMPEG4v3"}, {"MPG3", "MSMPEG4v3"}, {"AP41", "MSMPEG4v3"}, {"COL1", "MSMPEG4v3"},
    {"MP42", "MSMPEG4v2"}, {"DIV2", "MSMPEG4v2"}, {"MP41", "MSMPEG4v1"}, {"MPG4", "MSMPEG4v1"},
    {"H264", "H264"},      {"X264", "H264"},      {"AVC1", "H264"},      {"DAVC", "H264"},
    {"VSSH", "H264"},      {"HEVC", "H265"},      {"H265", "H265"},      {"X265", "H265"},
    {"HVC1", "H265"},      {"HEV1", "H265"},      {"WMV1", "WMV1"},      {"WMV2", "WMV2"},
    {"WMV3", "WMV3"},      {"WMVA", "VC1"},       {"WVC1", "VC1"},       {"WMVP", "WMV-image"},
    {"MJPG", "MJPEG"},     {"AVRN", "MJPEG"},     {"LJPG", "MJPEG"},     {"MPEG", "MPEG1"},
    {"MPG1", "MPEG1"},     {"PIM1", "MPEG1"},     {"MPG2", "MPEG2"},     {"MP2V", "MPEG2"},
    {"MMES", "MPEG2"},     {"H263", "H263"},      {"S263", "H263"},      {"U263", "H263"},
    {"VP80", "VP8"},       {"VP90", "VP9"},       {"AV01", "AV1"},       {"VP60", "VP6"},
    {"VP61", "VP6"},       {"VP62", "VP6"},       {"VP31", "VP3"},       {"THEO", "Theora"},
    {"DVSD", "DV"},        {"DVHD", "DV"},        {"DVSL", "DV"},        {"DV25", "DV"},
    {"DV50", "DV"},        {"FFV1", "FFV1"},      {"HFYU", "HuffYUV"},   {"FFVH", "HuffYUV"},
    {"CVID", "Cinepak"},   {"IV50", "Indeo5"},    {"IV41", "Indeo4"},    {"IV32", "Indeo3"},
    {"IV31", "Indeo3"},    {"SVQ1", "SVQ1"},      {"SVQ3", "SVQ3"},      {"RV40", "RV40"},
    {"RV30", "RV30"},      {"PNG ", "PNG"},       {"MPNG", "PNG"},       {"LAGS", "Lagarith"}};

} // namespace

const char* VideoFourCC_GetCodec(BoxType aFourCC) {
    const ezCString text = aFourCC.GetText();
    const auto* const found = std::find_if(std::begin(kNames), std::end(kNames), [&](const Name& aName) {
        return ezIsEqualNoCase(aName.mFourCC, text.View());
    });
    return found != std::end(kNames) ? found->mCodec : nullptr;
}

ezCString VideoFourCC_GetWord(BoxType aFourCC) {
    const char* const codec = VideoFourCC_GetCodec(aFourCC);
    return codec != nullptr ? ezCString(codec) : CodecWord_Of(aFourCC.GetText().View());
}
