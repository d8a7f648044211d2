#include "ezFormats/iso/ISOTags.h"

#include "ezBytes/BoxWalk.h"
#include "ezBytes/DateText.h"
#include "ezBytes/TextBytes.h"
#include "ezBytes/Utf8.h"
#include "ezFormats/detail/Limits.h"
#include "ezFormats/iso/ISOLimits.h"
#include "ezFormats/tags/MusicNames.h"
#include "ezFormats/tags/MusicValues.h"
#include "ezFormats/tags/TagNames.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace {

/// A text that is UTF-16 where it begins with a byte order mark.
ezCString CleanMarkedText(std::string_view aBytes, const CodePage& aCodePage) {
    const std::string_view mark = aBytes.substr(0, 2);
    const bool fUtf16 = mark == "\xFE\xFF" || mark == "\xFF\xFE";
    return CleanText(aBytes, fUtf16 ? TextEncoding::Utf16 : TextEncoding::Unstated, aCodePage);
}

// --- iTunes

constexpr std::uint32_t kDataUtf16 = 2;

/// A value of an item, after its kind and language.
ByteReader OpenData(ByteReader aData, std::uint32_t* aKind) {
    *aKind = aData.ReadBig32() & 0xFFFFFFU;
    aData.Skip(4); // locale
    return aData;
}

ezCString ReadData(const ByteReader& aData, const CodePage& aCodePage) {
    std::uint32_t kind = 0;
    ByteReader text = OpenData(aData, &kind);
    return ReadCleanText(text, kind == kDataUtf16 ? TextEncoding::Utf16Big : TextEncoding::Unstated,
                         aCodePage);
}

/// The first value of an item that is not a text, after its kind and language.
ByteReader OpenItem(const ByteReader& anItem, std::uint32_t& aBoxBudget) {
    std::uint32_t kind = 0;
    ByteReader data = anItem;
    data.Require(BoxWalk::Within(anItem, aBoxBudget).Find("data", &data));
    return OpenData(data, &kind);
}

/// A genre by its number, which counts from 1 here.
ezCString ReadGenreItem(const ByteReader& anItem, std::uint32_t& aBoxBudget) {
    const auto number = static_cast<unsigned>(OpenItem(anItem, aBoxBudget).ReadBig(2));
    return number == 0 ? ezCString() : ezCString(MusicGenreName(number - 1));
}

/// The number of a track or disc; how many there are follows.
std::uint32_t ReadNumberItem(const ByteReader& anItem, std::uint32_t& aBoxBudget) {
    ByteReader data = OpenItem(anItem, aBoxBudget);
    data.Skip(2); // reserved
    return static_cast<std::uint32_t>(data.ReadBig(2));
}

/// Reads the values of an item.
void ReadValues(const ByteReader& anItem, const TagField& aField, const CodePage& aCodePage,
                std::uint32_t& aBoxBudget, MusicValues& aValues) {
    BoxWalk walk = BoxWalk::Within(anItem, aBoxBudget);
    ByteReader data = anItem;
    while (walk.Find("data", &data)) {
        aValues.Add(aField, ReadData(data, aCodePage));
    }
}

/// Offers the pictures of an item, which have no types: the first is the cover.
void ReadPictures(const ByteReader& anItem, std::uint32_t& aBoxBudget, CoverFacts& aCover) {
    constexpr std::uint32_t kOther = 0;
    constexpr std::uint32_t kDataJPEG = 13;
    constexpr std::uint32_t kDataPNG = 14;
    BoxWalk walk = BoxWalk::Within(anItem, aBoxBudget);
    ByteReader data = anItem;
    while (!aCover.IsFound() && walk.Find("data", &data)) {
        std::uint32_t kind = 0;
        const ByteReader picture = OpenData(data, &kind);
        const char* const stated = kind == kDataJPEG ? "image/jpeg" : kind == kDataPNG ? "image/png" : "";
        aCover.OfferPicture(kOther, stated, picture);
    }
}

/// Which names the items of a list have, by their number. Items of a list without are known by their types.
class ItemNames {
public:
    /// Reads the content of a "keys" box.
    explicit ItemNames(ByteReader aBox) {
        constexpr std::string_view kStart = "mdtacom.apple.quicktime.";
        aBox.Skip(4); // version and flags
        mCount = std::min(aBox.ReadBig32(), kISO_MaxItemNames);
        for (std::uint32_t i = 0; i < mCount && !aBox.HasFailed(); ++i) {
            const std::uint32_t size = aBox.ReadBig32();
            aBox.Require(size >= 4);
            ByteReader name = aBox.Take(size - 4);
            const ezCString text = name.ReadText(
                static_cast<std::size_t>(std::min<std::uint64_t>(name.GetLeft(), kISO_MaxItemName)));
            const std::string_view start = text.View().substr(0, kStart.size());
            mItems[i] = start == kStart
                            ? FindTagField(TagWords::QuickTimeItem, text.View().substr(kStart.size()))
                            : nullptr;
        }
    }
    /// Null for an item that tells nothing here.
    const TagField* Get(BoxType aType) const {
        for (std::uint32_t i = 0; i < mCount; ++i) {
            if (aType == BoxType(i + 1)) {
                return mItems[i];
            }
        }
        return nullptr;
    }

private:
    std::array<const TagField*, kISO_MaxItemNames> mItems = {};
    std::uint32_t mCount = 0;
};

/// Reads the items of a list that are known by their types.
void ReadItems(const ByteReader& aList, std::uint32_t& aBoxBudget, ISOTags& aTags) {
    MusicTexts& texts = aTags.mItems;
    MusicValues values;
    ezCString numberedGenre;
    BoxWalk walk = BoxWalk::Within(aList, aBoxBudget);
    BoxType type;
    ByteReader item = aList;
    while (walk.Next(&type, &item)) {
        if (const TagField* const field = FindTagField(TagLetters::ISOItem, type.GetCode())) {
            ReadValues(item, *field, aTags.mCodePage, aBoxBudget, values);
        }
        if (type == "covr") {
            ReadPictures(item, aBoxBudget, aTags.mCover);
        } else if (type == "gnre" && numberedGenre.IsEmpty()) {
            numberedGenre = ReadGenreItem(item, aBoxBudget);
        } else if (type == "trkn" && texts.mTrack == 0) {
            texts.mTrack = ReadNumberItem(item, aBoxBudget);
        } else if (type == "disk" && texts.mDisc == 0) {
            texts.mDisc = ReadNumberItem(item, aBoxBudget);
        } else if (type == "cpil") {
            texts.mfCompilation = texts.mfCompilation || OpenItem(item, aBoxBudget).ReadByte() != 0;
        }
    }
    values.Store(texts);
    if (texts.mGenre.IsEmpty()) {
        texts.mGenre = numberedGenre;
    }
    if (texts.mCreator.IsEmpty()) { // whom an album is filed under, where nobody else is named
        texts.mCreator = texts.mAlbumArtist;
    }
}

void ReadNamedItems(const ByteReader& aList, const ItemNames& aNames, std::uint32_t& aBoxBudget,
                    ISOTags& aTags) {
    MusicValues values;
    BoxWalk walk = BoxWalk::Within(aList, aBoxBudget);
    BoxType type;
    ByteReader item = aList;
    while (walk.Next(&type, &item)) {
        if (const TagField* const field = aNames.Get(type)) {
            ReadValues(item, *field, aTags.mCodePage, aBoxBudget, values);
        }
    }
    values.Store(aTags.mItems);
}

void ReadMeta(ByteReader aMeta, std::uint32_t& aBoxBudget, ISOTags& aTags) {
    SkipMetaVersion(aMeta);
    std::optional<ItemNames> names;
    BoxWalk walk = BoxWalk::Within(aMeta, aBoxBudget);
    BoxType type;
    ByteReader content = aMeta;
    while (walk.Next(&type, &content)) {
        if (type == "keys") {
            names.emplace(content);
        } else if (type == "ilst" && names.has_value()) {
            ReadNamedItems(content, *names, aBoxBudget, aTags);
            return;
        } else if (type == "ilst") {
            ReadItems(content, aBoxBudget, aTags);
            return;
        }
    }
}

// --- 3GPP

/// A text of an asset (3GPP TS 26.244, 8). UTF-16 begins with a byte order mark. What follows the text's NUL,
/// the number of a track, is left.
ezCString ReadAsset(ByteReader aBox, const CodePage& aCodePage) {
    aBox.Skip(6); // version, flags, language
    return CleanMarkedText(ReadTextBytes(aBox), aCodePage);
}

/// The year of a recording ("yrrc").
ezCString ReadAssetYear(ByteReader aBox) {
    aBox.Skip(4); // version and flags
    const std::uint64_t year = aBox.ReadBig(2);
    return CleanDate(ezCString::Format("%04u", static_cast<unsigned>(year)).View());
}

// --- QuickTime

/// What Mac Roman has from 80 on.
constexpr std::array<char16_t, 128> kMacRoman = {
    0x00C4, 0x00C5, 0x00C7, 0x00C9, 0x00D1, 0x00D6, 0x00DC, 0x00E1, 0x00E0, 0x00E2, 0x00E4, 0x00E3, 0x00E5,
    0x00E7, 0x00E9, 0x00E8, 0x00EA, 0x00EB, 0x00ED, 0x00EC, 0x00EE, 0x00EF, 0x00F1, 0x00F3, 0x00F2, 0x00F4,
    0x00F6, 0x00F5, 0x00FA, 0x00F9, 0x00FB, 0x00FC, 0x2020, 0x00B0, 0x00A2, 0x00A3, 0x00A7, 0x2022, 0x00B6,
    0x00DF, 0x00AE, 0x00A9, 0x2122, 0x00B4, 0x00A8, 0x2260, 0x00C6, 0x00D8, 0x221E, 0x00B1, 0x2264, 0x2265,
    0x00A5, 0x00B5, 0x2202, 0x2211, 0x220F, 0x03C0, 0x222B, 0x00AA, 0x00BA, 0x03A9, 0x00E6, 0x00F8, 0x00BF,
    0x00A1, 0x00AC, 0x221A, 0x0192, 0x2248, 0x2206, 0x00AB, 0x00BB, 0x2026, 0x00A0, 0x00C0, 0x00C3, 0x00D5,
    0x0152, 0x0153, 0x2013, 0x2014, 0x201C, 0x201D, 0x2018, 0x2019, 0x00F7, 0x25CA, 0x00FF, 0x0178, 0x2044,
    0x20AC, 0x2039, 0x203A, 0xFB01, 0xFB02, 0x2021, 0x00B7, 0x201A, 0x201E, 0x2030, 0x00C2, 0x00CA, 0x00C1,
    0x00CB, 0x00C8, 0x00CD, 0x00CE, 0x00CF, 0x00CC, 0x00D3, 0x00D4, 0xF8FF, 0x00D2, 0x00DA, 0x00DB, 0x00D9,
    0x0131, 0x02C6, 0x02DC, 0x00AF, 0x02D8, 0x02D9, 0x02DA, 0x00B8, 0x02DD, 0x02DB, 0x02C7};

std::string Utf8OfMacRoman(std::string_view aBytes) {
    std::string text;
    for (const char character : aBytes) {
        const auto byte = static_cast<unsigned char>(character);
        AppendUtf8(text, byte < 0x80 ? char32_t{byte} : char32_t{kMacRoman[byte - 0x80U]});
    }
    return text;
}

/// The first of a list of texts, each after its length and its language. Languages by Macintosh number mean
/// the Macintosh's own letters, unless the writer knew better.
ezCString ReadPhrase(ByteReader aBox, const CodePage& aCodePage) {
    constexpr std::uint64_t kFirstPackedLanguage = 0x400;
    const std::uint64_t size = aBox.ReadBig(2);
    const std::uint64_t language = aBox.ReadBig(2);
    ByteReader content = aBox.Take(size);
    const std::string bytes = ReadTextBytes(content);
    if (language < kFirstPackedLanguage && !IsWholeUtf8(bytes)) {
        return CleanText(Utf8OfMacRoman(bytes), TextEncoding::Utf8);
    }
    return CleanMarkedText(bytes, aCodePage);
}

void TakeText(BoxType aType, TagLetters aVocabulary, const ByteReader& aContent,
              ezCString (*aRead)(ByteReader, const CodePage&), const CodePage& aCodePage, MusicTexts& aFirst,
              MusicTexts& aSecond) {
    const TagField* const field = FindTagField(aVocabulary, aType.GetCode());
    if (field == nullptr) {
        return;
    }
    MusicTexts& texts = field->mfSecond ? aSecond : aFirst;
    if (!texts.Has(field->mField)) {
        MusicNames names; // of one: what a phrase means by a comma or a number nobody knows
        names.Add(aRead(aContent, aCodePage));
        texts.Take(field->mField, names);
    }
}

} // namespace

MusicTexts ISOTags::Merge() {
    MusicTexts texts = std::move(mItems);
    texts.Complete(mAssets);
    texts.Complete(mPhrases);
    return texts;
}

void ReadTags(const ByteReader& aBox, bool afMeta, std::uint32_t& aBoxBudget, ISOTags& aTags) {
    if (afMeta) {
        ReadMeta(aBox, aBoxBudget, aTags);
        return;
    }
    MusicTexts secondAssets;
    MusicTexts secondPhrases;
    BoxWalk walk = BoxWalk::Within(aBox, aBoxBudget);
    BoxType type;
    ByteReader content = aBox;
    while (walk.Next(&type, &content)) {
        if (type == "meta") {
            ReadMeta(content, aBoxBudget, aTags);
            continue;
        }
        TakeText(type, TagLetters::ISOAsset, content, ReadAsset, aTags.mCodePage, aTags.mAssets,
                 secondAssets);
        if (type == "yrrc" && aTags.mAssets.mDate.IsEmpty()) {
            aTags.mAssets.mDate = ReadAssetYear(content);
        }
        TakeText(type, TagLetters::ISOPhrase, content, ReadPhrase, aTags.mCodePage, aTags.mPhrases,
                 secondPhrases);
    }
    aTags.mAssets.Complete(secondAssets);
    aTags.mPhrases.Complete(secondPhrases);
}
