#include "ezFormats/codecs/BitmapVideo.h"

#include "companions/ezFormats/codecs/VC1Bytes.h"
#include "companions/ezFormats/codecs/VideoFactsText.h"

#include "ezBytes/ByteSource.h"
#include "ezFormats/codecs/BitmapVideoLimits.h"

#include "support/NumberBytes.h"

#include <gtest/gtest.h>

namespace {

/// A BITMAPINFOHEADER, and what follows it.
std::string Bitmap(const std::string& aCodec, const std::string& aData = "", std::uint32_t aWidth = 320,
                   std::uint32_t aHeight = 240) {
    return Little(40) + Little(aWidth) + Little(aHeight) + Little(1, 2) + Little(24, 2) + aCodec +
           std::string(20, '\0') + aData;
}

std::string Told(const std::string& aBytes, const std::string& aFrame = "") {
    BlockBytes block(Data(aBytes), aBytes.size());
    return Text(BitmapVideo_Read(ByteReader(block), Data(aFrame), aFrame.size()));
}

} // namespace

TEST(BitmapVideo, CodecIsThatOfTheFourCharactersAndOfItsHeaders) {
    const std::string simple = Hex({0, 0, 1, 0xB0, 3, 0, 0, 1, 0xB5});
    const std::string sequence = Hex({0}) + vc1::Sequence().Bytes();
    struct Case {
        const char* mCodec;
        std::string mData;
        std::string mFrame;
        const char* mTold; ///< beside the size
    };
    const Case kCases[] = {
        {"WMV1", "", "", "WMV1 320x240 cd=8 4:2:0"},
        {"WMV2", Content(4), "", "WMV2 320x240 cd=8 4:2:0"},
        {"wmv3", Hex({0x4E, 0x39, 0x0A, 1, 0}), "", "WMV3 Main@? 320x240 progressive cd=8 4:2:0"},
        {"WMV3", Hex({0x0E, 0x39, 0x0A, 1}), "", "WMV3 Simple@? 320x240 progressive cd=8 4:2:0"},
        {"WMV3", "", "", "WMV3 320x240 cd=8 4:2:0"},
        {"WMV3", Hex({0xC0, 0, 0, 0}), "", "VC1 Advanced@? 320x240 cd=8 4:2:0"},
        {"WVC1", sequence, "", "VC1 Advanced@20 320x240 progressive cd=8 4:2:0"},
        {"WMVA", "", vc1::Sequence().Bytes(), "VC1 Advanced@20 320x240 progressive cd=8 4:2:0"},
        {"WVC1", Content(9), Content(9), "VC1 Advanced@? 320x240 cd=8 4:2:0"},
        {"MP43", "", "", "MSMPEG4v3 320x240 cd=8 4:2:0"},
        {"MP42", "", "", "MSMPEG4v2 320x240 cd=8 4:2:0"},
        {"MPG4", "", "", "MSMPEG4v1 320x240 cd=8 4:2:0"},
        {"M4S2", simple, "", "MPEG4 Simple@30 320x240"},
        {"MP4S", "", simple, "MPEG4 Simple@30 320x240"},
        {"MP4S", simple, Hex({0, 0, 1, 0xB0, 0xF5, 0}), "MPEG4 Simple@30 320x240"}, // the first that tells
        {"CVID", "", simple, "Cinepak 320x240"},
        {"MSS2", "", "", "MSS2 320x240"},
        {"q, \1", "", "", "q... 320x240"}};
    for (const Case& test : kCases) {
        EXPECT_EQ(Told(Bitmap(test.mCodec, test.mData), test.mFrame), test.mTold) << (&test - kCases);
    }
}

TEST(BitmapVideo, SizeIsThatOfThePicture) {
    struct Case {
        std::uint32_t mWidth;
        std::uint32_t mHeight;
        const char* mTold;
    };
    constexpr Case kCases[] = {{720, 576, " 720x576"},
                               {720, UINT32_MAX - 575, " 720x576"},
                               {INT32_MAX, INT32_MAX, " 2147483647x2147483647"},
                               {1, 0x80000000, " 1x2147483648"},
                               {0, 576, ""},
                               {720, 0, ""},
                               {0x80000000, 576, ""}};
    for (const Case& size : kCases) {
        EXPECT_EQ(Told(Bitmap("WMV2", "", size.mWidth, size.mHeight)),
                  "WMV2" + std::string(size.mTold) + " cd=8 4:2:0");
    }
    EXPECT_EQ(Told(Bitmap("WVC1", vc1::Sequence().Bytes(), 0, 0)),
              "VC1 Advanced@20 1280x720 progressive cd=8 4:2:0");
}

TEST(BitmapVideo, HeaderMayBeCutAfterTheFourCharacters) {
    const std::string whole = Bitmap("WMV3", Hex({0x4E, 0x39, 0x0A, 1}));
    for (std::size_t size = 0; size <= whole.size(); ++size) {
        EXPECT_EQ(Told(whole.substr(0, size)), size < 20    ? "nothing"
                                               : size <= 40 ? "WMV3 320x240 cd=8 4:2:0"
                                                            : "WMV3 Main@? 320x240 progressive cd=8 4:2:0")
            << size;
    }
}

TEST(BitmapVideo, SoMuchIsReadOfWhatFollowsTheHeader) {
    const std::string code = Hex({0, 0, 1, 0xB0, 3});
    const auto told = [&](std::size_t aBefore) {
        return Told(Bitmap("M4S2", std::string(aBefore, 'x') + code));
    };
    EXPECT_EQ(told(kBitmapVideo_MaxData - code.size()), "MPEG4 Simple@30 320x240");
    EXPECT_EQ(told(kBitmapVideo_MaxData - code.size() + 1), "MPEG4 320x240");
}

/// Of constrained baseline, 176x144 at 25.
TEST(BitmapVideo, ParameterSetsStandInARecordOrInAStream) {
    const std::string set = Hex({0x67, 0x42, 0xC0, 0x0B, 0xD9, 0x02, 0xC4, 0xEC, 0x04, 0x40, 0,
                                 0,    3,    0,    0x40, 0,    0,    0x0C, 0x83, 0xC5, 0x0A, 0x92});
    const std::string pictures = Hex({0x68, 0xCB, 0x80, 0xA4, 0xB2});
    const std::string start = Hex({0, 0, 0, 1});
    const std::string stream = start + set + start + pictures;
    const std::string record =
        Hex({1, 0x42, 0xC0, 0x0B, 0xFF, 0xE1, 0, 22}) + set + Hex({1, 0, 5}) + pictures;
    const char* const told = "H264 ConstrainedBaseline@11 176x144 1:1 fr=25000 progressive cd=8 4:2:0";
    EXPECT_EQ(Told(Bitmap("H264", record, 176, 144)), told);
    EXPECT_EQ(Told(Bitmap("H264", stream, 176, 144)), told);
    EXPECT_EQ(Told(Bitmap("avc1", "", 176, 144), stream), told);
}
