#include "ezThumbnails/detail/GatheredCoverSource.h"

#include "ezBytes/InflatedBytes.h"

#include "ezPlatform/base/Owned.h"
#include "ezPlatform/files/File.h"
#include "ezPlatform/streams/MemoryStream.h"
#include "ezPlatform/text/Base64.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace {

/// A block of ezMalloc and what of it is used.
struct Block {
    explicit Block(std::size_t aCapacity) : mBytes(static_cast<char*>(ezMalloc(aCapacity))) {}
    ezFreed<char> mBytes;
    std::size_t mSize = 0;
};

bool Append(ezFile& aFile, const BytePiece& aPiece, Block& aBlock) {
    const auto offset = static_cast<ezFileOffset>(aPiece.mOffset);
    const auto size = static_cast<std::size_t>(aPiece.mSize);
    if (aFile.Seek(offset, ezFileSeekMode_Begin) != offset ||
        aFile.Read(aBlock.mBytes.get() + aBlock.mSize, size) != static_cast<int>(size)) {
        return false;
    }
    aBlock.mSize += size;
    return true;
}

/// Removes the zero after every 0xFF (ID3v2.4, 6.1).
void Synchronise(Block& aBlock) {
    char* const bytes = aBlock.mBytes.get();
    std::size_t count = 0;
    for (std::size_t i = 0; i < aBlock.mSize; ++i) {
        bytes[count++] = bytes[i];
        if (bytes[i] == '\xFF' && i + 1 < aBlock.mSize && bytes[i + 1] == '\0') {
            ++i;
        }
    }
    aBlock.mSize = count;
}

/// Puts what the text of aBlock, which ends in a zero, decodes to in its place, less anOffset bytes.
bool Decode(Block& aBlock, std::size_t anOffset) {
    const std::size_t capacity = aBlock.mSize / 4 * 3 + 3;
    Block decoded(capacity);
    if (decoded.mBytes == nullptr) {
        return false;
    }
    decoded.mSize = ezBase64_Decode(aBlock.mBytes.get(), decoded.mBytes.get(), capacity);
    if (anOffset > decoded.mSize) {
        return false;
    }
    decoded.mSize -= anOffset;
    std::memmove(decoded.mBytes.get(), decoded.mBytes.get() + anOffset, decoded.mSize);
    aBlock.mBytes = std::move(decoded.mBytes);
    aBlock.mSize = decoded.mSize;
    return true;
}

/// Puts what the zlib data of aBlock inflate to in its place, less what stands before the picture.
bool Inflate(Block& aBlock, const Cover& aCover) {
    BlockBytes stored(reinterpret_cast<const unsigned char*>(aBlock.mBytes.get()), aBlock.mSize);
    ByteReader compressed(stored);
    InflatedBytes inflated;
    if (inflated.Inflate(compressed, std::min(aCover.mMaxInflated, kCover_MaxInflatedSize)) !=
            InflatedBytes::Result::Whole ||
        aCover.mEncodedOffset > inflated.GetEnd()) {
        return false;
    }
    aBlock.mBytes.reset(); // there is one of them less at a time
    const auto size = static_cast<std::size_t>(inflated.GetEnd()) - aCover.mEncodedOffset;
    Block picture(size + 1);
    if (picture.mBytes == nullptr) {
        return false;
    }
    ByteReader reader(inflated);
    reader.Skip(aCover.mEncodedOffset);
    aBlock.mBytes = std::move(picture.mBytes);
    aBlock.mSize = size;
    return reader.Read(reinterpret_cast<unsigned char*>(aBlock.mBytes.get()), size);
}

/// Makes the picture of what is stored.
bool Unpack(Block& aBlock, const Cover& aCover) {
    if (aCover.mfUnsynchronised) {
        Synchronise(aBlock);
    }
    if (aCover.mfDeflated) {
        return Inflate(aBlock, aCover);
    }
    return !aCover.mfBase64 || Decode(aBlock, aCover.mEncodedOffset);
}

} // namespace

GatheredCoverSource::GatheredCoverSource(const ezPathName& aFilePath, const Cover& aCover)
    : ezThumbnailSource(aCover.mMimeType), mFilePath(aFilePath), mCover(aCover) {}

GatheredCoverSource::~GatheredCoverSource() = default;

bool GatheredCoverSource::Exists() const {
    return mFilePath.FileExists();
}

ezStream* GatheredCoverSource::GetStream() const {
    std::uint64_t size = 0;
    for (const BytePiece& piece : mCover.mPieces) {
        size += piece.mSize;
    }
    ezFile file(mFilePath.GetFullPath(), ezFileOpenMode_Read);
    if (size > kCover_MaxHeldSize || !file.Open()) {
        return nullptr;
    }
    Block block(static_cast<std::size_t>(size) + 1);
    if (block.mBytes == nullptr) {
        return nullptr;
    }
    for (const BytePiece& piece : mCover.mPieces) {
        if (!Append(file, piece, block)) {
            return nullptr;
        }
    }
    block.mBytes.get()[block.mSize] = '\0';
    if (!Unpack(block, mCover)) {
        return nullptr;
    }
    return new ezMemoryStream(block.mBytes.release(), block.mSize, GetMimeType());
}
