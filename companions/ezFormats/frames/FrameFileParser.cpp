#include "ezFormats/frames/FrameFileParser.h"

#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/frames/CodedFrames.h"
#include "ezFormats/frames/FrameLimits.h"
#include "ezFormats/frames/FrameMeasure.h"
#include "ezFormats/frames/OtherFormat.h"

#include "ezBytes/CodePage.h"

#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <string_view>

namespace {

using LongLong = unsigned long long; // for printf

/// True when frames fewer than make a stream are all that the file holds; the last may be cut.
bool IsShortFile(MediaBytes& aBytes, const CodedFrames& aFrames, std::uint64_t anEnd) {
    unsigned char byte = 0;
    if (!aBytes.GetSize()) {
        return aFrames.GetCount() > 1 && !aBytes.Get(aFrames.GetEnd(), &byte);
    }
    return aFrames.GetCount() > 1 ? aFrames.GetEnd() >= anEnd : aFrames.GetEnd() == anEnd;
}

} // namespace

bool FrameFileParser::ReadFrameFile(MediaBytes& aBytes, const FrameReader& aReader, const char* aName,
                                    FrameFile& aFile) const {
    const CodePage codePage(GetTextCodePage());
    aFile.mTags = ReadLeadingTags(aBytes, codePage, kFrames_PlaceSize);
    const std::uint64_t tagged = aFile.mTags.mEnd;
    const std::uint64_t start = tagged != 0 && aFile.mTags.mfBelieved ? AfterZeros(aBytes, tagged) : tagged;
    const char* const other = OtherFormatAt(aBytes, start);
    const bool fOther = other != nullptr && std::string_view(other) != aName;
    CodedFrames frames(aBytes, aReader);
    if (!frames.Find(start, !fOther)) {
        const Cause cause = aBytes.HasReadFailed()    ? Cause::ReadError
                            : aBytes.IsBudgetUsedUp() ? Cause::Limit
                            : fOther                  ? Cause::Unsupported
                                                      : Cause::Malformed;
        return fOther ? Refuse(cause, "%s at %llu", other, static_cast<LongLong>(start))
                      : Refuse(cause, "no frames within %u bytes of %llu%s", unsigned{kFrames_SearchSize},
                               static_cast<LongLong>(start),
                               aFile.mTags.mfBelieved ? "" : ", after a tag that claims the whole file");
    }
    return Measure(aBytes, frames, UINT64_MAX, aFile);
}

bool FrameFileParser::ReadFramesAt(MediaBytes& aBytes, const FrameReader& aReader, std::uint64_t aStart,
                                   std::uint64_t anEnd, FrameFile& aFile) const {
    CodedFrames frames(aBytes, aReader);
    if (!frames.Find(aStart, false)) {
        return aStart >= aBytes.GetEnd() || aBytes.HasReadFailed()
                   ? RefuseCut(aBytes, "the frames")
                   : Refuse(Cause::Malformed, "no frames at %llu", static_cast<LongLong>(aStart));
    }
    return Measure(aBytes, frames, anEnd, aFile);
}

bool FrameFileParser::Measure(MediaBytes& aBytes, CodedFrames& aFrames, std::uint64_t anEnd,
                              FrameFile& aFile) const {
    FrameMeasure measure(aBytes, aFrames);
    measure.LookAtStart();
    const CodedFrame& first = aFrames.GetFirst();
    const TailTags tails = ReadTailTags(aBytes, first.mPosition + first.mSize, CodePage(GetTextCodePage()));
    aFile.mTags.mTexts.Complete(tails.mTexts);
    aFile.mTags.mCover.Complete(tails.mCover);
    const std::uint64_t end = std::min(anEnd, tails.mStart);
    if (aFrames.GetCount() < kFrames_ChainLength && !IsShortFile(aBytes, aFrames, end)) {
        return Refuse(Cause::Malformed, "%u frames from %llu to %llu, and none after them",
                      unsigned{aFrames.GetCount()}, static_cast<LongLong>(first.mPosition),
                      static_cast<LongLong>(aFrames.GetEnd()));
    }
    if (aBytes.GetSize()) {
        measure.Finish(end, MayReadWholeMedia());
    }
    // Length and rates of the places that could be read would be other ones. Without a size, the end may be
    // met as an error of the stream.
    if (aBytes.HasLostBytes()) {
        return RefuseCut(aBytes, "all that tells the length");
    }
    aFile.mFirst = first;
    measure.Tell(aFile.mSound);
    return true;
}

void FrameFileParser::Store(const FrameFile& aFile, ezMediaInfo& anInfo) {
    aFile.mSound.Store(anInfo);
    aFile.mTags.mTexts.Store(anInfo);
    aFile.mTags.mCover.Store(anInfo);
}
