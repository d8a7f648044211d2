#include "ezPlaylists/detail/EntryReaders.h"
#include "ezPlaylists/detail/Limits.h"
#include "ezPlaylists/detail/XmlTree.h"

#include "ezPlatform/text/CString.h"

#include <pugixml.hpp>

namespace {

/// The element behind another in the order of the document, inside of a root; a null node behind the last.
pugi::xml_node Following(pugi::xml_node anElement, const pugi::xml_node& aRoot) {
    if (anElement.first_child()) {
        return anElement.first_child();
    }
    while (anElement && anElement != aRoot && !anElement.next_sibling()) {
        anElement = anElement.parent();
    }
    return anElement == aRoot ? pugi::xml_node() : anElement.next_sibling();
}

} // namespace

bool ReadWplEntries(DocumentText& aDocument, const EntrySink& aSink) {
    const XmlTree tree(aDocument.Text());
    if (tree.IsRefused() || XmlTree::LocalName(tree.Root()) != "smil") {
        return !tree.IsRefused();
    }
    const pugi::xml_node body = XmlTree::Child(tree.Root(), "body");
    bool fGoOn = true;
    for (pugi::xml_node node = body; node && fGoOn; node = Following(node, body)) {
        const std::string_view location = ezTrimmed(node.attribute("src").value());
        if (XmlTree::LocalName(node) == "media" && !location.empty() &&
            location.size() <= kPlaylist_MaxText && tree.HasWholeStartTag(node)) {
            PlaylistParserEntry entry;
            entry.mStreamPos = aDocument.PositionOf(XmlTree::OffsetOf(node));
            entry.mURI = ezCString(location);
            fGoOn = aSink(entry);
        }
    }
    return true;
}
