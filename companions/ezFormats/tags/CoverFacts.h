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
    /// The same of the block of a picture in FLAC, which the reader is at the start of; what is damaged is
    /// left.
    void OfferBlock(ByteReader aBlock);
    /// The same of a frame of ID3v2 that holds a picture.
    void OfferFrame(ByteReader aBody, unsigned aVersion);

    /// True when nothing better can come.
    bool IsFinal() const { return mChoice.IsFinal(); }

    void Store(ezMediaInfo& anInfo) const;

private:
    void OfferData(std::uint32_t aType, const ezCString& aStatedMimeType, ByteReader& aData,
                   std::uint64_t aSize);

    PictureChoice mChoice;
    ezCString mMimeType;
    std::uint64_t mSize = 0;
};
