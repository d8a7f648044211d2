// The door: the headers of MPEG-4 video, as a container of films or a stream holds them.

#include "fuzz/support/CodecDoor.h"

#include "ezFormats/codecs/MPEG4Visual.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    CodecDoor_Enter(MPEG4Visual_Read, aData, aSize, {{"MPEG4"}, (1U << 13) - 1});
    return 0;
}
