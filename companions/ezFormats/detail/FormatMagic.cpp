#include "ezFormats/detail/FormatMagic.h"

#include "ezBytes/ByteReader.h"
#include "ezBytes/LeadingTag.h"
#include "ezFormats/detail/Formats.h"

#include <algorithm>

namespace {

constexpr std::size_t CountAfterTags() {
    std::size_t count = 0;
    for (const FormatDescription* const format : AllFormats::kDescriptions) {
        count += format->mMagic.mfAfterTags ? 1 : 0;
    }
    return count;
}

/// The formats, those last that may stand after tags: of a file without a tag they are asked after all that
/// begin with a word of their own.
constexpr std::array<const FormatDescription*, AllFormats::kCount> InOrder() {
    std::array<const FormatDescription*, AllFormats::kCount> formats = {};
    std::size_t plain = 0;
    std::size_t afterTags = AllFormats::kCount - CountAfterTags();
    for (const FormatDescription* const format : AllFormats::kDescriptions) {
        formats[format->mMagic.mfAfterTags ? afterTags++ : plain++] = format;
    }
    return formats;
}
constexpr auto kFormats = InOrder();

} // namespace

const char* FormatMagic_Find(ByteSource& aBytes) {
    const std::uint64_t start = EndOfLeadingTags(aBytes, 0);
    ByteReader place(aBytes);
    place.Skip(start);
    for (const FormatDescription* const format : kFormats) {
        const FormatMagic& magic = format->mMagic;
        if (magic.mIsAt != nullptr && (start == 0 || magic.mfAfterTags) && magic.mIsAt(place)) {
            return format->mType;
        }
    }
    return nullptr;
}
