#pragma once

#include "companions/ezFormats/elementary/EltStreamKit.h"

#include <string>

/// Streams of MPEG video as bytes.
namespace mpegvideo {

inline std::string Code(int aCode) {
    return Hex({0, 0, 1, aCode});
}

/// A sequence header and its extension; each test changes what it is about.
struct Sequence {
    unsigned mWidth = 720;
    unsigned mHeight = 576;
    unsigned mAspect = 3;
    unsigned mRate = 3; ///< frame_rate_code
    unsigned mBitRate = 15000;
    // Of the extension
    bool mfExtension = true;
    unsigned mProfile = 0x48;
    bool mfProgressive = false;
    unsigned mChroma = 1;
    unsigned mRateMore = 0; ///< frame_rate_extension_n and _d, two bits and five

    std::string Header() const {
        Bits bits;
        bits.Put(mWidth & 0xFFFU, 12).Put(mHeight & 0xFFFU, 12).Put(mAspect, 4).Put(mRate, 4);
        return Code(0xB3) + bits.Put(mBitRate, 18).Put(1, 1).Put(112, 10).Put(0, 3).Bytes();
    }
    std::string Extension() const {
        Bits bits;
        bits.Put(1, 4).Put(mProfile, 8).Put(mfProgressive ? 1 : 0, 1).Put(mChroma, 2);
        bits.Put(mWidth >> 12, 2).Put(mHeight >> 12, 2).Put(0, 12).Put(1, 1).Put(0, 9).Put(mRateMore, 7);
        return Code(0xB5) + bits.Bytes();
    }
    std::string Bytes() const { return Header() + (mfExtension ? Extension() : ""); }
};

/// A sequence display extension, with colours or without.
inline std::string Display(unsigned aWidth, unsigned aHeight, bool afColours = false) {
    Bits bits;
    bits.Put(2, 4).Put(1, 3).Put(afColours ? 1 : 0, 1).Put(0x010101, afColours ? 24 : 0);
    return Code(0xB5) + bits.Put(aWidth, 14).Put(1, 1).Put(aHeight, 14).Bytes();
}

/// A picture of type I with a slice: MPEG-2's has a coding extension.
struct Picture {
    bool mfProgressive = true;
    unsigned mStructure = 3; ///< 1 and 2 are fields
    bool mfRepeated = false; ///< repeat_first_field
    unsigned mDelay = 1000;  ///< vbv_delay
    bool mfExtension = true;

    std::string Bytes() const {
        std::string bytes = Code(0) + Bits().Put(0, 10).Put(1, 3).Put(mDelay, 16).Put(0, 3).Bytes();
        if (mfExtension) {
            Bits bits;
            bits.Put(8, 4).Put(0xFFFF, 16).Put(0, 2).Put(mStructure, 2).Put(0, 6).Put(mfRepeated ? 1 : 0, 1);
            bytes += Code(0xB5) + bits.Put(0, 1).Put(mfProgressive ? 1 : 0, 1).Put(0, 1).Bytes();
        }
        return bytes + Code(1) + Content(40);
    }
};

inline std::string Group() {
    return Code(0xB8) + Bits().Put(0, 12).Put(1, 1).Put(0, 14).Bytes();
}

} // namespace mpegvideo
