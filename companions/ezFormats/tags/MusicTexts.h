#pragma once

#include "ezPlatform/text/CString.h"

#include <string>
#include <string_view>

class ByteReader;
class ByteSource;
class CodePage;
class ezMediaInfo;
struct ID3Tag;
struct AudioTails;

/// What tags tell of a piece of music, each text as CleanText has it.
struct MusicTexts {
    ezCString mTitle;
    ezCString mCreator;
    ezCString mAlbum;
    ezCString mGenre;

    bool IsComplete() const;
    /// Fills what is still empty from another.
    void Complete(const MusicTexts& aTexts);
    /// Moves the texts that there are into a record.
    void Store(ezMediaInfo& anInfo) const;
};

/// The rest of a tag's item, or its start where that is more than a text may be; empty where it cannot be
/// read.
std::string ReadTextBytes(ByteReader& aBody);

/// Those of an ID3v2 tag; aReader stands after its header. Of a frame with several texts the first is the
/// title or album, and all, separated by ", ", are the creators or genres; up to version 2.3 the first alone
/// counts. Here and below, texts that state no encoding, or Latin-1, are of the code page unless they are
/// UTF-8.
MusicTexts ReadID3v2Texts(const ByteReader& aReader, const ID3Tag& aTag, const CodePage& aCodePage);

/// Those of ID3v1, of which the enhanced part holds the rest of longer texts; of APE items.
MusicTexts ReadID3v1Texts(ByteSource& aBytes, const AudioTails& aTails, const CodePage& aCodePage);
/// Those of the second version of Lyrics3, which has no genre: the long forms of what ID3v1 cuts.
MusicTexts ReadLyrics3Texts(ByteSource& aBytes, const AudioTails& aTails, const CodePage& aCodePage);
MusicTexts ReadAPETexts(ByteSource& aBytes, const AudioTails& aTails, const CodePage& aCodePage);

/// Puts a name behind others, parted by ", ", unless it is among them.
void AddMusicName(std::string& aList, std::string_view aName);

/// A genre as writers of ID3v2 state it, by names: "17", "(17)", "(17)(4)Rock", "RX" and "CR" among words.
/// Each name once, parted by ", ". Empty for a number that means none.
ezCString MusicGenreOf(std::string_view aText);

/// The name of a number; empty for one that has none.
std::string_view MusicGenreName(unsigned aNumber);
