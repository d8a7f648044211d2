#include "companions/ezFormats/iso/ISOBytes.h"

#include "ezFormats/detail/MediaNumbers.h"

#include <gtest/gtest.h>

using namespace iso;

// Where the bounds of ISO media stand, at the edge and one above, and what several tracks share.

namespace {

/// A file of so many bytes: filled by samples.
std::string FileOf(const std::vector<Track>& aTracks, std::size_t aSize, const std::string& aHead) {
    const std::string start = FileType() + Movie(aTracks, "", aHead);
    return start + Box("mdat", std::string(aSize - start.size() - 8, '.'));
}

/// One of ten seconds, in which every bit a second is worth ten.
std::string TenSeconds(const std::vector<Track>& aTracks, std::size_t aSize) {
    return FileOf(aTracks, aSize, MovieHead(1000, 10000));
}

Track WithoutSizes(Track aTrack, std::uint32_t anID) {
    aTrack.mID = anID;
    aTrack.mSizeTable = FullBox("stsz", "");
    return aTrack;
}

} // namespace

TEST(ISOLimits, SoundsThatAreNotKnownShareTheWhole) {
    const std::vector<const char*> keys = {"ta", "ar", "ea", "vr", "ev"};
    const Track one = WithoutSizes(Track(), 1);
    const Track two = WithoutSizes(Track(), 2);
    const Track three = WithoutSizes(Track(), 3);
    EXPECT_EQ(Values(Parsed(TenSeconds({one}, 30000)), keys), "ta=1 ea=24000");
    EXPECT_EQ(Values(Parsed(TenSeconds({one, two}, 30000)), keys), "ta=2 ea=12000");
    EXPECT_EQ(Values(Parsed(TenSeconds({one, two, three}, 30000)), keys), "ta=3 ea=8000");
    // What a film's video leaves.
    const Track video =
        VideoTrack(VideoEntry("avc1", Box("btrt", Big(0, 4) + Big(15000, 4) + Big(15000, 4))), 9);
    EXPECT_EQ(Values(Parsed(TenSeconds({one, two, three, video}, 30000)), keys), "ta=3 ea=3000 vr=15000");
    EXPECT_EQ(Values(Parsed(TenSeconds({one, video}, 18750)), keys), "ta=1 vr=15000"); // it leaves nothing
    EXPECT_EQ(Values(Parsed(TenSeconds({one, video}, 18752)), keys), "ta=1 ea=1 vr=15000");
}

TEST(ISOLimits, VideoThatIsNotKnownHasWhatAllSoundsLeave) {
    const std::vector<const char*> keys = {"ta", "ar", "ea", "vr", "ev"};
    Track sound;
    sound.mEntry = AAC(0, 5000);
    const Track video = WithoutSizes(VideoTrack(), 9);
    EXPECT_EQ(Values(Parsed(TenSeconds({sound, video}, 30000)), keys), "ta=1 ar=5000 ev=19000");
    EXPECT_EQ(Values(Parsed(TenSeconds({sound, sound, sound, video}, 30000)), keys), "ta=3 ar=5000 ev=9000");
    sound.mEntry = AAC(0, 8000);
    EXPECT_EQ(Values(Parsed(TenSeconds({sound, sound, sound, video}, 30000)), keys), "ta=3 ar=8000");
    // Where nothing is known of either there is nothing to tell apart.
    EXPECT_EQ(Values(Parsed(TenSeconds({WithoutSizes(Track(), 1), video}, 30000)), keys), "ta=1");
    EXPECT_EQ(Values(Parsed(TenSeconds({video}, 30000)), keys), "ev=24000");
}

TEST(ISOLimits, MaximumOfTheWholeIsTheSumOfTheTracks) {
    Track sound;
    sound.mEntry = AAC(7000, 5000);
    const auto rates = [](std::uint32_t aMaximum) {
        return VideoTrack(VideoEntry("avc1", Box("btrt", Big(0, 4) + Big(aMaximum, 4) + Big(15000, 4))), 9);
    };
    EXPECT_EQ(ValueOf(Parsed(TenSeconds({sound, rates(30000)}, 3000)), "mb"), "37000");
    // A sum that a record cannot hold is none.
    EXPECT_EQ(ValueOf(Parsed(TenSeconds({sound, rates(UINT32_MAX - 7001)}, 3000)), "mb"),
              std::to_string(UINT32_MAX - 1));
    EXPECT_EQ(ValueOf(Parsed(TenSeconds({sound, rates(UINT32_MAX - 7000)}, 3000)), "mb"), "");
    // Nor is one where a track's is not known.
    EXPECT_EQ(ValueOf(Parsed(TenSeconds({sound, WithoutSizes(VideoTrack(), 9)}, 3000)), "mb"), "");
}

TEST(ISOLimits, SizesAreBelievedUpToThoseOfTheMedia) {
    const auto rate = [](std::size_t aMore) {
        Track track;
        track.mSizes = {0, 0};
        const std::size_t size = FileOf({track}, 3000, MovieHead(1000, 0)).size();
        track.mSizes = {1000, static_cast<std::uint32_t>(size - 1000 + aMore)};
        return Values(Parsed(FileOf({track}, 3000, MovieHead(1000, 0))), {"ar", "ea"});
    };
    EXPECT_EQ(rate(0), "ar=24000");
    EXPECT_EQ(rate(1), "ea=24000"); // by the size of the media
}

TEST(ISOLimits, LongTablesOfSizesAreNotAddedUp) {
    constexpr std::uint32_t kSizes = 256 * 1024 / 4;
    Track sound;
    sound.mSizes.assign(kSizes, 1);
    sound.mSizes.back() = 3;
    const std::vector<const char*> keys = {"ar", "ea"};
    EXPECT_EQ(Values(Parsed(TenSeconds({sound}, 500000)), keys),
              "ar=" + std::to_string((kSizes + 2) * 8)); // of a second
    sound.mSizes.insert(sound.mSizes.begin(), 1);
    EXPECT_EQ(Values(Parsed(TenSeconds({sound}, 500000)), keys), "ea=400000"); // by the size of the media
    // The sound of a film is estimated by its first 8192 samples, of a byte each.
    EXPECT_EQ(Values(Parsed(TenSeconds({sound, VideoTrack()}, 500000)), keys),
              "ea=" + std::to_string((kSizes + 1) * 8));
}

TEST(ISOLimits, RunsAndEditsAreReadUpToTheirBounds) {
    const auto frames = [](unsigned aRuns) {
        Track track = VideoTrack();
        std::string tables = track.Bytes();
        std::string runs = Big(aRuns, 4);
        for (unsigned i = 0; i < aRuns; ++i) {
            runs += Big(1, 4) + Big(20, 4); // 50 a second, where the duration says 25
        }
        const std::string plain = FullBox("stts", Big(1, 4) + Big(25, 4) + Big(40, 4));
        const std::string file = File({track});
        const std::size_t place = file.find(plain);
        const std::size_t more = FullBox("stts", runs).size() - plain.size();
        std::string changed = file;
        changed.replace(place, plain.size(), FullBox("stts", runs));
        for (const char* const box : {"moov", "trak", "mdia", "minf", "stbl"}) {
            const std::size_t at = changed.find(box) - 4;
            std::uint64_t size = 0;
            for (std::size_t i = 0; i < 4; ++i) {
                size = size << 8 | static_cast<unsigned char>(changed[at + i]);
            }
            changed.replace(at, 4, Big(size + more, 4));
        }
        return ValueOf(Parsed(changed), "fr");
    };
    EXPECT_EQ(frames(256), "50000");
    EXPECT_EQ(frames(257), "25000");

    Track edited;
    edited.mEdits.assign(1024, Edit{2, 0});
    EXPECT_EQ(ValueOf(Parsed(File({edited})), "dm"), "2048");
    edited.mEdits.push_back(Edit{2, 0});
    EXPECT_EQ(ValueOf(Parsed(File({edited})), "dm"), "1000");
}

TEST(ISOLimits, FragmentsAreCountedUpToTheirBound) {
    const std::string movie = FileType() + Movie({EmptyTrack()}, Extends());
    const std::string fragment = Fragment(1, 10) + Box("mdat", std::string(5000, '.')); // of a second
    const std::string index = FullBox("sidx", Big(1, 4) + Big(1, 4) + Big(0, 8) + Big(0, 2) + Big(1, 2) +
                                                  Big(fragment.size(), 4) + Big(1, 4) + Big(0, 4));
    const auto parsed = [&](const std::string& aPart, unsigned aCount) {
        std::string file = movie;
        for (unsigned i = 0; i < aCount; ++i) {
            file += aPart;
        }
        return Values(Parsed(file), {"dm", "md"});
    };
    const std::string estimate = "md=\"estimate: the first fragments, by their share of the bytes\"";
    for (const unsigned count : {47U, 48U}) {
        const std::string length = "dm=" + std::to_string(count * 1000);
        EXPECT_EQ(parsed(fragment, count), length + " md=\"counted\"");
        EXPECT_EQ(parsed(index + fragment, count), length + " md=\"header\"");
    }
    EXPECT_EQ(parsed(fragment, 49), "dm=55125 " + estimate); // and an eighth more
    EXPECT_EQ(parsed(index + fragment, 49), "dm=55125 " + estimate);
}

TEST(ISOLimits, BoxesAreSteppedOverUpToTheirBound) {
    const auto file = [](unsigned aBoxes) {
        std::string boxes;
        for (unsigned i = 0; i < aBoxes; ++i) {
            boxes += Box("free", "");
        }
        return FileType() + boxes + Movie({Track()});
    };
    EXPECT_EQ(ValueOf(Parsed(file(4000)), "ca"), "\"AAC\"");
    // The last of 4096 is "moov" itself, and no box in it is looked at.
    EXPECT_EQ(Refusal(file(4094)), "ISOMediaParser: unsupported: no audio or video in 0 tracks");
    EXPECT_EQ(Refusal(file(4095)), "ISOMediaParser: malformed: ends before a \"moov\" box");
}

TEST(ISOLimits, NumbersThatARecordCannotHoldAreNone) {
    EXPECT_EQ(MediaNumber_BitRate(UINT32_MAX / 8, 1, 1), UINT32_MAX - 7);
    EXPECT_EQ(MediaNumber_BitRate(UINT64_C(0x1FFFFFFFFFFFFFFF), 8, 1), 0U);
    EXPECT_EQ(MediaNumber_BitRate(UINT32_MAX - 1, 8, 1), UINT32_MAX - 1);
    EXPECT_EQ(MediaNumber_BitRate(UINT32_MAX, 8, 1), 0U);
    EXPECT_EQ(MediaNumber_FrameRate(1, 2000, 1), 1U); // half of one is one
    EXPECT_EQ(MediaNumber_FrameRate(1, 2001, 1), 0U);
    const std::uint64_t year = UINT64_C(366) * 24 * 60 * 60;
    EXPECT_EQ(MediaNumber_Microseconds(year, 1), year * 1000000);
    EXPECT_EQ(MediaNumber_Microseconds(year + 1, 1), 0U);
}

TEST(ISOLimits, LengthInMillisecondsIsThatOfTheTicksWithoutAFraction) {
    const auto length = [](std::uint32_t aTimescale, std::uint64_t aDuration) {
        Track track;
        track.mTimescale = aTimescale;
        track.mDuration = aDuration;
        return Values(Parsed(File({track})), {"dm", "du"});
    };
    EXPECT_EQ(length(44100, 36304), "dm=823 du=0");
    EXPECT_EQ(length(3, 59), "dm=19666 du=19");
    EXPECT_EQ(length(3, 60), "dm=20000 du=20");
    EXPECT_EQ(length(90000, 1799999), "dm=19999 du=19");
    EXPECT_EQ(length(UINT32_MAX, UINT32_MAX - 1), "dm=999 du=0");
    // Of fragments, with and without an index.
    Track video = EmptyTrack();
    video.mTimescale = 30000;
    const std::string movie = FileType() + Movie({video}, Extends("", 1001, 10));
    const std::string fragment =
        Box("moof", Box("traf", FullBox("tfhd", Big(1, 4)) + FullBox("trun", Big(30, 4)))) +
        Box("mdat", "..");
    EXPECT_EQ(Values(Parsed(movie + fragment), {"dm", "du", "md"}), "dm=1001 du=1 md=\"counted\"");
    EXPECT_EQ(Values(Parsed(movie + fragment + fragment), {"dm", "du"}), "dm=2002 du=2");
    const std::string index = FullBox("sidx", Big(1, 4) + Big(30000, 4) + Big(0, 8) + Big(0, 2) + Big(1, 2) +
                                                  Big(fragment.size(), 4) + Big(30030, 4) + Big(0, 4));
    EXPECT_EQ(Values(Parsed(movie + index + fragment + index + fragment + fragment), {"dm", "du", "md"}),
              "dm=3003 du=3 md=\"header\"");
}
