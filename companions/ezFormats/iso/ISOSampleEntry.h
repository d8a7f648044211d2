#pragma once

#include "ezBytes/BoxWalk.h"
#include "ezBytes/ByteReader.h"
#include "ezFormats/codecs/ESDescriptor.h"

#include "ezPlatform/text/CString.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

// What the sample entries of audio and of video have in common.

/// The first sample entry of a track, in "stsd" (ISO/IEC 14496-12, 8.5.2).
struct ISOSampleEntry {
    explicit ISOSampleEntry(ByteReader aTable, std::uint32_t& aBoxBudget);

    /// True when there is one; else the rest holds nothing.
    bool mfFound = false;
    std::uint32_t mTableVersion;
    BoxType mFormat;
    ByteReader mContent; ///< after data_reference_index
};

/// What an entry tells, whatever is sampled.
struct ISOEntryFacts {
    // Bits a second, as stated; 0 where they are not
    std::uint32_t mBitRate = 0; ///< average
    std::uint32_t mMaxBitRate = 0;
    std::optional<BoxType> mOriginal; ///< of what is encrypted
    std::optional<ESDescriptor> mStream;
};

/// Reads a box of a kind of entry. Entry is an ISOEntryFacts with more to it.
template <typename Entry>
struct ISOBoxReader {
    BoxType mType;
    void (*mRead)(ByteReader aBox, Entry& anEntry);
};

/// Reads a box that entries of every kind may have: "esds", "btrt" or "sinf". Any other tells nothing.
void ReadCommonBox(BoxType aType, const ByteReader& aBox, std::uint32_t& aBoxBudget, ISOEntryFacts& anEntry);

/// Reads the boxes of an entry: those that all kinds have, and those that there is a reader for.
template <typename Entry, std::size_t Size>
void ReadBoxes(const ByteReader& aBoxes, const std::array<ISOBoxReader<Entry>, Size>& aReaders,
               std::uint32_t& aBoxBudget, Entry& anEntry) {
    BoxWalk walk = BoxWalk::Within(aBoxes, aBoxBudget);
    BoxType type;
    ByteReader content = aBoxes;
    while (walk.Next(&type, &content)) {
        ReadCommonBox(type, content, aBoxBudget, anEntry);
        for (const ISOBoxReader<Entry>& reader : aReaders) {
            if (type == reader.mType) {
                reader.mRead(content, anEntry);
            }
        }
    }
}

/// Takes rates over where none is stated yet. Those that no record can hold do not count.
void TakeRates(std::uint32_t aMaximum, std::uint32_t anAverage, ISOEntryFacts& anEntry);
