#include "companions/ezFormats/iso/ISOBytes.h"

#include <gtest/gtest.h>

using namespace iso;

namespace {

std::string Texts(const std::string& aMore) {
    return Values(Parsed(File({Track()}, aMore)), {"title", "creator", "album", "genre"});
}

/// A text of 3GPP: language, text.
std::string Asset(const std::string& aType, const std::string& aText) {
    return FullBox(aType, Big(0x15C7, 2) + aText);
}

/// Texts of QuickTime: length, language, text, of as many as there are.
std::string Phrase(const std::string& aType, const std::string& aText, unsigned aLanguage = 0) {
    return Box(aType, Big(aText.size(), 2) + Big(aLanguage, 2) + aText + Big(5, 2) + Big(1, 2) + "Autre");
}

} // namespace

TEST(ISOTags, ItemsAreRead) {
    EXPECT_EQ(Texts(Items(Item("\xA9nam", "Title") +
                          Item("\xA9"
                               "ART",
                               "Artist") +
                          Item("\xA9"
                               "alb",
                               "Album") +
                          Item("\xA9gen", "Genre"))),
              "title=\"Title\" creator=\"Artist\" album=\"Album\" genre=\"Genre\"");
    // The artist of the album stands in for that of the song, and a number for a genre: 8 is Jazz, from 1.
    EXPECT_EQ(Texts(Items(Item("aART", "Album Artist") + Item("gnre", Big(9, 2), 0))),
              "creator=\"Album Artist\" genre=\"Jazz\"");
    EXPECT_EQ(
        Texts(Items(Item("aART", "Album Artist") + Item("gnre", Big(9, 2), 0) + Item("\xA9gen", "Folk") +
                    Item("\xA9"
                         "ART",
                         "Artist"))),
        "creator=\"Artist\" genre=\"Folk\"");
    EXPECT_EQ(Texts(Items(Item("gnre", Big(0, 2), 0))), "");
    EXPECT_EQ(Texts(Items(Item("gnre", Big(60000, 2), 0))), "");
}

TEST(ISOTags, SeveralValuesOfAnItemAreJoinedAsThoseOfID3Are) {
    const std::string art = "\xA9"
                            "ART";
    const auto data = [](const std::string& aText, unsigned aKind = 1) {
        return Box("data", Big(aKind, 4) + Big(0, 4) + aText);
    };
    // One item of several values, and several items; each name once.
    EXPECT_EQ(Texts(Items(Box(art, data("One") + data("Two") + data("One")))), "creator=\"One, Two\"");
    EXPECT_EQ(
        Texts(Items(Item(art, "One") + Item("\xA9nam", "Title") + Item(art, "Two") + Item(art, "Three"))),
        "title=\"Title\" creator=\"One, Two, Three\"");
    EXPECT_EQ(Texts(Items(Box("\xA9gen", data("Folk") + data(std::string("\0J\0a\0z\0z", 8), 2)))),
              "genre=\"Folk, Jazz\"");
    EXPECT_EQ(Texts(Items(Item("aART", "One") + Item("aART", "Two"))), "creator=\"One, Two\"");
    // Titles and albums have one, the first that is not empty.
    EXPECT_EQ(Texts(Items(Box("\xA9nam", data("") + data("One") + data("Two")) + Item("\xA9nam", "Three") +
                          Item("\xA9"
                               "alb",
                               "Four") +
                          Item("\xA9"
                               "alb",
                               "Five"))),
              "title=\"One\" album=\"Four\"");
    // What is no value stands between.
    EXPECT_EQ(Texts(Items(Box(art, Box("mean", "....") + data("One") + Box("name", "....") + data("Two")))),
              "creator=\"One, Two\"");
    // Eight are taken.
    std::string many;
    std::string eight;
    for (int i = 0; i < 9; ++i) {
        many += data("Name " + std::to_string(i));
        eight += (i == 0 ? "Name " : i < 8 ? ", Name " : "") + (i < 8 ? std::to_string(i) : "");
    }
    EXPECT_EQ(Texts(Items(Box(art, many))), "creator=\"" + eight + "\"");
    EXPECT_EQ(Texts(Items(Item(art, std::string(900, 'a')) + Item(art, std::string(900, 'b')))),
              "creator=\"" + std::string(900, 'a') + ", " + std::string(122, 'b') + "\"");
}

TEST(ISOTags, ItemsOfEitherEncodingAreUtf8WithoutControlCharacters) {
    EXPECT_EQ(Texts(Items(Item("\xA9nam", std::string("\0G\0r\0\xFC\0n", 8), 2))), "title=\"Gr\xC3\xBCn\"");
    EXPECT_EQ(Texts(Items(Item("\xA9nam", "Gr\xC3\xBCn"))), "title=\"Gr\xC3\xBCn\"");
    EXPECT_EQ(Texts(Items(Item("\xA9nam", "Gr\xFCn"))), "title=\"Gr\xC3\xBCn\""); // by mistake
    EXPECT_EQ(Texts(Items(Item("\xA9nam", "A\x1B[2J\nB"))), "title=\"A[2J B\"");
    EXPECT_EQ(Texts(Items(Item("\xA9nam", ""))), "");
    EXPECT_EQ(Texts(Items(Box("\xA9nam", "no data box"))), "");
    // A picture among them is stepped over.
    EXPECT_EQ(Texts(Items(Item("covr", std::string(200000, 'p'), 13) + Item("\xA9nam", "Behind"))),
              "title=\"Behind\"");
}

TEST(ISOTags, LengthOfATextIsBounded) {
    const std::string title = Texts(Items(Item("\xA9nam", std::string(100000, 'x'))));
    EXPECT_EQ(title, "title=\"" + std::string(1024, 'x') + "\"");
}

TEST(ISOTags, AssetsOf3GPPAreRead) {
    const std::string nul(1, '\0');
    EXPECT_EQ(Texts(Box("udta", Asset("titl", "Title" + nul) + Asset("perf", "Performer" + nul) +
                                    Asset("albm", "Album" + nul + "\x07") + Asset("gnre", "Genre" + nul))),
              "title=\"Title\" creator=\"Performer\" album=\"Album\" genre=\"Genre\"");
    EXPECT_EQ(Texts(Box("udta", Asset("auth", "Author" + nul) +
                                    Asset("titl", std::string("\xFE\xFF\0T\0\xE9\0\0", 8)))),
              "title=\"T\xC3\xA9\" creator=\"Author\"");
    EXPECT_EQ(Texts(Box("udta", Asset("auth", "Author" + nul) + Asset("perf", "Performer" + nul))),
              "creator=\"Performer\"");
}

TEST(ISOTags, PhrasesOfQuickTimeAreRead) {
    const std::string art = "\xA9"
                            "ART";
    EXPECT_EQ(Texts(Box("udta", Phrase("\xA9nam", "Title") + Phrase(art, "Artist"))),
              "title=\"Title\" creator=\"Artist\"");
    // By Macintosh number 8E is an e with an accent; UTF-8 stays what it is; from 0x400 on it is stated.
    EXPECT_EQ(Texts(Box("udta", Phrase("\xA9nam", "Th\x8E"))), "title=\"Th\xC3\xA9\"");
    EXPECT_EQ(Texts(Box("udta", Phrase("\xA9nam", "Th\xC3\xA9"))), "title=\"Th\xC3\xA9\"");
    EXPECT_EQ(Texts(Box("udta", Phrase("\xA9nam", std::string("\xFE\xFF\0T", 4), 0x15C7))), "title=\"T\"");
    // A length beyond the box.
    EXPECT_EQ(Texts(Box("udta", Box("\xA9nam", Big(500, 2) + Big(0, 2) + "short"))), "");
}

TEST(ISOTags, ItemsGoBeforeAssetsAndAssetsBeforePhrases) {
    const std::string meta = Items(Item("\xA9nam", "Item")).substr(8);
    const std::string all = Phrase("\xA9nam", "Phrase") + Asset("titl", "Asset") + meta;
    EXPECT_EQ(Texts(Box("udta", all)), "title=\"Item\"");
    EXPECT_EQ(Texts(Box("udta", Phrase("\xA9nam", "Phrase") + Asset("titl", "Asset"))), "title=\"Asset\"");
    // Items beside the user's data, and in a box without a version, as QuickTime writes it.
    EXPECT_EQ(Texts(meta), "title=\"Item\"");
    EXPECT_EQ(Texts(Box("meta", meta.substr(12))), "title=\"Item\"");
}

TEST(ISOTags, FirstPictureIsTheCover) {
    const auto cover = [](const std::string& anItems) {
        return Values(Parsed(File({Track()}, Items(anItems))), {"cm", "cs", "title"});
    };
    const std::string png = "\x89PNG\r\n\x1A\nours";
    const auto data = [](unsigned aKind, const std::string& aPicture) {
        return Box("data", Big(aKind, 4) + Big(0, 4) + aPicture);
    };
    EXPECT_EQ(cover(Item("covr", png, 13) + Item("\xA9nam", "T")), "cm=\"image/png\" cs=12 title=\"T\"");
    EXPECT_EQ(cover(Box("covr", data(13, "unheard") + data(14, png))), "cm=\"image/jpeg\" cs=7");
    EXPECT_EQ(cover(Item("covr", "unheard", 14)), "cm=\"image/png\" cs=7");
    EXPECT_EQ(cover(Box("covr", data(0, "unheard") + data(0, "GIF89a"))), "cm=\"image/gif\" cs=6");
    EXPECT_EQ(cover(Item("covr", "", 13) + Item("covr", "BMours", 27)), "cm=\"image/bmp\" cs=6");
    EXPECT_EQ(cover(Box("covr", "no box")), "");
}
