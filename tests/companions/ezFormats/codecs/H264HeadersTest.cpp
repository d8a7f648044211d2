#include "ezFormats/detail/Limits.h"
#include "ezFormats/elementary/H264EltStreamParser.h"

#include "companions/ezFormats/elementary/EltStreamKit.h"

#include <gtest/gtest.h>

namespace {

/// The fields of a stream's headers; each test breaks one.
struct Fields {
    unsigned mProfile = 66;
    unsigned mConstraints = 0;
    unsigned mLevel = 30;
    unsigned mSequenceID = 0;
    unsigned mChromaFormat = 1; ///< high profiles only
    unsigned mOrderType = 2;
    unsigned mWidth = 20;  ///< blocks
    unsigned mHeight = 12; ///< blocks, or pairs of them
    unsigned mFramesOnly = 1;
    unsigned mReferences = 1;
    bool mfCropped = true;
    unsigned mBottom = 6;
    int mBitRate = -1; ///< of a buffer description, as coded
    unsigned mBitRateScale = 0;
    unsigned mConstant = 1;
    Bits mSetEnd = Bits();
    unsigned mPictureID = 0;
    unsigned mPictureSequenceID = 0;
    unsigned mWeighting = 0;
    int mQuantiser = 0;
    unsigned mSlicePictureID = 0;
    unsigned mFirstBlock = 0;
    unsigned mSliceType = 7;
    unsigned mFrameNumber = 0;
    unsigned mInstantID = 0;
    bool mfStopBit = true;
    int mSequenceCode = 0x67;
    int mPictureCode = 0x68;
    int mSliceCode = 0x65;

    std::string Sequence() const {
        Bits bits;
        bits.Put(mProfile, 8).Put(mConstraints, 8).Put(mLevel, 8).UE(mSequenceID);
        if (mProfile >= 100) {
            bits.UE(mChromaFormat).UE(0).UE(0).Put(0, 1).Put(1, 1); // depths, lossless, scaling lists
            bits.Put(1, 1).SE(-8);                                  // the first: use the default
            bits.Put(0, 7);
        }
        bits.UE(0).UE(mOrderType); // 4 bits of frame number
        if (mOrderType == 0) {
            bits.UE(0);
        } else if (mOrderType == 1) {
            bits.Put(0, 1).SE(-3).SE(2).UE(2).SE(1).SE(-1);
        }
        bits.UE(mReferences).Put(0, 1).UE(mWidth - 1).UE(mHeight - 1).Put(mFramesOnly, 1);
        if (mFramesOnly == 0) {
            bits.Put(0, 1);
        }
        bits.Put(1, 1).Put(mfCropped ? 1 : 0, 1);
        if (mfCropped) {
            bits.UE(0).UE(0).UE(0).UE(mBottom);
        }
        bits.Put(mBitRate >= 0 ? 1 : 0, 1);
        if (mBitRate >= 0) {
            bits.Put(1, 1).Put(255, 8).Put(12, 16).Put(11, 16).Put(1, 1).Put(0, 1); // shape, overscan
            bits.Put(1, 1).Put(5, 3).Put(0, 1).Put(1, 1).Put(0x010101, 24);         // colours
            bits.Put(1, 1).UE(0).UE(1).Put(1, 1).Put(1, 32).Put(50, 32).Put(1, 1);  // places, time
            bits.Put(1, 1).UE(0).Put(mBitRateScale, 4).Put(0, 4);                   // one buffer
            bits.UE(static_cast<unsigned>(mBitRate)).UE(9).Put(mConstant, 1).Put(0, 20);
            bits.Put(0, 1).Put(0, 1).Put(0, 1).Put(1, 1).Put(1, 1); // no other, delay, structure, bounds
            bits.UE(0).UE(0).UE(16).UE(16).UE(0).UE(1);
        }
        if (mfStopBit) {
            bits.Stop();
        }
        return bits.Bytes();
    }

    std::string Picture() const {
        Bits bits;
        bits.UE(mPictureID).UE(mPictureSequenceID).Put(0, 2).UE(0).UE(0).UE(0);
        bits.Put(0, 1).Put(mWeighting, 2).SE(mQuantiser).SE(0).SE(0).Put(0, 3);
        return bits.Stop().Bytes();
    }

    std::string Slice() const {
        Bits bits;
        bits.UE(mFirstBlock).UE(mSliceType).UE(mSlicePictureID).Put(mFrameNumber, 4);
        if (mFramesOnly == 0) {
            bits.Put(0, 1);
        }
        if ((mSliceCode & 0x1F) == 5) {
            bits.UE(mInstantID);
        }
        if (mOrderType == 0) {
            bits.Put(0, 4);
        }
        return bits.Bytes();
    }

    static std::string sEscaped(const std::string& aBytes) {
        std::string escaped;
        std::size_t zeros = 0;
        for (const char byte : aBytes) {
            if (zeros >= 2 && static_cast<unsigned char>(byte) <= 3) {
                escaped += '\3';
                zeros = 0;
            }
            escaped += byte;
            zeros = byte == 0 ? zeros + 1 : 0;
        }
        return escaped;
    }

    std::string Stream() const {
        const std::string prefix = Hex({0, 0, 1});
        return '\0' + prefix + static_cast<char>(mSequenceCode) + sEscaped(Sequence()) + '\0' + prefix +
               static_cast<char>(mPictureCode) + sEscaped(Picture()) + prefix +
               static_cast<char>(mSliceCode) + sEscaped(Slice());
    }
};

std::string RecordOf(const std::string& aStream) {
    return Parse<H264EltStreamParser>(aStream, {UINT32_MAX}).mRecord;
}

template <typename Change>
bool Wins(Change aChange) {
    Fields fields;
    aChange(fields);
    // More may follow: whoever is refused is not refused for the end.
    return Parse<H264EltStreamParser>(fields.Stream() + Content(200, '\x55'), {UINT32_MAX}).mStatus ==
           ezElementaryStreamParser::MSS_COMPLETED;
}

template <typename Change>
std::string RecordWith(Change aChange) {
    Fields fields;
    aChange(fields);
    return RecordOf(fields.Stream());
}

} // namespace

TEST(H264Headers, TellTheDisplayedSize) {
    EXPECT_EQ(RecordOf(Fields().Stream()), "he=180\nvc=\"H264\"\nvr=4294967295\nvt=1\nwi=320\n");
    EXPECT_EQ(RecordWith([](Fields& f) { f.mfCropped = false; }),
              "he=192\nvc=\"H264\"\nvr=4294967295\nvt=1\nwi=320\n");
    // Fields: the blocks of a map are pairs, and so are the lines that are cut.
    EXPECT_EQ(RecordWith([](Fields& f) {
                  f.mFramesOnly = 0;
                  f.mProfile = 77;
                  f.mBottom = 2;
              }),
              "he=376\nvc=\"H264\"\nvr=4294967295\nvt=1\nwi=320\n");
    EXPECT_EQ(RecordWith([](Fields& f) {
                  f.mProfile = 122; // 4:2:2: a line is a line
                  f.mChromaFormat = 2;
              }),
              "he=186\nvc=\"H264\"\nvr=4294967295\nvt=1\nwi=320\n");
}

TEST(H264Headers, TellTheRateOfABufferDescription) {
    EXPECT_EQ(RecordWith([](Fields& f) { f.mBitRate = 15624; }),
              "he=180\nvc=\"H264\"\nvr=1000000\nvt=1\nwi=320\n");
    EXPECT_EQ(RecordWith([](Fields& f) {
                  f.mBitRate = 15624;
                  f.mConstant = 0;
              }),
              "he=180\nmv=1000000\nvc=\"H264\"\nvr=4294967295\nvt=1\nwi=320\n");
}

TEST(H264Headers, ARateThatDoesNotFitIsLeftOut) {
    const auto huge = [](Fields& f) {
        f.mBitRate = 99'999'999;
        f.mBitRateScale = 15;
    };
    EXPECT_EQ(RecordWith(huge), "he=180\nvc=\"H264\"\nvt=1\nwi=320\n");
    EXPECT_EQ(RecordWith([&](Fields& f) {
                  huge(f);
                  f.mConstant = 0;
              }),
              "he=180\nvc=\"H264\"\nvr=4294967295\nvt=1\nwi=320\n");
}

TEST(H264Headers, OneBrokenFieldOfTheSequenceSetIsNoStream) {
    EXPECT_TRUE(Wins([](Fields&) {}));
    EXPECT_TRUE(Wins([](Fields& f) { f.mOrderType = 0; }));
    EXPECT_TRUE(Wins([](Fields& f) { f.mOrderType = 1; }));
    EXPECT_FALSE(Wins([](Fields& f) { f.mOrderType = 3; }));
    EXPECT_FALSE(Wins([](Fields& f) { f.mProfile = 67; }));
    EXPECT_TRUE(Wins([](Fields& f) { f.mConstraints = 0xFC; }));
    EXPECT_FALSE(Wins([](Fields& f) { f.mConstraints = 0x01; }));
    EXPECT_FALSE(Wins([](Fields& f) { f.mLevel = 33; }));
    EXPECT_FALSE(Wins([](Fields& f) { f.mSequenceID = 32; }));
    EXPECT_FALSE(Wins([](Fields& f) {
        f.mProfile = 100;
        f.mChromaFormat = 4;
    }));
    EXPECT_FALSE(Wins([](Fields& f) { f.mReferences = 17; }));
    EXPECT_FALSE(Wins([](Fields& f) { f.mWidth = 1056; }));
    EXPECT_FALSE(Wins([](Fields& f) {
        f.mWidth = 400;
        f.mHeight = 400;
    })) << "each side is possible, their product is not";
    EXPECT_TRUE(Wins([](Fields& f) { f.mBottom = 95; })) << "two lines are left";
    EXPECT_FALSE(Wins([](Fields& f) { f.mBottom = 96; })) << "no line is left";
    EXPECT_FALSE(Wins([](Fields& f) { f.mfStopBit = false; }));
    EXPECT_FALSE(Wins([](Fields& f) { f.mSequenceCode = 0x07; })) << "no reference";
    EXPECT_FALSE(Wins([](Fields& f) { f.mSequenceCode = 0xE7; })) << "forbidden bit";
}

TEST(H264Headers, OneBrokenFieldOfThePictureSetIsNoStream) {
    EXPECT_TRUE(Wins([](Fields& f) { f.mPictureID = f.mSlicePictureID = 255; }));
    EXPECT_FALSE(Wins([](Fields& f) { f.mPictureID = f.mSlicePictureID = 256; }));
    EXPECT_FALSE(Wins([](Fields& f) { f.mPictureSequenceID = 1; })) << "an unknown sequence";
    EXPECT_FALSE(Wins([](Fields& f) { f.mWeighting = 3; }));
    EXPECT_TRUE(Wins([](Fields& f) { f.mQuantiser = 25; }));
    EXPECT_FALSE(Wins([](Fields& f) { f.mQuantiser = 26; }));
    EXPECT_FALSE(Wins([](Fields& f) { f.mPictureCode = 0x08; })) << "no reference";
}

TEST(H264Headers, OneBrokenFieldOfTheSliceIsNoStream) {
    EXPECT_FALSE(Wins([](Fields& f) { f.mSlicePictureID = 1; })) << "an unknown picture set";
    EXPECT_TRUE(Wins([](Fields& f) { f.mFirstBlock = 239; }));
    EXPECT_FALSE(Wins([](Fields& f) { f.mFirstBlock = 240; }));
    EXPECT_FALSE(Wins([](Fields& f) { f.mSliceType = 10; }));
    EXPECT_FALSE(Wins([](Fields& f) { f.mSliceType = 5; })) << "predicted where it may not be";
    EXPECT_TRUE(Wins([](Fields& f) {
        f.mSliceType = 5;
        f.mSliceCode = 0x41;
    }));
    EXPECT_FALSE(Wins([](Fields& f) { f.mFrameNumber = 1; })) << "numbers begin with 0 there";
    EXPECT_TRUE(Wins([](Fields& f) { f.mInstantID = 65535; }));
    EXPECT_FALSE(Wins([](Fields& f) { f.mInstantID = 65536; }));
    EXPECT_FALSE(Wins([](Fields& f) { f.mSliceCode = 0x05; })) << "no reference";
    EXPECT_FALSE(Wins([](Fields& f) { f.mSliceCode = 0x66; })) << "no slice";
}

TEST(H264Headers, EscapesBelongToNoField) {
    Fields fields;
    fields.mBitRate = 15624; // its times have rows of zeros
    const std::string stream = fields.Stream();
    EXPECT_NE(stream.find(Hex({0, 0, 3})), std::string::npos);
    std::string illegal = stream;
    illegal[stream.find(Hex({0, 0, 3})) + 2] = '\2';
    EXPECT_EQ(Parse<H264EltStreamParser>(stream, {UINT32_MAX}).mStatus, 0);
    EXPECT_EQ(Parse<H264EltStreamParser>(illegal, {UINT32_MAX}).mStatus, 1);
    std::string needless = stream;
    needless.insert(stream.find(Hex({0, 0, 0x0F})) + 2, "\3");
    EXPECT_EQ(Parse<H264EltStreamParser>(needless, {UINT32_MAX}).mStatus, 1);
}

TEST(H264Headers, NothingMayFollowAParameterSet) {
    const Fields fields;
    std::string stream = fields.Stream();
    const std::size_t end = 5 + fields.Sequence().size();
    EXPECT_TRUE(Wins([](Fields&) {}));
    stream.insert(end, "\x80");
    EXPECT_EQ(Parse<H264EltStreamParser>(stream, {UINT32_MAX}).mStatus, 1);
}

namespace {

class ShownH264 : public H264EltStreamParser {
public:
    uint32 RequestSize() const { return mReadRequestSize; }
};

} // namespace

TEST(H264Headers, ASliceIsReadToItsBoundAndNoFurther) {
    const Fields fields;
    std::string start = fields.Stream();
    start.resize(start.size() - fields.Slice().size());
    ShownH264 parser;
    parser.Open();
    EXPECT_EQ(Push(parser, start, {1}), ezElementaryStreamParser::MSS_IN_PROGRESS);
    // Zeros begin a number that never ends; an escape after each two of them is no byte of the slice.
    for (unsigned i = 1; i <= kH264_MaxSliceHeaderSize; ++i) {
        EXPECT_EQ(Push(parser, i % 2 == 0 || i == 1 ? Hex({0}) : Hex({3, 0}), {1}),
                  ezElementaryStreamParser::MSS_IN_PROGRESS);
        // While it is read each byte may decide; given up, a whole slice is missing.
        EXPECT_EQ(parser.RequestSize(), i < kH264_MaxSliceHeaderSize ? 1U : 3U) << i;
    }
    EXPECT_EQ(Push(parser, Hex({0, 0, 1, 0x65}) + fields.Slice(), {1}),
              ezElementaryStreamParser::MSS_COMPLETED);
}
