#pragma once

#include "ezThumbnails/PictureThumbnailGenerator.h"

#include "PictureKit.h"

#include "ezPlatform/files/File.h"
#include "support/ScriptedStream.h"
#include "support/Str.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

inline const Pixel kRed = {255, 0, 0};
inline const Pixel kGreen = {0, 255, 0};
inline const Pixel kBlue = {0, 0, 255};
inline const Pixel kWhite = {255, 255, 255};
inline const Pixel kBlack = {0, 0, 0};
inline const std::vector<Pixel> kRGBW = {kRed, kGreen, kBlue, kWhite};

/// Colours at the middles of the four quarters, named as Quarters does.
inline std::vector<Pixel> CornersOf(const TestPicture& aPicture) {
    std::vector<Pixel> corners;
    for (unsigned i = 0; i < 4; ++i) {
        const unsigned char* at =
            aPicture.At(aPicture.mWidth * (i % 2 == 0 ? 1 : 3) / 4, aPicture.mHeight * (i < 2 ? 1 : 3) / 4);
        corners.emplace_back(at, at + aPicture.mChannels);
    }
    return corners;
}

inline void ExpectCorners(const TestPicture& aPicture, const std::vector<Pixel>& aPixels, int aTolerance) {
    const std::vector<Pixel> corners = CornersOf(aPicture);
    for (std::size_t i = 0; i < corners.size(); ++i) {
        ASSERT_EQ(corners[i].size(), aPixels[i].size());
        for (std::size_t c = 0; c < corners[i].size(); ++c) {
            EXPECT_NEAR(corners[i][c], aPixels[i][c], aTolerance) << "corner " << i << ", channel " << c;
        }
    }
}

/// The opaque RGBA of RGB.
inline std::vector<Pixel> Opaque(std::vector<Pixel> aPixels) {
    for (Pixel& pixel : aPixels) {
        pixel.push_back(255);
    }
    return aPixels;
}

/// A source over bytes, or over a stream that a test made.
class BytesSource : public ezThumbnailSource {
public:
    explicit BytesSource(std::string aBytes) : mBytes(std::move(aBytes)) {}
    explicit BytesSource(ezStream* aStream) : mStream(aStream), mfStream(true) {}
    bool Exists() const override { return true; }
    ezStream* GetStream() const override {
        return mfStream ? mStream : new ScriptedStream(mBytes, false); // given back with Release
    }

private:
    std::string mBytes;
    ezStream* mStream = nullptr;
    bool mfStream = false;
};

class ThumbnailGenerator : public testing::Test {
protected:
    ThumbnailGenerator() {
        mInfo.mThumbnailID = kJPEGThumbnailID;
        SetBox(160, 160);
    }

    void SetBox(uint32 aWidth, uint32 aHeight) {
        mInfo.mWidthMax = aWidth;
        mInfo.mHeightMax = aHeight;
    }
    void SetSize(uint32 aWidth, uint32 aHeight) {
        SetBox(0, 0);
        mInfo.mWidth = aWidth;
        mInfo.mHeight = aHeight;
    }

    /// What the generator writes; "<failed>", and nothing is written, when it fails.
    std::string Build(const BytesSource& aSource) {
        const std::string path = mFolder.Path("out");
        bool fBuilt = false;
        {
            ezFile file;
            EXPECT_TRUE(file.Create(Bytes(path), true, ezFileAccessMode_ReadWrite));
            fBuilt = mGenerator.BuildThumbnail(&mInfo, &aSource, &file);
            EXPECT_EQ(fBuilt, file.LengthAtOpen() != 0);
            EXPECT_TRUE(file.Close());
        }
        ezFile file;
        EXPECT_TRUE(file.Open(Bytes(path), ezFileOpenMode_Read, ezFileAccessMode_ReadWrite));
        std::string bytes(static_cast<std::size_t>(file.Length()), '\0');
        EXPECT_EQ(file.Read(bytes.data(), bytes.size()), static_cast<int>(bytes.size()));
        return fBuilt ? bytes : "<failed>" + bytes;
    }
    std::string Build(const std::string& aBytes) { return Build(BytesSource(aBytes)); }

    TestPicture BuildJpeg(const std::string& aBytes) {
        mInfo.mThumbnailID = kJPEGThumbnailID;
        const std::string jpeg = Build(aBytes);
        if (jpeg == "<failed>") {
            ADD_FAILURE() << "not built";
            return Quarters(1, 1, {4, {0, 0, 0}});
        }
        return ReadJpeg(jpeg).mPicture;
    }
    TestPicture BuildPng(const std::string& aBytes) {
        mInfo.mThumbnailID = kPNGThumbnailID;
        TestPicture picture = ReadPng(Build(aBytes));
        if (picture.mWidth == 0) {
            ADD_FAILURE() << "not built, or damaged";
            return Quarters(1, 1, {4, {0, 0, 0, 0}});
        }
        return picture;
    }

    TemporaryFolder mFolder;
    ThumbnailInfo mInfo;
    PictureThumbnailGenerator mGenerator;
};

inline std::string SizeOf(const TestPicture& aPicture) {
    return std::to_string(aPicture.mWidth) + "x" + std::to_string(aPicture.mHeight);
}
