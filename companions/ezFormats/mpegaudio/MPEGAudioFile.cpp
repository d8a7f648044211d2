#include "ezFormats/mpegaudio/MPEGAudioFile.h"

#include "ezFormats/detail/Limits.h"
#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/mpegaudio/MPEGAudioLimits.h"

#include "ezBytes/ByteReader.h"
#include "ezBytes/ID3Tag.h"

#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

using namespace std::string_view_literals;

namespace {

ByteReader ReaderAt(ByteSource& aBytes, std::uint64_t aPosition) {
    ByteReader reader(aBytes);
    reader.Skip(aPosition);
    return reader;
}

/// A word that a file of a format has at a place.
struct Mark {
    unsigned mPlace;
    std::string_view mWord;
    const char* mFormat;
};
constexpr Mark kMarks[] = {
    {0, "RIFF"sv, "RIFF"},
    {0, "RIFX"sv, "RIFF"},
    {0, "RF64"sv, "RIFF"},
    {0, "FORM"sv, "IFF"},
    {0, "OggS"sv, "Ogg"},
    {0, "fLaC"sv, "FLAC"},
    {0, "\x1A\x45\xDF\xA3"sv, "Matroska"},
    {0, "\x30\x26\xB2\x75\x8E\x66\xCF\x11"sv, "ASF"},
    {0, "\xFF\xD8\xFF"sv, "JPEG"},
    {0, "\x89PNG"sv, "PNG"},
    {0, "GIF8"sv, "GIF"},
    {0, "FLV\x01"sv, "FLV"},
    {0, ".RMF"sv, "RealMedia"},
    {0, "MPCK"sv, "Musepack"},
    {0, "MP+"sv, "Musepack"},
    {0, "MAC "sv, "APE sound"},
    {0, "wvpk"sv, "WavPack"},
    {0, "ADIF"sv, "ADIF"},
    {0, "#!AMR"sv, "AMR"},
    {0, "PK\x03\x04"sv, "ZIP"},
    {0, "%PDF"sv, "PDF"},
    {0, "\x0B\x77"sv, "AC-3"},
    {0, "\0\0\x01\xBA"sv, "program stream"},
    {0, "\0\0\x01\xB3"sv, "MPEG video"},
    {4, "ftyp"sv, "ISO media"},
    {4, "moov"sv, "ISO media"},
    {4, "mdat"sv, "ISO media"},
    {4, "free"sv, "ISO media"},
    {4, "skip"sv, "ISO media"},
    {4, "wide"sv, "ISO media"},
};

/// The bytes from a position on in which all marks lie, or those that there are.
constexpr std::size_t kMarkedSize = 8;
std::string HeadAt(ByteSource& aBytes, std::uint64_t aPosition) {
    const unsigned char* borrowed = nullptr;
    if (aBytes.Borrow(aPosition, &borrowed) >= kMarkedSize) {
        return {reinterpret_cast<const char*>(borrowed), kMarkedSize};
    }
    std::string head;
    unsigned char byte = 0;
    while (head.size() < kMarkedSize && aBytes.Get(aPosition + head.size(), &byte)) {
        head.push_back(static_cast<char>(byte));
    }
    return head;
}

/// True for the sync_byte of three packets in a row (ISO/IEC 13818-1, 2.4.3.2).
bool IsTransportStream(MediaBytes& aBytes, std::uint64_t aPosition, std::uint64_t aPeriod) {
    for (unsigned i = 0; i < 3; ++i) {
        unsigned char byte = 0;
        if (!aBytes.Get(aPosition + i * aPeriod, &byte) || byte != 0x47) {
            return false;
        }
    }
    return true;
}

/// Layer 0, which MPEG audio does not have and ADTS always has (ISO/IEC 13818-7, 6.2).
bool IsADTS(MediaBytes& aBytes, std::uint64_t aPosition) {
    return (ReaderAt(aBytes, aPosition).ReadBig(2) & 0xFFF6) == 0xFFF0;
}

} // namespace

std::uint64_t AfterZeros(MediaBytes& aBytes, std::uint64_t aPosition) {
    unsigned char byte = 0;
    if (!aBytes.Get(aPosition, &byte) || byte != 0) {
        return aPosition;
    }
    aBytes.Load(aPosition, kMPEGAudio_SearchSize);
    std::uint64_t position = aPosition;
    while (aBytes.HasBuffered(position) && aBytes.Get(position, &byte) && byte == 0) {
        ++position;
    }
    return position;
}

const char* OtherFormatAt(MediaBytes& aBytes, std::uint64_t aPosition) {
    const std::string head = HeadAt(aBytes, aPosition);
    for (const Mark& mark : kMarks) {
        if (head.compare(std::min<std::size_t>(mark.mPlace, head.size()), mark.mWord.size(), mark.mWord) ==
            0) {
            return mark.mFormat;
        }
    }
    if (IsTransportStream(aBytes, aPosition, 188) || IsTransportStream(aBytes, aPosition + 4, 192)) {
        return "transport stream";
    }
    return IsADTS(aBytes, aPosition) ? "ADTS" : nullptr;
}

MPEGAudioMeasure::MPEGAudioMeasure(MediaBytes& aBytes, MPEGAudioFrames& aFrames)
    : mBytes(aBytes), mFrames(aFrames), mSound(aFrames.GetFirst()) {}

/// Takes the Xing or VBRI header of a frame that stands at the start, and that other frames follow a little
/// later only.
void MPEGAudioMeasure::TakeCountBefore(std::uint64_t aStart) {
    const MPEGAudioFrame& first = mFrames.GetFirst();
    MPEGAudioFrame frame;
    if (first.mPosition > aStart &&
        first.mPosition - aStart <= kMPEGAudioMaxFrameSize + kMPEGAudio_MaxGapAfterCount &&
        mFrames.Read(aStart, &frame) && ezMPEGAudioHeader_IsSameStream(frame.mWord, first.mWord) &&
        frame.mSize != 0 && frame.mPosition + frame.mSize + kMPEGAudio_MaxGapAfterCount >= first.mPosition) {
        mCount = ReadMPEGAudioCount(mBytes, frame);
    }
}

void MPEGAudioMeasure::LookAtStart(std::uint64_t aStart) {
    const MPEGAudioFrame& first = mFrames.GetFirst();
    mCount = ReadMPEGAudioCount(mBytes, first);
    if (mCount.mKind == MPEGAudioCount::Kind::None) {
        TakeCountBefore(aStart);
    }
    MPEGAudioFrame second;
    // A lone frame with such a header has no sound, but tells what sound there would be.
    if (ReadMPEGAudioCount(mBytes, first).mKind != MPEGAudioCount::Kind::None &&
        mFrames.Next(first, &second)) {
        mSound = second;
    }
    const std::uint64_t limit =
        mCount.mFrames != 0 ? mFrames.GetEnd() : first.mPosition + kMPEGAudio_SurveySize;
    mSurvey = SurveyFrames(mFrames, mSound, limit);
    if (mSurvey.mLowestRate != mSurvey.mHighestRate) {
        mCount.mKind = MPEGAudioCount::Kind::Variable;
    }
}

void MPEGAudioMeasure::Finish(std::uint64_t anEnd, bool afMayReadWhole) {
    const std::uint64_t start = mFrames.GetFirst().mPosition;
    const std::optional<std::uint64_t> size = mBytes.GetSize();
    const bool fGoesOn = size && GoesOnAfterCount(anEnd);
    mLength = LengthOfCount(mCount, mSound, {anEnd - start, size, fGoesOn});
    if (!mLength.mfKnown && size) {
        Estimate(anEnd, afMayReadWhole);
    } else if (!mLength.mfKnown) {
        mLength.mAverageRate = LengthOfFrames(mSurvey, mCount, mSound).mAverageRate;
    }
}

/// Looks for frames where the counted ones end, or after the tag of another file that was put there. Only
/// where a second or more may have been forgotten: a few frames are an encoder's own way to count.
bool MPEGAudioMeasure::GoesOnAfterCount(std::uint64_t anEnd) {
    const std::uint64_t start = mFrames.GetFirst().mPosition;
    const std::uint64_t size = SizeOfCount(mCount, mSound);
    if (size == 0 || mFrames.IsFreeFormat() || size > anEnd - start ||
        anEnd - start - size < kMPEGAudio_SurveySize) {
        return false;
    }
    ByteReader reader = ReaderAt(mBytes, start + size);
    ID3Tag tag;
    const bool fTag = ReadID3Tag(reader, &tag);
    const std::uint64_t place = fTag ? reader.GetPosition() + tag.GetRest() : start + size;
    MPEGAudioFrame frame;
    return place < anEnd && mFrames.FindNear(place, kMPEGAudio_SurveySize, &frame);
}

void MPEGAudioMeasure::Estimate(std::uint64_t anEnd, bool afMayReadWhole) {
    MPEGAudioPlaces places = {mSurvey, mSurvey};
    mfAllSeen = mSurvey.mEnd + kMPEGAudioMinFrameSize > anEnd;
    if (!mfAllSeen) {
        LookAround(anEnd, &places);
    }
    const std::uint64_t size = anEnd - mSound.mPosition;
    if (!mfAllSeen && IsVariable() && !mFrames.IsFreeFormat() &&
        (afMayReadWhole || size <= kMPEGAudio_CountedSize)) {
        mfAllSeen = CountAll(anEnd, afMayReadWhole);
    }
    if (mfAllSeen) {
        mLength = LengthOfFrames(mSurvey, mCount, mSound);
    } else if (!mfPlaceMissed && !IsVariable()) {
        mLength = LengthOfRate(size, mSurvey, mSound);
    } else {
        mLength = LengthOfSize(size, mSurvey, places, mSound);
    }
}

/// Looks at three more places. One rate at the start alone may be that of silence.
void MPEGAudioMeasure::LookAround(std::uint64_t anEnd, MPEGAudioPlaces* aPlaces) {
    const std::uint64_t size = anEnd - mSound.mPosition;
    if (mSound.mHeader.mLayer != 3 || mFrames.IsFreeFormat()) {
        return; // no rate changes
    }
    if (size < std::uint64_t{8} * kMPEGAudio_SurveySize) { // of what was not seen, the end is buffered
        const std::uint64_t place =
            std::max(mSurvey.mEnd, anEnd - std::min<std::uint64_t>(size, kMPEGAudio_SurveySize));
        if (anEnd - place > std::uint64_t{2} * kMPEGAudioMaxFrameSize) {
            LookAt(place, aPlaces);
        }
        return;
    }
    for (unsigned quarter = 1; quarter < 4; ++quarter) {
        LookAt(mSound.mPosition + size / 4 * quarter, aPlaces);
    }
}

void MPEGAudioMeasure::LookAt(std::uint64_t aPlace, MPEGAudioPlaces* aPlaces) {
    MPEGAudioFrame frame;
    if (!mFrames.FindNear(aPlace, kMPEGAudio_SurveySize, &frame)) {
        mfPlaceMissed = true;
        return;
    }
    const MPEGAudioSurvey survey =
        SurveyFrames(mFrames, frame, aPlace + kMPEGAudio_SurveySize - kMPEGAudioMaxFrameSize);
    mSurvey.Add(survey);
    aPlaces->Take(survey);
}

/// Looks at all frames. False where the file holds so much else that they cannot be counted.
bool MPEGAudioMeasure::CountAll(std::uint64_t anEnd, bool afMayReadWhole) {
    if (afMayReadWhole) {
        mBytes.AllowWholeMedia();
    }
    mFrames.SetStep(kMPEGAudio_CountedStep);
    MPEGAudioSurvey all = SurveyFrames(mFrames, mSound, anEnd);
    MPEGAudioFrame frame;
    while (all.mEnd < anEnd && mFrames.FindNear(all.mEnd, kMPEGAudio_CountedStep, &frame)) {
        const MPEGAudioSurvey more = SurveyFrames(mFrames, frame, anEnd);
        all.Add(more);
        all.mEnd = more.mEnd;
    }
    // What stands after the last frame may be a tag of a kind that nobody knows.
    if (anEnd - std::min(all.mEnd, anEnd) > kMPEGAudio_CountedStep || mBytes.HasReadFailed() ||
        mBytes.IsBudgetUsedUp()) {
        return false;
    }
    mSurvey = all;
    return true;
}

bool MPEGAudioMeasure::IsVariable() const {
    return mCount.mKind == MPEGAudioCount::Kind::Variable || mSurvey.mLowestRate != mSurvey.mHighestRate;
}

void MPEGAudioMeasure::Store(ezMediaInfo& anInfo) const {
    const ezMPEGAudioHeader& header = mSound.mHeader;
    anInfo.Set(kezInfo_AudioTrackCount, 1, true);
    anInfo.Set(kezInfo_AudioCodec, ezMPEGAudioHeader_CodecOf(header.mLayer), true);
    anInfo.Set(kezInfo_AudioSamplingRate, header.mSamplingRate, true);
    anInfo.Set(kezInfo_AudioChannelCount, header.mChannels, true);
    if (mFrames.IsFreeFormat()) {
        anInfo.Set(kezInfo_AudioBitRate, LengthOfFrames(mSurvey, mCount, mSound).mAverageRate, true);
        anInfo.Set(kezInfo_PictureProcess, kezMediaInfo_FreeFormat, true);
    } else {
        anInfo.Set(kezInfo_AudioBitRate, IsVariable() ? kezMediaInfo_VariableRate : header.mBitRate, true);
    }
    if (!mFrames.IsFreeFormat() && IsVariable()) {
        anInfo.Set(kezInfo_AudioMaxBitRate, mfAllSeen ? mSurvey.mHighestRate : header.mMaxBitRate, true);
        anInfo.Set(kezInfo_AudioEstimatedBitRate, mLength.mAverageRate, true);
    }
    if (mLength.mfKnown) {
        anInfo.SetDuration(mLength.mMilliseconds, mLength.mMethod);
        if (mLength.mBound != 0) {
            anInfo.Set(kezInfo_DurationBound, mLength.mBound, true);
        }
    }
}
