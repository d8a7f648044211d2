#include "companions/ezFormats/FormatHost.h"

#include "support/NewBlocks.h"

// Every parser, over every sample cut and damaged.

namespace {

/// No parse needs a block larger than this, whatever the numbers in the file say.
constexpr std::size_t kLargestBlock = std::size_t{256} * 1024;
constexpr std::size_t kSmallSample = std::size_t{4} * 1024;

/// Places of a sample: all of a small one; of others the start, the end, and some between.
std::vector<std::size_t> PlacesOf(const std::string& aBytes) {
    constexpr std::size_t kStart = 256;
    constexpr std::size_t kEnd = 64;
    constexpr std::size_t kBetween = 61;
    const std::size_t size = aBytes.size();
    std::vector<std::size_t> places;
    for (std::size_t at = 0; at < size;) {
        places.push_back(at);
        const bool fEach = size < kSmallSample || at < kStart || at + kEnd >= size;
        at += fEach ? 1 : std::min((size - kStart - kEnd) / kBetween, size - kEnd - at);
    }
    return places;
}

/// Parses by every parser; what one finds must be announced completely.
void ExpectHarmless(const std::vector<std::unique_ptr<ezMediaParser>>& aParsers, const std::string& aBytes,
                    const std::string& aWhat) {
    for (const auto& parser : aParsers) {
        AwkwardStream stream(aBytes, Delivery());
        NewBlocks::ResetLargest();
        const Record record(parser->Parse(stream));
        EXPECT_LE(NewBlocks::Largest(), kLargestBlock) << parser->GetType().c_str() << ", " << aWhat;
        if (record != nullptr) {
            EXPECT_TRUE(record->Has(kezInfo_MimeType) && record->Has(kezInfo_ClassName) &&
                        record->Has(kezInfo_DLNA))
                << aWhat << ": " << DumpRecord(record.get());
        }
    }
}

} // namespace

TEST(DamagedSamples, AreRefusedOrCompletelyAnnouncedWhereverTheyAreCut) {
    const auto parsers = AllParsers();
    for (const SampleFile& sample : AllSamples()) {
        for (const std::size_t size : PlacesOf(sample.mBytes)) {
            ExpectHarmless(parsers, sample.mBytes.substr(0, size),
                           sample.mName + " cut to " + std::to_string(size));
        }
    }
}

TEST(DamagedSamples, AreRefusedOrCompletelyAnnouncedWhicheverByteIsFlipped) {
    const auto parsers = AllParsers();
    for (const SampleFile& sample : AllSamples()) {
        std::string damaged = sample.mBytes;
        for (const std::size_t place : PlacesOf(sample.mBytes)) {
            const int bit = 1 << place % 8;
            for (const int bits : {bit, 0xFF}) {
                damaged[place] = static_cast<char>(sample.mBytes[place] ^ bits);
                ExpectHarmless(parsers, damaged,
                               sample.mName + ", byte " + std::to_string(place) + " ^ " +
                                   std::to_string(bits));
            }
            damaged[place] = sample.mBytes[place];
        }
    }
}

TEST(DamagedSamples, LargestAllocationIsSeen) {
    NewBlocks::ResetLargest();
    const std::vector<char> block(1000000);
    EXPECT_GE(NewBlocks::Largest(), block.size());
}
