#include "ezHosting/detail/SubtitleKinds.h"

#include "ezPlatform/text/Case.h"

#include <algorithm>

namespace {

struct KindRow {
    ezSubtitleKind mKind;
    const char* mName;
    const char* mMimeTypes;
};
constexpr KindRow kKinds[] = {
    {ezSubtitleKind::SubRip, "srt", "application/x-subrip,text/srt,smi/caption"},
    {ezSubtitleKind::WebVTT, "vtt", "text/vtt"},
    {ezSubtitleKind::SubStation, "ssa", "text/x-ssa"},
    {ezSubtitleKind::AdvancedSubStation, "ass", "text/x-ass,text/x-ssa"},
    {ezSubtitleKind::MicroDVD, "sub", "text/x-microdvd"},
    {ezSubtitleKind::SAMI, "smi", "application/smil,text/x-sami"},
    {ezSubtitleKind::TTML, "ttml", "application/ttml+xml"},
    {ezSubtitleKind::PresentationGraphics, "sup", ""},
    {ezSubtitleKind::VobSub, "idx", ""},
};

const KindRow& RowOf(ezSubtitleKind aKind) {
    const auto* const row = std::find_if(std::begin(kKinds), std::end(kKinds),
                                         [aKind](const KindRow& aRow) { return aRow.mKind == aKind; });
    return row != std::end(kKinds) ? *row : kKinds[0];
}

} // namespace

const char* ezSubtitleKind_GetName(ezSubtitleKind aKind) {
    return RowOf(aKind).mName;
}

const char* ezSubtitleKind_GetMimeTypes(ezSubtitleKind aKind) {
    return RowOf(aKind).mMimeTypes;
}

bool IsSubtitleExtension(std::string_view anExtension) {
    return std::any_of(kSubtitleExtensions.begin(), kSubtitleExtensions.end(),
                       [&](std::string_view aKnown) { return ezIsEqualNoCase(aKnown, anExtension); });
}

bool MayHold(std::string_view anExtension, ezSubtitleKind aKind) {
    if (aKind == ezSubtitleKind::VobSub) {
        return ezIsEqualNoCase(anExtension, "idx");
    }
    const bool fAnyText = ezIsEqualNoCase(anExtension, "txt");
    return !fAnyText || aKind == ezSubtitleKind::SubRip || aKind == ezSubtitleKind::MicroDVD;
}
