#include "ezHosting/Subtitles.h"

#include "ezHosting/detail/SubtitleSearch.h"

ezSubtitleFinder::ezSubtitleFinder(ExtensionMimeTypeMatcher& aMediaTypes, std::string_view aTextCodePage,
                                   const ezCancellation* aCancellation)
    : mSearch(std::make_unique<SubtitleSearch>(aMediaTypes, aTextCodePage, aCancellation)) {}

ezSubtitleFinder::~ezSubtitleFinder() = default;

ezSubtitles ezSubtitleFinder::Find(std::string_view aFilm) {
    return mSearch->Find(aFilm);
}
