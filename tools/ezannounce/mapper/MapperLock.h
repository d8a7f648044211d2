#pragma once

#include "mapper/Limits.h"

#include <chrono>
#include <string>

/// The right to edit a media mapper file, which one process at a time has from its load to its save: of two
/// that edit at once the second sees what the first saved.
///
/// It is the lock of a file beside the media mapper file, "._MediaMapper.txt.lock", which is empty and stays:
/// one that is removed could be locked by two, each holding another file of its name.
class MapperLock {
public:
    /// Waits for it, but not longer than told. The folder exists.
    /// @param aPath  of the media mapper file
    explicit MapperLock(const std::string& aPath, std::chrono::milliseconds aPatience = kMapperLock_Patience);
    ~MapperLock();
    MapperLock(const MapperLock&) = delete;
    MapperLock& operator=(const MapperLock&) = delete;

    /// Why there is no editing; "" when there may be. Where the folder permits no file beside the table, or
    /// its file system has no locks, nobody can have the lock, and that is no reason.
    const std::string& GetReason() const { return mReason; }

private:
    void Wait(std::chrono::milliseconds aPatience);

    int mFile = -1;
    std::string mReason;
};
