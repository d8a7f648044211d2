// The door: the first bytes of a file that may hold subtitles, whole or cut.

#include "fuzz/support/Check.h"

#include "ezBytes/LanguageTags.h"
#include "ezBytes/Utf8.h"
#include "ezHosting/detail/SubtitleContent.h"
#include "ezHosting/detail/SubtitleKinds.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace {

constexpr std::string_view kCodePage = "windows-1252";
constexpr std::size_t kLongestList = 64;

/// Lists are those that a reader of lists takes as they are.
void CheckLanguages(const std::string& aLanguages) {
    std::string again;
    AddLanguages(again, aLanguages);
    FuzzCheck(again == aLanguages && aLanguages.size() <= kLongestList);
}

void CheckContent(const SubtitleContent& aContent, std::string_view aBytes) {
    const bool fPictures =
        aContent.mKind == ezSubtitleKind::VobSub || aContent.mKind == ezSubtitleKind::PresentationGraphics;
    FuzzCheck(fPictures == aContent.mEncoding.empty());
    FuzzCheck(fPictures == (*ezSubtitleKind_GetMimeTypes(aContent.mKind) == '\0'));
    FuzzCheck(IsSubtitleExtension(ezSubtitleKind_GetName(aContent.mKind)));
    FuzzCheck(MayHold(ezSubtitleKind_GetName(aContent.mKind), aContent.mKind));
    CheckLanguages(aContent.mLanguages);
    if (aContent.mEncoding == kCodePage) {
        FuzzCheck(!IsWholeUtf8(aBytes));
    } else if (aContent.mEncoding == "UTF-8" && aBytes.substr(0, 3) != "\xEF\xBB\xBF") {
        FuzzCheck(IsWholeUtf8(WithoutCutUtf8(aBytes)));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    const FuzzHouse house;
    const std::string bytes(aData, aData + aSize);
    const std::string page(kCodePage);
    const std::optional<SubtitleContent> whole = ReadSubtitleContent(bytes, true, page);
    const std::optional<SubtitleContent> cut = ReadSubtitleContent(bytes, false, page);
    // Whether more follows tells nothing but what the last bytes may be.
    FuzzCheck(whole.has_value() == cut.has_value());
    if (whole) {
        CheckContent(*whole, bytes);
        CheckContent(*cut, bytes);
        FuzzCheck(whole->mKind == cut->mKind && whole->mLanguages == cut->mLanguages);
        // A byte order mark before a text changes its encoding alone.
        const auto marked = ReadSubtitleContent("\xEF\xBB\xBF" + bytes, true, page);
        if (whole->mEncoding == "UTF-8" && bytes.substr(0, 3) != "\xEF\xBB\xBF") {
            FuzzCheck(marked && marked->mKind == whole->mKind && marked->mLanguages == whole->mLanguages);
        }
    }
    return 0;
}
