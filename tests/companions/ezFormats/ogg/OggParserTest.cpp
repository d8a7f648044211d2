#include "companions/ezFormats/FormatFiles.h"
#include "companions/ezFormats/PictureBytes.h"
#include "companions/ezFormats/SparseStream.h"
#include "companions/ezFormats/ogg/OggBytes.h"

#include "ezFormats/ogg/OggParser.h"

#include "support/Str.h"

#include <gtest/gtest.h>

// Ogg files.

using namespace ogg;

namespace {

const std::string kPng = "\x89PNG\r\n\x1A\n ours";

std::string Parsed(const std::string& aBytes, AwkwardStream::Costs* aCosts = nullptr) {
    return pictures::Parsed<OggParser>(aBytes, {}, aCosts);
}
/// Some values of a record, those that are there.
std::string Values(const std::string& aRecord, const std::vector<const char*>& aKeys) {
    std::string values;
    for (const char* const key : aKeys) {
        const std::string value = pictures::ValueOf(aRecord, key);
        values += value.empty() ? "" : (values.empty() ? "" : " ") + std::string(key) + "=" + value;
    }
    return values;
}
/// Milliseconds and method.
std::string Length(const std::string& aBytes) {
    return Values(Parsed(aBytes), {"dm", "md"});
}
std::string Pages(std::uint64_t aMilliseconds) {
    return "dm=" + std::to_string(aMilliseconds) + " md=\"last page\"";
}

/// A film: Theora of aPictures, and sound.
std::string Film(unsigned aPictures, const std::string& aSound) {
    return Page(1, kFirst, 0, {SkeletonHead(0)}) + Page(9, kFirst, 0, {Theora()}) +
           Page(7, kFirst, 0, {VorbisHead()}) +
           Page(9, 0, 0, {"\x81theora" + Comments({"title=Film", "artist=F"}), "tables"}) +
           Page(7, 0, 0, {"\x03vorbis" + Comments({"artist=S"}), "setup"}) +
           Page(9, 0, std::uint64_t{aPictures - 10} << 6 | 10, {"picture"}) + aSound;
}

/// OGM: video, sound, and a text.
std::string OGMFilm() {
    return Page(1, kFirst, 0, {OGMHead("video", "XVID", 400000, 1, 1, Little(64) + Little(48))}) +
           Page(2, kFirst, 0, {OGMHead("audio", "0050", 10000000, 48000, 1152)}) +
           Page(3, kFirst, 0, {OGMHead("text", "    ", 10000, 1)}) +
           Page(1, 0, 0, {"\x03vorbis" + Comments({"title=T"}), OGMFrame("\0\0\1\xB0\xF5"s)}) +
           Page(2, 0, 0, {OGMFrame("\xFF\xFD\x84\x04"s + std::string(380, 'm'))}) +
           Page(3, 0, 0, {"\x03vorbis" + Comments({"language=de"}), OGMFrame("Anfang")}) +
           Page(1, 0, 24, {OGMFrame("picture")});
}

std::vector<std::string> UsualFiles() {
    return {Vorbis(Sound(7, 44100) + Sound(7, 88200),
                   {"title=T", "artist=A", PictureComment(PictureOfFlac(3, kPng))}),
            File(OpusHead(), "OpusTags" + Comments({"title=T"}),
                 Page(7, 0, 480000, Packets(5, "\xFC opus")) + Sound(7, 528000)),
            File(FLACHead(flac::Stream()), FlacBlock(4, Comments({"title=T"})), Sound(7, 44100)),
            Film(50, Sound(7, 44100)),
            OGMFilm(),
            Page(9, kFirst, 0, {VP8Head()}) + Page(9, 0, std::uint64_t{25} << 32, {"picture"}),
            Link(1, 44100, Sound(1, 44100)) + Link(2, 8000, Sound(2, 8000))};
}

std::vector<std::string> CostlyFiles() {
    std::string chain;
    for (unsigned i = 0; i < 40; ++i) {
        chain += Link(i, 44100, Sounds(i, 4096, 4096, 60));
    }
    std::string comments = Page(7, kFirst, 0, {VorbisHead()});
    for (const std::string& page :
         PagesOfOgg(7, "\x03vorbis" + Comments({std::string(700000, 'c'), "title=T"}), 255 * 255)) {
        comments += page;
    }
    const std::string other = Sounds(8, 4096, 4096, 200);
    // Films: a start that is not found, comments of many pages, and others' pages at the end.
    std::string film = Page(9, kFirst, 0, {Theora()}) + comments;
    std::string films;
    for (unsigned i = 0; i < 40; ++i) {
        films += Page(100 + i, kFirst, 0, {Theora()}) + Link(i, 44100, Sounds(i, 4096, 4096, 60));
    }
    return {chain,
            comments + other,
            Vorbis(other),
            Vorbis(std::string(500000, 'O')),
            Vorbis(Sounds(7, 1U << 30, 4096, 200) + std::string(300000, 'O')),
            film + other,
            films,
            Page(9, kFirst, 0, {Theora()}) + Vorbis(std::string(500000, 'O')),
            Page(9, kFirst, 0, {Theora()}) + File(OpusHead(), "OpusTags", Sounds(7, 1U << 30, 4096, 200))};
}

const FormatFiles kFiles("ogg", {48, 2U << 20}, {"ct"}, UsualFiles, CostlyFiles);

} // namespace

TEST(OggParser, RecordSaysWhatTheFirstPacketsSay) {
    EXPECT_EQ(Parsed(UsualFiles()[0]),
              "ac=2\nar=4294967295\nca=\"Vorbis\"\ncm=\"image/png\"\ncn=\"item.audioItem\"\ncs=13\n"
              "ct=\"Ogg\"\ndl=\"DLNA.ORG_OP=01\"\ndm=2000\ndu=2\nea=16376\nmd=\"last page\"\n"
              "mt=\"audio/ogg\"\nsf=44100\nta=1\ntitle=\"T\"\ncreator=\"A\"\n");
}

TEST(OggParser, EachKindOfSoundIsDescribedByItsFirstPacket) {
    struct Row {
        std::string mHead;
        const char* mFacts;
    };
    flac::Stream stream;
    stream.mRate = 96000;
    stream.mBits = 24;
    const Row rows[] = {
        {VorbisHead(48000, 1, 200000, 128000), "ca=\"Vorbis\" sf=48000 ac=1 ar=4294967295 ma=200000"},
        {VorbisHead(48000, 6, 128000, 128000, 128000), "ca=\"Vorbis\" sf=48000 ac=6 ar=128000"},
        {VorbisHead(48000, 2, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF),
         "ca=\"Vorbis\" sf=48000 ac=2 ar=4294967295"},
        {OpusHead(), "ca=\"Opus\" sf=48000 ac=2 ar=4294967295"}, // whatever rate the encoder was given
        {OpusHead(0, 15, 8), "ca=\"Opus\" sf=48000 ac=8 ar=4294967295"},
        {FLACHead(stream), "ca=\"FLAC\" sf=96000 ac=2 bs=24 ar=4294967295"},
        {SpeexHead(), "ca=\"Speex\" sf=16000 ac=1 ar=27800"},
        {SpeexHead(8000, 2, 27800, true), "ca=\"Speex\" sf=8000 ac=2 ar=4294967295"},
        {OGMHead("audio", "0055", 10000000, 44100), "ca=\"MP3\" sf=44100 ac=2 ar=4294967295"},
        {OGMHead("audio", "2000", 20000000, 96000), "ca=\"AC3\" sf=48000 ac=2 ar=4294967295"},
    };
    for (const Row& row : rows) {
        const std::string record = Parsed(File(row.mHead, "no comments", ""));
        EXPECT_EQ(Values(record, {"ca", "sf", "ac", "bs", "ar", "ma"}), row.mFacts);
        EXPECT_EQ(Values(record, {"mt", "ct"}), "mt=\"audio/ogg\" ct=\"Ogg\"");
    }
}

TEST(OggParser, WhatNoParserKnowsIsRefused) {
    const auto refusal = pictures::Refusal<OggParser>;
    EXPECT_EQ(refusal("OggX", {}), "OggParser: malformed: begins with 4F676758");
    const std::string none = "OggParser: unsupported: no stream of sound or video";
    for (const std::string& head :
         {"CELT    "s, VorbisHead(0), VorbisHead(44100, 0), VorbisHead().substr(0, 28), OpusHead(0, 16),
          OpusHead(0, 1, 0), SpeexHead(0), SpeexHead(8000, 0), FLACHead(flac::Stream()).substr(0, 25),
          OGMHead("audio", "0055", 0, 44100), OGMHead("audio", "0055", 1, 0)}) {
        EXPECT_EQ(refusal(File(head, "", ""), {}), none) << head;
    }
    const std::string page = Page(7, kFirst, 0, {VorbisHead()});
    for (std::size_t size = 5; size < page.size(); ++size) {
        EXPECT_NE(refusal(page.substr(0, size), {}).find("OggParser: "), std::string::npos) << size;
    }
}

TEST(OggParser, LengthIsThePositionOfTheLastPage) {
    const std::string sound = Sound(7, 44100);
    EXPECT_EQ(Length(Vorbis(sound + Sound(7, 441000))), Pages(10000));
    EXPECT_EQ(Length(Vorbis(sound)), Pages(1000));
    EXPECT_EQ(Length(Vorbis("")), "");
    // No packet ends on the last page; other streams', and what is no page, do not count.
    EXPECT_EQ(Length(Vorbis(sound + Sound(7, 441000) + Sound(7, kNoGranule))), Pages(10000));
    EXPECT_EQ(Length(Vorbis(sound + std::string(128, '\0') + "TAG" + std::string(125, 'O'))), Pages(1000));
    EXPECT_EQ(Length(Vorbis(sound + Sound(8, 882000))), Pages(1000));
    EXPECT_EQ(Length(Vorbis(sound + "OggS\1" + Sound(7, 441000).substr(5))), Pages(1000)) << "a version";
    // Cut in the last page, of which the head is there; and within the head.
    const std::string cut = Vorbis(sound + Sound(7, 441000));
    EXPECT_EQ(Length(cut.substr(0, cut.size() - 1)), Pages(10000));
    EXPECT_EQ(Length(cut.substr(0, cut.size() - 2001)), Pages(1000));
}

TEST(OggParser, LengthIsLookedForInTheLast256KiB) {
    const std::string sound = Sound(7, 44100);
    for (const std::size_t more : {60000U, 70000U, 130000U, 200000U, 255000U}) {
        EXPECT_EQ(Length(Vorbis(sound + std::string(more, 'x'))), Pages(1000)) << more;
    }
    EXPECT_EQ(Length(Vorbis(Sounds(7, 44100, 4096, 200) + Sounds(8, 4096, 4096, 40))), Pages(19483));
    EXPECT_EQ(Length(Vorbis(sound + std::string(300000, 'x'))), "");
    // A header that goes over from one part to the next.
    const std::string before = sound + std::string(70000, 'x');
    for (std::size_t at = 0; at < 60; at += 3) {
        EXPECT_EQ(Length(Vorbis(before + Sound(7, 88200, 20, 1) + std::string(65536 - at, 'x'))),
                  Pages(2000));
    }
}

TEST(OggParser, PreSkipOfOpusIsNotHeard) {
    const auto opus = [](const std::string& aSound) {
        return File(OpusHead(312), "OpusTags" + Comments({}), aSound);
    };
    EXPECT_EQ(Length(opus(Sound(7, 48312) + Sound(7, 480312))), Pages(10000));
    EXPECT_EQ(Length(opus(Sound(7, 312 + 48))), Pages(1));
    EXPECT_EQ(Length(opus(Sound(7, 312))), "");
    EXPECT_EQ(Length(opus(Sound(7, 200))), ""); // less than is skipped
}

TEST(OggParser, CaptureThatStartsInTheMiddleIsAsLongAsItIs) {
    // 20 packets of Vorbis hold 20480 samples at most; a start below a second is none.
    EXPECT_EQ(Length(Vorbis(Sound(7, 20480 + 441000) + Sound(7, 882000))), Pages(10000));
    EXPECT_EQ(Length(Vorbis(Sound(7, 20480 + 44100) + Sound(7, 882000))), Pages(19000));
    EXPECT_EQ(Length(Vorbis(Sound(7, 20480 + 44099) + Sound(7, 882000))), Pages(20000));
    EXPECT_EQ(Length(Vorbis(Sound(7, kNoGranule) + Sound(7, 20480 + 441000) + Sound(7, 882000))),
              Pages(10000));
    flac::Stream stream;
    EXPECT_EQ(Length(File(FLACHead(stream), "", Sound(7, 20 * 4096 + 44100) + Sound(7, 441000))),
              Pages(9000));
    EXPECT_EQ(Length(File(SpeexHead(), "", Sound(7, 20 * 320 + 16000) + Sound(7, 160000))), Pages(9000));
}

TEST(OggParser, PacketsOfOpusTellHowMuchAPageHolds) {
    struct Row {
        Packets mPackets;
        std::uint64_t mSamples;
    };
    const Row rows[] = {{Packets(3, "\x18.."), 3 * 2880},   // 60 ms
                        {Packets(3, "\x78"), 3 * 960},      // 20 ms, of both codecs
                        {Packets(3, "\xE0"), 3 * 120},      // 2.5 ms
                        {Packets(3, "\xFD"), 3 * 1920},     // two of 20 ms
                        {Packets(3, "\xFB\x86"), 3 * 5760}, // six of 20 ms, of varying size
                        {{"\xFC", "\xFB", "", std::string(600, '\xFC')}, 2 * 960}}; // some hold nothing
    for (const Row& row : rows) {
        const std::string first = Page(7, 0, row.mSamples + 480000, row.mPackets);
        EXPECT_EQ(Length(File(OpusHead(0), "OpusTags", first + Sound(7, 960000))), Pages(10000))
            << row.mSamples;
    }
    // What began on the page before does not count.
    const std::string before = Page(7, 0, kNoGranule, {});
    const std::string goesOn = Page(7, kGoesOn, 960 + 480000, {"rest", "\xFC"});
    EXPECT_EQ(Length(File(OpusHead(0), "OpusTags", before + goesOn + Sound(7, 960000))), Pages(10000));
}

TEST(OggParser, LinksOfAChainAddUp) {
    const std::string first = Link(1, 44100, Sounds(1, 4410, 4410, 100)); // 10 s
    const std::string second = Link(2, 8000, Sounds(2, 1000, 1000, 40));  // 5 s
    const std::string third = Link(3, 48000, Sounds(3, 4800, 4800, 30));  // 3 s
    EXPECT_EQ(Length(first + second), Pages(15000));
    EXPECT_EQ(Length(second + third), Pages(8000));
    EXPECT_EQ(Length(first + second + third), Pages(18000));
    EXPECT_EQ(Length(third + first + second + Sounds(9, 0, 1, 1)), Pages(18000)) << "the end is of nothing";
    const std::string record = Parsed(first + second);
    // The first link's facts, and the mean of both: 140 pages of 4067 bytes, and what stands between them.
    EXPECT_EQ(Values(record, {"sf", "ca", "ea"}), "sf=44100 ca=\"Vorbis\" ea=303729");
}

TEST(OggParser, ChainOfMoreLinksThanReadsIsEstimatedAndNeverShort) {
    std::string chain;
    for (unsigned i = 0; i < 40; ++i) {
        chain += Link(i, 44100, Sounds(i, 4410, 4410, 60)); // 6 s of 240 KB
    }
    const std::string record = Parsed(chain);
    EXPECT_EQ(Values(record, {"md"}), "md=\"estimate: of the first links\"");
    const std::uint64_t length = std::stoull(pictures::ValueOf(record, "dm"));
    EXPECT_GE(length, 240000U);
    EXPECT_LE(length, 280000U);
}

TEST(OggParser, EstimateOfAChainIsNotShortWhereItsFirstLinksTakeMoreBytes) {
    std::string chain;
    for (unsigned i = 0; i < 40; ++i) { // 6 s each, the first of a tenth more bytes
        const unsigned pages = i < 20 ? 66 : 60;
        chain += Link(i, 44100, Sounds(i, 264600 / pages, 264600 / pages, pages));
    }
    const std::string record = Parsed(chain);
    EXPECT_EQ(Values(record, {"md"}), "md=\"estimate: of the first links\"");
    EXPECT_GE(std::stoull(pictures::ValueOf(record, "dm")), 240000U);
}

TEST(OggParser, BorderOfAChainIsFoundWhereverTheLastPartThatIsReadHasIt) {
    const std::string head = Page(1, kFirst, 0, {VorbisHead(44100)});
    const std::string first = Link(1, 44100, Sounds(1, 4410, 4410, 10)); // 1 s
    const std::string second = Link(2, 8000, Sounds(2, 800, 800, 15));   // 1.5 s
    for (std::size_t border = 65200; border < 65536; border += 7) {
        std::string chain = first + std::string(head.size() + border - first.size(), 'x') + second;
        chain += std::string(head.size() + 131072 - 2000 - chain.size(), 'x');
        chain += Sound(2, 16000, 1, head.size() + 131072 - chain.size() - 27 - 8);
        ASSERT_EQ(chain.size(), head.size() + 131072); // so one half is a part, to its last byte
        EXPECT_EQ(Length(chain), Pages(3000)) << border;
    }
}

TEST(OggParser, LinksThatShareASerialNumberCountAsOne) {
    // RFC 3533, 4, forbids it: pages do not say then to which link they belong.
    const std::string link = Link(1, 44100, Sounds(1, 4410, 4410, 100));
    EXPECT_EQ(Length(link + link), Pages(10000));
}

TEST(OggParser, SeveralSoundsAreCountedAndTheFirstTold) {
    const std::string file = Page(1, kFirst, 0, {"fishead\0"s}) + Page(7, kFirst, 0, {OpusHead()}) +
                             Page(8, kFirst, 0, {VorbisHead()}) + Page(7, 0, 0, {"OpusTags" + Comments({})}) +
                             Page(8, 0, 0, {"\x03vorbis" + Comments({})}) + Sound(7, 48312) + Sound(8, 88200);
    EXPECT_EQ(Values(Parsed(file), {"ca", "ta", "dm", "ea"}), "ca=\"Opus\" ta=2 dm=1000");
}

TEST(OggParser, StreamsAreCounted) {
    std::string others;
    for (unsigned i = 1; i < kOgg_MaxStreams; ++i) {
        others += Page(i + 100, kFirst, 0, {"kate"});
    }
    const std::string vorbis = Vorbis(Sound(7, 44100));
    EXPECT_EQ(Length(others + vorbis), Pages(1000)); // the last of sixteen
    EXPECT_EQ(Parsed(others + Page(99, kFirst, 0, {"kate"}) + vorbis), "null\n");
}

TEST(OggParser, CommentsGoOverAsManyPagesAsTheyTakeUpToALimit) {
    const auto texts = [](std::size_t aBefore) {
        std::string file = Page(7, kFirst, 0, {VorbisHead()});
        for (const std::string& page :
             PagesOfOgg(7, "\x03vorbis" + Comments({std::string(aBefore, 'c'), "title=T"}), 65025)) {
            file += page;
        }
        return Values(Parsed(file + Sound(7, 44100)), {"title", "dm"});
    };
    EXPECT_EQ(texts(100), "title=\"T\" dm=1000");
    EXPECT_EQ(texts(5 * 65025), "title=\"T\" dm=1000");
    EXPECT_EQ(texts(6 * 65025), "dm=1000");
    EXPECT_EQ(texts(9 * 65025), "dm=1000");
}

TEST(OggParser, CoverOfFLACMayStandInAPacketOfItsOwn) {
    const auto cover = [](const std::vector<std::string>& aPackets) {
        std::string file = Page(7, kFirst, 0, {FLACHead(flac::Stream())});
        for (const std::string& packet : aPackets) {
            for (const std::string& page : PagesOfOgg(7, packet, 8160)) {
                file += page;
            }
        }
        return Values(Parsed(file + Sound(7, 44100)), {"title", "cm", "cs", "dm"});
    };
    const std::string comments = FlacBlock(4, Comments({"title=T"}));
    const std::string padding = FlacBlock(1, std::string(9000, '\0'));
    const auto picture = [](unsigned aType, std::size_t aMore) {
        return FlacBlock(6, PictureOfFlac(aType, kPng + std::string(aMore, 'p')));
    };
    EXPECT_EQ(cover({comments, picture(3, 50000)}), "title=\"T\" cm=\"image/png\" cs=50013 dm=1000");
    EXPECT_EQ(cover({comments, padding, picture(4, 0), picture(3, 1)}),
              "title=\"T\" cm=\"image/png\" cs=14 dm=1000");
    // Pages are counted: those up to the sixth are read, and a picture's first one tells.
    EXPECT_EQ(cover({comments, picture(4, 25000), picture(3, 0)}),
              "title=\"T\" cm=\"image/png\" cs=13 dm=1000");
    EXPECT_EQ(cover({comments, picture(4, 33000), picture(3, 0)}),
              "title=\"T\" cm=\"image/png\" cs=33013 dm=1000");
    // What follows the last block is sound, whatever it looks like.
    EXPECT_EQ(cover({FlacBlock(4, Comments({"title=T"}), true), picture(3, 0)}), "title=\"T\" dm=1000");
}

TEST(OggParser, UsualFileCostsTheStartAndTheEnd) {
    const auto costs = [](const std::string& aFile) {
        AwkwardStream::Costs counted;
        EXPECT_NE(Parsed(aFile, &counted), "null\n");
        return std::to_string(counted.mReads) + " " + std::to_string(counted.mBytes);
    };
    EXPECT_EQ(costs(Vorbis(Sounds(7, 44100, 4096, 200), {"title=T"})), "2 73728");
    // A cover of some pages costs a block each, and one to the first page of sound.
    std::string file = Page(7, kFirst, 0, {VorbisHead()});
    for (const std::string& page : PagesOfOgg(
             7,
             "\x03vorbis" +
                 Comments({"title=T", PictureComment(PictureOfFlac(3, kPng + std::string(140000, 'p')))}),
             65025)) {
        file += page;
    }
    EXPECT_EQ(costs(file + Sounds(7, 44100, 4096, 200)), "5 86016");
}

TEST(OggParser, HalfAGigabyteCostsNoMore) {
    SparseStream stream(500000000,
                        {{0, Vorbis(Sound(7, 44100), {"title=T"})}, {500000000 - 2047, Sound(7, 441000000)}});
    OggParser parser;
    const Record record(parser.Parse(stream));
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(record->GetUInt32("dm", 0), 10000000U);
    EXPECT_EQ(stream.mReads, 2U);
    EXPECT_EQ(stream.mBytes, 73728U);
}

TEST(OggParser, NegativePositionTellsNothing) {
    // -1 is that of a page on which no packet ends; no other one has a meaning either.
    for (const std::uint64_t negative : {kNoGranule - 1, std::uint64_t{1} << 63, kNoGranule - 44100}) {
        EXPECT_EQ(Length(Vorbis(Sound(7, 44100) + Sound(7, 441000) + Sound(7, negative))), Pages(10000));
        EXPECT_EQ(Length(Vorbis(Sound(7, negative) + Sound(7, 20480) + Sound(7, 441000))), Pages(10000));
        EXPECT_EQ(Length(Vorbis(Sound(7, negative))), "");
    }
}

TEST(OggParser, LengthLongerThanAnyRecordingIsNone) {
    EXPECT_EQ(Length(Vorbis(Sound(7, 0) + Sound(7, INT64_MAX))), "");
    EXPECT_EQ(Length(File(Theora(1, 0xFFFFFFFF), "", Sound(7, INT64_MAX))), "");
}

TEST(OggParser, SaysWhatItMayAnnounce) {
    EXPECT_EQ(OggParser().GetDLNAInfo(), "audio/ogg:*,video/ogg:*");
    EXPECT_EQ(OggParser().GetType(), "ogg");
}
