#include "companions/ezFormats/mpegaudio/MPEGAudioKit.h"

#include "ezFormats/detail/Limits.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace mpegaudio;

// What a server announces of a song beside its title, creator, album and genre: a row a rule.

namespace {

struct Row {
    const char* mName;
    std::string mFile;
    std::string mExpected; ///< keys and values in the order of kKeys
};

/// "da=1999 tn=3", without the keys that the record does not have; a line end is "|".
std::string Announced(const std::string& aFile) {
    const Record record = Read(aFile);
    std::string text;
    for (const char* key : {"da", "tn", "dn", "cp", "aa", "co", "as", "gs", "la"}) {
        if (record != nullptr && record->Has(key)) {
            std::string value = Str(record->GetCString(key, ""));
            std::replace(value.begin(), value.end(), '\n', '|');
            text += (text.empty() ? "" : " ") + std::string(key) + "=" + value;
        }
    }
    return record != nullptr ? text : "none";
}

std::string V2(const std::string& anID, const std::string& aText) {
    return ID3(2, 0, Frame22(anID, "\0"s + aText)) + Song();
}
std::string V3(const std::string& aFrames) {
    return ID3(3, 0, aFrames) + Song();
}
std::string F3(const std::string& anID, const std::string& aText) {
    return Frame23(anID, "\0"s + aText);
}
std::string V4(const std::string& anID, const std::string& aText) {
    return ID3(4, 0, Frame24(anID, "\3" + aText)) + Song();
}
std::string APE(const std::string& aKey, const std::string& aText, unsigned aFlags = 0) {
    return Song() + APE2(APEItem(aKey, aText, aFlags));
}
std::string Old(const std::string& aYear, const std::string& aCommentEnd) {
    std::string tag = ID3v1("Title", "Artist", "Album", 17);
    tag.replace(93, 4, aYear);
    tag.replace(127 - aCommentEnd.size(), aCommentEnd.size(), aCommentEnd);
    return tag;
}

void Expect(const std::vector<Row>& aRows) {
    for (const Row& row : aRows) {
        EXPECT_EQ(Announced(row.mFile), row.mExpected) << row.mName;
    }
}

} // namespace

TEST(MPEGAudioAnnounced, DatesAreThoseOfEveryTag) {
    Expect({
        {"2.2", V2("TYE", "1999"), "da=1999"},
        {"2.2, first release", V2("TOR", "1970"), "da=1970"},
        {"2.3", V3(F3("TYER", "1999")), "da=1999"},
        {"2.3, with its day", V3(F3("TDAT", "3112") + F3("TYER", "1999")), "da=1999-12-31"},
        {"2.3, with no such day", V3(F3("TYER", "1999") + F3("TDAT", "3113")), "da=1999"},
        {"2.3, with half a day", V3(F3("TYER", "1999") + F3("TDAT", "31")), "da=1999"},
        {"a day alone", V3(F3("TDAT", "3112")), ""},
        {"a day for a date that has one", V3(F3("TYER", "1999-05-04") + F3("TDAT", "3112")), "da=1999-05-04"},
        {"2.3, first release", V3(F3("TORY", "1970")), "da=1970"},
        {"the year before the first release", V3(F3("TORY", "1970") + F3("TYER", "1999")), "da=1999"},
        {"2.4", V4("TDRC", "1999-12-31T23:59:58"), "da=1999-12-31T23:59:58"},
        {"2.4 in UTF-16",
         ID3(4, 0,
             Frame24("TDRC", "\1\xFF\xFE"
                             "1\0"
                             "9\0"
                             "9\0"
                             "9\0"s)) +
             Song(),
         "da=1999"},
        {"2.4, release", V4("TDRL", "2001-02"), "da=2001-02"},
        {"2.4, first release", V4("TDOR", "1970"), "da=1970"},
        {"of several the recording",
         ID3(4, 0,
             Frame24("TDRL", "\3"
                             "2001") +
                 Frame24("TDOR", "\3"
                                 "1970") +
                 Frame24("TDRC", "\3"
                                 "1999")) +
             Song(),
         "da=1999"},
        {"the next one where one is none", V3(F3("TDRC", "soon") + F3("TYER", "1999")), "da=1999"},
        {"names of another version", V3(F3("TDRC", "1999-12")), "da=1999-12"},
        {"no such month", V4("TDRC", "2024-13-45"), ""},
        {"no such year", V3(F3("TYER", "0000")), ""},
        {"a long number", V3(F3("TYER", "99999999999")), ""},
        {"below zero", V3(F3("TYER", "-1999")), ""},
        {"words", V3(F3("TYER", "the nineties")), ""},
        {"APE", APE("Year", "1999-12-31"), "da=1999-12-31"},
        {"APE, binary", APE("Year", "1999", 2), ""},
        {"ID3v1", Song() + Old("1999", ""), "da=1999"},
        {"ID3v1, blanks", Song() + Old("    ", ""), ""},
        {"ID3v1, none", Song() + Old(std::string(4, '\0'), ""), ""},
        {"ID3v2 before APE", ID3(3, 0, F3("TYER", "1998")) + APE("Year", "1999"), "da=1998"},
        {"APE before ID3v1", APE("Year", "1999-05-04") + Old("2001", ""), "da=1999-05-04"},
        {"ID3v1 where the others have none", ID3(3, 0, F3("TYER", "?")) + APE("Year", "") + Old("2001", ""),
         "da=2001"},
    });
}

TEST(MPEGAudioAnnounced, TracksAndDiscsAreNumbers) {
    Expect({
        {"2.2", V2("TRK", "3/12"), "tn=3"},
        {"2.2, disc", V2("TPA", "1/2"), "dn=1"},
        {"2.3", V3(F3("TRCK", "3") + F3("TPOS", "2")), "tn=3 dn=2"},
        {"2.4", V4("TRCK", "03/12"), "tn=3"},
        {"blanks", V4("TRCK", " 3 / 12 "), "tn=3"},
        {"no count after it", V4("TRCK", "3/"), "tn=3"},
        {"no number before it", V4("TRCK", "/12"), ""},
        {"a slash alone", V4("TRCK", "/"), ""},
        {"none", V4("TRCK", "0"), ""},
        {"below zero", V4("TRCK", "-1"), ""},
        {"the side of a record", V4("TRCK", "A3"), ""},
        {"the largest", V4("TRCK", "2147483647"), "tn=2147483647"},
        {"one more", V4("TRCK", "2147483648"), ""},
        {"beyond 32 bits", V4("TRCK", "4294967297"), ""},
        {"a long number", V4("TRCK", "99999999999"), ""},
        {"the second frame where the first is none", V3(F3("TRCK", "?") + F3("TRCK", "7")), "tn=7"},
        {"the first frame", V3(F3("TRCK", "6") + F3("TRCK", "7")), "tn=6"},
        {"APE", APE("Track", "3/12"), "tn=3"},
        {"APE, disc", APE("DISC", "2"), "dn=2"},
        {"APE, disc by its other name", APE("DiscNumber", "2"), "dn=2"},
        {"ID3v1.1", Song() + Old(std::string(4, '\0'), "\0\x0C"s), "tn=12"},
        {"ID3v1.1, the last one", Song() + Old(std::string(4, '\0'), "\0\xFF"s), "tn=255"},
        {"ID3v1, a comment", Song() + Old(std::string(4, '\0'), "n!"), ""},
        {"ID3v1, none", Song() + Old(std::string(4, '\0'), "\0\0"s), ""},
        {"ID3v2 before ID3v1", ID3(3, 0, F3("TRCK", "3")) + Song() + Old(std::string(4, '\0'), "\0\x0C"s),
         "tn=3"},
    });
}

TEST(MPEGAudioAnnounced, NamesAreKeptInFullWhereThereAreSeveral) {
    std::string all = "genre 0";
    std::string many;
    for (unsigned i = 0; i < 1000; ++i) {
        many += "genre " + std::to_string(i) + "\0"s;
    }
    for (unsigned i = 1; i < kMusicNames_MaxCount; ++i) {
        all += "|genre " + std::to_string(i);
    }
    Expect({
        {"one", V4("TPE1", "Ann"), ""},
        {"two", V4("TPE1", "Ann\0Bob"s), "as=Ann|Bob"},
        {"each once", V4("TPE1", "Ann\0Bob\0Ann\0"s), "as=Ann|Bob"},
        {"one, twice", V4("TPE1", "Ann\0Ann"s), ""},
        {"a name with a comma", V4("TPE1", "Ann, Lady\0Bob"s), "as=Ann, Lady|Bob"},
        {"part of another name", V4("TPE1", "Ann, Bob\0Bob"s), "as=Ann, Bob|Bob"},
        {"a line end within a name", V4("TPE1", "Ann\nLady\0Bob"s), "as=Ann Lady|Bob"},
        {"2.3: a slash stands in names, too", V3(F3("TPE1", "AC/DC")), ""},
        {"2.3: nothing after the zero", V3(F3("TPE1", "Ann\0Bob"s)), ""},
        {"genres", V4("TCON", "17\0Odd"s), "gs=Rock|Odd"},
        {"genres of 2.3", V3(F3("TCON", "(17)(4)Odd")), "gs=Rock|Disco|Odd"},
        {"a genre that its word repeats", V3(F3("TCON", "(17)Rock")), ""},
        {"a genre by no number", V3(F3("TCON", "(255)Rock")), ""},
        {"APE", APE("Artist", "Ann\0Bob"s), "as=Ann|Bob"},
        {"a list goes with its text",
         ID3(4, 0,
             Frame24("TPE1", "\3"
                             "Cat")) +
             APE("Artist", "Ann\0Bob"s),
         ""},
        {"a thousand", V4("TCON", many), "gs=" + all},
        {"a megabyte", V4("TPE1", std::string(1 << 20, 'a') + "\0Bob"s), ""},
        {"album artists", V4("TPE2", "Ann\0Bob"s), "aa=Ann, Bob"},
        {"album artist of 2.2", V2("TP2", "Band"), "aa=Band"},
        {"of 2.3", V3(F3("TPE2", "Band")), "aa=Band"},
        {"of APE", APE("Album Artist", "Band"), "aa=Band"},
        {"by its other name", APE("ALBUMARTIST", "Band"), "aa=Band"},
        {"composer of 2.2", V2("TCM", "Cara"), "co=Cara"},
        {"of 2.3", V3(F3("TCOM", "Cara")), "co=Cara"},
        {"of 2.4", V4("TCOM", "Cara\0Dan"s), "co=Cara, Dan"},
        {"of APE", APE("Composer", "Cara"), "co=Cara"},
    });
    const Record large = Read(V4("TPE1", std::string(1000, 'a') + "\0"s + std::string(1000, 'b') + "\0"s +
                                             std::string(1000, 'c') + "\0"s + std::string(1000, 'd')));
    EXPECT_EQ(large->GetCString("as", "").GetLength(), 4003U);
    EXPECT_EQ(large->mCreator.GetLength(), 1024U) << "cut";
    const Record largest =
        Read(APE("Artist", std::string(1024, 'a') + "\0"s + std::string(1024, 'b') + "\0"s +
                               std::string(1024, 'c') + "\0"s + std::string(2000, 'd')));
    EXPECT_EQ(largest->GetCString("as", "").GetLength(), kMusicTexts_MaxSize);
}

TEST(MPEGAudioAnnounced, CompilationsAreMarked) {
    Expect({
        {"2.2", V2("TCP", "1"), "cp=1"},
        {"2.3", V3(F3("TCMP", "1")), "cp=1"},
        {"2.4", V4("TCMP", "1"), "cp=1"},
        {"none", V4("TCMP", "0"), ""},
        {"words", V4("TCMP", "yes"), ""},
        {"APE", APE("Compilation", "1"), "cp=1"},
    });
}

TEST(MPEGAudioAnnounced, LanguagesAreTagsOfRFC5646) {
    Expect({
        {"2.2", V2("TLA", "eng"), "la=en"},
        {"2.3, in a row", V3(F3("TLAN", "ENGFRE")), "la=en,fr"},
        {"2.4", V4("TLAN", "deu\0ger\0fra"s), "la=de,fr"},
        {"by the code for libraries", V4("TLAN", "dut"), "la=nl"},
        {"without a short one", V4("TLAN", "haw"), "la=haw"},
        {"short", V4("TLAN", "EN"), "la=en"},
        {"with a region", V4("TLAN", "PT-br"), "la=pt-BR"},
        {"long, with a script and a region", V4("TLAN", "zho-HANT-tw"), "la=zh-Hant-TW"},
        {"with an extension", V4("TLAN", "DE-at-U-CO-PHON"), "la=de-AT-u-co-phon"},
        {"with private parts", V4("TLAN", "en-ca-x-ca"), "la=en-CA-x-ca"},
        {"none", V4("TLAN", "und"), ""},
        {"none that anybody knows", V4("TLAN", "XXX"), ""},
        {"a private one", V4("TLAN", "qaa"), ""},
        {"nobody's, between others", V4("TLAN", "eng\0und\0fra"s), "la=en,fr"},
        {"joined in one text", V4("TLAN", "ENG, pt-br,,de"), "la=en,pt-BR,de"},
        {"a name", V4("TLAN", "English"), ""},
        {"a name between others", V4("TLAN", "eng,English,fra"), "la=en,fr"},
        {"a name like a row of codes", V4("TLAN", "German"), ""},
        {"half a tag", V4("TLAN", "en-"), ""},
        {"a part that is too long", V4("TLAN", "en-123456789"), ""},
        {"digits", V4("TLAN", "123"), ""},
        {"one letter", V4("TLAN", "e"), ""},
        {"APE", APE("Language", "eng\0ita"s), "la=en,it"},
        {"very many",
         V4("TLAN",
            "aar\0abk\0afr\0aka\0alb\0amh\0ara\0arg\0arm\0asm\0ava\0ave\0aym\0aze\0bak\0bam\0baq\0bel\0ben\0bih\0bis\0bod\0bos"s),
         "la=aa,ab,af,ak,sq,am,ar,an,hy,as,av,ae,ay,az,ba,bm,eu,be,bn,bh,bi"},
    });
}

TEST(MPEGAudioAnnounced, WhatIsLeftOfATagAfterItsPictureCostsNoReadOfItsOwn) {
    const auto costs = [](const std::string& aFile) {
        AwkwardStream stream(aFile, Delivery(), "/media/song.mp3");
        MPEGAudioParser parser;
        EXPECT_NE(Record(parser.Parse(stream)), nullptr);
        return stream.GetCosts().mReads;
    };
    const std::string texts =
        F3("TIT2", "Title") + F3("TPE1", "Ann") + F3("TALB", "Album") + F3("TCON", "Rock");
    const std::string picture = Frame23("APIC", std::string(200000, 'p'));
    const std::string sound = CountFrame("Xing", Fields(400, 401 * 417)) + Song(400);
    const auto least = costs(ID3(3, 0, texts + picture) + sound);
    EXPECT_EQ(least, 3U) << "start, after the tag, end";
    EXPECT_EQ(costs(ID3(3, 0, texts + picture + F3("TRCK", "3") + std::string(2000, '\0')) + sound), least);
    EXPECT_EQ(Announced(ID3(3, 0, texts + picture + F3("TRCK", "3") + std::string(2000, '\0')) + sound),
              "tn=3");
    EXPECT_EQ(costs(ID3(3, 0, texts + picture + std::string(kMusicTexts_RestSize, '\0')) + sound), least);
    EXPECT_EQ(costs(ID3(3, 0, texts + picture + std::string(kMusicTexts_RestSize + 1, '\0')) + sound),
              least + 1);
}
