#pragma once

#include "ezBytes/ByteReader.h"

#include "ezPlatform/text/CString.h"

#include <cstdint>
#include <string_view>

struct AudioTails;

/// The items of an APE tag after the sound, one after the other.
class APEItems {
public:
    /// What a value is, as its flags say.
    enum class Kind { Text, Binary, Link, Reserved };

    APEItems(ByteSource& aBytes, const AudioTails& aTails);

    /// The next item: its key, what its value is, and a reader of that. False after the last one, where one
    /// does not end in the tag, and where a key is of more than kAPEItem_MaxKey bytes, its end counted.
    bool Next(ezCString* aKey, Kind* aKind, ByteReader* aValue);

private:
    ByteReader mReader;
};

/// True for the key of a binary item that holds a picture ("Cover Art (Front)"). *aType is its type:
/// kPictureType_... of a front cover and of icons, 0 of all others.
bool IsAPEPicture(std::string_view aKey, std::uint32_t* aType);

/// Steps over the name of a file that stands before the picture and ends in a NUL. aValue has the picture
/// left then, which one that writers forgot to name is from the start on. False where no picture that is
/// known by its first bytes begins there.
/// @param aMaxText  bytes of the name, its end counted
bool SkipToAPEPicture(ByteReader& aValue, std::uint32_t aMaxText);
