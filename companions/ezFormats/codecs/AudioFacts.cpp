#include "ezFormats/codecs/AudioFacts.h"

void AudioFacts::Complete(const AudioFacts& aFacts) {
    if (mCodec.IsEmpty()) {
        mCodec = aFacts.mCodec;
    }
    mSamplingRate = mSamplingRate != 0 ? mSamplingRate : aFacts.mSamplingRate;
    mChannels = mChannels != 0 ? mChannels : aFacts.mChannels;
    mBitsPerSample = mBitsPerSample != 0 ? mBitsPerSample : aFacts.mBitsPerSample;
    if ((mBitRate | mMaxBitRate | mEstimatedBitRate) == 0) {
        mBitRate = aFacts.mBitRate;
        mMaxBitRate = aFacts.mMaxBitRate;
        mEstimatedBitRate = aFacts.mEstimatedBitRate;
    }
}
