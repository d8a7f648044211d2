#include "ezFormats/matroska/MatroskaTags.h"

#include "ezFormats/matroska/MatroskaTagLimits.h"

#include "ezBytes/ByteSource.h"

#include "support/EbmlBytes.h"
#include "support/Str.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

// Tags of Matroska: texts of a film or a song, and counts of its tracks.

namespace {

using namespace std::string_literals;

constexpr bool kFilm = true;
constexpr bool kSong = false;
constexpr std::int64_t kSecond = 1000000000;

MatroskaTags TagsOf(const std::string& aContent, bool afFilm, const MatroskaWriting& aWriting = {},
                    std::uint32_t aBudget = 1000) {
    BlockBytes block(reinterpret_cast<const unsigned char*>(aContent.data()), aContent.size());
    MatroskaTags tags;
    ReadMatroskaTags(ByteReader(block), aBudget, afFilm, aWriting, CodePage("ISO-8859-1"), tags);
    return tags;
}

std::string Told(const MusicTexts& aTexts) {
    std::string told;
    const auto add = [&told](const char* aName, const std::string& aText) {
        told += aText.empty() || aText == "0" ? "" : std::string(told.empty() ? "" : ", ") + aName + aText;
    };
    add("title ", Str(aTexts.mTitle));
    add("by ", Str(aTexts.mCreator));
    add("album ", Str(aTexts.mAlbum));
    add("album by ", Str(aTexts.mAlbumArtist));
    add("genre ", Str(aTexts.mGenre));
    add("composed by ", Str(aTexts.mComposer));
    add("of ", Str(aTexts.mDate));
    add("track ", std::to_string(aTexts.mTrack));
    add("disc ", std::to_string(aTexts.mDisc));
    return told + (aTexts.mfCompilation ? ", compilation" : "");
}
std::string Told(const std::string& aContent, bool afFilm) {
    return Told(TagsOf(aContent, afFilm).mTexts);
}

std::string Told(const MatroskaTrackCounts& aTrack) {
    return std::to_string(aTrack.mTrackUID) + ": " + std::to_string(aTrack.mBitRate) + " bit/s, " +
           std::to_string(aTrack.mNanoseconds) + " ns, " + std::to_string(aTrack.mBytes) + " bytes, " +
           std::to_string(aTrack.mFrames) + " frames" + (aTrack.mfOfThisFile ? "" : ", of another file");
}

struct Case {
    const char* mWhat;
    bool mfFilm;
    std::string mContent;
    const char* mTold;
};

const Case kCases[] = {
    {"levels of a film", kFilm,
     ebml::Tag(70, {{"TITLE", "The Series"}, {"GENRE", "Drama"}, {"ARTIST", "Everybody"}}) +
         ebml::Tag(60, {{"TITLE", "Season One"}, {"PART_NUMBER", "1"}, {"DATE_RELEASED", "1999"}}) +
         ebml::Tag(50, {{"TITLE", "The Episode"}, {"PART_NUMBER", "7"}, {"ARTIST", "Somebody"}}) +
         ebml::Tag(30, {{"TITLE", "The Scene"}, {"COMPOSER", "C"}}),
     "title The Episode, by Somebody, genre Drama, composed by C, of 1999"},
    {"levels of a song", kSong,
     ebml::Tag(70, {{"TITLE", "The Box"}, {"PART_NUMBER", "9"}}) +
         ebml::Tag(50, {{"TITLE", "The Album"},
                        {"ARTIST", "The Band"},
                        {"PART_NUMBER", "3/4"},
                        {"DATE_RELEASED", "1997-06-22T05:05:05"},
                        {"GENRE", "Rock"}}) +
         ebml::Tag(
             30,
             {{"TITLE", "The Song"}, {"ARTIST", "The Singer"}, {"PART_NUMBER", "01/02"}, {"GENRE", "House"}}),
     "title The Song, by The Singer, album The Album, album by The Band, genre House, of "
     "1997-06-22T05:05:05, track 1, disc 3"},
    {"an album alone", kSong, ebml::Tag(50, {{"TITLE", "The Album"}, {"ARTIST", "The Band"}}),
     "by The Band, album The Album"},
    {"a disc of an album", kSong,
     ebml::Tag(40, {{"TITLE", "The Disc"}, {"PART_NUMBER", "2"}}) +
         ebml::Tag(50, {{"TITLE", "The Album"}, {"PART_NUMBER", "3"}}) +
         ebml::Tag(30, {{"PART_NUMBER", "4"}}),
     "album The Album, track 4, disc 2"},
    {"the level of an album need not be stated", kSong,
     ebml::Tag(0, {{"TITLE", "The Album"}, {"ARTIST", "The Band"}, {"PART_NUMBER", "3"}}) +
         ebml::Tag(30, {{"TITLE", "The Song"}}),
     "title The Song, by The Band, album The Album, album by The Band, disc 3"},
    {"an album that is named makes flat tags of all of its level", kSong,
     ebml::Tag(50, {{"TITLE", "The Song"}, {"ALBUM", "The Album"}, {"PART_NUMBER", "3"}, {"ARTIST", "A"}}),
     "title The Song, by A, album The Album, track 3"},
    {"a number alone is that of the song", kSong, ebml::Tag(0, {{"PART_NUMBER", "3"}, {"ARTIST", "A"}}),
     "by A, track 3"},
    {"flat tags of a song", kSong,
     ebml::Tag(0, {{"ARTIST", "A"},
                   {"ALBUM", "B"},
                   {"ALBUM_ARTIST", "C"},
                   {"GENRE", "D"},
                   {"COMPOSER", "E"},
                   {"DATE", "2001-02-03"},
                   {"PART_NUMBER", "4"},
                   {"DISC", "5"},
                   {"COMPILATION", "1"},
                   {"TITLE", "T"}}),
     "title T, by A, album B, album by C, genre D, composed by E, of 2001-02-03, track 4, disc 5, "
     "compilation"},
    {"flat tags of a film", kFilm,
     ebml::Tag(0, {{"TITLE", "T"}, {"ARTIST", "A"}, {"ALBUM", "B"}, {"PART_NUMBER", "4"}}),
     "title T, by A, album B"},
    {"no targets at all", kFilm, ebml::Tag(std::string(), ebml::SimpleTag("TITLE", "T")), "title T"},
    {"a level that is empty has its default", kSong,
     ebml::Tag(ebml::Element(0x63C0, ebml::Element(0x68CA, "")), ebml::SimpleTag("TITLE", "T")), "album T"},
    {"level 30 of a film is a part of it", kFilm,
     ebml::Tag(30, {{"TITLE", "T"}, {"ARTIST", "A"}, {"PART_NUMBER", "4"}}), "by A, track 4"},
    {"names of any case", kFilm, ebml::Tag(50, {{"Title", "T"}, {"gEnRe", "G"}}), "title T, genre G"},
    {"several values", kFilm,
     ebml::Tag(
         50,
         {{"ARTIST", "A"}, {"ARTIST", "B"}, {"GENRE", "G"}, {"GENRE", "H"}, {"TITLE", "T"}, {"TITLE", "U"}}),
     "title T, by A, B, genre G, H"},
    {"another language is no further value", kFilm,
     ebml::Tag(ebml::Targets(50), ebml::SimpleTag("TITLE", "Der Titel", ebml::Number(0x4484, 0)) +
                                      ebml::SimpleTag("GENRE", "Krimi", ebml::Number(0x4484, 0)) +
                                      ebml::SimpleTag("GENRE", "Crime", ebml::Number(0x4484, 1)) +
                                      ebml::SimpleTag("TITLE", "The Title") +
                                      ebml::SimpleTag("ARTIST", "Jemand", ebml::Number(0x4484, 0))),
     "title The Title, by Jemand, genre Crime"},
    {"release before recording", kFilm, ebml::Tag(50, {{"DATE_RECORDED", "1997"}, {"DATE_RELEASED", "1998"}}),
     "of 1998"},
    {"recording alone", kFilm, ebml::Tag(50, {{"DATE_RECORDED", "1997"}}), "of 1997"},
    {"tags of parts are not the file's", kFilm,
     ebml::Tag(50, {{"TITLE", "of a track"}}, ebml::OfTrack(7)) +
         ebml::Tag(50, {{"TITLE", "of an edition"}}, ebml::Number(0x63C9, 7)) +
         ebml::Tag(50, {{"TITLE", "of a chapter"}}, ebml::Number(0x63C4, 7)) +
         ebml::Tag(50, {{"TITLE", "of an attachment"}}, ebml::Number(0x63C6, 7)),
     ""},
    {"tags of all parts are", kFilm, ebml::Tag(50, {{"TITLE", "T"}}, ebml::OfTrack(0)), "title T"},
    {"tags of a tag are not the file's", kFilm,
     ebml::Tag(ebml::Targets(50), ebml::SimpleTag("ORIGINAL", "", ebml::SimpleTag("TITLE", "Before")) +
                                      ebml::SimpleTag("TITLE", "T", ebml::SimpleTag("TITLE", "Inner"))),
     "title T"},
    {"texts end in NULs, and need not be UTF-8", kFilm,
     ebml::Tag(50, {}) + ebml::Tag(ebml::Targets(50), ebml::SimpleTag("TITLE"s + "\0\0"s, "T\0\0"s) +
                                                          ebml::SimpleTag("ARTIST", "Bj\xF6rk")),
     "title T, by Bj\xC3\xB6rk"},
    {"the name may stand after the text, and targets after both", kFilm,
     ebml::Element(0x7373,
                   ebml::Element(0x67C8, ebml::Element(0x4487, "T") + ebml::Element(0x45A3, "TITLE")) +
                       ebml::Targets(50)),
     "title T"},
    {"without a text, and of bytes", kFilm,
     ebml::Tag(ebml::Targets(50),
               ebml::Element(0x67C8, ebml::Element(0x45A3, "TITLE")) +
                   ebml::Element(0x67C8, ebml::Element(0x45A3, "TITLE") + ebml::Element(0x4485, "bytes"))),
     ""},
    {"a name of another meaning, and one that is too long", kFilm,
     ebml::Tag(50, {{"SUBTITLE", "S"}, {"DIRECTOR", "D"}, {"TITLEtitleTITLEtitleTITLEtitleTITLE", "L"}}), ""},
    {"cut in the middle", kFilm,
     ebml::Tag(50, {{"TITLE", "T"}}) +
         ebml::Stating(0x7373, 1000, ebml::Targets(50) + ebml::SimpleTag("GENRE", "G") + "\x67"),
     "title T, genre G"},
    {"no elements", kFilm, "these are letters", ""},
};

std::string Statistics(const char* anApp, const char* aDate, const char* aBitRate = "448156",
                       const char* aDuration = "00:00:04.795316402") {
    return ebml::Tag(50,
                     {{"BPS", aBitRate},
                      {"DURATION", aDuration},
                      {"NUMBER_OF_FRAMES", "56"},
                      {"NUMBER_OF_BYTES", "268614"},
                      {"_STATISTICS_WRITING_APP", anApp},
                      {"_STATISTICS_WRITING_DATE_UTC", aDate},
                      {"_STATISTICS_TAGS", "BPS DURATION NUMBER_OF_FRAMES NUMBER_OF_BYTES"}},
                     ebml::OfTrack(77));
}

/// Of 2019-12-17 19:02:19.5.
const MatroskaWriting kWriting = {598302139 * kSecond + kSecond / 2, "the library", "the muxer"};

std::uint64_t LengthOf(const char* aDuration) {
    const MatroskaTags tags = TagsOf(ebml::Tag(0, {{"DURATION", aDuration}}, ebml::OfTrack(1)), kFilm);
    return tags.mTracks.empty() ? 0 : tags.mTracks[0].mNanoseconds;
}

/// Whether counts of that date are this file's, of which Info states this one.
bool IsOfThisFile(const char* aDate, std::int64_t anInfoDate) {
    const MatroskaTags tags = TagsOf(Statistics("the muxer", aDate), kFilm, {anInfoDate, "", "the muxer"});
    return tags.mTracks.size() == 1 && tags.mTracks[0].mfOfThisFile;
}

} // namespace

TEST(MatroskaTags, TellTheFilmOrTheSong) {
    for (const Case& one : kCases) {
        EXPECT_EQ(Told(one.mContent, one.mfFilm), one.mTold) << one.mWhat;
    }
}

TEST(MatroskaTags, FurtherTagsFillWhatIsNotTold) {
    const std::string first = ebml::Tag(50, {{"TITLE", "T"}});
    const std::string second = ebml::Tag(50, {{"TITLE", "U"}, {"GENRE", "G"}});
    MatroskaTags tags = TagsOf(first, kFilm);
    BlockBytes block(reinterpret_cast<const unsigned char*>(second.data()), second.size());
    std::uint32_t budget = 100;
    ReadMatroskaTags(ByteReader(block), budget, kFilm, {}, CodePage(), tags);
    EXPECT_EQ(Told(tags.mTexts), "title T, genre G");
}

TEST(MatroskaTags, ElementsAreCounted) {
    // Tag, Targets, its level, SimpleTag, name, text; Targets are looked for first.
    const std::string tag = ebml::Tag(50, {{"TITLE", "T"}});
    EXPECT_EQ(Told(TagsOf(tag, kFilm, {}, 7).mTexts), "title T");
    EXPECT_EQ(Told(TagsOf(tag, kFilm, {}, 6).mTexts), "");
    EXPECT_EQ(Told(TagsOf(tag, kFilm, {}, 0).mTexts), "");
}

TEST(MatroskaTags, NamesAreComparedUpToTheLongest) {
    const std::string name(kMatroskaTags_MaxName - 5, '\0');
    EXPECT_EQ(Told(ebml::Tag(ebml::Targets(50), ebml::SimpleTag("TITLE" + name, "T")), kFilm), "title T");
    EXPECT_EQ(Told(ebml::Tag(ebml::Targets(50), ebml::SimpleTag("TITLE" + name + '\0', "T")), kFilm), "");
}

TEST(MatroskaTags, CountsOfATrackAreThisFilesWhereDateAndWriterAre) {
    const char* const kCounted = "77: 448156 bit/s, 4795316402 ns, 268614 bytes, 56 frames";
    const std::string kCopied = kCounted + ", of another file"s;
    const auto told = [](const char* anApp, const char* aDate) {
        const MatroskaTags tags = TagsOf(Statistics(anApp, aDate), kFilm, kWriting);
        return tags.FindTrack(77) != nullptr ? Told(*tags.FindTrack(77)) : "none";
    };
    EXPECT_EQ(told("the muxer", "2019-12-17 19:02:19"), kCounted);
    EXPECT_EQ(told("the library", "2019-12-17T19:02:19Z"), kCounted);
    EXPECT_EQ(told("the muxer", "2019-12-17 19:02:20"), kCopied);
    EXPECT_EQ(told("another", "2019-12-17 19:02:19"), kCopied);
    EXPECT_EQ(told("", ""), kCopied);
    EXPECT_EQ(Told(TagsOf(Statistics("", ""), kFilm).mTracks.at(0)), kCopied) << "nothing is stated";
    EXPECT_EQ(TagsOf(Statistics("the muxer", ""), kFilm).FindTrack(78), nullptr);
    EXPECT_EQ(Told(TagsOf(Statistics("the muxer", ""), kFilm).mTexts), "");
}

TEST(MatroskaTags, DatesAreThoseOfTheCalendar) {
    constexpr std::int64_t kDay = 86400 * kSecond;
    EXPECT_TRUE(IsOfThisFile("2001-01-01 00:00:00", 0));
    EXPECT_TRUE(IsOfThisFile("2001-02-28 23:59:59", 59 * kDay - 1));
    EXPECT_TRUE(IsOfThisFile("2001-03-01 00:00:00", 59 * kDay));
    EXPECT_TRUE(IsOfThisFile("2004-02-29 12:00:00", (3 * 365 + 59) * kDay + kDay / 2));
    EXPECT_FALSE(IsOfThisFile("2000-12-31 23:59:59", 0));
    EXPECT_TRUE(IsOfThisFile("2100-02-28 00:00:00", 36217 * kDay));
    EXPECT_TRUE(IsOfThisFile("2100-03-01 00:00:00", 36218 * kDay)) << "no leap year";
    EXPECT_FALSE(IsOfThisFile("2001-01-01 00:00:00", -1)) << "before that";
    EXPECT_TRUE(IsOfThisFile("2293-04-11 23:47:16", INT64_MAX));
}

TEST(MatroskaTags, LengthsOfTracksAreNanoseconds) {
    EXPECT_EQ(LengthOf("00:00:04.795316402"), 4795316402U);
    EXPECT_EQ(LengthOf("01:02:03"), 3723000000000U);
    EXPECT_EQ(LengthOf("00:00:01.5"), 1500000000U);
    EXPECT_EQ(LengthOf("00:00:01.1234567899"), 1123456789U);
    EXPECT_EQ(LengthOf("100:00:00.0"), 360000000000000U);
    EXPECT_EQ(LengthOf("9999:59:59.999999999"), 35999999999999999U);
    for (const char* const text : {"10000:00:00", "1", "00:00", "00:60:00", "00:00:60", "::", "-1:00:00",
                                   "0x:00:01", "00:00:1a", "", "99999999999999999999999999:00:00"}) {
        EXPECT_EQ(LengthOf(text), 0U) << text;
    }
}

TEST(MatroskaTags, NumbersThatAreNoneCountNothing) {
    const auto rate = [](const char* aText) {
        return TagsOf(Statistics("", "", aText), kFilm).FindTrack(77)->mBitRate;
    };
    EXPECT_EQ(rate("1"), 1U);
    EXPECT_EQ(rate("-1"), 0U);
    EXPECT_EQ(rate("12 kbit"), 0U);
    EXPECT_EQ(rate("99999999999999999999999999999"), 0U);
}

TEST(MatroskaTags, RateIsToldOrElseThatOfTheBytes) {
    const auto rate = [](std::uint64_t aRate, std::uint64_t aBytes, std::uint64_t aNanoseconds) {
        MatroskaTrackCounts counts;
        counts.mBitRate = aRate;
        counts.mBytes = aBytes;
        counts.mNanoseconds = aNanoseconds;
        return counts.GetBitRate();
    };
    EXPECT_EQ(rate(1000, 500, kSecond), 1000U);
    EXPECT_EQ(rate(0, 500, 2 * kSecond), 2000U);
    EXPECT_EQ(rate(0, 500, 0), 0U);
    EXPECT_EQ(rate(0, INT64_MAX, 1), 0U);
    EXPECT_EQ(rate(UINT32_MAX - 1, 0, 0), UINT32_MAX - 1);
    EXPECT_EQ(rate(UINT32_MAX, 0, 0), 0U) << "would say that it varies";
}

TEST(MatroskaTags, TracksWithCountsAreBounded) {
    std::string tags;
    for (std::uint64_t i = 1; i <= kMatroskaTags_MaxTracks + 1; ++i) {
        tags += ebml::Tag(50, {{"BPS", "8"}}, ebml::OfTrack(i));
    }
    const MatroskaTags found = TagsOf(tags, kFilm);
    EXPECT_NE(found.FindTrack(kMatroskaTags_MaxTracks), nullptr);
    EXPECT_EQ(found.FindTrack(kMatroskaTags_MaxTracks + 1), nullptr);
    EXPECT_EQ(TagsOf(ebml::Tag(50, {{"BPS", "8"}}, ebml::OfTrack(1)) +
                         ebml::Tag(50, {{"BPS", "9"}}, ebml::OfTrack(1)),
                     kFilm)
                  .FindTrack(1)
                  ->mBitRate,
              8U);
}
