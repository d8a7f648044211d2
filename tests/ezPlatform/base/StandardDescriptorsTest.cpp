#include "ezPlatform/base/StandardDescriptors.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// Runs a check in a process of its own, in which these descriptors are closed.
template <typename Check>
int StatusWithout(int aSet, const Check& aCheck) {
    const pid_t child = fork();
    if (child == 0) {
        for (int descriptor = 0; descriptor <= 2; ++descriptor) {
            if ((aSet & 1 << descriptor) != 0) {
                close(descriptor);
            }
        }
        _exit(aCheck());
    }
    int status = -1;
    return waitpid(child, &status, 0) == child && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace

TEST(StandardDescriptors, WhatIsOpenedLaterIsNoneOfThem) {
    for (int set = 0; set < 8; ++set) {
        EXPECT_EQ(StatusWithout(set,
                                [] {
                                    const bool fKept = ezKeepStandardDescriptors();
                                    return fKept && open("/dev/null", O_RDONLY) > 2 ? 0 : 1;
                                }),
                  0)
            << set;
    }
}

TEST(StandardDescriptors, WhoUsesOneThatWasClosedStillGetsAnError) {
    EXPECT_EQ(StatusWithout(7,
                            [] {
                                char byte = 'x';
                                ezKeepStandardDescriptors();
                                return (read(0, &byte, 1) == -1 ? 1 : 0) +
                                       (write(1, &byte, 1) == -1 ? 2 : 0) +
                                       (write(2, &byte, 1) == -1 ? 4 : 0);
                            }),
              7);
}

TEST(StandardDescriptors, ThoseThatAreOpenStayAsTheyAre) {
    EXPECT_EQ(StatusWithout(0,
                            [] {
                                int ends[2] = {-1, -1};
                                char byte = 'x';
                                const bool fMade = pipe(ends) == 0 && dup2(ends[1], 1) == 1;
                                close(2);
                                ezKeepStandardDescriptors();
                                const bool fSame = write(1, &byte, 1) == 1 && read(ends[0], &byte, 1) == 1;
                                return fMade && fSame ? 0 : 1;
                            }),
              0);
}
