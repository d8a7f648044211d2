#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <string>

namespace {

/// A record that parser, ini entry and stream have completed holds about so many values; taken at once, they
/// cost one block of memory.
constexpr std::size_t kUsualEntryCount = 12;

ezCString DecimalText(const ezuint64& aNumber) {
    return ezCString(std::to_string(aNumber.ToUInt64()).c_str());
}

template <typename Entry>
bool KeyIsBelow(const Entry& anEntry, std::string_view aKey) {
    return anEntry.mKey.View() < aKey;
}

} // namespace

ezMediaInfo::~ezMediaInfo() = default;

const ezMediaInfo::Entry* ezMediaInfo::Find(const char* aKey) const {
    const std::string_view key(aKey);
    const auto at = std::lower_bound(mEntries.begin(), mEntries.end(), key, KeyIsBelow<Entry>);
    return at != mEntries.end() && at->mKey.View() == key ? &*at : nullptr;
}

ezMediaInfo::Entry* ezMediaInfo::EntryToWrite(const char* aKey, bool afOverwrite) {
    const std::string_view key(aKey);
    const auto at = std::lower_bound(mEntries.begin(), mEntries.end(), key, KeyIsBelow<Entry>);
    if (at != mEntries.end() && at->mKey.View() == key) {
        return afOverwrite ? &*at : nullptr;
    }
    const std::ptrdiff_t index = at - mEntries.begin();
    if (mEntries.empty()) {
        mEntries.reserve(kUsualEntryCount);
    }
    return &*mEntries.insert(mEntries.begin() + index, Entry{ezCString(key), ezCString(), 0U, false});
}

void ezMediaInfo::Set(const char* aKey, const ezCString& aValue, bool afOverwrite) {
    if (aValue.IsEmpty()) {
        const Entry* entry = Find(aKey);
        if (entry != nullptr && afOverwrite) {
            mEntries.erase(mEntries.begin() + (entry - mEntries.data()));
        }
        return;
    }
    if (Entry* entry = EntryToWrite(aKey, afOverwrite)) {
        entry->mText = aValue;
        entry->mNumber = 0U;
        entry->mfNumber = false;
    }
}

void ezMediaInfo::Set(const char* aKey, const ezuint64& aValue, bool afOverwrite) {
    if (Entry* entry = EntryToWrite(aKey, afOverwrite)) {
        entry->mText = ezCString();
        entry->mNumber = aValue;
        entry->mfNumber = true;
    }
}

void ezMediaInfo::SetSigned(const char* aKey, std::int64_t aValue, bool afOverwrite) {
    if (aValue < 0 && aValue >= INT32_MIN) {
        Set(aKey, ezuint64(static_cast<uint32>(aValue)), afOverwrite);
    } else {
        Set(aKey, ezuint64(aValue), afOverwrite);
    }
}

ezCString ezMediaInfo::GetCString(const char* aKey, const ezCString& aDefault) const {
    const Entry* entry = Find(aKey);
    if (entry == nullptr) {
        return aDefault;
    }
    return entry->mfNumber ? DecimalText(entry->mNumber) : entry->mText;
}

uint32 ezMediaInfo::GetUInt32(const char* aKey, uint32 aDefault) const {
    return GetUInt64(aKey, aDefault).ToUInt32();
}

ezuint64 ezMediaInfo::GetUInt64(const char* aKey, const ezuint64& aDefault) const {
    const Entry* entry = Find(aKey);
    if (entry == nullptr) {
        return aDefault;
    }
    if (entry->mfNumber) {
        return entry->mNumber;
    }
    std::uint64_t value = 0;
    return ezReadDecimal(entry->mText.View(), &value) ? ezuint64(value) : aDefault;
}

bool ezMediaInfo::IsNumber(const char* aKey) const {
    const Entry* entry = Find(aKey);
    return entry != nullptr && entry->mfNumber;
}

ezMediaInfo* ezMediaInfo::Duplicate() const {
    return new ezMediaInfo(*this);
}

void ezMediaInfo::Finish(bool /*afComplete*/) {}

ezCString ezMediaInfo::GetOtherProperties() const {
    ezCString text;
    for (const Entry& entry : mEntries) {
        if (!text.IsEmpty()) {
            text += ", ";
        }
        text += entry.mKey;
        text += "=";
        text += entry.mfNumber ? DecimalText(entry.mNumber) : entry.mText;
    }
    return text;
}
