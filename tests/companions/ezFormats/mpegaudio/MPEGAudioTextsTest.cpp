#include "companions/ezFormats/mpegaudio/MPEGAudioKit.h"

#include "ezFormats/detail/Limits.h"
#include "ezFormats/tags/MusicTexts.h"

#include "ezBytes/InflatedBytes.h"
#include "ezBytes/Utf8.h"

#include "ez/MediaParserManager.h"
#include "ezFormats/FormatParsers.h"

#include "support/Catchers.h"
#include "support/ZlibBytes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <vector>

#ifdef EZ_HAS_ZLIB
#include <zlib.h>
#endif

using namespace mpegaudio;

namespace {

std::string Title23(const std::string& aBody, unsigned aFlags = 0) {
    return Texts(ID3(3, 0, Frame23("TIT2", aBody, aFlags)) + Song());
}
std::string Title24(const std::string& aBody, unsigned aFlags = 0, unsigned aTagFlags = 0) {
    return Texts(ID3(4, aTagFlags, Frame24("TIT2", aBody, aFlags)) + Song());
}
/// "title|creator|album|genre", with a code page in the environment; null: without one.
std::string TextsIn(const char* aCodePage, const std::string& aBytes) {
    ezEnvironment environment;
    if (aCodePage != nullptr) {
        environment.SetTextCodePage(aCodePage);
    }
    MPEGAudioParser parser;
    parser.SetEnvironmentInfo(environment.Get());
    return Texts(aBytes, parser);
}
/// All genres of a text by their names, each once, separated by ", ".
std::string Genre(const std::string& aText) {
    std::string names;
    std::string_view rest = aText;
    std::string_view name;
    while (TakeMusicGenre(rest, &name)) {
        AddMusicName(names, name);
    }
    return names;
}

} // namespace

TEST(MPEGAudioTexts, AreThoseOfEveryVersionOfTheTag) {
    EXPECT_EQ(Texts(ID3(2, 0,
                        Frame22("TT2", "\0Title"s) + Frame22("TP1", "\0Artist"s) +
                            Frame22("TAL", "\0Album"s) + Frame22("TCO", "\0(17)"s)) +
                    Song()),
              "Title|Artist|Album|Rock");
    EXPECT_EQ(
        Texts(ID3(3, 0,
                  Frame23("TCON", "\0(80)"s) + Frame23("TALB", "\0Album"s) + Frame23("TPE2", "\0Band"s) +
                      Frame23("TPE1", "\0Artist"s) + Frame23("TIT2", "\0Title"s)) +
              Song()),
        "Title|Artist|Album|Folk");
    EXPECT_EQ(Texts(ID3(4, 0,
                        Frame24("TIT2", "\3Title\0"s) + Frame24("TPE1", "\3Artist\0"s) +
                            Frame24("TALB", "\3Album\0"s) +
                            Frame24("TCON", "\3"
                                            "8\0"s)) +
                    Song()),
              "Title|Artist|Album|Jazz");
}

TEST(MPEGAudioTexts, EveryEncodingIsRead) {
    EXPECT_EQ(Title23("\0Gr\xFC\xDF"s), "Gr\xC3\xBC\xC3\x9F|||");
    EXPECT_EQ(Title23("\1\xFF\xFEG\0r\0\xFC\0\xDF\0"s), "Gr\xC3\xBC\xC3\x9F|||");
    EXPECT_EQ(Title23("\1\xFE\xFF\0G\0r\0\xFC\0\xDF"s), "Gr\xC3\xBC\xC3\x9F|||");
    EXPECT_EQ(Title24("\2\0G\0r\0\xFC\0\xDF"s), "Gr\xC3\xBC\xC3\x9F|||");
    EXPECT_EQ(Title24("\3Gr\xC3\xBC\xC3\x9F"s), "Gr\xC3\xBC\xC3\x9F|||");
    // What is UTF-8 was not meant as Latin-1, whatever is stated; and in Latin-1 it is Windows-1252.
    EXPECT_EQ(Title23("\0Gr\xC3\xBC\xC3\x9F"s), "Gr\xC3\xBC\xC3\x9F|||");
    EXPECT_EQ(Title23("\0\x80 \xFC"s), "\xE2\x82\xAC \xC3\xBC|||");
    EXPECT_EQ(Texts(Song() + ID3v1("Gr\xC3\xBC\xC3\x9F", "Gr\xFC\xDF", "", 255)),
              "Gr\xC3\xBC\xC3\x9F|Gr\xC3\xBC\xC3\x9F||");
    // What no version has: an encoding of another kind, and none at all.
    EXPECT_EQ(Title24("\7Gr\xC3\xBC\xC3\x9F"s), "Gr\xC3\xBC\xC3\x9F|||");
    EXPECT_EQ(Title23("Gr\xFC\xDF"s), "Gr\xC3\xBC\xC3\x9F|||");
    EXPECT_EQ(Title23(""), "|||");
    EXPECT_EQ(Title23("\0"s), "|||");
    EXPECT_EQ(Title23("\3\1\2\n x \n\0"s), "x|||");
}

TEST(MPEGAudioTexts, ThatStateNoEncodingAreOfTheOperatorsCodePage) {
    const std::string cyrillic = "\xCF\xF0"; // of code page 1251; P and R
    const std::string expected = "\xD0\x9F\xD1\x80";
    std::string lyrics = "LYRICSBEGINEAR00010" + cyrillic + " in full";
    lyrics += std::to_string(1000000 + lyrics.size()).substr(1) + "LYRICS200";
    const std::string everywhere = ID3(3, 0, Frame23("TALB", '\0' + cyrillic)) + Song() +
                                   APE1(APEItem("Title", cyrillic)) + lyrics +
                                   ID3v1(cyrillic, cyrillic, cyrillic, 255);
    EXPECT_EQ(TextsIn("1251", everywhere), expected + "|" + expected + " in full|" + expected + "|");
    EXPECT_EQ(TextsIn("1251", Song() + ID3v1(cyrillic, "\xD0\x9F", "", 255)), expected + "|\xD0\x9F||")
        << "UTF-8";
    EXPECT_EQ(TextsIn("no such page", Song() + ID3v1(cyrillic, "", "", 255)), "\xC3\x8F\xC3\xB0|||");
    EXPECT_EQ(TextsIn(nullptr, Song() + ID3v1(cyrillic, "", "", 255)), "\xC3\x8F\xC3\xB0|||");
    // What another program's bytes are is nobody's guess, but they are read as something.
    for (unsigned byte = 1; byte < 256; ++byte) {
        const std::string bytes = {'a', static_cast<char>(byte), 'b'};
        for (const char* codePage : {"", "1251", "932", "1255"}) {
            const std::string texts =
                TextsIn(codePage, ID3(3, 0,
                                      Frame23("TIT2", '\0' + bytes) + Frame23("TPE1", bytes) +
                                          Frame23("TALB", '\3' + bytes)) +
                                      Song() + ID3v1("", "", bytes, 255));
            EXPECT_TRUE(IsWholeUtf8(texts)) << codePage << " " << byte << " " << texts;
        }
    }
}

TEST(MPEGAudioTexts, ACodePageThatNobodyKnowsIsToldOnce) {
    const std::string warning =
        "TextCodePage: this system knows no such code page; texts without one are read as "
        "Windows-1252\n";
    for (const auto& [name, count] :
         std::map<std::string, std::ptrdiff_t>{{"", 0}, {"1251", 0}, {"klingon", 1}}) {
        ezEnvironment environment;
        environment.SetTextCodePage(name);
        const LogCatcher log;
        ezMediaParserManager manager(environment.Get());
        RegisterFormatParsers(manager);
        const std::vector<std::string> texts = log.Texts();
        EXPECT_EQ(std::count(texts.begin(), texts.end(), warning), count) << name;
        EXPECT_EQ(IsKnownTextCodePage(name.c_str()), count == 0) << name;
    }
    EXPECT_FALSE(IsKnownTextCodePage(nullptr));
}

TEST(MPEGAudioTexts, OfSeveralTheFirstIsTheTitleAndAllAreTheCreators) {
    const std::string frames = Frame24("TIT2", "\3One\0Two"s) + Frame24("TPE1", "\3Ann\0Bob\0"s) +
                               Frame24("TALB", "\3A\0B"s) +
                               Frame24("TCON", "\3"
                                               "17\0RX\0Rock\0Odd"s);
    EXPECT_EQ(Texts(ID3(4, 0, frames) + Song()), "One|Ann, Bob|A|Rock, Remix, Odd");
    // Up to 2.3 nothing after the zero counts.
    EXPECT_EQ(Texts(ID3(3, 0, Frame23("TPE1", "\0Ann\0Bob"s)) + Song()), "|Ann||");
    // The first frame of a kind is kept, and the first tag.
    EXPECT_EQ(Texts(ID3(3, 0, Frame23("TIT2", "\0A"s) + Frame23("TIT2", "\0B"s)) +
                    ID3(3, 0, Frame23("TIT2", "\0C"s) + Frame23("TALB", "\0D"s)) + Song()),
              "A||D|");
}

TEST(MPEGAudioTexts, GenresAreNamed) {
    EXPECT_EQ(Genre("(17)"), "Rock");
    EXPECT_EQ(Genre("17"), "Rock");
    EXPECT_EQ(Genre("(0)"), "Blues");
    EXPECT_EQ(Genre("(17)(4)Rock"), "Rock, Disco");
    EXPECT_EQ(Genre("(4)Eurodisco"), "Disco, Eurodisco");
    EXPECT_EQ(Genre("RX"), "Remix");
    EXPECT_EQ(Genre("(CR)"), "Cover");
    EXPECT_EQ(Genre("(RX)(17)"), "Remix, Rock");
    EXPECT_EQ(Genre("((odd) words"), "(odd) words");
    EXPECT_EQ(Genre("(17)((odd)"), "Rock, (odd)");
    EXPECT_EQ(Genre("Rock"), "Rock");
    EXPECT_EQ(Genre("(17"), "(17");
    EXPECT_EQ(Genre("()"), "()");
    EXPECT_EQ(Genre("(255)"), "") << "none";
    EXPECT_EQ(Genre("192"), "");
    EXPECT_EQ(Genre("1980"), "1980") << "no number of a genre";
    EXPECT_EQ(Genre("79"), "Hard Rock");
    EXPECT_EQ(Genre("80"), "Folk");
    EXPECT_EQ(Genre("125"), "Dance Hall");
    EXPECT_EQ(Genre("147"), "Synthpop");
    EXPECT_EQ(Genre("191"), "Psybient");
    EXPECT_EQ(Genre(""), "");
}

TEST(MPEGAudioTexts, UnsynchronisationIsTakenBack) {
    const std::string text = "\1\xFF\xFE\xFF\0a\0"s; // y with dots, and a
    const std::string expected = "\xC3\xBF"
                                 "a|||";
    EXPECT_EQ(Title23(text), expected);
    EXPECT_EQ(Texts(ID3(3, 0x80, Unsynchronised(Frame23("TIT2", text))) + Song()), expected);
    EXPECT_EQ(Texts(ID3(2, 0x80, Unsynchronised(Frame22("TT2", text))) + Song()), expected);
    EXPECT_EQ(Title24(Unsynchronised(text), 0x02), expected) << "of the frame";
    EXPECT_EQ(Title24(Unsynchronised(text), 0, 0x80), expected) << "of the tag";
    EXPECT_EQ(Title24(Syncsafe(text.size()) + Unsynchronised(text), 0x03), expected) << "with a size";
}

TEST(MPEGAudioTexts, FramesThatCannotBeReadAreLeftOut) {
    EXPECT_EQ(Title23("\0Title"s, 0x80), "|||") << "compressed";
    EXPECT_EQ(Title23("\0Title"s, 0x40), "|||") << "encrypted";
    EXPECT_EQ(Title24("\0Title"s, 0x08), "|||");
    EXPECT_EQ(Title24("\0Title"s, 0x04), "|||");
    EXPECT_EQ(Title23("g\0Title"s, 0x20), "Title|||") << "in a group";
    EXPECT_EQ(Texts(ID3(3, 0, Frame23("TIT2", "\0A"s, 0x80) + Frame23("TIT2", "\0B"s)) + Song()), "B|||");
}

TEST(MPEGAudioTexts, CompressedFramesAreReadWithinABound) {
    const bool fZlib = InflatedBytes::IsAvailable();
    const std::string title = "\0Title"s;
    const std::string read = fZlib ? "Title|||" : "|||";
    EXPECT_EQ(Title23(Big(title.size(), 4) + ZlibData(title), 0x80), read);
    EXPECT_EQ(Title23(Big(title.size(), 4) + "g" + ZlibData(title), 0xA0), read)
        << "the group after the size";
    EXPECT_EQ(Title24(Syncsafe(title.size()) + ZlibData(title), 0x09), read);
    EXPECT_EQ(Title24("g" + Syncsafe(title.size()) + ZlibData(title), 0x49), read) << "the group before it";
    EXPECT_EQ(Title24(ZlibData(title), 0x08), read) << "no size is stated";
    EXPECT_EQ(Title24(Syncsafe(title.size()) + Unsynchronised(ZlibData(title)), 0x0B), read);
    EXPECT_EQ(Title23(Big(title.size() - 1, 4) + ZlibData(title), 0x80), "|||") << "more than is stated";
    EXPECT_EQ(Title23(Big(title.size(), 4) + ZlibData(title), 0xC0), "|||") << "encrypted as well";
}

#ifdef EZ_HAS_ZLIB
TEST(MPEGAudioTexts, CompressedFramesOfATagHaveOneBound) {
    const auto frame = [](const char* anID, const std::string& aText) {
        uLongf size = compressBound(static_cast<uLong>(aText.size()));
        std::string data(size, '\0');
        EXPECT_EQ(compress(reinterpret_cast<Bytef*>(data.data()), &size,
                           reinterpret_cast<const Bytef*>(aText.data()), static_cast<uLong>(aText.size())),
                  Z_OK);
        return Frame23(anID, Big(aText.size(), 4) + data.substr(0, size), 0x80);
    };
    const auto comment = [&](std::size_t aSize) { return frame("COMM", std::string(aSize, 'c')); };
    const std::string title = frame("TIT2", "\0Title"s);
    constexpr std::size_t kLeft = kMusicTexts_MaxInflated - 6;
    EXPECT_EQ(Texts(ID3(3, 0, comment(kLeft) + title) + Song()), "Title|||");
    EXPECT_EQ(Texts(ID3(3, 0, comment(kLeft + 1) + title + Frame23("TALB", "\0Album"s)) + Song()),
              "||Album|");
    EXPECT_EQ(Texts(ID3(3, 0, comment(kMusicTexts_MaxInflated + 1) + title) + Song()), "Title|||")
        << "what is too large is not inflated";
}
#endif

TEST(MPEGAudioTexts, FramesByNoNameAreSteppedOverWhereTheyLeadOn) {
    const std::string title = Frame23("TIT2", "\0Title"s);
    const std::string odd = Frame23("TST ", "\0a"s) + Frame23("TSA ", "\0b"s) + Frame23("TSP ", "\0c"s);
    EXPECT_EQ(Texts(ID3(3, 0, Frame23("TALB", "\0Album"s) + odd + title) + Song()), "Title||Album|");
    EXPECT_EQ(Texts(ID3(3, 0, odd + std::string(20, '\0')) + Song()), "|||");
    EXPECT_EQ(Texts(ID3(3, 0, Frame23("TP1\0"s, "\0Artist"s) + title) + Song()), "Title|Artist||");
    EXPECT_EQ(Texts(ID3(3, 0, Frame23("odd!", "\0a"s) + title) + Song()), "Title|||");
    EXPECT_EQ(Texts(ID3(4, 0, Frame24("TST ", "\0a"s) + Frame24("TIT2", "\0Title"s)) + Song()), "Title|||");
    EXPECT_EQ(Texts(ID3(2, 0, Frame22("T_2", "\0a"s) + Frame22("TT2", "\0Title"s)) + Song()), "Title|||");
    // A size that leads elsewhere is none, and what follows is not read.
    const std::string wrong = "odd!" + Big(1, 4) + Big(0, 2) + "\0a"s;
    EXPECT_EQ(Texts(ID3(3, 0, wrong + title) + Song()), "|||");
    EXPECT_EQ(Texts(ID3(3, 0, "odd!" + Big(1000, 4) + Big(0, 2) + title) + Song()), "|||");
}

TEST(MPEGAudioTexts, SizesThatCountTheStuffingAreFollowedWhereTheyLeadOn) {
    const std::string pictures = Unsynchronised(std::string(300, '\xFF') + "x");
    const auto tag = [](const std::string& aFrames) { return Texts(ID3(3, 0x80, aFrames) + Song()); };
    const std::string title = Frame23("TIT2", "\0Title"s);
    EXPECT_EQ(tag(Frame23("APIC", pictures) + title), "Title|||");
    EXPECT_EQ(tag(Frame23("TALB", "\0Album"s) + Frame23("APIC", pictures) + std::string(10, '\0')),
              "||Album|");
    EXPECT_EQ(tag(Frame23("TALB", "\0Album"s) + Frame23("APIC", pictures)), "||Album|") << "up to the end";
    EXPECT_EQ(tag(Frame23("APIC", pictures) + title + std::string(1000, '\0')), "Title|||")
        << "and not into the padding";
    EXPECT_EQ(tag(Unsynchronised(Frame23("APIC", std::string(300, '\xFF') + "x")) + title), "Title|||")
        << "as the standard has it";
    EXPECT_EQ(Texts(ID3(2, 0x80, Frame22("PIC", pictures) + Frame22("TT2", "\0Title"s)) + Song()),
              "Title|||");
}

TEST(MPEGAudioTexts, LongFormsInLyricsComeBeforeThoseThatWereCut) {
    const std::string cut(30, 'c');
    const auto lyrics = [&](const std::string& aFields) {
        const std::string all = "LYRICSBEGIN" + aFields;
        const std::string size = std::to_string(1000000 + all.size()).substr(1);
        return Texts(Song() + all + size + "LYRICS200" + ID3v1(cut, cut, "Album", 17));
    };
    EXPECT_EQ(lyrics("IND00002"
                     "00"
                     "ETT00041" +
                     cut +
                     " and more..EAR00003"
                     "AnnEAL00003"
                     "Box"),
              cut + " and more..|Ann|Box|Rock");
    EXPECT_EQ(lyrics("INF00005"
                     "hellETT00003"
                     "Odd"),
              cut + "|" + cut + "|Album|Rock")
        << "a size that lies";
    EXPECT_EQ(lyrics(""), cut + "|" + cut + "|Album|Rock");
    EXPECT_EQ(lyrics("ETTxxxxx"
                     "Odd"),
              cut + "|" + cut + "|Album|Rock");
    EXPECT_EQ(lyrics("ETT00004"
                     "Odd"),
              cut + "|" + cut + "|Album|Rock")
        << "beyond the fields";
}

TEST(MPEGAudioTexts, PlainSizesInANewTagAreFollowedWhereTheyLeadOn) {
    const std::string title = "\0"s + std::string(300, 't');
    const auto plain = [](const std::string& anID, const std::string& aBody) {
        return Frame23(anID, aBody); // the header of 2.3 differs in the size alone
    };
    const std::string artist = Frame24("TPE1", "\0Artist"s);
    const std::string expected = std::string(300, 't') + "|Artist||";
    EXPECT_EQ(Texts(ID3(4, 0, Frame24("TIT2", title) + artist) + Song()), expected);
    EXPECT_EQ(Texts(ID3(4, 0, plain("TIT2", title) + artist) + Song()), expected); // 00 00 01 2D
    EXPECT_EQ(Texts(ID3(4, 0, artist + plain("TIT2", title)) + Song()), expected) << "the last one";
    EXPECT_EQ(Texts(ID3(4, 0, artist + plain("TIT2", title) + std::string(500, '\0')) + Song()), expected);
    // A byte of more than seven bits: 00 00 00 C9.
    EXPECT_EQ(Texts(ID3(4, 0, plain("TIT2", "\0"s + std::string(200, 't')) + artist) + Song()),
              std::string(200, 't') + "|Artist||");
    EXPECT_EQ(Texts(ID3(4, 0, plain("APIC", std::string(70000, 'p')) + artist) + Song()), "|Artist||");
    // Neither size leads on: that of the standard counts, and what is after it is lost.
    EXPECT_EQ(Texts(ID3(4, 0, Frame24("TIT2", title) + "x" + artist) + Song()),
              std::string(300, 't') + "|||");
}

TEST(MPEGAudioTexts, PicturesBeforeTheTextsDoNotUseUpTheirReads) {
    const std::string picture(100000, 'p');
    const auto texts = [&](unsigned aVersion, unsigned aPictures, auto aFrame) {
        std::string frames;
        for (unsigned i = 0; i < aPictures; ++i) {
            frames += aFrame("APIC", picture);
        }
        return Texts(ID3(aVersion, 0, frames + aFrame("TIT2", "\0Title"s)) + Song());
    };
    const auto frame23 = [](const char* anID, const std::string& aBody) { return Frame23(anID, aBody); };
    const auto frame24 = [](const char* anID, const std::string& aBody) { return Frame24(anID, aBody); };
    for (unsigned pictures = 1; pictures <= 4; ++pictures) {
        EXPECT_EQ(texts(3, pictures, frame23), "Title|||") << pictures;
        EXPECT_EQ(texts(4, pictures, frame24), "Title|||") << pictures;
    }
    EXPECT_EQ(texts(4, 2, frame23), "Title|||") << "of plain sizes, where both places are looked at";
}

TEST(MPEGAudioTexts, TheOldTagHelpsOut) {
    const std::string song = Song();
    EXPECT_EQ(Texts(song + ID3v1("Title", "Artist", "Album", 17)), "Title|Artist|Album|Rock");
    EXPECT_EQ(Texts(song + ID3v1("Title", "Artist", "Album", 80, ' ')), "Title|Artist|Album|Folk");
    EXPECT_EQ(Texts(song + ID3v1("Gr\xFC\xDF", "\xC3\xA9", "", 255)), "Gr\xC3\xBC\xC3\x9F|\xC3\xA9||");
    const std::string cut = std::string(29, 'x') + "\xC3"; // of two bytes one has found place
    EXPECT_EQ(Texts(song + ID3v1("\xC3\xA9" + cut.substr(2), "", "", 255)),
              "\xC3\xA9" + std::string(27, 'x') + "|||");
    EXPECT_EQ(Texts(ID3(3, 0, Frame23("TIT2", "\0New"s)) + song + ID3v1("Old", "Artist", "", 255)),
              "New|Artist||");
    // The enhanced part holds the rest of what is longer than 30 bytes.
    const std::string enhanced = "TAG+" + Padded("and its end", 60) + Padded("not this", 60) +
                                 Padded("", 60) + "\2" + Padded("Sea Shanty", 30) + Padded("", 12);
    ASSERT_EQ(enhanced.size(), 227U);
    EXPECT_EQ(Texts(song + enhanced + ID3v1("A title of thirty characters, ", "Artist", "", 17)),
              "A title of thirty characters, and its end|Artist||Sea Shanty");
}

TEST(MPEGAudioTexts, APEItemsComeBeforeTheOldTag) {
    const std::string song = Song();
    const std::string items = APEItem("TITLE", "Gr\xC3\xBC\xC3\x9F") + APEItem("Cover Art", "\0\1\2"s, 2) +
                              APEItem("Artist", "Ann\0Bob"s) + APEItem("genre", "17");
    EXPECT_EQ(Texts(song + APE2(items)), "Gr\xC3\xBC\xC3\x9F|Ann, Bob||Rock");
    EXPECT_EQ(Texts(song + APE2(items) + ID3v1("Old", "Old", "Album", 0)),
              "Gr\xC3\xBC\xC3\x9F|Ann, Bob|Album|Rock");
    EXPECT_EQ(Texts(song + APE1(APEItem("Title", "Gr\xFC\xDF"))), "Gr\xC3\xBC\xC3\x9F|||");
    EXPECT_EQ(Texts(song + APE2(APEItem("Title", "binary", 2))), "|||");
    // An item that claims more than there is ends them.
    EXPECT_EQ(Texts(song + APE2(APEItem("Album", "A") + Little(5000) + APEItem("Title", "T"))), "||A|");
    // So does one whose key is longer than any.
    EXPECT_EQ(Texts(song + APE2(APEItem(std::string(255, 'k'), "x") + APEItem("Title", "T"))), "T|||");
    EXPECT_EQ(Texts(song + APE2(APEItem(std::string(256, 'k'), "x") + APEItem("Title", "T"))), "|||");
}

TEST(MPEGAudioTexts, TextsAreBounded) {
    const std::string title = Title23("\0"s + std::string(100000, 't'));
    EXPECT_EQ(title, std::string(1024, 't') + "|||");
    std::string many = "\3";
    for (unsigned i = 0; i < 600; ++i) {
        many += std::to_string(i) + "\0"s;
    }
    EXPECT_EQ(Texts(ID3(4, 0, Frame24("TPE1", many)) + Song()), "|0, 1, 2, 3, 4, 5, 6, 7||");
    std::string frames;
    for (unsigned i = 0; i < 600; ++i) {
        frames += Frame23("PRIV", "");
    }
    EXPECT_EQ(Texts(ID3(3, 0, frames + Frame23("TIT2", "\0Title"s)) + Song()), "|||");
}

TEST(MPEGAudioTexts, CoverIsToldByItsTypeAndSize) {
    const auto cover = [](const std::string& aBytes) {
        return Value(aBytes + Song(), "cm") + " " + Value(aBytes + Song(), "cs");
    };
    const std::string png = "\x89PNG\r\n\x1A\nours";
    const auto picture = [&](char aType, const std::string& aPicture) {
        return "\0image/x\0"s + aType + "d\0"s + aPicture;
    };
    EXPECT_EQ(cover(ID3(3, 0, Frame23("APIC", picture(4, "GIF89a")) + Frame23("APIC", picture(3, png)))),
              "image/png 12");
    EXPECT_EQ(cover(ID3(4, 0, Frame24("APIC", picture(0, "unheard")))), "image/x 7");
    EXPECT_EQ(cover(ID3(2, 0, Frame22("PIC", "\0JPG\3d\0unheard"s))), "image/jpeg 7");
    // Of several tags the first that has one.
    EXPECT_EQ(cover(ID3(3, 0, Frame23("TIT2", "\0T"s)) + ID3(3, 0, Frame23("APIC", picture(4, png))) +
                    ID3(3, 0, Frame23("APIC", picture(3, "GIF89a")))),
              "image/png 12");
    // An APE tag after the sound has one where no tag before it does.
    const auto after = [&](const std::string& aBefore) {
        const std::string items = APEItem("Cover Art (Back)", "n\0\xFF\xD8\xFF"s, 2) +
                                  APEItem("Cover Art (Front)", "n\0GIF89a"s, 2);
        const std::string file = aBefore + Song() + APE2(items) + ID3v1("T", "", "", 255);
        return Value(file, "cm") + " " + Value(file, "cs");
    };
    EXPECT_EQ(after(""), "image/gif 6");
    EXPECT_EQ(after(ID3(3, 0, Frame23("APIC", picture(4, png)))), "image/png 12");
    for (const std::string& none :
         {picture(1, png), picture(3, ""), "\0-->\0\3d\0http://h/x"s, "\4image/x\0\3d\0"s + png}) {
        EXPECT_EQ(cover(ID3(3, 0, Frame23("APIC", none))), "- -") << none;
    }
}
