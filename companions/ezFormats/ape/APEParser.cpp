#include "ezFormats/ape/APEParser.h"

#include "ezFormats/detail/Limits.h"
#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/detail/MediaNumbers.h"
#include "ezFormats/detail/SoundRecord.h"
#include "ezFormats/tags/SongTags.h"

#include "ezBytes/ByteReader.h"
#include "ezBytes/CodePage.h"

#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>

namespace {

constexpr std::uint32_t kWhole = 0x4D414320;    // "MAC "
constexpr std::uint32_t kFloating = 0x4D414346; // "MACF"
constexpr std::uint32_t kFirstVersion = 3800;
constexpr std::uint32_t kDescribedVersion = 3980; ///< from which on a descriptor comes first
constexpr std::uint32_t kLastVersion = 3999;

/// What a file begins with: the word, the version, and of the older form the level of compression, which is
/// 1000 and more. One without it is of the newer form, whatever version is stated.
struct Start {
    std::uint32_t mWord = 0;
    std::uint32_t mVersion = 0;
    std::uint32_t mLevel = 0;

    bool IsOurs() const {
        return (mWord == kWhole || mWord == kFloating) && mVersion >= kFirstVersion &&
               mVersion <= kLastVersion;
    }
    bool IsDescribed() const { return mVersion >= kDescribedVersion || mLevel == 0; }
};

Start ReadStart(ByteReader& aReader) {
    Start start;
    start.mWord = aReader.ReadBig32();
    start.mVersion = static_cast<std::uint32_t>(aReader.ReadLittle(2));
    start.mLevel = static_cast<std::uint32_t>(aReader.ReadLittle(2));
    return start;
}

/// What the header states. A frame is of a fixed count of samples of each channel, but the last.
struct Header {
    std::uint32_t mFrames = 0;
    std::uint32_t mFrameSamples = 0;
    std::uint32_t mLastSamples = 0;
    std::uint32_t mBits = 0;
    std::uint32_t mChannels = 0;
    std::uint32_t mSamplingRate = 0;
    std::uint64_t mBefore = 0; ///< bytes from the start of the header to the frames

    /// 0, not known, for a last frame of more samples than a frame has.
    std::uint64_t GetSamples() const {
        const bool fCounted = mFrames != 0 && mLastSamples <= mFrameSamples;
        return fCounted ? std::uint64_t{mFrames - 1} * mFrameSamples + mLastSamples : 0;
    }
};

/// The newer form: sizes of all parts, and then the header. aReader stands after the start.
Header ReadDescribed(ByteReader& aReader) {
    constexpr std::uint64_t kDescriptorRead =
        24; // bytes that are read of the descriptor, those before included
    Header header;
    const std::uint64_t descriptorSize = aReader.ReadLittle32();
    for (unsigned part = 0; part < 3; ++part) { // the header, the seek table, the header of the WAV
        header.mBefore += aReader.ReadLittle32();
    }
    header.mBefore += descriptorSize;
    aReader.Require(descriptorSize >= kDescriptorRead);
    aReader.Skip(descriptorSize - kDescriptorRead); // the rest of it
    aReader.Skip(4);                                // level of compression and flags
    header.mFrameSamples = aReader.ReadLittle32();
    header.mLastSamples = aReader.ReadLittle32();
    header.mFrames = aReader.ReadLittle32();
    header.mBits = static_cast<std::uint32_t>(aReader.ReadLittle(2));
    header.mChannels = static_cast<std::uint32_t>(aReader.ReadLittle(2));
    header.mSamplingRate = aReader.ReadLittle32();
    return header;
}

/// Samples of a frame, which the older form does not state.
std::uint32_t FrameSamplesOf(const Start& aStart) {
    constexpr std::uint32_t kExtraHigh = 4000;
    if (aStart.mVersion >= 3950) {
        return 294912;
    }
    return aStart.mVersion >= 3900 || aStart.mLevel == kExtraHigh ? 73728 : 9216;
}

/// The older form. aReader stands after the start.
Header ReadPlain(const Start& aStart, ByteReader& aReader) {
    constexpr std::uint32_t kIs8Bit = 1;
    constexpr std::uint32_t kHasPeak = 4;
    constexpr std::uint32_t kIs24Bit = 8;
    constexpr std::uint32_t kHasTableCount = 16;
    constexpr std::uint32_t kMakesHead = 32; // the decoder makes that of the WAV
    constexpr std::uint64_t kSize = 32;
    Header header;
    const auto flags = static_cast<std::uint32_t>(aReader.ReadLittle(2));
    header.mChannels = static_cast<std::uint32_t>(aReader.ReadLittle(2));
    header.mSamplingRate = aReader.ReadLittle32();
    const std::uint64_t headSize = aReader.ReadLittle32(); // of the header of the WAV
    aReader.Skip(4);                                       // bytes that it has after its sound
    header.mFrames = aReader.ReadLittle32();
    header.mLastSamples = aReader.ReadLittle32();
    aReader.Skip((flags & kHasPeak) != 0 ? 4 : 0);
    const bool fCounted = (flags & kHasTableCount) != 0;
    const std::uint64_t tableCount = fCounted ? aReader.ReadLittle32() : header.mFrames;
    header.mFrameSamples = FrameSamplesOf(aStart);
    header.mBits = (flags & kIs8Bit) != 0 ? 8 : (flags & kIs24Bit) != 0 ? 24 : 16;
    header.mBefore = kSize + ((flags & kHasPeak) != 0 ? 4 : 0) + (fCounted ? 4 : 0) +
                     ((flags & kMakesHead) != 0 ? 0 : headSize) + tableCount * 4;
    return header;
}

SoundFacts FactsOf(const Header& aHeader) {
    SoundFacts sound;
    sound.mCodec = "APE";
    sound.mSamplingRate = aHeader.mSamplingRate;
    sound.mChannels = aHeader.mChannels;
    sound.mBitsPerSample = aHeader.mBits;
    sound.mSamples = aHeader.GetSamples();
    return sound;
}

/// Holds the length against the bytes after the header. There is no lowest rate, as a frame of silence is
/// half a minute in a few bytes; but the seek table has a number of 32 bits for each frame.
void HoldAgainstSize(const Header& aHeader, std::uint64_t aBytes, SoundFacts& aSound) {
    const std::uint64_t rate =
        MediaNumber_Scale(aSound.mBytes, std::uint64_t{8} * aSound.mSamplingRate, aSound.mSamples);
    const bool fPossible = rate <= kSound_MaxBitRate && std::uint64_t{aHeader.mFrames} * 4 <= aBytes;
    aSound.mSamples = fPossible ? aSound.mSamples : 0;
}

} // namespace

bool APEParser::IsAt(ByteReader aBytes) {
    const Start start = ReadStart(aBytes);
    return !aBytes.HasFailed() && start.IsOurs();
}

bool APEParser::ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) {
    const CodePage codePage(GetTextCodePage());
    LeadingTags tags = ReadLeadingTags(aBytes, codePage, kAPE_NextSize);
    ByteReader reader(aBytes);
    reader.Skip(tags.mEnd);
    const Start start = ReadStart(reader);
    if (start.mWord != kWhole && start.mWord != kFloating) {
        return Refuse(Cause::Malformed, "begins with %08X", unsigned{start.mWord});
    }
    if (!reader.HasFailed() && !start.IsOurs()) {
        return Refuse(Cause::Unsupported, "version %u", unsigned{start.mVersion});
    }
    const Header header = start.IsDescribed() ? ReadDescribed(reader) : ReadPlain(start, reader);
    if (reader.HasFailed()) {
        return RefuseCut(aBytes, "the end of the header");
    }
    if (header.mSamplingRate == 0 || header.mChannels == 0) {
        return Refuse(Cause::Malformed, "%u channels at %u Hz", unsigned{header.mChannels},
                      unsigned{header.mSamplingRate});
    }
    SoundFacts sound = FactsOf(header);
    const TailTags tails = ReadTailTags(aBytes, reader.GetPosition(), codePage, kTailTags_ShortSize);
    if (aBytes.HasLostBytes()) {
        return RefuseCut(aBytes, "the end of the tags");
    }
    if (aBytes.GetSize()) {
        sound.mBytes = tails.mStart - std::min(tags.mEnd + header.mBefore, tails.mStart);
        HoldAgainstSize(header, tails.mStart - reader.GetPosition(), sound);
    }
    sound.Store(anInfo);
    tags.mTexts.Complete(tails.mTexts);
    tags.mTexts.Store(anInfo);
    tags.mCover.Complete(tails.mCover);
    tags.mCover.Store(anInfo);
    return true;
}
