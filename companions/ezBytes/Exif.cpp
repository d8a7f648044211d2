#include "ezBytes/Exif.h"

#include "ezBytes/DateText.h"
#include "ezBytes/Limits.h"

#include <algorithm>
#include <cstdint>

namespace {

constexpr unsigned kUpright = 1;
constexpr std::uint64_t kLittleEndian = 0x49492A00; // "II", and 42 in its byte order
constexpr std::uint64_t kBigEndian = 0x4D4D002A;    // "MM"
// Exif 2.3, 4.6.4 and 4.6.5; the zones are of 2.31
constexpr unsigned kTagOrientation = 0x0112;
constexpr unsigned kTagExifDirectory = 0x8769;
constexpr unsigned kTagDateTaken = 0x9003; ///< DateTimeOriginal
constexpr unsigned kTagZoneTaken = 0x9011; ///< OffsetTimeOriginal
constexpr unsigned kTypeText = 2;
constexpr unsigned kTypeShort = 3;
constexpr unsigned kTypeLong = 4;

/// A reader in the byte order of a block.
class TiffReader {
public:
    TiffReader(const ByteReader& aBytes, bool afLittle) : mBytes(aBytes), mfLittle(afLittle) {}

    bool HasFailed() const { return mBytes.HasFailed(); }
    void Skip(std::uint64_t aCount) { mBytes.Skip(aCount); }
    unsigned Short() { return static_cast<unsigned>(Number(2)); }
    std::uint64_t Long() { return Number(4); }
    ezCString Text(std::size_t aCount) { return mBytes.ReadText(aCount); }

private:
    std::uint64_t Number(unsigned aByteCount) {
        return mfLittle ? mBytes.ReadLittle(aByteCount) : mBytes.ReadBig(aByteCount);
    }

    ByteReader mBytes;
    bool mfLittle;
};

/// An entry of a directory.
struct Entry {
    unsigned mTag = 0;
    unsigned mType = 0;
    std::uint64_t mCount = 0;
    TiffReader mValue; ///< stands at the four bytes that hold the value, or tell where it is
};

class ExifBlock {
public:
    /// aBlock stands at the TIFF header.
    explicit ExifBlock(const ByteReader& aBlock) : mBlock(aBlock) {
        ByteReader header = aBlock;
        const std::uint64_t mark = header.ReadBig(4);
        mfLittle = mark == kLittleEndian;
        if (mark == kLittleEndian || mark == kBigEndian) {
            mFirst = TiffReader(header, mfLittle).Long();
        }
    }

    /// Where the first directory stands; 0 where there is none.
    std::uint64_t GetFirst() const { return mFirst; }

    /// Calls with each entry of the directory at a place, as long as aTake wants more.
    template <typename Take>
    void ForEach(std::uint64_t aPlace, Take aTake) const {
        TiffReader directory = At(aPlace);
        const unsigned count = directory.Short();
        for (unsigned i = 0; i < count && i < kExif_MaxEntries && !directory.HasFailed(); ++i) {
            Entry entry = {directory.Short(), directory.Short(), directory.Long(), directory};
            directory.Skip(4);
            if (!aTake(entry)) {
                return;
            }
        }
    }

    TiffReader At(std::uint64_t aPlace) const {
        TiffReader reader(mBlock, mfLittle);
        reader.Skip(aPlace);
        return reader;
    }

    ezCString TextOf(Entry& anEntry) const {
        if (anEntry.mType != kTypeText || anEntry.mCount > kExif_MaxText) {
            return {};
        }
        const auto count = static_cast<std::size_t>(anEntry.mCount);
        return count <= 4 ? anEntry.mValue.Text(count) : At(anEntry.mValue.Long()).Text(count);
    }

private:
    ByteReader mBlock;
    bool mfLittle = false;
    std::uint64_t mFirst = 0;
};

unsigned OrientationOf(Entry& anEntry) {
    const unsigned value = anEntry.mType == kTypeShort ? anEntry.mValue.Short() : kUpright;
    return value >= 1 && value <= 8 ? value : kUpright;
}

/// When the photo was taken, by the directory at a place.
ezCString DateTakenOf(const ExifBlock& aBlock, std::uint64_t aPlace) {
    ezCString date;
    ezCString zone;
    aBlock.ForEach(aPlace, [&](Entry& anEntry) {
        if (anEntry.mTag == kTagDateTaken) {
            date = aBlock.TextOf(anEntry).BeforeFirst('\0');
        } else if (anEntry.mTag == kTagZoneTaken) {
            zone = aBlock.TextOf(anEntry).BeforeFirst('\0');
        }
        return anEntry.mTag < kTagZoneTaken; // entries are sorted
    });
    // With what is not a zone there would be no time.
    const ezCString local = CleanDate(date.View());
    const ezCString zoned = zone.IsEmpty() ? local : CleanDate((date + zone).View());
    return zoned.GetLength() > local.GetLength() ? zoned : local;
}

} // namespace

ExifFacts ReadExif(const ByteReader& aBlock) {
    ExifFacts facts;
    const ExifBlock block(aBlock);
    std::uint64_t place = 0;
    bool fOriented = false;
    if (block.GetFirst() != 0) {
        block.ForEach(block.GetFirst(), [&](Entry& anEntry) {
            if (anEntry.mTag == kTagOrientation && anEntry.mType == kTypeShort && !fOriented) {
                fOriented = true;
                facts.mOrientation = OrientationOf(anEntry);
            } else if (anEntry.mTag == kTagExifDirectory && anEntry.mType == kTypeLong) {
                place = anEntry.mValue.Long();
            }
            return !fOriented || place == 0;
        });
    }
    if (place != 0) {
        facts.mDate = DateTakenOf(block, place);
    }
    return facts;
}

unsigned ExifOrientation(const ByteReader& aBlock) {
    unsigned orientation = kUpright;
    const ExifBlock block(aBlock);
    if (block.GetFirst() != 0) {
        block.ForEach(block.GetFirst(), [&](Entry& anEntry) {
            const bool fFound = anEntry.mTag == kTagOrientation && anEntry.mType == kTypeShort;
            orientation = fFound ? OrientationOf(anEntry) : orientation;
            return !fFound;
        });
    }
    return orientation;
}

unsigned ExifOrientation(const unsigned char* aBlock, std::size_t aSize) {
    BlockBytes bytes(aBlock, aSize);
    return ExifOrientation(ByteReader(bytes));
}
