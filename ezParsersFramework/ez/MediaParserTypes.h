#pragma once

#include "ezPlatform/base/Types.h"

/// Marks what libezParsersFramework shows to its users; everything else in it is hidden.
#define EZPARSERS_API __attribute__((visibility("default")))

/// How the media types ini parser picks its candidates: a bit set, given to
/// ezMediaParserManager::AddStandardParsers.
enum ezParseOption : int {
    kParseOption_Default = 0,
    /// A stream without an extension is tried with all entries of the media types table.
    kParseOption_ParseWithAllParserIfNoExtension = 1,
    /// All entries are tried when the MIME type led to no result.
    kParseOption_ParseWithAllParserIfFailed = 2,
    /// All entries are tried first, always.
    kParseOption_ParseWithAllParserEverytime = 4,
    /// Parsers may walk a whole file of variable bit rate; for the parsers that ask.
    kParseOption_ParseFullFileIfVBR = 8
};

/// Environment property: what a parser may rely on beyond the published formats.
inline constexpr const char* kProperty_Parser_SpecsLevel = "ParserSpecsLevel";

/// The values of kProperty_Parser_SpecsLevel, as ezBaseParser::GetSpecsLevel hands them to a parser. What a
/// parser does at a level is its own affair; those of the library do not ask.
enum ezParserSpecsLevel : int {
    kProperty_Parser_SpecsLevel_Normal = 0,
    kProperty_Parser_SpecsLevel_CVP2 = 1,
    kProperty_Parser_SpecsLevel_Advanced = 2,
    kProperty_Parser_SpecsLevel_Development = 3,
    kProperty_Parser_SpecsLevel_Count = kProperty_Parser_SpecsLevel_Development + 1
};

/// Bytes at the start of the media that a stream keeps: going back to them costs no read.
inline constexpr std::size_t kezMediaParserStreamBufferSize = std::size_t{8} * 1024;

/// Bytes of the begin block that format parsers usually ask for: the heads of most formats fit.
inline constexpr std::size_t kezMediaParser_DefaultBeginBufferSize = std::size_t{32} * 1024;
