#include "ezHosting/detail/SubtitleSearch.h"

#include "ezBytes/FileNames.h"
#include "ezBytes/FolderEntries.h"
#include "ezBytes/TextBytes.h"
#include "ezHosting/detail/SubtitleContent.h"
#include "ezHosting/detail/SubtitleKinds.h"
#include "ezHosting/detail/SubtitleLimits.h"
#include "ezHosting/detail/SubtitleName.h"

#include "ezPlatform/files/File.h"
#include "ezPlatform/text/Case.h"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <utility>

namespace {

/// How the pictures of VobSub begin: with a pack of a program stream (ISO/IEC 13818-1, 2.5.3.3).
constexpr std::string_view kPack("\0\0\1\xBA", 4);

/// The first bytes of a file.
struct Head {
    std::string mBytes;
    bool mfWhole = false;  ///< they are all
    bool mfFailed = false; ///< it could not be read, though it is there
};

Head ReadHead(const std::string& aPath, std::size_t aSize) {
    Head head;
    ezFile file;
    if (!file.Open(ezCString(aPath), ezFileOpenMode_Read, ezFileAccessMode_ReadWrite)) {
        head.mfFailed =
            errno == EACCES || (!IsAnswerOfPath(errno) && errno != EINVAL); // EINVAL: not a regular file
        return head;
    }
    const ezFileOffset length = std::max<ezFileOffset>(file.LengthAtOpen(), 0);
    head.mfWhole = length <= static_cast<ezFileOffset>(aSize);
    head.mBytes.resize(head.mfWhole ? static_cast<std::size_t>(length) : aSize);
    const int count = file.Read(head.mBytes.data(), head.mBytes.size());
    head.mfFailed = count < 0;
    head.mBytes.resize(static_cast<std::size_t>(std::max(count, 0)));
    return head;
}

/// The names of folders in which subtitles lie, in any case.
bool IsFolderOfSubtitles(const std::string& aLower) {
    return aLower == "subs" || aLower == "subtitles";
}

/// The pictures of an index of VobSub in a folder: as it is spelled, else in any case; "" where there are
/// none.
std::string_view PicturesOf(std::string_view anIndex, const SubtitleFolder& aFolder) {
    const std::string_view stem = NameWithoutExtension(anIndex);
    const std::string pictures = std::string(stem) + ".sub";
    std::string_view found;
    for (auto name = SubtitleFolder::FirstWith(aFolder.mSubtitles, pictures);
         name != aFolder.mSubtitles.end() && ezIsEqualNoCase(name->mLower, pictures); ++name) {
        const bool fSpelled = NameWithoutExtension(name->mName) == stem;
        found = found.empty() || fSpelled ? std::string_view(name->mName) : found;
    }
    return found;
}

} // namespace

ezSubtitles SubtitleSearch::Find(std::string_view aFilm) {
    const std::string folder(aFilm.substr(0, aFilm.rfind('/') + 1));
    const std::string_view name = aFilm.substr(folder.size());
    Film film;
    film.mBase = NameWithoutExtension(name);
    if (name.empty() || aFilm.find('\0') != std::string_view::npos) {
        return {};
    }
    if (folder != mFilmFolder) {
        mListed.clear();
        mFilmFolder = folder;
    }
    const SubtitleFolder& listed = ListOnce(folder);
    film.mFolder = &listed;
    Add(folder, listed, Names::OfFilm, film);
    std::size_t looked = 0;
    for (const FoundName& found : listed.mFolders) {
        if (IsFolderOfSubtitles(found.mLower) && ++looked <= kSubtitles_MaxFolders) {
            LookInto(folder + found.mName + "/", film);
        }
    }
    film.mFound.mfWhole = film.mFound.mfWhole && looked <= kSubtitles_MaxFolders && !IsCancelled();
    return std::move(film.mFound);
}

const SubtitleFolder& SubtitleSearch::ListOnce(const std::string& aPath) {
    const auto listed = mListed.find(aPath);
    return listed != mListed.end() ? listed->second : mListed.emplace(aPath, List(aPath)).first->second;
}

void SubtitleSearch::LookInto(const std::string& aPath, Film& aFilm) {
    const SubtitleFolder& folder = ListOnce(aPath);
    std::size_t looked = 0;
    Add(aPath, folder, aFilm.mFolder->HasOnly(aFilm.mBase) ? Names::All : Names::OfFilm, aFilm);
    for (auto own = SubtitleFolder::FirstWith(folder.mFolders, aFilm.mBase);
         own != folder.mFolders.end() && ezIsEqualNoCase(own->mName, aFilm.mBase); ++own) {
        if (++looked > kSubtitles_MaxFolders) {
            aFilm.mFound.mfWhole = false;
            return;
        }
        const std::string path = aPath + own->mName + "/";
        Add(path, List(path), Names::All, aFilm);
    }
}

std::vector<SubtitleSearch::Candidate> SubtitleSearch::CandidatesIn(const SubtitleFolder& aFolder,
                                                                    Names aNames, Film& aFilm) {
    std::vector<Candidate> candidates;
    const FoundNames& names = aFolder.mSubtitles;
    const bool fAll = aNames == Names::All;
    std::size_t looked = 0;
    for (auto found = fAll ? names.begin() : SubtitleFolder::FirstWith(names, aFilm.mBase);
         found != names.end() && (fAll || ezStartsWithNoCase(found->mName, aFilm.mBase)); ++found) {
        const std::string_view name = NameWithoutExtension(found->mName);
        const std::optional<std::string_view> words = WordsAfterFilm(name, aFilm.mBase);
        if (!fAll && !words) {
            continue;
        }
        if (++looked > kSubtitles_MaxNames) {
            aFilm.mFound.mfWhole = false;
            break;
        }
        if (fAll || aFilm.mFolder->BelongsTo(name, aFilm.mBase)) {
            candidates.push_back({found->mName, words.value_or(name),
                                  words.has_value() && name.substr(0, aFilm.mBase.size()) == aFilm.mBase});
        }
    }
    std::sort(candidates.begin(), candidates.end());
    return candidates;
}

void SubtitleSearch::Add(const std::string& aPath, const SubtitleFolder& aFolder, Names aNames, Film& aFilm) {
    ezSubtitles& found = aFilm.mFound;
    found.mfWhole = found.mfWhole && aFolder.mfWhole;
    for (const Candidate& candidate : CandidatesIn(aFolder, aNames, aFilm)) {
        if (aFilm.mTried == kSubtitles_MaxTried || IsCancelled()) {
            found.mfWhole = false;
            return;
        }
        ++aFilm.mTried;
        bool fFailed = false;
        if (std::optional<ezSubtitleFile> file = Tell(aPath, aFolder, candidate, &fFailed)) {
            found.mFiles.push_back(std::move(*file));
        }
        found.mfWhole = found.mfWhole && !fFailed;
    }
}

std::optional<ezSubtitleFile> SubtitleSearch::Tell(const std::string& aPath, const SubtitleFolder& aFolder,
                                                   const Candidate& aCandidate, bool* afFailed) const {
    ezSubtitleFile file;
    file.mPath = aPath + std::string(aCandidate.mName);
    const Head head = ReadHead(file.mPath, kSubtitle_HeadSize);
    *afFailed = head.mfFailed;
    const std::optional<SubtitleContent> content = ReadSubtitleContent(head.mBytes, head.mfWhole, mEncoding);
    if (!content || !MayHold(ExtensionOfName(aCandidate.mName), content->mKind)) {
        return std::nullopt;
    }
    if (content->mKind == ezSubtitleKind::VobSub) {
        const std::string_view pictures = PicturesOf(aCandidate.mName, aFolder);
        if (pictures.empty()) {
            return std::nullopt; // nothing to show
        }
        file.mPicturesPath = aPath + std::string(pictures);
        const Head start = ReadHead(file.mPicturesPath, kPack.size());
        *afFailed = start.mfFailed;
        if (start.mBytes != kPack) {
            return std::nullopt; // text, which is told by itself, or something else
        }
    }
    const SubtitleName name = ReadSubtitleName(aCandidate.mWords);
    file.mKind = content->mKind;
    file.mLanguages = name.mLanguages.empty() ? content->mLanguages : name.mLanguages;
    file.mEncoding = content->mEncoding;
    file.mTitle = CleanText(name.mTitle, TextEncoding::Unstated, mCodePage).View();
    file.mfForced = name.mfForced;
    file.mfHearingImpaired = name.mfHearingImpaired;
    file.mfDefault = name.mfDefault;
    return file;
}
