#include "PropertyPlaylist.h"

#include "PropertyPackets.h"
#include "PropertyTypes.h"

#include "ezPlatform/base/Memory.h"
#include "ezPlatform/files/File.h"
#include "ezPlatform/streams/FileStream.h"
#include "ezPlatform/streams/MemoryStream.h"
#include "ezPlaylists/Playlists.h"
#include "support/Str.h"

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

#ifdef EZ_HAS_XML_PLAYLISTS
std::string AsXSPF(const std::vector<Song>& aSongs) {
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                       "<playlist version=\"1\" xmlns=\"http://xspf.org/ns/0/\">\n<trackList>\n";
    for (const Song& song : aSongs) {
        text += "<track><location>" + song.mURI + "</location>\n<title>" + song.mTitle + "</title>\n";
        text += "<duration>" + std::to_string(song.mSeconds) + "000</duration></track>\n";
    }
    return text + "</trackList></playlist>\n";
}
#endif

const Format kFormats[] = {
    {"m3u", "audio/x-mpegurl", AsM3U},        {"m3u8", "", AsM3U},
    {"pls", "audio/x-scpls", AsPLS},          {"asx", "video/x-ms-asx", AsASX},
#ifdef EZ_HAS_XML_PLAYLISTS
    {"xspf", "application/xspf+xml", AsXSPF},
#endif
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

bool sTakeSong(PlaylistParserEntry* anEntry, void* aSongs) {
    static_cast<std::vector<Song>*>(aSongs)->push_back(SongFrom(*anEntry));
    return false;
}

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
    CompareWalk(*parser);
    CompareFetches(*parser);
    CompareURLs(*parser);
    Met(std::string("a playlist is read: ") + format.mExtension);
}

void PlaylistSubject::CompareWalk(PlaylistParser& aParser) {
    std::vector<Song> songs;
    Agree("the playlist goes back to its start", aParser.SeekBytes(0), true);
    aParser.ParseAll(sTakeSong, &songs);
    Agree("the songs of the playlist", songs, mSongs);
}

void PlaylistSubject::CompareFetches(PlaylistParser& aParser) {
    PlaylistParserEntry chained;
    for (std::size_t i = 0; i < mSongs.size(); ++i) {
        PlaylistParserEntry entry;
        Agree("a song is there", aParser.FetchEntryAtIndex(static_cast<uint32>(i), &entry), true);
        Agree("song " + std::to_string(i) + " by its index", SongFrom(entry), mSongs[i]);
        const bool fChained =
            i == 0 ? aParser.FetchEntryAtIndex(0, &chained) : aParser.FetchNextEntry(&chained);
        Agree("a next song is there", fChained, true);
        Agree("song " + std::to_string(i) + " as the next one", SongFrom(chained), mSongs[i]);
    }
    PlaylistParserEntry behind;
    Agree("there is no song behind the last",
          aParser.FetchEntryAtIndex(static_cast<uint32>(mSongs.size()), &behind) ||
              (!mSongs.empty() && aParser.FetchNextEntry(&chained)),
          false);
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
