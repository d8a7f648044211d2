#pragma once

#include "Announce.h"
#include "companions/ezThumbnails/PictureKit.h"
#include "support/Settled.h"
#include "support/TemporaryFolder.h"
#include "support/WholeFile.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

inline const Pixel kRed = {255, 0, 0};
inline const Pixel kGreen = {0, 255, 0};
inline const Pixel kBlue = {0, 0, 255};
inline const Pixel kWhite = {255, 255, 255};

/// A JPEG of one colour.
inline std::string JpegOf(const Pixel& aColour, unsigned aWidth = 160, unsigned aHeight = 160) {
    return MakeJpeg(Quarters(aWidth, aHeight, std::vector<Pixel>(4, aColour)), JCS_RGB);
}

/// A number of aCount bytes, the most significant first, of aBits bits each.
inline std::string BigEndian(std::size_t aValue, unsigned aCount, unsigned aBits = 8) {
    std::string bytes;
    for (unsigned i = aCount; i-- > 0;) {
        bytes.push_back(static_cast<char>(aValue >> (aBits * i) & ((1U << aBits) - 1)));
    }
    return bytes;
}

/// An MP3 as far as its tag goes, with a cover of a stated size.
inline std::string SongWithCover(const std::string& aCover, std::size_t aStatedSize) {
    using namespace std::string_literals;
    const std::string head = "\0image/jpeg\0\x03\0"s;
    const std::string frame = "APIC" + BigEndian(head.size() + aStatedSize, 4) + "\0\0"s + head + aCover;
    return "ID3\x03\0\0"s + BigEndian(frame.size(), 4, 7) + frame;
}
inline std::string SongWithCover(const std::string& aCover) {
    return SongWithCover(aCover, aCover.size());
}

inline std::string SizeOf(const TestPicture& aPicture) {
    return std::to_string(aPicture.mWidth) + "x" + std::to_string(aPicture.mHeight);
}

inline void ExpectPixel(const TestPicture& aPicture, unsigned aX, unsigned aY, const Pixel& aColour) {
    constexpr int kTolerance = 12; // two times through a JPEG
    ASSERT_LT(aX, aPicture.mWidth);
    ASSERT_LT(aY, aPicture.mHeight);
    for (std::size_t i = 0; i < aColour.size(); ++i) {
        EXPECT_NEAR(aPicture.At(aX, aY)[i], aColour[i], kTolerance)
            << "at " << aX << ", " << aY << ", channel " << i;
    }
}

inline void ExpectColour(const std::string& aJpeg, const Pixel& aColour) {
    const TestPicture picture = ReadJpeg(aJpeg).mPicture;
    ExpectPixel(picture, picture.mWidth / 2, picture.mHeight / 2, aColour);
}

inline bool Holds(const std::string& aText, const std::string& aPart) {
    return aText.find(aPart) != std::string::npos;
}

/// Runs the tool with a folder of its own, in which the cache is too.
class ThumbnailTool : public testing::Test {
protected:
    using Words = std::vector<std::string>;

    ProgramResult Run(Words aWords, const ProgramOptions& anOptions = ProgramOptions()) {
        aWords.insert(aWords.end(), {"--cache", mFolder.Path("cache")});
        WaitUntilSettled(mFolder.GetPath()); // or nothing would come from the cache
        return Announce(aWords, anOptions);
    }

    /// The line about the file that was written; the errors where there is none.
    std::string Thumbnail(const std::string& aPath, const Words& aMore = {}) {
        Words words = {"thumbnail", aPath, "-o", mOut};
        words.insert(words.end(), aMore.begin(), aMore.end());
        const ProgramResult result = Run(words);
        EXPECT_EQ(result.mStatus, result.mError.empty() ? 0 : 1);
        EXPECT_EQ(result.mOut.empty(), !result.mError.empty());
        return WithoutBytes(result.mOut) + result.mError;
    }

    /// The line about the file that was written without the number of its bytes, which is looked at here.
    std::string WithoutBytes(std::string aLine) const {
        const std::string bytes = ", " + std::to_string(ReadWholeFile(mOut).size()) + " bytes";
        const std::size_t at = aLine.find(bytes);
        EXPECT_EQ(at == std::string::npos, aLine.empty()) << aLine << bytes;
        return at == std::string::npos ? aLine : aLine.erase(at, bytes.size());
    }

    /// The line about a picture in the file that is written, without its bytes.
    std::string Line(const std::string& aFormat, const std::string& anOrigin) const {
        return mOut + ": " + aFormat + ", " + anOrigin + "\n";
    }

    /// A film, without anything beside it.
    std::string Film() {
        return mFolder.Write("film/kite.mkv", ReadWholeFile(EZ_SAMPLES "/video/kite-day.mkv"));
    }

    TemporaryFolder mFolder;
    std::string mOut = mFolder.Path("out");
};
