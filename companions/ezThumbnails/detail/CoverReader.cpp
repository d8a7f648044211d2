#include "ezThumbnails/detail/CoverReader.h"

#include "ezPlatform/streams/Stream.h"

#include <algorithm>
#include <string>
#include <utility>

CoverBytes::~CoverBytes() = default;
CoverStreamBytes::~CoverStreamBytes() = default;
CoverPieceBytes::~CoverPieceBytes() = default;
CoverBlockBytes::~CoverBlockBytes() = default;

CoverStreamBytes::CoverStreamBytes(ezStream& aStream)
    : mStream(aStream), mSize(aStream.IsOpened() ? aStream.GetSize().ToUInt64() : 0) {}

bool CoverStreamBytes::Get(std::uint64_t aPosition, unsigned char* aByte) {
    const std::uint64_t blockStart = aPosition - aPosition % kCover_BlockSize;
    if (aPosition >= mSize || ((blockStart != mBlockStart || mBlockLength == 0) && !Load(blockStart))) {
        return false;
    }
    const std::uint64_t place = aPosition - blockStart;
    if (place >= mBlockLength) {
        return false; // a file that was cut since it was opened
    }
    *aByte = mBlock[static_cast<std::size_t>(place)];
    return true;
}

bool CoverStreamBytes::Load(std::uint64_t aBlockStart) {
    mBlockLength = 0;
    if (mLoadsLeft == 0) {
        return false;
    }
    --mLoadsLeft;
    if (mStream.Seek(aBlockStart) != ezStreamingStatus_NoError) {
        return false;
    }
    std::size_t length =
        static_cast<std::size_t>(std::min<std::uint64_t>(kCover_BlockSize, mSize - aBlockStart));
    const ezStreamingStatus status = mStream.Read(mBlock.data(), &length, ezStreamReadFlag_Whole);
    if (status != ezStreamingStatus_NoError && status != ezStreamingStatus_EOS) {
        return false;
    }
    mBlockStart = aBlockStart;
    mBlockLength = std::min(length, mBlock.size());
    return true;
}

CoverPieceBytes::CoverPieceBytes(CoverBytes& aBytes, std::vector<CoverPiece> aPieces)
    : mBytes(aBytes), mPieces(std::move(aPieces)) {
    for (const CoverPiece& piece : mPieces) {
        mSize += piece.mSize;
    }
}

bool CoverPieceBytes::Get(std::uint64_t aPosition, unsigned char* aByte) {
    if (aPosition >= mSize) {
        return false;
    }
    if (aPosition < mPieceStart) {
        mPiece = 0;
        mPieceStart = 0;
    }
    while (aPosition - mPieceStart >= mPieces[mPiece].mSize) {
        mPieceStart += mPieces[mPiece].mSize;
        ++mPiece;
    }
    return mBytes.Get(mPieces[mPiece].mOffset + (aPosition - mPieceStart), aByte);
}

std::vector<CoverPiece> CoverPieceBytes::Slice(std::uint64_t aPosition, std::uint64_t aSize) const {
    std::vector<CoverPiece> slice;
    std::uint64_t skipped = aPosition;
    std::uint64_t left = aSize;
    for (const CoverPiece& piece : mPieces) {
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

bool CoverBlockBytes::Get(std::uint64_t aPosition, unsigned char* aByte) {
    if (aPosition >= mSize) {
        return false;
    }
    *aByte = mBlock[static_cast<std::size_t>(aPosition)];
    return true;
}

unsigned char CoverReader::Next() {
    unsigned char byte = 0;
    if (!Require(mPosition < mEnd && mBytes->Get(mPosition, &byte))) {
        return 0;
    }
    ++mPosition;
    if (mfUnsynchronised && byte == 0xFF) {
        SkipStuffing();
    }
    return byte;
}

void CoverReader::SkipStuffing() {
    unsigned char byte = 0;
    if (mPosition < mEnd && mBytes->Get(mPosition, &byte) && byte == 0) {
        ++mPosition;
    }
}

std::uint64_t CoverReader::ReadBig(unsigned aByteCount) {
    std::uint64_t value = 0;
    for (unsigned i = 0; i < aByteCount; ++i) {
        value = value << 8 | Next();
    }
    return mfFailed ? 0 : value;
}

std::uint64_t CoverReader::ReadLittle(unsigned aByteCount) {
    std::uint64_t value = 0;
    for (unsigned i = 0; i < aByteCount; ++i) {
        value |= static_cast<std::uint64_t>(Next()) << 8 * i;
    }
    return mfFailed ? 0 : value;
}

std::uint32_t CoverReader::ReadSyncsafe32() {
    std::uint32_t value = 0;
    for (unsigned i = 0; i < 4; ++i) {
        const unsigned char byte = Next();
        Require(byte < 0x80);
        value = value << 7 | byte;
    }
    return mfFailed ? 0 : value;
}

ezCString CoverReader::ReadText(std::size_t aCount) {
    std::string text;
    if (Require(aCount <= GetLeft())) {
        for (std::size_t i = 0; i < aCount && !mfFailed; ++i) {
            text.push_back(static_cast<char>(Next()));
        }
    }
    return mfFailed ? ezCString() : ezCString(std::string_view(text));
}

ezCString CoverReader::ReadZeroTerminated(std::size_t aMaximum) {
    std::string text;
    for (char character = static_cast<char>(Next()); character != '\0' && !mfFailed;
         character = static_cast<char>(Next())) {
        text.push_back(character);
        Require(text.size() < aMaximum);
    }
    return mfFailed ? ezCString() : ezCString(std::string_view(text));
}

void CoverReader::Skip(std::uint64_t aCount) {
    if (!Require(aCount <= GetLeft())) {
        return;
    }
    if (!mfUnsynchronised) {
        mPosition += aCount;
        return;
    }
    // Only the bytes themselves tell how many of them are stuffing.
    for (std::uint64_t i = 0; i < aCount && !mfFailed; ++i) {
        Next();
    }
}

CoverReader CoverReader::Take(std::uint64_t aCount) {
    CoverReader part(*mBytes, mPosition, mPosition);
    part.mfUnsynchronised = mfUnsynchronised;
    Skip(aCount);
    part.mfFailed = mfFailed;
    part.mEnd = mfFailed ? part.mPosition : mPosition;
    return part;
}
