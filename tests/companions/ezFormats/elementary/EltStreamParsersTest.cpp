#include "ezFormats/detail/Limits.h"
#include "ezFormats/elementary/AC3EltStreamParser.h"
#include "ezFormats/elementary/ADTSEltStreamParser.h"
#include "ezFormats/elementary/EAC3EltStreamParser.h"
#include "ezFormats/elementary/H264EltStreamParser.h"
#include "ezFormats/elementary/H265EltStreamParser.h"
#include "ezFormats/elementary/MPEG4EltStreamParser.h"
#include "ezFormats/elementary/MPEGAudioEltStreamParser.h"
#include "ezFormats/elementary/MPEGVideoEltStreamParser.h"
#include "ezFormats/elementary/VC1EltStreamParser.h"

#include "companions/ezFormats/codecs/MPEG4Bytes.h"
#include "companions/ezFormats/codecs/VC1Bytes.h"

#include <gtest/gtest.h>

// NOLINTBEGIN(performance-inefficient-string-concatenation): a stream reads as the sum of its units.
namespace {

constexpr int kCompleted = ezElementaryStreamParser::MSS_COMPLETED;
constexpr int kInProgress = ezElementaryStreamParser::MSS_IN_PROGRESS;
constexpr int kFailed = ezElementaryStreamParser::MSS_UNRECOVERABLE_ERROR;

/// A frame of so many bytes after a header.
std::string Frame(const std::string& aHeader, std::size_t aSize, char aByte = '\x35') {
    return aHeader + Content(aSize - aHeader.size(), aByte);
}

const std::string kLayer1 = Hex({0xFF, 0xFF, 0x14, 0xC4});       // 32 kbit/s, 48 kHz, mono: 32 bytes
const std::string kLayer3 = Hex({0xFF, 0xFB, 0x90, 0x00});       // 128 kbit/s, 44.1 kHz: 417 bytes
const std::string kLayer3Faster = Hex({0xFF, 0xFB, 0xA0, 0x00}); // 160 kbit/s
const std::string kFree = Hex({0xFF, 0xFB, 0x00, 0x00});         // free format
const std::string kFreePadded = Hex({0xFF, 0xFB, 0x02, 0x00});   // and a byte more
const std::string kADTS = Hex({0xFF, 0xF1, 0x50, 0x80, 0x2E, 0x7F, 0xFC}); // 371 bytes
const std::string kEAC3 = Hex({0x0B, 0x77, 0x00, 0x3F, 0x3F, 0x80});       // 128 bytes, 5.1
const std::string kAC3 = Hex({0x0B, 0x77, 0x12, 0x34, 0x00, 0x40, 0x44});  // 128 bytes, 2.1
const std::string kSequence = Hex({0, 0, 1, 0xB3, 0x16, 0x01, 0x20, 0x13, 0x01, 0x38, 0xA0, 0xA0});
const std::string kSequenceExtension = Hex({0, 0, 1, 0xB5, 0x14, 0x8A, 0x00, 0x01, 0x00, 0x00});
const std::string kGroup = Hex({0, 0, 1, 0xB8, 0x00, 0x08, 0x00, 0x40});
const std::string kUserData = Hex({0, 0, 1, 0xB2, 'a', 'b', 'c'});
const std::string kPicture = Hex({0, 0, 1, 0x00, 0x00, 0x09, 0x00, 0x00});        // intra, a delay is stated
const std::string kVaryingPicture = Hex({0, 0, 1, 0x00, 0x00, 0x0F, 0xFF, 0xF8}); // intra, none is
const std::string kPictureExtension = Hex({0, 0, 1, 0xB5, 0x8F, 0xFF, 0xF3, 0x41, 0x80});
const std::string kSlice = Hex({0, 0, 1, 0x01});
const std::string kMPEG1 = kSequence + kGroup + kPicture + kSlice;
const std::string kMPEG2 = kSequence + kSequenceExtension + kGroup + kPicture + kPictureExtension + kSlice;

template <typename Parser>
void ExpectRecord(const std::string& aStream, const std::string& aRecord) {
    for (const std::vector<uint32>& sizes : Deliveries()) {
        const Outcome outcome = Parse<Parser>(aStream, sizes);
        EXPECT_EQ(outcome.mStatus, kCompleted) << sizes[0];
        EXPECT_EQ(outcome.mRecord, aRecord) << sizes[0];
    }
}

/// The stream decides with its last byte, whatever stands before it.
template <typename Parser>
void ExpectDecidedByTheLastByte(const std::string& aStream) {
    for (const std::size_t before : {0U, 1U, 2U, 3U, 200U, 1001U}) {
        const std::string stream = Content(before) + aStream;
        EXPECT_EQ(DecidingSize<Parser>(stream), stream.size()) << before;
    }
}

template <typename Parser>
int StatusOf(const std::string& aStream) {
    return Parse<Parser>(aStream, {UINT32_MAX}).mStatus;
}

} // namespace

TEST(MPEGAudioEltStreamParser, TwoHeadersInChainAreAStream) {
    ExpectRecord<MPEGAudioEltStreamParser>(Frame(kLayer1, 32) + kLayer1,
                                           "ac=1\nar=32000\nca=\"MP1\"\nsf=48000\nta=1\n");
    ExpectRecord<MPEGAudioEltStreamParser>(Content(1000) + Frame(kLayer3, 417) + kLayer3,
                                           "ac=2\nar=128000\nca=\"MP3\"\nsf=44100\nta=1\n");
    ExpectDecidedByTheLastByte<MPEGAudioEltStreamParser>(Frame(kLayer3, 417) + kLayer3);
}

TEST(MPEGAudioEltStreamParser, OneByteMoreOrLessBetweenThemIsNoChain) {
    EXPECT_EQ(StatusOf<MPEGAudioEltStreamParser>(Frame(kLayer3, 416) + kLayer3), kInProgress);
    EXPECT_EQ(StatusOf<MPEGAudioEltStreamParser>(Frame(kLayer3, 418) + kLayer3), kInProgress);
    EXPECT_EQ(StatusOf<MPEGAudioEltStreamParser>(Frame(kLayer3, 417) + kLayer1), kInProgress);
}

TEST(MPEGAudioEltStreamParser, ARateThatChangesVaries) {
    ExpectRecord<MPEGAudioEltStreamParser>(Frame(kLayer3, 417) + kLayer3Faster,
                                           "ac=2\nar=4294967295\nca=\"MP3\"\nsf=44100\nta=1\n");
}

TEST(MPEGAudioEltStreamParser, AnEncodersTagTellsThatTheRateVaries) {
    const std::string varies = "ac=2\nar=4294967295\nca=\"MP3\"\nsf=44100\nta=1\n";
    const std::string stays = "ac=2\nar=128000\nca=\"MP3\"\nsf=44100\nta=1\n";
    const auto tagged = [](const std::string& aTag, std::size_t anOffset) {
        std::string frame = Frame(kLayer3, 417);
        frame.replace(anOffset, aTag.size(), aTag);
        return frame + kLayer3;
    };
    ExpectRecord<MPEGAudioEltStreamParser>(tagged("Xing", 36), varies);
    ExpectRecord<MPEGAudioEltStreamParser>(tagged("VBRI", 36), varies);
    ExpectRecord<MPEGAudioEltStreamParser>(tagged("Info", 36), stays);
    ExpectRecord<MPEGAudioEltStreamParser>(tagged("Xing", 37), stays);
}

TEST(MPEGAudioEltStreamParser, FreeFormatTakesFourHeadersAtEqualDistances) {
    const std::string record = "ac=2\nar=4294967295\nca=\"MP3\"\nsf=44100\nta=1\n";
    const std::string three = Frame(kFree, 300, 'a') + Frame(kFree, 300, 'b') + Frame(kFree, 300, 'c');
    ExpectRecord<MPEGAudioEltStreamParser>(three + kFree, record);
    ExpectDecidedByTheLastByte<MPEGAudioEltStreamParser>(three + kFree);
    ExpectRecord<MPEGAudioEltStreamParser>(
        Frame(kFree, 300, 'a') + Frame(kFreePadded, 301, 'b') + Frame(kFree, 300, 'c') + kFreePadded, record);
    EXPECT_EQ(StatusOf<MPEGAudioEltStreamParser>(three + '5' + kFree), kInProgress);
}

TEST(MPEGAudioEltStreamParser, SampledSoundThatRepeatsItselfIsNoFreeFormat) {
    std::string sound;
    for (int i = 0; i < 100; ++i) {
        sound += Frame(kFree, 300);
    }
    EXPECT_EQ(StatusOf<MPEGAudioEltStreamParser>(sound), kInProgress);
}

TEST(MPEGAudioEltStreamParser, AFreeFormatFrameIsNotLongerThanTheHighestRateMakesIt) {
    const auto stream = [](std::size_t aSize) {
        return Frame(kFree, aSize, 'a') + Frame(kFree, aSize, 'b') + Frame(kFree, aSize, 'c') + kFree;
    };
    EXPECT_EQ(StatusOf<MPEGAudioEltStreamParser>(stream(1045)), kCompleted); // 320 kbit/s, padded
    EXPECT_EQ(StatusOf<MPEGAudioEltStreamParser>(stream(1046)), kInProgress);
}

TEST(MPEGAudioEltStreamParser, FalseHeadersDelayNoTrueOne) {
    // Each of them announces a frame that would end after the stream.
    std::string stream;
    for (int i = 0; i < 200; ++i) {
        stream += Hex({0xFF, 0xFD, 0xE8, 0x04});
    }
    stream += '5' + Frame(kLayer1, 32);
    EXPECT_EQ(DecidingSize<MPEGAudioEltStreamParser>(stream + kLayer1), stream.size() + kLayer1.size());
}

TEST(ADTSEltStreamParser, TwoHeadersInChainAreAStream) {
    const std::string stream = Frame(kADTS, 371) + kADTS;
    ExpectRecord<ADTSEltStreamParser>(Content(77) + stream,
                                      "ac=2\nar=4294967295\nca=\"AAC\"\nsf=44100\nta=1\n");
    ExpectDecidedByTheLastByte<ADTSEltStreamParser>(stream);
    EXPECT_EQ(StatusOf<ADTSEltStreamParser>(Frame(kADTS, 370) + kADTS), kInProgress);
    EXPECT_EQ(StatusOf<ADTSEltStreamParser>(Frame(kADTS, 372) + kADTS), kInProgress);
}

TEST(ADTSEltStreamParser, TheFixedPartStaysWhileTheLengthChanges) {
    std::string next = kADTS;
    next[4] = '\x40';
    EXPECT_EQ(StatusOf<ADTSEltStreamParser>(Frame(kADTS, 371) + next), kCompleted);
    for (const std::size_t index : {1U, 2U}) {
        std::string other = kADTS;
        other[index] = static_cast<char>(other[index] ^ (index == 1 ? 0x08 : 0x04));
        EXPECT_EQ(StatusOf<ADTSEltStreamParser>(Frame(kADTS, 371) + other), kInProgress) << index;
    }
}

TEST(ADTSEltStreamParser, ChannelsToldWithinTheFrameAreNotGuessed) {
    std::string header = kADTS;
    header[3] = '\0';
    ExpectRecord<ADTSEltStreamParser>(Frame(header, 371) + header,
                                      "ar=4294967295\nca=\"AAC\"\nsf=44100\nta=1\n");
}

TEST(ADTSEltStreamParser, TheLongestFrameIsFollowed) {
    std::string header = kADTS;
    header[3] = '\x83';
    header[4] = '\xFF';
    header[5] = '\xFF';
    ExpectDecidedByTheLastByte<ADTSEltStreamParser>(Frame(header, 8191) + header);
}

TEST(EAC3EltStreamParser, TwoHeadersInChainAreAStream) {
    const std::string stream = Frame(kEAC3, 128) + kEAC3;
    ExpectRecord<EAC3EltStreamParser>(Content(77) + stream, "ac=6\nar=32000\nca=\"EAC3\"\nsf=48000\nta=1\n");
    ExpectDecidedByTheLastByte<EAC3EltStreamParser>(stream);
    EXPECT_EQ(StatusOf<EAC3EltStreamParser>(Frame(kEAC3, 127) + kEAC3), kInProgress);
    EXPECT_EQ(StatusOf<EAC3EltStreamParser>(Frame(kEAC3, 129) + kEAC3), kInProgress);
    for (const auto& [place, value] : {std::pair{4, 0x7F}, {4, 0x2F}, {4, 0x3D}, {4, 0x3E}, {5, 0x78}}) {
        std::string other = kEAC3; // another rate, number of blocks, mode, low frequencies, version
        other[static_cast<std::size_t>(place)] = static_cast<char>(value);
        EXPECT_EQ(StatusOf<EAC3EltStreamParser>(Frame(kEAC3, 128) + other), kInProgress) << place << value;
    }
    std::string longer = kEAC3; // frames of one stream may have sizes of their own
    longer[3] = '\x40';
    EXPECT_EQ(StatusOf<EAC3EltStreamParser>(Frame(kEAC3, 128) + longer), kCompleted);
}

TEST(EAC3EltStreamParser, SubstreamsStandBetweenTheFramesOfTheProgramme) {
    std::string added = kEAC3; // two channels more, in frames of 64 bytes
    added[2] = '\x40';
    added[3] = '\x1F';
    added[4] = '\x34';
    const char* const record = "ac=6\nca=\"EAC3\"\nsf=48000\nta=1\n";
    ExpectRecord<EAC3EltStreamParser>(Frame(kEAC3, 128) + added, record);
    ExpectRecord<EAC3EltStreamParser>(Frame(added, 64) + kEAC3, record);
    EXPECT_EQ(StatusOf<EAC3EltStreamParser>(Frame(added, 64) + added), kInProgress);
}

TEST(AC3EltStreamParser, TwoHeadersInChainAreAStream) {
    const std::string stream = Frame(kAC3, 128) + kAC3;
    ExpectRecord<AC3EltStreamParser>(Content(77) + stream, "ac=3\nar=32000\nca=\"AC3\"\nsf=48000\nta=1\n");
    ExpectDecidedByTheLastByte<AC3EltStreamParser>(stream);
    EXPECT_EQ(StatusOf<AC3EltStreamParser>(Frame(kAC3, 127) + kAC3), kInProgress);
    EXPECT_EQ(StatusOf<AC3EltStreamParser>(Frame(kAC3, 129) + kAC3), kInProgress);
    std::string otherMode = kAC3;
    otherMode[6] = '\x24';
    EXPECT_EQ(StatusOf<AC3EltStreamParser>(Frame(kAC3, 128) + otherMode), kInProgress);
    std::string otherSum = kAC3;
    otherSum[2] = '\x77';
    EXPECT_EQ(StatusOf<AC3EltStreamParser>(Frame(kAC3, 128) + otherSum), kCompleted);
}

TEST(MPEGVideoEltStreamParser, SequencePictureAndSliceAreAStream) {
    ExpectRecord<MPEGVideoEltStreamParser>(kMPEG1, "he=288\nvc=\"MPEG1\"\nvr=500000\nvt=1\nwi=352\n");
    ExpectRecord<MPEGVideoEltStreamParser>(kMPEG2, "he=288\nvc=\"MPEG2\"\nvr=500000\nvt=1\nwi=352\n");
    for (const std::string& stream :
         {kMPEG1, kMPEG2, kSequence + kPicture + kSlice,
          kSequence + kUserData + kGroup + kUserData + kPicture + kUserData + kSlice,
          kSequence + kSequenceExtension + kUserData + kPicture + kPictureExtension + kUserData + kSlice}) {
        ExpectDecidedByTheLastByte<MPEGVideoEltStreamParser>(stream);
    }
}

TEST(MPEGVideoEltStreamParser, ARateThatDoesNotFitIsLeftOut) {
    std::string sequence = kSequence;
    sequence.replace(8, 3, Hex({0xFF, 0xFF, 0xA0}));
    std::string extension = kSequenceExtension; // the upper bits of the rate, and its marker
    extension.replace(6, 2, Hex({0x1F, 0xFF}));
    ExpectRecord<MPEGVideoEltStreamParser>(sequence + extension + kPicture + kPictureExtension + kSlice,
                                           "he=288\nvc=\"MPEG2\"\nvt=1\nwi=352\n");
    ExpectRecord<MPEGVideoEltStreamParser>(sequence + extension + kVaryingPicture + kPictureExtension +
                                               kSlice,
                                           "he=288\nvc=\"MPEG2\"\nvr=4294967295\nvt=1\nwi=352\n");
}

TEST(MPEGVideoEltStreamParser, ARateThatVariesIsAMaximumOfMPEG2) {
    ExpectRecord<MPEGVideoEltStreamParser>(kSequence + kSequenceExtension + kVaryingPicture +
                                               kPictureExtension + kSlice,
                                           "he=288\nmv=500000\nvc=\"MPEG2\"\nvr=4294967295\nvt=1\nwi=352\n");
    std::string varying = kSequence;
    varying.replace(8, 3, Hex({0xFF, 0xFF, 0xE0}));
    ExpectRecord<MPEGVideoEltStreamParser>(varying + kVaryingPicture + kSlice,
                                           "he=288\nvc=\"MPEG1\"\nvr=4294967295\nvt=1\nwi=352\n");
}

TEST(MPEGVideoEltStreamParser, HeadersOutOfOrderAreNoStream) {
    for (const std::string& stream :
         {kPicture + kSlice,                                  // no sequence
          kSequence + kSlice,                                 // no picture
          kSequence + kPicture + kPicture + kSlice,           // a picture without a slice
          kSequence + kPicture + kGroup + kSlice,             // a group after a picture
          kSequence + kSequenceExtension + kPicture + kSlice, // a picture without its extension
          kSequence + kPicture + kPictureExtension + kSlice,  // an extension in MPEG-1
          kSequence + kUserData + kSequenceExtension + kPicture + kPictureExtension + kSlice, // too late
          kSequence + kGroup + kSequenceExtension + kPicture + kPictureExtension + kSlice,
          kSequence + kPictureExtension + kPicture + kPictureExtension + kSlice, // the wrong extension
          kSequence + Hex({0, 0, 1, 0xB7}) + kPicture + kSlice,                  // the end of a sequence
          kSequence + Hex({0, 0, 1, 0xE0}) + kPicture + kSlice, // a packet of a program stream
          kSequence + kPicture + Hex({0, 0, 1, 0x13})}) {       // a slice below the picture
        EXPECT_EQ(StatusOf<MPEGVideoEltStreamParser>(stream), kInProgress);
    }
}

TEST(MPEGVideoEltStreamParser, OneBrokenFieldIsNoStream) {
    struct Broken {
        const std::string* mUnit;
        std::size_t mIndex;
        int mByte;
    };
    const std::vector<Broken> kBroken = {
        {&kSequence, 7, 0x03},          // shape
        {&kSequence, 7, 0x29},          // frame rate
        {&kSequence, 10, 0x80},         // marker
        {&kSequenceExtension, 6, 0x00}, // chroma format goes on in the byte before: see below
        {&kSequenceExtension, 7, 0x00}, // marker
        {&kGroup, 5, 0x00},             // marker
        {&kGroup, 4, 0x60},             // hour 24
        {&kGroup, 7, 0x41},             // not zero after its end
        {&kPicture, 5, 0x01},           // type 0
        {&kPicture, 5, 0x21},           // type 4 is of MPEG-1
        {&kPicture, 7, 0x04},           // extra information
        {&kPictureExtension, 4, 0x80},  // range code 0
        {&kPictureExtension, 6, 0xF0},  // structure 0
    };
    const std::vector<const std::string*> units = {&kSequence, &kSequenceExtension, &kGroup,
                                                   &kPicture,  &kPictureExtension,  &kSlice};
    const auto stream = [&](const Broken* aBroken) {
        std::string bytes;
        for (const std::string* unit : units) {
            bytes += *unit;
            if (aBroken != nullptr && aBroken->mUnit == unit) {
                bytes[bytes.size() - unit->size() + aBroken->mIndex] = static_cast<char>(aBroken->mByte);
            }
        }
        return bytes;
    };
    EXPECT_EQ(StatusOf<MPEGVideoEltStreamParser>(stream(nullptr)), kCompleted);
    for (const Broken& broken : kBroken) {
        if (broken.mUnit == &kSequenceExtension && broken.mIndex == 6) {
            EXPECT_EQ(StatusOf<MPEGVideoEltStreamParser>(stream(&broken)), kCompleted)
                << "upper bits of sizes";
            continue;
        }
        EXPECT_EQ(StatusOf<MPEGVideoEltStreamParser>(stream(&broken)), kInProgress)
            << broken.mUnit->size() << " " << broken.mIndex;
    }
}

TEST(MPEGVideoEltStreamParser, ASearchGoesOnAfterARefusedHeader) {
    std::string broken = kSequence;
    broken[7] = '\x03';
    ExpectRecord<MPEGVideoEltStreamParser>(broken + kGroup + kPicture + kSlice + Content(50) + kMPEG1,
                                           "he=288\nvc=\"MPEG1\"\nvr=500000\nvt=1\nwi=352\n");
}

TEST(VC1EltStreamParser, SequenceEntryPointAndFrameAreAStream) {
    const std::string sequence = vc1::Sequence().Bytes();
    const std::string entry = vc1::EntryPoint(640, 360);
    const std::string frame = Hex({0, 0, 1, 0x0D});
    const std::string ofSequence = vc1::Unit(0x1F, "abc");
    const std::string ofEntry = vc1::Unit(0x1E, "abc");
    ExpectRecord<VC1EltStreamParser>(sequence + entry + frame,
                                     "he=360\nvc=\"VC1\"\nvr=4294967295\nvt=1\nwi=640\n");
    for (const std::string& stream :
         {sequence + entry + frame, sequence + ofSequence + ofSequence + entry + ofEntry + frame,
          sequence + sequence + entry + frame, entry + sequence + entry + frame}) {
        ExpectDecidedByTheLastByte<VC1EltStreamParser>(stream);
    }
    vc1::Sequence simple;
    simple.mProfile = 1;
    vc1::Sequence cut;
    cut.mDisplayWidth = 1280;
    for (const std::string& stream :
         {sequence + frame, entry + frame, sequence + entry + entry + frame,
          sequence + entry + ofSequence + frame, sequence + ofEntry + entry + frame,
          sequence + entry + Hex({0, 0, 1, 0x0C}) + frame, sequence + Hex({0, 0, 1, 0x0A}) + entry + frame,
          simple.Bytes() + entry + frame, sequence + vc1::EntryPoint(1282, 720) + frame,
          cut.Bytes().substr(0, 10) + entry + frame, sequence + Hex({0, 0, 1, 0xE0}) + entry + frame,
          // As slices of MPEG video come, one after the other.
          Hex({0, 0, 1, 0x0D}) + Content(20) + Hex({0, 0, 1, 0x0E}) + Content(20) + sequence + frame}) {
        EXPECT_EQ(StatusOf<VC1EltStreamParser>(stream), kInProgress);
    }
}

TEST(MPEG4EltStreamParser, ObjectLayerAndPictureAreAStream) {
    const std::string object = Hex({0, 0, 1, 5});
    const std::string layer = mpeg4::Layer().Bytes();
    const std::string picture = Hex({0, 0, 1, 0xB6});
    const std::string data = Hex({0, 0, 1, 0xB2, 'a', 'b', 'c'});
    const std::string group = Hex({0, 0, 1, 0xB3, 0, 0x10, 7});
    ExpectRecord<MPEG4EltStreamParser>(object + layer + picture,
                                       "he=288\nvc=\"MPEG4\"\nvr=4294967295\nvt=1\nwi=352\n");
    for (const std::string& stream :
         {object + layer + picture, object + Hex({0, 0}) + layer + data + group + data + picture,
          object + object + layer + picture, layer + object + layer + picture}) {
        ExpectDecidedByTheLastByte<MPEG4EltStreamParser>(stream);
    }
    mpeg4::Layer shapeless;
    shapeless.mAspect = 0;
    mpeg4::Layer timeless;
    timeless.mResolution = 0;
    timeless.mfFixed = false;
    std::string typeless = layer;
    typeless[4] = '\0';
    typeless[5] = static_cast<char>(typeless[5] & 0x7F);
    for (const std::string& stream :
         {layer + picture, object + picture, object + "a" + layer + picture, object + layer + layer + picture,
          object + data + layer + picture, object + layer + Hex({0, 0, 1, 0xB5, 9}) + picture,
          object + layer.substr(0, 12) + picture, object + shapeless.Bytes() + picture,
          object + timeless.Bytes() + picture, object + typeless + picture,
          object + layer + Hex({0, 0, 1, 0x67}) + picture}) {
        EXPECT_EQ(StatusOf<MPEG4EltStreamParser>(stream), kInProgress);
    }
    mpeg4::Layer controlled;
    controlled.mfControl = true;
    controlled.mfIdentifier = true;
    controlled.mAspect = 15;
    controlled.mPixelWidth = 12;
    controlled.mPixelHeight = 11;
    EXPECT_EQ(StatusOf<MPEG4EltStreamParser>(object + controlled.Bytes() + picture), kCompleted);
}

namespace {

template <typename Parser>
class EveryEltStreamParser : public testing::Test {};
using Parsers = testing::Types<H264EltStreamParser, H265EltStreamParser, MPEGVideoEltStreamParser,
                               VC1EltStreamParser, MPEG4EltStreamParser, AC3EltStreamParser,
                               EAC3EltStreamParser, ADTSEltStreamParser, MPEGAudioEltStreamParser>;

std::string StreamFor(const std::string& aName) {
    if (aName == "EAC3") {
        return Frame(kEAC3, 128) + Frame(kEAC3, 128) + Frame(kEAC3, 128);
    }
    return ReadSample(aName == "H264"        ? "elementary/harbour-light.h264"
                      : aName == "H265"      ? "elementary/harbour-light.h265"
                      : aName == "MPEGVideo" ? "elementary/harbour-light.m2v"
                      : aName == "VC1"       ? "elementary/headers-alone.vc1"
                      : aName == "MPEG4"     ? "elementary/harbour-light.m4e"
                      : aName == "AC3"       ? "elementary/six-corners.ac3"
                      : aName == "ADTS"      ? "music/evening-train.aac"
                                             : "elementary/slow-clock.mp2");
}

} // namespace

TYPED_TEST_SUITE(EveryEltStreamParser, Parsers, );

TYPED_TEST(EveryEltStreamParser, DoesWithoutARecord) {
    TypeParam parser;
    parser.Open();
    EXPECT_EQ(Push(parser, StreamFor(parser.GetName()), {188}), kCompleted);
    EXPECT_EQ(parser.GetMediaInfo(), nullptr);
    EXPECT_EQ(parser.Close(), nullptr);
}

TYPED_TEST(EveryEltStreamParser, OverwritesWhatTheRecordSaidBefore) {
    ezMediaInfo* info = new ezMediaInfo;
    info->Set(kezInfo_AudioCodec, "?", true);
    info->Set(kezInfo_VideoCodec, "?", true);
    info->Set(kezInfo_MimeType, "audio/x", true);
    TypeParam parser(nullptr, info);
    parser.Open();
    EXPECT_EQ(Push(parser, StreamFor(parser.GetName()), {188}), kCompleted);
    const Record record(parser.Close());
    const char* codec = record->Has(kezInfo_HasVideoTrack) ? kezInfo_VideoCodec : kezInfo_AudioCodec;
    EXPECT_NE(record->GetCString(codec, "?"), "?");
    EXPECT_EQ(record->GetCString(kezInfo_MimeType, ""), "audio/x");
}

TYPED_TEST(EveryEltStreamParser, OpensAgain) {
    TypeParam parser;
    const std::string stream = StreamFor(parser.GetName());
    for (int i = 0; i < 2; ++i) {
        parser.Open();
        EXPECT_EQ(Push(parser, stream, {1316}), kCompleted);
        EXPECT_EQ(parser.Close(), nullptr);
    }
}

TYPED_TEST(EveryEltStreamParser, ForgetsWhatStoodBeforeLostPackets) {
    TypeParam parser;
    const std::string stream = StreamFor(parser.GetName());
    const std::size_t size = DecidingSize<TypeParam>(stream);
    ASSERT_GT(size, 1U);
    parser.Open();
    // All but the last byte, then that byte after a loss: nothing is known any more.
    EXPECT_EQ(parser.AddPacket(stream.data(), static_cast<uint32>(size - 1), false), kInProgress);
    EXPECT_EQ(parser.AddPacket(stream.data() + size - 1, 1, true), kInProgress);
    EXPECT_EQ(parser.AddPacket(stream.data(), static_cast<uint32>(size - 1), true), kInProgress);
    EXPECT_EQ(parser.AddPacket(stream.data() + size - 1, 1, false), kCompleted);
}

TYPED_TEST(EveryEltStreamParser, GivesUpAtTheLimitWithTheSameByteInAnyCut) {
    const std::string nothing = Content(kEltStream_SearchLimit);
    for (const std::vector<uint32>& sizes : {std::vector<uint32>{1316}, {188, 7}, {UINT32_MAX}}) {
        const LogCatcher log;
        TypeParam parser;
        parser.Open();
        EXPECT_EQ(Push(parser, nothing.substr(1), sizes), kInProgress);
        EXPECT_EQ(parser.AddPacket("5555", 4, false), kFailed);
        EXPECT_TRUE(log.Has("ElementaryStreamParser: '" + std::string(parser.GetName()) +
                            "' Parsing failed with 2097152 read bytes\n"));
    }
}

TYPED_TEST(EveryEltStreamParser, ALossDoesNotExtendTheLimit) {
    TypeParam parser;
    parser.Open();
    const std::string half = Content(kEltStream_SearchLimit / 2);
    EXPECT_EQ(parser.AddPacket(half.data(), static_cast<uint32>(half.size()), false), kInProgress);
    EXPECT_EQ(parser.AddPacket(half.data(), static_cast<uint32>(half.size() - 1), true), kInProgress);
    EXPECT_EQ(parser.AddPacket("5", 1, false), kFailed);
}

// Tags before the sound.

namespace {

/// An ID3v2 tag of a body.
std::string Tag(const std::string& aBody) {
    const auto size = static_cast<unsigned>(aBody.size());
    std::string tag = "ID3" + Hex({3, 0, 0});
    for (unsigned shift = 28; shift != 0; shift -= 7) {
        tag += static_cast<char>(size >> (shift - 7) & 0x7F);
    }
    return tag + aBody;
}

template <typename Parser>
void ExpectTagsSteppedOver(const std::string& aSound, const std::string& anOther) {
    const std::string plain = Parse<Parser>(aSound, {4096}).mRecord;
    ASSERT_NE(plain, "");
    for (const std::string& tags : {Tag(""), Tag("abc"), Tag(anOther),
                                    Tag(Content(300)) + Tag(anOther) + Tag(""), Tag(Content(70000))}) {
        ExpectRecord<Parser>(tags + aSound, plain);
        EXPECT_EQ(DecidingSize<Parser>(tags + aSound), tags.size() + DecidingSize<Parser>(aSound))
            << tags.size();
    }
}

} // namespace

TEST(EltStreamTags, AreNoSoundWhateverTheyHold) {
    const std::string layer3 = Frame(kLayer3, 417) + Frame(kLayer3, 417);
    const std::string faster = Frame(kLayer3Faster, 522) + Frame(kLayer3Faster, 522);
    const std::string mono = Hex({0xFF, 0xF1, 0x50, 0x40, 0x2E, 0x7F, 0xFC}); // 371 bytes
    const std::string ac3Mono = Hex({0x0B, 0x77, 0x12, 0x34, 0x00, 0x40, 0x20});
    ExpectTagsSteppedOver<MPEGAudioEltStreamParser>(layer3, faster);
    ExpectTagsSteppedOver<ADTSEltStreamParser>(Frame(kADTS, 371) + Frame(kADTS, 371),
                                               Frame(mono, 371) + Frame(mono, 371));
    const std::string eac3Mono = Hex({0x0B, 0x77, 0x00, 0x3F, 0x32, 0x80});
    ExpectTagsSteppedOver<EAC3EltStreamParser>(Frame(kEAC3, 128) + Frame(kEAC3, 128),
                                               Frame(eac3Mono, 128) + Frame(eac3Mono, 128));
    ExpectTagsSteppedOver<AC3EltStreamParser>(Frame(kAC3, 128) + Frame(kAC3, 128),
                                              Frame(ac3Mono, 128) + Frame(ac3Mono, 128));
}

TEST(EltStreamTags, OneThatClaimsToReachTheLimitIsSearched) {
    const std::string sound = Frame(kADTS, 371) + Frame(kADTS, 371);
    const std::string plain = Parse<ADTSEltStreamParser>(sound, {4096}).mRecord;
    const std::string tag = Tag(std::string(kEltStream_SearchLimit - 10, 'x')).substr(0, 10);
    ExpectRecord<ADTSEltStreamParser>(tag + sound, plain);
    EXPECT_EQ(DecidingSize<ADTSEltStreamParser>(tag + sound),
              tag.size() + DecidingSize<ADTSEltStreamParser>(sound));
}

TEST(EltStreamTags, AreNotLookedForAfterTheSoundHasBegun) {
    const std::string sound = Frame(kADTS, 371) + Frame(kADTS, 371);
    const std::string stream = Content(100) + Tag(sound) + Content(50);
    EXPECT_EQ(Parse<ADTSEltStreamParser>(stream, {64}).mStatus, kCompleted);
}

// NOLINTEND(performance-inefficient-string-concatenation)
