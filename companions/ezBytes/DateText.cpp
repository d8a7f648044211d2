#include "ezBytes/DateText.h"

#include <array>
#include <cstddef>

namespace {

constexpr std::string_view kBlanks(" \t\r\n\0", 5);

std::string_view WithoutBlanks(std::string_view aText) {
    const std::size_t start = aText.find_first_not_of(kBlanks);
    return start == std::string_view::npos ? std::string_view()
                                           : aText.substr(start, aText.find_last_not_of(kBlanks) + 1 - start);
}

/// Takes parts of a text from its front. A part that is not there leaves the text as it is.
class Parts {
public:
    explicit Parts(std::string_view aText) : mRest(aText) {}

    bool IsEmpty() const { return mRest.empty(); }

    bool TakeDigits(std::size_t aCount, unsigned* aNumber) {
        unsigned number = 0;
        for (std::size_t i = 0; i < aCount; ++i) {
            if (i >= mRest.size() || mRest[i] < '0' || mRest[i] > '9') {
                return false;
            }
            number = number * 10 + static_cast<unsigned>(mRest[i] - '0');
        }
        mRest.remove_prefix(aCount);
        *aNumber = number;
        return true;
    }

    /// One of some characters; NUL where none of them stands there.
    char TakeOneOf(std::string_view aCharacters) {
        const char first = mRest.empty() ? '\0' : mRest.front();
        if (first == '\0' || aCharacters.find(first) == std::string_view::npos) {
            return '\0';
        }
        mRest.remove_prefix(1);
        return first;
    }

    void SkipDigits() {
        unsigned digit = 0;
        while (TakeDigits(1, &digit)) {
        }
    }

private:
    std::string_view mRest;
};

struct Day {
    unsigned mYear = 0;
    unsigned mMonth = 0; ///< 0: not stated
    unsigned mDay = 0;
};

unsigned DaysOf(const Day& aDay) {
    constexpr std::array<unsigned, 13> kDays = {0, 31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool fLeap = aDay.mYear % 4 == 0 && (aDay.mYear % 100 != 0 || aDay.mYear % 400 == 0);
    return kDays[aDay.mMonth] + (aDay.mMonth == 2 && fLeap ? 1 : 0);
}

/// True for a day that the calendar has, or the part of one that is stated.
bool IsDay(const Day& aDay) {
    return aDay.mYear != 0 && aDay.mMonth <= 12 && (aDay.mMonth != 0 || aDay.mDay == 0) &&
           aDay.mDay <= DaysOf(aDay);
}

bool TakeDay(Parts& aParts, Day* aDay) {
    constexpr std::string_view kSeparators = "-:/.";
    if (!aParts.TakeDigits(4, &aDay->mYear)) {
        return false;
    }
    const char separator = aParts.TakeOneOf(kSeparators);
    if (!aParts.TakeDigits(2, &aDay->mMonth)) {
        return separator == '\0';
    }
    if (separator == '\0') {
        return aParts.TakeDigits(2, &aDay->mDay);
    }
    return aParts.TakeOneOf({&separator, 1}) == '\0' || aParts.TakeDigits(2, &aDay->mDay);
}

struct Time {
    unsigned mHour = 0;
    unsigned mMinute = 0;
    unsigned mSecond = 0;
    char mZoneSign = '\0'; ///< 'Z' for that of Greenwich, NUL where none is stated
    unsigned mZoneHour = 0;
    unsigned mZoneMinute = 0;
};

bool TakeZone(Parts& aParts, Time* aTime) {
    constexpr unsigned kMaxZoneHour = 14;
    aTime->mZoneSign = aParts.TakeOneOf("Zz+-");
    if (aTime->mZoneSign == '\0' || aTime->mZoneSign == 'Z') {
        return true;
    }
    if (aTime->mZoneSign == 'z') {
        aTime->mZoneSign = 'Z';
        return true;
    }
    if (!aParts.TakeDigits(2, &aTime->mZoneHour)) {
        return false;
    }
    aParts.TakeOneOf(":");
    return aParts.TakeDigits(2, &aTime->mZoneMinute) && aTime->mZoneHour <= kMaxZoneHour &&
           aTime->mZoneMinute < 60;
}

/// True when the whole rest is a time of a minute at least.
bool TakeTime(Parts& aParts, Time* aTime) {
    if (!aParts.TakeDigits(2, &aTime->mHour) || aParts.TakeOneOf(":") == '\0' ||
        !aParts.TakeDigits(2, &aTime->mMinute)) {
        return false;
    }
    if (aParts.TakeOneOf(":") != '\0') {
        if (!aParts.TakeDigits(2, &aTime->mSecond)) {
            return false;
        }
        if (aParts.TakeOneOf(".,") != '\0') {
            aParts.SkipDigits();
        }
    }
    return TakeZone(aParts, aTime) && aParts.IsEmpty() && aTime->mHour < 24 && aTime->mMinute < 60 &&
           aTime->mSecond < 60;
}

/// Writes the numbers of a date with their leading zeros.
class Writer {
public:
    void Put(char aCharacter) {
        mText[mLength] = aCharacter;
        ++mLength;
    }
    void Put(char aSeparator, unsigned aNumber) {
        Put(aSeparator);
        Put(static_cast<char>('0' + aNumber / 10));
        Put(static_cast<char>('0' + aNumber % 10));
    }
    void PutYear(unsigned aYear) {
        for (unsigned divisor = 1000; divisor != 0; divisor /= 10) {
            Put(static_cast<char>('0' + aYear / divisor % 10));
        }
    }
    ezCString Get() const { return {mText.data(), mLength}; }

private:
    std::array<char, sizeof "YYYY-MM-DDThh:mm:ss+hh:mm"> mText = {};
    std::size_t mLength = 0;
};

void Write(const Time& aTime, Writer& aWriter) {
    aWriter.Put('T', aTime.mHour);
    aWriter.Put(':', aTime.mMinute);
    aWriter.Put(':', aTime.mSecond);
    if (aTime.mZoneSign == 'Z') {
        aWriter.Put('Z');
    } else if (aTime.mZoneSign != '\0') {
        aWriter.Put(aTime.mZoneSign, aTime.mZoneHour);
        aWriter.Put(':', aTime.mZoneMinute);
    }
}

constexpr std::int64_t kSecondsOfDay = 86400;

/// The day of the proleptic Gregorian calendar, so many days after 1970 begins; of the years 0 to 9999.
Day DayAfter1970(std::int64_t aDays) {
    constexpr std::int64_t kDaysTo1970 = 719468; // from a 1st of March on: the leap day is the last of a year
    constexpr std::int64_t kDaysOf400Years = 146097;
    const std::int64_t days = aDays + kDaysTo1970;
    const std::int64_t inEra = days % kDaysOf400Years;
    const std::int64_t year = (inEra - inEra / 1460 + inEra / 36524 - inEra / 146096) / 365;
    const std::int64_t inYear = inEra - (365 * year + year / 4 - year / 100);
    const std::int64_t month = (5 * inYear + 2) / 153; // from March on
    Day day;
    day.mYear = static_cast<unsigned>(days / kDaysOf400Years * 400 + year + (month >= 10 ? 1 : 0));
    day.mMonth = static_cast<unsigned>(month < 10 ? month + 3 : month - 9);
    day.mDay = static_cast<unsigned>(inYear - (153 * month + 2) / 5 + 1);
    return day;
}

} // namespace

ezCString UTCDateText(std::int64_t aSeconds) {
    constexpr std::int64_t kFirst = -62135596800; // the year 1
    constexpr std::int64_t kLast = 253402300799;  // the last second of 9999
    if (aSeconds < kFirst || aSeconds > kLast) {
        return {};
    }
    const std::int64_t days = aSeconds / kSecondsOfDay - (aSeconds % kSecondsOfDay < 0 ? 1 : 0);
    const auto clock = static_cast<unsigned>(aSeconds - days * kSecondsOfDay);
    const Day day = DayAfter1970(days);
    Writer writer;
    writer.PutYear(day.mYear);
    writer.Put('-', day.mMonth);
    writer.Put('-', day.mDay);
    Time time;
    time.mHour = clock / 3600;
    time.mMinute = clock / 60 % 60;
    time.mSecond = clock % 60;
    time.mZoneSign = 'Z';
    Write(time, writer);
    return writer.Get();
}

ezCString CleanDate(std::string_view aText) {
    Parts parts(WithoutBlanks(aText));
    Day day;
    if (!TakeDay(parts, &day) || !IsDay(day)) {
        return {};
    }
    const bool fTime = parts.TakeOneOf("Tt ") != '\0';
    if (!fTime && !parts.IsEmpty()) {
        return {};
    }
    Writer writer;
    writer.PutYear(day.mYear);
    if (day.mMonth != 0) {
        writer.Put('-', day.mMonth);
    }
    if (day.mDay != 0) {
        writer.Put('-', day.mDay);
        Time time;
        if (fTime && TakeTime(parts, &time)) {
            Write(time, writer);
        }
    }
    return writer.Get();
}
