#include "ezFormats/detail/FormatMagic.h"

#include "ezBytes/ByteReader.h"
#include "ezBytes/LeadingTag.h"
#include "ezFormats/codecs/MPEGAudioHeader.h"

#include <array>
#include <cstdint>
#include <string_view>

using namespace std::string_view_literals;

namespace {

ByteReader ReaderAt(ByteSource& aBytes, std::uint64_t aPosition) {
    ByteReader reader(aBytes);
    reader.Skip(aPosition);
    return reader;
}

bool HasWord(ByteSource& aBytes, std::uint64_t aPosition, std::string_view aWord) {
    ByteReader reader = ReaderAt(aBytes, aPosition);
    for (const char character : aWord) {
        if (reader.ReadByte() != static_cast<unsigned char>(character)) {
            return false;
        }
    }
    return !reader.HasFailed();
}

/// The start of a picture, and the marker of a segment or a frame header (ITU-T T.81, B.1.1.3).
bool IsJPEG(ByteSource& aBytes, std::uint64_t aPosition) {
    ByteReader reader = ReaderAt(aBytes, aPosition);
    const std::uint32_t word = reader.ReadBig32();
    const std::uint32_t marker = word & 0xFF;
    const bool fEmpty = marker >= 0xD0 && marker <= 0xD9; // those without a segment
    return !reader.HasFailed() && word >> 8 == 0xFFD8FF && marker >= 0xC0 && marker != 0xFF && !fEmpty;
}

bool IsPNG(ByteSource& aBytes, std::uint64_t aPosition) {
    return HasWord(aBytes, aPosition, "\x89PNG\r\n\x1A\n"sv);
}

/// A first box that is one: files of before "ftyp" have one of the others.
bool IsISOMedia(ByteSource& aBytes, std::uint64_t aPosition) {
    constexpr std::uint32_t kBoxHeaderSize = 8;
    const std::uint32_t size = ReaderAt(aBytes, aPosition).ReadBig32();
    if (size != 1 && size < kBoxHeaderSize) { // 1: it is stated elsewhere
        return false;
    }
    for (const std::string_view type : {"ftyp"sv, "moov"sv, "mdat"sv, "wide"sv, "free"sv, "skip"sv}) {
        if (HasWord(aBytes, aPosition + 4, type)) {
            return true;
        }
    }
    return false;
}

/// Two frames in a row of one version, layer and sampling rate; not of free format, which tells no length.
bool IsMPEGAudio(ByteSource& aBytes, std::uint64_t aPosition) {
    constexpr std::uint32_t kSame = 0xFFFE0C00;
    ByteReader first = ReaderAt(aBytes, aPosition);
    const std::uint32_t word = first.ReadBig32();
    ezMPEGAudioHeader header;
    if (first.HasFailed() || !ezMPEGAudioHeader_Read(word, header) || header.mFrameSize == 0) {
        return false;
    }
    ByteReader second = ReaderAt(aBytes, aPosition + header.mFrameSize);
    const std::uint32_t next = second.ReadBig32();
    return !second.HasFailed() && ((word ^ next) & kSame) == 0 && ezMPEGAudioHeader_Read(next, header);
}

struct Magic {
    const char* mType;
    bool (*mIsAt)(ByteSource& aBytes, std::uint64_t aPosition);
    bool mfAfterTags; ///< tags of songs may stand before it
};

constexpr std::array<Magic, 4> kMagics = {
    {{"png", IsPNG, false}, {"jpg", IsJPEG, false}, {"mp4", IsISOMedia, false}, {"mp3", IsMPEGAudio, true}}};

} // namespace

const char* FormatMagic_Find(ByteSource& aBytes) {
    const std::uint64_t start = EndOfLeadingTags(aBytes, 0);
    for (const Magic& magic : kMagics) {
        if ((start == 0 || magic.mfAfterTags) && magic.mIsAt(aBytes, start)) {
            return magic.mType;
        }
    }
    return nullptr;
}
