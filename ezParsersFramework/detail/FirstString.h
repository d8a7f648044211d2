#pragma once

#include "ezPlatform/containers/PtrList.h"

/// The first string of a list of C strings, owned by the list; null when it is empty.
inline const char* FirstString(const ezPtrList* aList) {
    void** first = ezPtrList_GetAt(aList, 0);
    return first != nullptr ? static_cast<const char*>(*first) : nullptr;
}
