#include "ezFormats/detail/FormatMimeTypes.h"

#include "ezFormats/detail/Formats.h"

#include "ezPlatform/text/CString.h"

#include <algorithm>

namespace {

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

bool FormatMimeType_IsStated(std::string_view aMimeType) {
    const auto isStated = [aMimeType](const FormatDescription* aFormat) {
        return std::any_of(aFormat->mMimeTypes.begin(), aFormat->mMimeTypes.end(),
                           [aMimeType](const char* aStated) { return ezIsEqualNoCase(aMimeType, aStated); });
    };
    return std::any_of(AllFormats::kDescriptions.begin(), AllFormats::kDescriptions.end(), isStated);
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
