#include "ezFormats/flv/FLVLength.h"

#include "companions/ezFormats/flv/FLVKit.h"

namespace {

std::string Length(const std::string& aBytes) {
    return Values(aBytes, {"dm", "md"});
}

} // namespace

TEST(FLVLength, MetadataAreBelievedWhereTheLastTagsAgree) {
    const auto length = [](double aSeconds) { return Length(Film(Number("duration", aSeconds))); };
    EXPECT_EQ(length(1), "1000|\"header\"");
    EXPECT_EQ(length(1.9999), "1999|\"header\"");
    EXPECT_EQ(length(2.001), "1000|\"last frame\"") << "cut";
    EXPECT_EQ(length(0.961), "961|\"header\"") << "the last frame is cut";
    EXPECT_EQ(length(0.9609), "1000|\"last frame\"") << "to the start of the last frame";
    const auto slow = [](double aSeconds) {
        return Length(Header(1) + MetaData(Number("duration", aSeconds)) + Video(0, Sorenson(320, 180)) +
                      Video(500, Sorenson(320, 180)));
    };
    EXPECT_EQ(slow(0.95), "950|\"header\"");
    EXPECT_EQ(slow(0.9499), "1000|\"last frame\"") << "cut by more than a frame of sound";
    for (const double wrong : {0.0, -1.0, kNoNumber, kInfinite, -kInfinite, 1e300, 5e-324, 31622400.1}) {
        EXPECT_EQ(length(wrong), "1000|\"last frame\"") << wrong;
    }
    EXPECT_EQ(Length(Film()), "1000|\"last frame\"");
    EXPECT_EQ(Length(Film(Text("duration", "1"))), "1000|\"last frame\"") << "no number";
}

TEST(FLVLength, TimesThatStartHighAreCountedFromTheFirst) {
    for (const std::uint32_t first : {5000U, 0xFFFFF0U, 0x7FFFFFFFU}) {
        EXPECT_EQ(Length(Header() + Frames(1000, first)), "1000|\"last frame\"") << first;
        const std::string config =
            Video(0, Hex({0x17, 0, 0, 0, 0, 1})) + Sound(0, Hex({0xAF, 0, 0x13, 0x88}));
        const std::string frames = Video(first, Hex({0x17, 1, 0, 0, 0})) + Sound(first, Hex({0xAF, 1}));
        const std::string last =
            Video(first + 40, Hex({0x27, 1, 0, 0, 0})) + Video(0, Hex({0x17, 2, 0, 0, 0}));
        EXPECT_EQ(Length(Header() + config + frames + last), "80|\"last frame\"")
            << first << ": of what is no frame the time does not count";
    }
    EXPECT_EQ(Length(Header() + Frames(1000, 5000, 5000) + Frames(400, 0, 10000)), "|") << "counts anew";
}

TEST(FLVLength, LastFrameLastsAsLongAsTheOneBeforeIt) {
    const auto film = [](std::uint32_t aStep, double aRate = 0) {
        return Length(Header(1) + MetaData(Number("framerate", aRate)) + Video(0, Sorenson(320, 180)) +
                      Video(aStep, Sorenson(320, 180)));
    };
    EXPECT_EQ(film(40), "80|\"last frame\"");
    EXPECT_EQ(film(1000), "2000|\"last frame\"");
    EXPECT_EQ(film(1001), "1001|\"last frame\"") << "a pause";
    EXPECT_EQ(film(1001, 20), "1051|\"last frame\"");
    EXPECT_EQ(Length(Header(1) + MetaData(Number("framerate", 20)) + Video(0, Sorenson(320, 180))),
              "50|\"last frame\"");
    EXPECT_EQ(Length(Header(1) + Video(0, Sorenson(320, 180)) + Video(120, Sorenson(320, 180)) +
                     Video(80, Sorenson(320, 180))),
              "160|\"last frame\"")
        << "not in order";
}

TEST(FLVLength, EndIsFoundWhateverStandsThere) {
    const std::string film = Film();
    const std::string told = "1000|\"last frame\"";
    EXPECT_EQ(Length(film + "junk at the end"), told);
    EXPECT_EQ(Length(film + std::string(40000, '\0')), told);
    EXPECT_EQ(Length(film + std::string(100000, 'j')), told) << "before the last window";
    EXPECT_EQ(Length(film + std::string(120000, 'j')), "|") << "before all windows";
    EXPECT_EQ(Length(film.substr(0, film.size() - 4)), told) << "the size after the last tag";
    EXPECT_EQ(Length(film.substr(0, film.size() - 60)), told) << "a last tag that is being written";
    const std::string large = Video(1000, Sorenson(320, 180, 300000));
    EXPECT_EQ(Length(film + large), "1040|\"last frame\"") << "longer than the windows";
    const std::string second = Video(1040, Sorenson(320, 180, 300000));
    EXPECT_EQ(Length(Header() + MetaData(Number("framerate", 25)) + Frames(1000) + large + second),
              "1080|\"last frame\"")
        << "two of them";
    std::string wrong;
    for (std::uint32_t time = 0; time < 1000; time += 40) {
        wrong += OpenTag(kVideoTag, time, Sorenson(320, 180)) + Big(0, 4);
    }
    EXPECT_EQ(Length(Header() + wrong), told) << "sizes after the tags that are wrong";
}

TEST(FLVLength, OfFilesInARowTheFirstTellsByItsSize) {
    const auto film = [](double aSize) { return Film(Number("duration", 1) + Number("filesize", aSize)); };
    const std::string file = film(static_cast<double>(film(0).size()));
    EXPECT_EQ(Length(file), "1000|\"header\"");
    EXPECT_EQ(Length(file + file), "2000|\"estimate: files in a row\"");
    EXPECT_EQ(Length(file + file + file), "3000|\"estimate: files in a row\"");
    EXPECT_EQ(Length(file + Frames(400, 1000)), "1400|\"last frame\"") << "it went on";
}

TEST(FLVLength, StatedLengthThatNoTagConfirmsMustBePossible) {
    const std::string junk(120000, 'j');
    EXPECT_EQ(Length(Film(Number("duration", 3)) + junk), "3000|\"header\"");
    const auto of = [](std::size_t aSize) {
        const std::string film = Film(Number("duration", 0.003));
        return Length(film + std::string(aSize - film.size(), 'j'));
    };
    EXPECT_EQ(of(150000), "3|\"header\"") << "400 Mbit/s";
    EXPECT_EQ(of(150001), "|");
}
