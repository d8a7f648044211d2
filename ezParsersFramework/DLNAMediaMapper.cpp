#include "ez/DLNAMediaMapper.h"

#include "ez/MimeTypesDotIniParser.h"

#include "ezPlatform/base/Assert.h"
#include "ezPlatform/base/Log.h"
#include "ezPlatform/containers/Array.h"
#include "ezPlatform/containers/CustomHashTable.h"
#include "ezPlatform/containers/HashTable.h"
#include "ezPlatform/dlna/ProtocolInfo.h"
#include "ezPlatform/dlna/ProtocolInfoList.h"
#include "ezPlatform/files/Dir.h"
#include "ezPlatform/files/File.h"
#include "ezPlatform/files/TextFile.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using Entry = DLNAMediaMapperEntry;

constexpr std::size_t kMaximumLineLength = 1024;
constexpr int kErrorOpening = -3;
constexpr int kErrorWriting = -1;
constexpr const char* kWritablePrefix = "_";
constexpr std::string_view kDTCPPrefix = "DTCP_";

// The two syntax lines run together; files in the field begin like this.
constexpr const char* kDLNAMediaMapper_Header =
    "# MediaMapper.txt\n# Used to map information about DLNA media\n#\n# Syntax for this is as follows\n"
    "# [FILENAME],[MIME TYPE],[DLNA.ORG_PN],[DURATION],[SUPPORTED PLAYSPEEDS],[MANDATORY (8 bit strings)],"
    "[BIT RATE PEAK OF FILE],[ASSOCIATED IFO FILE],[full protocolInfo 4th field]"
    "# [LARGEST if largest],[WIDTH],[HEIGHT],[ANY LP OPTIONS],[ANY GOLDENDMS OPTIONS]\n\n";

void Entry_Free(void* anEntry) {
    delete static_cast<Entry*>(anEntry);
}

int Entry_Sort(const void* aLeft, const void* aRight) {
    return static_cast<const Entry*>(aLeft)->mProfile.Compare(static_cast<const Entry*>(aRight)->mProfile);
}

void MergedProtocolInfo_Free(void* anInfo) {
    ezDLNAProtocolInfo_Delete(static_cast<ezDLNAProtocolInfo*>(anInfo));
}

Entry* EntryAt(const ezArray* anArray, std::size_t anIndex) {
    return static_cast<Entry*>(ezArray_At(anArray, anIndex));
}

DLNAProfileEntry* RecordAt(const ezArray* anArray, std::size_t anIndex) {
    return static_cast<DLNAProfileEntry*>(ezArray_At(anArray, anIndex));
}

ezDLNAProtocolInfo* NewProtocolInfo(const ezCString& aText) {
    return ezDLNAProtocolInfo_New(aText.c_str(), aText.GetLength(), 0);
}

ezError FileError(int aCode, const char* aMessage, const ezPathName& aPath) {
    std::string text(aMessage);
    text += aPath.GetFullPath().c_str();
    text += '\'';
    return ezError(aCode, text);
}

/// A file name at its last dot.
struct SplitName {
    explicit SplitName(std::string_view aName) {
        const std::size_t dot = aName.rfind('.');
        mBase = aName.substr(0, dot);
        mExtension = dot == std::string_view::npos ? std::string_view() : aName.substr(dot + 1);
    }

    std::string_view mBase;
    std::string_view mExtension;
};

/// From the end on: the names of a table often begin alike, as those of a series do.
bool EqualNoCase(std::string_view aLeft, std::string_view aRight) {
    if (aLeft.size() != aRight.size()) {
        return false;
    }
    for (std::size_t i = aLeft.size(); i > 0; --i) {
        if (ezLower(aLeft[i - 1]) != ezLower(aRight[i - 1])) {
            return false;
        }
    }
    return true;
}

/// The key of one pass over the entries. Split once, and the media types are asked once at most, by the first
/// entry of the same base name.
struct FileNameKey {
    explicit FileNameKey(const DLNAMediaMapperSearchInfo& aSearchInfo)
        : mSearchInfo(aSearchInfo), mName(aSearchInfo.mFileName.View()) {}

    bool KnowsExtension() const {
        if (!mfKnowsExtension) {
            const ezCString extension = ezCString(mName.mExtension).Lower();
            ezMimeTypesDotIniParser* parser = mSearchInfo.mMimeTypesDotIniParser;
            mfKnowsExtension = parser != nullptr &&
                               parser->ExtensionToExtensionList(extension).Has(extension.c_str(), false);
        }
        return *mfKnowsExtension;
    }

    const DLNAMediaMapperSearchInfo& mSearchInfo;
    SplitName mName;
    mutable std::optional<bool> mfKnowsExtension;
};

int Entry_SearchFileName(const void* anEntry, const void* aKey) {
    const FileNameKey& key = *static_cast<const FileNameKey*>(aKey);
    const SplitName name(static_cast<const Entry*>(anEntry)->mFileName.View());
    if (key.mName.mExtension.empty() || !EqualNoCase(name.mBase, key.mName.mBase)) {
        return 0;
    }
    if (EqualNoCase(name.mExtension, "pcm") && EqualNoCase(key.mName.mExtension, "wav")) {
        return 0;
    }
    // Whatever the entry's own extension is: any that the media types know finds the base name.
    return key.KnowsExtension() ? 1 : 0;
}

int Entry_SearchProfile(const void* anEntry, const void* aProfile) {
    return static_cast<const Entry*>(anEntry)->mProfile == *static_cast<const ezCString*>(aProfile) ? 1 : 0;
}

int Entry_SearchSame(const void* anEntry, const void* aWanted) {
    return anEntry == aWanted ? 1 : 0;
}

int MergedProtocolInfo_SearchProfile(const void* anInfo, const void* aProfile) {
    const char* profile = ezDLNAProtocolInfo_GetProfile(static_cast<const ezDLNAProtocolInfo*>(anInfo));
    return *static_cast<const ezCString*>(aProfile) == profile ? 1 : 0;
}

/// Without a number in brackets at its end: "clip(2)" is "clip", "clip(a)" stays.
std::string_view WithoutNumber(std::string_view aBase) {
    if (aBase.empty() || aBase.back() != ')') {
        return aBase;
    }
    const std::size_t open = aBase.rfind('(');
    uint32 number = 0;
    if (open == std::string_view::npos ||
        !ezReadDecimal32(aBase.substr(open + 1, aBase.size() - open - 2), &number)) {
        return aBase;
    }
    return aBase.substr(0, open);
}

bool IsAudioOrVideo(const ezCString& aMimeType) {
    const std::string_view type = aMimeType.View();
    const std::size_t slash = type.find('/');
    return slash != std::string_view::npos &&
           (EqualNoCase(type.substr(0, slash), "audio") || EqualNoCase(type.substr(0, slash), "video"));
}

constexpr const char* kTooLong = "longer than 1024 bytes";

/// Why Set refused a line; the entry holds what it then changed.
const char* WhyBad(const Entry& anEntry, const ezCString& aLine) {
    if (ezCSVStringList::FromText(aLine).GetCount() < 3) {
        return "fewer than 3 fields";
    }
    if (anEntry.mFileName.IsEmpty()) {
        return "empty file name";
    }
    return anEntry.mMimeType.IsEmpty() ? "empty MIME type" : "empty profile";
}

void Note(DLNAMediaMapperBadLines& aLines, const DLNAMediaMapperBadLine& aLine) {
    ++aLines.mCount;
    if (aLines.mLines.size() < DLNAMediaMapperBadLines::kMaximumKept) {
        aLines.mLines.push_back(aLine);
    }
}

/// A record's place by profile name, so that a table of many profiles is not walked for each entry.
class ProfileIndex {
public:
    ProfileIndex() : mTable(ezHashTable_New()) {}
    ~ProfileIndex() { ezHashTable_Delete(mTable); }
    ProfileIndex(const ProfileIndex&) = delete;
    ProfileIndex& operator=(const ProfileIndex&) = delete;

    std::optional<std::size_t> Find(std::string_view aProfile) const {
        const void* const place = ezHashTable_GetEntry(mTable, aProfile.data(), aProfile.size());
        return place != nullptr ? std::optional(reinterpret_cast<std::uintptr_t>(place) - 1) : std::nullopt;
    }
    /// Of places under one name the first stays.
    void Add(std::string_view aProfile, std::size_t aPlace) {
        if (!Find(aProfile)) {
            // A number in the place of a pointer: nothing follows it, and no optimisation is lost on it.
            void* const number = reinterpret_cast<void*>(aPlace + 1); // NOLINT(performance-no-int-to-ptr)
            ezHashTable_AddEntry(mTable, aProfile.data(), aProfile.size(), number);
        }
    }

private:
    ezHashTable* mTable;
};

} // namespace

DLNAMediaMapper::DLNAMediaMapper(ezMimeTypesDotIniParser* anIniParser, const ezCString& aReadOnlyFolder,
                                 const ezCString& aWritableFolder, const ezCString& aSubFolder,
                                 const ezCString& aFileName)
    : mMediaMapperPathNameRO(GetPath(aReadOnlyFolder, aSubFolder, aFileName, false)),
      mMediaMapperPathNameRW(GetPath(aWritableFolder, aSubFolder, kWritablePrefix + aFileName, true)),
      mEntryArray(ezArray_New()),
      mMergedProtocolInfoArray(ezArray_New()),
      mMimeTypesDotIniParser(anIniParser),
      mEntryArrayHashTable(ezCustomHashTable_New_String_UInt32()) {
    ezArray_SetFreeFunc(mEntryArray, Entry_Free);
    ezArray_SetSortFunc(mEntryArray, Entry_Sort);
    ezArray_SetFreeFunc(mMergedProtocolInfoArray, MergedProtocolInfo_Free);
    BuildSpecialDLNAProfileList();
}

DLNAMediaMapper::~DLNAMediaMapper() {
    ezArray_Delete(mEntryArray);
    ezArray_Delete(mMergedProtocolInfoArray);
    ezCustomHashTable_Delete(mEntryArrayHashTable);
}

ezPathName DLNAMediaMapper::GetPath(const ezCString& aFolder, const ezCString& aSubFolder,
                                    const ezCString& aFileName, bool afCreate) {
    ezPathName path = ezPathName::MakeDirPath(aFolder);
    if (!aSubFolder.IsEmpty()) {
        path = ezPathName::MakeCombinedDirPath(path, aSubFolder);
    }
    if (afCreate && !ezDir_CreateRecursively(path.GetFullPath())) {
        path.Reset();
        return path;
    }
    // An empty folder is the working one, though as a path it is not valid.
    return ezPathName::MakeCombinedFilePath(path, aFileName);
}

ezError DLNAMediaMapper::Load() {
    mSkippedLines = DLNAMediaMapperBadLines();
    if (!mMediaMapperPathNameRW.FileExists()) {
        ezLog_F(EZLOGLEVEL_INFO, "Copying read-only media mapper file from '%s' to '%s'\n",
                mMediaMapperPathNameRO.GetFullPath().c_str(), mMediaMapperPathNameRW.GetFullPath().c_str());
        const ezError loaded = LoadInto(mMediaMapperPathNameRO, true);
        if (loaded.IsError()) {
            ezLog_F(EZLOGLEVEL_ERROR, "Failed copying media mapper file%s\n", loaded.ToString());
        } else {
            const ezError saved = SaveFile(mMediaMapperPathNameRW);
            if (saved.IsError()) {
                ezLog_F(EZLOGLEVEL_ERROR, "Failed saving media mapper file%s\n", saved.ToString());
            }
        }
    }
    // Before it is read: what is written meanwhile counts as a change.
    const ezFileState state(mMediaMapperPathNameRW.GetFullPath());
    // On top of what the copy has loaded: after a first run every line is held twice.
    ezError loaded = LoadInto(mMediaMapperPathNameRW, false);
    if (loaded.IsError()) {
        mSkippedLines = DLNAMediaMapperBadLines();
    } else {
        mLoadedState = state;
    }
    return loaded;
}

bool DLNAMediaMapper::HasChangedSinceLoad() const {
    const ezFileState state(mMediaMapperPathNameRW.GetFullPath());
    return state != mLoadedState;
}

ezError DLNAMediaMapper::LoadFile(const ezPathName& aPath) {
    mSkippedLines = DLNAMediaMapperBadLines();
    return LoadInto(aPath, false);
}

ezError DLNAMediaMapper::LoadInto(const ezPathName& aPath, bool afReadOnly) {
    ezTextFile file(aPath.GetFullPath(), kMaximumLineLength);
    if (!file.IsOpened()) {
        return FileError(kErrorOpening, "Unable to open media mapper file: '", aPath);
    }
    ezCString line;
    bool fCut = false;
    std::vector<std::unique_ptr<Entry>> loaded;
    for (std::size_t number = 1; file.NextLine(&line, &fCut); ++number) {
        const ezCString text = line.TrimLeftRight();
        if (text.IsEmpty() || text.View().front() == '#') {
            continue; // a remark may be as long as it likes
        }
        std::unique_ptr<Entry> entry = std::make_unique<Entry>();
        if (!fCut && entry->Set(text)) {
            loaded.push_back(std::move(entry));
        } else {
            Note(mSkippedLines, {number, fCut ? kTooLong : WhyBad(*entry, text), afReadOnly});
        }
    }
    if (file.HasFailed()) {
        // Nothing of it: a save of half a table would lose the other half.
        return FileError(kErrorOpening, "Unable to open media mapper file: '", aPath);
    }
    for (std::unique_ptr<Entry>& entry : loaded) {
        // The index is out of date after the sort below: the table tells only whether a name is known.
        ezCustomHashTable_AddUInt32(mEntryArrayHashTable,
                                    ezCString(SplitName(entry->mFileName.View()).mBase).Lower(),
                                    static_cast<uint32>(ezArray_GetCount(mEntryArray)));
        ezArray_Append(mEntryArray, entry.release());
    }
    ezArray_Sort(mEntryArray);
    BuildMergedEntryArray();
    mfSaved = false;
    return ezError();
}

ezError DLNAMediaMapper::Save() {
    return SaveFile(mMediaMapperPathNameRW);
}

ezError DLNAMediaMapper::SaveFile(const ezPathName& aPath) {
    if (!ezAssert(!mfSaved, "!mfSaved", "DLNAMediaMapper")) {
        return FileError(kErrorWriting, "Unable to write media mapper file :\n'", aPath);
    }
    mfSaved = true;
    mTooLongLines = DLNAMediaMapperBadLines();
    ezCString text = kDLNAMediaMapper_Header;
    const auto header = static_cast<std::size_t>(std::count(text.View().begin(), text.View().end(), '\n'));
    for (std::size_t i = 0; i < ezArray_GetCount(mEntryArray); ++i) {
        const ezCString line = EntryAt(mEntryArray, i)->Get();
        if (line.GetLength() > kMaximumLineLength) {
            Note(mTooLongLines, {header + i + 1, kTooLong, false});
        }
        text += line;
        text += "\n";
    }
    ezFile file;
    if (!file.Create(aPath.GetFullPath(), true, ezFileAccessMode_ReadWrite)) {
        return FileError(kErrorWriting, "Unable to create media mapper file :\n'", aPath);
    }
    const int written = file.Write(text.c_str(), text.GetLength());
    const bool fWhole = written >= 0 && static_cast<std::size_t>(written) == text.GetLength();
    if (!file.Close() || !fWhole) {
        return FileError(kErrorWriting, "Unable to write media mapper file :\n'", aPath);
    }
    return ezError();
}

void DLNAMediaMapper::BuildMergedEntryArray() {
    // Sorted by profile, entries of one profile are neighbours. Never emptied first: see Load.
    ezDLNAProtocolInfo* merged = nullptr;
    const Entry* first = nullptr;
    for (std::size_t i = 0; i < ezArray_GetCount(mEntryArray); ++i) {
        const Entry* entry = EntryAt(mEntryArray, i);
        ezDLNAProtocolInfo* info = NewProtocolInfo(entry->mFullProfile);
        if (first == nullptr || first->mProfile != entry->mProfile) {
            first = entry;
            merged = info;
            ezArray_Append(mMergedProtocolInfoArray, merged);
        } else {
            ezDLNAProtocolInfo_Merge(merged, info);
            ezDLNAProtocolInfo_Delete(info);
        }
    }
    BuildSpecialDLNAProfileList();
}

void DLNAMediaMapper::BuildSpecialDLNAProfileList() {
    mEnabledDLNAProfileInfoList.Reset();
    mEnabledDLNAProfileInfoList.Add("JPEG_TN");
    mEnabledDLNAProfileInfoList.Add("PNG_TN");
    mDisabledDLNAProfileInfoList.Reset();
    ezArray* records = NewProfileArray();
    for (std::size_t i = 0; i < ezArray_GetCount(records); ++i) {
        const DLNAProfileEntry* record = RecordAt(records, i);
        const char* profile = ezDLNAProtocolInfo_GetProfile(record->GetDLNAProtocolInfo());
        if (*profile != '\0') {
            (record->GetProfileEnabled() ? mEnabledDLNAProfileInfoList : mDisabledDLNAProfileInfoList)
                .Add(profile);
        }
    }
    ezArray_Delete(records);
}

std::ptrdiff_t DLNAMediaMapper::SearchFileName(const ezCString& aFileName) const {
    const DLNAMediaMapperSearchInfo searchInfo = {aFileName, mMimeTypesDotIniParser};
    const FileNameKey key(searchInfo);
    return ezArray_Search(mEntryArray, &key, Entry_SearchFileName);
}

DLNAMediaMapperEntry* DLNAMediaMapper::GetFileEntry(const ezCString& aFileName) {
    const SplitName name(aFileName.View());
    std::string_view base = WithoutNumber(name.mBase);
    const std::size_t prefix = base.find(kDTCPPrefix);
    if (prefix != std::string_view::npos) {
        base.remove_prefix(prefix + kDTCPPrefix.size());
    }
    ezCString wanted(base);
    if (!ezCustomHashTable_HasKey(mEntryArrayHashTable, wanted.Lower())) {
        return nullptr;
    }
    if (!name.mExtension.empty()) {
        wanted += "." + ezCString(name.mExtension);
    }
    const std::ptrdiff_t index = SearchFileName(wanted);
    return index >= 0 ? EntryAt(mEntryArray, static_cast<std::size_t>(index)) : nullptr;
}

DLNAMediaMapperEntry* DLNAMediaMapper::GetFirstEntryForProfile(const ezCString& aProfile) {
    const std::ptrdiff_t index = ezArray_Search(mEntryArray, &aProfile, Entry_SearchProfile);
    return index >= 0 ? EntryAt(mEntryArray, static_cast<std::size_t>(index)) : nullptr;
}

ezDLNAProtocolInfo* DLNAMediaMapper::GetMergedDLNAProtocolInfo(const ezCString& aProfile) {
    const std::ptrdiff_t index =
        ezArray_Search(mMergedProtocolInfoArray, &aProfile, MergedProtocolInfo_SearchProfile);
    return index >= 0 ? static_cast<ezDLNAProtocolInfo*>(
                            ezArray_At(mMergedProtocolInfoArray, static_cast<std::size_t>(index)))
                      : nullptr;
}

std::int32_t DLNAMediaMapper::AddEntry(DLNAMediaMapperEntry* anEntry) {
    if (anEntry == nullptr) {
        return -1;
    }
    // Neither the known names nor the merged array learn of it.
    ezArray_Append(mEntryArray, anEntry);
    ezArray_Sort(mEntryArray);
    return static_cast<std::int32_t>(SearchFileName(anEntry->mFileName));
}

void DLNAMediaMapper::RemoveEntry(DLNAMediaMapperEntry* anEntry) {
    const std::ptrdiff_t index =
        anEntry != nullptr ? ezArray_Search(mEntryArray, anEntry, Entry_SearchSame) : -1;
    if (index >= 0) {
        ezArray_Remove(mEntryArray, static_cast<std::size_t>(index));
    }
}

ezArray* DLNAMediaMapper::NewProfileArray() {
    ezArray* records = ezArray_New();
    ezArray_SetFreeFunc(records, DLNAProfileEntry_Free);
    ezArray_SetSortFunc(records, DLNAProfileEntry_Sort);
    ProfileIndex index; // a record that takes another's place has the same name
    for (std::size_t i = 0; i < ezArray_GetCount(mEntryArray); ++i) {
        DLNAProfileEntry* record = new DLNAProfileEntry(*EntryAt(mEntryArray, i));
        ezDLNAProtocolInfo* info = record->GetDLNAProtocolInfo();
        const std::optional<std::size_t> found = index.Find(ezDLNAProtocolInfo_GetProfile(info));
        if (!found) {
            index.Add(ezDLNAProtocolInfo_GetProfile(info), ezArray_GetCount(records));
            ezArray_Append(records, record);
            continue;
        }
        const std::size_t place = *found;
        DLNAProfileEntry* known = RecordAt(records, place);
        const ezCString speeds =
            record->GetPlaySpeedMediaEnabled()
                ? ezCString::FromAllocatedString(ezDLNAProtocolInfo_GetPlaySpeedStr(info, 0))
                : ezCString();
        ezDLNAProtocolInfo_MergePlaySpeeds(known->GetDLNAProtocolInfo(), speeds.c_str());
        if (record->CanSupportPlaySpeed() && !known->CanSupportPlaySpeed()) {
            ezArray_SetAt(records, place, record);
        } else {
            delete record;
        }
    }
    ezArray_Sort(records);
    return records;
}

bool DLNAMediaMapper::MergeBackProfileArray(ezArray* anArray, bool* afProfileChanged) {
    ProfileIndex index;
    for (std::size_t i = 0; i < ezArray_GetCount(anArray); ++i) {
        index.Add(ezDLNAProtocolInfo_GetProfile(RecordAt(anArray, i)->GetDLNAProtocolInfo()), i);
    }
    bool fAnyChanged = false;
    bool fAnyProfileChanged = false;
    for (std::size_t i = 0; i < ezArray_GetCount(mEntryArray); ++i) {
        Entry* entry = EntryAt(mEntryArray, i);
        const std::optional<std::size_t> found = index.Find(entry->mProfile.View());
        bool fProfileChanged = false;
        if (found && RecordAt(anArray, *found)->MergeBack(*entry, &fProfileChanged)) {
            fAnyChanged = true;
            fAnyProfileChanged = fAnyProfileChanged || fProfileChanged;
        }
    }
    if (afProfileChanged != nullptr) {
        *afProfileChanged = fAnyProfileChanged;
    }
    return fAnyChanged;
}

ezCString DLNAMediaMapper::GetEnabledProfileList(const ezCString& aList) {
    const ezCSVStringList asked = ezCSVStringList::FromText(aList);
    ezCSVStringList enabled = ezCSVStringList::WithSeparator(',');
    for (std::size_t i = 0; i < asked.GetCount(); ++i) {
        const ezCString profile = asked.GetAt(i);
        if (mEnabledDLNAProfileInfoList.Has(profile.c_str(), false)) {
            enabled.Add(profile.c_str());
        }
    }
    return enabled.Join();
}

ezCString DLNAMediaMapper::GetEnabledMimeTypeProfileList(const ezCString& aText) {
    ezDLNAProtocolInfoList* list = ezDLNAProtocolInfoList_NewFromProfileInfo(aText.c_str(), 0);
    for (std::size_t i = ezDLNAProtocolInfoList_GetCount(list); i > 0; --i) {
        const char* profile =
            ezDLNAProtocolInfo_GetProfile(ezDLNAProtocolInfoList_GetProtocolInfoAt(list, i - 1));
        if (*profile != '\0' && !mEnabledDLNAProfileInfoList.Has(profile, false)) {
            ezDLNAProtocolInfoList_Remove(list, i - 1);
        }
    }
    ezCString text = ezCString::FromAllocatedString(ezDLNAProtocolInfoList_GetMimeTypeProfileStr(list));
    ezDLNAProtocolInfoList_Delete(list);
    return text;
}

bool DLNAMediaMapper::IsDisabledProfile(const char* aName) {
    return aName != nullptr && *aName != '\0' && mDisabledDLNAProfileInfoList.Has(aName, false);
}

bool DLNAMediaMapper::MimeTypeSupportTimeSeek(const ezCString& aMimeType) {
    return IsAudioOrVideo(aMimeType);
}

bool DLNAMediaMapper::MimeTypeSupportPlaySpeed(const ezCString& aMimeType) {
    return IsAudioOrVideo(aMimeType);
}

void DLNAMediaMapper::Hook_AdjustProtocolInfo(ezHook* aHook, const char* /*aName*/, va_list anArguments) {
    DLNAMediaMapper* mapper =
        static_cast<DLNAMediaMapper*>(ezHook_GetVoidPtrProperty(aHook, "DLNAMediaMapper"));
    ezDLNAProtocolInfo* info = va_arg(anArguments, ezDLNAProtocolInfo*);
    if (mapper != nullptr && info != nullptr) {
        ezDLNAProtocolInfo_MergeWithMediaMapper(
            info, mapper->GetMergedDLNAProtocolInfo(ezDLNAProtocolInfo_GetProfile(info)));
    }
}

int DLNAMediaMapper::DLNAProfileEntry_Search(const void* aRecord, const void* aName) {
    const ezCString name(static_cast<const char*>(aName));
    return DLNAProfileEntry::SearchProfile(aRecord, &name);
}

int DLNAMediaMapper::DLNAProfileEntry_Sort(const void* aLeft, const void* aRight) {
    const auto profile = [](const void* aRecord) {
        return ezDLNAProtocolInfo_GetProfile(
            static_cast<const DLNAProfileEntry*>(aRecord)->GetDLNAProtocolInfo());
    };
    return std::strcmp(profile(aLeft), profile(aRight));
}

void DLNAMediaMapper::DLNAProfileEntry_Free(void* aRecord) {
    delete static_cast<DLNAProfileEntry*>(aRecord);
}
