#include "ezBytes/WAVWalk.h"

#include "ezBytes/Limits.h"
#include "ezBytes/SoundSize.h"

#include "ezPlatform/base/Checked.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::uint32_t kUnknown32 = 0xFFFFFFFF;

/// The rest of the GUIDs that begin with "riff", and with "wave", "fmt " and so on.
constexpr std::array<std::uint64_t, 2> kRiffRest = {0x2E91CF11A5D628DB, 0x04C10000};
constexpr std::array<std::uint64_t, 2> kWaveRest = {0xF3ACD3118CD100C0, 0x4F8EDB8A};

bool HasRest(ByteReader& aReader, const std::array<std::uint64_t, 2>& aRest) {
    const std::uint64_t first = aReader.ReadBig(8);
    return aReader.ReadBig(4) == aRest[1] && first == aRest[0];
}

} // namespace

WAVHead ReadWAVHead(ByteReader& aReader) {
    WAVHead head;
    const BoxType kind = BoxType::Read(aReader);
    if (kind == "riff" && HasRest(aReader, kRiffRest)) {
        head.mKind = kind;
        head.mLayout = kChunks_W64;
        head.mSize = aReader.ReadLittle(8);
        const BoxType form = BoxType::Read(aReader);
        head.mForm = form == "wave" && HasRest(aReader, kWaveRest) ? BoxType("WAVE") : BoxType();
        return head;
    }
    if (kind == "RIFX") {
        head.mLayout = kChunks_IFF;
    } else if (kind != "RIFF" && kind != "RF64" && kind != "BW64") {
        return head;
    }
    head.mKind = kind;
    head.mSize = head.mLayout.mfLittle ? aReader.ReadLittle32() : aReader.ReadBig32();
    head.mForm = BoxType::Read(aReader);
    return head;
}

bool WAVWalk::Next(BoxType* aName, ByteReader* aContent) {
    if (!mWalk.Next(aName, aContent)) {
        return false;
    }
    if (*aName == "data" && !mSound.mfFound) {
        TakeSound(*aContent);
    } else if (*aName == "ds64" && Is64()) {
        TakeLargeSizes(*aContent);
    } else if (mWalk.GetStatedSize() == kUnknown32 && Is64()) {
        mWalk.SetContentSize(LargeSizeOf(*aName));
    }
    return true;
}

/// The sizes of the file, of the sound, of the samples, and a table of those of other chunks.
void WAVWalk::TakeLargeSizes(ByteReader aContent) {
    mfLargeSizes = true;
    aContent.Skip(8);
    mSound64 = aContent.ReadLittle(8);
    mSamples64 = aContent.ReadLittle(8);
    mSamples64 = mSamples64 != UINT64_MAX ? mSamples64 : 0;
    mSizes = aContent;
}

/// The size of a chunk by that table; up to the end where it is not in there.
std::uint64_t WAVWalk::LargeSizeOf(BoxType aName) const {
    ByteReader table = mSizes;
    const std::uint32_t count = mfLargeSizes ? std::min(table.ReadLittle32(), kWAV_MaxLargeChunks) : 0;
    for (std::uint32_t i = 0; i < count && !table.HasFailed(); ++i) {
        const BoxType name = BoxType::Read(table);
        const std::uint64_t size = table.ReadLittle(8);
        if (name == aName) {
            return size;
        }
    }
    return UINT64_MAX;
}

void WAVWalk::TakeSound(const ByteReader& aContent) {
    mSound.mfFound = true;
    mSound.mStart = aContent.GetPosition();
    const std::uint64_t there = mEnd - mSound.mStart;
    const std::uint64_t stated = StatedSound();
    const SoundSize size(stated, there, mfSizeKnown);
    const std::uint64_t lost = size.mfMeasured ? 0 : LostBytes(stated, there);
    mSound.mSize = size.mBytes + lost;
    mSound.mfMeasured = size.mfMeasured || lost != 0;
    mSound.mEnd = size.mfMeasured ? mEnd : mSound.mStart + mSound.mSize;
    mWalk.SetContentSize(stated == 0 ? 0 : mSound.mSize);
}

/// Bytes that the sound states to have: 0 and 2^64-1 where it leaves that open.
std::uint64_t WAVWalk::StatedSound() const {
    const std::uint64_t stated = mWalk.GetStatedSize();
    if (mHead.mLayout.mSizeBytes != 4) {
        return stated;
    }
    const bool fOpen = stated == kUnknown32 || stated == 0;
    const bool f64 = mSound64 != 0 && (fOpen || (mSound64 & kUnknown32) == stated);
    return f64 ? mSound64 : SoundSize::Of32(static_cast<std::uint32_t>(stated));
}

/// What a size of 32 bits has lost.
std::uint64_t WAVWalk::LostBytes(std::uint64_t aStated, std::uint64_t aThere) const {
    constexpr unsigned kBits = 32;
    if (!mfSizeKnown || mHead.mLayout.mSizeBytes != 4 || Is64()) {
        return 0;
    }
    const std::uint64_t whole = mEnd - (mFirst - 4); // the size of the file counts the form
    const std::uint64_t missing = whole > mHead.mSize ? whole - mHead.mSize : 0;
    const std::uint64_t lost = ezSaturating_Add64(missing, kWAV_WrapSlack) >> kBits << kBits;
    const bool fNearly = lost != 0 && missing + kWAV_WrapSlack - lost <= 2 * kWAV_WrapSlack;
    const std::uint64_t more = aThere - aStated;
    return fNearly && lost <= ezSaturating_Add64(more, kWAV_WrapSlack) ? std::min(lost, more) : 0;
}
