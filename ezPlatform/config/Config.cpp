#include "ezPlatform/config/Config.h"

#include "ezPlatform/base/System.h"
#include "ezPlatform/containers/DataBuffer.h"
#include "ezPlatform/containers/HashSlots.h"
#include "ezPlatform/files/File.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// Parts of the files' texts, which stay in memory: a key of its own costs a place in a list and no more.
struct Key {
    std::string_view mName; ///< as written where it first stands
    std::string_view mValue;
    bool mfInReadWrite;
};

struct Section {
    std::string mName;
    std::vector<Key> mKeys;
    ezHashSlots mSlots; ///< places by the name, without case

    const Key* Find(std::string_view aName) const { return Find(aName, ezHashSlots::HashNoCase(aName)); }

    const Key* Find(std::string_view aName, std::uint32_t aHash) const {
        const std::size_t found = mSlots.Find(
            aHash, [&](std::size_t anIndex) { return ezIsEqualNoCase(mKeys[anIndex].mName, aName); });
        return found != 0 ? &mKeys[found - 1] : nullptr;
    }

    void Set(std::string_view aName, std::string_view aValue, bool afReadWrite) {
        const std::uint32_t hash = ezHashSlots::HashNoCase(aName);
        const Key* known = Find(aName, hash);
        if (known == nullptr) {
            mKeys.push_back({aName, aValue, afReadWrite});
            mSlots.Add(hash);
            return;
        }
        Key& key = mKeys[static_cast<std::size_t>(known - mKeys.data())];
        key.mValue = aValue;
        key.mfInReadWrite |= afReadWrite;
    }
};

ezCString PathInFolder(const ezCString& aFolder, const ezCString& aName) {
    const std::string_view folder = aFolder.View();
    return folder.empty() || folder.back() == '/' ? aFolder + aName : aFolder + "/" + aName;
}

bool IsSameFile(const ezCString& aPath, const ezCString& anOther) {
    struct stat status = {};
    struct stat other = {};
    return ezSystem().mStat(aPath.c_str(), &status) == 0 && ezSystem().mStat(anOther.c_str(), &other) == 0 &&
           status.st_dev == other.st_dev && status.st_ino == other.st_ino;
}

/// The text up to the next line end; takes it and the line end off aRest.
std::string_view TakeLine(std::string_view& aRest) {
    const std::size_t end = aRest.find('\n');
    const std::string_view line = aRest.substr(0, end);
    aRest.remove_prefix(end == std::string_view::npos ? aRest.size() : end + 1);
    return line;
}

} // namespace

struct ezConfig::Contents {
    std::vector<std::unique_ptr<ezDataBuffer>> mTexts; ///< of the files that have a key
    std::vector<Section> mSections;
    ezHashSlots mSlots; ///< places by the name

    void ReadFile(const ezCString& aPath, bool afReadWrite);
    /// True when there is a key in it: then the text is to stay.
    bool ReadText(std::string_view aText, bool afReadWrite);

    const Section* Find(std::string_view aSection, std::uint32_t aHash) const {
        const std::size_t found =
            mSlots.Find(aHash, [&](std::size_t anIndex) { return mSections[anIndex].mName == aSection; });
        return found != 0 ? &mSections[found - 1] : nullptr;
    }
    const Section* Find(const ezCString& aSection) const {
        return Find(aSection.View(), ezHashSlots::Hash(aSection.View()));
    }
    /// The place of a section, which is made if need be.
    std::size_t PlaceOf(std::string_view aSection) {
        const std::uint32_t hash = ezHashSlots::Hash(aSection);
        if (const Section* known = Find(aSection, hash)) {
            return static_cast<std::size_t>(known - mSections.data());
        }
        mSections.push_back({std::string(aSection), {}, {}});
        mSlots.Add(hash);
        return mSections.size() - 1;
    }
};

void ezConfig::Contents::ReadFile(const ezCString& aPath, bool afReadWrite) {
    ezFile file(aPath, ezFileOpenMode_Read);
    if (!file.Open() || file.LengthAtOpen() > kMaximumFileSize) {
        return;
    }
    auto buffer = std::make_unique<ezDataBuffer>(static_cast<std::size_t>(file.LengthAtOpen()));
    // Whole or not at all: half a line says something else.
    std::size_t count = 0;
    int piece = 0;
    do {
        piece = file.Read(static_cast<char*>(buffer->data()) + count, buffer->GetSize() - count);
        count += static_cast<std::size_t>(std::max(piece, 0));
    } while (piece > 0 && count < buffer->GetSize());
    if (piece >= 0 && ReadText({static_cast<const char*>(buffer->data()), count}, afReadWrite)) {
        mTexts.push_back(std::move(buffer));
    }
}

bool ezConfig::Contents::ReadText(std::string_view aText, bool afReadWrite) {
    if (aText.substr(0, kByteOrderMark.size()) == kByteOrderMark) {
        aText.remove_prefix(kByteOrderMark.size());
    }
    std::string name; // a section is made with its first key, so that empty ones cost nothing
    bool fInSection = false;
    bool fAnyKey = false;
    Section* section = nullptr;
    while (!aText.empty()) {
        const std::string_view written = TakeLine(aText);
        if (!written.empty() && (written.front() == ';' || written.front() == '#')) {
            continue;
        }
        const std::string_view line = ezTrimmed(written);
        if (!line.empty() && line.front() == '[') {
            const std::size_t end = line.find(']');
            if (end != std::string_view::npos) {
                name = line.substr(1, end - 1);
                fInSection = true;
                section = nullptr;
            }
            continue;
        }
        const std::size_t equals = line.find('=');
        if (!fInSection || equals == std::string_view::npos) {
            continue;
        }
        const std::string_view key = ezTrimmed(line.substr(0, equals));
        if (key.empty()) {
            continue;
        }
        if (section == nullptr) {
            section = &mSections[PlaceOf(name)]; // no other one is made before it is dropped
        }
        section->Set(key, ezTrimmed(line.substr(equals + 1)), afReadWrite);
        fAnyKey = true;
    }
    return fAnyKey;
}

ezConfig::ezConfig(const ezCString& aReadOnlyFolder, const ezCString& aReadWriteFolder,
                   const ezCString& aFileName)
    : mContents(std::make_unique<Contents>()) {
    const ezCString readOnly = PathInFolder(aReadOnlyFolder, aFileName);
    const ezCString readWrite = PathInFolder(aReadWriteFolder, aFileName);
    if (readOnly != readWrite && !IsSameFile(readOnly, readWrite)) {
        mContents->ReadFile(readOnly, false);
    }
    mContents->ReadFile(readWrite, true);
}

ezConfig::~ezConfig() = default;

std::size_t ezConfig::GetKeyCount(const ezCString& aSection, bool afMerged) const {
    const Section* section = mContents->Find(aSection);
    if (section == nullptr) {
        return 0;
    }
    if (afMerged) {
        return section->mKeys.size();
    }
    return static_cast<std::size_t>(std::count_if(section->mKeys.begin(), section->mKeys.end(),
                                                  [](const Key& aKey) { return aKey.mfInReadWrite; }));
}

ezCString ezConfig::GetKeyNameCString(const ezCString& aSection, std::size_t anIndex, bool afMerged) const {
    const Section* section = mContents->Find(aSection);
    if (section == nullptr) {
        return ezCString();
    }
    if (afMerged) {
        return anIndex < section->mKeys.size() ? ezCString(section->mKeys[anIndex].mName) : ezCString();
    }
    for (const Key& key : section->mKeys) {
        if (key.mfInReadWrite && anIndex-- == 0) {
            return ezCString(key.mName);
        }
    }
    return ezCString();
}

ezCString ezConfig::GetCString(const ezCString& aSection, const ezCString& aKey,
                               const ezCString& aDefault) const {
    const Section* section = mContents->Find(aSection);
    if (section == nullptr) {
        return aDefault;
    }
    const Key* key = section->Find(aKey.View());
    return key != nullptr ? ezCString(key->mValue) : aDefault;
}

void ezConfigConfig::GetConfigPaths(ezCString& aReadOnlyFolder, ezCString& aReadWriteFolder,
                                    const ezCString& aFileName) {
    const ezConfig config(".", ".", aFileName);
    aReadOnlyFolder = config.GetCString("ConfigPath", "ReadOnly", aReadOnlyFolder);
    aReadWriteFolder = config.GetCString("ConfigPath", "ReadWrite", aReadWriteFolder);
}
