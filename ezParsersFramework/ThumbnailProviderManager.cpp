#include "ez/ThumbnailProviderManager.h"

#include "ez/ThumbnailGenerator.h"
#include "ez/ThumbnailInfo.h"
#include "ez/ThumbnailProviderBase.h"

#include "ezPlatform/base/Assert.h"
#include "ezPlatform/base/Log.h"
#include "ezPlatform/base/LogDuration.h"
#include "ezPlatform/containers/Items.h"
#include "ezPlatform/dlna/DLNAField.h"
#include "ezPlatform/files/File.h"
#include "ezPlatform/files/FileCacheManager.h"

#include <charconv>
#include <iterator>
#include <limits>
#include <memory>
#include <string>
#include <string_view>

/// One line of the thumbnail module, if the level lets it through.
#define Thumbnail_Log(aLevel, ...)                                                                           \
    do {                                                                                                     \
        if (_ezLog_Level > (aLevel)) {                                                                       \
            ezLog_Line_F(aLevel, EZLOG_M_THUMBNAIL, nullptr, 0, __VA_ARGS__);                                \
        }                                                                                                    \
    } while (false)

namespace {

constexpr std::size_t kMaximumDigits = std::numeric_limits<uint32>::digits10 + 1;

void AppendNumber(std::string& aText, uint32 aNumber) {
    char digits[kMaximumDigits];
    aText.append(digits, std::to_chars(std::begin(digits), std::end(digits), aNumber).ptr);
}

/// kThumbnail_TempFileName filled in, and the extension. The identity is put in as bytes: a NUL in it would
/// end a "%s" of printf, and two items would share a name.
ezCString NameFor(const ThumbnailInfo& anInfo, std::string_view anIdentity, std::string_view anExtension) {
    const uint32 numbers[] = {anInfo.mWidth,     anInfo.mHeight,           anInfo.mWidthMax,
                              anInfo.mHeightMax, anInfo.mPixelRatioHeight, anInfo.mPixelRatioWidth};
    constexpr std::string_view kFormat = kThumbnail_TempFileName;
    constexpr std::size_t kMaximumOfNumbers = std::size(numbers) * kMaximumDigits;
    const uint32* number = std::begin(numbers);
    std::string name;
    name.reserve(kFormat.size() + kMaximumOfNumbers + anIdentity.size() + anExtension.size());
    for (std::size_t i = 0; i < kFormat.size(); ++i) {
        if (kFormat[i] != '%') {
            name += kFormat[i];
        } else if (kFormat[++i] == 's') {
            name += anIdentity;
        } else if (kFormat[i] == 'c') {
            name += anInfo.mfParentalLocked ? '1' : '0';
        } else { // "%lu"
            ++i;
            AppendNumber(name, *number++);
        }
    }
    name += anExtension;
    return ezCString(name);
}

} // namespace

ezThumbnailProviderManager::ezThumbnailProviderManager(ezFileCacheManager* aFileCacheManager,
                                                       ezThumbnailGenerator* anThumbnailGenerator)
    : mThumbnailProviderList(ezPtrList_New()),
      mThumbnailGenerator(anThumbnailGenerator),
      mFileCacheManager(aFileCacheManager) {
    ezPtrList_SetFreeFunc(mThumbnailProviderList, ThumbnailProvider_Free);
}

ezThumbnailProviderManager::~ezThumbnailProviderManager() {
    ezPtrList_Delete(mThumbnailProviderList);
    delete mThumbnailGenerator; // before the default provider: no provider touches it in the end
    delete mDefaultThumbnailProvider;
}

void ezThumbnailProviderManager::ThumbnailProvider_Free(void* aThumbnailProvider) {
    delete static_cast<ezThumbnailProvider*>(aThumbnailProvider);
}

void ezThumbnailProviderManager::Add(ezThumbnailProvider* aThumbnailProvider) {
    if (aThumbnailProvider == nullptr) {
        return;
    }
    ezPtrList_Append(mThumbnailProviderList, aThumbnailProvider);
    Thumbnail_Log(EZLOGLEVEL_INFO, "Added thumbnail provider '%s' to thumbnail provider manager %p\n",
                  aThumbnailProvider->GetName(), static_cast<void*>(this));
}

void ezThumbnailProviderManager::SetDefaultProvider(ezThumbnailProvider* aThumbnailProvider) {
    if (aThumbnailProvider != mDefaultThumbnailProvider) {
        delete mDefaultThumbnailProvider;
        mDefaultThumbnailProvider = aThumbnailProvider;
    }
}

uint32 ezThumbnailProviderManager::GetPossibleThumbnailFor(const ThumbnailInfo* anInfo) {
    if (anInfo == nullptr) {
        return kNoThumbnailID;
    }
    uint32 possible =
        mDefaultThumbnailProvider != nullptr ? mDefaultThumbnailProvider->GetPossibleThumbnailFor(anInfo) : 0;
    for (ezThumbnailProvider* provider : ezItems<ezThumbnailProvider>(mThumbnailProviderList)) {
        if (possible != 0) {
            break;
        }
        possible = provider->GetPossibleThumbnailFor(anInfo);
    }
    return possible;
}

ezCString ezThumbnailProviderManager::GetThumbnailFileName(const ThumbnailInfo* anInfo,
                                                           bool afUseDefaultProvider) {
    if (anInfo == nullptr) {
        return {};
    }
    const uint32 wanted = anInfo->mThumbnailID;
    if (!ezAssert((wanted & (kJPEGThumbnailID | kPNGThumbnailID)) != 0,
                  "ezThumbnailProviderManager: Unknown thumbnail ID", "ThumbnailProviderManager")) {
        return {};
    }
    const std::string_view extension = (wanted & kJPEGThumbnailID) != 0 ? ".jpg" : ".png";
    return afUseDefaultProvider
               ? NameFor(*anInfo, anInfo->mMimeType.BeforeFirst('/').Lower().View(), extension)
               : NameFor(*anInfo, anInfo->mUniqueID.View(), extension);
}

bool ezThumbnailProviderManager::Build(const ThumbnailInfo* anInfo, bool afUseDefaultProvider,
                                       ezFile* aFile) {
    if (afUseDefaultProvider && mDefaultThumbnailProvider != nullptr) {
        return mDefaultThumbnailProvider->BuildThumbnail(anInfo, aFile);
    }
    // True when nobody is able: the empty file is remembered, so that nobody is asked in vain again.
    bool fSuccess = true;
    for (ezThumbnailProvider* provider : ezItems<ezThumbnailProvider>(mThumbnailProviderList)) {
        if (!provider->CanProvideThumbnailFor(anInfo)) {
            continue;
        }
        // What another one left half-written is not the beginning of this one's.
        if (!aFile->Empty()) {
            return false;
        }
        fSuccess = provider->BuildThumbnail(anInfo, aFile);
        if (fSuccess) {
            break;
        }
    }
    return fSuccess;
}

ezFile* ezThumbnailProviderManager::GetCachedThumbnail(const ThumbnailInfo* anInfo,
                                                       bool afUseDefaultProvider) {
    const ezCString name = GetThumbnailFileName(anInfo, afUseDefaultProvider);
    if (name.IsEmpty() || mFileCacheManager == nullptr) {
        return nullptr;
    }
    Thumbnail_Log(EZLOGLEVEL_DEBUG, "GetCachedThumbnail: %s\n", mFileCacheManager->GetFullPath(name).c_str());
    bool fNew = false;
    std::unique_ptr<ezFile> file(mFileCacheManager->OpenCachedFile(name, &fNew, 0));
    if (file == nullptr) {
        return nullptr;
    }
    if (fNew) {
        const bool fSuccess = Build(anInfo, afUseDefaultProvider, file.get());
        mFileCacheManager->SetCachedFileState(name, file.get(), fSuccess);
        if (!fSuccess) {
            return nullptr;
        }
    }
    // Below 0 when a provider closed it.
    if (file->LengthAtOpen() <= 0 || file->Seek(0, ezFileSeekMode_Begin) != 0) {
        return nullptr;
    }
    return file.release();
}

ezFile* ezThumbnailProviderManager::GetThumbnail(const ThumbnailInfo* anInfo, bool afUseDefault) {
    if (anInfo == nullptr) {
        return nullptr;
    }
    const ezCString fullName = anInfo->mFilePath.GetFullName();
    const ezLogDuration duration(EZLOGLEVEL_DEBUG, EZLOG_M_THUMBNAIL, kezLogDuration_Duration,
                                 "Retrieving thumbnail for '%s'\n", fullName.c_str());
    ezFile* file = GetCachedThumbnail(anInfo, false);
    if (file == nullptr && afUseDefault) {
        file = GetCachedThumbnail(anInfo, true);
    }
    Thumbnail_Log(EZLOGLEVEL_WARNING, "%s able to retrieve thumbnail for '%s'\n",
                  file != nullptr ? "Was" : "NOT", fullName.c_str());
    return file;
}

ezCString ezThumbnailProviderManager::GetThumbnailDLNAProfiles() {
    return "image/jpeg:" + ezDLNAField::TextOfProfile("JPEG_TN") + kezThumbnailDLNAFlags + "," +
           "image/png:" + ezDLNAField::TextOfProfile("PNG_TN") + kezThumbnailDLNAFlags;
}
