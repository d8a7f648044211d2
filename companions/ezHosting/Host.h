#pragma once

#include "ezHosting/Export.h"
#include "ezHosting/HostFolders.h"
#include "ezHosting/HostOptions.h"

#include "ezPlatform/media/MediaInfo.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

class DLNAMediaMapper;
class ExtensionMimeTypeMatcher;
class HostParts;
class PlaylistParserFactory;
class ezMediaParserManager;
class ezMediaParserStream;
class ezThumbnailProviderManager;

/// A host of the library: what a server needs to learn what its media are, in one object.
///
///     ezHost host;
///     if (!host.IsReady()) {
///         return Fail(host.GetError());
///     }
///     const std::unique_ptr<ezMediaInfo> info = host.Identify("/media/song.mp3");
///
/// It owns environment, manager, parsers, tables, cache and providers, and ends them in the right order. One
/// thread at a time uses a host and what it hands out; a server of several threads has a host for each. Where
/// configuration is looked for: FindHostFolders. All of it is read once, by the constructor.
///
/// Nothing is thrown, but for what mAddParsers throws, which leaves the constructor. docs/hosting.md is the
/// guide.
class EZHOSTING_API ezHost {
public:
    /// Never fails outright: IsReady tells.
    /// @param aConfigFolder  of the configuration; "" to look for it
    /// @param anOptions      what the host offers; need not outlive the constructor
    explicit ezHost(std::string_view aConfigFolder = {}, const ezHostOptions& anOptions = {});
    ~ezHost();

    ezHost(const ezHost&) = delete;
    ezHost& operator=(const ezHost&) = delete;

    /// False where the host lacks what was asked for. It then identifies nothing and has no capabilities, and
    /// what it hands out is there, but of no use. It stays so.
    bool IsReady() const;

    /// Of a host that is not ready why, in one line without an end, whatever names hold; it stays so. Of one
    /// that is, why the last Identify could not read its media; "" where it could, recognised or not, and
    /// before the first.
    const std::string& GetError() const;

    /// What a file is: a record of the caller's. Null where nothing recognised it, and where it cannot be
    /// read, which is not a regular file among others: GetError then tells why.
    std::unique_ptr<ezMediaInfo> Identify(std::string_view aPath);

    /// What a stream brings, from its start on. Opens it, also where it is open already, and leaves it open.
    /// Null as above. A stream that fails while it is read is not told from one that ends: ask the stream.
    std::unique_ptr<ezMediaInfo> Identify(ezMediaParserStream& aStream);

    /// Every protocolInfo that a server with this configuration may advertise ("http-get:*:TYPE:FIELD"), each
    /// once: what parsers declare, then what the media types table announces beside that, then the enabled
    /// profiles of the media mapper. The same in every run.
    /// @param afDTCP  in the link-protected (DTCP-IP) form
    std::vector<std::string> GetCapabilities(bool afDTCP = false) const;

    /// @name What the host is made of
    /// Borrowed, valid as long as the host.
    /// @{

    /// For parsers, which are then tried after those of ezFormats (see ezHostOptions::mAddParsers), and for
    /// all that a manager can do.
    ezMediaParserManager& GetManager() const;
    /// Loaded; empty where there is no table.
    ExtensionMimeTypeMatcher& GetMediaTypes() const;
    /// Where the configuration is read from.
    const ezHostFolders& GetFolders() const;
    /// The table in force; null where there is none.
    DLNAMediaMapper* GetMediaMapper() const;
    /// With the readers of ezPlaylists, to which own ones can be added; null where they were not asked for.
    PlaylistParserFactory* GetPlaylists() const;
    /// With the providers of ezThumbnails, in the order of AddThumbnailProviders. Null where they were not
    /// asked for. docs/serving-thumbnails.md says what a request is made of.
    ezThumbnailProviderManager* GetThumbnails() const;
    /// @}

    /// Puts a media mapper, loaded, in force that the caller made with GetManager's ini parser. False, and
    /// nothing changes, where one is in force, and for null. The host owns it either way.
    bool UseMediaMapper(std::unique_ptr<DLNAMediaMapper> aMapper);

private:
    std::unique_ptr<HostParts> mParts;
};
