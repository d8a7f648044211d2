#include "ezFormats/avi/AVILength.h"

#include "ezFormats/avi/AVIFile.h"
#include "ezFormats/avi/AVIFrames.h"
#include "ezFormats/avi/AVILimits.h"
#include "ezFormats/detail/Limits.h"
#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/detail/MediaNumbers.h"

#include "ezPlatform/base/Checked.h"

#include <algorithm>
#include <initializer_list>

namespace {

constexpr const char* kCounted = "counted";
constexpr const char* kByIndex = "estimate: places of the index";
constexpr const char* kByPlaces = "estimate: size and mean rate of places";

/// Whether a file of so many bytes can hold so many units of a stream, and takes no more bits a second than
/// any film: each frame takes a chunk, whose head has eight bytes.
bool IsBelieved(const AVIStream& aStream, std::uint64_t aUnits, std::uint64_t aSize) {
    constexpr std::uint64_t kBitMicros = std::uint64_t{8} * 1000 * 1000;
    const std::uint64_t microseconds = aStream.GetMicroseconds(aUnits);
    const std::uint64_t unit = aStream.mUnitSize != 0 ? aStream.mUnitSize : kAVI_ChunkHeadSize;
    return microseconds != 0 && aUnits <= aSize / unit &&
           MediaNumber_Scale(aSize, kBitMicros, microseconds) <= kFilm_MaxBitRate;
}

/// Places of a whole of so many bytes, of which each tells a rate.
class Places {
public:
    explicit Places(std::uint64_t aWhole) : mWhole(aWhole) {}

    void Add(const AVICount& aPlace) {
        if (aPlace.mBytes == 0) {
            return;
        }
        const std::uint64_t whole = MediaNumber_Scale(mWhole, aPlace.mUnits, aPlace.mBytes);
        mUnits += aPlace.mUnits;
        mBytes += aPlace.mBytes;
        mLeast = std::min(mLeast, whole);
        mMost = std::max(mMost, whole);
    }
    /// Units of the whole by the mean of the places, and what that may be wrong by: a third of what they
    /// differ, as of the means of so many at a time nineteen in twenty lie so near the mean of all.
    std::uint64_t GetMean() const { return MediaNumber_Scale(mWhole, mUnits, mBytes); }
    std::uint64_t GetError() const {
        return mUnits != 0 ? std::max(GetMean() / kAVI_PlaceError, (mMost - mLeast) / 3) : 0;
    }

private:
    std::uint64_t mWhole;
    std::uint64_t mUnits = 0;
    std::uint64_t mBytes = 0;
    std::uint64_t mLeast = UINT64_MAX;
    std::uint64_t mMost = 0;
};

/// The measuring of the stream that tells the length.
class Measure {
public:
    Measure(MediaBytes& aBytes, const AVIFile& aFile, const AVIStream& aStream, std::uint32_t& aBudget)
        : mBytes(aBytes),
          mFile(aFile),
          mStream(aStream),
          mCounter(aBytes, aStream, aFile.GetHeader().GetNumber(aStream), aBudget) {}

    AVILength Stated() const {
        const AVIHeader& header = mFile.GetHeader();
        const bool fAllFrames = mStream.HasVideo() && header.mAllFrames > header.mFrames;
        const std::uint64_t all = fAllFrames ? header.mAllFrames : 0;
        std::uint64_t units = 0;
        for (const std::uint64_t count : {std::uint64_t{mStream.mLength}, all, mStream.mIndexed}) {
            units = IsPossible(count) ? std::max(units, count) : units;
        }
        const bool fFirstPart = units == 0 && mStream.HasVideo() && !mFile.HasParts();
        units = fFirstPart && IsPossible(header.mFrames) ? header.mFrames : units;
        return LengthOf(units, "header", 0);
    }

    /// Whether the stated length may be that of the first part alone.
    bool IsInDoubt() const {
        return mFile.HasParts() && mFile.GetHeader().mAllFrames == 0 && mStream.mIndexed == 0;
    }

    AVILength Measured() {
        if (!mBytes.GetSize() || !mFile.GetFrames()) {
            return {};
        }
        const AVILength indexed = !mFile.HasParts() && mFile.GetIndex() ? ByIndex() : AVILength();
        return indexed.mMicroseconds != 0 ? indexed : ByFrames();
    }

private:
    bool IsPossible(std::uint64_t aUnits) const {
        const std::optional<std::uint64_t> size = mFile.GetSize();
        const bool fTold = aUnits != 0 && aUnits != UINT32_MAX;
        return fTold && (!size || IsBelieved(mStream, aUnits, *size));
    }

    AVILength LengthOf(std::uint64_t aUnits, const char* aMethod, std::uint64_t aBound) const {
        return {aUnits != 0 ? mStream.GetEnd(aUnits) : 0, aMethod, mStream.GetMicroseconds(aBound)};
    }

    AVILength LengthOf(const Places& aPlaces, const char* aMethod) const {
        return LengthOf(ezSaturating_Add64(aPlaces.GetMean(), aPlaces.GetError()), aMethod,
                        2 * aPlaces.GetError());
    }

    AVILength ByIndex() {
        const std::uint64_t size = mFile.GetIndex()->GetLeft();
        if (size <= kAVI_MaxIndex) {
            return LengthOf(mCounter.CountEntries(*mFile.GetIndex()).mUnits, kCounted, 0);
        }
        Places places(size);
        for (std::uint64_t i = 0; i < kAVI_Places; ++i) {
            const std::uint64_t place = size / kAVI_Places * i / kAVI_IndexEntrySize * kAVI_IndexEntrySize;
            ByteReader entries = *mFile.GetIndex();
            entries.Skip(place);
            places.Add(mCounter.CountEntries(
                entries.Take(kAVI_PlaceSize / kAVI_IndexEntrySize * kAVI_IndexEntrySize)));
        }
        return LengthOf(places, kByIndex);
    }

    AVILength ByFrames() {
        const std::uint64_t start = mFile.GetFrames()->GetPosition();
        const std::uint64_t end = mFile.HasParts() ? *mBytes.GetSize() : start + mFile.GetFrames()->GetLeft();
        const std::uint64_t size = end - std::min(start, end);
        if (size <= kAVI_CountedSize) {
            return CountAll(start, end);
        }
        Places places(size);
        for (std::uint64_t i = 0; i < kAVI_Places; ++i) { // around the middle of each part
            const std::uint64_t middle = start + size / kAVI_Places * i + size / kAVI_Places / 2;
            places.Add(mCounter.CountFrames(middle - kAVI_PlaceSize / 2, end, false));
        }
        return LengthOf(places, kByPlaces);
    }

    AVILength CountAll(std::uint64_t aStart, std::uint64_t anEnd) {
        std::uint64_t units = 0;
        bool fAtFrame = true;
        for (std::uint64_t place = aStart; place < anEnd;) {
            const AVICount count = mCounter.CountFrames(place, anEnd, fAtFrame);
            units += count.mUnits;
            fAtFrame = count.mBytes != 0;
            place += fAtFrame ? count.mBytes : kAVI_PlaceSize;
        }
        return LengthOf(units, kCounted, 0);
    }

    MediaBytes& mBytes;
    const AVIFile& mFile;
    const AVIStream& mStream;
    AVICounter mCounter;
};

/// Sound that goes on a little longer than the pictures.
std::uint64_t LongerSound(const AVIFile& aFile, std::uint64_t aMicroseconds) {
    const AVIStream* const sound = aFile.GetHeader().FindSound();
    const std::optional<std::uint64_t> size = aFile.GetSize();
    if (sound == nullptr || (size && !IsBelieved(*sound, sound->mLength, *size))) {
        return aMicroseconds;
    }
    const std::uint64_t length = sound->GetEnd(sound->mLength);
    const bool fLittle = length > aMicroseconds && length - aMicroseconds < length / kAVI_SoundShare;
    return fLittle ? length : aMicroseconds;
}

} // namespace

AVILength MeasureAVI(MediaBytes& aBytes, const AVIFile& aFile, std::uint32_t& aBudget) {
    const AVIStream* const video = aFile.GetHeader().FindVideo();
    const AVIStream* const stream = video != nullptr ? video : aFile.GetHeader().FindSound();
    if (stream == nullptr) {
        return {};
    }
    Measure measure(aBytes, aFile, *stream, aBudget);
    AVILength length = measure.Stated();
    if (length.mMicroseconds == 0 || measure.IsInDoubt()) {
        const AVILength measured = measure.Measured();
        const bool fMore = measured.mMicroseconds / 3 * 2 > length.mMicroseconds;
        length = fMore ? measured : length;
    }
    const bool fStated = length.mBound == 0 && length.mMicroseconds != 0;
    length.mMicroseconds = fStated ? LongerSound(aFile, length.mMicroseconds) : length.mMicroseconds;
    return length;
}
