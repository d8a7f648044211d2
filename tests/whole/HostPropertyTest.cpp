#include "PropertyFormat.h"
#include "PropertyMapper.h"
#include "PropertyOperation.h"
#include "PropertyPackets.h"
#include "PropertyParsers.h"
#include "PropertyPictures.h"
#include "PropertyPlaylist.h"
#include "PropertyThumbnails.h"
#include "PropertyTypes.h"

#include "ezPlatform/base/System.h"
#include "support/Catchers.h"
#include "support/ReplacedSystem.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

// A host drives everything at once: parsers come and media are parsed, the operator edits, saves and reloads
// the mapper, playlists are written and read, packets are pushed, thumbnails are made and lost. The
// operations come in any order, and each result is compared with a simple model: who must win, a map of the
// mappings, a list of songs, bytes fed and bytes read, a set of names within bounds.
//
// EZ_WHOLE_SEQUENCES sets the number of sequences (2,000 without it). RC_PARAMS, as RapidCheck reads it, sets
// the rest: "seed=1" repeats a run, "max_size=300" makes longer sequences; a failure tells the shortest
// sequence that was found, and what to set to have it again.

namespace {

constexpr int kSequences = 2000;

/// Who does what a verb says, and who tells it in words.
using Words = std::string (*)(const Operation&);
enum class Part { Parsers, Mapper, Playlist, Packets, Format, Thumbnails, Pictures };
struct VerbRow {
    Verb mVerb;
    std::size_t mWeight;
    Part mPart;
    Words mWords;
};

const VerbRow kVerbs[] = {
    {Verb::AddParser, 10, Part::Parsers, ParsersSubject::Describe},
    {Verb::AddParserAgain, 1, Part::Parsers, ParsersSubject::Describe},
    {Verb::AddStandardParsers, 4, Part::Parsers, ParsersSubject::Describe},
    {Verb::UseMapper, 3, Part::Parsers, ParsersSubject::Describe},
    {Verb::ParseMedia, 15, Part::Parsers, ParsersSubject::Describe},
    {Verb::ParseType, 3, Part::Parsers, ParsersSubject::Describe},
    {Verb::ParseCover, 3, Part::Parsers, ParsersSubject::Describe},
    {Verb::AdjustRecord, 3, Part::Parsers, ParsersSubject::Describe},
    {Verb::AdjustByType, 2, Part::Parsers, ParsersSubject::Describe},
    {Verb::Announce, 3, Part::Parsers, ParsersSubject::Describe},
    {Verb::AnnounceProtected, 2, Part::Parsers, ParsersSubject::Describe},
    {Verb::LookUpTypes, 2, Part::Parsers, ParsersSubject::Describe},
    {Verb::Observe, 3, Part::Parsers, ParsersSubject::Describe},
    {Verb::RestartHost, 1, Part::Parsers, ParsersSubject::Describe},
    {Verb::AddMapping, 6, Part::Mapper, MapperSubject::Describe},
    {Verb::ChangeMapping, 3, Part::Mapper, MapperSubject::Describe},
    {Verb::RemoveMapping, 2, Part::Mapper, MapperSubject::Describe},
    {Verb::LookUpMapping, 5, Part::Mapper, MapperSubject::Describe},
    {Verb::AskForEnabled, 2, Part::Mapper, MapperSubject::Describe},
    {Verb::AdjustProtocolInfo, 2, Part::Mapper, MapperSubject::Describe},
    {Verb::SwitchProfile, 3, Part::Mapper, MapperSubject::Describe},
    {Verb::SwitchSpeeds, 2, Part::Mapper, MapperSubject::Describe},
    {Verb::SaveMapper, 3, Part::Mapper, MapperSubject::Describe},
    {Verb::LoadMapper, 2, Part::Mapper, MapperSubject::Describe},
    {Verb::AddSong, 5, Part::Playlist, PlaylistSubject::Describe},
    {Verb::RemoveSong, 1, Part::Playlist, PlaylistSubject::Describe},
    {Verb::ReadPlaylist, 3, Part::Playlist, PlaylistSubject::Describe},
    {Verb::RegisterReader, 1, Part::Playlist, PlaylistSubject::Describe},
    {Verb::AskForReader, 3, Part::Playlist, PlaylistSubject::Describe},
    {Verb::FeedMedia, 2, Part::Packets, PacketsSubject::Describe},
    {Verb::OpenRace, 3, Part::Packets, PacketsSubject::Describe},
    {Verb::PushPacket, 9, Part::Packets, PacketsSubject::Describe},
    {Verb::CloseRace, 2, Part::Packets, PacketsSubject::Describe},
    {Verb::OpenFormat, 2, Part::Format, FormatSubject::Describe},
    {Verb::PushToFormat, 6, Part::Format, FormatSubject::Describe},
    {Verb::GiveUpFormat, 1, Part::Format, FormatSubject::Describe},
    {Verb::ResetFormat, 1, Part::Format, FormatSubject::Describe},
    {Verb::CloseFormat, 2, Part::Format, FormatSubject::Describe},
    {Verb::AddProvider, 4, Part::Thumbnails, ThumbnailsSubject::Describe},
    {Verb::SetDefaultProvider, 2, Part::Thumbnails, ThumbnailsSubject::Describe},
    {Verb::RequestThumbnail, 12, Part::Thumbnails, ThumbnailsSubject::Describe},
    {Verb::FillTwice, 4, Part::Thumbnails, ThumbnailsSubject::Describe},
    {Verb::ForgetThumbnail, 2, Part::Thumbnails, ThumbnailsSubject::Describe},
    {Verb::RestartCache, 1, Part::Thumbnails, ThumbnailsSubject::Describe},
    {Verb::WritePicture, 7, Part::Pictures, PicturesSubject::Describe},
    {Verb::RemovePicture, 1, Part::Pictures, PicturesSubject::Describe},
    {Verb::ReadSource, 2, Part::Pictures, PicturesSubject::Describe},
    {Verb::ReadPart, 4, Part::Pictures, PicturesSubject::Describe},
    {Verb::ParsePicture, 2, Part::Pictures, PicturesSubject::Describe},
    {Verb::MakeThumbnail, 2, Part::Pictures, PicturesSubject::Describe},
    {Verb::AnnounceThumbnails, 1, Part::Pictures, PicturesSubject::Describe},
};

const VerbRow& RowOf(Verb aVerb) {
    return kVerbs[static_cast<unsigned>(aVerb)];
}

std::string InWords(const Operation& anOperation) {
    return RowOf(anOperation.mVerb).mWords(anOperation);
}

/// What is settled when a host is set up.
struct Terms {
    unsigned mOptions = 0; ///< a set of ezParseOption
    unsigned mBounds = 0;  ///< of the cache
    unsigned mLines = 0;   ///< of the read-only mapper file
    unsigned mFocus =
        0; ///< the part that most operations are about, counted from 1; none when there is no such
};

std::ostream& operator<<(std::ostream& aStream, const Terms& aTerms) {
    return aStream << "parse options " << aTerms.mOptions << ", cache of "
                   << ThumbnailsSubject::DescribeBounds(aTerms.mBounds) << ", "
                   << (aTerms.mLines > MapperSubject::kMostLines
                           ? std::string("no mapper file")
                           : "mapper file of " + std::to_string(aTerms.mLines) + " lines");
}

/// A host with all that it uses.
class Host {
public:
    explicit Host(const Terms& aTerms)
        : mTypesFile(mFolder.Write("types/mediaCTRLMediaTypes.ini", TypesText())),
          mMapper(mFolder, aTerms.mLines),
          mParsers(mFolder, mMapper, static_cast<int>(aTerms.mOptions)),
          mPlaylist(mFolder),
          mThumbnails(mFolder, aTerms.mBounds),
          mPictures(mFolder) {}

    void Apply(const Operation& anOperation) {
        switch (RowOf(anOperation.mVerb).mPart) {
        case Part::Parsers:
            return mParsers.Apply(anOperation);
        case Part::Mapper:
            return mMapper.Apply(anOperation);
        case Part::Playlist:
            return mPlaylist.Apply(anOperation);
        case Part::Packets:
            return mPackets.Apply(anOperation);
        case Part::Format:
            return mFormat.Apply(anOperation);
        case Part::Thumbnails:
            return mThumbnails.Apply(anOperation);
        case Part::Pictures:
            return mPictures.Apply(anOperation);
        }
    }

private:
    ReplacedSystem mWithoutSync{WithoutSync}; // most of the time would be waiting for a disk
    LogCatcher mLog;                          // every line is made, and none shown
    MemoryFolder mFolder;                     // made and removed for every sequence
    std::string mTypesFile;
    MapperSubject mMapper;
    ParsersSubject mParsers;
    PlaylistSubject mPlaylist;
    PacketsSubject mPackets;
    FormatSubject mFormat;
    ThumbnailsSubject mThumbnails;
    PicturesSubject mPictures;
};

/// Deep states of one part need many operations on it, and mixed ones few on each.
rc::Gen<Verb> AVerb(unsigned aFocus) {
    constexpr std::size_t kFocused = 15;
    std::vector<Verb> verbs;
    for (const VerbRow& row : kVerbs) {
        const bool fFocused = static_cast<unsigned>(row.mPart) + 1 == aFocus;
        verbs.insert(verbs.end(), row.mWeight * (fFocused ? kFocused : 1), row.mVerb);
    }
    return rc::gen::elementOf(verbs);
}

rc::Gen<unsigned> ANumber() {
    return rc::gen::inRange(0U, Operation::kNumbers);
}

rc::Gen<std::vector<Operation>> SomeOperations(unsigned aFocus) {
    return rc::gen::container<std::vector<Operation>>(
        rc::gen::construct<Operation>(AVerb(aFocus), ANumber(), ANumber(), ANumber(), ANumber()));
}

struct Counts {
    unsigned long mSequences = 0;
    unsigned long mOperations = 0;
};

void RunSequence(Counts& aCounts) {
    const Terms terms = *rc::gen::construct<Terms>(
        rc::gen::inRange(0U, 8U), rc::gen::inRange(0U, ThumbnailsSubject::kBoundsOfCache),
        rc::gen::inRange(0U, MapperSubject::kMostLines + 2), rc::gen::inRange(0U, 10U));
    const std::vector<Operation> operations = *SomeOperations(terms.mFocus);
    ++aCounts.mSequences;
    Host host(terms);
    for (std::size_t i = 0; i < operations.size(); ++i) {
        ++aCounts.mOperations;
        RC_LOG() << i + 1 << ". " << InWords(operations[i]) << "\n"; // told of a failure alone
        host.Apply(operations[i]);
    }
}

int Sequences() {
    const char* const text = std::getenv("EZ_WHOLE_SEQUENCES");
    const int number = text != nullptr ? std::atoi(text) : 0;
    return number > 0 ? number : kSequences;
}

/// What many sequences must have come upon: else the check has not seen what it is there for.
const char* const kMustBeMet[] = {
    "an item is recognised",
    "an item is not recognised",
    "a record without a MIME type is refused",
    "an entry of the table wins",
    "an excluded entry refuses a winner",
    "an entry alone makes a record",
    "the mapper supplies a record",
    "the mapper overrides a record",
    "an item is recognised and every fact of it told",
    "an item is not recognised and nothing of it told",
    "a type answers",
    "a type does not answer",
    "cover art is found",
    "a record is adjusted",
    "a record is not adjusted",
    "a record is adjusted by type",
    "a record is not adjusted by type",
    "something is announced",
    "something is announced link-protected",
    "speeds are announced",
    "an extension has a type",
    "an extension is unknown",
    "a MIME type has an extension",
    "a MIME type is unknown",
    "a mapping is found",
    "no mapping is found",
    "a profile is disabled",
    "a profile is switched",
    "no profile is switched",
    "profiles are enabled",
    "none of the profiles is enabled",
    "a protocolInfo keeps its speeds",
    "a protocolInfo takes speeds from the table",
    "speeds are switched",
    "no speeds are switched",
    "the mapper is saved",
    "the mapper is saved a second time",
    "the mapper is loaded",
    "the mapper has no file",
    "a playlist is read: m3u",
    "a playlist is read: m3u8",
    "a playlist is read: pls",
    "a playlist is read: asx",
    "a playlist is read: xspf",
    "a playlist is read: wpl",
    "a reader of the libraries answers",
    "a reader of the host answers",
    "no reader answers",
    "a fed media is read to its end",
    "a fed media fails",
    "a race is won",
    "a race is lost by all",
    "a candidate leaves a race",
    "a format has decided",
    "a format is given up",
    "a format that decided is given up",
    "a format is started anew",
    "a format that is not at work is started anew",
    "a format gives its record",
    "a format has given its record before",
    "a thumbnail is built",
    "a thumbnail cannot be built",
    "nobody is able to build a thumbnail",
    "a thumbnail comes from the cache",
    "a thumbnail is refused at once",
    "a generic thumbnail is given",
    "a thumbnail is too large for the cache",
    "the cache gives up a thumbnail",
    "two fill a thumbnail at once",
    "a thumbnail is forgotten",
    "a source is read",
    "a source is not there",
    "a part is read",
    "a part is decoded",
    "there is no such part",
    "a picture is parsed",
    "what is no picture is parsed",
    "a thumbnail is made of a picture",
    "there is no picture beside the film",
    "thumbnails are announced",
};

} // namespace

std::ostream& operator<<(std::ostream& aStream, const Operation& anOperation) {
    return aStream << "\n    " << InWords(anOperation);
}

TEST(HostProperty, EveryVerbHasItsRow) {
    for (std::size_t i = 0; i < std::size(kVerbs); ++i) {
        EXPECT_EQ(static_cast<std::size_t>(kVerbs[i].mVerb), i);
    }
}

TEST(HostProperty, WhateverAHostDoesItDoesWhatTheModelsSay) {
    rc::detail::TestParams params = rc::detail::configuration().testParams;
    params.maxSuccess = Sequences();
    rc::detail::TestMetadata metadata;
    metadata.id = "HostProperty";
    metadata.description = "whatever a host does, it does what the models say";
    Counts counts;
    HowOften().clear();
    const auto& reproduce = rc::detail::configuration().reproduce;
    const rc::detail::Property property = rc::detail::toProperty([&counts] { RunSequence(counts); });
    // A run that has a failure again asks for no number of sequences.
    const rc::detail::TestResult result = reproduce.empty()
                                              ? rc::detail::checkProperty(property, metadata, params)
                                              : rc::detail::checkProperty(property, metadata);
    std::ostringstream text;
    rc::detail::printResultMessage(result, text);
    ASSERT_TRUE(result.template is<rc::detail::SuccessResult>()) << text.str();
    std::cout << counts.mSequences << " sequences, " << counts.mOperations << " operations\n";
    if (!reproduce.empty() || Sequences() < kSequences) {
        return;
    }
    std::string rarest = kMustBeMet[0];
    for (const char* const what : kMustBeMet) {
        EXPECT_NE(HowOften()[what], 0U) << what;
        rarest = HowOften()[what] < HowOften()[rarest] ? what : rarest;
    }
    std::cout << "seldom: " << rarest << ", " << HowOften()[rarest] << " times\n";
}
