#pragma once

#include "ezPlatform/base/Types.h"
#include "ezPlatform/base/UInt64.h"
#include "ezPlatform/text/CString.h"

/// One entry of a playlist, as a reader (PlaylistParser) reports it. It comes from a stranger: no field is
/// bounded, and each may hold any byte.
struct PlaylistParserEntry {
    ezCString mTitle;        ///< may be empty (PlaylistParser::FixEntry)
    ezCString mURI;          ///< as the playlist writes it: relative path, absolute path or URL
    uint32 mDuration = 0;    ///< in seconds, as the playlist states it; 0 when not known
    ezuint64 mStreamPos = 0; ///< offset in bytes in the playlist at which the entry begins
    ezuint64 mNextEntryStreamPos = kezuint64_Max; ///< that of the next entry; kezuint64_Max for the last one
    uint32 mRelativeEntryIndex = 0; ///< counted from where the walk began: 0 for its first entry
    ezCString mSpecificTags;        ///< further lines or tags of the format that belong to the entry
};

/// The state of a search by index: what is wanted, and where it was found.
struct PlaylistParserAtEntry {
    ezuint64 mPos = kezuint64_Max; ///< kezuint64_Max until it is found
    uint32 mEntryIndex = 0;        ///< wanted; counted from 0 where the walk begins
};
