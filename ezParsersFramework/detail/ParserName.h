#pragma once

#include "ezPlatform/text/CString.h"

class ezBaseParser;

/// The class of a parser as its source calls it: "(anonymous namespace)::WavParser". As the compiler writes
/// it where that cannot be told, for want of memory, say.
ezCString ParserName_Of(const ezBaseParser& aParser);
