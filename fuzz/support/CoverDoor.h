#pragma once

#include "fuzz/support/Check.h"
#include "fuzz/support/WriteFile.h"

#include "ezBytes/InflatedBytes.h"
#include "ezThumbnails/detail/CoverFinders.h"
#include "ezThumbnails/detail/CoverLimits.h"
#include "ezThumbnails/detail/GatheredCoverSource.h"

#include "ezPlatform/base/Memory.h"
#include "ezPlatform/streams/MemoryStream.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

/// What every finder of covers promises of every input, which is its file.

using CoverDoorFinder = Cover (*)(ezStream& aStream);

/// A file in memory that is not read more often than a finder may.
class CoverDoorStream : public ezMemoryStream {
public:
    using ezMemoryStream::ezMemoryStream;

    ezStreamingStatus Read(void* aBuffer, std::size_t* aSize, int aFlag) override {
        FuzzCheck(*aSize <= kCover_BlockSize && ++mReads <= kCover_MaxBlocks);
        return ezMemoryStream::Read(aBuffer, aSize, aFlag);
    }
    ezStreamingStatus LendingRead(const void** aData, std::size_t* aSize, int aFlag) override {
        FuzzCheck(*aSize <= kCover_BlockSize);
        return ezMemoryStream::LendingRead(aData, aSize, aFlag);
    }
    void ForgetReads() { mReads = 0; }

protected:
    ~CoverDoorStream() override = default;

private:
    std::size_t mReads = 0;
};

/// Everything that a cover says, in one text.
inline std::string CoverDoor_Dump(const Cover& aCover) {
    std::string text(aCover.mMimeType.View());
    text += aCover.mfUnsynchronised ? " unsynchronised" : "";
    text += aCover.mfBase64 ? " base64 " + std::to_string(aCover.mEncodedOffset) : "";
    text += aCover.mfDeflated ? " deflated " + std::to_string(aCover.mEncodedOffset) + " of " +
                                    std::to_string(aCover.mMaxInflated)
                              : "";
    for (const auto& piece : aCover.mPieces) {
        text += " " + std::to_string(piece.mOffset) + "+" + std::to_string(piece.mSize);
    }
    return text;
}

/// The pieces lie in the file in their order, none over another, and are together no more than may be held.
inline void CoverDoor_CheckPieces(const Cover& aCover, std::size_t aFileSize) {
    std::uint64_t end = 0;
    std::uint64_t sum = 0;
    for (const auto& piece : aCover.mPieces) {
        FuzzCheck(piece.mOffset >= end && piece.mOffset <= aFileSize);
        FuzzCheck(piece.mSize <= aFileSize - piece.mOffset);
        end = piece.mOffset + piece.mSize;
        sum += piece.mSize;
    }
    const bool fHeld = aCover.mfBase64 || !aCover.IsFilePart();
    FuzzCheck(sum != 0 && sum <= (fHeld ? kCover_MaxHeldSize : kCover_MaxSize));
}

/// The bytes of the pieces, less the zero after every 0xFF where that is stuffing.
inline std::string CoverDoor_Stored(const Cover& aCover, std::string_view aFile) {
    std::string stored;
    for (const auto& piece : aCover.mPieces) {
        stored +=
            aFile.substr(static_cast<std::size_t>(piece.mOffset), static_cast<std::size_t>(piece.mSize));
    }
    for (std::size_t i = 0; aCover.mfUnsynchronised && i + 1 < stored.size(); ++i) {
        if (stored[i] == '\xFF' && stored[i + 1] == '\0') {
            stored.erase(i + 1, 1);
        }
    }
    return stored;
}

/// What zlib data inflate to within the cover's bound, from its offset on. False where they are damaged, or
/// more.
inline bool CoverDoor_Inflate(const Cover& aCover, std::string* aBytes) {
    BlockBytes stored(reinterpret_cast<const unsigned char*>(aBytes->data()), aBytes->size());
    ByteReader compressed(stored);
    InflatedBytes inflated;
    if (inflated.Inflate(compressed, aCover.mMaxInflated) != InflatedBytes::Result::Whole) {
        return false;
    }
    FuzzCheck(aCover.mEncodedOffset < inflated.GetEnd()); // the head was there when it was found
    ByteReader picture(inflated);
    picture.Skip(aCover.mEncodedOffset);
    aBytes->assign(static_cast<std::size_t>(picture.GetLeft()), '\0');
    return picture.Read(reinterpret_cast<unsigned char*>(aBytes->data()), aBytes->size());
}

/// What a source of the cover gives. Base64 text only shrinks; what it decodes to has a target of its own.
inline void CoverDoor_CheckSource(const ezThumbnailSource& aSource, const Cover& aCover,
                                  std::string aStored) {
    FuzzCheck(aSource.Exists() && aSource.GetMimeType() == aCover.mMimeType);
    const ezStreamOwner stream(aSource.GetStream());
    const bool fWhole = !aCover.mfDeflated || CoverDoor_Inflate(aCover, &aStored);
    if (stream == nullptr) {
        // Rubbish between the characters of a text may end it before the picture.
        FuzzCheck(aCover.mfBase64 || !fWhole);
        return;
    }
    FuzzCheck(fWhole);
    std::string bytes(aStored.size() + 1, '\0');
    std::size_t count = bytes.size();
    FuzzCheck(stream->Read(bytes.data(), &count, ezStreamReadFlag_Whole) == ezStreamingStatus_EOS);
    if (aCover.mfBase64) {
        FuzzCheck(count + aCover.mEncodedOffset <= aStored.size() * 3 / 4);
    } else {
        FuzzCheck(std::string_view(bytes).substr(0, count) == aStored);
    }
}

inline void CoverDoor_CheckSources(const Cover& aCover, std::string_view aFile) {
    const MemoryFolder folder;
    const std::string path = folder.Path("media");
    WriteFile(path, aFile);
    const ezPathName name = ezPathName::MakeFilePath(ezCString(path.c_str()));
    const std::string stored = CoverDoor_Stored(aCover, aFile);
    if (stored.size() <= kCover_MaxHeldSize) {
        CoverDoor_CheckSource(GatheredCoverSource(name, aCover), aCover, stored);
    }
    if (aCover.IsFilePart()) {
        const auto& piece = aCover.mPieces.front();
        CoverDoor_CheckSource(ezFilePartThumbnailSource(
                                  aCover.mMimeType, name, static_cast<ezFileOffset>(piece.mOffset),
                                  static_cast<uint32>(piece.mSize), aCover.mfBase64, aCover.mEncodedOffset),
                              aCover, stored);
    }
}

/// @param afBase64  whether the container has covers in base64
/// @param afID3     whether it has unsynchronised and deflated ones
inline void CoverDoor_Check(const std::uint8_t* aData, std::size_t aSize, CoverDoorFinder aFind,
                            bool afBase64, bool afID3) {
    const FuzzHouse house;
    void* const block = ezMalloc(std::max<std::size_t>(aSize, 1));
    if (aSize != 0) {
        std::memcpy(block, aData, aSize);
    }
    auto* const stream = new CoverDoorStream(block, aSize, ezCString());
    const ezStreamOwner owner(stream);
    const Cover cover = aFind(*stream);
    stream->ForgetReads();
    FuzzCheck(CoverDoor_Dump(aFind(*stream)) == CoverDoor_Dump(cover)); // wherever the stream stands
    if (!cover.IsFound()) {
        return;
    }
    FuzzCheck(cover.mMimeType.StartsWith("image/") && cover.mMimeType.GetLength() > 6);
    FuzzCheck(!cover.mfBase64 || afBase64); // a container may have others beside them
    FuzzCheck(cover.mfBase64 || cover.mfDeflated || cover.mEncodedOffset == 0);
    FuzzCheck(cover.mfDeflated == (cover.mMaxInflated != 0) && cover.mMaxInflated <= kCover_MaxInflatedSize);
    FuzzCheck((!cover.mfUnsynchronised && !cover.mfDeflated) || afID3);
    CoverDoor_CheckPieces(cover, aSize);
    CoverDoor_CheckSources(cover, std::string_view(static_cast<const char*>(block), aSize));
}
