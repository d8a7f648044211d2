#include "PropertyMapper.h"

#include "PropertyTypes.h"

#include "support/Catchers.h"

#include "ezPlatform/config/Hook.h"
#include "ezPlatform/dlna/ProtocolInfo.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::size_t kMostMappings = 40; // a load on top of a table doubles it
constexpr std::uint32_t kBothSpeeds =
    kDLNAMediaMapperPlaySpeed_ProfileEnabled | kDLNAMediaMapperPlaySpeed_MediaEnabled;

// What is to be met often stands more than once.
const char* const kBases[] = {"clip",      "song",    "clip", "CLIP", "clip(2)", "clip",
                              "DTCP_song", "clip(a)", "none", "a.b",  "song"};
const char* const kExtensions[] = {"aaa", "bbb", "a2", "pcm", "wav", "AAA", "odd", "zzz", ""};
const char* const kMimeTypes[] = {"audio/x-a", "video/x-b", "image/x-c", "audio/L16;rate=44100;channels=2",
                                  "Audio/x-a"};
const char* const kProfiles[] = {"PA", "PB", "LPCM", "P"};
const char* const kDurations[] = {"", "0:00:10", "1:00:00.000", "soon"};
const std::uint32_t kBitRates[] = {0, 5000, 128000};
const std::uint32_t kFlags[] = {0,
                                kBothSpeeds,
                                kDLNAMediaMapperProfile_Disabled,
                                kDLNAMediaMapperPlaySpeed_ProfileEnabled,
                                0x00000001,
                                kBothSpeeds | kDLNAMediaMapperPlaySpeed_MediaNotSupported};
const char* const kSpeeds[] = {"2", "", "1/2,4", "2,-1"};
// What is asked for in lists: profiles in any case, the thumbnails' ones, and what no table has.
const char* const kAsked[] = {"PA", "pb", "LPCM", "P", "JPEG_TN", "png_tn", "ZZ", ""};

Mapping MappingOf(const Operation& anOperation) {
    Mapping mapping;
    mapping.mName = MediaNameOf(anOperation.mA, anOperation.mB % 8); // a file has an extension
    mapping.mMimeType = Chosen(kMimeTypes, anOperation.mC);
    mapping.mProfile = Chosen(kProfiles, anOperation.mD);
    mapping.mDuration = Chosen(kDurations, anOperation.mA / 8);
    mapping.mBitRate = Chosen(kBitRates, anOperation.mB / 9);
    mapping.mFlags = Chosen(kFlags, anOperation.mC / 5);
    mapping.mSpeeds = Chosen(kSpeeds, anOperation.mD / 4);
    return mapping;
}

std::string LineOf(const Mapping& aMapping) {
    std::string speeds;
    for (const char byte : aMapping.mSpeeds) {
        speeds += byte == ',' ? "\\," : std::string(1, byte);
    }
    return aMapping.mName + "," + aMapping.mMimeType + "," + aMapping.mProfile + "," + aMapping.mDuration +
           "," + speeds + ",," + (aMapping.mBitRate != 0 ? std::to_string(aMapping.mBitRate) : "");
}

std::unique_ptr<DLNAMediaMapperEntry> NewEntry(const Mapping& aMapping) {
    auto entry = std::make_unique<DLNAMediaMapperEntry>();
    Agree("a good line is taken", entry->Set(LineOf(aMapping).c_str()), true);
    entry->mGoldenDMSFlags = aMapping.mFlags;
    entry->ComputeDLNAProtocolInfo();
    return entry;
}

/// What the read-only file holds.
std::vector<Mapping> FactoryMappings(unsigned aLines) {
    std::vector<Mapping> mappings;
    for (unsigned i = 0; i < aLines; ++i) {
        mappings.push_back(MappingOf({Verb::AddMapping, i, i, i, 2 - i}));
        mappings.back().mFlags = i == 1 ? kBothSpeeds : 0;
    }
    return mappings;
}

/// The speeds that a protocolInfo states.
std::string SpeedsIn(const std::string& aProtocolInfo) {
    const std::string name = "DLNA.ORG_PS=";
    const std::size_t at = aProtocolInfo.find(name);
    return at == std::string::npos
               ? ""
               : aProtocolInfo.substr(at + name.size(), aProtocolInfo.find(';', at) - at - name.size());
}

/// The speeds of each record of a profile array, by its profile.
std::vector<std::string> SpeedsOf(const ezArray* anArray) {
    std::vector<std::string> speeds;
    for (std::size_t i = 0; i < ezArray_GetCount(anArray); ++i) {
        const ezDLNAProtocolInfo* info =
            static_cast<DLNAProfileEntry*>(ezArray_At(anArray, i))->GetDLNAProtocolInfo();
        speeds.push_back(std::string(ezDLNAProtocolInfo_GetProfile(info)) + " " +
                         Taken(ezDLNAProtocolInfo_GetPlaySpeedStr(info, 0)));
    }
    return speeds;
}

std::vector<std::string> AskedFor(const Operation& anOperation) {
    return {Chosen(kAsked, anOperation.mA), Chosen(kAsked, anOperation.mB), Chosen(kAsked, anOperation.mC)};
}

} // namespace

std::string MediaNameOf(unsigned aBase, unsigned anExtension) {
    const std::string extension = Chosen(kExtensions, anExtension);
    return Chosen(kBases, aBase) + (extension.empty() ? "" : "." + extension);
}

std::ostream& operator<<(std::ostream& aStream, const Mapping& aMapping) {
    return aStream << "{" << LineOf(aMapping) << ", flags " << std::hex << aMapping.mFlags << std::dec
                   << ", states '" << aMapping.mShown << "'}";
}

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
            text += Str(NewEntry(mapping)->Get()) + "\n";
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
    case Verb::AskForEnabled:
        text << "ask which are enabled of";
        for (const std::string& name : AskedFor(anOperation)) {
            text << " '" << name << "'";
        }
        break;
    case Verb::AdjustProtocolInfo:
        text << "adjust a protocolInfo of the profile " << Chosen(kProfiles, anOperation.mA)
             << (anOperation.mB % 2 != 0 ? " with speeds of its own" : "");
        break;
    case Verb::SwitchProfile:
        text << "switch profile " << anOperation.mA << " (of those there) "
             << (anOperation.mB % 2 != 0 ? "on" : "off");
        break;
    case Verb::SwitchSpeeds:
        text << "switch the play speeds of profile " << anOperation.mA << " (of those there) "
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
    case Verb::AskForEnabled:
        AskForEnabled(anOperation);
        break;
    case Verb::AdjustProtocolInfo:
        AdjustProtocolInfo(anOperation);
        break;
    case Verb::SwitchProfile:
        Switch(MapperModel::What::Profile, anOperation);
        break;
    case Verb::SwitchSpeeds:
        Switch(MapperModel::What::Speeds, anOperation);
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
    mMapper->AddEntry(NewEntry(aMapping).release());
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
    entry->mSupportedPlaySpeeds = ezCSVStringList::FromText(changed.mSpeeds.c_str());
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
    const DLNAMediaMapperEntry* first = mMapper->GetFirstEntryForProfile(profile);
    const Mapping* modelFirst = mModel.FirstOf(profile);
    Agree(std::string("first line of ") + profile, first != nullptr ? Str(first->mFileName) : "none",
          modelFirst != nullptr ? modelFirst->mName : "none");
    const ezDLNAProtocolInfo* merged = mMapper->GetMergedDLNAProtocolInfo(profile);
    Agree("merged profile", std::string(merged != nullptr ? ezDLNAProtocolInfo_GetProfile(merged) : "none"),
          mModel.LoadedSpeeds(profile) ? std::string(profile) : "none");
    Met(mModel.IsDisabled(profile) ? "a profile is disabled" : "a profile is not disabled");
}

void MapperSubject::AskForEnabled(const Operation& anOperation) {
    std::string asked;
    std::string expected;
    std::string askedWithTypes = "text/plain:*";
    std::string expectedWithTypes = askedWithTypes; // without a profile there is none to be disabled
    for (const std::string& name : AskedFor(anOperation)) {
        const std::string item = ",audio/x-a:DLNA.ORG_PN=" + name;
        asked += asked.empty() ? name : "," + name;
        askedWithTypes += name.empty() ? "" : item;
        if (mModel.IsEnabled(name)) {
            expected += expected.empty() ? name : "," + name;
            expectedWithTypes += item;
        }
    }
    Agree("enabled of " + asked, Str(mMapper->GetEnabledProfileList(asked.c_str())), expected);
    Agree("enabled of " + askedWithTypes, Str(mMapper->GetEnabledMimeTypeProfileList(askedWithTypes.c_str())),
          expectedWithTypes);
    Met(expected.empty() ? "none of the profiles is enabled" : "profiles are enabled");
}

void MapperSubject::AdjustProtocolInfo(const Operation& anOperation) {
    const std::string profile = Chosen(kProfiles, anOperation.mA);
    const std::string begin = "http-get:*:video/x-b:DLNA.ORG_PN=" + profile + ";DLNA.ORG_OP=10";
    const auto withSpeeds = [](const std::string& aSpeeds) {
        return aSpeeds.empty() ? "" : ";DLNA.ORG_PS=" + aSpeeds;
    };
    const std::string own = anOperation.mB % 2 != 0 ? "8" : "";
    ezDLNAProtocolInfo* info = ezDLNAProtocolInfo_New((begin + withSpeeds(own)).c_str(), 0, 0);
    ezHook* hook = ezHook_New();
    ezHook_SetCallback(hook, DLNAMediaMapper::Hook_AdjustProtocolInfo);
    ezHook_SetVoidPtrProperty(hook, "DLNAMediaMapper", mMapper.get());
    ezHook_Call(hook, "AdjustProtocolInfo", info);
    const std::string loaded = mModel.LoadedSpeeds(profile).value_or("");
    Agree("the adjusted protocolInfo", Taken(ezDLNAProtocolInfo_GetStr(info)),
          begin + withSpeeds(loaded.empty() ? own : loaded));
    Met(loaded.empty() ? "a protocolInfo keeps its speeds" : "a protocolInfo takes speeds from the table");
    ezHook_Delete(hook);
    ezDLNAProtocolInfo_Delete(info);
}

void MapperSubject::Switch(MapperModel::What aWhat, const Operation& anOperation) {
    ezArray* records = mMapper->NewProfileArray();
    const std::size_t count = ezArray_GetCount(records);
    Agree("number of profiles", count, mModel.ProfileCount());
    Agree("the speeds of the profiles", SpeedsOf(records), mModel.Speeds());
    if (count != 0) {
        const bool fEnabled = anOperation.mB % 2 != 0;
        const std::size_t index = anOperation.mA % count;
        auto* record = static_cast<DLNAProfileEntry*>(ezArray_At(records, index));
        if (aWhat == MapperModel::What::Profile) {
            record->EnableProfile(fEnabled);
        } else {
            record->EnablePlaySpeed(fEnabled);
        }
        bool fProfileChanged = false;
        bool fModelProfileChanged = false;
        const bool fChanged = mMapper->MergeBackProfileArray(records, &fProfileChanged);
        const bool fModelChanged = mModel.Switch(aWhat, index, fEnabled, &fModelProfileChanged);
        Agree("something was switched", fChanged, fModelChanged);
        Agree("a profile was switched", fProfileChanged, fModelProfileChanged);
        Met(fProfileChanged ? "a profile is switched" : "no profile is switched");
        if (aWhat == MapperModel::What::Speeds) {
            Met(fChanged ? "speeds are switched" : "no speeds are switched");
        }
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
                            Str(entry->mDuration), entry->mBitRate, entry->mGoldenDMSFlags,
                            Str(entry->mSupportedPlaySpeeds.Join()), SpeedsIn(Str(entry->mFullProfile))});
    }
    return mappings;
}

void MapperSubject::Compare(const std::string& aWhen) {
    Agree("the mapper's table " + aWhen, HostInOrder(), mModel.InOrder());
}
