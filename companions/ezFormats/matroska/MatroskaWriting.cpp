#include "ezFormats/matroska/MatroskaWriting.h"

#include "ezBytes/DateText.h"

namespace {

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

ezCString MatroskaWriting::GetDate() const {
    constexpr std::int64_t kNanos = 1'000'000'000;
    constexpr std::int64_t kSecondsOfDay = 86400;
    if (!mDate) {
        return {};
    }
    const std::int64_t seconds = *mDate / kNanos - (*mDate % kNanos < 0 ? 1 : 0);
    const std::int64_t days = seconds / kSecondsOfDay - (seconds % kSecondsOfDay < 0 ? 1 : 0);
    const std::int64_t rest = seconds - days * kSecondsOfDay;
    const Day day = DayOf(days);
    const ezCString text = ezCString::Format("%04d-%02d-%02dT%02d:%02d:%02dZ", static_cast<int>(day.mYear),
                                             static_cast<int>(day.mMonth), static_cast<int>(day.mDay),
                                             static_cast<int>(rest / 3600), static_cast<int>(rest / 60 % 60),
                                             static_cast<int>(rest % 60));
    return CleanDate(text.View());
}
