#include "ezFormats/iso/ISOTags.h"

#include "ezBytes/BoxWalk.h"
#include "ezBytes/DateText.h"
#include "ezBytes/TextBytes.h"
#include "ezBytes/Utf8.h"
#include "ezFormats/detail/Limits.h"
#include "ezFormats/iso/ISOLimits.h"
#include "ezFormats/tags/MusicNames.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace {

/// Which field of a piece a box tells, and whether one that is more to the point goes before.
struct TextBox {
    BoxType mType;
    MusicField mField;
    bool mfSecond;
};

constexpr std::array<TextBox, 7> kItems = {{{"\xA9nam", MusicField::Title, false},
                                            {"\xA9"
                                             "ART",
                                             MusicField::Creator, false},
                                            {"aART", MusicField::AlbumArtist, false},
                                            {"\xA9"
                                             "alb",
                                             MusicField::Album, false},
                                            {"\xA9gen", MusicField::Genre, false},
                                            {"\xA9wrt", MusicField::Composer, false},
                                            {"\xA9"
                                             "day",
                                             MusicField::Date, false}}};

/// QuickTime's names of items (QuickTime File Format, "Metadata").
struct NamedItem {
    std::string_view mName; ///< after "com.apple.quicktime."
    MusicField mField;
    bool mfSecond;
};
constexpr std::array<NamedItem, 7> kNamedItems = {{{"title", MusicField::Title, false},
                                                   {"artist", MusicField::Creator, false},
                                                   {"author", MusicField::Creator, true},
                                                   {"album", MusicField::Album, false},
                                                   {"genre", MusicField::Genre, false},
                                                   {"creationdate", MusicField::Date, false},
                                                   {"year", MusicField::Date, true}}};

constexpr std::array<TextBox, 5> kAssets = {{{"titl", MusicField::Title, false},
                                             {"perf", MusicField::Creator, false},
                                             {"auth", MusicField::Creator, true},
                                             {"albm", MusicField::Album, false},
                                             {"gnre", MusicField::Genre, false}}};

constexpr std::array<TextBox, 8> kPhrases = {{{"\xA9nam", MusicField::Title, false},
                                              {"\xA9"
                                               "ART",
                                               MusicField::Creator, false},
                                              {"\xA9"
                                               "aut",
                                               MusicField::Creator, true},
                                              {"\xA9"
                                               "alb",
                                               MusicField::Album, false},
                                              {"\xA9gen", MusicField::Genre, false},
                                              {"\xA9wrt", MusicField::Composer, false},
                                              {"\xA9"
                                               "com",
                                               MusicField::Composer, true},
                                              {"\xA9"
                                               "day",
                                               MusicField::Date, false}}};

/// A text that is UTF-16 where it begins with a byte order mark.
ezCString CleanMarkedText(std::string_view aBytes) {
    const std::string_view mark = aBytes.substr(0, 2);
    const bool fUtf16 = mark == "\xFE\xFF" || mark == "\xFF\xFE";
    return CleanText(aBytes, fUtf16 ? TextEncoding::Utf16 : TextEncoding::Unstated);
}

// --- iTunes

constexpr std::uint32_t kDataUtf16 = 2;

/// A value of an item, after its kind and language.
ByteReader OpenData(ByteReader aData, std::uint32_t* aKind) {
    *aKind = aData.ReadBig32() & 0xFFFFFFU;
    aData.Skip(4); // locale
    return aData;
}

ezCString ReadData(const ByteReader& aData) {
    std::uint32_t kind = 0;
    ByteReader text = OpenData(aData, &kind);
    return CleanText(ReadTextBytes(text),
                     kind == kDataUtf16 ? TextEncoding::Utf16Big : TextEncoding::Unstated);
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

/// The values of the fields that items tell in words: of an item that has several, or of several items.
class ItemValues {
public:
    void Read(const ByteReader& anItem, MusicField aField, std::uint32_t& aBoxBudget) {
        Values& values = mFields[static_cast<std::size_t>(aField)];
        const bool fSeveral = MusicField_HasSeveral(aField);
        BoxWalk walk = BoxWalk::Within(anItem, aBoxBudget);
        ByteReader data = anItem;
        while (walk.Find("data", &data)) {
            const ezCString text = ReadData(data);
            if (!text.IsEmpty() && (values.mCount == 0 || fSeveral)) {
                ++values.mCount;
                values.mNames.Add(text);
            }
        }
    }

    void Store(MusicTexts& aTexts) const {
        for (std::size_t i = 0; i < mFields.size(); ++i) {
            const auto field = static_cast<MusicField>(i);
            if (mFields[i].mCount != 0 && !aTexts.Has(field)) {
                aTexts.Take(field, mFields[i].mNames);
            }
        }
    }

private:
    struct Values {
        MusicNames mNames;
        std::size_t mCount = 0;
    };

    std::array<Values, static_cast<std::size_t>(MusicField::Date) + 1> mFields;
};

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
            mItems[i] = start == kStart ? Find(text.View().substr(kStart.size())) : nullptr;
        }
    }
    /// Null for an item that tells nothing here.
    const NamedItem* Get(BoxType aType) const {
        for (std::uint32_t i = 0; i < mCount; ++i) {
            if (aType == BoxType(i + 1)) {
                return mItems[i];
            }
        }
        return nullptr;
    }

private:
    static const NamedItem* Find(std::string_view aName) {
        for (const NamedItem& item : kNamedItems) {
            if (item.mName == aName) {
                return &item;
            }
        }
        return nullptr;
    }

    std::array<const NamedItem*, kISO_MaxItemNames> mItems = {};
    std::uint32_t mCount = 0;
};

/// Reads the items of a list that are known by their types.
void ReadItems(const ByteReader& aList, std::uint32_t& aBoxBudget, MusicTexts& aTexts) {
    ItemValues values;
    ezCString numberedGenre;
    BoxWalk walk = BoxWalk::Within(aList, aBoxBudget);
    BoxType type;
    ByteReader item = aList;
    while (walk.Next(&type, &item)) {
        for (const TextBox& box : kItems) {
            if (type == box.mType) {
                values.Read(item, box.mField, aBoxBudget);
            }
        }
        if (type == "gnre" && numberedGenre.IsEmpty()) {
            numberedGenre = ReadGenreItem(item, aBoxBudget);
        } else if (type == "trkn" && aTexts.mTrack == 0) {
            aTexts.mTrack = ReadNumberItem(item, aBoxBudget);
        } else if (type == "disk" && aTexts.mDisc == 0) {
            aTexts.mDisc = ReadNumberItem(item, aBoxBudget);
        } else if (type == "cpil") {
            aTexts.mfCompilation = aTexts.mfCompilation || OpenItem(item, aBoxBudget).ReadByte() != 0;
        }
    }
    values.Store(aTexts);
    if (aTexts.mGenre.IsEmpty()) {
        aTexts.mGenre = numberedGenre;
    }
    if (aTexts.mCreator.IsEmpty()) { // whom an album is filed under, where nobody else is named
        aTexts.mCreator = aTexts.mAlbumArtist;
    }
}

void ReadNamedItems(const ByteReader& aList, const ItemNames& aNames, std::uint32_t& aBoxBudget,
                    MusicTexts& aTexts) {
    ItemValues values;
    ItemValues second;
    BoxWalk walk = BoxWalk::Within(aList, aBoxBudget);
    BoxType type;
    ByteReader item = aList;
    while (walk.Next(&type, &item)) {
        const NamedItem* const name = aNames.Get(type);
        if (name != nullptr) {
            (name->mfSecond ? second : values).Read(item, name->mField, aBoxBudget);
        }
    }
    values.Store(aTexts);
    second.Store(aTexts);
}

void ReadMeta(ByteReader aMeta, std::uint32_t& aBoxBudget, MusicTexts& aTexts) {
    SkipMetaVersion(aMeta);
    std::optional<ItemNames> names;
    BoxWalk walk = BoxWalk::Within(aMeta, aBoxBudget);
    BoxType type;
    ByteReader content = aMeta;
    while (walk.Next(&type, &content)) {
        if (type == "keys") {
            names.emplace(content);
        } else if (type == "ilst" && names.has_value()) {
            ReadNamedItems(content, *names, aBoxBudget, aTexts);
            return;
        } else if (type == "ilst") {
            ReadItems(content, aBoxBudget, aTexts);
            return;
        }
    }
}

// --- 3GPP

/// A text of an asset (3GPP TS 26.244, 8). UTF-16 begins with a byte order mark. What follows the text's NUL,
/// the number of a track, is left.
ezCString ReadAsset(ByteReader aBox) {
    aBox.Skip(6); // version, flags, language
    return CleanMarkedText(ReadTextBytes(aBox));
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
ezCString ReadPhrase(ByteReader aBox) {
    constexpr std::uint64_t kFirstPackedLanguage = 0x400;
    const std::uint64_t size = aBox.ReadBig(2);
    const std::uint64_t language = aBox.ReadBig(2);
    ByteReader content = aBox.Take(size);
    const std::string bytes = ReadTextBytes(content);
    if (language < kFirstPackedLanguage && !IsWholeUtf8(bytes)) {
        return CleanText(Utf8OfMacRoman(bytes), TextEncoding::Utf8);
    }
    return CleanMarkedText(bytes);
}

template <std::size_t Size>
void TakeText(BoxType aType, const std::array<TextBox, Size>& aBoxes, const ByteReader& aContent,
              ezCString (*aRead)(ByteReader), MusicTexts& aFirst, MusicTexts& aSecond) {
    for (const TextBox& box : aBoxes) {
        MusicTexts& texts = box.mfSecond ? aSecond : aFirst;
        if (aType == box.mType && !texts.Has(box.mField)) {
            MusicNames names; // of one: what a phrase means by a comma or a number nobody knows
            names.Add(aRead(aContent));
            texts.Take(box.mField, names);
        }
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
        ReadMeta(aBox, aBoxBudget, aTags.mItems);
        return;
    }
    MusicTexts secondAssets;
    MusicTexts secondPhrases;
    BoxWalk walk = BoxWalk::Within(aBox, aBoxBudget);
    BoxType type;
    ByteReader content = aBox;
    while (walk.Next(&type, &content)) {
        if (type == "meta") {
            ReadMeta(content, aBoxBudget, aTags.mItems);
            continue;
        }
        TakeText(type, kAssets, content, ReadAsset, aTags.mAssets, secondAssets);
        if (type == "yrrc" && aTags.mAssets.mDate.IsEmpty()) {
            aTags.mAssets.mDate = ReadAssetYear(content);
        }
        TakeText(type, kPhrases, content, ReadPhrase, aTags.mPhrases, secondPhrases);
    }
    aTags.mAssets.Complete(secondAssets);
    aTags.mPhrases.Complete(secondPhrases);
}
