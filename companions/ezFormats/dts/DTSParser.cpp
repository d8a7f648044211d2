#include "ezFormats/dts/DTSParser.h"

#include "ezFormats/codecs/DTSFrames.h"
#include "ezFormats/codecs/DTSHeader.h"
#include "ezFormats/detail/Limits.h"
#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/detail/MediaNumbers.h"
#include "ezFormats/dts/DTSLimits.h"

#include "ezBytes/ByteReader.h"

#include "ezPlatform/base/Checked.h"
#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::uint64_t kHead = 0x4454534844484452;   // "DTSHDHDR"
constexpr std::uint64_t kAudio = 0x415550522D484452;  // "AUPR-HDR": of the sound
constexpr std::uint64_t kStream = 0x5354524D44415441; // "STRMDATA"

/// The extension that stands at a place. False for none.
bool ReadExtensionAt(ByteReader aReader, ezDTSExtension& anExtension) {
    std::array<unsigned char, kDTS_ExtensionLookSize> stored = {};
    const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(aReader.GetLeft(), stored.size()));
    return aReader.Read(stored.data(), size) && ezDTSExtension_ReadStored(stored.data(), size, anExtension);
}

/// Where the extension of a frame stands: after the core, if there is one.
ByteReader ExtensionOf(MediaBytes& aBytes, const CodedFrame& aFrame) {
    ByteReader reader(aBytes);
    reader.Skip(aFrame.mPosition);
    if (DTSFrames::HasCore(aFrame)) {
        ByteReader core = reader;
        CodedFrame frame;
        std::array<unsigned char, kFrames_MaxHeaderSize> header = {};
        if (core.Read(header.data(), header.size()) && DTSFrames().Read(header.data(), &frame)) {
            reader.Skip(frame.mSize);
        }
    }
    return reader;
}

/// Makes facts of a core those of all that its frame holds, the samples counted at the rate of that.
void TakeExtension(const ezDTSExtension& anExtension, SoundFacts& aSound) {
    const std::uint32_t rate = aSound.mSamplingRate;
    ezDTSExtension_Store(anExtension, aSound);
    aSound.mSamples = MediaNumber_Scale(aSound.mSamples, aSound.mSamplingRate, rate);
    aSound.mBoundSamples = MediaNumber_Scale(aSound.mBoundSamples, aSound.mSamplingRate, rate);
}

/// What the head of a file tells of the sound: how many frames of how many samples at which rate.
struct StatedLength {
    std::uint64_t mSamples = 0;
    std::uint32_t mSamplingRate = 0;

    void Read(ByteReader aChunk) {
        aChunk.Skip(3); // flags
        mSamplingRate = static_cast<std::uint32_t>(aChunk.ReadBig(3));
        const std::uint64_t frames = aChunk.ReadBig32();
        mSamples = aChunk.HasFailed() ? 0 : frames * aChunk.ReadBig(2);
    }
};

} // namespace

/// The head of a file; or a frame that looks like one in more than its first word.
bool DTSParser::IsAt(ByteReader aBytes) {
    std::array<unsigned char, 16> header = {};
    ByteReader head = aBytes;
    CodedFrame frame;
    return head.ReadBig(8) == kHead || (aBytes.Read(header.data(), header.size()) &&
                                        DTSFrames().Read(header.data(), &frame) && frame.mSamples != 0);
}

/// Steps over the chunks of a file with a head, to the stream.
bool DTSParser::ReadHeaded(MediaBytes& aBytes, FrameFile& aFile) const {
    ByteReader reader(aBytes);
    StatedLength stated;
    for (std::uint32_t i = 0; i < kDTS_MaxChunks; ++i) {
        const std::uint64_t id = reader.ReadBig(8);
        const std::uint64_t size = reader.ReadBig(8);
        if (reader.HasFailed()) {
            return RefuseCut(aBytes, "the stream");
        }
        if (id == kStream) {
            const std::uint64_t start = reader.GetPosition();
            if (!ReadFramesAt(aBytes, DTSFrames(), start, ezSaturating_Add64(start, size), aFile)) {
                return false;
            }
            const std::uint64_t bytes = aBytes.GetSize() ? aFile.mSound.mBytes : size;
            if (SoundFacts::IsLengthPlausible(bytes, stated.mSamples, stated.mSamplingRate)) {
                aFile.mSound.mSamples =
                    MediaNumber_Scale(stated.mSamples, aFile.mSound.mSamplingRate, stated.mSamplingRate);
                aFile.mSound.mBoundSamples = 0;
                aFile.mSound.mDurationMethod = "header";
            }
            return true;
        }
        const ByteReader content = reader.Take(size);
        if (id == kAudio) {
            stated.Read(content);
        }
    }
    return Refuse(Cause::Limit, "more than %u chunks before the stream", unsigned{kDTS_MaxChunks});
}

bool DTSParser::ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) {
    FrameFile file;
    ByteReader head(aBytes);
    const bool fHead = head.ReadBig(8) == kHead;
    if (!(fHead ? ReadHeaded(aBytes, file) : ReadFrameFile(aBytes, DTSFrames(), "DTS", file))) {
        return false;
    }
    file.mSound.mCodec = "DTS";
    ezDTSExtension extension;
    if (ReadExtensionAt(ExtensionOf(aBytes, file.mFirst), extension)) {
        TakeExtension(extension, file.mSound);
    }
    if (fHead || file.mSound.mCodec != "DTS") {
        anInfo.Set(kezInfo_MimeType, "audio/vnd.dts.hd", true);
    }
    Store(file, anInfo);
    return true;
}
