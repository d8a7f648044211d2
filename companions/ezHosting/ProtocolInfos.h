#pragma once

#include "ezHosting/Export.h"

#include <string>
#include <string_view>
#include <vector>

/// The entries of a profile-info text, as ezMediaParserManager::GetDLNAInfo gives it, as protocolInfo strings
/// ("http-get:*:TYPE:FIELD"). Entries are separated by commas; one that belongs to an entry is written "\,",
/// or stands in quotes. An entry without a 4th field gets "*". All entries in their order, one that stands
/// twice twice.
EZHOSTING_API std::vector<std::string> ProtocolInfosOf(std::string_view aProfileInfo);
