#include "ezPlaylists/detail/MarkupPlaylistParser.h"

#include "ezPlaylists/detail/Limits.h"

#include <string>
#include <utility>

MarkupPlaylistParser::MarkupPlaylistParser(ezStream* aStream, const PlaylistPlace& aPlace,
                                           const char* aMimeType, ReadFunc aReadFunc)
    : IndexedPlaylistParser(aStream, aPlace), mReadFunc(aReadFunc) {
    mMimeType = aMimeType;
}

void MarkupPlaylistParser::ReadEntries(PlaylistStreamReader& aReader) {
    std::string bytes;
    const bool fAll = aReader.ReadAll(&bytes, kPlaylist_MaxDocument);
    if (!fAll && !aReader.HasFailed()) {
        return; // too long
    }
    DocumentText document(std::move(bytes));
    mReadFunc(document, [this](const PlaylistParserEntry& anEntry) {
        return AddEntry(anEntry.mStreamPos.ToUInt64(), anEntry.mURI.View(), anEntry.mTitle.View(),
                        anEntry.mDuration, anEntry.mSpecificTags.View());
    });
}
