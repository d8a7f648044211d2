#include "ezPlatform/base/StandardDescriptors.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

bool ezKeepStandardDescriptors() {
    bool fAllOpen = true;
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        if (fcntl(descriptor, F_GETFD) == -1 && errno == EBADF) {
            // The lowest that is free is this one, as those below it are open by now.
            const int flags = descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY;
            fAllOpen = open("/dev/null", flags) == descriptor && fAllOpen;
        }
    }
    return fAllOpen;
}
