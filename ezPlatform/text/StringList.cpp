#include "ezPlatform/text/StringList.h"

#include <algorithm>

bool ezStringList::Has(const char* aText, bool afExactCase) const {
    const ezCString wanted(aText);
    return std::any_of(mItems.begin(), mItems.end(), [&](const ezCString& anItem) {
        return afExactCase ? anItem == wanted : anItem.CompareNoCase(wanted) == 0;
    });
}

ezCString ezStringList::GetAt(std::size_t anIndex) const {
    return anIndex < mItems.size() ? mItems[anIndex] : ezCString();
}

ezCSVStringList ezCSVStringList::WithSeparator(char aSeparator) {
    return ezCSVStringList(aSeparator);
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
