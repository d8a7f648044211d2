#pragma once

#include "PropertyOperation.h"

#include "support/MapperFolder.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

class ezMimeTypesDotIniParser;

/// What is announced of a profile.
struct Announcement {
    std::string mMimeType;
    std::string mProfile;
    std::string mSpeeds; ///< a comma list

    Announcement Protected() const; ///< the link-protected form
    std::string InWords() const;    ///< "TYPE:DLNA.ORG_PN=PROFILE", as an item of a list
};

/// What a line of the table says, as far as a host of the property writes it.
struct Mapping {
    std::string mName;
    std::string mMimeType;
    std::string mProfile;
    std::string mDuration;
    std::uint32_t mBitRate = 0;
    std::uint32_t mFlags = 0;
    std::string mSpeeds; ///< a comma list
    std::string mShown;  ///< speeds that the protocolInfo states: those enabled when it was computed

    friend bool operator==(const Mapping& aLeft, const Mapping& aRight) {
        return aLeft.mName == aRight.mName && aLeft.mMimeType == aRight.mMimeType &&
               aLeft.mProfile == aRight.mProfile && aLeft.mDuration == aRight.mDuration &&
               aLeft.mBitRate == aRight.mBitRate && aLeft.mFlags == aRight.mFlags &&
               aLeft.mSpeeds == aRight.mSpeeds && aLeft.mShown == aRight.mShown;
    }
    friend std::ostream& operator<<(std::ostream& aStream, const Mapping& aMapping);

    bool IsEnabled() const;
    bool CanPlayAtSpeeds() const; ///< it is audio or video, and is not said to be unable to
    bool EnablesSpeeds() const;   ///< it can, has some, and both switches are on
    void Compute() { mShown = EnablesSpeeds() ? mSpeeds : ""; }
};

/// The table: a map from profile to mappings in the order in which they came, and the file that it was
/// written to.
class MapperModel {
public:
    /// @param aReadOnly  what the read-only file holds; none where it is missing
    explicit MapperModel(std::optional<std::vector<Mapping>> aReadOnly) : mReadOnly(std::move(aReadOnly)) {}

    /// Another start over the same files.
    void Restart();
    bool Load();
    bool Save();
    void Add(const Mapping& aMapping);
    void Change(std::size_t anIndex, const Mapping& aMapping);
    void Remove(std::size_t anIndex);
    enum class What { Profile, Speeds };
    /// Switches the profile of an index or its speeds, and writes what every profile has chosen into all of
    /// its mappings. True when something changed.
    bool Switch(What aWhat, std::size_t anIndex, bool afEnabled, bool* afProfileChanged);

    std::vector<Mapping> InOrder() const;
    std::size_t ProfileCount() const { return mByProfile.size(); }
    /// What is found for the name of a file.
    const Mapping* Find(const std::string& aName) const;
    const Mapping* FirstOf(const std::string& aProfile) const;
    /// The speeds of each profile, by its name.
    std::vector<std::string> Speeds() const;
    /// The enabled profiles as they are announced.
    std::vector<Announcement> Announced() const;
    bool IsEnabled(const std::string& aProfile) const;
    bool IsDisabled(const std::string& aProfile) const { return mDisabled.count(aProfile) != 0; }
    /// The speeds that the lines of a profile stated together when it was first loaded; none where it never
    /// was.
    std::optional<std::string> LoadedSpeeds(const std::string& aProfile) const;

private:
    using Group = std::vector<Mapping>;

    void Take(const std::vector<Mapping>& aFile);
    /// The one that speaks for a profile.
    static const Mapping& SpeakerOf(const Group& aGroup);
    /// The speeds that are announced of a profile.
    static std::string SpeedsOf(const Group& aGroup);
    Mapping* At(std::size_t anIndex, std::map<std::string, Group>::iterator* aGroup);

    std::optional<std::vector<Mapping>> mReadOnly;
    std::optional<std::vector<Mapping>> mFile;
    std::map<std::string, Group> mByProfile;
    std::set<std::string> mKnownNames;          ///< lower-case base names that a file brought
    std::set<std::string> mEnabled;             ///< at the last load
    std::set<std::string> mDisabled;            ///< the same
    std::map<std::string, std::string> mLoaded; ///< profiles that stood in the table at a load: speeds
    bool mfSaved = false;
};

/// The media mapper of a host beside its model.
class MapperSubject {
public:
    /// @param aLines  so many mappings stand in the read-only file; it is missing above kMostLines
    MapperSubject(const TemporaryFolder& aFolder, unsigned aLines);

    static constexpr unsigned kMostLines = 3;
    static std::string Describe(const Operation& anOperation);
    void Apply(const Operation& anOperation);
    /// A new table over the same files, loaded.
    void Restart();

    DLNAMediaMapper* Mapper() { return mMapper.get(); }
    const MapperModel& Model() const { return mModel; }

private:
    void Add(const Mapping& aMapping);
    void Change(std::size_t anIndex, const Mapping& aMapping);
    void Remove(std::size_t anIndex);
    void LookUp(const Operation& anOperation);
    void AskForEnabled(const Operation& anOperation);
    void AdjustProtocolInfo(const Operation& anOperation);
    void Switch(MapperModel::What aWhat, const Operation& anOperation);
    void Save();
    void Load();
    void Compare(const std::string& aWhen);
    std::vector<Mapping> HostInOrder();

    const TemporaryFolder& mFolder;
    std::unique_ptr<ezMimeTypesDotIniParser> mTypes;
    std::unique_ptr<OpenMapper> mMapper;
    MapperModel mModel;
};

/// The name of a file that an operation is about: "clip.aaa".
std::string MediaNameOf(unsigned aBase, unsigned anExtension);
