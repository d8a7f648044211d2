#pragma once

#include "ezFormats/Export.h"
#include "ezFormats/ProfileRules.h"

#include <memory>

class ezMediaParserManager;

/// Adds a parser of every file format of this library to a manager, in their fixed order, and the one that
/// knows these formats whatever their name (MagicParser). The manager owns
/// them. What a host added before is tried before them.
///
/// @param aRules  which profile a media keeps; null for the table that the library brings
EZFORMATS_API void RegisterFormatParsers(ezMediaParserManager& aManager,
                                         std::shared_ptr<const ProfileRules> aRules = nullptr);
