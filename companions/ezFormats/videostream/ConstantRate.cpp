#include "ezFormats/videostream/ConstantRate.h"

#include "ezBytes/BitReader.h"
#include "ezFormats/codecs/MPEGVideoHeaders.h"
#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/detail/MediaNumbers.h"
#include "ezFormats/videostream/VideoStreamLimits.h"

#include "ezPlatform/base/Checked.h"

#include <algorithm>

namespace {

constexpr std::uint64_t kMicro = 1000000;
constexpr std::uint64_t kTicks = 90000; ///< of vbv_delay in a second
constexpr std::size_t kHeaderSize = 8;  ///< of a picture, its code and vbv_delay included

} // namespace

/// The first picture from a place on.
std::optional<ConstantRate::Picture> ConstantRate::Find(const unsigned char* aBytes, std::size_t aSize,
                                                        std::size_t aFrom) {
    for (std::size_t i = aFrom; i + kHeaderSize <= aSize; ++i) {
        if (aBytes[i] == 0 && aBytes[i + 1] == 0 && aBytes[i + 2] == 1 &&
            aBytes[i + 3] == kMPEGVideo_Picture) {
            ezBitReader bits(aBytes + i + 4, 8 * (kHeaderSize - 4));
            bits.Skip(10 + 3); // temporal_reference, picture_coding_type
            return Picture{i, bits.Read(16)};
        }
    }
    return std::nullopt;
}

/// Microseconds from when the first picture is taken from the buffer to when another one is; 0 for one that
/// is before it.
std::uint64_t ConstantRate::TimeTo(const Picture& aPicture) const {
    const std::uint64_t arrival = MediaNumber_Scale(aPicture.mPlace - mFirst.mPlace, 8 * kMicro, mRate);
    const std::uint64_t later = MediaNumber_Scale(aPicture.mDelay, kMicro, kTicks);
    const std::uint64_t earlier = MediaNumber_Scale(mFirst.mDelay, kMicro, kTicks);
    const std::uint64_t sum = ezSaturating_Add64(arrival, later);
    return sum - std::min(sum, earlier);
}

std::optional<bool> ConstantRate::LookAtStart(const unsigned char* aBytes, std::size_t aSize) {
    const std::optional<Picture> first = Find(aBytes, aSize, 0);
    const std::optional<Picture> second =
        first.has_value() ? Find(aBytes, aSize, static_cast<std::size_t>(first->mPlace) + 1) : std::nullopt;
    if (!second.has_value()) {
        return std::nullopt;
    }
    mFirst = *first;
    // A field lasts half a picture, and one of film that is shown for three fields half more.
    const std::uint64_t step = TimeTo(*second);
    const std::uint64_t picture = MediaNumber_Scale(kMicro, 1000, mFrameRate);
    return step >= picture / 4 && step <= 2 * picture;
}

std::uint64_t ConstantRate::Measure(MediaBytes& aBytes, std::uint64_t aFileSize) const {
    const std::uint64_t start = aFileSize - std::min<std::uint64_t>(aFileSize, kVideoStream_EndSize);
    const unsigned char* bytes = nullptr;
    aBytes.LoadWindow(start, kVideoStream_EndSize);
    const std::size_t size = std::min(aBytes.Borrow(start, &bytes), kVideoStream_EndSize);
    std::optional<Picture> last;
    for (std::optional<Picture> next = Find(bytes, size, 0); next.has_value();
         next = Find(bytes, size, static_cast<std::size_t>(next->mPlace) + 1)) {
        last = next;
    }
    if (!last.has_value() || last->mDelay == kMPEGVideo_UntoldDelay ||
        start + last->mPlace <= mFirst.mPlace) {
        return 0;
    }
    last->mPlace += start;
    // Delays are rounded, and the whole is so many fields.
    const std::uint64_t fieldRate = 2 * std::uint64_t{mFrameRate};
    const std::uint64_t field = MediaNumber_Scale(kMicro, 1000, fieldRate);
    const std::uint64_t time = ezSaturating_Add64(TimeTo(*last), 2 * field);
    const std::uint64_t fields =
        MediaNumber_Scale(ezSaturating_Add64(time, field / 2), fieldRate, 1000 * kMicro);
    return MediaNumber_Scale(fields, 1000 * kMicro, fieldRate);
}
