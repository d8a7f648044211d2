#pragma once

#include "ezFormats/FormatParser.h"
#include "ezFormats/detail/FormatDescription.h"
#include "ezFormats/detail/FormatNotes.h"
#include "ezFormats/mpegaudio/MPEGAudioLimits.h"

#include <utility>

class ByteReader;

/// MPEG audio files: layers I to III of MPEG-1 and MPEG-2, and layer III of MPEG-2.5 (mp3, mp2, mpa).
///
/// A file is one when four frames follow each other at its start or after its leading tags (ID3v2, APE), or
/// fewer that reach its end; or eight anywhere in the 64 KiB after that, or in free format. What a record
/// holds, and how its duration is known: docs/file-formats.md.
///
/// One parse costs at most 32 reads, 33 seeks and 512 KiB; where the whole file is read, its bytes and two
/// reads for each 64 KiB of them more. A source that gives less at a time than it is asked for takes more
/// reads for the same bytes. Usual are the first 8 KiB, a read after a large tag, and the last 16 KiB; and
/// four reads of 16 KiB more where no Xing or VBRI header tells the duration.
class MPEGAudioParser : public FormatParser {
public:
    /// Whether what begins there is of the format.
    static bool IsAt(ByteReader aBytes);

    static constexpr FormatDescription kDescription = {
        "MPEGAudioParser",
        "mp3",
        {"audio/mpeg"},
        {kMPEGAudio_MaxReads, kMPEGAudio_MaxBytes},
        {{"mp3",
          {"mp3"},
          {"audio/mpeg", "audio/mp3", "audio/x-mp3", "audio/x-mpeg", "audio/mpeg3"},
          kezUPnPClass_MusicTrack,
          {"mp2"}},
         {"mp2",
          {"mp2", "mpa", "m2a", "mp1"},
          {"audio/mpeg", "audio/mp2", "audio/x-mp2"},
          kezUPnPClass_MusicTrack,
          {"mp3"}}},
        {{"audio/mpeg", "MP3", {"audio/mp3", "audio/x-mp3", "audio/x-mpeg", "audio/mpeg3", "audio/x-mpeg-3"}},
         {"audio/mpeg", "MP2", {"audio/mp2", "audio/x-mp2"}}},
        {IsAt, true},
    };

    static constexpr FormatNotes kNotes = {
        "MPEG audio",
        "MPEG audio",
        "ID3v2 before the sound; APE, Lyrics3 and ID3v1 after it",
        "APE tags before the sound, tags in the middle of it, chapters, lyrics, ratings, gain",
        {7, 96U << 10},
    };

    /// @param aRules  decide the profile that a file is announced with; not null, shared
    explicit MPEGAudioParser(std::shared_ptr<const ProfileRules> aRules = ProfileRules::BuiltIn())
        : FormatParser(kDescription, std::move(aRules)) {}

protected:
    bool ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) override;
};
