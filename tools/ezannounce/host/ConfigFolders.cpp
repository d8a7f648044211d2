#include "host/ConfigFolders.h"

#include "ezHosting/HostFolders.h"

ConfigFolders FindConfigFolders(const Arguments& anArguments) {
    const ezHostFolders folders =
        FindHostFolders(anArguments.mConfigFolder.value_or(""), anArguments.mStateFolder.value_or(""));
    return {folders.mReadOnly, folders.mWritable};
}
