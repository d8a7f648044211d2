#include "companions/ezFormats/FormatHost.h"

#include "ez/StreamMediaParserStream.h"

#include "support/ScriptedStream.h"

#include <gtest/gtest.h>

// Films as they come from a pipe or a server that states no size: what stands in front is told, and nothing
// waits for the end.

namespace {

constexpr std::size_t kMegabyte = std::size_t{1} << 20;

bool IsFilm(const SampleFile& aSample) {
    const std::string& type = aSample.mWinner;
    return type == "mkv" || type == "ts" || type == "mpg" || type == "mp4" || type == "flv" ||
           type == "avi" || (type == "ogg" && aSample.mName.find(".ogv") != std::string::npos);
}

std::string BigEndian(std::size_t aNumber, std::size_t aSize) {
    std::string bytes;
    for (std::size_t i = aSize; i-- > 0;) {
        bytes += static_cast<char>(aNumber >> 8 * i & 0xFF);
    }
    return bytes;
}

/// A film that goes on for three megabytes: with room that is not used after what the sample holds, or, where
/// a container is nothing but packets, with the same again.
std::string LongFilm(const SampleFile& aSample) {
    constexpr std::size_t kMore = 3 * kMegabyte;
    std::string film = aSample.mBytes;
    if (aSample.mWinner == "mkv") {
        return film + "\xEC\x01" + BigEndian(kMore, 7) + std::string(kMore, '\0'); // Void
    }
    if (aSample.mWinner == "flv") {
        return film + BigEndian(18, 1) + BigEndian(kMore, 3) + std::string(7 + kMore, '\0'); // a script tag
    }
    if (aSample.mWinner == "avi") {
        return film + "JUNK" + BigEndian(0x00003000, 4) + std::string(kMore, '\0');
    }
    if (aSample.mWinner == "mp4") {
        return film + BigEndian(kMore + 8, 4) + "free" + std::string(kMore, '\0');
    }
    while (film.size() < kMore) {
        film += aSample.mBytes;
    }
    return film;
}

/// Parses bytes of unknown size of which so many come, in pieces, while the reader waits, and then a failure
/// or the end.
Record ParseArriving(const std::string& aBytes, const std::string& aName, std::size_t aPiece,
                     std::size_t aCount, bool afFails) {
    ScriptedStream stream(aBytes, false, "/samples/" + aName);
    stream.mfSizeKnown = false;
    stream.Withhold();
    std::size_t left = aCount;
    stream.mOnNothing = [&] {
        const std::size_t piece = std::min(left, aPiece);
        left -= piece;
        stream.Arrive(piece);
        if (piece == 0 && afFails) {
            stream.Fail(ezStreamingStatus_ReadError);
        } else if (piece == 0) {
            stream.Finish();
        }
        stream.Fire();
    };
    ezStreamMediaParserStream adapter(&stream, false);
    EXPECT_TRUE(adapter.Open()) << aName;
    return FormatHost().Parse(adapter);
}

std::string TextOf(const Record& aRecord, const char* aKey) {
    return aRecord == nullptr ? "no record" : std::string(aRecord->GetCString(aKey, "").View());
}

} // namespace

TEST(FilmsOfUnknownSize, AreIdentifiedByTheirFirstMegabyte) {
    std::size_t count = 0;
    for (const SampleFile& sample : AllSamples()) {
        if (!IsFilm(sample)) {
            continue;
        }
        const std::string film = LongFilm(sample);
        const Record whole = FormatHost().Parse(sample.mBytes, "/samples/" + sample.mName);
        const Record part = ParseArriving(film, sample.mName, 4096, kMegabyte, true);
        for (const char* const key : {kezInfo_Container, kezInfo_VideoCodec, kezInfo_AudioCodec,
                                      kezInfo_PictureWidth, kezInfo_PictureHeight, kezInfo_ClassName}) {
            EXPECT_EQ(TextOf(part, key), TextOf(whole, key)) << sample.mName << " " << key;
        }
        // Neither what only the end tells, nor an estimate by the size: the length is that of a header, or of
        // the blocks and fragments that were walked through, or the method says that there is none.
        const std::string from = TextOf(part, kezInfo_DurationMethod);
        const bool fNone = from == "none: the end was not read";
        EXPECT_EQ(fNone, TextOf(part, kezInfo_Duration).empty()) << sample.mName << " " << from;
        const bool fWalked = (from == "last frame" && sample.mWinner == "mkv") ||
                             (from == "counted" && sample.mWinner == "mp4");
        EXPECT_TRUE(fNone || from == "header" || fWalked) << sample.mName << " " << from;
        EXPECT_EQ(TextOf(part, kezInfo_DLNA).find("DLNA.ORG_OP"), std::string::npos) << sample.mName;
        ++count;
    }
    EXPECT_GE(count, 70U);
}

TEST(FilmsOfUnknownSize, GiveTheSameHoweverTheyArrive) {
    for (const SampleFile& sample : AllSamples()) {
        if (IsFilm(sample)) {
            const std::size_t size = sample.mBytes.size();
            const Record atOnce = ParseArriving(sample.mBytes, sample.mName, size, size, false);
            const Record trickle = ParseArriving(sample.mBytes, sample.mName, 1, size, false);
            EXPECT_EQ(DumpRecord(trickle.get()), DumpRecord(atOnce.get())) << sample.mName;
            EXPECT_NE(TextOf(trickle, kezInfo_MimeType), "") << sample.mName;
        }
    }
}
