#include "ezPlaylists/detail/MarkupScanner.h"

#include "ezBytes/Utf8.h"
#include "ezPlaylists/detail/Limits.h"

#include "ezPlatform/text/CString.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

namespace {

constexpr std::string_view kBlanks = " \t\r\n\f\v";

constexpr std::array<std::pair<std::string_view, char>, 5> kEntities = {
    {{"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}}};

bool IsBlank(char aCharacter) {
    return kBlanks.find(aCharacter) != std::string_view::npos;
}

/// XML 1.0, section 2.3. Nearly every character beyond ASCII may stand in a name, and so all count.
bool BeginsName(char aCharacter) {
    const char lower = ezLower(aCharacter);
    return (lower >= 'a' && lower <= 'z') || lower == ':' || lower == '_' ||
           static_cast<unsigned char>(lower) >= 0x80;
}

bool IsNameCharacter(char aCharacter) {
    return BeginsName(aCharacter) || (aCharacter >= '0' && aCharacter <= '9') || aCharacter == '-' ||
           aCharacter == '.';
}

/// What in a document type stands for itself, whatever it holds.
struct Quoted {
    std::string_view mBegin;
    std::string_view mEnd;
};
constexpr std::array<Quoted, 4> kQuoted = {{{"\"", "\""}, {"'", "'"}, {"<!--", "-->"}, {"<?", "?>"}}};

/// Past the ">" of the document type that a text begins with, and the declarations between its brackets; npos
/// when it does not end.
std::size_t EndOfDocumentType(std::string_view aText) {
    bool fInBrackets = false;
    std::size_t at = 0;
    while (at < aText.size()) {
        const auto* quoted = std::find_if(kQuoted.begin(), kQuoted.end(), [&](const Quoted& aQuoted) {
            return aText.substr(at, aQuoted.mBegin.size()) == aQuoted.mBegin;
        });
        if (quoted != kQuoted.end()) {
            const std::size_t end = aText.find(quoted->mEnd, at + quoted->mBegin.size());
            at = end != std::string_view::npos ? end + quoted->mEnd.size() : end;
            continue;
        }
        const char character = aText[at++];
        if (character == '>' && !fInBrackets) {
            return at;
        }
        fInBrackets = character == '[' || (fInBrackets && character != ']');
    }
    return std::string_view::npos;
}

/// A name for comparing.
std::string Lowered(std::string_view aName) {
    std::string lower(aName.substr(0, kMarkup_MaxName));
    std::transform(lower.begin(), lower.end(), lower.begin(), ezLower);
    return lower;
}

/// The value of "#38" or "#x26"; 0 where it is not the number of a character.
char32_t NumberedCharacter(std::string_view anEntity) {
    std::uint64_t number = 0;
    if (anEntity.substr(0, 2) == "#x" || anEntity.substr(0, 2) == "#X") {
        number = ezHexWord(anEntity.substr(2));
    } else if (anEntity.substr(0, 1) == "#" && !ezReadDecimal(anEntity.substr(1), &number)) {
        number = 0;
    }
    return number <= 0x10FFFF ? static_cast<char32_t>(number) : 0;
}

/// Appends what an entity means to a text. False where it means nothing.
bool AppendMeaning(std::string& aText, std::string_view anEntity) {
    const auto* known = std::find_if(kEntities.begin(), kEntities.end(),
                                     [&](const auto& aKnown) { return aKnown.first == anEntity; });
    if (known != kEntities.end()) {
        aText += known->second;
        return true;
    }
    const char32_t character = NumberedCharacter(anEntity);
    if (character != 0) {
        AppendUtf8(aText, character);
    }
    return character != 0;
}

/// A text of the document, "" for one that is too long to be taken.
std::string_view Bounded(std::string_view aText) {
    return aText.size() <= kPlaylist_MaxText ? aText : std::string_view();
}

/// Whether the "/" before ">" belongs to an unquoted value: at the end of a URL that names no file.
bool EndsInSlash(std::string_view aValue) {
    const std::size_t authority = aValue.find("://");
    if (authority == std::string_view::npos) {
        return false;
    }
    const std::string_view path = aValue.substr(std::min(aValue.find('/', authority + 3), aValue.size()));
    return path.find('.', path.rfind('/') + 1) == std::string_view::npos; // no "/": from the start
}

} // namespace

std::string WithoutEntities(std::string_view aText) {
    std::string text;
    text.reserve(aText.size());
    while (!aText.empty()) {
        const std::size_t start = std::min(aText.find('&'), aText.size());
        text += aText.substr(0, start);
        aText.remove_prefix(start);
        const std::size_t end = aText.substr(0, kMarkup_MaxEntity).find(';');
        if (end != std::string_view::npos && AppendMeaning(text, aText.substr(1, end - 1))) {
            aText.remove_prefix(end + 1);
        } else if (!aText.empty()) {
            text += '&';
            aText.remove_prefix(1);
        }
    }
    return text;
}

const std::string* MarkupPiece::FindAttribute(std::string_view aName) const {
    const auto found = std::find_if(mAttributes.begin(), mAttributes.end(),
                                    [&](const Attribute& anAttribute) { return anAttribute.mName == aName; });
    return found != mAttributes.end() ? &found->mValue : nullptr;
}

bool MarkupScanner::Next(MarkupPiece& aPiece) {
    aPiece = MarkupPiece();
    while (PassOver()) {
    }
    if (mAt >= mText.size()) {
        return false;
    }
    if (LooksAt("<![CDATA[")) {
        return TakeSection(aPiece);
    }
    if (mText[mAt] == '<' && (BeginsName(At(mAt + 1)) || At(mAt + 1) == '/')) {
        return TakeTag(aPiece);
    }
    // The first character may be a "<" that begins nothing.
    const std::size_t end = std::min(mText.find('<', mAt + 1), mText.size());
    aPiece.mOffset = mAt;
    aPiece.mText = WithoutEntities(Bounded(mText.substr(mAt, end - mAt)));
    mAt = end;
    return true;
}

/// Passes over what is neither tag nor text. True when there was something.
bool MarkupScanner::PassOver() {
    std::string_view end;
    if (LooksAt("<!--")) {
        end = "-->";
    } else if (LooksAt("<?")) {
        end = "?>";
    } else if (LooksAt("<!") && !LooksAt("<![CDATA[")) {
        if (PassOverType()) {
            return true;
        }
        end = ">";
    } else {
        return false;
    }
    const std::size_t found = mText.find(end, mAt + 2);
    mAt = found == std::string_view::npos ? mText.size() : found + end.size();
    return true;
}

/// Passes over the document type, of which there is one. False when it does not end.
bool MarkupScanner::PassOverType() {
    constexpr std::string_view kStart = "<!DOCTYPE";
    if (mfTypeMet || !LooksAt(kStart)) {
        return false;
    }
    mfTypeMet = true; // looked for once, as the look for its end may go over the whole text
    const std::size_t end = EndOfDocumentType(mText.substr(mAt + kStart.size()));
    mAt = end != std::string_view::npos ? mAt + kStart.size() + end : mAt;
    return end != std::string_view::npos;
}

bool MarkupScanner::TakeSection(MarkupPiece& aPiece) {
    constexpr std::size_t kStartLength = 9;
    const std::size_t end = mText.find("]]>", mAt);
    if (end == std::string_view::npos) {
        mAt = mText.size();
        return false;
    }
    aPiece.mOffset = mAt;
    aPiece.mText = Bounded(mText.substr(mAt + kStartLength, end - mAt - kStartLength));
    mAt = end + 3;
    return true;
}

bool MarkupScanner::TakeTag(MarkupPiece& aPiece) {
    aPiece.mOffset = mAt;
    aPiece.mKind = MarkupPiece::Kind::StartTag;
    ++mAt;
    if (At(mAt) == '/') {
        aPiece.mKind = MarkupPiece::Kind::EndTag;
        ++mAt;
    }
    const std::size_t start = mAt;
    while (IsNameCharacter(At(mAt))) {
        ++mAt;
    }
    aPiece.mName = Lowered(mText.substr(start, mAt - start));
    return TakeAttributes(aPiece);
}

/// Up to the end of the tag. False when that does not come.
bool MarkupScanner::TakeAttributes(MarkupPiece& aPiece) {
    while (true) {
        SkipBlanks();
        if (mAt >= mText.size()) {
            return false;
        }
        if (mText[mAt] == '>') {
            ++mAt;
            return true;
        }
        if (LooksAt("/>")) {
            aPiece.mfEmptyElement = true;
            mAt += 2;
            return true;
        }
        const std::size_t start = mAt;
        while (IsNameCharacter(At(mAt))) {
            ++mAt;
        }
        MarkupPiece::Attribute attribute;
        attribute.mName = Lowered(mText.substr(start, mAt - start));
        SkipBlanks();
        if (At(mAt) == '=') {
            ++mAt;
            if (!TakeValue(attribute.mValue)) {
                return false;
            }
        } else if (mAt == start) {
            ++mAt; // a character that no tag should have
            continue;
        }
        if (aPiece.mAttributes.size() < kMarkup_MaxAttributes) {
            aPiece.mAttributes.push_back(std::move(attribute));
        }
    }
}

bool MarkupScanner::TakeValue(std::string& aValue) {
    SkipBlanks();
    const char quote = At(mAt);
    std::size_t end = mAt;
    if (quote == '"' || quote == '\'') {
        end = mText.find(quote, ++mAt);
    } else {
        while (end < mText.size() && !IsBlank(mText[end]) && mText[end] != '>' &&
               mText.substr(end, 2) != "/>") {
            ++end;
        }
    }
    if (end >= mText.size()) { // "not found" too
        mAt = mText.size();
        return false;
    }
    aValue = WithoutEntities(Bounded(mText.substr(mAt, end - mAt)));
    const bool fQuoted = quote == '"' || quote == '\'';
    if (!fQuoted && mText[end] == '/' && EndsInSlash(aValue)) {
        aValue += '/'; // it ends the tag all the same
    }
    mAt = fQuoted ? end + 1 : end;
    return true;
}

void MarkupScanner::SkipBlanks() {
    mAt = std::min(mText.find_first_not_of(kBlanks, mAt), mText.size());
}
