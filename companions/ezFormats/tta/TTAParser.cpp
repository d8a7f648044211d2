#include "ezFormats/tta/TTAParser.h"

#include "ezFormats/detail/Limits.h"
#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/detail/SoundRecord.h"
#include "ezFormats/tags/SongTags.h"

#include "ezBytes/ByteReader.h"
#include "ezBytes/CodePage.h"

#include "ezPlatform/media/MediaInfo.h"

namespace {

constexpr std::uint32_t kMagic = 0x54544131; // "TTA1"

/// The header after its magic, with the check sum.
SoundFacts ReadHeader(ByteReader& aReader) {
    constexpr std::uint32_t kUnknown = 0xFFFFFFFF;
    SoundFacts sound;
    sound.mCodec = "TTA";
    aReader.Skip(2); // whether it is encrypted
    sound.mChannels = static_cast<std::uint32_t>(aReader.ReadLittle(2));
    sound.mBitsPerSample = static_cast<std::uint32_t>(aReader.ReadLittle(2));
    sound.mSamplingRate = aReader.ReadLittle32();
    const std::uint32_t samples = aReader.ReadLittle32();
    sound.mSamples = samples != kUnknown ? samples : 0;
    aReader.Skip(4);
    return sound;
}

} // namespace

bool TTAParser::IsAt(ByteReader aBytes) {
    return aBytes.ReadBig32() == kMagic;
}

bool TTAParser::ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) {
    constexpr std::uint32_t kMaxBits = 32;
    const CodePage codePage(GetTextCodePage());
    LeadingTags tags = ReadLeadingTags(aBytes, codePage, kTTA_NextSize);
    ByteReader reader(aBytes);
    reader.Skip(tags.mEnd);
    const std::uint32_t magic = reader.ReadBig32();
    if (magic != kMagic) {
        return Refuse(Cause::Malformed, "begins with %08X", unsigned{magic});
    }
    SoundFacts sound = ReadHeader(reader);
    if (reader.HasFailed()) {
        return RefuseCut(aBytes, "the end of the header");
    }
    if (sound.mSamplingRate == 0 || sound.mChannels == 0 || sound.mBitsPerSample == 0 ||
        sound.mBitsPerSample > kMaxBits) {
        return Refuse(Cause::Malformed, "%u channels of %u bits at %u Hz", unsigned{sound.mChannels},
                      unsigned{sound.mBitsPerSample}, unsigned{sound.mSamplingRate});
    }
    const TailTags tail = ReadTailTags(aBytes, reader.GetPosition(), codePage, kTailTags_ShortSize);
    if (aBytes.HasLostBytes()) {
        return RefuseCut(aBytes, "the end of the tags");
    }
    if (aBytes.GetSize()) {
        sound.HoldAgainst(tail.mStart - reader.GetPosition());
    }
    tags.mTexts.Complete(tail.mTexts);
    tags.mCover.Complete(tail.mCover);
    sound.Store(anInfo);
    tags.mTexts.Store(anInfo);
    tags.mCover.Store(anInfo);
    return true;
}
