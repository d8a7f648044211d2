#include "ezBytes/LeadingTag.h"

#include "ezBytes/ByteReader.h"
#include "ezBytes/Limits.h"

namespace {

constexpr std::uint32_t kAPEHeaderSize = 32;

ByteReader ReaderAt(ByteSource& aBytes, std::uint64_t aPosition) {
    ByteReader reader(aBytes);
    reader.Skip(aPosition);
    return reader;
}

/// Bytes of an APE tag, its header included, that stands before the sound; 0 where there is none.
std::uint64_t SizeOfAPE(ByteReader aReader) {
    constexpr std::uint32_t kIsHeader = 0x20000000;
    const bool fTag = aReader.ReadText(8) == "APETAGEX";
    aReader.Skip(4); // version
    const std::uint64_t size = aReader.ReadLittle32();
    aReader.Skip(4); // how many items
    const bool fHeader = (aReader.ReadLittle32() & kIsHeader) != 0;
    return fTag && fHeader && !aReader.HasFailed() ? kAPEHeaderSize + size : 0;
}

} // namespace

LeadingTag ReadLeadingTag(ByteSource& aBytes, std::uint64_t aPosition) {
    LeadingTag tag;
    ByteReader reader = ReaderAt(aBytes, aPosition);
    tag.mfID3 = ReadID3Tag(reader, &tag.mID3);
    if (tag.mfID3) {
        tag.mHeaderSize = static_cast<std::uint32_t>(reader.GetPosition() - aPosition);
        tag.mSize = tag.mHeaderSize + tag.mID3.GetRest();
        return tag;
    }
    tag.mSize = SizeOfAPE(ReaderAt(aBytes, aPosition));
    tag.mHeaderSize = tag.mSize != 0 ? kAPEHeaderSize : 0;
    return tag;
}

std::uint64_t EndOfLeadingTags(ByteSource& aBytes, std::uint64_t aPosition) {
    std::uint64_t end = aPosition;
    for (std::uint32_t count = 0; count < kLeadingTag_MaxCount && end < aBytes.GetEnd(); ++count) {
        const LeadingTag tag = ReadLeadingTag(aBytes, end);
        if (tag.mSize == 0) {
            return end;
        }
        if (tag.mSize >= aBytes.GetEnd() - end) {
            return end + tag.mHeaderSize;
        }
        end += tag.mSize;
    }
    return end;
}
