#include "ezFormats/mpegsystem/PESHeader.h"

#include "ezBytes/BitReader.h"

namespace {

constexpr std::size_t kStampSize = 5;
constexpr std::size_t kFixedSize = 9; ///< of MPEG-2, up to what is optional
constexpr unsigned kStampAlone = 2;   ///< '0010': of a PTS without a DTS
constexpr unsigned kStampFirst = 3;   ///< '0011': of a PTS before a DTS
constexpr unsigned kStampSecond = 1;  ///< '0001': of a DTS

/// Streams whose packets have no header after the length (2.4.3.7).
bool IsBare(std::uint8_t aStreamID) {
    switch (aStreamID) {
    case kStreamID_Map:
    case kStreamID_Padding:
    case kStreamID_Private2:
    case 0xF0: // ECM
    case 0xF1: // EMM
    case 0xF2: // DSM-CC
    case 0xF8: // ITU-T H.222.1 type E
    case 0xFF: // directory
        return true;
    default:
        return false;
    }
}

/// Skips a field that a flag announces.
void SkipIf(bool afThere, std::size_t aSize, ezBitReader& aReader) {
    aReader.Skip(afThere ? 8 * aSize : 0);
}

/// The extension of the header, which holds that of the stream's id, from the byte of the flags on.
std::uint8_t ReadExtension(ezBitReader aFlags, ezBitReader& aReader) {
    SkipIf(aFlags.ReadFlag(), 6, aReader); // ESCR
    SkipIf(aFlags.ReadFlag(), 3, aReader); // ES_rate
    SkipIf(aFlags.ReadFlag(), 1, aReader); // DSM_trick_mode
    SkipIf(aFlags.ReadFlag(), 1, aReader); // additional_copy_info
    SkipIf(aFlags.ReadFlag(), 2, aReader); // previous_PES_packet_CRC
    if (!aFlags.ReadFlag()) {
        return 0;
    }
    const bool fPrivate = aReader.ReadFlag();
    const bool fPack = aReader.ReadFlag();
    const bool fCounter = aReader.ReadFlag();
    const bool fBuffer = aReader.ReadFlag();
    aReader.Skip(3);
    const bool fMore = aReader.ReadFlag();
    SkipIf(fPrivate, 16, aReader);
    SkipIf(fPack, fPack ? aReader.Read(8) : 0, aReader);
    SkipIf(fCounter, 2, aReader);
    SkipIf(fBuffer, 2, aReader);
    if (!fMore) {
        return 0;
    }
    aReader.Skip(8); // marker_bit and PES_extension_field_length
    const bool fNone = aReader.ReadFlag();
    const std::uint32_t extension = aReader.Read(7);
    return aReader.HasFailed() || fNone ? std::uint8_t{0} : static_cast<std::uint8_t>(extension);
}

/// From the byte of '10' on (2.4.3.6).
bool ReadMPEG2(const unsigned char* aBytes, std::size_t aSize, PESHeader* aHeader) {
    if (aSize < kFixedSize) {
        return false;
    }
    aHeader->mfScrambled = (aBytes[6] & 0x30U) != 0;
    aHeader->mHeaderSize = static_cast<std::uint32_t>(kFixedSize) + aBytes[8];
    const unsigned stamps = aBytes[7] >> 6;
    const std::size_t stampsSize = stamps == 3 ? 2 * kStampSize : stamps == 2 ? kStampSize : 0;
    if (aHeader->mHeaderSize > aSize) {
        return false;
    }
    if (stampsSize > aBytes[8]) {
        return true; // the length leads to the payload, and there is no room for what the flags announce
    }
    if (stampsSize != 0) {
        aHeader->mPTS = ReadPESStamp(aBytes + kFixedSize, stamps == 3 ? kStampFirst : kStampAlone);
    }
    if (stampsSize > kStampSize) {
        aHeader->mDTS = ReadPESStamp(aBytes + kFixedSize + kStampSize, kStampSecond);
    }
    if (aHeader->mStreamID == kStreamID_Extended) {
        ezBitReader flags(aBytes + 7, 8);
        flags.Skip(2);
        ezBitReader rest(aBytes + kFixedSize + stampsSize, 8 * (aBytes[8] - stampsSize));
        aHeader->mExtension = ReadExtension(flags, rest);
    }
    return true;
}

/// After the length: stuffing, the size of a buffer, and the stamps (ISO/IEC 11172-1, 2.4.3.3).
bool ReadMPEG1(const unsigned char* aBytes, std::size_t aSize, PESHeader* aHeader) {
    constexpr std::size_t kStuffing = 16;
    aHeader->mfMPEG1 = true;
    std::size_t at = kPESHeader_StartSize;
    while (at < aSize && aBytes[at] == 0xFF && at < kPESHeader_StartSize + kStuffing) {
        ++at;
    }
    if (at < aSize && aBytes[at] >> 6 == 1) { // STD_buffer_scale and STD_buffer_size
        at += 2;
    }
    if (at >= aSize) {
        return false;
    }
    const unsigned mark = aBytes[at] >> 4;
    const bool fStamp = mark == kStampAlone || mark == kStampFirst;
    const std::size_t size = mark == kStampAlone ? kStampSize : mark == kStampFirst ? 2 * kStampSize : 1;
    if (size > aSize - at || (!fStamp && aBytes[at] != 0x0F)) {
        return false;
    }
    if (fStamp) {
        aHeader->mPTS = ReadPESStamp(aBytes + at, mark);
    }
    if (mark == kStampFirst) {
        aHeader->mDTS = ReadPESStamp(aBytes + at + kStampSize, kStampSecond);
    }
    aHeader->mHeaderSize = static_cast<std::uint32_t>(at + size);
    return true;
}

} // namespace

std::optional<std::uint64_t> ReadPESStamp(const unsigned char* aBytes, unsigned aMark) {
    const bool fMarked =
        aBytes[0] >> 4 == aMark && (aBytes[0] & 1U) != 0 && (aBytes[2] & 1U) != 0 && (aBytes[4] & 1U) != 0;
    if (!fMarked) {
        return std::nullopt;
    }
    ezBitReader bits(aBytes, 8 * kStampSize);
    bits.Skip(4);
    const std::uint64_t high = bits.Read(3);
    bits.Skip(1);
    const std::uint64_t middle = bits.Read(15);
    bits.Skip(1);
    return high << 30 | middle << 15 | bits.Read(15);
}

bool ReadPESHeader(const unsigned char* aBytes, std::size_t aSize, PESHeader* aHeader) {
    *aHeader = PESHeader();
    if (aSize < kPESHeader_StartSize || aBytes[0] != 0 || aBytes[1] != 0 || aBytes[2] != 1 ||
        aBytes[3] < kStreamID_Map) {
        return false;
    }
    aHeader->mStreamID = aBytes[3];
    const std::uint32_t length = std::uint32_t{aBytes[4]} << 8 | aBytes[5];
    aHeader->mPacketSize = length != 0 ? length + std::uint32_t{kPESHeader_StartSize} : 0;
    if (IsBare(aHeader->mStreamID)) {
        aHeader->mHeaderSize = kPESHeader_StartSize;
        return true;
    }
    const bool fMPEG2 = aSize > kPESHeader_StartSize && aBytes[6] >> 6 == 2;
    if (!(fMPEG2 ? ReadMPEG2(aBytes, aSize, aHeader) : ReadMPEG1(aBytes, aSize, aHeader))) {
        return false;
    }
    return aHeader->mPacketSize == 0 || aHeader->mHeaderSize <= aHeader->mPacketSize;
}
