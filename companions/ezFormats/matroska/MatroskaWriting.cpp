#include "ezFormats/matroska/MatroskaWriting.h"

#include "ezBytes/DateText.h"

ezCString MatroskaWriting::GetDate() const {
    constexpr std::int64_t kNanos = 1'000'000'000;
    constexpr std::int64_t k2001 = 978307200; // seconds since the start of 1970
    if (!mDate) {
        return {};
    }
    return UTCDateText(*mDate / kNanos - (*mDate % kNanos < 0 ? 1 : 0) + k2001);
}
