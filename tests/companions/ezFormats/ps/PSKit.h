#pragma once

#include "ezFormats/ps/PSParser.h"

#include "companions/ezFormats/ChunkBytes.h"
#include "companions/ezFormats/codecs/MPEGVideoBytes.h"

#include "support/PsBytes.h"

#include <cstdint>
#include <string>
#include <vector>

/// Films as bytes, and what the parser says to them.
namespace ps {

constexpr std::uint64_t kFrame = kSecond / 25;

/// The start of MPEG-2 video of 720x576 at 25, of whole frames.
inline std::string MPEG2() {
    mpegvideo::Sequence sequence;
    return sequence.Bytes() + mpegvideo::Group() + mpegvideo::Picture().Bytes();
}
/// The same of MPEG-1 of 352x288.
inline std::string MPEG1() {
    mpegvideo::Sequence sequence;
    sequence.mWidth = 352;
    sequence.mHeight = 288;
    sequence.mAspect = 8;
    sequence.mBitRate = 2875;
    sequence.mfExtension = false;
    mpegvideo::Picture picture;
    picture.mfExtension = false;
    return sequence.Bytes() + mpegvideo::Group() + picture.Bytes();
}

/// Frames of pictures, one a pack, and of sound beside them, each with a stamp.
struct Film {
    bool mfMPEG1 = false;
    unsigned mFrames = 25;
    std::uint64_t mStart = kSecond / 2; ///< of the stamps; the clock of the packs is before
    unsigned mVideoStream = 0xE0;       ///< 0: none
    std::string mVideo = MPEG2();       ///< at the first frame
    unsigned mAudioStream = 0xC0;       ///< 0: none
    std::string mAudio = LayerII();     ///< a frame, after what the stream puts before it
    std::uint64_t mAudioTicks = kLayerIITicks;
    unsigned mScrambling = 0;
    std::string mHead;     ///< after the first pack header
    std::size_t mFill = 0; ///< bytes of each later frame of pictures

    std::string PackAt(std::uint64_t aClock) const { return mfMPEG1 ? PackMPEG1(aClock) : Pack(aClock); }
    std::string PacketOf(unsigned aStream, const std::string& aPayload, std::uint64_t aStamp) const {
        const std::uint64_t stamp = aStamp & ((std::uint64_t{1} << 33) - 1);
        return mfMPEG1 ? PacketMPEG1(aStream, aPayload, stamp)
                       : Packet(aStream, aPayload, stamp, mScrambling);
    }

    std::string Bytes() const {
        std::string bytes;
        std::uint64_t sound = 0;
        for (unsigned i = 0; i < mFrames; ++i) {
            const std::uint64_t now = i * kFrame;
            bytes += PackAt((mStart + now - kSecond / 4) & ((std::uint64_t{1} << 33) - 1));
            bytes += i == 0 ? mHead : "";
            const std::string later = mpegvideo::Code(0) + std::string(60 + mFill, '\x33');
            bytes += mVideoStream != 0 ? PacketOf(mVideoStream, i == 0 ? mVideo : later, mStart + now) : "";
            for (; mAudioStream != 0 && sound < now + kFrame; sound += mAudioTicks) {
                bytes += PacketOf(mAudioStream, mAudio, mStart + sound);
            }
        }
        return bytes;
    }
};

inline std::string Values(const std::string& aBytes, const std::vector<const char*>& aKeys,
                          const Delivery& aDelivery = Delivery()) {
    return chunks::Values<PSParser>(aBytes, aKeys, aDelivery);
}
inline std::string Length(const std::string& aBytes) {
    return Values(aBytes, {"dm", "md"});
}

} // namespace ps
