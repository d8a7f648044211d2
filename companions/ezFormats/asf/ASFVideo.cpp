#include "ezFormats/asf/ASFVideo.h"

#include "ezFormats/asf/ASFLimits.h"
#include "ezFormats/codecs/BitmapVideo.h"
#include "ezFormats/codecs/FrameVideo.h"
#include "ezFormats/detail/MediaBytes.h"

#include "ezBytes/ASFPackets.h"

#include <algorithm>
#include <optional>

namespace {

using Bytes = std::vector<unsigned char>;

/// Joins the pieces of the first media object of a stream that begins in the packets.
class FirstObject {
public:
    explicit FirstObject(unsigned aStream) : mStream(aStream) {}

    void Add(ByteReader aPacket) {
        ASFPacket packet(aPacket);
        for (ASFPayload payload; !mfDone && packet.Next(&payload);) {
            if (payload.mStream == mStream) {
                AddPiece(payload, packet.GetContent());
            }
        }
    }
    bool IsDone() const { return mfDone; }
    const Bytes& Get() const { return mBytes; }

private:
    /// The pieces of an object follow one another, whatever of other streams lies between.
    void AddPiece(const ASFPayload& aPayload, ByteReader aPiece) {
        const bool fNext = mfBegun ? aPayload.mObject == mObject && aPayload.mOffset == mBytes.size()
                                   : aPayload.mOffset == 0;
        mfDone = mfBegun && !fNext;
        if (!fNext) {
            return;
        }
        mfBegun = true;
        mObject = aPayload.mObject;
        const std::size_t had = mBytes.size();
        mBytes.resize(
            had + static_cast<std::size_t>(std::min<std::uint64_t>(aPiece.GetLeft(), kASF_MaxFrame - had)));
        mfDone = !aPiece.Read(mBytes.data() + had, mBytes.size() - had) || mBytes.size() == kASF_MaxFrame;
    }

    unsigned mStream;
    std::uint32_t mObject = 0;
    Bytes mBytes;
    bool mfBegun = false;
    bool mfDone = false;
};

/// MPEG2VIDEOINFO holds a sequence header, unless that stands in the stream alone.
Bytes ReadSequence(ByteReader aReader) {
    aReader.Skip(4); // start_time_code
    const std::uint32_t size = aReader.ReadLittle32();
    aReader.Skip(4 + 4 + 4); // profile, level, flags: the header tells them
    Bytes sequence(
        static_cast<std::size_t>(std::min<std::uint64_t>(std::min(size, kASF_MaxFrame), aReader.GetLeft())));
    if (!aReader.Read(sequence.data(), sequence.size())) {
        sequence.clear();
    }
    return sequence;
}

/// What a codec's own headers tell goes before what holds them, which recorders of television write once for
/// all that follows.
void TakeHeaders(std::optional<VideoFacts> aFound, VideoFacts& aVideo) {
    if (aFound) {
        aFound->Complete(aVideo);
        aVideo = *aFound;
    }
}

/// VIDEOINFOHEADER, VIDEOINFOHEADER2 or MPEG2VIDEOINFO, of which each begins as the one before.
VideoFacts ReadInfo(const ASFStream& aStream) {
    ByteReader info = aStream.mFormat;
    info.Skip(16 + 16 + 4 + 4); // the source and the target, rates of bits and of errors
    const std::uint64_t time = info.ReadLittle(8);
    VideoRatio display;
    if (aStream.mForm != ASFForm::Video) {
        info.Skip(4 + 4); // how it is interlaced, and protected
        const std::uint32_t width = info.ReadLittle32();
        display = VideoRatio::Of(width, info.ReadLittle32());
        info.Skip(4 + 4); // control, reserved
    }
    VideoFacts video = BitmapVideo_Read(info, nullptr, 0).value_or(VideoFacts());
    video.mFrameRate =
        video.mFrameRate != 0 ? video.mFrameRate : VideoClock_FrameRate(time, kASF_TicksPerSecond);
    video.mPixelAspect = video.mPixelAspect.IsKnown()
                             ? video.mPixelAspect
                             : VideoRatio::OfPixel(display, video.mWidth, video.mHeight);
    if (aStream.mSubtype == kASF_SubtypeMPEG2Video || aStream.mForm == ASFForm::MPEG2Video) {
        video.mCodec = "MPEG2";
    }
    if (aStream.mForm == ASFForm::MPEG2Video) {
        info.Skip(40); // the size and what goes with it
        const Bytes sequence = ReadSequence(info);
        TakeHeaders(FrameVideo_Read(video.mCodec, sequence.data(), sequence.size()), video);
    }
    return video;
}

Bytes ReadFirstObject(MediaBytes& aBytes, const ASFData& aData, std::uint32_t aPacketSize, unsigned aStream) {
    FirstObject object(aStream);
    aBytes.Load(aData.mStart, kASF_FrameWindow);
    for (std::uint64_t i = 0; i < kASF_FrameWindow / aPacketSize && !object.IsDone(); ++i) {
        object.Add(TakeASFPacket(aBytes, aData.mStart + i * aPacketSize, aPacketSize));
    }
    return object.Get();
}

} // namespace

VideoFacts ReadASFVideo(const ASFStream& aStream) {
    if (aStream.mForm != ASFForm::Own) {
        return ReadInfo(aStream);
    }
    ByteReader format = aStream.mFormat;
    VideoFacts size;
    size.mWidth = format.ReadLittle32();
    size.mHeight = format.ReadLittle32();
    size = format.HasFailed() ? VideoFacts() : size;
    format.Skip(1 + 2); // reserved, and the size of what follows, which is the rest
    VideoFacts video = BitmapVideo_Read(format, nullptr, 0).value_or(VideoFacts());
    video.Complete(size);
    return video;
}

void TakeASFFrame(MediaBytes& aBytes, const ByteReader& aRest, const ASFFileProperties& aFile,
                  unsigned aStream, std::uint32_t& aBudget, VideoFacts& aVideo) {
    const bool fTold = !aVideo.mProfile.IsEmpty() && aVideo.mScan != nullptr;
    if (fTold || aFile.mPacketSize == 0 || !FrameVideo_Tells(aVideo.mCodec)) {
        return;
    }
    const ASFData data = FindASFData(aRest, aBudget);
    if (data.mStart == 0) {
        return;
    }
    const Bytes frame = ReadFirstObject(aBytes, data, aFile.mPacketSize, aStream);
    TakeHeaders(FrameVideo_Read(aVideo.mCodec, frame.data(), frame.size()), aVideo);
}
