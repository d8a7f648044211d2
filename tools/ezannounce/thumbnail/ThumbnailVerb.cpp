#include "thumbnail/ThumbnailVerb.h"

#include "arguments/Arguments.h"
#include "host/Host.h"
#include "output/Console.h"
#include "output/PictureWords.h"
#include "output/SafeText.h"
#include "output/SameFile.h"
#include "output/WholeFile.h"
#include "thumbnails/CacheFolder.h"
#include "thumbnails/Thumbnails.h"

#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>

namespace {

/// False, with an error line, where the thumbnail cannot be asked for.
bool MakeRequest(const std::string& aPath, const ThumbnailOptions& anOptions, Host& aHost, Console& aConsole,
                 ThumbnailInfo& anInfo) {
    Announcement announcement;
    std::string reason;
    if (aHost.Announce(aPath, announcement, reason) && !announcement.mfRecognised) {
        reason = "not recognised, so that there is nothing to make a thumbnail of";
    }
    if (!reason.empty()) {
        aConsole.Error(aPath, reason);
        return false;
    }
    std::vector<std::string> originals;
    anInfo =
        ThumbnailRequest(aPath, announcement.mInfo->GetCString(kezInfo_MimeType, ""),
                         announcement.mInfo->GetCString(kezInfo_DLNA, ""), anOptions, "", nullptr, originals);
    originals.push_back(aPath);
    const bool fOriginal = std::any_of(originals.begin(), originals.end(), [&](const std::string& aFile) {
        return IsSameFile(aFile, *anOptions.mOutput);
    });
    if (fOriginal) {
        aConsole.Error(*anOptions.mOutput, "is what the thumbnail is made of, and not replaced by it");
    }
    return !fOriginal;
}

} // namespace

int RunThumbnail(const Arguments& anArguments, Host& aHost, Console& aConsole) {
    const ThumbnailOptions& options = anArguments.mThumbnail;
    const std::string& path = anArguments.mOperands.front();
    const std::string cacheFolder = FindCacheFolder(options);
    if (cacheFolder.empty()) {
        aConsole.Error("thumbnail", kNoCacheFolder);
        return kExitWrongUsage;
    }
    ThumbnailInfo info;
    if (!MakeRequest(path, options, aHost, aConsole, info)) {
        return kExitSomeFailed;
    }
    const Thumbnail thumbnail = Thumbnails(cacheFolder).Get(info, options.mfDefault);
    const std::optional<PictureFacts> facts = ReadPictureFacts(thumbnail.mBytes);
    if (!facts) {
        aConsole.Error(path, thumbnail.mReason);
        return kExitSomeFailed;
    }
    std::string reason;
    if (!WriteWholeFile(*options.mOutput, thumbnail.mBytes, reason)) {
        aConsole.Error(*options.mOutput, reason);
        return kExitSomeFailed;
    }
    aConsole.Print(ForTerminal(*options.mOutput) + ": " + InWords(*facts, thumbnail.mBytes.size()) + ", " +
                   ForTerminal(thumbnail.mOrigin) + "\n");
    return kExitSuccess;
}
