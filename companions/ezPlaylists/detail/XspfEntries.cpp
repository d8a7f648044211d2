#include "ezPlaylists/detail/EntryReaders.h"
#include "ezPlaylists/detail/EntryText.h"
#include "ezPlaylists/detail/Location.h"
#include "ezPlaylists/detail/XmlTree.h"

#include "ezPlatform/text/URI.h"

#include <pugixml.hpp>

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>

namespace {

/// The elements of a track that go into the further lines of its entry.
constexpr std::array<const char*, 4> kTags = {"creator", "album", "trackNum", "image"};

/// A reference under a base, which may be a relative one itself: then it stays one, and its ".." count from
/// where the playlist lies.
std::string Resolved(const std::string& aBase, const std::string& aReference) {
    if (aBase.empty() || aReference.empty() || IsWindowsPath(aReference)) {
        return aReference; // as it is written
    }
    if (HasScheme(aBase)) {
        char* url = ezURI_S_Combine(aBase.c_str(), aReference.c_str());
        return std::string(ezCString::FromAllocatedString(url).View());
    }
    if (HasScheme(aReference) || aReference[0] == '/') {
        return aReference;
    }
    const std::string path = aBase.substr(0, aBase.find_first_of("?#"));
    return path.substr(0, path.rfind('/') + 1) + aReference; // without a "/" that is the reference alone
}

/// The base inside of an element whose parent has one.
std::string BaseOf(const pugi::xml_node& anElement, const std::string& anOuterBase) {
    const std::string_view own = ezTrimmed(anElement.attribute("xml:base").value());
    if (own.empty() || own.size() > kMaximumBase) {
        return anOuterBase;
    }
    std::string base = Resolved(anOuterBase, std::string(own));
    return base.size() <= kMaximumBase ? base : anOuterBase;
}

/// The first location that says anything; a track has as many as there are sources for the same media.
std::string LocationOf(const pugi::xml_node& aTrack, const std::string& aBase) {
    for (const pugi::xml_node& child : aTrack.children()) {
        if (XmlTree::LocalName(child) == "location") {
            const std::string location(ezTrimmed(XmlTree::TextOf(child)));
            if (!location.empty()) {
                return Resolved(BaseOf(child, aBase), location);
            }
        }
    }
    return {};
}

/// Whole seconds of whole milliseconds, the fraction dropped.
uint32 SecondsOf(const std::string& aMilliseconds) {
    std::uint64_t milliseconds = 0;
    if (!ezReadDecimal(ezTrimmed(aMilliseconds), &milliseconds)) {
        return 0;
    }
    return static_cast<uint32>(
        std::min<std::uint64_t>(milliseconds / 1000, std::numeric_limits<uint32>::max()));
}

/// False for a track without a location.
bool ReadTrack(const pugi::xml_node& aTrack, const std::string& aBase, PlaylistParserEntry& anEntry) {
    anEntry.mURI = ezCString(LocationOf(aTrack, BaseOf(aTrack, aBase)));
    if (anEntry.mURI.IsEmpty()) {
        return false;
    }
    anEntry.mTitle = ezCString(OneLine(XmlTree::TextOf(XmlTree::Child(aTrack, "title"))));
    anEntry.mDuration = SecondsOf(XmlTree::TextOf(XmlTree::Child(aTrack, "duration")));
    for (const char* tag : kTags) {
        AddTag(anEntry, tag, XmlTree::TextOf(XmlTree::Child(aTrack, tag)));
    }
    return true;
}

} // namespace

bool ReadXspfEntries(DocumentText& aDocument, const EntrySink& aSink) {
    const XmlTree tree(aDocument.Text());
    const pugi::xml_node root = tree.Root();
    const pugi::xml_node list = XmlTree::Child(root, "trackList");
    if (tree.IsRefused() || XmlTree::LocalName(root) != "playlist") {
        return !tree.IsRefused();
    }
    const std::string base = BaseOf(list, BaseOf(root, std::string()));
    bool fGoOn = true;
    for (pugi::xml_node track = list.first_child(); track && fGoOn; track = track.next_sibling()) {
        PlaylistParserEntry entry;
        if (XmlTree::LocalName(track) == "track" && tree.IsClosed(track) && ReadTrack(track, base, entry)) {
            entry.mStreamPos = aDocument.PositionOf(XmlTree::OffsetOf(track));
            fGoOn = aSink(entry);
        }
    }
    return true;
}
