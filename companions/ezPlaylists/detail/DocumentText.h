#pragma once

#include "ezPlaylists/detail/GrowingBlock.h"
#include "ezPlaylists/detail/Limits.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// A document of text as UTF-8, and where in the document each character stands.
///
/// The encoding is that of the byte order mark (UTF-8 or UTF-16), of the "<" that a UTF-16 document without
/// one begins with, or of the XML declaration (UTF-8, or an 8-bit set of western Europe). Where none of these
/// tells it, or an unknown one is declared, a document that is UTF-8 as a whole is that, and any other is
/// Windows-1252, of which Latin-1 is a part.
///
/// Bytes that break the rules of UTF-8 stay in a document that says that it is UTF-8; half a surrogate pair
/// becomes U+FFFD.
class DocumentText {
public:
    explicit DocumentText(GrowingText aDocument);

    /// Whether memory for the text was refused, of which a part is there then.
    bool IsRefused() const { return mfRefused; }
    /// Whether the text would have more than kPlaylist_MaxDocument bytes, of which a part is there then.
    bool IsTooLong() const { return mfTooLong; }

    /// UTF-8, without the byte order mark.
    std::string_view Text() const { return mText.View().substr(mSkipped); }

    /// Where in the document the character stands to which a byte of the text belongs. A row of rising
    /// offsets costs one walk over the text.
    std::uint64_t PositionOf(std::size_t aTextOffset);

private:
    enum class Encoding { Utf8, EightBit, Utf16LittleEndian, Utf16BigEndian };

    static Encoding EncodingOf(std::string_view aDocument, std::size_t& aMarkLength);
    bool Put(char32_t aCharacter);
    void TakeEightBit(std::string_view aDocument);
    void TakeUtf16(std::string_view aDocument);

    GrowingText mText{kPlaylist_MaxDocument};
    std::string mCharacter;   ///< the last that was put
    std::size_t mSkipped = 0; ///< the byte order mark at the start of a text that is the document itself
    bool mfRefused = false;
    bool mfTooLong = false;
    std::size_t mMarkLength = 0; ///< before the encoding, with which it is found
    const Encoding mEncoding;
    std::size_t mCursor = 0;           ///< an offset in the text
    std::uint64_t mCursorPosition = 0; ///< where that is in the document
};
