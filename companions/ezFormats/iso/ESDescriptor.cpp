#include "ezFormats/iso/ESDescriptor.h"

#include <algorithm>

namespace {

constexpr unsigned kTagStream = 3;
constexpr unsigned kTagDecoder = 4;
constexpr unsigned kTagConfig = 5;

/// A length of up to four bytes, seven bits each.
std::uint32_t ReadLength(ByteReader& aReader) {
    std::uint32_t length = 0;
    unsigned byte = 0x80;
    for (unsigned i = 0; i < 4 && (byte & 0x80U) != 0; ++i) {
        byte = aReader.ReadByte();
        length = length << 7 | (byte & 0x7FU);
    }
    aReader.Require((byte & 0x80U) == 0);
    return length;
}

/// Goes into the first descriptor of a tag, from where the reader stands on.
bool Enter(ByteReader& aReader, unsigned aTag) {
    while (aReader.GetLeft() != 0) {
        const unsigned tag = aReader.ReadByte();
        const ByteReader content = aReader.Take(ReadLength(aReader));
        if (tag == aTag) {
            aReader = content;
            break;
        }
        aReader.Require(aReader.GetLeft() != 0);
    }
    return !aReader.HasFailed();
}

void SkipStreamHead(ByteReader& aReader) {
    aReader.Skip(2); // its number
    const unsigned flags = aReader.ReadByte();
    aReader.Skip((flags & 0x80U) != 0 ? 2 : 0);                  // the stream that it depends on
    aReader.Skip((flags & 0x40U) != 0 ? aReader.ReadByte() : 0); // a URL
    aReader.Skip((flags & 0x20U) != 0 ? 2 : 0);                  // the stream of its clock
}

} // namespace

bool ReadESDescriptor(ByteReader aBox, ESDescriptor& aDescriptor) {
    aBox.Skip(4); // version and flags
    if (!Enter(aBox, kTagStream)) {
        return false;
    }
    SkipStreamHead(aBox);
    return ReadDecoderDescriptor(aBox, aDescriptor);
}

bool ReadDecoderDescriptor(ByteReader aReader, ESDescriptor& aDescriptor) {
    if (!Enter(aReader, kTagDecoder)) {
        return false;
    }
    aDescriptor.mObjectType = aReader.ReadByte();
    aReader.Skip(4); // kind of stream, size of its buffer
    aDescriptor.mMaxBitRate = aReader.ReadBig32();
    aDescriptor.mBitRate = aReader.ReadBig32();
    if (aReader.HasFailed()) {
        return false;
    }
    if (Enter(aReader, kTagConfig)) {
        const auto size =
            static_cast<std::size_t>(std::min<std::uint64_t>(aReader.GetLeft(), aDescriptor.mConfig.size()));
        aDescriptor.mConfigSize = aReader.Read(aDescriptor.mConfig.data(), size) ? size : 0;
    }
    return true;
}
