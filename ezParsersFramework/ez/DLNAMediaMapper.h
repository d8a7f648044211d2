#pragma once

#include "ez/DLNAMediaMapperBadLines.h"
#include "ez/DLNAMediaMapperEntry.h"
#include "ez/DLNAMediaMapperParser.h"
#include "ez/DLNAMediaMapperSearchInfo.h"
#include "ez/DLNAProfileEntry.h"

#include "ezPlatform/base/Error.h"
#include "ezPlatform/config/Hook.h"
#include "ezPlatform/files/FileState.h"
#include "ezPlatform/files/PathName.h"
#include "ezPlatform/text/StringList.h"

#include <cstddef>

class ezMimeTypesDotIniParser;
struct ezArray;
struct ezCustomHashTable;
struct ezDLNAProtocolInfo;

/// The usual name of a media mapper file.
inline constexpr const char* kezMediaMapperFileName = "MediaMapper.txt";
/// What its copy in the writable folder is called.
inline constexpr const char* kezMediaMapperCopyFileName = "_MediaMapper.txt";

/// The operator's table of DLNA facts: how each file is announced, whatever parsers find.
///
/// The table's file comes from a read-only folder and is kept, with a "_" before its name, in a writable one:
/// the first Load copies it there. Lines that begin with "#", empty and bad lines are skipped. After the copy
/// every line is held twice, once from each file, until the next start; lookups find the first of the two.
///
/// Entries stand sorted by profile, in file order within one; that order decides every "first". They are the
/// caller's to edit through GetArray. Not locked.
class EZPARSERS_API DLNAMediaMapper {
public:
    /// Makes the writable folder; loads nothing.
    /// @param anIniParser      knows which extensions exist; borrowed, used by GetFileEntry and AddEntry;
    ///                         with null no file is found
    /// @param aReadOnlyFolder  where the read-only file lies; "" is the working folder
    /// @param aWritableFolder  where the writable file lies, or is made; "" is the working folder
    /// @param aSubFolder       below both folders; "" for none
    /// @param aFileName        of the read-only file, such as kezMediaMapperFileName
    DLNAMediaMapper(ezMimeTypesDotIniParser* anIniParser, const ezCString& aReadOnlyFolder,
                    const ezCString& aWritableFolder, const ezCString& aSubFolder,
                    const ezCString& aFileName);
    virtual ~DLNAMediaMapper();

    DLNAMediaMapper(const DLNAMediaMapper&) = delete;
    DLNAMediaMapper& operator=(const DLNAMediaMapper&) = delete;

    /// Adds the entries of the writable file, copied from the read-only one where it does not exist yet. Code
    /// -3 when it cannot be opened or read to its end; then none of its entries are added.
    ezError Load();
    /// The lines that the last Load skipped: those of more than 1024 bytes, those of fewer than three fields,
    /// and those whose file name, MIME type or profile is empty. Where that Load made the copy, those of the
    /// read-only file come first. Empty after a Load that failed. Load itself says nothing of them.
    const DLNAMediaMapperBadLines& GetSkippedLines() const { return mSkippedLines; }
    /// True when the writable file is not the one that the last Load found, or was written to since: an
    /// editor asks before Save, and where it is true loads a new table and repeats the edit. Also true when
    /// that Load could not examine the file, after a Save of this table, and before the first Load where
    /// there is a file. Decided by the file's ezFileState. Asking and saving are two steps, so editors of one
    /// table that do not know of each other also need a lock.
    bool HasChangedSinceLoad() const;

    /// Writes the table to the writable file, at most once a Load: a second time is the assertion "!mfSaved"
    /// and code -1; the copy of a first Load counts as one where that Load fails. Code -1 when it cannot be
    /// made or written; the file then stands as it was.
    ezError Save();
    /// The lines that the last Save wrote longer than 1024 bytes, so that the next Load skips them. Save
    /// itself says nothing of them. The copy of a first Load is such a save.
    const DLNAMediaMapperBadLines& GetTooLongLines() const { return mTooLongLines; }

    /// The entries themselves: an array of DLNAMediaMapperEntry that the table owns.
    ezArray* GetArray() { return mEntryArray; }
    /// The first entry for a media file, borrowed, or null. "(2)" after the base name and everything up to
    /// "DTCP_" do not count, nor does case. Any extension that the media types know finds an entry of the
    /// same base name, except that "wav" does not find "pcm"; a name without an extension finds nothing. Only
    /// base names that came from a file are found, not those of AddEntry.
    DLNAMediaMapperEntry* GetFileEntry(const ezCString& aFileName);
    /// The first entry of a profile, borrowed, or null.
    DLNAMediaMapperEntry* GetFirstEntryForProfile(const ezCString& aProfile);
    /// What the entries of a profile state together, as loaded; borrowed, or null.
    ezDLNAProtocolInfo* GetMergedDLNAProtocolInfo(const ezCString& aProfile);

    /// Takes an entry over. The index of the first entry that its file name finds, or -1.
    std::int32_t AddEntry(DLNAMediaMapperEntry* anEntry);
    /// Takes an entry out and deletes it; null and one that is not there are ignored.
    void RemoveEntry(DLNAMediaMapperEntry* anEntry);

    /// A new array of DLNAProfileEntry, one a profile, sorted by profile name. The caller deletes it with
    /// ezArray_Delete.
    ezArray* NewProfileArray();
    /// Writes the choices of such an array into all entries; neither saves nor recomputes anything. True when
    /// an entry changed; *afProfileChanged, unless null, tells whether a profile was switched.
    bool MergeBackProfileArray(ezArray* anArray, bool* afProfileChanged);

    /// Those names of a comma list whose profile is enabled (case-blind), in its order.
    ezCString GetEnabledProfileList(const ezCString& aList);
    /// A profile-info text without the entries whose profile is not enabled.
    ezCString GetEnabledMimeTypeProfileList(const ezCString& aText);
    /// Case-blind; false for null and "".
    bool IsDisabledProfile(const char* aName);

    /// True for the MIME types of audio and video, in any case.
    /// @{
    static bool MimeTypeSupportTimeSeek(const ezCString& aMimeType);
    static bool MimeTypeSupportPlaySpeed(const ezCString& aMimeType);
    /// @}

    /// A hook callback: applies the table, found as the hook's pointer property "DLNAMediaMapper", to the
    /// ezDLNAProtocolInfo* that is the first argument.
    static void Hook_AdjustProtocolInfo(ezHook* aHook, const char* aName, va_list anArguments);

    /// Callbacks of an array of DLNAProfileEntry: search by profile name (a C string), sort by it, delete.
    /// @{
    static int DLNAProfileEntry_Search(const void* aRecord, const void* aName);
    static int DLNAProfileEntry_Sort(const void* aLeft, const void* aRight);
    static void DLNAProfileEntry_Free(void* aRecord);
    /// @}

protected:
    /// Adds the entries of a file and lets the table be saved again. Code -3, and nothing changes, when the
    /// file cannot be opened or read to its end.
    ezError LoadFile(const ezPathName& aPath);
    /// Save to a file of any name, with the same codes; it counts as the one save of a Load.
    ezError SaveFile(const ezPathName& aPath);
    /// The path of a file in a sub-folder of a folder; with afCreate the folders are made, and the path is
    /// invalid where they cannot be.
    static ezPathName GetPath(const ezCString& aFolder, const ezCString& aSubFolder,
                              const ezCString& aFileName, bool afCreate);

private:
    void BuildMergedEntryArray();
    void BuildSpecialDLNAProfileList();
    std::ptrdiff_t SearchFileName(const ezCString& aFileName) const;
    ezError LoadInto(const ezPathName& aPath, bool afReadOnly);

    ezPathName mMediaMapperPathNameRO;
    ezPathName mMediaMapperPathNameRW;
    ezArray* mEntryArray;              ///< owned DLNAMediaMapperEntry, sorted by profile
    ezArray* mMergedProtocolInfoArray; ///< owned ezDLNAProtocolInfo, one a profile and load
    bool mfSaved = false;
    ezMimeTypesDotIniParser* mMimeTypesDotIniParser;
    ezCSVStringList mEnabledDLNAProfileInfoList = ezCSVStringList::WithSeparator(',');
    ezCSVStringList mDisabledDLNAProfileInfoList = ezCSVStringList::WithSeparator(',');
    ezCustomHashTable* mEntryArrayHashTable; ///< lower-case base names that a file brought
    ezFileState mLoadedState;                ///< of the writable file
    DLNAMediaMapperBadLines mSkippedLines;
    DLNAMediaMapperBadLines mTooLongLines;
};
