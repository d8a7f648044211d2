#include "ezFormats/matroska/MatroskaParser.h"

#include "ezFormats/detail/Containers.h"
#include "ezFormats/detail/FilmRecord.h"
#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/matroska/MatroskaCodecs.h"
#include "ezFormats/matroska/MatroskaInfo.h"
#include "ezFormats/matroska/MatroskaLength.h"
#include "ezFormats/matroska/MatroskaPace.h"
#include "ezFormats/matroska/MatroskaTags.h"
#include "ezFormats/matroska/MatroskaTracks.h"
#include "ezFormats/tags/CoverFacts.h"

#include "ezBytes/CodePage.h"
#include "ezBytes/EBMLWalk.h"
#include "ezBytes/Limits.h"
#include "ezBytes/MatroskaAttachments.h"
#include "ezBytes/MatroskaBlocks.h"
#include "ezBytes/MatroskaCoverTrack.h"
#include "ezBytes/MatroskaSegment.h"

#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace {

/// What the first blocks of a file tell.
struct FirstBlocks {
    const MatroskaTrack* mVideo = nullptr;
    const MatroskaTrack* mSound = nullptr;
    std::optional<ByteReader> mVideoFrame; ///< the first one of the track
    std::optional<ByteReader> mSoundFrame;

    /// Takes the two tracks, either of which may be null.
    FirstBlocks(const MatroskaTrack* aVideo, const MatroskaTrack* aSound) : mVideo(aVideo), mSound(aSound) {}

    /// Looks for what they ask for.
    void Find(const MatroskaSegment& aSegment, std::uint32_t& aBudget) {
        MatroskaBlocks blocks(aSegment.GetClusters(), aBudget);
        MatroskaBlock block(aSegment.GetContent());
        for (std::uint32_t i = 0; i < kMatroska_MaxFirstBlocks && !IsDone() && blocks.Next(&block); ++i) {
            Take(block, mVideo, mVideoFrame);
            Take(block, mSound, mSoundFrame);
        }
    }

private:
    bool IsDone() const {
        const bool fVideo = mVideo != nullptr && !mVideoFrame && MatroskaCodec_WantsFrame(*mVideo);
        const bool fSound = mSound != nullptr && !mSoundFrame && MatroskaCodec_WantsFrame(*mSound);
        return !fVideo && !fSound;
    }
    static void Take(const MatroskaBlock& aBlock, const MatroskaTrack* aTrack,
                     std::optional<ByteReader>& aFrame) {
        if (aTrack != nullptr && aBlock.mTrack == aTrack->mNumber && !aFrame) {
            aFrame = aBlock.mFrame;
        }
    }
};

/// What a muxer counted goes before what a header states, which may be meant for another copy of the track.
template <typename Facts>
void TakeCounts(const MatroskaTrackCounts* aCounts, Facts& aFacts) {
    if (aCounts != nullptr && aCounts->mfOfThisFile && aCounts->GetBitRate() != 0) {
        aFacts.mBitRate = aCounts->GetBitRate();
        aFacts.mEstimatedBitRate = 0;
    }
}

/// One file as it is read.
class Reading {
public:
    Reading(MediaBytes& aBytes, const CodePage& aCodePage)
        : mBytes(aBytes), mSegment(aBytes, mBudget), mCodePage(aCodePage) {}

    bool Open() { return mSegment.Open(); }

    /// False where there are no tracks of pictures or sound.
    bool ReadTracks() {
        EBMLElement element(mSegment.GetContent());
        if (mSegment.Find(kMatroska_Tracks, 0, &element)) {
            mTracks = ReadMatroskaTracks(element.mContent, mBudget);
        }
        if (mSegment.Find(kMatroska_Info, 0, &element)) {
            mInfo = ReadMatroskaInfo(element.mContent, mBudget);
        }
        SetCoverTrackAside();
        ReadFirstBlocks();
        return mFilm.mVideo.has_value() || mFilm.mAudio.has_value();
    }

    void ReadRest() {
        EBMLElement element(mSegment.GetContent());
        for (std::size_t i = 0; i < kMatroska_MaxTags && mSegment.Find(kMatroska_Tags, i, &element); ++i) {
            ReadMatroskaTags(element.mContent, mBudget, mFilm.mVideo.has_value(), mInfo.mWriting, mCodePage,
                             mTags);
        }
        // First what counts more, should the file cost more than a parse may.
        mLength = MeasureMatroska(mBytes, mSegment, mInfo, mTracks, mTags, mBudget);
        ReadCover();
        TakeCountsOfTracks();
        ReadPace();
    }

    void Store(ezMediaInfo& anInfo) {
        const bool fWebM = mSegment.GetDocType() == "webm";
        const bool fVideo = mFilm.mVideo.has_value();
        constexpr const char* kMimeTypes[2][2] = {{"audio/x-matroska", "video/x-matroska"},
                                                  {"audio/webm", "video/webm"}};
        anInfo.Set(kezInfo_MimeType, kMimeTypes[fWebM ? 1 : 0][fVideo ? 1 : 0], true);
        mFilm.mContainer = fWebM ? kContainer_WebM : kContainer_MKV;
        mFilm.mAudioCount = mTracks.Count(MatroskaKind::Sound);
        mFilm.mSubtitleCount = mTracks.Count(MatroskaKind::Subtitles);
        mFilm.mLanguages = mTracks.GetLanguages(MatroskaKind::Sound);
        mFilm.mSubtitleLanguages = mTracks.GetLanguages(MatroskaKind::Subtitles);
        mFilm.mDuration = mLength.mMicroseconds;
        mFilm.mDurationMethod = mLength.mMethod;
        if (mLength.mSize != 0) {
            mFilm.mSize = mLength.mSize;
        }
        mFilm.Store(anInfo);
        StoreTexts(anInfo);
        mCover.Store(anInfo);
    }

private:
    /// A track that is the cover of sound is no film, nor is one of pictures beside one that moves.
    void SetCoverTrackAside() {
        std::vector<MatroskaTrackHead> heads;
        for (const MatroskaTrack& track : mTracks.mTracks) {
            using Kind = MatroskaTrackHead::Kind;
            const Kind kind = track.mKind == MatroskaKind::Video   ? Kind::Video
                              : track.mKind == MatroskaKind::Sound ? Kind::Sound
                                                                   : Kind::Other;
            heads.push_back({track.mNumber, kind, track.mCodecId});
        }
        mCoverTrack = FindCoverTrack(mSegment, mBudget, heads);
        const auto fMoves = [](const MatroskaTrack& aTrack) {
            return aTrack.mKind == MatroskaKind::Video && !IsMatroskaStill(aTrack.mCodecId);
        };
        const bool fFilm = std::any_of(mTracks.mTracks.begin(), mTracks.mTracks.end(), fMoves);
        for (MatroskaTrack& track : mTracks.mTracks) {
            const bool fAside =
                track.mKind == MatroskaKind::Video && (mCoverTrack || (fFilm && !fMoves(track)));
            track.mKind = fAside ? MatroskaKind::Other : track.mKind;
        }
    }

    void ReadFirstBlocks() {
        const MatroskaTrack* const video = mTracks.Find(MatroskaKind::Video);
        const MatroskaTrack* const sound = mTracks.Find(MatroskaKind::Sound);
        FirstBlocks first(video, sound);
        first.Find(mSegment, mBudget);
        if (video != nullptr) {
            mVideoUID = video->mUID;
            mFilm.mVideo = MatroskaCodec_ReadVideo(*video, first.mVideoFrame);
        }
        if (sound != nullptr) {
            mSoundUID = sound->mUID;
            mFilm.mAudio = MatroskaCodec_ReadSound(*sound, first.mSoundFrame);
        }
    }

    /// What is attached, and the picture of a track that is the cover, are no part of what plays.
    void ReadCover() {
        EBMLElement attached(mSegment.GetContent());
        if (mSegment.Find(kMatroska_Attachments, 0, &attached)) {
            mFilm.mAttachedSize = attached.mfUnknownSize ? 0 : attached.mStatedSize;
        }
        mFilm.mAttachedSize += mCoverTrack ? mCoverTrack->GetLeft() : 0;
        MatroskaAttachment cover(mSegment.GetContent());
        if (FindCoverAttachment(mSegment, mBudget, &cover)) {
            mCover.OfferPicture(kPictureType_FrontCover, cover.mMimeType, cover.mData);
        } else if (mCoverTrack) {
            mCover.OfferPicture(kPictureType_FrontCover, {}, *mCoverTrack);
        }
    }

    void TakeCountsOfTracks() {
        if (mFilm.mVideo) {
            TakeCounts(mTags.FindTrack(mVideoUID), *mFilm.mVideo);
        }
        if (mFilm.mAudio) {
            TakeCounts(mTags.FindTrack(mSoundUID), *mFilm.mAudio);
        }
    }

    /// Without a rate of the sound nothing is known of the pictures' either. Of a stream without a size there
    /// is no whole that could be shared.
    void ReadPace() {
        if (!mFilm.mVideo || !mBytes.GetSize()) {
            return;
        }
        const auto fRate = [](const auto& aFacts) {
            return (aFacts->mBitRate | aFacts->mEstimatedBitRate) != 0;
        };
        const bool fSound =
            mFilm.mAudio && !fRate(mFilm.mAudio) && !fRate(mFilm.mVideo) && mLength.mMicroseconds != 0;
        const bool fFrames = mFilm.mVideo->mFrameRate == 0;
        if (!fSound && !fFrames) {
            return;
        }
        const MatroskaPace pace = MeasureMatroskaPace(
            mBytes, mSegment, mInfo, fFrames ? mTracks.Find(MatroskaKind::Video) : nullptr,
            fSound ? mTracks.Find(MatroskaKind::Sound) : nullptr, mBudget);
        mFilm.mVideo->mFrameRate = fFrames ? pace.mFrameRate : mFilm.mVideo->mFrameRate;
        if (fSound) {
            mFilm.mAudio->mEstimatedBitRate = pace.mSoundBitRate;
        }
    }

    void StoreTexts(ezMediaInfo& anInfo) {
        MusicTexts& texts = mTags.mTexts;
        texts.mTitle = texts.mTitle.IsEmpty() ? mInfo.mTitle : texts.mTitle;
        texts.mDate = texts.mDate.IsEmpty() ? mInfo.mWriting.GetDate() : texts.mDate;
        texts.mLanguages = ezCString(); // those of the tracks are told
        texts.Store(anInfo);
    }

    MediaBytes& mBytes;
    std::uint32_t mBudget = kMatroska_MaxElements;
    MatroskaSegment mSegment;
    const CodePage& mCodePage;
    MatroskaInfo mInfo;
    MatroskaTracks mTracks;
    MatroskaTags mTags;
    MatroskaLength mLength;
    CoverFacts mCover;
    std::optional<ByteReader> mCoverTrack; ///< its picture
    FilmFacts mFilm;
    std::uint64_t mVideoUID = 0;
    std::uint64_t mSoundUID = 0;
};

} // namespace

bool MatroskaParser::IsAt(ByteReader aBytes) {
    ezCString type;
    return ReadMatroskaHead(aBytes, &type);
}

bool MatroskaParser::ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) {
    if (!IsAt(ByteReader(aBytes))) {
        return Refuse(Cause::Malformed, "begins with %08X", unsigned{ByteReader(aBytes).ReadBig32()});
    }
    const CodePage codePage{GetTextCodePage()};
    Reading reading(aBytes, codePage);
    if (!reading.Open()) {
        return RefuseCut(aBytes, "the segment");
    }
    if (!reading.ReadTracks()) {
        return RefuseCut(aBytes, "a track of pictures or sound");
    }
    reading.ReadRest();
    // The length of what could be read would be another one.
    if (aBytes.HasLostBytes()) {
        return RefuseCut(aBytes, "all that tells the length");
    }
    reading.Store(anInfo);
    return true;
}
