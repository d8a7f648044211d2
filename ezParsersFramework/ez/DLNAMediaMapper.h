#pragma once

#include "ez/MediaParser.h"

#include "ezPlatform/base/Error.h"
#include "ezPlatform/config/Hook.h"
#include "ezPlatform/files/FileState.h"
#include "ezPlatform/files/PathName.h"
#include "ezPlatform/text/StringList.h"

#include <cstddef>
#include <vector>

class DLNAMediaMapper;
class ezMimeTypesDotIniParser;
struct ezArray;
struct ezCustomHashTable;
struct ezDLNAProtocolInfo;

/// @name Bits of an entry's flag word
/// Others are carried through unchanged.
/// @{

/// The media cannot be sought by bytes.
inline constexpr uint32 kDLNAMediaMapperByteSeek_MediaNotSupported = 0x01000000;
/// The profile is switched off.
inline constexpr uint32 kDLNAMediaMapperProfile_Disabled = 0x10000000;
/// Play speeds are switched on for the profile. They are announced where this and the next bit say so.
inline constexpr uint32 kDLNAMediaMapperPlaySpeed_ProfileEnabled = 0x20000000;
/// The play speeds of this media are switched on.
inline constexpr uint32 kDLNAMediaMapperPlaySpeed_MediaEnabled = 0x40000000;
/// The media cannot be played at speeds: the two bits before do not count.
inline constexpr uint32 kDLNAMediaMapperPlaySpeed_MediaNotSupported = 0x80000000;
/// @}

/// One line of the media mapper file: what a server must announce for one named media.
///
/// A line has 13 fields parted by ","; inside a field a comma is written "\,":
/// file name, MIME type, profile, duration, play speeds, mandatory bits, peak bit rate, IFO file, largest,
/// width, height, LP options, further 4th-field parameters. The first three must not be empty. The flag word
/// is one of the further parameters, named by the vendor's domain in upper case and "_GOLDENDMS", in
/// hexadecimal. Text fields but the play speeds are written as they are: a comma in one of them would part it
/// when it is read again, and a backslash at its end would join it with the next.
class EZPARSERS_API DLNAMediaMapperEntry {
public:
    DLNAMediaMapperEntry() = default;
    ~DLNAMediaMapperEntry();

    DLNAMediaMapperEntry(const DLNAMediaMapperEntry&) = delete;
    DLNAMediaMapperEntry& operator=(const DLNAMediaMapperEntry&) = delete;

    /// Reads a line. False when it has fewer than three fields (the entry stays as it is) or one of the first
    /// three is empty (only those three are changed). Members whose field the line does not have stay as they
    /// are.
    bool Set(const ezCString& aLine);
    /// The line of this entry, without a line end. Takes profile and play speeds off the protocolInfo object
    /// and puts the flag word on it: ComputeDLNAProtocolInfo restores it. The object's own state is what is
    /// written, so that choices made on it alone are kept.
    ezCString Get();
    /// Makes mFullProfile and mDLNAProtocolInfo anew from the other members. Neither carries the flag word.
    void ComputeDLNAProtocolInfo();
    /// File name, MIME type and profile are not empty.
    bool IsValid() const;
    /// Back to a new entry.
    void Reset();

    /// True unless the flag word switches the profile off.
    bool ProfileEnabled() const;
    /// True unless the flag word says that the media cannot be sought by bytes.
    bool CanSupportByteSeek() const;
    /// True for the MIME types of audio and video.
    bool CanSupportTimeSeek() const;
    /// True for the MIME types of audio and video, unless the flag word says that the media cannot be played
    /// at speeds.
    bool CanSupportPlaySpeed() const;
    /// The flag word's half of CanSupportPlaySpeed alone, whatever the MIME type.
    bool GetPlaySpeedMediaSupported() const;
    /// It can play at speeds, and lists one other than "1".
    bool HasPlaySpeedDefined() const;
    /// Its play speeds are switched on, and it has some (HasPlaySpeedDefined).
    bool GetPlaySpeedMediaEnabled() const;
    /// Play speeds are switched on for its profile, and it can be played at speeds.
    bool GetPlaySpeedProfileEnabled() const;
    /// Writes the switch of the media or of the profile into the flag word. Enabling takes effect only where
    /// a speed is defined, or for the profile can be supported; else it disables.
    /// @{
    void SetPlaySpeedMediaEnabled(bool afEnabled);
    void SetPlaySpeedProfileEnabled(bool afEnabled);
    /// @}

    /// A field without white space at both ends; "" where there is none.
    static ezCString GetTrimmed(const ezCSVStringList& aFields, std::ptrdiff_t anIndex);
    /// Takes normal speed and what is no play speed out of a list. The flag is not used.
    static void ValidatePlaySpeedList(ezCSVStringList& aSpeeds, bool afUnused);

    ezCString mFileName; ///< of the media, with its extension
    ezCString mMimeType; ///< as written
    ezCString mProfile;  ///< the DLNA profile name, to the letter
    ezCString mDuration; ///< as written
    /// Without normal speed and what is no speed, where Set made it.
    ezCSVStringList mSupportedPlaySpeeds = ezCSVStringList::WithSeparator(',');
    ezCString mMandatoryBits; ///< eight of "0" and "1"
    uint32 mBitRate = 0;      ///< peak, bits a second; 0 is not known
    /// @name Fields that are kept as written, for the file alone: nothing here reads them
    /// @{
    ezCString mIFOFileName; ///< "IFO file"
    ezCString mLargest;     ///< "largest"
    ezCString mWidth;       ///< "width", a text too
    ezCString mHeight;      ///< "height", a text too
    ezCString mLPOptions;   ///< "LP options"
    /// @}
    ezCString m4thFieldPart;    ///< "name=value" parted by ";", the flag word among them
    ezCString mFullProfile;     ///< the protocolInfo
    uint32 mGoldenDMSFlags = 0; ///< the flag word: bits named kDLNAMediaMapper..., and any others
    ezDLNAProtocolInfo* mDLNAProtocolInfo = nullptr; ///< owned; null until computed
    bool mfMandatory = false;                        ///< character 7 of mMandatoryBits
    bool mfCVPNA1Mandatory = false;                  ///< character 6
    bool mfCVPEUMandatory = false;                   ///< character 5
};

/// What a table says of one DLNA profile, for a configuration that switches profiles and play speeds.
class EZPARSERS_API DLNAProfileEntry {
public:
    /// Taken from the first entry of a profile.
    explicit DLNAProfileEntry(const DLNAMediaMapperEntry& anEntry);
    ~DLNAProfileEntry();

    DLNAProfileEntry(const DLNAProfileEntry&) = delete;
    DLNAProfileEntry& operator=(const DLNAProfileEntry&) = delete;

    /// What media of the profile can be used with, as the entry told that this was taken from.
    /// @{
    bool CanSupportByteSeek() const { return mfCanSupportByteSeek; }
    bool CanSupportTimeSeek() const { return mfCanSupportTimeSeek; }
    bool CanSupportPlaySpeed() const { return mfCanSupportPlaySpeed; }
    /// @}
    /// Whether play speeds of the profile are chosen: what EnablePlaySpeed said, at first what the entry
    /// said.
    bool GetPlaySpeedEnabled() const { return mfPlaySpeedProfileEnabled; }
    /// Whether the entry announced its speeds when this was taken from it: for it and for the profile they
    /// were switched on. EnablePlaySpeed does not change it.
    bool GetPlaySpeedMediaEnabled() const { return mfPlaySpeedMediaEnabled; }
    /// Whether the profile is chosen: what EnableProfile said, at first what the entry said.
    bool GetProfileEnabled() const { return mfProfileEnabled; }
    /// Lent; its seek and stalling settings are the host's to change before MergeBack.
    ezDLNAProtocolInfo* GetDLNAProtocolInfo() const { return mDLNAProtocolInfo; }

    /// Without effect where the profile cannot play at speeds.
    void EnablePlaySpeed(bool afEnable) { mfPlaySpeedProfileEnabled = afEnable && mfCanSupportPlaySpeed; }
    /// Switches the profile on or off; entries learn of it by MergeBack.
    void EnableProfile(bool afEnable) { mfProfileEnabled = afEnable; }

    /// Writes the choices into an entry of the profile: its flag word and its protocolInfo object, not its
    /// mFullProfile. True when that changed something. *afProfileChanged, unless null, tells whether the
    /// profile was switched.
    bool MergeBack(DLNAMediaMapperEntry& anEntry, bool* afProfileChanged) const;

    /// Not 0 when the profile of a DLNAProfileEntry is the ezCString aName, to the letter.
    static int SearchProfile(const void* aRecord, const void* aName);

private:
    bool mfPlaySpeedProfileEnabled;
    ezDLNAProtocolInfo* mDLNAProtocolInfo; ///< owned
    bool mfCanSupportPlaySpeed;
    bool mfCanSupportTimeSeek;
    bool mfPlaySpeedMediaEnabled;
    bool mfProfileEnabled;
    bool mfCanSupportByteSeek;
};

/// Key of a search by file name.
struct DLNAMediaMapperSearchInfo {
    ezCString mFileName; ///< of the media, with its extension; any of the same base name may answer
    ezMimeTypesDotIniParser* mMimeTypesDotIniParser; ///< borrowed
};

/// A line of a media mapper file that does not count.
struct DLNAMediaMapperBadLine {
    std::size_t mNumber = 0;     ///< from 1
    const char* mReason = "";    ///< in a few words, constant: "fewer than 3 fields"
    bool mfReadOnlyFile = false; ///< it stands in the read-only file, which a first Load copies
};

/// The lines that do not count.
struct DLNAMediaMapperBadLines {
    static constexpr std::size_t kMaximumKept =
        1000;                                   ///< of a file that holds nothing else, whatever its size
    std::vector<DLNAMediaMapperBadLine> mLines; ///< in the order of the file, kMaximumKept at the most
    std::size_t mCount = 0;                     ///< of all of them
};

/// The operator's table of DLNA facts: which media is announced how, whatever parsers find.
///
/// The file comes from a read-only folder and is kept, with a "_" before its name, in a writable one: the
/// first Load copies it there. Lines that begin with "#", empty and bad lines are skipped. After the copy
/// every line is held twice, from either file, until the next start; lookups find the first, so they do not
/// notice.
///
/// Entries stand sorted by profile, in file order within one; that order decides every "first". They are the
/// caller's to edit through GetArray. Not locked.
class EZPARSERS_API DLNAMediaMapper {
public:
    /// Makes the writable folder; loads nothing.
    /// @param anIniParser  knows which extensions exist; borrowed, asked by GetFileEntry and AddEntry only;
    /// without one no file is found
    /// @param aReadOnlyFolder  where the read-only file lies; as of the next one, "" is the working folder
    /// @param aWritableFolder  where the writable file lies, and is made
    DLNAMediaMapper(ezMimeTypesDotIniParser* anIniParser, const ezCString& aReadOnlyFolder,
                    const ezCString& aWritableFolder, const ezCString& aSubFolder,
                    const ezCString& aFileName);
    virtual ~DLNAMediaMapper();

    DLNAMediaMapper(const DLNAMediaMapper&) = delete;
    DLNAMediaMapper& operator=(const DLNAMediaMapper&) = delete;

    /// Adds the entries of the writable file, copied from the read-only one where it does not exist yet. Code
    /// -3 when it cannot be opened or read to its end; nothing of it is taken then.
    ezError Load();
    /// The lines that the last Load skipped: those of more than 1024 bytes, those of fewer than three fields,
    /// and those whose file name, MIME type or profile is empty. Where that Load made the copy, those of the
    /// read-only file come first. Empty after a Load that failed. Load itself says nothing of them.
    const DLNAMediaMapperBadLines& GetSkippedLines() const { return mSkippedLines; }
    /// True when the writable file is another one than the last Load found, or was written into since:
    /// whoever edits asks before Save, and edits a table that is loaded anew. Also true when it could not be
    /// looked at then, after a Save of this table, and before the first Load where there is a file. It goes
    /// by the ezFileState of the file; asking and saving are two steps, so editors of one table that do not
    /// know of each other need a lock besides.
    bool HasChangedSinceLoad() const;

    /// Writes the table to the writable file, at most once a Load: a second time is the assertion "!mfSaved"
    /// and code -1; the copy of a first Load counts as one where that Load fails. Code -1 when it cannot be
    /// made or written; the file then stands as it was.
    ezError Save();
    /// The lines that the last Save wrote longer than 1024 bytes, so that the next Load skips them. Save
    /// itself says nothing of them. The copy of a first Load is such a save.
    const DLNAMediaMapperBadLines& GetTooLongLines() const { return mTooLongLines; }

    /// The entries themselves: an array of DLNAMediaMapperEntry that it owns.
    ezArray* GetArray() { return mEntryArray; }
    /// The first entry for a media file, lent, or null. "(2)" behind the base name and everything up to
    /// "DTCP_" do not count, nor does case. Any extension that the media types know finds an entry of the
    /// same base name, save that "wav" does not find "pcm"; a name without an extension finds nothing. Only
    /// base names that a file brought are found.
    DLNAMediaMapperEntry* GetFileEntry(const ezCString& aFileName);
    /// The first entry of a profile, lent, or null.
    DLNAMediaMapperEntry* GetFirstEntryForProfile(const ezCString& aProfile);
    /// What the entries of a profile state together, as loaded; lent, or null.
    ezDLNAProtocolInfo* GetMergedDLNAProtocolInfo(const ezCString& aProfile);

    /// Takes an entry over. The index of the first entry that its file name finds, or -1.
    std::int32_t AddEntry(DLNAMediaMapperEntry* anEntry);
    /// Takes an entry out and deletes it; null and one that is not there are ignored.
    void RemoveEntry(DLNAMediaMapperEntry* anEntry);

    /// A new array of DLNAProfileEntry, one a profile, sorted by profile name. The caller deletes it with
    /// ezArray_Delete.
    ezArray* NewProfileArray();
    /// Writes the choices of such an array into all entries; neither saves nor computes anything anew. True
    /// when an entry changed; *afProfileChanged, unless null, tells whether a profile was switched.
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

/// Looks a media's file name up in the table instead of reading the media.
class EZPARSERS_API DLNAMediaMapperParser : public ezMediaParser {
public:
    /// @param aMediaMapper       borrowed, asked by Parse; loaded before, since what it declares is
    /// fixed here
    /// @param anEnvironmentInfo  borrowed, may be null
    DLNAMediaMapperParser(DLNAMediaMapper* aMediaMapper, ezPropertyList* anEnvironmentInfo);
    ~DLNAMediaMapperParser() override;

    ezMediaInfo* Parse(ezMediaParserStream& aStream) override;
    /// Never.
    bool AdjustDLNAInfo(ezMediaInfo* anInfo) override;
    /// The enabled profiles as the table had them when the parser was made.
    ezCString GetDLNAInfo() override;

private:
    void CacheDLNAInfo();

    DLNAMediaMapper* mMediaMapper;
    ezCString mDLNAInfo;
};
