#include "ezFormats/avi/AVIFrames.h"

#include "ezFormats/avi/AVIFile.h"
#include "ezFormats/avi/AVILimits.h"
#include "ezFormats/detail/MediaBytes.h"

#include "ezBytes/ChunkWalk.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace {

std::uint32_t DigitOf(std::uint32_t aCode, unsigned aShift) {
    return (aCode >> aShift & 0xFF) - '0';
}

/// The number of the stream whose frame a chunk of this name is: two digits, and two letters for its kind.
std::optional<std::uint32_t> StreamOf(BoxType aName) {
    constexpr std::uint32_t kPalette = 0x7063; // "pc": colours that change
    const std::uint32_t tens = DigitOf(aName.GetCode(), 24);
    const std::uint32_t ones = DigitOf(aName.GetCode(), 16);
    const bool fFrame = tens <= 9 && ones <= 9 && (aName.GetCode() & 0xFFFF) != kPalette;
    return fFrame ? std::make_optional(10 * tens + ones) : std::nullopt;
}

/// Whether a name is one that writers use, where bytes of any kind are searched for a frame: compressed
/// pictures, others, sound, and frames of DV.
bool IsUsualFrame(BoxType aName) {
    constexpr std::array<std::uint32_t, 4> kLetters = {0x6463, 0x6462,  // "dc", "db"
                                                       0x7762, 0x5F5F}; // "wb", "__"
    return StreamOf(aName).has_value() &&
           std::find(kLetters.begin(), kLetters.end(), aName.GetCode() & 0xFFFF) != kLetters.end();
}

/// Lists of frames: those that belong together, the next part of the file, and its frames. Their content is
/// walked as if there were no list around it.
bool IsOpened(BoxType aName, ByteReader aContent) {
    constexpr std::array<BoxType, 3> kOpened = {{"rec ", "movi", "AVIX"}};
    return (aName == "LIST" || aName == "RIFF") &&
           std::find(kOpened.begin(), kOpened.end(), BoxType::Read(aContent)) != kOpened.end();
}

void Read(ByteReader aFrame, AVIFirstFrame& aFirst) {
    const auto size = std::min<std::uint64_t>(aFrame.GetLeft(), aFirst.mMaximum);
    aFirst.mBytes.resize(static_cast<std::size_t>(size));
    if (!aFrame.Read(aFirst.mBytes.data(), aFirst.mBytes.size())) {
        aFirst.mBytes.clear();
    }
}

} // namespace

void FindAVIFirstFrames(const AVIFile& aFile, AVIFirstFrame& aVideo, AVIFirstFrame& aSound,
                        std::uint32_t& aBudget) {
    if (!aFile.GetFrames()) {
        return;
    }
    ChunkWalk walk(*aFile.GetFrames(), kChunks_RIFF, aBudget);
    BoxType name;
    ByteReader content = *aFile.GetFrames();
    for (std::uint32_t i = 0;
         i < kAVI_MaxFirstChunks && (aVideo.IsWanted() || aSound.IsWanted()) && walk.Next(&name, &content);
         ++i) {
        if (IsOpened(name, content)) {
            walk.SetContentSize(kAVI_ListKindSize);
            continue;
        }
        const std::optional<std::uint32_t> number = StreamOf(name);
        for (AVIFirstFrame* const frame : {&aVideo, &aSound}) {
            if (frame->IsWanted() && number == aFile.GetHeader().GetNumber(*frame->mStream)) {
                Read(content, *frame);
            }
        }
    }
}

void AVICounter::Add(BoxType aName, std::uint64_t aSize, AVICount& aCount) const {
    if (StreamOf(aName) == mNumber) {
        aCount.mUnits += mStream.mUnitSize != 0 ? aSize / mStream.mUnitSize : 1;
    }
}

/// The first frame from a place on, within the block that is read there.
std::optional<std::uint64_t> AVICounter::FindFrame(std::uint64_t aPlace, std::uint64_t anEnd) {
    const unsigned char* bytes = nullptr;
    const std::size_t size = mBytes.Borrow(aPlace, &bytes);
    std::uint32_t word = 0;
    for (std::size_t i = 0; i + 4 < size; ++i) {
        word = word << 8 | bytes[i];
        if (i < 3 || !IsUsualFrame(BoxType(word))) {
            continue;
        }
        const std::uint64_t found = aPlace + i - 3;
        ByteReader reader(mBytes);
        reader.Skip(found + 4);
        const std::uint32_t stated =
            mBytes.HasBuffered(found, kAVI_ChunkHeadSize) ? reader.ReadLittle32() : UINT32_MAX;
        if (stated <= kAVI_MaxChunk && found < anEnd && stated <= anEnd - found) {
            return found;
        }
    }
    return std::nullopt;
}

AVICount AVICounter::CountFrames(std::uint64_t aPlace, std::uint64_t anEnd, bool afAtFrame) {
    AVICount count;
    const std::uint64_t size = std::min<std::uint64_t>(anEnd - std::min(aPlace, anEnd), kAVI_PlaceSize);
    if (size == 0 || !mBytes.Load(aPlace, static_cast<std::size_t>(size))) {
        return count;
    }
    const std::optional<std::uint64_t> start = afAtFrame ? aPlace : FindFrame(aPlace, anEnd);
    if (!start) {
        return count;
    }
    ByteReader reader(mBytes);
    reader.Skip(*start);
    std::uint64_t next = *start;
    ChunkWalk walk(reader, kChunks_RIFF, mBudget);
    BoxType name;
    for (ByteReader content = reader; next < anEnd &&
                                      mBytes.HasBuffered(next, kAVI_ChunkHeadSize + kAVI_ListKindSize) &&
                                      walk.Next(&name, &content);) {
        const bool fOpened = IsOpened(name, content);
        if (fOpened) {
            walk.SetContentSize(kAVI_ListKindSize);
        } else {
            Add(name, content.GetLeft(), count);
        }
        next = content.GetPosition() + (fOpened ? kAVI_ListKindSize : content.GetLeft());
    }
    count.mBytes = next - *start;
    return count;
}

/// AVIINDEXENTRY: name, flags, place, size
AVICount AVICounter::CountEntries(ByteReader anEntries) {
    AVICount count;
    while (anEntries.GetLeft() >= kAVI_IndexEntrySize) {
        if (!mBytes.HasBuffered(anEntries.GetPosition(), kAVI_IndexEntrySize)) {
            const auto size = std::min<std::uint64_t>(anEntries.GetLeft(), kAVI_PlaceSize);
            mBytes.Load(anEntries.GetPosition(), static_cast<std::size_t>(size));
        }
        const BoxType name = BoxType::Read(anEntries);
        anEntries.Skip(4 + 4);
        const std::uint32_t size = anEntries.ReadLittle32();
        if (anEntries.HasFailed()) {
            break;
        }
        Add(name, size, count);
        count.mBytes += kAVI_IndexEntrySize;
    }
    return count;
}
