#include "ezThumbnails/detail/CoverStreamBytes.h"

#include "ezThumbnails/detail/CoverLimits.h"

#include "ezPlatform/streams/Stream.h"

CoverStreamBytes::CoverStreamBytes(ezStream& aStream)
    : BlockwiseBytes(kCover_BlockSize, kCover_MaxBlocks),
      mStream(aStream),
      mSize(aStream.IsOpened() ? aStream.GetSize().ToUInt64() : 0) {}

CoverStreamBytes::~CoverStreamBytes() = default;

std::size_t CoverStreamBytes::Fetch(std::uint64_t aPosition, unsigned char* aBlock, std::size_t aSize) {
    std::size_t length = aSize;
    if (mStream.Seek(aPosition) != ezStreamingStatus_NoError) {
        return 0;
    }
    const ezStreamingStatus status = mStream.Read(aBlock, &length, ezStreamReadFlag_Whole);
    const bool fRead = status == ezStreamingStatus_NoError || status == ezStreamingStatus_EOS;
    return fRead ? length : 0;
}
