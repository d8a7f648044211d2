// The smallest host of the library, which tells what files are: minimal-host FILE...
#include "ezHosting/Host.h"

#include <cstdio>

int main(int anArgCount, char** anArgs) {
    ezHost host; // with what is installed; ezHost host("/etc/server") takes a folder of one's own
    for (int i = 1; i < anArgCount; ++i) {
        if (const std::unique_ptr<ezMediaInfo> info = host.Identify(anArgs[i])) {
            std::printf("%s: %s\n", anArgs[i], info->GetOtherProperties().c_str());
        } else {
            std::printf("%s: not recognised %s\n", anArgs[i], host.GetError().c_str());
        }
    }
    return host.IsReady() ? 0 : 1;
}
