#include "ezHosting/detail/SubtitleName.h"

#include "ezHosting/detail/SubtitleLimits.h"

#include <gtest/gtest.h>

#include <string>

namespace {

/// "en,de forced hearing default (title)".
std::string InWords(const SubtitleName& aName) {
    std::string words = aName.mLanguages;
    words += aName.mfForced ? " forced" : "";
    words += aName.mfHearingImpaired ? " hearing" : "";
    words += aName.mfDefault ? " default" : "";
    return aName.mTitle.empty() ? words : words + " (" + aName.mTitle + ")";
}

struct WordsRow {
    const char* mWords;
    const char* mRead;
};

} // namespace

TEST(SubtitleName, ReadsTheWordsAfterAFilmsName) {
    constexpr WordsRow kRows[] = {
        {"", ""},
        {"en", "en"},
        {"EN", "en"},
        {"eng", "en"},
        {"ger", "de"},
        {"English", "en"},
        {"FRANCAIS", "fr"},
        {"日本語", "ja"},
        {"pt-BR", "pt-BR"},
        {"pt_br", "pt-BR"},
        {"por-BR", "pt-BR"},
        {"pob", "pt-BR"},
        {"zh-hans", "zh-Hans"},
        {"sr-Latn-RS", "sr-Latn-RS"},
        {"sr-Cyrl", "sr-Cyrl"},
        {"az-arab", "az-Arab"},
        {"es-419", "es-419"},
        {"fil", "fil"},
        {"jp", "ja"},
        // Flags, in any order.
        {"en.forced", "en forced"},
        {"forced.en", "en forced"},
        {"en.sdh", "en hearing"},
        {"en.CC", "en hearing"},
        {"default.en.forced.sdh", "en forced hearing default"},
        {"foreign", " forced"},
        {"[en].(forced)", "en forced"},
        {"eng-forced", "en forced"},
        {"en_SDH", "en hearing"},
        {"en-cc", "en hearing"}, // and no region
        // "hi" is a language where it is the only one.
        {"en.hi", "en hearing"},
        {"hi.en", "en hearing"},
        {"hi", "hi"},
        {"hi.forced", "hi forced"},
        {"hi.hi", "hi hearing"},
        {"hin.hi", "hi hearing"},
        {"hi-IN", "hi-IN"},
        {"en-hi", "en hearing"},
        {"HI.sdh", "hi hearing"},
        // Several languages; of one and its form in a region the latter.
        {"en.fr", "en,fr"},
        {"English & French", "en,fr"},
        {"en+{fr},de", "en,fr,de"},
        {"Brazilian Portuguese", "pt-BR"},
        {"Portuguese (Brazilian)", "pt-BR"},
        {"Chinese (Simplified)", "zh-Hans"},
        {"en.en", "en"},
        // Numbers only tell files apart.
        {"2_English", "en"},
        {"en.2", "en"},
        {"12", ""},
        // What means nothing is a title.
        {"Director's Cut.en", "en (Director's Cut)"},
        {"Spanish (Latin American)", "es (Latin American)"},
        {"cd1.en", "en (cd1)"},
        {"xx", " (xx)"},
        {"commentary.by.them", " (commentary by them)"},
        {"en-nowhere", " (en-nowhere)"}, // a code in front of other words is a word
        {"it could be", " (it could be)"},
        {"..en..", "en"},
        {"-", ""},
        {"no-", "no"},
    };
    for (const WordsRow& row : kRows) {
        EXPECT_EQ(InWords(ReadSubtitleName(row.mWords)), row.mRead) << row.mWords;
    }
}

TEST(SubtitleName, ReadsNoMoreWordsThanANameHas) {
    const std::string longest = std::string(kSubtitle_MaxName - 3, 'x') + ".en";
    EXPECT_EQ(ReadSubtitleName(longest).mLanguages, "en");
    EXPECT_EQ(ReadSubtitleName("x" + longest).mLanguages, "");
    std::string many; // more languages than a list has room for
    for (char first = 'a'; first <= 'z'; ++first) {
        for (char second = 'a'; second <= 'z'; ++second) {
            many += std::string(".") + first + second;
        }
    }
    EXPECT_LE(ReadSubtitleName(many).mLanguages.size(), 64U);
}

TEST(SubtitleName, BeginsWithTheFilmsNameAndGoesOnWithWords) {
    struct Row {
        const char* mName;
        const char* mWords; ///< null where it is none of the film's
    };
    constexpr Row kRows[] = {
        {"Film", ""},
        {"film", ""},
        {"Film.en", "en"},
        {"FILM.en.forced", "en.forced"},
        {"Film.", ""},
        {"Film.Anything at all", "Anything at all"},
        // Without a dot only what means something, or it could be another film.
        {"Film-en", "en"},
        {"Film_en", "en"},
        {"Film-pt-BR", "pt-BR"},
        {"Film-English", "English"},
        {"Film_en_forced", "en_forced"},
        {"Film-en.x", "en.x"},
        {"Film (en)", "(en)"},
        {"Film [English]", "[English]"},
        {"Film(sdh)", "sdh)"},
        {"Film-", nullptr},
        {"Film-2", nullptr},
        {"Film_Noir", nullptr},
        {"Film-en-x", nullptr},
        {"Film-2-en", nullptr},
        {"Film (2010)", nullptr},
        {"Film 2", nullptr},
        {"Film en", nullptr}, // "Film It", "Film No"
        {"Film - English", nullptr},
        {"Films", nullptr},
        {"Fil", nullptr},
        {"A Film", nullptr},
        {"", nullptr},
    };
    for (const Row& row : kRows) {
        const auto words = WordsAfterFilm(row.mName, "Film");
        ASSERT_EQ(words.has_value(), row.mWords != nullptr) << row.mName;
        EXPECT_EQ(words.value_or(""), row.mWords != nullptr ? row.mWords : "") << row.mName;
    }
    EXPECT_EQ(WordsAfterFilm("Movie.2010.1080p.en", "Movie.2010.1080p"), "en");
    EXPECT_EQ(WordsAfterFilm("Movie.en", "Movie.en"), "");                  // "en" is of the film's own name
    EXPECT_FALSE(WordsAfterFilm("\xC3\x89t\xC3\xA9", "\xC3\xA9t\xC3\xA9")); // only A to Z have a case
}
