#pragma once

#include "ezBytes/BoxWalk.h"

/// The codec of video that four characters name in a BITMAPINFOHEADER, of AVI, ASF and Matroska, in any case,
/// as kezInfo_VideoCodec has it; null for those that are not known.
const char* VideoFourCC_GetCodec(BoxType aFourCC);

/// The same, and for those that are not known the characters themselves as a word of a record: without spaces
/// at the end, and a "." for each that may not stand in one.
ezCString VideoFourCC_GetWord(BoxType aFourCC);
