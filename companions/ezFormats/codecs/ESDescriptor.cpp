#include "ezFormats/codecs/ESDescriptor.h"

#include <algorithm>

namespace {

constexpr unsigned kTagStream = 3;  ///< ES_DescrTag (ISO/IEC 14496-1, 7.2.2.1)
constexpr unsigned kTagDecoder = 4; ///< DecoderConfigDescrTag
constexpr unsigned kTagConfig = 5;  ///< DecSpecificInfoTag

/// A length of up to four bytes, seven bits each (8.3.3).
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

/// The fields of ES_Descriptor before what it holds (7.2.6.5).
void SkipStreamHead(ByteReader& aReader) {
    aReader.Skip(2); // ES_ID
    const unsigned flags = aReader.ReadByte();
    aReader.Skip((flags & 0x80U) != 0 ? 2 : 0);                  // dependsOn_ES_ID
    aReader.Skip((flags & 0x40U) != 0 ? aReader.ReadByte() : 0); // URLstring
    aReader.Skip((flags & 0x20U) != 0 ? 2 : 0);                  // OCR_ES_Id
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
    aReader.Skip(4); // streamType, upStream, bufferSizeDB
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
