#include "ezFormats/matroska/MatroskaInfo.h"

#include "ezFormats/detail/Limits.h"
#include "ezFormats/detail/MediaNumbers.h"

#include "ezBytes/DateText.h"
#include "ezBytes/EBMLWalk.h"

#include <cmath>

namespace {

/// @name Elements of Info (RFC 9559, 5.1.2)
/// @{
constexpr EBMLId kTimestampScale = 0x2AD7B1;
constexpr EBMLId kDuration = 0x4489;
constexpr EBMLId kTitle = 0x7BA9;
constexpr EBMLId kDateUTC = 0x4461;
constexpr EBMLId kMuxingApp = 0x4D80;
constexpr EBMLId kWritingApp = 0x5741;
/// @}

constexpr std::uint64_t kMicro = 1'000'000;
constexpr std::uint64_t kNanosInMicro = 1000;
constexpr std::uint64_t kYear = kSound_MaxSeconds * kMicro;

/// Days since the first of March of the year 0 in the proleptic Gregorian calendar, for the first of 2001.
constexpr std::int64_t kDaysTo2001 = 730791;

struct Day {
    std::int64_t mYear;
    std::int64_t mMonth;
    std::int64_t mDay;
};

/// The day of the calendar, so many days after the first of 2001; of years from 0 on.
Day DayOf(std::int64_t aDays) {
    constexpr std::int64_t kDaysOf400 = 146097;
    const std::int64_t days = aDays + kDaysTo2001; // those of a leap year stand last when it begins in March
    const std::int64_t era = days / kDaysOf400;
    const std::int64_t ofEra = days % kDaysOf400;
    const std::int64_t year = (ofEra - ofEra / 1460 + ofEra / 36524 - ofEra / 146096) / 365;
    const std::int64_t ofYear = ofEra - (365 * year + year / 4 - year / 100);
    const std::int64_t month = (5 * ofYear + 2) / 153; // from March on
    return {era * 400 + year + (month >= 10 ? 1 : 0), month < 10 ? month + 3 : month - 9,
            ofYear - (153 * month + 2) / 5 + 1};
}

} // namespace

std::uint64_t MatroskaInfo::GetMicroseconds(std::uint64_t aTicks) const {
    const std::uint64_t micros = MediaNumber_Scale(aTicks, mScale, kNanosInMicro);
    return micros <= kYear ? micros : 0;
}

std::uint64_t MatroskaInfo::GetStatedMicroseconds() const {
    const double micros =
        std::round(mTicks * static_cast<double>(mScale) / static_cast<double>(kNanosInMicro));
    return micros >= 1 && micros <= static_cast<double>(kYear) ? static_cast<std::uint64_t>(micros) : 0;
}

ezCString MatroskaInfo::GetDate() const {
    constexpr std::int64_t kNanos = 1'000'000'000;
    constexpr std::int64_t kSecondsOfDay = 86400;
    if (!mWriting.mDate) {
        return {};
    }
    const std::int64_t seconds = *mWriting.mDate / kNanos - (*mWriting.mDate % kNanos < 0 ? 1 : 0);
    const std::int64_t days = seconds / kSecondsOfDay - (seconds % kSecondsOfDay < 0 ? 1 : 0);
    const std::int64_t rest = seconds - days * kSecondsOfDay;
    const Day day = DayOf(days);
    const ezCString text = ezCString::Format("%04d-%02d-%02dT%02d:%02d:%02dZ", static_cast<int>(day.mYear),
                                             static_cast<int>(day.mMonth), static_cast<int>(day.mDay),
                                             static_cast<int>(rest / 3600), static_cast<int>(rest / 60 % 60),
                                             static_cast<int>(rest % 60));
    return CleanDate(text.View());
}

MatroskaInfo ReadMatroskaInfo(const ByteReader& aContent, std::uint32_t& aBudget) {
    MatroskaInfo info;
    EBMLWalk walk(aContent, aBudget);
    for (EBMLElement element(aContent); walk.Next(&element);) {
        const ByteReader& content = element.mContent;
        if (element.mId == kTimestampScale) {
            const std::uint64_t scale = ReadEBMLNumber(content, info.mScale);
            info.mScale = scale != 0 ? scale : info.mScale;
        } else if (element.mId == kDuration) {
            info.mTicks = ReadEBMLFloat(content);
        } else if (element.mId == kTitle) {
            info.mTitle = ReadEBMLText(content);
        } else if (element.mId == kDateUTC) {
            info.mWriting.mDate = ReadEBMLDate(content);
        } else if (element.mId == kMuxingApp) {
            info.mWriting.mMuxingApp = ReadEBMLText(content);
        } else if (element.mId == kWritingApp) {
            info.mWriting.mWritingApp = ReadEBMLText(content);
        }
    }
    return info;
}
