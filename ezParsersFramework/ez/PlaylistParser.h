#pragma once

#include "ez/MediaParserTypes.h"
#include "ez/PlaylistParserEntry.h"

#include "ezPlatform/base/Types.h"
#include "ezPlatform/base/UInt64.h"
#include "ezPlatform/files/PathName.h"
#include "ezPlatform/text/CString.h"

#include <cstdint>

class PlaylistParser;
class PlaylistParserFactory;
class ezStream;

/// Makes a reader of one format for an opened stream, which it borrows: the stream is the caller's and
/// outlives the reader. The reader is the caller's, too. Null when the reader cannot be made.
using PlaylistParserBuilderFunc = PlaylistParser* (*)(ezStream* aStream);

/// Receives the entries of a walk one by one, each borrowed for the call. True ends the walk.
using PlaylistParserCallback = bool (*)(PlaylistParserEntry* anEntry, void* aUserData);

/// The base of the readers of playlists: turns one walk over the format into random access, and its entries
/// into URLs and into lines of equal length.
///
/// A reader supplies ParseAll and SeekBytes, sets mFilePath and mMimeType as far as it knows them, and is
/// registered with a PlaylistParserFactory. The stream that its builder was given is the caller's, who closes
/// and deletes it, and outlives the reader. The reader belongs to whoever asked the factory for it.
///
/// Every fetch seeks, so fetches may come in any order, and a walk of the caller's own (SeekBytes, then
/// ParseAll) disturbs none of them. A callback, though, must not fetch, seek or walk with the reader that
/// calls it: its walk would not continue where it was. Not locked: one thread at a time uses a reader and its
/// stream. docs/writing-a-playlist-reader.md is the guide.
class EZPARSERS_API PlaylistParser {
public:
    /// For a local playlist: there is no parent URL.
    PlaylistParser();
    /// @param aParentURL  the URL of a playlist from the network; copied. Null for a local one. "" is not
    /// null:
    ///                    locations are then resolved against the empty URL and never against mFilePath
    explicit PlaylistParser(const char* aParentURL);
    virtual ~PlaylistParser();

    PlaylistParser(const PlaylistParser&) = delete;
    PlaylistParser& operator=(const PlaylistParser&) = delete;

    /// Walks the playlist from the stream's current position: passes each entry to the callback, until that
    /// returns true. The first entry of the walk has the index mRelativeEntryIndex. A failing stream or a
    /// broken playlist ends the walk.
    virtual void ParseAll(PlaylistParserCallback aCallback, void* aUserData) = 0;

    /// Reads the entry that begins at aPos, the position that an entry told. False for null, when the
    /// position cannot be sought (the entry is then unchanged), and when there is no entry with a location
    /// (title and location are then empty, mSpecificTags and mRelativeEntryIndex unchanged). mStreamPos of
    /// the result is aPos, and mRelativeEntryIndex counts from there: it is 0. aPos may be a field of the
    /// entry itself.
    virtual bool FetchEntryAtPos(const ezuint64& aPos, PlaylistParserEntry* anEntry);

    /// Reads the entry of an index, counted from 0 over the whole playlist, by walking to it and fetching it
    /// by its position (so that mRelativeEntryIndex is 0, whatever the index). False, with the entry
    /// unchanged, when there is none, and for null.
    virtual bool FetchEntryAtIndex(uint32 anEntryIndex, PlaylistParserEntry* anEntry);

    /// Replaces an entry, also one of an earlier fetch, by the one after it. False, with the entry unchanged,
    /// after the last one; else as FetchEntryAtPos. A null entry is the assertion "anEntry != NULL" and
    /// false.
    virtual bool FetchNextEntry(PlaylistParserEntry* anEntry);

    /// The full URL of an entry's location; "" for an empty one, and for one that holds a NUL.
    ///
    /// With a parent URL the location is resolved against it (ezURI_S_Combine) and an absolute URL is kept:
    /// also one whose scheme the host does not serve, "file:" among them, so the host looks at the scheme.
    /// Without one it is a path, absolute (ezPathName::IsAbsolute) or in the folder of mFilePath, and the
    /// result an absolute, escaped "file:" URL (ezURI_SetFilePath). There ".." is resolved by text, not on
    /// the disk: after a folder that is a symbolic link it names another file than the system would find.
    /// Nor does anything keep the path inside the folder of the playlist: that, too, is the host's to check.
    ///
    /// A local playlist may hold URLs. They are not recognised here: "http://h/a.mp3" becomes the path of a
    /// file "http:/..." beside the playlist. A caller tests first whether the location is a URL
    /// (ezURI_NewFromEscapedStr gives it a scheme) and then uses it as it is.
    virtual ezCString GetFullURLFor(const ezCString& anEntryURI);

    /// Moves to an offset in bytes. A reader seeks its stream and, when that succeeds, calls this one of the
    /// base, which sets mRelativeEntryIndex to 0 and returns true. False when the stream cannot seek there.
    virtual bool SeekBytes(const ezuint64& aPos);

    /// The path of a local playlist; not valid for another.
    const ezPathName& GetFilePath() const { return mFilePath; }
    /// The MIME type of the playlist; empty when the reader does not set one.
    const ezCString& GetMimeType() const { return mMimeType; }

    /// One line of the playlist as the server re-serves it: the prefix and exactly 55 bytes, whatever the
    /// entry. They are mStreamPos in 20 digits, "/0", zeros, "/", the title, ".", the extension, "\r\n",
    /// where the zeros are as many as bring title, dot and extension up to 30 bytes. A longer title is cut at
    /// a byte, if need be inside a UTF-8 character: the length counts. The extension is what follows the last
    /// dot of mURI (the whole of mURI when it has none); one of 7 bytes or more is left out with its dot, an
    /// empty one keeps its dot. The bytes of the title are written as they are, line ends included. "" for
    /// null.
    static ezCString GetURLFor(const ezCString& anURLPrefix, const PlaylistParserEntry* anEntry);

    /// "http://<address>:<port>/<identifier>/", the prefix for GetURLFor.
    /// @param anIPAddress           in network byte order: its first byte in memory is the first number
    /// @param aPort                 in the order of the host
    /// @param anID                  what the server knows the playlist by; written as it is
    /// @param aPlaylistLineLength   unless null, receives the length in bytes of a line with this prefix: the
    ///                              line of entry n begins at n times that
    static ezCString GetURLPrefix(uint32 anIPAddress, std::uint16_t aPort, const ezCString& anID,
                                  uint32* aPlaylistLineLength);

    /// Gives an entry without a title one made of its location: of a URL the last segment of its path,
    /// decoded, and of a bare name the name, both without what follows their last dot; of a path its file
    /// name (ezPathName::GetFileName). An entry that has a title stays as it is; null is ignored.
    static void FixEntry(PlaylistParserEntry* anEntry);

    /// Registers a reader with a factory, once for each MIME type that it declares, under the same
    /// extensions: `PlaylistParser::RegisterTo<Reader>(&factory)`. The reader has the static members
    /// kMimeTypes (an array of texts), kExtensionList ("m3u,m3u8") and sBuild (a PlaylistParserBuilderFunc).
    /// False when one of them was refused, and for null.
    template <typename Reader>
    static bool RegisterTo(PlaylistParserFactory* aFactory) {
        bool fRegistered = true;
        for (const char* mimeType : Reader::kMimeTypes) {
            fRegistered =
                RegisterBuilder(aFactory, &Reader::sBuild, mimeType, Reader::kExtensionList) && fRegistered;
        }
        return fRegistered;
    }

protected:
    ezPathName mFilePath;           ///< what GetFilePath returns; set by a reader of a local playlist
    ezCString mMimeType;            ///< what GetMimeType returns; set by a reader
    uint32 mRelativeEntryIndex = 0; ///< index of the next entry of a walk; a reader increments it
    char* mParentURL = nullptr;     ///< owned; null for a local playlist

private:
    static bool RegisterBuilder(PlaylistParserFactory* aFactory, PlaylistParserBuilderFunc aBuilderFunc,
                                const ezCString& aMimeType, const ezCString& anExtensionList);
};
