#include "ezFormats/detail/FormatMagic.h"

#include "ezBytes/ByteReader.h"
#include "ezBytes/LeadingTag.h"
#include "ezFormats/detail/Formats.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace {

constexpr std::size_t CountMagics() {
    std::size_t count = 0;
    for (const FormatDescription* const format : AllFormats::kDescriptions) {
        count += format->mMagic.mIsAt != nullptr ? 1 : 0;
    }
    return count;
}

/// The formats with a magic, those last that may stand after tags: these are asked after all that begin with
/// a word of their own.
constexpr std::array<const FormatDescription*, CountMagics()> InOrder() {
    std::array<const FormatDescription*, CountMagics()> formats = {};
    std::size_t count = 0;
    for (const bool fAfterTags : {false, true}) {
        for (const FormatDescription* const format : AllFormats::kDescriptions) {
            if (format->mMagic.mIsAt != nullptr && format->mMagic.mfAfterTags == fAfterTags) {
                formats[count++] = format;
            }
        }
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
        if ((start == 0 || magic.mfAfterTags) && magic.mIsAt(place)) {
            return format->mType;
        }
    }
    return nullptr;
}
