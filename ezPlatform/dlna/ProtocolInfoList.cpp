#include "ezPlatform/dlna/ProtocolInfoList.h"

#include "ezPlatform/base/Owned.h"
#include "ezPlatform/text/StringList.h"

#include <vector>

namespace {

constexpr const char* kTransport = "http-get:*:";

} // namespace

struct ezDLNAProtocolInfoList {
    std::vector<ezOwned<ezDLNAProtocolInfo_Delete>> mItems;
};

ezDLNAProtocolInfoList* ezDLNAProtocolInfoList_NewFromProfileInfo(const char* aText, int /*aReserved*/) {
    ezDLNAProtocolInfoList* list = new ezDLNAProtocolInfoList;
    const ezCSVStringList entries = ezCSVStringList::FromText(aText);
    for (std::size_t i = 0; i < entries.GetCount(); ++i) {
        const ezCString entry = entries.GetAt(i);
        if (!entry.IsEmpty()) {
            list->mItems.emplace_back(ezDLNAProtocolInfo_New((kTransport + entry).c_str(), 0, 0));
        }
    }
    return list;
}

void ezDLNAProtocolInfoList_Delete(ezDLNAProtocolInfoList* aList) {
    delete aList;
}

std::size_t ezDLNAProtocolInfoList_GetCount(const ezDLNAProtocolInfoList* aList) {
    return aList != nullptr ? aList->mItems.size() : 0;
}

ezDLNAProtocolInfo* ezDLNAProtocolInfoList_GetProtocolInfoAt(const ezDLNAProtocolInfoList* aList,
                                                             std::size_t anIndex) {
    return anIndex < ezDLNAProtocolInfoList_GetCount(aList) ? aList->mItems[anIndex].get() : nullptr;
}

void ezDLNAProtocolInfoList_Remove(ezDLNAProtocolInfoList* aList, std::size_t anIndex) {
    if (anIndex < ezDLNAProtocolInfoList_GetCount(aList)) {
        aList->mItems.erase(aList->mItems.begin() + static_cast<std::ptrdiff_t>(anIndex));
    }
}

char* ezDLNAProtocolInfoList_GetMimeTypePNStr(const ezDLNAProtocolInfoList* aList) {
    ezCSVStringList entries = ezCSVStringList::WithSeparator(',');
    for (std::size_t i = 0; i < ezDLNAProtocolInfoList_GetCount(aList); ++i) {
        const ezDLNAProtocolInfo* info = aList->mItems[i].get();
        const ezCString field = ezDLNAProtocolInfo_GetField(info)->GetText();
        entries.Add((ezCString(ezDLNAProtocolInfo_GetMimeType(info)) + ":" + field).c_str());
    }
    return ezStrdup(entries.JoinEscaped().c_str());
}

char* ezDLNAProtocolInfoList_GetMimeTypeProfileStr(const ezDLNAProtocolInfoList* aList) {
    return ezDLNAProtocolInfoList_GetMimeTypePNStr(aList);
}
