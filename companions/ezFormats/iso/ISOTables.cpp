#include "ezFormats/iso/ISOTables.h"

#include "ezBytes/BoxWalk.h"
#include "ezFormats/detail/MediaNumbers.h"
#include "ezFormats/iso/ISOLimits.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace {

/// The time-to-sample table ("stts"; ISO/IEC 14496-12, 8.6.1.2): samples and ticks, by runs of samples of one
/// duration. Of more than count the first ones tell whether the durations differ, and no sum.
void ReadTimes(ByteReader aBox, ISOTables& aTables) {
    aBox.Skip(4); // version and flags
    const std::uint32_t runs = aBox.ReadBig32();
    const std::uint32_t read = std::min(runs, kISO_MaxTimeRuns);
    std::uint64_t samples = 0;
    std::uint64_t ticks = 0;
    std::uint32_t least = UINT32_MAX;
    std::uint32_t most = 0;
    for (std::uint32_t i = 0; i < read && !aBox.HasFailed(); ++i) {
        const std::uint64_t count = aBox.ReadBig32();
        const std::uint32_t duration = aBox.ReadBig32();
        samples += count;
        ticks = ezSaturating_Add64(ticks, count * duration);
        if (count > 1 || (count == 1 && i + 1 < runs)) {
            least = std::min(least, duration);
            most = std::max(most, duration);
        }
    }
    if (aBox.HasFailed()) {
        return;
    }
    aTables.mLeastTicks = std::min(least, most);
    aTables.mMostTicks = most;
    if (runs == read) {
        aTables.mTimedSamples = samples;
        aTables.mTicks = ticks;
    }
}

bool IsSizeOfSizes(unsigned aBits) {
    return aBits == 4 || aBits == 8 || aBits == 16;
}

/// Of "stsz", and of "stz2", which is compact (8.7.3).
ISOSizeTable ReadSizeTable(ByteReader aBox, bool afCompact) {
    ISOSizeTable table;
    aBox.Skip(4); // version and flags
    if (afCompact) {
        aBox.Skip(3); // reserved
        table.mBits = aBox.ReadByte();
        aBox.Require(IsSizeOfSizes(table.mBits));
    } else {
        table.mConstantSize = aBox.ReadBig32();
        table.mBits = table.mConstantSize == 0 ? 32 : 0;
    }
    table.mCount = aBox.ReadBig32();
    aBox.Require(table.GetBytes() <= aBox.GetLeft());
    if (aBox.HasFailed()) {
        return {};
    }
    table.mSizes = aBox;
    return table;
}

/// Adds up the sizes of a block, each of so many bits.
std::uint64_t SumBlock(const unsigned char* aBytes, std::size_t aCount, unsigned aBits) {
    std::uint64_t sum = 0;
    if (aBits == 32) { // of the long tables most
        for (std::size_t i = 0; i < aCount; ++i) {
            const unsigned char* const size = aBytes + 4 * i;
            sum += std::uint32_t{size[0]} << 24 | std::uint32_t{size[1]} << 16 | std::uint32_t{size[2]} << 8 |
                   size[3];
        }
        return sum;
    }
    for (std::size_t i = 0; i < aCount; ++i) {
        std::uint32_t size = 0;
        if (aBits == 4) {
            size = aBytes[i / 2] >> (i % 2 == 0 ? 4 : 0) & 0xFU;
        }
        for (unsigned byte = 0; byte < aBits / 8; ++byte) {
            size = size << 8 | aBytes[i * (aBits / 8) + byte];
        }
        sum += size;
    }
    return sum;
}

/// The size of the first sample; 0 where there is none.
std::uint64_t ReadFirstSize(const ISOSizeTable& aTable) {
    if (aTable.mCount == 0 || aTable.mConstantSize != 0 || !aTable.mSizes.has_value()) {
        return aTable.mCount != 0 ? aTable.mConstantSize : 0;
    }
    std::array<unsigned char, 4> bytes = {};
    ByteReader sizes = *aTable.mSizes;
    const bool fRead = sizes.Read(bytes.data(), (aTable.mBits + 7) / 8);
    return fRead ? SumBlock(bytes.data(), 1, aTable.mBits) : 0;
}

/// The first entry of a table of chunk offsets ("stco", and "co64" of 64 bits; 8.7.5): the first chunk begins
/// with the first sample.
ISOSamplePlace ReadFirstPlace(ByteReader aChunks, bool af64, const ISOSizeTable& aSizes) {
    ISOSamplePlace place;
    aChunks.Skip(4); // version and flags
    aChunks.Require(aChunks.ReadBig32() != 0);
    place.mPosition = aChunks.ReadBig(af64 ? 8 : 4);
    place.mSize = aChunks.HasFailed() ? 0 : ReadFirstSize(aSizes);
    return place;
}

/// Walks over the tables of a track.
class TableReading {
public:
    TableReading(ISOTrackKind aKind, std::uint32_t& aBoxBudget) : mKind(aKind), mBoxBudget(aBoxBudget) {}

    void Read(const ByteReader& aBox);

    ISOTables mTables;

private:
    void Take(BoxType aType, const ByteReader& aContent);
    void ReadDescription(const ByteReader& aContent);
    bool IsDone() const { return mfDescribed && mfTimed && mfSized && (mfChunks || !WantsPlace()); }
    bool WantsPlace() const {
        return mTables.mVideo.mfWantsSample && (!mfSized || mTables.mSizes.mCount != 0);
    }

    ISOTrackKind mKind;
    std::uint32_t& mBoxBudget;
    bool mfDescribed = false;
    bool mfTimed = false;
    bool mfSized = false;
    bool mfChunks = false;
    bool mf64 = false;
    std::optional<ByteReader> mChunks;
};

void TableReading::ReadDescription(const ByteReader& aContent) {
    mfDescribed = true;
    if (mKind == ISOTrackKind::kAudio) {
        mTables.mAudio = ReadAudioDescription(aContent, mBoxBudget);
        return;
    }
    mTables.mVideo = ReadVideoDescription(aContent, mBoxBudget);
    if (mTables.mVideo.mfWantsSample) {
        mTables.mDescription = aContent;
    }
}

void TableReading::Take(BoxType aType, const ByteReader& aContent) {
    if (aType == "stsd") {
        ReadDescription(aContent);
    } else if (aType == "stts") {
        ReadTimes(aContent, mTables);
        mfTimed = true;
    } else if (aType == "stsz" || aType == "stz2") {
        mTables.mSizes = ReadSizeTable(aContent, aType == "stz2");
        mfSized = true;
    } else if (aType == "stco" || aType == "co64") {
        mfChunks = true;
        mf64 = aType == "co64";
        mChunks = aContent;
    }
}

void TableReading::Read(const ByteReader& aBox) {
    BoxWalk walk = BoxWalk::Within(aBox, mBoxBudget);
    BoxType type;
    ByteReader content = aBox;
    // After the last of those there may be megabytes of chunk offsets and sync samples.
    while (!IsDone() && walk.Next(&type, &content)) {
        Take(type, content);
    }
    if (WantsPlace() && mChunks.has_value()) {
        mTables.mFirstSample = ReadFirstPlace(*mChunks, mf64, mTables.mSizes);
    }
}

} // namespace

ISOSizeSum SumSizes(const ISOSizeTable& aTable, std::uint64_t aMaxBytes) {
    if (aTable.mConstantSize != 0) {
        return {aTable.mCount, std::uint64_t{aTable.mCount} * aTable.mConstantSize};
    }
    if (!aTable.mSizes.has_value() || aTable.mBits == 0) {
        return {};
    }
    std::array<unsigned char, 512> block = {};
    ByteReader sizes = *aTable.mSizes;
    const std::uint64_t perBlock = 8 * block.size() / aTable.mBits;
    const std::uint64_t count = std::min<std::uint64_t>(aTable.mCount, aMaxBytes * 8 / aTable.mBits);
    ISOSizeSum sum;
    while (sum.mSamples < count) {
        const auto samples = static_cast<std::size_t>(std::min(perBlock, count - sum.mSamples));
        if (!sizes.Read(block.data(), (samples * aTable.mBits + 7) / 8)) {
            return {};
        }
        sum.mBytes += SumBlock(block.data(), samples, aTable.mBits);
        sum.mSamples += samples;
    }
    return sum;
}

ISOTables ReadTables(const ByteReader& aBox, ISOTrackKind aKind, std::uint32_t& aBoxBudget) {
    TableReading reading(aKind, aBoxBudget);
    reading.Read(aBox);
    return reading.mTables;
}
