#include "ezPlatform/config/PropertyList.h"

#include "ezPlatform/text/CString.h"

#include <functional>
#include <map>
#include <string>

struct ezPropertyList {
    // Numbers are kept as decimal text: one form that both readings serve.
    std::map<std::string, std::string, std::less<>> mValues;
};

ezPropertyList* ezPropertyList_New() {
    return new ezPropertyList;
}

void ezPropertyList_Delete(ezPropertyList* aList) {
    delete aList;
}

void ezPropertyList_Set_uint32(ezPropertyList* aList, const char* aName, uint32 aValue) {
    ezPropertyList_Set_charPtr(aList, aName, std::to_string(aValue).c_str());
}

void ezPropertyList_Set_charPtr(ezPropertyList* aList, const char* aName, const char* aValue) {
    if (aList == nullptr || aName == nullptr) {
        return;
    }
    if (aValue == nullptr) {
        aList->mValues.erase(aName);
    } else {
        aList->mValues[aName] = aValue;
    }
}

uint32 ezPropertyList_Get_uint32(const ezPropertyList* aList, const char* aName) {
    const char* text = ezPropertyList_Get_charPtr(aList, aName);
    uint32 value = 0;
    return text != nullptr && ezReadDecimal32(text, &value) ? value : 0;
}

const char* ezPropertyList_Get_charPtr(const ezPropertyList* aList, const char* aName) {
    if (aList == nullptr || aName == nullptr) {
        return nullptr;
    }
    const auto found = aList->mValues.find(std::string_view(aName));
    return found != aList->mValues.end() ? found->second.c_str() : nullptr;
}
