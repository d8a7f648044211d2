#include "ezThumbnails/detail/CoverFinders.h"
#include "ezThumbnails/detail/CoverStreamBytes.h"

#include "ezBytes/WAVWalk.h"

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

} // namespace

Cover FindWAVCover(ezStream& aStream) {
    CoverStreamBytes bytes(aStream);
    ByteReader reader(bytes);
    const WAVHead head = ReadWAVHead(reader);
    if (head.mForm != "WAVE") {
        return {};
    }
    std::uint32_t budget = kCover_MaxChunks;
    WAVWalk walk(reader, head, bytes.GetSize().has_value(), budget);
    return CoverOfChunks(walk, reader);
}

Cover FindAIFFCover(ezStream& aStream) {
    CoverStreamBytes bytes(aStream);
    ByteReader reader(bytes);
    const bool fForm = BoxType::Read(reader) == "FORM";
    reader.Skip(4); // the size of all
    const BoxType kind = BoxType::Read(reader);
    if (!fForm || (kind != "AIFF" && kind != "AIFC")) {
        return {};
    }
    std::uint32_t budget = kCover_MaxChunks;
    ChunkWalk walk(reader, kChunks_IFF, budget);
    return CoverOfChunks(walk, reader);
}
