#pragma once

#include "ez/DLNAMediaMapper.h"

#include <string>

/// Why a file name finds no entry.
enum class NoEntry {
    NoExtension,     ///< such a name finds nothing
    UnknownBaseName, ///< no entry has it
    PcmForWav,       ///< a .wav does not find a .pcm, and there is no other entry
    UnknownExtension ///< the media types file does not have it, or only among the excluded ones
};

/// Of a name that the table finds no entry for.
NoEntry WhyNoEntry(DLNAMediaMapper& aMapper, const ezCString& aFileName);

/// For programs: "no-extension".
const char* CodeOf(NoEntry aReason);
std::string InWords(NoEntry aReason, const ezCString& aFileName);

/// The base name that entries are compared with: in lower case, without a number in brackets at its end and
/// without everything up to "DTCP_".
std::string SearchedBaseName(const ezCString& aFileName);
