#pragma once

#include "ez/MediaParserTypes.h"

#include "ezPlatform/text/CString.h"

struct ezPtrList;

/// One media type: a line of the media types file (ExtensionMimeTypeMatcher has its format). The lists hold C
/// strings and own them. Built once, then only read: several threads may do so at once.
struct EZPARSERS_API ExtensionMimeTypeMatcherEntry {
    /// @param aKey     the type name, in lower case
    /// @param anEntry  the value: up to four fields separated by "@"
    ExtensionMimeTypeMatcherEntry(const ezCString& aKey, const ezCString& anEntry);
    ~ExtensionMimeTypeMatcherEntry();

    ExtensionMimeTypeMatcherEntry(const ExtensionMimeTypeMatcherEntry&) = delete;
    ExtensionMimeTypeMatcherEntry& operator=(const ExtensionMimeTypeMatcherEntry&) = delete;

    /// True when the first class is aClass, such as "item.audioItem", or one derived from it. Case-sensitive.
    bool IsOfClass(const char* aClass) const;

    ezPtrList* mExtensions;  ///< lower case, in file order
    ezPtrList* mMimeTypes;   ///< lower case, in file order
    ezPtrList* mUPnPClasses; ///< as written
    ezPtrList* mTypes;       ///< parser types to try: the key, then the further ones in lower case

private:
    void Init();
};
