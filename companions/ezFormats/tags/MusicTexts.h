#pragma once

#include "ezPlatform/text/CString.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

class ByteReader;
class ByteSource;
class CodePage;
class CoverFacts;
class MusicNames;
class ezMediaInfo;
struct ID3Tag;
struct AudioTails;
enum class TextEncoding;

/// What a tag may tell of a piece, whatever its vocabulary calls it.
enum class MusicField {
    Title,
    Creator,
    Album,
    Genre,
    AlbumArtist,
    Composer,
    Date,
    Track,
    Disc,
    Compilation,
    Languages,
    Last = Languages,
};

inline constexpr std::size_t kMusicField_Count = static_cast<std::size_t>(MusicField::Last) + 1;

/// What tags tell of a piece of music, each text as CleanText has it, and the rest in the form of its key in
/// ezPlatform/media/MediaInfo.h. What is empty, 0 or false is not told.
struct MusicTexts {
    ezCString mTitle;
    ezCString mCreator;
    ezCString mAlbum;
    ezCString mGenre;
    ezCString mCreators; ///< in full where there are several
    ezCString mGenres;   ///< likewise
    ezCString mAlbumArtist;
    ezCString mComposer;
    ezCString mDate;
    ezCString mLanguages;
    std::uint32_t mTrack = 0;
    std::uint32_t mDisc = 0;
    bool mfCompilation = false;

    /// True when it has the title, creator, album and genre.
    bool IsComplete() const;
    bool Has(MusicField aField) const;
    /// Takes what a tag states of one field, by values that are clean, unless it is told already. A value
    /// that is not of its kind (a track "A", a date in words) tells nothing.
    void Take(MusicField aField, const std::vector<ezCString>& aValues);
    /// The same of values that have been told apart, genres among them by their words. There is one at least.
    void Take(MusicField aField, const MusicNames& aNames);
    /// Fills what is not told yet from another.
    void Complete(const MusicTexts& aTexts);
    /// Puts what is told into a record.
    void Store(ezMediaInfo& anInfo) const;
};

/// True for a field of which a piece may have several, which are all kept.
bool MusicField_HasSeveral(MusicField aField);

/// The number of a track or disc: decimal digits, maybe with how many there are after a "/" ("3/12"). 0 for
/// what is not one, or is more than a record may hold.
std::uint32_t MusicNumberOf(std::string_view aText);

/// The rest of a tag's item, or its start where that is more than a text may be; empty where it cannot be
/// read.
std::string ReadTextBytes(ByteReader& aBody);
/// The same as CleanText has it.
ezCString ReadCleanText(ByteReader& aBody, TextEncoding anEncoding, const CodePage& aCodePage);

/// Those of an ID3v2 tag; aReader stands after its header. Of a frame with several texts the first is the
/// title or album, and all are the creators, genres, composers, album artists or languages; up to version 2.3
/// the first alone counts, where a "/" stands in names as often as between them, and so separates nothing.
/// The date is that of the recording, or else the year (with its day), the release, or the first release.
/// Here and below, texts that state no encoding, or Latin-1, are of the code page unless they are UTF-8.
/// @param aCover  is offered the pictures of the tag; null for who wants none. Of compressed frames those
///                that inflate to little are among them
MusicTexts ReadID3v2Texts(const ByteReader& aReader, const ID3Tag& aTag, const CodePage& aCodePage,
                          CoverFacts* aCover = nullptr);

/// Those of ID3v1, of which the enhanced part holds the rest of longer texts, and version 1.1 the track.
MusicTexts ReadID3v1Texts(ByteSource& aBytes, const AudioTails& aTails, const CodePage& aCodePage);
/// Those of the second version of Lyrics3, which has no genre: the long forms of what ID3v1 cuts.
MusicTexts ReadLyrics3Texts(ByteSource& aBytes, const AudioTails& aTails, const CodePage& aCodePage);
/// Those of APE items.
/// @param aCover  is offered the pictures among them
MusicTexts ReadAPETexts(ByteSource& aBytes, const AudioTails& aTails, const CodePage& aCodePage,
                        CoverFacts& aCover);

/// Puts a name after others, separated by ", ", unless it is among them.
void AddMusicName(std::string& aList, std::string_view aName);

/// Takes the first genre from a text as writers of ID3v2 state it: "17", "(17)", "(17)(4)Rock", "RX" and "CR"
/// among words. Its name is empty for a number that means none. False when nothing is left.
bool TakeMusicGenre(std::string_view& aText, std::string_view* aName);

/// The name of a number; empty for one that has none.
std::string_view MusicGenreName(unsigned aNumber);
