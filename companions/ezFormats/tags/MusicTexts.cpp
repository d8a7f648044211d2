#include "ezFormats/tags/MusicTexts.h"

#include "ezBytes/LanguageTags.h"
#include "ezFormats/detail/Limits.h"
#include "ezFormats/tags/CoverFacts.h"
#include "ezFormats/tags/MusicNames.h"
#include "ezFormats/tags/TagNames.h"

#include "ezBytes/APEItems.h"
#include "ezBytes/AudioTails.h"
#include "ezBytes/ByteReader.h"
#include "ezBytes/DateText.h"
#include "ezBytes/ID3Picture.h"
#include "ezBytes/ID3Tag.h"
#include "ezBytes/PictureBlock.h"
#include "ezBytes/TextBytes.h"

#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace {

/// Where a text of a field goes that is kept as it is.
struct Place {
    MusicField mField;
    ezCString MusicTexts::*mPlace;
};
constexpr std::array<Place, 8> kPlaces = {{
    {MusicField::Title, &MusicTexts::mTitle},
    {MusicField::Creator, &MusicTexts::mCreator},
    {MusicField::Album, &MusicTexts::mAlbum},
    {MusicField::Genre, &MusicTexts::mGenre},
    {MusicField::AlbumArtist, &MusicTexts::mAlbumArtist},
    {MusicField::Composer, &MusicTexts::mComposer},
    {MusicField::Date, &MusicTexts::mDate},
    {MusicField::Languages, &MusicTexts::mLanguages},
}};

ezCString MusicTexts::*PlaceOf(MusicField aField) {
    for (const Place& place : kPlaces) {
        if (place.mField == aField) {
            return place.mPlace;
        }
    }
    return nullptr;
}

MusicNames NamesOf(const std::vector<ezCString>& aValues, bool afGenres) {
    MusicNames names;
    for (const ezCString& value : aValues) {
        afGenres ? names.AddGenre(value) : names.Add(value);
    }
    return names;
}

ezCString LanguagesOf(const MusicNames& aNames) {
    std::string list;
    const ezCString joined = aNames.GetJoined();
    const ezCString listed = aNames.GetListed();
    std::string_view rest = listed.IsEmpty() ? joined.View() : listed.View();
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        AddLanguages(list, rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return ezCString(std::string_view(list));
}

/// Takes a field of a tag, unless an earlier item has told it.
void Keep(MusicField aField, std::string_view aBytes, TextEncoding anEncoding, bool afSeveral,
          const CodePage& aCodePage, MusicTexts& aTexts) {
    if (!aTexts.Has(aField)) {
        const std::size_t count = afSeveral && MusicField_HasSeveral(aField) ? kMusicNames_MaxCount : 1;
        aTexts.Take(aField, CleanTexts(aBytes, anEncoding, count, aCodePage));
    }
}

/// The bytes of a text frame, and how they are to be read. What states no encoding there begins with its
/// first letter.
class FrameText {
public:
    explicit FrameText(ByteReader& aBody) : mBytes(ReadTextBytes(aBody)) {
        // Who writes "Latin-1" means what his system has.
        constexpr std::array<TextEncoding, 4> kEncodings = {TextEncoding::Unstated, TextEncoding::Utf16,
                                                            TextEncoding::Utf16Big, TextEncoding::Utf8};
        const unsigned first = mBytes.empty() ? ' ' : static_cast<unsigned char>(mBytes[0]);
        mStart = first < ' ' ? 1 : 0;
        mEncoding = first < kEncodings.size() ? kEncodings[first] : TextEncoding::Unstated;
    }
    std::string_view View() const { return std::string_view(mBytes).substr(mStart); }
    TextEncoding GetEncoding() const { return mEncoding; }

private:
    std::string mBytes;
    std::size_t mStart = 0;
    TextEncoding mEncoding = TextEncoding::Unstated;
};

/// The frames of ID3v2 that tell a date.
class FrameDates {
public:
    /// True when the frame is one of them.
    bool Take(std::uint32_t anID, ByteReader& aBody) {
        for (const Frame& frame : kFrames) {
            if (frame.mID == anID) {
                const FrameText text(aBody);
                ezCString& place = mTexts[frame.mKind];
                place = place.IsEmpty() ? CleanText(text.View(), text.GetEncoding()) : place;
                return true;
            }
        }
        return false;
    }

    ezCString Get() const {
        for (std::size_t kind = kRecorded; kind < kDay; ++kind) {
            const ezCString date = CleanDate(mTexts[kind].View());
            if (!date.IsEmpty()) {
                return kind == kYear ? WithDay(date) : date;
            }
        }
        return {};
    }

private:
    /// The first of these tells; a day belongs to its year.
    enum Kind : std::size_t { kRecorded, kYear, kReleased, kFirstReleased, kDay, kKindCount };
    struct Frame {
        std::uint32_t mID;
        Kind mKind;
    };
    static constexpr std::array<Frame, 9> kFrames = {{{TagLettersOf("TDRC"), kRecorded},
                                                      {TagLettersOf("TYER"), kYear},
                                                      {TagLettersOf("TYE"), kYear},
                                                      {TagLettersOf("TDRL"), kReleased},
                                                      {TagLettersOf("TDOR"), kFirstReleased},
                                                      {TagLettersOf("TORY"), kFirstReleased},
                                                      {TagLettersOf("TOR"), kFirstReleased},
                                                      {TagLettersOf("TDAT"), kDay},
                                                      {TagLettersOf("TDA"), kDay}}};

    /// "1999" with the "3112" of another frame.
    ezCString WithDay(const ezCString& aYear) const {
        const ezCString& day = mTexts[kDay];
        if (aYear.GetLength() != 4 || day.GetLength() != 4) {
            return aYear;
        }
        const ezCString date = CleanDate((aYear + day.Mid(2) + day.Left(2)).View());
        return date.IsEmpty() ? aYear : date;
    }

    std::array<ezCString, kKindCount> mTexts;
};

void KeepFrame(std::uint32_t anID, ByteReader& aBody, unsigned aVersion, const CodePage& aCodePage,
               MusicTexts& aTexts) {
    if (const TagField* const field = FindTagField(TagLetters::ID3, anID)) {
        const FrameText text(aBody);
        Keep(field->mField, text.View(), text.GetEncoding(), aVersion == 4, aCodePage, aTexts);
    }
}

std::string ReadField(ByteSource& aBytes, std::uint64_t aPosition, std::size_t aSize) {
    ByteReader reader(aBytes);
    reader.Skip(aPosition);
    return std::string(reader.ReadText(aSize).View());
}

std::string WithoutEnd(const std::string& aText) {
    return aText.substr(0, std::min(aText.find('\0'), aText.size()));
}

/// A text of ID3v1, which goes on in the enhanced part when it fills its place.
ezCString ReadID3v1Field(ByteSource& aBytes, const AudioTails& aTails, std::uint64_t aPlace,
                         std::uint64_t anEnhancedPlace, const CodePage& aCodePage) {
    constexpr std::size_t kSize = 30;
    std::string text = WithoutEnd(ReadField(aBytes, aTails.mID3v1 + aPlace, kSize));
    if (aTails.mEnhancedID3v1 != 0 && text.size() == kSize) {
        text += WithoutEnd(ReadField(aBytes, aTails.mEnhancedID3v1 + anEnhancedPlace, 2 * kSize));
    }
    return CleanText(text, TextEncoding::Unstated, aCodePage);
}

/// The genre's own words in the enhanced part, or its number.
ezCString ReadID3v1Genre(ByteSource& aBytes, const AudioTails& aTails, const CodePage& aCodePage) {
    constexpr std::uint64_t kEnhancedGenre = 185;
    constexpr std::uint64_t kGenre = 127;
    ezCString genre;
    if (aTails.mEnhancedID3v1 != 0) {
        genre = CleanText(ReadField(aBytes, aTails.mEnhancedID3v1 + kEnhancedGenre, 30),
                          TextEncoding::Unstated, aCodePage);
    }
    unsigned char number = 0xFF;
    aBytes.Get(aTails.mID3v1 + kGenre, &number);
    return genre.IsEmpty() ? ezCString(MusicGenreName(number)) : genre;
}

void KeepAPEItem(const ezCString& aKey, ByteReader& aValue, std::uint32_t aVersion, const CodePage& aCodePage,
                 MusicTexts& aTexts) {
    const TextEncoding encoding = aVersion >= 2000 ? TextEncoding::Utf8 : TextEncoding::Unstated;
    if (const TagField* const field = FindTagField(TagWords::APE, aKey.View())) {
        Keep(field->mField, ReadTextBytes(aValue), encoding, true, aCodePage, aTexts);
    }
}

/// The head of a picture's frame in 2.4, seen before the frames after it: to come back to it would cost a
/// read.
struct PictureAhead {
    bool mfSeen = false;    ///< the frame is one, and of plain bytes
    bool mfPicture = false; ///< and its head is whole
    ID3Picture mPicture;
    std::string mFirst;      ///< bytes of the picture
    std::uint64_t mHead = 0; ///< bytes before it
};

PictureAhead LookAhead(ByteReader aPlace) {
    PictureAhead ahead;
    const bool fPlain = !aPlace.IsUnsynchronised();
    if (!fPlain || aPlace.ReadBig32() != TagLettersOf("APIC")) {
        return ahead;
    }
    aPlace.Skip(4); // the size, which Next knows how to read
    ahead.mfSeen = aPlace.ReadBig(2) == 0 && !aPlace.HasFailed();
    const std::uint64_t start = aPlace.GetPosition();
    if (ahead.mfSeen && ReadID3Picture(aPlace, 4, kCoverFacts_MaxText, &ahead.mPicture)) {
        ahead.mFirst = ReadPictureSignature(aPlace);
        ahead.mHead = aPlace.GetPosition() - start;
        ahead.mfPicture = true;
    }
    return ahead;
}

void OfferPicture(const ByteReader& aBody, const PictureAhead& anAhead, unsigned aVersion,
                  CoverFacts& aCover) {
    const std::uint64_t size = aBody.GetLeft();
    if (!anAhead.mfSeen) {
        aCover.OfferFrame(aBody, aVersion);
    } else if (anAhead.mfPicture && size > anAhead.mHead) {
        aCover.Offer(anAhead.mPicture.mType, PictureMimeType(anAhead.mFirst, anAhead.mPicture.mMimeType),
                     size - anAhead.mHead);
    }
}

} // namespace

std::string ReadTextBytes(ByteReader& aBody) {
    if (!aBody.IsUnsynchronised()) {
        const auto size =
            static_cast<std::size_t>(std::min<std::uint64_t>(aBody.GetLeft(), kMusicTexts_MaxSize));
        std::string bytes(size, '\0');
        if (!aBody.Read(reinterpret_cast<unsigned char*>(bytes.data()), size)) {
            bytes.clear();
        }
        return bytes;
    }
    std::string bytes; // of which unsynchronisation makes the count unknown
    while (aBody.GetLeft() != 0 && bytes.size() < kMusicTexts_MaxSize) {
        bytes.push_back(static_cast<char>(aBody.ReadByte()));
    }
    return aBody.HasFailed() ? std::string() : bytes;
}

ezCString ReadCleanText(ByteReader& aBody, TextEncoding anEncoding, const CodePage& aCodePage) {
    constexpr std::size_t kShort = 256; // as most texts are, which then need no memory on the way
    const std::uint64_t size = aBody.GetLeft();
    if (aBody.IsUnsynchronised() || size > kShort) {
        return CleanText(ReadTextBytes(aBody), anEncoding, aCodePage);
    }
    std::array<unsigned char, kShort> bytes = {};
    const bool fRead = aBody.Read(bytes.data(), static_cast<std::size_t>(size));
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()),
                                fRead ? static_cast<std::size_t>(size) : 0);
    return CleanText(text, anEncoding, aCodePage);
}

bool MusicTexts::IsComplete() const {
    return !mTitle.IsEmpty() && !mCreator.IsEmpty() && !mAlbum.IsEmpty() && !mGenre.IsEmpty();
}

bool MusicTexts::Has(MusicField aField) const {
    switch (aField) {
    case MusicField::Track:
        return mTrack != 0;
    case MusicField::Disc:
        return mDisc != 0;
    case MusicField::Compilation:
        return mfCompilation;
    default:
        return !(this->*PlaceOf(aField)).IsEmpty();
    }
}

void MusicTexts::Take(MusicField aField, const std::vector<ezCString>& aValues) {
    if (!aValues.empty() && !Has(aField)) {
        Take(aField, NamesOf(aValues, aField == MusicField::Genre));
    }
}

void MusicTexts::Take(MusicField aField, const MusicNames& aNames) {
    switch (aField) {
    case MusicField::Track:
        mTrack = MusicNumberOf(aNames.GetJoined().View());
        return;
    case MusicField::Disc:
        mDisc = MusicNumberOf(aNames.GetJoined().View());
        return;
    case MusicField::Compilation:
        mfCompilation = MusicNumberOf(aNames.GetJoined().View()) != 0;
        return;
    case MusicField::Languages:
        mLanguages = LanguagesOf(aNames);
        return;
    case MusicField::Date:
        mDate = CleanDate(aNames.GetJoined().View());
        return;
    case MusicField::Creator:
        mCreators = aNames.GetListed();
        break;
    case MusicField::Genre:
        mGenres = aNames.GetListed();
        break;
    default:
        break;
    }
    this->*PlaceOf(aField) = aNames.GetJoined();
}

void MusicTexts::Complete(const MusicTexts& aTexts) {
    const auto fill = [](ezCString& aPlace, const ezCString& aText) {
        if (aPlace.IsEmpty() && !aText.IsEmpty()) {
            aPlace = aText;
        }
    };
    if (mCreator.IsEmpty()) { // a list goes with its text
        fill(mCreators, aTexts.mCreators);
    }
    if (mGenre.IsEmpty()) {
        fill(mGenres, aTexts.mGenres);
    }
    for (const Place& known : kPlaces) {
        fill(this->*known.mPlace, aTexts.*known.mPlace);
    }
    mTrack = mTrack != 0 ? mTrack : aTexts.mTrack;
    mDisc = mDisc != 0 ? mDisc : aTexts.mDisc;
    mfCompilation = mfCompilation || aTexts.mfCompilation;
}

void MusicTexts::Store(ezMediaInfo& anInfo) const {
    anInfo.mTitle = mTitle;
    anInfo.mCreator = mCreator;
    anInfo.mAlbum = mAlbum;
    anInfo.mGenre = mGenre;
    const std::pair<const char*, const ezCString&> texts[] = {
        {kezInfo_Creators, mCreators}, {kezInfo_Genres, mGenres}, {kezInfo_AlbumArtist, mAlbumArtist},
        {kezInfo_Composer, mComposer}, {kezInfo_Date, mDate},     {kezInfo_Languages, mLanguages}};
    for (const auto& [key, text] : texts) {
        if (!text.IsEmpty()) {
            anInfo.Set(key, text, true);
        }
    }
    const std::pair<const char*, std::uint32_t> numbers[] = {
        {kezInfo_TrackNumber, mTrack}, {kezInfo_DiscNumber, mDisc}, {kezInfo_Compilation, mfCompilation}};
    for (const auto& [key, number] : numbers) {
        if (number != 0) {
            anInfo.Set(key, number, true);
        }
    }
}

bool MusicField_HasSeveral(MusicField aField) {
    return aField == MusicField::Creator || aField == MusicField::Genre ||
           aField == MusicField::AlbumArtist || aField == MusicField::Composer ||
           aField == MusicField::Languages;
}

std::uint32_t MusicNumberOf(std::string_view aText) {
    std::uint32_t number = 0;
    const bool fNumber = ezReadDecimal32(ezTrimmed(aText.substr(0, aText.find('/'))), &number);
    return fNumber && number <= kMusicNumber_Max ? number : 0;
}

MusicTexts ReadID3v2Texts(const ByteReader& aReader, const ID3Tag& aTag, const CodePage& aCodePage,
                          CoverFacts* aCover) {
    MusicTexts texts;
    FrameDates dates;
    ID3Frames frames(aReader, aTag, kMusicTexts_MaxInflated);
    ezCString id;
    ByteReader body = aReader;
    for (std::uint32_t count = 0; count < kMusicTexts_MaxFrames; ++count) {
        const bool fAhead = aCover != nullptr && aTag.mVersion == 4;
        const PictureAhead ahead = fAhead ? LookAhead(frames.GetPlace()) : PictureAhead();
        if (!frames.Next(&id, &body)) {
            break;
        }
        const std::uint32_t letters = TagLettersOf(id.View());
        if (aCover != nullptr && IsID3Picture(id.View(), aTag.mVersion)) {
            OfferPicture(body, ahead, aTag.mVersion, *aCover);
        } else if (!dates.Take(letters, body)) {
            KeepFrame(letters, body, aTag.mVersion, aCodePage, texts);
        }
    }
    texts.mDate = dates.Get();
    return texts;
}

MusicTexts ReadID3v1Texts(ByteSource& aBytes, const AudioTails& aTails, const CodePage& aCodePage) {
    constexpr std::uint64_t kYear = 93;
    constexpr std::uint64_t kTrackMark = 125; // 0 where a track follows (version 1.1)
    MusicTexts texts;
    if (aTails.mID3v1 == 0) {
        return texts;
    }
    texts.mTitle = ReadID3v1Field(aBytes, aTails, 3, 4, aCodePage);
    texts.mCreator = ReadID3v1Field(aBytes, aTails, 33, 64, aCodePage);
    texts.mAlbum = ReadID3v1Field(aBytes, aTails, 63, 124, aCodePage);
    texts.mGenre = ReadID3v1Genre(aBytes, aTails, aCodePage);
    texts.mDate = CleanDate(ReadField(aBytes, aTails.mID3v1 + kYear, 4));
    const std::string track = ReadField(aBytes, aTails.mID3v1 + kTrackMark, 2);
    texts.mTrack = track.size() == 2 && track[0] == '\0' ? static_cast<unsigned char>(track[1]) : 0U;
    return texts;
}

MusicTexts ReadLyrics3Texts(ByteSource& aBytes, const AudioTails& aTails, const CodePage& aCodePage) {
    constexpr std::size_t kIDSize = 3;
    constexpr std::size_t kDigits = 5;
    MusicTexts texts;
    ByteReader fields(aBytes);
    fields.Skip(aTails.mLyricsFields);
    fields = fields.Take(aTails.mLyricsEnd - aTails.mLyricsFields);
    for (std::uint32_t count = 0; count < kMusicTexts_MaxFrames && fields.GetLeft() != 0; ++count) {
        const ezCString id = fields.ReadText(kIDSize);
        std::uint64_t size = 0;
        fields.Require(ezReadDecimal(fields.ReadText(kDigits).View(), &size));
        ByteReader body = fields.Take(size);
        if (const TagField* const field = FindTagField(TagLetters::Lyrics3, TagLettersOf(id.View()))) {
            Keep(field->mField, ReadTextBytes(body), TextEncoding::Unstated, false, aCodePage, texts);
        }
    }
    return texts;
}

MusicTexts ReadAPETexts(ByteSource& aBytes, const AudioTails& aTails, const CodePage& aCodePage,
                        CoverFacts& aCover) {
    MusicTexts texts;
    APEItems items(aBytes, aTails);
    ezCString key;
    auto kind = APEItems::Kind::Text;
    ByteReader value(aBytes);
    for (std::uint32_t count = 0; count < kMusicTexts_MaxFrames && items.Next(&key, &kind, &value); ++count) {
        if (kind == APEItems::Kind::Text) {
            KeepAPEItem(key, value, aTails.mAPEVersion, aCodePage, texts);
        } else if (kind == APEItems::Kind::Binary) {
            aCover.OfferAPEItem(key, value);
        }
    }
    return texts;
}
