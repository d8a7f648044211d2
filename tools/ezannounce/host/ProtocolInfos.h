#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The entries of a profile-info text ("TYPE:FIELD" separated by commas; a comma that belongs to an entry is
/// written "\,", or stands in quotes) as protocolInfo strings. An entry without a 4th field gets "*".
std::vector<std::string> ProtocolInfosOf(std::string_view aProfileInfo);
