// The door: an MPEG audio file. A bit of the delivery asks for all of it to be read.

#include "fuzz/support/FormatDoor.h"

#include "ezFormats/MPEGAudioParser.h"
#include "ezFormats/detail/FormatMimeTypes.h"
#include "ezFormats/detail/Limits.h"

#include "ez/MediaParserManager.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize);

namespace {

/// A parser whose manager wants durations counted.
class WholeReading {
public:
    WholeReading() {
        mManager.AddStandardParsers(kParseOption_ParseFullFileIfVBR);
        mManager.Add(mParser);
    }
    MPEGAudioParser& GetParser() { return *mParser; }

private:
    ezMediaParserManager mManager{nullptr};
    MPEGAudioParser* mParser = new MPEGAudioParser; ///< the manager's
};

/// The whole file in blocks of 64 KiB, of which a part may have been at hand. A hole is stepped into once.
FormatDoorLimits LimitsOfWhole(std::size_t aSize) {
    constexpr std::size_t kBlock = std::size_t{64} * 1024;
    const auto reads = static_cast<std::uint32_t>(2 * (aSize / kBlock + 1));
    return {kMPEGAudio_MimeTypes, kMPEGAudio_MaxReads + reads, kMPEGAudio_MaxBytes + aSize + kBlock};
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    static MPEGAudioParser sParser; // holds nothing between two parses
    if (FormatDoor_IsFlagged(aData, aSize)) {
        static WholeReading sWhole;
        FormatDoor_Check(aData, aSize, sWhole.GetParser(), LimitsOfWhole(aSize));
        return 0;
    }
    FormatDoor_Check(aData, aSize, sParser, {kMPEGAudio_MimeTypes, kMPEGAudio_MaxReads, kMPEGAudio_MaxBytes});
    return 0;
}
