#include "ezFormats/ts/TSEvents.h"

#include "ezFormats/ts/TSLimits.h"

#include "ezBytes/ByteReader.h"
#include "ezBytes/ByteSource.h"
#include "ezBytes/CodePage.h"
#include "ezBytes/DateText.h"
#include "ezBytes/TextBytes.h"

#include <algorithm>
#include <array>
#include <string>

namespace {

constexpr std::uint64_t kDay = std::uint64_t{24} * 60 * 60;

/// Two digits; fails the reader where they are none.
std::uint64_t ReadDigits(ByteReader& aReader) {
    const unsigned byte = aReader.ReadByte();
    aReader.Require((byte >> 4) < 10 && (byte & 0xFU) < 10);
    return (byte >> 4) * 10 + (byte & 0xFU);
}

/// Hours, minutes and seconds in three bytes; 0 where they are none.
std::uint64_t ReadClock(ByteReader& aReader) {
    const std::uint64_t hours = ReadDigits(aReader);
    const std::uint64_t minutes = ReadDigits(aReader);
    const std::uint64_t seconds = ReadDigits(aReader);
    aReader.Require(minutes < 60 && seconds < 60);
    return aReader.HasFailed() ? 0 : (hours * 60 + minutes) * 60 + seconds;
}

/// Date and time in five bytes, in seconds since 1970 (annex C); 0 where it is not told.
std::uint64_t ReadTime(ByteReader aReader) {
    constexpr std::uint64_t kDaysTo1970 = 40587; ///< since the start of the modified Julian date
    const std::uint64_t day = aReader.ReadBig(2);
    const std::uint64_t clock = ReadClock(aReader);
    return aReader.HasFailed() || day <= kDaysTo1970 || clock >= kDay ? 0
                                                                      : (day - kDaysTo1970) * kDay + clock;
}

/// original_network_id of broadcasters that follow ARIB STD-B10 instead.
bool IsOfJapan(std::uint64_t aNetwork) {
    return aNetwork == 0x0004 || aNetwork == 0x0006 || aNetwork == 0x0007 || aNetwork == 0x000A ||
           (aNetwork >= 0x7880 && aNetwork <= 0x7FEF);
}

/// The name that a short_event_descriptor gives (6.2.37), among others.
ezCString ReadName(ByteReader aDescriptors) {
    constexpr std::uint8_t kShortEvent = 0x4D;
    while (aDescriptors.GetLeft() >= 2) {
        const std::uint8_t tag = aDescriptors.ReadByte();
        ByteReader content = aDescriptors.Take(aDescriptors.ReadByte());
        if (tag == kShortEvent) {
            content.Skip(3); // the language
            const ezCString name = content.ReadText(content.ReadByte());
            return ReadTSText(name.View());
        }
    }
    return {};
}

/// Letters of a coding that the system knows, without what only a receiver of broadcasts reads: emphasis,
/// and line ends (A.1).
std::string Convert(std::string_view aBytes, const char* aCoding) {
    constexpr unsigned char kLineEnd = 0x8A;
    std::string plain;
    for (const char byte : aBytes) {
        const auto value = static_cast<unsigned char>(byte);
        if (value == kLineEnd) {
            plain.push_back(' ');
        } else if (value < 0x80 || value >= 0xA0) {
            plain.push_back(byte);
        }
    }
    return CodePage(aCoding).ToUtf8(plain);
}

/// The default table: ISO 6937, with the sign of the Euro in it.
std::string ConvertDefault(std::string_view aBytes) {
    constexpr char kEuro = '\xA4';
    std::string text;
    for (std::size_t start = 0; start <= aBytes.size();) {
        const std::size_t end = std::min(aBytes.find(kEuro, start), aBytes.size());
        text += Convert(aBytes.substr(start, end - start), "ISO_6937");
        text += end < aBytes.size() ? "\xE2\x82\xAC" : "";
        start = end + 1;
    }
    return text;
}

/// UTF-8, in which line ends are of two kinds.
std::string PlainUtf8(std::string_view aBytes) {
    std::string text(aBytes);
    for (const std::string_view end : {"\xC2\x8A", "\xEE\x82\x8A"}) {
        for (std::size_t at = text.find(end); at != std::string::npos; at = text.find(end, at)) {
            text.replace(at, end.size(), " ");
        }
    }
    return text;
}

/// A part of ISO 8859 by its number; null for one that there is not.
const char* PartOf8859(unsigned aPart) {
    constexpr std::array<const char*, 16> kParts = {
        nullptr,      "ISO-8859-1",  "ISO-8859-2",  "ISO-8859-3", "ISO-8859-4",  "ISO-8859-5",
        "ISO-8859-6", "ISO-8859-7",  "ISO-8859-8",  "ISO-8859-9", "ISO-8859-10", "ISO-8859-11",
        nullptr,      "ISO-8859-13", "ISO-8859-14", "ISO-8859-15"};
    return aPart < kParts.size() ? kParts[aPart] : nullptr;
}

/// Whether another event of a program is remembered.
bool HasRoom(const std::vector<TSEvent>& anEvents, std::uint16_t aService) {
    const auto count = std::count_if(anEvents.begin(), anEvents.end(),
                                     [=](const TSEvent& anEvent) { return anEvent.mService == aService; });
    return anEvents.size() < kTS_MaxEvents && static_cast<std::size_t>(count) < kTS_MaxEventsOfProgram;
}

} // namespace

ezCString ReadTSText(std::string_view aBytes) {
    constexpr unsigned kFirstLetter = 0x20;
    const unsigned coding = aBytes.empty() ? kFirstLetter : static_cast<unsigned char>(aBytes[0]);
    if (coding >= kFirstLetter) {
        return CleanText(ConvertDefault(aBytes), TextEncoding::Utf8);
    }
    const std::string_view rest = aBytes.substr(1);
    const char* part = coding <= 0x0B ? PartOf8859(coding + 4) : nullptr;
    if (coding == 0x10 && rest.size() >= 2 && rest[0] == 0) { // and the part in two bytes
        part = PartOf8859(static_cast<unsigned char>(rest[1]));
        return part != nullptr ? CleanText(Convert(rest.substr(2), part), TextEncoding::Utf8) : ezCString();
    }
    if (part != nullptr) {
        return CleanText(Convert(rest, part), TextEncoding::Utf8);
    }
    switch (coding) {
    case 0x11:
        return CleanText(rest, TextEncoding::Utf16Big);
    case 0x12:
        return CleanText(CodePage("EUC-KR").ToUtf8(rest), TextEncoding::Utf8);
    case 0x13:
        return CleanText(CodePage("GB2312").ToUtf8(rest), TextEncoding::Utf8);
    case 0x14:
        return CleanText(CodePage("BIG5").ToUtf8(rest), TextEncoding::Utf8);
    case 0x15:
        return CleanText(PlainUtf8(rest), TextEncoding::Utf8);
    default:
        return {}; // reserved, or compressed
    }
}

void ReadTSEvents(const TSSection& aSection, std::vector<TSEvent>& anEvents) {
    BlockBytes bytes(aSection.mBytes, aSection.mSize);
    ByteReader reader(bytes);
    reader.Skip(8 + 2);
    if (IsOfJapan(reader.ReadBig(2))) {
        return;
    }
    reader.Skip(2); // segment_last_section_number, last_table_id
    while (reader.GetLeft() >= 12 && HasRoom(anEvents, aSection.GetID())) {
        TSEvent event;
        event.mService = aSection.GetID();
        event.mfPresent = aSection.GetNumber() == 0;
        reader.Skip(2); // event_id
        event.mStart = ReadTime(reader.Take(5));
        ByteReader length = reader.Take(3);
        event.mLength = ReadClock(length);
        event.mTitle = ReadName(reader.Take(reader.ReadBig(2) & 0xFFF));
        const bool fThere = std::any_of(anEvents.begin(), anEvents.end(), [&](const TSEvent& anOther) {
            return anOther.mService == event.mService && anOther.mStart == event.mStart &&
                   anOther.mTitle == event.mTitle;
        });
        if (!reader.HasFailed() && !event.mTitle.IsEmpty() && !fThere) {
            anEvents.push_back(std::move(event));
        }
    }
}

const TSEvent* FindTSEvent(const std::vector<TSEvent>& anEvents, std::uint16_t aService, std::uint64_t aStart,
                           std::uint64_t aLength) {
    const TSEvent* found = nullptr;
    std::uint64_t longest = 0;
    for (const TSEvent& event : anEvents) {
        if (event.mService != aService) {
            continue;
        }
        const std::uint64_t from = std::max(event.mStart, aStart);
        const std::uint64_t to = std::min(event.mStart + event.mLength, aStart + aLength + 1);
        const std::uint64_t common = aStart != 0 && event.mStart != 0 && to > from ? to - from : 0;
        if (common > longest || (found == nullptr && event.mfPresent)) {
            found = &event;
            longest = common;
        }
    }
    return found;
}

std::uint64_t ReadTSTime(const TSSection& aSection) {
    BlockBytes bytes(aSection.mBytes, aSection.mSize);
    ByteReader reader(bytes);
    reader.Skip(3);
    return ReadTime(reader.Take(5));
}

ezCString TSTimeText(std::uint64_t aSeconds) {
    return aSeconds != 0 ? UTCDateText(static_cast<std::int64_t>(aSeconds)) : ezCString();
}
