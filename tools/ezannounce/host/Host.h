#pragma once

#include "arguments/Arguments.h"

#include "ezHosting/Host.h"
#include "ezPlatform/media/MediaInfo.h"

#include <memory>
#include <string>

class DLNAMediaMapper;
class ProfileRules;
class RequestNotes;
class ezMediaParserStream;
class ezSubtitleFinder;
struct Explanation;
struct MapperAnswer;
struct ezSubtitles;

/// What a file, or what a stream brings, is.
struct Announcement {
    std::string mPath;
    bool mfRecognised = false;
    /// The record; of what was not recognised, what the stream alone knows.
    std::unique_ptr<ezMediaInfo> mInfo;
    std::unique_ptr<Explanation> mExplanation;   ///< only when asked for
    bool mfMapperInForce = false;                ///< the media mapper was asked
    std::unique_ptr<MapperAnswer> mMapperAnswer; ///< null where it does not know the media
    std::unique_ptr<ezSubtitles> mSubtitles;     ///< next to a film that is a file; only when asked for

    Announcement();
    Announcement(Announcement&&) noexcept;
    Announcement& operator=(Announcement&&) noexcept;
    ~Announcement();
};

/// The library as this tool uses it, which can tell why media are announced as they are.
class Host {
public:
    /// @param aRules  which profile a file keeps; null for the built-in table
    explicit Host(const Arguments& anArguments, std::shared_ptr<const ProfileRules> aRules = nullptr);
    ~Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    /// Puts a media mapper, loaded, in force. At most once.
    void Use(std::unique_ptr<DLNAMediaMapper> aMapper);

    /// Identifies a file. False, with the reason, when it cannot be read.
    bool Announce(const std::string& aPath, Announcement& anAnnouncement, std::string& aReason);
    /// Identifies what a stream brings, under the name that it is shown by. False when it cannot be opened.
    bool Announce(ezMediaParserStream& aStream, const std::string& aName, Announcement& anAnnouncement);

    ezHost& Get() { return mHost; }

private:
    /// Has the notes of the next requests taken.
    void TakeNotes();

    std::unique_ptr<RequestNotes> mNotes; ///< null where nobody wants to know why
    ezHost mHost;
    std::unique_ptr<ezSubtitleFinder> mSubtitles; ///< null where nobody wants to know them
    bool mfExplain;
};
