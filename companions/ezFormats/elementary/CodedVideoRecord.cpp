#include "ezFormats/elementary/CodedVideoRecord.h"

#include "ezPlatform/media/MediaInfo.h"

void CodedVideo_Store(const ezCodedVideo& aVideo, ezMediaInfo& anInfo) {
    const bool fFits = aVideo.mBitRate < kezMediaInfo_VariableRate;
    const std::uint32_t bitRate = fFits ? static_cast<std::uint32_t>(aVideo.mBitRate) : 0;
    anInfo.Set(kezInfo_HasVideoTrack, 1, true);
    anInfo.Set(kezInfo_VideoCodec, aVideo.mCodec, true);
    anInfo.Set(kezInfo_PictureWidth, aVideo.mWidth, true);
    anInfo.Set(kezInfo_PictureHeight, aVideo.mHeight, true);
    if (fFits || !aVideo.mfConstantRate) {
        anInfo.Set(kezInfo_VideoBitRate, aVideo.mfConstantRate ? bitRate : kezMediaInfo_VariableRate, true);
    }
    if (bitRate != 0 && !aVideo.mfConstantRate) {
        anInfo.Set(kezInfo_VideoMaxBitRate, bitRate, true);
    }
}
