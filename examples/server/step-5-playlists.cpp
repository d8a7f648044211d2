// Step 5: the entries of playlists, and what those are that the server may serve:
// step-5-playlists CONFIG_FOLDER MEDIA_FOLDER PLAYLIST...
#include "../playlist-reader/LineListParser.h"
#include "Parsers.h"
#include "Record.h"

#include "ez/Environment.h"
#include "ez/PlaylistParserFactory.h"
#include "ezPlatform/base/Owned.h"
#include "ezPlatform/files/File.h"
#include "ezPlatform/streams/FileStream.h"
#include "ezPlatform/text/URI.h"
#include "ezPlaylists/Playlists.h"

#include <filesystem>
#include <memory>
#include <string>
#include <system_error>

namespace {

namespace fs = std::filesystem;

/// What an entry is called with: a URL stands for itself, anything else is a file.
ezCString GetURL(PlaylistParser& aReader, const ezCString& aLocation) {
    const ezOwned<ezURI_Delete> uri(ezURI_NewFromEscapedStr(aLocation.c_str()));
    return ezURI_GetScheme(uri.get()) != nullptr ? aLocation : aReader.GetFullURLFor(aLocation);
}

/// The path of a "file:" URL within a folder; "" for any other URL. A playlist may name every file of the
/// device, and a folder within the media may be a link out of them: what counts is where the file really is.
ezCString GetPathWithin(const fs::path& aFolder, const ezCString& aURL) {
    const ezOwned<ezURI_Delete> uri(ezURI_NewFromEscapedStr(aURL.c_str()));
    const bool fFile = ezCString(ezURI_GetScheme(uri.get())).CompareNoCase("file") == 0;
    const ezCString path = ezURI_GetPath(uri.get());
    std::error_code noFolder;
    std::error_code noFile;
    const std::string folder = (fs::canonical(aFolder, noFolder) / "").string();
    const std::string real = fs::canonical(fs::path(path.View()), noFile).string();
    const bool fWithin = fFile && !noFolder && !noFile && real.compare(0, folder.size(), folder) == 0;
    return fWithin ? ezCString(real) : ezCString();
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

/// Shows a playlist; false when it is not one.
bool ShowFile(ezMediaParserManager& aManager, const PlaylistParserFactory& aFactory, const char* aPath,
              const fs::path& aMediaFolder) {
    std::error_code error;
    const ezCString path(fs::absolute(aPath, error).c_str()); // its relative locations begin at its folder
    auto file = std::make_unique<ezFile>(path, ezFileOpenMode_Read);
    if (!file->Open()) {
        return false;
    }
    const ezStreamOwner stream(ezFileGetStream(file.release(), "", path)); // outlives the reader
    const std::unique_ptr<PlaylistParser> reader(
        aFactory.NewPlaylistParser(stream.get(), "", stream->GetExtension()));
    if (reader != nullptr) {
        Show(aManager, *reader, aMediaFolder);
    }
    return reader != nullptr;
}

} // namespace

int main(int anArgCount, char** anArgs) {
    if (anArgCount < 3) {
        std::fprintf(stderr, "usage: step-5-playlists CONFIG_FOLDER MEDIA_FOLDER PLAYLIST...\n");
        return 2;
    }
    const ezEnvironment environment(anArgs[1]);
    ezMediaParserManager manager(environment.Get());
    AddParsers(manager);

    PlaylistParserFactory factory;
    PlaylistParser::RegisterTo<LineListParser>(&factory); // before the others, so that it wins over them
    RegisterPlaylistParsers(factory);

    for (int i = 3; i < anArgCount; ++i) {
        if (!ShowFile(manager, factory, anArgs[i], anArgs[2])) {
            std::printf("%s: no playlist\n", anArgs[i]);
        }
    }
    return 0;
}
