// What a stranger builds against libezHosting: use-ezHosting MEDIA
#include "ezHosting/Host.h"

#include <cstdio>

int main(int anArgCount, char** anArgs) {
    ezHost host; // with the table that was installed beside the library
    const auto info = host.Identify(anArgCount > 1 ? anArgs[1] : "");
    std::printf("%s\n",
                info != nullptr ? info->GetCString(kezInfo_DLNA, "").c_str() : host.GetError().c_str());
    return 0;
}
