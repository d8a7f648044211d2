#include "ezFormats/detail/Limits.h"

#include "companions/ezFormats/elementary/EltStreamKit.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace {

constexpr int kCompleted = ezElementaryStreamParser::MSS_COMPLETED;
constexpr int kInProgress = ezElementaryStreamParser::MSS_IN_PROGRESS;
constexpr int kFailed = ezElementaryStreamParser::MSS_UNRECOVERABLE_ERROR;

constexpr const char* kAll = "|H264|H265|MPEGVideo|VC1|MPEG4|AC3|EAC3|ADTS|MPEGAudio|";

unsigned At(const std::string& aBytes, std::size_t anIndex) {
    return static_cast<unsigned char>(aBytes[anIndex]);
}

// --- Where the frames of the samples stand, found without the parsers

std::vector<std::size_t> EqualFrames(const std::string& aBytes, std::size_t aSize) {
    std::vector<std::size_t> frames;
    for (std::size_t at = 0; at + 7 <= aBytes.size(); at += aSize) {
        frames.push_back(at);
    }
    return frames;
}

std::vector<std::size_t> ADTSFrames(const std::string& aBytes) {
    std::vector<std::size_t> frames;
    for (std::size_t at = 0; at + 7 <= aBytes.size();
         at += (At(aBytes, at + 3) & 3U) << 11 | At(aBytes, at + 4) << 3 | At(aBytes, at + 5) >> 5) {
        frames.push_back(at);
    }
    return frames;
}

/// Layer III of 44.1 kHz after an ID3 tag; an ID3v1 tag may follow.
std::vector<std::size_t> LayerThreeFrames(const std::string& aBytes) {
    static const unsigned kRates[] = {0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320};
    std::vector<std::size_t> frames;
    std::size_t at = 10 + (At(aBytes, 8) << 7) + At(aBytes, 9);
    while (at + 4 <= aBytes.size() && At(aBytes, at) == 0xFF) {
        frames.push_back(at);
        at += 144000 * kRates[At(aBytes, at + 2) >> 4] / 44100 + (At(aBytes, at + 2) >> 1 & 1U);
    }
    return frames;
}

/// Where a start code stands.
std::vector<std::size_t> Codes(const std::string& aBytes, char aCode) {
    std::vector<std::size_t> codes;
    const std::string code = Hex({0, 0, 1}) + aCode;
    for (std::size_t at = aBytes.find(code); at != std::string::npos; at = aBytes.find(code, at + 1)) {
        codes.push_back(at);
    }
    return codes;
}

struct Sample {
    const char* mName;
    const char* mCodec; ///< as in the record
    std::string mRecord;
};

std::ostream& operator<<(std::ostream& aStream, const Sample& aSample) {
    return aStream << aSample.mName;
}

/// The last offset from which a header and what confirms it are still ahead.
std::size_t LastOffset(const Sample& aSample, const std::string& aBytes) {
    const std::string name = aSample.mName;
    std::vector<std::size_t> headers = name.find(".h264") != std::string::npos   ? Codes(aBytes, '\x67')
                                       : name.find(".h265") != std::string::npos ? Codes(aBytes, '\x40')
                                       : name.find(".vc1") != std::string::npos  ? Codes(aBytes, '\x0F')
                                       : name.find(".m4e") != std::string::npos  ? Codes(aBytes, '\0')
                                       : name.find(".m") == std::string::npos    ? std::vector<std::size_t>{}
                                       : name.find("v") == name.size() - 1       ? Codes(aBytes, '\xB3')
                                       : name.find(".mp2") != std::string::npos  ? EqualFrames(aBytes, 576)
                                                                                 : LayerThreeFrames(aBytes);
    if (headers.empty()) {
        headers = name.find(".ac3") != std::string::npos ? EqualFrames(aBytes, 1536) : ADTSFrames(aBytes);
    }
    const bool fVideo = aSample.mRecord.find("vt=1") != std::string::npos;
    const std::size_t fromEnd = fVideo ? 1 : 2; // the last sequence has its picture after it
    EXPECT_GE(headers.size(), 2U) << name;
    return headers[headers.size() - fromEnd];
}

class EltStreamSample : public testing::TestWithParam<Sample> {};

// What ffprobe 5.1 says of them: codec, sampling rate, channels, picture size and, where it is stated, bit
// rate agree. It estimates a rate for ADTS and for the variable MP3, and prints the code for a variable rate
// of MPEG-1 as 104857200.
const Sample kSamples[] = {
    {"elementary/harbour-light.h264", "H264", "he=180\nvc=\"H264\"\nvr=4294967295\nvt=1\nwi=320\n"},
    {"elementary/harbour-light.h265", "H265", "he=180\nvc=\"H265\"\nvr=4294967295\nvt=1\nwi=320\n"},
    {"elementary/harbour-light.m1v", "MPEG1", "he=144\nvc=\"MPEG1\"\nvr=4294967295\nvt=1\nwi=176\n"},
    {"elementary/harbour-light.m2v", "MPEG2",
     "he=288\nmv=500000\nvc=\"MPEG2\"\nvr=4294967295\nvt=1\nwi=352\n"},
    {"elementary/harbour-light.m4e", "MPEG4", "he=144\nvc=\"MPEG4\"\nvr=4294967295\nvt=1\nwi=176\n"},
    {"elementary/headers-alone.vc1", "VC1", "he=720\nvc=\"VC1\"\nvr=4294967295\nvt=1\nwi=1280\n"},
    {"elementary/six-corners.ac3", "AC3", "ac=6\nar=384000\nca=\"AC3\"\nsf=48000\nta=1\n"},
    {"elementary/slow-clock.mp2", "MP2", "ac=2\nar=192000\nca=\"MP2\"\nsf=48000\nta=1\n"},
    {"music/evening-train.aac", "AAC", "ac=2\nar=4294967295\nca=\"AAC\"\nsf=44100\nta=1\n"},
    {"conformance/B-AAC_A-1.adts", "AAC", "ac=2\nar=4294967295\nca=\"AAC\"\nsf=44100\nta=1\n"},
    {"music/morning-walk.mp3", "MP3", "ac=2\nar=48000\nca=\"MP3\"\nsf=44100\nta=1\n"},
    {"music/uneven-road-vbr.mp3", "MP3", "ac=2\nar=4294967295\nca=\"MP3\"\nsf=44100\nta=1\n"},
};

} // namespace

TEST(EltStreamRace, CandidatesStandInTheirOrder) {
    ezUndeterminedEltStreamParser race(nullptr, nullptr);
    AddEltStreamCandidates(race);
    EXPECT_STREQ(race.GetCandidateList().c_str(), kAll);
    race.Open();
    EXPECT_STREQ(race.GetCandidateList().c_str(), kAll) << "none decides when it is opened";
}

TEST_P(EltStreamSample, IsWonByItsOwnFormatInAnyPackets) {
    const std::string bytes = ReadSample(GetParam().mName);
    ASSERT_FALSE(bytes.empty());
    for (const std::vector<uint32>& sizes : Deliveries()) {
        const Outcome outcome = Race(bytes, sizes);
        EXPECT_EQ(outcome.mStatus, kCompleted) << sizes[0];
        EXPECT_EQ(outcome.mRecord, GetParam().mRecord) << sizes[0];
        EXPECT_EQ(outcome.mCandidates, kAll) << sizes[0];
        EXPECT_TRUE(outcome.mLeaving.empty()) << sizes[0];
    }
}

TEST_P(EltStreamSample, IsWonByItsOwnFormatFromAnyOffsetWithAHeaderAndItsConfirmationAhead) {
    const std::string bytes = ReadSample(GetParam().mName);
    const std::size_t last = LastOffset(GetParam(), bytes);
    const auto expectWon = [&](std::size_t anOffset) {
        const std::string record = Race(bytes.substr(anOffset), {UINT32_MAX}).mRecord;
        ASSERT_NE(record.find("\"" + std::string(GetParam().mCodec) + "\""), std::string::npos) << anOffset;
    };
    constexpr std::size_t kPlaces = 300; // of a long sample, each of whose races takes its time
    const std::size_t least = GetParam().mRecord.find("vt=1") != std::string::npos ? 157 : 11;
    const std::size_t step = std::max(least, last / kPlaces);
    for (std::size_t offset = 0; offset < last; offset += step) {
        expectWon(offset);
    }
    for (std::size_t offset = last - 20; offset <= last; ++offset) {
        expectWon(offset);
    }
    // After it nobody else wins either.
    for (std::size_t offset = last + 1; offset < bytes.size(); offset += 61) {
        ASSERT_EQ(Race(bytes.substr(offset), {UINT32_MAX}).mStatus, kInProgress) << offset;
    }
}

TEST_P(EltStreamSample, IsWonWithTheByteThatDecides) {
    const std::string bytes = ReadSample(GetParam().mName);
    std::size_t size = 0;
    while (size <= bytes.size() && Race(bytes.substr(0, size), {UINT32_MAX}).mStatus == kInProgress) {
        ++size;
    }
    ASSERT_LE(size, bytes.size());
    EXPECT_EQ(Race(bytes.substr(0, size - 1), {1}).mStatus, kInProgress);
    EXPECT_EQ(Race(bytes.substr(0, size), {1}).mStatus, kCompleted);
}

TEST_P(EltStreamSample, SurvivesAnyByteThatIsNotItsOwn) {
    const std::string bytes = ReadSample(GetParam().mName).substr(0, 2500);
    for (std::size_t i = 0; i < bytes.size(); i += i < 64 ? 1 : 37) {
        for (const int change : {0x01, 0x80, 0xFF}) {
            std::string corrupted = bytes;
            corrupted[i] = static_cast<char>(corrupted[i] ^ change);
            const Outcome outcome = Race(corrupted, {UINT32_MAX});
            EXPECT_NE(outcome.mStatus, kFailed) << i;
            EXPECT_EQ(Race(corrupted, {13, 1, 188}), outcome) << i;
        }
    }
}

TEST_P(EltStreamSample, IsWonAlsoAfterALossInItsMiddle) {
    const std::string bytes = ReadSample(GetParam().mName);
    for (const std::size_t lost : {1U, 100U, 150U}) {
        ezUndeterminedEltStreamParser race(nullptr, new ezMediaInfo);
        AddEltStreamCandidates(race);
        race.Open();
        ASSERT_EQ(race.AddPacket(bytes.data(), 20, false), kInProgress);
        const std::size_t next = 20 + lost;
        EXPECT_EQ(race.AddPacket(bytes.data() + next, static_cast<uint32>(bytes.size() - next), true),
                  kCompleted);
        const Record record(race.Close());
        ASSERT_NE(record, nullptr);
        const bool fVideo = record->Has(kezInfo_HasVideoTrack);
        EXPECT_STREQ(record->GetCString(fVideo ? kezInfo_VideoCodec : kezInfo_AudioCodec, "").c_str(),
                     GetParam().mCodec);
    }
}

INSTANTIATE_TEST_SUITE_P(All, EltStreamSample, testing::ValuesIn(kSamples));

RC_GTEST_PROP(EltStreamRace, AnyCutGivesTheSameWinnerRecordAndOrderOfLeaving, ()) {
    const Sample& sample = kSamples[*rc::gen::inRange<std::size_t>(0, std::size(kSamples))];
    const std::string bytes = ReadSample(sample.mName);
    const auto offset = *rc::gen::inRange<std::size_t>(0, bytes.size());
    const auto sizes =
        *rc::gen::nonEmpty(rc::gen::container<std::vector<uint32>>(rc::gen::inRange<uint32>(0, 700)));
    RC_PRE(std::any_of(sizes.begin(), sizes.end(), [](uint32 aSize) { return aSize != 0; }));
    const std::string stream = bytes.substr(offset);
    RC_ASSERT(Race(stream, sizes) == Race(stream, {UINT32_MAX}));
}

TEST(EltStreamRace, AnyCutOfWhatNobodyWinsEndsWithTheSameByte) {
    const std::string nothing = RandomBytes(kEltStream_SearchLimit + 5000, 4);
    const Outcome whole = Race(nothing, {UINT32_MAX});
    EXPECT_EQ(whole.mStatus, kFailed);
    EXPECT_EQ(Race(nothing, {1316}), whole);
    EXPECT_EQ(Race(nothing, {65537, 1, 0, 4099, 7}), whole);
}

namespace {

/// Repeated up to the limit.
std::string UpToTheLimit(const std::string& aBytes) {
    std::string bytes;
    while (bytes.size() < kEltStream_SearchLimit) {
        bytes += aBytes;
    }
    return bytes;
}

void ExpectNobodyWins(const std::string& aBytes, const std::string& aWhat) {
    ASSERT_FALSE(aBytes.empty()) << aWhat;
    const Outcome outcome = Race(aBytes, {UINT32_MAX});
    EXPECT_EQ(outcome.mStatus, kFailed) << aWhat << ": " << outcome.mRecord;
    EXPECT_EQ(outcome.mRecord, "null\n") << aWhat;
    EXPECT_EQ(outcome.mCandidates, "<none>") << aWhat;
    const std::string remove = "ElementaryStreamParser: ezUndeterminedEltStreamParser remove candidate ";
    const std::vector<std::string> leaving = {
        remove + "'H264'\n",
        remove + "'H265'\n",
        remove + "'MPEGVideo'\n",
        remove + "'VC1'\n",
        remove + "'MPEG4'\n",
        remove + "'AC3'\n",
        remove + "'EAC3'\n",
        remove + "'ADTS'\n",
        remove + "'MPEGAudio'\n",
        "ElementaryStreamParser: ezUndeterminedEltStreamParser remaining candidates <none>\n"};
    EXPECT_EQ(outcome.mLeaving, leaving) << aWhat;
}

} // namespace

TEST(EltStreamRace, RandomBytesAreWonByNobody) {
    for (const std::uint64_t seed : {1U, 2U, 3U}) {
        ExpectNobodyWins(RandomBytes(kEltStream_SearchLimit, seed), std::to_string(seed));
    }
}

TEST(EltStreamRace, OtherFilesAreWonByNobody) {
    for (const char* name : {"pictures/harbour.jpg", "pictures/harbour.png", "README.md",
                             "music/door-bell.wav", "conformance/B-LPCM-2.pcm"}) {
        ExpectNobodyWins(UpToTheLimit(ReadSample(name)), name);
    }
}

TEST(EltStreamRace, BytesThatRepeatThemselvesAreWonByNobody) {
    for (const std::string& bytes :
         {Hex({0}), Hex({0xFF, 0xFB}), Hex({0, 0, 1, 0xB3}), Hex({0, 0, 1, 0x67})}) {
        ExpectNobodyWins(UpToTheLimit(bytes), std::to_string(bytes.size()));
    }
}

TEST(EltStreamRace, StreamsInAContainerAreWonByNobody) {
    for (const char* name :
         {"video/river-ferry.mpg", "video/river-ferry.ts", "conformance/B-MP2PS_N-1.mpg",
          "conformance/MPEG_PS_PAL-1.mpg", "conformance/B-MP2TS_SN_I-1.mpg", "formats/parity.ts"}) {
        ExpectNobodyWins(UpToTheLimit(ReadSample(name)), name);
    }
}

TEST(EltStreamRace, AStreamAfterTheEndOfAContainerIsWon) {
    const std::string program = ReadSample("video/river-ferry.mpg");
    const std::string transport = ReadSample("video/river-ferry.ts");
    for (const Sample& sample : kSamples) {
        EXPECT_EQ(Race(program + ReadSample(sample.mName), {188}).mRecord, sample.mRecord) << sample.mName;
        EXPECT_EQ(Race(transport + Content(400) + ReadSample(sample.mName), {188}).mRecord, sample.mRecord)
            << sample.mName;
    }
}

TEST(EltStreamRace, AnyTruncationOfAnySampleEndsInOrder) {
    for (const Sample& sample : kSamples) {
        const std::string bytes = ReadSample(sample.mName);
        bool fWon = false;
        for (std::size_t size = 0; size < std::min<std::size_t>(bytes.size(), 2000); size += 7) {
            const int status = Race(bytes.substr(0, size), {61}).mStatus;
            ASSERT_EQ(status, fWon || status == kCompleted ? kCompleted : kInProgress)
                << sample.mName << size;
            fWon = status == kCompleted;
        }
    }
}
