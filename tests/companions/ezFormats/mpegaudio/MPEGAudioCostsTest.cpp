#include "companions/ezFormats/FormatFiles.h"
#include "companions/ezFormats/SparseStream.h"
#include "companions/ezFormats/mpegaudio/MPEGAudioKit.h"

#include <gtest/gtest.h>

using namespace mpegaudio;

namespace {

/// A file with every part that is looked at, of less than the 8 KiB that a stream keeps.
std::string SmallFile() {
    const std::string frames = Frame24("TIT2", "\1\xFF\xFET\0\xFF\0\xE9\0"s) + Frame24("PRIV", "x", 0x03) +
                               Frame23("TXXX", "\0"s + std::string(200, 't')) + Frame24("TCON", "\3(17)"s);
    const std::string tag = ID3(4, 0x10, frames + std::string(20, '\0')) + "3DI" + std::string(7, 'f');
    const std::string song =
        CountFrame("Xing", FieldsOfEncoder(6, 7 * 104, 576, 600), kMP3At32, 180) + Frames(kMP3At32, 104, 6);
    return tag + ID3(2, 0, Frame22("TP1", "\0Artist"s)) + song.substr(0, 104) +
           song.substr(180) + // the count without the encoder's part
           APE2(APEItem("Album", "Album")) + "LYRICSBEGIN" + "000011LYRICS200" + "TAG+" +
           std::string(223, '\0') + ID3v1("Title", "Artist", "Album", 17);
}

std::vector<std::string> SmallFiles() {
    return {SmallFile(), Frames(kFree, 120, 12) + APE1(APEItem("Title", "T")),
            CountFrame("", "").replace(36, 18, "VBRI" + VBRIFields(5, 0)) + Song(5) +
                "LYRICSBEGIN..LYRICSEND" + ID3v1("t", "a", "b", 1),
            ID3(3, 0xC0, Big(6, 4) + std::string(6, '\0') + Frame23("TPE1", "\0A"s)) + "j" +
                Frames(kMP3At32, 104, 10),
            ReadSample("music/uneven-road-vbr.mp3")};
}

std::vector<std::string> CostlyFiles() {
    const std::string far = Frame23("PRIV", std::string(20000, 'p'));
    const std::string near = ID3(3, 0x80, std::string(30000, 'P'));
    std::string tags;
    std::string frames;
    for (unsigned i = 0; i < 20; ++i) {
        tags += ID3(3, 0, far + far);
        frames += far;
    }
    std::string items;
    for (unsigned i = 0; i < 100; ++i) {
        items += APEItem("Comment", std::string(9000, 'c'));
    }
    const std::string uneven = Frames(kMP3At32, 104, 2000) + Frames(kMP3At320, 1044, 2000);
    std::string sync;
    for (unsigned i = 0; i < 20000; ++i) {
        sync += Big(kFree, 4);
    }
    return {tags + uneven,
            ID3(3, 0, frames) + uneven,
            ID3(3, 0x80, frames) + uneven + APE2(items),
            near + sync,
            sync + uneven,
            std::string(200000, '\xFF'),
            ID3(3, 0, far) + std::string(60000, '\0') + "j" + uneven,
            tags.substr(0, 7 * 40030) + ID3(3, 0x80, frames) + "j" + uneven + APE2(items)};
}

const FormatFiles kFiles("mp3", {32, 512U << 10}, {"ca", "sf", "ac", "ta"}, SmallFiles, CostlyFiles);

constexpr std::uint64_t kGiB = std::uint64_t{1} << 30;

} // namespace

TEST(MPEGAudioCosts, AnUnknownSizeLeavesOutWhatTheEndTells) {
    Delivery delivery;
    delivery.mfSizeKnown = false;
    for (const std::size_t most : {std::size_t{1}, std::size_t{1000}, Delivery::kNever}) {
        for (const bool fSeekable : {true, false}) {
            delivery.mMaximumRead = most;
            delivery.mfSeekable = fSeekable;
            EXPECT_EQ(DumpRecord(Read(SmallFile(), delivery).get()),
                      "ac=2\nar=4294967295\nca=\"MP3\"\ncn=\"item.audioItem\"\n"
                      "dl=\"DLNA.ORG_PN=MP3;DLNA.ORG_FLAGS=01500000000000000000000000000000\"\n"
                      "dm=156\ndu=0\nea=37158\nma=320000\nmd=\"header\"\nmt=\"audio/mpeg\"\nsf=44100\nta=1\n"
                      "title=\"T\xC3\xBF\xC3\xA9\"\ncreator=\"Artist\"\ngenre=\"Rock\"\n");
        }
    }
}

TEST(MPEGAudioCosts, AUsualFileCostsFewReads) {
    const auto costs = [](const std::string& aFile) {
        AwkwardStream stream(aFile, Delivery(), "/media/song.mp3");
        MPEGAudioParser parser;
        EXPECT_NE(Record(parser.Parse(stream)), nullptr);
        return std::to_string(stream.GetCosts().mReads) + " " + std::to_string(stream.GetCosts().mBytes);
    };
    const std::string title = Frame23("TIT2", "\0Title"s);
    const std::string counted = CountFrame("Info", Fields(9000, 0)) + Song(9000);
    EXPECT_EQ(costs(counted), "2 24576") << "start and end";
    EXPECT_EQ(costs(ID3(3, 0, title + Frame23("APIC", std::string(200000, 'p'))) + counted), "3 40960")
        << "and after the tag";
    // The start reaches on to 16 KiB after the first frame that is not buffered; three places more, and the
    // end.
    EXPECT_EQ(costs(Song(9000)), "6 90260");
    EXPECT_EQ(costs(Frames(kMP2, 576, 9000)), "3 41408");
}

TEST(MPEGAudioCosts, SourceThatCannotMoveIsReadOnPastWhatTheStreamKeeps) {
    const std::string file =
        ReadSample("music/uneven-road-vbr.mp3"); // of 13 KiB: the suite lets it be refused
    for (const std::size_t most : {std::size_t{1}, std::size_t{7}, std::size_t{1000}, Delivery::kNever}) {
        Delivery forward;
        forward.mMaximumRead = most;
        forward.mfSeekable = false;
        EXPECT_EQ(DumpRecord(Read(file, forward).get()), DumpRecord(Read(file).get())) << most;
    }
}

TEST(MPEGAudioCosts, PlaceThatCannotBeReadRefusesTheFile) {
    const std::string file = Song(9000);
    for (std::size_t quarter = 1; quarter < 4; ++quarter) {
        Delivery failing;
        failing.mFailingOffset = file.size() / 4 * quarter + 100;
        const LogCatcher log;
        EXPECT_EQ(Read(file, failing), nullptr) << quarter;
        EXPECT_TRUE(log.Has("MPEGAudioParser: read error: before all that tells the length\n")) << quarter;
    }
}

TEST(MPEGAudioCosts, EndOfAnUnknownSizeMayBeMetAsAnError) {
    const std::string file = Song(30); // ends among the frames that are looked at, after what a stream keeps
    Delivery unknown;
    unknown.mfSizeKnown = false;
    // The source does not move to where the frame after the last one would stand.
    const std::string cut = DumpRecord(Read(file.substr(0, file.size() - 10), unknown).get());
    EXPECT_NE(cut, "null\n");
    EXPECT_EQ(cut, DumpRecord(Read(file, unknown).get()));
}

TEST(MPEGAudioCosts, FourGiBCostNoMore) {
    const std::string tag = ID3(3, 0, Frame23("TIT2", "\0Title"s));
    SparseStream stream(
        4 * kGiB + 5,
        {{0, tag + Song(60)}, {kGiB, Song(60)}, {4 * kGiB + 5 - 128, ID3v1("", "Artist", "", 17)}});
    MPEGAudioParser parser;
    const Record record(parser.Parse(stream));
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(Str(record->mCreator), "Artist");
    EXPECT_EQ(record->GetUInt32("du", 0), 268436U); // 4294967296 bytes and few at 16000 a second
    EXPECT_LE(stream.mReads, 6U);
    EXPECT_LE(stream.mBytes, 100000U);
}

TEST(MPEGAudioCosts, SizesNearTheLimitOfTheirNumbersAreRead) {
    for (const std::uint64_t size : {UINT64_MAX - 1, UINT64_MAX, std::uint64_t{1} << 63}) {
        SparseStream stream(size, {{0, CountFrame("Xing", Fields(0xFFFFFFFF, 0xFFFFFFFF)) + Song(60)}});
        MPEGAudioParser parser;
        const Record record(parser.Parse(stream));
        ASSERT_NE(record, nullptr);
        EXPECT_LE(stream.mReads, 8U);
    }
}
