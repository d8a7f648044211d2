#include "ezBytes/FLACBlocks.h"

bool ReadFLACBlock(ByteReader& aReader, FLACBlock* aBlock, ByteReader* aBody) {
    constexpr unsigned kLast = 0x80;
    constexpr unsigned kForbidden = 127;
    const unsigned head = aReader.ReadByte();
    aBlock->mType = head & ~kLast;
    aBlock->mfLast = (head & kLast) != 0;
    *aBody = aReader.Take(aReader.ReadBig(3));
    return !aReader.HasFailed() && aBlock->mType != kForbidden;
}
