#include "ezThumbnails/detail/CoverStreamBytes.h"

#include "ezPlatform/base/KnownSize.h"
#include "ezPlatform/streams/Stream.h"

CoverStreamBytes::CoverStreamBytes(ezStream& aStream)
    : BudgetedBytes(aStream.IsOpened() ? ezKnownSize(aStream.GetSize()).value_or(0) : 0,
                    ReadBudget(kCover_MaxBlocks), mBlock, sizeof(mBlock)),
      mStream(aStream) {}

CoverStreamBytes::~CoverStreamBytes() = default;

void CoverStreamBytes::Bring(std::uint64_t aPosition) {
    const std::uint64_t start = aPosition - aPosition % kCover_BlockSize;
    // A block that ends before its position is that of a file that was cut since it was opened.
    if (start != GetBlockStart() || GetBlockLength() == 0) {
        Fetch(start, kCover_BlockSize);
    }
}

std::size_t CoverStreamBytes::ReadAt(std::uint64_t aPosition, unsigned char* aPlace, std::size_t aSize,
                                     bool* afFailed) {
    std::size_t length = aSize;
    ezStreamingStatus status = mStream.Seek(aPosition);
    if (status == ezStreamingStatus_NoError) {
        status = mStream.Read(aPlace, &length, ezStreamReadFlag_Whole);
    }
    if (status != ezStreamingStatus_NoError && status != ezStreamingStatus_EOS) {
        *afFailed = true;
        return 0;
    }
    return length;
}
