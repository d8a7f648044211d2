#include "ezBytes/ChunkWalk.h"

#include <algorithm>

namespace {

bool IsName(BoxType aName) {
    for (unsigned shift = 0; shift < 32; shift += 8) {
        const std::uint32_t character = aName.GetCode() >> shift & 0xFF;
        if (character < ' ' || character > '~') {
            return false;
        }
    }
    return true;
}

} // namespace

std::uint64_t ChunkWalk::ReadSize(ByteReader& aReader) const {
    const std::uint64_t size =
        mLayout.mfLittle ? aReader.ReadLittle(mLayout.mSizeBytes) : aReader.ReadBig(mLayout.mSizeBytes);
    if (!mLayout.mfWholeSize) {
        return size;
    }
    aReader.Require(size == 0 || size >= GetHeadSize()); // 0: a writer that never came back to it
    return size != 0 && !aReader.HasFailed() ? size - GetHeadSize() : 0;
}

/// Whether a chunk may be called so: by printable characters, or by any GUID.
bool ChunkWalk::MayBeNamed(BoxType aName) const {
    return mLayout.mNameRest != 0 ? aName != BoxType() : IsName(aName);
}

/// Whether a chunk stands there, all of it.
bool ChunkWalk::IsChunkAt(ByteReader aReader) const {
    const bool fName = MayBeNamed(BoxType::Read(aReader));
    aReader.Skip(mLayout.mNameRest);
    const std::uint64_t size = ReadSize(aReader);
    return fName && !aReader.HasFailed() && size <= aReader.GetLeft();
}

/// Whether the byte before a place is the first of a chunk's name: of that alone all of a chunk stands there,
/// or a name, as sizes may lie.
bool ChunkWalk::IsStuffingForgotten(const ByteReader& anAfter) const {
    if (IsChunkAt(anAfter)) {
        return false;
    }
    const auto isName = [](ByteReader aReader) { return IsName(BoxType::Read(aReader)); };
    return IsChunkAt(mReader) || (isName(mReader) && !isName(anAfter));
}

void ChunkWalk::SkipStuffing() {
    const unsigned count = mStuffing;
    mStuffing = 0;
    if (count == 0 || mReader.GetLeft() <= count) {
        mReader.Skip(std::min<std::uint64_t>(count, mReader.GetLeft()));
        return;
    }
    ByteReader after = mReader;
    after.Skip(count);
    if (mLayout.mAlignment != 2 || !IsStuffingForgotten(after)) {
        mReader = after;
    }
}

SoundSize ChunkWalk::GetSoundSize(bool afSizeKnown) const {
    const bool fShort = mLayout.mSizeBytes == 4;
    const std::uint64_t stated =
        fShort ? SoundSize::Of32(static_cast<std::uint32_t>(mStatedSize)) : mStatedSize;
    return {stated, mContent.GetLeft(), afSizeKnown};
}

bool ChunkWalk::Next(BoxType* aName, ByteReader* aContent) {
    SkipStuffing();
    if (mBudget == 0 || mReader.GetLeft() < GetHeadSize()) {
        return false;
    }
    --mBudget;
    *aName = BoxType::Read(mReader);
    mReader.Skip(mLayout.mNameRest);
    mReader.Require(MayBeNamed(*aName));
    mStatedSize = ReadSize(mReader);
    if (mReader.HasFailed()) {
        return false;
    }
    mContent = mReader;
    ByteReader content = mReader;
    *aContent = content.Take(std::min(mStatedSize, content.GetLeft()));
    EndContentAfter(mStatedSize);
    return true;
}

void ChunkWalk::EndContentAfter(std::uint64_t aSize) {
    const std::uint64_t size = std::min(aSize, mContent.GetLeft());
    const std::uint64_t over = size % mLayout.mAlignment;
    mReader = mContent;
    mReader.Skip(size);
    mStuffing = over != 0 ? mLayout.mAlignment - static_cast<unsigned>(over) : 0;
}
