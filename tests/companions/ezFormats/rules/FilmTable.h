#pragma once

#include "companions/ezFormats/rules/ProfileKit.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

/// What a record is changed by, and the name that it then gets.
struct FilmRow {
    std::string mFacts;
    const char* mProfile;
};

/// What a table is asked with: the library's, or one of an operator who prefers something.
class FilmTable {
public:
    explicit FilmTable(const std::string& aRegion = "", bool afInferred = false) {
        std::string text(ProfileRules::BuiltInText());
        if (afInferred) {
            text.replace(text.find("\ninferred off"), 13, "\ninferred on");
        }
        mRules = ProfileRules::FromText(text + (aRegion.empty() ? "" : "region " + aRegion + "\n"), nullptr);
    }

    /// "profile", or "profile as MIME type" where the record's own is not announced.
    std::string Announced(const std::string& aRecord) const {
        const ProfileMatch match = mRules->FindMatch(*RecordOf(aRecord));
        return Str(match.mProfile) + (match.mMimeType.IsEmpty() ? "" : " as " + Str(match.mMimeType));
    }

    void Expect(const std::string& aFacts, const std::vector<FilmRow>& aRows) const {
        for (const FilmRow& row : aRows) {
            EXPECT_EQ(Announced(aFacts + " " + row.mFacts), row.mProfile) << aFacts << " " << row.mFacts;
        }
    }

    /// The same of each kind of packet. Rows name the stem, and the ends that it has where these are not all
    /// three: "STEM|_ISO|_T|"; or several of them, by "/", of which the first that has the kind's end counts.
    void ExpectOfPackets(const std::string& aFacts, const std::vector<FilmRow>& aRows) const {
        for (const Kind& kind : kKinds) {
            for (const FilmRow& row : aRows) {
                const std::string facts = kind.mStart + aFacts + " " + row.mFacts;
                EXPECT_EQ(Announced(facts), NameOf(row.mProfile, kind)) << facts;
            }
        }
    }

private:
    struct Kind {
        const char* mStart;
        const char* mEnd;
        const char* mAs;
    };
    static constexpr std::array<Kind, 3> kKinds = {{
        {"mt=video/mp2t ct=TS ", "_ISO", " as video/mpeg"},
        {"mt=video/vnd.dlna.mpeg-tts ct=TTS-zero ", "", ""},
        {"mt=video/vnd.dlna.mpeg-tts ct=TTS ", "_T", ""},
    }};

    static std::string NameOf(const std::string& aStems, const Kind& aKind) {
        std::istringstream stems(aStems);
        for (std::string stem; std::getline(stems, stem, '/');) {
            const std::size_t bar = stem.find('|');
            if (bar == std::string::npos ||
                stem.find(std::string("|") + aKind.mEnd + "|", bar) != stem.npos) {
                return stem.substr(0, bar) + aKind.mEnd + aKind.mAs;
            }
        }
        return "";
    }

    std::shared_ptr<const ProfileRules> mRules;
};

/// A record that keeps a profile, and none without any of its words.
inline void ExpectEachFactAskedFor(const std::string& aRecord) {
    EXPECT_NE(ProfileOf(aRecord), "") << aRecord;
    std::istringstream words(aRecord);
    for (std::string word; words >> word;) {
        std::string without = aRecord;
        without.erase(without.find(word), word.size());
        EXPECT_EQ(ProfileOf(without), "") << aRecord << " without " << word;
    }
}
