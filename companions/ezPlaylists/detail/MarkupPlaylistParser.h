#pragma once

#include "ezPlaylists/detail/IndexedPlaylistParser.h"

#include "ezPlaylists/detail/EntryReaders.h"

class PlaylistPlace;

/// The base of the readers of documents with markup. Whatever the document, it takes less than 64 MiB to read
/// it and to keep its entries. A document of more than kPlaylist_MaxDocument bytes has no entries; of one
/// whose stream fails those stand that are whole. A text of an entry that is longer than kPlaylist_MaxText
/// counts as absent. An entry's position is that of the "<" of its element, in the document as it lies there,
/// also where that is UTF-16.
class MarkupPlaylistParser : public IndexedPlaylistParser {
protected:
    using ReadFunc = bool (*)(DocumentText& aDocument, const EntrySink& aSink);

    MarkupPlaylistParser(ezStream* aStream, const PlaylistPlace& aPlace, const char* aMimeType,
                         ReadFunc aReadFunc);

    bool ReadEntries(PlaylistStreamReader& aReader) override;

private:
    const ReadFunc mReadFunc;
};
