#include "ezBytes/TextBytes.h"

#include "ezBytes/Utf16.h"
#include "ezBytes/Utf8.h"

#include <algorithm>
#include <string>

namespace {

constexpr char32_t kByteOrderMark = 0xFEFF;

bool IsUtf16(TextEncoding anEncoding) {
    return anEncoding == TextEncoding::Utf16 || anEncoding == TextEncoding::Utf16Big ||
           anEncoding == TextEncoding::Utf16Little;
}

/// The order in which more units are letters of the first 256, as those of nearly every title are.
TextEncoding GuessOrder(std::string_view aBytes) {
    std::size_t big = 0;
    std::size_t little = 0;
    for (std::size_t i = 0; i + 1 < aBytes.size(); i += 2) {
        big += aBytes[i] == '\0' && aBytes[i + 1] != '\0' ? 1 : 0;
        little += aBytes[i] != '\0' && aBytes[i + 1] == '\0' ? 1 : 0;
    }
    return little > big ? TextEncoding::Utf16Little : TextEncoding::Utf16Big;
}

/// What the bytes say of their order, or what was said of it.
TextEncoding ResolveOrder(std::string_view aBytes, TextEncoding anEncoding) {
    if (aBytes.size() >= 2 && Utf16UnitAt(aBytes, 0, false) == kByteOrderMark) {
        return TextEncoding::Utf16Big;
    }
    if (aBytes.size() >= 2 && Utf16UnitAt(aBytes, 0, true) == kByteOrderMark) {
        return TextEncoding::Utf16Little;
    }
    return anEncoding == TextEncoding::Utf16 ? GuessOrder(aBytes) : anEncoding;
}

/// Bytes up to the first NUL; all when there is none.
std::size_t LengthOfFirst(std::string_view aBytes, TextEncoding anEncoding) {
    if (!IsUtf16(anEncoding)) {
        return std::min(aBytes.find('\0'), aBytes.size());
    }
    std::size_t length = 0;
    while (length + 1 < aBytes.size() && (aBytes[length] != '\0' || aBytes[length + 1] != '\0')) {
        length += 2;
    }
    return length + 1 < aBytes.size() ? length : aBytes.size();
}

/// Takes characters one by one, and keeps those that a clean text has.
class CleanTextWriter {
public:
    /// @param aCount  characters that are expected: more may come
    CleanTextWriter(std::size_t aMaximum, std::size_t aCount) : mMaximum(aMaximum) {
        mText.reserve(std::min(aMaximum, aCount));
    }

    bool IsFull() const { return mfFull; }

    void Put(char32_t aCharacter) {
        const bool fBlank = aCharacter == ' ' || (aCharacter >= '\t' && aCharacter <= '\r');
        const bool fControl = aCharacter < 0x20 || (aCharacter >= 0x7F && aCharacter < 0xA0);
        const bool fNone =
            aCharacter == kByteOrderMark || aCharacter == 0xFFFE || aCharacter == 0xFFFF || mfFull;
        if (fNone || (fControl && !fBlank) || (fBlank && mText.empty())) {
            return;
        }
        const std::size_t length = mText.size();
        AppendUtf8(mText, fBlank ? U' ' : aCharacter);
        if (mText.size() > mMaximum) {
            mText.resize(length);
            mfFull = true;
        }
    }

    ezCString Finish() {
        mText.resize(mText.find_last_not_of(' ') + 1);
        return ezCString(std::string_view(mText));
    }

private:
    std::string mText;
    std::size_t mMaximum;
    bool mfFull = false;
};

void PutUtf16(std::string_view aBytes, bool afLittle, CleanTextWriter& aWriter) {
    ForEachUtf16(aBytes, afLittle, [&aWriter](char32_t aCharacter) {
        aWriter.Put(aCharacter);
        return !aWriter.IsFull();
    });
}

/// aBytes is whole UTF-8.
void PutUtf8(std::string_view aBytes, CleanTextWriter& aWriter) {
    while (!aBytes.empty() && !aWriter.IsFull()) {
        const std::size_t length = LengthOfFirstUtf8(aBytes);
        char32_t character = static_cast<unsigned char>(aBytes[0]);
        character = length == 1 ? character : character & (0x7FU >> length);
        for (std::size_t i = 1; i < length; ++i) {
            character = character << 6 | (static_cast<unsigned char>(aBytes[i]) & 0x3FU);
        }
        aWriter.Put(character);
        aBytes.remove_prefix(length);
    }
}

bool IsAscii(std::string_view aBytes) {
    return std::all_of(aBytes.begin(), aBytes.end(),
                       [](char aByte) { return static_cast<unsigned char>(aByte) < 0x80; });
}

void PutBytes(std::string_view aBytes, TextEncoding anEncoding, const CodePage& aCodePage,
              CleanTextWriter& aWriter) {
    if (IsWholeUtf8(aBytes)) {
        PutUtf8(aBytes, aWriter);
        return;
    }
    const std::string_view whole = WithoutCutUtf8(aBytes);
    // Of plain letters and one more byte, that byte is a letter of the code page unless UTF-8 was promised.
    const bool fPromised = anEncoding == TextEncoding::Utf8 || !IsAscii(whole);
    if (fPromised && IsWholeUtf8(whole)) {
        PutUtf8(whole, aWriter);
    } else {
        PutUtf8(aCodePage.ToUtf8(aBytes), aWriter);
    }
}

/// Plain letters, of which a clean text keeps all but blanks at its ends: most texts.
bool IsPlain(std::string_view aBytes) {
    return std::all_of(aBytes.begin(), aBytes.end(), [](char aByte) { return aByte >= ' ' && aByte <= '~'; });
}

ezCString CleanOne(std::string_view aBytes, TextEncoding anEncoding, const CodePage& aCodePage,
                   std::size_t aMaximum) {
    if (!IsUtf16(anEncoding) && aBytes.size() <= aMaximum && IsPlain(aBytes)) {
        return ezCString(ezTrimmed(aBytes));
    }
    CleanTextWriter writer(aMaximum, IsUtf16(anEncoding) ? aBytes.size() / 2 : aBytes.size());
    if (IsUtf16(anEncoding)) {
        PutUtf16(aBytes, anEncoding == TextEncoding::Utf16Little, writer);
    } else {
        PutBytes(aBytes, anEncoding, aCodePage, writer);
    }
    return writer.Finish();
}

} // namespace

ezCString CleanText(std::string_view aBytes, TextEncoding anEncoding, const CodePage& aCodePage,
                    std::size_t aMaximum) {
    const TextEncoding encoding = IsUtf16(anEncoding) ? ResolveOrder(aBytes, anEncoding) : anEncoding;
    return CleanOne(aBytes.substr(0, LengthOfFirst(aBytes, encoding)), encoding, aCodePage, aMaximum);
}

std::vector<ezCString> CleanTexts(std::string_view aBytes, TextEncoding anEncoding, std::size_t aMaxCount,
                                  const CodePage& aCodePage, std::size_t aMaximum) {
    std::vector<ezCString> texts;
    TextEncoding encoding = anEncoding;
    while (!aBytes.empty() && texts.size() < aMaxCount) {
        encoding = IsUtf16(encoding) ? ResolveOrder(aBytes, encoding) : encoding;
        const std::size_t length = LengthOfFirst(aBytes, encoding);
        ezCString text = CleanOne(aBytes.substr(0, length), encoding, aCodePage, aMaximum);
        if (!text.IsEmpty()) {
            texts.push_back(text);
        }
        aBytes.remove_prefix(std::min(aBytes.size(), length + (IsUtf16(encoding) ? 2 : 1)));
    }
    return texts;
}
