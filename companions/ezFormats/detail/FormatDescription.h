#pragma once

#include "ez/UPnPClasses.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string_view>

class ByteReader;

/// What one parse may cost, whatever the file holds.
struct FormatBudget {
    std::uint32_t mReads; ///< blocks, each a seek and a read, and further reads where one comes short
    std::uint64_t mBytes; ///< bytes that these may bring in all
};

/// Names by which media of one of a format's MIME types also go. They are announced where an operator's media
/// types file has one of them first, and a device may ask with them.
struct OtherMimeTypes {
    const char* mType;       ///< of FormatDescription::mMimeTypes
    const char* mAudioCodec; ///< only of media with this one; empty: of any
    std::initializer_list<const char*> mNames;
};

/// A line of the default media types file that leads to the format's parser. The type "any", last in every
/// line, goes without saying.
struct MediaTypesLine {
    const char* mType;                                ///< the parser to try first, or a name without one
    std::initializer_list<const char*> mExtensions;   ///< without the dot; the first is the one announced
    std::initializer_list<const char*> mMimeTypes;    ///< the first is the one announced
    const char* mClass;                               ///< kezUPnPClass_...
    std::initializer_list<const char*> mFurtherTypes; ///< parsers to try after the first, in this order
};

/// How media of a format begin: enough for a file whose name lies to be known by it. Four fixed bytes at the
/// least, or what stands for them.
struct FormatMagic {
    /// True when a file of the format begins where the reader stands; null where nothing unmistakable shows.
    bool (*mIsAt)(ByteReader aBytes) = nullptr;
    bool mfAfterTags = false; ///< tags of songs may stand before it
};

/// All that is told about a format beside what its parser reads. Each parser has one, as its kDescription;
/// what registers, checks, tests and measures the formats follows from these. All of it is known when it is
/// compiled.
struct FormatDescription {
    const char* mName; ///< the parser's class, as the log names it
    const char* mType; ///< the parser's name in the media types file, lower case
    std::initializer_list<const char*>
        mMimeTypes; ///< the first is announced unless the content says otherwise
    FormatBudget mBudget;
    std::initializer_list<MediaTypesLine> mLines;
    std::initializer_list<OtherMimeTypes> mOtherMimeTypes = {};
    FormatMagic mMagic = {};
    std::initializer_list<const char*> mForeignMimeTypes =
        {}; ///< of other formats, which declare them: announced for what hides in this one

    /// Whether the parser may announce it: one of the format's types, or a foreign one.
    bool Announces(std::string_view aMimeType) const {
        const auto fHas = [aMimeType](std::initializer_list<const char*> aTypes) {
            return std::any_of(aTypes.begin(), aTypes.end(),
                               [aMimeType](const char* aType) { return aMimeType == aType; });
        };
        return fHas(mMimeTypes) || fHas(mForeignMimeTypes);
    }
    /// Announced for media that do not say otherwise.
    constexpr const char* GetFirstMimeType() const { return *mMimeTypes.begin(); }
};
