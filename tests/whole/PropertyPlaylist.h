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
    void Register(const Operation& anOperation);
    void Ask(const Operation& anOperation);
    /// The walk, which gives the songs as the format tells them, and where they stand.
    void CompareWalk(PlaylistParser& aParser, const std::vector<Song>& aTold,
                     std::vector<ezuint64>* aPositions);
    static void CompareFetches(PlaylistParser& aParser, const std::vector<Song>& aTold);
    static void ComparePositions(PlaylistParser& aParser, const std::vector<Song>& aTold,
                                 const std::vector<ezuint64>& aPositions);
    void CompareURLs(PlaylistParser& aParser);

    const TemporaryFolder& mFolder;
    /// A reader that was registered; the libraries' have no number.
    struct Reader {
        std::string mMimeType;
        std::string mExtensions; ///< with a comma before the first and after the last
        int mNumber = kOfTheLibraries;
    };
    static constexpr int kOfTheLibraries = -1;
    static constexpr int kNone = -2;
    static std::vector<Reader> ReadersOfTheLibraries();
    /// The number of the reader that answers.
    int Answering(const std::string& aMimeType, const std::string& anExtension) const;

    PlaylistParserFactory mFactory;
    std::vector<Reader> mReaders = ReadersOfTheLibraries(); ///< in the order in which they came
    std::vector<Song> mSongs;
};
