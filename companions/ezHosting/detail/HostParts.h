#pragma once

#include "ezHosting/HostFolders.h"
#include "ezHosting/HostOptions.h"
#include "ezHosting/detail/HostThumbnails.h"

#include "ez/DLNAMediaMapper.h"
#include "ez/ExtensionMimeTypeMatcher.h"
#include "ez/MediaParserManager.h"
#include "ez/PlaylistParserFactory.h"

#include <memory>
#include <string>
#include <string_view>

/// What an ezHost owns, in the order in which it is needed: what stands later uses what stands before it.
class HostParts {
public:
    HostParts(std::string_view aConfigFolder, const ezHostOptions& anOptions);
    ~HostParts();
    HostParts(const HostParts&) = delete;
    HostParts& operator=(const HostParts&) = delete;

    /// As ezHost::UseMediaMapper.
    bool UseMapper(std::unique_ptr<DLNAMediaMapper> aMapper);

    const ezHostFolders mFolders;
    ezEnvironment mEnvironment;
    ExtensionMimeTypeMatcher mMediaTypes;
    std::unique_ptr<DLNAMediaMapper> mMapper; ///< before the manager, whose parser asks it
    ezMediaParserManager mManager;
    std::unique_ptr<PlaylistParserFactory> mPlaylists;
    std::unique_ptr<HostThumbnails> mThumbnails;
    bool mfReady = true;
    std::string mError;

private:
    void AddParsers(const ezHostOptions& anOptions);
    std::unique_ptr<DLNAMediaMapper> NewMapper();
    /// Each adds what was asked for; false, with mError, where it cannot.
    /// @{
    bool CheckTable(const ezHostOptions& anOptions);
    bool AddMapper(const ezHostOptions& anOptions);
    bool AddPlaylists(const ezHostOptions& anOptions);
    bool AddThumbnails(const ezHostOptions& anOptions);
    /// @}
    bool Fail(const std::string& anError);
};
