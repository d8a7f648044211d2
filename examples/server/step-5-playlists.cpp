// Step 5: the entries of playlists, and what those are that the server may serve:
// step-5-playlists CONFIG_FOLDER MEDIA_FOLDER PLAYLIST...
#include "../playlist-reader/LineListParser.h"
#include "Environment.h"
#include "Parsers.h"
#include "Record.h"

#include "ez/PlaylistParserFactory.h"
#include "ezPlatform/files/File.h"
#include "ezPlatform/streams/FileStream.h"
#include "ezPlatform/text/URI.h"
#include "ezPlaylists/Playlists.h"

#include <filesystem>
#include <string>
#include <system_error>

namespace {

namespace fs = std::filesystem;

/// What an entry is called with: a URL stands for itself, anything else is a file.
ezCString GetURL(PlaylistParser& aReader, const ezCString& aLocation) {
    ezURI* uri = ezURI_NewFromEscapedStr(aLocation.c_str());
    const bool fURL = ezURI_GetScheme(uri) != nullptr;
    ezURI_Delete(uri);
    return fURL ? aLocation : aReader.GetFullURLFor(aLocation);
}

/// The path of a "file:" URL within a folder; "" for any other URL. A playlist may name every file of the
/// device, and a folder within the media may be a link out of them: what counts is where the file really is.
ezCString GetPathWithin(const fs::path& aFolder, const ezCString& aURL) {
    ezURI* uri = ezURI_NewFromEscapedStr(aURL.c_str());
    const bool fFile = ezCString(ezURI_GetScheme(uri)).CompareNoCase("file") == 0;
    const ezCString path = ezURI_GetPath(uri);
    ezURI_Delete(uri);
    std::error_code error;
    const std::string folder = (fs::canonical(aFolder, error) / "").string();
    const std::string real = fs::canonical(fs::path(path.View()), error).string();
    return fFile && !error && real.compare(0, folder.size(), folder) == 0 ? ezCString(real) : ezCString();
}

void Show(ezMediaParserManager& aManager, PlaylistParser& aReader, const fs::path& aMediaFolder) {
    PlaylistParserEntry entry;
    bool fEntry = aReader.FetchEntryAtPos(0, &entry);
    while (fEntry) {
        PlaylistParser::FixEntry(&entry); // a title from the location, where there is none
        const ezCString url = GetURL(aReader, entry.mURI);
        std::printf("%s, %s\n  ", entry.mTitle.c_str(), url.c_str());
        const ezCString path = GetPathWithin(aMediaFolder, url);
        if (path.IsEmpty()) {
            std::printf("not ours\n");
        } else {
            Print("ours", Identify(aManager, path).get());
        }
        fEntry = aReader.FetchNextEntry(&entry);
    }
}

} // namespace

int main(int anArgCount, char** anArgs) {
    if (anArgCount < 3) {
        std::fprintf(stderr, "usage: step-5-playlists CONFIG_FOLDER MEDIA_FOLDER PLAYLIST...\n");
        return 2;
    }
    const Environment environment(anArgs[1]);
    ezMediaParserManager manager(environment.Get());
    AddParsers(manager);

    PlaylistParserFactory factory;
    PlaylistParser::RegisterTo<LineListParser>(&factory);
    RegisterPlaylistParsers(factory);

    for (int i = 3; i < anArgCount; ++i) {
        std::error_code error;
        const ezCString path(
            fs::absolute(anArgs[i], error).c_str()); // what its relative locations are behind
        auto file = std::make_unique<ezFile>(path, ezFileOpenMode_Read);
        file->Open(); // of a file that does not open the stream is not open either
        const ezStreamOwner stream(ezFileGetStream(file.release(), "", path));
        const std::unique_ptr<PlaylistParser> reader(
            stream->IsOpened() ? factory.NewPlaylistParser(stream.get(), "", stream->GetExtension())
                               : nullptr);
        if (reader == nullptr) {
            std::printf("%s: no playlist\n", anArgs[i]);
        } else {
            Show(manager, *reader, anArgs[2]);
        }
    }
    return 0;
}
