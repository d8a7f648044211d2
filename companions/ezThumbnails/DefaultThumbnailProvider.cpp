#include "ezThumbnails/DefaultThumbnailProvider.h"

#include "ezThumbnails/detail/DefaultPictures.h"

#include "ezPlatform/base/Memory.h"
#include "ezPlatform/streams/MemoryStream.h"

#include <cstring>

namespace {

constexpr char kMimeType[] = "image/png";

struct MediaClass {
    const char* mName;
    const DefaultPicture* mPicture;
};
constexpr MediaClass kMediaClasses[] = {
    {"audio", &kDefaultPicture_Audio}, {"video", &kDefaultPicture_Video}, {"image", &kDefaultPicture_Image}};

const DefaultPicture& PictureOf(const ezCString& aMimeType) {
    const std::string_view name = aMimeType.View().substr(0, aMimeType.View().find('/'));
    for (const MediaClass& mediaClass : kMediaClasses) {
        if (ezIsEqualNoCase(name, mediaClass.mName)) {
            return *mediaClass.mPicture;
        }
    }
    return kDefaultPicture_Other;
}

/// A picture that is built in.
class DefaultPictureSource : public ezThumbnailSource {
public:
    explicit DefaultPictureSource(const DefaultPicture& aPicture)
        : ezThumbnailSource(kMimeType), mPicture(aPicture) {}

    bool Exists() const override { return true; }
    ezStream* GetStream() const override {
        void* const block = ezMalloc(mPicture.mSize);
        if (block == nullptr) {
            return nullptr;
        }
        std::memcpy(block, mPicture.mBytes, mPicture.mSize);
        return new ezMemoryStream(block, mPicture.mSize, kMimeType);
    }

private:
    const DefaultPicture& mPicture;
};

} // namespace

DefaultThumbnailProvider::~DefaultThumbnailProvider() = default;

uint32 DefaultThumbnailProvider::GetPossibleThumbnailFor(const ThumbnailInfo* /*anInfo*/) {
    return mThumbnailGenerator != nullptr ? mThumbnailGenerator->CanConvert(kMimeType) : kNoThumbnailID;
}

bool DefaultThumbnailProvider::BuildThumbnail(const ThumbnailInfo* anInfo, ezFile* aFile) {
    if (mThumbnailGenerator == nullptr || anInfo == nullptr || aFile == nullptr) {
        return false;
    }
    const DefaultPictureSource source(PictureOf(anInfo->mMimeType));
    return mThumbnailGenerator->BuildThumbnail(anInfo, &source, aFile);
}
