#include "ezFormats/asf/ASFParser.h"

#include "ezFormats/asf/ASFHeader.h"
#include "ezFormats/asf/ASFLength.h"
#include "ezFormats/asf/ASFTexts.h"
#include "ezFormats/codecs/EncryptedCodec.h"
#include "ezFormats/detail/Containers.h"
#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/detail/MediaNumbers.h"
#include "ezFormats/detail/SoundRecord.h"

#include "ezPlatform/base/Checked.h"
#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>

namespace {

constexpr std::uint64_t kMilli = 1000;

bool IsWMA(const WaveFormat& aFormat) {
    return aFormat.mCodec.StartsWith("WMA");
}

/// The rate as the stream states it: one for all of it, or the most, which the stated mean of a varying one
/// is.
void TakeRates(const ASFStreamFacts& aStream, bool afVaries, SoundFacts& aSound) {
    const WaveFormat& format = aStream.mSound;
    const std::uint32_t number = MediaNumber_BitRate(format.mAverageBytes, 1, 1);
    const std::uint32_t stated = number >= kASF_MinBitRate ? number : 0;
    const bool fConstant = format.mRate != WaveFormat::Rate::Varying || format.mTag == kWaveTag_WMAPro;
    if (fConstant && !afVaries && stated != 0) {
        aSound.mBitRate = stated;
    } else if (IsWMA(format)) {
        aSound.mMaxBitRate = std::max(stated, aStream.mHighBitRate);
    }
}

SoundFacts FactsOf(const ASFStreamFacts& aStream, const ASFHeader& aHeader, const ASFLength& aLength,
                   bool afVaries) {
    const WaveFormat& format = aStream.mSound;
    const bool fEncrypted = aStream.mfEncrypted || aHeader.mfEncrypted;
    SoundFacts sound;
    sound.mCodec = fEncrypted ? EncryptedCodecName(format.mCodec) : format.mCodec;
    sound.mSamplingRate = format.mSamplingRate;
    sound.mChannels = format.mChannels;
    sound.mBitsPerSample = format.mBitsPerSample;
    sound.mSamples = MediaNumber_Scale(aLength.mMilliseconds, format.mSamplingRate, kMilli);
    sound.mDurationMethod = aLength.mMethod;
    TakeRates(aStream, afVaries, sound);
    const bool fAlone = aHeader.Count(ASFStreamKind::Sound) == 1 && aHeader.Count(ASFStreamKind::Video) == 0;
    sound.mBytes = fAlone ? aLength.mBytes // else others' bytes are among them
                          : MediaNumber_Scale(aLength.mMilliseconds, aStream.mMeanBitRate, 8 * kMilli);
    return sound;
}

void StoreNumber(ezMediaInfo& anInfo, const char* aKey, std::uint32_t aNumber) {
    if (aNumber != 0) {
        anInfo.Set(aKey, aNumber, true);
    }
}

void StoreVideo(const ASFHeader& aHeader, const ASFLength& aLength, ezMediaInfo& anInfo) {
    anInfo.Set(kezInfo_MimeType, "video/x-ms-wmv", true);
    anInfo.Set(kezInfo_HasVideoTrack, 1, true);
    const std::uint32_t mean = MediaNumber_BitRate(aLength.mBytes, aLength.mMilliseconds, 1000);
    const std::uint32_t most = aHeader.mFile.mMaxBitRate; // some state what they aimed at
    StoreNumber(anInfo, kezInfo_EstimatedBitRate, mean);
    StoreNumber(anInfo, kezInfo_MaxBitRate, most >= mean && most != kezMediaInfo_VariableRate ? most : 0);
}

} // namespace

bool ASFParser::IsAt(ByteReader aBytes) {
    return IsASFHeader(aBytes);
}

bool ASFParser::ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) {
    ByteReader reader(aBytes);
    ByteReader objects = reader;
    if (!IsAt(reader)) {
        return Refuse(Cause::Malformed, "begins with %08X", unsigned{ByteReader(reader).ReadBig32()});
    }
    if (!ReadASFHeader(reader, &objects)) {
        return RefuseCut(aBytes, "the objects of the header");
    }
    std::uint32_t budget = kASF_MaxObjects;
    const ASFHeader header = ReadASFHeaderObjects(objects, budget);
    const ASFStreamFacts* const stream = header.Find(ASFStreamKind::Sound);
    const bool fVideo = header.Find(ASFStreamKind::Video) != nullptr;
    if (stream == nullptr && !fVideo) {
        return header.mStreams.empty() ? RefuseCut(aBytes, "the streams")
                                       : Refuse(Cause::Unsupported, "no stream of sound or video");
    }
    const ASFLength length = MeasureASF(aBytes, reader, header, budget);
    const ASFTexts texts = ReadASFTexts(header);
    // The length of what could be read would be another one.
    if (aBytes.HasLostBytes()) {
        return RefuseCut(aBytes, "all that tells the length");
    }
    anInfo.Set(kezInfo_Container, kContainer_ASF, true);
    if (stream != nullptr) {
        FactsOf(*stream, header, length, texts.mfVaries).Store(anInfo);
        anInfo.Set(kezInfo_AudioTrackCount, header.Count(ASFStreamKind::Sound), true);
    }
    if (length.mMilliseconds != 0) {
        anInfo.SetDuration(length.mMilliseconds, length.mMethod);
    }
    if (fVideo) {
        StoreVideo(header, length, anInfo);
    }
    texts.mTexts.Store(anInfo);
    texts.mCover.Store(anInfo);
    return true;
}
