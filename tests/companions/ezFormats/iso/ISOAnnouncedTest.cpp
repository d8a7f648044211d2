#include "companions/ezFormats/iso/ISOBytes.h"

#include "ezFormats/detail/Limits.h"
#include "ezFormats/iso/ISOLimits.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace iso;

// What a server announces of a film or song beside its title, creator, album and genre: a row a rule.

namespace {

struct Row {
    const char* mName;
    std::string mFile;
    std::string mExpected; ///< keys and values in the order of Announced
};

std::string Announced(const std::string& aFile) {
    return Values(Parsed(aFile), {"da", "tn", "dn", "cp", "aa", "co", "as", "gs", "la"});
}

void Expect(const std::vector<Row>& aRows) {
    for (const Row& row : aRows) {
        EXPECT_EQ(Announced(row.mFile), row.mExpected) << row.mName;
    }
}

const std::string kArt = std::string("\xA9") + "ART";
const std::string kDay = std::string("\xA9") + "day";
const std::string kWrt = std::string("\xA9") + "wrt";
const std::string kCom = std::string("\xA9") + "com";
const std::string kGen = std::string("\xA9") + "gen";

std::string With(const std::string& aMore) {
    return File({Track()}, aMore);
}
std::string WithItem(const std::string& aType, const std::string& aText, unsigned aKind = 1) {
    return With(Items(Item(aType, aText, aKind)));
}
std::string Data(const std::string& aText) {
    return Box("data", Big(1, 4) + Big(0, 4) + aText);
}
/// A text of QuickTime.
std::string Phrase(const std::string& aType, const std::string& aText) {
    return With(Box("udta", Box(aType, Big(aText.size(), 2) + Big(0, 2) + aText)));
}
/// A number as "trkn" and "disk" have it.
std::string Number(unsigned aNumber, unsigned aCount) {
    return Big(0, 2) + Big(aNumber, 2) + Big(aCount, 2) + Big(0, 2);
}
/// QuickTime's items by name; "meta" there has no version.
std::string Named(const std::vector<std::string>& aNames, const std::string& anItems) {
    std::string names = Big(aNames.size(), 4);
    for (const std::string& name : aNames) {
        names += Big(name.size() + 8, 4) + "mdta" + name;
    }
    const std::string handler = FullBox("hdlr", Big(0, 4) + "mdta" + Big(0, 13));
    return With(Box("meta", handler + FullBox("keys", names) + Box("ilst", anItems)));
}
std::string NamedItem(unsigned aNumber, const std::string& aText) {
    return Item(Big(aNumber, 4), aText);
}
const std::string kStart = "com.apple.quicktime.";

Track Sound(unsigned aPacked, const std::string& aLanguage = "") {
    Track track;
    track.mPackedLanguage = aPacked;
    track.mLanguage = aLanguage;
    return track;
}
/// Three letters, five bits each.
unsigned Packed(const std::string& aCode) {
    unsigned packed = 0;
    for (const char letter : aCode) {
        packed = packed << 5 | (static_cast<unsigned char>(letter) - 0x60U);
    }
    return packed;
}

} // namespace

TEST(ISOAnnounced, DatesAreThoseOfEveryTag) {
    Expect({
        {"item", WithItem(kDay, "1999"), "da=\"1999\""},
        {"item, to the second", WithItem(kDay, "1999-12-31T23:59:58Z"), "da=\"1999-12-31T23:59:58Z\""},
        {"no such month", WithItem(kDay, "2024-13-45"), ""},
        {"words", WithItem(kDay, "the nineties"), ""},
        {"3GPP", With(Box("udta", FullBox("yrrc", Big(1999, 2)))), "da=\"1999\""},
        {"3GPP, none", With(Box("udta", FullBox("yrrc", Big(0, 2)))), ""},
        {"3GPP, no such year", With(Box("udta", FullBox("yrrc", Big(65535, 2)))), ""},
        {"3GPP, cut", With(Box("udta", FullBox("yrrc", ""))), ""},
        {"QuickTime", Phrase(kDay, "1999-12-31"), "da=\"1999-12-31\""},
        {"by name", Named({kStart + "creationdate"}, NamedItem(1, "1999-12-31T23:59:58+0200")),
         "da=\"1999-12-31T23:59:58+02:00\""},
        {"by name, the day before the year",
         Named({kStart + "year", kStart + "creationdate"}, NamedItem(1, "1998") + NamedItem(2, "1999-12-31")),
         "da=\"1999-12-31\""},
        {"the year where the day is none",
         Named({kStart + "year", kStart + "creationdate"}, NamedItem(1, "1998") + NamedItem(2, "soon")),
         "da=\"1998\""},
        {"items before QuickTime's",
         With(Box("udta", FullBox("meta", FullBox("hdlr", Big(0, 4) + "mdirappl" + Big(0, 9)) +
                                              Box("ilst", Item(kDay, "1998"))) +
                              Box(kDay, Big(4, 2) + Big(0, 2) + "1999"))),
         "da=\"1998\""},
    });
}

TEST(ISOAnnounced, NumbersAreThoseOfItems) {
    Expect({
        {"track", WithItem("trkn", Number(3, 12), 0), "tn=3"},
        {"track of no known count", WithItem("trkn", Number(3, 0), 0), "tn=3"},
        {"none", WithItem("trkn", Number(0, 12), 0), ""},
        {"the largest", WithItem("trkn", Number(65535, 0), 0), "tn=65535"},
        {"cut", WithItem("trkn", "\0\0", 0), ""},
        {"without a value", With(Items(Box("trkn", ""))), ""},
        {"the first one", With(Items(Item("trkn", Number(3, 0), 0) + Item("trkn", Number(4, 0), 0))), "tn=3"},
        {"disc", WithItem("disk", Number(1, 2).substr(0, 6), 0), "dn=1"},
        {"compilation", WithItem("cpil", "\1", 21), "cp=1"},
        {"none of it", WithItem("cpil", std::string(1, '\0'), 21), ""},
        {"nothing of it", WithItem("cpil", "", 21), ""},
    });
}

TEST(ISOAnnounced, NamesAreKeptInFullWhereThereAreSeveral) {
    const std::string names =
        Named({"com.example.title", kStart + "artist", kStart + "composer", kStart + "genre"},
              NamedItem(1, "X") + NamedItem(2, "Ann") + NamedItem(2, "Bob") + NamedItem(3, "X") +
                  NamedItem(4, "Rock") + NamedItem(5, "X") + NamedItem(0, "X"));
    Expect({
        {"one", WithItem(kArt, "Ann"), ""},
        {"values of an item", With(Items(Box(kArt, Data("Ann, Lady") + Data("Bob") + Data("Bob")))),
         "as=\"Ann, Lady\\nBob\""},
        {"items", With(Items(Item(kGen, "Rock") + Item(kGen, "Pop"))), "gs=\"Rock\\nPop\""},
        {"album artist", WithItem("aART", "Band"), "aa=\"Band\""},
        {"album artists", With(Items(Box("aART", Data("Ann") + Data("Bob")))), "aa=\"Ann, Bob\""},
        {"composer", WithItem(kWrt, "Cara"), "co=\"Cara\""},
        {"composers", With(Items(Box(kWrt, Data("Cara") + Data("Dan")))), "co=\"Cara, Dan\""},
        {"composer of QuickTime", Phrase(kWrt, "Cara"), "co=\"Cara\""},
        {"by its other name", Phrase(kCom, "Cara"), "co=\"Cara\""},
        {"by name", names, "as=\"Ann\\nBob\""},
    });
    EXPECT_EQ(Values(Parsed(names), {"title", "creator", "genre"}), "creator=\"Ann, Bob\" genre=\"Rock\"");
    std::string many;
    std::string all;
    for (unsigned i = 0; i < kMusicNames_MaxCount + 1; ++i) {
        many += Data("Name " + std::to_string(i));
        all += i < kMusicNames_MaxCount ? (i == 0 ? "Name " : "\\nName ") + std::to_string(i) : "";
    }
    EXPECT_EQ(Announced(With(Items(Box(kArt, many)))), "as=\"" + all + "\"");
    const auto listOf = [](std::size_t aLast) {
        const std::string list = Data(std::string(1024, 'a')) + Data(std::string(1024, 'b')) +
                                 Data(std::string(1024, 'c')) + Data(std::string(aLast, 'd'));
        const std::string value = Announced(With(Items(Box(kArt, list))));
        return value.size() - std::string("as=\"\"").size();
    };
    constexpr std::size_t kEscapes = 3; // each line end is shown by two characters
    EXPECT_EQ(listOf(1021), kMusicNames_MaxSize + kEscapes);
    EXPECT_EQ(listOf(1022), 3 * 1024 + 2 + kEscapes - 1) << "left out whole";
}

TEST(ISOAnnounced, NamesOfItemsAreBounded) {
    std::vector<std::string> names(kISO_MaxItemNames, "com.example.other");
    names.back() = kStart + "title";
    EXPECT_EQ(Values(Parsed(Named(names, NamedItem(kISO_MaxItemNames, "Title"))), {"title"}),
              "title=\"Title\"");
    names.insert(names.begin(), "com.example.other");
    EXPECT_EQ(Values(Parsed(Named(names, NamedItem(kISO_MaxItemNames + 1, "Title"))), {"title"}), "");
    // A count that lies, and sizes that lead nowhere.
    for (const std::string& keys : {Big(0xFFFFFFFF, 4), Big(2, 4) + Big(0, 4), Big(2, 4) + Big(3, 4) + "mdta",
                                    Big(2, 4) + Big(0xFFFFFFFF, 4) + "mdta" + kStart + "title"}) {
        const std::string file =
            With(Box("meta", FullBox("hdlr", Big(0, 4) + "mdta" + Big(0, 13)) + FullBox("keys", keys) +
                                 Box("ilst", NamedItem(1, "Title") + NamedItem(2, "Title"))));
        EXPECT_EQ(Values(Parsed(file), {"ca", "title"}), "ca=\"AAC\"");
    }
}

TEST(ISOAnnounced, LanguagesAreThoseOfTheSoundAndBeginWithWhatPlaysFirst) {
    Track disabled = Sound(Packed("fra"));
    disabled.mfEnabled = false;
    Track video = VideoTrack();
    video.mPackedLanguage = Packed("jpn");
    Track text = Sound(Packed("jpn"));
    text.mHandler = "text";
    Track large = Sound(Packed("eng"));
    large.mVersion = 1;
    Expect({
        {"packed", File({Sound(Packed("eng"))}), "la=\"en\""},
        {"with large times", File({large}), "la=\"en\""},
        {"without a short code", File({Sound(Packed("haw"))}), "la=\"haw\""},
        {"not known", File({Sound(Packed("und"))}), ""},
        {"0", File({Sound(0)}), ""},
        {"QuickTime's number", File({Sound(1)}), ""},
        {"QuickTime's number for none", File({Sound(0x7FFF)}), ""},
        {"no letters", File({Sound(0x7C1F)}), ""},
        {"long", File({Sound(Packed("por"), "pt-BR")}), "la=\"pt-BR\""},
        {"long, and none", File({Sound(Packed("por"), "?")}), ""},
        {"of several tracks",
         File({Sound(Packed("eng")), video, Sound(Packed("deu")), text, Sound(Packed("und")), Sound(0, "en"),
               disabled}),
         "la=\"en,de,fr\""},
        {"of what plays first", File({disabled, Sound(Packed("eng")), Sound(Packed("deu"))}),
         "la=\"en,fr,de\""},
        {"of what plays first, not known", File({disabled, Sound(0)}), "la=\"fr\""},
        {"of a film without sound", File({video}), ""},
    });
}
