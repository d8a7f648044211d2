#include "ezFormats/png/PNGParser.h"

#include "ezBytes/ByteReader.h"
#include "ezBytes/Exif.h"
#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/png/PNGLimits.h"
#include "ezFormats/tags/ExifRecord.h"

#include "ezPlatform/media/MediaInfo.h"

#include <array>
#include <cstdint>

namespace {

constexpr std::uint64_t kSignature = 0x89504E470D0A1A0A;
constexpr std::uint32_t kIHDR = 0x49484452; // image header (11.2.1)
constexpr std::uint32_t kIDAT = 0x49444154; // image data (11.2.3)
constexpr std::uint32_t kEXIF = 0x65584966; // "eXIf" (11.3.4.5)
constexpr std::uint64_t kTypeSize = 4;
constexpr std::uint64_t kHeaderSize = 13;
constexpr std::uint64_t kCheckSumSize = 4;

/// A field of the image header (11.2.1), in its order, and what it may be.
struct HeaderField {
    const char* mName;
    unsigned mByteCount;
    std::uint32_t mMin;
    std::uint32_t mMax;
};

enum : std::size_t {
    kWidth,
    kHeight,
    kBitDepth,
    kColourType,
    kCompression,
    kFilter,
    kInterlacing,
    kFieldCount
};

constexpr std::array<HeaderField, kFieldCount> kFields = {{{"width", 4, 1, INT32_MAX},
                                                           {"height", 4, 1, INT32_MAX},
                                                           {"bit depth", 1, 1, 16},
                                                           {"colour type", 1, 0, 6},
                                                           {"compression", 1, 0, 0},
                                                           {"filter", 1, 0, 0},
                                                           {"interlacing", 1, 0, 1}}};

/// What a colour type is called in a record, and the bit depths that go with it (11.2.1, table 11.1): each is
/// a power of two, and so a bit of this sum.
struct ColourType {
    const char* mName;
    std::uint32_t mBitDepths;
};

constexpr std::array<ColourType, 7> kColourTypes = {{{"grey", 1 + 2 + 4 + 8 + 16},
                                                     {"", 0},
                                                     {"RGB", 8 + 16},
                                                     {"palette", 1 + 2 + 4 + 8},
                                                     {"grey-alpha", 8 + 16},
                                                     {"", 0},
                                                     {"RGBA", 8 + 16}}};

bool GoTogether(std::uint32_t aBitDepth, std::uint32_t aColourType) {
    const bool fPowerOfTwo = (aBitDepth & (aBitDepth - 1)) == 0;
    return fPowerOfTwo && (kColourTypes[aColourType].mBitDepths & aBitDepth) != 0;
}

/// The CRC of what a reader has left (5.5): that of ISO 3309.
std::uint32_t CheckSumOf(ByteReader& aBytes) {
    std::uint32_t sum = 0xFFFFFFFF;
    while (aBytes.GetLeft() != 0) {
        sum ^= aBytes.ReadByte();
        for (int bit = 0; bit < 8; ++bit) {
            sum = sum >> 1 ^ ((sum & 1U) != 0 ? 0xEDB88320U : 0U);
        }
    }
    return ~sum;
}

} // namespace

bool PNGParser::IsAt(ByteReader aBytes) {
    return aBytes.ReadBig(8) == kSignature;
}

bool PNGParser::ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) {
    ByteReader reader(aBytes);
    const std::uint64_t signature = reader.ReadBig(8);
    if (signature != kSignature) {
        return Refuse(Cause::Malformed, "begins with %016llX", static_cast<unsigned long long>(signature));
    }
    return ReadHeader(aBytes, reader, anInfo) && ReadChunks(aBytes, reader, anInfo);
}

/// The first chunk.
bool PNGParser::ReadHeader(MediaBytes& aBytes, ByteReader& aReader, ezMediaInfo& anInfo) const {
    const std::uint32_t length = aReader.ReadBig32();
    ByteReader header = aReader.Take(kTypeSize + kHeaderSize);
    ByteReader summed = header;
    const std::uint32_t type = header.ReadBig32();
    summed.Require(!header.HasFailed());
    const std::uint32_t checkSum = CheckSumOf(summed);
    aReader.Require(!summed.HasFailed()); // nothing is asked for past the end
    const std::uint32_t stated = aReader.ReadBig32();
    if (aReader.HasFailed()) {
        return RefuseCut(aBytes, "the end of the header");
    }
    if (length != kHeaderSize || type != kIHDR) {
        return Refuse(Cause::Malformed, "first chunk is %08X, of %u bytes", type, length);
    }
    if (checkSum != stated) {
        return Refuse(Cause::Malformed, "header has check sum %08X, but states %08X", checkSum, stated);
    }
    return ReadFields(header, anInfo);
}

bool PNGParser::ReadFields(ByteReader& aHeader, ezMediaInfo& anInfo) const {
    std::array<std::uint32_t, kFieldCount> values = {};
    for (std::size_t i = 0; i < kFieldCount; ++i) {
        const HeaderField& field = kFields[i];
        values[i] = static_cast<std::uint32_t>(aHeader.ReadBig(field.mByteCount));
        if (values[i] < field.mMin || values[i] > field.mMax) {
            return Refuse(Cause::Malformed, "%s %u", field.mName, values[i]);
        }
    }
    const std::uint32_t colourType = values[kColourType];
    if (!GoTogether(values[kBitDepth], colourType)) {
        return Refuse(Cause::Malformed, "bit depth %u with colour type %u", values[kBitDepth], colourType);
    }
    anInfo.Set(kezInfo_PictureWidth, values[kWidth], true);
    anInfo.Set(kezInfo_PictureHeight, values[kHeight], true);
    anInfo.Set(kezInfo_PictureBitDepth, values[kBitDepth], true);
    anInfo.Set(kezInfo_PictureColours, kColourTypes[colourType].mName, true);
    anInfo.Set(kezInfo_PictureProcess, values[kInterlacing] != 0 ? "interlaced" : "plain", true);
    return true;
}

/// Steps over the chunks before the picture.
bool PNGParser::ReadChunks(MediaBytes& aBytes, ByteReader& aReader, ezMediaInfo& anInfo) const {
    for (std::uint32_t i = 0; i < kPNG_MaxChunks; ++i) {
        const std::uint32_t length = aReader.ReadBig32();
        const std::uint32_t type = aReader.ReadBig32();
        if (type == kIDAT) {
            return true;
        }
        const ByteReader content = aReader.Take(length);
        aReader.Skip(kCheckSumSize);
        if (aReader.HasFailed()) {
            return RefuseCut(aBytes, "the picture");
        }
        if (type == kEXIF) {
            StoreExif(ReadExif(content), anInfo);
        }
    }
    return Refuse(Cause::Limit, "more than %u chunks before the picture", kPNG_MaxChunks);
}
