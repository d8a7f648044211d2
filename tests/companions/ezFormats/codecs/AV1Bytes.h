#pragma once

#include "companions/ezFormats/elementary/EltStreamKit.h"

#include <string>

/// Streams of AV1 as bytes.
namespace av1 {

/// A unit that states its size, in two bytes.
inline std::string Unit(unsigned aType, const std::string& aContent) {
    Bits bits;
    bits.Put(0, 1).Put(aType, 4).Put(0, 1).Put(1, 1).Put(0, 1);
    return bits.Put(1, 1).Put(aContent.size() & 127U, 7).Put(aContent.size() >> 7, 8).Bytes() + aContent;
}

/// A sequence header; each test changes what it is about.
struct Sequence {
    unsigned mProfile = 0;
    unsigned mLevel = 8; ///< 4.0
    unsigned mWidth = 1920;
    unsigned mHeight = 1080;
    bool mfStill = false; ///< the short form
    // A clock of pictures
    bool mfClock = false;
    std::uint32_t mUnits = 1001;
    std::uint32_t mScale = 60000;
    bool mfEqual = true;
    unsigned mTicks = 1; ///< of a picture, less one
    bool mfModel = false;
    unsigned mPoints = 1;
    bool mfTools = false; ///< those that take more bits
    // Colours
    bool mfHigh = false;
    bool mfTwelve = false;
    bool mfGrey = false;
    int mTransfer = -1; ///< not described
    unsigned mPrimaries = 9;
    unsigned mMatrix = 9;
    unsigned mSubsampling = 0; ///< two bits, of the professional profile

    void PutClock(Bits& aBits) const {
        aBits.Put(mfClock ? 1 : 0, 1);
        if (mfClock) {
            aBits.Put(mUnits, 32).Put(mScale, 32).Put(mfEqual ? 1 : 0, 1);
            if (mfEqual) {
                aBits.UE(mTicks);
            }
            aBits.Put(mfModel ? 1 : 0, 1);
            aBits.Put(mfModel ? 9 : 0, mfModel ? 5 : 0).Put(0, mfModel ? 42 : 0);
        }
    }
    void PutPoints(Bits& aBits) const {
        aBits.Put(mfModel ? 1 : 0, 1).Put(mPoints - 1, 5);
        for (unsigned i = 0; i < mPoints; ++i) {
            aBits.Put(0, 12).Put(i == 0 ? mLevel : 0, 5).Put(0, i == 0 && mLevel > 7 ? 1 : 0);
            if (mfModel) {
                aBits.Put(1, 1).Put(0, 21).Put(1, 1).Put(5, 4);
            }
        }
    }
    void PutTools(Bits& aBits) const {
        if (mfTools) {
            aBits.Put(15, 4).Put(1, 1).Put(3, 2).Put(0, 1).Put(1, 1).Put(0, 1).Put(1, 1).Put(6, 3);
        } else {
            aBits.Put(0, 4).Put(0, 1).Put(0, 1).Put(0, 1);
        }
    }
    void PutColours(Bits& aBits) const {
        aBits.Put(mfHigh ? 1 : 0, 1).Put(mfTwelve ? 1 : 0, mProfile == 2 && mfHigh ? 1 : 0);
        aBits.Put(mfGrey ? 1 : 0, mProfile != 1 ? 1 : 0).Put(mTransfer >= 0 ? 1 : 0, 1);
        if (mTransfer >= 0) {
            aBits.Put(mPrimaries, 8).Put(static_cast<unsigned>(mTransfer), 8).Put(mMatrix, 8);
        }
        aBits.Put(0, 1);
        if (mProfile == 2 && mfTwelve) {
            aBits.Put(mSubsampling, mSubsampling >= 2 ? 2 : 1);
        }
        aBits.Put(0, 3);
    }
    std::string Content() const {
        Bits bits;
        bits.Put(mProfile, 3).Put(mfStill ? 1 : 0, 1).Put(mfStill ? 1 : 0, 1);
        if (mfStill) {
            bits.Put(mLevel, 5);
        } else {
            PutClock(bits);
            PutPoints(bits);
        }
        bits.Put(11, 4).Put(10, 4).Put(mWidth - 1, 12).Put(mHeight - 1, 11);
        bits.Put(mfTools && !mfStill ? 0xFF : 0, mfStill ? 0 : mfTools ? 8 : 1).Put(0, 3);
        if (!mfStill) {
            PutTools(bits);
        }
        bits.Put(3, 3);
        PutColours(bits);
        return bits.Bytes();
    }
    std::string Bytes() const { return Unit(1, Content()); }
};

inline const std::string kDelimiter = Unit(2, "");
inline const std::string kLight = Unit(5, Hex({1, 3, 0, 1, 0}));
inline const std::string kDynamic = Unit(5, Hex({4, 0xB5, 0x00, 0x3C, 0x00, 0x01, 0x04, 0x01}));

/// "av1C": profile and level, then tier, bits, grey and sampling as a byte, then units.
inline std::string Config(unsigned aProfile, unsigned aLevel, int aFlags, const std::string& aUnits = "") {
    return Hex({0x81, static_cast<int>(aProfile << 5 | aLevel), aFlags, 0}) + aUnits;
}

} // namespace av1
