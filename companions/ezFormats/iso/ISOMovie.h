#pragma once

#include "ezBytes/ByteReader.h"
#include "ezFormats/iso/ISOMatrix.h"
#include "ezFormats/iso/ISOTables.h"
#include "ezFormats/tags/CoverFacts.h"
#include "ezFormats/tags/MusicTexts.h"

#include <cstdint>
#include <optional>
#include <string>

class CodePage;

/// A track of audio or video ("trak"; ISO/IEC 14496-12, 8.3.1).
struct ISOTrack {
    ISOTrackKind mKind = ISOTrackKind::kOther;
    bool mfEnabled = false;
    std::uint32_t mID = 0;
    std::uint32_t mTimescale = 0; ///< ticks a second
    std::uint64_t mDuration = 0;  ///< ticks of the media; 0: not told
    ISOMatrix mMatrix;
    ISOTables mTables;
    // What a fragment leaves out
    std::uint32_t mDefaultTicks = 0;
    std::uint32_t mDefaultSize = 0;
};

/// What the "moov" box (8.2.1) tells.
struct ISOMovie {
    std::uint32_t mTrackCount = 0; ///< of any kind
    std::uint32_t mAudioCount = 0;
    std::optional<ISOTrack> mAudio;   ///< the first enabled one; else the first
    std::optional<ISOTrack> mVideo;   ///< the same, without cover art and pictures of chapters
    std::uint64_t mDuration = 0;      ///< microseconds, the longest that is told; 0: not told
    ISOMatrix mMatrix;                ///< of the whole, after that of a track
    bool mfFragmented = false;        ///< samples may follow in fragments
    std::uint64_t mWholeDuration = 0; ///< microseconds, the fragments included; 0: not told
    std::string mLanguages;           ///< of the audio tracks, as kezInfo_Languages has them
    std::uint32_t mSubtitleCount = 0; ///< tracks of texts or pictures, without those of chapters
    std::string mSubtitleLanguages;   ///< theirs, likewise
    MusicTexts mTexts;                ///< of its tags
    CoverFacts mCover;                ///< of its tags
};

/// Reads the content of the box, in the order of the file. What is damaged tells nothing.
/// @param aCodePage  of texts that state no encoding, or a wrong one
ISOMovie ReadMovie(const ByteReader& aBox, const CodePage& aCodePage, std::uint32_t& aBoxBudget);
