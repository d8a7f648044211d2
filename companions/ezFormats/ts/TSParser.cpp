#include "ezFormats/ts/TSParser.h"

#include "ezBytes/LanguageTags.h"
#include "ezFormats/codecs/EncryptedCodec.h"
#include "ezFormats/detail/Containers.h"
#include "ezFormats/detail/FilmRecord.h"
#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/detail/MediaNumbers.h"
#include "ezFormats/ts/TSEvents.h"
#include "ezFormats/ts/TSHead.h"
#include "ezFormats/ts/TSLength.h"

#include "ezBytes/ByteReader.h"

#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr std::uint64_t kMicro = 1000000;

/// Stamps that tell whether all are zero: the first of a file may be so by chance.
constexpr std::uint64_t kEnoughStamps = kTS_SyncRun;

/// The word for the kind of packets. None for those with parity, which no device plays, and for a stream of
/// several programs: it has no profile.
const char* ContainerOf(const TSHead& aHead, std::size_t aPrograms) {
    const TSScan& scan = aHead.GetScan();
    if (aPrograms > 1 || aHead.GetLayout().mPacketSize == kTSPacket_ParitySize) {
        return "";
    }
    if (!aHead.GetLayout().IsStamped()) {
        return kContainer_TS;
    }
    if (!scan.AreStampsZero()) {
        return kContainer_TTS;
    }
    return scan.GetStampsSeen() >= kEnoughStamps ? kContainer_TTSZero : "";
}

/// Bits a second of a track, by its share of the bytes that were looked at.
std::uint32_t RateOf(const TSHead& aHead, const TSTrack& aTrack, std::uint64_t aSize, std::uint64_t aTicks) {
    const TSSeen* const seen = aHead.GetScan().Find(aTrack.mStream.mPID);
    const std::uint64_t bytes = seen != nullptr ? seen->mPayloadBytes : 0;
    const std::uint64_t share = MediaNumber_Scale(aSize, bytes, aHead.GetScan().GetBytes());
    return MediaNumber_BitRate(share, aTicks, kStreamClock_Rate);
}

/// The name of a codec, which the payload need not have told; of what is scrambled, marked as such.
ezCString NameOf(const TSHead& aHead, const TSTrack& aTrack, const ezCString& aName) {
    const TSSeen* const seen = aHead.GetScan().Find(aTrack.mStream.mPID);
    const ezCString name = aName.IsEmpty() ? ezCString(aTrack.mStream.mName) : aName;
    const bool fEncrypted = aTrack.mStream.mfEncrypted || (seen != nullptr && seen->IsScrambled());
    return fEncrypted ? EncryptedCodecName(name) : name;
}

VideoFacts VideoOf(const TSHead& aHead, const TSTrack& aTrack, std::uint32_t aRate) {
    VideoFacts facts = aTrack.mVideo ? *aTrack.mVideo : VideoFacts();
    const TSSeen* const seen = aHead.GetScan().Find(aTrack.mStream.mPID);
    facts.mCodec = NameOf(aHead, aTrack, facts.mCodec);
    if (facts.mFrameRate == 0 && seen != nullptr) {
        facts.mFrameRate = seen->mStamps.GetFrameRate();
    }
    if (facts.mBitRate == 0) {
        facts.mEstimatedBitRate = aRate;
    }
    return facts;
}

AudioFacts AudioOf(const TSHead& aHead, const TSTrack& aTrack, std::uint32_t aRate) {
    AudioFacts facts = aTrack.mSound ? aTrack.mSound->mFacts : AudioFacts();
    facts.mCodec = NameOf(aHead, aTrack, facts.mCodec);
    facts.mChannels = facts.mChannels != 0 ? facts.mChannels : aTrack.mStream.mChannels;
    if (facts.mBitRate == 0 && aRate != 0) {
        facts.mEstimatedBitRate = aRate;
    }
    return facts;
}

/// The tracks: those that play first, and the number of all.
void TakeTracks(const TSHead& aHead, std::uint64_t aTicks, FilmFacts& aFilm) {
    const std::uint64_t size = aFilm.mSize.value_or(0);
    const TSTrack* const video = aHead.FindTrack(StreamKind::Video);
    const TSTrack* const audio = aHead.FindTrack(StreamKind::Audio);
    if (video != nullptr) {
        aFilm.mVideo = VideoOf(aHead, *video, RateOf(aHead, *video, size, aTicks));
    }
    if (audio != nullptr) {
        aFilm.mAudio = AudioOf(aHead, *audio, RateOf(aHead, *audio, size, aTicks));
        AddLanguages(aFilm.mLanguages, audio->mStream.mLanguages);
    }
    for (const TSTrack& track : aHead.GetTracks()) {
        if (track.mStream.GetKind() == StreamKind::Audio) {
            ++aFilm.mAudioCount;
            AddLanguages(aFilm.mLanguages, track.mStream.mLanguages);
        } else if (track.mStream.GetKind() == StreamKind::Subtitle) {
            ++aFilm.mSubtitleCount;
            AddLanguages(aFilm.mSubtitleLanguages, track.mStream.mLanguages);
        }
    }
}

/// Title and date of the event that was recorded.
void StoreEvent(TSHead& aHead, std::uint64_t aTicks, ezMediaInfo& anInfo) {
    const TSProgram* const program = aHead.GetProgram();
    if (program == nullptr || program->mfOfJapan) {
        return;
    }
    const TSTableReader& tables = aHead.GetTables();
    const TSEvent* const event =
        FindTSEvent(tables.GetEvents(), program->mNumber, tables.GetTime(), aTicks / kStreamClock_Rate);
    if (event != nullptr) {
        anInfo.mTitle = event->mTitle;
    }
    const bool fBegan = event != nullptr && event->mStart != 0;
    anInfo.Set(kezInfo_Date, TSTimeText(fBegan ? event->mStart : tables.GetTime()), true);
}

} // namespace

/// Packets near there, in which tables or the start of a stream's packet stand.
bool TSParser::IsAt(ByteReader aBytes) {
    constexpr std::size_t kLook = (kTS_SyncRun + 1) * kTSPacket_ParitySize;
    std::vector<unsigned char> start(
        static_cast<std::size_t>(std::min<std::uint64_t>(aBytes.GetLeft(), 4 * kLook)));
    if (!aBytes.Read(start.data(), start.size())) {
        return false;
    }
    return FindTSLayout(start.data(), start.size(), false).has_value();
}

bool TSParser::ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) {
    const unsigned char* block = nullptr;
    aBytes.LoadWindow(0, kTS_WindowSize);
    const std::size_t size = aBytes.Borrow(0, &block);
    const std::optional<TSLayout> layout = FindTSLayout(block, size, size >= aBytes.GetEnd());
    if (!layout) {
        return size >= aBytes.GetEnd() || size >= kTS_WindowSize
                   ? Refuse(Cause::Malformed, "no packets of a transport stream within %u bytes",
                            static_cast<unsigned>(kTS_SearchSize))
                   : RefuseCut(aBytes, "the first packets");
    }
    TSHead head(aBytes, *layout);
    head.Read();
    const TSLength length = MeasureTS(aBytes, head);
    // Length and tracks of what could be read would be other ones.
    if (aBytes.HasLostBytes()) {
        return RefuseCut(aBytes, "all that tells the length");
    }
    const std::size_t programs = head.GetTables().GetPrograms().size();
    FilmFacts film;
    film.mContainer = ContainerOf(head, programs);
    film.mSize = aBytes.GetSize();
    film.mDuration = MediaNumber_Scale(length.mTicks, kMicro, kStreamClock_Rate);
    film.mDurationMethod = length.mMethod;
    TakeTracks(head, length.mTicks, film);
    film.Store(anInfo);
    if (programs > 1) {
        anInfo.Set(kezInfo_ProgramCount, programs, true);
    }
    if (layout->IsStamped()) {
        anInfo.Set(kezInfo_MimeType, "video/vnd.dlna.mpeg-tts", true);
    }
    StoreEvent(head, length.mTicks, anInfo);
    return true;
}
