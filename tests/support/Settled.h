#pragma once

#include <chrono>
#include <ctime>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <thread>

/// Waits until what was written in a folder last is so long ago that a further change would show in its
/// times: longer than the steps in which the system counts them, of a tick or two seconds.
inline void WaitUntilSettled(const std::string& aFolder) {
    const auto isYoung = [](const struct timespec& aStamp) {
        constexpr double kStep = 0.025;
        constexpr double kCoarseStep = 2.025;
        struct timespec now = {};
        clock_gettime(CLOCK_REALTIME, &now);
        const double age = static_cast<double>(now.tv_sec - aStamp.tv_sec) +
                           static_cast<double>(now.tv_nsec - aStamp.tv_nsec) / 1e9;
        const double step = aStamp.tv_nsec == 0 ? kCoarseStep : kStep;
        return age < step && age > -step;
    };
    for (const auto& entry : std::filesystem::recursive_directory_iterator(aFolder)) {
        struct stat status = {};
        while (stat(entry.path().c_str(), &status) == 0 &&
               (isYoung(status.st_mtim) || isYoung(status.st_ctim))) {
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
    }
}
