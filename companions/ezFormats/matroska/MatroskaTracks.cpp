#include "ezFormats/matroska/MatroskaTracks.h"

#include "ezFormats/matroska/MatroskaLimits.h"
#include "ezFormats/matroska/MatroskaPicture.h"

#include "ezBytes/LanguageTags.h"
#include "ezFormats/detail/Limits.h"

#include "ezBytes/EBMLWalk.h"
#include "ezBytes/InflatedBytes.h"
#include "ezBytes/Limits.h"
#include "ezBytes/MatroskaTrackIds.h"

#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <cmath>
#include <tuple>

namespace {

/// @name Further elements of a TrackEntry (RFC 9559, 5.1.4.1)
/// @{
constexpr EBMLId kUID = 0x73C5;
constexpr EBMLId kEnabled = 0xB9;
constexpr EBMLId kDefault = 0x88;
constexpr EBMLId kCodecPrivate = 0x63A2;
constexpr EBMLId kDefaultDuration = 0x23E383;
constexpr EBMLId kLanguage = 0x22B59C;
constexpr EBMLId kLanguageBCP47 = 0x22B59D;
constexpr EBMLId kMapping = 0x41E4;
constexpr EBMLId kVideo = 0xE0;
constexpr EBMLId kAudio = 0xE1;
constexpr EBMLId kEncodings = 0x6D80;
/// @}

/// @name Elements of a track's sound (5.1.4.1.29)
/// @{
constexpr EBMLId kSamplingFrequency = 0xB5;
constexpr EBMLId kOutputFrequency = 0x78B5;
constexpr EBMLId kChannels = 0x9F;
constexpr EBMLId kBitDepth = 0x6264;
/// @}

/// @name Elements of a ContentEncoding (5.1.4.1.31)
/// @{
constexpr EBMLId kEncoding = 0x6240;
constexpr EBMLId kEncodingScope = 0x5032;
constexpr EBMLId kEncodingType = 0x5033;
constexpr EBMLId kCompression = 0x5034;
constexpr EBMLId kAlgorithm = 0x4254;
constexpr EBMLId kSettings = 0x4255;
constexpr std::uint64_t kAlgorithm_Zlib = 0;
constexpr std::uint64_t kAlgorithm_Stripped = 3;
/// @}

MatroskaKind KindOf(std::uint64_t aType) {
    switch (aType) {
    case kMatroska_TypeVideo:
        return MatroskaKind::Video;
    case kMatroska_TypeSound:
        return MatroskaKind::Sound;
    case kMatroska_TypeSubtitles:
        return MatroskaKind::Subtitles;
    default:
        return MatroskaKind::Other;
    }
}

/// Hz; 0 for what no sound has.
std::uint32_t RateOf(double aHertz) {
    const double rounded = std::round(aHertz);
    return rounded >= 1 && rounded <= kSamplingRate_MaxFloat ? static_cast<std::uint32_t>(rounded) : 0;
}

std::uint32_t SmallNumber(const ByteReader& aContent, std::uint32_t aDefault) {
    const std::uint64_t number = ReadEBMLNumber(aContent, aDefault);
    return number < kezMediaInfo_VariableRate ? static_cast<std::uint32_t>(number) : 0;
}

AudioFacts ReadSound(const ByteReader& aContent, std::uint32_t& aBudget) {
    constexpr double kUsualRate = 8000; // where it is left out (5.1.4.1.29.1)
    AudioFacts facts;
    facts.mChannels = 1;
    double rate = kUsualRate;
    double output = 0;
    EBMLWalk walk(aContent, aBudget);
    for (EBMLElement element(aContent); walk.Next(&element);) {
        if (element.mId == kSamplingFrequency) {
            rate = ReadEBMLFloat(element.mContent, kUsualRate);
        } else if (element.mId == kOutputFrequency) {
            output = ReadEBMLFloat(element.mContent);
        } else if (element.mId == kChannels) {
            facts.mChannels = SmallNumber(element.mContent, 1);
        } else if (element.mId == kBitDepth) {
            facts.mBitsPerSample = SmallNumber(element.mContent, 0);
        }
    }
    facts.mSamplingRate = output > 0 ? RateOf(output) : RateOf(rate);
    return facts;
}

void ReadCompression(const ByteReader& aContent, std::uint32_t& aBudget, MatroskaEncoding& anEncoding) {
    std::uint64_t algorithm = kAlgorithm_Zlib;
    EBMLWalk walk(aContent, aBudget);
    for (EBMLElement element(aContent); walk.Next(&element);) {
        if (element.mId == kAlgorithm) {
            algorithm = ReadEBMLNumber(element.mContent);
        } else if (element.mId == kSettings && element.mContent.GetLeft() <= kMatroska_MaxStripped) {
            anEncoding.mStripped.resize(static_cast<std::size_t>(element.mContent.GetLeft()));
            element.mContent.Read(anEncoding.mStripped.data(), anEncoding.mStripped.size());
        }
    }
    using Method = MatroskaEncoding::Method;
    const bool fStripped = algorithm == kAlgorithm_Stripped && !anEncoding.mStripped.empty();
    anEncoding.mMethod = algorithm == kAlgorithm_Zlib ? Method::Zlib
                         : fStripped                  ? Method::Stripped
                                                      : Method::Other;
}

MatroskaEncoding ReadEncoding(const ByteReader& aContent, std::uint32_t& aBudget) {
    constexpr std::uint64_t kFrames = 1;
    constexpr std::uint64_t kPrivate = 2;
    constexpr std::uint64_t kEncryption = 1;
    MatroskaEncoding encoding;
    encoding.mMethod = MatroskaEncoding::Method::Zlib; // where nothing says otherwise
    std::uint64_t scope = kFrames;
    EBMLWalk walk(aContent, aBudget);
    for (EBMLElement element(aContent); walk.Next(&element);) {
        if (element.mId == kEncodingScope) {
            scope = ReadEBMLNumber(element.mContent, kFrames);
        } else if (element.mId == kEncodingType) {
            encoding.mfEncrypted = ReadEBMLNumber(element.mContent) == kEncryption;
        } else if (element.mId == kCompression) {
            ReadCompression(element.mContent, aBudget, encoding);
        }
    }
    encoding.mfFrames = (scope & kFrames) != 0;
    encoding.mfPrivate = (scope & kPrivate) != 0;
    encoding.mMethod = encoding.mfEncrypted ? MatroskaEncoding::Method::Other : encoding.mMethod;
    return encoding;
}

/// Of several encodings that go one around the other nothing but encryption is told.
MatroskaEncoding ReadEncodings(const ByteReader& aContent, std::uint32_t& aBudget) {
    MatroskaEncoding encoding;
    EBMLWalk walk(aContent, aBudget);
    unsigned count = 0;
    for (EBMLElement element(aContent); walk.Find(kEncoding, &element); ++count) {
        const MatroskaEncoding next = ReadEncoding(element.mContent, aBudget);
        if (count == 0) {
            encoding = next;
            continue;
        }
        encoding.mMethod = MatroskaEncoding::Method::Other;
        encoding.mfFrames = encoding.mfFrames || next.mfFrames;
        encoding.mfPrivate = encoding.mfPrivate || next.mfPrivate;
        encoding.mfEncrypted = encoding.mfEncrypted || next.mfEncrypted;
    }
    return encoding;
}

ezCString ReadCodecId(ByteReader aContent) {
    const std::uint64_t size = std::min<std::uint64_t>(aContent.GetLeft(), kMatroska_MaxCodecId);
    return ReadEBMLText(aContent.Take(size));
}

/// An entry as it is read: what several elements decide together.
class Entry {
public:
    MatroskaTrack mTrack;

    void Take(const EBMLElement& anElement, std::uint32_t& aBudget) {
        const ByteReader& content = anElement.mContent;
        switch (anElement.mId) {
        case kMatroska_TrackNumber:
            mTrack.mNumber = ReadEBMLNumber(content);
            break;
        case kUID:
            mTrack.mUID = ReadEBMLNumber(content);
            break;
        case kMatroska_TrackType:
            mTrack.mKind = KindOf(ReadEBMLNumber(content));
            break;
        case kEnabled:
            mTrack.mfEnabled = ReadEBMLNumber(content, 1) != 0;
            break;
        case kDefault:
            mTrack.mfDefault = ReadEBMLNumber(content, 1) != 0;
            break;
        case kDefaultDuration:
            mTrack.mFrameTime = ReadEBMLNumber(content);
            break;
        default:
            TakeContent(anElement, aBudget);
        }
    }
    /// The last call.
    void Finish(std::uint32_t& aBudget) {
        mTrack.mLanguage = !mTag.IsEmpty() ? mTag : mLanguage;
        if (mVideo) {
            mTrack.mVideo = ReadMatroskaPicture(*mVideo, aBudget);
        }
        for (const ByteReader& mapping : mMappings) {
            TakeMatroskaMapping(mapping, aBudget, mTrack.mVideo);
        }
    }

private:
    void TakeContent(const EBMLElement& anElement, std::uint32_t& aBudget) {
        const ByteReader& content = anElement.mContent;
        switch (anElement.mId) {
        case kMatroska_CodecId:
            mTrack.mCodecId = ReadCodecId(content);
            break;
        case kCodecPrivate:
            mTrack.mPrivate = content;
            break;
        case kLanguage:
            mLanguage = ReadEBMLText(content);
            mLanguage = mLanguage.IsEmpty() ? ezCString("eng") : mLanguage;
            break;
        case kLanguageBCP47:
            mTag = ReadEBMLText(content);
            break;
        case kEncodings:
            mTrack.mEncoding = ReadEncodings(content, aBudget);
            break;
        case kVideo:
            mVideo = content;
            break;
        case kAudio:
            mTrack.mSound = ReadSound(content, aBudget);
            break;
        case kMapping:
            if (mMappings.size() < kMatroska_MaxMappings) {
                mMappings.push_back(content);
            }
            break;
        default:
            break;
        }
    }

    ezCString mLanguage = "eng"; // where it is left out (5.1.4.1.19)
    ezCString mTag;
    std::optional<ByteReader> mVideo;
    std::vector<ByteReader> mMappings;
};

} // namespace

std::vector<unsigned char> MatroskaTrack::Unwrap(ByteReader aBytes, bool afWrapped,
                                                 std::size_t aMaximum) const {
    using Method = MatroskaEncoding::Method;
    std::vector<unsigned char> bytes;
    const Method method = afWrapped ? mEncoding.mMethod : Method::None;
    if (method == Method::Other) {
        return bytes;
    }
    if (method == Method::Zlib) {
        InflatedBytes inflated;
        const InflatedBytes::Result result = inflated.InflateHead(aBytes, aMaximum);
        const bool fAny = result == InflatedBytes::Result::Whole || result == InflatedBytes::Result::TooLarge;
        bytes.resize(fAny ? static_cast<std::size_t>(inflated.GetEnd()) : 0);
        ByteReader reader(inflated);
        return bytes.empty() || reader.Read(bytes.data(), bytes.size()) ? bytes
                                                                        : std::vector<unsigned char>();
    }
    const std::size_t before = method == Method::Stripped ? mEncoding.mStripped.size() : 0;
    bytes.assign(mEncoding.mStripped.begin(),
                 mEncoding.mStripped.begin() + static_cast<std::ptrdiff_t>(before));
    const std::uint64_t count = std::min<std::uint64_t>(aBytes.GetLeft(), aMaximum - before);
    bytes.resize(before + static_cast<std::size_t>(count));
    if (!aBytes.Read(bytes.data() + before, static_cast<std::size_t>(count))) {
        bytes.clear();
    }
    return bytes;
}

std::vector<unsigned char> MatroskaTrack::ReadFrame(ByteReader aFrame) const {
    return Unwrap(aFrame, mEncoding.mfFrames, kMatroska_MaxFrame);
}

std::vector<unsigned char> MatroskaTrack::ReadPrivate() const {
    return mPrivate ? Unwrap(*mPrivate, mEncoding.mfPrivate, kMatroska_MaxPrivate)
                    : std::vector<unsigned char>();
}

const MatroskaTrack* MatroskaTracks::Find(MatroskaKind aKind) const {
    const auto rank = [](const MatroskaTrack& aTrack) {
        return std::make_tuple(!aTrack.mfEnabled, !aTrack.mfDefault, aTrack.mNumber);
    };
    const MatroskaTrack* found = nullptr;
    for (const MatroskaTrack& track : mTracks) {
        if (track.mKind == aKind && (found == nullptr || rank(track) < rank(*found))) {
            found = &track;
        }
    }
    return found;
}

std::uint32_t MatroskaTracks::Count(MatroskaKind aKind) const {
    const MatroskaTrack* const first = Find(aKind);
    const auto count = std::count_if(mTracks.begin(), mTracks.end(), [=](const MatroskaTrack& aTrack) {
        return aTrack.mKind == aKind && (aTrack.mfEnabled || !first->mfEnabled);
    });
    return static_cast<std::uint32_t>(count);
}

std::string MatroskaTracks::GetLanguages(MatroskaKind aKind) const {
    std::string languages;
    const MatroskaTrack* const first = Find(aKind);
    if (first != nullptr) {
        AddLanguages(languages, first->mLanguage.View());
    }
    for (const MatroskaTrack& track : mTracks) {
        if (track.mKind == aKind && track.mfEnabled) {
            AddLanguages(languages, track.mLanguage.View());
        }
    }
    return languages;
}

const MatroskaTrack* MatroskaTracks::OfNumber(std::uint64_t aNumber) const {
    const auto track = std::find_if(mTracks.begin(), mTracks.end(),
                                    [=](const MatroskaTrack& aTrack) { return aTrack.mNumber == aNumber; });
    return track != mTracks.end() ? &*track : nullptr;
}

MatroskaTracks ReadMatroskaTracks(const ByteReader& aContent, std::uint32_t& aBudget) {
    MatroskaTracks tracks;
    EBMLWalk walk(aContent, aBudget);
    for (EBMLElement element(aContent);
         tracks.mTracks.size() < kMatroska_MaxTracks && walk.Find(kMatroska_TrackEntry, &element);) {
        EBMLWalk fields(element.mContent, aBudget);
        Entry entry;
        for (EBMLElement field(element.mContent); fields.Next(&field);) {
            entry.Take(field, aBudget);
        }
        if (!element.mfCut && !fields.HasFailed()) {
            entry.Finish(aBudget);
            tracks.mTracks.push_back(std::move(entry.mTrack));
        }
    }
    return tracks;
}
