// A stranger's program against an installed library: asks about one file and prints its MIME type.

#include "ez/FileMediaParserStream.h"
#include "ez/MediaParserManager.h"

#include "ezPlatform/config/PropertyList.h"
#include "ezPlatform/media/MediaInfo.h"

#include <cstdio>
#include <memory>

int main(int aCount, char** anArguments) {
    if (aCount != 3) {
        return 2;
    }
    ezPropertyList* environment = ezPropertyList_New();
    ezPropertyList_Set_charPtr(environment, "ReadOnlyConfigPath", anArguments[1]);
    int status = 1;
    {
        ezMediaParserManager manager(environment);
        manager.AddStandardParsers(kParseOption_Default);
        ezFileMediaParserStream stream(anArguments[2]);
        stream.Open();
        const std::unique_ptr<ezMediaInfo> info(manager.Parse(stream));
        if (info != nullptr) {
            std::printf("%s\n", info->GetCString(kezInfo_MimeType, "").c_str());
            status = 0;
        }
    }
    ezPropertyList_Delete(environment);
    return status;
}
