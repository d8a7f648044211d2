// The door: an MPEG audio file. A bit of the delivery asks for all of it to be read, and for texts of a code
// page with letters of two bytes.

#include "fuzz/support/FormatDoor.h"

#include "ezFormats/mpegaudio/MPEGAudioParser.h"

#include "ez/Environment.h"
#include "ez/MediaParserManager.h"

#include <memory>

namespace {

/// A parser whose manager wants durations counted and has a code page.
class WholeReading {
public:
    WholeReading() {
        mEnvironment.SetTextCodePage("932");
        mManager.AddStandardParsers(kParseOption_ParseFullFileIfVBR);
        mManager.Add(mParser);
    }
    MPEGAudioParser& GetParser() { return *mParser; }

private:
    ezEnvironment mEnvironment;
    ezMediaParserManager mManager{mEnvironment.Get()};
    MPEGAudioParser* mParser = new MPEGAudioParser; ///< the manager's
};

/// The whole file in blocks of 64 KiB, of which a part may have been buffered. A hole is stepped into once.
FormatDescription DescriptionOfWhole(std::size_t aSize) {
    constexpr std::size_t kBlock = std::size_t{64} * 1024;
    FormatDescription format = MPEGAudioParser::kDescription;
    format.mBudget.mReads += static_cast<std::uint32_t>(2 * (aSize / kBlock + 1));
    format.mBudget.mBytes += aSize + kBlock;
    return format;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    if (FormatDoor_IsFlagged(aData, aSize)) {
        static WholeReading sWhole;
        FormatDoor_Check(aData, aSize, sWhole.GetParser(), DescriptionOfWhole(aSize));
        return 0;
    }
    return FormatDoor_Enter<MPEGAudioParser>(aData, aSize);
}
