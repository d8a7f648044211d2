#include "ezBytes/OggTags.h"

#include "ezBytes/FLACBlocks.h"

bool OggTags::Next(bool* afPicture, ByteReader* aBody) {
    if (mMark.mKind == OggKind::FLAC) {
        return NextBlock(afPicture, aBody);
    }
    if (mfLast) {
        return false;
    }
    mfLast = true;
    *afPicture = false;
    *aBody = ByteReader(mPacket);
    return aBody->Require(aBody->ReadText(mMark.mComments.size()).View() == mMark.mComments);
}

bool OggTags::NextBlock(bool* afPicture, ByteReader* aBody) {
    while (!mfLast && (!mfBegun || mPacket.Next())) {
        mfBegun = true;
        ByteReader packet(mPacket);
        FLACBlock block;
        if (!ReadFLACBlock(packet, &block, aBody)) {
            break;
        }
        mfLast = block.mfLast;
        *afPicture = block.mType == kFLACBlock_Picture;
        if (*afPicture || block.mType == kFLACBlock_VorbisComment) {
            return true;
        }
    }
    mfLast = true;
    return false;
}
