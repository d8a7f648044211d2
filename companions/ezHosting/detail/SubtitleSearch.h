#pragma once

#include "ezBytes/CodePage.h"
#include "ezHosting/CancellableStream.h"
#include "ezHosting/Subtitles.h"
#include "ezHosting/detail/SubtitleFolder.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class ExtensionMimeTypeMatcher;

/// The work of an ezSubtitleFinder.
class SubtitleSearch {
public:
    SubtitleSearch(ExtensionMimeTypeMatcher& aMediaTypes, std::string_view aTextCodePage,
                   const ezCancellation* aCancellation)
        : mMediaTypes(aMediaTypes),
          mCodePage(aTextCodePage),
          mEncoding(mCodePage.GetName()),
          mCancellation(aCancellation) {}

    ezSubtitles Find(std::string_view aFilm);

private:
    /// Which files of a folder are those of a film.
    enum class Names { OfFilm, All };
    /// The film that is looked for.
    struct Film {
        std::string_view mBase;                  ///< its name without the extension
        const SubtitleFolder* mFolder = nullptr; ///< that it lies in
        std::size_t mTried = 0;                  ///< files that were opened for it
        ezSubtitles mFound;
    };

    /// A name that may be one of the film's subtitles; views of what is listed.
    struct Candidate {
        std::string_view mName;
        std::string_view mWords; ///< that tell of it
        bool mfSpelled = false;  ///< it has the film's name as that is written

        friend bool operator<(const Candidate& aLeft, const Candidate& aRight) {
            return aLeft.mfSpelled != aRight.mfSpelled ? aLeft.mfSpelled : aLeft.mName < aRight.mName;
        }
    };

    bool IsCancelled() const { return mCancellation != nullptr && mCancellation->IsCancelled(); }
    SubtitleFolder List(const std::string& aPath) {
        return SubtitleFolder::List(aPath, mMediaTypes, mCancellation);
    }
    /// As long as films of one folder are asked for.
    const SubtitleFolder& ListOnce(const std::string& aPath);
    void LookInto(const std::string& aPath, Film& aFilm);
    static std::vector<Candidate> CandidatesIn(const SubtitleFolder& aFolder, Names aNames, Film& aFilm);
    /// Adds those of a folder.
    /// @param aPath  of the folder, with its "/", or empty
    void Add(const std::string& aPath, const SubtitleFolder& aFolder, Names aNames, Film& aFilm);
    /// Opens one file; nothing where it holds no subtitles.
    std::optional<ezSubtitleFile> Tell(const std::string& aPath, const SubtitleFolder& aFolder,
                                       const Candidate& aCandidate, bool* afFailed) const;

    ExtensionMimeTypeMatcher& mMediaTypes;
    const CodePage mCodePage;
    const std::string mEncoding; ///< the code page by its name
    const ezCancellation* mCancellation;
    std::string mFilmFolder;                       ///< that the listed ones are of
    std::map<std::string, SubtitleFolder> mListed; ///< by the path
};
