#pragma once

#include "Arguments.h"
#include "ConfigFolders.h"
#include "HostManager.h"

#include "ez/ExtensionMimeTypeMatcher.h"
#include "ezPlatform/config/PropertyList.h"

#include <memory>
#include <string>

struct Explanation;

/// What a media is.
struct Announcement {
    std::string mPath;
    bool mfRecognised = false;
    /// The record; of a media that was not recognised, what the stream alone knows.
    std::unique_ptr<ezMediaInfo> mInfo;
    std::unique_ptr<Explanation> mExplanation; ///< only when asked for

    Announcement();
    Announcement(Announcement&&) noexcept;
    Announcement& operator=(Announcement&&) noexcept;
    ~Announcement();
};

/// The library as this tool uses it: environment, manager, parsers, and a media types table of its own to
/// look things up in.
class Host {
public:
    Host(const Arguments& anArguments, const ConfigFolders& aFolders);
    ~Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    /// Identifies a file. False, with the reason, when it cannot be read.
    bool Announce(const std::string& aPath, Announcement& anAnnouncement, std::string& aReason);

    HostManager& GetManager() { return *mManager; }
    ExtensionMimeTypeMatcher& GetMatcher() { return *mMatcher; }
    /// False when there is no media types file, or nothing in it.
    bool HasMediaTypes() const;

private:
    ezPropertyList* mEnvironment;
    std::unique_ptr<ExtensionMimeTypeMatcher> mMatcher;
    std::unique_ptr<HostManager> mManager;
    bool mfExplain;
    int mParseOptions;
};
