#include "ezHosting/detail/SubtitleFolder.h"

#include "ezBytes/FileNames.h"
#include "ezBytes/FolderEntries.h"
#include "ezHosting/CancellableStream.h"
#include "ezHosting/detail/SubtitleKinds.h"
#include "ezHosting/detail/SubtitleLimits.h"
#include "ezHosting/detail/SubtitleName.h"

#include "ez/ExtensionMimeTypeMatcher.h"
#include "ez/UPnPClasses.h"
#include "ezPlatform/containers/Items.h"
#include "ezPlatform/text/Case.h"

#include <algorithm>
#include <map>

namespace {

std::string LowerOf(std::string_view aText) {
    std::string lower(aText);
    std::transform(lower.begin(), lower.end(), lower.begin(), ezLower);
    return lower;
}

/// Which extensions the media types file has for films; each is asked for once.
class FilmExtensions {
public:
    explicit FilmExtensions(ExtensionMimeTypeMatcher& aMediaTypes) : mMediaTypes(aMediaTypes) {}

    bool Has(std::string_view anExtension) {
        const std::string extension = LowerOf(anExtension);
        const auto known = mKnown.find(extension);
        if (known != mKnown.end()) {
            return known->second;
        }
        const bool fFilm = IsFilm(ezCString(extension));
        if (mKnown.size() < kSubtitles_MaxExtensions) {
            mKnown.emplace(extension, fFilm);
        }
        return fFilm;
    }

private:
    bool IsFilm(const ezCString& anExtension) {
        ezPtrList* const entries =
            anExtension.IsEmpty() ? nullptr : mMediaTypes.EntriesFromExtension(anExtension);
        if (entries == nullptr) {
            return false;
        }
        bool fFilm = false;
        for (ExtensionMimeTypeMatcherEntry* entry : ezItems<ExtensionMimeTypeMatcherEntry>(entries)) {
            fFilm = fFilm || entry->IsOfClass(kezUPnPClass_VideoItem);
        }
        return fFilm;
    }

    ExtensionMimeTypeMatcher& mMediaTypes;
    std::map<std::string, bool> mKnown;
};

/// What lies beside a film and is part of none.
bool IsExtra(std::string_view aName) {
    constexpr std::string_view kExtras[] = {"sample", "trailer"};
    return std::any_of(std::begin(kExtras), std::end(kExtras), [&](std::string_view anExtra) {
        if (aName.size() < anExtra.size() ||
            !ezIsEqualNoCase(aName.substr(aName.size() - anExtra.size()), anExtra)) {
            return false;
        }
        const std::string_view before = aName.substr(0, aName.size() - anExtra.size());
        return before.empty() || std::string_view("-._ ").find(before.back()) != std::string_view::npos;
    });
}

} // namespace

SubtitleFolder SubtitleFolder::List(const std::string& aPath, ExtensionMimeTypeMatcher& aMediaTypes,
                                    const ezCancellation* aCancellation) {
    SubtitleFolder folder;
    FilmExtensions films(aMediaTypes);
    std::size_t bytes = 0;
    const auto add = [&bytes](FoundNames& aNames, std::string_view aName) {
        aNames.push_back({LowerOf(aName), std::string(aName)});
        bytes += aName.size();
    };
    const auto take = [&](const char* aName, FolderEntry aKind) {
        const std::string_view name(aName);
        const std::string_view extension = ExtensionOfName(name);
        const bool fFile = aKind == FolderEntry::File || aKind == FolderEntry::Unsaid;
        if (fFile && IsSubtitleExtension(extension)) {
            add(folder.mSubtitles, name);
        } else if (fFile && films.Has(extension)) {
            add(folder.mFilms, NameWithoutExtension(name));
        } else if (aKind == FolderEntry::Folder || aKind == FolderEntry::Unsaid) {
            add(folder.mFolders, name);
        }
        return bytes < kSubtitles_MaxNameBytes && (aCancellation == nullptr || !aCancellation->IsCancelled());
    };
    const FolderWalk end = WalkFolder(aPath, kSubtitles_MaxEntries, take);
    folder.mfWhole = end == FolderWalk::Whole || end == FolderWalk::None;
    for (FoundNames* const names : {&folder.mFilms, &folder.mSubtitles, &folder.mFolders}) {
        std::sort(names->begin(), names->end());
    }
    return folder;
}

FoundNames::const_iterator SubtitleFolder::FirstWith(const FoundNames& aNames, std::string_view aStart) {
    return std::lower_bound(aNames.begin(), aNames.end(), FoundName{LowerOf(aStart), ""});
}

bool SubtitleFolder::BelongsTo(std::string_view aName, std::string_view aFilm) const {
    if (!WordsAfterFilm(aName, aFilm)) {
        return false;
    }
    const bool fSpelled = aName.substr(0, aFilm.size()) == aFilm;
    bool fOtherSpelled = false;
    for (std::size_t size = aFilm.size(); size <= aName.size(); ++size) {
        if (size < aName.size() && std::string_view(".-_ ([").find(aName[size]) == std::string_view::npos) {
            continue; // no name of a film ends before a letter
        }
        const std::string_view start = aName.substr(0, size);
        const std::string lower = LowerOf(start);
        const auto film = FirstWith(mFilms, lower);
        if (film == mFilms.end() || film->mLower != lower) {
            continue;
        }
        if (size > aFilm.size() && WordsAfterFilm(aName, lower)) {
            return false;
        }
        fOtherSpelled =
            fOtherSpelled || std::binary_search(film, mFilms.end(), FoundName{lower, std::string(start)});
    }
    return fSpelled || !fOtherSpelled;
}

bool SubtitleFolder::HasOnly(std::string_view aFilm) const {
    return !IsExtra(aFilm) && std::all_of(mFilms.begin(), mFilms.end(), [&](const FoundName& aFound) {
        return ezIsEqualNoCase(aFound.mName, aFilm) || IsExtra(aFound.mName);
    });
}
