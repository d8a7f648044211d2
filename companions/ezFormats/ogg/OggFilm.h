#pragma once

#include "ezFormats/detail/FilmRecord.h"

class CodePage;
class MediaBytes;
class OggLength;
class OggLink;
class ezMediaInfo;

/// What the streams of a file with video tell: the facts of the first video and of the first sound, how many
/// sounds and texts there are, and in which languages. Of these nothing is read but what is buffered.
/// @param aCodePage  of comments that are not UTF-8
FilmFacts OggFilm_Read(MediaBytes& aBytes, const OggLink& aLink, const CodePage& aCodePage);

/// Puts them into a record.
/// @param aLength  measured, where the size of the file is known
void OggFilm_Store(FilmFacts aFilm, const OggLength& aLength, ezMediaInfo& anInfo);
