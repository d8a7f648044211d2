#include "ezFormats/frames/OtherFormat.h"

#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/frames/FrameLimits.h"

#include "ezBytes/ByteReader.h"

#include <algorithm>
#include <string>
#include <string_view>

using namespace std::string_view_literals;

namespace {

ByteReader ReaderAt(ByteSource& aBytes, std::uint64_t aPosition) {
    ByteReader reader(aBytes);
    reader.Skip(aPosition);
    return reader;
}

/// A word that a file of a format has at a place.
struct Mark {
    unsigned mPlace;
    std::string_view mWord;
    const char* mFormat;
};
constexpr Mark kMarks[] = {
    {0, "RIFF"sv, "RIFF"},
    {0, "RIFX"sv, "RIFF"},
    {0, "RF64"sv, "RIFF"},
    {0, "BW64"sv, "RIFF"},
    {0, "riff\x2E\x91\xCF\x11"sv, "Wave64"},
    {0, "caff"sv, "CAF"},
    {0, "FORM"sv, "IFF"},
    {0, "OggS"sv, "Ogg"},
    {0, "fLaC"sv, "FLAC"},
    {0, "\x1A\x45\xDF\xA3"sv, "Matroska"},
    {0, "\x30\x26\xB2\x75\x8E\x66\xCF\x11"sv, "ASF"},
    {0, "\xFF\xD8\xFF"sv, "JPEG"},
    {0, "\x89PNG"sv, "PNG"},
    {0, "GIF8"sv, "GIF"},
    {0, "FLV\x01"sv, "FLV"},
    {0, ".RMF"sv, "RealMedia"},
    {0, "MPCK"sv, "Musepack"},
    {0, "MP+"sv, "Musepack"},
    {0, "MAC "sv, "APE sound"},
    {0, "wvpk"sv, "WavPack"},
    {0, "ADIF"sv, "ADIF"},
    {0, "#!AMR"sv, "AMR"},
    {0, "PK\x03\x04"sv, "ZIP"},
    {0, "%PDF"sv, "PDF"},
    {0, "\x0B\x77"sv, "AC-3"},
    {0, "\x7F\xFE\x80\x01"sv, "DTS"},
    {0, "\xFE\x7F\x01\x80"sv, "DTS"},
    {0, "\x1F\xFF\xE8\x00"sv, "DTS"},
    {0, "\xFF\x1F\x00\xE8"sv, "DTS"},
    {0, "dX %"sv, "DTS"}, // 64582025, an extension without a core
    {0, "DTSHDHDR"sv, "DTS"},
    {4, "\xF8\x72\x6F\xBA"sv, "TrueHD"},
    {4, "\xF8\x72\x6F\xBB"sv, "TrueHD"},
    {0, "\0\0\x01\xBA"sv, "program stream"},
    {0, "\0\0\x01\xB3"sv, "MPEG video"},
    {4, "ftyp"sv, "ISO media"},
    {4, "styp"sv, "ISO media"},
    {4, "sidx"sv, "ISO media"},
    {4, "moof"sv, "ISO media"},
    {4, "moov"sv, "ISO media"},
    {4, "mdat"sv, "ISO media"},
    {4, "free"sv, "ISO media"},
    {4, "skip"sv, "ISO media"},
    {4, "wide"sv, "ISO media"},
};

/// The bytes from a position on in which all marks lie, or those that there are.
constexpr std::size_t kMarkedSize = 8;
std::string HeadAt(ByteSource& aBytes, std::uint64_t aPosition) {
    const unsigned char* borrowed = nullptr;
    if (aBytes.Borrow(aPosition, &borrowed) >= kMarkedSize) {
        return {reinterpret_cast<const char*>(borrowed), kMarkedSize};
    }
    std::string head;
    unsigned char byte = 0;
    while (head.size() < kMarkedSize && aBytes.Get(aPosition + head.size(), &byte)) {
        head.push_back(static_cast<char>(byte));
    }
    return head;
}

/// True for the sync_byte of three packets in a row (ISO/IEC 13818-1, 2.4.3.2).
bool IsTransportStream(MediaBytes& aBytes, std::uint64_t aPosition, std::uint64_t aPeriod) {
    for (unsigned i = 0; i < 3; ++i) {
        unsigned char byte = 0;
        if (!aBytes.Get(aPosition + i * aPeriod, &byte) || byte != 0x47) {
            return false;
        }
    }
    return true;
}

/// Layer 0, which MPEG audio does not have and ADTS always has (ISO/IEC 13818-7, 6.2).
bool IsADTS(MediaBytes& aBytes, std::uint64_t aPosition) {
    return (ReaderAt(aBytes, aPosition).ReadBig(2) & 0xFFF6) == 0xFFF0;
}

} // namespace

std::uint64_t AfterZeros(MediaBytes& aBytes, std::uint64_t aPosition) {
    unsigned char byte = 0;
    if (!aBytes.Get(aPosition, &byte) || byte != 0) {
        return aPosition;
    }
    aBytes.Load(aPosition, kFrames_SearchSize);
    std::uint64_t position = aPosition;
    while (aBytes.HasBuffered(position) && aBytes.Get(position, &byte) && byte == 0) {
        ++position;
    }
    return position;
}

const char* OtherFormatAt(MediaBytes& aBytes, std::uint64_t aPosition) {
    const std::string head = HeadAt(aBytes, aPosition);
    for (const Mark& mark : kMarks) {
        if (head.compare(std::min<std::size_t>(mark.mPlace, head.size()), mark.mWord.size(), mark.mWord) ==
            0) {
            return mark.mFormat;
        }
    }
    if (IsTransportStream(aBytes, aPosition, 188) || IsTransportStream(aBytes, aPosition + 4, 192) ||
        IsTransportStream(aBytes, aPosition, 204)) {
        return "transport stream";
    }
    return IsADTS(aBytes, aPosition) ? "ADTS" : nullptr;
}
