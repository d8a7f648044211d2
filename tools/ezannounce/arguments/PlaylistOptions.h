#pragma once

#include "ezPlatform/base/Types.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

/// Where a server serves a playlist again.
struct ServedAt {
    uint32 mAddress = 0; ///< in network byte order
    std::uint16_t mPort = 0;
    std::string mID; ///< what the server knows the playlist by
};

/// What of a playlist the person asked for.
struct PlaylistOptions {
    std::optional<uint32> mIndex;
    std::optional<std::uint64_t> mAt;
    bool mfNext = false; ///< not the entry of mIndex or mAt, but the one after it
    std::optional<ServedAt> mServedAt;

    bool HasAny() const { return mIndex || mAt || mfNext || mServedAt; }
};

/// The texts of the options, whose values are looked at here and not by the command-line library.
struct PlaylistTexts {
    std::optional<std::string> mIndex;
    std::optional<std::string> mAt;
    std::vector<std::string> mServeLines;
};

/// Options and texts are borrowed until the command line is read.
void DeclarePlaylistOptions(CLI::App& anApp, PlaylistOptions& anOptions, PlaylistTexts& aTexts);

/// What is wrong with the texts, or does not go together; "" when nothing is.
std::string ReadPlaylistTexts(const PlaylistTexts& aTexts, PlaylistOptions& anOptions);

/// What of the options does not go with the rest of the command line of the verb playlist; "" when all does.
std::string CheckPlaylistOptions(const PlaylistOptions& anOptions, std::size_t anOperandCount, bool afJson);
