#include "ezFormats/detail/SoundRecord.h"

#include "ezFormats/detail/Limits.h"
#include "ezFormats/detail/MediaNumbers.h"

#include "ezPlatform/media/MediaInfo.h"

namespace {

/// The largest number would say that a rate varies.
void StoreNumber(ezMediaInfo& anInfo, const char* aKey, std::uint32_t aNumber) {
    if (aNumber != 0 && aNumber != kezMediaInfo_VariableRate) {
        anInfo.Set(aKey, aNumber, true);
    }
}

} // namespace

void SoundFacts::SetPackets(std::uint64_t aBytes, std::uint32_t aPacketBytes, std::uint32_t aPacketSamples) {
    mBytes = aBytes;
    const bool fPlausible =
        aPacketSamples == 1 || IsLengthPlausible(aPacketBytes, aPacketSamples, mSamplingRate);
    if (aPacketBytes != 0 && aPacketSamples != 0 && fPlausible) {
        mSamples = MediaNumber_Scale(aBytes, aPacketSamples, aPacketBytes);
        mBitRate = MediaNumber_BitRate(aPacketBytes, aPacketSamples, mSamplingRate);
    }
}

bool SoundFacts::IsLengthPlausible(std::uint64_t aBytes, std::uint64_t aSamples,
                                   std::uint32_t aSamplingRate) {
    const std::uint32_t rate = MediaNumber_BitRate(aBytes, aSamples, aSamplingRate);
    return kSound_MinBitRate <= rate && rate <= kSound_MaxBitRate;
}

void SoundFacts::HoldAgainst(std::uint64_t aBytes) {
    mBytes = aBytes;
    mSamples = IsLengthPlausible(aBytes, mSamples, mSamplingRate) ? mSamples : 0;
}

std::uint64_t SoundFacts::GetMilliseconds() const {
    const std::uint64_t milliseconds = MediaNumber_Scale(mSamples, 1000, mSamplingRate);
    return milliseconds <= kMedia_MaxSeconds * 1000 ? milliseconds : 0;
}

std::uint32_t SoundFacts::GetMeanBitRate() const {
    return GetMilliseconds() != 0 ? MediaNumber_BitRate(mBytes, mSamples, mSamplingRate) : 0;
}

void SoundFacts::Store(ezMediaInfo& anInfo) const {
    anInfo.Set(kezInfo_AudioTrackCount, 1, true);
    anInfo.Set(kezInfo_AudioCodec, mCodec, true);
    StoreNumber(anInfo, kezInfo_AudioChannelCount, mChannels);
    StoreNumber(anInfo, kezInfo_AudioBitsPerSample, mBitsPerSample <= kSound_MaxBits ? mBitsPerSample : 0);
    const std::uint64_t milliseconds = GetMilliseconds();
    if (milliseconds != 0) {
        anInfo.SetDuration(milliseconds, mDurationMethod);
        const std::uint64_t bound = MediaNumber_Scale(mBoundSamples, 1000, mSamplingRate);
        if (bound != 0) {
            anInfo.Set(kezInfo_DurationBound, bound, true);
        }
    }
    if (mCodec == "LPCM") {
        StoreNumber(anInfo, kezInfo_AudioBitRate, mSamplingRate);
        StoreNumber(anInfo, kezInfo_BitRate, mBitRate);
        return;
    }
    StoreNumber(anInfo, kezInfo_AudioSamplingRate, mSamplingRate);
    if (mBitRate != 0) {
        anInfo.Set(kezInfo_AudioBitRate, mBitRate, true);
    } else {
        anInfo.Set(kezInfo_AudioBitRate, kezMediaInfo_VariableRate, true);
        const std::uint32_t mean = GetMeanBitRate();
        StoreNumber(anInfo, kezInfo_AudioEstimatedBitRate, mean != 0 ? mean : mEstimatedBitRate);
        StoreNumber(anInfo, kezInfo_AudioMaxBitRate, mMaxBitRate);
    }
}
