#include "ezPlaylists/detail/EntryReaders.h"
#include "ezPlaylists/detail/XmlScanner.h"

#include "ezPlatform/text/CString.h"

bool ReadWplEntries(DocumentText& aDocument, const EntrySink& aSink) {
    XmlScanner scanner(aDocument.Text());
    bool fInBody = false;
    bool fGoOn = true;
    while (fGoOn && scanner.Next()) {
        const MarkupPiece& piece = scanner.Piece();
        if (piece.mKind == MarkupPiece::Kind::Text) {
            continue;
        }
        const bool fBegin = piece.mKind == MarkupPiece::Kind::StartTag;
        const std::string_view name = scanner.LocalName();
        if (scanner.Level() == 1) {
            fGoOn = fBegin && name == "smil";
        } else if (scanner.Level() == 2 && name == "body") {
            fGoOn = fBegin; // there is one
            fInBody = fBegin;
        } else if (fInBody && fBegin && name == "media") {
            const std::string* source = piece.FindAttribute("src");
            PlaylistParserEntry entry;
            entry.mURI = ezCString(source != nullptr ? ezTrimmed(*source) : std::string_view());
            entry.mStreamPos = aDocument.PositionOf(piece.mOffset);
            fGoOn = entry.mURI.IsEmpty() || aSink(entry);
        }
    }
    return true;
}
