#include "ezFormats/riff/WAVParser.h"

#include "ezFormats/codecs/MPEGAudioHeader.h"
#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/detail/MediaNumbers.h"
#include "ezFormats/detail/SoundRecord.h"
#include "ezFormats/riff/WAVChunks.h"
#include "ezFormats/riff/WAVDisguise.h"
#include "ezFormats/tags/SongTags.h"

#include "ezBytes/ByteReader.h"
#include "ezBytes/CodePage.h"
#include "ezBytes/TextBytes.h"

#include "ezPlatform/base/Checked.h"
#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>

namespace {

constexpr const char* kMeasured = "constant rate";
constexpr const char* kEstimated = "estimate: size and mean rate";

/// Whether a count of samples goes with the size of the sound: blocks hold so many, or the mean rate is
/// nearly kept.
bool IsCountPlausible(const WAVChunks& aChunks) {
    const WaveFormat& format = aChunks.mFormat;
    if (!SoundFacts::IsLengthPlausible(aChunks.mSound.mSize, aChunks.mSamples, format.mSamplingRate)) {
        return false;
    }
    if (format.mBlockSamples != 0 && format.mBlockSize != 0) {
        const std::uint64_t whole = ezSaturating_Add64(aChunks.mSound.mSize, format.mBlockSize - 1);
        const std::uint64_t most = MediaNumber_Scale(whole, format.mBlockSamples, format.mBlockSize);
        return aChunks.mSamples <= most && most - aChunks.mSamples <= 2 * std::uint64_t{format.mBlockSamples};
    }
    if (format.mAverageBytes != 0) {
        const std::uint64_t mean =
            MediaNumber_Scale(aChunks.mSound.mSize, format.mSamplingRate, format.mAverageBytes);
        return aChunks.mSamples / kWAV_MaxMeanError <= mean && mean / kWAV_MaxMeanError <= aChunks.mSamples;
    }
    return true;
}

/// The length of sound that is not plain: as it is stated; by its blocks; by its mean rate.
void MeasureCoded(const WAVChunks& aChunks, SoundFacts& aSound) {
    const WaveFormat& format = aChunks.mFormat;
    const bool fConstant = format.mRate == WaveFormat::Rate::Constant;
    aSound.SetPackets(aChunks.mSound.mSize, format.mBlockSize, format.mBlockSamples);
    if (format.mAverageBytes != 0 && aSound.mBitRate == 0) {
        aSound.mSamples = MediaNumber_Scale(aChunks.mSound.mSize, format.mSamplingRate, format.mAverageBytes);
        aSound.mBitRate = fConstant ? MediaNumber_BitRate(format.mAverageBytes, 1, 1) : 0;
        aSound.mDurationMethod = fConstant ? aSound.mDurationMethod : kEstimated;
    }
    if (aChunks.mSamples != 0 && !aChunks.mSound.mfMeasured && IsCountPlausible(aChunks)) {
        aSound.mSamples = aChunks.mSamples;
        aSound.mDurationMethod = "header";
    }
}

/// The first frame of MPEG audio tells its layer, and whether the stated mean is its own rate.
void TakeFirstFrame(MediaBytes& aBytes, const WAVChunks& aChunks, SoundFacts& aSound) {
    ByteReader reader(aBytes);
    reader.Skip(aChunks.mSound.mStart);
    reader =
        reader.Take(std::min<std::uint64_t>(aChunks.mSound.mEnd - aChunks.mSound.mStart, reader.GetLeft()));
    ezMPEGAudioHeader header = {};
    if (!ezMPEGAudioHeader_Read(reader.ReadBig32(), header)) {
        return;
    }
    aSound.mCodec = ezMPEGAudioHeader_CodecOf(header.mLayer);
    const std::uint64_t mean = std::uint64_t{aChunks.mFormat.mAverageBytes} * 8;
    const std::uint64_t tolerance = header.mBitRate / 50;
    if (header.mBitRate != 0 && mean + tolerance >= header.mBitRate && mean <= header.mBitRate + tolerance) {
        aSound.mBitRate = header.mBitRate;
        aSound.mDurationMethod = aSound.mDurationMethod == kEstimated ? kMeasured : aSound.mDurationMethod;
    }
}

SoundFacts FactsOf(MediaBytes& aBytes, const WAVChunks& aChunks) {
    const WaveFormat& format = aChunks.mFormat;
    SoundFacts sound;
    sound.mCodec = format.mCodec;
    sound.mSamplingRate = format.mSamplingRate;
    sound.mChannels = format.mChannels;
    sound.mBitsPerSample = format.mBitsPerSample;
    sound.mDurationMethod = aChunks.mSound.mfMeasured ? kMeasured : "header";
    if (format.mRate == WaveFormat::Rate::Plain) {
        sound.SetPackets(aChunks.mSound.mSize, format.mBlockSize, 1);
        return sound;
    }
    MeasureCoded(aChunks, sound);
    if (format.mTag == kWaveTag_MPEG || format.mTag == kWaveTag_MP3) {
        TakeFirstFrame(aBytes, aChunks, sound);
    }
    return sound;
}

/// Samples that are a coded stream in truth keep their length and their rate, and are plain no more.
void TakeDisguise(MediaBytes& aBytes, const WAVChunks& aChunks, SoundFacts& aSound) {
    const WaveFormat& format = aChunks.mFormat;
    if (format.mTag != kWaveTag_PCM || format.mBitsPerSample != 16 || format.mChannels != 2) {
        return;
    }
    const WAVDisguise disguise = FindWAVDisguise(aBytes, aChunks.mSound.mStart, aChunks.mSound.mEnd);
    if (!disguise.mCodec.IsEmpty()) {
        aSound.mCodec = disguise.mCodec;
        aSound.mBitsPerSample = 0;
        aSound.mChannels = disguise.mChannels != 0 ? disguise.mChannels : aSound.mChannels;
    }
}

/// Up to version 3, WavPack files begin with the head of the WAV that was packed. Its size is beyond the
/// file, so that nothing after the start was read.
bool IsOldWavPack(MediaBytes& aBytes, std::uint64_t aSoundStart) {
    constexpr std::uint32_t kMark = 0x7776706B; // "wvpk"
    ByteReader sound(aBytes);
    sound.Skip(aSoundStart);
    return aBytes.HasBuffered(aSoundStart, 4) && sound.ReadBig32() == kMark;
}

const char* MimeTypeOf(const WAVHead& aHead, const WAVChunks& aChunks, const SoundFacts& aSound) {
    if (aSound.mCodec == "DTS" && aChunks.mFormat.mTag == kWaveTag_PCM) {
        return "audio/vnd.dts"; // whoever took it for samples would play noise
    }
    return aHead.mKind == "riff" ? "audio/x-w64" : "audio/wav";
}

} // namespace

bool WAVParser::IsAt(ByteReader aBytes) {
    return ReadWAVHead(aBytes).mForm == "WAVE";
}

bool WAVParser::ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) {
    const CodePage codePage(GetTextCodePage());
    const LeadingTags tags = ReadLeadingTags(aBytes, codePage, kWAV_NextSize);
    ByteReader reader(aBytes);
    reader.Skip(tags.mEnd);
    const std::uint32_t first = ByteReader(reader).ReadBig32();
    const WAVHead head = ReadWAVHead(reader);
    if (head.mKind == BoxType()) {
        return Refuse(Cause::Malformed, "begins with %08X", unsigned{first});
    }
    if (head.mForm != "WAVE") {
        return Refuse(Cause::Unsupported, "%s of the form \"%s\"", head.mKind.GetText().c_str(),
                      CleanText(head.mForm.GetText().View(), TextEncoding::Unstated).c_str());
    }
    const WAVChunks chunks = ReadWAVChunks(aBytes, reader, head, codePage);
    if (!chunks.mfFormat || aBytes.HasLostBytes()) {
        return RefuseCut(aBytes, chunks.mfFormat ? "the end of the chunks" : "the description of the sound");
    }
    if (chunks.mFormat.mSamplingRate == 0 || chunks.mFormat.mChannels == 0) {
        return Refuse(Cause::Malformed, "%u channels at %u Hz", unsigned{chunks.mFormat.mChannels},
                      unsigned{chunks.mFormat.mSamplingRate});
    }
    if (IsOldWavPack(aBytes, chunks.mSound.mStart)) {
        return Refuse(Cause::Unsupported, "WavPack of a version before 4");
    }
    SoundFacts sound = FactsOf(aBytes, chunks);
    TakeDisguise(aBytes, chunks, sound);
    if (aBytes.HasLostBytes()) {
        return RefuseCut(aBytes, "the sound");
    }
    anInfo.Set(kezInfo_MimeType, MimeTypeOf(head, chunks, sound), true);
    sound.Store(anInfo);
    MusicTexts texts = chunks.mID3;
    for (const MusicTexts* const more : {&tags.mTexts, &chunks.mInfo, &chunks.mBext}) {
        texts.Complete(*more);
    }
    texts.Store(anInfo);
    CoverFacts cover = tags.mCover; // as thumbnails are made of the tag at the start of any file first
    cover.Complete(chunks.mCover);
    cover.Store(anInfo);
    return true;
}
