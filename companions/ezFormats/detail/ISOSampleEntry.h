#pragma once

#include "ezBytes/BoxWalk.h"
#include "ezBytes/ByteReader.h"
#include "ezFormats/detail/ISOCodec.h"

#include <cstdint>
#include <optional>

// What the descriptions of audio and of video have in common.

/// The first entry of a table of sample descriptions.
struct ISOSampleEntry {
    explicit ISOSampleEntry(ByteReader aTable, std::uint32_t& aBoxBudget);

    /// True when there is one; else the rest holds nothing.
    bool mfFound = false;
    std::uint32_t mTableVersion;
    BoxType mFormat;
    ByteReader mContent; ///< behind the number of the data reference
};

/// A four-character code as a word of a record: without blanks at its end, and a "." for what may not stand
/// in a word.
ezCString ISOFormatName(BoxType aFormat);

/// The format of samples before they were encrypted, from a "sinf" box; none when it does not tell.
std::optional<BoxType> ReadOriginalFormat(const ByteReader& aBox, std::uint32_t& aBoxBudget);

/// Takes rates over where none is stated yet. Those that no record can hold are none.
void TakeRates(std::uint32_t aMaximum, std::uint32_t anAverage, ISOCodec& aCodec);

/// The same from a "btrt" box.
void ReadRates(ByteReader aBox, ISOCodec& aCodec);

/// Marks a codec as one whose samples are encrypted: no rule for the plain codec is to meet it.
void MarkEncrypted(ISOCodec& aCodec);
