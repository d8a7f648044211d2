#include "ezFormats/flac/FLACParser.h"

#include "ezFormats/codecs/FLACFrameHeader.h"
#include "ezFormats/codecs/FLACStreamInfo.h"
#include "ezFormats/detail/Limits.h"
#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/detail/SoundRecord.h"
#include "ezFormats/tags/CoverFacts.h"
#include "ezFormats/tags/MusicValues.h"
#include "ezFormats/tags/SongTags.h"

#include "ezBytes/ByteReader.h"
#include "ezBytes/CodePage.h"
#include "ezBytes/TextBytes.h"
#include "ezBytes/VorbisComments.h"

#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <optional>

namespace {

constexpr std::uint32_t kMagic = 0x664C6143; // "fLaC" (6)

// Types of metadata blocks (8.1).
constexpr unsigned kStreamInfo = 0;
constexpr unsigned kVorbisComment = 4;
constexpr unsigned kPicture = 6;
constexpr unsigned kNoBlock = 127;

/// What the metadata of a file tells.
struct Metadata {
    FLACStreamInfo mStream;
    bool mfStream = false;
    MusicTexts mTexts;
    CoverFacts mCover;
    std::uint64_t mEnd = 0; ///< where the frames begin; 0 where the blocks do not lead there
};

/// Takes the texts of a block of comments (8.6).
void TakeComments(const ByteReader& aBlock, MusicTexts& aTexts) {
    VorbisComments comments(aBlock);
    MusicValues values;
    ezCString key;
    ByteReader value = aBlock;
    for (std::uint32_t count = 0; count < kMusicTexts_MaxFrames && comments.Next(&key, &value); ++count) {
        if (const TagField* const field = FindTagField(TagWords::Vorbis, key.View())) {
            values.Add(*field, CleanText(ReadTextBytes(value), TextEncoding::Utf8));
        }
    }
    values.Store(aTexts);
}

void TakeBlock(unsigned aType, const ByteReader& aHeader, const ByteReader& aBlock, Metadata& aMetadata) {
    if (aType == kStreamInfo && !aMetadata.mfStream) { // of two the first counts
        aMetadata.mStream = ReadFLACStreamInfo(aHeader);
        aMetadata.mfStream = true;
    } else if (aType == kVorbisComment) {
        TakeComments(aBlock, aMetadata.mTexts);
    } else if (aType == kPicture) {
        aMetadata.mCover.OfferBlock(aBlock);
    }
}

/// Reads the blocks up to the frames. aReader stands after the magic.
Metadata ReadMetadata(ByteReader aReader) {
    constexpr unsigned kLast = 0x80;
    Metadata metadata;
    for (std::uint32_t count = 0; count < kFLAC_MaxBlocks; ++count) {
        const ByteReader header = aReader;
        const unsigned head = aReader.ReadByte();
        const ByteReader block = aReader.Take(aReader.ReadBig(3));
        const unsigned type = head & ~kLast;
        if (aReader.HasFailed() || type == kNoBlock) {
            return metadata;
        }
        TakeBlock(type, header, block, metadata);
        if ((head & kLast) != 0) {
            metadata.mEnd = aReader.GetPosition();
            return metadata;
        }
    }
    return metadata;
}

/// The end of the last frame in the last bytes of a file, in samples; 0 where none is found. Of what looks
/// like a header, those count that follow each other.
std::uint64_t FindLastSample(MediaBytes& aBytes, std::uint64_t aStart, const FLACStreamInfo& aStream) {
    const std::uint64_t size = aBytes.GetEnd();
    const std::uint64_t start = std::max(aStart, size - std::min<std::uint64_t>(size, kFLAC_TailSize));
    if (start >= size || !aBytes.Load(start, kFLAC_TailSize)) {
        return 0;
    }
    std::uint64_t end = 0;
    bool fChain = false;
    for (std::uint64_t position = start; aBytes.HasBuffered(position);) {
        const unsigned char* bytes = nullptr;
        const std::size_t count = aBytes.Borrow(position, &bytes);
        const void* const sync = std::memchr(bytes, 0xFF, count);
        if (sync == nullptr) {
            position += count;
            continue;
        }
        position += static_cast<std::size_t>(static_cast<const unsigned char*>(sync) - bytes);
        ByteReader reader(aBytes);
        reader.Skip(position++);
        FLACFrameHeader header;
        if (ReadFLACFrameHeader(reader, aStream, &header) && (!fChain || header.mFirstSample == end)) {
            fChain = header.mFirstSample == end && end != 0;
            end = header.GetEnd();
        }
    }
    return end;
}

/// Whether so many samples can be coded in so many bytes: not in less than a hundredth of plain ones, nor in
/// half as much again.
bool CanHold(std::uint64_t aBytes, const FLACStreamInfo& aStream) {
    const std::uint64_t bits = std::uint64_t{aStream.mChannels} * aStream.mBitsPerSample;
    const std::uint64_t plain = aStream.mSamples * bits / 8; // 36 bits by 8 at most
    return plain / 100 <= aBytes && aBytes <= plain + plain / 2 + kFLAC_TailSize;
}

} // namespace

bool FLACParser::IsAt(ByteReader aBytes) {
    return aBytes.ReadBig32() == kMagic;
}

bool FLACParser::ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) {
    const CodePage codePage(GetTextCodePage());
    LeadingTags tags = ReadLeadingTags(aBytes, codePage, kFLAC_TailSize);
    ByteReader reader(aBytes);
    reader.Skip(tags.mEnd);
    const std::uint32_t magic = reader.ReadBig32();
    if (magic != kMagic) {
        return Refuse(Cause::Malformed, "begins with %08X", unsigned{magic});
    }
    Metadata metadata = ReadMetadata(reader);
    if (!metadata.mfStream) {
        return RefuseCut(aBytes, "STREAMINFO");
    }
    FLACStreamInfo& stream = metadata.mStream;
    FLACFrameHeader first;
    ByteReader frames(aBytes);
    frames.Skip(metadata.mEnd);
    if (metadata.mEnd != 0 && stream.mSamplingRate == 0 && ReadFLACFrameHeader(frames, stream, &first)) {
        stream.mSamplingRate = first.mSamplingRate;
        stream.mChannels = first.mChannels;
        stream.mBitsPerSample = first.mBitsPerSample;
    }
    SoundFacts sound;
    sound.mCodec = "FLAC";
    sound.mSamplingRate = stream.mSamplingRate;
    sound.mChannels = stream.mChannels;
    sound.mBitsPerSample = stream.mBitsPerSample;
    sound.mSamples = stream.mSamples;
    if (aBytes.GetSize() && metadata.mEnd != 0) {
        sound.mBytes = *aBytes.GetSize() - std::min(metadata.mEnd, *aBytes.GetSize());
        const std::uint64_t last = stream.mSamples == 0 || !CanHold(sound.mBytes, stream)
                                       ? FindLastSample(aBytes, metadata.mEnd, stream)
                                       : 0;
        if (last != 0) {
            sound.mSamples = last;
        }
    }
    sound.Store(anInfo);
    metadata.mTexts.Complete(tags.mTexts);
    metadata.mTexts.Store(anInfo);
    metadata.mCover.Store(anInfo);
    return true;
}
