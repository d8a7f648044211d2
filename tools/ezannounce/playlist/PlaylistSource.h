#pragma once

#include "playlist/PlaylistStream.h"

#include <memory>
#include <string>
#include <vector>

class PlaylistParser;
class PlaylistParserFactory;

/// An opened playlist: a file, what a web server sends, or standard input.
class PlaylistSource {
public:
    PlaylistSource();
    ~PlaylistSource();
    PlaylistSource(const PlaylistSource&) = delete;
    PlaylistSource& operator=(const PlaylistSource&) = delete;

    /// Opens it. What does not come from a file is taken into memory first, as a web server need not let a
    /// stream go back. False, with the reason, when it cannot be read.
    /// @param aName  a path, an http or https URL, or "-"
    bool Open(const std::string& aName, std::string& aReason);

    /// True when it came from a web server, so that its URL is its parent.
    bool IsFromNetwork() const { return mfFromNetwork; }

    /// True when a read of it failed, so that what its reader found need not be all.
    bool HasFailed() const { return mStream != nullptr && mStream->HasFailed(); }

    /// A reader for it: by the type that a web server states where a reader has it, else by the extension, of
    /// a URL that of where it was found and then that of where it was asked for; for what has neither by how
    /// it begins. Borrowed; null when there is none.
    PlaylistParser* NewReader(const PlaylistParserFactory& aFactory);

private:
    bool OpenFile(const std::string& aName, std::string& aReason);
    bool OpenURL(const std::string& aName, std::string& aReason);
    bool OpenInput(std::string& aReason);
    void TakeBytes(const std::string& aBytes, const std::string& aName);
    void TakeStream(ezStream* aStream);

    std::unique_ptr<PlaylistStream, ezStreamReleaser> mStream;
    bool mfFromNetwork = false;
    std::string mMimeType;
    std::vector<std::string> mExtensions;    ///< the first that has a reader counts
    std::unique_ptr<PlaylistParser> mReader; ///< reads mStream
};
