#pragma once

#include "ez/ExtensionMimeTypeMatcherEntry.h"
#include "ez/MediaParserTypes.h"

#include "ezPlatform/text/CString.h"
#include "ezPlatform/text/StringList.h"

class ezConfig;
struct ezHashTable;
struct ezPtrList;

/// The table of known media types, read from an ini file and found by extension and by MIME type.
///
/// The file has the sections "MimeTypesExcluded" (known, but not to be published) and "MimeTypes", with lines
/// `type=extensions@MIME types@UPnP classes@further parser types`, the items of a field separated by ",":
///
///     mp3=mp3,mpga@audio/mpeg,audio/mp3@item.audioItem
///
/// The order of the lines decides every "first" below; excluded entries are indexed like the others and come
/// before them.
///
/// Built, loaded once, then only read; several threads may then ask at once. After Cleanup the table is empty
/// and every query has the result for something unknown. Lists that it returns belong to it, until Cleanup or
/// Load.
class EZPARSERS_API ExtensionMimeTypeMatcher {
public:
    /// Only stores where the file is: call Load. The folders are those of ezConfig; an empty aConfigFileName
    /// means kezMediaTypesFileName.
    ExtensionMimeTypeMatcher(const ezCString& aReadOnlyConfigPath, const ezCString& aReadWriteConfigPath,
                             const ezCString& aConfigFileName);
    virtual ~ExtensionMimeTypeMatcher();

    ExtensionMimeTypeMatcher(const ExtensionMimeTypeMatcher&) = delete;
    ExtensionMimeTypeMatcher& operator=(const ExtensionMimeTypeMatcher&) = delete;

    /// Fills the table. Always true: a missing file or section yields no entries.
    ///
    /// Everything is trimmed. Empty fields and items are dropped and those after them move up: in
    /// "@video/mpeg" "video/mpeg" is the extension, so a line fills every field up to the last that it uses.
    /// Fields after the fourth are ignored, and so is a key without a value. Extensions, MIME types and type
    /// names are converted to lower case, classes are not.
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
    /// anExtension is compared as it is: only lower case matches.
    ezCSVStringList ExtensionToExtensionList(const ezCString& anExtension);

    /// The entries of an extension (any case), excluded ones first; null when there are none.
    ezPtrList* EntriesFromExtension(const ezCString& anExtension);
    /// The entries of a MIME type (any case); where the whole text is unknown, those of what stands before
    /// its parameters. Null when there are none.
    ezPtrList* EntriesFromMimeType(const ezCString& aMimeType);
    /// Every entry, excluded ones first. Never null.
    ezPtrList* AllEntries() { return mAllEntries; }
    /// True for an entry of the section "MimeTypesExcluded": the object itself, not an equal one.
    bool IsExcludedEntry(ExtensionMimeTypeMatcherEntry* anEntry);

    /// The list under a key, converted to lower case first with afLower; null when there is none.
    ezPtrList* EntriesFromHashTable(ezHashTable* aHashTable, const ezCString& aKey, bool afLower);

private:
    ezPtrList* mAllEntries = nullptr;      ///< owns the entries
    ezPtrList* mExcludedEntries = nullptr; ///< borrowed: the entries that mAllEntries begins with
    ezHashTable* mFromExt = nullptr;       ///< extension to list of borrowed entries
    ezHashTable* mFromMimeType = nullptr;  ///< MIME type to list of borrowed entries
    ezConfig* mConfig = nullptr;           ///< owned
};
