#pragma once

#include "host/Facts.h"

#include <optional>
#include <string>
#include <vector>

class DLNAMediaMapper;
class ezMediaInfo;
class ezMediaParserStream;

/// A fact that the media mapper decided against, or without, the parsers.
struct Override {
    std::string mKey;         ///< the record's
    std::optional<Fact> mOld; ///< none where no parser stated it
    std::optional<Fact> mNew; ///< none where the table took it away
};

/// What the media mapper had to say of a file.
struct MapperAnswer {
    std::string mFileName; ///< of the entry that answered
    std::string mProfile;
    std::vector<Override> mOverrides; ///< none where it only confirmed what parsers had found
};

/// Finds out by comparing the record before the table was asked with the one that came out. Nothing where the
/// table does not know the media.
/// @param aBefore  null where no parser answered
std::optional<MapperAnswer> FindMapperAnswer(DLNAMediaMapper& aMapper, ezMediaParserStream& aStream,
                                             const ezMediaInfo* aBefore, const ezMediaInfo& anAfter);

/// The name of an overridden fact for people and for programs.
const std::string& LabelOf(const Override& anOverride);
const std::string& NameOf(const Override& anOverride);

/// "* -> DLNA.ORG_PN=MP3".
std::string InWords(const Override& anOverride);
