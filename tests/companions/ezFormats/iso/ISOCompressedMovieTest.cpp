#include "companions/ezFormats/iso/ISOBytes.h"

#include "support/NewBlocks.h"
#include "support/ZlibBytes.h"

#include <gtest/gtest.h>

using namespace iso;

// Headers of movies that QuickTime compressed.

namespace {

/// A movie whose header is compressed.
std::string Compressed(const std::string& aData, std::size_t aSize, const std::string& anAlgorithm = "zlib") {
    const std::string samples = Box("mdat", std::string(1500, '.'));
    return Box("moov", Box("cmov", Box("dcom", anAlgorithm) + Box("cmvd", Big(aSize, 4) + aData))) + samples;
}

std::string Compressed(const std::string& aMovie) {
    return Compressed(ZlibData(aMovie), aMovie.size());
}

/// The same movie plain, of the same size.
std::string Plain(const std::string& aMovie) {
    const std::string file = aMovie + Box("mdat", "");
    const std::size_t size = Compressed(aMovie).size();
    return aMovie + Box("mdat", std::string(size - file.size(), '.'));
}

const std::string kMovie = Movie({VideoTrack(), Track()}, Items(Item("\xA9nam", "Small")));

} // namespace

#ifdef EZ_HAS_ZLIB

TEST(ISOCompressedMovie, IsReadAsThePlainOneIs) {
    const std::string record = Parsed(Compressed(kMovie));
    EXPECT_TRUE(IsComplete(record));
    EXPECT_EQ(record, Parsed(Plain(kMovie)));
    EXPECT_EQ(Values(record, {"mt", "vc", "ca", "dm", "title"}),
              "mt=\"video/quicktime\" vc=\"H264\" ca=\"AAC\" dm=1000 title=\"Small\"");
    for (const std::size_t maximum : {std::size_t{1}, std::size_t{7}, std::size_t{4096}}) {
        Delivery delivery;
        delivery.mMaximumRead = maximum;
        EXPECT_EQ(Parsed(Compressed(kMovie), delivery), record) << maximum;
    }
    // Other boxes around it, the size that is stated of no matter.
    const std::string inside = Box("free", "....") + kMovie;
    EXPECT_EQ(Values(Parsed(Compressed(ZlibData(inside), 1)), {"vc", "ca"}), "vc=\"H264\" ca=\"AAC\"");
}

/// zlib data of some bytes and then so many dots, few bytes for many of them: copies of 258, by fixed codes
/// (RFC 1951, 3.2.5 and 3.2.6).
std::string DataOfDots(const std::string& aStart, std::size_t aDots) {
    std::string bits;
    const auto put = [&](unsigned aCode, unsigned aCount) {
        for (unsigned i = aCount; i-- > 0;) {
            bits += (aCode >> i & 1U) != 0 ? '1' : '0';
        }
    };
    put(6, 3); // the last block (1), of fixed codes (01, the low bit first)
    put(0x30 + '.', 8);
    std::size_t left = aDots - 1;
    for (; left >= 258; left -= 258) {
        put(0xC5, 8); // a length of 258
        put(0, 5);    // of the byte before
    }
    for (; left > 0; --left) {
        put(0x30 + '.', 8);
    }
    put(0, 7 + 7); // the end, filled up
    std::string bytes;
    for (std::size_t i = 0; i + 8 <= bits.size(); i += 8) {
        unsigned byte = 0;
        for (std::size_t bit = 0; bit < 8; ++bit) {
            byte |= static_cast<unsigned>(bits[i + bit] - '0') << bit;
        }
        bytes += static_cast<char>(byte);
    }
    return ZlibOfBlocks(StoredBlock(aStart, false) + bytes, Adler32(aStart + std::string(aDots, '.')));
}

TEST(ISOCompressedMovie, MayBeAsLargeAsTheBoundAndNoLarger) {
    constexpr std::size_t kBound = std::size_t{1024} * 1024;
    const auto file = [](std::size_t aSize, std::size_t aStated) {
        const std::size_t dots = aSize - kMovie.size() - 8;
        const std::string start = kMovie + Big(dots + 8, 4) + "free";
        return Compressed(DataOfDots(start, dots), aStated);
    };
    const std::string facts = "vc=\"H264\" ca=\"AAC\"";
    const std::string refusal = "ISOMediaParser: limit: compressed header of more than 1048576 bytes";
    EXPECT_EQ(Values(Parsed(file(kBound, kBound)), {"vc", "ca"}), facts);
    EXPECT_EQ(Refusal(file(kBound + 1, kBound)), refusal);
    EXPECT_EQ(Refusal(file(2000000, 5)), refusal);
    // What is stated as larger is not inflated at all.
    EXPECT_EQ(Refusal(file(kBound, kBound + 1)), refusal);
    // The bytes of the file count as those of any other do.
    const std::string filled = kMovie + Box("free", std::string(kBound - kMovie.size() - 8, '.'));
    EXPECT_EQ(Refusal(Compressed(filled)),
              "ISOMediaParser: limit: budget used up before the end of a compressed header");
}

TEST(ISOCompressedMovie, DamageRefusesTheFilm) {
    const std::string damaged = "ISOMediaParser: malformed: damaged compressed header";
    const std::string data = ZlibData(kMovie);
    std::string sum = data;
    sum.back() = static_cast<char>(sum.back() ^ 1);
    EXPECT_EQ(Refusal(Compressed(sum, kMovie.size())), damaged);
    EXPECT_EQ(Refusal(Compressed(data.substr(0, data.size() - 1), kMovie.size())), damaged);
    EXPECT_EQ(Refusal(Compressed("", 0)), damaged);
    EXPECT_EQ(Refusal(Compressed(ZlibData("no box at all"), 13)), damaged);
    EXPECT_EQ(Refusal(Compressed(ZlibData(Box("trak", "")), 8)), damaged);
    EXPECT_EQ(Refusal(Box("moov", Box("cmov", ""))), damaged);
    EXPECT_EQ(Refusal(Box("moov", Box("cmov", Box("dcom", "zlib")))), damaged);
    EXPECT_EQ(Refusal(Box("moov", Box("cmov", Box("dcom", "zl") + Box("cmvd", Big(1, 4))))), damaged);
    EXPECT_EQ(Refusal(Box("moov", Box("cmov", Box("dcom", "zlib") + Box("cmvd", Big(1, 3))))), damaged);
    // One within one is not entered.
    EXPECT_EQ(Refusal(Compressed(Compressed(kMovie))),
              "ISOMediaParser: unsupported: no audio or video in 0 tracks");
}

TEST(ISOCompressedMovie, SourceThatFailsOrEndsWithinGivesNoRecord) {
    const std::string file = Box("mdat", std::string(70000, '.')) + Compressed(kMovie);
    for (const std::size_t place : {std::size_t{70020}, std::size_t{70100}}) {
        Delivery delivery;
        delivery.mFailingOffset = place;
        EXPECT_EQ(Refusal(file, delivery).substr(0, 27), "ISOMediaParser: read error:") << place;
    }
}

TEST(ISOCompressedMovie, CutAndFlippedOnesGiveACompleteRecordOrNone) {
    const std::string file = Compressed(Movie({Track()}));
    NewBlocks::ResetLargest();
    for (std::size_t size = 0; size < file.size(); ++size) {
        const std::string record = Parsed(file.substr(0, size));
        EXPECT_TRUE(record == "null\n" || IsComplete(record)) << size;
    }
    for (std::size_t i = 0; i < file.size() - 1500; ++i) {
        for (const int flip : {0x01, 0x80, 0xFF}) {
            std::string damaged = file;
            damaged[i] = static_cast<char>(damaged[i] ^ flip);
            const std::string record = Parsed(damaged);
            EXPECT_TRUE(record == "null\n" || IsComplete(record)) << i;
        }
    }
    EXPECT_LE(NewBlocks::Largest(), 256U * 1024);
}

#else

TEST(ISOCompressedMovie, IsRefusedWithoutZlib) {
    EXPECT_EQ(Refusal(Compressed(kMovie)), "ISOMediaParser: unsupported: compressed header");
    EXPECT_TRUE(IsComplete(Parsed(Plain(kMovie))));
}

#endif

TEST(ISOCompressedMovie, OtherAlgorithmsAreRefused) {
    EXPECT_EQ(Refusal(Compressed(ZlibData(kMovie), kMovie.size(), "rle ")),
              "ISOMediaParser: unsupported: compressed header");
}
