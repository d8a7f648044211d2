#include "ezFormats/tags/TagNames.h"
#include "ezFormats/tags/MusicValues.h"

#include "support/Str.h"

#include <gtest/gtest.h>

#include <initializer_list>

// Names of tags, and the values that stand under them.

namespace {

std::string NameOf(const TagField* aField) {
    if (aField == nullptr) {
        return "none";
    }
    constexpr const char* kNames[kMusicField_Count] = {"title",        "creator",     "album",    "genre",
                                                       "album artist", "composer",    "date",     "track",
                                                       "disc",         "compilation", "languages"};
    return std::string(kNames[static_cast<std::size_t>(aField->mField)]) +
           (aField->mfSecond ? " second" : "");
}
std::string Letters(TagLetters aVocabulary, std::string_view aName) {
    return NameOf(FindTagField(aVocabulary, TagLettersOf(aName)));
}
std::string Word(TagWords aVocabulary, std::string_view aName) {
    return NameOf(FindTagField(aVocabulary, aName));
}

constexpr TagField kTitle = {MusicField::Title, false};
constexpr TagField kCreator = {MusicField::Creator, false};
constexpr TagField kPerformer = {MusicField::Creator, true};

struct Value {
    TagField mField;
    const char* mText;
};
std::string Stored(std::initializer_list<Value> aValues, MusicTexts aTexts = {}) {
    MusicValues values;
    for (const Value& value : aValues) {
        values.Add(value.mField, value.mText);
    }
    values.Store(aTexts);
    return Str(aTexts.mTitle) + "|" + Str(aTexts.mCreator) + "|" + Str(aTexts.mCreators);
}

} // namespace

TEST(TagNames, EveryVocabularyKnowsATitleByItsOwnName) {
    EXPECT_EQ(Letters(TagLetters::ID3, "TIT2"), "title");
    EXPECT_EQ(Letters(TagLetters::ID3, "TT2"), "title");
    EXPECT_EQ(Letters(TagLetters::Lyrics3, "ETT"), "title");
    EXPECT_EQ(Letters(TagLetters::RIFF, "INAM"), "title");
    EXPECT_EQ(Letters(TagLetters::AIFF, "NAME"), "title");
    EXPECT_EQ(Letters(TagLetters::DSDIFF, "DITI"), "title");
    EXPECT_EQ(Letters(TagLetters::ISOItem, "\xA9nam"), "title");
    EXPECT_EQ(Letters(TagLetters::ISOAsset, "titl"), "title");
    EXPECT_EQ(Letters(TagLetters::ISOPhrase, "\xA9nam"), "title");
    EXPECT_EQ(Word(TagWords::APE, "Title"), "title");
    EXPECT_EQ(Word(TagWords::Vorbis, "TITLE"), "title");
    EXPECT_EQ(Word(TagWords::ASF, "Title"), "title");
    EXPECT_EQ(Word(TagWords::CAF, "title"), "title");
    EXPECT_EQ(Word(TagWords::QuickTimeItem, "title"), "title");
    EXPECT_EQ(Word(TagWords::Matroska, "Title"), "title");
    EXPECT_EQ(Word(TagWords::Flash, "title"), "title");
}

TEST(TagNames, NamesOfOneVocabularyMeanNothingInAnother) {
    EXPECT_EQ(Letters(TagLetters::RIFF, "TIT2"), "none");
    EXPECT_EQ(Letters(TagLetters::ID3, "INAM"), "none");
    EXPECT_EQ(Letters(TagLetters::ID3, "tit2"), "none"); // letters have one case
    EXPECT_EQ(Letters(TagLetters::ID3, ""), "none");
    EXPECT_EQ(Word(TagWords::ASF, "tracknumber"), "none");
    EXPECT_EQ(Word(TagWords::Vorbis, "tracknumber"), "track");
    EXPECT_EQ(Word(TagWords::Vorbis, "WM/TrackNumber"), "none");
    EXPECT_EQ(Word(TagWords::ASF, "wm/tracknumber"), "track");
    EXPECT_EQ(Word(TagWords::Vorbis, ""), "none");
    EXPECT_EQ(Word(TagWords::Vorbis, "titles"), "none");
}

TEST(TagNames, NamesThatAreLessToThePointSaySo) {
    EXPECT_EQ(Word(TagWords::Vorbis, "artist"), "creator");
    EXPECT_EQ(Word(TagWords::Vorbis, "performer"), "creator second");
    EXPECT_EQ(Word(TagWords::Vorbis, "year"), "date second");
    EXPECT_EQ(Word(TagWords::APE, "year"), "date");
    EXPECT_EQ(Word(TagWords::APE, "date"), "date");
    EXPECT_EQ(Letters(TagLetters::ISOAsset, "auth"), "creator second");
}

TEST(TagNames, LettersAreANumber) {
    EXPECT_EQ(TagLettersOf("TIT2"), 0x54495432U);
    EXPECT_EQ(TagLettersOf("TT2"), 0x54543200U);
    EXPECT_EQ(TagLettersOf("\xA9nam"), 0xA96E616DU);
}

TEST(MusicValues, FirstCountsWhereAPieceHasOneAndAllWhereItMayHaveSeveral) {
    EXPECT_EQ(Stored({{kTitle, "T"}, {kTitle, "U"}, {kCreator, "A"}, {kCreator, "B"}}), "T|A, B|A\nB");
    EXPECT_EQ(Stored({{kTitle, ""}, {kTitle, "U"}, {kCreator, ""}, {kCreator, "B"}}), "U|B|");
}

TEST(MusicValues, NamesThatAreLessToThePointFillWhatIsNotTold) {
    EXPECT_EQ(Stored({{kPerformer, "P"}, {kCreator, "A"}}), "|A|");
    EXPECT_EQ(Stored({{kPerformer, "P"}, {kPerformer, "Q"}}), "|P, Q|P\nQ");
    MusicTexts told;
    told.mTitle = "told";
    EXPECT_EQ(Stored({{kTitle, "T"}, {kCreator, "A"}}, told), "told|A|");
}
