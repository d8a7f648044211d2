// The door: the media mapper file. The input is the file that is shipped; what follows a form feed in it is
// the writable file, which otherwise does not exist yet.

#include "fuzz/support/Check.h"
#include "fuzz/support/MapperEntry.h"
#include "fuzz/support/WriteFile.h"

#include "ez/MediaParserStream.h"
#include "ez/MimeTypesDotIniParser.h"
#include "ezPlatform/containers/Array.h"
#include "ezPlatform/dlna/ProtocolInfoList.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Entry = DLNAMediaMapperEntry;
using EntryPtr = std::unique_ptr<Entry>;
using Entries = std::vector<EntryPtr>;
using Texts = std::vector<std::string>;

constexpr const char* kFileName = "MediaMapper.txt";
constexpr const char* kTypesName = "types.ini";
constexpr const char* kTypes =
    "[MimeTypes]\nmp3=mp3@audio/mpeg@item.audioItem\nwav=wav,pcm@audio/wav@item.audioItem\n"
    "mpg=mpg,vob@video/mpeg@item.videoItem\n";
constexpr char kFileEnd = '\f';
constexpr std::size_t kMaximumLineLength = 1024;

/// Bounds on what is asked of one input, so that a long one does not take for ever.
constexpr std::size_t kMaximumLookups = 12;

/// The two folders of a table, and the media types.
struct Folders {
    MemoryFolder mRoot;
    std::string mReadOnly = mRoot.MakeFolder("ro");
    std::string mWritable = mRoot.MakeFolder("rw");
    std::unique_ptr<ezMimeTypesDotIniParser> mTypes;

    Folders() {
        WriteFile(mReadOnly + "/" + kTypesName, kTypes);
        mTypes =
            std::make_unique<ezMimeTypesDotIniParser>(mReadOnly.c_str(), mReadOnly.c_str(), kTypesName, 0);
    }

    std::string WritablePath() const { return mWritable + "/_" + kFileName; }

    /// True when this is a first run.
    bool Write(std::string_view anInput) const {
        const std::size_t end = anInput.find(kFileEnd);
        WriteFile(mReadOnly + "/" + kFileName, anInput.substr(0, end));
        if (end == std::string_view::npos) {
            std::remove(WritablePath().c_str());
            return true;
        }
        WriteFile(WritablePath(), anInput.substr(end + 1));
        return false;
    }

    std::unique_ptr<DLNAMediaMapper> NewMapper() const {
        return std::make_unique<DLNAMediaMapper>(mTypes.get(), mReadOnly.c_str(), mWritable.c_str(), "",
                                                 kFileName);
    }
};

std::string ReadFile(const std::string& aPath) {
    std::ifstream file(aPath, std::ios::binary);
    FuzzCheck(file.is_open());
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// The entries of a file, read in the plainest way.
void AddEntriesOf(std::string_view aFile, Entries& anEntries) {
    if (aFile.substr(0, 3) == "\xEF\xBB\xBF") {
        aFile.remove_prefix(3);
    }
    while (!aFile.empty()) {
        const std::size_t end = aFile.find('\n');
        std::string_view line = aFile.substr(0, end);
        aFile.remove_prefix(end == std::string_view::npos ? aFile.size() : end + 1);
        if (end != std::string_view::npos && !line.empty() && line.back() == '\r') {
            line.remove_suffix(1);
        }
        auto entry = std::make_unique<Entry>();
        const std::string_view text = ezTrimmed(line);
        if (line.size() <= kMaximumLineLength && !text.empty() && text.front() != '#' &&
            entry->Set(ezCString(text))) {
            anEntries.push_back(std::move(entry));
        }
    }
}

std::size_t Count(DLNAMediaMapper& aMapper) {
    return ezArray_GetCount(aMapper.GetArray());
}

Entry* EntryAt(DLNAMediaMapper& aMapper, std::size_t anIndex) {
    return static_cast<Entry*>(ezArray_At(aMapper.GetArray(), anIndex));
}

DLNAProfileEntry* RecordAt(const ezArray* anArray, std::size_t anIndex) {
    return static_cast<DLNAProfileEntry*>(ezArray_At(anArray, anIndex));
}

std::string ProfileOf(const ezDLNAProtocolInfo* anInfo) {
    return ezDLNAProtocolInfo_GetProfile(anInfo);
}

// The table

/// The table holds the entries of the files, in their order within each profile.
void CheckEntries(DLNAMediaMapper& aMapper, Entries& anExpected) {
    std::stable_sort(anExpected.begin(), anExpected.end(), [](const EntryPtr& aLeft, const EntryPtr& aRight) {
        return aLeft->mProfile < aRight->mProfile;
    });
    FuzzCheck(Count(aMapper) == anExpected.size());
    for (std::size_t i = 0; i < anExpected.size(); ++i) {
        FuzzCheck(MapperEntry_Dump(*EntryAt(aMapper, i)) == MapperEntry_Dump(*anExpected[i]));
    }
}

void CheckLookups(DLNAMediaMapper& aMapper) {
    for (std::size_t i = 0; i < std::min(Count(aMapper), kMaximumLookups); ++i) {
        const Entry* entry = EntryAt(aMapper, i);
        const ezCString base = entry->mFileName.BeforeLast('.');
        const auto wears = [&](const char* anExtension, const Entry* aWearer) {
            return aWearer->mFileName.Contains(".") &&
                   aWearer->mFileName.AfterLast('.').CompareNoCase(anExtension) == 0;
        };
        FuzzCheck(aMapper.GetFileEntry(base + ".unheard-of") == nullptr);
        const bool fSimple = !MapperEntry_HasAny(base, ".()") && !base.Upper().Contains("DTCP_");
        if (!fSimple) {
            aMapper.GetFileEntry(entry->mFileName);
            continue;
        }
        FuzzCheck(aMapper.GetFileEntry(base) == nullptr);
        for (const char* extension : {"mp3", "wav", "PCM", "vob"}) {
            const Entry* expected = nullptr;
            for (std::size_t j = 0; j < Count(aMapper) && expected == nullptr; ++j) {
                const Entry* candidate = EntryAt(aMapper, j);
                const bool fSameBase = candidate->mFileName.BeforeLast('.').CompareNoCase(base) == 0;
                const bool fSamplesAsWave =
                    wears("pcm", candidate) && ezCString(extension).CompareNoCase("wav") == 0;
                expected = fSameBase && !fSamplesAsWave ? candidate : nullptr;
            }
            const ezCString suffix = ezCString(".") + extension;
            FuzzCheck(aMapper.GetFileEntry(base + suffix) == expected);
            FuzzCheck(aMapper.GetFileEntry(base.Upper() + suffix) == expected);
            FuzzCheck(aMapper.GetFileEntry(base + "(2)" + suffix) == expected);
            FuzzCheck(aMapper.GetFileEntry("protected-DTCP_" + base + suffix) == expected);
        }
    }
}

/// What the entries of one profile state together, those of the first file that was loaded.
void CheckMergedInfos(DLNAMediaMapper& aMapper, const Entries& aFirstLoaded) {
    struct Union {
        uint32 mFlags = 0;
        bool mfByteSeek = false;
        bool mfTimeSeek = false;
        bool mfPlain = true;
    };
    std::map<std::string, Union> unions;
    for (const EntryPtr& entry : aFirstLoaded) {
        Union& all = unions[MapperEntry_Text(entry->mProfile)];
        all.mFlags |= ezDLNAProtocolInfo_GetFlags(entry->mDLNAProtocolInfo);
        all.mfByteSeek = all.mfByteSeek || ezDLNAProtocolInfo_GetByteBasedSeek(entry->mDLNAProtocolInfo);
        all.mfTimeSeek = all.mfTimeSeek || ezDLNAProtocolInfo_GetTimeBasedSeek(entry->mDLNAProtocolInfo);
        all.mfPlain = all.mfPlain && MapperEntry_IsPlain(*entry);
    }
    const bool fAllPlain =
        std::all_of(unions.begin(), unions.end(), [](const auto& aUnion) { return aUnion.second.mfPlain; });
    for (const auto& [profile, all] : unions) {
        const ezDLNAProtocolInfo* info = aMapper.GetMergedDLNAProtocolInfo(profile.c_str());
        if (fAllPlain) {
            FuzzCheck(info != nullptr && ProfileOf(info) == profile);
            FuzzCheck(ezDLNAProtocolInfo_GetFlags(info) == all.mFlags);
            FuzzCheck(ezDLNAProtocolInfo_GetByteBasedSeek(info) == all.mfByteSeek);
            FuzzCheck(ezDLNAProtocolInfo_GetTimeBasedSeek(info) == all.mfTimeSeek);
        }
    }
    for (std::size_t i = 0; i < Count(aMapper); ++i) {
        const ezCString& profile = EntryAt(aMapper, i)->mProfile;
        const bool fFirst = i == 0 || EntryAt(aMapper, i - 1)->mProfile != profile;
        FuzzCheck(!fFirst || aMapper.GetFirstEntryForProfile(profile) == EntryAt(aMapper, i));
    }
}

void CallHook(DLNAMediaMapper& aMapper, ezDLNAProtocolInfo* anInfo) {
    ezHook* hook = ezHook_New();
    ezHook_SetCallback(hook, DLNAMediaMapper::Hook_AdjustProtocolInfo);
    ezHook_Call(hook, "AdjustProtocolInfo", anInfo); // no table filed: nothing happens
    ezHook_SetVoidPtrProperty(hook, "DLNAMediaMapper", &aMapper);
    ezHook_Call(hook, "AdjustProtocolInfo", anInfo);
    ezHook_Delete(hook);
}

void CheckHook(DLNAMediaMapper& aMapper) {
    for (std::size_t i = 0; i < std::min(Count(aMapper), kMaximumLookups); ++i) {
        const Entry* entry = EntryAt(aMapper, i);
        ezDLNAProtocolInfo* info =
            ezDLNAProtocolInfo_New(entry->mFullProfile.c_str(), entry->mFullProfile.GetLength(), 0);
        CallHook(aMapper, info);
        const ezDLNAProtocolInfo* merged =
            aMapper.GetMergedDLNAProtocolInfo(ezDLNAProtocolInfo_GetProfile(info));
        const std::string speeds =
            merged != nullptr ? MapperEntry_Taken(ezDLNAProtocolInfo_GetPlaySpeedStr(merged, 0)) : "";
        FuzzCheck(speeds.empty() || MapperEntry_Taken(ezDLNAProtocolInfo_GetPlaySpeedStr(info, 0)) == speeds);
        ezDLNAProtocolInfo_Delete(info);
    }
}

// Profiles

/// The table's own text of what it can do, thinned out by itself.
void CheckProfileLists(DLNAMediaMapper& aMapper) {
    const ezCString text = DLNAMediaMapperParser(&aMapper, nullptr).GetDLNAInfo();
    ezDLNAProtocolInfoList* list = ezDLNAProtocolInfoList_NewFromProfileInfo(text.c_str(), 0);
    const ezCString enabled = aMapper.GetEnabledMimeTypeProfileList(text);
    ezDLNAProtocolInfoList* enabledList = ezDLNAProtocolInfoList_NewFromProfileInfo(enabled.c_str(), 0);
    if (!MapperEntry_HasAny(text, "\\")) {
        FuzzCheck(ezDLNAProtocolInfoList_GetCount(enabledList) <= ezDLNAProtocolInfoList_GetCount(list));
        FuzzCheck(aMapper.GetEnabledMimeTypeProfileList(enabled) == enabled);
    }
    ezDLNAProtocolInfoList_Delete(enabledList);
    ezDLNAProtocolInfoList_Delete(list);

    ezCSVStringList asked = ezCSVStringList::WithSeparator(',');
    asked.Add("JPEG_TN");
    for (std::size_t i = 0; i < std::min(Count(aMapper), kMaximumLookups); ++i) {
        const Entry* entry = EntryAt(aMapper, i);
        if (!MapperEntry_HasAny(entry->mProfile, ",\\")) {
            asked.Add(entry->mProfile.c_str());
        }
        aMapper.IsDisabledProfile(entry->mProfile.c_str());
    }
    const ezCString answer = aMapper.GetEnabledProfileList(asked.Join());
    const ezCSVStringList names = ezCSVStringList::FromText(answer);
    FuzzCheck(names.Has("JPEG_TN", true));
    for (std::size_t i = 0; i < names.GetCount(); ++i) {
        FuzzCheck(asked.Has(names.GetAt(i).c_str(), true));
    }
    FuzzCheck(aMapper.GetEnabledProfileList(answer) == answer);
    FuzzCheck(!aMapper.IsDisabledProfile(nullptr) && !aMapper.IsDisabledProfile(""));
}

/// The choices of a round: each record's from a bit of its own.
void Choose(const ezArray* aRecords, std::size_t aSeed) {
    for (std::size_t i = 0; i < ezArray_GetCount(aRecords); ++i) {
        const std::size_t choices = aSeed + i * 5;
        DLNAProfileEntry* record = RecordAt(aRecords, i);
        record->EnableProfile((choices & 1) != 0);
        record->EnablePlaySpeed((choices & 2) != 0);
        ezDLNAProtocolInfo_SetByteBasedSeek(record->GetDLNAProtocolInfo(), (choices & 4) != 0);
        ezDLNAProtocolInfo_SetTimeBasedSeek(record->GetDLNAProtocolInfo(), (choices & 8) != 0);
        ezDLNAProtocolInfo_SetHTTPStalling(record->GetDLNAProtocolInfo(), (choices & 16) != 0);
        FuzzCheck(record->GetProfileEnabled() == ((choices & 1) != 0));
        FuzzCheck(record->GetPlaySpeedEnabled() == ((choices & 2) != 0 && record->CanSupportPlaySpeed()));
    }
}

std::string Choices(DLNAMediaMapper& aMapper) {
    std::string text;
    for (std::size_t i = 0; i < Count(aMapper); ++i) {
        const Entry* entry = EntryAt(aMapper, i);
        char* object = ezDLNAProtocolInfo_GetStr(entry->mDLNAProtocolInfo);
        text += std::to_string(entry->mGoldenDMSFlags) + "|" + MapperEntry_Taken(object) + "\n";
    }
    return text;
}

void CheckMergeBack(DLNAMediaMapper& aMapper, std::size_t aSeed) {
    ezArray* records = aMapper.NewProfileArray();
    std::map<std::string, const DLNAProfileEntry*> byName;
    for (std::size_t i = 0; i < ezArray_GetCount(records); ++i) {
        const std::string name = ProfileOf(RecordAt(records, i)->GetDLNAProtocolInfo());
        FuzzCheck(byName.empty() || byName.rbegin()->first < name); // sorted, each once
        FuzzCheck(DLNAMediaMapper::DLNAProfileEntry_Search(RecordAt(records, i), name.c_str()) != 0);
        byName[name] = RecordAt(records, i);
    }
    FuzzCheck(byName.size() <= Count(aMapper));
    Choose(records, aSeed);

    const std::string before = Choices(aMapper);
    bool fProfileChanged = true;
    const bool fChanged = aMapper.MergeBackProfileArray(records, &fProfileChanged);
    const std::string after = Choices(aMapper);
    FuzzCheck(fChanged || (before == after && !fProfileChanged));
    for (std::size_t i = 0; i < Count(aMapper); ++i) {
        const Entry* entry = EntryAt(aMapper, i);
        const auto found = byName.find(MapperEntry_Text(entry->mProfile));
        if (found == byName.end()) {
            FuzzCheck(!MapperEntry_IsPlain(*entry));
            continue;
        }
        const DLNAProfileEntry* record = found->second;
        FuzzCheck(entry->ProfileEnabled() == record->GetProfileEnabled());
        const bool fSpeedBit = (entry->mGoldenDMSFlags & kDLNAMediaMapperPlaySpeed_ProfileEnabled) != 0;
        FuzzCheck(fSpeedBit == record->GetPlaySpeedEnabled());
        FuzzCheck(ezDLNAProtocolInfo_GetByteBasedSeek(entry->mDLNAProtocolInfo) ==
                  ezDLNAProtocolInfo_GetByteBasedSeek(record->GetDLNAProtocolInfo()));
        FuzzCheck(ezDLNAProtocolInfo_GetHTTPStalling(entry->mDLNAProtocolInfo) ==
                  ezDLNAProtocolInfo_GetHTTPStalling(record->GetDLNAProtocolInfo()));
    }
    FuzzCheck(!aMapper.MergeBackProfileArray(records, &fProfileChanged) && !fProfileChanged);
    FuzzCheck(Choices(aMapper) == after);
    ezArray_Delete(records);
}

// Edits and files

void CheckEdits(DLNAMediaMapper& aMapper) {
    const std::size_t count = Count(aMapper);
    Entry* added = new Entry;
    FuzzCheck(added->Set("added by hand.mp3,audio/mpeg,NEW"));
    const std::int32_t index = aMapper.AddEntry(added);
    FuzzCheck(Count(aMapper) == count + 1 && index >= 0);
    const ezCString name = EntryAt(aMapper, static_cast<std::size_t>(index))->mFileName;
    FuzzCheck(name.BeforeLast('.').CompareNoCase("added by hand") == 0);
    aMapper.RemoveEntry(added);
    FuzzCheck(Count(aMapper) == count);
    for (std::size_t i = 0; i < count; ++i) {
        FuzzCheck(EntryAt(aMapper, i) != added);
    }
    aMapper.RemoveEntry(nullptr);
    FuzzCheck(aMapper.AddEntry(nullptr) == -1 && Count(aMapper) == count);
}

/// Whether every entry's line brings it back when it stands in a file.
bool SurviveTheirLines(DLNAMediaMapper& aMapper) {
    for (std::size_t i = 0; i < Count(aMapper); ++i) {
        Entry* entry = EntryAt(aMapper, i);
        const ezCString line = entry->Get();
        if (!MapperEntry_SurvivesItsLine(*entry) || line.GetLength() > kMaximumLineLength ||
            line.StartsWith("#") || MapperEntry_HasAny(line, "\n")) {
            return false;
        }
    }
    return true;
}

void CheckSave(DLNAMediaMapper& aMapper, const Folders& aFolders) {
    const bool fSurvive = SurviveTheirLines(aMapper);
    FuzzCheck(!aMapper.Save().IsError());
    const std::string saved = ReadFile(aFolders.WritablePath());
    FuzzCheck(saved.substr(0, 18) == "# MediaMapper.txt\n");
    FuzzCheck(aMapper.Save().IsError()); // at most once a load
    FuzzCheck(ReadFile(aFolders.WritablePath()) == saved);

    const std::unique_ptr<DLNAMediaMapper> again = aFolders.NewMapper();
    FuzzCheck(!again->Load().IsError());
    Entries expected;
    AddEntriesOf(saved, expected);
    CheckEntries(*again, expected);
    if (fSurvive) {
        FuzzCheck(Count(*again) == Count(aMapper));
        for (std::size_t i = 0; i < Count(aMapper); ++i) {
            FuzzCheck(EntryAt(*again, i)->Get() == EntryAt(aMapper, i)->Get());
        }
        FuzzCheck(!again->Save().IsError());
        FuzzCheck(ReadFile(aFolders.WritablePath()) == saved);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    // A second save leads to this assertion of the table; then the answer is an error.
    const FuzzHouse house("!mfSaved");
    static const Folders folders;
    std::string input(aSize, '\0');
    std::copy_n(aData, aSize, input.begin());
    const bool fFirstRun = folders.Write(input);

    const std::unique_ptr<DLNAMediaMapper> mapper = folders.NewMapper();
    FuzzCheck(!mapper->Load().IsError());
    Entries expected;
    Entries firstLoaded;
    if (fFirstRun) {
        AddEntriesOf(input, firstLoaded);
        AddEntriesOf(input, expected);
    }
    const std::string writable = ReadFile(folders.WritablePath());
    AddEntriesOf(writable, expected);
    if (!fFirstRun) {
        AddEntriesOf(writable, firstLoaded);
    }
    CheckEntries(*mapper, expected);
    CheckLookups(*mapper);
    CheckMergedInfos(*mapper, firstLoaded);
    CheckHook(*mapper);
    CheckProfileLists(*mapper);
    CheckMergeBack(*mapper, aSize);
    CheckEdits(*mapper);
    CheckSave(*mapper, folders);
    return 0;
}
