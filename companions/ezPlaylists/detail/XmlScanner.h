#pragma once

#include "ezPlaylists/detail/Limits.h"
#include "ezPlaylists/detail/MarkupScanner.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

/// Walks over the elements of a document of XML, as far as it can be read: up to a NUL, up to where it breaks
/// off, and up to an end tag that is not that of the element which it stands in, of the first levels, where
/// that matters to a reader. What the MarkupScanner mends (values without quotes, stray characters, case) is
/// mended here too. After the root element nothing is read.
///
/// Nothing is built of the document, so that neither the number of its elements nor their depth costs memory.
/// No document type is looked at, so no entity that one declares means anything: "&name;" stands for itself,
/// and neither files nor other documents are read.
class XmlScanner {
public:
    /// @param aText  UTF-8, borrowed
    explicit XmlScanner(std::string_view aText) : mScanner(aText.substr(0, aText.find('\0'))) {}

    /// False at the end. An empty element ("<a/>") comes as a start tag and an end tag.
    bool Next();

    /// Borrowed until the next call.
    const MarkupPiece& Piece() const { return mPiece; }
    /// How deep the element is that begins or ends, or that the text stands in: 1 for the root.
    std::size_t Level() const { return mLevel; }
    /// The name of a tag without its prefix, lower case.
    std::string_view LocalName() const;

private:
    void Enter();
    bool Leave();

    MarkupScanner mScanner;
    MarkupPiece mPiece;
    std::array<std::string, kXml_NamedLevels>
        mNames;             ///< of the elements that are open, as far as they are kept
    std::size_t mDepth = 0; ///< elements that are open
    std::size_t mLevel = 0;
    bool mfOver = false;
};
