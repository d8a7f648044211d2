#include "ezFormats/dsf/DSFParser.h"

#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/detail/SoundRecord.h"
#include "ezFormats/tags/SongTags.h"

#include "ezBytes/BoxWalk.h"
#include "ezBytes/ByteReader.h"
#include "ezBytes/CodePage.h"

#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>

namespace {

constexpr BoxType kHead = "DSD ";
constexpr std::uint64_t kHeadSize = 28;
constexpr std::uint64_t kChunkHeadSize = 12; // which the size of a chunk counts
constexpr std::uint64_t kFormatSize = 52;

/// What the chunks before the samples tell.
struct Chunks {
    std::uint64_t mTag = 0;    ///< position; 0: there is none
    std::uint32_t mFormat = 0; ///< 0: DSD; no other is defined
    SoundFacts mSound;
    std::uint64_t mDataStart = 0; ///< position
    std::uint64_t mDataSize = 0;  ///< as it is stated: the samples filled up to whole blocks
};

/// Reads them; aReader stands at the rest of the head. What is not there fails the reader.
Chunks ReadChunks(ByteReader& aReader) {
    Chunks chunks;
    SoundFacts& sound = chunks.mSound;
    aReader.Skip(8); // size of the file, which whoever writes another tag forgets
    chunks.mTag = aReader.ReadLittle(8);
    aReader.Require(BoxType::Read(aReader) == "fmt ");
    const std::uint64_t size = aReader.ReadLittle(8);
    aReader.Require(size >= kFormatSize);
    ByteReader format = aReader.Take(aReader.HasFailed() ? 0 : size - kChunkHeadSize);
    format.Skip(4); // version
    chunks.mFormat = format.ReadLittle32();
    format.Skip(4); // which channels; how many there are stands next
    sound.mChannels = format.ReadLittle32();
    sound.mSamplingRate = format.ReadLittle32();
    format.Skip(4); // 1 or 8: the order of the samples in a byte, and not their bits
    sound.mBitsPerSample = 1;
    sound.mSamples = format.ReadLittle(8);
    ByteReader data = aReader; // which a file without samples may leave out
    const bool fData = BoxType::Read(data) == "data";
    const std::uint64_t stated = data.ReadLittle(8);
    chunks.mDataStart = data.GetPosition();
    chunks.mDataSize = fData && !data.HasFailed() ? stated - std::min(stated, kChunkHeadSize) : 0;
    return chunks;
}

/// Bytes of samples that the file has, where its size is known: the tag follows them.
std::uint64_t DataThere(const Chunks& aChunks, std::uint64_t anEnd) {
    const std::uint64_t end = aChunks.mTag >= aChunks.mDataStart ? std::min(aChunks.mTag, anEnd) : anEnd;
    return std::min(aChunks.mDataSize, end - std::min(aChunks.mDataStart, end));
}

/// The length: as it is counted, if there are so many samples.
void Measure(const Chunks& aChunks, const MediaBytes& aBytes, SoundFacts& aSound) {
    constexpr std::uint32_t kSamples = 8; // of a byte of each channel
    const std::uint64_t counted = aSound.mSamples;
    const std::uint64_t there = aBytes.GetSize() ? DataThere(aChunks, aBytes.GetEnd()) : 0;
    aSound.SetPackets(there, aSound.mChannels, kSamples);
    // The last byte of a channel may be filled up.
    if (counted != 0 && (!aBytes.GetSize() || (counted - 1) / kSamples < there / aSound.mChannels)) {
        aSound.mSamples = counted;
    } else {
        aSound.mDurationMethod = "constant rate";
    }
}

} // namespace

bool DSFParser::IsAt(ByteReader aBytes) {
    const BoxType name = BoxType::Read(aBytes);
    return aBytes.ReadLittle(8) == kHeadSize && name == kHead;
}

bool DSFParser::ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) {
    constexpr std::uint32_t kMaxChannels = 0xFFFF;
    ByteReader reader(aBytes);
    const BoxType head = BoxType::Read(reader);
    const std::uint64_t headSize = reader.ReadLittle(8);
    if (head != kHead || headSize != kHeadSize) {
        return Refuse(Cause::Malformed, "begins with %08X", unsigned{head.GetCode()});
    }
    Chunks chunks = ReadChunks(reader);
    SoundFacts& sound = chunks.mSound;
    if (reader.HasFailed()) {
        return RefuseCut(aBytes, "the description of the sound");
    }
    if (chunks.mFormat != 0) {
        return Refuse(Cause::Unsupported, "format %u", unsigned{chunks.mFormat});
    }
    if (sound.mSamplingRate == 0 || sound.mChannels == 0 || sound.mChannels > kMaxChannels) {
        return Refuse(Cause::Malformed, "%u channels at %u Hz", unsigned{sound.mChannels},
                      unsigned{sound.mSamplingRate});
    }
    sound.mCodec = "DSD";
    Measure(chunks, aBytes, sound);
    MusicTexts texts;
    CoverFacts cover;
    if (aBytes.GetSize() && chunks.mTag > kHeadSize && chunks.mTag < aBytes.GetEnd()) {
        aBytes.Load(chunks.mTag, kDSF_TagSize);
        ByteReader tag(aBytes);
        tag.Skip(chunks.mTag);
        TakeID3Chunk(aBytes, tag, CodePage(GetTextCodePage()), texts, cover);
    }
    if (aBytes.HasLostBytes()) {
        return RefuseCut(aBytes, "the end of the tag");
    }
    sound.Store(anInfo);
    texts.Store(anInfo);
    cover.Store(anInfo);
    return true;
}
