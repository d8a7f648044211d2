#pragma once

#include "arguments/Arguments.h"
#include "host/ConfigFolders.h"

#include "ez/Environment.h"
#include "ez/ExtensionMimeTypeMatcher.h"
#include "ez/MediaParserManager.h"
#include "ezPlatform/media/MediaInfo.h"

#include <memory>
#include <string>

class DLNAMediaMapper;
class ProfileRules;
class RequestNotes;
class ezMediaParserStream;
struct Explanation;
struct MapperAnswer;

/// What a file, or what a stream brings, is.
struct Announcement {
    std::string mPath;
    bool mfRecognised = false;
    /// The record; of what was not recognised, what the stream alone knows.
    std::unique_ptr<ezMediaInfo> mInfo;
    std::unique_ptr<Explanation> mExplanation;   ///< only when asked for
    bool mfMapperInForce = false;                ///< the media mapper was asked
    std::unique_ptr<MapperAnswer> mMapperAnswer; ///< null where it does not know the media

    Announcement();
    Announcement(Announcement&&) noexcept;
    Announcement& operator=(Announcement&&) noexcept;
    ~Announcement();
};

/// The library as this tool uses it: environment, manager, parsers, and a media types table of its own to
/// look things up in.
class Host {
public:
    /// @param aRules  which profile a file keeps; null for the built-in table
    Host(const Arguments& anArguments, const ConfigFolders& aFolders,
         std::shared_ptr<const ProfileRules> aRules = nullptr);
    ~Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    /// Puts a media mapper, loaded, in force. At most once.
    void Use(std::unique_ptr<DLNAMediaMapper> aMapper);

    /// Identifies a file. False, with the reason, when it cannot be read.
    bool Announce(const std::string& aPath, Announcement& anAnnouncement, std::string& aReason);
    /// Identifies what an open stream brings, under the name that it is shown by.
    void Announce(ezMediaParserStream& aStream, const std::string& aName, Announcement& anAnnouncement);

    ezMediaParserManager& GetManager() { return *mManager; }
    ExtensionMimeTypeMatcher& GetMatcher() { return *mMatcher; }
    /// False when there is no media types file, or nothing in it.
    bool HasMediaTypes() const;

private:
    /// Has the notes of the next requests taken.
    void TakeNotes();

    ezEnvironment mEnvironment; ///< first, as the parsers use it to the end
    std::unique_ptr<ExtensionMimeTypeMatcher> mMatcher;
    std::unique_ptr<RequestNotes> mNotes; ///< null where nobody wants to know why
    std::unique_ptr<ezMediaParserManager> mManager;
    std::unique_ptr<DLNAMediaMapper> mMapper; ///< null where none is in force
    bool mfExplain;
};
