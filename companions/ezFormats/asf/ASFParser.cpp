#include "ezFormats/asf/ASFParser.h"

#include "ezFormats/asf/ASFFilm.h"
#include "ezFormats/asf/ASFHeader.h"
#include "ezFormats/asf/ASFLength.h"
#include "ezFormats/asf/ASFTexts.h"
#include "ezFormats/detail/Containers.h"
#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/detail/MediaNumbers.h"
#include "ezFormats/detail/SoundRecord.h"

#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>

namespace {

constexpr std::uint64_t kMilli = 1000;

SoundFacts FactsOf(const ASFStreamFacts& aStream, const ASFHeader& aHeader, const ASFLength& aLength,
                   bool afVaries) {
    SoundFacts sound;
    static_cast<AudioFacts&>(sound) = ReadASFSound(aStream, aHeader.mfEncrypted, afVaries);
    sound.mSamples = MediaNumber_Scale(aLength.mMilliseconds, sound.mSamplingRate, kMilli);
    sound.mDurationMethod = aLength.mMethod;
    const auto fSound = [](const ASFStreamFacts& aOther) { return aOther.IsOf(ASFStreamKind::Sound); };
    const bool fAlone = std::count_if(aHeader.mStreams.begin(), aHeader.mStreams.end(), fSound) == 1;
    sound.mBytes = fAlone ? aLength.mBytes // else others' bytes are among them
                          : MediaNumber_Scale(aLength.mMilliseconds, aStream.mMeanBitRate, 8 * kMilli);
    return sound;
}

void StoreSong(const ASFStreamFacts& aStream, const ASFHeader& aHeader, const ASFLength& aLength,
               const ASFTexts& aTexts, ezMediaInfo& anInfo) {
    const bool fEncrypted = aStream.mfEncrypted || aHeader.mfEncrypted;
    anInfo.Set(kezInfo_Container, fEncrypted ? "" : kContainer_ASF, true);
    FactsOf(aStream, aHeader, aLength, aTexts.mfVaries).Store(anInfo);
    anInfo.Set(kezInfo_AudioTrackCount, aHeader.Count(ASFStreamKind::Sound), true);
    if (aLength.mMilliseconds != 0) {
        anInfo.SetDuration(aLength.mMilliseconds, aLength.mMethod);
    }
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
    ASFTexts texts = ReadASFTexts(header);
    if (fVideo) {
        StoreASFFilm(aBytes, reader, header, length, texts, budget, anInfo);
        if (anInfo.Has(kezInfo_Languages)) { // of what is heard
            texts.mTexts.mLanguages = ezCString();
        }
    } else {
        StoreSong(*stream, header, length, texts, anInfo);
    }
    // Without the last packets the length would be another one, and without the first a film would tell less.
    if (aBytes.HasLostBytes()) {
        return RefuseCut(aBytes, "all that tells the length and the first picture");
    }
    texts.mTexts.Store(anInfo);
    texts.mCover.Store(anInfo);
    return true;
}
