#pragma once

#include "companions/ezFormats/codecs/VideoUnits.h"

#include <string>

/// Streams of VC-1 as bytes (SMPTE ST 421).
namespace vc1 {

inline std::string Unit(int aCode, const std::string& aContent) {
    return Hex({0, 0, 1, aCode}) + Escaped(aContent);
}

/// A sequence header of the advanced profile; each test changes what it is about.
struct Sequence {
    unsigned mProfile = 3;
    unsigned mLevel = 2;
    unsigned mChroma = 1;
    unsigned mWidth = 1280;
    unsigned mHeight = 720;
    bool mfInterlaced = false;
    bool mfSegmented = false;
    // Of the display
    unsigned mDisplayWidth = 0; ///< 0: no extension
    unsigned mDisplayHeight = 0;
    unsigned mAspect = 0; ///< ASPECT_RATIO; 0: no flag
    unsigned mPixelWidth = 1;
    unsigned mPixelHeight = 1;
    unsigned mRate = 0;    ///< FRAMERATENR; 0: no flag
    unsigned mDivisor = 1; ///< FRAMERATEDR
    unsigned mRateExp = 0; ///< FRAMERATEEXP in the place of both, 0 not
    bool mfColours = false;
    unsigned mBuckets = 0;

    std::string Content() const {
        Bits bits;
        bits.Put(mProfile, 2).Put(mLevel, 3).Put(mChroma, 2).Put(7, 3).Put(31, 5).Put(0, 1);
        bits.Put(mWidth / 2 - 1, 12).Put(mHeight / 2 - 1, 12).Put(0, 1).Put(mfInterlaced ? 1 : 0, 1);
        bits.Put(1, 3).Put(mfSegmented ? 1 : 0, 1).Put(mDisplayWidth != 0 ? 1 : 0, 1);
        if (mDisplayWidth != 0) {
            PutDisplay(bits);
        }
        bits.Put(mBuckets != 0 ? 1 : 0, 1);
        if (mBuckets != 0) {
            bits.Put(mBuckets, 5).Put(0xFF, 8);
        }
        for (unsigned i = 0; i < mBuckets; ++i) {
            bits.Put(0xFFFFFFFF, 32);
        }
        return bits.Put(1, 1).Bytes();
    }
    std::string Bytes() const { return Unit(0x0F, Content()); }

private:
    void PutDisplay(Bits& aBits) const {
        aBits.Put(mDisplayWidth - 1, 14).Put(mDisplayHeight - 1, 14).Put(mAspect != 0 ? 1 : 0, 1);
        if (mAspect != 0) {
            aBits.Put(mAspect, 4);
        }
        if (mAspect == 15) {
            aBits.Put(mPixelWidth - 1, 8).Put(mPixelHeight - 1, 8);
        }
        aBits.Put(mRate != 0 || mRateExp != 0 ? 1 : 0, 1);
        if (mRateExp != 0) {
            aBits.Put(1, 1).Put(mRateExp, 16);
        } else if (mRate != 0) {
            aBits.Put(0, 1).Put(mRate, 8).Put(mDivisor, 4);
        }
        aBits.Put(mfColours ? 1 : 0, 1).Put(0x010101, mfColours ? 24 : 0);
    }
};

/// An entry point.
/// @param aWidth  0: that of the sequence
inline std::string EntryPoint(unsigned aWidth = 0, unsigned aHeight = 0, unsigned aBuckets = 0) {
    Bits bits;
    bits.Put(0x60, 7).Put(0, 6);
    for (unsigned i = 0; i < aBuckets; ++i) {
        bits.Put(0x55, 8);
    }
    bits.Put(aWidth != 0 ? 1 : 0, 1);
    if (aWidth != 0) {
        bits.Put(aWidth / 2 - 1, 12).Put(aHeight / 2 - 1, 12);
    }
    return Unit(0x0E, bits.Put(1, 1).Bytes());
}

/// A frame that begins with this FCM: 0 progressive, 2 interlaced, 3 of two fields.
inline std::string Frame(unsigned aCoding) {
    return Unit(0x0D, Bits().Put(aCoding, aCoding == 0 ? 1 : 2).Put(0x1234, 16).Bytes());
}

} // namespace vc1
