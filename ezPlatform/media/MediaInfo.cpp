#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <numeric>
#include <string>
#include <utility>

namespace {

/// A record that parser, ini entry and stream have completed holds at most about so many values; taken at
/// once, they cost one block of memory.
constexpr std::size_t kUsualEntryCount = 32;

constexpr uint32 kMaximumPlace = 0x7FFFFFFF;

/// kezInfo_Duration as the start of a key.
constexpr uint32 kDurationStart = 0x64750000;

ezCString DecimalText(const ezuint64& aNumber) {
    return ezCString(std::to_string(aNumber.ToUInt64()).c_str());
}

bool IsLongKey(uint32 aStart) {
    return (aStart & 0xFFU) != 0;
}

/// Bytes of an entry's text that belong to its key, without the NUL after them.
std::size_t RestOfKey(uint32 aStart, const ezCString& aText) {
    return IsLongKey(aStart) ? aText.View().find('\0') : 0;
}

std::string_view ValueOf(uint32 aStart, const ezCString& aText) {
    return IsLongKey(aStart) ? aText.View().substr(RestOfKey(aStart, aText) + 1) : aText.View();
}

ezCString StoredText(std::string_view aRestOfKey, std::string_view aValue) {
    std::string text(aRestOfKey);
    text.push_back('\0');
    return ezCString(std::string_view(text.append(aValue)));
}

std::string KeyOf(uint32 aStart, const ezCString& aText) {
    std::string key;
    for (uint32 rest = aStart; rest != 0; rest <<= 8) {
        key.push_back(static_cast<char>(rest >> 24));
    }
    return key.append(aText.View().substr(0, RestOfKey(aStart, aText)));
}

} // namespace

// Inline, since an exported function is a call even from beside it.

inline ezMediaInfo::Key::Key(const char* aKey) {
    const char* at = aKey;
    for (unsigned shift = 32; shift != 0 && *at != '\0'; ++at) {
        shift -= 8;
        mStart |= static_cast<uint32>(static_cast<unsigned char>(*at)) << shift;
    }
    if (IsLongKey(mStart)) {
        mRest = at;
    }
}

/// Without a branch: those of a search are ones that no processor foresees.
inline std::size_t ezMediaInfo::Starts::PlaceAfter(uint32 aStart) const {
    const auto letters = static_cast<std::uint16_t>(aStart >> 16);
    std::int16_t found = 0;
    std::int16_t at = 0;
    for (const std::uint16_t other : mLetters) {
        ++at;
        found = std::max<std::int16_t>(found, other == letters ? at : std::int16_t{0});
    }
    return static_cast<std::size_t>(found);
}

inline bool ezMediaInfo::IsSorted() const {
    return mEntries.empty() || mEntries.back().mPlace != kMaximumPlace;
}

void ezMediaInfo::Sort() const {
    if (IsSorted()) {
        return;
    }
    std::vector<uint32> places(mEntries.size());
    std::iota(places.begin(), places.end(), 0U);
    std::sort(places.begin(), places.end(), [this](uint32 aLeft, uint32 aRight) {
        const Entry& left = mEntries[aLeft];
        const Entry& right = mEntries[aRight];
        return left.mStart != right.mStart
                   ? left.mStart < right.mStart
                   : left.mText.View().substr(0, RestOfKey(left.mStart, left.mText)) <
                         right.mText.View().substr(0, RestOfKey(right.mStart, right.mText));
    });
    for (std::size_t i = 0; i < places.size(); ++i) {
        mEntries[i].mPlace = places[i] & kMaximumPlace;
    }
}

inline std::size_t ezMediaInfo::LowerBound(const Key& aKey) const {
    Sort();
    std::size_t first = 0;
    std::size_t count = mEntries.size();
    while (count != 0) {
        const std::size_t half = count / 2;
        const Entry& entry = GetSorted(first + half);
        const bool fBelow =
            entry.mStart != aKey.mStart
                ? entry.mStart < aKey.mStart
                : entry.mText.View().substr(0, RestOfKey(entry.mStart, entry.mText)) < aKey.mRest;
        first += fBelow ? half + 1 : 0;
        count = fBelow ? count - half - 1 : half;
    }
    return first;
}

inline bool ezMediaInfo::IsAt(std::size_t anIndex, const Key& aKey) const {
    if (anIndex == mEntries.size() || GetSorted(anIndex).mStart != aKey.mStart) {
        return false;
    }
    if (!aKey.IsLong()) {
        return true;
    }
    const ezCString& text = GetSorted(anIndex).mText;
    return text.View().substr(0, RestOfKey(aKey.mStart, text)) == aKey.mRest;
}

/// Not where entries are too many for the letters, nor where a longer key begins like it, nor for the letters
/// that stand for no entry.
inline bool ezMediaInfo::IsToldByLetters(const Key& aKey, std::size_t aPlaceAfter) const {
    return aKey.IsUsual() && mEntries.size() <= mStarts.mLetters.size() &&
           (aPlaceAfter == 0 ||
            (aPlaceAfter <= mEntries.size() && mEntries[aPlaceAfter - 1].mStart == aKey.mStart));
}

inline const ezMediaInfo::Entry* ezMediaInfo::Find(const Key& aKey) const {
    const std::size_t after = mStarts.PlaceAfter(aKey.mStart);
    if (IsToldByLetters(aKey, after)) {
        return after == 0 ? nullptr : &mEntries[after - 1];
    }
    const std::size_t at = LowerBound(aKey);
    return IsAt(at, aKey) ? &GetSorted(at) : nullptr;
}

inline ezMediaInfo::Entry& ezMediaInfo::Append(const Key& aKey) {
    if (mEntries.empty()) {
        mEntries.reserve(kUsualEntryCount);
    }
    Entry& entry = mEntries.emplace_back(); // made where it stays
    entry.mStart = aKey.mStart;
    entry.mPlace = kMaximumPlace;
    mStarts.Set(mEntries.size() - 1, aKey.mStart);
    return entry;
}

inline ezMediaInfo::Entry* ezMediaInfo::EntryToWrite(const Key& aKey, bool afOverwrite) {
    const std::size_t after = mStarts.PlaceAfter(aKey.mStart);
    if (IsToldByLetters(aKey, after)) {
        if (after != 0) {
            return afOverwrite ? &mEntries[after - 1] : nullptr;
        }
        return &Append(aKey);
    }
    const std::size_t at = LowerBound(aKey);
    if (IsAt(at, aKey)) {
        return afOverwrite ? &mEntries[mEntries[at].mPlace] : nullptr;
    }
    Entry& entry = Append(aKey);
    const std::size_t last = mEntries.size() - 1;
    for (std::size_t i = last; i > at; --i) { // numbers move here, and no texts
        mEntries[i].mPlace = mEntries[i - 1].mPlace;
    }
    mEntries[at].mPlace = static_cast<uint32>(last) & kMaximumPlace;
    return &entry;
}

inline void ezMediaInfo::Erase(std::size_t anIndex) {
    const uint32 place = mEntries[anIndex].mPlace;
    for (std::size_t i = anIndex; i + 1 < mEntries.size(); ++i) {
        mEntries[i].mPlace = mEntries[i + 1].mPlace;
    }
    const std::size_t last = mEntries.size() - 1;
    if (place != last) { // which fills the gap
        for (Entry& entry : mEntries) {
            if (entry.mPlace == last) {
                entry.mPlace = place & kMaximumPlace;
            }
        }
        Entry& gap = mEntries[place];
        gap.mStart = mEntries[last].mStart;
        mStarts.Set(place, gap.mStart);
        gap.mfNumber = mEntries[last].mfNumber;
        gap.mNumber = mEntries[last].mNumber;
        gap.mText = std::move(mEntries[last].mText);
    }
    mEntries.pop_back();
    mStarts.Set(last, UINT32_MAX);
}

ezMediaInfo::~ezMediaInfo() = default;

bool ezMediaInfo::Has(const char* aKey) const {
    return Find(Key(aKey)) != nullptr;
}

inline void ezMediaInfo::TakeAway(const Key& aKey) {
    if (Find(aKey) != nullptr) {
        Erase(LowerBound(aKey));
    }
}

inline ezMediaInfo::Entry* ezMediaInfo::EntryOfText(const Key& aKey, std::string_view aValue,
                                                    bool afOverwrite) {
    if (aKey.mStart == kDurationStart && afOverwrite) {
        LeaveSeconds(aValue);
    }
    if (aValue.empty()) {
        if (afOverwrite) {
            TakeAway(aKey);
        }
        return nullptr;
    }
    Entry* const entry = EntryToWrite(aKey, afOverwrite);
    if (entry != nullptr) {
        entry->mNumber = 0U;
        entry->mfNumber = 0;
    }
    return entry;
}

void ezMediaInfo::Set(const char* aKey, const ezCString& aValue, bool afOverwrite) {
    const Key key(aKey);
    if (Entry* entry = EntryOfText(key, aValue.View(), afOverwrite)) {
        entry->mText = key.IsLong() ? StoredText(key.mRest, aValue.View()) : aValue;
    }
}

void ezMediaInfo::Set(const char* aKey, ezCString&& aValue, bool afOverwrite) {
    const Key key(aKey);
    if (Entry* entry = EntryOfText(key, aValue.View(), afOverwrite)) {
        entry->mText = key.IsLong() ? StoredText(key.mRest, aValue.View()) : std::move(aValue);
    }
}

void ezMediaInfo::Set(const char* aKey, const ezuint64& aValue, bool afOverwrite) {
    const Key key(aKey);
    if (key.mStart == kDurationStart && afOverwrite && Has(aKey)) {
        LeaveSeconds(DecimalText(aValue).View());
    }
    if (Entry* entry = EntryToWrite(key, afOverwrite)) {
        if (key.IsLong() || !entry->mText.IsEmpty()) {
            entry->mText = key.IsLong() ? StoredText(key.mRest, {}) : ezCString();
        }
        entry->mNumber = aValue;
        entry->mfNumber = 1;
    }
}

void ezMediaInfo::SetSigned(const char* aKey, std::int64_t aValue, bool afOverwrite) {
    if (aValue < 0 && aValue >= INT32_MIN) {
        Set(aKey, ezuint64(static_cast<uint32>(aValue)), afOverwrite);
    } else {
        Set(aKey, ezuint64(aValue), afOverwrite);
    }
}

void ezMediaInfo::LeaveSeconds(std::string_view aNewSeconds) {
    const Entry* const old = Find(Key(kezInfo_Duration));
    if (old == nullptr) {
        return;
    }
    std::uint64_t seconds = 0;
    const bool fSame = ezReadDecimal(aNewSeconds, &seconds)
                           ? GetUInt64(kezInfo_Duration, ~seconds) == seconds
                           : old->mfNumber == 0 && old->mText.View() == aNewSeconds;
    if (!fSame) {
        TakeAway(Key(kezInfo_DurationMilliseconds));
        TakeAway(Key(kezInfo_DurationMethod));
        TakeAway(Key(kezInfo_DurationBound));
    }
}

void ezMediaInfo::SetDuration(const ezuint64& aMilliseconds, const ezCString& aMethod) {
    constexpr std::string_view kEstimate = "estimate";
    constexpr std::uint64_t kThousand = 1000;
    const std::uint64_t milliseconds = aMilliseconds.ToUInt64();
    const bool fMore =
        milliseconds % kThousand != 0 && aMethod.View().substr(0, kEstimate.size()) == kEstimate;
    Set(kezInfo_Duration, milliseconds / kThousand + (fMore ? 1 : 0), true);
    Set(kezInfo_DurationMilliseconds, aMilliseconds, true);
    Set(kezInfo_DurationMethod, aMethod, true);
    TakeAway(Key(kezInfo_DurationBound));
}

ezCString ezMediaInfo::GetCString(const char* aKey, const ezCString& aDefault) const {
    const Entry* entry = Find(Key(aKey));
    if (entry == nullptr) {
        return aDefault;
    }
    if (entry->mfNumber != 0) {
        return DecimalText(entry->mNumber);
    }
    return IsLongKey(entry->mStart) ? ezCString(ValueOf(entry->mStart, entry->mText)) : entry->mText;
}

uint32 ezMediaInfo::GetUInt32(const char* aKey, uint32 aDefault) const {
    return GetUInt64(aKey, aDefault).ToUInt32();
}

ezuint64 ezMediaInfo::GetUInt64(const char* aKey, const ezuint64& aDefault) const {
    const Entry* entry = Find(Key(aKey));
    if (entry == nullptr) {
        return aDefault;
    }
    if (entry->mfNumber != 0) {
        return entry->mNumber;
    }
    std::uint64_t value = 0;
    return ezReadDecimal(ValueOf(entry->mStart, entry->mText), &value) ? ezuint64(value) : aDefault;
}

bool ezMediaInfo::IsNumber(const char* aKey) const {
    const Entry* entry = Find(Key(aKey));
    return entry != nullptr && entry->mfNumber != 0;
}

ezCString ezMediaInfo::GetKeyAt(std::size_t anIndex) const {
    Sort();
    const Entry& entry = GetSorted(anIndex);
    return ezCString(std::string_view(KeyOf(entry.mStart, entry.mText)));
}

ezMediaInfo* ezMediaInfo::Duplicate() const {
    return new ezMediaInfo(*this);
}

void ezMediaInfo::Finish(bool /*afComplete*/) {}

ezCString ezMediaInfo::GetOtherProperties() const {
    Sort();
    ezCString text;
    for (std::size_t i = 0; i < mEntries.size(); ++i) {
        const Entry& entry = GetSorted(i);
        if (!text.IsEmpty()) {
            text += ", ";
        }
        text += GetKeyAt(i);
        text += "=";
        text +=
            entry.mfNumber != 0 ? DecimalText(entry.mNumber) : ezCString(ValueOf(entry.mStart, entry.mText));
    }
    return text;
}
