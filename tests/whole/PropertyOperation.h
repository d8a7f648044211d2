#pragma once

#include <rapidcheck.h>

#include <map>
#include <ostream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

/// What a host does with the libraries, one operation at a time.
enum class Verb : unsigned {
    AddParser,
    AddParserAgain,
    AddStandardParsers,
    UseMapper,
    ParseMedia,
    ParseType,
    ParseCover,
    AdjustRecord,
    AdjustByType,
    Announce,
    AnnounceProtected,
    LookUpTypes,
    Observe,
    RestartHost,
    AddMapping,
    ChangeMapping,
    RemoveMapping,
    LookUpMapping,
    AskForEnabled,
    AdjustProtocolInfo,
    SwitchProfile,
    SwitchSpeeds,
    SaveMapper,
    LoadMapper,
    AddSong,
    RemoveSong,
    ReadPlaylist,
    RegisterReader,
    AskForReader,
    FeedMedia,
    OpenRace,
    PushPacket,
    CloseRace,
    OpenFormat,
    PushToFormat,
    GiveUpFormat,
    ResetFormat,
    CloseFormat,
    AddProvider,
    SetDefaultProvider,
    RequestThumbnail,
    FillTwice,
    ForgetThumbnail,
    RestartCache,
    WritePicture,
    RemovePicture,
    ReadSource,
    ReadPart,
    ParsePicture,
    MakeThumbnail,
    AnnounceThumbnails,
};

/// One operation: a verb, and numbers below kNumbers of which the verb makes what it needs. Every number
/// means something whatever was done before, so that any part of a sequence is a sequence, and a smaller
/// number means something simpler.
struct Operation {
    static constexpr unsigned kNumbers = 240;

    Verb mVerb = Verb::AddParser;
    unsigned mA = 0;
    unsigned mB = 0;
    unsigned mC = 0;
    unsigned mD = 0;
};

/// In words: "parse clip.aaa, ...". Defined where the operations are handed out.
std::ostream& operator<<(std::ostream& aStream, const Operation& anOperation);

/// The choice that a number makes.
template <typename Item, std::size_t kCount>
const Item& Chosen(const Item (&aChoices)[kCount], unsigned aNumber) {
    return aChoices[aNumber % kCount];
}

/// How often something came about, over all sequences: a run that never came upon it has checked nothing of
/// it.
using Tally = std::map<std::string, unsigned long>;
inline Tally& HowOften() {
    static Tally sTally;
    return sTally;
}
inline void Met(const std::string& aWhat) {
    ++HowOften()[aWhat];
}

/// Fails the sequence, telling both, where the host does not do what its model says.
template <typename Value>
void Agree(const std::string& aWhat, const Value& aHost, const Value& aModel) {
    if (aHost == aModel) {
        return;
    }
    std::ostringstream text;
    text << aWhat << "\n  host:  ";
    rc::show(aHost, text);
    text << "\n  model: ";
    rc::show(aModel, text);
    RC_FAIL(text.str());
}
