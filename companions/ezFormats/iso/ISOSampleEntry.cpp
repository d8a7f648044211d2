#include "ezFormats/iso/ISOSampleEntry.h"

#include "ezPlatform/media/MediaInfo.h"

namespace {

/// The format of samples before they were encrypted, from a "sinf" box (ISO/IEC 14496-12, 8.12.1 and 8.12.2);
/// none when it does not tell.
std::optional<BoxType> ReadOriginalFormat(const ByteReader& aBox, std::uint32_t& aBoxBudget) {
    ByteReader content = aBox;
    content.Require(BoxWalk::Within(aBox, aBoxBudget).Find("frma", &content));
    const BoxType format = BoxType::Read(content);
    return content.HasFailed() ? std::nullopt : std::make_optional(format);
}

void ReadStream(ByteReader aBox, ISOEntryFacts& anEntry) {
    ESDescriptor stream;
    if (ReadESDescriptor(aBox, stream)) {
        anEntry.mStream = stream;
        TakeRates(stream.mMaxBitRate, stream.mBitRate, anEntry);
    }
}

/// Of "btrt" (ISO/IEC 14496-12, 8.5.2).
void ReadRates(ByteReader aBox, ISOEntryFacts& anEntry) {
    aBox.Skip(4); // bufferSizeDB
    const std::uint32_t maximum = aBox.ReadBig32();
    const std::uint32_t average = aBox.ReadBig32();
    if (!aBox.HasFailed()) {
        TakeRates(maximum, average, anEntry);
    }
}

} // namespace

ISOSampleEntry::ISOSampleEntry(ByteReader aTable, std::uint32_t& aBoxBudget)
    : mTableVersion(aTable.ReadByte()), mContent(aTable) {
    aTable.Skip(7); // flags, entry_count
    mfFound = BoxWalk::Within(aTable, aBoxBudget).Next(&mFormat, &mContent);
    mContent.Require(mfFound);
    mContent.Skip(8); // reserved, data_reference_index
}

void ReadCommonBox(BoxType aType, const ByteReader& aBox, std::uint32_t& aBoxBudget, ISOEntryFacts& anEntry) {
    if (aType == "esds") {
        ReadStream(aBox, anEntry);
    } else if (aType == "btrt") {
        ReadRates(aBox, anEntry);
    } else if (aType == "sinf") {
        anEntry.mOriginal = ReadOriginalFormat(aBox, aBoxBudget);
    }
}

void TakeRates(std::uint32_t aMaximum, std::uint32_t anAverage, ISOEntryFacts& anEntry) {
    if (anEntry.mBitRate == 0 && anAverage != kezMediaInfo_VariableRate) {
        anEntry.mBitRate = anAverage;
    }
    if (anEntry.mMaxBitRate == 0 && aMaximum != kezMediaInfo_VariableRate) {
        anEntry.mMaxBitRate = aMaximum;
    }
}
