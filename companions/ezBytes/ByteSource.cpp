#include "ezBytes/ByteSource.h"

#include <algorithm>
#include <utility>

ByteSource::~ByteSource() = default;
PieceBytes::~PieceBytes() = default;
BlockBytes::~BlockBytes() = default;

PieceBytes::PieceBytes(ByteSource& aBytes, std::vector<BytePiece> aPieces)
    : mBytes(aBytes), mPieces(std::move(aPieces)) {
    for (const BytePiece& piece : mPieces) {
        mSize += piece.mSize;
    }
}

std::size_t PieceBytes::Borrow(std::uint64_t aPosition, const unsigned char** aBytes) {
    if (aPosition >= mSize) {
        return 0;
    }
    if (aPosition < mPieceStart) {
        mPiece = 0;
        mPieceStart = 0;
    }
    while (aPosition - mPieceStart >= mPieces[mPiece].mSize) {
        mPieceStart += mPieces[mPiece].mSize;
        ++mPiece;
    }
    const std::uint64_t place = aPosition - mPieceStart;
    const std::size_t count = mBytes.Borrow(mPieces[mPiece].mOffset + place, aBytes);
    return static_cast<std::size_t>(std::min<std::uint64_t>(count, mPieces[mPiece].mSize - place));
}

void PieceBytes::Append(const BytePiece& aPiece) {
    mPieces.push_back(aPiece);
    mSize += aPiece.mSize;
}

void PieceBytes::Clear() {
    mPieces.clear();
    mSize = 0;
    mPiece = 0;
    mPieceStart = 0;
}

std::vector<BytePiece> PieceBytes::Slice(std::uint64_t aPosition, std::uint64_t aSize) const {
    std::vector<BytePiece> slice;
    std::uint64_t skipped = aPosition;
    std::uint64_t left = aSize;
    for (const BytePiece& piece : mPieces) {
        const std::uint64_t before = std::min(skipped, piece.mSize);
        const std::uint64_t size = std::min(left, piece.mSize - before);
        if (size != 0) {
            slice.push_back({piece.mOffset + before, size});
        }
        skipped -= before;
        left -= size;
    }
    return slice;
}

std::size_t BlockBytes::Borrow(std::uint64_t aPosition, const unsigned char** aBytes) {
    if (aPosition >= mSize) {
        return 0;
    }
    *aBytes = mBlock + aPosition;
    return mSize - static_cast<std::size_t>(aPosition);
}
