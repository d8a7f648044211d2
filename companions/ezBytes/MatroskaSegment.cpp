#include "ezBytes/MatroskaSegment.h"

#include "ezBytes/Limits.h"

#include "ezPlatform/text/Case.h"

#include <algorithm>
#include <array>

namespace {

/// @name Elements of a SeekHead (RFC 9559, 5.1.1)
/// @{
constexpr EBMLId kSeek = 0x4DBB;
constexpr EBMLId kSeekId = 0x53AB;
constexpr EBMLId kSeekPosition = 0x53AC;
/// @}

constexpr std::array<const char*, 2> kDocTypes = {"matroska", "webm"};

bool IsPartToFind(EBMLId anId) {
    return anId == kMatroska_Info || anId == kMatroska_Tracks || anId == kMatroska_Cues ||
           anId == kMatroska_Attachments || anId == kMatroska_Tags;
}

} // namespace

bool MatroskaSegment_MayHold(EBMLId anId) {
    return anId != kEBML_Head && anId != kMatroska_Segment;
}

bool MatroskaCluster_MayHold(EBMLId anId) {
    return MatroskaSegment_MayHold(anId) && !IsPartToFind(anId) && anId != kMatroska_SeekHead &&
           anId != kMatroska_Cluster && anId != kMatroska_Chapters;
}

bool ReadMatroskaHead(ByteReader& aReader, ezCString* aDocType) {
    std::uint32_t budget = kMatroska_MaxHeadElements;
    EBMLWalk file(aReader, budget);
    EBMLElement head(aReader);
    if (!file.Next(&head) || head.mId != kEBML_Head || head.mfUnknownSize || head.mfCut) {
        return false;
    }
    EBMLWalk walk(head.mContent, budget);
    EBMLElement element(aReader);
    if (!walk.Find(kEBML_DocType, &element)) {
        return false;
    }
    const ezCString stated = ReadEBMLText(element.mContent);
    aReader.Skip(head.mContent.GetEnd() - aReader.GetPosition());
    const auto* const known = std::find_if(kDocTypes.begin(), kDocTypes.end(), [&stated](const char* aType) {
        return ezIsEqualNoCase(stated.View(), aType);
    });
    *aDocType = known != kDocTypes.end() ? ezCString(*known) : ezCString();
    return known != kDocTypes.end();
}

MatroskaSegment::MatroskaSegment(ByteSource& aBytes, std::uint32_t& aBudget)
    : mBytes(aBytes), mBudget(aBudget), mContent(aBytes), mClusters(aBytes) {}

bool MatroskaSegment::Open() {
    ByteReader reader(mBytes);
    if (!ReadMatroskaHead(reader, &mDocType)) {
        return false;
    }
    EBMLWalk file(reader, mBudget);
    EBMLElement segment(reader);
    if (!file.Find(kMatroska_Segment, &segment)) {
        return false;
    }
    // A writer that was stopped may have left 0 where others leave the size open.
    const bool fOpen = segment.mContent.GetLeft() == 0;
    mfUnknownSize = segment.mfUnknownSize || fOpen;
    mContent = segment.mContent;
    mStatedEnd = mfUnknownSize ? 0 : mContent.GetPosition() + segment.mStatedSize; // of 56 bits
    if (fOpen) {
        mContent = ByteReader(mBytes);
        mContent.Skip(segment.mContent.GetPosition());
    }
    ReadFront();
    return true;
}

void MatroskaSegment::ReadFront() {
    EBMLWalk walk(mContent, mBudget, MatroskaSegment_MayHold);
    EBMLElement element(mContent);
    mClusters = mContent;
    while (walk.Next(&element)) {
        if (element.mId == kMatroska_Cluster) {
            mfClusters = true;
            mClusters.Skip(element.mStart - mClusters.GetPosition());
            return;
        }
        if (element.mId == kMatroska_SeekHead) {
            TakeSeekHead(element);
        } else {
            AddPart(element.mId, element.mStart, true);
        }
    }
    mClusters.Skip(walk.GetPosition() - mClusters.GetPosition());
}

void MatroskaSegment::AddPart(EBMLId anId, std::uint64_t aStart, bool afRead) {
    const auto fSame = [=](const Part& aPart) { return aPart.mId == anId && aPart.mStart == aStart; };
    if (!IsPartToFind(anId) && anId != kMatroska_SeekHead) {
        return;
    }
    const auto part = std::find_if(mParts.begin(), mParts.end(), fSame);
    if (part != mParts.end()) {
        part->mfRead = part->mfRead || afRead;
        return;
    }
    if (mParts.size() == kMatroska_MaxParts) {
        return;
    }
    // What was met goes before what is only named.
    const auto place =
        afRead ? std::find_if(mParts.begin(), mParts.end(), [](const Part& aPart) { return !aPart.mfRead; })
               : mParts.end();
    mParts.insert(place, Part{anId, aStart, afRead});
}

void MatroskaSegment::TakeSeekHead(const EBMLElement& aSeekHead) {
    AddPart(kMatroska_SeekHead, aSeekHead.mStart, true);
    EBMLWalk entries(aSeekHead.mContent, mBudget);
    EBMLElement entry(aSeekHead.mContent);
    while (entries.Find(kSeek, &entry)) {
        EBMLWalk fields(entry.mContent, mBudget);
        EBMLElement field(entry.mContent);
        EBMLId id = 0;
        std::uint64_t position = UINT64_MAX;
        while (fields.Next(&field)) {
            if (field.mId == kSeekId) {
                id = static_cast<EBMLId>(ReadEBMLNumber(field.mContent));
            } else if (field.mId == kSeekPosition) {
                position = ReadEBMLNumber(field.mContent, UINT64_MAX);
            }
        }
        if (position < mContent.GetLeft()) {
            AddPart(id, mContent.GetPosition() + position, false);
        }
    }
}

/// Those are read when a part is asked for that was not found yet: most files have one alone.
bool MatroskaSegment::ReadNextSeekHead() {
    if (mSeekHeadsRead == kMatroska_MaxSeekHeads) {
        return false;
    }
    const auto next = std::find_if(mParts.begin(), mParts.end(), [](const Part& aPart) {
        return aPart.mId == kMatroska_SeekHead && !aPart.mfRead;
    });
    if (next == mParts.end()) {
        return false;
    }
    ++mSeekHeadsRead;
    next->mfRead = true; // or is not one: in either case it is done with
    EBMLElement element(mContent);
    if (ReadPart(*next, &element)) {
        TakeSeekHead(element);
    }
    return true;
}

bool MatroskaSegment::ReadPart(const Part& aPart, EBMLElement* anElement) {
    const bool fReached = mBytes.GetSize().has_value() || aPart.mStart < kMatroska_StreamReach;
    ByteReader reader = mContent;
    reader.Skip(aPart.mStart - reader.GetPosition());
    EBMLWalk walk(reader, mBudget);
    return fReached && walk.Next(anElement) && anElement->mId == aPart.mId &&
           anElement->mStart == aPart.mStart;
}

bool MatroskaSegment::Find(EBMLId anId, std::size_t anIndex, EBMLElement* anElement) {
    std::size_t met = 0;
    std::size_t looked = 0;
    do {
        for (; looked < mParts.size(); ++looked) {
            Part& part = mParts[looked];
            if (part.mId != anId) {
                continue;
            }
            const bool fAsked = met == anIndex;
            if ((fAsked || !part.mfRead) && !ReadPart(part, anElement)) {
                part.mId = 0; // no part: it is not read again
                continue;
            }
            part.mfRead = true;
            ++met;
            if (fAsked) {
                return true;
            }
        }
    } while (ReadNextSeekHead());
    return false;
}
