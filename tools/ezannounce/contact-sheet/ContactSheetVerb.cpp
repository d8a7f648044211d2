#include "contact-sheet/ContactSheetVerb.h"

#include "arguments/Arguments.h"
#include "contact-sheet/ContactSheet.h"
#include "contact-sheet/Limits.h"
#include "host/Host.h"
#include "host/Walk.h"
#include "output/Console.h"
#include "output/PictureWords.h"
#include "output/SafeText.h"
#include "output/SameFile.h"
#include "output/WholeFile.h"
#include "thumbnails/CacheFolder.h"
#include "thumbnails/Thumbnails.h"

#include "ezPlatform/media/MediaInfo.h"

#include <filesystem>
#include <system_error>

namespace {

/// Gathers the thumbnails of the media that a walk comes upon. The cells of the sheet bound what is held.
class Gatherer : public WalkVisitor {
public:
    Gatherer(const ThumbnailOptions& anOptions, const std::string& aCacheFolder, Host& aHost,
             Console& aConsole)
        : mOptions(anOptions),
          mThumbnails(aCacheFolder, *anOptions.mOutput),
          mHost(aHost),
          mConsole(aConsole) {
        mThumbnails.SetListing(&mListing);
    }

    void File(const std::string& aPath, const std::string& aFolder) override {
        mConsole.Progress(aFolder);
        if (mfEnded) {
            return;
        }
        if (IsSameFile(aPath, *mOptions.mOutput)) {
            EndUnlessReplaceable(aPath);
            return;
        }
        if (mCells.size() == kContactSheet_MaxCells) {
            ++mLeftOut;
            return;
        }
        Announcement announcement;
        std::string reason;
        if (!mHost.Announce(aPath, announcement, reason)) {
            Problem(aPath, reason);
        } else if (announcement.mfRecognised) {
            Add(aPath, *announcement.mInfo);
        }
    }

    void Problem(const std::string& aPath, const std::string& aReason) override {
        mConsole.Error(aPath, aReason);
        mfFailed = true;
    }

    const std::vector<std::string>& GetCells() const { return mCells; }
    std::size_t GetLeftOut() const { return mLeftOut; }
    bool HasFailed() const { return mfFailed; }
    /// There is nothing to be made: the cache cannot be used, or the sheet would replace a file of the
    /// folder.
    bool HasEnded() const { return mfEnded; }

    std::string InWords() const {
        return std::to_string(mCells.size()) + " media, " + std::to_string(mGeneric) +
               " with the generic picture of their class, " + std::to_string(mFromCache) + " from the cache";
    }

private:
    /// An older sheet, an empty file and what is not media may go.
    void EndUnlessReplaceable(const std::string& aPath) {
        std::error_code ignored;
        Announcement announcement;
        std::string reason;
        if (std::filesystem::file_size(aPath, ignored) == 0 || IsContactSheet(aPath) ||
            (mHost.Announce(aPath, announcement, reason) && !announcement.mfRecognised)) {
            return;
        }
        Problem(aPath, reason.empty() ? "is media of the folder, and not replaced by its sheet" : reason);
        mfEnded = true;
    }

    void Add(const std::string& aPath, const ezMediaInfo& anInfo) {
        std::vector<std::string> ignored;
        const ThumbnailInfo request = ThumbnailRequest(aPath, anInfo.GetCString(kezInfo_MimeType, ""),
                                                       anInfo.GetCString(kezInfo_DLNA, ""), mOptions,
                                                       *mOptions.mOutput, &mListing, ignored);
        Thumbnail thumbnail = mThumbnails.Get(request, true);
        if (thumbnail.mBytes.empty() || thumbnail.mBytes.size() > kContactSheet_MaxThumbnailBytes) {
            mfEnded = thumbnail.mfCacheFails; // then it is the same with all others
            Problem(aPath, thumbnail.mReason);
            return;
        }
        mCells.push_back(std::move(thumbnail.mBytes));
        mGeneric += thumbnail.mfGeneric ? 1 : 0;
        mFromCache += thumbnail.mfFromCache ? 1 : 0;
    }

    const ThumbnailOptions& mOptions;
    SidecarListing mListing; // a folder is listed once for the sheet, not for each cell
    Thumbnails mThumbnails;
    Host& mHost;
    Console& mConsole;
    std::vector<std::string> mCells; ///< JPEGs
    std::size_t mGeneric = 0;
    std::size_t mFromCache = 0;
    std::size_t mLeftOut = 0;
    bool mfFailed = false;
    bool mfEnded = false;
};

bool WriteSheet(const Gatherer& aGatherer, const std::string& anOutput, Console& aConsole) {
    const std::string sheet = MakeContactSheet(aGatherer.GetCells());
    const std::optional<PictureFacts> facts = ReadPictureFacts(sheet);
    std::string reason = "the page cannot be made";
    if (!facts || !WriteWholeFile(anOutput, sheet, reason)) {
        aConsole.Error(anOutput, reason);
        return false;
    }
    aConsole.Print(ForTerminal(anOutput) + ": " + InWords(*facts, sheet.size()) + ", " + aGatherer.InWords() +
                   "\n");
    return true;
}

} // namespace

int RunContactSheet(const Arguments& anArguments, Host& aHost, Console& aConsole) {
    const ThumbnailOptions& options = anArguments.mThumbnail;
    const std::string& folder = anArguments.mOperands.front();
    const std::string cacheFolder = FindCacheFolder(options);
    if (cacheFolder.empty()) {
        aConsole.Error("contact-sheet", kNoCacheFolder);
        return kExitWrongUsage;
    }
    std::error_code ignored; // the walk names what is not there
    if (std::filesystem::exists(folder, ignored) && !std::filesystem::is_directory(folder, ignored)) {
        aConsole.Error(folder, "not a folder");
        return kExitSomeFailed;
    }
    Gatherer gatherer(options, cacheFolder, aHost, aConsole);
    Walk(folder, gatherer);
    if (gatherer.HasEnded()) {
        return kExitSomeFailed;
    }
    if (gatherer.GetCells().empty()) {
        if (!gatherer.HasFailed()) {
            aConsole.Error(folder, "no media in it");
        }
        return kExitSomeFailed;
    }
    if (!WriteSheet(gatherer, *options.mOutput, aConsole)) {
        return kExitSomeFailed;
    }
    if (gatherer.GetLeftOut() != 0) {
        aConsole.Error(folder, "a sheet holds " + std::to_string(kContactSheet_MaxCells) +
                                   " media; files left out: " + std::to_string(gatherer.GetLeftOut()));
    }
    return gatherer.HasFailed() || gatherer.GetLeftOut() != 0 ? kExitSomeFailed : kExitSuccess;
}
