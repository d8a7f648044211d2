#include "ezLiveStreams/detail/HttpDate.h"

#include "ezPlatform/text/CString.h"

#include <algorithm>
#include <array>

// Not curl_getdate: it gives a time_t, and on 32 bits that of an installed libcurl may be shorter than ours.

namespace {

constexpr std::array<std::string_view, 12> kMonths = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                      "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
constexpr std::size_t kMostParts = 9; ///< one more than any form has

/// At which of its parts a date has what. Minute and second follow the hour.
struct Form {
    std::size_t mCount;
    std::size_t mDay;
    std::size_t mMonth;
    std::size_t mYear;
    std::size_t mHour;
    bool mfZone; ///< the last part is the zone
};

constexpr std::array<Form, 2> kForms = {{
    {8, 1, 2, 3, 4, true}, // "Sun, 06 Nov 1994 08:49:37 GMT" and "Sunday, 06-Nov-94 08:49:37 GMT"
    {7, 2, 1, 6, 3, false} // "Sun Nov  6 08:49:37 1994"
}};

/// The words and numbers of a date, as far as one can have them.
struct Parts {
    std::array<std::string_view, kMostParts> mWords;
    std::size_t mCount = 0;
};

Parts Split(std::string_view aText) {
    constexpr std::string_view kBetween = " ,-:";
    Parts parts;
    while (parts.mCount < kMostParts) {
        const std::size_t begin = aText.find_first_not_of(kBetween);
        if (begin == std::string_view::npos) {
            break;
        }
        aText.remove_prefix(begin);
        const std::size_t length = std::min(aText.find_first_of(kBetween), aText.size());
        parts.mWords[parts.mCount++] = aText.substr(0, length);
        aText.remove_prefix(length);
    }
    return parts;
}

/// A number of at most four digits; empty where the word is not such a number or is not within the bounds.
std::optional<std::int64_t> Number(std::string_view aWord, std::int64_t aLeast, std::int64_t aMost) {
    std::uint64_t value = 0;
    if (aWord.size() > 4 || !ezReadDecimal(aWord, &value)) {
        return std::nullopt;
    }
    const auto number = static_cast<std::int64_t>(value);
    return number >= aLeast && number <= aMost ? std::optional<std::int64_t>(number) : std::nullopt;
}

std::optional<std::int64_t> Year(std::string_view aWord) {
    if (aWord.size() != 2) {
        return Number(aWord, 1970, 9999);
    }
    const std::optional<std::int64_t> year = Number(aWord, 0, 99);
    return year ? std::optional<std::int64_t>(*year + (*year < 70 ? 2000 : 1900)) : std::nullopt;
}

/// 1 to 12.
std::optional<std::int64_t> Month(std::string_view aWord) {
    const auto found = std::find(kMonths.begin(), kMonths.end(), aWord);
    return found != kMonths.end() ? std::optional<std::int64_t>(found - kMonths.begin() + 1) : std::nullopt;
}

/// The days from 1970-01-01 to a day of the Gregorian calendar. Years are counted from March on, so that a
/// leap day is the last of its year.
std::int64_t DaysTo(std::int64_t aYear, std::int64_t aMonth, std::int64_t aDay) {
    const std::int64_t year = aMonth > 2 ? aYear : aYear - 1;
    const std::int64_t month = aMonth > 2 ? aMonth - 3 : aMonth + 9;
    constexpr std::int64_t kDaysTo1970 = 719468; // from 0000-03-01
    return 365 * year + year / 4 - year / 100 + year / 400 + (153 * month + 2) / 5 + aDay - 1 - kDaysTo1970;
}

bool IsLeap(std::int64_t aYear) {
    return aYear % 4 == 0 && (aYear % 100 != 0 || aYear % 400 == 0);
}

std::int64_t DaysOf(std::int64_t aYear, std::int64_t aMonth) {
    constexpr std::array<std::int64_t, 12> kDays = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return aMonth == 2 && IsLeap(aYear) ? 29 : kDays[static_cast<std::size_t>(aMonth - 1)];
}

} // namespace

std::optional<std::int64_t> ezReadHttpDate(std::string_view aText) {
    const Parts parts = Split(aText);
    const auto& words = parts.mWords;
    const auto form = std::find_if(kForms.begin(), kForms.end(),
                                   [&](const Form& aForm) { return aForm.mCount == parts.mCount; });
    if (form == kForms.end() || (form->mfZone && words[form->mCount - 1] != "GMT")) {
        return std::nullopt;
    }
    const std::optional<std::int64_t> year = Year(words[form->mYear]);
    const std::optional<std::int64_t> month = Month(words[form->mMonth]);
    const std::optional<std::int64_t> hour = Number(words[form->mHour], 0, 23);
    const std::optional<std::int64_t> minute = Number(words[form->mHour + 1], 0, 59);
    const std::optional<std::int64_t> second =
        Number(words[form->mHour + 2], 0, 60); // the last is a leap second
    if (!year || !month || !hour || !minute || !second) {
        return std::nullopt;
    }
    const std::optional<std::int64_t> day = Number(words[form->mDay], 1, DaysOf(*year, *month));
    if (!day) {
        return std::nullopt;
    }
    return ((DaysTo(*year, *month, *day) * 24 + *hour) * 60 + *minute) * 60 + *second;
}
