#include "ezThumbnails/detail/CoverFinders.h"
#include "ezThumbnails/detail/CoverStreamBytes.h"

#include "ezBytes/ID3Tag.h"

namespace {

/// A description, which ends in one zero or, in the two encodings of 16 bits, in two at an even place.
void SkipDescription(ByteReader& aBody, unsigned anEncoding) {
    if (anEncoding != 1 && anEncoding != 2) {
        aBody.ReadZeroTerminated(kCover_MaxText);
        return;
    }
    std::uint32_t count = 0;
    while (aBody.ReadBig(2) != 0 && aBody.Require(count < kCover_MaxText)) {
        count += 2;
    }
}

void OfferPicture(ByteReader& aBody, unsigned aVersion, CoverChoice& aChoice) {
    const unsigned encoding = aBody.ReadByte();
    aBody.Require(encoding <= 3);
    const ezCString mimeType = aVersion == 2 ? aBody.ReadText(3) : aBody.ReadZeroTerminated(kCover_MaxText);
    const std::uint32_t type = aBody.ReadByte();
    SkipDescription(aBody, encoding);
    // A link's text is not the picture.
    if (!aBody.HasFailed() && mimeType != "-->") {
        aChoice.Offer(type, CoverOfRest(aBody, mimeType));
    }
}

} // namespace

Cover FindID3Cover(ezStream& aStream) {
    CoverStreamBytes bytes(aStream);
    ByteReader file(bytes);
    ID3Tag tag;
    CoverChoice choice;
    if (!ReadID3Tag(file, &tag)) {
        return choice.Get();
    }
    ID3Frames frames(file, tag);
    ezCString id;
    ByteReader body = file;
    while (!choice.IsFinal() && frames.Next(&id, &body)) {
        if (id == (tag.mVersion == 2 ? "PIC" : "APIC")) {
            OfferPicture(body, tag.mVersion, choice);
        }
    }
    return choice.Get();
}
