#pragma once

#include "ezPlatform/base/DateTime.h"
#include "ezPlatform/base/Export.h"
#include "ezPlatform/base/Types.h"
#include "ezPlatform/base/UInt64.h"
#include "ezPlatform/text/CString.h"

#include <array>
#include <cstdint>
#include <string_view>
#include <type_traits>
#include <vector>

/// @name Keys of a media information record
/// Bit rates are bits a second as unsigned 32-bit numbers: 0 is not known yet, kezMediaInfo_VariableRate
/// variable or not to be told.
/// @{
inline constexpr const char* kezInfo_MimeType = "mt";   ///< MIME type
inline constexpr const char* kezInfo_ClassName = "cn";  ///< UPnP class without "object.": "item.videoItem"
inline constexpr const char* kezInfo_DLNA = "dl";       ///< DLNA 4th field: "DLNA.ORG_PN=LPCM"
inline constexpr const char* kezInfo_Duration = "du";   ///< whole seconds
inline constexpr const char* kezInfo_BitRate = "br";    ///< bit rate of the whole media
inline constexpr const char* kezInfo_MaxBitRate = "mb"; ///< its maximum
inline constexpr const char* kezInfo_EstimatedBitRate = "eb"; ///< its estimate
inline constexpr const char* kezInfo_AudioTrackCount = "ta";  ///< number of audio tracks
inline constexpr const char* kezInfo_HasVideoTrack = "vt";    ///< not 0 when there is a video track
inline constexpr const char* kezInfo_AudioBitRate =
    "ar"; ///< audio bit rate; for LPCM the sampling rate in Hz
inline constexpr const char* kezInfo_AudioMaxBitRate = "ma";       ///< its maximum
inline constexpr const char* kezInfo_AudioEstimatedBitRate = "ea"; ///< its estimate
inline constexpr const char* kezInfo_VideoBitRate = "vr";          ///< video bit rate
inline constexpr const char* kezInfo_VideoMaxBitRate = "mv";       ///< its maximum
inline constexpr const char* kezInfo_VideoEstimatedBitRate = "ev"; ///< its estimate
inline constexpr const char* kezInfo_AudioChannelCount = "ac";     ///< audio channels
inline constexpr const char* kezInfo_AudioBitsPerSample = "bs";    ///< bits per audio sample
inline constexpr const char* kezInfo_AudioCodec = "ca";            ///< audio codec name: "LPCM"
inline constexpr const char* kezInfo_FileSize = "fs";              ///< bytes
inline constexpr const char* kezInfo_FileExtension = "fe";         ///< lower-case extension, without the dot
/// @}

/// A bit rate that varies, or that nobody can tell. No media has it as its rate: the largest is one less.
inline constexpr uint32 kezMediaInfo_VariableRate = 0xFFFFFFFF;

/// @name Keys that the libraries pass through and that parsers of a host write
/// @{
inline constexpr const char* kezInfo_AudioSamplingRate = "sf"; ///< Hz, for every codec but LPCM
inline constexpr const char* kezInfo_VideoCodec = "vc";        ///< video codec name: "H264"
inline constexpr const char* kezInfo_PictureWidth = "wi";      ///< pixels
inline constexpr const char* kezInfo_PictureHeight = "he";     ///< pixels
inline constexpr const char* kezInfo_FrameRate = "fr";         ///< pictures in 1000 seconds: 29970
inline constexpr const char* kezInfo_VideoProfile = "vp"; ///< in the codec's words, no blanks: "Baseline"
/// Ten times the codec's level: 31 is 3.1; 9 is 1b. Levels with names are 10 Low, 20 Main or Medium, 30
/// High 1440, 40 High.
inline constexpr const char* kezInfo_VideoLevel = "vl";
/// The container and the kind of its packets, where a MIME type stands for several: "MP4", "3GP", "3G2",
/// "MOV", "PS" (MPEG program stream), "MPEG1" (MPEG-1 system stream), "TS" (MPEG-2 transport stream of
/// packets of 188 bytes), "TTS" (of 192 bytes, with time stamps), "TTS-zero" (of 192 bytes, all stamps zero),
/// "MKV", "WebM", "ASF", "AVI", "FLV", "RM", "DV", "MXF", "Ogg".
inline constexpr const char* kezInfo_Container = "ct";
/// How a picture is coded: "baseline", "extended", "progressive", "lossless", "arithmetic" or "hierarchical"
/// of a JPEG, "plain" or "interlaced" of a PNG, "progressive" or "interlaced" of video. Of MPEG audio
/// kezMediaInfo_FreeFormat, where its frames do not state their rate.
inline constexpr const char* kezInfo_PictureProcess = "pr";
inline constexpr const char* kezMediaInfo_FreeFormat = "free-format"; ///< ISO/IEC 11172-3, 2.4.2.3
/// What a picture's colours are and how they are sampled: "grey", "4:2:0", "4:2:2", "4:4:4" and so on,
/// "CMYK", "RGB", "RGBA", "grey-alpha", "palette".
inline constexpr const char* kezInfo_PictureColours = "cr";
inline constexpr const char* kezInfo_PictureBitDepth = "cd"; ///< bits of a sample or of a palette index
/// The width of a pixel to its height, of video whose codec or container tells it: "64:45", "1:1".
inline constexpr const char* kezInfo_PixelAspect = "pa";
/// The width of the stored picture to its height when it is shown, before it is turned: "16:9". Absent where
/// kezInfo_PixelAspect is.
inline constexpr const char* kezInfo_DisplayAspect = "dr";
/// 1 where the frame rate of a film varies; kezInfo_FrameRate is the mean then.
inline constexpr const char* kezInfo_FrameRateVaries = "fv";
/// The dynamic range of video where it is high: "PQ", "HLG", "HDR10", "HDR10+", "DolbyVision".
inline constexpr const char* kezInfo_HDR = "hd";
/// Tracks of subtitles, teletext among them. Absent where there is none.
inline constexpr const char* kezInfo_SubtitleTrackCount = "ts";
/// Their languages, as kezInfo_Languages has those of the sound.
inline constexpr const char* kezInfo_SubtitleLanguages = "sl";
/// The programs of a transport stream that has more than one: the facts are those of the first that plays.
inline constexpr const char* kezInfo_ProgramCount = "np";
/// How the stored picture of a photo or of a film is turned or mirrored to be shown, when it is: 2 to 8 as
/// Exif numbers it. 6 is a quarter turn clockwise, 3 half a turn, 8 a quarter turn the other way; 2, 4, 5 and
/// 7 are mirrored. kezInfo_PictureWidth and kezInfo_PictureHeight are those of the stored picture.
inline constexpr const char* kezInfo_Orientation = "ud";
/// Where the duration is from: "header", "last frame", "last page" or "last block" (its place), "counted"
/// (all frames were), "constant rate" (the size by a rate that all places confirm), or "estimate: " and how.
/// Without a duration it is absent, or "none: " and why: of a film whose end was not there to be looked at.
inline constexpr const char* kezInfo_DurationMethod = "md";
/// The duration in milliseconds, where it is known so exactly: ezMediaInfo::SetDuration sets it with the
/// whole seconds of kezInfo_Duration.
inline constexpr const char* kezInfo_DurationMilliseconds = "dm";
/// By how many milliseconds the media may be shorter than an estimate says, as far as the places tell that
/// were looked at; it is not longer. Absent of an exact length, and where nothing tells.
inline constexpr const char* kezInfo_DurationBound = "db";
/// @}

/// @name Keys of what a ContentDirectory announces, beside the title, creator, genre and album of the record
/// Written by parsers of a host, passed through by the libraries; absent where the media does not state them.
/// Texts are valid UTF-8 without control characters, but for the line ends of the two lists. The property
/// that a server announces each as stands in brackets (UPnP ContentDirectory, appendix B).
/// @{
/// When a photo was taken, or a piece recorded or released (dc:date). ISO 8601, as precise as the media
/// states it, and a day that the calendar has: "1999", "1999-12", "1999-12-31", "1999-12-31T23:59:58", and
/// the same with "Z" or a zone like "+02:00" after the time. Years are 0001 to 9999.
inline constexpr const char* kezInfo_Date = "da";
/// The place of a piece on its disc or in its series (upnp:originalTrackNumber): a number, 1 to 2147483647.
inline constexpr const char* kezInfo_TrackNumber = "tn";
/// The disc of a set that a piece is on (upnp:originalDiscNumber): a number, 1 to 2147483647.
inline constexpr const char* kezInfo_DiscNumber = "dn";
/// Who an album is filed under (upnp:artist with the role "AlbumArtist"); several are joined by ", ".
inline constexpr const char* kezInfo_AlbumArtist = "aa";
/// Who wrote a piece (upnp:artist with the role "Composer"); several are joined by ", ".
inline constexpr const char* kezInfo_Composer = "co";
/// 1 where the album is by several artists; no property of its own: a server files such an album under one
/// name.
inline constexpr const char* kezInfo_Compilation = "cp";
/// Where a file states several creators or genres: all of them, in its order, each once and whole
/// (upnp:artist, upnp:genre, once for each). One a line: "\n" stands between them and in none of them, so
/// splitting there gives back what was stated, also where a name holds a comma. Absent where there is one or
/// none: ezMediaInfo::mCreator and ezMediaInfo::mGenre are all then. Where there are several these have them
/// joined by ", " for whoever shows one text.
/// @{
inline constexpr const char* kezInfo_Creators = "as";
inline constexpr const char* kezInfo_Genres = "gs";
/// @}
/// The languages of what is heard, or of the text where nothing is (dc:language, once for each): tags of RFC
/// 5646 joined by ",", the first that plays first, each once: "en", "de,pt-BR".
inline constexpr const char* kezInfo_Languages = "la";
/// The MIME type of the cover that the media holds within itself, and its size in bytes as it is stored there
/// (upnp:albumArtURI names what a server makes of it). Absent where there is none.
/// @{
inline constexpr const char* kezInfo_CoverMimeType = "cm";
inline constexpr const char* kezInfo_CoverSize = "cs";
/// @}
/// @}

/// What is known of one piece of media: texts and unsigned numbers under two-letter keys, and a few facts of
/// their own.
///
/// An empty text counts as absent. A number reads as decimal text, and a text that is a whole decimal number
/// reads as that number. Keys are held and enumerated in byte order. Not shared between threads.
///
/// The seconds of kezInfo_Duration lead: where they are set to others than they were, or taken away,
/// kezInfo_DurationMilliseconds, kezInfo_DurationMethod and kezInfo_DurationBound go, as they tell of the
/// length that was. Whoever replaces a duration by a better one so leaves nothing stale, and the same seconds
/// again keep what is finer.
class EZPLATFORM_API ezMediaInfo {
public:
    ezMediaInfo() = default;
    virtual ~ezMediaInfo();

    ezMediaInfo& operator=(const ezMediaInfo&) = delete;

    /// Sets a text under a key that is not null. With afOverwrite false a value that is there already stays;
    /// with true an empty or null text takes it away.
    /// @{
    void Set(const char* aKey, const ezCString& aValue, bool afOverwrite);
    void Set(const char* aKey, ezCString&& aValue, bool afOverwrite);
    void Set(const char* aKey, const char* aValue, bool afOverwrite) {
        Set(aKey, ezCString(aValue), afOverwrite);
    }
    /// @}
    /// Sets a number under a key that is not null, 0 too: a number is never absent. With afOverwrite false a
    /// value that is there already stays.
    void Set(const char* aKey, const ezuint64& aValue, bool afOverwrite);

    /// Sets a number of any integer type. A negative value of at most 32 bits is kept as its 32-bit pattern;
    /// a more negative one is the assertion "aValue >= 0" and 0.
    template <typename Integer, typename = std::enable_if_t<std::is_integral<Integer>::value>>
    void Set(const char* aKey, Integer aValue, bool afOverwrite) {
        if constexpr (std::is_signed<Integer>::value) {
            SetSigned(aKey, aValue, afOverwrite);
        } else {
            Set(aKey, ezuint64(static_cast<std::uint64_t>(aValue)), afOverwrite);
        }
    }

    /// Sets the length, whatever was there: kezInfo_DurationMilliseconds, kezInfo_DurationMethod, and the
    /// seconds of kezInfo_Duration, which follow from these. No kezInfo_DurationBound is left: whoever knows
    /// one sets it afterwards. An exact length loses its fraction, as a player
    /// counts seconds that are over; one whose method begins with "estimate" is rounded up, so that no
    /// player stops before the end.
    /// @param aMethod  as kezInfo_DurationMethod has it; empty, and there is none afterwards: an exact length
    void SetDuration(const ezuint64& aMilliseconds, const ezCString& aMethod);

    /// True when the key has a value, text or number, 0 included. The key is not null, here and below.
    bool Has(const char* aKey) const;
    /// The text of a key, a number in decimal; aDefault when absent.
    ezCString GetCString(const char* aKey, const ezCString& aDefault) const;
    /// aDefault when absent or no number; 0xFFFFFFFF when the number is larger.
    uint32 GetUInt32(const char* aKey, uint32 aDefault) const;
    /// aDefault when absent or no number.
    ezuint64 GetUInt64(const char* aKey, const ezuint64& aDefault) const;

    /// The number of keys that have a value.
    std::size_t GetCount() const { return mEntries.size(); }
    /// The key at an index below GetCount(), in byte order.
    ezCString GetKeyAt(std::size_t anIndex) const;
    /// True when the value of the key was set as a number.
    bool IsNumber(const char* aKey) const;

    /// A new record with the same content, owned by the caller.
    ezMediaInfo* Duplicate() const;

    /// Closes the making of a record; changes nothing that can be seen, whatever the argument.
    void Finish(bool afComplete);
    /// True when the record says at least what the item is: its MIME type.
    bool IsValid() const { return Has(kezInfo_MimeType); }
    /// The keyed values, "ac=2, mt=audio/L16", as they are: a value may hold any byte.
    ezCString GetOtherProperties() const;

    ezCString mFullPath;              ///< path or URI
    ezDateTime mLastModificationTime; ///< of the file or resource; not set when not known
    ezCString mTitle;   ///< of the piece, in UTF-8, as the media states it; empty when it does not
    ezCString mCreator; ///< its artist or author, likewise
    ezCString mGenre;   ///< likewise, in words
    ezCString mAlbum;   ///< the collection that it belongs to, likewise

protected:
    /// For Duplicate and for derived records; others copy by Duplicate, so that no record is copied unawares.
    ezMediaInfo(const ezMediaInfo&) = default;

private:
    /// A key as it is compared. The letters of the usual keys are a number, which orders as they do.
    struct Key {
        explicit Key(const char* aKey);
        /// Longer than the number can tell.
        bool IsLong() const { return (mStart & 0xFFU) != 0; }
        /// Of two letters or fewer.
        bool IsUsual() const { return (mStart & 0xFFFFU) == 0; }

        uint32 mStart = 0;      ///< the first four bytes, the first of them on top; zeros after a shorter key
        std::string_view mRest; ///< what follows these, borrowed
    };

    /// Small, as every record takes room for many at once.
    struct Entry {
        uint32 mStart; ///< of the key
        /// Of the entry that is at this one's index when they are sorted by key.
        mutable uint32 mPlace : 31;
        uint32 mfNumber : 1;
        ezuint64 mNumber;
        ezCString mText; ///< empty for a number; after the rest of a long key and a NUL
    };

    /// The first two letters of the keys of the first entries, as Entry has them, and the largest number
    /// where there is no entry: so many are compared with a key by a few instructions.
    struct Starts {
        Starts() { mLetters.fill(UINT16_MAX); }
        void Set(std::size_t aPlace, uint32 aStart) {
            if (aPlace < mLetters.size()) {
                mLetters[aPlace] = static_cast<std::uint16_t>(aStart >> 16);
            }
        }
        /// The place after an entry whose key has these letters first; 0 where there is none.
        std::size_t PlaceAfter(uint32 aStart) const;

        std::array<std::uint16_t, 32> mLetters;
    };

    /// Records are filled more often than they are enumerated: sorted is what was appended when it is asked
    /// for.
    void Sort() const;
    bool IsSorted() const;
    const Entry& GetSorted(std::size_t anIndex) const { return mEntries[mEntries[anIndex].mPlace]; }
    /// The index of a key among the sorted, or of the first one after it.
    std::size_t LowerBound(const Key& aKey) const;
    bool IsAt(std::size_t anIndex, const Key& aKey) const;
    /// Whether the letters of the entries tell where a key is, without an order.
    bool IsToldByLetters(const Key& aKey, std::size_t aPlaceAfter) const;
    Entry& Append(const Key& aKey);
    const Entry* Find(const Key& aKey) const;
    /// The entry to write, new or old; null where a value stands that must stay.
    Entry* EntryToWrite(const Key& aKey, bool afOverwrite);
    /// The same for a text, of which an empty one takes away what there is.
    Entry* EntryOfText(const Key& aKey, std::string_view aValue, bool afOverwrite);
    void TakeAway(const Key& aKey);
    void Erase(std::size_t anIndex);
    void SetSigned(const char* aKey, std::int64_t aValue, bool afOverwrite);
    /// Where the seconds become others: takes away what tells of those that were.
    void LeaveSeconds(std::string_view aNewSeconds);

    std::vector<Entry> mEntries; ///< as they were set
    Starts mStarts;
};
