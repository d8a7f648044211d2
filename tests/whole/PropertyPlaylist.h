#pragma once

#include "PropertyOperation.h"

#include "support/TemporaryFolder.h"

#include "ez/PlaylistParserFactory.h"
#include "ezPlatform/streams/Stream.h"

#include <string>
#include <vector>

/// A song as a playlist has it.
struct Song {
    std::string mTitle;
    std::string mURI;
    unsigned mSeconds = 0;

    friend bool operator==(const Song& aLeft, const Song& aRight) {
        return aLeft.mTitle == aRight.mTitle && aLeft.mURI == aRight.mURI &&
               aLeft.mSeconds == aRight.mSeconds;
    }
    friend std::ostream& operator<<(std::ostream& aStream, const Song& aSong) {
        return aStream << "\"" << aSong.mTitle << "\" <" << aSong.mURI << "> " << aSong.mSeconds << " s";
    }
};

/// A list of songs that is written as a playlist, in one format or another, and read again.
class PlaylistSubject {
public:
    explicit PlaylistSubject(const TemporaryFolder& aFolder);

    static std::string Describe(const Operation& anOperation);
    void Apply(const Operation& anOperation);

private:
    static Song SongOf(const Operation& anOperation);
    void Read(const Operation& anOperation);
    ezStreamOwner Delivered(const std::string& aText, const std::string& aName, unsigned aWay);
    void CompareWalk(PlaylistParser& aParser);
    void CompareFetches(PlaylistParser& aParser);
    void CompareURLs(PlaylistParser& aParser);

    const TemporaryFolder& mFolder;
    PlaylistParserFactory mFactory;
    std::vector<Song> mSongs;
};
