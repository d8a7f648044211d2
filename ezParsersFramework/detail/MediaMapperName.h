#pragma once

#include "ez/DLNAMediaMapperSearchInfo.h"

#include "ezPlatform/text/CString.h"

#include <optional>
#include <string_view>

/// A file name of a media mapper, split at its last dot. Borrows the text.
struct MediaMapperName {
    explicit MediaMapperName(std::string_view aName);

    std::string_view mBase;
    std::string_view mExtension;
};

/// The base name under which a file is looked up: without a number in brackets at its end ("clip(2)" is
/// "clip", "clip(a)" stays) and without all up to "DTCP_".
std::string_view MediaMapperName_BaseToLookUp(std::string_view aBase);

/// The key of one pass over the entries. It is split once, and the media types are asked once at most, by the
/// first entry of the same base name. Borrows the search info.
class MediaMapperNameKey {
public:
    explicit MediaMapperNameKey(const DLNAMediaMapperSearchInfo& aSearchInfo);

    /// Search callback of an array of DLNAMediaMapperEntry; aKey is a MediaMapperNameKey.
    static int Search(const void* anEntry, const void* aKey);

private:
    bool KnowsExtension() const;

    const DLNAMediaMapperSearchInfo& mSearchInfo;
    MediaMapperName mName;
    mutable std::optional<bool> mfKnowsExtension;
};
