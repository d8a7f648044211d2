#include "ezFormats/matroska/MatroskaParser.h"

#include "ezFormats/detail/Containers.h"
#include "ezFormats/detail/FilmRecord.h"
#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/matroska/MatroskaBlocks.h"
#include "ezFormats/matroska/MatroskaCodecs.h"
#include "ezFormats/matroska/MatroskaInfo.h"
#include "ezFormats/matroska/MatroskaLength.h"
#include "ezFormats/matroska/MatroskaTags.h"
#include "ezFormats/matroska/MatroskaTracks.h"
#include "ezFormats/tags/CoverFacts.h"

#include "ezBytes/CodePage.h"
#include "ezBytes/EBMLWalk.h"
#include "ezBytes/MatroskaAttachments.h"
#include "ezBytes/MatroskaSegment.h"

#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <optional>

namespace {

/// What the first blocks of a file tell.
struct FirstBlocks {
    const MatroskaTrack* mVideo = nullptr;
    const MatroskaTrack* mSound = nullptr;
    std::optional<ByteReader> mVideoFrame; ///< the first one of the track
    std::optional<ByteReader> mSoundFrame;
    std::uint32_t mPictures = 0; ///< blocks of the video among those that were looked at

    /// Takes the two tracks, either of which may be null.
    FirstBlocks(const MatroskaTrack* aVideo, const MatroskaTrack* aSound) : mVideo(aVideo), mSound(aSound) {}

    /// Looks for what they ask for.
    void Find(const MatroskaSegment& aSegment, std::uint32_t& aBudget) {
        MatroskaBlocks blocks(aSegment.GetClusters(), aBudget);
        MatroskaBlock block(aSegment.GetContent());
        for (std::uint32_t i = 0; i < kMatroska_MaxFirstBlocks && !IsDone() && blocks.Next(&block); ++i) {
            Take(block, mVideo, mVideoFrame);
            Take(block, mSound, mSoundFrame);
            mPictures += mVideo != nullptr && block.mTrack == mVideo->mNumber ? 1 : 0;
        }
    }

private:
    bool IsDone() const {
        const bool fStill = mVideo != nullptr && mVideo->mKind == MatroskaKind::Still && mPictures < 2;
        const bool fVideo = mVideo != nullptr && !mVideoFrame && MatroskaCodec_WantsFrame(*mVideo);
        const bool fSound = mSound != nullptr && !mSoundFrame && MatroskaCodec_WantsFrame(*mSound);
        return !fStill && !fVideo && !fSound;
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
    if (aCounts != nullptr && aCounts->mfOfThisFile && aCounts->mBitRate != 0 &&
        aCounts->mBitRate < kezMediaInfo_VariableRate) {
        aFacts.mBitRate = static_cast<std::uint32_t>(aCounts->mBitRate);
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
        for (MatroskaTrack& track : mTracks.mTracks) {
            const bool fStill = track.mKind == MatroskaKind::Video && MatroskaCodec_IsStill(track);
            track.mKind = fStill ? MatroskaKind::Still : track.mKind;
        }
        if (mSegment.Find(kMatroska_Info, 0, &element)) {
            mInfo = ReadMatroskaInfo(element.mContent, mBudget);
        }
        ReadFirstBlocks();
        return mFilm.mVideo.has_value() || mFilm.mAudio.has_value();
    }

    void ReadRest() {
        EBMLElement element(mSegment.GetContent());
        for (std::size_t i = 0; i < kMatroska_MaxTags && mSegment.Find(kMatroska_Tags, i, &element); ++i) {
            ReadMatroskaTags(element.mContent, mBudget, mFilm.mVideo.has_value(), mInfo.mWriting, mCodePage,
                             mTags);
        }
        MatroskaAttachment cover(mSegment.GetContent());
        if (FindCoverAttachment(mSegment, mBudget, &cover)) {
            mCover.OfferPicture(kFrontCover, cover.mMimeType, cover.mData);
        }
        mLength = MeasureMatroska(mBytes, mSegment, mInfo, mTracks, mTags, mBudget);
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
        StoreCounts();
        mFilm.Store(anInfo);
        StoreTexts(anInfo);
        mCover.Store(anInfo);
    }

private:
    static constexpr std::uint32_t kFrontCover = 3; // as pictures of tags are numbered

    void ReadFirstBlocks() {
        const MatroskaTrack* video = mTracks.Find(MatroskaKind::Video);
        const MatroskaTrack* const sound = mTracks.Find(MatroskaKind::Sound);
        video = video != nullptr ? video : mTracks.Find(MatroskaKind::Still);
        FirstBlocks first(video, sound);
        first.Find(mSegment, mBudget);
        // One picture beside sound is its cover.
        if (video != nullptr && video->mKind == MatroskaKind::Still &&
            (sound == nullptr || first.mPictures > 1)) {
            mTracks.Rename(MatroskaKind::Still, MatroskaKind::Video);
        }
        if (video != nullptr && video->mKind == MatroskaKind::Video) {
            mVideoUID = video->mUID;
            mFilm.mVideo = MatroskaCodec_ReadVideo(*video, first.mVideoFrame);
        }
        if (sound != nullptr) {
            mSoundUID = sound->mUID;
            mFilm.mAudio = MatroskaCodec_ReadSound(*sound, first.mSoundFrame);
        }
    }

    void StoreCounts() {
        if (mFilm.mVideo) {
            TakeCounts(mTags.FindTrack(mVideoUID), *mFilm.mVideo);
        }
        if (mFilm.mAudio) {
            TakeCounts(mTags.FindTrack(mSoundUID), *mFilm.mAudio);
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
