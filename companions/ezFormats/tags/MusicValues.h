#pragma once

#include "ezFormats/tags/MusicNames.h"
#include "ezFormats/tags/MusicTexts.h"
#include "ezFormats/tags/TagNames.h"

#include <array>
#include <cstddef>

/// The values that the items of a tag state, in any order: of an item with several, or of several items of
/// one field.
class MusicValues {
public:
    /// Takes a value, clean, in the order of the tag. Of a field that a piece has once the first counts.
    void Add(const TagField& aField, const ezCString& aValue);

    /// Fills what is not told yet; names that are to the point before the others.
    void Store(MusicTexts& aTexts) const;

private:
    struct Values {
        MusicNames mNames;
        std::size_t mCount = 0;
    };
    using Fields = std::array<Values, kMusicField_Count>;

    static void StoreFields(const Fields& aFields, MusicTexts& aTexts);

    Fields mFirst;
    Fields mSecond;
};
