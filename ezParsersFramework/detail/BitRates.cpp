#include "detail/BitRates.h"

#include "ezPlatform/media/MediaInfo.h"

namespace {

/// A number of bits a second, so neither unknown nor undetermined.
bool IsRate(uint32 aRate) {
    return aRate != 0 && aRate != kezMediaInfo_VariableRate;
}

/// The rates of a record under the names that the steps use. Each step works on what the steps before it
/// left.
class BitRates {
public:
    explicit BitRates(ezMediaInfo& anInfo)
        : mInfo(anInfo),
          mfAudio(Get(kezInfo_AudioTrackCount) != 0),
          mfVideo(Get(kezInfo_HasVideoTrack) != 0),
          mAudio(Get(kezInfo_AudioBitRate)),
          mAudioMax(Get(kezInfo_AudioMaxBitRate)),
          mVideo(Get(kezInfo_VideoBitRate)),
          mVideoMax(Get(kezInfo_VideoMaxBitRate)),
          mAudioEstimate(Get(kezInfo_AudioEstimatedBitRate)),
          mVideoEstimate(Get(kezInfo_VideoEstimatedBitRate)),
          mWhole(Get(kezInfo_BitRate)),
          mWholeMax(Get(kezInfo_MaxBitRate)),
          mWholeEstimate(Get(kezInfo_EstimatedBitRate)) {}

    void Complete() {
        CompleteMaximum(kezInfo_AudioMaxBitRate, mAudioMax, mAudio, mAudioEstimate);
        CompleteMaximum(kezInfo_VideoMaxBitRate, mVideoMax, mVideo, mVideoEstimate);
        CompleteEstimate(kezInfo_AudioEstimatedBitRate, mAudioEstimate, mAudio);
        CompleteEstimate(kezInfo_VideoEstimatedBitRate, mVideoEstimate, mVideo);
        CompleteWholeMaximum();
        MarkVariable(kezInfo_AudioBitRate, mAudio, mAudioMax);
        MarkVariable(kezInfo_VideoBitRate, mVideo, mVideoMax);
        CompleteWhole();
        if (mWholeEstimate == 0) {
            CompleteWholeEstimate();
        } else {
            DivideGivenEstimate();
        }
    }

private:
    uint32 Get(const char* aKey) const { return mInfo.GetUInt32(aKey, 0); }
    void Write(const char* aKey, uint32 aRate) { mInfo.Set(aKey, aRate, true); }

    void CompleteMaximum(const char* aKey, uint32& aMaximum, uint32 aRate, uint32 anEstimate) {
        if (aMaximum == 0) {
            aMaximum = IsRate(aRate) ? aRate : IsRate(anEstimate) ? anEstimate : 0;
            Write(aKey, aMaximum);
        }
    }

    void CompleteEstimate(const char* aKey, uint32& anEstimate, uint32 aRate) {
        if (anEstimate == 0) {
            anEstimate = aRate; // an undetermined rate too
            Write(aKey, anEstimate);
        }
    }

    void CompleteWholeMaximum() {
        if (mWholeMax == 0) {
            const bool fKnown = (mAudioMax != 0 || !mfAudio) && (mVideoMax != 0 || !mfVideo);
            mWholeMax = fKnown ? mAudioMax + mVideoMax : 0;
            Write(kezInfo_MaxBitRate, mWholeMax);
        }
    }

    void MarkVariable(const char* aKey, uint32& aRate, uint32 aMaximum) {
        if (aMaximum != 0 && aRate != aMaximum) {
            aRate = kezMediaInfo_VariableRate;
            Write(aKey, aRate);
        }
    }

    void CompleteWhole() {
        if (mWhole == 0) {
            if ((IsRate(mAudio) || !mfAudio) && (IsRate(mVideo) || !mfVideo)) {
                mWhole = mAudio + mVideo;
            } else if (mAudio == kezMediaInfo_VariableRate || !mfAudio ||
                       mVideo == kezMediaInfo_VariableRate || !mfVideo) {
                mWhole = kezMediaInfo_VariableRate;
            }
            Write(kezInfo_BitRate, mWhole);
        }
    }

    void CompleteWholeEstimate() {
        const bool fKnown = (mAudioEstimate != 0 || !mfAudio) && (mVideoEstimate != 0 || !mfVideo);
        Write(kezInfo_EstimatedBitRate, fKnown ? mAudioEstimate + mVideoEstimate : 0);
    }

    void DivideGivenEstimate() {
        if (!mfAudio || !mfVideo) {
            return;
        }
        if (mAudioEstimate == 0 && mVideoEstimate != 0) {
            Write(kezInfo_AudioEstimatedBitRate, mWholeEstimate - mVideoEstimate);
        }
        if (mAudioEstimate != 0 && mVideoEstimate == 0) {
            Write(kezInfo_VideoEstimatedBitRate, mWholeEstimate - mAudioEstimate);
        }
    }

    ezMediaInfo& mInfo;
    bool mfAudio;
    bool mfVideo;
    uint32 mAudio;
    uint32 mAudioMax;
    uint32 mVideo;
    uint32 mVideoMax;
    uint32 mAudioEstimate;
    uint32 mVideoEstimate;
    uint32 mWhole;
    uint32 mWholeMax;
    uint32 mWholeEstimate;
};

} // namespace

void CompleteBitRates(ezMediaInfo& anInfo) {
    BitRates(anInfo).Complete();
}
