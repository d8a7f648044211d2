#include "ezFormats/detail/FormatMimeTypes.h"

#include "ezFormats/detail/ListItems.h"

#include "ezPlatform/text/CString.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::array<std::string_view, 4> kLists = {kMPEGAudio_MimeTypes, kJPEG_MimeTypes, kPNG_MimeTypes,
                                                    kISOMedia_MimeTypes};

bool IsSameType(std::string_view aLeft, std::string_view aRight) {
    return std::equal(aLeft.begin(), aLeft.end(), aRight.begin(), aRight.end(),
                      [](char aOne, char anOther) { return ezLower(aOne) == ezLower(anOther); });
}

} // namespace

std::string_view FormatMimeType_At(std::size_t anIndex) {
    std::size_t left = anIndex;
    for (const std::string_view list : kLists) {
        ListItems items(list);
        std::string_view type;
        while (items.Next(&type)) {
            if (left-- == 0) {
                return type;
            }
        }
    }
    return {};
}

std::uint32_t FormatMimeType_Bit(std::string_view aMimeType) {
    const std::string_view bare = ezTrimmed(aMimeType.substr(0, aMimeType.find(';')));
    std::uint32_t bit = 1;
    for (const std::string_view list : kLists) {
        ListItems items(list);
        std::string_view type;
        while (items.Next(&type)) {
            if (IsSameType(bare, type)) {
                return bit;
            }
            bit <<= 1;
        }
    }
    return 0;
}
