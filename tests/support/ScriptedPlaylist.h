#pragma once

#include "ez/PlaylistParser.h"

#include <cstdint>
#include <string>
#include <vector>

/// A playlist reader over entries that a test writes down, each with a position of its own; notes every seek,
/// every walk and every entry reported.
class ScriptedPlaylist : public PlaylistParser {
public:
    ScriptedPlaylist() = default;
    explicit ScriptedPlaylist(const char* aParentURL) : PlaylistParser(aParentURL) {}

    /// Adds an entry after the others. Its positions follow from its length in bytes.
    void Add(const std::string& aTitle, const std::string& aURI, uint32 aDuration = 0,
             const std::string& aTags = "", std::uint64_t aLength = 10);
    void SetFilePath(const ezPathName& aPath) { mFilePath = aPath; }
    void SetMimeType(const ezCString& aMimeType) { mMimeType = aMimeType; }
    uint32 GetRelativeEntryIndex() const { return mRelativeEntryIndex; }
    const char* GetParentURL() const { return mParentURL; }
    std::uint64_t GetLength() const { return mLength; }

    /// From the first entry that begins at the position or after it.
    void ParseAll(PlaylistParserCallback aCallback, void* aUserData) override;
    /// False above the length of the playlist.
    bool SeekBytes(const ezuint64& aPos) override;

    std::vector<std::string> mCalls; ///< "seek N", "walk", and "entry N" with the position of each reported
    bool mfSeekFails = false;
    bool mfGoesOn = false;      ///< reports every entry, whatever the callback returns
    bool mfReportsNull = false; ///< reports a null entry first

private:
    std::vector<PlaylistParserEntry> mEntries;
    std::uint64_t mLength = 0;
    ezuint64 mPosition = 0;
};
