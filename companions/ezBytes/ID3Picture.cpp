#include "ezBytes/ID3Picture.h"

namespace {

/// A description, which ends in one zero or, in the two encodings of 16 bits, in two at an even place.
void SkipDescription(ByteReader& aBody, unsigned anEncoding, std::uint32_t aMaxText) {
    if (anEncoding != 1 && anEncoding != 2) {
        aBody.ReadZeroTerminated(aMaxText);
        return;
    }
    std::uint32_t count = 0;
    while (aBody.ReadBig(2) != 0 && aBody.Require(count < aMaxText)) {
        count += 2;
    }
}

} // namespace

bool IsID3Picture(std::string_view aFrame, unsigned aVersion) {
    return aFrame == (aVersion == 2 ? "PIC" : "APIC");
}

bool ReadID3Picture(ByteReader& aBody, unsigned aVersion, std::uint32_t aMaxText, ID3Picture* aPicture) {
    const unsigned encoding = aBody.ReadByte();
    aBody.Require(encoding <= 3);
    aPicture->mMimeType = aVersion == 2 ? aBody.ReadText(3) : aBody.ReadZeroTerminated(aMaxText);
    aPicture->mType = aBody.ReadByte();
    SkipDescription(aBody, encoding, aMaxText);
    return !aBody.HasFailed() && aPicture->mMimeType != "-->";
}
