#include "ezBytes/APEItems.h"

#include "ezBytes/AudioTails.h"
#include "ezBytes/Limits.h"
#include "ezBytes/PictureBlock.h"

#include "ezPlatform/text/Case.h"

namespace {

constexpr std::string_view kPictureKey = "Cover Art (";

struct PictureKey {
    std::string_view mRest;
    std::uint32_t mType;
};
constexpr PictureKey kPictureKeys[] = {{"Front)", kPictureType_FrontCover},
                                       {"Icon)", kPictureType_FileIcon},
                                       {"Other Icon)", kPictureType_OtherFileIcon}};

bool IsKnownPicture(const ByteReader& aReader) {
    return !PictureMimeType(ReadPictureSignature(aReader), "").IsEmpty();
}

} // namespace

APEItems::APEItems(ByteSource& aBytes, const AudioTails& aTails) : mReader(aBytes) {
    mReader.Skip(aTails.mAPEItems);
    mReader = mReader.Take(aTails.mAPEEnd - aTails.mAPEItems);
}

bool APEItems::Next(ezCString* aKey, Kind* aKind, ByteReader* aValue) {
    if (mReader.GetLeft() == 0) {
        return false;
    }
    const std::uint32_t size = mReader.ReadLittle32();
    const std::uint32_t flags = mReader.ReadLittle32();
    *aKey = mReader.ReadZeroTerminated(kAPEItem_MaxKey);
    *aKind = static_cast<Kind>(flags >> 1 & 3);
    *aValue = mReader.Take(size);
    return !mReader.HasFailed();
}

bool IsAPEPicture(std::string_view aKey, std::uint32_t* aType) {
    if (!ezStartsWithNoCase(aKey, kPictureKey)) {
        return false;
    }
    *aType = 0;
    for (const PictureKey& key : kPictureKeys) {
        if (ezIsEqualNoCase(aKey.substr(kPictureKey.size()), key.mRest)) {
            *aType = key.mType;
        }
    }
    return true;
}

bool SkipToAPEPicture(ByteReader& aValue, std::uint32_t aMaxText) {
    ByteReader named = aValue;
    named.ReadZeroTerminated(aMaxText);
    if (!IsKnownPicture(named)) {
        return IsKnownPicture(aValue);
    }
    aValue = named;
    return true;
}
