#pragma once

#include "ezBytes/BoxWalk.h"

#include "ezPlatform/text/CString.h"

#include <string_view>

/// A name of a codec that a file states, as a word of a record: without spaces at the end, and a "." for each
/// character that may not stand in one.
ezCString CodecWord_Of(std::string_view aText);

/// The same of a four-character code, in letters, digits, "-" and "_" alone, and without zeros at the end.
ezCString CodecWord_OfFormat(BoxType aFormat);
