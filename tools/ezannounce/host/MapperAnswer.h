#pragma once

#include "host/Facts.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

class ezMediaInfo;

/// A change of the record, as the media mapper's parser tells it.
struct MapperChange {
    std::string mKey; ///< the record's
    std::optional<std::string> mOld;
    std::optional<std::string> mNew;
};

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

/// Changes in terms of facts, those first that an entry states itself; what shows nowhere is left out.
/// @param anAfter  the record that the changes led to
std::vector<Override> OverridesOf(const std::vector<MapperChange>& aChanges, const ezMediaInfo& anAfter);

/// Null where a key is not among them.
const Override* FindOverride(const std::vector<Override>& anOverrides, std::string_view aKey);

/// The name of an overridden fact for people and for programs.
const std::string& LabelOf(const Override& anOverride);
const std::string& NameOf(const Override& anOverride);

/// "* -> DLNA.ORG_PN=MP3".
std::string InWords(const Override& anOverride);
