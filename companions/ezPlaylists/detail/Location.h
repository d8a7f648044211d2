#pragma once

#include "ezPlatform/text/CString.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

/// Whether a location is a URL: neither a path nor a name, which may have a colon in it, too.
bool HasScheme(std::string_view aLocation);

/// Whether a location is absolute on Windows: it begins with a drive ("C:\", "C:/") or a server ("\\").
bool IsWindowsPath(std::string_view aLocation);

/// What the relative locations of a document are put under. Looked at once, however many there are: whether
/// it is a URL, and that without "." and "..".
class LocationBase {
public:
    explicit LocationBase(const std::string& aText);

    const std::string& Text() const { return mText; }
    bool IsURL() const { return mfURL; }

private:
    std::string mText;
    bool mfURL;
};

/// One base is that of thousands of locations. Null where there is none.
using LocationBasePtr = std::shared_ptr<const LocationBase>;

/// Counts the bytes of bases that locations of a document were put under: a base of 2 KiB is written once,
/// but gone over for each location.
class LocationBaseBudget {
public:
    /// False when it is spent.
    bool Take(const LocationBasePtr& aBase);

private:
    std::size_t mTaken = 0;
};

/// The location for a URL to resolve it against: in one that is relative, "\" before the query is "/", as
/// those who write playlists on Windows mean it. A URL and a Windows path stay as they are.
ezCString URLReference(const ezCString& aLocation);
