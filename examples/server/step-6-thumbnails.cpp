// Step 6: the thumbnail of a media item, built once and then taken from a cache:
// step-6-thumbnails CONFIG_FOLDER CACHE_FOLDER MEDIA OUT
#include "Parsers.h"
#include "Record.h"

#include "ez/Environment.h"
#include "ez/ThumbnailProvider.h"
#include "ezPlatform/base/StandardDescriptors.h"
#include "ezPlatform/dlna/DLNAField.h"
#include "ezPlatform/files/File.h"
#include "ezPlatform/files/FileCacheManager.h"
#include "ezPlatform/files/FileState.h"
#include "ezThumbnails/CoverThumbnailProvider.h"
#include "ezThumbnails/DefaultThumbnailProvider.h"
#include "ezThumbnails/PictureThumbnailGenerator.h"

#include <string>

namespace {

/// The cache knows an item by its identity alone, so it changes when the file does.
ezCString IdentityOf(const ezMediaInfo& anInfo) {
    return ezCString(std::string(anInfo.mFullPath.View()) + '\0') +
           ezFileState(anInfo.mFullPath).ToIdentity();
}

/// A small JPEG of a media item, or of its class; the caller's. Null when there is none.
std::unique_ptr<ezFile> GetThumbnail(ezThumbnailProviderManager& aManager, const ezMediaInfo& anInfo) {
    ThumbnailInfo wanted;
    wanted.mFilePath = ezPathName::MakeFilePath(anInfo.mFullPath);
    wanted.mMimeType = anInfo.GetCString(kezInfo_MimeType, "");
    wanted.mThumbnailID = kJPEGThumbnailID;
    wanted.mWidthMax = 160; // the box of the profile JPEG_TN
    wanted.mHeightMax = 160;
    wanted.mUniqueID = IdentityOf(anInfo);
    return std::unique_ptr<ezFile>(aManager.GetThumbnail(&wanted, true));
}

/// Writes all of a file to another; false when it cannot.
bool Copy(ezFile& aFrom, const char* aTo) {
    std::string bytes(static_cast<std::size_t>(aFrom.LengthAtOpen()), '\0'); // the cache bounds it
    const bool fRead = aFrom.Read(bytes.data(), bytes.size()) == static_cast<int>(bytes.size());
    ezFile out;
    return fRead && out.Create(aTo, true, ezFileAccessMode_ReadWrite) &&
           out.Write(bytes.data(), bytes.size()) == static_cast<int>(bytes.size()) && out.Close();
}

} // namespace

int main(int anArgCount, char** anArgs) {
    ezKeepStandardDescriptors(); // so that nothing that is opened later is taken for one of them
    if (anArgCount != 5) {
        std::fprintf(stderr, "usage: step-6-thumbnails CONFIG_FOLDER CACHE_FOLDER MEDIA OUT\n");
        return 2;
    }
    const ezEnvironment environment(anArgs[1]);
    ezMediaParserManager manager(environment.Get());
    AddParsers(manager);

    ezFileCacheManager cache(anArgs[2], std::uint64_t{16} << 20, 1000); // bytes, files
    ezThumbnailProviderManager thumbnails(&cache, new PictureThumbnailGenerator);
    ezThumbnailGenerator* generator = thumbnails.GetThumbnailGenerator(); // borrowed
    thumbnails.Add(new ezPictureThumbnailProvider(generator, "picture")); // a photo is its own picture
    thumbnails.Add(new CoverThumbnailProvider(generator));
    thumbnails.SetDefaultProvider(new DefaultThumbnailProvider(generator));

    const std::unique_ptr<ezMediaInfo> info = Identify(manager, anArgs[3]);
    const std::unique_ptr<ezFile> thumbnail = info != nullptr ? GetThumbnail(thumbnails, *info) : nullptr;
    if (thumbnail == nullptr || !Copy(*thumbnail, anArgs[4])) {
        std::fprintf(stderr, "%s: no thumbnail\n", anArgs[3]);
        return 1;
    }
    const ezCString field = ezDLNAField::TextOfProfile("JPEG_TN") + kezThumbnailDLNAFlags;
    std::printf("%s: http-get:*:image/jpeg:%s\n", anArgs[3], field.c_str());
    return 0;
}
