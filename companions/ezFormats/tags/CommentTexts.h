#pragma once

class ByteReader;
class CodePage;
class CoverFacts;
struct MusicTexts;

/// What the Vorbis comments of a FLAC file, or of a stream in Ogg, tell of a piece: texts, and pictures among
/// them. What is not told yet is filled. Comments after the front cover are left once a title is known: it
/// may have megabytes, and writers put it last.
/// @param aComments  stands after what names the block or packet
/// @param aCodePage  of texts that are no UTF-8, as all should be
void ReadCommentTexts(const ByteReader& aComments, const CodePage& aCodePage, MusicTexts& aTexts,
                      CoverFacts& aCover);
