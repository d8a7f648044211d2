#include "ezFormats/riff/WAVDisguise.h"

#include "ezFormats/codecs/AC3Header.h"
#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/riff/WAVLimits.h"

#include "ezBytes/BitReader.h"
#include "ezBytes/ByteReader.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>

namespace {

constexpr std::uint64_t kSampleSize = 4; ///< of two channels of 16 bits

/// How the words of a coded stream stand in the samples.
struct Form {
    std::uint32_t mSync; ///< the first four bytes, as they stand
    bool mfBurst;        ///< that of a burst of IEC 61937; else of a frame of DTS (ETSI TS 102 114, 5.3)
    bool mfSwapped;      ///< of each two bytes the second comes first
    unsigned mWordBits;  ///< that count in two bytes
};
constexpr std::array<Form, 6> kForms = {{{0x7FFE8001, false, false, 16},
                                         {0xFE7F0180, false, true, 16},
                                         {0x1FFFE800, false, false, 14},
                                         {0xFF1F00E8, false, true, 14},
                                         {0xF8724E1F, true, false, 16},
                                         {0x72F81F4E, true, true, 16}}};

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

const Form* FormOf(std::uint32_t aWord) {
    for (const Form& form : kForms) {
        if (form.mSync == aWord) {
            return &form;
        }
    }
    return nullptr;
}

/// The first bits of a stream, in its own order.
struct FirstBits {
    std::array<unsigned char, 16> mBytes = {};
    std::size_t mCount = 0; ///< bits

    void Append(std::uint32_t aWord, unsigned aBits) {
        for (unsigned i = aBits; i-- > 0 && mCount < 8 * mBytes.size(); ++mCount) {
            const unsigned bit = aWord >> i & 1U;
            mBytes[mCount / 8] = static_cast<unsigned char>(mBytes[mCount / 8] | bit << (7 - mCount % 8));
        }
    }
};

FirstBits ReadBits(ByteReader aReader, const Form& aForm) {
    FirstBits bits;
    for (unsigned i = 0; i < 8 && aReader.GetLeft() >= 2; ++i) {
        bits.Append(static_cast<std::uint32_t>(aForm.mfSwapped ? aReader.ReadLittle(2) : aReader.ReadBig(2)),
                    aForm.mWordBits);
    }
    return bits;
}

/// What the header of a DTS frame tells (5.3.1), and samples of a channel in the frame; 0 for what is not
/// one.
std::uint32_t ReadDTSFrame(const FirstBits& aBits, WAVDisguise* aDisguise) {
    constexpr std::array<std::uint32_t, 16> kChannels = {1, 2, 2, 2, 2, 3, 3, 4, 4, 5, 6, 6, 6, 7, 8, 8};
    constexpr std::array<std::uint32_t, 16> kRates = {0,     8000, 16000, 32000, 0,     0,     11025, 22050,
                                                      44100, 0,    0,     12000, 24000, 48000, 0,     0};
    constexpr std::uint32_t kLeastSize = 95;
    ezBitReader bits(aBits.mBytes.data(), aBits.mCount);
    bits.Skip(32);                                 // SYNC
    bits.Skip(7);                                  // FTYPE, SHORT, CPF
    const std::uint32_t blocks = bits.Read(7) + 1; // NBLKS
    const std::uint32_t size = bits.Read(14) + 1;  // FSIZE
    const std::uint32_t layout = bits.Read(6);     // AMODE
    const std::uint32_t rate = bits.Read(4);       // SFREQ
    bits.Skip(5 + 10);                             // RATE, and flags up to ASPF
    const bool fLFE = bits.Read(2) != 0;           // LFF
    if (blocks < 8 || size <= kLeastSize || layout >= kChannels.size() || kRates[rate] == 0) {
        return 0;
    }
    aDisguise->mCodec = "DTS";
    aDisguise->mChannels = kChannels[layout] + (fLFE ? 1 : 0);
    aDisguise->mSamplingRate = kRates[rate];
    return 32 * blocks;
}

/// A frame of DTS takes the room of its samples: the next one stands after that.
bool IsDTSAt(ByteReader aReader, const Form& aForm, WAVDisguise* aDisguise) {
    const std::uint32_t samples = ReadDTSFrame(ReadBits(aReader, aForm), aDisguise);
    aReader.Skip(samples * kSampleSize);
    return samples != 0 && aReader.ReadBig32() == aForm.mSync;
}

/// A burst: its sync words, what it holds and how many bits of it, and these. Of AC-3 the header is there.
bool IsBurstAt(ByteReader aReader, const Form& aForm, WAVDisguise* aDisguise) {
    constexpr std::uint32_t kTypeMask = 0x7F;
    const FirstBits bits = ReadBits(aReader, aForm);
    const std::uint32_t type = bits.mBytes[5] & kTypeMask;
    const auto* const burst = std::find_if(kBursts.begin(), kBursts.end(),
                                           [type](const Burst& aBurst) { return aBurst.mType == type; });
    if (burst == kBursts.end() || (bits.mBytes[6] == 0 && bits.mBytes[7] == 0)) {
        return false;
    }
    aDisguise->mCodec = burst->mCodec;
    ezAC3Header header = {};
    if (aDisguise->mCodec != "AC3") {
        return true;
    }
    if (!ezAC3Header_Read(bits.mBytes.data() + 8, header)) {
        return false;
    }
    aDisguise->mChannels = header.mChannels;
    aDisguise->mSamplingRate = header.mSamplingRate;
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
        const std::uint32_t word = std::uint32_t{bytes[i]} << 24 | std::uint32_t{bytes[i + 1]} << 16 |
                                   std::uint32_t{bytes[i + 2]} << 8 | bytes[i + 3];
        if (FormOf(word) != nullptr) {
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
        const Form& form = *FormOf(word.ReadBig32());
        WAVDisguise disguise;
        if (form.mfBurst ? IsBurstAt(reader, form, &disguise) : IsDTSAt(reader, form, &disguise)) {
            return disguise;
        }
        place = *sync + 2;
    }
    return {};
}
