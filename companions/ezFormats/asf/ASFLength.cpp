#include "ezFormats/asf/ASFLength.h"

#include "ezFormats/asf/ASFLimits.h"
#include "ezFormats/detail/Limits.h"
#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/detail/MediaNumbers.h"
#include "ezFormats/detail/SoundRecord.h"

#include "ezBytes/ASFPackets.h"

#include "ezPlatform/base/Checked.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::uint32_t kMilli = 1000;

bool IsPlausible(std::uint64_t aMilliseconds, std::uint64_t aBytes) {
    return aMilliseconds != 0 && aMilliseconds <= kMedia_MaxSeconds * kMilli &&
           SoundFacts::IsLengthPlausible(aBytes, aMilliseconds, kMilli);
}

/// When a stream's media objects are presented, as far as the packets tell that were looked at.
struct Times {
    std::uint32_t mLast = 0;
    std::uint32_t mStep = 0; ///< from the one before
    bool mfAny = false;

    void Add(const ASFPayload& aPayload) {
        if (mfAny && aPayload.mTime <= mLast) {
            return;
        }
        mStep = mfAny && aPayload.mStep == 0 ? aPayload.mTime - mLast : aPayload.mStep;
        mLast = aPayload.mTime;
        mfAny = true;
    }
    /// Where the last one ends, if it is as long as the one before.
    std::uint64_t GetEnd() const { return std::uint64_t{mLast} + mStep; }
};

/// The streams of sound and video of a file.
class Presented {
public:
    explicit Presented(const ASFHeader& aHeader) : mHeader(aHeader) {}

    void Add(ByteReader aPacket) {
        ASFPacket packet(aPacket);
        for (ASFPayload payload; packet.Next(&payload);) {
            if (payload.mfTimed && Plays(payload.mStream)) {
                mTimes[payload.mStream].Add(payload);
            }
        }
    }
    /// Where the last of them ends; 0 where none was found.
    std::uint64_t GetEnd() const {
        std::uint64_t end = 0;
        for (const Times& times : mTimes) {
            end = times.mfAny ? std::max(end, times.GetEnd()) : end;
        }
        return end;
    }

private:
    bool Plays(unsigned aNumber) const {
        return std::any_of(mHeader.mStreams.begin(), mHeader.mStreams.end(),
                           [aNumber](const ASFStreamFacts& aStream) {
                               return aStream.mNumber == aNumber && aStream.mfDescribed &&
                                      aStream.mKind != ASFStreamKind::Other;
                           });
    }

    const ASFHeader& mHeader;
    std::array<Times, kASF_MaxStreamNumber + 1> mTimes; ///< by the number of the stream
};

/// When the first packet begins to play: after the preroll, but for captures that began in the middle.
std::uint64_t StartOf(MediaBytes& aBytes, const ASFData& aData, const ASFHeader& aHeader) {
    const std::uint64_t preroll = aHeader.mFile.mPreroll;
    ASFPacket packet(TakeASFPacket(aBytes, aData.mStart, aHeader.mFile.mPacketSize));
    for (ASFPayload payload; packet.Next(&payload);) {
        if (payload.mfTimed) {
            return payload.mTime >= ezSaturating_Add64(preroll, kASF_MinStart) ? payload.mTime : preroll;
        }
    }
    return preroll;
}

/// What the last packets say, of which some are read at once.
std::uint64_t ReadLastPackets(MediaBytes& aBytes, const ASFData& aData, const ASFHeader& aHeader) {
    const std::uint32_t size = aHeader.mFile.mPacketSize;
    const std::uint64_t atOnce = std::max<std::uint64_t>(kASF_TailSize / std::max<std::uint32_t>(size, 1), 1);
    std::uint64_t count = size != 0 ? aData.mSize / size : 0;
    for (std::uint32_t i = 0; i < kASF_MaxTails && count != 0; ++i) {
        const std::uint64_t first = count - std::min(count, atOnce);
        aBytes.Load(aData.mStart + first * size,
                    static_cast<std::size_t>(std::min<std::uint64_t>((count - first) * size, kASF_TailSize)));
        Presented presented(aHeader);
        for (std::uint64_t packet = first; packet < count; ++packet) {
            presented.Add(TakeASFPacket(aBytes, aData.mStart + packet * size, size));
        }
        const std::uint64_t end = presented.GetEnd();
        if (end != 0) {
            const std::uint64_t start = StartOf(aBytes, aData, aHeader);
            return end > start ? end - start : 0;
        }
        count = first;
    }
    return 0;
}

/// Bits a second of all streams together; 0 where that is not told.
std::uint64_t StatedBitRate(const ASFHeader& aHeader) {
    std::uint64_t sum = 0;
    for (const ASFStreamFacts& stream : aHeader.mStreams) {
        const bool fPlays = stream.mfDescribed && stream.mKind != ASFStreamKind::Other;
        if (fPlays && stream.GetBitRate() < kASF_MinBitRate) {
            return aHeader.mFile.mMaxBitRate != UINT32_MAX ? aHeader.mFile.mMaxBitRate : 0;
        }
        sum += fPlays ? stream.GetBitRate() : 0;
    }
    return sum;
}

/// Bytes of the packets that a file of known size has after its header.
std::uint64_t PacketBytes(const ByteReader& aRest, const ASFFileProperties& aFile) {
    if (aFile.mfBroadcast || aFile.mPackets == 0 || aFile.mPacketSize == 0) {
        return aRest.GetLeft();
    }
    return std::min(MediaNumber_Scale(aFile.mPackets, aFile.mPacketSize, 1), aRest.GetLeft());
}

} // namespace

ASFLength MeasureASF(MediaBytes& aBytes, const ByteReader& aRest, const ASFHeader& aHeader,
                     std::uint32_t& aBudget) {
    ASFLength length;
    length.mMilliseconds = aHeader.mFile.GetMilliseconds();
    if (!aBytes.GetSize()) {
        length.mMilliseconds = length.mMilliseconds <= kMedia_MaxSeconds * kMilli ? length.mMilliseconds : 0;
        return length;
    }
    length.mBytes = PacketBytes(aRest, aHeader.mFile);
    if (IsPlausible(length.mMilliseconds, length.mBytes)) {
        return length;
    }
    ASFData data = FindASFData(aRest, aBudget);
    const std::uint64_t left = aBytes.GetEnd() - std::min(aBytes.GetEnd(), data.mStart);
    const bool fStated = data.mSize >= aHeader.mFile.mPacketSize && data.mSize <= left;
    data.mSize = data.mStart == 0 ? 0 : fStated ? data.mSize : left;
    length.mBytes = data.mSize;
    length.mMilliseconds = ReadLastPackets(aBytes, data, aHeader);
    length.mMethod = "last frame";
    if (!IsPlausible(length.mMilliseconds, length.mBytes)) {
        length.mMilliseconds =
            MediaNumber_Scale(length.mBytes, std::uint64_t{8} * kMilli, StatedBitRate(aHeader));
        length.mMethod = "estimate: size and stated rate";
        length.mMilliseconds = IsPlausible(length.mMilliseconds, length.mBytes) ? length.mMilliseconds : 0;
    }
    return length;
}
