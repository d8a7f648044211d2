#pragma once

#include "ezPlatform/text/CString.h"

class ezMimeTypesDotIniParser;

/// Key of a search by file name.
struct DLNAMediaMapperSearchInfo {
    ezCString mFileName; ///< with its extension; an entry of the same base name may have another
    ezMimeTypesDotIniParser* mMimeTypesDotIniParser; ///< borrowed
};
