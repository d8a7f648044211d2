#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// One piece of a text with markup.
struct MarkupPiece {
    enum class Kind { Text, StartTag, EndTag };

    struct Attribute {
        std::string mName; ///< lower case
        std::string mValue;
    };

    Kind mKind = Kind::Text;
    std::size_t mOffset = 0; ///< in the text, of the "<" of a tag
    std::string mName;       ///< of a tag, lower case
    std::string mText;       ///< of a text
    std::vector<Attribute> mAttributes;
    bool mfEmptyElement = false; ///< of a start tag that ends in "/>"

    /// Borrowed; null where the tag has no attribute of this name (lower case).
    const std::string* FindAttribute(std::string_view aName) const;
};

/// Takes a text apart that looks like XML and need not be: names without case, values without quotes, stray
/// "&" and "<", tags that nobody closes. Comments, declarations and processing instructions are passed over,
/// entities declared in them included: besides the five that XML knows and the numbers of characters an
/// entity stands for itself. Walks once over the text, keeps nothing of it and cannot fail; a tag or section
/// that does not end before the text does is the end. A text or value of more than kPlaylist_MaxText bytes is
/// given as an empty one, as no part of it would mean the same. The "/" of "/>" after an unquoted value ends
/// the tag, and belongs to the value as well where that is a URL whose last part has no dot ("http://h/a/").
class MarkupScanner {
public:
    /// @param aText  UTF-8, borrowed
    explicit MarkupScanner(std::string_view aText) : mText(aText) {}

    /// False at the end.
    bool Next(MarkupPiece& aPiece);

private:
    bool PassOver();
    bool PassOverType();
    bool TakeSection(MarkupPiece& aPiece);
    bool TakeTag(MarkupPiece& aPiece);
    bool TakeAttributes(MarkupPiece& aPiece);
    bool TakeValue(std::string& aValue);
    void SkipBlanks();
    bool LooksAt(std::string_view aStart) const { return mText.substr(mAt, aStart.size()) == aStart; }
    char At(std::size_t anOffset) const { return anOffset < mText.size() ? mText[anOffset] : '\0'; }

    std::string_view mText;
    std::size_t mAt = 0;
    bool mfTypeMet = false; ///< the document type
};

/// The text with the entities that XML itself knows, and the numbers of characters, in their meaning. All
/// else that begins with "&" stays; so does the number of NUL, which no text may hold.
std::string WithoutEntities(std::string_view aText);
