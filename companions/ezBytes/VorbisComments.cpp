#include "ezBytes/VorbisComments.h"

#include "ezBytes/Limits.h"

VorbisComments::VorbisComments(ByteReader aReader) : mReader(aReader) {
    mReader.Skip(mReader.ReadLittle32()); // who wrote it
    mLeft = mReader.ReadLittle32();
}

bool VorbisComments::Next(ezCString* aKey, ByteReader* aValue) {
    // Each takes four bytes at least, so an absurd number of them ends with the block.
    for (; mLeft != 0; --mLeft) {
        ByteReader comment = mReader.Take(mReader.ReadLittle32());
        if (mReader.HasFailed()) {
            mLeft = 0;
            return false;
        }
        std::string key;
        unsigned char byte = 0;
        while (key.size() <= kVorbisComment_MaxKey && comment.GetLeft() != 0 &&
               (byte = comment.ReadByte()) != '=') {
            key.push_back(static_cast<char>(byte));
        }
        if (byte == '=' && !comment.HasFailed()) {
            --mLeft;
            *aKey = ezCString(std::string_view(key));
            *aValue = comment;
            return true;
        }
    }
    return false;
}
