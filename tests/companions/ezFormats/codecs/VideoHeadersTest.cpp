#include "ezBytes/BitReader.h"
#include "ezFormats/codecs/MPEGVideoHeaders.h"

#include "companions/ezFormats/elementary/EltStreamKit.h"

#include <gtest/gtest.h>

TEST(BitReader, ReadsAcrossBytesAndFailsForGood) {
    const std::string bytes = Hex({0xA5, 0x0F});
    ezBitReader bits(Data(bytes), 12);
    EXPECT_EQ(bits.Read(4), 0xAU);
    EXPECT_EQ(bits.Read(6), 0x14U);
    EXPECT_EQ(bits.GetBitsLeft(), 2U);
    EXPECT_EQ(bits.Read(3), 0U);
    EXPECT_TRUE(bits.HasFailed());
    EXPECT_EQ(bits.GetBitsLeft(), 0U);
    EXPECT_EQ(bits.Read(1), 0U) << "two bits would be left";
}

TEST(BitReader, ReadsGolombNumbersOfUpTo32Bits) {
    const std::vector<std::uint64_t> values = {0, 1, 2, 7, 254, 65535, 0xFFFFFFFE};
    Bits written;
    for (const std::uint64_t value : values) {
        written.UE(value);
    }
    written.SE(0).SE(1).SE(-1).SE(-32768);
    ezBitReader bits(Data(written.Bytes()), 8 * written.Bytes().size());
    for (const std::uint64_t value : values) {
        EXPECT_EQ(bits.ReadUE(), value);
    }
    for (const std::int64_t value : {0, 1, -1, -32768}) {
        EXPECT_EQ(bits.ReadSE(), value);
    }
    EXPECT_FALSE(bits.HasFailed());
    const std::string tooLong = Bits().Put(0, 32).Put(1, 1).Put(0, 32).Bytes();
    ezBitReader longBits(Data(tooLong), 8 * tooLong.size());
    EXPECT_EQ(longBits.ReadUE(), 0U);
    EXPECT_TRUE(longBits.HasFailed());
    const std::string zeros(4, '\0');
    ezBitReader none(Data(zeros), 32);
    EXPECT_EQ(none.ReadUE(), 0U);
    EXPECT_TRUE(none.HasFailed());
}

namespace {

/// A sequence header's fields; each test breaks one.
struct Fields {
    unsigned mWidth = 352;
    unsigned mHeight = 288;
    unsigned mAspectRatio = 2;
    unsigned mFrameRate = 3;
    unsigned mBitRate = 1250;
    unsigned mMarker = 1;
    unsigned mIntraMatrix = 0; ///< its values, or 0 for none

    std::string Bytes() const {
        Bits bits;
        bits.Put(mWidth, 12).Put(mHeight, 12).Put(mAspectRatio, 4).Put(mFrameRate, 4);
        bits.Put(mBitRate, 18).Put(mMarker, 1).Put(20, 10).Put(0, 1).Put(mIntraMatrix != 0 ? 1 : 0, 1);
        for (unsigned i = 0; i < 64 && mIntraMatrix != 0; ++i) {
            bits.Put(i == 5 && mIntraMatrix > 255 ? 0 : mIntraMatrix & 255U, 8);
        }
        return bits.Put(0, 1).Bytes();
    }
};

bool IsSequence(const std::string& aBytes) {
    ezMPEGSequence sequence;
    return ezMPEGSequence_ReadHeader(Data(aBytes), aBytes.size(), sequence);
}

template <typename Change>
bool IsSequenceWith(Change aChange) {
    Fields fields;
    aChange(fields);
    return IsSequence(fields.Bytes());
}

} // namespace

TEST(MPEGSequence, TellsWhatItsFieldsSay) {
    ezMPEGSequence sequence;
    const std::string bytes = Fields().Bytes();
    ASSERT_TRUE(ezMPEGSequence_ReadHeader(Data(bytes), bytes.size(), sequence));
    EXPECT_EQ(sequence.mWidth, 352U);
    EXPECT_EQ(sequence.mHeight, 288U);
    EXPECT_EQ(sequence.mBitRate, 500000U);
    EXPECT_FALSE(sequence.mfVariableBitRate);
}

TEST(MPEGSequence, OneBrokenFieldIsNoHeader) {
    EXPECT_TRUE(IsSequence(Fields().Bytes()));
    EXPECT_FALSE(IsSequenceWith([](Fields& f) { f.mWidth = 0; }));
    EXPECT_FALSE(IsSequenceWith([](Fields& f) { f.mHeight = 0; }));
    EXPECT_FALSE(IsSequenceWith([](Fields& f) { f.mAspectRatio = 0; }));
    EXPECT_TRUE(IsSequenceWith([](Fields& f) { f.mAspectRatio = 1; }));
    EXPECT_TRUE(IsSequenceWith([](Fields& f) { f.mAspectRatio = 14; }));
    EXPECT_FALSE(IsSequenceWith([](Fields& f) { f.mAspectRatio = 15; }));
    EXPECT_FALSE(IsSequenceWith([](Fields& f) { f.mFrameRate = 0; }));
    EXPECT_TRUE(IsSequenceWith([](Fields& f) { f.mFrameRate = 1; }));
    EXPECT_TRUE(IsSequenceWith([](Fields& f) { f.mFrameRate = 8; }));
    EXPECT_FALSE(IsSequenceWith([](Fields& f) { f.mFrameRate = 9; }));
    EXPECT_FALSE(IsSequenceWith([](Fields& f) { f.mBitRate = 0; }));
    EXPECT_FALSE(IsSequenceWith([](Fields& f) { f.mMarker = 0; }));
    EXPECT_TRUE(IsSequenceWith([](Fields& f) { f.mIntraMatrix = 8; }));
    EXPECT_FALSE(IsSequenceWith([](Fields& f) { f.mIntraMatrix = 256 + 8; })) << "a zero in the matrix";
}

TEST(MPEGSequence, OnlyZerosMayFollowAndNothingMayLack) {
    const std::string bytes = Fields().Bytes();
    EXPECT_TRUE(IsSequence(bytes + std::string(5, '\0')));
    EXPECT_FALSE(IsSequence(bytes + '\1'));
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        EXPECT_FALSE(IsSequence(bytes.substr(0, size))) << size;
    }
}

TEST(MPEGSequence, ExtensionAddsTheUpperBits) {
    ezMPEGSequence sequence;
    const std::string header = Fields().Bytes();
    ASSERT_TRUE(ezMPEGSequence_ReadHeader(Data(header), header.size(), sequence));
    // identifier, main at main level, progressive, 4:2:0, width 1, height 2, rate 1, marker, buffer, delay,
    // rate
    const std::string good = Bits()
                                 .Put(1, 4)
                                 .Put(0x48, 8)
                                 .Put(1, 1)
                                 .Put(1, 2)
                                 .Put(1, 2)
                                 .Put(2, 2)
                                 .Put(1, 12)
                                 .Put(1, 1)
                                 .Put(0, 16)
                                 .Bytes();
    const ezMPEGSequence before = sequence;
    ASSERT_TRUE(ezMPEGSequence_ReadExtension(Data(good), good.size(), sequence));
    EXPECT_EQ(sequence.mWidth, 4096U + 352);
    EXPECT_EQ(sequence.mHeight, 8192U + 288);
    EXPECT_EQ(sequence.mBitRate, (262144U + 1250) * 400);

    const auto refused = [&](std::size_t anIndex, int aByte) {
        std::string bytes = good;
        bytes[anIndex] = static_cast<char>(aByte);
        ezMPEGSequence again = before;
        return !ezMPEGSequence_ReadExtension(Data(bytes), bytes.size(), again);
    };
    EXPECT_FALSE(refused(0, 0x14));
    EXPECT_TRUE(refused(0, 0x24)) << "identifier";
    EXPECT_TRUE(refused(0, 0x10)) << "profile 0";
    EXPECT_TRUE(refused(1, 0x7A)) << "level 7";
    EXPECT_TRUE(refused(1, 0x88)) << "chroma format 0";
    EXPECT_TRUE(refused(3, 0x02)) << "marker";
    ezMPEGSequence wide = before;
    wide.mAspectRatio = 5;
    EXPECT_FALSE(ezMPEGSequence_ReadExtension(Data(good), good.size(), wide)) << "shape of MPEG-1 alone";
}

TEST(MPEGVideoHeaders, FieldsHoldUpToTheirLastLegalValue) {
    const auto bytes = [](const Bits& aBits) { return aBits.Bytes(); };
    const auto group = [&](unsigned anHour, unsigned aMinute, unsigned aSecond, unsigned aPicture) {
        Bits bits;
        bits.Put(0, 1).Put(anHour, 5).Put(aMinute, 6).Put(1, 1).Put(aSecond, 6).Put(aPicture, 6).Put(0, 2);
        return ezMPEGGroup_Read(Data(bytes(bits)), bytes(bits).size());
    };
    EXPECT_TRUE(group(23, 59, 59, 59));
    EXPECT_FALSE(group(24, 59, 59, 59));
    EXPECT_FALSE(group(23, 60, 59, 59));
    EXPECT_FALSE(group(23, 59, 60, 59));
    EXPECT_FALSE(group(23, 59, 59, 60));

    const auto extension = [&](unsigned aProfileAndLevel) {
        Bits bits;
        bits.Put(1, 4).Put(aProfileAndLevel, 8).Put(0, 1).Put(1, 2).Put(0, 16).Put(1, 1).Put(0, 16);
        ezMPEGSequence sequence = {};
        sequence.mAspectRatio = 1;
        return ezMPEGSequence_ReadExtension(Data(bytes(bits)), bytes(bits).size(), sequence);
    };
    EXPECT_TRUE(extension(0x14));
    EXPECT_TRUE(extension(0x5A));
    EXPECT_FALSE(extension(0x04));
    EXPECT_FALSE(extension(0x64));
    EXPECT_TRUE(extension(0x82));
    EXPECT_FALSE(extension(0x83));

    const auto coding = [&](unsigned aCode, unsigned afComposite, unsigned anEnd) {
        Bits bits;
        bits.Put(8, 4).Put(aCode, 4).Put(0xFFF, 12).Put(0, 2).Put(3, 2).Put(0, 9).Put(afComposite, 1);
        bits.Put(afComposite != 0 ? 0xFFFFF : 0, 20).Put(anEnd, 1);
        ezMPEGPicture picture = {};
        return ezMPEGPicture_ReadCodingExtension(Data(bytes(bits)), bytes(bits).size(), picture);
    };
    EXPECT_TRUE(coding(9, 0, 0));
    EXPECT_FALSE(coding(10, 0, 0));
    EXPECT_TRUE(coding(1, 1, 0));
    EXPECT_FALSE(coding(1, 1, 1));

    const auto predicted = [&](unsigned aRange) {
        Bits bits;
        bits.Put(0, 10).Put(2, 3).Put(0, 16).Put(1, 1).Put(aRange, 3).Put(0, 1);
        ezMPEGPicture picture = {};
        return ezMPEGPicture_ReadHeader(Data(bytes(bits)), bytes(bits).size(), false, picture);
    };
    EXPECT_TRUE(predicted(1)); // full pixels
    EXPECT_FALSE(predicted(0));
}
