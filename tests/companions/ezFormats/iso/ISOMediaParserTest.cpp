#include "companions/ezFormats/FormatFiles.h"
#include "companions/ezFormats/SparseStream.h"
#include "companions/ezFormats/elementary/EltStreamKit.h"
#include "companions/ezFormats/iso/ISOBytes.h"

#include "support/Samples.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace iso;

namespace {

std::string Type(const std::string& aBytes) {
    return ValueOf(Parsed(aBytes), "mt");
}

std::string Times(const std::string& aBytes) {
    return Values(Parsed(aBytes), {"du", "md"});
}

std::vector<std::string> UsualFiles() {
    Track edited;
    edited.mEdits = {{200, -1}, {800, 100}};
    const std::string samples = Box("mdat", std::string(70000, '.'));
    return {File({edited, VideoTrack(VideoEntry("mp4v", ESDS(0x20, std::string("\0\0\1\xB0\1", 5))))},
                 Items(Item("\xA9nam", "A") + Item("gnre", Big(8, 2), 0))),
            FileType() + Movie({EmptyTrack()}, Extends()) + Fragment(1, 3) + Box("mdat", "..") +
                Fragment(1, 4),
            File({Track()}, Box("udta", FullBox("titl", Big(0x15C7, 2) + "T"))) + Movie({Track()}),
            File({Track(), VideoTrack()}),
            FileType() + samples + Movie({Track(), VideoTrack()}),
            FileType() + Movie({EmptyTrack()}, Extends()) + Fragment(1, 7) + samples + Fragment(1, 8)};
}

/// Three hundred tracks, and as many boxes at the top, each out of reach of the block before it.
std::vector<std::string> CostlyFiles() {
    std::vector<Track> tracks(300);
    std::string scattered;
    for (Track& track : tracks) {
        track.mSizes.assign(2000, 1);
        track.mfEnabled = false;
        scattered += Box("free", std::string(6000, '.'));
    }
    return {File(tracks), FileType() + scattered + Movie({Track()}),
            FileType() + Movie({EmptyTrack()}, Extends()) + scattered + Fragment(1, 1)};
}

const FormatFiles kFiles("mp4", {96, 1U << 20}, {}, UsualFiles, CostlyFiles);

} // namespace

// ---- samples of an independent encoder; the values are those of an independent prober ----

TEST(ISOMediaParser, SongIsRead) {
    // The edit list presents 4.6 s; the average is that of "esds".
    EXPECT_EQ(
        Parsed(ReadSample("music/evening-train.m4a")),
        "ac=2\n"
        "ar=24481\n"
        "br=27633\n"
        "ca=\"AAC\"\n"
        "cn=\"item.audioItem\"\n"
        "ct=\"MP4\"\n"
        "da=\"2001\"\n"
        "dl=\"DLNA.ORG_PN=AAC_ISO_320;DLNA.ORG_OP=01;DLNA.ORG_FLAGS=01500000000000000000000000000000\"\n"
        "dm=4600\n"
        "du=4\n"
        "mb=27633\n"
        "md=\"header\"\n"
        "mt=\"audio/mp4\"\n"
        "sf=44100\n"
        "ta=1\n"
        "title=\"Evening Train\"\n"
        "creator=\"The Test Tones\"\n"
        "genre=\"Ambient\"\n"
        "album=\"Half a Second\"\n");
}

TEST(ISOMediaParser, ShortFilmIsRead) {
    const std::string record = Parsed(ReadSample("video/kite-day.mp4"));
    EXPECT_EQ(Values(record, {"mt", "vc", "vp", "vl", "wi", "he", "fr", "pr", "vr", "mv", "ev"}),
              "mt=\"video/mp4\" vc=\"H264\" vp=\"ConstrainedBaseline\" vl=11 wi=176 he=144 fr=25000 "
              "pr=\"progressive\" vr=18958");
    EXPECT_EQ(
        Values(record, {"ta", "ca", "sf", "ac", "ar", "ma", "br", "du", "md", "title"}),
        "ta=1 ca=\"AAC\" sf=44100 ac=1 ar=23998 ma=24000 br=51139 du=4 md=\"header\" title=\"Kite Day\"");
}

TEST(ISOMediaParser, SampleOfAConformanceTestKeepsTheProfileOfItsName) {
    // "btrt" states 320000 at most and 51104 on average, 65146 are of the audio.
    EXPECT_EQ(Parsed(ReadSample("conformance/B-AVC_MP4_BL_CIF15_AAC_520-1.mp4")),
              "ac=2\n"
              "ar=65146\n"
              "br=133376\n"
              "ca=\"AAC\"\n"
              "cd=8\n"
              "cn=\"item.videoItem\"\n"
              "cr=\"4:2:0\"\n"
              "ct=\"MP4\"\n"
              "da=\"2001\"\n"
              "dl=\"DLNA.ORG_PN=AVC_MP4_BL_CIF15_AAC_520;DLNA.ORG_OP=01;"
              "DLNA.ORG_FLAGS=01500000000000000000000000000000\"\n"
              "dm=1000\n"
              "dr=\"11:9\"\n"
              "du=1\n"
              "fr=15000\n"
              "he=288\n"
              "mb=385146\n"
              "md=\"header\"\n"
              "mt=\"video/mp4\"\n"
              "mv=320000\n"
              "pa=\"1:1\"\n"
              "pr=\"progressive\"\n"
              "sf=48000\n"
              "ta=1\n"
              "vc=\"H264\"\n"
              "vl=12\n"
              "vp=\"ConstrainedBaseline\"\n"
              "vr=51104\n"
              "vt=1\n"
              "wi=352\n"
              "title=\"Conformance\"\n"
              "creator=\"The Test Tones\"\n"
              "genre=\"Test\"\n"
              "album=\"Half a Second\"\n");
}

// ---- which files are of the format ----

TEST(ISOMediaParser, BrandAndTracksDecideTheMimeType) {
    const auto type = [](const char* aBrand, bool afVideo) {
        return Type(FileType(aBrand) + Movie({afVideo ? VideoTrack() : Track()}));
    };
    EXPECT_EQ(type("isom", true), "\"video/mp4\"");
    EXPECT_EQ(type("isom", false), "\"audio/mp4\"");
    EXPECT_EQ(type("M4A ", false), "\"audio/mp4\"");
    EXPECT_EQ(type("what", false), "\"audio/mp4\"");
    EXPECT_EQ(type("qt  ", true), "\"video/quicktime\"");
    EXPECT_EQ(type("qt  ", false), "\"video/quicktime\"");
    EXPECT_EQ(type("3gp5", true), "\"video/3gpp\"");
    EXPECT_EQ(type("3gr6", false), "\"audio/3gpp\"");
    EXPECT_EQ(type("3gs6", true), "\"video/3gpp\"");
    EXPECT_EQ(type("3g2a", true), "\"video/3gpp2\"");
    EXPECT_EQ(type("3g2a", false), "\"audio/3gpp2\"");
}

TEST(ISOMediaParser, BrandDecidesTheContainer) {
    const std::vector<std::pair<const char*, const char*>> brands = {
        {"isom", "MP4"}, {"M4A ", "MP4"}, {"what", "MP4"}, {"qt  ", "MOV"},
        {"3gp5", "3GP"}, {"3gs6", "3GP"}, {"3g2a", "3G2"}, {"kddi", "3G2"}};
    for (const auto& [brand, container] : brands) {
        EXPECT_EQ(Values(Parsed(FileType(brand) + Movie({Track()})), {"ct"}),
                  "ct=\"" + std::string(container) + "\"")
            << brand;
    }
    const std::string beyond3GPP = VideoEntry("avc1", Box("avcC", Hex({1, 100, 0, 31, 0xFF, 0xE0})));
    EXPECT_EQ(Values(Parsed(FileType("3gp5", "3gp5isom") + Movie({VideoTrack(beyond3GPP)})), {"mt", "ct"}),
              "mt=\"video/mp4\" ct=\"MP4\"");
}

TEST(ISOMediaParser, BrandOf3GPPHoldsForWhat3GPPKnows) {
    const auto type = [](const char* aBrand, const std::string& aVideo, const std::string& anAudio,
                         const std::string& aCompatible = "3gp5isom") {
        std::vector<Track> tracks;
        if (!aVideo.empty()) {
            tracks.push_back(VideoTrack(aVideo));
        }
        if (!anAudio.empty()) {
            Track audio;
            audio.mEntry = anAudio;
            tracks.push_back(audio);
        }
        return Type(FileType(aBrand, aCompatible) + Movie(tracks));
    };
    const auto avc = [](int aProfile, int aLevel) {
        return VideoEntry("avc1", Box("avcC", Hex({1, aProfile, 0, aLevel, 0xFF, 0xE0})));
    };
    const std::string amr = AudioEntry("samr", "");
    EXPECT_EQ(type("3gp5", avc(100, 31), AAC()), "\"video/mp4\"");
    EXPECT_EQ(type("3gp4", avc(77, 30), ""), "\"video/mp4\"");
    EXPECT_EQ(type("3gr6", avc(66, 31), amr), "\"video/mp4\"");
    EXPECT_EQ(type("3gp5", avc(66, 30), amr), "\"video/3gpp\"");
    EXPECT_EQ(type("3gp5", VideoEntry("avc1", ""), amr), "\"video/3gpp\""); // nothing says otherwise
    EXPECT_EQ(type("3gp5", VideoEntry("s263", Box("d263", "made" + Hex({0, 70, 3}))), amr), "\"video/3gpp\"");
    EXPECT_EQ(type("3gp5", VideoEntry("hvc1", ""), AAC()), "\"video/mp4\"");
    EXPECT_EQ(type("3gp5", VideoEntry("mp4v", ESDS(0x20, Hex({0, 0, 1, 0xB0, 3}))), AAC()), "\"video/3gpp\"");
    EXPECT_EQ(type("3gp5", VideoEntry("mp4v", ESDS(0x20, Hex({0, 0, 1, 0xB0, 0xF5}))), AAC()),
              "\"video/mp4\"");
    EXPECT_EQ(type("3gp5", avc(66, 13), AudioEntry("ac-3", "")), "\"video/mp4\"");
    EXPECT_EQ(type("3gp5", "", AudioEntry(".mp3", "")), "\"audio/mp4\"");
    EXPECT_EQ(type("3gp5", "", AudioEntry("sawb", "")), "\"audio/3gpp\"");
    // What is encrypted is what it was before.
    EXPECT_EQ(type("3gp6", "", AudioEntry("enca", Box("sinf", Box("frma", "samr")))), "\"audio/3gpp\"");
    EXPECT_EQ(type("3gp6", "", AudioEntry("enca", Box("sinf", Box("frma", ".mp3")))), "\"audio/mp4\"");
    // Without a brand of plain MP4, and for 3GPP2, the first brand is all that there is.
    EXPECT_EQ(type("3gp5", avc(100, 31), AAC(), "3gp53gp4"), "\"video/3gpp\"");
    EXPECT_EQ(type("3gp5", avc(100, 31), AAC(), ""), "\"video/3gpp\"");
    EXPECT_EQ(type("3gp5", avc(100, 31), AAC(), "mp42"), "\"video/mp4\"");
    EXPECT_EQ(type("3gp5", avc(100, 31), AAC(), "iso6"), "\"video/mp4\"");
    EXPECT_EQ(type("3gp5", avc(100, 31), AAC(), "is"), "\"video/3gpp\""); // half a brand
    EXPECT_EQ(type("3g2a", avc(100, 31), AAC()), "\"video/3gpp2\"");
    EXPECT_EQ(type("isom", VideoEntry("s263", ""), amr), "\"video/mp4\"");
    // So many brands are looked at.
    std::string brands;
    for (int i = 0; i < 31; ++i) {
        brands += "3gp5";
    }
    EXPECT_EQ(type("3gp5", avc(100, 31), AAC(), brands + "isom"), "\"video/mp4\"");
    EXPECT_EQ(type("3gp5", avc(100, 31), AAC(), brands + "3gp4isom"), "\"video/3gpp\"");
}

TEST(ISOMediaParser, QuickTimeFileOfBeforeFileTypesIsOneWhenItHasAMovie) {
    for (const char* first : {"wide", "free", "skip", "mdat"}) {
        EXPECT_EQ(Type(Box(first, "") + Movie({VideoTrack()})), "\"video/quicktime\"") << first;
        EXPECT_EQ(Refusal(Box(first, "nothing") + Box("mdat", "samples")),
                  "ISOMediaParser: malformed: ends before a \"moov\" box")
            << first;
    }
    EXPECT_EQ(Type(Movie({VideoTrack()})), "\"video/quicktime\"");
    EXPECT_EQ(Refusal(Box("uuid", "") + Movie({VideoTrack()})),
              "ISOMediaParser: malformed: begins with a box \"uuid\"");
}

TEST(ISOMediaParser, PicturesInBoxesAreRefused) {
    for (const char* brand : {"mif1", "heic", "avif", "avis", "crx "}) {
        EXPECT_EQ(Refusal(FileType(brand) + Movie({VideoTrack()})),
                  "ISOMediaParser: unsupported: pictures of the brand \"" +
                      std::string(brand).substr(0, std::string(brand).find(' ')) + "\"");
    }
    EXPECT_EQ(Refusal(FileType("jp2 ") + Box("jp2h", "")),
              "ISOMediaParser: unsupported: pictures of the brand \"jp2\"");
}

TEST(ISOMediaParser, MovieWithoutAudioAndVideoIsRefused) {
    Track text;
    text.mHandler = "text";
    EXPECT_EQ(Refusal(File({text})), "ISOMediaParser: unsupported: no audio or video in 1 tracks");
    EXPECT_EQ(Refusal(FileType() + Box("moov", "")),
              "ISOMediaParser: unsupported: no audio or video in 0 tracks");
}

TEST(ISOMediaParser, TextIsRefused) {
    EXPECT_EQ(Refusal("not a box at all"), "ISOMediaParser: malformed: ends before the end of its first box");
}

// ---- boxes at the top ----

TEST(ISOMediaParser, MovieIsFoundWhereverItStands) {
    const std::string movie = Movie({Track(), VideoTrack()});
    const std::string samples = Box("mdat", std::string(20000, '.'));
    const std::string first = Parsed(FileType() + movie + samples + samples);
    EXPECT_TRUE(IsComplete(first));
    EXPECT_EQ(Parsed(FileType() + samples + movie + samples), first);
    EXPECT_EQ(Parsed(FileType() + samples + samples + movie), first);
    // As the last box its size may be left out: up to the end.
    EXPECT_EQ(Parsed(FileType() + samples + samples + Big(0, 4) + movie.substr(4)), first);
}

TEST(ISOMediaParser, BoxesWithLargeSizesAreRead) {
    const std::string movie = Movie({Track()});
    const std::string content = movie.substr(8);
    const std::string file =
        FileType() + LargeBox("mdat", std::string(9000, '.')) + LargeBox("moov", content);
    EXPECT_EQ(Values(Parsed(file), {"ca", "du"}), "ca=\"AAC\" du=1");
    EXPECT_EQ(
        Values(Parsed(FileType() + Box("free", "....") + Box("uuid", std::string(16, 'u')) + movie), {"ca"}),
        "ca=\"AAC\"");
}

TEST(ISOMediaParser, DamagedSizesEndTheWalk) {
    const std::string movie = Movie({Track()});
    EXPECT_EQ(Refusal(FileType() + Big(7, 4) + "free" + movie),
              "ISOMediaParser: malformed: ends before a \"moov\" box");
    EXPECT_EQ(Refusal(FileType() + Big(1, 4) + "free" + Big(15, 8) + movie),
              "ISOMediaParser: malformed: ends before a \"moov\" box");
    EXPECT_EQ(Refusal(FileType() + Big(1, 4) + "free" + Big(UINT64_MAX, 8) + movie),
              "ISOMediaParser: malformed: ends before a \"moov\" box");
}

TEST(ISOMediaParser, BoxThatStatesMoreThanItsOwnBoxHasIsReadAsFarAsThatGoes) {
    const std::string whole = File({VideoTrack(), Track()});
    const std::vector<const char*> keys = {"vc", "wi", "he", "fr", "ca", "sf", "ar", "du"};
    const std::string facts = Values(Parsed(whole), keys);
    EXPECT_EQ(facts, "vc=\"H264\" wi=320 he=240 fr=25000 ca=\"AAC\" sf=44100 ar=8000 du=1");
    for (const char* const box : {"trak", "mdia", "minf", "stbl"}) {
        std::string damaged = whole;
        damaged.replace(whole.rfind(box) - 4, 4, Big(0x00FFFFFF, 4));
        EXPECT_EQ(Values(Parsed(damaged), keys), facts) << box;
    }
    // A table is whole or none; what stands before it is kept.
    std::string table = whole;
    table.replace(whole.rfind("stsz") - 4, 4, Big(0x00FFFFFF, 4));
    table.replace(whole.rfind("stsz") + 8, 4, Big(0x00FFFFFF, 4));
    EXPECT_EQ(Values(Parsed(table), {"ca", "sf", "ar", "du"}), "ca=\"AAC\" sf=44100 du=1");
    // An entry of another's boxes: the description of the sound ends where its table does.
    std::string entry = whole;
    entry.replace(whole.rfind("mp4a") - 4, 4, Big(0x00FFFFFF, 4));
    EXPECT_EQ(Values(Parsed(entry), keys), facts);
}

TEST(ISOMediaParser, MovieMayLackAFewBytesOfItsEnd) {
    const std::vector<const char*> keys = {"ca", "sf", "ac", "ar", "du"};
    const std::string facts = "ca=\"AAC\" sf=44100 ac=2 ar=8000 du=1";
    const std::string movie = Movie({Track()});
    const auto stating = [&](std::size_t aMore) {
        return FileType() + Box("mdat", std::string(1500, '.')) + Big(movie.size() + aMore, 4) +
               movie.substr(4);
    };
    for (const std::size_t more : {0U, 1U, 16U, 64U}) {
        EXPECT_EQ(Values(Parsed(stating(more)), keys), facts) << more;
    }
    EXPECT_EQ(Refusal(stating(65)), "ISOMediaParser: malformed: ends before a \"moov\" box");
    // What is missing is the end: 16 bytes of the places of samples.
    const std::string whole = stating(0);
    EXPECT_EQ(Values(Parsed(whole.substr(0, whole.size() - 16)), keys), facts);
    EXPECT_EQ(Refusal(whole.substr(0, whole.size() - 65)),
              "ISOMediaParser: malformed: ends before a \"moov\" box");
}

TEST(ISOMediaParser, FileThatIsCutAfterItsMovieIsRead) {
    const std::string movie = FileType() + Movie({Track()});
    EXPECT_TRUE(IsComplete(Parsed(movie + Big(1000000, 4) + "mdat" + "cut")));
}

// ---- costs ----

TEST(ISOMediaParser, FilmOfFourGigabytesWithItsMovieAtTheEndCostsAHandfulOfReads) {
    Track audio;
    audio.mDuration = 7200000;
    audio.mSizes.assign(337500, 300); // two hours, 1.3 MB of sizes
    Track video = VideoTrack();
    video.mDuration = 7200000;
    video.mSizes.assign(180000, 20000);
    const std::string movie = Movie({video, audio}, Items(Item("\xA9nam", "Long")), MovieHead(1000, 7200000));
    const std::uint64_t samples = UINT64_C(0x100000000) + 123456; // more than 32 bits can say
    const std::string start = FileType() + Big(1, 4) + "mdat" + Big(samples, 8);
    const std::uint64_t place = FileType().size() + samples;
    SparseStream stream(place + movie.size(), {{0, start}, {place, movie}});
    ISOMediaParser parser;
    const std::string record = DumpRecord(Record(parser.Parse(stream)).get());
    // 300 bytes 337500 times in 7200 s are 112500 bits a second; the rest of (2^32+123456+...) * 8 / 7200 is
    // the video's.
    EXPECT_EQ(Values(record, {"du", "ca", "ar", "ea", "vc", "vr", "fr", "title"}),
              "du=7200 ca=\"AAC\" ea=112500 vc=\"H264\" fr=25000 title=\"Long\"");
    EXPECT_EQ(ValueOf(record, "br"), std::to_string((place + movie.size()) * 8 / 7200));
    EXPECT_EQ(ValueOf(record, "ev"), std::to_string((place + movie.size()) * 8 / 7200 - 112500));
    EXPECT_LE(stream.mReads, 8U);
    EXPECT_LE(stream.mBytes, 256U * 1024);
}

TEST(ISOMediaParser, EndOfAnUnknownSizeMayBeMetAsAnError) {
    const std::string file =
        FileType() + Movie({EmptyTrack()}, Extends()) + Fragment(1, 7) + Box("mdat", std::string(70000, '.'));
    Delivery unknown;
    unknown.mfSizeKnown = false;
    // The source does not move to where the box after the last one would stand.
    const std::string cut = Parsed(file.substr(0, file.size() - 10), unknown);
    EXPECT_TRUE(IsComplete(cut));
    EXPECT_EQ(cut, Parsed(file, unknown));
}

TEST(ISOMediaParser, BoxesOutOfReachOfEachOtherUseUpTheBudget) {
    EXPECT_EQ(Refusal(CostlyFiles()[1]), "ISOMediaParser: limit: budget used up before a \"moov\" box");
}

TEST(ISOMediaParser, SourceThatFailsGivesNoRecord) {
    const std::string file = FileType() + Box("mdat", std::string(20000, '.')) + Movie({Track()});
    for (const std::size_t offset : {std::size_t{0}, std::size_t{20040}, std::size_t{20400}}) {
        Delivery delivery;
        delivery.mFailingOffset = offset;
        EXPECT_EQ(Refusal(file, delivery).substr(0, 27), "ISOMediaParser: read error:") << offset;
    }
    Delivery forward;
    forward.mfSeekable = false;
    EXPECT_EQ(Refusal(file, forward).substr(0, 27), "ISOMediaParser: read error:");
}

// ---- durations ----

TEST(ISOMediaParser, DurationIsTheLongestOfTheHeaders) {
    Track track;
    track.mDuration = 65999; // thousandths
    EXPECT_EQ(Times(File({track})), "du=65 md=\"header\"");
    EXPECT_EQ(Times(File({track}, "", MovieHead(600, 66 * 600))), "du=66 md=\"header\"");
    EXPECT_EQ(Times(File({track}, "", MovieHead(0, 5000))), "du=65 md=\"header\""); // no timescale
    EXPECT_EQ(Times(File({track}, "", MovieHead(1000, UINT32_MAX))), "du=65 md=\"header\"");
    Track longer = VideoTrack();
    longer.mDuration = 70000;
    EXPECT_EQ(Times(File({track, longer})), "du=70 md=\"header\"");
    longer.mfEnabled = false;
    EXPECT_EQ(Times(File({track, longer})), "du=65 md=\"header\"");
    track.mfEnabled = false; // nothing is enabled: whatever is played is one of these
    EXPECT_EQ(Times(File({track, longer})), "du=70 md=\"header\"");
}

TEST(ISOMediaParser, DurationThatAMediaHeaderLeavesOpenIsThatOfItsSamples) {
    Track track;
    track.mSizes.assign(42, 10);
    for (const std::uint64_t untold : {std::uint64_t{0}, std::uint64_t{UINT32_MAX}}) {
        track.mDuration = untold;
        EXPECT_EQ(Times(File({track})), "du=4 md=\"header\"");
        EXPECT_EQ(ValueOf(Parsed(File({track})), "ar"), "800");
    }
}

TEST(ISOMediaParser, TimesOfEightBytesAreRead) {
    Track track;
    track.mVersion = 1;
    track.mTimescale = 90000;
    track.mDuration = UINT64_C(90000) * 100000; // more than 32 bits
    EXPECT_EQ(Times(File({track})), "du=100000 md=\"header\"");
    EXPECT_EQ(Times(File({Track()}, "", MovieHead(90000, UINT64_C(90000) * 200000, 1))),
              "du=200000 md=\"header\"");
    // More than any recording: damage.
    EXPECT_EQ(Times(File({Track()}, "", MovieHead(1, UINT64_C(40000000), 1))), "du=1 md=\"header\"");
}

TEST(ISOMediaParser, DurationThatNothingTellsIsLeftOut) {
    Track track;
    track.mTimescale = 0;
    EXPECT_EQ(Times(File({track})), "");
    EXPECT_TRUE(IsComplete(Parsed(File({track}))));
}

TEST(ISOMediaParser, EditListsShortenAndDelay) {
    Track track;
    track.mTimescale = 44100;
    track.mDuration = 441000; // 10 s
    track.mEdits = {{8000, 44100}};
    EXPECT_EQ(Times(File({track})), "du=8 md=\"header\"");
    track.mEdits = {{3000, -1}, {8000, 0}}; // after a delay
    EXPECT_EQ(Times(File({track})), "du=11 md=\"header\"");
    track.mEdits = {{0, 44100}}; // from the first second to the end
    EXPECT_EQ(Times(File({track})), "du=9 md=\"header\"");
    track.mEdits = {{UINT32_MAX, 44100}}; // the same: not known
    EXPECT_EQ(Times(File({track})), "du=9 md=\"header\"");
    track.mTimescale = 3; // 2/3 s of delay and 1/3 s of the media are a second
    track.mDuration = 4;
    track.mEdits = {{40000, -1}, {0, 3}};
    EXPECT_EQ(Times(File({track}, "", MovieHead(60000, 0))), "du=1 md=\"header\"");
    track.mTimescale = 44100;
    track.mDuration = 441000;
    track.mEdits = {{3000, -1}}; // nothing is presented: no such list
    EXPECT_EQ(Times(File({track})), "du=10 md=\"header\"");
    track.mVersion = 1;
    track.mEdits = {{3000, -1}, {4000, 0}};
    EXPECT_EQ(Times(File({track})), "du=7 md=\"header\"");
}

// ---- fragments ----

TEST(ISOMediaParser, FragmentsAreCountedWhenNoHeaderTells) {
    const std::string movie = FileType() + Movie({EmptyTrack()}, Extends());
    const std::string samples = Box("mdat", std::string(10000, '.'));
    // 15 and 16 samples of a tenth of a second and 500 bytes: 3.1 s, 40000 bits a second.
    const std::string record = Parsed(movie + Fragment(1, 15) + samples + Fragment(1, 16) + samples);
    EXPECT_EQ(Values(record, {"du", "md", "ar", "ea"}), "du=3 md=\"counted\" ar=40000");
    // With times the gap between them counts, and the time before the first does not.
    EXPECT_EQ(Times(movie + Fragment(1, 10, 50000) + samples + Fragment(1, 10, 55000)),
              "du=6 md=\"counted\"");
    // Another track's fragment does not count, and one that is cut counts up to there.
    EXPECT_EQ(Times(movie + Fragment(1, 15) + Fragment(9, 99)), "du=1 md=\"counted\"");
    EXPECT_EQ(Times(movie + Fragment(1, 15) + samples.substr(0, 5000)), "du=1 md=\"counted\"");
}

TEST(ISOMediaParser, ADamagedSizeAmongTheFragmentsIsNotTheEndOfTheFile) {
    const std::string fragment = Fragment(1, 10) + Box("mdat", std::string(5000, '.')); // of a second
    const std::string start = FileType() + Movie({EmptyTrack()}, Extends());
    std::string file = start;
    for (int i = 0; i < 40; ++i) {
        file += fragment;
    }
    EXPECT_EQ(Times(file), "du=40 md=\"counted\"");
    EXPECT_EQ(ValueOf(Parsed(file), "db"), "") << "an exact length";
    const std::size_t sizePlace = Fragment(1, 10).size();
    for (const std::size_t place : {std::size_t{0}, std::size_t{1}, std::size_t{20}, std::size_t{37}}) {
        for (const char* const size : {"\x7F", "\1"}) {
            std::string damaged = file;
            damaged.replace(start.size() + place * fragment.size() + sizePlace, 1, size);
            const std::string record = Parsed(damaged);
            EXPECT_EQ(ValueOf(record, "md"), "\"estimate: the first fragments, by their share of the bytes\"")
                << place;
            EXPECT_GE(std::stoi(ValueOf(record, "du")), 40) << place;
            EXPECT_LE(std::stoi(ValueOf(record, "dm")) - std::stoi(ValueOf(record, "db")), 40000) << place;
            EXPECT_LE(std::stoi(ValueOf(record, "du")), 47) << place;
        }
    }
    // However large the box of samples is that stands before the fragments.
    std::string hybrid = start + Box("mdat", std::string(50000, '.')) + file.substr(start.size());
    hybrid.replace(start.size() + 50008 + 35 * fragment.size() + sizePlace, 1, "\x7F");
    EXPECT_EQ(ValueOf(Parsed(hybrid), "md"),
              "\"estimate: the first fragments, by their share of the bytes\"");
    // One that is cut is counted up to there, wherever that is.
    for (const std::size_t left : {std::size_t{1}, std::size_t{7}, std::size_t{8}, std::size_t{60}, sizePlace,
                                   sizePlace + 3, sizePlace + 8, sizePlace + 4000}) {
        const std::string cut = file.substr(0, start.size() + 30 * fragment.size() + left);
        EXPECT_EQ(Times(cut), left < sizePlace ? "du=30 md=\"counted\"" : "du=31 md=\"counted\"") << left;
        const std::string first = file.substr(0, start.size() + left);
        EXPECT_EQ(Times(first), left < sizePlace ? "" : "du=1 md=\"counted\"") << left;
    }
}

TEST(ISOMediaParser, RunsWithoutTimesAndSizesTakeThoseOfTheirTrack) {
    const std::string run = FullBox("trun", Big(20, 4));
    const auto file = [&](const std::string& aHead) {
        return FileType() + Movie({EmptyTrack()}, Extends("", 50, 250)) +
               Box("moof", Box("traf", aHead + run));
    };
    // 20 samples of 50 ticks, and of 100 and 125 bytes where the fragment says so.
    EXPECT_EQ(Values(Parsed(file(FullBox("tfhd", Big(1, 4)))), {"du", "ar"}), "du=1 ar=40000");
    const std::string own = FullBox("tfhd", Big(1, 4) + Big(100, 4) + Big(125, 4), 0, 0x18);
    EXPECT_EQ(Values(Parsed(file(own)), {"du", "ar"}), "du=2 ar=10000");
}

TEST(ISOMediaParser, HeaderOfFragmentsGoesBeforeCounting) {
    const std::string extends = Extends(FullBox("mehd", Big(90000, 4)));
    std::string file = FileType() + Movie({EmptyTrack()}, extends);
    for (int i = 0; i < 5; ++i) {
        file += Fragment(1, 10) + Box("mdat", std::string(5000, '.'));
    }
    AwkwardStream::Costs costs;
    EXPECT_EQ(Values(Parsed(file, Delivery(), &costs), {"du", "md", "ar", "ea"}),
              "du=90 md=\"header\" ea=" + std::to_string(file.size() * 8 / 90));
    EXPECT_LE(costs.mReads, 2U);
    const std::string large = Extends(FullBox("mehd", Big(80000, 8), 1));
    EXPECT_EQ(Times(FileType() + Movie({EmptyTrack()}, large)), "du=80 md=\"header\"");
}

TEST(ISOMediaParser, IndicesOfFragmentsGoBeforeCounting) {
    const std::string samples = Box("mdat", std::string(9000, '.'));
    const std::string fragment = Fragment(1, 10) + samples;
    const auto index = [&](std::uint32_t aTicks) {
        const std::string entry = Big(fragment.size(), 4) + Big(aTicks, 4) + Big(0x90000000, 4);
        return FullBox("sidx", Big(1, 4) + Big(1000, 4) + Big(0, 8) + Big(0, 2) + Big(2, 2) + entry + entry);
    };
    const std::string movie = FileType() + Movie({EmptyTrack()}, Extends());
    EXPECT_EQ(Times(movie + index(7500) + fragment + fragment), "du=15 md=\"header\"");
    // One index after the other, as segments of a stream have them.
    const std::string two = index(7500) + fragment + fragment + index(2500) + fragment + fragment;
    EXPECT_EQ(Times(movie + two), "du=20 md=\"header\"");
    // Thirds of a second, which add up to whole ones: 8 1/3 + 8 1/3 + 3 1/3.
    const auto thirds = [&](std::uint32_t aTicks) {
        return FullBox("sidx", Big(1, 4) + Big(3, 4) + Big(0, 8) + Big(0, 2) + Big(1, 2) +
                                   Big(fragment.size(), 4) + Big(aTicks, 4) + Big(0x90000000, 4)) +
               fragment;
    };
    EXPECT_EQ(Times(movie + thirds(25) + thirds(25) + thirds(10)), "du=20 md=\"header\"");
    // What no index tells of is counted and added: a second.
    EXPECT_EQ(Times(movie + thirds(25) + thirds(25) + thirds(7) + fragment), "du=20 md=\"header\"");
    // Each track may have an index of its own to the same fragments: these count once.
    const auto shared = [&](std::size_t anAfter) {
        return FullBox("sidx", Big(1, 4) + Big(3, 4) + Big(0, 4) + Big(anAfter, 4) + Big(0, 2) + Big(1, 2) +
                                   Big(fragment.size(), 4) + Big(25, 4) + Big(0x90000000, 4));
    };
    const std::string pair = shared(shared(0).size()) + shared(0) + fragment;
    EXPECT_EQ(Values(Parsed(movie + pair + pair), {"dm", "md"}), "dm=16666 md=\"header\"");
    // What stands between counted fragments is not counted by their times once more: 1 + 8 1/3 + 1.
    const std::string mixed = Fragment(1, 10, 0) + samples + thirds(25) + Fragment(1, 10, 9333) + samples;
    EXPECT_EQ(Values(Parsed(movie + mixed), {"dm", "md"}), "dm=10333 md=\"header\"");
    // Of the fragments themselves the first are looked at: ten pictures a second, 40000 bits.
    Track video = EmptyTrack();
    video.mHandler = "vide";
    video.mEntry = VideoEntry("avc1", "");
    const std::string film = FileType() + Movie({video}, Extends()) + index(7500) + fragment + fragment;
    EXPECT_EQ(Values(Parsed(film), {"du", "fr", "vr", "ev"}),
              "du=15 fr=10000 ev=" + std::to_string(film.size() * 8 / 15));
    Track audio = EmptyTrack();
    audio.mID = 3;
    audio.mEntry = AAC(0, 8000);
    const std::string sound =
        FileType() + Movie({video, audio}, Extends()) + index(7500) + fragment + fragment;
    EXPECT_EQ(Values(Parsed(sound), {"du", "ar", "ev"}),
              "du=15 ar=8000 ev=" + std::to_string(sound.size() * 8 / 15 - 8000));
    // One that tells of more than there is, is none.
    EXPECT_EQ(Times(movie + index(7500) + fragment), "du=1 md=\"counted\"");
}

TEST(ISOMediaParser, ManyFragmentsAreEstimatedByTheFirstOnesAndAnEighthMore) {
    std::string file = FileType() + Movie({EmptyTrack()}, Extends());
    for (int i = 0; i < 200; ++i) {
        file += Fragment(1, 10) + Box("mdat", std::string(5000, '.'));
    }
    AwkwardStream::Costs costs;
    const std::string record = Parsed(file, Delivery(), &costs);
    // 200 s in truth, and so by the share of 48.
    EXPECT_EQ(ValueOf(record, "md"), "\"estimate: the first fragments, by their share of the bytes\"");
    EXPECT_EQ(ValueOf(record, "dm"), std::to_string(200 * 1000 * 9 / 8));
    EXPECT_EQ(Values(record, {"ar", "ea"}), "ea=40000");
    EXPECT_LE(costs.mReads, 60U);
}

// ---- tracks ----

TEST(ISOMediaParser, FirstEnabledTracksGiveTheFacts) {
    Track off;
    off.mfEnabled = false;
    off.mEntry = AudioEntry("ac-3", "");
    Track on;
    EXPECT_EQ(Values(Parsed(File({off, on})), {"ca", "ta"}), "ca=\"AAC\" ta=2");
    EXPECT_EQ(Values(Parsed(File({on, off})), {"ca", "ta"}), "ca=\"AAC\" ta=2");
    EXPECT_EQ(Values(Parsed(File({off})), {"ca", "ta"}), "ca=\"AC3\" ta=1");
}

TEST(ISOMediaParser, CoversAndPicturesOfChaptersAreNoVideo) {
    Track chapters = VideoTrack(VideoEntry("jpeg", ""));
    chapters.mSizes.assign(2, 9000);
    chapters.mSampleTicks = 500000;
    EXPECT_EQ(Values(Parsed(File({Track(), chapters})), {"mt", "vc", "vt"}), "mt=\"audio/mp4\"");
    chapters.mEntry = VideoEntry("mp4v", ESDS(0x6C, ""));
    EXPECT_EQ(Values(Parsed(File({chapters, Track()})), {"mt", "vc", "vt"}), "mt=\"audio/mp4\"");
    // A lone picture, however short the song.
    Track cover = VideoTrack(VideoEntry("jpeg", ""));
    cover.mSizes.assign(1, 9000);
    for (const std::uint32_t ticks : {500U, 1000U, 180000U}) {
        cover.mSampleTicks = ticks;
        EXPECT_EQ(Values(Parsed(File({Track(), cover})), {"mt", "vt"}), "mt=\"audio/mp4\"") << ticks;
    }
    // One picture a second is a slow film, and the least.
    Track slow = VideoTrack(VideoEntry("jpeg", ""));
    slow.mSizes.assign(5, 9000);
    slow.mSampleTicks = 1000;
    EXPECT_EQ(Values(Parsed(File({Track(), slow})), {"vc", "vt"}), "vc=\"MJPEG\" vt=1");
    slow.mSampleTicks = 1001;
    EXPECT_EQ(Values(Parsed(File({Track(), slow})), {"mt", "vt"}), "mt=\"audio/mp4\"");
    // A camera's film of pictures is video.
    EXPECT_EQ(Values(Parsed(File({Track(), VideoTrack(VideoEntry("jpeg", ""))})), {"vc", "vt"}),
              "vc=\"MJPEG\" vt=1");
}

// ---- how a film is turned ----

TEST(ISOMediaParser, MatrixOfATrackTurnsAndMirrorsItsPictures) {
    struct Case {
        std::string mMatrix;
        const char* mOrientation;
    };
    constexpr std::int64_t kOne = 65536;
    const std::vector<Case> cases = {
        {kNoMatrix, ""},
        {Matrix(-kOne, 0, 0, kOne), "2"},
        {Matrix(-kOne, 0, 0, -kOne), "3"},
        {Matrix(kOne, 0, 0, -kOne), "4"},
        {Matrix(0, kOne, kOne, 0), "5"},
        {Matrix(0, kOne, -kOne, 0), "6"}, // to the right is down, down is to the left: clockwise
        {Matrix(0, -kOne, -kOne, 0), "7"},
        {Matrix(0, -kOne, kOne, 0), "8"},
        {Matrix(0, 3 * kOne, -3 * kOne, 0), "6"},        // larger, too
        {Matrix(-3, kOne, -kOne, -3), "6"},              // the sine of a quarter turn by floating point
        {Matrix(511, kOne, -kOne, 511), "6"},            // just below 1/128
        {Matrix(512, kOne, -kOne, 512), ""},             // an angle
        {Matrix(46341, 46341, -46341, 46341), ""},       // an eighth of a turn
        {Matrix(0, kOne, 0, 0), ""},                     // nothing is left of the picture
        {Matrix(-INT64_C(0x80000000), 0, 0, kOne), "2"}, // the least number
        {std::string(36, '\0'), ""},
    };
    for (unsigned version : {0U, 1U}) {
        for (const Case& one : cases) {
            Track track = VideoTrack();
            track.mMatrix = one.mMatrix;
            track.mVersion = version;
            EXPECT_EQ(ValueOf(Parsed(File({track})), "ud"), one.mOrientation) << &one - cases.data();
        }
    }
    // The size stays that of the stored picture, and a sound is not turned.
    Track turned = VideoTrack();
    turned.mMatrix = Matrix(0, kOne, -kOne, 0);
    EXPECT_EQ(Values(Parsed(File({turned})), {"wi", "he", "ud"}), "wi=320 he=240 ud=6");
    Track sound;
    sound.mMatrix = turned.mMatrix;
    EXPECT_EQ(Values(Parsed(File({sound, VideoTrack()})), {"ca", "ud"}), "ca=\"AAC\"");
}

TEST(ISOMediaParser, MatrixOfTheMovieComesAfterThatOfItsTrack) {
    constexpr std::int64_t kOne = 65536;
    const std::string clockwise = Matrix(0, kOne, -kOne, 0);
    const std::string mirrored = Matrix(-kOne, 0, 0, kOne);
    const auto orientation = [](const std::string& aTrack, const std::string& aMovie) {
        Track track = VideoTrack();
        track.mMatrix = aTrack;
        EXPECT_EQ(Parsed(File({track}, "", MovieHead(1000, 0, 1, aMovie))),
                  Parsed(File({track}, "", MovieHead(1000, 0, 0, aMovie)) + std::string(12, '\0')));
        return ValueOf(Parsed(File({track}, "", MovieHead(1000, 0, 0, aMovie))), "ud");
    };
    EXPECT_EQ(orientation(kNoMatrix, clockwise), "6");
    EXPECT_EQ(orientation(clockwise, clockwise), "3");
    EXPECT_EQ(orientation(clockwise, Matrix(0, -kOne, kOne, 0)), ""); // back again
    // First turned, then mirrored is not the same as first mirrored, then turned.
    EXPECT_EQ(orientation(clockwise, mirrored), "5");
    EXPECT_EQ(orientation(mirrored, clockwise), "7");
    EXPECT_EQ(orientation(clockwise, std::string(36, '\0')), "6");
}

// ---- rates ----

TEST(ISOMediaParser, StatedRatesGoBeforeMeasuredOnes) {
    const std::vector<const char*> keys = {"ar", "ma", "ea"};
    EXPECT_EQ(Values(Parsed(AudioFile(AAC(0, 0))), keys), "ar=8000"); // 1000 bytes in a second
    EXPECT_EQ(Values(Parsed(AudioFile(AAC(0, 64000))), keys), "ar=64000");
    EXPECT_EQ(Values(Parsed(AudioFile(AAC(64000, 64000))), keys), "ar=64000");
    EXPECT_EQ(Values(Parsed(AudioFile(AAC(96000, 64000))), keys), "ar=64000 ma=96000");
    EXPECT_EQ(Values(Parsed(AudioFile(AAC(96000, 0))), keys), "ar=8000 ma=96000");
    EXPECT_EQ(Values(Parsed(AudioFile(AAC(5000, 0))), keys), "ar=8000"); // a maximum below the average
    EXPECT_EQ(Values(Parsed(AudioFile(AAC(UINT32_MAX, UINT32_MAX))), keys), "ar=8000");
    const std::string rates = Box("btrt", Big(0, 4) + Big(70000, 4) + Big(60000, 4));
    EXPECT_EQ(Values(Parsed(AudioFile(AudioEntry("mp4a", ESDS(0x40, kAACConfig) + rates))), keys),
              "ar=60000 ma=70000");
    EXPECT_EQ(Values(Parsed(VideoFile(VideoEntry("avc1", rates))), {"vr", "mv", "ev"}), "vr=60000 mv=70000");
}

TEST(ISOMediaParser, MaximumOfTheWholeIsNeverBelowItsRate) {
    const std::string song = Parsed(AudioFile(AAC(0, 8000)));
    EXPECT_EQ(Values(song, {"ar", "br", "mb"}),
              "ar=8000 br=" + ValueOf(song, "br") + " mb=" + ValueOf(song, "br"));
    EXPECT_GT(std::stoi(ValueOf(song, "br")), 8000); // the boxes are sent, too
    EXPECT_EQ(ValueOf(Parsed(AudioFile(AAC(0, 64000))), "mb"), "64000");
    EXPECT_EQ(ValueOf(Parsed(AudioFile(AAC(96000, 64000))), "mb"), "96000");
}

TEST(ISOMediaParser, RestOfTheWholeIsTheVideos) {
    // 1411200 of plain audio, whose table says otherwise, and of a video whose table is damaged.
    Track audio;
    audio.mEntry = AudioEntry("sowt", "");
    Track video = VideoTrack();
    video.mSizeTable = FullBox("stsz", "");
    const std::string file = FileType("qt  ") + Movie({audio, video}) + Box("mdat", std::string(300000, '.'));
    const std::string record = Parsed(file);
    EXPECT_EQ(ValueOf(record, "br"), std::to_string(file.size() * 8));
    EXPECT_EQ(ValueOf(record, "ev"), std::to_string(file.size() * 8 - 1411200));
    EXPECT_EQ(Values(record, {"ar", "ea", "vr"}), "ar=44100");
}

TEST(ISOMediaParser, EveryFormOfSizesIsAddedUp) {
    const auto rate = [](const std::string& aTable) {
        Track track;
        track.mSizeTable = aTable;
        return ValueOf(Parsed(File({track})), "ar");
    };
    const auto compact = [](unsigned aBits, const std::string& aSizes) {
        return FullBox("stz2", Big(aBits, 4) + Big(3, 4) + aSizes);
    };
    EXPECT_EQ(rate(FullBox("stsz", Big(100, 4) + Big(10, 4))), "8000"); // a constant one
    EXPECT_EQ(rate(FullBox("stsz", Big(0, 4) + Big(2, 4) + Big(100, 4) + Big(23, 4))), "984");
    EXPECT_EQ(rate(compact(4, "\x12\x30")), "48"); // 1 + 2 + 3
    EXPECT_EQ(rate(compact(8, "\x12\x30\x01")), "536");
    EXPECT_EQ(rate(compact(16, Big(1000, 2) + Big(2, 2) + Big(3, 2))), "8040");
    EXPECT_EQ(rate(compact(12, Big(0, 8))), rate(FullBox("stsz", ""))); // no such form, none at all
    // More sizes than the box has room for, and sizes that no file of this size holds.
    EXPECT_EQ(rate(FullBox("stsz", Big(0, 4) + Big(3, 4) + Big(100, 4) + Big(23, 4))),
              rate(FullBox("stsz", "")));
    EXPECT_EQ(rate(FullBox("stsz", Big(UINT32_MAX, 4) + Big(10, 4))), rate(FullBox("stsz", "")));
}

TEST(ISOMediaParser, FrameRateIsThatOfAllPictures) {
    Track track = VideoTrack();
    track.mTimescale = 30000;
    track.mSampleTicks = 1001;
    track.mDuration = 25 * 1001;
    EXPECT_EQ(ValueOf(Parsed(File({track})), "fr"), "29970");
    track.mTimescale = 24000;
    EXPECT_EQ(ValueOf(Parsed(File({track})), "fr"), "23976");
    track.mTimescale = 1000;
    track.mSampleTicks = 0; // damaged: the duration is left
    track.mDuration = 1000;
    EXPECT_EQ(ValueOf(Parsed(File({track})), "fr"), "25000");
}
