// A stranger's program against an installed ezPlaylists: prints the title of the first entry of a playlist.

#include "ezPlaylists/Playlists.h"

#include "ez/PlaylistParser.h"
#include "ez/PlaylistParserFactory.h"

#include "ezPlatform/streams/FileStream.h"

#include <cstdio>
#include <memory>

int main(int /*aCount*/, char** anArguments) {
    PlaylistParserFactory factory;
    if (!RegisterPlaylistParsers(factory)) {
        return 2;
    }
    const ezCString path = ezCString(anArguments[1]) + "/playlists/sunday.m3u";
    auto file = std::make_unique<ezFile>();
    if (!file->Open(path, ezFileOpenMode_Read, 0)) {
        return 2;
    }
    const ezStreamOwner stream(ezFileGetStream(file.release(), "", path));
    const std::unique_ptr<PlaylistParser> parser(factory.NewPlaylistParser(stream.get(), "", "m3u"));
    PlaylistParserEntry entry;
    if (parser == nullptr || !parser->FetchEntryAtIndex(0, &entry)) {
        return 1;
    }
    std::printf("%s\n", entry.mTitle.c_str());
    return 0;
}
