#include "ezThumbnails/detail/CoverFinders.h"
#include "ezThumbnails/detail/CoverStreamBytes.h"

#include "ezBytes/ASFAttributes.h"
#include "ezBytes/ASFObjects.h"

#include "ezPlatform/text/Case.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

namespace {

void OfferPictures(const ByteReader& aObject, ASFAttributes::Form aForm, CoverChoice& aChoice) {
    ASFAttributes attributes(aObject, aForm);
    std::string_view name;
    ByteReader value = aObject;
    while (!aChoice.IsFinal() && attributes.Next(&name, &value)) {
        ASFPicture picture;
        if (ezIsEqualNoCase(name, "WM/Picture") && ReadASFPicture(value, kCover_MaxText, &picture) &&
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
    // The first of each kind, in the order in which they count, wherever they stand.
    constexpr std::array<ASFGuid, 3> kLists = {kASF_ExtendedContent, kASF_Metadata, kASF_MetadataLibrary};
    std::array<std::optional<ByteReader>, kLists.size()> lists;
    ASFGuid kind;
    for (ByteReader object = objects; walk.Next(&kind, &object);) {
        const auto* const list = std::find(kLists.begin(), kLists.end(), kind);
        if (list != kLists.end() && !lists[static_cast<std::size_t>(list - kLists.begin())]) {
            lists[static_cast<std::size_t>(list - kLists.begin())] = object;
        }
    }
    CoverChoice choice;
    for (std::size_t i = 0; i < lists.size() && !choice.IsFinal(); ++i) {
        if (lists[i]) {
            OfferPictures(*lists[i], i == 0 ? ASFAttributes::Form::Content : ASFAttributes::Form::Library,
                          choice);
        }
    }
    return choice.Get();
}
