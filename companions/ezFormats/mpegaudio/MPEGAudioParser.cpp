#include "ezFormats/mpegaudio/MPEGAudioParser.h"

#include "ezFormats/codecs/MPEGAudioHeader.h"
#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/frames/OtherFormat.h"
#include "ezFormats/mpegaudio/MPEGAudioFile.h"
#include "ezFormats/mpegaudio/MPEGAudioLimits.h"
#include "ezFormats/tags/SongTags.h"

#include "ezBytes/ByteReader.h"
#include "ezBytes/CodePage.h"

#include "ezPlatform/media/MediaInfo.h"

namespace {

using LongLong = unsigned long long; // for printf

/// True when frames fewer than make a stream are all that the file holds; the last may be cut.
bool IsShortFile(MediaBytes& aBytes, const MPEGAudioFrames& aFrames, std::uint64_t anEnd) {
    unsigned char byte = 0;
    if (!aBytes.GetSize()) {
        return aFrames.GetCount() > 1 && !aBytes.Get(aFrames.GetEnd(), &byte);
    }
    return aFrames.GetCount() > 1 ? aFrames.GetEnd() >= anEnd : aFrames.GetEnd() == anEnd;
}

} // namespace

/// Two frames in a row of one version, layer and sampling rate; not of free format, which tells no length.
bool MPEGAudioParser::IsAt(ByteReader aBytes) {
    constexpr std::uint32_t kSame = 0xFFFE0C00;
    ByteReader next = aBytes;
    const std::uint32_t word = aBytes.ReadBig32();
    ezMPEGAudioHeader header;
    if (!ezMPEGAudioHeader_Read(word, header) || header.mFrameSize == 0) {
        return false;
    }
    next.Skip(header.mFrameSize);
    const std::uint32_t second = next.ReadBig32();
    return ((word ^ second) & kSame) == 0 && ezMPEGAudioHeader_Read(second, header);
}

bool MPEGAudioParser::ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) {
    const CodePage codePage(GetTextCodePage());
    LeadingTags tags = ReadLeadingTags(aBytes, codePage, kMPEGAudio_SurveySize);
    const char* const other = OtherFormatAt(aBytes, tags.mEnd);
    if (other != nullptr) {
        return Refuse(Cause::Unsupported, "%s at %llu", other, static_cast<LongLong>(tags.mEnd));
    }
    const bool fTagged = tags.mEnd != 0 && tags.mfBelieved;
    const auto start = static_cast<LongLong>(fTagged ? AfterZeros(aBytes, tags.mEnd) : tags.mEnd);
    MPEGAudioFrames frames(aBytes);
    if (!frames.Find(start)) {
        const Cause cause = aBytes.HasReadFailed()    ? Cause::ReadError
                            : aBytes.IsBudgetUsedUp() ? Cause::Limit
                                                      : Cause::Malformed;
        return Refuse(cause, "no frames within %u bytes of %llu%s", unsigned{kMPEGAudio_SearchSize}, start,
                      tags.mfBelieved ? "" : ", after a tag that claims the whole file");
    }
    MPEGAudioMeasure measure(aBytes, frames);
    measure.LookAtStart(start);
    const TailTags tails =
        ReadTailTags(aBytes, frames.GetFirst().mPosition + kMPEGAudioMinFrameSize, codePage);
    tags.mTexts.Complete(tails.mTexts);
    tags.mCover.Complete(tails.mCover);
    if (frames.GetCount() < kMPEGAudio_ChainLength && !IsShortFile(aBytes, frames, tails.mStart)) {
        return Refuse(Cause::Malformed, "%u frames from %llu to %llu, and none after them",
                      unsigned{frames.GetCount()}, static_cast<LongLong>(frames.GetFirst().mPosition),
                      static_cast<LongLong>(frames.GetEnd()));
    }
    measure.Finish(tails.mStart, MayReadWholeMedia());
    // Length and rates of the places that could be read would be other ones. Without a size, the end may be
    // met as an error of the stream.
    if (aBytes.HasLostBytes()) {
        return RefuseCut(aBytes, "all that tells the length");
    }
    measure.Store(anInfo);
    tags.mTexts.Store(anInfo);
    tags.mCover.Store(anInfo);
    return true;
}
