#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// What the name of a file of subtitles states beside the film's.
struct SubtitleName {
    std::string mLanguages; ///< tags of RFC 5646, joined by ","
    std::string mTitle;     ///< the words that mean nothing else, as they are written
    bool mfForced = false;
    bool mfHearingImpaired = false;
    bool mfDefault = false;
};

/// Reads words that are separated by ".". A word is a flag, a number, which counts for nothing, or a
/// language: its tag or code, or its name as users write it. One of several parts is read by these where all
/// of them mean something ("eng-forced", "2_English"), and where the first is the name of a language
/// ("Spanish (Latin American)"); every other word belongs to the title.
///
/// "hi" is hearing impaired where there is a language beside it, else Hindi.
SubtitleName ReadSubtitleName(std::string_view aWords);

/// The words after the name of a film, in any case, in that of its subtitles; none where the name begins
/// otherwise, or goes on as the name of another film may. What follows "." is words. After "-", "_", a blank
/// and a bracket, and a bracket, all of the first word has to mean something, numbers left aside: "Film-2"
/// and "Film Noir" are other films.
///
/// @param aName  without the extension
/// @param aFilm  without the extension
std::optional<std::string_view> WordsAfterFilm(std::string_view aName, std::string_view aFilm);
