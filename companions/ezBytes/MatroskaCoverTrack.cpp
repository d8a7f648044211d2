#include "ezBytes/MatroskaCoverTrack.h"

#include "ezBytes/Limits.h"
#include "ezBytes/MatroskaBlocks.h"
#include "ezBytes/MatroskaTrackIds.h"
#include "ezBytes/PictureBlock.h"

#include "ezPlatform/text/Case.h"

#include <algorithm>
#include <initializer_list>
#include <string>
#include <string_view>

namespace {

using Kind = MatroskaTrackHead::Kind;

Kind KindOf(std::uint64_t aType) {
    return aType == kMatroska_TypeVideo   ? Kind::Video
           : aType == kMatroska_TypeSound ? Kind::Sound
                                          : Kind::Other;
}

/// A track that may be of one picture alone.
struct Still {
    std::uint64_t mTrack;
    bool mfBySignature; ///< its id says nothing of the codec: the picture has to
    bool mfMet = false;
};

bool IsOneOf(const ezCString& aId, std::initializer_list<std::string_view> aIds) {
    return std::any_of(aIds.begin(), aIds.end(),
                       [&aId](std::string_view aOne) { return ezIsEqualNoCase(aId.View(), aOne); });
}

/// The tracks of video; none where one of them is of moving pictures by its codec, and where there is no
/// sound.
std::vector<Still> StillsOf(const std::vector<MatroskaTrackHead>& aHeads) {
    std::vector<Still> stills;
    bool fSound = false;
    for (const MatroskaTrackHead& head : aHeads) {
        fSound = fSound || head.mKind == Kind::Sound;
        if (head.mKind != Kind::Video) {
            continue;
        }
        const bool fWrapped = IsOneOf(head.mCodecId, {"V_MS/VFW/FOURCC", "V_QUICKTIME"});
        if (!fWrapped && !IsMatroskaStill(head.mCodecId)) {
            return {};
        }
        stills.push_back({head.mNumber, fWrapped});
    }
    return fSound ? stills : std::vector<Still>();
}

bool IsPicture(const ByteReader& aFrame) {
    const std::string first = ReadPictureSignature(aFrame);
    return !first.empty() && !PictureMimeType(first, {}).IsEmpty();
}

} // namespace

bool IsMatroskaStill(const ezCString& aCodecId) {
    return IsOneOf(aCodecId, {"V_MJPEG", "V_PNG"});
}

bool ReadMatroskaTrackHeads(MatroskaSegment& aSegment, std::uint32_t& aBudget,
                            std::vector<MatroskaTrackHead>* aHeads) {
    EBMLElement element(aSegment.GetContent());
    if (!aSegment.Find(kMatroska_Tracks, 0, &element)) {
        return false;
    }
    EBMLWalk walk(element.mContent, aBudget);
    while (aHeads->size() < kMatroska_MaxTracks && walk.Find(kMatroska_TrackEntry, &element)) {
        MatroskaTrackHead head;
        EBMLWalk fields(element.mContent, aBudget);
        for (EBMLElement field(element.mContent); fields.Next(&field);) {
            if (field.mId == kMatroska_TrackNumber) {
                head.mNumber = ReadEBMLNumber(field.mContent);
            } else if (field.mId == kMatroska_TrackType) {
                head.mKind = KindOf(ReadEBMLNumber(field.mContent));
            } else if (field.mId == kMatroska_CodecId) {
                head.mCodecId = ReadEBMLText(field.mContent);
            }
        }
        aHeads->push_back(head);
    }
    return true;
}

std::optional<ByteReader> FindCoverTrack(const MatroskaSegment& aSegment, std::uint32_t& aBudget,
                                         const std::vector<MatroskaTrackHead>& aHeads) {
    std::vector<Still> stills = StillsOf(aHeads);
    if (stills.empty()) {
        return std::nullopt;
    }
    ByteReader picture = ByteReader(aSegment.GetContent()).Take(0);
    MatroskaBlocks blocks(aSegment.GetClusters(), aBudget);
    MatroskaBlock block(picture);
    for (std::uint32_t i = 0; i < kMatroska_MaxFirstBlocks && blocks.Next(&block); ++i) {
        const auto still = std::find_if(stills.begin(), stills.end(), [&block](const Still& aStill) {
            return aStill.mTrack == block.mTrack;
        });
        if (still == stills.end()) {
            continue;
        }
        const bool fPicture = IsPicture(block.mFrame);
        if (still->mfMet || block.mFrames > 1 || (still->mfBySignature && !fPicture)) {
            return std::nullopt;
        }
        still->mfMet = true;
        picture = fPicture && block.mfWhole && picture.GetLeft() == 0 ? block.mFrame : picture;
    }
    const bool fTold = std::all_of(stills.begin(), stills.end(),
                                   [](const Still& aStill) { return aStill.mfMet || !aStill.mfBySignature; });
    return fTold ? std::optional<ByteReader>(picture) : std::nullopt;
}
