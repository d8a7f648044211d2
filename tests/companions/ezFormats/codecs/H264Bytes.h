#pragma once

#include "companions/ezFormats/codecs/VideoUnits.h"

#include <string>
#include <vector>

// Streams of H.264, written bit by bit.

namespace h264 {

/// The fields of a stream; each test changes some.
struct Stream264 {
    unsigned mProfile = 100;
    unsigned mConstraints = 0;
    unsigned mLevel = 40;
    unsigned mChromaFormat = 1; ///< high profiles only
    unsigned mBitDepth = 8;
    unsigned mWidth = 20;  ///< macroblocks
    unsigned mHeight = 12; ///< macroblocks, or pairs of them
    bool mfFields = false;
    bool mfAdaptive = false; ///< mb_adaptive_frame_field_flag, where there may be fields
    unsigned mBottom = 0;
    bool mfUsability = true;
    VideoSigns mSigns;
    bool mfDelays = false;  ///< HRD parameters: the delays of a timing message have 5 and 7 bits
    bool mfConstant = true; ///< of them
    bool mfStructure = false;
    std::string mMessages; ///< before the picture
    unsigned mField = 0;   ///< field_pic_flag

    std::string SPS() const {
        Bits bits;
        bits.Put(mProfile, 8).Put(mConstraints, 8).Put(mLevel, 8).UE(0);
        if (mProfile >= 100) {
            bits.UE(mChromaFormat);
            if (mChromaFormat == 3) {
                bits.Put(0, 1);
            }
            bits.UE(mBitDepth - 8).UE(0).Put(0, 2);
        }
        bits.UE(0).UE(2).UE(1).Put(0, 1).UE(mWidth - 1).UE(mHeight - 1);
        bits.Put(mfFields ? 0 : 1, 1).Put(mfAdaptive ? 1 : 0, mfFields ? 1 : 0).Put(1, 1);
        bits.Put(mBottom != 0 ? 1 : 0, 1);
        if (mBottom != 0) {
            bits.UE(0).UE(0).UE(0).UE(mBottom);
        }
        bits.Put(mfUsability ? 1 : 0, 1);
        if (mfUsability) {
            Usability(bits);
        }
        return bits.Stop().Bytes();
    }
    void Usability(Bits& aBits) const {
        mSigns.Put(aBits);
        mSigns.PutClock(aBits);
        if (mSigns.mUnits != 0) {
            aBits.Put(1, 1); // fixed_frame_rate_flag
        }
        aBits.Put(mfDelays ? 1 : 0, 1);
        if (mfDelays) {
            aBits.UE(0).Put(0, 4).Put(0, 4).UE(15624).UE(9).Put(mfConstant ? 1 : 0, 1);
            aBits.Put(0, 5).Put(4, 5).Put(6, 5).Put(0, 5);
        }
        aBits.Put(0, 1).Put(0, mfDelays ? 1 : 0).Put(mfStructure ? 1 : 0, 1).Put(0, 1);
    }
    static std::string PPS() {
        Bits bits;
        bits.UE(0).UE(0).Put(0, 2).UE(0).UE(0).UE(0).Put(0, 3).SE(0).SE(0).SE(0).Put(0, 3);
        return bits.Stop().Bytes();
    }
    std::string Slice() const {
        Bits bits;
        bits.UE(0).UE(7).UE(0).Put(0, 4);
        if (mfFields) {
            bits.Put(mField, 1).Put(0, mField);
        }
        return bits.UE(0).Bytes() + Content(20, '\x55');
    }
    /// What comes before the picture, and the picture.
    std::vector<std::string> Sets() const { return {"\x67" + Escaped(SPS()), "\x68" + Escaped(PPS())}; }
    std::vector<std::string> Picture() const {
        std::vector<std::string> units;
        if (!mMessages.empty()) {
            units.push_back("\x06" + Escaped(mMessages + '\x80'));
        }
        units.push_back("\x65" + Escaped(Slice()));
        return units;
    }
    std::string Bytes() const { return StartCoded(Sets()) + StartCoded(Picture()); }
};

} // namespace h264
