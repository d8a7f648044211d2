#include "ezThumbnails/detail/CoverFinders.h"
#include "ezThumbnails/detail/CoverStreamBytes.h"

#include "ezBytes/MatroskaAttachments.h"
#include "ezBytes/MatroskaSegment.h"

Cover FindMatroskaCover(ezStream& aStream) {
    CoverStreamBytes bytes(aStream);
    std::uint32_t budget = kCover_MaxElements;
    MatroskaSegment segment(bytes, budget);
    MatroskaAttachment cover{ByteReader(bytes)};
    if (!segment.Open() || !FindCoverAttachment(segment, budget, &cover)) {
        return {};
    }
    return CoverOfRest(cover.mData, cover.mMimeType);
}
