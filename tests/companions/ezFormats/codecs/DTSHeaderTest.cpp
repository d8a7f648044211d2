#include "ezFormats/codecs/DTSHeader.h"

#include "companions/ezFormats/codecs/DTSBytes.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

using dts::Core;
using dts::Extension;

namespace {

using Kind = ezDTSExtension::Kind;

bool Read(const Core& aCore, ezDTSHeader* aHeader) {
    return ezDTSHeader_Read(Data(aCore.Header()), *aHeader);
}

ezDTSExtension ReadExtension(const Extension& anExtension) {
    ezDTSExtension extension;
    const std::string bytes = anExtension.Bytes();
    EXPECT_TRUE(ezDTSExtension_Read(Data(bytes), bytes.size(), extension));
    return extension;
}

} // namespace

TEST(DTSHeader, TellsWhatItsFieldsSay) {
    constexpr std::array<unsigned, 16> kChannels = {1, 2, 2, 2, 2, 3, 3, 4, 4, 5, 6, 6, 6, 7, 8, 8};
    constexpr std::array<unsigned, 16> kRates = {0,     8000, 16000, 32000, 0,     0,     11025, 22050,
                                                 44100, 0,    0,     12000, 24000, 48000, 0,     0};
    for (unsigned layout = 0; layout < 64; ++layout) {
        for (unsigned rate = 0; rate < 16; ++rate) {
            Core core;
            core.mLayout = layout;
            core.mRate = rate;
            ezDTSHeader header;
            const bool fValid = layout < kChannels.size() && kRates[rate] != 0;
            ASSERT_EQ(Read(core, &header), fValid) << layout << ' ' << rate;
            if (fValid) {
                EXPECT_EQ(header.mChannels, kChannels[layout] + 1);
                EXPECT_EQ(header.mSamplingRate, kRates[rate]);
                EXPECT_EQ(header.mFrameSize, 1024U);
                EXPECT_EQ(header.mSampleCount, 512U);
            }
        }
    }
}

TEST(DTSHeader, ExtensionsInACoreAddAChannelOrDoubleItsRate) {
    struct Case {
        unsigned mExtension;
        std::uint32_t mChannels;
        std::uint32_t mRate;
        std::uint32_t mSamples;
    };
    for (const Case& one : {Case{0, 7, 48000, 512}, Case{2, 6, 96000, 1024}, Case{3, 6, 48000, 512},
                            Case{6, 6, 48000, 512}, Case{7, 6, 48000, 512}}) {
        Core core;
        core.mExtension = one.mExtension;
        ezDTSHeader header;
        ASSERT_TRUE(Read(core, &header));
        EXPECT_EQ(header.mChannels, one.mChannels) << one.mExtension;
        EXPECT_EQ(header.mSamplingRate, one.mRate) << one.mExtension;
        EXPECT_EQ(header.mSampleCount, one.mSamples) << one.mExtension;
        EXPECT_EQ(header.mSampleCount / header.mRateFactor, 512U) << one.mExtension;
    }
}

TEST(DTSHeader, NumbersOutOfTheirRangesMakeNone) {
    const auto valid = [](unsigned Core::*aField, unsigned aValue) {
        Core core;
        core.*aField = aValue;
        ezDTSHeader header;
        return Read(core, &header);
    };
    EXPECT_TRUE(valid(&Core::mBlocks, 8));
    EXPECT_FALSE(valid(&Core::mBlocks, 7));
    EXPECT_TRUE(valid(&Core::mBlocks, 128));
    EXPECT_TRUE(valid(&Core::mSize, kDTSMinFrameSize));
    EXPECT_FALSE(valid(&Core::mSize, kDTSMinFrameSize - 1));
    EXPECT_TRUE(valid(&Core::mSize, kDTSMaxFrameSize));
    EXPECT_TRUE(valid(&Core::mLow, 0));
    EXPECT_FALSE(valid(&Core::mLow, 3));
    EXPECT_FALSE(valid(&Core::mSync, 0x7FFE8000));
}

TEST(DTSHeader, FormsAreToldByTheirFirstWordAndUnpacked) {
    const std::string stream = Core().Bytes();
    const std::string words = dts::Words14(stream);
    const std::array<std::string, 4> stored = {stream, dts::Swapped(stream), words, dts::Swapped(words)};
    for (std::size_t i = 0; i < stored.size(); ++i) {
        const unsigned char* const bytes = Data(stored[i]);
        const std::uint32_t word = std::uint32_t{bytes[0]} << 24 | std::uint32_t{bytes[1]} << 16 |
                                   std::uint32_t{bytes[2]} << 8 | bytes[3];
        const ezWordForm* const form = ezDTSForm_Of(word);
        ASSERT_NE(form, nullptr) << i;
        EXPECT_EQ(form->GetStoredSize(1024), stored[i].size()) << i;
        std::string unpacked(stored[i].size(), '\0');
        const std::size_t size =
            ezWordForm_Unpack(*form, bytes, stored[i].size(), reinterpret_cast<unsigned char*>(&unpacked[0]));
        EXPECT_EQ(unpacked.substr(0, 1024), stream) << i;
        EXPECT_EQ(size, i < 2 ? 1024U : stored[i].size() / 2 * 14 / 8) << i;
        // Half a word is left.
        EXPECT_EQ(ezWordForm_Unpack(*form, bytes, 15, reinterpret_cast<unsigned char*>(&unpacked[0])),
                  i < 2 ? 14U : 12U);
    }
    EXPECT_EQ(ezDTSForm_Of(0x64582025), nullptr);
    EXPECT_EQ(ezDTSExtensionForm_Of(0x7FFE8001), nullptr);
}

TEST(DTSExtension, TellsWhatItsFirstAssetSays) {
    constexpr std::array<unsigned, 16> kRates = {8000,   16000,  32000, 64000, 128000, 22050, 44100,  88200,
                                                 176400, 352800, 12000, 24000, 48000,  96000, 192000, 384000};
    for (unsigned rate = 0; rate < kRates.size(); ++rate) {
        Extension one;
        one.mRate = rate;
        one.mBits = 16 + rate;
        one.mChannels = 1 + rate;
        const ezDTSExtension extension = ReadExtension(one);
        EXPECT_EQ(extension.mSamplingRate, kRates[rate]);
        EXPECT_EQ(extension.mBitsPerSample, 16 + rate);
        EXPECT_EQ(extension.mChannels, 1 + rate);
        EXPECT_EQ(extension.mKind, Kind::MasterAudio);
    }
}

TEST(DTSExtension, KindIsThatOfItsModeWhateverStandsBefore) {
    struct Case {
        unsigned mMode;
        unsigned mMask;
        const char* mName;
    };
    const std::vector<Case> cases = {
        {0, 0x200, "DTS-HD-MA"},  {0, 0x220, "DTS-HD-MA"}, {0, 0x020, "DTS-HD-HRA"}, {0, 0x080, "DTS-HD-HRA"},
        {0, 0x100, "DTS-HD-LBR"}, {1, 0, "DTS-HD-MA"},     {2, 0, "DTS-HD-LBR"},     {3, 0, "DTS-HD"}};
    for (const Case& one : cases) {
        // What may stand before it, one bit each.
        for (unsigned more = 0; more < 256; ++more) {
            Extension bytes;
            bytes.mMode = one.mMode;
            bytes.mMask = one.mMask;
            bytes.mfLong = (more & 1) != 0;
            bytes.mfStatic = (more & 2) == 0;
            bytes.mfTexts = (more & 4) != 0;
            bytes.mfRange = (more & 8) != 0;
            bytes.mMixing = (more & 16) != 0 ? 1 : 0;
            bytes.mRemapped = (more & 32) != 0 ? 2 : 0;
            bytes.mfPlaced = (more & 64) == 0;
            bytes.mAssets = (more & 128) != 0 && bytes.mfStatic ? 2 : 1;
            bytes.mIndex = more % 3;
            const ezDTSExtension extension = ReadExtension(bytes);
            ASSERT_STREQ(extension.GetCodecName(), one.mName) << more;
            EXPECT_EQ(extension.mChannels, bytes.mfStatic ? 6U : 0U) << more;
        }
    }
}

TEST(DTSExtension, KindIsThatOfTheAssetWhereAMixerIsToldMore) {
    struct Case {
        std::uint32_t mSync;
        Kind mKind;
    };
    for (const Case& one : {Case{0x41A29547, Kind::MasterAudio}, Case{0x0A801921, Kind::LowBitRate},
                            Case{0x655E315E, Kind::HighResolution}, Case{0x1D95F262, Kind::HighResolution},
                            Case{0x47004A03, Kind::HighResolution}, Case{0x02B09261, Kind::HighResolution},
                            Case{0x12345678, Kind::Unknown}}) {
        Extension bytes;
        bytes.mMixing = 2;
        bytes.mAssetSync = one.mSync;
        EXPECT_EQ(ReadExtension(bytes).mKind, one.mKind) << std::hex << one.mSync;
    }
}

TEST(DTSExtension, SubstreamTellsItsPlaceSizeAndTime) {
    Extension bytes;
    bytes.mIndex = 2;
    bytes.mSize = 60000;
    bytes.mFrames = 8;
    bytes.mClock = 1;
    ezDTSSubstream substream;
    ASSERT_TRUE(ezDTSSubstream_Read(Data(bytes.Header()), kDTSExtensionMinSize, &substream));
    EXPECT_EQ(substream.mIndex, 2U);
    EXPECT_EQ(substream.mSize, 60000U);
    EXPECT_EQ(substream.mHeaderSize, Extension::kHeaderSize);
    EXPECT_EQ(substream.mClock, 44100U);
    EXPECT_EQ(substream.mTicks, 4096U);
    bytes.mfLong = true;
    bytes.mSize = 1 << 20;
    ASSERT_TRUE(ezDTSSubstream_Read(Data(bytes.Header()), kDTSExtensionMinSize, &substream));
    EXPECT_EQ(substream.mSize, 1U << 20);
    bytes.mfStatic = false;
    ASSERT_TRUE(ezDTSSubstream_Read(Data(bytes.Header()), kDTSExtensionMinSize, &substream));
    EXPECT_EQ(substream.mTicks, 0U);
    bytes.mfStatic = true;
    bytes.mClock = 3; // of nobody
    EXPECT_FALSE(ezDTSSubstream_Read(Data(bytes.Header()), kDTSExtensionMinSize, &substream));
    bytes.mClock = 0;
    bytes.mSize = Extension::kHeaderSize; // a header and no more
    EXPECT_FALSE(ezDTSSubstream_Read(Data(bytes.Header()), kDTSExtensionMinSize, &substream));
}

TEST(DTSExtension, CutOneTellsWhatIsThere) {
    Extension whole;
    whole.mAssetSync = 0x41A29547;
    const std::string bytes = whole.Bytes();
    for (std::size_t size = 0; size <= 120; ++size) {
        const std::string cut = bytes.substr(0, size); // of its own size: reads beyond it would show
        ezDTSExtension extension;
        const bool fRead = ezDTSExtension_Read(Data(cut), cut.size(), extension);
        EXPECT_EQ(fRead, size >= 10) << size; // long sizes take one more
        EXPECT_TRUE(extension.mChannels == 0 || extension.mChannels == 6) << size;
        EXPECT_EQ(extension.mKind, size < 22 ? Kind::Unknown : Kind::MasterAudio) << size;
    }
    ezDTSExtension extension;
    EXPECT_FALSE(ezDTSExtension_Read(Data(Core().Bytes()), 512, extension));
}

TEST(DTSExtension, LoudspeakersAreCountedByTheirMask) {
    constexpr std::array<unsigned, 16> kSpeakers = {1, 2, 2, 1, 1, 2, 2, 1, 1, 2, 2, 2, 1, 2, 1, 2};
    unsigned all = 0;
    for (unsigned bit = 0; bit < kSpeakers.size(); ++bit) {
        EXPECT_EQ(ezDTSChannelsOfMask(1U << bit), kSpeakers[bit]) << bit;
        all += kSpeakers[bit];
    }
    EXPECT_EQ(ezDTSChannelsOfMask(UINT32_MAX), all);
    EXPECT_EQ(ezDTSChannelsOfMask(0x000F), 6U); // 5.1
}
