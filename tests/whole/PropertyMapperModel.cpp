#include "PropertyMapper.h"
#include "PropertyTypes.h"

#include <algorithm>
#include <sstream>

namespace {

constexpr std::uint32_t kSwitches =
    kDLNAMediaMapperProfile_Disabled | kDLNAMediaMapperPlaySpeed_ProfileEnabled;

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

bool HasItem(const std::string& aList, const std::string& anItem) {
    return ("," + aList + ",").find("," + anItem + ",") != std::string::npos;
}

/// A list of speeds, and those of another that are not in it.
std::string WithSpeeds(std::string aList, const std::string& anOther) {
    std::istringstream others(anOther);
    for (std::string speed; std::getline(others, speed, ',');) {
        if (!HasItem(aList, speed)) {
            aList += (aList.empty() ? "" : ",") + speed;
        }
    }
    return aList;
}

} // namespace

bool Mapping::IsEnabled() const {
    return (mFlags & kDLNAMediaMapperProfile_Disabled) == 0;
}

bool Mapping::CanPlayAtSpeeds() const {
    const std::string kind = Lower(mMimeType.substr(0, mMimeType.find('/')));
    return (kind == "audio" || kind == "video") &&
           (mFlags & kDLNAMediaMapperPlaySpeed_MediaNotSupported) == 0;
}

bool Mapping::EnablesSpeeds() const {
    constexpr std::uint32_t kBoth =
        kDLNAMediaMapperPlaySpeed_ProfileEnabled | kDLNAMediaMapperPlaySpeed_MediaEnabled;
    return CanPlayAtSpeeds() && !mSpeeds.empty() && (mFlags & kBoth) == kBoth;
}

void MapperModel::Restart() {
    mByProfile.clear();
    mKnownNames.clear();
    mEnabled = {"JPEG_TN", "PNG_TN"};
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
    mEnabled = {"JPEG_TN", "PNG_TN"};
    mDisabled.clear();
    for (const auto& [profile, group] : mByProfile) {
        std::string speeds;
        for (const Mapping& mapping : group) {
            speeds = WithSpeeds(speeds, mapping.mShown);
        }
        mLoaded.emplace(profile, speeds); // what was first loaded stands
        (SpeakerOf(group).IsEnabled() ? mEnabled : mDisabled).insert(profile);
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

void MapperModel::Add(const Mapping& aMapping) {
    Group& group = mByProfile[aMapping.mProfile];
    group.push_back(aMapping);
    group.back().Compute();
}

void MapperModel::Change(std::size_t anIndex, const Mapping& aMapping) {
    std::map<std::string, Group>::iterator group;
    Mapping* mapping = At(anIndex, &group);
    *mapping = aMapping;
    mapping->Compute();
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

bool MapperModel::Switch(What aWhat, std::size_t anIndex, bool afEnabled, bool* afProfileChanged) {
    bool fChanged = false;
    *afProfileChanged = false;
    std::size_t index = 0;
    for (auto& [profile, group] : mByProfile) {
        const Mapping speaker = SpeakerOf(group);
        const bool fThis = index++ == anIndex;
        const bool fEnabled = fThis && aWhat == What::Profile ? afEnabled : speaker.IsEnabled();
        const bool fStated = (speaker.mFlags & kDLNAMediaMapperPlaySpeed_ProfileEnabled) != 0;
        const bool fSpeeds =
            speaker.CanPlayAtSpeeds() && (fThis && aWhat == What::Speeds ? afEnabled : fStated);
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

const Mapping* MapperModel::FirstOf(const std::string& aProfile) const {
    const auto group = mByProfile.find(aProfile);
    return group != mByProfile.end() ? &group->second.front() : nullptr;
}

bool MapperModel::IsEnabled(const std::string& aProfile) const {
    return std::any_of(mEnabled.begin(), mEnabled.end(),
                       [&](const std::string& aName) { return Lower(aName) == Lower(aProfile); });
}

std::optional<std::string> MapperModel::LoadedSpeeds(const std::string& aProfile) const {
    const auto found = mLoaded.find(aProfile);
    return found != mLoaded.end() ? std::optional<std::string>(found->second) : std::nullopt;
}

std::string MapperModel::SpeedsOf(const Group& aGroup) {
    const Mapping& speaker = SpeakerOf(aGroup);
    std::string speeds = speaker.mShown;
    for (const Mapping& mapping : aGroup) {
        if (&mapping > &speaker && mapping.EnablesSpeeds()) {
            speeds = WithSpeeds(speeds, mapping.mShown);
        }
    }
    return speeds;
}

std::vector<std::string> MapperModel::Speeds() const {
    std::vector<std::string> speeds;
    for (const auto& [profile, group] : mByProfile) {
        speeds.push_back(profile + " " + SpeedsOf(group));
    }
    return speeds;
}

std::vector<Announcement> MapperModel::Announced() const {
    std::vector<Announcement> announced;
    for (const auto& [profile, group] : mByProfile) {
        const Mapping& speaker = SpeakerOf(group);
        if (speaker.IsEnabled()) {
            announced.push_back({speaker.mMimeType, profile, SpeedsOf(group)});
        }
    }
    return announced;
}

Announcement Announcement::Protected() const {
    return {"application/x-dtcp1;CONTENTFORMAT=\"" + mMimeType + "\"", "DTCP_" + mProfile, mSpeeds};
}

std::string Announcement::InWords() const {
    std::string text = mMimeType + ":DLNA.ORG_PN=" + mProfile + (mSpeeds.empty() ? "" : ";DLNA.ORG_PS=");
    for (const char byte : mSpeeds) {
        text += byte == ',' ? "\\," : std::string(1, byte);
    }
    return text;
}
