#include "ezThumbnails/detail/CoverFinders.h"
#include "ezThumbnails/detail/CoverStreamBytes.h"

#include "ezBytes/BoxWalk.h"

namespace {

/// The picture of a "data" box: its type, for which there are numbers, its language, and the picture.
Cover CoverOfData(ByteReader& aData) {
    const std::uint32_t type = aData.ReadBig32();
    aData.Skip(4);
    const char* const stated = type == 13 ? "image/jpeg" : type == 14 ? "image/png" : "";
    return CoverOfRest(aData, stated);
}

} // namespace

Cover FindMP4Cover(ezStream& aStream) {
    CoverStreamBytes bytes(aStream);
    ByteReader reader(bytes);
    ByteReader start = reader;
    start.Skip(4);
    if (BoxType::Read(start) != "ftyp") {
        return {};
    }
    std::uint32_t budget = kCover_MaxBoxes;
    constexpr BoxType kMeta = "meta";
    for (const BoxType type : {BoxType("moov"), BoxType("udta"), kMeta, BoxType("ilst"), BoxType("covr")}) {
        ByteReader content = reader;
        if (!BoxWalk(reader, budget).Find(type, &content)) {
            return {};
        }
        reader = content;
        if (type == kMeta) {
            SkipMetaVersion(reader);
        }
    }
    BoxWalk pictures(reader, budget);
    ByteReader data = reader;
    while (pictures.Find("data", &data)) {
        Cover cover = CoverOfData(data);
        if (cover.IsFound()) {
            return cover;
        }
    }
    return {};
}
