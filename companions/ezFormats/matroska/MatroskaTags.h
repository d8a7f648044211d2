#pragma once

#include "ezFormats/matroska/MatroskaWriting.h"
#include "ezFormats/tags/MusicTexts.h"

#include "ezBytes/ByteReader.h"
#include "ezBytes/CodePage.h"

#include <cstdint>
#include <vector>

/// What a muxer counted of one track, and put into its tags. What is 0 is not told.
struct MatroskaTrackCounts {
    std::uint64_t mTrackUID = 0;
    std::uint64_t mBitRate = 0;     ///< bits a second
    std::uint64_t mNanoseconds = 0; ///< of its blocks, from the first to the end of the last
    std::uint64_t mBytes = 0;       ///< of its frames
    std::uint64_t mFrames = 0;
    /// They were counted when this file was written, and not copied from the one it was made of.
    bool mfOfThisFile = false;

    /// Bits a second, as they are told or else by the bytes; 0: not known, or no rate that a record has.
    std::uint32_t GetBitRate() const;
};

/// What tags tell of a file: texts, and counts of its tracks.
struct MatroskaTags {
    MusicTexts mTexts;
    std::vector<MatroskaTrackCounts> mTracks;

    /// Null where nothing was counted of it.
    const MatroskaTrackCounts* FindTrack(std::uint64_t aUID) const;
};

/// Reads the content of a Tags element (RFC 9559, 5.1.8). What is not told yet is filled.
///
/// A tag is of a level: 30 is a song, 50 an album or a film, which is also that of a tag without one; what is
/// above them is a season, a series, a collection. Of a film the level 50 counts first, and its titles are
/// all that are. Of a song the level 30 counts first; titles of the level 50 are those of the album, and so
/// are numbers and artists where anything is said of the song. Where an album is named as such they are flat,
/// and all of the song. Tags of a track, a chapter, an edition or an attachment are not the file's, nor are
/// those within others (RFC 9559, 5.1.8.1.2).
///
/// @param aBudget    borrowed, counts down elements
/// @param afFilm     there is a track of video that plays
/// @param aCodePage  of texts that are not UTF-8, as all should be
void ReadMatroskaTags(const ByteReader& aTags, std::uint32_t& aBudget, bool afFilm,
                      const MatroskaWriting& aWriting, const CodePage& aCodePage, MatroskaTags& aFound);
