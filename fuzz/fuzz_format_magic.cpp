// The door: how media begin, whatever their name.

#include "fuzz/support/FormatDoor.h"

#include "ezFormats/detail/FormatMagic.h"
#include "ezFormats/detail/Limits.h"
#include "ezFormats/detail/MediaBytes.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize);

namespace {

std::string Found(FormatDoorStream& aStream) {
    const std::uint64_t bytesBefore = aStream.GetBytes();
    const HeapBound bound(kFormatDoor_Heap);
    MediaBytes bytes(aStream, kMagic_MaxReads, kMagic_MaxBytes);
    const char* const type = FormatMagic_Find(bytes);
    FuzzCheck(aStream.GetBytes() - bytesBefore <= kMagic_MaxBytes);
    FuzzCheck(type == nullptr || FormatDoor_IsListed(type, "png,jpg,mp4,mp3"));
    return type != nullptr ? type : "none";
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    const FuzzHouse house;
    FormatDoorDelivery delivery;
    std::size_t size = aSize;
    if (size >= kFormatDoor_DeliverySize) {
        size -= kFormatDoor_DeliverySize;
        delivery = FormatDoor_Decode(aData + size);
    }
    // A block of its own, so that a read after its end is seen.
    const std::unique_ptr<char[]> block(new char[size]);
    std::copy(aData, aData + size, block.get());
    const std::string_view file(block.get(), size);
    FormatDoorStream stream(file, delivery);
    const std::string type = Found(stream);
    FormatDoorStream again(file, delivery);
    FuzzCheck(Found(again) == type);
    if (delivery.IsSound()) {
        FuzzCheck(Found(stream) == type); // as it is found after another parser
    }
    return 0;
}
