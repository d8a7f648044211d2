#include "ezFormats/tags/MusicTexts.h"

#include "ezFormats/detail/Limits.h"
#include "ezFormats/tags/AudioTails.h"

#include "ezBytes/ByteReader.h"
#include "ezBytes/ID3Tag.h"
#include "ezBytes/TextBytes.h"

#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <array>
#include <string>

namespace {

/// Where a text of a tag goes, and whether several of them go together.
struct Field {
    const char* mID22;
    const char* mID23;
    const char* mAPEKey;
    const char* mLyricsID; ///< of Lyrics3; null where it has none
    ezCString MusicTexts::*mPlace;
    bool mfSeveral;
};
constexpr std::array<Field, 4> kFields = {{
    {"TT2", "TIT2", "title", "ETT", &MusicTexts::mTitle, false},
    {"TP1", "TPE1", "artist", "EAR", &MusicTexts::mCreator, true},
    {"TAL", "TALB", "album", "EAL", &MusicTexts::mAlbum, false},
    {"TCO", "TCON", "genre", nullptr, &MusicTexts::mGenre, true},
}};

ezCString Join(const Field& aField, const std::vector<ezCString>& aTexts) {
    const bool fGenre = aField.mPlace == &MusicTexts::mGenre;
    std::string joined;
    for (const ezCString& text : aTexts) {
        AddMusicName(joined, (fGenre ? MusicGenreOf(text.View()) : text).View());
    }
    return CleanText(joined, TextEncoding::Utf8);
}

/// The first of these takes the place, unless an earlier frame has it.
void Keep(const Field& aField, std::string_view aBytes, TextEncoding anEncoding, bool afSeveral,
          const CodePage& aCodePage, MusicTexts& aTexts) {
    ezCString& place = aTexts.*aField.mPlace;
    if (place.IsEmpty()) {
        const std::size_t count = aField.mfSeveral && afSeveral ? kMusicTexts_MaxCount : 1;
        place = Join(aField, CleanTexts(aBytes, anEncoding, count, aCodePage));
    }
}

/// A text frame: its encoding, and the text. What states no encoding there is begins with its first letter.
void KeepFrame(const Field& aField, ByteReader& aBody, unsigned aVersion, const CodePage& aCodePage,
               MusicTexts& aTexts) {
    // Who writes "Latin-1" means what his system has.
    constexpr std::array<TextEncoding, 4> kEncodings = {TextEncoding::Unstated, TextEncoding::Utf16,
                                                        TextEncoding::Utf16Big, TextEncoding::Utf8};
    const std::string bytes = ReadTextBytes(aBody);
    if (bytes.empty()) {
        return;
    }
    const auto encoding = static_cast<unsigned char>(bytes[0]);
    const bool fStated = encoding < kEncodings.size();
    const std::string_view text = std::string_view(bytes).substr(encoding < ' ' ? 1 : 0);
    Keep(aField, text, fStated ? kEncodings[encoding] : TextEncoding::Unstated, aVersion == 4, aCodePage,
         aTexts);
}

std::string ReadField(ByteSource& aBytes, std::uint64_t aPosition, std::size_t aSize) {
    ByteReader reader(aBytes);
    reader.Skip(aPosition);
    return std::string(reader.ReadText(aSize).View());
}

std::string WithoutEnd(const std::string& aText) {
    return aText.substr(0, std::min(aText.find('\0'), aText.size()));
}

/// A text of ID3v1, which goes on in the enhanced part when it fills its place.
ezCString ReadID3v1Field(ByteSource& aBytes, const AudioTails& aTails, std::uint64_t aPlace,
                         std::uint64_t anEnhancedPlace, const CodePage& aCodePage) {
    constexpr std::size_t kSize = 30;
    std::string text = WithoutEnd(ReadField(aBytes, aTails.mID3v1 + aPlace, kSize));
    if (aTails.mEnhancedID3v1 != 0 && text.size() == kSize) {
        text += WithoutEnd(ReadField(aBytes, aTails.mEnhancedID3v1 + anEnhancedPlace, 2 * kSize));
    }
    return CleanText(text, TextEncoding::Unstated, aCodePage);
}

/// The genre's own words in the enhanced part, or its number.
ezCString ReadID3v1Genre(ByteSource& aBytes, const AudioTails& aTails, const CodePage& aCodePage) {
    constexpr std::uint64_t kEnhancedGenre = 185;
    constexpr std::uint64_t kGenre = 127;
    ezCString genre;
    if (aTails.mEnhancedID3v1 != 0) {
        genre = CleanText(ReadField(aBytes, aTails.mEnhancedID3v1 + kEnhancedGenre, 30),
                          TextEncoding::Unstated, aCodePage);
    }
    unsigned char number = 0xFF;
    aBytes.Get(aTails.mID3v1 + kGenre, &number);
    return genre.IsEmpty() ? ezCString(MusicGenreName(number)) : genre;
}

void KeepAPEItem(const ezCString& aKey, std::string_view aBytes, std::uint32_t aVersion,
                 const CodePage& aCodePage, MusicTexts& aTexts) {
    const TextEncoding encoding = aVersion >= 2000 ? TextEncoding::Utf8 : TextEncoding::Unstated;
    for (const Field& field : kFields) {
        if (ezIsEqualNoCase(aKey.View(), field.mAPEKey)) {
            Keep(field, aBytes, encoding, true, aCodePage, aTexts);
        }
    }
}

} // namespace

std::string ReadTextBytes(ByteReader& aBody) {
    if (!aBody.IsUnsynchronised()) {
        const auto size =
            static_cast<std::size_t>(std::min<std::uint64_t>(aBody.GetLeft(), kMusicTexts_MaxSize));
        return std::string(aBody.ReadText(size).View());
    }
    std::string bytes; // of which stuffing makes the count unknown
    while (aBody.GetLeft() != 0 && bytes.size() < kMusicTexts_MaxSize) {
        bytes.push_back(static_cast<char>(aBody.ReadByte()));
    }
    return aBody.HasFailed() ? std::string() : bytes;
}

bool MusicTexts::IsComplete() const {
    return !mTitle.IsEmpty() && !mCreator.IsEmpty() && !mAlbum.IsEmpty() && !mGenre.IsEmpty();
}

void MusicTexts::Complete(const MusicTexts& aTexts) {
    for (const Field& field : kFields) {
        ezCString& place = this->*field.mPlace;
        if (place.IsEmpty()) {
            place = aTexts.*field.mPlace;
        }
    }
}

void MusicTexts::Store(ezMediaInfo& anInfo) const {
    anInfo.mTitle = mTitle;
    anInfo.mCreator = mCreator;
    anInfo.mAlbum = mAlbum;
    anInfo.mGenre = mGenre;
}

MusicTexts ReadID3v2Texts(const ByteReader& aReader, const ID3Tag& aTag, const CodePage& aCodePage) {
    MusicTexts texts;
    ID3Frames frames(aReader, aTag, kMusicTexts_MaxInflated);
    ezCString id;
    ByteReader body = aReader;
    for (std::uint32_t count = 0; count < kMusicTexts_MaxFrames && !texts.IsComplete(); ++count) {
        if (!frames.Next(&id, &body)) {
            break;
        }
        for (const Field& field : kFields) {
            if (id == field.mID22 || id == field.mID23) {
                KeepFrame(field, body, aTag.mVersion, aCodePage, texts);
            }
        }
    }
    return texts;
}

MusicTexts ReadID3v1Texts(ByteSource& aBytes, const AudioTails& aTails, const CodePage& aCodePage) {
    MusicTexts texts;
    if (aTails.mID3v1 != 0) {
        texts.mTitle = ReadID3v1Field(aBytes, aTails, 3, 4, aCodePage);
        texts.mCreator = ReadID3v1Field(aBytes, aTails, 33, 64, aCodePage);
        texts.mAlbum = ReadID3v1Field(aBytes, aTails, 63, 124, aCodePage);
        texts.mGenre = ReadID3v1Genre(aBytes, aTails, aCodePage);
    }
    return texts;
}

MusicTexts ReadLyrics3Texts(ByteSource& aBytes, const AudioTails& aTails, const CodePage& aCodePage) {
    constexpr std::size_t kIDSize = 3;
    constexpr std::size_t kDigits = 5;
    MusicTexts texts;
    ByteReader fields(aBytes);
    fields.Skip(aTails.mLyricsFields);
    fields = fields.Take(aTails.mLyricsEnd - aTails.mLyricsFields);
    for (std::uint32_t count = 0; count < kMusicTexts_MaxFrames && fields.GetLeft() != 0; ++count) {
        const ezCString id = fields.ReadText(kIDSize);
        std::uint64_t size = 0;
        fields.Require(ezReadDecimal(fields.ReadText(kDigits).View(), &size));
        ByteReader body = fields.Take(size);
        for (const Field& field : kFields) {
            if (field.mLyricsID != nullptr && id == field.mLyricsID) {
                Keep(field, ReadTextBytes(body), TextEncoding::Unstated, false, aCodePage, texts);
            }
        }
    }
    return texts;
}

MusicTexts ReadAPETexts(ByteSource& aBytes, const AudioTails& aTails, const CodePage& aCodePage) {
    constexpr std::size_t kMaxKey = 256;
    constexpr std::uint32_t kKindMask = 0x6; // 0: text
    MusicTexts texts;
    ByteReader items(aBytes);
    items.Skip(aTails.mAPEItems);
    items = items.Take(aTails.mAPEEnd - aTails.mAPEItems);
    for (std::uint32_t count = 0; count < kMusicTexts_MaxFrames && items.GetLeft() != 0; ++count) {
        const std::uint32_t size = items.ReadLittle32();
        const std::uint32_t flags = items.ReadLittle32();
        const ezCString key = items.ReadZeroTerminated(kMaxKey);
        ByteReader value = items.Take(size);
        if (!items.HasFailed() && (flags & kKindMask) == 0 && !texts.IsComplete()) {
            KeepAPEItem(key, ReadTextBytes(value), aTails.mAPEVersion, aCodePage, texts);
        }
    }
    return texts;
}
