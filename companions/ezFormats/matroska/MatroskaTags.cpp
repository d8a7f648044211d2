#include "ezFormats/matroska/MatroskaTags.h"

#include "ezFormats/detail/MediaNumbers.h"
#include "ezFormats/matroska/MatroskaTagLimits.h"
#include "ezFormats/tags/MusicValues.h"
#include "ezFormats/tags/TagNames.h"

#include "ezBytes/DateText.h"
#include "ezBytes/EBMLWalk.h"
#include "ezBytes/TextBytes.h"

#include "ezPlatform/media/MediaInfo.h"
#include "ezPlatform/text/Case.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>
#include <utility>

namespace {

// Elements of Tags (RFC 9559, 5.1.8.1)
constexpr EBMLId kTag = 0x7373;
constexpr EBMLId kTargets = 0x63C0;
constexpr EBMLId kTargetTypeValue = 0x68CA;
constexpr EBMLId kTagTrackUID = 0x63C5;
constexpr EBMLId kTagEditionUID = 0x63C9;
constexpr EBMLId kTagChapterUID = 0x63C4;
constexpr EBMLId kTagAttachmentUID = 0x63C6;
constexpr EBMLId kSimpleTag = 0x67C8;
constexpr EBMLId kTagName = 0x45A3;
constexpr EBMLId kTagString = 0x4487;
constexpr EBMLId kTagDefault = 0x4484;

// Levels (RFC 9559, 5.1.8.1.1.1)
constexpr std::uint64_t kNoLevel = 0;
constexpr std::uint64_t kSong = 30;
constexpr std::uint64_t kAlbumOrFilm = 50;

/// What a tag is of.
struct Target {
    std::uint64_t mLevel = kNoLevel;
    std::uint64_t mTrackUID = 0; ///< of the first track; 0 where it is of none or of all
    bool mfPart = false;         ///< it is of a part of the file
};

Target ReadTarget(const ByteReader& aTag, std::uint32_t& aBudget) {
    Target target;
    EBMLElement targets(aTag);
    if (!EBMLWalk(aTag, aBudget).Find(kTargets, &targets)) {
        return target;
    }
    EBMLWalk walk(targets.mContent, aBudget);
    for (EBMLElement element(aTag); walk.Next(&element);) {
        const std::uint64_t number = ReadEBMLNumber(element.mContent);
        switch (element.mId) {
        case kTargetTypeValue:
            target.mLevel = number != 0 ? number : kAlbumOrFilm;
            break;
        case kTagTrackUID:
            target.mTrackUID = target.mTrackUID != 0 ? target.mTrackUID : number;
            [[fallthrough]];
        case kTagEditionUID:
        case kTagChapterUID:
        case kTagAttachmentUID:
            target.mfPart = target.mfPart || number != 0; // 0: of all of them
            break;
        default:
            break;
        }
    }
    return target;
}

/// A name and its text.
struct SimpleTag {
    explicit SimpleTag(const ByteReader& aTag) : mText(aTag) {}

    std::string_view GetName() const { return {mName.data(), mNameSize}; }

    std::array<char, kMatroskaTags_MaxName> mName = {};
    std::size_t mNameSize = 0;
    ByteReader mText;
    bool mfText = false;
    bool mfDefault = true; ///< the text is in the language of the original, or there is one only
};

void ReadName(ByteReader aName, SimpleTag* aTag) {
    std::array<unsigned char, kMatroskaTags_MaxName> bytes = {};
    const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(aName.GetLeft(), bytes.size() + 1));
    aTag->mNameSize = 0;
    if (size > bytes.size() || !aName.Read(bytes.data(), size)) {
        return;
    }
    const auto* const end = std::find(bytes.begin(), bytes.begin() + size, 0);
    aTag->mNameSize = static_cast<std::size_t>(end - bytes.begin());
    std::transform(bytes.begin(), bytes.end(), aTag->mName.begin(),
                   [](unsigned char aByte) { return static_cast<char>(aByte); });
}

/// What stands within it, tags of the tag, is stepped over.
SimpleTag ReadSimpleTag(const ByteReader& aContent, std::uint32_t& aBudget) {
    SimpleTag tag(aContent);
    EBMLWalk walk(aContent, aBudget);
    for (EBMLElement element(aContent); walk.Next(&element);) {
        if (element.mId == kTagName) {
            ReadName(element.mContent, &tag);
        } else if (element.mId == kTagString) {
            tag.mText = element.mContent;
            tag.mfText = true;
        } else if (element.mId == kTagDefault) {
            tag.mfDefault = ReadEBMLNumber(element.mContent, 1) != 0;
        }
    }
    return tag;
}

// --- Counts of tracks

std::uint64_t NumberOf(std::string_view aText) {
    std::uint64_t number = 0;
    for (const char digit : aText) {
        if (digit < '0' || digit > '9' || number > INT64_MAX / 10 - 1) {
            return 0;
        }
        number = number * 10 + static_cast<unsigned>(digit - '0');
    }
    return number;
}

/// Takes a number up to a character that has to follow it, the last one up to the end.
bool TakeNumber(std::string_view& aText, char anEnd, std::uint64_t aMaximum, std::uint64_t* aNumber) {
    const std::size_t size = anEnd != '\0' ? aText.find(anEnd) : aText.size();
    if (size == std::string_view::npos || size == 0) {
        return false;
    }
    *aNumber = NumberOf(aText.substr(0, size));
    const bool fNumber = aText.find_first_not_of("0123456789") >= size && *aNumber <= aMaximum;
    aText.remove_prefix(std::min(aText.size(), size + 1));
    return fNumber;
}

/// The nanoseconds of a time like "01:23:45.678000000", whose fraction has as many digits as its writer
/// liked; 0 for any other text.
std::uint64_t NanosecondsOf(std::string_view aText) {
    constexpr std::uint64_t kSecond = 1000000000;
    constexpr std::size_t kDigits = 9;
    std::uint64_t hours = 0;
    std::uint64_t minutes = 0;
    std::uint64_t seconds = 0;
    std::string_view rest = aText.substr(0, aText.find('.'));
    const std::string_view fraction =
        aText.substr(std::min(aText.size(), rest.size() + 1)).substr(0, kDigits);
    if (!TakeNumber(rest, ':', kMatroskaTags_MaxHours, &hours) || !TakeNumber(rest, ':', 59, &minutes) ||
        !TakeNumber(rest, '\0', 59, &seconds)) {
        return 0;
    }
    std::uint64_t nanoseconds = NumberOf(fraction);
    for (std::size_t i = fraction.size(); i < kDigits; ++i) {
        nanoseconds *= 10;
    }
    return ((hours * 60 + minutes) * 60 + seconds) * kSecond + nanoseconds;
}

/// A date of CleanDate without its zone.
std::string_view SecondOf(const ezCString& aDate) {
    return aDate.View().substr(0, std::string_view("2001-01-01T00:00:00").size());
}

/// Numbers that muxers count.
struct Count {
    std::string_view mName;
    std::uint64_t MatroskaTrackCounts::*mNumber;
};
constexpr Count kCounts[] = {{"BPS", &MatroskaTrackCounts::mBitRate},
                             {"NUMBER_OF_BYTES", &MatroskaTrackCounts::mBytes},
                             {"NUMBER_OF_FRAMES", &MatroskaTrackCounts::mFrames}};

/// Reads the tag of a track.
class Counting {
public:
    explicit Counting(const MatroskaWriting& aWriting) : mWriting(aWriting) {}

    void Take(const SimpleTag& aTag) {
        const std::string_view name = aTag.GetName();
        const auto* const count =
            std::find_if(std::begin(kCounts), std::end(kCounts),
                         [name](const Count& aCount) { return ezIsEqualNoCase(aCount.mName, name); });
        if (count != std::end(kCounts)) {
            mCounts.*count->mNumber = NumberOf(ReadEBMLText(aTag.mText).View());
        } else if (ezIsEqualNoCase(name, "DURATION")) {
            mCounts.mNanoseconds = NanosecondsOf(ReadEBMLText(aTag.mText).View());
        } else if (ezIsEqualNoCase(name, "_STATISTICS_WRITING_APP")) {
            const ezCString app = ReadEBMLText(aTag.mText);
            mfApp = !app.IsEmpty() && (app == mWriting.mWritingApp || app == mWriting.mMuxingApp);
        } else if (ezIsEqualNoCase(name, "_STATISTICS_WRITING_DATE_UTC")) {
            const ezCString date =
                CleanDate(ReadEBMLText(aTag.mText).View()); // UTC, whether it says so or not
            const ezCString written = mWriting.GetDate();
            mfDate = !written.IsEmpty() && SecondOf(date) == SecondOf(written);
        }
    }

    /// Puts what was counted with that of other tags of the track.
    void Store(std::uint64_t aTrackUID, std::vector<MatroskaTrackCounts>& aTracks) {
        if (mCounts.mBitRate == 0 && mCounts.mNanoseconds == 0 && mCounts.mBytes == 0 &&
            mCounts.mFrames == 0) {
            return;
        }
        const bool fKnown =
            std::any_of(aTracks.begin(), aTracks.end(), [aTrackUID](const MatroskaTrackCounts& aTrack) {
                return aTrack.mTrackUID == aTrackUID;
            });
        if (!fKnown && aTracks.size() < kMatroskaTags_MaxTracks) {
            mCounts.mTrackUID = aTrackUID;
            mCounts.mfOfThisFile = mfApp && mfDate;
            aTracks.push_back(mCounts);
        }
    }

private:
    const MatroskaWriting& mWriting;
    MatroskaTrackCounts mCounts;
    bool mfApp = false;
    bool mfDate = false;
};

// --- Texts

/// How near a level is to the film or song that a file is: the rank of its texts. Writers leave the level of
/// an album or film out, as it is the one that counts where none is stated.
enum Rank : std::size_t {
    kItself,
    kAround, ///< of a song the album, of a film its parts
    kAbove,  ///< a season, a series, a collection
    kRanks
};

Rank RankOf(std::uint64_t aLevel, bool afFilm) {
    if (aLevel > kAlbumOrFilm) {
        return kAbove;
    }
    const bool fWhole = aLevel == kAlbumOrFilm || aLevel == kNoLevel;
    const bool fItself = afFilm ? fWhole : !fWhole && aLevel <= kSong;
    return fItself ? kItself : kAround;
}

class Texts {
public:
    Texts(bool afFilm, const CodePage& aCodePage) : mCodePage(aCodePage), mfFilm(afFilm) {}

    void Take(std::uint64_t aLevel, const SimpleTag& aTag) {
        const TagField* const named = FindTagField(TagWords::Matroska, aTag.GetName());
        const Rank rank = RankOf(aLevel, mfFilm);
        if (named == nullptr) {
            return;
        }
        TagField field = *named;
        field.mfSecond = field.mfSecond || !aTag.mfDefault;
        if (IsTold(aLevel, rank, &field.mField)) {
            ByteReader reader = aTag.mText;
            mValues[rank].Add(field, ReadCleanText(reader, TextEncoding::Utf8, mCodePage));
            mfItself = mfItself || rank == kItself;
        }
    }

    void Store(MusicTexts& aTexts) const {
        mValues[kItself].Store(aTexts);
        MusicTexts around;
        mValues[kAround].Store(around);
        if (!mfFilm && around.mAlbum.IsEmpty()) {
            MakeAlbum(around);
        } // else they are flat, and of the song
        aTexts.Complete(around);
        mValues[kAbove].Store(aTexts);
    }

private:
    /// Whether a record tells a field of that level, and which it is there.
    bool IsTold(std::uint64_t aLevel, Rank aRank, MusicField* aField) const {
        const bool fTitle = *aField == MusicField::Title;
        if (!fTitle && *aField != MusicField::Track) {
            return true;
        }
        if (mfFilm) { // which is a part of what is above it: an episode, a volume
            return fTitle ? aRank == kItself : aLevel != kNoLevel && aLevel <= kSong;
        }
        if (aLevel > kSong && aLevel < kAlbumOrFilm) { // the disc of an album
            *aField = MusicField::Disc;
            return !fTitle;
        }
        return aRank != kAbove;
    }

    /// Makes of what is said of the album what a song tells of it. Where nothing is said of the song itself,
    /// number and artist may be its own, by a writer of flat tags.
    void MakeAlbum(MusicTexts& aTexts) const {
        std::swap(aTexts.mAlbum, aTexts.mTitle);
        if (mfItself) {
            aTexts.mDisc = aTexts.mDisc != 0 ? aTexts.mDisc : aTexts.mTrack;
            aTexts.mTrack = 0;
            aTexts.mAlbumArtist = aTexts.mAlbumArtist.IsEmpty() ? aTexts.mCreator : aTexts.mAlbumArtist;
        }
    }

    std::array<MusicValues, kRanks> mValues;
    const CodePage& mCodePage;
    bool mfFilm;
    bool mfItself = false; ///< something is said of the song or film itself
};

} // namespace

std::uint32_t MatroskaTrackCounts::GetBitRate() const {
    constexpr std::uint32_t kNanos = 1'000'000'000;
    if (mBitRate == 0) {
        return MediaNumber_BitRate(mBytes, mNanoseconds, kNanos);
    }
    return mBitRate < kezMediaInfo_VariableRate ? static_cast<std::uint32_t>(mBitRate) : 0;
}

const MatroskaTrackCounts* MatroskaTags::FindTrack(std::uint64_t aUID) const {
    const auto found =
        std::find_if(mTracks.begin(), mTracks.end(),
                     [aUID](const MatroskaTrackCounts& aTrack) { return aTrack.mTrackUID == aUID; });
    return found != mTracks.end() ? &*found : nullptr;
}

void ReadMatroskaTags(const ByteReader& aTags, std::uint32_t& aBudget, bool afFilm,
                      const MatroskaWriting& aWriting, const CodePage& aCodePage, MatroskaTags& aFound) {
    Texts texts(afFilm, aCodePage);
    EBMLWalk tags(aTags, aBudget);
    for (EBMLElement tag(aTags); tags.Find(kTag, &tag);) {
        const Target target = ReadTarget(tag.mContent, aBudget);
        if (target.mfPart && target.mTrackUID == 0) {
            continue;
        }
        Counting counting(aWriting);
        EBMLWalk simple(tag.mContent, aBudget);
        for (EBMLElement element(aTags); simple.Find(kSimpleTag, &element);) {
            const SimpleTag read = ReadSimpleTag(element.mContent, aBudget);
            if (target.mfPart && read.mfText) {
                counting.Take(read);
            } else if (read.mfText) {
                texts.Take(target.mLevel, read);
            }
        }
        counting.Store(target.mTrackUID, aFound.mTracks);
    }
    texts.Store(aFound.mTexts);
}
