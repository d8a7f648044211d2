#pragma once

#include "ezBytes/ByteReader.h"

#include "ezPlatform/text/CString.h"

#include <cstdint>
#include <string_view>

/// What a frame of ID3v2 that holds a picture ("APIC"; "PIC" in 2.2) says before the picture's data
/// (ID3v2.4.0 frames, 4.14).
struct ID3Picture {
    std::uint32_t mType = 0; ///< kPictureType_...
    ezCString mMimeType;     ///< as it is stated; of 2.2 three letters
};

/// True for the name of such a frame.
bool IsID3Picture(std::string_view aFrame, unsigned aVersion);

/// Reads it, up to the picture's data, which is what aBody has left then. False where it does not end in
/// aBody, a text of it is of more than aMaxText bytes, and for a link, whose text is not a picture.
bool ReadID3Picture(ByteReader& aBody, unsigned aVersion, std::uint32_t aMaxText, ID3Picture* aPicture);
