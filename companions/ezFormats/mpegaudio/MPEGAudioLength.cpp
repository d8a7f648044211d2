#include "ezFormats/mpegaudio/MPEGAudioLength.h"

#include "ezBytes/ByteReader.h"

#include "ezFormats/mpegaudio/MPEGAudioLimits.h"
#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace {

constexpr std::uint64_t kMilli = 1000;

/// Encoders whose part after the Xing header states encoder delay and padding.
constexpr std::array<std::string_view, 4> kEncoders = {"LAME", "Lavf", "Lavc", "L3.9"};

/// Encoder delay and padding, before and after the music: samples, twelve bits each.
std::uint32_t ReadDelayAndPadding(ByteReader& aTag) {
    constexpr std::uint64_t kBetween =
        17; // the rest of the encoder's name, method, filter, peak, gains, flags, rate
    const ezCString encoder = aTag.ReadText(4);
    aTag.Skip(kBetween);
    const auto both = static_cast<std::uint32_t>(aTag.ReadBig(3));
    const bool fOne = std::any_of(kEncoders.begin(), kEncoders.end(),
                                  [&](std::string_view anEncoder) { return encoder.View() == anEncoder; });
    return fOne && !aTag.HasFailed() ? (both >> 12) + (both & 0xFFF) : 0;
}

void ReadXing(ByteReader& aTag, MPEGAudioCount& aCount) {
    const std::uint32_t flags = aTag.ReadBig32();
    aCount.mFrames = (flags & 1) != 0 ? aTag.ReadBig32() : 0;
    aCount.mBytes = (flags & 2) != 0 ? aTag.ReadBig32() : 0;
    if (aTag.HasFailed()) {
        aCount.mFrames = 0;
        return;
    }
    // A frame of a low rate may end before these.
    aTag.Skip((flags & 4) != 0 ? 100 : 0); // table of contents
    aTag.Skip((flags & 8) != 0 ? 4 : 0);   // quality
    aCount.mUnheard = ReadDelayAndPadding(aTag);
}

void ReadVBRI(ByteReader& aTag, MPEGAudioCount& aCount) {
    aTag.Skip(6); // version, delay, quality
    aCount.mBytes = aTag.ReadBig32();
    aCount.mFrames = aTag.ReadBig32();
    if (aTag.HasFailed()) {
        aCount.mFrames = 0;
    }
}

/// A reader of a frame from a place of it on.
ByteReader ReaderAt(ByteSource& aBytes, const MPEGAudioFrame& aFrame, std::uint32_t aPlace) {
    ByteReader reader(aBytes);
    reader.Skip(aFrame.mPosition);
    reader = reader.Take(std::min<std::uint64_t>(aFrame.mSize, reader.GetLeft()));
    reader.Skip(aPlace);
    return reader;
}

/// Bytes a second, rounded down; at least 1.
std::uint64_t SpeedOf(std::uint64_t aBytes, std::uint64_t aFrames, const ezMPEGAudioHeader& aHeader) {
    return std::max<std::uint64_t>(1, aBytes * aHeader.mSamplingRate /
                                          std::max<std::uint64_t>(1, aFrames * aHeader.mSampleCount));
}

/// Bits a second; no frame that states its rate has more than its layer's highest.
std::uint32_t RateOf(std::uint64_t aBytes, std::uint64_t aFrames, const ezMPEGAudioHeader& aHeader) {
    const std::uint64_t samples = std::max<std::uint64_t>(1, aFrames * aHeader.mSampleCount);
    const std::uint64_t rate = 8 * std::min(aBytes, kMPEGAudio_MaxFileSize) * aHeader.mSamplingRate / samples;
    const std::uint32_t most = aHeader.mBitRate != 0 ? aHeader.mMaxBitRate : kezMediaInfo_VariableRate - 1;
    return static_cast<std::uint32_t>(std::min<std::uint64_t>(rate, most));
}

/// The time of so many bytes, rounded up; aSpeed is not 0.
std::uint64_t Milliseconds(std::uint64_t aBytes, std::uint64_t aSpeed) {
    const std::uint64_t bytes = std::min(aBytes, UINT64_MAX / kMilli); // no size that a file has
    return bytes * kMilli / aSpeed + (bytes * kMilli % aSpeed != 0 ? 1 : 0);
}

MPEGAudioLength LengthOfSamples(std::uint64_t aFrames, std::uint32_t anUnheard,
                                const ezMPEGAudioHeader& aHeader) {
    const std::uint64_t samples = aFrames * aHeader.mSampleCount;
    MPEGAudioLength length;
    length.mfKnown = true;
    const std::uint64_t heard = anUnheard < samples ? samples - anUnheard : samples;
    length.mMilliseconds = heard * kMilli / aHeader.mSamplingRate;
    return length;
}

/// What a count of frames can take, in bytes.
struct Bounds {
    std::uint64_t mLeast;
    std::uint64_t mMost;

    bool Hold(std::uint64_t aSize) const { return aSize >= mLeast && aSize <= mMost; }
};

/// True when all frames have one size but for padding.
bool HasOneSize(const MPEGAudioCount& aCount, const MPEGAudioFrame& aSound) {
    return aSound.mHeader.mFrameSize == 0 || aCount.mKind == MPEGAudioCount::Kind::Constant;
}

/// Of the frames alone.
Bounds BoundsOfFrames(const MPEGAudioCount& aCount, const MPEGAudioFrame& aSound) {
    const ezMPEGAudioHeader& header = aSound.mHeader;
    const std::uint64_t frames = aCount.mFrames;
    if (HasOneSize(aCount, aSound)) {
        const std::uint64_t plain = aSound.mSize - (header.mfPadded ? header.mSlotSize : 0);
        return {frames * plain, frames * (plain + header.mSlotSize) + header.mMaxFrameSize};
    }
    return {frames * header.mMinFrameSize, (frames + 1) * header.mMaxFrameSize};
}

/// Of a file that holds them: what stands after the last frame may be a tag that is not known.
Bounds BoundsOfSound(const MPEGAudioCount& aCount, const MPEGAudioFrame& aSound) {
    const Bounds frames = BoundsOfFrames(aCount, aSound);
    return {frames.mLeast, HasOneSize(aCount, aSound) ? 2 * frames.mMost : frames.mMost};
}

} // namespace

void MPEGAudioPlaces::Take(const MPEGAudioSurvey& aPlace) {
    const auto isSlower = [](const MPEGAudioSurvey& aLeft, const MPEGAudioSurvey& aRight) {
        return aLeft.mBytes * aRight.mFrames < aRight.mBytes * aLeft.mFrames;
    };
    mSlowest = isSlower(aPlace, mSlowest) ? aPlace : mSlowest;
    mFastest = isSlower(mFastest, aPlace) ? aPlace : mFastest;
}

MPEGAudioCount ReadMPEGAudioCount(ByteSource& aBytes, const MPEGAudioFrame& aFrame) {
    constexpr std::uint32_t kPlaceOfVBRI = kMPEGAudioHeaderSize + 32;
    MPEGAudioCount count;
    if (aFrame.mHeader.mLayer != 3) {
        return count;
    }
    ByteReader tag = ReaderAt(aBytes, aFrame, aFrame.mHeader.mTagOffset);
    const ezCString name = tag.ReadText(4);
    if (name == "Xing" || name == "Info") {
        count.mKind = name == "Info" ? MPEGAudioCount::Kind::Constant : MPEGAudioCount::Kind::Variable;
        ReadXing(tag, count);
        return count;
    }
    tag = ReaderAt(aBytes, aFrame, kPlaceOfVBRI);
    if (tag.ReadText(4) == "VBRI") {
        count.mKind = MPEGAudioCount::Kind::Variable;
        ReadVBRI(tag, count);
    }
    return count;
}

std::uint64_t SizeOfCount(const MPEGAudioCount& aCount, const MPEGAudioFrame& aSound) {
    const Bounds bounds = BoundsOfFrames(aCount, aSound);
    if (aCount.mFrames == 0) {
        return 0;
    }
    if (bounds.Hold(aCount.mBytes)) {
        return aCount.mBytes;
    }
    return HasOneSize(aCount, aSound) ? bounds.mMost : 0;
}

MPEGAudioLength LengthOfCount(const MPEGAudioCount& aCount, const MPEGAudioFrame& aSound,
                              const MPEGAudioExtent& anExtent) {
    const ezMPEGAudioHeader& header = aSound.mHeader;
    const bool fBytes = BoundsOfFrames(aCount, aSound).Hold(aCount.mBytes);
    if (aCount.mFrames == 0) {
        return {};
    }
    MPEGAudioLength length = LengthOfSamples(aCount.mFrames, aCount.mUnheard, header);
    length.mMethod = "header";
    length.mAverageRate = RateOf(aCount.mBytes, aCount.mFrames, header) * (fBytes ? 1 : 0);
    if (!anExtent.mMediaSize) {
        return length;
    }
    // Some encoders count a frame more than they write.
    const bool fCut = aCount.mBytes > *anExtent.mMediaSize + kMPEGAudioMaxFrameSize;
    const bool fMore = anExtent.mfGoesOn || anExtent.mSoundSize / 2 > aCount.mBytes;
    if (fBytes && (fCut || fMore)) {
        length.mMilliseconds =
            Milliseconds(anExtent.mSoundSize, SpeedOf(aCount.mBytes, aCount.mFrames, header));
        length.mMethod = fCut ? "estimate: the header's count, of a cut file"
                              : "estimate: the header's count, of a part of the file";
        return length;
    }
    if (anExtent.mfGoesOn || !BoundsOfSound(aCount, aSound).Hold(anExtent.mSoundSize)) {
        return {};
    }
    if (!fBytes) {
        length.mAverageRate = RateOf(anExtent.mSoundSize, aCount.mFrames, header);
    }
    return length;
}

MPEGAudioLength LengthOfFrames(const MPEGAudioSurvey& aFrames, const MPEGAudioCount& aCount,
                               const MPEGAudioFrame& aSound) {
    MPEGAudioLength length = LengthOfSamples(aFrames.mFrames, aCount.mUnheard, aSound.mHeader);
    length.mMethod = "counted";
    length.mAverageRate = RateOf(aFrames.mBytes, aFrames.mFrames, aSound.mHeader);
    return length;
}

MPEGAudioLength LengthOfRate(std::uint64_t aSize, const MPEGAudioSurvey& anAll,
                             const MPEGAudioFrame& aSound) {
    const ezMPEGAudioHeader& header = aSound.mHeader;
    const std::uint64_t size = std::min(aSize, kMPEGAudio_MaxFileSize);
    MPEGAudioLength length;
    length.mfKnown = true;
    length.mMethod = "constant rate";
    length.mAverageRate = RateOf(anAll.mBytes, anAll.mFrames, header);
    if (header.mBitRate != 0) {
        length.mMilliseconds = size * 8 * kMilli / header.mBitRate;
        return length;
    }
    const std::uint64_t samples =
        size * anAll.mFrames / std::max<std::uint64_t>(1, anAll.mBytes) * header.mSampleCount;
    length.mMilliseconds = samples * kMilli / header.mSamplingRate;
    return length;
}

MPEGAudioLength LengthOfSize(std::uint64_t aSize, const MPEGAudioSurvey& anAll,
                             const MPEGAudioPlaces& aPlaces, const MPEGAudioFrame& aSound) {
    const ezMPEGAudioHeader& header = aSound.mHeader;
    const bool fConstant = anAll.mLowestRate == anAll.mHighestRate && header.mBitRate != 0;
    // A stated rate is exact, where the mean of a few frames depends on which of them are padded.
    const std::uint64_t speed = fConstant
                                    ? anAll.mLowestRate / 8
                                    : SpeedOf(aPlaces.mSlowest.mBytes, aPlaces.mSlowest.mFrames, header);
    const std::uint64_t highest =
        std::max(speed, SpeedOf(aPlaces.mFastest.mBytes, aPlaces.mFastest.mFrames, header));
    MPEGAudioLength length;
    length.mfKnown = true;
    length.mMilliseconds = Milliseconds(aSize, speed);
    length.mBound = fConstant ? 0 : length.mMilliseconds - Milliseconds(aSize, highest);
    length.mMethod = ezCString::Format("estimate: size and %s rate of %llu frames",
                                       fConstant ? "the one" : "the lowest mean",
                                       static_cast<unsigned long long>(anAll.mFrames));
    length.mAverageRate = RateOf(anAll.mBytes, anAll.mFrames, header);
    return length;
}
