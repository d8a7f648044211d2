#include "PropertyMapper.h"

#include "PropertyTypes.h"

#include "support/Catchers.h"

#include "ezPlatform/dlna/ProtocolInfo.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::size_t kMostMappings = 40; // a load on top of a table doubles it
constexpr std::uint32_t kSwitches =
    kDLNAMediaMapperProfile_Disabled | kDLNAMediaMapperPlaySpeed_ProfileEnabled;

// What is to be met often stands more than once.
const char* const kBases[] = {"clip",      "song",    "clip", "CLIP", "clip(2)", "clip",
                              "DTCP_song", "clip(a)", "none", "a.b",  "song"};
const char* const kExtensions[] = {"aaa", "bbb", "a2", "pcm", "wav", "AAA", "odd", "zzz", ""};
const char* const kMimeTypes[] = {"audio/x-a", "video/x-b", "image/x-c", "audio/L16;rate=44100;channels=2",
                                  "Audio/x-a"};
const char* const kProfiles[] = {"PA", "PB", "LPCM", "P"};
const char* const kDurations[] = {"", "0:00:10", "1:00:00.000", "soon"};
const std::uint32_t kBitRates[] = {0, 5000, 128000};
const std::uint32_t kFlags[] = {0, kDLNAMediaMapperProfile_Disabled, kDLNAMediaMapperPlaySpeed_ProfileEnabled,
                                0x00000001};

Mapping MappingOf(const Operation& anOperation) {
    Mapping mapping;
    mapping.mName = MediaNameOf(anOperation.mA, anOperation.mB % 8); // a file has an extension
    mapping.mMimeType = Chosen(kMimeTypes, anOperation.mC);
    mapping.mProfile = Chosen(kProfiles, anOperation.mD);
    mapping.mDuration = Chosen(kDurations, anOperation.mA / 8);
    mapping.mBitRate = Chosen(kBitRates, anOperation.mB / 9);
    mapping.mFlags = Chosen(kFlags, anOperation.mC / 5);
    return mapping;
}

/// What the read-only file holds.
std::vector<Mapping> FactoryMappings(unsigned aLines) {
    std::vector<Mapping> mappings;
    for (unsigned i = 0; i < aLines; ++i) {
        mappings.push_back(MappingOf({Verb::AddMapping, i, i, i, 2 - i}));
    }
    return mappings;
}

std::string LineOf(const Mapping& aMapping) {
    return aMapping.mName + "," + aMapping.mMimeType + "," + aMapping.mProfile + "," + aMapping.mDuration +
           ",,," + (aMapping.mBitRate != 0 ? std::to_string(aMapping.mBitRate) : "");
}

std::string WithoutNumberAndPrefix(std::string aBase) {
    const std::size_t open = aBase.rfind('(');
    if (!aBase.empty() && aBase.back() == ')' && open != std::string::npos) {
        const std::string number = aBase.substr(open + 1, aBase.size() - open - 2);
        if (!number.empty() && number.find_first_not_of("0123456789") == std::string::npos) {
            aBase.resize(open);
        }
    }
    const std::size_t prefix = aBase.find("DTCP_");
    return prefix == std::string::npos ? aBase : aBase.substr(prefix + 5);
}

} // namespace

std::string MediaNameOf(unsigned aBase, unsigned anExtension) {
    const std::string extension = Chosen(kExtensions, anExtension);
    return Chosen(kBases, aBase) + (extension.empty() ? "" : "." + extension);
}

std::ostream& operator<<(std::ostream& aStream, const Mapping& aMapping) {
    return aStream << "{" << LineOf(aMapping) << ", flags " << std::hex << aMapping.mFlags << std::dec << "}";
}

bool Mapping::IsEnabled() const {
    return (mFlags & kDLNAMediaMapperProfile_Disabled) == 0;
}

bool Mapping::CanPlayAtSpeeds() const {
    const std::string kind = Lower(mMimeType.substr(0, mMimeType.find('/')));
    return kind == "audio" || kind == "video";
}

// ---- the model ----

void MapperModel::Restart() {
    mByProfile.clear();
    mKnownNames.clear();
    mDisabled.clear();
    mLoaded.clear();
    mfSaved = false;
}

bool MapperModel::Load() {
    if (!mFile) {
        if (!mReadOnly) {
            return false;
        }
        Take(*mReadOnly);
        mFile = InOrder();
    }
    Take(*mFile);
    mfSaved = false;
    return true;
}

void MapperModel::Take(const std::vector<Mapping>& aFile) {
    for (const Mapping& mapping : aFile) {
        Add(mapping);
        mKnownNames.insert(Lower(NameParts(mapping.mName).mBase));
    }
    mDisabled.clear();
    for (const auto& [profile, group] : mByProfile) {
        mLoaded.insert(profile);
        if (!SpeakerOf(group).IsEnabled()) {
            mDisabled.insert(profile);
        }
    }
}

bool MapperModel::Save() {
    if (mfSaved) {
        return false;
    }
    mfSaved = true;
    mFile = InOrder();
    return true;
}

Mapping* MapperModel::At(std::size_t anIndex, std::map<std::string, Group>::iterator* aGroup) {
    for (auto group = mByProfile.begin(); group != mByProfile.end(); ++group) {
        if (anIndex < group->second.size()) {
            *aGroup = group;
            return &group->second[anIndex];
        }
        anIndex -= group->second.size();
    }
    return nullptr;
}

void MapperModel::Change(std::size_t anIndex, const Mapping& aMapping) {
    std::map<std::string, Group>::iterator group;
    *At(anIndex, &group) = aMapping;
}

void MapperModel::Remove(std::size_t anIndex) {
    std::map<std::string, Group>::iterator group;
    const Mapping* mapping = At(anIndex, &group);
    group->second.erase(group->second.begin() + (mapping - group->second.data()));
    if (group->second.empty()) {
        mByProfile.erase(group);
    }
}

const Mapping& MapperModel::SpeakerOf(const Group& aGroup) {
    const auto found = std::find_if(aGroup.begin(), aGroup.end(),
                                    [](const Mapping& aMapping) { return aMapping.CanPlayAtSpeeds(); });
    return found != aGroup.end() ? *found : aGroup.front();
}

bool MapperModel::Switch(std::size_t anIndex, bool afEnabled, bool* afProfileChanged) {
    bool fChanged = false;
    *afProfileChanged = false;
    std::size_t index = 0;
    for (auto& [profile, group] : mByProfile) {
        const Mapping speaker = SpeakerOf(group);
        const bool fEnabled = index++ == anIndex ? afEnabled : speaker.IsEnabled();
        const bool fSpeeds =
            speaker.CanPlayAtSpeeds() && (speaker.mFlags & kDLNAMediaMapperPlaySpeed_ProfileEnabled) != 0;
        const std::uint32_t switches = (fEnabled ? 0 : kDLNAMediaMapperProfile_Disabled) |
                                       (fSpeeds ? kDLNAMediaMapperPlaySpeed_ProfileEnabled : 0);
        for (Mapping& mapping : group) {
            *afProfileChanged = *afProfileChanged || mapping.IsEnabled() != fEnabled;
            fChanged = fChanged || (mapping.mFlags & kSwitches) != switches;
            mapping.mFlags = (mapping.mFlags & ~kSwitches) | switches;
        }
    }
    return fChanged;
}

std::vector<Mapping> MapperModel::InOrder() const {
    std::vector<Mapping> mappings;
    for (const auto& [profile, group] : mByProfile) {
        mappings.insert(mappings.end(), group.begin(), group.end());
    }
    return mappings;
}

const Mapping* MapperModel::Find(const std::string& aName) const {
    const NameParts wanted(aName);
    const std::string base = Lower(WithoutNumberAndPrefix(wanted.mBase));
    const std::string extension = Lower(wanted.mExtension);
    if (mKnownNames.count(base) == 0 || !IsKnownExtension(extension)) {
        return nullptr;
    }
    for (const auto& [profile, group] : mByProfile) {
        for (const Mapping& mapping : group) {
            const NameParts name(mapping.mName);
            if (Lower(name.mBase) == base && !(Lower(name.mExtension) == "pcm" && extension == "wav")) {
                return &mapping;
            }
        }
    }
    return nullptr;
}

std::string MapperModel::Announced() const {
    std::string text;
    for (const auto& [profile, group] : mByProfile) {
        const Mapping& speaker = SpeakerOf(group);
        if (speaker.IsEnabled()) {
            text += (text.empty() ? "" : ",") + speaker.mMimeType + ":DLNA.ORG_PN=" + profile;
        }
    }
    return text;
}

// ---- the host's ----

MapperSubject::MapperSubject(const TemporaryFolder& aFolder, unsigned aLines)
    : mFolder(aFolder),
      mTypes(std::make_unique<ezMimeTypesDotIniParser>(aFolder.Path("types").c_str(),
                                                       aFolder.Path("types").c_str(), "", 0)),
      mModel(aLines <= kMostLines
                 ? std::optional<std::vector<Mapping>>(FactoryMappings(std::min(aLines, kMostLines)))
                 : std::nullopt) {
    if (aLines <= kMostLines) {
        std::string text = "# made in the factory\n\n";
        for (const Mapping& mapping : FactoryMappings(aLines)) {
            text += LineOf(mapping) + "\n";
        }
        mFolder.Write("ro/MediaMapper.txt", text);
    }
    Restart();
}

void MapperSubject::Restart() {
    mMapper.reset();
    mMapper = std::make_unique<OpenMapper>(mTypes.get(), mFolder.Path("ro").c_str(),
                                           mFolder.Path("rw").c_str(), "", "MediaMapper.txt");
    mModel.Restart();
    Load();
}

std::string MapperSubject::Describe(const Operation& anOperation) {
    std::ostringstream text;
    switch (anOperation.mVerb) {
    case Verb::AddMapping:
        text << "add the mapping " << MappingOf(anOperation);
        break;
    case Verb::ChangeMapping:
        text << "change mapping " << anOperation.mD << " (of those there) into " << MappingOf(anOperation)
             << " but for its profile";
        break;
    case Verb::RemoveMapping:
        text << "remove mapping " << anOperation.mA << " (of those there)";
        break;
    case Verb::LookUpMapping:
        text << "look up " << MediaNameOf(anOperation.mA, anOperation.mB) << " and the profile "
             << Chosen(kProfiles, anOperation.mC);
        break;
    case Verb::SwitchProfile:
        text << "switch profile " << anOperation.mA << " (of those there) "
             << (anOperation.mB % 2 != 0 ? "on" : "off");
        break;
    case Verb::SaveMapper:
        text << "save the mapper";
        break;
    default:
        text << "load the mapper on top of what it holds";
        break;
    }
    return text.str();
}

void MapperSubject::Apply(const Operation& anOperation) {
    const std::size_t count = mModel.InOrder().size();
    switch (anOperation.mVerb) {
    case Verb::AddMapping:
        if (count < kMostMappings) {
            Add(MappingOf(anOperation));
        }
        break;
    case Verb::ChangeMapping:
        if (count != 0) {
            Change(anOperation.mD % count, MappingOf(anOperation));
        }
        break;
    case Verb::RemoveMapping:
        if (count != 0) {
            Remove(anOperation.mA % count);
        }
        break;
    case Verb::LookUpMapping:
        LookUp(anOperation);
        break;
    case Verb::SwitchProfile:
        Switch(anOperation);
        break;
    case Verb::SaveMapper:
        Save();
        break;
    default:
        if (count < kMostMappings) {
            Load();
        }
        break;
    }
}

void MapperSubject::Add(const Mapping& aMapping) {
    auto* entry = new DLNAMediaMapperEntry;
    Agree("a good line is taken", entry->Set(LineOf(aMapping).c_str()), true);
    entry->mGoldenDMSFlags = aMapping.mFlags;
    mMapper->AddEntry(entry);
    mModel.Add(aMapping);
    Compare("after adding a mapping");
}

void MapperSubject::Change(std::size_t anIndex, const Mapping& aMapping) {
    DLNAMediaMapperEntry* entry = mMapper->At(anIndex);
    Mapping changed = aMapping;
    changed.mProfile = Str(entry->mProfile); // its place in the table stays
    entry->mFileName = changed.mName.c_str();
    entry->mMimeType = changed.mMimeType.c_str();
    entry->mDuration = changed.mDuration.c_str();
    entry->mBitRate = changed.mBitRate;
    entry->mGoldenDMSFlags = changed.mFlags;
    entry->ComputeDLNAProtocolInfo();
    mModel.Change(anIndex, changed);
    Compare("after changing a mapping");
}

void MapperSubject::Remove(std::size_t anIndex) {
    mMapper->RemoveEntry(mMapper->At(anIndex));
    mModel.Remove(anIndex);
    Compare("after removing a mapping");
}

void MapperSubject::LookUp(const Operation& anOperation) {
    const std::string name = MediaNameOf(anOperation.mA, anOperation.mB);
    const DLNAMediaMapperEntry* entry = mMapper->GetFileEntry(name.c_str());
    const Mapping* mapping = mModel.Find(name);
    Agree("line found for " + name,
          entry != nullptr ? Str(entry->mFileName) + " " + Str(entry->mProfile) : "none",
          mapping != nullptr ? mapping->mName + " " + mapping->mProfile : "none");
    Met(mapping != nullptr ? "a mapping is found" : "no mapping is found");
    const char* profile = Chosen(kProfiles, anOperation.mC);
    Agree(std::string("disabled: ") + profile, mMapper->IsDisabledProfile(profile),
          mModel.IsDisabled(profile));
    const ezDLNAProtocolInfo* merged = mMapper->GetMergedDLNAProtocolInfo(profile);
    Agree("merged profile", std::string(merged != nullptr ? ezDLNAProtocolInfo_GetProfile(merged) : "none"),
          mModel.IsLoaded(profile) ? std::string(profile) : "none");
    Met(mModel.IsDisabled(profile) ? "a profile is disabled" : "a profile is not disabled");
}

void MapperSubject::Switch(const Operation& anOperation) {
    ezArray* records = mMapper->NewProfileArray();
    const std::size_t count = ezArray_GetCount(records);
    Agree("number of profiles", count, mModel.ProfileCount());
    if (count != 0) {
        const bool fEnabled = anOperation.mB % 2 != 0;
        const std::size_t index = anOperation.mA % count;
        static_cast<DLNAProfileEntry*>(ezArray_At(records, index))->EnableProfile(fEnabled);
        bool fProfileChanged = false;
        bool fModelProfileChanged = false;
        const bool fChanged = mMapper->MergeBackProfileArray(records, &fProfileChanged);
        const bool fModelChanged = mModel.Switch(index, fEnabled, &fModelProfileChanged);
        Agree("something was switched", fChanged, fModelChanged);
        Agree("a profile was switched", fProfileChanged, fModelProfileChanged);
        Met(fProfileChanged ? "a profile is switched" : "no profile is switched");
    }
    ezArray_Delete(records);
    Compare("after switching a profile");
}

void MapperSubject::Save() {
    const AssertCatcher asserts;
    const ezError error = mMapper->Save();
    const bool fSaved = mModel.Save();
    Agree("the mapper is saved", error.GetCode(), fSaved ? 0 : -1);
    Agree("assertions of a save", asserts.Failures(),
          fSaved ? std::vector<std::string>() : AssertCatcher::Noted({"!mfSaved @ DLNAMediaMapper"}));
    Met(fSaved ? "the mapper is saved" : "the mapper is saved a second time");
    Compare("after saving");
}

void MapperSubject::Load() {
    const ezError error = mMapper->Load();
    const bool fLoaded = mModel.Load();
    Agree("the mapper is loaded", error.GetCode(), fLoaded ? 0 : -3);
    Met(fLoaded ? "the mapper is loaded" : "the mapper has no file");
    Compare("after loading");
}

std::vector<Mapping> MapperSubject::HostInOrder() {
    std::vector<Mapping> mappings;
    for (std::size_t i = 0; i < mMapper->GetCount(); ++i) {
        const DLNAMediaMapperEntry* entry = mMapper->At(i);
        mappings.push_back({Str(entry->mFileName), Str(entry->mMimeType), Str(entry->mProfile),
                            Str(entry->mDuration), entry->mBitRate, entry->mGoldenDMSFlags});
    }
    return mappings;
}

void MapperSubject::Compare(const std::string& aWhen) {
    Agree("the mapper's table " + aWhen, HostInOrder(), mModel.InOrder());
}
