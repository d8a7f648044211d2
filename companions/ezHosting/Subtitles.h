#pragma once

#include "ezHosting/Export.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

class ExtensionMimeTypeMatcher;
class SubtitleSearch;
class ezCancellation;

/// What a file of subtitles holds, whatever its name says.
enum class ezSubtitleKind {
    SubRip,               ///< cues of text; the one that nearly all devices show
    WebVTT,               ///< W3C WebVTT
    SubStation,           ///< SubStation Alpha, version 4
    AdvancedSubStation,   ///< its successor, version 4+
    MicroDVD,             ///< text by frame numbers
    SAMI,                 ///< HTML with times
    TTML,                 ///< W3C Timed Text, and its profile DFXP
    PresentationGraphics, ///< pictures of Blu-ray
    VobSub,               ///< pictures of DVDs: an index, and a file of the same name with the pictures
};

/// The name of a kind for programs, which is its usual extension: "srt", "ass", "idx" ... Never null; the
/// text lasts as long as the program.
EZHOSTING_API const char* ezSubtitleKind_GetName(ezSubtitleKind aKind);

/// The MIME types of a kind, joined by ",": the registered or usual one, then those that some devices ask for
/// ("application/x-subrip,text/srt,smi/caption"). "" for pictures, which have none. Lasts as the name does.
EZHOSTING_API const char* ezSubtitleKind_GetMimeTypes(ezSubtitleKind aKind);

/// A file of subtitles that belongs to a film.
struct EZHOSTING_API ezSubtitleFile {
    std::string mPath; ///< to open it by: the folder as the film's path has it. Any bytes but NUL
    ezSubtitleKind mKind = ezSubtitleKind::SubRip; ///< by its content
    /// Tags of RFC 5646, joined by ",", as the name states them, else the content of a kind that does; "" for
    /// neither. One of several tracks lists all of them.
    std::string mLanguages;
    /// What its bytes are taken for: "UTF-8", "UTF-16LE", "UTF-16BE", or the operator's code page, by the
    /// name that MIME has for it ("windows-1251", "GBK") or else iconv ("CP866"). A guess, by its first
    /// bytes. "" for pictures.
    std::string mEncoding;
    /// What else the name says: UTF-8 in one line, "" for nothing.
    std::string mTitle;
    bool mfForced = false;          ///< only what is said in a language that the film is not in
    bool mfHearingImpaired = false; ///< sounds are told, too
    bool mfDefault = false;         ///< to be shown unless the viewer chooses another
    std::string mPicturesPath;      ///< of ezSubtitleKind::VobSub the file with the pictures; else ""
};

/// What is there for a film.
struct EZHOSTING_API ezSubtitles {
    /// First those next to the film, then those in each folder for subtitles, the folders by their names
    /// regardless of case. In each first those that begin with the film's name as it is written, then all
    /// others, both by their names: bytes, compared as numbers.
    std::vector<ezSubtitleFile> mFiles;
    /// False where more may be there: a folder or a file could not be read, or there was more than is looked
    /// at (docs/limits.md), or it was cancelled.
    bool mfWhole = true;
};

/// Finds the files of subtitles that lie next to films, by their names, and tells what is in them. They are
/// no media of their own: the media types file excludes them, a film's record does not tell of them, and a
/// server adds them to the film's item. docs/hosting.md has the rules for names.
///
///     ezSubtitleFinder finder(host.GetMediaTypes());
///     for (const ezSubtitleFile& file : finder.Find("/media/Film.mkv").mFiles) {
///         std::printf("%s %s\n", file.mPath.c_str(), file.mLanguages.c_str());
///     }
///
/// A finder lists the folder of a film once for all films in it that are asked for in a row, so a walk over a
/// library lists each folder once. It does not notice what comes into that folder or goes meanwhile: each
/// look has a finder of its own. For one thread at a time; finders share nothing.
class EZHOSTING_API ezSubtitleFinder {
public:
    /// @param aMediaTypes    loaded; tells which files of a folder are films. Borrowed, outlives the finder.
    ///                       It is only read: finders on several threads may share it
    /// @param aTextCodePage  the encoding of texts and names that are not Unicode: a name or a number as
    ///                       ezHostOptions::mTextCodePage has it. "", and one that the system does not know,
    ///                       is Windows-1252
    /// @param aCancellation  ends a look; borrowed, may be null, outlives the finder
    explicit ezSubtitleFinder(ExtensionMimeTypeMatcher& aMediaTypes, std::string_view aTextCodePage = {},
                              const ezCancellation* aCancellation = nullptr);
    ~ezSubtitleFinder();
    ezSubtitleFinder(const ezSubtitleFinder&) = delete;
    ezSubtitleFinder& operator=(const ezSubtitleFinder&) = delete;

    /// The subtitles of a film. Lists its folder, and those for subtitles in it, in bounded time; of each
    /// file that has a fitting name the first bytes are read, by one read, and those of an index's pictures
    /// by another. Only regular files are read, and those that a link leads to.
    ///
    /// After a cancellation what was found until then; a call of the system that waits is not broken off.
    ///
    /// @param aFilm  a path of this system, not a URL. The film itself is not touched, and need not be there
    ezSubtitles Find(std::string_view aFilm);

private:
    std::unique_ptr<SubtitleSearch> mSearch;
};
