#include "ezFormats/avi/AVIHeader.h"

#include "ezFormats/avi/AVILimits.h"
#include "ezFormats/detail/MediaNumbers.h"

#include "ezBytes/DateText.h"

#include "ezPlatform/base/Checked.h"
#include "ezPlatform/text/Case.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace {

struct KindName {
    BoxType mName;
    AVIKind mKind;
};
constexpr std::array<KindName, 4> kKinds = {{{"vids", AVIKind::Video},
                                             {"auds", AVIKind::Sound},
                                             {"iavs", AVIKind::Both},
                                             {"txts", AVIKind::Subtitles}}};

/// A format of pictures whose compression is that of subtitles of DivX.
bool IsSubtitlePicture(ByteReader aFormat) {
    aFormat.Skip(16);
    const BoxType compression = BoxType::Read(aFormat);
    return compression == "DXSB" || compression == "DXSA";
}

/// Cameras write dates as C's asctime does: "SAT MAY 05 14:03:59 2007".
ezCString DateOf(std::string_view aText) {
    constexpr std::string_view kMonths = "jan feb mar apr may jun jul aug sep oct nov dec ";
    constexpr std::size_t kDayName = 4;
    constexpr std::size_t kSize = 24;
    ezCString date = CleanDate(aText);
    if (!date.IsEmpty() || aText.size() < kSize) {
        return date;
    }
    std::string month(aText.substr(kDayName, 4));
    std::transform(month.begin(), month.end(), month.begin(), ezLower);
    const std::size_t place = kMonths.find(month);
    if (place == std::string_view::npos) {
        return {};
    }
    const std::size_t number = place / 4 + 1;
    std::string day(aText.substr(8, 2));
    std::replace(day.begin(), day.end(), ' ', '0');
    std::string text(aText.substr(20, 4));
    text.append(number < 10 ? "-0" : "-").append(std::to_string(number)).append("-").append(day);
    text.append("T").append(aText.substr(11, 8));
    return CleanDate(text);
}

/// The first stream that a test is true of, one that is not disabled before others.
template <typename Test>
const AVIStream* FindFirst(const std::vector<AVIStream>& aStreams, Test aTest) {
    const AVIStream* first = nullptr;
    for (const AVIStream& stream : aStreams) {
        if (aTest(stream) && (first == nullptr || (first->mfDisabled && !stream.mfDisabled))) {
            first = &stream;
        }
    }
    return first;
}

} // namespace

std::uint64_t AVIStream::GetMicroseconds(std::uint64_t aUnits) const {
    const std::uint64_t ticks = MediaNumber_Scale(aUnits, mScale, 1);
    return mScale != 0 ? MediaNumber_Microseconds(ticks, mRate) : 0;
}

std::uint64_t AVIStream::GetEnd(std::uint64_t aUnits) const {
    const bool fBelieved = MediaNumber_Scale(mStart, mScale, mRate) <= kAVI_MaxDelay;
    return GetMicroseconds(ezSaturating_Add64(aUnits, fBelieved ? mStart : 0));
}

std::uint32_t AVIStream::GetFrameRate() const {
    return VideoClock_FrameRate(mScale, mRate);
}

void AVIHeader::BeginStream() {
    mfStream = mStreams.size() < kAVI_MaxStreams;
    if (mfStream) {
        mStreams.emplace_back();
    }
}

void AVIHeader::Take(BoxType aName, ByteReader aContent) {
    if (aName == "avih") {
        TakeMain(aContent);
    } else if (aName == "dmlh") {
        mAllFrames = aContent.ReadLittle32();
    } else if (aName == "IDIT" && mDate.IsEmpty()) {
        mDate = DateOf(
            aContent
                .ReadText(static_cast<std::size_t>(std::min<std::uint64_t>(aContent.GetLeft(), kAVI_MaxText)))
                .View());
    } else if (!mfStream) {
        return;
    } else if (aName == "strh") {
        TakeStream(aContent);
    } else if (aName == "strf") {
        TakeFormat(aContent);
    } else if (aName == "vprp") {
        TakeProperties(aContent);
    } else if (aName == "indx") {
        TakeIndex(aContent);
    }
}

/// AVIMAINHEADER
void AVIHeader::TakeMain(ByteReader aContent) {
    mMicrosecondsPerFrame = aContent.ReadLittle32();
    aContent.Skip(12); // most bytes a second, alignment, flags
    mFrames = aContent.ReadLittle32();
    aContent.Skip(12); // frames before those that play, streams, size of a buffer
    mWidth = aContent.ReadLittle32();
    mHeight = aContent.ReadLittle32();
}

/// AVISTREAMHEADER
void AVIHeader::TakeStream(ByteReader aContent) {
    constexpr std::uint32_t kDisabled = 1;
    AVIStream& stream = mStreams.back();
    const BoxType kind = BoxType::Read(aContent);
    const auto* const known = std::find_if(kKinds.begin(), kKinds.end(),
                                           [=](const KindName& aName) { return aName.mName == kind; });
    stream.mKind = known != kKinds.end() ? known->mKind : AVIKind::Other;
    aContent.Skip(4); // handler, whatever the format says
    stream.mfDisabled = (aContent.ReadLittle32() & kDisabled) != 0;
    aContent.Skip(8); // priority, language, which no writer states, frames before those that play
    stream.mScale = aContent.ReadLittle32();
    stream.mRate = aContent.ReadLittle32();
    stream.mStart = aContent.ReadLittle32();
    stream.mLength = aContent.ReadLittle32();
    aContent.Skip(8); // size of a buffer, quality
    // Each picture is a unit, whatever size its writer states.
    stream.mUnitSize = stream.HasVideo() ? 0 : aContent.ReadLittle32();
}

void AVIHeader::TakeFormat(ByteReader aContent) {
    AVIStream& stream = mStreams.back();
    if (stream.mKind == AVIKind::Video && IsSubtitlePicture(aContent)) {
        stream.mKind = AVIKind::Subtitles;
    }
    stream.mFormat.resize(
        static_cast<std::size_t>(std::min<std::uint64_t>(aContent.GetLeft(), kAVI_MaxFormat)));
    if (!aContent.Read(stream.mFormat.data(), stream.mFormat.size())) {
        stream.mFormat.clear();
    }
}

/// The properties of video (OpenDML AVI File Format Extensions, 5.0)
void AVIHeader::TakeProperties(ByteReader aContent) {
    aContent.Skip(20); // kind of signal, its rate, and its size
    const std::uint32_t aspect = aContent.ReadLittle32();
    aContent.Skip(8); // pixels
    const std::uint32_t fields = aContent.ReadLittle32();
    if (!aContent.HasFailed()) {
        mStreams.back().mDisplayAspect = VideoRatio::Of(aspect >> 16, aspect & 0xFFFF);
        mStreams.back().mFields = fields;
    }
}

/// An index of indexes (OpenDML AVI File Format Extensions, 3.0): where each of them is, its size, and how
/// many units it holds.
void AVIHeader::TakeIndex(ByteReader aContent) {
    constexpr unsigned kOfIndexes = 0;
    aContent.Skip(3); // numbers of an entry, and a kind of index that only those of frames have
    const unsigned type = aContent.ReadByte();
    const std::uint32_t count = aContent.ReadLittle32();
    aContent.Skip(16); // name of the chunks, and no use
    AVIStream& stream = mStreams.back();
    for (std::uint32_t i = 0; type == kOfIndexes && i < std::min(count, kAVI_MaxIndexes); ++i) {
        const std::uint64_t place = aContent.ReadLittle(8);
        const std::uint32_t size = aContent.ReadLittle32();
        const std::uint32_t units = aContent.ReadLittle32();
        if (aContent.HasFailed()) {
            break;
        }
        stream.mIndexed += units;
        mIndexedEnd = std::max(mIndexedEnd, ezSaturating_Add64(place, size));
    }
}

/// One picture beside sound is its cover, and no film.
const AVIStream* AVIHeader::FindVideo() const {
    const AVIStream* const video =
        FindFirst(mStreams, [](const AVIStream& aStream) { return aStream.HasVideo(); });
    const bool fCover = video != nullptr && !video->HasSound() && video->mLength == 1 && mFrames <= 1 &&
                        mAllFrames <= 1 && video->mIndexed <= 1 && FindSound() != nullptr;
    return fCover ? nullptr : video;
}

const AVIStream* AVIHeader::FindSound() const {
    return FindFirst(mStreams, [](const AVIStream& aStream) { return aStream.HasSound(); });
}

std::uint32_t AVIHeader::GetNumber(const AVIStream& aStream) const {
    return static_cast<std::uint32_t>(&aStream - mStreams.data());
}
