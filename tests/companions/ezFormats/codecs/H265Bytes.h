#pragma once

#include "companions/ezFormats/codecs/VideoUnits.h"

#include <string>
#include <vector>

// Streams of H.265, written bit by bit.

namespace h265 {

/// What stands in a row of numbers and flags before the usability information; each test may write its own.
using Part = void (*)(Bits& aBits);

/// The fields of a stream; each test changes some.
struct Stream265 {
    unsigned mSubLayers = 1;
    unsigned mNested = 1;
    unsigned mTier = 0;
    unsigned mProfile = 1;
    unsigned mSource = 2; ///< general_progressive_source_flag, general_interlaced_source_flag
    unsigned mLevel = 93;
    unsigned mReserved = 0xFFFF; ///< vps_reserved_0xffff_16bits
    unsigned mVPSID = 0;
    unsigned mSPSVPSID = 0;
    unsigned mSPSID = 0;
    unsigned mChromaFormat = 1;
    unsigned mWidth = 320;
    unsigned mHeight = 184;
    std::vector<unsigned> mCrop = {0, 0, 0, 2};
    unsigned mBitDepth = 8;
    std::vector<unsigned> mBlocks = {0, 3, 0, 3, 0, 0};
    Part mScaling = nullptr;
    bool mfPCM = false;
    Part mRefPicSets = nullptr;
    unsigned mLongTerm = 0; ///< pictures
    bool mfUsability = true;
    VideoSigns mSigns;
    bool mfFieldPictures = false;
    bool mfStructure = false;
    bool mfDisplayWindow = false;
    Part mHRD = nullptr;
    unsigned mExtensions = 0; ///< the eight flags; those of ranges first
    Bits mSetEnd = Bits();
    unsigned mPPSID = 0;
    unsigned mPPSSPSID = 0;
    Part mTiles = nullptr;
    bool mfListsOfPPS = false;
    unsigned mSlicePPSID = 0;
    std::string mMessages; ///< before the picture
    std::string mVPSHeader = Hex({0x40, 1});
    std::string mSPSHeader = Hex({0x42, 1});
    std::string mPPSHeader = Hex({0x44, 1});
    std::string mSliceHeader = Hex({0x26, 1});

    void PutProfile(Bits& aBits) const {
        aBits.Put(0, 2).Put(mTier, 1).Put(mProfile, 5).Put(0, 32).Put(mSource, 2).Put(0, 46).Put(mLevel, 8);
        for (unsigned i = 1; i < mSubLayers; ++i) {
            aBits.Put(i % 2 == 1 ? 3 : 1, 2); // profile and level, or the level alone
        }
        for (unsigned i = mSubLayers; mSubLayers > 1 && i < 9; ++i) {
            aBits.Put(0, 2);
        }
        for (unsigned i = 1; i < mSubLayers; ++i) {
            aBits.Put(0, i % 2 == 1 ? 48 : 0).Put(0, i % 2 == 1 ? 40 : 0).Put(60, 8);
        }
    }
    void PutOrdering(Bits& aBits) const {
        aBits.Put(1, 1);
        for (unsigned i = 0; i < mSubLayers; ++i) {
            aBits.UE(4).UE(2).UE(0);
        }
    }
    std::string VPS() const {
        Bits bits;
        bits.Put(mVPSID, 4).Put(3, 2).Put(0, 6).Put(mSubLayers - 1, 3).Put(mNested, 1).Put(mReserved, 16);
        PutProfile(bits);
        PutOrdering(bits);
        return bits.Put(0, 6).UE(0).Put(0, 2).Stop().Bytes();
    }
    std::string SPS() const {
        Bits bits;
        bits.Put(mSPSVPSID, 4).Put(mSubLayers - 1, 3).Put(mNested, 1);
        PutProfile(bits);
        bits.UE(mSPSID).UE(mChromaFormat);
        if (mChromaFormat == 3) {
            bits.Put(0, 1);
        }
        bits.UE(mWidth).UE(mHeight).Put(mCrop.empty() ? 0 : 1, 1);
        for (const unsigned edge : mCrop) {
            bits.UE(edge);
        }
        bits.UE(mBitDepth - 8).UE(0).UE(4); // 8 bits of POC
        PutOrdering(bits);
        for (const unsigned size : mBlocks) {
            bits.UE(size);
        }
        PutTools(bits);
        bits.Put(mfUsability ? 1 : 0, 1);
        if (mfUsability) {
            PutUsability(bits);
        }
        bits.Put(mExtensions != 0 ? 1 : 0, 1);
        if (mExtensions != 0) {
            bits.Put(mExtensions, 8).Put(0, mExtensions >= 0x80 ? 9 : 0);
        }
        return bits.Stop().Bytes();
    }
    void PutTools(Bits& aBits) const {
        aBits.Put(mScaling != nullptr ? 3 : 0, mScaling != nullptr ? 2 : 1);
        if (mScaling != nullptr) {
            mScaling(aBits);
        }
        aBits.Put(3, 2).Put(mfPCM ? 1 : 0, 1);
        if (mfPCM) {
            aBits.Put(0x77, 8).UE(0).UE(2).Put(1, 1);
        }
        if (mRefPicSets != nullptr) {
            mRefPicSets(aBits);
        } else {
            aBits.UE(0);
        }
        aBits.Put(mLongTerm != 0 ? 1 : 0, 1);
        if (mLongTerm != 0) {
            aBits.UE(mLongTerm);
        }
        for (unsigned i = 0; i < mLongTerm; ++i) {
            aBits.Put(0x155, 9);
        }
        aBits.Put(3, 2);
    }
    void PutUsability(Bits& aBits) const {
        mSigns.Put(aBits);
        aBits.Put(0, 1).Put(mfFieldPictures ? 1 : 0, 1).Put(mfStructure ? 1 : 0, 1);
        aBits.Put(mfDisplayWindow ? 1 : 0, 1);
        if (mfDisplayWindow) {
            aBits.UE(8).UE(8).UE(0).UE(70);
        }
        mSigns.PutClock(aBits);
        if (mSigns.mUnits != 0) {
            aBits.Put(1, 1).UE(0).Put(mHRD != nullptr ? 1 : 0, 1);
            if (mHRD != nullptr) {
                mHRD(aBits);
            }
        }
        aBits.Put(1, 1).Put(0, 3).UE(0).UE(0).UE(0).UE(15).UE(15);
    }
    std::string PPS() const {
        Bits bits;
        bits.UE(mPPSID).UE(mPPSSPSID).Put(0, 7).UE(0).UE(0).SE(0).Put(0, 2).Put(1, 1).UE(1).SE(-6).SE(6);
        bits.Put(0, 4).Put(mTiles != nullptr ? 1 : 0, 1).Put(0, 1);
        if (mTiles != nullptr) {
            mTiles(bits);
        }
        bits.Put(0, 1).Put(1, 1).Put(0, 2).SE(1).SE(-1);
        bits.Put(mfListsOfPPS ? 1 : 0, 1);
        for (unsigned i = 0; mfListsOfPPS && i < 20; ++i) {
            bits.Put(0, 1).UE(0);
        }
        return bits.Put(0, 1).UE(0).Put(0, 2).Stop().Bytes();
    }
    std::string Slice() const {
        Bits bits;
        return bits.Put(1, 1).Put(0, mSliceHeader[0] >= 0x20 ? 1 : 0).UE(mSlicePPSID).Bytes() +
               Content(20, '\x55');
    }
    std::vector<std::string> Sets() const {
        return {mVPSHeader + Escaped(VPS()), mSPSHeader + Escaped(SPS()), mPPSHeader + Escaped(PPS())};
    }
    std::vector<std::string> Picture() const {
        std::vector<std::string> units;
        if (!mMessages.empty()) {
            units.push_back(Hex({0x4E, 1}) + Escaped(mMessages + '\x80'));
        }
        units.push_back(mSliceHeader + Escaped(Slice()));
        return units;
    }
    std::string Bytes() const { return StartCoded(Sets()) + StartCoded(Picture()); }
};

/// "hvcC" of these sets, each in an array of its own.
inline std::string Config(const std::vector<std::string>& aSets, unsigned aSizeBytes = 4) {
    std::string config = Hex({1,
                              0x22,
                              0,
                              0,
                              0,
                              0,
                              0x90,
                              0,
                              0,
                              0,
                              0,
                              0,
                              120,
                              0xF0,
                              0,
                              0xFC,
                              0xFD,
                              0xFA,
                              0xFA,
                              0,
                              0,
                              0x0C | static_cast<int>(aSizeBytes - 1),
                              static_cast<int>(aSets.size())});
    for (const std::string& set : aSets) {
        config += Hex({set[0] >> 1, 0, 1}) + Sized({set}, 2);
    }
    return config;
}

} // namespace h265
