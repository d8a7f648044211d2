#include "companions/ezFormats/FormatHost.h"
#include "companions/ezFormats/FormatNotesOf.h"

#include "ezThumbnails/detail/CoverFinders.h"

#include "host/Facts.h"
#include "support/Golden.h"

#include <map>
#include <set>
#include <sstream>

// docs/formats.md: what is known of each format, made of what its parser says, of the rules, the finders of
// covers and the samples. Nothing of it is written by hand.

namespace {

const std::string kDocs = EZ_SAMPLES "/../docs/";

using Texts = std::vector<std::string>;

std::string Joined(const Texts& aTexts, const std::string& aBetween = ", ") {
    std::string all;
    for (const std::string& text : aTexts) {
        all += (all.empty() ? "" : aBetween) + text;
    }
    return all;
}

std::string Code(const std::string& aText) {
    return "`" + aText + "`";
}

template <typename List>
Texts Coded(const List& aTexts) {
    Texts coded;
    for (const auto& text : aTexts) {
        coded.push_back(Code(text));
    }
    return coded;
}

void AddOnce(const std::string& aText, Texts& aTexts) {
    if (std::find(aTexts.begin(), aTexts.end(), aText) == aTexts.end()) {
        aTexts.push_back(aText);
    }
}

/// Of a heading, as a link to it has it.
std::string AnchorOf(const std::string& aHeading) {
    std::string anchor;
    for (const char letter : aHeading) {
        if (letter == ' ' || letter == '-') {
            anchor += '-';
        } else if (std::isalnum(static_cast<unsigned char>(letter)) != 0) {
            anchor += static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
        }
    }
    return anchor;
}

// ---- what the samples tell ----

enum class Group { Everywhere, Stream, Length, Text, Cover };

Group GroupOf(const Fact& aFact) {
    static const std::map<std::string, Group> kGroups = {{kezInfo_MimeType, Group::Everywhere},
                                                         {kezInfo_ClassName, Group::Everywhere},
                                                         {kezInfo_DLNA, Group::Everywhere},
                                                         {kezInfo_FileSize, Group::Everywhere},
                                                         {kezInfo_FileExtension, Group::Everywhere},
                                                         {kezInfo_Duration, Group::Length},
                                                         {kezInfo_DurationMilliseconds, Group::Length},
                                                         {kezInfo_DurationMethod, Group::Length},
                                                         {kezInfo_DurationBound, Group::Length},
                                                         {kezInfo_Languages, Group::Text},
                                                         {kezInfo_Date, Group::Text},
                                                         {kezInfo_DiscNumber, Group::Text},
                                                         {kezInfo_TrackNumber, Group::Text},
                                                         {kezInfo_Compilation, Group::Text},
                                                         {kezInfo_AlbumArtist, Group::Text},
                                                         {kezInfo_Composer, Group::Text},
                                                         {kezInfo_Creators, Group::Text},
                                                         {kezInfo_Genres, Group::Text},
                                                         {kezInfo_CoverMimeType, Group::Cover},
                                                         {kezInfo_CoverSize, Group::Cover}};
    static const std::set<std::string> kTexts = {"title", "creator", "genre", "album"};
    if (aFact.mKey.empty()) {
        return kTexts.count(aFact.mName) != 0 ? Group::Text : Group::Everywhere;
    }
    const auto group = kGroups.find(aFact.mKey);
    return group != kGroups.end() ? group->second : Group::Stream;
}

/// What the records of a format's samples state.
struct Found {
    Texts mFacts; ///< what the tool calls them, and their keys
    Texts mCodecs;
    Texts mMethods; ///< how lengths are known
    Texts mTexts;
    bool mfCover = false;
};

void Look(const ezMediaInfo& anInfo, Found& aFound) {
    static const std::set<std::string> kNamed = {kezInfo_AudioCodec, kezInfo_VideoCodec};
    for (const Fact& fact : FactsOf(anInfo)) {
        const Group group = fact.mName.empty() ? Group::Everywhere : GroupOf(fact);
        if (group == Group::Stream) {
            AddOnce(fact.mLabel + " " + Code(fact.mKey), aFound.mFacts);
        }
        if (group == Group::Text) {
            AddOnce(fact.mLabel, aFound.mTexts);
        }
        if (kNamed.count(fact.mKey) != 0) {
            AddOnce(Code(fact.mText), aFound.mCodecs);
        }
        if (fact.mKey == kezInfo_DurationMethod) {
            AddOnce(Code(fact.mText), aFound.mMethods);
        }
        aFound.mfCover = aFound.mfCover || group == Group::Cover;
    }
}

/// Each list sorted, as the samples come in no order that means anything.
Found FoundIn(const FormatDescription& aFormat) {
    Found found;
    FormatHost host;
    for (const SampleFile& sample : AllSamples()) {
        const Record record =
            sample.mWinner == aFormat.mType ? host.Parse(sample.mBytes, "/samples/" + sample.mName) : nullptr;
        if (record != nullptr) {
            Look(*record, found);
        }
    }
    for (Texts* const texts : {&found.mFacts, &found.mCodecs, &found.mMethods, &found.mTexts}) {
        std::sort(texts->begin(), texts->end());
    }
    return found;
}

// ---- what the code tells ----

/// "MIME type: profiles" for each type of a format that has some.
Texts ProfilesOf(const FormatDescription& aFormat) {
    Texts types(aFormat.mMimeTypes.begin(), aFormat.mMimeTypes.end());
    std::istringstream declared(ProfileRules::BuiltIn()->GetProfileInfo(Joined(types, ",")).c_str());
    const std::string mark = ":DLNA.ORG_PN=";
    Texts order;
    std::map<std::string, Texts> profiles;
    for (std::string entry; std::getline(declared, entry, ',');) {
        const std::size_t at = entry.find(mark);
        if (at != std::string::npos) {
            AddOnce(entry.substr(0, at), order);
            AddOnce(Code(entry.substr(at + mark.size())), profiles[entry.substr(0, at)]);
        }
    }
    Texts lines;
    for (const std::string& type : order) {
        lines.push_back(Code(type) + ": " + Joined(profiles[type]));
    }
    return lines;
}

bool HasCoverFinder(const FormatDescription& aFormat) {
    return std::any_of(std::begin(kCoverFinders), std::end(kCoverFinders), [&](const auto& aFinder) {
        return std::any_of(aFinder.mFormats.begin(), aFinder.mFormats.end(),
                           [&](const char* aType) { return std::string(aType) == aFormat.mType; });
    });
}

std::string CostOf(const FormatBudget& aBudget) {
    const std::uint64_t kib = aBudget.mBytes >> 10;
    return std::to_string(aBudget.mReads) + (aBudget.mReads == 1 ? " read, " : " reads, ") +
           (kib % 1024 == 0 ? std::to_string(kib / 1024) + " MiB" : std::to_string(kib) + " KiB");
}

std::string NamesOf(const FormatDescription& aFormat) {
    Texts lines;
    for (const OtherMimeTypes& other : aFormat.mOtherMimeTypes) {
        lines.push_back(Code(other.mType) +
                        (*other.mAudioCodec == '\0' ? "" : " of " + Code(other.mAudioCodec)) + ": " +
                        Joined(Coded(other.mNames)));
    }
    return lines.empty() ? "none" : Joined(lines, "; ");
}

/// A parser's description and notes.
struct Format {
    const FormatDescription& mDescription;
    const FormatNotes& mNotes;
};

std::vector<Format> AllNoted() {
    std::vector<Format> formats;
    AllFormats::ForEach([&formats](auto* aNull) {
        using Parser = std::remove_pointer_t<decltype(aNull)>;
        const FormatNotes* const notes = FormatNotesOf<Parser>::Get();
        EXPECT_NE(notes, nullptr) << Parser::kDescription.mName << kFormatNotesMissing;
        if (notes != nullptr) {
            formats.push_back({Parser::kDescription, *notes});
        }
    });
    return formats;
}

// ---- the page ----

const char* const kIntroduction = R"(# Formats of files

Written by `./dev formats`, and held by a test: from what each parser of `companions/ezFormats` says in its header
(`kDescription`, `kNotes`), from the built-in profile rules, the finders of covers in `companions/ezThumbnails`, and from
what the samples yield. Which of several sources of a fact counts, and how a file is announced, is told in [files and their
records](file-formats.md); what bounds numbers of strangers, on the page of [limits](limits.md).

Every record has MIME type, class, 4th field, size and extension. A read is a block that is fetched: usual is what a file
costs that is made as most writers make it; the limit is what any file may cost, a hostile one too. Texts are those that
the samples have: where its tags state them, a song has album artist, track, disc, composer, languages, and the lists of
several values too, as told of MPEG audio in [files and their records](file-formats.md).

| format | extensions | MIME types | usual | limit |
|---|---|---|---|---|
)";

std::string RowOf(const Format& aFormat) {
    Texts extensions;
    for (const MediaTypesLine& line : aFormat.mDescription.mLines) {
        for (const char* const extension : line.mExtensions) {
            AddOnce(extension, extensions);
        }
    }
    Texts types(aFormat.mDescription.mMimeTypes.begin(), aFormat.mDescription.mMimeTypes.end());
    types.insert(types.end(), aFormat.mDescription.mForeignMimeTypes.begin(),
                 aFormat.mDescription.mForeignMimeTypes.end());
    const std::string title = aFormat.mNotes.mTitle;
    return "| [" + title + "](#" + AnchorOf(title) + ") | " + Joined(extensions) + " | " +
           Joined(Coded(types)) + " | " + CostOf(aFormat.mNotes.mUsual) + " | " +
           CostOf(aFormat.mDescription.mBudget) + " |\n";
}

std::string LinesOf(const FormatDescription& aFormat) {
    std::string table =
        "| line | extensions | MIME types, the announced one first | class |\n|---|---|---|---|\n";
    for (const MediaTypesLine& line : aFormat.mLines) {
        table += "| " + Code(line.mType) + " | " +
                 Joined(Texts(line.mExtensions.begin(), line.mExtensions.end())) + " | " +
                 Joined(Coded(line.mMimeTypes)) + " | " + Code(line.mClass) + " |\n";
    }
    return table;
}

std::string Point(const std::string& aWhat, const std::string& aText) {
    return "- **" + aWhat + "**: " + (aText.empty() ? "none" : aText) + ".\n";
}

std::string SectionOf(const Format& aFormat) {
    const FormatDescription& description = aFormat.mDescription;
    const FormatNotes& notes = aFormat.mNotes;
    const Found found = FoundIn(description);
    const std::string section = notes.mSection;
    const std::string more =
        section.empty() ? "" : "More: [" + section + "](file-formats.md#" + AnchorOf(section) + ").\n\n";
    const bool fAfterTags = description.mMagic.mfAfterTags;
    return "\n## " + std::string(notes.mTitle) + "\n\n" + more + LinesOf(description) + "\n" +
           Point("Also called", NamesOf(description)) +
           Point("Under another name", description.mMagic.mIsAt == nullptr
                                           ? "not known"
                                           : std::string("known by its beginning") +
                                                 (fAfterTags ? ", tags before it stepped over" : "")) +
           Point("Facts", Joined(found.mFacts)) + Point("Codecs of the samples", Joined(found.mCodecs)) +
           Point("Length", Joined(found.mMethods)) + Point("Texts", Joined(found.mTexts)) +
           Point("Tags", notes.mTags) +
           Point("Cover", HasCoverFinder(description) ? "found by `CoverThumbnailProvider`" : "") +
           Point("Profiles", Joined(ProfilesOf(description), "; ")) + Point("Not read", notes.mNotRead);
}

} // namespace

TEST(FormatsPage, SaysWhatTheFormatsSay) {
    std::string page = kIntroduction;
    const std::vector<Format> formats = AllNoted();
    for (const Format& format : formats) {
        page += RowOf(format);
    }
    for (const Format& format : formats) {
        page += SectionOf(format);
    }
    SCOPED_TRACE("./dev formats writes the page anew");
    ExpectRecorded(kDocs + "formats.md", page);
}

TEST(FormatsPage, NotesLeadToASectionAndAreWithinTheBudget) {
    const std::string more = ReadWholeFile(kDocs + "file-formats.md");
    for (const Format& format : AllNoted()) {
        const char* const name = format.mDescription.mName;
        const std::string section = format.mNotes.mSection;
        EXPECT_TRUE(section.empty() || more.find("\n## " + section + "\n") != std::string::npos)
            << name << ": docs/file-formats.md has no section '" << section << "'";
        EXPECT_STRNE(format.mNotes.mTitle, "") << name;
        EXPECT_STRNE(format.mNotes.mNotRead, "") << name << ": no parser reads all";
        EXPECT_LE(format.mNotes.mUsual.mReads, format.mDescription.mBudget.mReads) << name;
        EXPECT_LE(format.mNotes.mUsual.mBytes, format.mDescription.mBudget.mBytes) << name;
    }
}

TEST(FormatsPage, FormatWhoseRecordsTellOfACoverHasAFinderOfIt) {
    std::set<std::string> types;
    for (const FormatDescription* const format : AllFormats::kDescriptions) {
        types.insert(format->mType);
        EXPECT_TRUE(!FoundIn(*format).mfCover || HasCoverFinder(*format))
            << format->mName << " tells of a cover: name a finder of it (kCoverFinders in "
            << "ezThumbnails/detail/CoverFinders.h)";
    }
    for (const FormatCoverFinder& finder : kCoverFinders) {
        for (const char* const type : finder.mFormats) {
            EXPECT_EQ(types.count(type), 1U) << "a finder of covers in '" << type << "', which is no format";
        }
    }
}
