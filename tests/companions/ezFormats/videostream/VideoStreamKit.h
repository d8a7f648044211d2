#pragma once

#include "companions/ezFormats/codecs/H264Bytes.h"
#include "companions/ezFormats/codecs/H265Bytes.h"
#include "companions/ezFormats/codecs/MPEG4Bytes.h"
#include "companions/ezFormats/codecs/MPEGVideoBytes.h"
#include "companions/ezFormats/codecs/VC1Bytes.h"

#include "support/NumberBytes.h"

#include <cstdint>
#include <string>

/// Files of video without a container, as bytes.
namespace videostream {

inline std::string H264() {
    return h264::Stream264().Bytes();
}
inline std::string H265() {
    return h265::Stream265().Bytes();
}
/// @param aDelay  vbv_delay; all ones where the rate varies
inline std::string MPEG2(unsigned aDelay = 0xFFFF) {
    mpegvideo::Picture picture;
    picture.mDelay = aDelay;
    return mpegvideo::Sequence().Bytes() + mpegvideo::Group() + picture.Bytes();
}
inline std::string MPEG1(unsigned aDelay = 0xFFFF) {
    mpegvideo::Sequence sequence;
    sequence.mfExtension = false;
    sequence.mWidth = 352;
    sequence.mHeight = 288;
    sequence.mBitRate = aDelay == 0xFFFF ? 0x3FFFF : sequence.mBitRate;
    mpegvideo::Picture picture;
    picture.mfExtension = false;
    picture.mDelay = aDelay;
    return sequence.Bytes() + picture.Bytes();
}
inline std::string VC1() {
    return vc1::Sequence().Bytes() + vc1::EntryPoint() + vc1::Frame(0) + Content(40);
}

/// A file of VC-1 with a head (SMPTE ST 421, annex L); each test changes what it is about.
struct RCV {
    std::uint32_t mFrames = 100;
    unsigned mMark = 0xC5;
    std::string mStructC = Hex({0x4E, 0x29, 0x1A, 0x01}); ///< the main profile
    unsigned mSizeOfB = 12;
    std::uint32_t mWidth = 320;
    std::uint32_t mHeight = 240;
    unsigned mLevel = 2;
    bool mfConstant = false;
    std::uint32_t mRate = 0; ///< HRD_RATE
    std::uint32_t mFrameRate = 25;
    std::string mMedia = std::string(4000, '\x35');

    std::string Bytes() const {
        return Little(mFrames | std::uint32_t{mMark} << 24, 4) + Little(mStructC.size(), 4) + mStructC +
               Little(mHeight, 4) + Little(mWidth, 4) + Little(mSizeOfB, 4) +
               Little(std::uint32_t{mLevel} << 29 | (mfConstant ? 1U << 28 : 0U) | 0x1234, 4) +
               Little(mRate, 4) + Little(mFrameRate, 4) + mMedia;
    }
};

} // namespace videostream
