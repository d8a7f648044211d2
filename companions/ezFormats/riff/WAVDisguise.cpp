#include "ezFormats/riff/WAVDisguise.h"

#include "ezFormats/codecs/AC3Header.h"
#include "ezFormats/codecs/DTSHeader.h"
#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/riff/WAVLimits.h"

#include "ezBytes/ByteReader.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>

namespace {

constexpr std::uint64_t kSampleSize = 4; ///< of two channels of 16 bits

/// The first four bytes of a burst of IEC 61937, as they may stand.
constexpr std::array<ezWordForm, 2> kBurstForms = {{{0xF8724E1F, false, 16}, {0x72F81F4E, true, 16}}};

/// Data types of a burst (IEC 61937-2, 4.1).
struct Burst {
    unsigned mType;
    const char* mCodec;
};
constexpr std::array<Burst, 8> kBursts = {{{1, "AC3"},
                                           {7, "AAC"},
                                           {11, "DTS"},
                                           {12, "DTS"},
                                           {13, "DTS"},
                                           {17, "DTS"},
                                           {21, "EAC3"},
                                           {22, "TrueHD"}}};

const ezWordForm* BurstFormOf(std::uint32_t aWord) {
    for (const ezWordForm& form : kBurstForms) {
        if (form.mSync == aWord) {
            return &form;
        }
    }
    return nullptr;
}

/// Whether a form begins with these two bytes: few places do, and each of thousands is asked.
bool IsHeadOfForm(std::uint32_t aHead) {
    const auto fBegins = [aHead](const ezWordForm& aForm) { return aForm.mSync >> 16 == aHead; };
    return std::any_of(kDTSForms.begin(), kDTSForms.end(), fBegins) ||
           std::any_of(kBurstForms.begin(), kBurstForms.end(), fBegins);
}

/// The first bytes of a stream, in its own order.
using FirstBytes = std::array<unsigned char, 16>;

FirstBytes ReadFirst(ByteReader aReader, const ezWordForm& aForm) {
    FirstBytes stored = {};
    FirstBytes bytes = {};
    const std::uint64_t size = std::min<std::uint64_t>(aReader.GetLeft(), stored.size());
    if (aReader.Read(stored.data(), static_cast<std::size_t>(size))) {
        ezWordForm_Unpack(aForm, stored.data(), static_cast<std::size_t>(size), bytes.data());
    }
    return bytes;
}

/// A frame of DTS takes the room of its samples: the next one stands after that.
bool IsDTSAt(ByteReader aReader, const ezWordForm& aForm, WAVDisguise* aDisguise) {
    ezDTSHeader header;
    if (!ezDTSHeader_Read(ReadFirst(aReader, aForm).data(), header)) {
        return false;
    }
    aDisguise->mCodec = "DTS";
    aDisguise->mChannels = header.mChannels;
    aReader.Skip(header.mSampleCount / header.mRateFactor * kSampleSize);
    return aReader.ReadBig32() == aForm.mSync;
}

/// A burst: its sync words, what it holds and how many bits of it, and these. Of AC-3 the header is there.
bool IsBurstAt(const ByteReader& aReader, const ezWordForm& aForm, WAVDisguise* aDisguise) {
    constexpr std::uint32_t kTypeMask = 0x7F;
    const FirstBytes bytes = ReadFirst(aReader, aForm);
    const std::uint32_t type = bytes[5] & kTypeMask;
    const auto* const burst = std::find_if(kBursts.begin(), kBursts.end(),
                                           [type](const Burst& aBurst) { return aBurst.mType == type; });
    if (burst == kBursts.end() || (bytes[6] == 0 && bytes[7] == 0)) {
        return false;
    }
    aDisguise->mCodec = burst->mCodec;
    ezAC3Header header = {};
    if (aDisguise->mCodec != "AC3") {
        return true;
    }
    if (!ezAC3Header_Read(bytes.data() + 8, header)) {
        return false;
    }
    aDisguise->mChannels = header.mChannels;
    return true;
}

/// The next place from one on, within the bytes that are buffered there, where a stream may begin.
std::optional<std::uint64_t> FindSync(MediaBytes& aBytes, std::uint64_t aPlace, std::uint64_t anEnd) {
    const unsigned char* bytes = nullptr;
    if (!aBytes.HasBuffered(aPlace) && !aBytes.Load(aPlace, kWAV_DisguiseLookSize)) {
        return std::nullopt;
    }
    const std::size_t there = aBytes.Borrow(aPlace, &bytes);
    const std::size_t count = static_cast<std::size_t>(std::min<std::uint64_t>(there, anEnd - aPlace));
    for (std::size_t i = 0; i + 4 <= count; i += 2) {
        const std::uint32_t head = std::uint32_t{bytes[i]} << 8 | bytes[i + 1];
        if (!IsHeadOfForm(head)) {
            continue;
        }
        const std::uint32_t word = head << 16 | std::uint32_t{bytes[i + 2]} << 8 | bytes[i + 3];
        if (ezDTSForm_Of(word) != nullptr || BurstFormOf(word) != nullptr) {
            return aPlace + i;
        }
    }
    return std::nullopt;
}

/// True when the bytes that are buffered from a place on are silence, up to an end, or all but the last of
/// them, in which no stream would show.
bool IsSilence(MediaBytes& aBytes, std::uint64_t aPlace, std::uint64_t anEnd) {
    const unsigned char* bytes = nullptr;
    const std::size_t there = aBytes.Borrow(aPlace, &bytes);
    const std::size_t count = static_cast<std::size_t>(std::min<std::uint64_t>(there, anEnd - aPlace));
    const std::size_t shown = count - std::min<std::size_t>(count, 8);
    return std::all_of(bytes, bytes + shown, [](unsigned char aByte) { return aByte == 0; });
}

} // namespace

WAVDisguise FindWAVDisguise(MediaBytes& aBytes, std::uint64_t aStart, std::uint64_t anEnd) {
    if (aStart >= anEnd || !aBytes.Load(aStart, kWAV_DisguiseLookSize)) {
        return {};
    }
    if (IsSilence(aBytes, aStart, anEnd)) {
        aBytes.Load(aStart, kWAV_DisguiseSilenceSize);
    }
    std::uint64_t place = aStart;
    for (std::uint32_t i = 0; i < kWAV_MaxDisguiseTries; ++i) {
        const std::optional<std::uint64_t> sync = FindSync(aBytes, place, anEnd);
        if (!sync) {
            return {};
        }
        ByteReader reader(aBytes);
        reader.Skip(*sync);
        ByteReader word = reader;
        const std::uint32_t first = word.ReadBig32();
        const ezWordForm* const burst = BurstFormOf(first);
        WAVDisguise disguise;
        if (burst != nullptr ? IsBurstAt(reader, *burst, &disguise)
                             : IsDTSAt(reader, *ezDTSForm_Of(first), &disguise)) {
            return disguise;
        }
        place = *sync + 2;
    }
    return {};
}
