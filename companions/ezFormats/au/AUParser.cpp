#include "ezFormats/au/AUParser.h"

#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/detail/SoundRecord.h"
#include "ezFormats/tags/MusicValues.h"

#include "ezBytes/ByteReader.h"
#include "ezBytes/CodePage.h"
#include "ezBytes/SoundSize.h"
#include "ezBytes/TextBytes.h"

#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace {

constexpr std::uint32_t kMagic = 0x2E736E64; // ".snd"

struct Encoding {
    std::uint32_t mNumber;
    const char* mCodec;
    std::uint32_t mBits; ///< that a sample takes
    bool mfPlain;        ///< these bits are those of the sample
};
constexpr Encoding kEncodings[] = {
    {1, "ulaw", 8, false},  {2, "LPCM", 8, true},       {3, "LPCM", 16, true},      {4, "LPCM", 24, true},
    {5, "LPCM", 32, true},  {6, "PCM-float", 32, true}, {7, "PCM-float", 64, true}, {23, "G721", 4, false},
    {24, "G722", 4, false}, {25, "G723", 3, false},     {26, "G723", 5, false},     {27, "alaw", 8, false}};

/// Takes what an encoding tells; of one that is not known, its number.
void TakeEncoding(std::uint32_t aNumber, std::uint64_t aBytes, SoundFacts& aSound) {
    constexpr std::uint32_t kBits = 8; // samples of a whole number of bytes
    for (const Encoding& encoding : kEncodings) {
        if (encoding.mNumber == aNumber) {
            aSound.mCodec = encoding.mCodec;
            aSound.mBitsPerSample = encoding.mfPlain ? encoding.mBits : 0;
            aSound.SetPackets(aBytes, encoding.mBits * aSound.mChannels, kBits);
            return;
        }
    }
    aSound.mCodec = ezCString::Format("AU-%u", unsigned{aNumber});
}

/// The annotation between head and sound, which has no form of its own: writers that have texts put one a
/// line, as "title=...".
MusicTexts ReadAnnotation(ByteReader aAnnotation, const CodePage& aCodePage) {
    const std::string bytes = ReadTextBytes(aAnnotation);
    std::string_view rest = bytes;
    MusicValues values;
    while (!rest.empty()) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        const std::size_t key = line.find('=');
        const TagField* const field =
            key != std::string_view::npos ? FindTagField(TagWords::Vorbis, line.substr(0, key)) : nullptr;
        if (field != nullptr) {
            values.Add(*field, CleanText(line.substr(key + 1), TextEncoding::Unstated, aCodePage));
        }
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
    }
    MusicTexts texts;
    values.Store(texts);
    return texts;
}

} // namespace

bool AUParser::IsAt(ByteReader aBytes) {
    return aBytes.ReadBig32() == kMagic;
}

bool AUParser::ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) {
    constexpr std::uint32_t kHeadSize = 24;
    constexpr std::uint32_t kMaxChannels = 0xFFFF;
    ByteReader reader(aBytes);
    const std::uint32_t magic = reader.ReadBig32();
    if (magic != kMagic) {
        return Refuse(Cause::Malformed, "begins with %08X", unsigned{magic});
    }
    const std::uint64_t start = reader.ReadBig32();
    const std::uint32_t stated = reader.ReadBig32();
    const std::uint32_t encoding = reader.ReadBig32();
    SoundFacts sound;
    sound.mSamplingRate = reader.ReadBig32();
    sound.mChannels = reader.ReadBig32();
    if (reader.HasFailed()) {
        return RefuseCut(aBytes, "the end of the head");
    }
    if (start < kHeadSize || sound.mSamplingRate == 0 || sound.mChannels == 0 ||
        sound.mChannels > kMaxChannels) {
        return Refuse(Cause::Malformed, "%u channels at %u Hz, sound at %llu", unsigned{sound.mChannels},
                      unsigned{sound.mSamplingRate}, static_cast<unsigned long long>(start));
    }
    const SoundSize size(SoundSize::Of32(stated), aBytes.GetEnd() - std::min(start, aBytes.GetEnd()),
                         aBytes.GetSize().has_value());
    sound.mDurationMethod = size.mfMeasured ? "constant rate" : "header";
    TakeEncoding(encoding, size.mBytes, sound);
    sound.Store(anInfo);
    ByteReader annotation = reader.Take(std::min<std::uint64_t>(start - kHeadSize, kAU_MaxAnnotation));
    ReadAnnotation(annotation, CodePage(GetTextCodePage())).Store(anInfo);
    return true;
}
