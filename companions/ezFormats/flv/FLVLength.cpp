#include "ezFormats/flv/FLVLength.h"

#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/detail/MediaNumbers.h"
#include "ezFormats/flv/FLVLimits.h"
#include "ezFormats/flv/FLVStart.h"

#include "ezPlatform/base/Checked.h"

#include <algorithm>

namespace {

constexpr std::uint32_t kMicro = 1'000'000;
constexpr std::uint64_t kMicrosInMilli = 1000;

/// Bytes that tell of a tag what is asked: its header, and the start of its content.
constexpr std::size_t kLookSize = kFLV_TagHeaderSize + 8;

/// Whether the header of a tag may be there, by what is cheap to see.
bool MayBeTag(const MediaBytes& aBytes, std::uint64_t aPosition) {
    const unsigned char* bytes = nullptr;
    return aBytes.BorrowBuffered(aPosition, &bytes) >= kFLV_TagHeaderSize && bytes[0] != 0 &&
           (bytes[8] | bytes[9] | bytes[10]) == 0;
}

/// Whether another file stands after the bytes that a file had, when its metadata were written.
bool IsAnotherAfter(MediaBytes& aBytes, std::uint64_t aSize) {
    ByteReader reader(aBytes);
    reader.Skip(aSize);
    return aSize != 0 && aSize < aBytes.GetEnd() && FLVHeader_IsAt(reader);
}

} // namespace

void FLVEnd::Times::Take(std::uint32_t aTime) {
    if (!mLast || aTime > *mLast) {
        mBefore = mLast;
        mLast = aTime;
    } else if (aTime < *mLast) {
        mBefore = std::max(mBefore.value_or(aTime), aTime);
    }
}

/// The last frame lasts as long as the one before it, unless there was a pause.
std::uint64_t FLVEnd::Times::GetEnd(std::uint64_t aFrameTime) const {
    const std::uint64_t step = mBefore ? (*mLast - *mBefore) * kMicrosInMilli : 0;
    const bool fFrame = step != 0 && step <= kFLV_MaxFrameTime;
    return *mLast * kMicrosInMilli + (fFrame ? step : aFrameTime);
}

FLVEnd::FLVEnd(MediaBytes& aBytes, std::uint64_t aTags)
    : mBytes(aBytes), mTags(aTags), mEnd(aBytes.GetEnd()) {
    std::uint64_t end = mEnd;
    for (const std::size_t window : kFLV_EndWindows) {
        const std::uint64_t start = std::max(mTags, end - std::min<std::uint64_t>(end, window));
        if (start >= end || !mBytes.LoadWindow(start, static_cast<std::size_t>(end - start)) ||
            WalkFrom(start, end) || (end == mEnd && WalkFromLast())) {
            return;
        }
        end = start;
    }
}

bool FLVEnd::ReadTag(std::uint64_t aPosition, FLVTag* aTag) const {
    ByteReader reader(mBytes);
    reader.Skip(aPosition);
    return FLVTag_Read(reader, aTag);
}

/// What a tag that ends there says of its size.
std::uint32_t FLVEnd::ReadTrailer(std::uint64_t anEnd) const {
    ByteReader reader(mBytes);
    reader.Skip(anEnd);
    return reader.ReadBig32();
}

/// A tag that states its size after it, too, or which another one follows: the size after a tag is not always
/// right, and the header of one stands here and there by chance.
bool FLVEnd::IsTagAt(std::uint64_t aPosition) const {
    FLVTag tag((ByteReader(mBytes)));
    if (!MayBeTag(mBytes, aPosition) || !ReadTag(aPosition, &tag) || tag.GetNext() > mEnd) {
        return false;
    }
    const std::uint64_t trailer = tag.GetNext() - kFLV_TagTrailerSize;
    if (!mBytes.HasBuffered(trailer, kFLV_TagTrailerSize + kFLV_TagHeaderSize)) {
        return false;
    }
    const std::uint32_t size = ReadTrailer(trailer);
    FLVTag next = tag;
    return size == kFLV_TagHeaderSize + tag.mSize || (tag.mSize != 0 && ReadTag(tag.GetNext(), &next));
}

/// Walks from the first tag that begins within a range, which is buffered; false where none does, and where
/// no frame follows it.
bool FLVEnd::WalkFrom(std::uint64_t aStart, std::uint64_t anEnd) {
    for (std::uint64_t place = aStart; place < anEnd; ++place) {
        if (IsTagAt(place)) {
            Walk(place);
            return Has(FLVKind::Video) || Has(FLVKind::Sound);
        }
    }
    return false;
}

/// The last tag is longer than the window: its size stands at the end.
bool FLVEnd::WalkFromLast() {
    const std::uint64_t size = std::uint64_t{ReadTrailer(mEnd - kFLV_TagTrailerSize)} + kFLV_TagTrailerSize;
    FLVTag tag((ByteReader(mBytes)));
    if (size > mEnd - mTags) {
        return false;
    }
    const std::uint64_t last = mEnd - size;
    const std::uint64_t start = std::max(mTags, last - std::min<std::uint64_t>(last, kFLV_LastTagWindow));
    const std::uint64_t end = std::min(mEnd, last + kLookSize);
    if (!mBytes.LoadWindow(start, static_cast<std::size_t>(end - start)) || !ReadTag(last, &tag) ||
        tag.GetNext() != mEnd) {
        return false;
    }
    if (!WalkFrom(start, last)) {
        Walk(last);
    }
    return true;
}

/// A tag that is not all there counts as well: the recording goes on.
void FLVEnd::Walk(std::uint64_t aPosition) {
    FLVTag tag((ByteReader(mBytes)));
    FLVMedia media(tag.mContent);
    while (aPosition < mEnd && mBytes.HasBuffered(aPosition, kLookSize) && ReadTag(aPosition, &tag)) {
        if (FLVMedia_Read(tag, &media) && media.mPacket == FLVPacket::Frame) {
            (tag.mKind == FLVKind::Video ? mVideo : mSound).Take(tag.mTime);
        }
        aPosition = tag.GetNext();
    }
}

FLVEnd::Span FLVEnd::GetSpan(std::uint32_t aFirst, std::uint64_t aFrameTime) const {
    const std::uint64_t video = mVideo.mLast ? mVideo.GetEnd(aFrameTime) : 0;
    const std::uint64_t sound = mSound.mLast ? mSound.GetEnd(0) : 0;
    const std::uint64_t first = aFirst * kMicrosInMilli;
    const std::uint64_t start = std::max(mVideo.mLast.value_or(0), mSound.mLast.value_or(0)) * kMicrosInMilli;
    const std::uint64_t end = std::max(video, sound);
    return start < first || end <= first ? Span()
                                         : Span{start - first, MediaNumber_Microseconds(end - first, kMicro)};
}

FLVLength MeasureFLV(MediaBytes& aBytes, const FLVStart& aStart, const FLVEnd* anEnd,
                     std::uint64_t aFrameTime) {
    const FLVMetadata& metadata = aStart.GetMetadata();
    const std::uint64_t stated = metadata.GetMicroseconds();
    if (anEnd == nullptr) {
        return {stated, "header"};
    }
    const std::uint64_t size = aBytes.GetEnd();
    if (stated != 0 && IsAnotherAfter(aBytes, metadata.GetFileSize())) {
        const std::uint64_t all = MediaNumber_Scale(size, stated, metadata.GetFileSize());
        return {MediaNumber_Microseconds(all, kMicro), "estimate: files in a row"};
    }
    const FLVEnd::Span tags =
        aStart.GetFirstTime() ? anEnd->GetSpan(*aStart.GetFirstTime(), aFrameTime) : FLVEnd::Span();
    if (tags.mEnd == 0) {
        const std::uint64_t rate = MediaNumber_Scale(size, std::uint64_t{8} * kMicro, stated);
        return {rate <= kFLV_MaxBitRate ? stated : 0, "header"};
    }
    const bool fLongEnough =
        stated >= tags.mStart + kMicrosInMilli && ezSaturating_Add64(stated, kFLV_MaxShortage) >= tags.mEnd;
    const bool fAgree = fLongEnough && stated <= ezSaturating_Add64(tags.mEnd, kFLV_MaxExcess);
    return fAgree ? FLVLength{stated, "header"} : FLVLength{tags.mEnd, "last frame"};
}
