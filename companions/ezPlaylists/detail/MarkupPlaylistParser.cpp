#include "ezPlaylists/detail/MarkupPlaylistParser.h"

#include "ezPlaylists/detail/Limits.h"

#include <utility>

MarkupPlaylistParser::MarkupPlaylistParser(ezStream* aStream, const PlaylistPlace& aPlace,
                                           const char* aMimeType, ReadFunc aReadFunc)
    : IndexedPlaylistParser(aStream, aPlace), mReadFunc(aReadFunc) {
    mMimeType = aMimeType;
}

bool MarkupPlaylistParser::ReadEntries(PlaylistStreamReader& aReader) {
    GrowingText bytes(kPlaylist_MaxDocument);
    const bool fAll = aReader.ReadAll(&bytes, kPlaylist_MaxDocument);
    if (!fAll && !aReader.HasFailed()) {
        Cut();
        return true;
    }
    DocumentText document(std::move(bytes));
    if (document.IsRefused()) {
        return false;
    }
    if (document.IsTooLong()) {
        Cut();
        return true;
    }
    const bool fWhole = mReadFunc(document, [this](const PlaylistParserEntry& anEntry) {
        return AddEntry(anEntry.mStreamPos.ToUInt64(), anEntry.mURI.View(), anEntry.mTitle.View(),
                        anEntry.mDuration, anEntry.mSpecificTags.View());
    });
    if (!fWhole) {
        Cut();
    }
    return true;
}
