#include "ezPlatform/text/StringList.h"

#include <algorithm>
#include <string>

bool ezStringList::Has(const char* aText, bool afExactCase) const {
    const ezCString wanted(aText);
    return std::any_of(mItems.begin(), mItems.end(), [&](const ezCString& anItem) {
        return afExactCase ? anItem == wanted : ezIsEqualNoCase(anItem.View(), wanted.View());
    });
}

ezCString ezStringList::GetAt(std::size_t anIndex) const {
    return anIndex < mItems.size() ? mItems[anIndex] : ezCString();
}

std::int32_t ezStringList::GetAtInt32(std::size_t anIndex, std::int32_t aDefault, bool* afOk) const {
    std::int32_t value = aDefault;
    const bool fOk = anIndex < mItems.size() && ezReadInt32(mItems[anIndex].View(), &value);
    if (afOk != nullptr) {
        *afOk = fOk;
    }
    return value;
}

void ezStringList::Remove(const char* aText) {
    const ezCString unwanted(aText);
    mItems.erase(std::remove(mItems.begin(), mItems.end(), unwanted), mItems.end());
}

ezCSVStringList ezCSVStringList::WithSeparator(char aSeparator) {
    return ezCSVStringList(aSeparator);
}

ezCSVStringList ezCSVStringList::FromText(const ezCString& aText) {
    ezCSVStringList list(',');
    if (aText.IsEmpty()) {
        return list;
    }
    const std::string_view text = aText.View();
    std::string element;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 1 < text.size() && text[i + 1] == ',') {
            element += ',';
            ++i;
        } else if (text[i] == ',') {
            list.mItems.emplace_back(std::string_view(element));
            element.clear();
        } else {
            element += text[i];
        }
    }
    list.mItems.emplace_back(std::string_view(element));
    return list;
}

ezCString ezCSVStringList::Join() const {
    ezCString text;
    for (const ezCString& item : mItems) {
        if (&item != &mItems.front()) {
            text += ezCString(&mSeparator, 1);
        }
        text += item;
    }
    return text;
}

ezCString ezCSVStringList::JoinEscaped() const {
    ezCSVStringList escaped(mSeparator);
    for (const ezCString& item : mItems) {
        escaped.mItems.push_back(item.Replace(",", "\\,", true));
    }
    return escaped.Join();
}
