#include "companions/ezFormats/ChunkBytes.h"
#include "companions/ezFormats/SparseStream.h"
#include "companions/ezFormats/ogg/OggBytes.h"

#include "ezFormats/ogg/OggParser.h"

#include <gtest/gtest.h>

// Films in Ogg, and OGM.

using namespace ogg;

namespace {

constexpr unsigned kVideo = 9;
constexpr unsigned kSound = 7;
constexpr unsigned kText = 5;

std::string Values(const std::string& aBytes, const std::vector<const char*>& aKeys) {
    return chunks::Values<OggParser>(aBytes, aKeys);
}
/// Milliseconds.
std::string Length(const std::string& aBytes) {
    return Values(aBytes, {"dm"});
}

/// A position of Theora.
std::uint64_t At(std::uint64_t aKey, std::uint64_t aSince = 0) {
    return aKey << 6U | aSince;
}
/// A page of video that ends at a position, with so many pictures.
std::string Pictures(std::uint64_t aGranule, unsigned aCount = 1, std::size_t aSize = 100,
                     unsigned aFlags = 0) {
    return Page(kVideo, aFlags, aGranule, Packets(aCount, std::string(aSize, 'p')));
}

/// The first pages of a film of Theora, 25 pictures a second, and Vorbis, 44100 Hz.
std::string Heads(const std::string& aVideo = Theora(), const std::string& aSound = VorbisHead(),
                  const std::string& aMore = "") {
    return aMore + Page(kVideo, kFirst, 0, {aVideo}) + Page(kSound, kFirst, 0, {aSound});
}
std::string Tables(const std::vector<std::string>& anOfVideo = {},
                   const std::vector<std::string>& anOfSound = {}) {
    return Page(kVideo, 0, 0, {"\x81theora" + Comments(anOfVideo), "tables"}) +
           Page(kSound, 0, 0, {"\x03vorbis" + Comments(anOfSound), "setup"});
}
std::string Film(const std::string& aPages) {
    return Heads() + Tables({"title=Film", "artist=F"}, {"artist=S"}) + aPages;
}
/// Two seconds of pictures, one of sound.
const std::string kPages = Pictures(At(1)) + Pictures(At(40, 10), 49) + Sound(kSound, 44100);

/// Video alone, from its start on.
std::string VideoOf(const std::string& aHead, std::uint64_t aEnd) {
    return Page(kVideo, kFirst, 0, {aHead}) + Page(kVideo, 0, 0, {"no comments"}) + Pictures(aEnd, 60, 10);
}

/// Width and height of a header of OGM.
std::string Size(std::uint32_t aWidth, std::uint32_t aHeight) {
    return Little(aWidth) + Little(aHeight);
}
/// Of OGM: 25 pictures a second.
std::string XviD(const std::string& aTag = "XVID") {
    return OGMHead("video", aTag, 400000, 1, 1, Size(640, 480));
}

} // namespace

TEST(OggFilm, RecordHasTheFactsOfVideoAndSound) {
    EXPECT_EQ(pictures::Parsed<OggParser>(Film(kPages)),
              "ac=2\nbr=29712\nca=\"Vorbis\"\ncd=8\ncn=\"item.videoItem\"\ncr=\"4:2:0\"\nct=\"Ogg\"\n"
              "dl=\"DLNA.ORG_OP=01\"\ndm=2000\ndr=\"159:119\"\ndu=2\nfr=25000\nhe=238\n"
              "md=\"last page\"\nmt=\"video/ogg\"\npa=\"1:1\"\npr=\"progressive\"\nsf=44100\nta=1\n"
              "vc=\"Theora\"\nvt=1\nwi=318\ntitle=\"Film\"\ncreator=\"S\"\n");
}

TEST(OggFilm, VideoIsToldByItsFirstPacket) {
    struct Row {
        std::string mHead;
        std::uint64_t mEnd;
        const char* mFacts;
    };
    TheoraHead wide;
    wide.mPixelWidth = 12;
    wide.mPixelHeight = 11;
    wide.mFormat = 3;
    TheoraHead old;
    old.mVersion = 0x030200;
    const Row rows[] = {
        {Theora(30000, 1001), At(23, 30), "\"Theora\"|318|238|29970|\"1:1\"|\"4:2:0\"|1768"},
        {wide.Bytes(), At(25), "\"Theora\"|318|238|25000|\"12:11\"|\"4:4:4\"|1000"},
        {old.Bytes(), At(24), "\"Theora\"|318|238|25000|\"1:1\"|\"4:2:0\"|1000"}, // counts from 0
        {Theora(0, 1), At(25), "\"Theora\"|318|238||\"1:1\"|\"4:2:0\"|"},
        {Theora(25, 0), At(25), "\"Theora\"|318|238||\"1:1\"|\"4:2:0\"|"},
        {"\x80theora\4", At(25), "\"Theora\"||||\"1:1\"||"},
        {VP8Head(), std::uint64_t{25} << 32 | 0x78, "\"VP8\"|320|240|25000|\"12:11\"|\"4:2:0\"|1000"},
        {VP8Head(0), std::uint64_t{25} << 32, "\"VP8\"|||25000|\"12:11\"|\"4:2:0\"|1000"},
        {VP8Head(320, 240, 25, 1, 2), std::uint64_t{25} << 32, "\"VP8\"||||\"1:1\"||"},
        {VP8Head().substr(0, 20), std::uint64_t{25} << 32, "\"VP8\"||||\"1:1\"||"},
        {XviD(), 24, "\"MPEG4\"|640|480|25000|\"1:1\"||1000"},
        {XviD("what"), 24, "\"what\"|640|480|25000|\"1:1\"||1000"},
        {OGMHead("video", "DIVX", 417083, 1, 1, Size(0, 480)), 24, "\"MPEG4\"|||23976|\"1:1\"||1042"},
        {OGMHead("video", "DIVX", 400000, 1, 0, Size(1, 0x80000000)), 24, "\"MPEG4\"|||25000|\"1:1\"||1000"},
        {OGMHead("video", "DIVX", 20000, 1, 1, Size(8, 8)), 24, "\"MPEG4\"|8|8||\"1:1\"||50"},
        {OGMHead("video", "DIVX", 400000, 0), 24, "\"MPEG4\"||||\"1:1\"||"},
        {OGMHead("video", "DIVX", UINT64_MAX, UINT64_MAX), 24, "\"MPEG4\"||||\"1:1\"||"},
        {XviD().substr(0, 50), 24, "||||\"1:1\"||"},
        {"BBCD\0...."s, 24, "\"Dirac\"||||\"1:1\"||"},
        {"\x80\x64\x61\x61la...."s, 24, "\"Daala\"||||\"1:1\"||"},
    };
    for (const Row& row : rows) {
        const std::string film = VideoOf(row.mHead, row.mEnd);
        EXPECT_EQ(Values(film, {"vc", "wi", "he", "fr", "pa", "cr", "dm"}), row.mFacts);
        EXPECT_EQ(Values(film, {"mt", "ct", "vt", "ca", "ta"}), "\"video/ogg\"|\"Ogg\"|1||");
    }
}

TEST(OggFilm, LengthIsThatOfTheLongerOfTheFirstVideoAndTheFirstSound) {
    EXPECT_EQ(Length(Film(kPages)), "2000");
    EXPECT_EQ(Length(Film(kPages + Sound(kSound, 132300))), "3000");
    EXPECT_EQ(Length(Film(Pictures(At(50), 50))), "2000");
    EXPECT_EQ(Length(Film(Sound(kSound, 44100))), "1000");
    EXPECT_EQ(Length(Film("")), "");
    // Neither a second sound nor a text makes it longer.
    const std::string more =
        Page(8, kFirst, 0, {VorbisHead()}) + Page(kText, kFirst, 0, {OGMHead("text", "    ", 10000, 1)});
    EXPECT_EQ(Length(Heads() + more + Tables() + kPages + Sound(8, 441000) +
                     Page(kText, 0, 90000, {OGMFrame("Ende")})),
              "2000");
    // Of a kind whose positions tell no time the sound's is left.
    EXPECT_EQ(Length(Heads("BBCD....") + Tables() + Pictures(1U << 30) + Sound(kSound, 44100)), "1000");
}

TEST(OggFilm, CaptureIsAsLongAsItIs) {
    // 20 packets of Vorbis hold 20480 samples at most: the sound starts at 10 s, and so do the pictures.
    const std::string sound = Sound(kSound, 20480 + 441000);
    EXPECT_EQ(Length(Film(sound + Pictures(At(240, 11)) + Pictures(At(290, 10), 49) + Sound(kSound, 529200))),
              "2000");
    EXPECT_EQ(Length(Film(Pictures(At(240, 11)) + Pictures(At(290, 10), 49))), "2000");
    // What begins later than the other is no capture.
    EXPECT_EQ(Length(Film(Pictures(At(1)) + sound + Pictures(At(300)) + Sound(kSound, 529200))), "12000");
    EXPECT_EQ(Length(Film(Sound(kSound, 20480) + Pictures(At(240, 11)) + Pictures(At(300)))), "12000");
    EXPECT_EQ(Length(Film(Pictures(At(24, 1)) + Pictures(At(50)) + sound.substr(0, 27))), "2000");
}

TEST(OggFilm, StartIsLookedForAfterAFirstPictureOfManyPages) {
    const auto film = [](std::size_t aSize, std::uint64_t aStart) {
        std::string pages;
        for (const std::string& page : PagesOfOgg(kVideo, std::string(aSize, 'p'), 4080)) {
            pages += page;
        }
        pages.replace(pages.rfind("OggS") + 6, 8, Little(At(aStart * 25, 1), 8));
        return Film(pages + Sound(kSound, 20480 + aStart * 44100) + Pictures(At(aStart * 25 + 50)) +
                    Sound(kSound, (aStart + 3) * 44100));
    };
    for (const std::size_t size : {30000U, 60000U, 150000U}) {
        EXPECT_EQ(Length(film(size, 0)), "3000") << size;
        EXPECT_EQ(Length(film(size, 10)), "3000") << size;
    }
    EXPECT_EQ(Length(film(250000, 10)), "13000") << "further than what is looked at";
}

TEST(OggFilm, SkeletonTellsWhatIsKeptForDecodersAlone) {
    const auto length = [](const std::string& aSkeleton) {
        const std::string skeleton = Page(1, kFirst, 0, {aSkeleton});
        return Length(Heads(Theora(), VorbisHead(), skeleton) + Tables() + Pictures(At(200, 26)) +
                      Sound(kSound, 20480 + 396900) + Pictures(At(275)) + Sound(kSound, 485100));
    };
    EXPECT_EQ(length(SkeletonHead(10000)), "1000") << "from 10 s on, with 1 s before it";
    EXPECT_EQ(length(SkeletonHead(0)), "2000");
    EXPECT_EQ(length(SkeletonHead(8000)), "2000") << "before the first that there is";
    EXPECT_EQ(length(SkeletonHead(25000, 15000)), "1000") << "where positions count from 15 s on";
    EXPECT_EQ(length(SkeletonHead(5000, 15000)), "2000");
    EXPECT_EQ(length(SkeletonHead(11000)), "2000") << "after the last";
    EXPECT_EQ(length(SkeletonHead(UINT64_MAX)), "2000") << "a negative one";
    EXPECT_EQ(length(SkeletonHead(10000).substr(0, 40)), "2000");
}

TEST(OggFilm, OnePictureBesideSoundIsNoFilm) {
    const std::string sound = Sound(kSound, 44100) + Sound(kSound, 441000);
    const std::vector<const char*> keys = {"mt", "cn", "dm", "vc", "ca"};
    const std::string song = "\"audio/ogg\"|\"item.audioItem\"|10000||\"Vorbis\"";
    const std::string film = "\"video/ogg\"|\"item.videoItem\"|10000|\"Theora\"|\"Vorbis\"";
    EXPECT_EQ(Values(Film(Pictures(At(1), 1, 20000, kLast) + sound), keys), song);
    EXPECT_EQ(Values(Film(Pictures(At(1)) + sound + Pictures(kNoGranule, 0, 0, kLast)), keys), song);
    EXPECT_EQ(Values(Film(Pictures(0, 0, 0, kLast) + sound), keys), song) << "none at all";
    EXPECT_EQ(Values(Film(Pictures(At(1)) + Pictures(At(1, 1), 1, 0, kLast) + sound), keys), film);
    EXPECT_EQ(Values(Film(Pictures(At(1)) + sound), keys), film) << "of more there is no word";
    EXPECT_EQ(Values(VideoOf(Theora(), At(1)) + Pictures(At(1), 0, 0, kLast), {"mt", "dm"}),
              "\"video/ogg\"|40")
        << "without sound";
}

TEST(OggFilm, SubtitlesAndSoundsAreCountedWithTheirLanguages) {
    const auto stream = [](unsigned aSerial, const std::string& aHead) {
        return Page(aSerial, kFirst, 0, {aHead});
    };
    const auto language = [](unsigned aSerial, const std::string& aLanguage,
                             const std::string& aMark = "\x03vorbis") {
        return Page(aSerial, 0, 0, {aMark + Comments({"LANGUAGE=" + aLanguage}), "setup"});
    };
    const std::string film = stream(1, XviD()) + stream(2, VorbisHead()) +
                             stream(3, OGMHead("audio", "2000", 10000000, 48000)) +
                             stream(4, OGMHead("text", "    ", 10000, 1)) + stream(5, KateHead("de")) +
                             stream(6, "CMML\0\0\0\0...."s) + language(1, "ja") + language(2, "eng") +
                             language(3, "fre") + language(4, "es") + language(5, "it", "\x81kate\0\0\0\0"s) +
                             Page(1, 0, 49, Packets(50, OGMFrame("picture")));
    EXPECT_EQ(Values(film, {"ta", "la", "ts", "sl", "ca", "dm"}),
              "2|\"en,fr\"|3|\"es,it,de\"|\"Vorbis\"|2000");
}

TEST(OggFilm, NominalRatesAreEstimatesWhereTheWholeHasRoomForThem) {
    const auto rates = [](unsigned aVideo, std::uint64_t aSound) {
        TheoraHead head;
        head.mNominalRate = aVideo;
        const std::string pages = Pictures(At(1)) + Pictures(At(50), 1, 12000) + Sound(kSound, 44100);
        return Values(Heads(head.Bytes(), VorbisHead(44100, 2, 0, aSound)) + Tables() + pages,
                      {"br", "ea", "ev"});
    };
    EXPECT_EQ(rates(0, 0), "57956||");
    EXPECT_EQ(rates(0, 8000), "57956|8000|49956");
    EXPECT_EQ(rates(40000, 8000), "57956|8000|49956") << "nearer than what the encoder aimed at";
    EXPECT_EQ(rates(40000, 0), "57956|17956|40000");
    EXPECT_EQ(rates(57956, 57956), "57956||");
}

TEST(OggFilm, FirstFrameOfOGMTellsMore) {
    const std::string layer = "\0\0\1\xB0\xF5\0\0\1\x20"s
                              "\x00\x84\x40\x06\x70\xC2\xC1\x09\x06"s;
    const std::string comments = "\x03vorbis" + Comments({"title=T"});
    const auto video = [&](const Packets& aPackets, const std::string& aTag = "XVID") {
        return Values(Page(kVideo, kFirst, 0, {XviD(aTag)}) + Page(kVideo, 0, 0, aPackets) + Pictures(24),
                      {"vc", "vp", "vl", "pr", "title"});
    };
    const std::string told = "\"MPEG4\"|\"AdvancedSimple\"|50|\"interlaced\"|\"T\"";
    EXPECT_EQ(video({comments, OGMFrame(layer)}), told) << "on the page of the comments";
    EXPECT_EQ(video({comments, "\x48\1" + layer}), told) << "a key frame whose length takes a byte";
    EXPECT_EQ(video({comments, "\xCA\1\2\3\4\5\6\7" + layer}), told) << "seven bytes";
    EXPECT_EQ(video({comments, "", OGMFrame(layer)}), told);
    EXPECT_EQ(video({comments, OGMFrame("no header"), OGMFrame(layer)}), "\"MPEG4\"||||\"T\"")
        << "the first frame";
    EXPECT_EQ(video({comments, "\xCA"}), "\"MPEG4\"||||\"T\"");
    EXPECT_EQ(video({comments, OGMFrame(layer)}, "DIV3"), "\"MSMPEG4v3\"||||\"T\"");
    EXPECT_EQ(video({comments, "\1" + layer}), "\"MPEG4\"||||\"T\"") << "a header";

    const auto sound = [&](const std::string& aTag, const std::string& aFrame, unsigned aFlags = 0) {
        const std::string head = OGMHead("audio", aTag, 10000000, 44100, 1152,
                                         Little(1, 2) + Little(1, 2) + Little(4000) + Little(0));
        return Values(Page(kVideo, kFirst, 0, {XviD()}) + Page(kSound, kFirst, 0, {head}) +
                          Page(kSound, aFlags, 44100, {OGMFrame(aFrame)}) + Pictures(24),
                      {"ca", "sf", "ac", "ar", "ea", "dm"});
    };
    const std::string mp2 = "\xFF\xFD\x84\x04"s + std::string(380, 'm');
    EXPECT_EQ(sound("0050", mp2), "\"MP2\"|48000|2|128000||1026");
    EXPECT_EQ(sound("0050", mp2, kGoesOn), "\"MP2\"|44100|1|||1026") << "the rest of one";
    EXPECT_EQ(sound("00ff", mp2), "\"AAC\"|44100|1|||1026");
    EXPECT_EQ(sound("7777", mp2), "\"WAVE-7777\"|44100|1|||1026");
}

TEST(OggFilm, PositionsOfOGMAreThoseOfTheStart) {
    const auto length = [](std::uint64_t aSamples, unsigned aLength, std::uint64_t aEnd) {
        const std::string head = OGMHead("audio", "0055", 10000000, aSamples, aLength);
        return Length(Page(kSound, kFirst, 0, {head}) + Sound(kSound, 20000) + Sound(kSound, aEnd));
    };
    EXPECT_EQ(length(48000, 1152, 46848), "1000");
    EXPECT_EQ(length(48000, 0, 48000), "1000");
    EXPECT_EQ(length(48000, 48000, 48000), "2000");
    EXPECT_EQ(length(48000, 48001, 48000), "1000") << "no packet lasts longer than a second";
    EXPECT_EQ(Length(VideoOf(XviD(), 49)), "2000");
}

TEST(OggFilm, LinksOfAChainAddUp) {
    const auto link = [](unsigned aSerial, unsigned aPictures) {
        const std::string video = Page(aSerial, kFirst, 0, {Theora()});
        const std::string sound = Page(aSerial + 1, kFirst, 0, {VorbisHead()});
        const std::string tables = Page(aSerial, 0, 0, {"\x81theora" + Comments({}), "tables"}) +
                                   Page(aSerial + 1, 0, 0, {"\x03vorbis" + Comments({}), "setup"});
        std::string pages;
        for (unsigned i = 1; i <= aPictures; ++i) {
            pages += Page(aSerial, 0, At(i), {std::string(4000, 'p')}) + Sound(aSerial + 1, i * 1764, 2);
        }
        return video + sound + tables + pages;
    };
    EXPECT_EQ(Values(link(1, 100) + link(3, 50), {"dm", "md", "mt"}), "6000|\"last page\"|\"video/ogg\"");
    EXPECT_EQ(Length(link(1, 40) + link(3, 100) + link(5, 75)), "8600");
    EXPECT_EQ(Length(link(1, 100) + Vorbis(Sounds(kSound, 4410, 4410, 30))), "7000") << "a song after it";
}

TEST(OggFilm, TextsAreThoseOfTheSoundAndThenOfTheVideo) {
    EXPECT_EQ(Values(Film(kPages), {"title", "creator"}), "\"Film\"|\"S\"");
    // Headers of other streams go before those that are looked for.
    std::string heads = Page(1, kFirst, 0, {"fishead\0"s}) + Page(kVideo, kFirst, 0, {Theora()});
    std::string others;
    for (unsigned i = 20; i < 30; ++i) {
        heads += Page(i, kFirst, 0, {"kate"});
        others += Page(i, 0, 0, {"kate"});
    }
    heads += Page(kSound, kFirst, 0, {VorbisHead()});
    EXPECT_EQ(Values(heads + others + Tables({"title=T"}) + kPages, {"title"}), "\"T\"");
}

TEST(OggFilm, CostsTheStartTheFirstPagesAndTheEnd) {
    for (const std::uint64_t size : {UINT64_C(4000000), UINT64_C(400000000), UINT64_C(4500000000)}) {
        std::string front = Heads() + Tables({"title=T"}) + Pictures(At(1), 1, 20000);
        for (unsigned i = 1; i < 40; ++i) {
            front += Pictures(At(1, i), 1, 2000) + Sound(kSound, i * 1764, 2);
        }
        const std::string end = Sound(kSound, 441'000'000) + Pictures(At(250'000));
        SparseStream stream(size, {{0, front}, {size - end.size(), end}});
        OggParser parser;
        const Record record(parser.Parse(stream));
        ASSERT_NE(record, nullptr);
        EXPECT_EQ(record->GetUInt32("dm", 0), 10'000'000U);
        EXPECT_EQ(stream.mReads, 3U);
        EXPECT_EQ(stream.mBytes, 123'008U);
    }
}

TEST(OggFilm, EndOfOneStreamIsLookedForInTheLast128KiBOnceTheOtherIsFound) {
    const auto length = [](unsigned aPages) {
        std::string pages = Pictures(At(1)) + Sound(kSound, 20480) + Pictures(At(100));
        for (unsigned i = 0; i < aPages; ++i) { // sound that does not go on
            pages += Sound(kSound, 44100, 40);
        }
        return Length(Film(pages));
    };
    EXPECT_EQ(length(10), "4000");
    EXPECT_EQ(length(31), "4000");
    EXPECT_EQ(length(33), "1000");
}
