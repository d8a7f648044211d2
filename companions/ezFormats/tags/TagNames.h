#pragma once

#include "ezFormats/tags/MusicTexts.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

/// How tags call the fields of a piece: a vocabulary each.

/// Those whose names are of three or four letters, of one case.
enum class TagLetters {
    ID3,       ///< frames: three letters in version 2.2, four later
    Lyrics3,   ///< fields of its second version
    RIFF,      ///< chunks of a list of the kind "INFO" (RIFF, 2 "INFO list chunk")
    AIFF,      ///< text chunks
    DSDIFF,    ///< chunks of "DIIN"
    ISOItem,   ///< boxes of "ilst"
    ISOAsset,  ///< boxes of 3GPP (TS 26.244, 8)
    ISOPhrase, ///< boxes of QuickTime's user data
};

/// Those whose names are words, of any case.
enum class TagWords {
    APE,           ///< keys of items
    Vorbis,        ///< keys of comments, as FLAC and Ogg have them
    ASF,           ///< names of attributes
    CAF,           ///< keys of the "info" chunk
    QuickTimeItem, ///< names of items, after "com.apple.quicktime."
    Matroska,      ///< names of simple tags
    Flash,         ///< names of values of "onMetaData"
};

/// What a name means.
struct TagField {
    MusicField mField;
    bool mfSecond; ///< counts only where no name that is more to the point tells the field
};

/// The letters of a name as one number, the first of them highest; a NUL stands for a fourth that is not
/// there.
constexpr std::uint32_t TagLettersOf(std::string_view aName) {
    std::uint32_t letters = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        letters = letters << 8 | (i < aName.size() ? static_cast<unsigned char>(aName[i]) : 0U);
    }
    return letters;
}

/// What a name of a vocabulary means; null for one that tells nothing here.
/// @{
const TagField* FindTagField(TagLetters aVocabulary, std::uint32_t aLetters);
const TagField* FindTagField(TagWords aVocabulary, std::string_view aWord);
/// @}
