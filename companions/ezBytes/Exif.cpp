#include "ezBytes/Exif.h"

namespace {

constexpr unsigned kUpright = 1;
constexpr std::uint64_t kLittleEndian = 0x49492A00; // "II", and 42 in its byte order
constexpr std::uint64_t kBigEndian = 0x4D4D002A;    // "MM"
constexpr unsigned kTagOrientation = 0x0112;
constexpr unsigned kTypeShort = 3;
/// A first directory holds some thirty entries; TIFF would allow 65535.
constexpr unsigned kMaxEntries = 1024;

/// A reader in the byte order of a block.
class TiffReader {
public:
    TiffReader(const ByteReader& aBytes, bool afLittle) : mBytes(aBytes), mfLittle(afLittle) {}

    bool HasFailed() const { return mBytes.HasFailed(); }
    void Skip(std::uint64_t aCount) { mBytes.Skip(aCount); }
    unsigned Short() { return static_cast<unsigned>(Number(2)); }
    std::uint64_t Long() { return Number(4); }

private:
    std::uint64_t Number(unsigned aByteCount) {
        return mfLittle ? mBytes.ReadLittle(aByteCount) : mBytes.ReadBig(aByteCount);
    }

    ByteReader mBytes;
    bool mfLittle;
};

/// The orientation of the directory that a reader stands at.
unsigned OrientationOf(TiffReader& aDirectory) {
    const unsigned count = aDirectory.Short();
    for (unsigned i = 0; i < count && i < kMaxEntries && !aDirectory.HasFailed(); ++i) {
        const unsigned tag = aDirectory.Short();
        const unsigned type = aDirectory.Short();
        aDirectory.Skip(4); // how many values
        const unsigned value = aDirectory.Short();
        if (tag == kTagOrientation && type == kTypeShort) {
            return value >= 1 && value <= 8 ? value : kUpright;
        }
        aDirectory.Skip(2);
    }
    return kUpright;
}

} // namespace

unsigned ExifOrientation(const ByteReader& aBlock) {
    ByteReader header = aBlock;
    const std::uint64_t mark = header.ReadBig(4);
    if (mark != kLittleEndian && mark != kBigEndian) {
        return kUpright;
    }
    const bool fLittle = mark == kLittleEndian;
    TiffReader directory(aBlock, fLittle);
    directory.Skip(TiffReader(header, fLittle).Long());
    return OrientationOf(directory);
}

unsigned ExifOrientation(const unsigned char* aBlock, std::size_t aSize) {
    BlockBytes bytes(aBlock, aSize);
    return ExifOrientation(ByteReader(bytes));
}
