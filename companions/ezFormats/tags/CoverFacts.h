#pragma once

#include "ezBytes/PictureBlock.h"

#include "ezPlatform/text/CString.h"

#include <cstdint>

class ezMediaInfo;

/// The cover that tags hold: what a record tells of it. Its bytes are for who makes a thumbnail.
class CoverFacts {
public:
    /// Takes a picture where it is a better cover than those before it.
    /// @param aMimeType  as PictureMimeType has it; empty, and there is no picture
    /// @param aSize      bytes
    void Offer(std::uint32_t aType, const ezCString& aMimeType, std::uint64_t aSize);
    /// The same of a picture that is all the reader has left, by its first bytes or else as stated.
    void OfferPicture(std::uint32_t aType, const ezCString& aStatedMimeType, const ByteReader& aPicture);
    /// The same of the block of a picture in FLAC, of the frame of one in ID3v2, and of a binary item of APE,
    /// which the reader is at the start of; what is damaged is left.
    /// @{
    void OfferBlock(ByteReader aBlock);
    void OfferFrame(ByteReader aFrame, unsigned aVersion);
    void OfferAPEItem(const ezCString& aKey, ByteReader aValue);
    /// @}

    /// True when there is one.
    bool IsFound() const { return !mMimeType.IsEmpty(); }
    /// True when nothing better can come.
    bool IsFinal() const { return mChoice.IsFinal(); }
    /// Takes the cover of another source, where this one has none.
    void Complete(const CoverFacts& aCover);

    void Store(ezMediaInfo& anInfo) const;

private:
    PictureChoice mChoice;
    ezCString mMimeType;
    std::uint64_t mSize = 0;
};
