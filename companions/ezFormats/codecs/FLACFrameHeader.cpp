#include "ezFormats/codecs/FLACFrameHeader.h"

#include <array>
#include <cstddef>

namespace {

/// Hz by code (9.1.2, table 1); 0 for what stands elsewhere.
constexpr std::array<std::uint32_t, 12> kRates = {0,     88200, 176400, 192000, 8000,  16000,
                                                  22050, 24000, 32000,  44100,  48000, 96000};
constexpr unsigned kRateInKHz = 12;   // eight bits
constexpr unsigned kRateInHz = 13;    // sixteen bits
constexpr unsigned kRateInTenHz = 14; // sixteen bits
constexpr unsigned kNoRate = 15;

/// Bits by code (9.1.4); 0 for what stands elsewhere, and for a reserved one.
constexpr std::array<std::uint32_t, 8> kBits = {0, 8, 12, 0, 16, 20, 24, 32};
constexpr unsigned kReservedBits = 3;

/// Reads bytes and sums them up (CRC-8, polynomial 7; 9.1.8).
class SummingReader {
public:
    explicit SummingReader(const ByteReader& aReader) : mReader(aReader) {}

    std::uint32_t Read(unsigned aByteCount) {
        std::uint32_t value = 0;
        for (unsigned i = 0; i < aByteCount; ++i) {
            const unsigned byte = mReader.ReadByte();
            value = value << 8 | byte;
            mSum ^= byte;
            for (int bit = 0; bit < 8; ++bit) {
                mSum = (mSum << 1 ^ ((mSum & 0x80U) != 0 ? 7U : 0U)) & 0xFFU;
            }
        }
        return value;
    }
    bool HasFailed() const { return mReader.HasFailed(); }
    /// 0 after the check sum itself.
    unsigned GetSum() const { return mSum; }

private:
    ByteReader mReader;
    unsigned mSum = 0;
};

/// A number as UTF-8 codes it, of up to 36 bits (9.1.5). False for what is not one.
bool ReadCodedNumber(SummingReader& aReader, std::uint64_t* aNumber) {
    const unsigned first = aReader.Read(1);
    if (first < 0x80) {
        *aNumber = first;
        return true;
    }
    unsigned more = 0; // bytes after the first
    while (more < 7 && (first & 0x40U >> more) != 0) {
        ++more;
    }
    if (more == 0 || more == 7) {
        return false;
    }
    std::uint64_t number = first & 0x3FU >> more;
    for (unsigned i = 0; i < more; ++i) {
        const unsigned byte = aReader.Read(1);
        if ((byte & 0xC0U) != 0x80) {
            return false;
        }
        number = number << 6 | (byte & 0x3FU);
    }
    *aNumber = number;
    return true;
}

/// Samples by code (9.1.1); those of codes 6 and 7 stand after the coded number. 0 for the reserved code.
std::uint32_t ReadBlockSize(SummingReader& aReader, unsigned aCode) {
    switch (aCode) {
    case 0:
        return 0;
    case 1:
        return 192;
    case 6:
        return aReader.Read(1) + 1;
    case 7:
        return aReader.Read(2) + 1;
    default:
        return aCode < 6 ? 144U << aCode : 1U << aCode;
    }
}

std::uint32_t ReadRate(SummingReader& aReader, unsigned aCode) {
    switch (aCode) {
    case kRateInKHz:
        return aReader.Read(1) * 1000;
    case kRateInHz:
        return aReader.Read(2);
    case kRateInTenHz:
        return aReader.Read(2) * 10;
    default:
        return kRates[aCode];
    }
}

bool Agree(std::uint32_t aStated, std::uint32_t anOfStream) {
    return aStated == 0 || anOfStream == 0 || aStated == anOfStream;
}

} // namespace

bool ReadFLACFrameHeader(ByteReader aReader, const FLACStreamInfo& aStream, FLACFrameHeader* aHeader) {
    constexpr std::uint32_t kSync = 0x7FFC; // 15 bits, a zero among them
    constexpr unsigned kFirstStereoCode = 8;
    constexpr unsigned kLastChannelsCode = 10;
    SummingReader reader(aReader);
    const std::uint32_t codes = reader.Read(4);
    const bool fVariable = (codes >> 16 & 1U) != 0; // sample numbers, not frame numbers
    const unsigned sizeCode = codes >> 12 & 0xFU;
    const unsigned rateCode = codes >> 8 & 0xFU;
    const unsigned channelsCode = codes >> 4 & 0xFU;
    const unsigned bitsCode = codes >> 1 & 0x7U;
    if (codes >> 17 != kSync || rateCode == kNoRate || channelsCode > kLastChannelsCode ||
        bitsCode == kReservedBits || (codes & 1U) != 0 || sizeCode == 0) {
        return false;
    }
    std::uint64_t number = 0;
    if (!ReadCodedNumber(reader, &number)) {
        return false;
    }
    aHeader->mBlockSize = ReadBlockSize(reader, sizeCode);
    aHeader->mSamplingRate = ReadRate(reader, rateCode);
    aHeader->mChannels = channelsCode < kFirstStereoCode ? channelsCode + 1 : 2;
    aHeader->mBitsPerSample = kBits[bitsCode];
    reader.Read(1); // the check sum
    // The last block may be shorter than the others, so a frame number counts those of the stream.
    const std::uint32_t blockSize = aStream.mMaxBlockSize != 0 ? aStream.mMaxBlockSize : aHeader->mBlockSize;
    aHeader->mFirstSample = fVariable ? number : number * blockSize;
    return !reader.HasFailed() && reader.GetSum() == 0 &&
           Agree(aHeader->mSamplingRate, aStream.mSamplingRate) &&
           Agree(aHeader->mChannels, aStream.mChannels) &&
           Agree(aHeader->mBitsPerSample, aStream.mBitsPerSample);
}
