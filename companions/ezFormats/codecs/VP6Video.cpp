#include "ezFormats/codecs/VP6Video.h"

#include "ezBytes/BitReader.h"

#include <cstdint>

std::optional<VideoFacts> VP6Video_Read(const unsigned char* aBytes, std::size_t aSize) {
    constexpr std::uint32_t kFirstVersion = 6;
    constexpr std::uint32_t kLastVersion = 8;
    constexpr std::uint32_t kFragment = 16; // pixels of a side
    ezBitReader bits(aBytes, 8 * aSize);
    bits.Require(!bits.ReadFlag()); // FrameType: 0 is a key frame
    bits.Skip(6);                   // DctQMask
    const bool fSecondPartition = bits.ReadFlag();
    const std::uint32_t version = bits.Read(5);
    const std::uint32_t profile = bits.Read(2);
    const bool fInterlaced = bits.ReadFlag();
    bits.Require(version >= kFirstVersion && version <= kLastVersion);
    bits.Skip(fSecondPartition || profile == 0 ? 16 : 0); // Buff2Offset
    bits.Skip(16);                                        // VFragments and HFragments, of what is coded
    VideoFacts facts;
    facts.mCodec = "VP6";
    facts.mHeight = bits.Read(8) * kFragment; // OutputVFragments
    facts.mWidth = bits.Read(8) * kFragment;  // OutputHFragments
    facts.mScan = fInterlaced ? kScan_Interlaced : kScan_Progressive;
    facts.mBitDepth = 8;
    facts.mColours = "4:2:0";
    return bits.Require(facts.mWidth != 0 && facts.mHeight != 0) ? std::make_optional(facts) : std::nullopt;
}
