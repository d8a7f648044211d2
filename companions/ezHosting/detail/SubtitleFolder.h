#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

class ExtensionMimeTypeMatcher;
class ezCancellation;

/// A name in a folder, found in any case.
struct FoundName {
    std::string mLower; ///< in lower case
    std::string mName;

    friend bool operator<(const FoundName& aLeft, const FoundName& aRight) {
        return aLeft.mLower != aRight.mLower ? aLeft.mLower < aRight.mLower : aLeft.mName < aRight.mName;
    }
};

/// Names of one kind.
using FoundNames = std::vector<FoundName>;

/// What counts of a folder when subtitles are looked for. Each list is sorted.
struct SubtitleFolder {
    FoundNames mFilms;     ///< without their extensions; files of a class of video in the media types file
    FoundNames mSubtitles; ///< by their extensions, which they have
    FoundNames mFolders;   ///< what may be one: a link may lead to a file
    bool mfWhole = true;   ///< all names were seen

    /// Lists a folder.
    /// @param aPath          "" for the working folder
    /// @param aCancellation  ends the listing; may be null
    static SubtitleFolder List(const std::string& aPath, ExtensionMimeTypeMatcher& aMediaTypes,
                               const ezCancellation* aCancellation);

    /// Whether subtitles of a name belong to a film, and not to another one in the folder with a longer name,
    /// or with one that is spelled as theirs.
    /// @param aName  of the subtitles, aFilm that of the film: without their extensions
    bool BelongsTo(std::string_view aName, std::string_view aFilm) const;

    /// Whether there are no films of other names, samples and trailers left aside.
    bool HasOnly(std::string_view aFilm) const;

    /// The first of some sorted names that begins with a text in any case; those that do follow it.
    static FoundNames::const_iterator FirstWith(const FoundNames& aNames, std::string_view aStart);
};
