#pragma once

#include "ez/ExtensionMimeTypeMatcherEntry.h"

#include "ezPlatform/containers/Items.h"
#include "ezPlatform/containers/PtrList.h"

#include <string>
#include <vector>

using Strings = std::vector<std::string>;

/// The C strings of a list.
inline Strings Of(const ezPtrList* aList) {
    Strings strings;
    for (const char* item : ezItems<const char>(aList)) {
        strings.emplace_back(item);
    }
    return strings;
}

/// An entry as "extensions@MIME types@classes@types".
inline std::string Text(const ExtensionMimeTypeMatcherEntry& anEntry) {
    const auto join = [](const ezPtrList* aList) {
        std::string text;
        for (const std::string& item : Of(aList)) {
            text += (text.empty() ? "" : ",") + item;
        }
        return text;
    };
    return join(anEntry.mExtensions) + "@" + join(anEntry.mMimeTypes) + "@" + join(anEntry.mUPnPClasses) +
           "@" + join(anEntry.mTypes);
}
