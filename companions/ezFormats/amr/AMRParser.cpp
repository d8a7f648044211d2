#include "ezFormats/amr/AMRParser.h"

#include "ezFormats/codecs/AMRFrames.h"
#include "ezFormats/detail/MediaBytes.h"

#include "ezBytes/ByteReader.h"

#include "ezPlatform/media/MediaInfo.h"

#include <string_view>

namespace {

constexpr std::uint32_t kMaxChannels = 6; ///< 4.3.1
constexpr std::uint32_t kSamplesOfNarrow = 160;
constexpr std::uint32_t kFramesPerSecond = 50;
constexpr std::uint32_t kSearchLength = 16; ///< a header is a byte, of which two bits are fixed

/// A file's head (5.1, 5.2): the magic number, and where there are several channels their description.
struct Head {
    const char* mMagic = nullptr;
    bool mfWide = false;
    bool mfChannels = false;
};
constexpr Head kHeads[] = {{"#!AMR\n", false, false},
                           {"#!AMR-WB\n", true, false},
                           {"#!AMR_MC1.0\n", false, true},
                           {"#!AMR-WB_MC1.0\n", true, true}};

/// That at the reader, which then stands after the magic; one without a magic where there is none.
Head ReadHead(ByteReader& aBytes) {
    for (const Head& head : kHeads) {
        const std::string_view magic = head.mMagic;
        ByteReader reader = aBytes;
        if (reader.ReadText(magic.size()).View() == magic) {
            aBytes = reader;
            return head;
        }
    }
    return {};
}

/// Frames with the header of storage (5.3): a zero, the type in four bits, quality, two zeros.
class AMRFileFrames : public FrameReader {
public:
    explicit AMRFileFrames(bool afWide)
        : FrameReader({1, 1, kAMRMaxFrameSize, kSearchLength, kSearchLength, false}), mfWide(afWide) {}

    bool Read(const unsigned char* aBytes, CodedFrame* aFrame) const override {
        constexpr unsigned kPadding = 0x83;
        aFrame->mSize = AMRFrames_SizeOf(aBytes[0] >> 3 & 0xFU, mfWide);
        aFrame->mSamples = mfWide ? 2 * kSamplesOfNarrow : kSamplesOfNarrow;
        aFrame->mSamplingRate = aFrame->mSamples * kFramesPerSecond;
        aFrame->mChannels = 1;
        return (aBytes[0] & kPadding) == 0 && aFrame->mSize != 0;
    }

private:
    const bool mfWide;
};

} // namespace

bool AMRParser::IsAt(ByteReader aBytes) {
    return ReadHead(aBytes).mMagic != nullptr;
}

bool AMRParser::ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) {
    ByteReader reader(aBytes);
    const Head head = ReadHead(reader);
    if (head.mMagic == nullptr) {
        return Refuse(Cause::Malformed, "does not begin with a magic number");
    }
    const std::uint32_t channels = head.mfChannels ? reader.ReadBig32() & 0xFU : 1; // CHAN, after 28 zeros
    if (reader.HasFailed()) {
        return RefuseCut(aBytes, "the channel description");
    }
    if (channels == 0 || channels > kMaxChannels) {
        return Refuse(Cause::Malformed, "%u channels", unsigned{channels});
    }
    FrameFile file;
    if (!ReadFramesAt(aBytes, AMRFileFrames(head.mfWide), reader.GetPosition(), UINT64_MAX, file)) {
        return false;
    }
    // A block of 20 ms holds a frame of each channel.
    SoundFacts& sound = file.mSound;
    sound.mCodec = head.mfWide ? "AMR-WB" : "AMR";
    sound.mChannels = channels;
    sound.mSamples /= channels;
    sound.mBoundSamples /= channels;
    sound.mEstimatedBitRate *= channels;
    sound.mBitRate =
        sound.mBitRate != 0 ? channels * AMRFrames_BitRate(file.mFirst.mSize, 1, head.mfWide) : 0;
    Store(file, anInfo);
    anInfo.Set(kezInfo_MimeType, head.mfWide ? "audio/amr-wb" : "audio/amr", true);
    return true;
}
