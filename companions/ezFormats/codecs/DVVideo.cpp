#include "ezFormats/codecs/DVVideo.h"

#include "ezFormats/codecs/DVBlocks.h"

#include <array>
#include <cstdint>

namespace {

/// Packs of video auxiliary data (SMPTE 314M, 4.8): three blocks of fifteen.
constexpr std::size_t kFirstAuxiliary = 3;
constexpr std::size_t kAuxiliaryBlocks = 3;
constexpr std::size_t kPacks = 15;
constexpr unsigned kPackSource = 0x60;
constexpr unsigned kPackSourceControl = 0x61;

/// What a signal type (STYPE) is, at 60 and 50 fields a second.
struct System {
    unsigned mType;
    bool mf50; ///< 50 fields a second, else 59.94
    const char* mProfile;
    std::uint32_t mWidth;
    std::uint32_t mHeight;
    std::uint32_t mFrameRate;
    const char* mScan;
    const char* mColours;
};
constexpr std::array<System, 8> kSystems = {
    {{0x00, false, "25", 720, 480, 29970, kScan_Interlaced, "4:1:1"},
     {0x00, true, "25", 720, 576, 25000, kScan_Interlaced, "4:2:0"},
     {0x04, false, "50", 720, 480, 29970, kScan_Interlaced, "4:2:2"},
     {0x04, true, "50", 720, 576, 25000, kScan_Interlaced, "4:2:2"},
     {0x14, false, "100", 1280, 1080, 29970, kScan_Interlaced, "4:2:2"},
     {0x14, true, "100", 1440, 1080, 25000, kScan_Interlaced, "4:2:2"},
     {0x18, false, "100", 960, 720, 59940, kScan_Progressive, "4:2:2"},
     {0x18, true, "100", 960, 720, 50000, kScan_Progressive, "4:2:2"}}};

/// The pack of a kind; null where there is none.
const unsigned char* FindPack(const unsigned char* aBytes, unsigned aKind) {
    for (std::size_t block = kFirstAuxiliary; block < kFirstAuxiliary + kAuxiliaryBlocks; ++block) {
        for (std::size_t pack = 0; pack < kPacks; ++pack) {
            const unsigned char* const bytes =
                aBytes + block * kDVBlockBytes + kDVBlockHead + pack * kDVPackBytes;
            if (bytes[0] == aKind) {
                return bytes;
            }
        }
    }
    return nullptr;
}

const System* FindSystem(unsigned aType, bool af50) {
    for (const System& system : kSystems) {
        if (system.mType == aType && system.mf50 == af50) {
            return &system;
        }
    }
    return nullptr;
}

/// Whether the picture is one of 16:9 (DISP), which IEC 61834 writes in another way, too.
bool IsWide(const unsigned char* aControl, bool afConsumer) {
    constexpr unsigned kWide = 2;
    constexpr unsigned kWideOfConsumers = 7;
    const unsigned display = aControl != nullptr ? aControl[2] & 7U : 0;
    return display == kWide || (afConsumer && display == kWideOfConsumers);
}

} // namespace

std::optional<VideoFacts> DVVideo_Read(const unsigned char* aBytes, std::size_t aSize) {
    constexpr unsigned kSequence0 = 0x07;
    constexpr std::uint32_t kStandardWidth = 720;
    const bool fSequence = aSize >= (kFirstAuxiliary + kAuxiliaryBlocks) * kDVBlockBytes &&
                           aBytes[0] == kDVHeaderSection && aBytes[1] == kSequence0 && aBytes[2] == 0;
    if (!fSequence) {
        return std::nullopt;
    }
    const bool f50 = (aBytes[3] & 0x80U) != 0;    // DSF
    const bool fConsumer = (aBytes[4] & 7U) == 0; // APT: IEC 61834
    const unsigned char* const source = FindPack(aBytes, kPackSource);
    const unsigned char* const control = FindPack(aBytes, kPackSourceControl);
    const System* const system = FindSystem(source != nullptr ? source[3] & 0x1FU : 0, f50);
    if (system == nullptr) {
        return std::nullopt;
    }
    VideoFacts facts;
    facts.mCodec = "DV";
    facts.mProfile = system->mProfile;
    facts.mWidth = system->mWidth;
    facts.mHeight = system->mHeight;
    facts.mFrameRate = system->mFrameRate;
    facts.mScan = system->mScan;
    facts.mBitDepth = 8;
    // The professional form samples pictures of 625 lines as it does those of 525.
    facts.mColours = system->mType == 0 && f50 && !fConsumer ? "4:1:1" : system->mColours;
    const bool fWide = system->mWidth != kStandardWidth || IsWide(control, fConsumer);
    const VideoRatio display = fWide ? VideoRatio{16, 9} : VideoRatio{4, 3};
    facts.mPixelAspect = VideoRatio::OfPixel(display, system->mWidth, system->mHeight);
    return facts;
}
