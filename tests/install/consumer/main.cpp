// A stranger's program against an installed library: asks about one file and prints its MIME type.

#include "ez/Environment.h"
#include "ez/FileMediaParserStream.h"
#include "ez/MediaParserManager.h"

#include "ezPlatform/media/MediaInfo.h"

#include <cstdio>
#include <memory>

int main(int aCount, char** anArguments) {
    if (aCount != 3) {
        return 2;
    }
    const ezEnvironment environment(anArguments[1]);
    ezMediaParserManager manager(environment.Get());
    manager.AddStandardParsers(kParseOption_Default);
    ezFileMediaParserStream stream(anArguments[2]);
    stream.Open();
    const std::unique_ptr<ezMediaInfo> info(manager.Parse(stream));
    if (info == nullptr) {
        return 1;
    }
    std::printf("%s\n", info->GetCString(kezInfo_MimeType, "").c_str());
    return 0;
}
