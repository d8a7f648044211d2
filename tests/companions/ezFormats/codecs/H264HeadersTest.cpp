#include "ezFormats/codecs/H264Headers.h"
#include "ezFormats/detail/Limits.h"
#include "ezFormats/elementary/H264EltStreamParser.h"

#include "companions/ezFormats/codecs/VideoUnits.h"

#include <gtest/gtest.h>

namespace {

/// The fields of a stream's headers; each test breaks one.
struct Fields {
    unsigned mProfile = 66;
    unsigned mConstraints = 0;
    unsigned mLevel = 30;
    unsigned mSPSID = 0;
    unsigned mChromaFormat = 1; ///< high profiles only
    unsigned mPOCType = 2;
    unsigned mWidth = 20;  ///< macroblocks
    unsigned mHeight = 12; ///< macroblocks, or pairs of them
    unsigned mFrameMBsOnly = 1;
    unsigned mReferences = 1;
    bool mfCropped = true;
    unsigned mBottom = 6;
    int mBitRate = -1; ///< of the HRD parameters, as coded
    unsigned mBitRateScale = 0;
    unsigned mDeliveries = 1; ///< of that rate; more than one with the longest numbers, and for slices too
    unsigned mCycle = 2;      ///< reference frames of POC type 1
    unsigned mConstant = 1;
    Bits mSetEnd = Bits();
    unsigned mPPSID = 0;
    unsigned mPPSSPSID = 0;
    unsigned mWeighting = 0;
    int mQuantiser = 0;
    unsigned mSlicePPSID = 0;
    unsigned mFirstMB = 0;
    unsigned mSliceType = 7;
    unsigned mFrameNum = 0;
    unsigned mIDRPicID = 0;
    bool mfStopBit = true;
    int mSPSCode = 0x67;
    int mPPSCode = 0x68;
    int mSliceCode = 0x65;

    std::string SPS() const {
        Bits bits;
        bits.Put(mProfile, 8).Put(mConstraints, 8).Put(mLevel, 8).UE(mSPSID);
        if (mProfile >= 100) {
            bits.UE(mChromaFormat).UE(0).UE(0).Put(0, 1).Put(1, 1); // depths, lossless, scaling lists
            bits.Put(1, 1).SE(-8);                                  // the first: use the default
            bits.Put(0, 7);
        }
        bits.UE(0).UE(mPOCType); // 4 bits of frame_num
        if (mPOCType == 0) {
            bits.UE(0);
        } else if (mPOCType == 1) {
            bits.Put(0, 1).SE(-3).SE(2).UE(mCycle);
            for (unsigned i = 0; i < mCycle; ++i) {
                bits.SE(i % 2 == 0 ? 1 : -INT32_MAX);
            }
        }
        bits.UE(mReferences).Put(0, 1).UE(mWidth - 1).UE(mHeight - 1).Put(mFrameMBsOnly, 1);
        if (mFrameMBsOnly == 0) {
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
            PutBuffers(bits);
            if (mDeliveries > 1) {
                PutBuffers(bits);
            } else {
                bits.Put(0, 1);
            }
            bits.Put(0, 1).Put(0, 1).Put(1, 1).Put(1, 1); // delay, structure, bounds
            bits.UE(0).UE(0).UE(16).UE(16).UE(0).UE(1);
        }
        if (mfStopBit) {
            bits.Stop();
        }
        return bits.Bytes();
    }

    /// hrd_parameters
    void PutBuffers(Bits& aBits) const {
        aBits.Put(1, 1).UE(mDeliveries - 1).Put(mBitRateScale, 4).Put(0, 4);
        for (unsigned i = 1; i < mDeliveries; ++i) {
            aBits.UE(0xFFFFFFFE).UE(0xFFFFFFFE).Put(0, 1);
        }
        aBits.UE(static_cast<unsigned>(mBitRate)).UE(9).Put(mConstant, 1).Put(0, 20);
    }

    std::string PPS() const {
        Bits bits;
        bits.UE(mPPSID).UE(mPPSSPSID).Put(0, 2).UE(0).UE(0).UE(0);
        bits.Put(0, 1).Put(mWeighting, 2).SE(mQuantiser).SE(0).SE(0).Put(0, 3);
        return bits.Stop().Bytes();
    }

    std::string Slice() const {
        Bits bits;
        bits.UE(mFirstMB).UE(mSliceType).UE(mSlicePPSID).Put(mFrameNum, 4);
        if (mFrameMBsOnly == 0) {
            bits.Put(0, 1);
        }
        if ((mSliceCode & 0x1F) == 5) {
            bits.UE(mIDRPicID);
        }
        if (mPOCType == 0) {
            bits.Put(0, 4);
        }
        return bits.Bytes();
    }

    std::string Stream() const {
        const std::string prefix = Hex({0, 0, 1});
        return '\0' + prefix + static_cast<char>(mSPSCode) + Escaped(SPS()) + '\0' + prefix +
               static_cast<char>(mPPSCode) + Escaped(PPS()) + prefix + static_cast<char>(mSliceCode) +
               Escaped(Slice());
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
    // Fields: the macroblocks of a map unit are pairs, and so are the lines that are cut.
    EXPECT_EQ(RecordWith([](Fields& f) {
                  f.mFrameMBsOnly = 0;
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

TEST(H264Headers, TellTheRateOfTheHRDParameters) {
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

TEST(H264Headers, OneBrokenFieldOfTheSPSIsNoStream) {
    EXPECT_TRUE(Wins([](Fields&) {}));
    EXPECT_TRUE(Wins([](Fields& f) { f.mPOCType = 0; }));
    EXPECT_TRUE(Wins([](Fields& f) { f.mPOCType = 1; }));
    EXPECT_FALSE(Wins([](Fields& f) { f.mPOCType = 3; }));
    EXPECT_FALSE(Wins([](Fields& f) { f.mProfile = 67; }));
    EXPECT_TRUE(Wins([](Fields& f) { f.mConstraints = 0xFC; }));
    EXPECT_FALSE(Wins([](Fields& f) { f.mConstraints = 0x01; }));
    EXPECT_FALSE(Wins([](Fields& f) { f.mLevel = 33; }));
    EXPECT_FALSE(Wins([](Fields& f) { f.mSPSID = 32; }));
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
    EXPECT_FALSE(Wins([](Fields& f) { f.mBottom = 0xFFFFFFFE; })) << "times two it is more than 32 bits";
    EXPECT_TRUE(Wins([](Fields& f) { f.mBottom = 95; })) << "two lines are left";
    EXPECT_FALSE(Wins([](Fields& f) { f.mBottom = 96; })) << "no line is left";
    EXPECT_FALSE(Wins([](Fields& f) { f.mfStopBit = false; }));
    EXPECT_FALSE(Wins([](Fields& f) { f.mSPSCode = 0x07; })) << "no reference";
    EXPECT_FALSE(Wins([](Fields& f) { f.mSPSCode = 0xE7; })) << "forbidden bit";
}

TEST(H264Headers, CountsAreReadUpToTheMostThatIsAllowed) {
    const auto with = [](unsigned aCycle, unsigned aDeliveries) {
        return RecordWith([=](Fields& f) {
            f.mPOCType = 1;
            f.mCycle = aCycle;
            f.mBitRate = 15624;
            f.mDeliveries = aDeliveries;
        });
    };
    const std::string record = "he=180\nvc=\"H264\"\nvr=1000000\nvt=1\nwi=320\n";
    EXPECT_EQ(with(0, 1), record);
    EXPECT_EQ(with(255, 1), record);
    EXPECT_EQ(with(256, 1), "");
    EXPECT_EQ(with(255, 32), record) << "the last delivery is the fastest";
    EXPECT_EQ(with(2, 33), "");
}

TEST(H264Headers, OneBrokenFieldOfThePPSIsNoStream) {
    EXPECT_TRUE(Wins([](Fields& f) { f.mPPSID = f.mSlicePPSID = 255; }));
    EXPECT_FALSE(Wins([](Fields& f) { f.mPPSID = f.mSlicePPSID = 256; }));
    EXPECT_FALSE(Wins([](Fields& f) { f.mPPSSPSID = 1; })) << "an unknown SPS";
    EXPECT_FALSE(Wins([](Fields& f) { f.mWeighting = 3; }));
    EXPECT_TRUE(Wins([](Fields& f) { f.mQuantiser = 25; }));
    EXPECT_FALSE(Wins([](Fields& f) { f.mQuantiser = 26; }));
    EXPECT_FALSE(Wins([](Fields& f) { f.mPPSCode = 0x08; })) << "no reference";
}

TEST(H264Headers, OneBrokenFieldOfTheSliceIsNoStream) {
    EXPECT_FALSE(Wins([](Fields& f) { f.mSlicePPSID = 1; })) << "an unknown PPS";
    EXPECT_TRUE(Wins([](Fields& f) { f.mFirstMB = 239; }));
    EXPECT_FALSE(Wins([](Fields& f) { f.mFirstMB = 240; }));
    EXPECT_FALSE(Wins([](Fields& f) { f.mSliceType = 10; }));
    EXPECT_FALSE(Wins([](Fields& f) { f.mSliceType = 5; })) << "predicted where it may not be";
    EXPECT_TRUE(Wins([](Fields& f) {
        f.mSliceType = 5;
        f.mSliceCode = 0x41;
    }));
    EXPECT_FALSE(Wins([](Fields& f) { f.mFrameNum = 1; })) << "numbers begin with 0 there";
    EXPECT_TRUE(Wins([](Fields& f) { f.mIDRPicID = 65535; }));
    EXPECT_FALSE(Wins([](Fields& f) { f.mIDRPicID = 65536; }));
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
    const std::size_t end = 5 + fields.SPS().size();
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

// ---- what stands within the parameter sets, field by field ----

namespace {

const unsigned char* BytesOf(const std::string& aText) {
    return reinterpret_cast<const unsigned char*>(aText.data());
}

/// An SPS of 320 x 192 whose scaling lists are written by the caller.
template <typename Lists>
bool IsLegalSPS(unsigned aChromaFormat, Lists aLists) {
    Bits bits;
    bits.Put(aChromaFormat == 3 ? 244 : 100, 8).Put(0, 8).Put(30, 8).UE(0).UE(aChromaFormat);
    if (aChromaFormat == 3) {
        bits.Put(0, 1); // separate_colour_plane_flag
    }
    bits.UE(0).UE(0).Put(0, 1).Put(1, 1);
    aLists(bits);
    bits.UE(5).UE(2).UE(1).Put(0, 1).UE(19).UE(11).Put(1, 1).Put(1, 1).Put(0, 1).Put(0, 1);
    const std::string bytes = bits.Stop().Bytes();
    ezH264SPS sps;
    return ezH264SPS_Read(BytesOf(bytes), bytes.size(), sps) && sps.mFrameNumBits == 9 && sps.mWidth == 320 &&
           sps.mHeight == 192;
}

/// The list of this index alone is present, of so many delta_scale of 0, of so many lists.
bool IsLegalList(unsigned anIndex, unsigned aDeltas, unsigned aLists, unsigned aChromaFormat) {
    return IsLegalSPS(aChromaFormat, [=](Bits& aBits) {
        for (unsigned i = 0; i < aLists; ++i) {
            aBits.Put(i == anIndex ? 1 : 0, 1);
            for (unsigned j = 0; i == anIndex && j < aDeltas; ++j) {
                aBits.SE(0);
            }
        }
    });
}

/// The first list of eight is these delta_scale.
bool IsLegalFirstList(const std::vector<int>& aDeltas) {
    return IsLegalSPS(1, [&](Bits& aBits) {
        aBits.Put(1, 1);
        for (const int delta : aDeltas) {
            aBits.SE(delta);
        }
        aBits.Put(0, 7);
    });
}

/// A PPS of the high profiles with so many scaling lists, none of which is present.
bool IsLegalPPS(unsigned aChromaFormat, unsigned aTransform8x8, unsigned aLists) {
    Bits bits;
    bits.UE(0).UE(0).Put(0, 2).UE(0).UE(0).UE(0).Put(0, 1).Put(0, 2).SE(0).SE(0).SE(0).Put(0, 3);
    bits.Put(aTransform8x8, 1).Put(1, 1);
    for (unsigned i = 0; i < aLists; ++i) {
        bits.Put(0, 1);
    }
    const std::string bytes = bits.SE(0).Stop().Bytes();
    ezH264SPS sps;
    sps.mChromaFormat = aChromaFormat;
    ezH264Sets sets;
    sets.TakeSPS(sps);
    ezH264PPS pps;
    return ezH264PPS_Read(BytesOf(bytes), bytes.size(), sets, pps);
}

/// Of a stream of 20 x 24 macroblocks.
ezH264SPS InterlacedSPS() {
    ezH264SPS sps;
    sps.mFrameNumBits = 4;
    sps.mPOCType = 2;
    sps.mWidthInMBs = 20;
    sps.mHeightInMBs = 24;
    return sps;
}

bool IsLegalSlice(const ezH264SPS& aSPS, Bits& aBits) {
    const std::string bytes = aBits.Put(0, 32).Bytes();
    return ezH264Slice_Check(BytesOf(bytes), bytes.size(), false, aSPS) == ezH264SliceResult::kLegal;
}

} // namespace

TEST(H264Headers, ScalingListsHaveTheirSizesAndTheirNumber) {
    for (const unsigned chromaFormat : {0U, 1U, 2U, 3U}) {
        const unsigned lists = chromaFormat == 3 ? 12 : 8;
        for (unsigned i = 0; i < lists; ++i) {
            const unsigned size = i < 6 ? 16 : 64;
            EXPECT_TRUE(IsLegalList(i, size, lists, chromaFormat)) << i << " of " << chromaFormat;
            EXPECT_FALSE(IsLegalList(i, size - 1, lists, chromaFormat)) << i << " of " << chromaFormat;
            EXPECT_FALSE(IsLegalList(i, size + 1, lists, chromaFormat)) << i << " of " << chromaFormat;
        }
        EXPECT_FALSE(IsLegalList(0, 16, lists - 1, chromaFormat)) << chromaFormat;
        EXPECT_FALSE(IsLegalList(0, 16, lists + 1, chromaFormat)) << chromaFormat;
    }
}

TEST(H264Headers, ScalingListEndsWhereItsScaleIsZero) {
    EXPECT_TRUE(IsLegalFirstList({-8}));
    EXPECT_TRUE(IsLegalFirstList({4, -12}));
    EXPECT_TRUE(IsLegalFirstList({0, 0, -7, -1}));
    EXPECT_TRUE(IsLegalFirstList({127, 121})) << "256 is 0";
    EXPECT_TRUE(IsLegalFirstList({-128, 120})) << "136 and 120";
    EXPECT_FALSE(IsLegalFirstList({-8, 1}));
    EXPECT_FALSE(IsLegalFirstList({-7}));
    EXPECT_FALSE(IsLegalFirstList({127, 120}));
    EXPECT_FALSE(IsLegalFirstList({128, 120}));
    EXPECT_FALSE(IsLegalFirstList({-129, 121}));
}

TEST(H264Headers, ScalingListsOfAPPSAreAsManyAsItsTransformHas) {
    for (const unsigned chromaFormat : {1U, 3U}) {
        for (const unsigned transform8x8 : {0U, 1U}) {
            const unsigned lists = 6 + (transform8x8 == 0 ? 0 : chromaFormat == 3 ? 6 : 2);
            for (const unsigned count : {5U, 6U, 7U, 8U, 9U, 11U, 12U, 13U}) {
                EXPECT_EQ(IsLegalPPS(chromaFormat, transform8x8, count), count == lists)
                    << count << " lists of " << chromaFormat << " with " << transform8x8;
            }
        }
    }
}

TEST(H264Headers, FieldHasHalfTheMacroblocksOfItsFrame) {
    const auto legal = [](unsigned aFirstMB, unsigned aField) {
        Bits bits;
        bits.UE(aFirstMB).UE(7).UE(0).Put(1, 4).Put(aField, 1);
        return IsLegalSlice(InterlacedSPS(), bits);
    };
    EXPECT_TRUE(legal(479, 0));
    EXPECT_FALSE(legal(480, 0));
    EXPECT_TRUE(legal(239, 1));
    EXPECT_FALSE(legal(240, 1));
    ezH264SPS progressive = InterlacedSPS();
    progressive.mfFrameMBsOnly = true;
    Bits bits;
    bits.UE(479).UE(7).UE(0).Put(1, 4).Put(1, 1); // no field_pic_flag
    EXPECT_TRUE(IsLegalSlice(progressive, bits));
}

TEST(H264Headers, ColourPlaneIsOneOfThreeWherePlanesAreSeparate) {
    ezH264SPS sps = InterlacedSPS();
    for (unsigned plane = 0; plane < 4; ++plane) {
        // Read as a part of frame_num, the plane would make a frame of a field.
        Bits bits;
        bits.UE(300).UE(7).UE(0).Put(plane, 2).Put(0xF, 4).Put(0, 1);
        sps.mfSeparateColourPlanes = true;
        EXPECT_EQ(IsLegalSlice(sps, bits), plane < 3) << plane;
        sps.mfSeparateColourPlanes = false;
        EXPECT_FALSE(IsLegalSlice(sps, bits)) << plane;
    }
}
