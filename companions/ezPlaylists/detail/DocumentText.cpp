#include "ezPlaylists/detail/DocumentText.h"

#include "ezBytes/Utf16.h"
#include "ezBytes/Utf8.h"

#include "ezPlatform/text/CString.h"
#include "ezPlaylists/detail/Limits.h"

#include <algorithm>
#include <array>
#include <utility>

namespace {

/// What a document begins with tells its encoding.
struct Mark {
    std::string_view mBytes;
    bool mfPartOfText; ///< no byte order mark, but the first character
};

using namespace std::string_view_literals;
constexpr Mark kUtf8Mark = {"\xEF\xBB\xBF"sv, false};
constexpr std::array<Mark, 2> kLittleEndianMarks = {{{"\xFF\xFE"sv, false}, {"<\0"sv, true}}};
constexpr std::array<Mark, 2> kBigEndianMarks = {{{"\xFE\xFF"sv, false}, {"\0<"sv, true}}};

/// The declared names of the 8-bit sets that are read, as parts of Windows-1252.
constexpr std::array<std::string_view, 6> kEightBitNames = {
    {"iso-8859-1", "iso-8859-15", "latin1", "latin-1", "windows-1252", "cp1252"}};

bool StartsWith(std::string_view aText, std::string_view aStart) {
    return aText.substr(0, aStart.size()) == aStart;
}

template <typename Marks>
bool HasMark(std::string_view aDocument, const Marks& aMarks, std::size_t& aMarkLength) {
    const auto mark = std::find_if(aMarks.begin(), aMarks.end(),
                                   [&](const Mark& aMark) { return StartsWith(aDocument, aMark.mBytes); });
    if (mark == aMarks.end()) {
        return false;
    }
    aMarkLength = mark->mfPartOfText ? 0 : mark->mBytes.size();
    return true;
}

/// The encoding that the XML declaration names, in lower case; "" without one.
std::string DeclaredEncoding(std::string_view aDocument) {
    const std::string_view head = aDocument.substr(0, kMarkup_MaxDeclaration);
    const std::string_view declaration = head.substr(0, head.find("?>"));
    std::size_t at = declaration.find("encoding");
    if (!StartsWith(declaration, "<?") || at == std::string_view::npos) {
        return {};
    }
    at = declaration.find_first_of("\"'", at);
    if (at == std::string_view::npos) {
        return {};
    }
    const std::string_view value =
        declaration.substr(at + 1, declaration.find(declaration[at], at + 1) - at - 1);
    std::string name(value);
    std::transform(name.begin(), name.end(), name.begin(), ezLower);
    return name;
}

} // namespace

DocumentText::DocumentText(GrowingText aDocument) : mEncoding(EncodingOf(aDocument.View(), mMarkLength)) {
    mCursorPosition = mMarkLength;
    switch (mEncoding) {
    case Encoding::Utf8:
        mSkipped = mMarkLength;
        mText = std::move(aDocument);
        break;
    case Encoding::EightBit:
        TakeEightBit(aDocument.View());
        break;
    case Encoding::Utf16LittleEndian:
    case Encoding::Utf16BigEndian:
        TakeUtf16(aDocument.View().substr(mMarkLength));
        break;
    }
}

DocumentText::Encoding DocumentText::EncodingOf(std::string_view aDocument, std::size_t& aMarkLength) {
    aMarkLength = 0;
    if (StartsWith(aDocument, kUtf8Mark.mBytes)) {
        aMarkLength = kUtf8Mark.mBytes.size();
        return Encoding::Utf8;
    }
    if (HasMark(aDocument, kLittleEndianMarks, aMarkLength)) {
        return Encoding::Utf16LittleEndian;
    }
    if (HasMark(aDocument, kBigEndianMarks, aMarkLength)) {
        return Encoding::Utf16BigEndian;
    }
    const std::string declared = DeclaredEncoding(aDocument);
    if (std::find(kEightBitNames.begin(), kEightBitNames.end(), declared) != kEightBitNames.end()) {
        return Encoding::EightBit;
    }
    return declared == "utf-8" || IsWholeUtf8(aDocument) ? Encoding::Utf8 : Encoding::EightBit;
}

/// Appends a character to the text. False when no more is taken.
bool DocumentText::Put(char32_t aCharacter) {
    mCharacter.clear();
    AppendUtf8(mCharacter, aCharacter);
    mfTooLong = mCharacter.size() > kPlaylist_MaxDocument - mText.Size();
    mfRefused = !mfTooLong && !mText.Append(std::string_view(mCharacter));
    return !mfTooLong && !mfRefused;
}

void DocumentText::TakeEightBit(std::string_view aDocument) {
    mfRefused = !mText.Reserve(aDocument.size());
    for (std::size_t i = 0; i < aDocument.size() && !mfRefused && !mfTooLong; ++i) {
        Put(FromWindows1252(static_cast<unsigned char>(aDocument[i])));
    }
}

void DocumentText::TakeUtf16(std::string_view aDocument) {
    mfRefused = !mText.Reserve(aDocument.size() / 2);
    if (!mfRefused) {
        ForEachUtf16(aDocument, mEncoding == Encoding::Utf16LittleEndian,
                     [this](char32_t aCharacter) { return Put(aCharacter); });
    }
}

std::uint64_t DocumentText::PositionOf(std::size_t aTextOffset) {
    if (mEncoding == Encoding::Utf8) {
        return mMarkLength + aTextOffset;
    }
    if (aTextOffset < mCursor) {
        mCursor = 0;
        mCursorPosition = mMarkLength;
    }
    while (mCursor < std::min(aTextOffset, mText.Size())) {
        const unsigned char lead = static_cast<unsigned char>(mText[mCursor]);
        const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        if (mCursor + length > aTextOffset) {
            break; // the offset is one inside a character
        }
        mCursor += length;
        const std::uint64_t eightBit = 1;
        const std::uint64_t utf16 = length == 4 ? 4 : 2;
        mCursorPosition += mEncoding == Encoding::EightBit ? eightBit : utf16;
    }
    return mCursorPosition;
}
