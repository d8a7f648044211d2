#include "ez/ExtensionMimeTypeMatcher.h"

#include "detail/FirstString.h"

#include "ez/Environment.h"

#include "ezPlatform/base/Log.h"
#include "ezPlatform/base/Owned.h"
#include "ezPlatform/config/Config.h"
#include "ezPlatform/containers/HashTable.h"
#include "ezPlatform/containers/Items.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

// A trace carries the source and line; it is formatted only where the level lets it through.
#define TRACE(...)                                                                                           \
    do {                                                                                                     \
        if (_ezLog_Level > EZLOGLEVEL_INFO) {                                                                \
            ezLog_Line_F(EZLOGLEVEL_INFO, EZLOG_M_PARSERS, "ExtensionMimeTypeMatcher", __LINE__,             \
                         __VA_ARGS__);                                                                       \
        }                                                                                                    \
    } while (false)

namespace {

using Entry = ExtensionMimeTypeMatcherEntry;

constexpr const char* kExcludedSection = "MimeTypesExcluded";
constexpr const char* kSection = "MimeTypes";
constexpr const char* kUnknownMimeType = "application/octet-stream";
constexpr char kExtensionListSeparator = '\\';

void Entry_Free(void* anEntry) {
    delete static_cast<Entry*>(anEntry);
}

/// Appends an entry to the list under a key, made where there is none.
void FileUnder(ezHashTable* aTable, const char* aKey, Entry* anEntry) {
    const std::size_t length = std::strlen(aKey);
    ezPtrList* list = static_cast<ezPtrList*>(ezHashTable_GetEntry(aTable, aKey, length));
    if (list == nullptr) {
        list = ezPtrList_New();
        ezHashTable_AddEntry(aTable, aKey, length, list);
    }
    ezPtrList_Append(list, anEntry);
}

/// Deletes the lists of a table; its keys stay, with nothing under them.
void DeleteLists(ezHashTable* aTable) {
    const ezOwned<ezHashTableEnumerator_Delete> enumerator(ezHashTableEnumerator_New(aTable));
    while (ezHashTableEnumerator_MoveNext(enumerator.get())) {
        const char* key = nullptr;
        std::size_t length = 0;
        void* list = nullptr;
        ezHashTableEnumerator_GetValue(enumerator.get(), &key, &length, &list);
        ezPtrList_Delete(static_cast<ezPtrList*>(list));
        ezHashTable_AddEntry(aTable, key, length, nullptr);
    }
}

/// Extensions in the order added, each once. A short list, which is the usual one, is walked and takes no
/// memory besides its own; beyond that a table keeps the cost of adding from growing.
class DistinctExtensions {
public:
    void Add(const char* anExtension) {
        if (mList.GetCount() < kWalkedSize) {
            if (mList.Has(anExtension, true)) {
                return;
            }
        } else {
            if (mKnown == nullptr) {
                mKnown.reset(ezHashTable_New());
                for (std::size_t i = 0; i < kWalkedSize; ++i) {
                    Note(mList.GetAt(i).View());
                }
            }
            const std::string_view extension(anExtension);
            if (ezHashTable_GetEntry(mKnown.get(), extension.data(), extension.size()) != nullptr) {
                return;
            }
            Note(extension);
        }
        mList.Add(anExtension);
    }

    ezCSVStringList Take() { return std::move(mList); }

private:
    static constexpr std::size_t kWalkedSize = 16;

    void Note(std::string_view anExtension) {
        ezHashTable_AddEntry(mKnown.get(), anExtension.data(), anExtension.size(), this);
    }

    ezCSVStringList mList = ezCSVStringList::WithSeparator(kExtensionListSeparator);
    ezOwned<ezHashTable_Delete> mKnown; ///< null while the list is walked
};

} // namespace

ExtensionMimeTypeMatcher::ExtensionMimeTypeMatcher(const ezCString& aReadOnlyConfigPath,
                                                   const ezCString& aReadWriteConfigPath,
                                                   const ezCString& aConfigFileName) {
    const ezCString fileName = aConfigFileName.IsEmpty() ? ezCString(kezMediaTypesFileName) : aConfigFileName;
    TRACE("ExtensionMimeTypeMatcher::ExtensionMimeTypeMatcher(%s, %s, %s)\n", aReadOnlyConfigPath.c_str(),
          aReadWriteConfigPath.c_str(), fileName.c_str());
    mConfig = new ezConfig(aReadOnlyConfigPath, aReadWriteConfigPath, fileName);
    mFromExt = ezHashTable_New();
    mFromMimeType = ezHashTable_New();
    mAllEntries = ezPtrList_New();
    ezPtrList_SetFreeFunc(mAllEntries, Entry_Free);
    mExcludedEntries = ezPtrList_New();
}

ExtensionMimeTypeMatcher::~ExtensionMimeTypeMatcher() {
    Cleanup();
    ezHashTable_Delete(mFromExt);
    ezHashTable_Delete(mFromMimeType);
    ezPtrList_Delete(mAllEntries);
    ezPtrList_Delete(mExcludedEntries);
    delete mConfig;
}

void ExtensionMimeTypeMatcher::Cleanup() {
    DeleteLists(mFromExt);
    DeleteLists(mFromMimeType);
    ezPtrList_Clear(mAllEntries);
    ezPtrList_Clear(mExcludedEntries);
}

bool ExtensionMimeTypeMatcher::Load() {
    Cleanup();
    LoadMimeType(kExcludedSection);
    for (Entry* entry : ezItems<Entry>(mAllEntries)) {
        ezPtrList_Append(mExcludedEntries, entry);
    }
    return LoadMimeType(kSection);
}

bool ExtensionMimeTypeMatcher::LoadMimeType(const char* aSection) {
    const std::size_t count = mConfig->GetKeyCount(aSection, true);
    for (std::size_t i = 0; i < count; ++i) {
        const ezCString key = mConfig->GetKeyNameCString(aSection, i, true).Lower();
        const ezCString value = mConfig->GetCString(aSection, key, "").TrimLeftRight();
        if (value.IsEmpty()) {
            continue;
        }
        Entry* entry = new Entry(key, value);
        ezPtrList_Append(mAllEntries, entry);
        for (const char* extension : ezItems<const char>(entry->mExtensions)) {
            FileUnder(mFromExt, extension, entry);
            TRACE("ExtensionMimeTypeMatcher::Load(): Ext(%s) -> %s\n", extension, value.c_str());
        }
        for (const char* mimeType : ezItems<const char>(entry->mMimeTypes)) {
            FileUnder(mFromMimeType, mimeType, entry);
            TRACE("ExtensionMimeTypeMatcher::Load(): MimeType(%s) -> %s\n", mimeType, value.c_str());
        }
    }
    return true;
}

ezPtrList* ExtensionMimeTypeMatcher::EntriesFromHashTable(ezHashTable* aHashTable, const ezCString& aKey,
                                                          bool afLower) {
    const ezCString key = afLower ? aKey.Lower() : aKey;
    return static_cast<ezPtrList*>(ezHashTable_GetEntry(aHashTable, key.c_str(), key.GetLength()));
}

ezPtrList* ExtensionMimeTypeMatcher::EntriesFromExtension(const ezCString& anExtension) {
    return EntriesFromHashTable(mFromExt, anExtension, true);
}

ezPtrList* ExtensionMimeTypeMatcher::EntriesFromMimeType(const ezCString& aMimeType) {
    if (ezPtrList* entries = EntriesFromHashTable(mFromMimeType, aMimeType, true)) {
        return entries;
    }
    const ezCString bare = aMimeType.BeforeFirst(';');
    return bare != aMimeType ? EntriesFromHashTable(mFromMimeType, bare, true) : nullptr;
}

ezCString ExtensionMimeTypeMatcher::FileExtensionToMimeType(const ezCString& anExtension) {
    for (Entry* entry : ezItems<Entry>(EntriesFromExtension(anExtension))) {
        if (const char* mimeType = FirstString(entry->mMimeTypes)) {
            return mimeType;
        }
    }
    return kUnknownMimeType;
}

ezCString ExtensionMimeTypeMatcher::MimeTypeToFileExtension(const ezCString& aMimeType) {
    for (Entry* entry : ezItems<Entry>(EntriesFromMimeType(aMimeType))) {
        if (const char* extension = FirstString(entry->mExtensions)) {
            return extension;
        }
    }
    return ezCString();
}

ezCSVStringList ExtensionMimeTypeMatcher::MimeTypeToFileExtensionList(const ezCString& aMimeType) {
    DistinctExtensions extensions;
    for (Entry* entry : ezItems<Entry>(EntriesFromMimeType(aMimeType))) {
        const char* extension = FirstString(entry->mExtensions);
        if (extension != nullptr) {
            extensions.Add(extension);
        }
    }
    return extensions.Take();
}

ezCSVStringList ExtensionMimeTypeMatcher::ExtensionToExtensionList(const ezCString& anExtension) {
    DistinctExtensions extensions;
    // Excluded entries are those that the list begins with.
    for (std::size_t i = ezPtrList_GetCount(mExcludedEntries); i < ezPtrList_GetCount(mAllEntries); ++i) {
        const Entry* entry = static_cast<Entry*>(*ezPtrList_GetAt(mAllEntries, i));
        bool fListed = false;
        for (const char* extension : ezItems<const char>(entry->mExtensions)) {
            fListed = fListed || anExtension == extension;
        }
        if (!fListed) {
            continue;
        }
        for (const char* extension : ezItems<const char>(entry->mExtensions)) {
            extensions.Add(extension);
        }
        break;
    }
    return extensions.Take();
}

bool ExtensionMimeTypeMatcher::IsExcludedEntry(ExtensionMimeTypeMatcherEntry* anEntry) {
    // Asked at every request, of a list that may be long.
    const void* const* const first = ezPtrList_GetAt(mExcludedEntries, 0);
    const void* const* const end = first + ezPtrList_GetCount(mExcludedEntries);
    return std::find(first, end, anEntry) != end;
}
