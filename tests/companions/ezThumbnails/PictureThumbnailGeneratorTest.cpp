#include "GeneratorKit.h"

#include "support/ScriptedSystem.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

#include <sys/resource.h>

namespace {

// ---- the results ----

TEST_F(ThumbnailGenerator, WritesABaselineJpegOf420WithinTheBox) {
    const std::string jpeg = Build(MakeJpeg(Quarters(400, 300, kRGBW), JCS_RGB));
    const ReadJpeg read(jpeg);
    EXPECT_EQ(SizeOf(read.mPicture), "160x120");
    EXPECT_TRUE(read.mfBaseline);
    EXPECT_TRUE(read.mfYCbCr);
    EXPECT_TRUE(read.mfJFIF);
    EXPECT_EQ(read.mJFIFVersion, 102);
    EXPECT_EQ(read.mSampling, "2x2 1x1 1x1 ");
    EXPECT_EQ(read.mWarnings, 0);
    EXPECT_NE(jpeg.find("\xFF\xC0"), std::string::npos);
    ExpectCorners(read.mPicture, kRGBW, 6);
}

TEST_F(ThumbnailGenerator, WritesTheSameKindOfJpegForAGreyPicture) {
    const ReadJpeg read(Build(MakeJpeg(Quarters(400, 300, {{0}, {80}, {160}, {255}}), JCS_GRAYSCALE)));
    EXPECT_TRUE(read.mfYCbCr);
    EXPECT_EQ(read.mSampling, "2x2 1x1 1x1 ");
    ExpectCorners(read.mPicture, {kBlack, {80, 80, 80}, {160, 160, 160}, kWhite}, 4);
}

TEST_F(ThumbnailGenerator, WritesAPngOf8BitsWithoutInterlace) {
    mInfo.mThumbnailID = kPNGThumbnailID;
    const std::string png = Build(MakePng(Quarters(400, 300, kRGBW), PNG_COLOR_TYPE_RGB, 16, true));
    ASSERT_GT(png.size(), 29U);
    EXPECT_EQ(png[24], 8);                  // bits
    EXPECT_EQ(png[25], PNG_COLOR_TYPE_RGB); // colour type
    EXPECT_EQ(png[28], PNG_INTERLACE_NONE);
    EXPECT_NE(png.find("sRGB"), std::string::npos);
    EXPECT_EQ(SizeOf(ReadPng(png)), "160x120");
    ExpectCorners(ReadPng(png), Opaque(kRGBW), 0);
}

TEST_F(ThumbnailGenerator, PrefersJpegAndRefusesToWriteNeither) {
    const std::string source = MakeJpeg(Quarters(400, 300, kRGBW), JCS_RGB);
    mInfo.mThumbnailID = kJPEGThumbnailID | kPNGThumbnailID;
    EXPECT_EQ(Build(source).substr(0, 2), "\xFF\xD8");
    mInfo.mThumbnailID = kPNGThumbnailID;
    EXPECT_EQ(Build(source).substr(1, 3), "PNG");
    mInfo.mThumbnailID = kNoThumbnailID;
    EXPECT_EQ(Build(source), "<failed>");
    mInfo.mThumbnailID = 4;
    EXPECT_EQ(Build(source), "<failed>");
}

TEST_F(ThumbnailGenerator, ConvertsJpegAndPngTypesOnly) {
    const uint32 both = kJPEGThumbnailID | kPNGThumbnailID;
    for (const char* type : {"image/jpeg", "IMAGE/JPEG", "image/jpg", "image/pjpeg", "image/png",
                             "image/x-png", "image/png; q=1", "image/jpeg;x"}) {
        EXPECT_EQ(mGenerator.CanConvert(type), both) << type;
    }
    for (const char* type :
         {"", "image/", "image/gif", "image/jpegx", "image/jpeg2000", "audio/mpeg", "jpeg", ";"}) {
        EXPECT_EQ(mGenerator.CanConvert(type), 0U) << type;
    }
}

TEST_F(ThumbnailGenerator, NoSideIsEver0) {
    EXPECT_EQ(SizeOf(BuildJpeg(MakeJpeg(TestPicture(4000, 10, 3), JCS_RGB))), "160x1");
    EXPECT_EQ(SizeOf(BuildPng(MakePng(TestPicture(10, 4000, 3), PNG_COLOR_TYPE_RGB))), "1x160");
    SetSize(0, 0);
    EXPECT_EQ(SizeOf(BuildJpeg(MakeJpeg(TestPicture(10, 10, 3), JCS_RGB))), "1x1");
}

TEST_F(ThumbnailGenerator, IsWithin160By160AndOfTheComputedSizeForAnyOriginal) {
    std::uint32_t state = 7;
    const auto random = [&state](unsigned aLimit) {
        state = state * 1664525U + 1013904223U;
        return (state >> 16) % aLimit + 1;
    };
    for (int i = 0; i < 60; ++i) {
        const unsigned width = random(700);
        const unsigned height = random(700);
        mInfo.mfFastRescale = i % 2 == 0;
        const TestPicture read = BuildJpeg(MakeJpeg(TestPicture(width, height, 1), JCS_GRAYSCALE));
        uint32 wantedWidth = 0;
        uint32 wantedHeight = 0;
        GetThumbnailFinalSize(&mInfo, width, height, &wantedWidth, &wantedHeight);
        EXPECT_EQ(read.mWidth, std::max<uint32>(wantedWidth, 1)) << width << "x" << height;
        EXPECT_EQ(read.mHeight, std::max<uint32>(wantedHeight, 1)) << width << "x" << height;
        EXPECT_LE(std::max(read.mWidth, read.mHeight), 160U) << width << "x" << height;
    }
}

TEST_F(ThumbnailGenerator, OtherBoxesAndSizesAreGivenAsAsked) {
    const std::string source = MakeJpeg(Quarters(60, 30, kRGBW), JCS_RGB);
    EXPECT_EQ(SizeOf(BuildJpeg(source)), "60x30"); // only the box of 160 by 160 leaves a small one as it is
    SetBox(600, 600);
    const TestPicture enlarged = BuildJpeg(source);
    EXPECT_EQ(SizeOf(enlarged), "600x300");
    ExpectCorners(enlarged, kRGBW, 6);
    SetSize(33, 77);
    const TestPicture asked = BuildPng(source);
    EXPECT_EQ(SizeOf(asked), "33x77");
    ExpectCorners(asked, Opaque(kRGBW), 6);
}

TEST_F(ThumbnailGenerator, RefusesAThumbnailThatIsTooLarge) {
    const std::string source = MakeJpeg(Quarters(60, 30, kRGBW), JCS_RGB);
    SetSize(5000, 5000);
    EXPECT_EQ(Build(source), "<failed>");
    SetSize(70000, 1);
    EXPECT_EQ(Build(source), "<failed>");
    SetSize(0xFFFFFFFFU, 0xFFFFFFFFU);
    EXPECT_EQ(Build(source), "<failed>");
    SetBox(9000, 9000);
    EXPECT_EQ(Build(source), "<failed>");
    SetBox(0xFFFFFFFFU, 0xFFFFFFFFU);
    EXPECT_EQ(Build(source), "<failed>");
}

TEST_F(ThumbnailGenerator, TheFastWayGivesTheSameSizeAndColours) {
    mInfo.mfFastRescale = true;
    for (const unsigned width : {161U, 300U, 640U, 1000U, 1281U, 3000U}) {
        const TestPicture read = BuildJpeg(MakeJpeg(Quarters(width, width * 3 / 4, kRGBW), JCS_RGB));
        EXPECT_EQ(read.mWidth, 160U);
        EXPECT_NEAR(read.mHeight, 120, 1);
        ExpectCorners(read, kRGBW, 8);
    }
}

// ---- the orientation ----

/// What is seen of red, green, blue and white quarters that are stored in an orientation.
const std::vector<std::vector<Pixel>> kSeen = {{kRed, kGreen, kBlue, kWhite}, {kGreen, kRed, kWhite, kBlue},
                                               {kWhite, kBlue, kGreen, kRed}, {kBlue, kWhite, kRed, kGreen},
                                               {kRed, kBlue, kGreen, kWhite}, {kBlue, kRed, kWhite, kGreen},
                                               {kWhite, kGreen, kBlue, kRed}, {kGreen, kWhite, kRed, kBlue}};

TEST_F(ThumbnailGenerator, HonoursTheOrientationOfAJpeg) {
    for (unsigned orientation = 1; orientation <= 8; ++orientation) {
        for (const bool fLittle : {true, false}) {
            const TestPicture read = BuildJpeg(
                MakeJpeg(Quarters(400, 200, kRGBW), JCS_RGB, nullptr, {ExifMarker(orientation, fLittle)}));
            EXPECT_EQ(SizeOf(read), orientation < 5 ? "160x80" : "80x160") << orientation;
            ExpectCorners(read, kSeen[orientation - 1], 6);
        }
    }
}

TEST_F(ThumbnailGenerator, HonoursTheOrientationOfAPng) {
    for (unsigned orientation = 1; orientation <= 8; ++orientation) {
        std::string exif = TiffBlock(orientation, orientation % 2 == 0);
        const std::string source =
            MakePng(Quarters(400, 200, Opaque(kRGBW)), PNG_COLOR_TYPE_RGB_ALPHA, 8, false,
                    [&exif](png_structp aPng, png_infop anInfo) {
                        png_set_eXIf_1(aPng, anInfo, static_cast<png_uint_32>(exif.size()),
                                       reinterpret_cast<png_bytep>(exif.data()));
                    });
        const TestPicture read = BuildPng(source);
        EXPECT_EQ(SizeOf(read), orientation < 5 ? "160x80" : "80x160") << orientation;
        ExpectCorners(read, Opaque(kSeen[orientation - 1]), 0);
    }
}

TEST_F(ThumbnailGenerator, TheFirstExifBlockCounts) {
    const TestPicture read =
        BuildJpeg(MakeJpeg(Quarters(400, 200, kRGBW), JCS_RGB, nullptr,
                           {{JPEG_APP0 + 1, "http://ns.adobe.com/xap/1.0/"}, ExifMarker(6), ExifMarker(3)}));
    EXPECT_EQ(SizeOf(read), "80x160");
}

TEST_F(ThumbnailGenerator, AnExifBlockThatIsWrongIsNone) {
    const std::string whole = ExifMarker(6).mBytes;
    std::vector<std::string> blocks = {ExifMarker(0).mBytes, ExifMarker(9).mBytes, ExifMarker(65535).mBytes};
    std::string block = whole;
    block[10] = '\xFF'; // the directory far after the block
    blocks.push_back(block);
    block = whole;
    block[6] = 'X';
    blocks.push_back(block);
    block = whole;
    block[30] = 4; // the type of the orientation
    blocks.push_back(block);
    for (std::size_t count = 0; count < 36; ++count) { // its value ends at 38
        blocks.push_back(whole.substr(0, count));
    }
    for (const std::string& bytes : blocks) {
        const TestPicture read =
            BuildJpeg(MakeJpeg(Quarters(40, 20, kRGBW), JCS_RGB, nullptr, {{JPEG_APP0 + 1, bytes}}));
        EXPECT_EQ(SizeOf(read), "40x20") << bytes.size();
    }
}

// ---- the kinds of originals ----

TEST_F(ThumbnailGenerator, TakesProgressiveAndUnsampledJpegs) {
    const TestPicture original = Quarters(400, 300, kRGBW);
    ExpectCorners(BuildJpeg(MakeJpeg(original, JCS_RGB, jpeg_simple_progression)), kRGBW, 6);
    ExpectCorners(BuildJpeg(MakeJpeg(original, JCS_RGB,
                                     [](jpeg_compress_struct* anInfo) {
                                         anInfo->comp_info[0].h_samp_factor = 1;
                                         anInfo->comp_info[0].v_samp_factor = 1;
                                         anInfo->restart_interval = 3;
                                     })),
                  kRGBW, 6);
    ExpectCorners(
        BuildJpeg(MakeJpeg(original, JCS_RGB,
                           [](jpeg_compress_struct* anInfo) { jpeg_set_colorspace(anInfo, JCS_RGB); })),
        kRGBW, 6);
}

TEST_F(ThumbnailGenerator, TakesCmykOfBothSenses) {
    // Cyan, magenta, yellow, key; red, half dark green, blue and black.
    const std::vector<Pixel> inks = {{0, 255, 255, 0}, {255, 0, 255, 127}, {255, 255, 0, 0}, {0, 0, 0, 255}};
    const std::vector<Pixel> seen = {kRed, {0, 128, 0}, kBlue, kBlack};
    std::vector<Pixel> inverted = inks;
    for (Pixel& pixel : inverted) {
        for (unsigned char& sample : pixel) {
            sample = static_cast<unsigned char>(255 - sample);
        }
    }
    const auto plain = [](jpeg_compress_struct* anInfo) { anInfo->write_Adobe_marker = FALSE; };
    const auto ycck = [](jpeg_compress_struct* anInfo) { jpeg_set_colorspace(anInfo, JCS_YCCK); };
    ExpectCorners(BuildJpeg(MakeJpeg(Quarters(400, 300, inks), JCS_CMYK, plain)), seen, 8);
    ExpectCorners(BuildJpeg(MakeJpeg(Quarters(400, 300, inverted), JCS_CMYK)), seen,
                  8); // with Adobe's marker
    ExpectCorners(BuildJpeg(MakeJpeg(Quarters(400, 300, inverted), JCS_CMYK, ycck)), seen, 8);
}

TEST_F(ThumbnailGenerator, TakesEveryKindOfPng) {
    const TestPicture rgb = Quarters(400, 300, kRGBW);
    const TestPicture grey = Quarters(400, 300, {{0}, {80}, {160}, {255}});
    const std::vector<Pixel> greys = {kBlack, {80, 80, 80}, {160, 160, 160}, kWhite};
    for (const bool fInterlaced : {false, true}) {
        for (const int depth : {8, 16}) {
            ExpectCorners(BuildPng(MakePng(rgb, PNG_COLOR_TYPE_RGB, depth, fInterlaced)), Opaque(kRGBW), 0);
            ExpectCorners(BuildPng(MakePng(grey, PNG_COLOR_TYPE_GRAY, depth, fInterlaced)), Opaque(greys), 0);
            ExpectCorners(BuildJpeg(MakePng(rgb, PNG_COLOR_TYPE_RGB, depth, fInterlaced)), kRGBW, 6);
        }
        const TestPicture bits = Quarters(400, 300, {{0}, {1}, {1}, {0}});
        ExpectCorners(BuildPng(MakePng(bits, PNG_COLOR_TYPE_GRAY, 1, fInterlaced)),
                      Opaque({kBlack, kWhite, kWhite, kBlack}), 0);
        const TestPicture fours = Quarters(400, 300, {{0}, {1}, {2}, {3}});
        ExpectCorners(BuildPng(MakePng(fours, PNG_COLOR_TYPE_GRAY, 2, fInterlaced)),
                      Opaque({kBlack, {85, 85, 85}, {170, 170, 170}, kWhite}), 0);
    }
}

TEST_F(ThumbnailGenerator, TakesPalettesAndTransparentColours) {
    const TestPicture indexes = Quarters(400, 300, {{0}, {1}, {2}, {3}});
    const auto palette = [](png_structp aPng, png_infop anInfo) {
        const png_color colours[] = {{255, 0, 0}, {0, 255, 0}, {0, 0, 255}, {255, 255, 255}};
        png_set_PLTE(aPng, anInfo, colours, 4);
    };
    const auto withAlpha = [&palette](png_structp aPng, png_infop anInfo) {
        palette(aPng, anInfo);
        const png_byte alpha[] = {255, 128, 0};
        png_set_tRNS(aPng, anInfo, alpha, 3, nullptr);
    };
    for (const int depth : {2, 4, 8}) {
        ExpectCorners(BuildPng(MakePng(indexes, PNG_COLOR_TYPE_PALETTE, depth, false, palette)),
                      Opaque(kRGBW), 0);
        const std::string source = MakePng(indexes, PNG_COLOR_TYPE_PALETTE, depth, true, withAlpha);
        const TestPicture kept = BuildPng(source);
        EXPECT_EQ(CornersOf(kept)[1], (Pixel{0, 255, 0, 128}));
        EXPECT_EQ(CornersOf(kept)[2][3], 0);
        ExpectCorners(BuildJpeg(source), {kRed, {127, 255, 127}, kWhite, kWhite}, 6);
    }
    const auto greyAlpha = [](png_structp aPng, png_infop anInfo) {
        png_color_16 colour = {};
        colour.gray = 160;
        png_set_tRNS(aPng, anInfo, nullptr, 0, &colour);
    };
    const TestPicture grey = Quarters(400, 300, {{0}, {80}, {160}, {255}});
    const std::string source = MakePng(grey, PNG_COLOR_TYPE_GRAY, 8, false, greyAlpha);
    EXPECT_EQ(CornersOf(BuildPng(source))[2][3], 0);
    EXPECT_EQ(CornersOf(BuildPng(source))[1], (Pixel{80, 80, 80, 255}));
    ExpectCorners(BuildJpeg(source), {kBlack, {80, 80, 80}, kWhite, kWhite}, 6);
}

TEST_F(ThumbnailGenerator, LaysTransparencyOnWhiteInJpegAndKeepsItInPng) {
    const std::vector<Pixel> pixels = {{255, 0, 0, 255}, {0, 255, 0, 128}, {0, 0, 255, 0}, {0, 0, 0, 64}};
    for (const int depth : {8, 16}) {
        const std::string source =
            MakePng(Quarters(400, 300, pixels), PNG_COLOR_TYPE_RGB_ALPHA, depth, depth == 16);
        const TestPicture kept = BuildPng(source);
        EXPECT_EQ(CornersOf(kept)[0], pixels[0]);
        EXPECT_EQ(CornersOf(kept)[1], pixels[1]);
        EXPECT_EQ(CornersOf(kept)[2][3], 0);
        EXPECT_EQ(CornersOf(kept)[3], pixels[3]);
        ExpectCorners(BuildJpeg(source), {kRed, {127, 255, 127}, kWhite, {191, 191, 191}}, 6);
    }
    const std::string grey =
        MakePng(Quarters(400, 300, {{0, 255}, {80, 128}, {0, 0}, {255, 255}}), PNG_COLOR_TYPE_GRAY_ALPHA);
    EXPECT_EQ(CornersOf(BuildPng(grey))[1], (Pixel{80, 80, 80, 128}));
    ExpectCorners(BuildJpeg(grey), {kBlack, {167, 167, 167}, kWhite, kWhite}, 6);
}

TEST_F(ThumbnailGenerator, WhatIsTransparentLendsItsColourToNothing) {
    TestPicture stripes(320, 320, 4); // each pixel of the result is of one red and one hidden green column
    for (unsigned y = 0; y < 320; ++y) {
        for (unsigned x = 0; x < 320; ++x) {
            const Pixel pixel = x % 2 == 0 ? Pixel{255, 0, 0, 255} : Pixel{0, 255, 0, 0};
            std::copy(pixel.begin(), pixel.end(), stripes.At(x, y));
        }
    }
    const TestPicture read = BuildPng(MakePng(stripes, PNG_COLOR_TYPE_RGB_ALPHA));
    EXPECT_EQ(SizeOf(read), "160x160");
    EXPECT_EQ(CornersOf(read), std::vector<Pixel>(4, {255, 0, 0, 128}));
}

TEST_F(ThumbnailGenerator, BringsAPngToTheGammaOfSRGB) {
    const auto linear = [](png_structp aPng, png_infop anInfo) { png_set_gAMA_fixed(aPng, anInfo, 100000); };
    const TestPicture grey = Quarters(400, 300, {{0}, {55}, {128}, {255}});
    ExpectCorners(BuildPng(MakePng(grey, PNG_COLOR_TYPE_GRAY, 8, false, linear)),
                  Opaque({kBlack, {127, 127, 127}, {186, 186, 186}, kWhite}), 3);
    const std::vector<Pixel> plain = CornersOf(BuildPng(MakePng(grey, PNG_COLOR_TYPE_GRAY)));
    const auto isFollowed = [&](png_fixed_point aGamma) {
        const auto stated = [=](png_structp aPng, png_infop anInfo) {
            png_set_gAMA_fixed(aPng, anInfo, aGamma);
        };
        return CornersOf(BuildPng(MakePng(grey, PNG_COLOR_TYPE_GRAY, 8, false, stated))) != plain;
    };
    EXPECT_TRUE(isFollowed(10'000));
    EXPECT_FALSE(isFollowed(9'999)) << "a mistake";
    EXPECT_TRUE(isFollowed(1'000'000));
    EXPECT_FALSE(isFollowed(1'000'001)) << "a mistake";
}

TEST_F(ThumbnailGenerator, AveragesWhatAPixelCovers) {
    TestPicture board(480, 480, 1); // 3 by 3 pixels in one: 4 of them white
    for (unsigned y = 0; y < 480; ++y) {
        for (unsigned x = 0; x < 480; ++x) {
            *board.At(x, y) = x % 3 < 2 && y % 3 < 2 ? 255 : 0;
        }
    }
    const TestPicture read = BuildPng(MakePng(board, PNG_COLOR_TYPE_GRAY));
    EXPECT_EQ(SizeOf(read), "160x160");
    EXPECT_EQ(CornersOf(read), std::vector<Pixel>(4, {113, 113, 113, 255}));
}

// ---- sources ----

TEST_F(ThumbnailGenerator, SeesTheKindFromTheBytes) {
    BytesSource source(MakePng(Quarters(400, 300, kRGBW), PNG_COLOR_TYPE_RGB));
    source.SetMimeType("image/jpeg");
    ExpectCorners(ReadJpeg(Build(source)).mPicture, kRGBW, 6);
}

TEST_F(ThumbnailGenerator, RefusesWhatIsNoPicture) {
    EXPECT_EQ(Build(std::string()), "<failed>");
    EXPECT_EQ(Build(std::string("GIF89a\1\0\1\0\0\0\0;", 14)), "<failed>");
    EXPECT_EQ(Build(std::string("\xFF\xD8", 2)), "<failed>");
    EXPECT_EQ(Build(std::string("\x89PNG\r\n\x1A\n", 8)), "<failed>");
    EXPECT_EQ(Build(BytesSource(static_cast<ezStream*>(nullptr))), "<failed>");
    ScriptedStream* closed = new ScriptedStream(MakeJpeg(Quarters(9, 9, kRGBW), JCS_RGB), false);
    closed->mfOpened = false;
    bool fReleased = false;
    closed->mReleased = &fReleased;
    EXPECT_EQ(Build(BytesSource(closed)), "<failed>");
    EXPECT_TRUE(fReleased);
}

/// A stream of the test's own, which its feeder may still use when it is given back.
class KeptStream : public ScriptedStream {
public:
    using ScriptedStream::ScriptedStream;
    void Release() override { mfReleased = true; }
    bool mfReleased = false;
};

TEST_F(ThumbnailGenerator, WaitsForASourceThatIsStillArriving) {
    const std::string bytes = MakeJpeg(Noise(200, 200, 3), JCS_RGB);
    KeptStream stream(bytes, false);
    stream.Withhold();
    std::thread feeder([&stream, &bytes] {
        std::size_t given = 0;
        for (std::size_t step = 1; given < bytes.size(); step = step * 3 / 2 + 1) {
            const std::size_t count = std::min(step, bytes.size() - given);
            given += count;
            stream.Arrive(count);
            stream.Fire();
        }
        stream.Finish();
        stream.Fire();
    });
    const std::string thumbnail = Build(BytesSource(&stream));
    feeder.join();
    EXPECT_TRUE(thumbnail == Build(bytes));
    EXPECT_EQ(thumbnail.substr(0, 2), "\xFF\xD8");
    EXPECT_TRUE(stream.mfReleased);
}

TEST_F(ThumbnailGenerator, FailsWithItsSource) {
    const std::string bytes = MakeJpeg(Noise(200, 200, 3), JCS_RGB);
    for (const std::size_t arrived : {std::size_t{0}, std::size_t{5}, bytes.size() / 2, bytes.size() - 1}) {
        ScriptedStream* stream = new ScriptedStream(bytes, false);
        stream->Withhold();
        stream->Arrive(arrived);
        stream->Fail(ezStreamingStatus_ReadError);
        EXPECT_EQ(Build(BytesSource(stream)), "<failed>") << arrived;
    }
}

// ---- failing to write ----

TEST_F(ThumbnailGenerator, FailsWhenTheFileCannotBeWritten) {
    const BytesSource source(MakeJpeg(Quarters(400, 300, kRGBW), JCS_RGB));
    ezFile closed;
    EXPECT_FALSE(mGenerator.BuildThumbnail(&mInfo, &source, &closed));
    ezFile readOnly;
    ASSERT_TRUE(
        readOnly.Open(Bytes(mFolder.Write("r", "")), ezFileOpenMode_Read, ezFileAccessMode_ReadWrite));
    EXPECT_FALSE(mGenerator.BuildThumbnail(&mInfo, &source, &readOnly));
}

TEST_F(ThumbnailGenerator, FailsWhenNotAllCanBeWritten) {
    const BytesSource source(MakeJpeg(Quarters(400, 300, kRGBW), JCS_RGB));
    ezFile file;
    ASSERT_TRUE(file.Create(Bytes(mFolder.Path("f")), true, ezFileAccessMode_ReadWrite));
    rlimit before = {};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit few = before;
    few.rlim_cur = 100;
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &few), 0);
    const bool fBuilt = mGenerator.BuildThumbnail(&mInfo, &source, &file);
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
    std::signal(SIGXFSZ, handler);
    EXPECT_FALSE(fBuilt);
    EXPECT_EQ(file.LengthAtOpen(), 100); // it was the limit that stopped it
}

TEST_F(ThumbnailGenerator, FailsWhenThereIsNoMemoryForTheResult) {
    const std::string bytes = MakeJpeg(Quarters(400, 300, kRGBW), JCS_RGB);
    for (const uint32 format : {kJPEGThumbnailID, kPNGThumbnailID}) {
        mInfo.mThumbnailID = format;
        ScriptedSystem system;
        system.mAllocateOutcomes = {{ENOMEM, 0}};
        EXPECT_EQ(Build(bytes), "<failed>");
        EXPECT_TRUE(system.mAllocateOutcomes.empty());
    }
}

TEST_F(ThumbnailGenerator, WithoutARequestASourceOrAFileThereIsNoThumbnail) {
    const BytesSource source(MakeJpeg(Quarters(40, 30, kRGBW), JCS_RGB));
    ezFile file;
    ASSERT_TRUE(file.Create(Bytes(mFolder.Path("out")), true, ezFileAccessMode_ReadWrite));
    EXPECT_FALSE(mGenerator.BuildThumbnail(nullptr, &source, &file));
    EXPECT_FALSE(mGenerator.BuildThumbnail(&mInfo, nullptr, &file));
    EXPECT_FALSE(mGenerator.BuildThumbnail(&mInfo, &source, nullptr));
    EXPECT_EQ(file.LengthAtOpen(), 0);
    EXPECT_TRUE(mGenerator.BuildThumbnail(&mInfo, &source, &file));
}

} // namespace
