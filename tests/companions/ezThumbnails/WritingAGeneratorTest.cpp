#include "examples/thumbnail-host/FittingPngGenerator.h"

#include "GeneratorKit.h"

// The generator that the guide for servers shows.

namespace {

class WritingAGenerator : public testing::Test {
protected:
    WritingAGenerator() {
        mInfo.mThumbnailID = kPNGThumbnailID;
        mInfo.mWidthMax = 160;
        mInfo.mHeightMax = 160;
    }

    /// What is written for a source; "" when it is refused.
    std::string Build(const ezThumbnailSource& aSource) {
        ezFile written;
        EXPECT_TRUE(written.Create(Bytes(mFolder.Path("out")), true, ezFileAccessMode_ReadWrite));
        const bool fBuilt = mGenerator.BuildThumbnail(&mInfo, &aSource, &written);
        EXPECT_EQ(fBuilt, written.LengthAtOpen() != 0); // what is refused writes nothing
        EXPECT_TRUE(written.Close());
        ezFile file;
        EXPECT_TRUE(file.Open(Bytes(mFolder.Path("out")), ezFileOpenMode_Read, ezFileAccessMode_ReadWrite));
        std::string bytes(static_cast<std::size_t>(file.Length()), '\0');
        EXPECT_EQ(file.Read(bytes.data(), bytes.size()), static_cast<int>(bytes.size()));
        return bytes;
    }
    std::string Build(const std::string& aBytes) { return Build(BytesSource(aBytes)); }

    TemporaryFolder mFolder;
    ThumbnailInfo mInfo;
    FittingPngGenerator mGenerator;
};

} // namespace

TEST_F(WritingAGenerator, TakesAPictureThatFitsAsItIs) {
    const std::string fits = MakePng(Quarters(160, 90, kRGBW), PNG_COLOR_TYPE_RGB);
    EXPECT_EQ(Build(fits), fits);
    const std::string small = MakePng(Quarters(16, 16, kRGBW), PNG_COLOR_TYPE_RGB);
    EXPECT_EQ(Build(small), small);
    mInfo.mWidthMax = 300; // other boxes enlarge
    EXPECT_EQ(Build(small), "");
    EXPECT_EQ(mGenerator.CanConvert("image/png"), kPNGThumbnailID);
    EXPECT_EQ(mGenerator.CanConvert("image/jpeg"), kNoThumbnailID);
}

TEST_F(WritingAGenerator, RefusesEverythingElseAndWritesNothing) {
    const std::string fits = MakePng(Quarters(160, 90, kRGBW), PNG_COLOR_TYPE_RGB);
    EXPECT_EQ(Build(MakePng(Quarters(161, 90, kRGBW), PNG_COLOR_TYPE_RGB)), "");
    EXPECT_EQ(Build(MakePng(Quarters(160, 90, kRGBW), PNG_COLOR_TYPE_RGB, 16)), "");
    EXPECT_EQ(Build(MakePng(Quarters(160, 90, kRGBW), PNG_COLOR_TYPE_RGB, 8, true)), "");
    EXPECT_EQ(Build(WithPngSize(fits, 0, 90)), "");
    EXPECT_EQ(Build(WithPngSize(fits, 0xFFFFFFFF, 0xFFFFFFFF)), "");
    EXPECT_EQ(Build(fits + "x"), "");
    const std::string large = MakePng(Noise(160, 160, 3), PNG_COLOR_TYPE_RGB);
    EXPECT_EQ(Build(large), large);
    const std::size_t tooMuch = std::size_t{256} << 10;
    EXPECT_EQ(Build(large.substr(0, 33) + std::string(tooMuch - 45, '\0') + large.substr(large.size() - 12)),
              "");
    for (std::size_t size = 0; size < fits.size(); ++size) {
        EXPECT_EQ(Build(fits.substr(0, size)), "") << size;
    }
    mInfo.mThumbnailID = kJPEGThumbnailID;
    EXPECT_EQ(Build(fits), "");
}

TEST_F(WritingAGenerator, SourceWithoutAStreamIsNoPicture) {
    EXPECT_EQ(Build(BytesSource(static_cast<ezStream*>(nullptr))), "");
    EXPECT_EQ(Build(ezFileThumbnailSource(&mInfo)), ""); // of no file
}
