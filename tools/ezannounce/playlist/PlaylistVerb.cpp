#include "playlist/PlaylistVerb.h"

#include "arguments/Arguments.h"
#include "output/Columns.h"
#include "output/Console.h"
#include "output/JsonLine.h"
#include "output/Limits.h"
#include "output/SafeText.h"
#include "playlist/PlaylistSource.h"

#include "ezBytes/Utf8.h"

#include "ez/PlaylistParser.h"
#include "ez/PlaylistParserFactory.h"
#include "ezPlatform/base/Owned.h"
#include "ezPlatform/text/URI.h"
#ifdef EZ_HAS_PLAYLISTS
#include "ezPlaylists/M3UPlaylistParser.h"
#include "ezPlaylists/PlaylistCut.h"
#include "ezPlaylists/Playlists.h"
#endif

#include <cstdio>

namespace {

using Json = nlohmann::ordered_json;
using Row = std::vector<std::string>;

/// An entry with what is told about it.
struct Shown {
    std::optional<uint32> mIndex; ///< counted from the start of the playlist
    PlaylistParserEntry mEntry;   ///< with a title, where one can be made
    std::string mURL;             ///< "" where the location makes none
};

std::string Text(const ezCString& aText) {
    return std::string(aText.View());
}

/// A location that is a URL, escaped; "" for another.
ezCString URLOf(const ezCString& aLocation) {
    const ezOwned<ezURI_Delete> uri(ezURI_NewFromEscapedStr(aLocation.c_str()));
    const bool fURL =
        ezURI_GetScheme(uri.get()) != nullptr && aLocation.View().find('\0') == std::string_view::npos;
    return fURL ? ezCString::FromAllocatedString(ezURI_GetStr(uri.get())) : ezCString();
}

/// A URL in a local playlist stands for itself: to the reader it would be the name of a file.
std::string FullURL(PlaylistParser& aReader, bool afLocal, const ezCString& aLocation) {
    const ezCString url = afLocal ? URLOf(aLocation) : ezCString();
    return Text(url.IsEmpty() ? aReader.GetFullURLFor(aLocation) : url);
}

/// A playlist with its reader.
struct Opened {
    PlaylistParser& mReader;
    bool mfLocal;
};

/// An escaped name, as XSPF has, is decoded by way of its URL.
void FixTitle(PlaylistParserEntry& anEntry, const std::string& aURL) {
    PlaylistParserEntry named;
    named.mTitle = anEntry.mTitle;
    named.mURI = anEntry.mURI.Contains("%") && !aURL.empty() ? ezCString(aURL) : anEntry.mURI;
    PlaylistParser::FixEntry(&named);
    anEntry.mTitle = named.mTitle;
}

Shown ShownOf(const Opened& anOpened, const PlaylistParserEntry& anEntry, std::optional<uint32> anIndex) {
    Shown shown = {anIndex, anEntry, FullURL(anOpened.mReader, anOpened.mfLocal, anEntry.mURI)};
    FixTitle(shown.mEntry, shown.mURL);
    return shown;
}

/// "0:03:25"; "" where it is not known.
std::string DurationInWords(uint32 aSeconds) {
    char text[32] = "";
    if (aSeconds != 0) {
        std::snprintf(text, sizeof text, "%u:%02u:%02u", unsigned{aSeconds} / 3600,
                      unsigned{aSeconds} / 60 % 60, unsigned{aSeconds} % 60);
    }
    return text;
}

class EntryOutput {
public:
    EntryOutput(Console& aConsole, bool afJson) : mConsole(aConsole), mfJson(afJson) {
        if (!afJson) {
            mRows = {{"INDEX", "POSITION", "TITLE", "DURATION", "URL"}};
        }
    }

    bool HasAny() const { return mfAny; }

    void Put(const Shown& aShown) {
        mfAny = true;
        if (mfJson) {
            PutJson(aShown);
            return;
        }
        const PlaylistParserEntry& entry = aShown.mEntry;
        mRows.push_back({aShown.mIndex ? std::to_string(*aShown.mIndex) : "",
                         Text(entry.mStreamPos.ToCString()), Text(entry.mTitle),
                         DurationInWords(entry.mDuration), aShown.mURL});
        if (mRows.size() >= kOutput_RowsPerBatch) {
            Finish();
        }
    }

    void Finish() {
        if (!mRows.empty()) {
            mConsole.Print(InColumns(mRows));
            mRows.clear();
        }
    }

private:
    void PutJson(const Shown& aShown) {
        const PlaylistParserEntry& entry = aShown.mEntry;
        const bool fLast = entry.mNextEntryStreamPos == kezuint64_Max;
        Json json = {{"index", aShown.mIndex ? Json(*aShown.mIndex) : Json()},
                     {"position", entry.mStreamPos.ToUInt64()},
                     {"next_position", fLast ? Json() : Json(entry.mNextEntryStreamPos.ToUInt64())},
                     {"title", Text(entry.mTitle)},
                     {"duration", entry.mDuration != 0 ? Json(entry.mDuration) : Json()},
                     {"location", Text(entry.mURI)},
                     {"url", aShown.mURL.empty() ? Json() : Json(aShown.mURL)}};
        for (const auto& [name, text] :
             {std::pair("title_bytes", Text(entry.mTitle)), std::pair("location_bytes", Text(entry.mURI))}) {
            if (!IsWholeUtf8(text)) {
                json[name] = HexBytes(text);
            }
        }
        if (!entry.mSpecificTags.IsEmpty()) {
            json["tags"] = Text(entry.mSpecificTags);
        }
        mConsole.Print(JsonLineOf(json));
    }

    Console& mConsole;
    const bool mfJson;
    bool mfAny = false;
    std::vector<Row> mRows;
};

/// What a walk over all entries needs.
struct Listing {
    const Opened& mOpened;
    EntryOutput& mOutput;
};

bool sList(PlaylistParserEntry* anEntry, void* aListing) {
    Listing* listing = static_cast<Listing*>(aListing);
    listing->mOutput.Put(ShownOf(listing->mOpened, *anEntry, anEntry->mRelativeEntryIndex));
    return false;
}

struct Serving {
    const Opened& mOpened;
    Console& mConsole;
    ezCString mPrefix;
    bool mfAny = false;
};

bool sServe(PlaylistParserEntry* anEntry, void* aServing) {
    Serving* serving = static_cast<Serving*>(aServing);
    PlaylistParserEntry entry = ShownOf(serving->mOpened, *anEntry, std::nullopt).mEntry;
    // One byte for another, so that a line is a line, of its length, whatever a stranger called his song.
    entry.mTitle = ezCString(WithoutUnsafe(entry.mTitle.View(), '_'));
    entry.mURI = ezCString(WithoutUnsafe(entry.mURI.View(), '_'));
    serving->mfAny = true;
    serving->mConsole.Print(PlaylistParser::GetURLFor(serving->mPrefix, &entry).View());
    return false;
}

/// False when there is no entry.
bool Serve(const Opened& anOpened, const ServedAt& aServedAt, Console& aConsole) {
    Serving serving = {
        anOpened, aConsole,
        PlaylistParser::GetURLPrefix(aServedAt.mAddress, aServedAt.mPort, ezCString(aServedAt.mID), nullptr)};
    if (anOpened.mReader.SeekBytes(0)) {
        anOpened.mReader.ParseAll(sServe, &serving);
    }
    return serving.mfAny;
}

/// False when there is no entry.
bool List(const Opened& anOpened, EntryOutput& anOutput) {
    Listing listing = {anOpened, anOutput};
    if (anOpened.mReader.SeekBytes(0)) {
        anOpened.mReader.ParseAll(sList, &listing);
    }
    anOutput.Finish();
    return anOutput.HasAny();
}

/// One entry. False, with the reason, when there is none.
bool PutOne(const Opened& anOpened, const PlaylistOptions& anOptions, EntryOutput& anOutput,
            std::string& aReason) {
    PlaylistParser& reader = anOpened.mReader;
    PlaylistParserEntry entry;
    std::optional<uint32> index = anOptions.mIndex;
    if (index && !reader.FetchEntryAtIndex(*index, &entry)) {
        aReason = "no entry of index " + std::to_string(*index);
        return false;
    }
    if (!index && !reader.FetchEntryAtPos(*anOptions.mAt, &entry)) {
        aReason = "no entry at byte " + std::to_string(*anOptions.mAt);
        return false;
    }
    if (anOptions.mfNext) {
        if (!reader.FetchNextEntry(&entry)) {
            aReason = "no entry after that one";
            return false;
        }
        index = index ? std::optional<uint32>(*index + 1) : std::nullopt;
    }
    anOutput.Put(ShownOf(anOpened, entry, index));
    anOutput.Finish();
    return true;
}

void RegisterReaders([[maybe_unused]] PlaylistParserFactory& aFactory) {
#ifdef EZ_HAS_PLAYLISTS
    RegisterPlaylistParsers(aFactory);
#endif
}

bool IsHLS([[maybe_unused]] PlaylistParser& aReader) {
#ifdef EZ_HAS_PLAYLISTS
    auto* m3u = dynamic_cast<M3UPlaylistParser*>(&aReader);
    return m3u != nullptr && m3u->IsHLS();
#else
    return false;
#endif
}

/// Why not all of the playlist could be shown; "" when all could.
std::string WhyCut([[maybe_unused]] const PlaylistParser& aReader) {
#ifdef EZ_HAS_PLAYLISTS
    switch (GetPlaylistCut(aReader)) {
    case PlaylistCut::Line:
        return "not a playlist: a line of more than 1 MiB stands in it";
    case PlaylistCut::Size:
        return "too large to be read to its end";
    case PlaylistCut::None:
        break;
    }
#endif
    return {};
}

/// Shows what of the playlist was asked for. A playlist that is empty is told of, but is no failure.
/// @param aReason  takes what there is to tell; "" for nothing
int Show(const Opened& anOpened, const Arguments& anArguments, Console& aConsole, std::string& aReason) {
    const PlaylistOptions& options = anArguments.mPlaylist;
    if (IsHLS(anOpened.mReader)) {
        aReason = "an HLS playlist: segments of one stream, not a list of media";
        return kExitSomeFailed;
    }
    EntryOutput output(aConsole, anArguments.mfJson);
    if (options.mIndex || options.mAt) {
        return PutOne(anOpened, options, output, aReason) ? kExitSuccess : kExitSomeFailed;
    }
    const bool fAny =
        options.mServedAt ? Serve(anOpened, *options.mServedAt, aConsole) : List(anOpened, output);
    aReason = fAny ? "" : "no entries";
    return kExitSuccess;
}

} // namespace

int RunPlaylist(const Arguments& anArguments, Console& aConsole) {
    const std::string& name = anArguments.mOperands.front();
    const std::string shownName = name == "-" ? "standard input" : name;
    PlaylistParserFactory factory;
    RegisterReaders(factory);
    PlaylistSource source;
    std::string reason;
    if (!source.Open(name, reason)) {
        aConsole.Error(shownName, reason);
        return kExitSomeFailed;
    }
    PlaylistParser* reader = source.NewReader(factory);
    if (reader == nullptr) {
        aConsole.Error(shownName, "no reader for this kind of playlist");
        return kExitSomeFailed;
    }
    int status = Show({*reader, !source.IsFromNetwork()}, anArguments, aConsole, reason);
    if (source.HasFailed()) { // whatever else there is to tell comes of it
        reason = "cannot be read to its end";
        status = kExitSomeFailed;
    }
    const std::string cut = WhyCut(*reader);
    if (!cut.empty() && !source.HasFailed()) {
        reason = cut;
        status = kExitSomeFailed;
    }
    if (!reason.empty()) {
        aConsole.Error(shownName, reason);
    }
    return status;
}
