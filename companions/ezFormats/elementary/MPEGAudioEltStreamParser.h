#pragma once

#include "ezFormats/elementary/FrameChainEltStreamParser.h"

/// MPEG audio: layers I to III of MPEG-1 and MPEG-2, and layer III of MPEG-2.5.
///
/// Of its record: kezInfo_AudioTrackCount 1, kezInfo_AudioCodec "MP1", "MP2" or "MP3" by the layer,
/// kezInfo_AudioSamplingRate, kezInfo_AudioChannelCount, and kezInfo_AudioBitRate as the frames state it:
/// kezMediaInfo_VariableRate in free format, where two frames differ and where a Xing or VBRI header says
/// that it varies. Two frame headers make a stream. In free format it takes four at equal distances, and
/// frames that differ.
class EZFORMATS_API MPEGAudioEltStreamParser : public FrameChainEltStreamParser {
public:
    /// Both are owned from now on and may be null.
    explicit MPEGAudioEltStreamParser(ezElementaryStreamInfo* aEltStreamInfo = nullptr,
                                      ezMediaInfo* aMediaInfo = nullptr);
    ~MPEGAudioEltStreamParser() override;

protected:
    void Restart() override;
    bool ReadHeader(uint32 aPosition, const unsigned char* aBytes, Header& aHeader) override;
    uint32 InferFrameSize(uint32 aPosition, uint32 aDigest) override;
    bool IsSameStream(uint32 aFirst, uint32 aSecond) const override;
    void Fill(ezMediaInfo& anInfo, uint32 aPosition, uint32 aFirst, uint32 aSecond) const override;

private:
    struct Seen;

    std::unique_ptr<Seen> mSeen;
};
