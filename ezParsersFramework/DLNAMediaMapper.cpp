#include "ez/DLNAMediaMapper.h"

#include "detail/MediaMapperFile.h"
#include "detail/MediaMapperName.h"
#include "detail/ProfileIndex.h"

#include "ez/UPnPClasses.h"

#include "ezPlatform/base/Assert.h"
#include "ezPlatform/base/Log.h"
#include "ezPlatform/base/Owned.h"
#include "ezPlatform/containers/Array.h"
#include "ezPlatform/containers/CustomHashTable.h"
#include "ezPlatform/dlna/ProtocolInfo.h"
#include "ezPlatform/dlna/ProtocolInfoList.h"
#include "ezPlatform/files/Dir.h"

#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using Entry = DLNAMediaMapperEntry;

constexpr const char* kWritablePrefix = "_";

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

bool IsAudioOrVideo(const ezCString& aMimeType) {
    const std::string_view kind = ezUPnPClass_OfMimeType(aMimeType.View(), false);
    return aMimeType.Contains("/") && (kind == kezUPnPClass_AudioItem || kind == kezUPnPClass_VideoItem);
}

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
    std::vector<std::unique_ptr<Entry>> loaded;
    ezError error = MediaMapperFile_Read(aPath, afReadOnly, loaded, mSkippedLines);
    if (error.IsError()) {
        return error;
    }
    for (std::unique_ptr<Entry>& entry : loaded) {
        // The index is out of date after the sort below: the table tells only whether a name is known.
        ezCustomHashTable_AddUInt32(mEntryArrayHashTable,
                                    ezCString(MediaMapperName(entry->mFileName.View()).mBase).Lower(),
                                    static_cast<uint32>(ezArray_GetCount(mEntryArray)));
        ezArray_Append(mEntryArray, entry.release());
    }
    ezArray_Sort(mEntryArray);
    BuildMergedEntryArray();
    mfSaved = false;
    return error;
}

ezError DLNAMediaMapper::Save() {
    return SaveFile(mMediaMapperPathNameRW);
}

ezError DLNAMediaMapper::SaveFile(const ezPathName& aPath) {
    if (!ezAssert(!mfSaved, "!mfSaved", "DLNAMediaMapper")) {
        return MediaMapperFile_WriteError(aPath);
    }
    mfSaved = true;
    mTooLongLines = DLNAMediaMapperBadLines();
    return MediaMapperFile_Write(aPath, mEntryArray, mTooLongLines);
}

void DLNAMediaMapper::BuildMergedEntryArray() {
    // Sorted by profile, entries of one profile are neighbours. Never emptied first: see Load.
    ezDLNAProtocolInfo* merged = nullptr;
    const Entry* first = nullptr;
    for (std::size_t i = 0; i < ezArray_GetCount(mEntryArray); ++i) {
        const Entry* entry = EntryAt(mEntryArray, i);
        ezOwned<ezDLNAProtocolInfo_Delete> info(NewProtocolInfo(entry->mFullProfile));
        if (first == nullptr || first->mProfile != entry->mProfile) {
            first = entry;
            merged = info.release();
            ezArray_Append(mMergedProtocolInfoArray, merged);
        } else {
            ezDLNAProtocolInfo_Merge(merged, info.get());
        }
    }
    BuildSpecialDLNAProfileList();
}

void DLNAMediaMapper::BuildSpecialDLNAProfileList() {
    mEnabledDLNAProfileInfoList.Reset();
    mEnabledDLNAProfileInfoList.Add("JPEG_TN");
    mEnabledDLNAProfileInfoList.Add("PNG_TN");
    mDisabledDLNAProfileInfoList.Reset();
    const ezOwned<ezArray_Delete> records(NewProfileArray());
    for (std::size_t i = 0; i < ezArray_GetCount(records.get()); ++i) {
        const DLNAProfileEntry* record = RecordAt(records.get(), i);
        const char* profile = ezDLNAProtocolInfo_GetProfile(record->GetDLNAProtocolInfo());
        if (*profile != '\0') {
            (record->GetProfileEnabled() ? mEnabledDLNAProfileInfoList : mDisabledDLNAProfileInfoList)
                .Add(profile);
        }
    }
}

std::ptrdiff_t DLNAMediaMapper::SearchFileName(const ezCString& aFileName) const {
    const DLNAMediaMapperSearchInfo searchInfo = {aFileName, mMimeTypesDotIniParser};
    const MediaMapperNameKey key(searchInfo);
    return ezArray_Search(mEntryArray, &key, MediaMapperNameKey::Search);
}

DLNAMediaMapperEntry* DLNAMediaMapper::GetFileEntry(const ezCString& aFileName) {
    const MediaMapperName name(aFileName.View());
    ezCString wanted(MediaMapperName_BaseToLookUp(name.mBase));
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
        auto record = std::make_unique<DLNAProfileEntry>(*EntryAt(mEntryArray, i));
        ezDLNAProtocolInfo* info = record->GetDLNAProtocolInfo();
        const std::optional<std::size_t> found = index.Find(ezDLNAProtocolInfo_GetProfile(info));
        if (!found) {
            index.Add(ezDLNAProtocolInfo_GetProfile(info), ezArray_GetCount(records));
            ezArray_Append(records, record.release());
            continue;
        }
        const std::size_t place = *found;
        DLNAProfileEntry* known = RecordAt(records, place);
        if (record->GetPlaySpeedMediaEnabled()) {
            ezDLNAProtocolInfo_GetField(known->GetDLNAProtocolInfo())
                ->AddPlaySpeeds(*ezDLNAProtocolInfo_GetField(info));
        }
        if (record->CanSupportPlaySpeed() && !known->CanSupportPlaySpeed()) {
            ezArray_SetAt(records, place, record.release());
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
    const ezOwned<ezDLNAProtocolInfoList_Delete> owned(
        ezDLNAProtocolInfoList_NewFromProfileInfo(aText.c_str(), 0));
    ezDLNAProtocolInfoList* const list = owned.get();
    for (std::size_t i = ezDLNAProtocolInfoList_GetCount(list); i > 0; --i) {
        const char* profile =
            ezDLNAProtocolInfo_GetProfile(ezDLNAProtocolInfoList_GetProtocolInfoAt(list, i - 1));
        if (*profile != '\0' && !mEnabledDLNAProfileInfoList.Has(profile, false)) {
            ezDLNAProtocolInfoList_Remove(list, i - 1);
        }
    }
    return ezCString::FromAllocatedString(ezDLNAProtocolInfoList_GetMimeTypeProfileStr(list));
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
