#include "ezFormats/ts/TSStreamTypes.h"

#include "ezBytes/LanguageTags.h"

#include "ezBytes/ByteReader.h"

#include <algorithm>

namespace {

constexpr std::uint8_t kPrivateType = 0x06; ///< PES packets of private data: descriptors decide

/// A format that is registered (ISO/IEC 13818-1, 2.6.8), and what it is.
struct Registered {
    std::uint32_t mFormat;
    StreamCodec mCodec;
};
constexpr Registered kRegistered[] = {
    {0x41432D33, StreamCodec::AC3},    // "AC-3"
    {0x45414333, StreamCodec::AC3},    // "EAC3"
    {0x41432D34, StreamCodec::AC4},    // "AC-4"
    {0x44545331, StreamCodec::DTS},    // "DTS1"
    {0x44545332, StreamCodec::DTS},    // "DTS2"
    {0x44545333, StreamCodec::DTS},    // "DTS3"
    {0x48455643, StreamCodec::H265},   // "HEVC"
    {0x56564320, StreamCodec::H266},   // "VVC "
    {0x56432D31, StreamCodec::VC1},    // "VC-1"
    {0x41563031, StreamCodec::AV1},    // "AV01"
    {0x41565356, StreamCodec::AVS},    // "AVSV"
    {0x4F707573, StreamCodec::Opus},   // "Opus"
    {0x42535344, StreamCodec::S302M},  // "BSSD"
    {0x6D6C7061, StreamCodec::TrueHD}, // "mlpa"
    {0x4B4C5641, StreamCodec::Data},   // "KLVA"
    {0x49443320, StreamCodec::Data},   // "ID3 "
    {0x43554549, StreamCodec::Data},   // "CUEI"
};

/// A descriptor that says what a stream is (ETSI EN 300 468, 6.1; ATSC A/52, annex A).
struct Described {
    std::uint8_t mTag;
    StreamCodec mCodec;
};
constexpr Described kDescribed[] = {
    {0x46, StreamCodec::Teletext}, // VBI teletext
    {0x56, StreamCodec::Teletext}, {0x59, StreamCodec::Subtitle}, {0x6A, StreamCodec::AC3},
    {0x7A, StreamCodec::AC3},      {0x7B, StreamCodec::DTS},      {0x7C, StreamCodec::ADTS},
    {0x81, StreamCodec::AC3},      {0xCC, StreamCodec::AC3},
};

/// descriptor_tag_extension of a descriptor 7F (ETSI EN 300 468, 6.3).
constexpr Described kExtended[] = {
    {0x0E, StreamCodec::DTS},                                 // DTS-HD
    {0x0F, StreamCodec::DTS},                                 // DTS Neural
    {0x15, StreamCodec::AC4},  {0x20, StreamCodec::Subtitle}, // TTML
    {0x21, StreamCodec::DTS},                                 // DTS-UHD
    {0x80, StreamCodec::Opus},                                // of those who wrote it there first
};

/// A type of stream that its maker numbered.
struct MadeType {
    std::uint8_t mType;
    StreamCodec mOfHDMV;
    StreamCodec mOfOthers;  ///< broadcasts
    StreamCodec mOfUnknown; ///< Unknown: the payload decides, and where it does not, it is that of others
};
constexpr MadeType kMade[] = {
    {0x80, StreamCodec::LPCMOfDisc, StreamCodec::MPEGVideo, StreamCodec::MPEGVideo},
    {0x81, StreamCodec::AC3, StreamCodec::AC3, StreamCodec::AC3},
    // Without a maker it is DTS at times, and the subtitles of ATSC at others: the payload tells.
    {0x82, StreamCodec::DTS, StreamCodec::Subtitle, StreamCodec::Unknown},
    {0x83, StreamCodec::TrueHD, StreamCodec::Unknown, StreamCodec::Unknown},
    {0x84, StreamCodec::AC3, StreamCodec::AC3, StreamCodec::AC3},
    {0x85, StreamCodec::DTS, StreamCodec::Unknown, StreamCodec::Unknown},
    {0x86, StreamCodec::DTS, StreamCodec::Data, StreamCodec::Data}, // SCTE 35
    {0x87, StreamCodec::AC3, StreamCodec::AC3, StreamCodec::AC3},
    {0x8A, StreamCodec::DTS, StreamCodec::DTS, StreamCodec::DTS},
    {0x90, StreamCodec::Subtitle, StreamCodec::Unknown, StreamCodec::Subtitle},
    {0x91, StreamCodec::Data, StreamCodec::Unknown, StreamCodec::Data}, // interactive graphics
    {0x92, StreamCodec::Subtitle, StreamCodec::Unknown, StreamCodec::Subtitle},
    {0xA1, StreamCodec::AC3, StreamCodec::Unknown, StreamCodec::Unknown},
    {0xA2, StreamCodec::DTS, StreamCodec::Unknown, StreamCodec::Unknown},
};

/// Types whose samples are encrypted one by one, as in streams over HTTP.
struct EncryptedType {
    std::uint8_t mType;
    StreamCodec mCodec;
    const char* mName;
};
constexpr EncryptedType kEncrypted[] = {{0xC1, StreamCodec::AC3, "AC3"},
                                        {0xC2, StreamCodec::AC3, "EAC3"},
                                        {0xCF, StreamCodec::ADTS, "AAC"},
                                        {0xDB, StreamCodec::H264, "H264"}};

/// What a codec is called by a type whose payload tells nothing.
struct NamedType {
    std::uint8_t mType;
    const char* mName;
};
constexpr NamedType kNamed[] = {{0x01, "MPEG1"}, {0x02, "MPEG2"}, {0x03, "MP2"},
                                {0x04, "MP2"},   {0x0F, "AAC"},   {0x11, "AAC"},
                                {0x81, "AC3"},   {0x84, "EAC3"},  {0x87, "EAC3"}};

template <typename Row, std::size_t Count>
const Row* FindType(const Row (&aRows)[Count], std::uint8_t aType) {
    const Row* const end = aRows + Count;
    const Row* const row = std::find_if(aRows, end, [=](const Row& aRow) { return aRow.mType == aType; });
    return row != end ? row : nullptr;
}

void TakeCodec(StreamCodec aCodec, TSStreamWords& aWords) {
    aWords.mCodec = aWords.mCodec == StreamCodec::Unknown ? aCodec : aWords.mCodec;
}

void TakeRegistration(ByteReader aContent, TSStreamWords& aWords) {
    const std::uint32_t format = aContent.ReadBig32();
    for (const Registered& registered : kRegistered) {
        if (registered.mFormat == format) {
            TakeCodec(registered.mCodec, aWords);
        }
    }
}

/// descriptor 7F: what it is stands in its first byte.
void TakeExtended(ByteReader aContent, TSStreamWords& aWords) {
    constexpr std::uint8_t kOpus = 0x80;
    constexpr std::uint32_t kPlainCodes = 8;
    const std::uint8_t tag = aContent.ReadByte();
    for (const Described& described : kExtended) {
        if (described.mTag == tag) {
            TakeCodec(described.mCodec, aWords);
        }
    }
    if (tag == kOpus) { // channel_config_code: 0 is dual mono, others to 8 are so many
        const std::uint32_t code = aContent.ReadByte();
        aWords.mChannels = aContent.HasFailed() || code > kPlainCodes ? 0 : code == 0 ? 2 : code;
    }
}

/// Lists of languages, each in so many bytes of which the first three are its code (ISO 639-2).
void TakeLanguages(ByteReader aContent, std::size_t aSize, TSStreamWords& aWords) {
    while (aContent.GetLeft() >= aSize) {
        ByteReader entry = aContent.Take(aSize);
        const ezCString language = entry.ReadText(3);
        AddLanguages(aWords.mLanguages, language.View());
    }
}

/// Those of the pages with subtitles of teletext (ETSI EN 300 468, 6.2.43).
void TakeTeletext(ByteReader aContent, TSStreamWords& aWords) {
    constexpr unsigned kSubtitles = 2;
    constexpr unsigned kSubtitlesForDeaf = 5;
    while (aContent.GetLeft() >= 5) {
        const ezCString language = aContent.ReadText(3);
        const unsigned kind = aContent.ReadByte() >> 3;
        aContent.Skip(1);
        if (kind == kSubtitles || kind == kSubtitlesForDeaf) {
            AddLanguages(aWords.mLanguages, language.View());
        }
    }
}

/// A component of a broadcast in Japan (ARIB STD-B10, 6.2.20): captions, or data of other kinds.
void TakeComponent(ByteReader aContent, TSStreamWords& aWords) {
    constexpr std::uint64_t kCaptions = 0x0008;
    aWords.mfOfJapan = true;
    TakeCodec(aContent.ReadBig(2) == kCaptions ? StreamCodec::Subtitle : StreamCodec::Data, aWords);
}

} // namespace

void TakeTSDescriptor(std::uint8_t aTag, ByteReader aContent, TSStreamWords& aWords) {
    for (const Described& described : kDescribed) {
        if (described.mTag == aTag) {
            TakeCodec(described.mCodec, aWords);
        }
    }
    switch (aTag) {
    case 0x05:
        TakeRegistration(aContent, aWords);
        break;
    case 0x0A: // ISO_639_language_descriptor (ISO/IEC 13818-1, 2.6.18)
        TakeLanguages(aContent, 4, aWords);
        break;
    case 0x46:
    case 0x56:
        TakeTeletext(aContent, aWords);
        break;
    case 0x59: // subtitling_descriptor
        TakeLanguages(aContent, 8, aWords);
        break;
    case 0x7F:
        TakeExtended(aContent, aWords);
        break;
    case 0xFD:
        TakeComponent(aContent, aWords);
        break;
    default:
        break;
    }
}

TSStream TSStreamOf(const TSStreamWords& aWords, TSMaker aMaker) {
    TSStream stream;
    stream.mLanguages = aWords.mLanguages;
    stream.mChannels = aWords.mChannels;
    stream.mCodec = StreamCodec_OfType(aWords.mType);
    const MadeType* const made = FindType(kMade, aWords.mType);
    const EncryptedType* const encrypted = FindType(kEncrypted, aWords.mType);
    const NamedType* const named = FindType(kNamed, aWords.mType);
    if (encrypted != nullptr) {
        stream.mCodec = encrypted->mCodec;
        stream.mfEncrypted = true;
    } else if (aWords.mCodec != StreamCodec::Unknown &&
               (aWords.mType == kPrivateType || aWords.mType >= 0x80)) {
        stream.mCodec = aWords.mCodec;
    } else if (made != nullptr) {
        stream.mCodec = aMaker == TSMaker::HDMV    ? made->mOfHDMV
                        : aMaker == TSMaker::Other ? made->mOfOthers
                                                   : made->mOfUnknown;
        stream.mElse = made->mOfOthers;
    }
    stream.mName = encrypted != nullptr ? encrypted->mName
                   : named != nullptr   ? named->mName
                                        : StreamCodec_GetName(stream.mCodec);
    return stream;
}
