#pragma once

#include "ez/MediaParserTypes.h"

#include "ezPlatform/text/CString.h"
#include "ezPlatform/text/StringList.h"

class ezConfig;
struct ezHashTable;
struct ezPtrList;

/// One media type: a line of the media types file. The lists hold C strings and own them.
struct EZPARSERS_API ExtensionMimeTypeMatcherEntry {
    /// @param aKey     the type name, in lower case
    /// @param anEntry  the value: up to four fields parted by "@"
    ExtensionMimeTypeMatcherEntry(const ezCString& aKey, const ezCString& anEntry);
    ~ExtensionMimeTypeMatcherEntry();

    ExtensionMimeTypeMatcherEntry(const ExtensionMimeTypeMatcherEntry&) = delete;
    ExtensionMimeTypeMatcherEntry& operator=(const ExtensionMimeTypeMatcherEntry&) = delete;

    /// True when the first class is aClass, such as "item.audioItem", or one derived from it. Case counts.
    bool IsOfClass(const char* aClass) const;

    ezPtrList* mExtensions;  ///< lower case, in file order
    ezPtrList* mMimeTypes;   ///< lower case, in file order
    ezPtrList* mUPnPClasses; ///< as written
    ezPtrList* mTypes;       ///< parser types to try: the key, then the further ones in lower case

private:
    void Init();
};

/// The table of known media types, read from an ini file and found by extension and by MIME type.
///
/// The file has the sections "MimeTypesExcluded" (known, but not to be published) and "MimeTypes", with lines
/// `type=extensions@MIME types@UPnP classes@further parser types`, the items of a field parted by ",":
///
///     mp3=mp3,mpga@audio/mpeg,audio/mp3@item.audioItem
///
/// Everything is trimmed. Empty fields and items are dropped and what follows moves up: "@video/mpeg" makes
/// "video/mpeg" the extensions, so a line fills every field up to the last that it uses. Fields after the
/// fourth are ignored, and so is a key without a value. Extensions, MIME types and type names are
/// lower-cased, classes are not. Keys are written in lower case. The order of the lines decides every "first"
/// below; excluded entries are indexed like the others and come before them.
///
/// Built, loaded once, then only read; several threads may then ask at once. After Cleanup the table is empty
/// and every question gets the answer for something unknown. Lists that it returns are lent until Cleanup or
/// Load.
class EZPARSERS_API ExtensionMimeTypeMatcher {
public:
    /// Reads nothing yet: call Load. The folders are those of ezConfig; an empty aConfigFileName means
    /// "mediaCTRLMediaTypes.ini".
    ExtensionMimeTypeMatcher(const ezCString& aReadOnlyConfigPath, const ezCString& aReadWriteConfigPath,
                             const ezCString& aConfigFileName);
    virtual ~ExtensionMimeTypeMatcher();

    ExtensionMimeTypeMatcher(const ExtensionMimeTypeMatcher&) = delete;
    ExtensionMimeTypeMatcher& operator=(const ExtensionMimeTypeMatcher&) = delete;

    /// Fills the table. Always true: a missing file or section yields no entries.
    bool Load();
    /// Adds the entries of one section.
    bool LoadMimeType(const char* aSection);
    /// Empties the table.
    void Cleanup();

    /// The first MIME type of the first entry that has one; "application/octet-stream" when there is none.
    ezCString FileExtensionToMimeType(const ezCString& anExtension);
    /// The first extension of the first entry that has one; "" when there is none.
    ezCString MimeTypeToFileExtension(const ezCString& aMimeType);
    /// The first extensions of all entries of a MIME type, each once; separator "\".
    ezCSVStringList MimeTypeToFileExtensionList(const ezCString& aMimeType);
    /// All extensions, each once, of the first entry not excluded that lists anExtension; separator "\".
    /// anExtension is compared as it is: only lower case can match.
    ezCSVStringList ExtensionToExtensionList(const ezCString& anExtension);

    /// The entries of an extension (any case), excluded ones first; null when there are none.
    ezPtrList* EntriesFromExtension(const ezCString& anExtension);
    /// The entries of a MIME type (any case); where the whole text is unknown, those of what stands before
    /// its parameters. Null when there are none.
    ezPtrList* EntriesFromMimeType(const ezCString& aMimeType);
    /// Every entry, excluded ones first. Never null.
    ezPtrList* AllEntries() { return mAllEntries; }
    /// True for an entry of the section "MimeTypesExcluded". The very object counts: a copy of such an entry
    /// is none.
    bool IsExcludedEntry(ExtensionMimeTypeMatcherEntry* anEntry);

    /// The list under a key, which is lower-cased first with afLower; null when there is none.
    ezPtrList* EntriesFromHashTable(ezHashTable* aHashTable, const ezCString& aKey, bool afLower);

private:
    ezPtrList* mAllEntries = nullptr;      ///< owns the entries
    ezPtrList* mExcludedEntries = nullptr; ///< borrowed: the entries that mAllEntries begins with
    ezHashTable* mFromExt = nullptr;       ///< extension to list of borrowed entries
    ezHashTable* mFromMimeType = nullptr;  ///< MIME type to list of borrowed entries
    ezConfig* mConfig = nullptr;           ///< owned
};
