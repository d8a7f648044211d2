#include "ezFormats/detail/FormatMimeTypes.h"

#include "ezFormats/detail/ListItems.h"

#include "ezPlatform/text/CString.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::array<std::string_view, 4> kLists = {kMPEGAudio_MimeTypes, kJPEG_MimeTypes, kPNG_MimeTypes,
                                                    kISOMedia_MimeTypes};

constexpr std::size_t CountTypes() {
    std::size_t count = kLists.size();
    for (const std::string_view list : kLists) {
        for (const char character : list) {
            count += character == ',' ? 1 : 0;
        }
    }
    return count;
}

/// The types of all lists, taken apart when this is compiled: every request looks one up.
constexpr std::array<std::string_view, CountTypes()> AllTypes() {
    std::array<std::string_view, CountTypes()> types = {};
    std::size_t count = 0;
    for (const std::string_view list : kLists) {
        ListItems items(list);
        while (items.Next(&types[count])) {
            ++count;
        }
    }
    return types;
}
constexpr auto kTypes = AllTypes();
static_assert(kTypes.size() <= 32, "each has a bit of its own");

/// Names by which media of one of these types also go, separated by ",".
struct OtherNames {
    std::string_view mType;
    std::string_view mCodec; ///< the audio codec that these are for; empty: any
    std::string_view mNames;
};
constexpr std::array<OtherNames, 6> kOtherNames = {{
    {"audio/mpeg", "MP3", "audio/mp3,audio/x-mp3,audio/x-mpeg,audio/mpeg3,audio/x-mpeg-3"},
    {"audio/mpeg", "MP2", "audio/mp2,audio/x-mp2"},
    {"audio/mp4", "", "audio/x-m4a,audio/m4a,audio/x-m4b,audio/x-m4r"},
    {"video/mp4", "", "video/x-mp4,video/x-m4v,video/x-f4v"},
    {"image/jpeg", "", "image/jpg,image/pjpeg"},
    {"image/png", "", "image/x-png"},
}};

bool IsSameType(std::string_view aLeft, std::string_view aRight) {
    return std::equal(aLeft.begin(), aLeft.end(), aRight.begin(), aRight.end(),
                      [](char aOne, char anOther) { return ezLower(aOne) == ezLower(anOther); });
}

bool Lists(std::string_view aNames, std::string_view aName) {
    ListItems items(aNames);
    std::string_view name;
    while (items.Next(&name)) {
        if (IsSameType(name, aName)) {
            return true;
        }
    }
    return false;
}

} // namespace

std::string_view FormatMimeType_At(std::size_t anIndex) {
    return anIndex < kTypes.size() ? kTypes[anIndex] : std::string_view();
}

std::uint32_t FormatMimeType_Bit(std::string_view aMimeType) {
    const std::string_view bare = ezTrimmed(aMimeType.substr(0, aMimeType.find(';')));
    const auto* const type = std::find_if(kTypes.begin(), kTypes.end(), [bare](std::string_view aKnown) {
        return aKnown.size() == bare.size() && IsSameType(bare, aKnown);
    });
    return type != kTypes.end() ? std::uint32_t{1} << (type - kTypes.begin()) : 0;
}

bool FormatMimeType_IsOtherName(std::string_view aName, std::string_view aType, std::string_view aCodec) {
    return std::any_of(kOtherNames.begin(), kOtherNames.end(), [&](const OtherNames& aRow) {
        return IsSameType(aRow.mType, aType) && (aRow.mCodec.empty() || aRow.mCodec == aCodec) &&
               Lists(aRow.mNames, aName);
    });
}

std::string_view FormatMimeType_OwnName(std::string_view aMimeType) {
    const auto* const row = std::find_if(kOtherNames.begin(), kOtherNames.end(), [&](const OtherNames& aRow) {
        return Lists(aRow.mNames, aMimeType);
    });
    return row != kOtherNames.end() ? row->mType : aMimeType;
}
