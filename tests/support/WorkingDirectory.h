#pragma once

#include <filesystem>
#include <string>

/// Another working directory while it lives; then it is again what it was.
class WorkingDirectory {
public:
    explicit WorkingDirectory(const std::string& aPath) : mBefore(std::filesystem::current_path()) {
        std::filesystem::current_path(aPath);
    }
    ~WorkingDirectory() { std::filesystem::current_path(mBefore); }
    WorkingDirectory(const WorkingDirectory&) = delete;
    WorkingDirectory& operator=(const WorkingDirectory&) = delete;

private:
    std::filesystem::path mBefore;
};
