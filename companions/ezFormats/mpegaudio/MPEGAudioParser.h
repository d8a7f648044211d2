#pragma once

#include "ezFormats/FormatParser.h"
#include "ezFormats/detail/FormatDescription.h"
#include "ezFormats/mpegaudio/MPEGAudioLimits.h"

#include <utility>

class ByteReader;

/// MPEG audio files: layers I to III of MPEG-1 and MPEG-2, and layer III of MPEG-2.5 (mp3, mp2, mpa).
///
/// A file is one when four frames follow each other at its start or behind its leading tags (ID3v2, APE), or
/// fewer that reach its end; or eight anywhere in the 64 KiB behind. In free format it takes eight. A file
/// that begins as another format does is none, whatever sound it holds. A tag that claims to reach the end of
/// the file or beyond is not believed: the frames are looked for behind its header.
///
/// Of the record: kezInfo_AudioCodec "MP1", "MP2" or "MP3", sampling rate, channels, and
/// kezInfo_AudioBitRate, which is kezMediaInfo_VariableRate where it varies. A varying one has its mean as
/// kezInfo_AudioEstimatedBitRate, and as kezInfo_AudioMaxBitRate the highest of its frames if all were seen,
/// else the highest that its layer allows. Free format states none, but has one, which is the
/// mean of the frames that were looked at; it is announced without a profile whatever the rules say, as the
/// profiles of MPEG audio list the rates that frames state.
///
/// The duration is "header" when the first frame states a count (Xing, Info, VBRI) that the file can hold and
/// behind which no sound goes on, less the samples that the encoder put around the music; "counted" when all
/// frames were seen, as are those of a varying rate in up to 384 KiB; "constant rate" where all places that
/// were looked at have one rate, as free format has: then it is exact; else an estimate from the size without
/// the tags, and the rates at up to four places of the file, of which the lowest counts. Without a size there
/// is no estimate; with one, a file that cannot be read at one of these places is refused. Only with
/// kParseOption_ParseFullFileIfVBR, and for a varying rate without a count, is a larger file read whole.
///
/// Texts are those of ID3v2 before the sound, and of APE items, Lyrics3, ID3v1 and its enhanced form after
/// it: for each the first of these that has it. So are dates, tracks, discs, album artists, composers,
/// compilations, languages, and the lists of creators and genres. An estimate by several places has a
/// kezInfo_DurationBound. Those that state no encoding are UTF-8 where they can be,
/// else of the code page that kProperty_TextCodePage names; a record never holds anything but UTF-8.
///
/// One parse costs at most 32 reads, 33 seeks and 512 KiB; where the whole file is read, its bytes and two
/// reads for each 64 KiB of them more. A source that gives less at a time than it is asked for takes more
/// reads for the same bytes. Usual are the first 8 KiB, a read behind a large tag, and the last 16 KiB; and
/// four reads of 16 KiB more where no count is stated.
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

    /// @param aRules  decide the profile that a media is announced with; not null, shared
    explicit MPEGAudioParser(std::shared_ptr<const ProfileRules> aRules = ProfileRules::BuiltIn())
        : FormatParser(kDescription, std::move(aRules)) {}

protected:
    bool ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) override;

private:
    bool MayReadWhole() const;
};
