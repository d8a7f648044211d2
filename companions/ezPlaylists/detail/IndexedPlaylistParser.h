#pragma once

#include "ez/PlaylistParser.h"

#include "ezPlaylists/detail/GrowingBlock.h"
#include "ezPlaylists/detail/StreamReader.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

class PlaylistPlace;

/// The base of the readers of formats that cannot be entered in the middle: reads the playlist as a whole, at
/// the first use, and keeps its entries. From then on every position is entered at the cost of a binary
/// search; the stream is not touched any more, unless it failed.
///
/// A concrete reader supplies ReadEntries, sets mMimeType, and has kMimeTypes, kExtensionList and sBuild for
/// PlaylistParser::RegisterTo.
///
/// A walk goes in the order of playing, which need not be that of the bytes (PLS). It begins with the entry
/// at the position that was sought, or else with the first in the bytes after it; a position before all
/// entries, and so 0, begins with the first to be played. After the last one there is no entry.
class IndexedPlaylistParser : public PlaylistParser {
public:
    ~IndexedPlaylistParser() override;

    void ParseAll(PlaylistParserCallback aCallback, void* aUserData) override;
    bool FetchEntryAtIndex(uint32 anEntryIndex, PlaylistParserEntry* anEntry) override;
    /// Always true: a position that no entry stands at is answered by the walk.
    bool SeekBytes(const ezuint64& aPos) override;
    /// As the base, but in a relative location of a playlist from a server "\" is "/".
    ezCString GetFullURLFor(const ezCString& anEntryURI) override;

    /// Of what was read so far.
    PlaylistCut GetCut() const { return mfCut ? PlaylistCut::Size : mReader.GetCut(); }

protected:
    /// @param aStream  borrowed, opened
    IndexedPlaylistParser(ezStream* aStream, const PlaylistPlace& aPlace);

    /// Walks the whole playlist, with the reader at byte 0, and calls AddEntry for each entry in the order of
    /// playing. Called once while the stream does not fail. False when memory for it was refused.
    virtual bool ReadEntries(PlaylistStreamReader& aReader) = 0;

    /// @param aPos  a byte of the playlist that belongs to this entry alone
    /// An entry without a location is not one and is left out. False when the index is full, or memory for it
    /// was refused: further entries are in vain.
    bool AddEntry(std::uint64_t aPos, std::string_view aURI, std::string_view aTitle, uint32 aDuration,
                  std::string_view aTags);

    /// Tells that what follows is left out, as the playlist is larger than is read of one.
    void Cut() { mfCut = true; }

    /// Entries that were added.
    std::size_t GetCount() const { return mRecords.Size(); }

private:
    struct Record {
        std::uint64_t mPos;
        std::size_t mText; ///< location, title and tags, one after the other
        uint32 mURISize;
        uint32 mTitleSize;
        uint32 mTagsSize;
        uint32 mDuration;
    };

    /// True when that read the playlist.
    bool EnsureIndex();
    /// What could be read of a playlist that is broken or too long stays as it is. So it does of one whose
    /// stream failed, or for which memory was refused (of that it may be nothing), but a walk that is begun
    /// anew at 0 reads the playlist again first, and so does now and then a request for what was not read:
    /// after each in vain, twice as many go by. What a new read returns is taken when it is whole, or when it
    /// got further.
    void EnsureIndexAgain();
    void ReadIndex();
    /// False when memory for it was refused: nothing finds its way in the records then.
    bool SortByPosition();
    /// Which is played first of a walk from a position; the count when there is none.
    std::size_t IndexFrom(std::uint64_t aPos) const;
    void Fill(std::size_t anIndex, PlaylistParserEntry* anEntry) const;

    PlaylistStreamReader mReader;
    GrowingBlock<Record> mRecords;         ///< in the order of playing
    GrowingBlock<std::size_t> mByPosition; ///< indexes of the records; empty when that is the same order
    GrowingText mTexts;
    std::uint64_t mWalkPos = 0; ///< where the next walk begins
    unsigned mMoves = 0;        ///< seeks and walks: a walk ends when its callback made one
    bool mfRefused = false;     ///< memory for an entry
    bool mfCut = false;         ///< more entries than are kept, or a document that is not taken
    bool mfIndexed = false;     ///< whole, or as much as there will be
    bool mfReadDue = true;      ///< unless it is indexed: nothing was read, or a walk begins anew
    unsigned mPatience = 0;     ///< requests in vain that go by before the next one reads again
    unsigned mInVain = 0;       ///< of these, those that went by
};
