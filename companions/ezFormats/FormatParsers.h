#pragma once

#include "ezFormats/Export.h"
#include "ezFormats/FormatParser.h"
#include "ezFormats/ProfileRules.h"

#include <memory>

class ezMediaParserManager;

/// The file formats of this library, one a line: the folder that a format has, and its parser. All that
/// parsers are listed for follows from this list and from what each of them says about its format
/// (detail/FormatDescription.h). They are registered in this order, which matters only to files that two of
/// them could claim.
#define EZ_FORMATS(FORMAT)                                                                                   \
    FORMAT(mpegaudio, MPEGAudioParser)                                                                       \
    FORMAT(jpeg, JPEGParser)                                                                                 \
    FORMAT(png, PNGParser)                                                                                   \
    FORMAT(iso, ISOMediaParser)                                                                              \
    FORMAT(flac, FLACParser)                                                                                 \
    FORMAT(ogg, OggParser)                                                                                   \
    FORMAT(riff, WAVParser)                                                                                  \
    FORMAT(aiff, AIFFParser)                                                                                 \
    FORMAT(au, AUParser)                                                                                     \
    FORMAT(caf, CAFParser)                                                                                   \
    FORMAT(dsf, DSFParser)                                                                                   \
    FORMAT(dsdiff, DSDIFFParser)                                                                             \
    FORMAT(avi, AVIParser)                                                                                   \
    FORMAT(matroska, MatroskaParser)                                                                         \
    FORMAT(asf, ASFParser)                                                                                   \
    FORMAT(flv, FLVParser)                                                                                   \
    FORMAT(tta, TTAParser)                                                                                   \
    FORMAT(musepack, MusepackParser)                                                                         \
    FORMAT(ape, APEParser)                                                                                   \
    FORMAT(wavpack, WavPackParser)                                                                           \
    FORMAT(ts, TSParser)                                                                                     \
    FORMAT(adts, ADTSParser)                                                                                 \
    FORMAT(ac3, AC3Parser)                                                                                   \
    FORMAT(dts, DTSParser)                                                                                   \
    FORMAT(mlp, MLPParser)                                                                                   \
    FORMAT(amr, AMRParser)                                                                                   \
    FORMAT(ps, PSParser)                                                                                     \
    FORMAT(videostream, VideoStreamParser)

/// Adds a parser of every file format of this library to a manager, in the order of EZ_FORMATS, and
/// the one that knows these formats whatever their name (MagicParser). The manager owns them. What a host
/// added before is tried before them. A code page in the environment that this system does not know
/// (kProperty_TextCodePage) is logged as a warning, once.
///
/// @param aRules  which profile a file keeps; null for the table that the library brings
EZFORMATS_API void RegisterFormatParsers(ezMediaParserManager& aManager,
                                         std::shared_ptr<const ProfileRules> aRules = nullptr);

/// True for the name or number of a code page that kProperty_TextCodePage may have on this system; so for the
/// empty text, which is Windows-1252. Null is not one.
EZFORMATS_API bool IsKnownTextCodePage(const char* aName);
