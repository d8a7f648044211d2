#include "ezFormats/ts/TSPackets.h"

#include "ezFormats/mpegsystem/PESHeader.h"
#include "ezFormats/ts/TSLimits.h"

#include <algorithm>
#include <array>
#include <vector>

namespace {

constexpr unsigned char kSync = 0x47;
constexpr std::size_t kHeaderSize = 4;
constexpr std::size_t kStampSize = 4;
constexpr std::size_t kClockSize = 6;
constexpr std::array<std::size_t, 3> kSizes = {kTSPacket_Size, kTSPacket_StampedSize, kTSPacket_ParitySize};

/// transport_error_indicator: the packet says of itself that it is damaged.
bool IsDamaged(const unsigned char* aPacket) {
    return (aPacket[1] & 0x80U) != 0;
}

std::uint32_t Big32(const unsigned char* aBytes) {
    return std::uint32_t{aBytes[0]} << 24 | std::uint32_t{aBytes[1]} << 16 | std::uint32_t{aBytes[2]} << 8 |
           aBytes[3];
}

/// The adaptation field (2.4.3.4), of which so many bytes are there after its length.
void ReadAdaptation(const unsigned char* aField, std::size_t aSize, TSPacket* aPacket) {
    if (aSize == 0) {
        return;
    }
    aPacket->mfDiscontinuity = (aField[0] & 0x80U) != 0;
    if ((aField[0] & 0x10U) != 0 && aSize > kClockSize) {
        aPacket->mClock = std::uint64_t{Big32(aField + 1)} << 1 | aField[5] >> 7;
    }
}

/// What tells a stream of packets from bytes that look like it.
enum class Evidence { None, Packets, Tables };

/// The first section of a program association begins (2.4.4.3).
bool IsAssociation(const TSPacket& aPacket) {
    if (aPacket.mPID != 0 || !aPacket.mfStart || aPacket.mfScrambled || aPacket.mPayloadSize < 4) {
        return false;
    }
    const std::size_t section = std::size_t{aPacket.mPayload[0]} + 1;
    return section + 3 <= aPacket.mPayloadSize && aPacket.mPayload[section] == 0 &&
           (aPacket.mPayload[section + 1] & 0xC0U) == 0x80;
}

bool IsPacketOfStream(const TSPacket& aPacket) {
    PESHeader header;
    return aPacket.mfStart && !aPacket.mfScrambled && aPacket.mPayloadSize > kPESHeader_StartSize &&
           ReadPESHeader(aPacket.mPayload, aPacket.mPayloadSize, &header) &&
           header.mStreamID >= kStreamID_Private1;
}

Evidence EvidenceOf(const TSLayout& aLayout, const unsigned char* aBlock, std::size_t aSize) {
    TSPacketWalk walk(aLayout, aBlock, aSize, 0);
    Evidence evidence = Evidence::None;
    for (TSPacket packet; walk.Next(&packet);) {
        if (IsAssociation(packet)) {
            return Evidence::Tables;
        }
        evidence = IsPacketOfStream(packet) ? Evidence::Packets : evidence;
    }
    return evidence;
}

/// Where packets of one size may begin.
class Candidates {
public:
    explicit Candidates(std::size_t aPacketSize) : mPacketSize(aPacketSize) {}

    /// Counts for each place in a packet how many sync bytes stand there in a row.
    void Find(const unsigned char* aBlock, std::size_t aSize) {
        std::vector<std::uint8_t> runs(mPacketSize, 0);
        const std::size_t run = (kTS_SyncRun - 1) * mPacketSize;
        const std::size_t end = std::min<std::size_t>(aSize, kTS_SearchSize + run);
        std::size_t phase = 0;
        for (std::size_t place = 0; place < end && mStarts.size() < kTS_MaxCandidates; ++place) {
            std::uint8_t& count = runs[phase];
            count = aBlock[place] == kSync && count < kTS_SyncRun ? static_cast<std::uint8_t>(count + 1)
                    : aBlock[place] == kSync                      ? count
                                                                  : std::uint8_t{0};
            if (count == kTS_SyncRun && !Has(phase)) {
                mStarts.push_back(place - run);
            }
            phase = phase + 1 < mPacketSize ? phase + 1 : 0;
        }
    }
    /// The same in a file that is too short for so many: those that go on to its end.
    void FindShort(const unsigned char* aBlock, std::size_t aSize) {
        const std::size_t body = kTSPacket_Size;
        for (std::size_t phase = 0; phase < mPacketSize && mStarts.size() < kTS_MaxCandidates; ++phase) {
            std::size_t place = phase;
            std::uint32_t count = 0;
            for (; place < aSize && aBlock[place] == kSync; place += mPacketSize) {
                count += place + body <= aSize ? 1 : 0;
            }
            if (count >= kTS_ShortRun && place >= aSize) {
                mStarts.push_back(phase);
            }
        }
    }
    const std::vector<std::size_t>& GetStarts() const { return mStarts; }

private:
    bool Has(std::size_t aPhase) const {
        return std::any_of(mStarts.begin(), mStarts.end(),
                           [=](std::size_t aStart) { return aStart % mPacketSize == aPhase; });
    }

    std::size_t mPacketSize;
    std::vector<std::size_t> mStarts;
};

} // namespace

TSPacketWalk::TSPacketWalk(const TSLayout& aLayout, const unsigned char* aBlock, std::size_t aSize,
                           std::uint64_t aPosition)
    : mLayout(aLayout), mBlock(aBlock), mSize(aSize), mPosition(aPosition) {
    const std::size_t size = mLayout.mPacketSize;
    if (aPosition <= mLayout.mStart) {
        mPlace = static_cast<std::size_t>(std::min<std::uint64_t>(mLayout.mStart - aPosition, aSize));
    } else {
        mPlace = static_cast<std::size_t>((size - (aPosition - mLayout.mStart) % size) % size);
    }
}

/// Goes on to the next place at which a packet stands, and another one after it, if the block has room for
/// it. False where there is none.
bool TSPacketWalk::FindSync() {
    const std::size_t size = mLayout.mPacketSize;
    for (; mPlace <= mSize && mSize - mPlace >= kTSPacket_Size; ++mPlace) {
        const bool fNext = mSize - mPlace <= size || mBlock[mPlace + size] == kSync;
        if (mBlock[mPlace] == kSync && fNext) {
            return true;
        }
    }
    return false;
}

bool TSPacketWalk::Next(TSPacket* aPacket) {
    while (mPlace <= mSize && mSize - mPlace >= kTSPacket_Size) {
        if (mBlock[mPlace] != kSync && !FindSync()) {
            break;
        }
        const bool fRead = Read(aPacket);
        mPlace += mLayout.mPacketSize;
        if (fRead) {
            return true;
        }
    }
    return false;
}

bool TSPacketWalk::Read(TSPacket* aPacket) const {
    const unsigned char* const bytes = mBlock + mPlace;
    *aPacket = TSPacket();
    aPacket->mPosition = mPosition + mPlace;
    if (IsDamaged(bytes)) {
        return false;
    }
    aPacket->mPID = static_cast<std::uint16_t>((bytes[1] & 0x1FU) << 8 | bytes[2]);
    aPacket->mfStart = (bytes[1] & 0x40U) != 0;
    aPacket->mfScrambled = (bytes[3] & 0xC0U) != 0;
    aPacket->mContinuity = bytes[3] & 0xFU;
    if (mLayout.IsStamped() && mPlace >= kStampSize) {
        aPacket->mfStamp = true;
        aPacket->mStamp = Big32(bytes - kStampSize);
    }
    std::size_t place = kHeaderSize;
    if ((bytes[3] & 0x20U) != 0) {
        const std::size_t room = kTSPacket_Size - kHeaderSize - 1;
        const std::size_t size = bytes[kHeaderSize];
        if (size > room) {
            return false;
        }
        ReadAdaptation(bytes + kHeaderSize + 1, size, aPacket);
        place += 1 + size;
    }
    if ((bytes[3] & 0x10U) != 0 && aPacket->mPID != kTSPacket_NullPID) {
        aPacket->mPayload = bytes + place;
        aPacket->mPayloadSize = kTSPacket_Size - place;
    }
    return true;
}

std::optional<TSLayout> FindTSLayout(const unsigned char* aBlock, std::size_t aSize, bool afWhole) {
    std::optional<TSLayout> found;
    for (const std::size_t size : kSizes) {
        Candidates candidates(size);
        const bool fShort = afWhole && aSize < kTS_SyncRun * size;
        if (fShort) {
            candidates.FindShort(aBlock, aSize);
        } else {
            candidates.Find(aBlock, aSize);
        }
        for (const std::size_t start : candidates.GetStarts()) {
            const TSLayout layout = {size, start};
            const Evidence evidence = EvidenceOf(layout, aBlock, aSize);
            if (evidence == Evidence::Tables) {
                return layout;
            }
            if (evidence == Evidence::Packets && !fShort && !found) {
                found = layout;
            }
        }
    }
    return found;
}
