#pragma once

#include "ezPlatform/files/FileState.h"

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>

/// Waits until what was written in a folder last is so long ago that a further change would show.
inline void WaitUntilSettled(const std::string& aFolder) {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(aFolder)) {
        while (!ezFileState(ezCString(entry.path().string())).IsSettled()) {
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
    }
}
