#include "ezFormats/avi/AVIParser.h"

#include "companions/ezFormats/avi/AVIBytes.h"

#include <gtest/gtest.h>

using namespace avi;
using namespace std::string_literals;

namespace {

std::string Part(const std::string& aFrames) {
    return chunks::Riff(List("movi", aFrames), "RIFF", "AVIX");
}

/// A film whose header states nothing.
Film Unstated(const std::string& aFrames = Frames(100)) {
    Film film;
    film.mStreams[0].mLength = 0;
    film.mMovi = aFrames;
    return film;
}

Film WithSound(std::uint32_t aFrames, std::uint32_t aUnits) {
    Film film;
    film.mStreams.push_back(Sound());
    film.mStreams[0].mLength = aFrames;
    film.mStreams[1].mLength = aUnits;
    film.mMovi = Frames(1000, 200);
    return film;
}

/// Bytes of a film with so many of frames, a place each of which is there: the start, and what follows.
struct LongFilm {
    std::string mStart;
    std::uint64_t mSize;
    std::map<std::uint64_t, std::string> mParts;

    LongFilm(Film aFilm, std::uint64_t aFrames, const std::string& aFrame = "") {
        aFilm.mMovi = "";
        const std::string bytes = aFilm.Bytes();
        const std::string head = bytes.substr(0, bytes.size() - aFilm.mAfter.size() - 12);
        mStart = head + "LIST" + Little(aFrames + 4) + "movi" + aFrame;
        mParts[0] = mStart;
        mParts[head.size() + 12 + aFrames] = aFilm.mAfter;
        mSize = head.size() + 12 + aFrames + aFilm.mAfter.size();
    }
    SparseStream Open() const { return SparseStream(mSize, mParts); }
};

} // namespace

TEST(AVILength, IsThatOfThePicturesOrOfSoundThatIsALittleLonger) {
    EXPECT_EQ(Length(WithSound(100, 32000).Bytes()), "4000|\"header\"");
    EXPECT_EQ(Length(WithSound(100, 32800).Bytes()), "4100|\"header\"");
    EXPECT_EQ(Length(WithSound(100, 31000).Bytes()), "4000|\"header\"");
    EXPECT_EQ(Length(WithSound(100, 36000).Bytes()), "4000|\"header\"") << "a ninth: not the same film";
    EXPECT_EQ(Length(WithSound(100, 320000).Bytes()), "4000|\"header\"") << "more than there is";
    Film delayed = WithSound(100, 32000);
    delayed.mStreams[1].mStart = 1600;
    EXPECT_EQ(Length(delayed.Bytes()), "4200|\"header\"");
    delayed.mStreams[0].mStart = 25;
    EXPECT_EQ(Length(delayed.Bytes()), "5000|\"header\"") << "pictures that begin later";
    Film framed = WithSound(100, 0);
    framed.mStreams[1] = FramedSound({0x55, 2, 44100, 16000, 1152, 0, ""}, 1152);
    framed.mStreams[1].mLength = 155;
    EXPECT_EQ(Length(framed.Bytes()), "4048|\"header\"") << "frames of a varying rate";
}

TEST(AVILength, DelayOfMoreThanAnHourIsNotBelieved) {
    Film film;
    film.mStreams[0].mStart = 90000;
    EXPECT_EQ(Length(film.Bytes()), "3604000|\"header\"");
    for (const std::uint32_t start : {std::uint32_t{90025}, std::uint32_t{0x7FFFFFFF}, UINT32_MAX}) {
        film.mStreams[0].mStart = start;
        EXPECT_EQ(Length(film.Bytes()), "4000|\"header\"") << start;
    }
}

TEST(AVILength, CountsOfAllPartsGoBeforeThatOfTheFirst) {
    Film film;
    film.mFrames = 100;
    film.mHead = List("odml", Chunk("dmlh", Little(200)));
    EXPECT_EQ(Length(film.Bytes() + Part(Frames(100))), "8000|\"header\"");
    film.mFrames = 200;
    film.mStreams[0].mLength = 200;
    film.mHead = List("odml", Chunk("dmlh", Little(100)));
    EXPECT_EQ(Length(film.Bytes() + Part(Frames(100))), "8000|\"header\"");
    film.mHead = List("odml", Chunk("dmlh", Little(0)));
    EXPECT_EQ(Length(film.Bytes() + Part(Frames(100))), "8000|\"header\"");
    film.mStreams[0].mLength = 0;
    film.mFrames = 100;
    film.mHead = "";
    film.mStreams[0].mRest = SuperIndex{{{2000, 100, 100}, {90000, 100, 100}}}.Bytes();
    EXPECT_EQ(Length(film.Bytes() + Part(Frames(100))), "8000|\"header\"") << "by the indexes";
    film.mStreams[0].mRest = SuperIndex{{{2000, 100, 100}, {90000, 100, 99}}, 1}.Bytes();
    EXPECT_EQ(Length(film.Bytes() + Part(Frames(100))), "8000|\"counted\"") << "an index of frames";
    film.mStreams[0].mRest = SuperIndex{{{2000, 100, 100}, {90000, 100, 100}}, 0, 1}.Bytes();
    EXPECT_EQ(Length(film.Bytes() + Part(Frames(100))), "4000|\"header\"") << "one is in use";
}

TEST(AVILength, OfPartsThatNothingCountsIsNotThatOfTheFirst) {
    Film film;
    film.mFrames = 100;
    film.mAfter = Chunk("idx1", Entries(100));
    EXPECT_EQ(Length(film.Bytes() + Part(Frames(100))), "8000|\"counted\"");
    film.mStreams[0].mLength = 200;
    EXPECT_EQ(Length(film.Bytes() + Part(Frames(100))), "8000|\"header\"");
}

TEST(AVILength, ThatTheFileCannotHoldIsNotBelieved) {
    for (const std::uint32_t length : {std::uint32_t{0}, std::uint32_t{0x7FFFFFFF}, UINT32_MAX}) {
        Film film = Unstated();
        film.mStreams[0].mLength = length;
        EXPECT_EQ(Length(film.Bytes()), "4000|\"counted\"") << length;
        film.mFrames = 100;
        EXPECT_EQ(Length(film.Bytes()), "4000|\"header\"") << length << ": the header of all";
    }
    Film sized;
    sized.mStreams[0].mUnitSize = 64000;
    EXPECT_EQ(Length(sized.Bytes()), "4000|\"header\"")
        << "a frame of pictures is one unit, whatever is stated";
    sized.mStreams[0].mLength = 0;
    EXPECT_EQ(Length(sized.Bytes()), "4000|\"counted\"");
    Film fast = Unstated(Frames(500, 60000));
    fast.mStreams[0].mLength = 1;
    EXPECT_EQ(Values(fast.Bytes(), {"md"}), "\"estimate: size and mean rate of places\"") << "6 Gbit/s";
}

TEST(AVILength, FilmOfMoreThanFourGigabitsASecondIsNotBelieved) {
    constexpr std::uint64_t kSize = 2'000'000'000; // in four seconds
    const std::uint64_t head = LongFilm(Film(), 0).mSize;
    SparseStream most = LongFilm(Film(), kSize - head, Frames(3)).Open();
    EXPECT_EQ(chunks::SparseValue<AVIParser>(most, "dm"), "4000");
    SparseStream more = LongFilm(Film(), kSize - head + 1, Frames(3)).Open();
    EXPECT_NE(chunks::SparseValue<AVIParser>(more, "dm"), "4000");
}

TEST(AVILength, IndexOfIndexesIsCountedToItsBound) {
    Film film;
    film.mStreams[0].mLength = 0;
    film.mStreams[0].mRest = SuperIndex{std::vector<SuperIndex::Part>(4096, {0, 0, 1})}.Bytes();
    EXPECT_EQ(Length(film.Bytes()), "163840|\"header\"");
    film.mStreams[0].mRest = SuperIndex{std::vector<SuperIndex::Part>(4097, {0, 0, 1})}.Bytes();
    EXPECT_EQ(Length(film.Bytes()), "163840|\"header\"");
}

TEST(AVILength, UnstatedIsThatOfTheIndexOrOfTheFrames) {
    Film film = Unstated();
    film.mAfter = Chunk("idx1", Entries(120) + Entries(77, "01wb"));
    EXPECT_EQ(Length(film.Bytes()), "4800|\"counted\"");
    film.mAfter = Chunk("idx1", std::string(1600, '\0'));
    EXPECT_EQ(Length(film.Bytes()), "4000|\"counted\"") << "an index of nothing";
    film.mAfter = "";
    EXPECT_EQ(Length(film.Bytes()), "4000|\"counted\"");
    film.mMovi = List("rec ", Frames(50)) + Chunk("ix00", "x") + List("rec ", Frames(50));
    EXPECT_EQ(Length(film.Bytes()), "4000|\"counted\"") << "in lists";
    film.mMovi = Frames(20) + std::string(5000, '\0') + Frames(20);
    EXPECT_EQ(Values(film.Bytes(), {"md"}), "\"counted\"") << "with a gap";
    film.mMovi = "";
    EXPECT_EQ(Length(film.Bytes()), "|");
}

TEST(AVILength, OfSoundAloneIsCountedInItsUnits) {
    Film film;
    film.mStreams = {Sound()};
    film.mStreams[0].mLength = 0;
    film.mMovi = Frames(10, 800, "00wb");
    EXPECT_EQ(Length(film.Bytes()), "1000|\"counted\"");
    film.mAfter = Chunk("idx1", Entries(20, "00wb", 800));
    EXPECT_EQ(Length(film.Bytes()), "2000|\"counted\"");
    film.mStreams = {FramedSound({0x55, 1, 8000, 1000, 576, 0, ""}, 800)};
    film.mStreams[0].mLength = 0;
    EXPECT_EQ(Length(film.Bytes()), "2000|\"counted\"");
}

TEST(AVILength, OfAFileThatIsBeingWrittenIsThatOfNow) {
    Film film = Unstated("");
    for (const std::uint64_t size : {std::uint64_t{0}, std::uint64_t{UINT32_MAX}}) {
        const std::string header = film.Header();
        const std::string file = chunks::Lying(
            "RIFF", size,
            "AVI " + header + chunks::Lying("LIST", size, "movi" + Frames(50) + Frames(50, 100, "01wb")));
        EXPECT_EQ(Length(file), "2000|\"counted\"") << size;
        EXPECT_EQ(Length(file + Frames(25)), "3000|\"counted\"") << size;
    }
}

TEST(AVILength, OfAFileThatWasCutIsThatOfTheWhole) {
    Film film;
    const std::string whole = film.Bytes();
    EXPECT_EQ(Values(whole.substr(0, whole.size() / 10), {"dm", "md", "br"}),
              Values(whole, {"dm", "md", "br"}));
    film.mStreams[0].mLength = 200000;
    film.mStreams[0].mRest = SuperIndex{{{2000, 100, 100000}, {500'000'000, 1000, 100000}}}.Bytes();
    EXPECT_EQ(Values(film.Bytes(), {"dm", "md", "br"}), "8000000|\"header\"|500001")
        << "the size is what the indexes reach to";
}

TEST(AVILength, EstimateIsNeverShortAndTellsItsBound) {
    // Scenes of frames of different sizes, of which one in three is large.
    std::string frames;
    std::uint64_t count = 0;
    for (std::size_t scene = 0; scene < 23; ++scene) {
        for (std::size_t i = 0; i < 60; ++i, ++count) {
            frames += Frames(1, 400 + scene * 7 % 11 * 300 + (i % 3 == 0 ? 2000 : 0));
        }
    }
    const Film film = Unstated(frames);
    const std::string bytes = film.Bytes();
    const std::uint64_t told = std::stoull(Values(bytes, {"dm"}));
    const std::uint64_t bound = std::stoull(Values(bytes, {"db"}));
    EXPECT_GE(told, count * 40);
    EXPECT_LE(told - bound, count * 40);
    EXPECT_EQ(Values(bytes, {"md"}), "\"estimate: size and mean rate of places\"");
}

TEST(AVILength, LargeIndexIsCountedByPlaces) {
    Film film = Unstated(Frames(1));
    std::string index;
    for (int i = 0; i < 20000; ++i) {
        index += Entries(1) + Entries(1, "01wb");
    }
    film.mAfter = Chunk("idx1", index);
    const std::string bytes = film.Bytes();
    EXPECT_EQ(Values(bytes, {"md"}), "\"estimate: places of the index\"");
    EXPECT_GE(std::stoull(Values(bytes, {"dm"})), 800000U);
    EXPECT_LE(std::stoull(Values(bytes, {"dm"})) - std::stoull(Values(bytes, {"db"})), 800000U);
    film.mAfter = Chunk("idx1", Entries(16384));
    EXPECT_EQ(Length(film.Bytes()), "655360|\"counted\"") << "the largest that is counted";
    film.mAfter = Chunk("idx1", Entries(16385));
    EXPECT_EQ(Values(film.Bytes(), {"md"}), "\"estimate: places of the index\"");
}

TEST(AVILength, LongAsItMayBeCostsTheSame) {
    for (const std::uint64_t size :
         {std::uint64_t{4} << 20, std::uint64_t{400} << 20, std::uint64_t{0xFFF00000}}) {
        Film film;
        film.mStreams[0].mLength = 1000;
        film.mAfter = Chunk("idx1", Entries(10)) + chunks::Info({{"INAM", "Long"}});
        SparseStream stream = LongFilm(film, size, Frames(3)).Open();
        EXPECT_EQ(chunks::SparseValue<AVIParser>(stream, "title"), "\"Long\"") << size;
        EXPECT_EQ(stream.mReads, 2U) << size;
        EXPECT_LE(stream.mBytes, 16384U) << size;
    }
}

TEST(AVILength, FilmBeyondFourGigabytesIsReadToTheStartOfItsSecondPart) {
    Film film;
    film.mFrames = 100;
    film.mHead = List("odml", Chunk("dmlh", Little(180000)));
    film.mAfter = Chunk("idx1", Entries(100)) + "RIFF" + Little(0x3FFFFFFF) + "AVIX";
    LongFilm film1(film, 0x3F000000, Frames(3));
    film1.mSize = std::uint64_t{4500} << 20;
    SparseStream stream = film1.Open();
    EXPECT_EQ(chunks::SparseValue<AVIParser>(stream, "dm"), "7200000");
    EXPECT_EQ(stream.mReads, 2U);
}

TEST(AVILength, OfUnknownSizeIsThatOfTheHeaderAlone) {
    Delivery delivery;
    delivery.mfSizeKnown = false;
    Film film;
    film.mAfter = chunks::Info({{"INAM", "Not read"}});
    EXPECT_EQ(Values(film.Bytes(), {"dm", "md", "title"}, delivery), "4000|\"header\"|");
    EXPECT_EQ(Length(Unstated().Bytes(), delivery), "|\"none: the end was not read\"");
    film.mStreams[0].mRate = 1000;
    film.mStreams[0].mLength = UINT32_MAX;
    EXPECT_EQ(Length(film.Bytes(), delivery), "|\"none: the end was not read\"") << "not known";
    film.mFrames = UINT32_MAX;
    EXPECT_EQ(Length(film.Bytes(), delivery), "|\"none: the end was not read\"") << "not known";
}
