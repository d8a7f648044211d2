#pragma once

#include "ezFormats/tags/MusicTexts.h"

#include "ezBytes/ChunkWalk.h"

class CodePage;
enum class TextEncoding;

/// Takes the texts of a list of RIFF or its kin, each a chunk ("INFO" of WAV and AVI, the summary list of
/// Wave64): what is not told yet.
/// @param anItems  stands at the first of them
/// @param anItem   a reader of the list, any
void TakeRIFFTexts(ChunkWalk anItems, ByteReader anItem, TextEncoding anEncoding, const CodePage& aCodePage,
                   MusicTexts& aTexts);

/// The same of a list of the kind "INFO"; others tell nothing. aList stands at the kind. Its texts state no
/// encoding.
void TakeInfoTexts(ByteReader aList, const ChunkLayout& aLayout, std::uint32_t& aBudget,
                   const CodePage& aCodePage, MusicTexts& aTexts);
