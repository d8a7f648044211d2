// The door: a profile-info text, the list of what a server or a renderer can do. The input is the text.

#include "fuzz/support/Check.h"

#include "ezPlatform/base/Owned.h"
#include "ezPlatform/dlna/ProtocolInfoList.h"
#include "ezPlatform/text/CString.h"
#include "ezPlatform/text/StringList.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

namespace {

using List = ezOwned<ezDLNAProtocolInfoList_Delete>;
using Texts = std::vector<std::string>;

/// Bounds on what is asked of one input, so that a long one does not take for ever.
constexpr std::size_t kMaximumRemovals = 8;

List Parsed(const std::string& aText) {
    return List(ezDLNAProtocolInfoList_NewFromProfileInfo(aText.c_str(), 0));
}

std::string Taken(char* aText) {
    FuzzCheck(aText != nullptr);
    return std::string(ezCString::FromAllocatedString(aText).View());
}

std::string Text(const List& aList) {
    return Taken(ezDLNAProtocolInfoList_GetMimeTypePNStr(aList.get()));
}

Texts Items(const List& aList) {
    Texts items;
    for (std::size_t i = 0; i < ezDLNAProtocolInfoList_GetCount(aList.get()); ++i) {
        const ezDLNAProtocolInfo* info = ezDLNAProtocolInfoList_GetProtocolInfoAt(aList.get(), i);
        FuzzCheck(info != nullptr);
        items.push_back(Taken(ezDLNAProtocolInfo_GetStr(info)));
    }
    FuzzCheck(ezDLNAProtocolInfoList_GetProtocolInfoAt(aList.get(), items.size()) == nullptr);
    return items;
}

/// An entry that ends in a backslash has no form in a list, unless it stands last: the backslash would take
/// the comma in.
bool HasTextForm(const Texts& anItems) {
    return std::none_of(anItems.begin(), anItems.end(),
                        [](const std::string& anItem) { return anItem.back() == '\\'; });
}

/// What is written is read back as it was written.
void CheckText(const List& aList) {
    const std::string text = Text(aList);
    FuzzCheck(text == Taken(ezDLNAProtocolInfoList_GetMimeTypeProfileStr(aList.get())));
    if (HasTextForm(Items(aList))) {
        const List again = Parsed(text);
        FuzzCheck(Items(again) == Items(aList));
        FuzzCheck(Text(again) == text);
    }
}

void CheckRemoval(const std::string& aText, std::size_t anIndex) {
    const List list = Parsed(aText);
    Texts expected = Items(list);
    ezDLNAProtocolInfoList_Remove(list.get(), anIndex);
    if (anIndex < expected.size()) {
        expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(anIndex));
    }
    FuzzCheck(Items(list) == expected);
    CheckText(list);
}

void CheckLinkProtection(const std::string& aText) {
    const List list = Parsed(aText);
    const auto protect = [](const List& aList) {
        for (std::size_t i = 0; i < ezDLNAProtocolInfoList_GetCount(aList.get()); ++i) {
            ezDLNAProtocolInfo_SetDTCPIP(ezDLNAProtocolInfoList_GetProtocolInfoAt(aList.get(), i), nullptr, 0,
                                         1);
        }
    };
    protect(list);
    CheckText(list);
    const std::string once = Text(list);
    if (HasTextForm(Items(list))) {
        const List again = Parsed(once);
        protect(again);
        FuzzCheck(Text(again) == once);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    const FuzzHouse house;
    std::string text(aSize, '\0');
    std::copy_n(aData, aSize, text.begin());

    const List list = Parsed(text);
    const Texts items = Items(list);
    const ezCSVStringList entries = ezCSVStringList::FromText(text.c_str());
    std::size_t stated = 0;
    for (std::size_t i = 0; i < entries.GetCount(); ++i) {
        stated += entries.GetAt(i).IsEmpty() ? 0 : 1;
    }
    FuzzCheck(items.size() == stated); // empty entries alone are dropped
    for (const std::string& item : items) {
        FuzzCheck(ezCString(item.c_str()).StartsWith("http-get:*:"));
    }
    CheckText(list);
    for (std::size_t i = 0; i <= std::min(items.size(), kMaximumRemovals); ++i) {
        CheckRemoval(text, i);
    }
    CheckLinkProtection(text);

    FuzzCheck(ezDLNAProtocolInfoList_GetCount(nullptr) == 0);
    ezDLNAProtocolInfoList_Remove(nullptr, 0);
    return 0;
}
