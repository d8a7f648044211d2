#pragma once

#include "ezPlatform/files/PathName.h"
#include "ezPlatform/text/CString.h"

class ezStream;

/// Where a playlist lies, by the URI of its stream: on the network (http, https), or else in a local file,
/// whose path or "file:" URL it is.
class PlaylistPlace {
public:
    /// @param aStream  null has no place
    explicit PlaylistPlace(const ezStream* aStream);

    /// For the constructor of PlaylistParser: null for a local playlist. Borrowed.
    const char* GetParentURL() const { return mParentURL.IsEmpty() ? nullptr : mParentURL.c_str(); }
    /// Not valid for a playlist on the network.
    const ezPathName& GetFilePath() const { return mFilePath; }

private:
    ezCString mParentURL;
    ezPathName mFilePath;
};
