#pragma once

#include "ezFormats/codecs/AudioFacts.h"
#include "ezFormats/codecs/VideoFacts.h"

#include "ezPlatform/text/CString.h"

#include <cstdint>
#include <optional>
#include <string>

class ezMediaInfo;

/// The facts of a file of tracks: of the picture track and the sound track that play first, and of how many
/// there are. What is 0 or empty is not known.
struct FilmFacts {
    const char* mContainer = ""; ///< kContainer_...; empty where no profile is to be found by it
    std::optional<VideoFacts> mVideo;
    std::optional<AudioFacts> mAudio;
    std::uint32_t mAudioCount = 0;
    std::uint32_t mSubtitleCount = 0;
    std::string mLanguages;         ///< of what is heard, as kezInfo_Languages has them
    std::string mSubtitleLanguages; ///< likewise

    std::uint64_t mDuration = 0; ///< microseconds
    ezCString mDurationMethod = "header";
    std::uint64_t mDurationBound = 0;   ///< microseconds by which an estimate may be too long
    std::optional<std::uint64_t> mSize; ///< bytes of the whole
    std::uint64_t mAttachedSize = 0;    ///< bytes of it that no track plays: attached files

    /// Bits a second of the whole; 0: not known.
    std::uint32_t GetWholeBitRate() const;

    /// Puts all of it into a record. Where neither length nor size is known, the method says that the end was
    /// not read. The mean rate of one kind of tracks that is not told is estimated by what the others, and
    /// attached files, leave of the whole.
    void Store(ezMediaInfo& anInfo) const;
};
