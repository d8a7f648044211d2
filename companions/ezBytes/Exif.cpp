#include "ezBytes/Exif.h"

#include <cstring>

namespace {

constexpr std::size_t kHeaderBytes = 8;
constexpr std::size_t kEntryBytes = 12;
constexpr unsigned kTagOrientation = 0x0112;
constexpr unsigned kTypeShort = 3;

/// Numbers in the block's byte order. What lies outside of it is 0.
class TiffNumbers {
public:
    TiffNumbers(const unsigned char* aBlock, std::size_t aSize)
        : mBlock(aBlock), mSize(aSize), mfLittle(aSize > 0 && aBlock[0] == 'I') {}

    unsigned Short(std::size_t anOffset) const {
        if (anOffset > mSize || mSize - anOffset < 2) {
            return 0;
        }
        const unsigned first = mBlock[anOffset];
        const unsigned second = mBlock[anOffset + 1];
        return mfLittle ? second << 8 | first : first << 8 | second;
    }

    std::size_t Long(std::size_t anOffset) const {
        const std::size_t first = Short(anOffset);
        const std::size_t second = Short(anOffset + 2);
        return mfLittle ? second << 16 | first : first << 16 | second;
    }

private:
    const unsigned char* mBlock;
    std::size_t mSize;
    bool mfLittle;
};

} // namespace

unsigned ExifOrientation(const unsigned char* aBlock, std::size_t aSize) {
    const bool fTiff = aSize >= kHeaderBytes &&
                       (std::memcmp(aBlock, "II*\0", 4) == 0 || std::memcmp(aBlock, "MM\0*", 4) == 0);
    if (!fTiff) {
        return 1;
    }
    const TiffNumbers numbers(aBlock, aSize);
    const std::size_t directory = numbers.Long(4);
    if (directory >= aSize) {
        return 1;
    }
    const unsigned count = numbers.Short(directory);
    for (unsigned i = 0; i < count; ++i) {
        const std::size_t entry = directory + 2 + kEntryBytes * i;
        if (entry >= aSize) {
            break;
        }
        if (numbers.Short(entry) == kTagOrientation && numbers.Short(entry + 2) == kTypeShort) {
            const unsigned orientation = numbers.Short(entry + 8);
            return orientation >= 1 && orientation <= 8 ? orientation : 1;
        }
    }
    return 1;
}
