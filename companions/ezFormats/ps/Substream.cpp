#include "ezFormats/ps/Substream.h"

#include <array>

namespace {

/// The numbers of a kind of substreams, and the bytes before what they carry: sound has the count of frames
/// that begin in the packet and where the first of them does.
struct Range {
    std::uint8_t mFirst;
    std::uint8_t mLast;
    Substream mSubstream;
};

constexpr std::array<Range, 7> kRanges = {{{0x20, 0x3F, {StreamCodec::Subtitle, 1}},
                                           {0x80, 0x87, {StreamCodec::AC3, 4}},
                                           {0x88, 0x8F, {StreamCodec::DTS, 4}},
                                           {0x98, 0x9F, {StreamCodec::DTS, 4}},
                                           {0xA0, 0xA7, {StreamCodec::LPCMOfDVD, 4}},
                                           {0xB0, 0xBF, {StreamCodec::TrueHD, 5}},
                                           {0xC0, 0xCF, {StreamCodec::AC3, 4}}}};

} // namespace

Substream Substream_Of(std::uint8_t aNumber) {
    for (const Range& range : kRanges) {
        if (aNumber >= range.mFirst && aNumber <= range.mLast) {
            return range.mSubstream;
        }
    }
    return {};
}
