#include "ezFormats/iso/ISOTags.h"

#include "ezBytes/BoxWalk.h"
#include "ezBytes/TextBytes.h"
#include "ezBytes/Utf8.h"
#include "ezFormats/detail/Limits.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace {

/// Which text a box is, of those that MusicTexts has, and whether one that is more to the point goes before.
struct TextBox {
    BoxType mType;
    ezCString MusicTexts::*mText;
    bool mfSecond;
};

constexpr std::array<TextBox, 5> kItems = {{{"\xA9nam", &MusicTexts::mTitle, false},
                                            {"\xA9"
                                             "ART",
                                             &MusicTexts::mCreator, false},
                                            {"aART", &MusicTexts::mCreator, true},
                                            {"\xA9"
                                             "alb",
                                             &MusicTexts::mAlbum, false},
                                            {"\xA9gen", &MusicTexts::mGenre, false}}};

constexpr std::array<TextBox, 5> kAssets = {{{"titl", &MusicTexts::mTitle, false},
                                             {"perf", &MusicTexts::mCreator, false},
                                             {"auth", &MusicTexts::mCreator, true},
                                             {"albm", &MusicTexts::mAlbum, false},
                                             {"gnre", &MusicTexts::mGenre, false}}};

constexpr std::array<TextBox, 5> kPhrases = {{{"\xA9nam", &MusicTexts::mTitle, false},
                                              {"\xA9"
                                               "ART",
                                               &MusicTexts::mCreator, false},
                                              {"\xA9"
                                               "aut",
                                               &MusicTexts::mCreator, true},
                                              {"\xA9"
                                               "alb",
                                               &MusicTexts::mAlbum, false},
                                              {"\xA9gen", &MusicTexts::mGenre, false}}};

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
    aData.Skip(4);
    return aData;
}

ezCString ReadData(const ByteReader& aData) {
    std::uint32_t kind = 0;
    ByteReader text = OpenData(aData, &kind);
    return CleanText(ReadTextBytes(text),
                     kind == kDataUtf16 ? TextEncoding::Utf16Big : TextEncoding::Unstated);
}

/// A genre by its number, which counts from 1 here.
ezCString ReadGenreItem(const ByteReader& anItem, std::uint32_t& aBoxBudget) {
    std::uint32_t kind = 0;
    ByteReader data = anItem;
    data.Require(BoxWalk::Within(anItem, aBoxBudget).Find("data", &data));
    data = OpenData(data, &kind);
    const auto number = static_cast<unsigned>(data.ReadBig(2));
    return number == 0 ? ezCString() : ezCString(MusicGenreName(number - 1));
}

/// The values of one text: of an item that has several, or of several items. Most texts have one, which is
/// clean as it stands and makes no list.
class ItemValues {
public:
    void Add(const ezCString& aValue, bool afSeveral) {
        if (aValue.IsEmpty() || mCount >= (afSeveral ? kMusicTexts_MaxCount : 1)) {
            return;
        }
        if (++mCount == 1) {
            mFirst = aValue;
            return;
        }
        if (mNames.empty()) {
            AddMusicName(mNames, mFirst.View());
        }
        AddMusicName(mNames, aValue.View());
    }
    ezCString GetText() const { return mNames.empty() ? mFirst : CleanText(mNames, TextEncoding::Utf8); }

private:
    ezCString mFirst;
    std::string mNames; ///< of several values
    std::size_t mCount = 0;
};

void ReadItem(const ByteReader& anItem, bool afSeveral, std::uint32_t& aBoxBudget, ItemValues& aValues) {
    BoxWalk walk = BoxWalk::Within(anItem, aBoxBudget);
    ByteReader data = anItem;
    while (walk.Find("data", &data)) {
        aValues.Add(ReadData(data), afSeveral);
    }
}

void ReadItems(const ByteReader& aList, std::uint32_t& aBoxBudget, MusicTexts& aTexts) {
    std::array<ItemValues, kItems.size()> values;
    MusicTexts second;
    BoxWalk walk = BoxWalk::Within(aList, aBoxBudget);
    BoxType type;
    ByteReader item = aList;
    while (walk.Next(&type, &item)) {
        for (std::size_t i = 0; i < kItems.size(); ++i) {
            if (type == kItems[i].mType) {
                const bool fSeveral =
                    kItems[i].mText == &MusicTexts::mCreator || kItems[i].mText == &MusicTexts::mGenre;
                ReadItem(item, fSeveral, aBoxBudget, values[i]);
            }
        }
        if (type == "gnre" && second.mGenre.IsEmpty()) {
            second.mGenre = ReadGenreItem(item, aBoxBudget);
        }
    }
    for (std::size_t i = 0; i < kItems.size(); ++i) {
        ezCString& text = (kItems[i].mfSecond ? second : aTexts).*kItems[i].mText;
        if (text.IsEmpty()) {
            text = values[i].GetText();
        }
    }
    aTexts.Complete(second);
}

void ReadMeta(ByteReader aMeta, std::uint32_t& aBoxBudget, MusicTexts& aTexts) {
    SkipMetaVersion(aMeta);
    ByteReader list = aMeta;
    if (BoxWalk::Within(aMeta, aBoxBudget).Find("ilst", &list)) {
        ReadItems(list, aBoxBudget, aTexts);
    }
}

// --- 3GPP

/// A text behind version, flags and language (3GPP TS 26.244, 8). UTF-16 begins with a byte order mark. What
/// follows the text's NUL, the number of a track, is left.
ezCString ReadAsset(ByteReader aBox) {
    aBox.Skip(6);
    return CleanMarkedText(ReadTextBytes(aBox));
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

/// The first of a list of texts, each behind its length and its language. Languages by Macintosh number mean
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
        ezCString& text = (box.mfSecond ? aSecond : aFirst).*box.mText;
        if (aType == box.mType && text.IsEmpty()) {
            text = aRead(aContent);
        }
    }
}

} // namespace

MusicTexts ISOTags::Merge() const {
    MusicTexts texts = mItems;
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
        }
        TakeText(type, kAssets, content, ReadAsset, aTags.mAssets, secondAssets);
        TakeText(type, kPhrases, content, ReadPhrase, aTags.mPhrases, secondPhrases);
    }
    aTags.mAssets.Complete(secondAssets);
    aTags.mPhrases.Complete(secondPhrases);
}
