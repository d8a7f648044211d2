#include "ezFormats/codecs/EAC3Header.h"

#include "ezBytes/BitReader.h"
#include "ezFormats/codecs/AC3Header.h"

#include <array>

namespace {

// Codes of strmtyp (E.1.3.1.1)
constexpr std::uint32_t kStreamDependent = 1; ///< adds channels to the programme before it
constexpr std::uint32_t kStreamReserved = 3;
constexpr std::uint32_t kRateHalved = 3; ///< fscod where fscod2 tells the rate
constexpr std::uint32_t kSamplesOfBlock = 256;
constexpr std::uint32_t kBlocksHalved = 6;
constexpr std::uint32_t kMinBSID = 11; ///< below stands AC-3 (E.1.3.1.6)
constexpr std::uint32_t kMaxBSID = 16;

constexpr std::array<std::uint32_t, 4> kBlocks = {1, 2, 3, 6};

// Places of a chanmap: L, C, R, Ls, Rs, Lc and Rc, Lrs and Rrs, Cs, Ts, Lsd and Rsd, Lw and Rw, Lvh and Rvh,
// Cvh, Lts and Rts, LFE2, LFE.
constexpr std::uint32_t kPlaceLFE = 0x0001;
constexpr std::uint32_t kPairs = 0x0400 | 0x0200 | 0x0040 | 0x0020 | 0x0010 | 0x0004;
constexpr unsigned kPlaceCount = 16;

/// By acmod; a single surround channel stands at Cs.
constexpr std::array<std::uint32_t, 8> kPlacesOfMode = {0xA000, 0x4000, 0xA000, 0xE000,
                                                        0xA100, 0xE100, 0xB800, 0xF800};

} // namespace

bool ezEAC3Header_ReadFields(std::uint32_t aFields, ezEAC3Header& aHeader) {
    const std::array<unsigned char, 4> bytes = {
        static_cast<unsigned char>(aFields >> 24), static_cast<unsigned char>(aFields >> 16),
        static_cast<unsigned char>(aFields >> 8), static_cast<unsigned char>(aFields)};
    ezBitReader bits(bytes.data(), 8 * bytes.size());
    const std::uint32_t strmtyp = bits.Read(2);
    const std::uint32_t substreamid = bits.Read(3);
    const std::uint32_t frmsiz = bits.Read(11);
    const std::uint32_t fscod = bits.Read(2);
    const std::uint32_t numblkscod = bits.Read(2); // or fscod2
    const std::uint32_t acmod = bits.Read(3);
    const std::uint32_t lfeon = bits.Read(1);
    const std::uint32_t bsid = bits.Read(5);
    const bool fHalved = fscod == kRateHalved;
    if (strmtyp == kStreamReserved || (fHalved && numblkscod >= kAC3SamplingRates.size()) ||
        bsid < kMinBSID || bsid > kMaxBSID) {
        return false;
    }
    aHeader.mSamplingRate = fHalved ? kAC3SamplingRates[numblkscod] / 2 : kAC3SamplingRates[fscod];
    aHeader.mSampleCount = kSamplesOfBlock * (fHalved ? kBlocksHalved : kBlocks[numblkscod]);
    aHeader.mChannels = kAC3Channels[acmod] + lfeon;
    aHeader.mFrameSize = 2 * (frmsiz + 1);
    aHeader.mfDependent = strmtyp == kStreamDependent;
    aHeader.mfMain = strmtyp != kStreamDependent && substreamid == 0;
    return true;
}

bool ezEAC3Header_Read(const unsigned char* aBytes, ezEAC3Header& aHeader) {
    return aBytes[0] == 0x0B && aBytes[1] == 0x77 && // syncword
           ezEAC3Header_ReadFields(ezEAC3Header_Fields(aBytes), aHeader);
}

bool ezEAC3Header_IsSameStream(std::uint32_t aFirst, std::uint32_t aSecond) {
    constexpr std::uint32_t kRateAndBlocks = 0x0000F000; // fscod, numblkscod
    constexpr std::uint32_t kAcmodAndLfeon = 0x00000F00;
    constexpr std::uint32_t kBSID = 0x000000F8;
    ezEAC3Header first = {};
    ezEAC3Header second = {};
    if (!ezEAC3Header_ReadFields(aFirst, first) || !ezEAC3Header_ReadFields(aSecond, second)) {
        return false;
    }
    const bool fAlike = first.mfMain && second.mfMain;
    const std::uint32_t same = kRateAndBlocks | kBSID | (fAlike ? kAcmodAndLfeon : 0);
    return ((aFirst ^ aSecond) & same) == 0 && (first.mfMain || second.mfMain);
}

std::uint32_t ezEAC3Header_PlacesOfMode(std::uint32_t anAcmod, bool afLFE) {
    return kPlacesOfMode[anAcmod % kPlacesOfMode.size()] | (afLFE ? kPlaceLFE : 0);
}

std::uint32_t ezEAC3Header_PlacesOfLocation(std::uint32_t aChanLoc) {
    constexpr std::array<std::uint32_t, 9> kPlaces = {
        0x0400, 0x0200, 0x0100, 0x0080, 0x0040, 0x0020, 0x0010, 0x0008, 0x0002}; // by bit, the lowest first
    std::uint32_t places = 0;
    for (std::size_t i = 0; i < kPlaces.size(); ++i) {
        places |= (aChanLoc >> i & 1U) != 0 ? kPlaces[i] : 0;
    }
    return places;
}

std::uint32_t ezEAC3Header_Places(const unsigned char* aBytes) {
    ezBitReader bits(aBytes, std::size_t{8} * kEAC3MapSize);
    bits.Skip(16); // syncword
    const std::uint32_t strmtyp = bits.Read(2);
    bits.Skip(3 + 11 + 2 + 2); // substreamid, frmsiz, fscod, numblkscod
    const std::uint32_t acmod = bits.Read(3);
    const bool fLFE = bits.Read(1) != 0;
    bits.Skip(5); // bsid
    for (unsigned programme = 0; programme < (acmod == 0 ? 2U : 1U); ++programme) {
        bits.Skip(5);                         // dialnorm
        bits.Skip(bits.Read(1) != 0 ? 8 : 0); // compre, compr
    }
    const bool fMap = strmtyp == kStreamDependent && bits.Read(1) != 0; // chanmape
    return fMap ? bits.Read(kPlaceCount) : ezEAC3Header_PlacesOfMode(acmod, fLFE);
}

std::uint32_t ezEAC3Header_CountChannels(std::uint32_t aPlaces) {
    std::uint32_t count = 0;
    for (unsigned place = 0; place < kPlaceCount; ++place) {
        count += (aPlaces >> place & 1U) + (aPlaces >> place & kPairs >> place & 1U);
    }
    return count;
}
