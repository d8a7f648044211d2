#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace pugi {
class xml_node;
}

/// A document of XML, as far as it can be read.
///
/// No document type is looked at, so no entity that one declares means anything: "&name;" stands for itself,
/// and neither files nor other documents are read. The five entities of XML and numbers of characters are
/// decoded. A document with too many tags or attributes is not read at all, as the tree takes many
/// times the memory of the text; depth costs no stack.
class XmlTree {
public:
    /// @param aText  UTF-8, borrowed
    explicit XmlTree(std::string_view aText);

    ~XmlTree();
    XmlTree(const XmlTree&) = delete;
    XmlTree& operator=(const XmlTree&) = delete;

    /// Whether memory for the tree was refused, of which a part is there then.
    bool IsRefused() const;

    pugi::xml_node Root() const;

    /// Where in the text the "<" of an element stands.
    static std::size_t OffsetOf(const pugi::xml_node& anElement);

    /// False where the document ended or broke inside the element's start tag, whose last attribute is then
    /// half a one.
    bool HasWholeStartTag(const pugi::xml_node& anElement) const;

    /// False where the document ended or broke inside the element.
    bool IsClosed(const pugi::xml_node& anElement) const;

    /// The name without its prefix.
    static std::string_view LocalName(const pugi::xml_node& anElement);

    /// The first child element of a name; a null node when there is none.
    static pugi::xml_node Child(const pugi::xml_node& aParent, std::string_view aLocalName);

    /// The text that stands directly in the element; "" for one of more than kPlaylist_MaxText bytes.
    static std::string TextOf(const pugi::xml_node& anElement);

private:
    struct Tree;

    const std::string_view mText;
    const std::unique_ptr<Tree> mTree;
};
