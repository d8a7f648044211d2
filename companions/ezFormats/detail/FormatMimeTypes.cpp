#include "ezFormats/detail/FormatMimeTypes.h"

#include "ezFormats/detail/Formats.h"

#include "ezPlatform/text/CString.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::size_t CountTypes() {
    std::size_t count = 0;
    for (const FormatDescription* const format : AllFormats::kDescriptions) {
        count += format->mMimeTypes.size();
    }
    return count;
}

/// The types of all formats in a row.
constexpr std::array<std::string_view, CountTypes()> AllTypes() {
    std::array<std::string_view, CountTypes()> types = {};
    std::size_t count = 0;
    for (const FormatDescription* const format : AllFormats::kDescriptions) {
        for (const char* const type : format->mMimeTypes) {
            types[count++] = type;
        }
    }
    return types;
}
constexpr auto kTypes = AllTypes();

/// The first row of other names of a type that a question is true of; null where there is none.
template <typename Question>
const OtherMimeTypes* FindOther(const Question& aQuestion) {
    for (const FormatDescription* const format : AllFormats::kDescriptions) {
        for (const OtherMimeTypes& row : format->mOtherMimeTypes) {
            if (aQuestion(row)) {
                return &row;
            }
        }
    }
    return nullptr;
}

bool Lists(const OtherMimeTypes& aRow, std::string_view aName) {
    return std::any_of(aRow.mNames.begin(), aRow.mNames.end(),
                       [aName](const char* aListed) { return ezIsEqualNoCase(aListed, aName); });
}

} // namespace

std::string_view FormatMimeType_At(std::size_t anIndex) {
    return anIndex < kTypes.size() ? kTypes[anIndex] : std::string_view();
}

bool FormatMimeType_IsStated(std::string_view aMimeType) {
    return std::any_of(kTypes.begin(), kTypes.end(),
                       [aMimeType](std::string_view aKnown) { return ezIsEqualNoCase(aMimeType, aKnown); });
}

bool FormatMimeType_IsOtherName(std::string_view aName, std::string_view aType, std::string_view aCodec) {
    return FindOther([&](const OtherMimeTypes& aRow) {
               const std::string_view codec = aRow.mAudioCodec;
               return ezIsEqualNoCase(aRow.mType, aType) && (codec.empty() || codec == aCodec) &&
                      Lists(aRow, aName);
           }) != nullptr;
}

std::string_view FormatMimeType_OwnName(std::string_view aMimeType) {
    const OtherMimeTypes* const row =
        FindOther([&](const OtherMimeTypes& aRow) { return Lists(aRow, aMimeType); });
    return row != nullptr ? row->mType : aMimeType;
}
