#include "ezBytes/MatroskaBlocks.h"

#include "ezBytes/MatroskaSegment.h"

#include "ezPlatform/base/Checked.h"

#include <algorithm>

namespace {

/// @name Elements of a cluster (RFC 9559, 5.1.3)
/// @{
constexpr EBMLId kTimestamp = 0xE7;
constexpr EBMLId kSimpleBlock = 0xA3;
constexpr EBMLId kBlockGroup = 0xA0;
constexpr EBMLId kBlock = 0xA1;
constexpr EBMLId kBlockDuration = 0x9B;
/// @}

/// How the frames of a block are told apart (10.3).
enum class Lacing { None, Xiph, Fixed, EBML };

/// The size of the first frame as Xiph's lacing states it: bytes of 255 go on.
std::uint64_t ReadXiphSize(ByteReader& aReader) {
    std::uint64_t size = 0;
    unsigned byte = 0xFF;
    while (byte == 0xFF && !aReader.HasFailed()) {
        byte = aReader.ReadByte();
        size += byte;
    }
    return size;
}

/// Leaves the reader at the first frame, and says how long that is.
std::uint64_t ReadLacing(ByteReader& aReader, Lacing aLacing, unsigned aFrames) {
    std::uint64_t first = 0;
    for (unsigned i = 0; i + 1 < aFrames && aLacing != Lacing::Fixed; ++i) {
        EBMLVariable size;
        if (aLacing == Lacing::Xiph) {
            size.mValue = ReadXiphSize(aReader);
        } else {
            ReadEBMLVariable(aReader, &size);
        }
        first = i == 0 ? size.mValue : first;
    }
    return aLacing == Lacing::Fixed ? aReader.GetLeft() / aFrames : first;
}

bool ReadBlock(ByteReader aContent, std::uint64_t aClusterTime, MatroskaBlock* aBlock) {
    constexpr std::uint64_t kBefore = 0x8000; // a time before that of the cluster has a sign
    EBMLVariable track;
    ReadEBMLVariable(aContent, &track);
    const std::uint64_t time = aContent.ReadBig(2);
    const auto lacing = static_cast<Lacing>(aContent.ReadByte() >> 1U & 3U);
    aBlock->mTrack = track.mValue;
    aBlock->mTime = time < kBefore ? ezSaturating_Add64(aClusterTime, time)
                                   : aClusterTime - std::min(aClusterTime, 2 * kBefore - time);
    aBlock->mFrames = lacing == Lacing::None ? 1 : aContent.ReadByte() + 1U;
    const bool fRead = !aContent.HasFailed();
    aBlock->mBytes = aContent.GetLeft();
    if (lacing != Lacing::None && aBlock->mFrames > 1) {
        const std::uint64_t size = ReadLacing(aContent, lacing, aBlock->mFrames);
        aBlock->mBytes = aContent.GetLeft();
        aContent = ByteReader(aContent).Take(std::min(size, aContent.GetLeft()));
    }
    aBlock->mFrame = aContent;
    return fRead;
}

} // namespace

MatroskaBlocks::MatroskaBlocks(const ByteReader& aClusters, std::uint32_t& aBudget)
    : mBudget(aBudget), mClusters(aClusters), mSegment(aClusters, aBudget, MatroskaSegment_MayHold) {}

bool MatroskaBlocks::Next(MatroskaBlock* aBlock) {
    while (mCluster || NextCluster()) {
        EBMLElement element(aBlock->mFrame);
        while (mCluster->Next(&element)) {
            if (Take(element, aBlock)) {
                return true;
            }
        }
        if (mfUnknownSize) {
            mSegment.ContinueAfter(*mCluster);
        }
        mCluster.reset();
    }
    return false;
}

std::uint64_t MatroskaBlocks::GetPosition() const {
    return mCluster ? mCluster->GetPosition() : mSegment.GetPosition();
}

bool MatroskaBlocks::NextCluster() {
    EBMLElement element(mClusters);
    if (!mSegment.Find(kMatroska_Cluster, &element)) {
        return false;
    }
    mfUnknownSize = element.mfUnknownSize;
    mCluster.emplace(element.mContent, mBudget, mfUnknownSize ? MatroskaCluster_MayHold : nullptr);
    return true;
}

bool MatroskaBlocks::Take(const EBMLElement& anElement, MatroskaBlock* aBlock) {
    if (anElement.mId == kTimestamp) {
        mTime = ReadEBMLNumber(anElement.mContent);
        return false;
    }
    aBlock->mDuration = 0;
    aBlock->mfWhole = !anElement.mfCut;
    if (anElement.mId == kSimpleBlock) {
        return ReadBlock(anElement.mContent, mTime, aBlock);
    }
    if (anElement.mId != kBlockGroup) {
        return false;
    }
    bool fBlock = false;
    EBMLWalk group(anElement.mContent, mBudget);
    for (EBMLElement element(anElement.mContent); group.Next(&element);) {
        if (element.mId == kBlock && !fBlock) {
            fBlock = ReadBlock(element.mContent, mTime, aBlock);
        } else if (element.mId == kBlockDuration) {
            aBlock->mDuration = ReadEBMLNumber(element.mContent);
        }
    }
    return fBlock;
}
