#pragma once

#include "ezPlatform/text/CString.h"

#include <cstddef>
#include <string>
#include <string_view>

/// The values of a text of which a piece may have several: its creators, its genres. Most have one, which
/// stays as it is and makes no list.
class MusicNames {
public:
    /// Takes a value, clean and in its order; an empty one does not count. Of a genre that is the names that
    /// it means.
    /// @{
    void Add(const ezCString& aName);
    void AddGenre(const ezCString& aText);
    /// @}

    /// The first kMusicTexts_MaxCount values in one text, each name once, separated by ", ".
    ezCString GetJoined() const;
    /// Up to kMusicNames_MaxCount values, each name once and one a line; empty where there are fewer than
    /// two.
    ezCString GetListed() const;

private:
    bool Count(const ezCString& aValue);
    void AddName(std::string_view aName);

    std::size_t mCount = 0; ///< of values
    ezCString mFirst;       ///< name
    std::string mJoined;    ///< of several; as is the next
    std::string mListed;
};
