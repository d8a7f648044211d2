#include "ezThumbnails/detail/CoverFinders.h"

namespace {

/// The boxes of one that holds boxes, one after the other.
class BoxWalk {
public:
    /// aBudget, borrowed, counts down the boxes of all walks.
    BoxWalk(const CoverReader& aReader, std::uint32_t& aBudget) : mReader(aReader), mBudget(aBudget) {}

    /// The next box and a reader of its content; false behind the last one, and where one is damaged.
    bool Next(ezCString* aType, CoverReader* aContent) {
        if (mBudget == 0 || mReader.GetLeft() == 0) {
            return false;
        }
        --mBudget;
        std::uint64_t headSize = 8;
        std::uint64_t size = mReader.ReadBig32();
        *aType = mReader.ReadText(4);
        if (size == 1) {
            headSize = 16;
            size = mReader.ReadBig(8);
        } else if (size == 0) { // up to the end
            size = headSize + mReader.GetLeft();
        }
        mReader.Require(size >= headSize);
        *aContent = mReader.Take(mReader.HasFailed() ? 0 : size - headSize);
        return !mReader.HasFailed();
    }

    /// The first of a type.
    bool Find(const char* aType, CoverReader* aContent) {
        ezCString type;
        while (Next(&type, aContent)) {
            if (type == aType) {
                return true;
            }
        }
        return false;
    }

private:
    CoverReader mReader;
    std::uint32_t& mBudget;
};

/// QuickTime's "meta" holds boxes at once, that of the standard after its version and flags: in the former
/// the type of the first one stands where the latter has its size.
void SkipMetaVersion(CoverReader& aMeta) {
    CoverReader ahead = aMeta;
    ahead.Skip(4);
    if (ahead.ReadText(4) != "hdlr") {
        aMeta.Skip(4);
    }
}

/// The picture of a "data" box: its type, for which there are numbers, its language, and the picture.
Cover CoverOfData(CoverReader& aData) {
    const std::uint32_t type = aData.ReadBig32();
    aData.Skip(4);
    const char* const stated = type == 13 ? "image/jpeg" : type == 14 ? "image/png" : "";
    return CoverOfRest(aData, stated);
}

} // namespace

Cover FindMP4Cover(ezStream& aStream) {
    CoverStreamBytes bytes(aStream);
    CoverReader reader(bytes);
    CoverReader start = reader;
    start.Skip(4);
    if (start.ReadText(4) != "ftyp") {
        return {};
    }
    std::uint32_t budget = kCover_MaxBoxes;
    for (const char* type : {"moov", "udta", "meta", "ilst", "covr"}) {
        CoverReader content = reader;
        if (!BoxWalk(reader, budget).Find(type, &content)) {
            return {};
        }
        reader = content;
        if (ezCString(type) == "meta") {
            SkipMetaVersion(reader);
        }
    }
    BoxWalk pictures(reader, budget);
    CoverReader data = reader;
    while (pictures.Find("data", &data)) {
        Cover cover = CoverOfData(data);
        if (cover.IsFound()) {
            return cover;
        }
    }
    return {};
}
