#include "ezFormats/ts/TSTables.h"

#include "ezFormats/ts/TSLimits.h"
#include "ezFormats/ts/TSStreamTypes.h"

#include "ezBytes/ByteReader.h"
#include "ezBytes/ByteSource.h"

#include <algorithm>

namespace {

constexpr std::uint32_t kHDMV = 0x48444D56; // "HDMV"

/// Calls something for each descriptor of a list (2.6): its tag, and what it holds.
template <typename Take>
void ForEachDescriptor(ByteReader aList, Take aTake) {
    while (aList.GetLeft() != 0) {
        const std::uint8_t tag = aList.ReadByte();
        const ByteReader content = aList.Take(aList.ReadByte());
        if (aList.HasFailed()) {
            return;
        }
        aTake(tag, content);
    }
}

/// What the descriptors of a program say of its streams.
TSMaker MakerOf(ByteReader aDescriptors) {
    constexpr std::uint8_t kRegistration = 0x05;
    TSMaker maker = TSMaker::Unknown;
    ForEachDescriptor(aDescriptors, [&](std::uint8_t aTag, ByteReader aContent) {
        if (aTag == kRegistration) {
            maker = aContent.ReadBig32() == kHDMV ? TSMaker::HDMV : TSMaker::Other;
        }
    });
    return maker;
}

} // namespace

void ReadTSAssociation(const TSSection& aSection, std::vector<TSProgram>& aPrograms) {
    constexpr std::size_t kEntriesStart = 8;
    BlockBytes bytes(aSection.mBytes, aSection.mSize);
    ByteReader reader(bytes);
    reader.Skip(kEntriesStart);
    while (reader.GetLeft() >= 4 && aPrograms.size() < kTS_MaxPrograms) {
        const auto number = static_cast<std::uint16_t>(reader.ReadBig(2));
        const auto pid = static_cast<std::uint16_t>(reader.ReadBig(2) & 0x1FFF);
        const bool fThere = std::any_of(aPrograms.begin(), aPrograms.end(), [=](const TSProgram& aProgram) {
            return aProgram.mNumber == number;
        });
        if (number != 0 && !fThere) { // 0 is that of the network, which has no map
            aPrograms.emplace_back();
            aPrograms.back().mNumber = number;
            aPrograms.back().mMapPID = pid;
        }
    }
}

void ReadTSMap(const TSSection& aSection, TSProgram* aProgram) {
    constexpr std::size_t kClockStart = 8;
    BlockBytes bytes(aSection.mBytes, aSection.mSize);
    ByteReader reader(bytes);
    reader.Skip(kClockStart);
    aProgram->mClockPID = static_cast<std::uint16_t>(reader.ReadBig(2) & 0x1FFF);
    aProgram->mfMapped = true;
    aProgram->mStreams.clear();
    const ByteReader descriptors = reader.Take(reader.ReadBig(2) & 0xFFF);
    const TSMaker maker = MakerOf(descriptors);
    while (reader.GetLeft() >= 5 && aProgram->mStreams.size() < kTS_MaxStreams) {
        TSStreamWords words;
        words.mType = reader.ReadByte();
        const auto pid = static_cast<std::uint16_t>(reader.ReadBig(2) & 0x1FFF);
        const ByteReader list = reader.Take(reader.ReadBig(2) & 0xFFF);
        if (reader.HasFailed()) {
            return;
        }
        ForEachDescriptor(
            list, [&](std::uint8_t aTag, ByteReader aContent) { TakeTSDescriptor(aTag, aContent, words); });
        aProgram->mfOfJapan = aProgram->mfOfJapan || words.mfOfJapan;
        aProgram->mStreams.push_back(TSStreamOf(words, maker));
        aProgram->mStreams.back().mPID = pid;
    }
}
