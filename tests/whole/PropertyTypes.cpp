#include "PropertyTypes.h"

#include <algorithm>

namespace {

bool Has(const std::vector<std::string>& aList, const std::string& aText) {
    return std::find(aList.begin(), aList.end(), aText) != aList.end();
}

std::string Joined(const std::vector<std::string>& aList, const char* aSeparator = ",") {
    std::string text;
    for (const std::string& item : aList) {
        text += (text.empty() ? "" : aSeparator) + item;
    }
    return text;
}

} // namespace

const std::vector<TypesEntry>& TypesTable() {
    static const std::vector<TypesEntry> sTable = {
        {"odd", {"odd", "a2"}, {"video/x-odd", "audio/x-a"}, "item.videoItem", {}, true},
        {"aaa", {"aaa", "a2"}, {"audio/x-a"}, "item.audioItem", {}, false},
        {"bbb", {"bbb", "a2"}, {"video/x-b", "audio/x-a"}, "item.videoItem", {"ccc"}, false},
        {"ccc", {"ccc"}, {"image/x-c"}, "item.imageItem", {"aaa"}, false},
        {"pcm", {"pcm"}, {"audio/l16"}, "item.audioItem", {}, false},
        {"wav", {"wav"}, {"audio/wav"}, "item.audioItem", {"bbb"}, false},
    };
    return sTable;
}

std::string TypesText() {
    std::string excluded = "[MimeTypesExcluded]\n";
    std::string normal = "[MimeTypes]\n";
    for (const TypesEntry& entry : TypesTable()) {
        std::string& section = entry.mfExcluded ? excluded : normal;
        section += entry.mKey + "=" + Joined(entry.mExtensions) + "@" + Joined(entry.mMimeTypes) + "@" +
                   entry.mClass;
        section += (entry.mFurtherTypes.empty() ? "" : "@" + Joined(entry.mFurtherTypes)) + "\n";
    }
    return excluded + normal;
}

std::vector<const TypesEntry*> EntriesOfExtension(const std::string& anExtension) {
    std::vector<const TypesEntry*> entries;
    for (const TypesEntry& entry : TypesTable()) {
        if (Has(entry.mExtensions, Lower(anExtension))) {
            entries.push_back(&entry);
        }
    }
    return entries;
}

std::vector<const TypesEntry*> EntriesOfMimeType(const std::string& aMimeType) {
    std::vector<const TypesEntry*> entries;
    for (const TypesEntry& entry : TypesTable()) {
        if (Has(entry.mMimeTypes, Lower(aMimeType))) {
            entries.push_back(&entry);
        }
    }
    const std::size_t parameters = aMimeType.find(';');
    return entries.empty() && parameters != std::string::npos
               ? EntriesOfMimeType(aMimeType.substr(0, parameters))
               : entries;
}

std::string MimeTypeOfExtension(const std::string& anExtension) {
    const std::vector<const TypesEntry*> entries = EntriesOfExtension(anExtension);
    return entries.empty() ? "application/octet-stream" : entries.front()->mMimeTypes.front();
}

std::string ExtensionOfMimeType(const std::string& aMimeType) {
    const std::vector<const TypesEntry*> entries = EntriesOfMimeType(aMimeType);
    return entries.empty() ? "" : entries.front()->mExtensions.front();
}

std::string ExtensionsOfMimeType(const std::string& aMimeType) {
    std::vector<std::string> extensions;
    for (const TypesEntry* entry : EntriesOfMimeType(aMimeType)) {
        if (!Has(extensions, entry->mExtensions.front())) {
            extensions.push_back(entry->mExtensions.front());
        }
    }
    return Joined(extensions, "\\");
}

std::string ExtensionsBesideExtension(const std::string& anExtension) {
    for (const TypesEntry& entry : TypesTable()) {
        if (!entry.mfExcluded && Has(entry.mExtensions, anExtension)) { // to the letter
            return Joined(entry.mExtensions, "\\");
        }
    }
    return "";
}

bool IsKnownExtension(const std::string& anExtension) {
    const std::vector<TypesEntry>& table = TypesTable();
    return std::any_of(table.begin(), table.end(), [&](const TypesEntry& anEntry) {
        return !anEntry.mfExcluded && Has(anEntry.mExtensions, anExtension);
    });
}

std::string Lower(std::string aText) {
    std::transform(aText.begin(), aText.end(), aText.begin(), [](char aByte) {
        return aByte >= 'A' && aByte <= 'Z' ? static_cast<char>(aByte - 'A' + 'a') : aByte;
    });
    return aText;
}

NameParts::NameParts(const std::string& aName) {
    const std::size_t dot = aName.rfind('.');
    mBase = aName.substr(0, dot);
    mExtension = dot == std::string::npos ? "" : aName.substr(dot + 1);
}
