#include "ezPlaylists/detail/XmlTree.h"

#include "ezPlaylists/detail/Limits.h"

#include <pugixml.hpp>

#include <algorithm>

namespace {

/// Start and end tags together. An element of the tree takes some 130 bytes with its text, so that the tree
/// stays below 256 MiB on a 64-bit system; a hundred thousand entries have a million tags.
constexpr std::ptrdiff_t kMaximumTags = 2000000;

/// Of the same order: a tag may hold any number of attributes.
constexpr std::ptrdiff_t kMaximumAttributes = 2000000;

std::ptrdiff_t Count(std::string_view aText, char aCharacter) {
    return std::count(aText.begin(), aText.end(), aCharacter);
}

} // namespace

struct XmlTree::Tree {
    pugi::xml_document mDocument;
    pugi::xml_parse_result mResult;
};

XmlTree::XmlTree(std::string_view aText) : mText(aText), mTree(std::make_unique<Tree>()) {
    if (Count(aText, '<') <= kMaximumTags && Count(aText, '=') <= kMaximumAttributes) {
        // What could be read before an error stays in the tree.
        mTree->mResult = mTree->mDocument.load_buffer(aText.data(), aText.size(), pugi::parse_default,
                                                      pugi::encoding_utf8);
    }
}

XmlTree::~XmlTree() = default;

bool XmlTree::IsRefused() const {
    return mTree->mResult.status == pugi::status_out_of_memory;
}

pugi::xml_node XmlTree::Root() const {
    return mTree->mDocument.document_element();
}

std::size_t XmlTree::OffsetOf(const pugi::xml_node& anElement) {
    return static_cast<std::size_t>(std::max<std::ptrdiff_t>(anElement.offset_debug(), 1)) - 1;
}

bool XmlTree::HasWholeStartTag(const pugi::xml_node& anElement) const {
    const bool fBrokenTag = mTree->mResult.status == pugi::status_bad_attribute ||
                            mTree->mResult.status == pugi::status_bad_start_element;
    if (!fBrokenTag || anElement.first_child()) {
        return true;
    }
    for (pugi::xml_node node = anElement; node; node = node.parent()) {
        if (node.next_sibling()) {
            return true;
        }
    }
    return false; // it is the last one, in which the error is
}

bool XmlTree::IsClosed(const pugi::xml_node& anElement) const {
    if (mTree->mResult || anElement.next_sibling()) {
        return true;
    }
    const std::string_view name = anElement.name();
    if (name.size() > kPlaylist_MaxText) {
        return false; // nobody looks for it
    }
    const std::string tag = "</" + std::string(name);
    const std::size_t start = OffsetOf(anElement);
    for (std::size_t at = mText.rfind(tag); at != std::string::npos && at > start;
         at = mText.rfind(tag, at - 1)) {
        const std::size_t end = mText.find_first_not_of(" \t\r\n", at + tag.size());
        if (end != std::string::npos && mText[end] == '>') {
            return true; // the whole name: what follows is no further letter of a longer one
        }
    }
    return false;
}

std::string_view XmlTree::LocalName(const pugi::xml_node& anElement) {
    const std::string_view name = anElement.name();
    return name.substr(name.find(':') + 1); // without a prefix that is the start
}

pugi::xml_node XmlTree::Child(const pugi::xml_node& aParent, std::string_view aLocalName) {
    return aParent.find_child([&](const pugi::xml_node& aNode) { return LocalName(aNode) == aLocalName; });
}

std::string XmlTree::TextOf(const pugi::xml_node& anElement) {
    std::string text;
    for (const pugi::xml_node& child : anElement.children()) {
        if (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata) {
            const std::string_view value = child.value();
            if (value.size() > kPlaylist_MaxText - text.size()) {
                return {};
            }
            text += value;
        }
    }
    return text;
}
