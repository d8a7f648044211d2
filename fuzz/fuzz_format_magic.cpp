// The door: how media begin, whatever their name.

#include "fuzz/support/FormatDoor.h"

#include "ezFormats/detail/FormatMagic.h"
#include "ezFormats/detail/Formats.h"
#include "ezFormats/detail/Limits.h"
#include "ezFormats/detail/MediaBytes.h"

namespace {

std::string Found(FormatDoorStream& aStream) {
    const std::uint64_t bytesBefore = aStream.GetBytes();
    const HeapBound bound(kFormatDoor_Heap);
    MediaBytes bytes(aStream, kMagic_MaxReads, kMagic_MaxBytes);
    const char* const type = FormatMagic_Find(bytes);
    FuzzCheck(aStream.GetBytes() - bytesBefore <= kMagic_MaxBytes);
    const auto& formats = AllFormats::kDescriptions;
    FuzzCheck(type == nullptr ||
              std::any_of(formats.begin(), formats.end(),
                          [type](const FormatDescription* aFormat) { return aFormat->mType == type; }));
    return type != nullptr ? type : "none";
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    const FuzzHouse house;
    const FormatDoorInput input(aData, aSize);
    const FormatDoorDelivery& delivery = input.mDelivery;
    const std::string_view file = input.mFile;
    FormatDoorStream stream(file, delivery);
    const std::string type = Found(stream);
    FormatDoorStream again(file, delivery);
    FuzzCheck(Found(again) == type);
    if (delivery.IsSound()) {
        FuzzCheck(Found(stream) == type); // as it is found after another parser
    }
    return 0;
}
