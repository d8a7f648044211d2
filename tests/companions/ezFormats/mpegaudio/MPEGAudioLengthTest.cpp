#include "companions/ezFormats/mpegaudio/MPEGAudioKit.h"

#include "ez/MediaParserManager.h"
#include "ez/MimeTypesDotIniParser.h"

#include "ezFormats/detail/Limits.h"

#include <gtest/gtest.h>

using namespace mpegaudio;

namespace {

// 400 frames of 1152 samples at 44.1 kHz are 10.449 s; 383 are 10.005 s.
constexpr unsigned kCount = 400;
constexpr std::uint64_t kBytes = 417 * (kCount + 1);

std::string WithCount(const std::string& aName, const std::string& aFields, unsigned aCount = kCount) {
    return CountFrame(aName, aFields) + Song(aCount);
}

/// A song that begins at the lowest rate and goes on at the highest, 2600 frames of 1152 samples: 67.9 s.
std::string Uneven() {
    return Frames(kMP3At32, 104, 1300) + Frames(kMP3At320, 1044, 1300);
}

/// Lets a parser find its manager.
Record ReadWith(const std::string& aBytes, int anOptions, AwkwardStream::Costs* aCosts = nullptr) {
    ezMediaParserManager manager(nullptr);
    manager.AddStandardParsers(anOptions);
    manager.Add(new MPEGAudioParser);
    AwkwardStream stream(aBytes, Delivery(), "/media/song.mp3");
    Record record(manager.ParseFromType("mp3", stream));
    if (aCosts != nullptr) {
        *aCosts = stream.GetCosts();
    }
    return record;
}

/// All of a file in blocks of 64 KiB, and what any file may cost.
void ExpectWalkedOnce(const AwkwardStream::Costs& aCosts, std::size_t aSize) {
    EXPECT_LE(aCosts.mReads, aSize / (std::size_t{56} * 1024) + 32);
    EXPECT_LE(aCosts.mSeeks, aSize / (std::size_t{56} * 1024) + 33);
    EXPECT_LE(aCosts.mBytes, aSize + std::size_t{512} * 1024);
}

} // namespace

TEST(MPEGAudioLength, ACountInTheFirstFrameIsExact) {
    for (const char* const name : {"Xing", "Info"}) {
        EXPECT_EQ(Length(WithCount(name, Fields(kCount, kBytes))), "10 header") << name;
        EXPECT_EQ(Length(WithCount(name, Fields(kCount, 0))), "10 header") << name;
        EXPECT_EQ(Length(WithCount(name, Big(1, 4) + Big(kCount, 4))), "10 header") << name;
    }
    EXPECT_EQ(
        Length(CountFrame("VBRI", "").replace(36, 18, "VBRI" + VBRIFields(kCount, kBytes)) + Song(kCount)),
        "10 header");
}

TEST(MPEGAudioLength, SamplesThatTheEncoderAddedAreLeftOut) {
    // 383 frames are 441216 samples: 216 more than ten seconds.
    const std::uint64_t bytes = 417 * 384;
    const auto length = [&](unsigned aDelay, unsigned aPadding, const std::string& anEncoder = "LAME3.100") {
        return Length(WithCount("Info", FieldsOfEncoder(383, bytes, aDelay, aPadding, anEncoder), 383));
    };
    EXPECT_EQ(length(0, 0), "10 header");
    EXPECT_EQ(length(100, 116), "10 header");
    EXPECT_EQ(length(100, 117), "9 header");
    EXPECT_EQ(length(576, 0, "Lavf lame"), "9 header");
    EXPECT_EQ(length(576, 0, "Lavc59.37"), "9 header");
    EXPECT_EQ(length(576, 0, "another  "), "10 header") << "what stands there is not known";
    // More than there are.
    EXPECT_EQ(Length(CountFrame("Info", FieldsOfEncoder(1, 0, 4000, 4000)) + Song(1)), "0 header");
}

TEST(MPEGAudioLength, WrongCountsAreNotBelieved) {
    for (const char* const name : {"Xing", "Info", "VBRI"}) {
        const auto file = [&](std::uint64_t aFrames, std::uint64_t aBytes) {
            return name == "VBRI"s
                       ? CountFrame("", "").replace(36, 18, "VBRI" + VBRIFields(aFrames, aBytes)) +
                             Song(kCount)
                       : WithCount(name, Fields(aFrames, aBytes));
        };
        const auto method = [&](std::uint64_t aFrames, std::uint64_t aBytes) {
            return Length(file(aFrames, aBytes));
        };
        // A rate that the tag calls varying is not believed to be constant.
        const std::string without = name == "Info"s ? "10 constant rate" : "10 counted";
        EXPECT_EQ(method(0, kBytes), without) << name;
        EXPECT_EQ(method(0, 0), without) << name;
        EXPECT_EQ(method(2000, 0), without) << name << ": 104 bytes a frame at least";
        EXPECT_EQ(method(0xFFFFFFFF, 0xFFFFFFFF), without) << name;
        EXPECT_EQ(method(100, 0), without) << name << ": 1045 bytes a frame at most";
        EXPECT_EQ(Length(file(kCount, 1)), "10 header") << name << ": bytes that no such frames have";
        EXPECT_EQ(Length(file(kCount, 0xFFFFFFFF)), "10 header") << name;
    }
    // With one rate the size tells the count much closer.
    EXPECT_EQ(Length(WithCount("Info", Fields(450, 0))), "10 constant rate");
    EXPECT_EQ(Length(WithCount("Xing", Fields(450, 0))), "11 header") << "11.76 s";
    EXPECT_EQ(Length(WithCount("Info", Fields(180, 0))), "10 constant rate");
}

TEST(MPEGAudioLength, ACountOfAnotherSizeThanTheFilesIsScaled) {
    const std::string whole = WithCount("Xing", Fields(kCount, kBytes));
    EXPECT_EQ(Length(whole.substr(0, whole.size() / 2)), "6 estimate: the header's count, of a cut file");
    EXPECT_EQ(Length(whole + Song(kCount) + Song(kCount)),
              "32 estimate: the header's count, of a part of the file");
}

TEST(MPEGAudioLength, SoundAfterWhatIsCountedIsNotForgotten) {
    // 400 frames are counted, and 300 more follow: 18.29 s.
    const std::string tag = ID3(3, 0, Frame23("APIC", std::string(100000, 'p')));
    const std::string part = "19 estimate: the header's count, of a part of the file";
    const std::string whole = "18 constant rate";
    EXPECT_EQ(Length(WithCount("Xing", Fields(kCount, kBytes)) + Song(300)), part);
    EXPECT_EQ(Length(WithCount("Info", Fields(kCount, kBytes)) + Song(300)), part);
    EXPECT_EQ(Length(WithCount("Info", Fields(kCount, 0)) + Song(300)), whole);
    EXPECT_EQ(Length(WithCount("Info", Fields(kCount, kBytes + 417 * 300)) + Song(300)), whole)
        << "bytes that no 400 frames of one rate have";
    // Files that were put one after the other bring their tags along, which count as what they hold.
    EXPECT_GE(std::stoi(Length(WithCount("Xing", Fields(kCount, kBytes)) + tag + Song(300))), 19);
    // What is no sound changes nothing, and neither does what an encoder adds after the last frame.
    const std::string header = "10 header";
    EXPECT_EQ(Length(WithCount("Xing", Fields(kCount, kBytes)) + std::string(100000, 'j')), header);
    EXPECT_EQ(Length(WithCount("Info", Fields(kCount, 0)) + tag), header);
    EXPECT_EQ(Length(WithCount("Info", Fields(kCount, kBytes - 417)) + Song(1)), header);
}

TEST(MPEGAudioLength, PaddedFramesAreNoMoreThanWhatIsCounted) {
    // 20000 frames, of which nearly all have a byte of padding that the first has not.
    const std::string file =
        CountFrame("Info", Fields(20000, 0)) + Frames(kMP3, 417, 800) + Frames(kMP3 | 0x200, 418, 19200);
    EXPECT_EQ(Length(file), "522 header");
}

TEST(MPEGAudioLength, TagsAreNoSound) {
    // 400 frames of which the size tells the count: 166800 bytes at 16000 a second are 10.425 s; with 12000
    // bytes of tags it were 11.2.
    const std::string items = APEItem("Comment", std::string(12000, 'c'));
    const std::string lyrics1 = "LYRICSBEGIN" + std::string(5000, 'l') + "LYRICSEND";
    const std::string lyrics = "LYRICSBEGIN" + std::string(11000, 'l');
    const std::string lyrics2 = lyrics + "011011LYRICS200";
    const std::string v1 = ID3v1("t", "a", "b", 0);
    const std::string enhanced = "TAG+" + std::string(223, '\0');
    const std::string appended =
        Padded("ID3\4"s, 10) + std::string(3000, 'i') + "3DI\4\0\x10"s + Syncsafe(3000);
    const std::string small = APEItem("Comment", "c");
    for (const std::string& tails :
         {v1, enhanced + v1, APE1(items), APE2(items), APE2(items) + v1, lyrics1 + v1, lyrics2 + v1,
          APE2(small) + lyrics2 + v1, appended, APE1(small) + enhanced + v1, lyrics1 + enhanced + v1}) {
        // As many frames as the size of the sound alone tells, of which some are buffered with the tags.
        EXPECT_EQ(Length(Song(38) + tails), "0 counted") << tails.size();
        EXPECT_EQ(Length(Song(383) + tails), "9 constant rate") << tails.size(); // 9.98 s
    }
    // Sizes that lie.
    EXPECT_EQ(Length(Song(383) + APE1(std::string(9000, 'i')).replace(9000 + 12, 4, Little(900000))),
              "10 constant rate");
    EXPECT_EQ(Length(Song(383) + "999999LYRICS200" + v1), "9 constant rate");
    EXPECT_EQ(Length(Song(383) + "LYRICSEND" + v1), "9 constant rate");
    // The first version holds 5100 bytes at most.
    const auto plain = [&](std::size_t aSize) {
        return Value(Song(383) + "LYRICSBEGIN" + std::string(aSize, 'l') + "LYRICSEND" + v1, "dm");
    };
    EXPECT_EQ(plain(5100), "9981");
    EXPECT_EQ(plain(5101), "10302") << "as if it were sound";
}

TEST(MPEGAudioLength, SmallFilesAreCounted) {
    EXPECT_EQ(Length(Song(39)), "1 counted");              // 1.019 s
    EXPECT_EQ(Length(Song(38)), "0 counted");              // 0.993 s
    EXPECT_EQ(Length(Frames(kMP2, 576, 28)), "0 counted"); // 0.672 s
    EXPECT_EQ(Length(Frames(kMP1, 416, 39)), "0 counted"); // of 384 samples
    EXPECT_EQ(Length(Frames(kLSF, 192, 84)), "2 counted"); // of 576 at 24 kHz: 2.016 s
    EXPECT_EQ(Length(CountFrame("Info", Big(0, 4)) + Song(38)), "0 counted") << "its own frame is silent";
}

TEST(MPEGAudioLength, ARateThatAllPlacesConfirmIsExact) {
    // 2000 frames are 52.2449 s, 834000 bytes at 16000 a second 52.125 s.
    EXPECT_EQ(Length(Song(2000)), "52 constant rate");
    // 2000 frames of layer II at 48 kHz are exactly 48 s.
    EXPECT_EQ(Length(Frames(kMP2, 576, 2000)), "48 constant rate");
    EXPECT_EQ(Length(Frames(kMP2, 576, 2000) + "x"), "48 constant rate");
}

TEST(MPEGAudioLength, AVaryingRateOfASmallFileIsCounted) {
    const auto file = [](std::size_t aSize) {
        const std::string slow = Frames(kMP3At32, 104, 300);
        std::string sound =
            slow + Frames(kMP3At320, 1044, static_cast<unsigned>((aSize - slow.size()) / 1044));
        return sound + std::string(aSize - sound.size(), '\0');
    };
    AwkwardStream::Costs costs;
    const Record whole = ReadWith(file(kMPEGAudio_CountedSize), 0, &costs);
    ASSERT_NE(whole, nullptr);
    EXPECT_EQ(Str(whole->GetCString("md", "")), "counted");
    EXPECT_EQ(whole->GetUInt32("dm", 0), (300U + (384U * 1024 - 31200) / 1044) * 1152 * 1000 / 44100);
    EXPECT_LT(costs.mBytes, kMPEGAudio_MaxBytes);
    EXPECT_EQ(Value(file(kMPEGAudio_CountedSize + 1), "md").substr(0, 9), "estimate:");
}

TEST(MPEGAudioLength, ACountIsBelievedWhereTheSoundBeginsALittleLater) {
    const auto file = [](const char* aName, std::size_t aGap) {
        const std::string count =
            aName == "VBRI"s ? CountFrame("", "").replace(36, 18, "VBRI" + VBRIFields(kCount, kBytes))
                             : CountFrame(aName, Fields(kCount, kBytes));
        return count + std::string(aGap, 'j') + Song(kCount);
    };
    for (const char* const name : {"VBRI", "Xing"}) {
        EXPECT_EQ(Length(file(name, 102)), "10 header") << name;
        EXPECT_EQ(Length(file(name, kMPEGAudio_MaxGapAfterCount)), "10 header") << name;
        EXPECT_EQ(Length(file(name, kMPEGAudio_MaxGapAfterCount + 1)), "10 constant rate") << name;
    }
    // A count of one frame more than there is, is of no cut file.
    const std::string more = WithCount("Xing", Fields(kCount + 1, kBytes + 522));
    EXPECT_EQ(Length(more), "10 header");
}

TEST(MPEGAudioLength, AVaryingRateIsEstimatedByItsSlowestPlace) {
    const std::string length = Length(Uneven());
    EXPECT_EQ(length.substr(length.find(' ')), " estimate: size and the lowest mean rate of 200 frames");
    EXPECT_GE(std::stoi(length), 68);
    EXPECT_EQ(Value(Uneven(), "ar"), "4294967295");
    EXPECT_EQ(Value(Uneven(), "ma"), "320000") << "the highest that there can be";
    // 67.918 s: as the slowest place has it at most, and as the fastest one at least.
    EXPECT_GE(std::stoi(Value(Uneven(), "dm")), 67918);
    EXPECT_LE(std::stoi(Value(Uneven(), "dm")) - std::stoi(Value(Uneven(), "db")), 67918);
    EXPECT_LT(std::stoi(Value(Uneven(), "db")), std::stoi(Value(Uneven(), "dm")));
    EXPECT_EQ(Value(Song(), "db"), "-") << "an exact length";
    // Slow at the end alone.
    const std::string late = Frames(kMP3At320, 1044, 1300) + Frames(kMP3At32, 104, 9000);
    EXPECT_GE(std::stoi(Length(late)), 269);
    EXPECT_EQ(Value(late, "ar"), "4294967295");
}

TEST(MPEGAudioLength, TheWholeFileIsReadOnlyWhenAskedForAndNeeded) {
    AwkwardStream::Costs costs;
    const std::string uneven = Uneven();
    const Record whole = ReadWith(uneven, kParseOption_ParseFullFileIfVBR, &costs);
    ASSERT_NE(whole, nullptr);
    EXPECT_EQ(whole->GetUInt32("du", 0), 67U); // 67.918 s
    EXPECT_EQ(Str(whole->GetCString("md", "")), "counted");
    EXPECT_EQ(whole->GetUInt32("ma", 0), 320000U);
    EXPECT_EQ(whole->GetUInt32("ea", 0), 175787U); // 1492400 bytes in 67.918 s
    EXPECT_GT(costs.mBytes, uneven.size());
    EXPECT_LT(costs.mBytes, uneven.size() + 300000);
    const Record part = ReadWith(uneven, 0, &costs);
    ASSERT_NE(part, nullptr);
    EXPECT_EQ(Str(part->GetCString("md", "")), "estimate: size and the lowest mean rate of 200 frames");
    EXPECT_LT(costs.mBytes, 120000U);
    // A count, and one rate, need no walk.
    const std::string counted = WithCount("Xing", Fields(kCount, kBytes));
    EXPECT_EQ(Str(ReadWith(counted, kParseOption_ParseFullFileIfVBR, &costs)->GetCString("md", "")),
              "header");
    EXPECT_LT(costs.mBytes, 40000U);
    const Record one = ReadWith(Song(2000), kParseOption_ParseFullFileIfVBR, &costs);
    EXPECT_EQ(Str(one->GetCString("md", "")), "constant rate");
    EXPECT_LT(costs.mBytes, 120000U);
}

TEST(MPEGAudioLength, AWholeFileIsWalkedOverJunk) {
    const std::string file = Uneven() + std::string(30000, 'j') + Uneven() + ID3v1("t", "", "", 0);
    AwkwardStream::Costs costs;
    const Record record = ReadWith(file, kParseOption_ParseFullFileIfVBR, &costs);
    ExpectWalkedOnce(costs, file.size());
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(record->GetUInt32("du", 0), 135U); // 135.837 s
    EXPECT_EQ(Str(record->GetCString("md", "")), "counted");
    // So much else that it is no count.
    const std::string torn = Uneven() + std::string(300000, 'j') + Uneven();
    const Record other = ReadWith(torn, kParseOption_ParseFullFileIfVBR, &costs);
    ExpectWalkedOnce(costs, torn.size());
    ASSERT_NE(other, nullptr);
    EXPECT_EQ(Str(other->GetCString("md", "")).substr(0, 9), "estimate:");
}

TEST(MPEGAudioLength, GapsOfOneByteCostNoReadEach) {
    // 8 and 16 kbit/s at 22.05 kHz; then a byte of junk after every four frames.
    constexpr std::uint32_t kSlow = 0xFFF31000;
    constexpr std::uint32_t kFast = 0xFFF32000;
    std::string file = Frames(kSlow, 26, 10) + Frames(kFast, 52, 10);
    unsigned count = 20;
    for (; count < 40020; count += 4) {
        file += Frames(kSlow, 26, 4) + "j";
    }
    AwkwardStream::Costs costs;
    const Record record = ReadWith(file, kParseOption_ParseFullFileIfVBR, &costs);
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(Str(record->GetCString("md", "")), "counted");
    EXPECT_EQ(record->GetUInt32("du", 0), count * 576U / 22050U);
    ExpectWalkedOnce(costs, file.size());
}

TEST(MPEGAudioLength, AVaryingRateWithACountHasItsMean) {
    const std::string file = WithCount("Xing", Fields(kCount, kBytes));
    EXPECT_EQ(Value(file, "ar"), "4294967295");
    EXPECT_EQ(Value(file, "ea"), "128025"); // 167217 bytes in 10.449 s
    EXPECT_EQ(Value(file, "ma"), "320000");
    EXPECT_EQ(Value(WithCount("Xing", Fields(kCount, 0)), "ea"), "128025");
    EXPECT_EQ(Value(WithCount("Info", Fields(kCount, kBytes)), "ar"), "128000");
    EXPECT_EQ(Value(WithCount("Info", Fields(kCount, kBytes)), "ea"), "-");
    // "Info", and frames that differ nevertheless.
    const std::string uneven = CountFrame("Info", Fields(2, 0)) + Song(1) + Frames(kMP3At32, 104, 1);
    EXPECT_EQ(Value(uneven, "ar"), "4294967295");
}

TEST(MPEGAudioLength, WithoutASizeOnlyACountTells) {
    Delivery unknown;
    unknown.mfSizeKnown = false;
    const Record counted = Read(WithCount("Xing", Fields(kCount, kBytes)), unknown);
    ASSERT_NE(counted, nullptr);
    EXPECT_EQ(counted->GetUInt32("du", 0), 10U);
    const Record other = Read(Song(kCount), unknown);
    ASSERT_NE(other, nullptr);
    EXPECT_FALSE(other->Has("du"));
    EXPECT_FALSE(other->Has("md"));
    EXPECT_EQ(Str(other->GetCString("dl", "")),
              "DLNA.ORG_PN=MP3;DLNA.ORG_FLAGS=01500000000000000000000000000000");
}
