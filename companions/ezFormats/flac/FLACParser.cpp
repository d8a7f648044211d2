#include "ezFormats/flac/FLACParser.h"

#include "ezFormats/codecs/FLACFrameHeader.h"
#include "ezFormats/codecs/FLACStreamInfo.h"
#include "ezFormats/detail/Limits.h"
#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/detail/SoundRecord.h"
#include "ezFormats/tags/CommentTexts.h"
#include "ezFormats/tags/CoverFacts.h"
#include "ezFormats/tags/SongTags.h"

#include "ezBytes/ByteReader.h"
#include "ezBytes/CodePage.h"
#include "ezBytes/FLACBlocks.h"

#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace {

constexpr std::uint32_t kMagic = 0x664C6143; // "fLaC" (6)

/// What the metadata of a file tells.
struct Metadata {
    FLACStreamInfo mStream;
    bool mfStream = false;
    MusicTexts mTexts;
    CoverFacts mCover;
    std::uint64_t mEnd = 0; ///< where the frames begin; 0 where the blocks do not lead there
};

void TakeBlock(unsigned aType, const ByteReader& aHeader, const ByteReader& aBlock, const CodePage& aCodePage,
               Metadata& aMetadata) {
    if (aType == kFLACBlock_StreamInfo && !aMetadata.mfStream) { // of two the first counts
        aMetadata.mStream = ReadFLACStreamInfo(aHeader);
        aMetadata.mfStream = aMetadata.mStream.mChannels != 0; // else it is not all there
    } else if (aType == kFLACBlock_VorbisComment) {
        ReadCommentTexts(aBlock, aCodePage, aMetadata.mTexts, aMetadata.mCover);
    } else if (aType == kFLACBlock_Picture) {
        aMetadata.mCover.OfferBlock(aBlock);
    }
}

/// Reads the blocks up to the frames. aReader stands after the magic.
Metadata ReadMetadata(ByteReader aReader, const CodePage& aCodePage) {
    Metadata metadata;
    FLACBlock block;
    ByteReader header = aReader;
    ByteReader body = aReader;
    for (std::uint32_t count = 0; count < kFLAC_MaxBlocks; ++count) {
        header = aReader;
        if (!ReadFLACBlock(aReader, &block, &body)) {
            return metadata;
        }
        TakeBlock(block.mType, header, body, aCodePage, metadata);
        if (block.mfLast) {
            metadata.mEnd = aReader.GetPosition();
            return metadata;
        }
    }
    return metadata;
}

/// Where the last frame ends, in samples; 0 where none is found. The bytes that the sound ends in are
/// searched to their end, as a frame of silence is short. Of what looks like a header, those count that
/// follow each other.
std::uint64_t FindLastSample(MediaBytes& aBytes, const BytePiece& aSound, const FLACStreamInfo& aStream) {
    const std::uint64_t soundEnd = aSound.mOffset + aSound.mSize;
    const std::uint64_t start = soundEnd - std::min<std::uint64_t>(aSound.mSize, kFLAC_TailSize);
    if (!aBytes.Load(start, kFLAC_TailSize)) {
        return 0;
    }
    std::uint64_t end = 0;
    bool fChain = false;
    for (std::uint64_t position = start; position < soundEnd && aBytes.HasBuffered(position);) {
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

/// What STREAMINFO leaves to the frames: each states it.
void TakeFirstFrame(MediaBytes& aBytes, std::uint64_t aPosition, FLACStreamInfo& aStream) {
    ByteReader frames(aBytes);
    frames.Skip(aPosition);
    FLACFrameHeader first;
    const bool fAll = aStream.mSamplingRate != 0 && aStream.mBitsPerSample != 0;
    if (!fAll && ReadFLACFrameHeader(frames, aStream, &first)) { // which agrees with what is stated
        aStream.mSamplingRate = aStream.mSamplingRate != 0 ? aStream.mSamplingRate : first.mSamplingRate;
        aStream.mBitsPerSample = aStream.mBitsPerSample != 0 ? aStream.mBitsPerSample : first.mBitsPerSample;
    }
}

/// The count of samples: that of the header, unless the last frame tells another and the header's is missing
/// or contradicts the size.
void MeasureSound(MediaBytes& aBytes, const BytePiece& aSound, SoundFacts& aFacts,
                  const FLACStreamInfo& aStream) {
    aFacts.mBytes = aSound.mSize;
    if (aStream.mSamples != 0 && CanHold(aSound.mSize, aStream)) {
        return;
    }
    const std::uint64_t last = FindLastSample(aBytes, aSound, aStream);
    if (last != 0) {
        aFacts.mSamples = last;
        aFacts.mDurationMethod = "last frame";
    }
}

/// The facts of the frames, and the texts of tags after them where nothing before them tells a title: few
/// files have both, and to look costs a read.
SoundFacts ReadSound(MediaBytes& aBytes, const CodePage& aCodePage, Metadata& aMetadata) {
    FLACStreamInfo& stream = aMetadata.mStream;
    const bool fFrames = aMetadata.mEnd != 0 && aMetadata.mEnd < aBytes.GetEnd();
    if (fFrames) {
        TakeFirstFrame(aBytes, aMetadata.mEnd, stream);
    }
    SoundFacts sound;
    sound.mCodec = "FLAC";
    sound.mSamplingRate = stream.mSamplingRate;
    sound.mChannels = stream.mChannels;
    sound.mBitsPerSample = stream.mBitsPerSample;
    sound.mSamples = stream.mSamples;
    if (!fFrames || !aBytes.GetSize()) {
        return sound;
    }
    std::uint64_t end = aBytes.GetEnd();
    const std::uint64_t size = end - aMetadata.mEnd;
    const bool fCounted = stream.mSamples != 0 && CanHold(size, stream);
    if (!fCounted) { // in one read with the tags
        aBytes.Load(end - std::min<std::uint64_t>(size, kFLAC_TailSize), kFLAC_TailSize);
    }
    if (!fCounted || aMetadata.mTexts.mTitle.IsEmpty()) {
        const TailTags tails = ReadTailTags(aBytes, aMetadata.mEnd, aCodePage);
        aMetadata.mTexts.Complete(tails.mTexts);
        aMetadata.mCover.Complete(tails.mCover);
        end = tails.mStart;
    }
    MeasureSound(aBytes, {aMetadata.mEnd, end - aMetadata.mEnd}, sound, stream);
    return sound;
}

} // namespace

bool FLACParser::IsAt(ByteReader aBytes) {
    return aBytes.ReadBig32() == kMagic;
}

bool FLACParser::ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) {
    const CodePage codePage(GetTextCodePage());
    const LeadingTags tags = ReadLeadingTags(aBytes, codePage, kFLAC_NextSize);
    ByteReader reader(aBytes);
    reader.Skip(tags.mEnd);
    const std::uint32_t magic = reader.ReadBig32();
    if (magic != kMagic) {
        return Refuse(Cause::Malformed, "begins with %08X", unsigned{magic});
    }
    Metadata metadata = ReadMetadata(reader, codePage);
    if (!metadata.mfStream) {
        return RefuseCut(aBytes, "STREAMINFO");
    }
    metadata.mTexts.Complete(tags.mTexts);
    metadata.mCover.Complete(tags.mCover);
    const SoundFacts sound = ReadSound(aBytes, codePage, metadata);
    // The length of what could be read might be another one.
    if (aBytes.HasLostBytes()) {
        return RefuseCut(aBytes, "all that tells the length");
    }
    sound.Store(anInfo);
    metadata.mTexts.Store(anInfo);
    metadata.mCover.Store(anInfo);
    return true;
}
