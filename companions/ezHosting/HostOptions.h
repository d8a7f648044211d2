#pragma once

#include "ezHosting/Export.h"

#include "ez/Environment.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

class ProfileRules;
class ezMediaParserManager;

/// What an ezHost offers. Values, of which the host needs nothing once it is made but mProfileRules, which it
/// shares; hosts of several threads are made of the same.
struct ezHostOptions {
    /// @name What there is
    /// What this library was built without is an error of the host that asks for it.
    /// @{

    /// The parsers of ezFormats. Without them media are told by the extension alone, or by the host's own
    /// parsers.
    bool mfFormats = true;
    /// The operator's table, MediaMapper.txt in the read-only folder, from the first start on
    /// _MediaMapper.txt in the writable one, which that start makes (DLNAMediaMapper). That there is neither
    /// is an error.
    bool mfMediaMapper = false;
    /// The readers of ezPlaylists (ezHost::GetPlaylists).
    bool mfPlaylists = false;
    /// The providers of ezThumbnails before a cache (ezHost::GetThumbnails).
    bool mfThumbnails = false;
    /// Called once, with the manager of a host that is being made, to add parsers of one's own with
    /// ezMediaParserManager::Add. They come before those of ezFormats and are tried before them. For hosts of
    /// several threads it is called in each of these, and so adds new parsers each time.
    std::function<void(ezMediaParserManager&)> mAddParsers;
    /// @}

    /// @name How media are parsed
    /// @{

    int mParseOptions = kParseOption_Default;                            ///< a set of ezParseOption bits
    ezParserSpecsLevel mSpecsLevel = kProperty_Parser_SpecsLevel_Normal; ///< kProperty_Parser_SpecsLevel
    uint32 mCTTContext = kProperty_CTTContext_Off; ///< kProperty_CTTContext, an ezCTTContext
    /// kProperty_TextCodePage, a name or a number; "" is Windows-1252. One that the system does not know
    /// counts as that, with a warning in the log.
    std::string mTextCodePage;
    /// Which profile a file keeps; null for the built-in table of ezFormats.
    std::shared_ptr<const ProfileRules> mProfileRules;
    /// @}

    /// @name Where things are
    /// @{

    /// The writable configuration folder; "" for the one that FindHostFolders finds.
    std::string mStateFolder;
    /// Whether a host without a media types table is an error, which it is for a server: nothing would be
    /// recognised. Without, GetMediaTypes tells.
    bool mfTableRequired = true;
    /// The folder of the cache, in which it makes one of its own. Thumbnails without it are an error.
    std::string mThumbnailFolder;
    /// Bytes of all thumbnails in the cache: those of a home's media. What was not used for the longest time
    /// goes first.
    std::uint64_t mThumbnailBytes = std::uint64_t{128} << 20;
    /// Thumbnails in the cache: as many of a usual size as its bytes hold. What was not used for the longest
    /// time goes first.
    std::size_t mThumbnailFiles = 20000;
    /// @}
};
