#include "ez/PlaylistParserFactory.h"

#include "ezPlatform/base/Assert.h"
#include "ezPlatform/containers/Array.h"

#include <cstddef>
#include <string_view>

namespace {

constexpr const char* kSource = "PlaylistParserFactory";

/// The first record of which a test holds; null when there is none.
template <typename Test>
PlaylistParserFactoryInfo* FirstOf(const ezArray* anArray, Test aTest) {
    for (std::size_t i = 0; i < ezArray_GetCount(anArray); ++i) {
        PlaylistParserFactoryInfo* info = static_cast<PlaylistParserFactoryInfo*>(ezArray_At(anArray, i));
        if (aTest(*info)) {
            return info;
        }
    }
    return nullptr;
}

/// Between commas, so that no extension is found inside another. Put together, not formatted: an extension of
/// a stranger's file may hold a NUL, after which a format would stop.
ezCString BetweenCommas(const ezCString& aText) {
    return "," + aText.Lower() + ",";
}

void sPlaylistParserBuilderFreeFunc(void* anInfo) {
    delete static_cast<PlaylistParserFactoryInfo*>(anInfo);
}

} // namespace

PlaylistParserFactory::PlaylistParserFactory() : mArray(ezArray_New()) {
    ezArray_SetFreeFunc(mArray, sPlaylistParserBuilderFreeFunc);
}

PlaylistParserFactory::~PlaylistParserFactory() {
    ezArray_Delete(mArray);
}

bool PlaylistParserFactory::Register(PlaylistParserBuilderFunc aPlaylistParserBuilderFunc,
                                     const ezCString& aMimeType, const ezCString& anExtensionList) {
    if (!ezAssert(aPlaylistParserBuilderFunc != nullptr, "aPlaylistParserBuilderFunc != NULL", kSource) ||
        !ezAssert(!aMimeType.IsEmpty() || !anExtensionList.IsEmpty(),
                  "!aMimeType.IsEmpty() || !anExtensionList.IsEmpty()", kSource)) {
        return false;
    }
    PlaylistParserFactoryInfo* info = new PlaylistParserFactoryInfo;
    info->mBuilderFunc = aPlaylistParserBuilderFunc;
    info->mMimeType = aMimeType;
    info->mExtensionList = BetweenCommas(anExtensionList);
    ezArray_Append(mArray, info);
    return true;
}

PlaylistParserFactoryInfo*
PlaylistParserFactory::GetPlaylistParserFactoryInfo(const ezCString& aMimeType,
                                                    const ezCString& anExtension) const {
    if (!aMimeType.IsEmpty()) {
        return FirstOf(mArray, [&](const PlaylistParserFactoryInfo& anInfo) {
            return anInfo.mMimeType.Compare(aMimeType) == 0;
        });
    }
    if (anExtension.IsEmpty()) {
        return nullptr;
    }
    const ezCString key = BetweenCommas(anExtension).Replace(".", "", true);
    return FirstOf(mArray, [&](const PlaylistParserFactoryInfo& anInfo) {
        return anInfo.mExtensionList.View().find(key.View()) != std::string_view::npos;
    });
}

PlaylistParser* PlaylistParserFactory::NewPlaylistParser(ezStream* aStream, const ezCString& aMimeType,
                                                         const ezCString& anExtension) const {
    const PlaylistParserFactoryInfo* info = GetPlaylistParserFactoryInfo(aMimeType, anExtension);
    return info != nullptr ? info->mBuilderFunc(aStream) : nullptr;
}

bool PlaylistParserFactory::IsSupportedPlaylist(const ezCString& aMimeType,
                                                const ezCString& anExtension) const {
    return GetPlaylistParserFactoryInfo(aMimeType, anExtension) != nullptr;
}
