#include "ezThumbnails/detail/CoverFinders.h"
#include "ezThumbnails/detail/CoverStreamBytes.h"

#include "ezBytes/ASFAttributes.h"
#include "ezBytes/ASFObjects.h"

#include "ezPlatform/text/Case.h"

#include <optional>

namespace {

void OfferPictures(const ByteReader& aObject, ASFAttributes::Form aForm, CoverChoice& aChoice) {
    ASFAttributes attributes(aObject, aForm);
    ezCString name;
    ByteReader value = aObject;
    while (!aChoice.IsFinal() && attributes.Next(&name, &value)) {
        ASFPicture picture;
        if (ezIsEqualNoCase(name.View(), "WM/Picture") && ReadASFPicture(value, kCover_MaxText, &picture) &&
            picture.mMimeType != "-->") {
            aChoice.Offer(picture.mType, CoverOfRest(value, picture.mMimeType));
        }
    }
}

} // namespace

Cover FindASFCover(ezStream& aStream) {
    CoverStreamBytes bytes(aStream);
    ByteReader reader(bytes);
    ByteReader objects = reader;
    if (!ReadASFHeader(reader, &objects)) {
        return {};
    }
    std::uint32_t budget = kCover_MaxObjects;
    ASFHeaderWalk walk(objects, budget);
    CoverChoice choice;
    std::optional<ByteReader> library; // the other list comes first, wherever they stand
    ASFGuid kind;
    for (ByteReader object = objects; !choice.IsFinal() && walk.Next(&kind, &object);) {
        if (kind == kASF_ExtendedContent) {
            OfferPictures(object, ASFAttributes::Form::Content, choice);
        } else if (kind == kASF_MetadataLibrary && !library) {
            library = object;
        }
    }
    if (library) {
        OfferPictures(*library, ASFAttributes::Form::Library, choice);
    }
    return choice.Get();
}
