#include "ezFormats/elementary/MPEGAudioEltStreamParser.h"

#include "ezFormats/codecs/MPEGAudioHeader.h"
#include "ezFormats/detail/Limits.h"

#include "ezPlatform/media/MediaInfo.h"

#include <array>

namespace {

constexpr uint32 kNowhere = 0xFFFFFFFF;

constexpr uint32 kXing =
    0x58696E67; ///< "Xing": variable rate; the same header reads "Info" for a constant one
constexpr uint32 kVBRI = 0x56425249; ///< "VBRI": variable rate, always 32 bytes after the header
constexpr uint32 kOffsetVBRI = kMPEGAudioHeaderSize + 32;

constexpr uint32 kHashBase = 0x01000193; ///< odd, with bits far apart

uint32 PaddingOf(uint32 aWord) {
    ezMPEGAudioHeader header;
    return ezMPEGAudioHeader_Read(aWord, header) && header.mfPadded ? header.mSlotSize : 0;
}

} // namespace

/// What is remembered of the bytes passed by.
struct MPEGAudioEltStreamParser::Seen {
    /// A header of unstated rate.
    struct Free {
        uint32 mPosition = 0;
        uint32 mWord = 0; ///< 0: none
        uint32 mHash = 0; ///< of all bytes before it
    };

    std::array<Free, kMPEGAudio_FreeHeaderCount> mFree; ///< the latest, in a ring
    std::size_t mFreeNext = 0;
    uint32 mHash = 0;        ///< of all bytes so far
    uint32 mHashBefore = 0;  ///< without the latest byte
    uint32 mXing = kNowhere; ///< where the latest such header stands
    uint32 mVBRI = kNowhere;

    const Free& Back(std::size_t aSteps) const {
        return mFree[(mFreeNext + mFree.size() - aSteps) % mFree.size()];
    }
    /// The latest header before aNext that its frame may follow; one without a word where there is none.
    Free FindBefore(const Free& aNext) const;
    /// The hash of the bytes from one header to another.
    static uint32 sHashBetween(const Free& aFirst, const Free& aNext);
};

MPEGAudioEltStreamParser::MPEGAudioEltStreamParser(ezElementaryStreamInfo* aEltStreamInfo,
                                                   ezMediaInfo* aMediaInfo)
    : FrameChainEltStreamParser("MPEGAudio",
                                {kMPEGAudioHeaderSize, kMPEGAudioMinFrameSize, kMPEGAudioMaxFrameSize},
                                aEltStreamInfo, aMediaInfo) {}

MPEGAudioEltStreamParser::~MPEGAudioEltStreamParser() = default;

void MPEGAudioEltStreamParser::Restart() {
    mSeen = std::make_unique<Seen>();
}

bool MPEGAudioEltStreamParser::ReadHeader(uint32 aPosition, const unsigned char* aBytes, Header& aHeader) {
    const uint32 word =
        uint32{aBytes[0]} << 24 | uint32{aBytes[1]} << 16 | uint32{aBytes[2]} << 8 | aBytes[3];
    mSeen->mHashBefore = mSeen->mHash;
    mSeen->mHash = mSeen->mHash * kHashBase + aBytes[0] + 1;
    mSeen->mXing = word == kXing ? aPosition : mSeen->mXing;
    mSeen->mVBRI = word == kVBRI ? aPosition : mSeen->mVBRI;
    ezMPEGAudioHeader header;
    if (!ezMPEGAudioHeader_Read(word, header)) {
        return false;
    }
    aHeader.mDigest = word;
    aHeader.mFrameSize = header.mFrameSize;
    return true;
}

uint32 MPEGAudioEltStreamParser::Seen::sHashBetween(const Free& aFirst, const Free& aNext) {
    uint32 power = 1;
    uint32 square = kHashBase;
    for (uint32 distance = aNext.mPosition - aFirst.mPosition; distance != 0; distance /= 2) {
        power *= distance % 2 != 0 ? square : 1;
        square *= square;
    }
    return aNext.mHash - aFirst.mHash * power;
}

MPEGAudioEltStreamParser::Seen::Free MPEGAudioEltStreamParser::Seen::FindBefore(const Free& aNext) const {
    ezMPEGAudioHeader header;
    for (std::size_t steps = 1; steps <= mFree.size(); ++steps) {
        const Free& before = Back(steps);
        const uint32 distance = aNext.mPosition - before.mPosition; // huge for one that is not before
        if (ezMPEGAudioHeader_IsSameStream(before.mWord, aNext.mWord) &&
            ezMPEGAudioHeader_Read(before.mWord, header) && distance >= kMPEGAudioMinFrameSize &&
            distance <= header.mMaxFrameSize) {
            return before;
        }
    }
    return {};
}

/// In free format the frames have one length but for their padding: the distances of headers tell it. Sampled
/// sound that repeats itself has headers at equal distances too, but with the same bytes between them.
uint32 MPEGAudioEltStreamParser::InferFrameSize(uint32 aPosition, uint32 aDigest) {
    const Seen::Free here = {aPosition, aDigest, mSeen->mHashBefore};
    const Seen::Free before = mSeen->FindBefore(here);
    const Seen::Free first = before.mWord != 0 ? mSeen->FindBefore(before) : before;
    mSeen->mFree[mSeen->mFreeNext] = here;
    mSeen->mFreeNext = (mSeen->mFreeNext + 1) % mSeen->mFree.size();
    if (first.mWord == 0) {
        return 0;
    }
    const uint32 size = here.mPosition - before.mPosition - PaddingOf(before.mWord);
    const uint32 sizeBefore = before.mPosition - first.mPosition - PaddingOf(first.mWord);
    const bool fRepeated = Seen::sHashBetween(before, here) == Seen::sHashBetween(first, before);
    return size == sizeBefore && !fRepeated ? size + PaddingOf(aDigest) : 0;
}

bool MPEGAudioEltStreamParser::IsSameStream(uint32 aFirst, uint32 aSecond) const {
    return ezMPEGAudioHeader_IsSameStream(aFirst, aSecond);
}

void MPEGAudioEltStreamParser::Fill(ezMediaInfo& anInfo, uint32 aPosition, uint32 aFirst,
                                    uint32 aSecond) const {
    ezMPEGAudioHeader header;
    ezMPEGAudioHeader next;
    if (!ezMPEGAudioHeader_Read(aFirst, header) || !ezMPEGAudioHeader_Read(aSecond, next)) {
        return;
    }
    const bool fTagged = header.mLayer == 3 && (mSeen->mXing == aPosition + header.mTagOffset ||
                                                mSeen->mVBRI == aPosition + kOffsetVBRI);
    const bool fStated = header.mBitRate != 0 && header.mBitRate == next.mBitRate && !fTagged;
    anInfo.Set(kezInfo_AudioTrackCount, 1, true);
    anInfo.Set(kezInfo_AudioCodec, ezMPEGAudioHeader_CodecOf(header.mLayer), true);
    anInfo.Set(kezInfo_AudioSamplingRate, header.mSamplingRate, true);
    anInfo.Set(kezInfo_AudioChannelCount, header.mChannels, true);
    anInfo.Set(kezInfo_AudioBitRate, fStated ? header.mBitRate : kezMediaInfo_VariableRate, true);
}
