#include "ezThumbnails/JpegPicture.h"

#include "PictureKit.h"

#include "ezThumbnails/PictureFacts.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

using namespace std::string_literals;

namespace {

/// One colour, and how many rows of it were asked for.
class PlainRows : public JpegRows {
public:
    PlainRows(uint32 aWidth, unsigned char aRed) {
        for (uint32 x = 0; x < aWidth; ++x) {
            mRow.insert(mRow.end(), {aRed, 100, 30});
        }
    }
    const unsigned char* NextRow() override {
        ++mAsked;
        return mRow.data();
    }
    std::size_t mAsked = 0;

private:
    std::vector<unsigned char> mRow;
};

std::string InWords(std::string_view aBytes) {
    const std::optional<PictureFacts> facts = ReadPictureFacts(aBytes);
    return !facts ? "nothing"
                  : std::string(facts->mFormat) + " " + std::to_string(facts->mWidth) + "x" +
                        std::to_string(facts->mHeight);
}

} // namespace

TEST(JpegPicture, IsWrittenRowByRowAndReadAgain) {
    PlainRows rows(40, 200);
    const std::string jpeg = WriteJpeg(40, 25, "a page", &rows);
    EXPECT_EQ(rows.mAsked, 25U);
    EXPECT_EQ(InWords(jpeg), "JPEG 40x25");
    EXPECT_TRUE(HasJpegComment(jpeg, "a page"));
    const ReadJpeg read(jpeg);
    EXPECT_TRUE(read.mfBaseline && read.mfJFIF);
    EXPECT_EQ(read.mJFIFVersion, 102);
    JpegPicture picture;
    ASSERT_TRUE(ReadJpegPicture(jpeg, 40, &picture));
    EXPECT_EQ(picture.mWidth, 40U);
    EXPECT_EQ(picture.mHeight, 25U);
    EXPECT_EQ(picture.mBytes, read.mPicture.mBytes) << "as the library by itself decodes it";
    EXPECT_FALSE(ReadJpegPicture(jpeg, 39, &picture)) << "one side is longer";
    EXPECT_EQ(picture.mWidth, 40U);
}

TEST(JpegPicture, GreyIsReadAsColours) {
    const std::string grey = MakeJpeg(Noise(30, 20, 1), JCS_GRAYSCALE);
    JpegPicture picture;
    ASSERT_TRUE(ReadJpegPicture(grey, 30, &picture));
    EXPECT_EQ(picture.mBytes, ReadJpeg(grey).mPicture.mBytes);
}

TEST(JpegPicture, WithoutPixelsThereIsNone) {
    PlainRows rows(1, 0);
    EXPECT_EQ(WriteJpeg(0, 5, "", &rows), "");
    EXPECT_EQ(WriteJpeg(5, 0, "", &rows), "");
    EXPECT_EQ(WriteJpeg(65536, 1, "", &rows), "");
    EXPECT_EQ(rows.mAsked, 0U);
}

TEST(JpegPicture, DamageIsRefused) {
    const std::string whole = MakeJpeg(Noise(60, 60, 3), JCS_RGB);
    JpegPicture picture;
    for (const std::string& bad : {""s, "\xFF\xD8"s, "no picture"s, whole.substr(0, whole.size() / 2)}) {
        EXPECT_FALSE(ReadJpegPicture(bad, 100, &picture)) << bad.size();
        EXPECT_EQ(InWords(bad), "nothing") << bad.size();
    }
    EXPECT_EQ(picture.mWidth, 0U);
    EXPECT_EQ(InWords(whole), "JPEG 60x60");
    EXPECT_EQ(InWords(whole.substr(0, whole.size() - 1)), "nothing");
}

TEST(JpegPicture, CommentIsFoundBeforeThePictureOnly) {
    const std::string jpeg =
        MakeJpeg(Noise(8, 8, 3), JCS_RGB, nullptr, {{JPEG_COM, "one"}, {JPEG_COM, "two"}});
    EXPECT_TRUE(HasJpegComment(jpeg, "one"));
    EXPECT_TRUE(HasJpegComment(jpeg, "two"));
    EXPECT_FALSE(HasJpegComment(jpeg, "on"));
    EXPECT_FALSE(HasJpegComment(jpeg, "ones"));
    const std::size_t end = jpeg.find("two") + 3;
    EXPECT_TRUE(HasJpegComment(jpeg.substr(0, end), "two"));
    EXPECT_FALSE(HasJpegComment(jpeg.substr(0, end - 1), "two")) << "cut within it";
    EXPECT_FALSE(HasJpegComment("\xFF\xD8\xFF\xDA\xFF\xFE\x00\x05one"s, "one")) << "in the picture";
    EXPECT_FALSE(HasJpegComment("", "one"));
}

TEST(PictureFacts, PngIsReadFromItsHeaderWhereItIsWhole) {
    const std::string png = MakePng(Noise(31, 17, 3), PNG_COLOR_TYPE_RGB);
    EXPECT_EQ(InWords(png), "PNG 31x17");
    EXPECT_EQ(InWords(png.substr(0, png.size() - 1)), "nothing");
}
