#include "ezThumbnails/detail/CoverFinders.h"
#include "ezThumbnails/detail/CoverStreamBytes.h"

#include "ezBytes/LeadingTag.h"
#include "ezBytes/WAVWalk.h"

#include <algorithm>
#include <initializer_list>

namespace {

/// The cover of the tags in the chunks that a walk comes to: the first that has one.
template <typename Walk>
Cover CoverOfChunks(Walk& aWalk, ByteReader aContent) {
    BoxType name;
    while (aWalk.Next(&name, &aContent)) {
        const bool fTag = name == "ID3 " || name == "id3 ";
        Cover cover = fTag ? CoverOfID3(aContent) : Cover();
        if (cover.IsFound()) {
            return cover;
        }
    }
    return {};
}

/// The same of a file of the IFF family.
Cover CoverOfForm(ezStream& aStream, const ChunkLayout& aLayout, BoxType aForm,
                  std::initializer_list<BoxType> aKinds) {
    CoverStreamBytes bytes(aStream);
    ByteReader reader(bytes);
    const bool fForm = BoxType::Read(reader) == aForm;
    reader.Skip(aLayout.mSizeBytes); // the size of all
    const BoxType kind = BoxType::Read(reader);
    if (!fForm || std::find(aKinds.begin(), aKinds.end(), kind) == aKinds.end()) {
        return {};
    }
    std::uint32_t budget = kCover_MaxChunks;
    ChunkWalk walk(reader, aLayout, budget);
    return CoverOfChunks(walk, reader);
}

} // namespace

Cover FindWAVCover(ezStream& aStream) {
    CoverStreamBytes bytes(aStream);
    ByteReader reader(bytes);
    reader.Skip(EndOfLeadingTags(bytes, 0));
    const WAVHead head = ReadWAVHead(reader);
    if (head.mForm != "WAVE") {
        return {};
    }
    std::uint32_t budget = kCover_MaxChunks;
    WAVWalk walk(reader, head, bytes.GetSize().has_value(), budget);
    return CoverOfChunks(walk, reader);
}

Cover FindAIFFCover(ezStream& aStream) {
    return CoverOfForm(aStream, kChunks_IFF, "FORM", {"AIFF", "AIFC"});
}

Cover FindDSDIFFCover(ezStream& aStream) {
    return CoverOfForm(aStream, kChunks_IFF64, "FRM8", {"DSD "});
}

Cover FindDSFCover(ezStream& aStream) {
    constexpr std::uint64_t kHeadSize = 28;
    CoverStreamBytes bytes(aStream);
    ByteReader reader(bytes);
    ByteReader tag = reader;
    reader.Require(BoxType::Read(reader) == "DSD ");
    reader.Require(reader.ReadLittle(8) == kHeadSize);
    reader.Skip(8); // size of the file
    tag.Skip(reader.ReadLittle(8));
    tag.Require(!reader.HasFailed() && tag.GetPosition() >= kHeadSize);
    return CoverOfID3(tag);
}
