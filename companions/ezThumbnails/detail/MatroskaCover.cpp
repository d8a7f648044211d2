#include "ezThumbnails/detail/CoverFinders.h"
#include "ezThumbnails/detail/CoverStreamBytes.h"

#include "ezBytes/MatroskaAttachments.h"
#include "ezBytes/MatroskaCoverTrack.h"
#include "ezBytes/MatroskaSegment.h"

#include <optional>
#include <vector>

Cover FindMatroskaCover(ezStream& aStream) {
    CoverStreamBytes bytes(aStream);
    std::uint32_t budget = kCover_MaxElements;
    MatroskaSegment segment(bytes, budget);
    MatroskaAttachment cover{ByteReader(bytes)};
    if (!segment.Open()) {
        return {};
    }
    if (FindCoverAttachment(segment, budget, &cover)) {
        return CoverOfRest(cover.mData, cover.mMimeType);
    }
    std::vector<MatroskaTrackHead> heads;
    ReadMatroskaTrackHeads(segment, budget, &heads);
    const std::optional<ByteReader> picture = FindCoverTrack(segment, budget, heads);
    return picture ? CoverOfRest(*picture, {}) : Cover();
}
