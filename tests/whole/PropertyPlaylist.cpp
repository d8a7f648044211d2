#include "PropertyPlaylist.h"

#include "PropertyPackets.h"
#include "PropertyTypes.h"

#include "ezPlatform/base/Memory.h"
#include "ezPlatform/files/File.h"
#include "ezPlatform/streams/FileStream.h"
#include "ezPlatform/streams/MemoryStream.h"
#include "ezPlaylists/Playlists.h"
#include "support/Str.h"

#include <algorithm>
#include <cstring>
#include <memory>

namespace {

constexpr std::size_t kMostSongs = 12;

const char* const kTitles[] = {"Song", "A, and B", "Caf\xC3\xA9", ""};
const char* const kURIs[] = {"a.mp3", "dir/b.mp3", "c-d.ogg", "http://host/e.mp3"};
const unsigned kSeconds[] = {10, 0, 3601};
const char* const kLineEnds[] = {"\n", "\r\n", "\r"};

/// A format in which the songs are written.
struct Format {
    const char* mExtension;
    const char* mMimeType;
    std::string (*mWrite)(const std::vector<Song>&);
    bool mfLocationsAlone = false; ///< it knows neither titles nor durations
};

std::string AsM3U(const std::vector<Song>& aSongs) {
    std::string text = "#EXTM3U\n";
    for (const Song& song : aSongs) {
        text += "#EXTINF:" + std::to_string(song.mSeconds) + "," + song.mTitle + "\n";
        text += "# a comment\n\n" + song.mURI + "\n";
    }
    return text;
}

std::string AsPLS(const std::vector<Song>& aSongs) {
    std::string text = "[playlist]\n";
    for (std::size_t i = 0; i < aSongs.size(); ++i) {
        const std::string number = std::to_string(i + 1);
        text += "File" + number + "=" + aSongs[i].mURI + "\n";
        text += "Title" + number + "=" + aSongs[i].mTitle + "\n";
        text += "Length" + number + "=" + std::to_string(aSongs[i].mSeconds) + "\n";
    }
    return text + "NumberOfEntries=" + std::to_string(aSongs.size()) + "\nVersion=2\n";
}

std::string AsASX(const std::vector<Song>& aSongs) {
    std::string text = "<asx version=\"3.0\">\n";
    for (const Song& song : aSongs) {
        const unsigned minutes = song.mSeconds / 60 % 60;
        text += "<entry><title>" + song.mTitle + "</title>\n<ref href=\"" + song.mURI + "\"/>\n";
        text += "<duration value=\"" + std::to_string(song.mSeconds / 3600) + ":" +
                std::to_string(minutes / 10) + std::to_string(minutes % 10) + ":" +
                std::to_string(song.mSeconds % 60 / 10) + std::to_string(song.mSeconds % 10) +
                "\"/></entry>\n";
    }
    return text + "</asx>\n";
}

std::string AsXSPF(const std::vector<Song>& aSongs) {
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                       "<playlist version=\"1\" xmlns=\"http://xspf.org/ns/0/\">\n<trackList>\n";
    for (const Song& song : aSongs) {
        text += "<track><location>" + song.mURI + "</location>\n<title>" + song.mTitle + "</title>\n";
        text += "<duration>" + std::to_string(song.mSeconds) + "000</duration></track>\n";
    }
    return text + "</trackList></playlist>\n";
}

std::string AsWPL(const std::vector<Song>& aSongs) {
    std::string text = "<?wpl version=\"1.0\"?>\n<smil><head><title>a list</title></head>\n<body><seq>\n";
    for (const Song& song : aSongs) {
        text += "<media src=\"" + song.mURI + "\"/>\n";
    }
    return text + "</seq></body></smil>\n";
}

const Format kFormats[] = {
    {"m3u", "audio/x-mpegurl", AsM3U},        {"m3u8", "", AsM3U},
    {"pls", "audio/x-scpls", AsPLS},          {"asx", "video/x-ms-asx", AsASX},
    {"xspf", "application/xspf+xml", AsXSPF}, {"wpl", "application/vnd.ms-wpl", AsWPL, true},
};

std::string WithEnds(const std::string& aText, const std::string& anEnd) {
    std::string text;
    for (const char byte : aText) {
        text += byte == '\n' ? anEnd : std::string(1, byte);
    }
    return text;
}

Song SongFrom(const PlaylistParserEntry& anEntry) {
    return {Str(anEntry.mTitle), Str(anEntry.mURI), anEntry.mDuration};
}

/// What a walk gives.
struct Walk {
    std::vector<Song> mSongs;
    std::vector<ezuint64> mPositions;
};

bool sTakeSong(PlaylistParserEntry* anEntry, void* aWalk) {
    static_cast<Walk*>(aWalk)->mSongs.push_back(SongFrom(*anEntry));
    static_cast<Walk*>(aWalk)->mPositions.push_back(anEntry->mStreamPos);
    return false;
}

/// What a format tells of the songs.
std::vector<Song> ToldBy(const Format& aFormat, std::vector<Song> aSongs) {
    for (Song& song : aSongs) {
        song = aFormat.mfLocationsAlone ? Song{"", song.mURI, 0} : song;
    }
    return aSongs;
}

// Readers of the host, which are registered and never built.
constexpr int kReaders = 2;
template <int kNumber>
PlaylistParser* sNoReader(ezStream* /*aStream*/) {
    return nullptr;
}
const PlaylistParserBuilderFunc kBuilders[kReaders] = {sNoReader<0>, sNoReader<1>};
const char* const kReaderTypes[] = {"audio/x-list", "", "audio/x-scpls", "Audio/X-List"};
const char* const kReaderExtensions[] = {"lst", "lst,m3u", "", "xls,lists"};
const char* const kAskedTypes[] = {"", "audio/x-list", "audio/x-scpls", "AUDIO/X-SCPLS", "Audio/X-List", ""};
const char* const kAskedExtensions[] = {"m3u", ".PLS", "lst", "ls", "wax", "", "LISTS", "m3u,m3u8"};

} // namespace

PlaylistSubject::PlaylistSubject(const TemporaryFolder& aFolder) : mFolder(aFolder) {
    RegisterPlaylistParsers(mFactory);
}

Song PlaylistSubject::SongOf(const Operation& anOperation) {
    return {Chosen(kTitles, anOperation.mA), Chosen(kURIs, anOperation.mB), Chosen(kSeconds, anOperation.mC)};
}

std::string PlaylistSubject::Describe(const Operation& anOperation) {
    std::ostringstream text;
    switch (anOperation.mVerb) {
    case Verb::AddSong:
        text << "add the song " << SongOf(anOperation) << " before song " << anOperation.mD
             << " (of those there)";
        break;
    case Verb::RemoveSong:
        text << "remove song " << anOperation.mA << " (of those there)";
        break;
    case Verb::RegisterReader:
        text << "register a reader for '" << Chosen(kReaderTypes, anOperation.mA) << "' and '"
             << Chosen(kReaderExtensions, anOperation.mB) << "'";
        break;
    case Verb::AskForReader:
        text << "ask for a reader for '" << Chosen(kAskedTypes, anOperation.mA) << "' or '"
             << Chosen(kAskedExtensions, anOperation.mB) << "'";
        break;
    default:
        static const char* const kWays[] = {"from memory", "from its file", "as it is fed"};
        static const char* const kEnds[] = {"LF", "CRLF", "CR"};
        text << "read the songs as " << Chosen(kFormats, anOperation.mA).mExtension << " with "
             << Chosen(kEnds, anOperation.mB) << " " << Chosen(kWays, anOperation.mC) << ", found by "
             << (anOperation.mD % 2 != 0 ? "MIME type" : "extension");
        break;
    }
    return text.str();
}

void PlaylistSubject::Apply(const Operation& anOperation) {
    switch (anOperation.mVerb) {
    case Verb::AddSong:
        if (mSongs.size() < kMostSongs) {
            mSongs.insert(mSongs.begin() + static_cast<std::ptrdiff_t>(anOperation.mD % (mSongs.size() + 1)),
                          SongOf(anOperation));
        }
        break;
    case Verb::RemoveSong:
        if (!mSongs.empty()) {
            mSongs.erase(mSongs.begin() + static_cast<std::ptrdiff_t>(anOperation.mA % mSongs.size()));
        }
        break;
    case Verb::RegisterReader:
        Register(anOperation);
        break;
    case Verb::AskForReader:
        Ask(anOperation);
        break;
    default:
        Read(anOperation);
        break;
    }
}

ezStreamOwner PlaylistSubject::Delivered(const std::string& aText, const std::string& aName, unsigned aWay) {
    const std::string path = mFolder.Path(aName);
    switch (aWay % 3) {
    case 0: {
        void* block = ezMalloc(aText.size() + 1);
        std::memcpy(block, aText.data(), aText.size());
        auto* stream = new ezMemoryStream(block, aText.size(), "");
        stream->SetURI(path.c_str());
        return ezStreamOwner(stream);
    }
    case 1: {
        mFolder.Write(aName, aText);
        auto* file = new ezFile;
        file->Open(path.c_str(), ezFileOpenMode_Read, 0);
        return ezStreamOwner(ezFileGetStream(file, "", path.c_str()));
    }
    default:
        return ezStreamOwner(new FedStream(aText, 50, 100000, path));
    }
}

void PlaylistSubject::Read(const Operation& anOperation) {
    const Format& format = Chosen(kFormats, anOperation.mA);
    const std::string text = WithEnds(format.mWrite(mSongs), Chosen(kLineEnds, anOperation.mB));
    const std::string name = std::string("list.") + format.mExtension;
    const ezStreamOwner stream = Delivered(text, name, anOperation.mC);
    const bool fByType = anOperation.mD % 2 != 0;
    const std::unique_ptr<PlaylistParser> parser(
        mFactory.NewPlaylistParser(stream.get(), fByType ? format.mMimeType : "", format.mExtension));
    Agree("there is a reader", parser != nullptr, true);
    const std::vector<Song> told = ToldBy(format, mSongs);
    std::vector<ezuint64> positions;
    CompareWalk(*parser, told, &positions);
    CompareFetches(*parser, told);
    ComparePositions(*parser, told, positions);
    CompareURLs(*parser);
    Met(std::string("a playlist is read: ") + format.mExtension);
}

void PlaylistSubject::CompareWalk(PlaylistParser& aParser, const std::vector<Song>& aTold,
                                  std::vector<ezuint64>* aPositions) {
    Walk walk;
    Agree("the playlist goes back to its start", aParser.SeekBytes(0), true);
    aParser.ParseAll(sTakeSong, &walk);
    Agree("the songs of the playlist", walk.mSongs, aTold);
    *aPositions = walk.mPositions;
}

void PlaylistSubject::CompareFetches(PlaylistParser& aParser, const std::vector<Song>& aTold) {
    PlaylistParserEntry chained;
    for (std::size_t i = 0; i < aTold.size(); ++i) {
        PlaylistParserEntry entry;
        Agree("a song is there", aParser.FetchEntryAtIndex(static_cast<uint32>(i), &entry), true);
        Agree("song " + std::to_string(i) + " by its index", SongFrom(entry), aTold[i]);
        const bool fChained =
            i == 0 ? aParser.FetchEntryAtIndex(0, &chained) : aParser.FetchNextEntry(&chained);
        Agree("a next song is there", fChained, true);
        Agree("song " + std::to_string(i) + " as the next one", SongFrom(chained), aTold[i]);
    }
    PlaylistParserEntry after;
    Agree("there is no song after the last",
          aParser.FetchEntryAtIndex(static_cast<uint32>(aTold.size()), &after) ||
              (!aTold.empty() && aParser.FetchNextEntry(&chained)),
          false);
}

void PlaylistSubject::ComparePositions(PlaylistParser& aParser, const std::vector<Song>& aTold,
                                       const std::vector<ezuint64>& aPositions) {
    for (std::size_t i = aTold.size(); i > 0; --i) { // backwards, so that no fetch finds its place by chance
        PlaylistParserEntry entry;
        const ezuint64 position = aPositions[i - 1];
        Agree("a song is there by its position", aParser.FetchEntryAtPos(position, &entry), true);
        Agree("song " + std::to_string(i - 1) + " by its position", SongFrom(entry), aTold[i - 1]);
        Agree("the position of a song by its position", entry.mStreamPos.ToUInt64(), position.ToUInt64());
        Agree("the index of a song by its position", entry.mRelativeEntryIndex, uint32{0});
        const bool fNext = aParser.FetchNextEntry(&entry);
        Agree("there is one after a song by its position", fNext, i < aTold.size());
        if (fNext) {
            Agree("the song after one by its position", SongFrom(entry), aTold[i]);
        }
    }
}

void PlaylistSubject::CompareURLs(PlaylistParser& aParser) {
    for (const Song& song : mSongs) {
        PlaylistParserEntry entry;
        entry.mTitle = song.mTitle.c_str();
        entry.mURI = song.mURI.c_str();
        PlaylistParser::FixEntry(&entry);
        const std::string name = NameParts(song.mURI.substr(song.mURI.rfind('/') + 1)).mBase;
        Agree("the title of " + song.mURI, Str(entry.mTitle), song.mTitle.empty() ? name : song.mTitle);
        if (song.mURI.find("://") == std::string::npos) {
            Agree("the URL of " + song.mURI, Str(aParser.GetFullURLFor(song.mURI.c_str())),
                  "file://" + mFolder.Path(song.mURI));
        }
        uint32 length = 0;
        const ezCString prefix = PlaylistParser::GetURLPrefix(0, 80, "pl", &length);
        Agree("the length of a line served again",
              static_cast<uint32>(PlaylistParser::GetURLFor(prefix, &entry).GetLength()), length);
    }
}

std::vector<PlaylistSubject::Reader> PlaylistSubject::ReadersOfTheLibraries() {
    return {
        {"audio/x-scpls", ",pls,"}, {"", ",m3u,m3u8,"}, {"", ",asx,wax,wvx,"}, // as far as one asks for them
    };
}

int PlaylistSubject::Answering(const std::string& aMimeType, const std::string& anExtension) const {
    std::string wanted = Lower(anExtension);
    wanted.erase(std::remove(wanted.begin(), wanted.end(), '.'), wanted.end());
    for (const Reader& reader : mReaders) {
        const bool fByExtension = aMimeType.empty() && !anExtension.empty() &&
                                  reader.mExtensions.find("," + wanted + ",") != std::string::npos;
        if (fByExtension || (!aMimeType.empty() && reader.mMimeType == aMimeType)) {
            return reader.mNumber;
        }
    }
    return kNone;
}

void PlaylistSubject::Register(const Operation& anOperation) {
    const std::string type = Chosen(kReaderTypes, anOperation.mA);
    const std::string extensions = Chosen(kReaderExtensions, anOperation.mB);
    const int number = static_cast<int>(anOperation.mC % kReaders);
    if (type.empty() && extensions.empty()) {
        return; // a caller's mistake
    }
    Agree("a reader is registered", mFactory.Register(kBuilders[number], type.c_str(), extensions.c_str()),
          true);
    mReaders.push_back({type, "," + extensions + ",", number});
}

void PlaylistSubject::Ask(const Operation& anOperation) {
    const ezCString type = Chosen(kAskedTypes, anOperation.mA);
    const ezCString extension = Chosen(kAskedExtensions, anOperation.mB);
    const PlaylistParserFactoryInfo* info = mFactory.GetPlaylistParserFactoryInfo(type, extension);
    int number = info != nullptr ? kOfTheLibraries : kNone;
    for (int i = 0; i < kReaders && info != nullptr; ++i) {
        number = info->mBuilderFunc == kBuilders[i] ? i : number;
    }
    const int expected = Answering(Str(type), Str(extension));
    Agree("the reader that answers", number, expected);
    Agree("a playlist is supported", mFactory.IsSupportedPlaylist(type, extension), expected != kNone);
    Met(expected == kNone             ? "no reader answers"
        : expected == kOfTheLibraries ? "a reader of the libraries answers"
                                      : "a reader of the host answers");
}
