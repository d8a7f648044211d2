#pragma once

#include "ezPlatform/text/CString.h"

#include <cstdint>
#include <string>

class PSBytes;
class PSStart;

/// How long a file plays, and how that is known.
struct PSLength {
    std::uint64_t mMicroseconds = 0; ///< 0: not known
    ezCString mMethod;               ///< as kezInfo_DurationMethod has it
    std::uint64_t mBound = 0;        ///< microseconds by which an estimate may be too long
};

/// By the time stamps of start and end of a file of known size; where the clock begins anew between them, by
/// the rates of places of it.
PSLength MeasurePS(PSBytes& aBytes, PSStart& aStart);

/// What the information of a DVD's title set, a file beside the media, tells of a file of its titles: the
/// time of the cells that lie in this file, and the languages. Of the disc's other files of the title set the
/// sizes are asked for.
struct PSTitle {
    PSLength mLength;
    std::string mSoundLanguages;
    std::string mSubtitleLanguages;
};

/// Nothing is told of a file that belongs to no title set, without the information, and where that is of
/// another file.
PSTitle ReadPSTitle(PSBytes& aBytes);
