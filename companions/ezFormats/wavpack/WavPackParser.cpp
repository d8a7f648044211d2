#include "ezFormats/wavpack/WavPackParser.h"

#include "ezFormats/detail/Limits.h"
#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/detail/SoundRecord.h"
#include "ezFormats/tags/SongTags.h"
#include "ezFormats/wavpack/WavPackBlock.h"

#include "ezBytes/ByteReader.h"
#include "ezBytes/CodePage.h"

#include "ezPlatform/base/Checked.h"
#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace {

ByteReader ReaderAt(ByteSource& aBytes, std::uint64_t aPosition) {
    ByteReader reader(aBytes);
    reader.Skip(aPosition);
    return reader;
}

/// The blocks that a file begins with, as far as they are needed.
struct FirstBlocks {
    WavPackHeader mHeader; ///< of the first with samples
    WavPackSubBlocks mSubBlocks;
    std::uint64_t mTotal = 0; ///< samples; 0: not stated
    std::uint32_t mChannels = 0;
    bool mfFound = false; ///< one with samples
};

/// The channels of the blocks of a group, of which aHeader is the first; 0 where not all of them are there.
std::uint32_t SumChannels(ByteSource& aBytes, std::uint64_t aPosition, WavPackHeader aHeader) {
    std::uint32_t channels = aHeader.GetChannels();
    for (std::uint32_t count = 0; !aHeader.IsLastOfGroup(); ++count) {
        aPosition = ezSaturating_Add64(aPosition, aHeader.mSize);
        ByteReader next = ReaderAt(aBytes, aPosition);
        if (count == kWavPack_MaxBlocks || !ReadWavPackHeader(next, &aHeader)) {
            return 0;
        }
        channels += aHeader.GetChannels();
    }
    return channels;
}

/// Looks for the first block with samples from a position on, where a block stands.
FirstBlocks ReadFirstBlocks(ByteSource& aBytes, std::uint64_t aPosition) {
    FirstBlocks first;
    for (std::uint32_t count = 0; count < kWavPack_MaxBlocks; ++count) {
        ByteReader block = ReaderAt(aBytes, aPosition);
        if (!ReadWavPackHeader(block, &first.mHeader)) {
            break;
        }
        first.mTotal = first.mTotal != 0 ? first.mTotal : first.mHeader.mTotal;
        if (first.mHeader.mSamples != 0) {
            const std::uint64_t rest = first.mHeader.mSize - kWavPackHeader_Size;
            first.mSubBlocks = ReadWavPackSubBlocks(block.Take(std::min(rest, block.GetLeft())));
            first.mChannels = first.mSubBlocks.mChannels != 0 ? first.mSubBlocks.mChannels
                                                              : SumChannels(aBytes, aPosition, first.mHeader);
            first.mfFound = true;
            break;
        }
        aPosition = ezSaturating_Add64(aPosition, first.mHeader.mSize);
    }
    return first;
}

/// The sampling rate that plays; 0 where it is not known, or no number of 32 bits.
std::uint32_t SamplingRateOf(const FirstBlocks& aFirst) {
    constexpr std::uint32_t kSamples = 8; // of DSD in a byte, which is what blocks count
    const std::uint32_t listed = aFirst.mHeader.GetSamplingRate();
    const std::uint32_t rate = listed != 0 ? listed : aFirst.mSubBlocks.mSamplingRate;
    if (!aFirst.mHeader.IsDSD()) {
        return rate;
    }
    const std::uint32_t shift = aFirst.mSubBlocks.mShift;
    const bool fBelieved = aFirst.mSubBlocks.mfShift && shift <= kWavPack_MaxShift;
    const std::uint64_t bits = fBelieved ? (std::uint64_t{rate} << shift) * kSamples : 0;
    return bits <= UINT32_MAX ? static_cast<std::uint32_t>(bits) : 0;
}

/// The last header with samples that begins in a range, whose bytes are buffered. False where there is none.
bool FindLastHeader(MediaBytes& aBytes, std::uint64_t aStart, std::uint64_t anEnd, WavPackHeader* aHeader) {
    bool fFound = false;
    for (std::uint64_t position = aStart; position < anEnd && aBytes.HasBuffered(position); ++position) {
        const unsigned char* bytes = nullptr;
        const std::size_t count = static_cast<std::size_t>(
            std::min<std::uint64_t>(aBytes.Borrow(position, &bytes), anEnd - position));
        const void* const mark = std::memchr(bytes, 'w', count);
        if (mark == nullptr) {
            position += count - 1;
            continue;
        }
        position += static_cast<std::size_t>(static_cast<const unsigned char*>(mark) - bytes);
        ByteReader reader = ReaderAt(aBytes, position);
        WavPackHeader header;
        if (ReadWavPackHeader(reader, &header) && header.mSamples != 0) {
            *aHeader = header;
            fFound = true;
        }
    }
    return fFound;
}

/// Where the last block ends, in samples from the first one on; 0, not known, where none is found in the last
/// bytes of the sound.
std::uint64_t FindLastSample(MediaBytes& aBytes, const BytePiece& aSound, std::uint64_t aFirstIndex) {
    const std::uint64_t soundEnd = aSound.mOffset + aSound.mSize;
    const std::uint64_t start = soundEnd - std::min(aSound.mSize, kWavPack_SearchSize);
    std::uint64_t end = soundEnd; // of the bytes that are not searched yet
    while (end - start >= kWavPackHeader_Size) {
        const std::uint64_t size = std::min<std::uint64_t>(end - start, kMediaBytes_LargestBlock);
        if (!aBytes.Load(end - size, static_cast<std::size_t>(size))) {
            return 0;
        }
        WavPackHeader header;
        if (FindLastHeader(aBytes, end - size, end - kWavPackHeader_Size + 1, &header)) {
            const std::uint64_t last = header.mIndex + header.mSamples;
            return last - std::min(aFirstIndex, last);
        }
        end = end - size == start ? start : end - size + kWavPackHeader_Size - 1; // one may go across
    }
    return 0;
}

/// The length: as it is counted, unless that is missing or contradicts the size. The last block is believed
/// whatever the size: blocks of silence at a low rate have less than any other sound.
void Measure(MediaBytes& aBytes, const FirstBlocks& aFirst, const BytePiece& aSound, SoundFacts& aFacts) {
    const std::uint64_t factor = aFirst.mHeader.IsDSD() ? 8 : 1;
    aFacts.mBytes = aSound.mSize;
    aFacts.mSamples = aFirst.mTotal * factor;
    if (!aBytes.GetSize() ||
        SoundFacts::IsLengthPlausible(aSound.mSize, aFacts.mSamples, aFacts.mSamplingRate)) {
        return;
    }
    const std::uint64_t last = FindLastSample(aBytes, aSound, aFirst.mHeader.mIndex);
    aFacts.mSamples = last * factor;
    aFacts.mDurationMethod = "last block";
}

SoundFacts FactsOf(const FirstBlocks& aFirst) {
    SoundFacts sound;
    sound.mCodec = "WavPack";
    sound.mSamplingRate = SamplingRateOf(aFirst);
    sound.mChannels = aFirst.mChannels;
    sound.mBitsPerSample = aFirst.mHeader.IsDSD() ? 1 : aFirst.mHeader.GetBits();
    return sound;
}

} // namespace

bool WavPackParser::IsAt(ByteReader aBytes) {
    WavPackHeader header;
    return ReadWavPackHeader(aBytes, &header);
}

bool WavPackParser::ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) {
    const CodePage codePage(GetTextCodePage());
    LeadingTags tags = ReadLeadingTags(aBytes, codePage, kWavPack_NextSize);
    WavPackHeader header;
    ByteReader reader = ReaderAt(aBytes, tags.mEnd);
    if (!ReadWavPackHeader(reader, &header)) {
        return Refuse(Cause::Malformed, "no block at %llu", static_cast<unsigned long long>(tags.mEnd));
    }
    const FirstBlocks first = ReadFirstBlocks(aBytes, tags.mEnd);
    if (!first.mfFound) {
        return RefuseCut(aBytes, "a block with samples");
    }
    if (first.mSubBlocks.mfCorrections) {
        return Refuse(Cause::Unsupported, "corrections of another file");
    }
    SoundFacts sound = FactsOf(first);
    if (sound.mSamplingRate == 0) {
        return Refuse(Cause::Malformed, "no sampling rate, or none that there is");
    }
    const TailTags tails = ReadTailTags(aBytes, reader.GetPosition(), codePage);
    const std::uint64_t end = aBytes.GetSize() ? tails.mStart : tags.mEnd;
    Measure(aBytes, first, {tags.mEnd, end - tags.mEnd}, sound);
    // The length of what could be read might be another one.
    if (aBytes.HasLostBytes()) {
        return RefuseCut(aBytes, "all that tells the length");
    }
    sound.Store(anInfo);
    tags.mTexts.Complete(tails.mTexts);
    tags.mTexts.Store(anInfo);
    tags.mCover.Complete(tails.mCover);
    tags.mCover.Store(anInfo);
    return true;
}
