#include "ezBytes/MatroskaAttachments.h"

#include "ezBytes/Limits.h"
#include "ezBytes/PictureBlock.h"

#include "ezPlatform/text/Case.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>

namespace {

// Elements of Attachments (RFC 9559, 5.1.6.1)
constexpr EBMLId kAttachedFile = 0x61A7;
constexpr EBMLId kFileName = 0x466E;
constexpr EBMLId kFileMediaType = 0x4660;
constexpr EBMLId kFileData = 0x465C;

/// What covers are called, the one that counts first.
constexpr std::string_view kCoverNames[] = {"cover", "small_cover", "cover_land", "small_cover_land"};
constexpr std::ptrdiff_t kNoCover = std::size(kCoverNames);

/// The place of a name among those; kNoCover for another one.
std::ptrdiff_t RankOf(const ezCString& aName) {
    const std::string_view stem = aName.View().substr(0, aName.View().rfind('.'));
    return std::find_if(std::begin(kCoverNames), std::end(kCoverNames),
                        [stem](std::string_view aCover) { return ezIsEqualNoCase(aCover, stem); }) -
           std::begin(kCoverNames);
}

bool IsPicture(const MatroskaAttachment& aFile) {
    const std::string first = ReadPictureSignature(aFile.mData);
    return !first.empty() && !PictureMimeType(first, aFile.mMimeType).IsEmpty();
}

} // namespace

bool MatroskaAttachments::Next(MatroskaAttachment* aFile) {
    EBMLElement element(aFile->mData);
    if (mCount == kMatroskaAttachments_MaxCount || !mWalk.Find(kAttachedFile, &element)) {
        return false;
    }
    ++mCount;
    *aFile = MatroskaAttachment(ByteReader(element.mContent).Take(0));
    bool fData = false;
    EBMLWalk walk(element.mContent, mBudget);
    // What follows when all is told stands after the data, and would cost a read.
    for (EBMLElement part(element.mContent);
         (!fData || aFile->mName.IsEmpty() || aFile->mMimeType.IsEmpty()) && walk.Next(&part);) {
        if (part.mId == kFileName) {
            aFile->mName = ReadEBMLText(part.mContent);
        } else if (part.mId == kFileMediaType) {
            aFile->mMimeType = ReadEBMLText(part.mContent);
        } else if (part.mId == kFileData) {
            fData = true;
            aFile->mData = part.mfCut || part.mfUnknownSize ? aFile->mData : part.mContent;
        }
    }
    return true;
}

bool FindCoverAttachment(MatroskaSegment& aSegment, std::uint32_t& aBudget, MatroskaAttachment* aCover) {
    EBMLElement element(aCover->mData);
    if (!aSegment.Find(kMatroska_Attachments, 0, &element)) {
        return false;
    }
    std::ptrdiff_t best = kNoCover;
    MatroskaAttachments files(element.mContent, aBudget);
    for (MatroskaAttachment file(element.mContent); best != 0 && files.Next(&file);) {
        const std::ptrdiff_t rank = RankOf(file.mName);
        if (rank < best && IsPicture(file)) {
            best = rank;
            *aCover = file;
        }
    }
    return best != kNoCover;
}
