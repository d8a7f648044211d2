#include "GeneratorKit.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

/// A stream that counts what is read of it.
class CountedStream : public ezStream {
public:
    CountedStream(std::string aBytes, std::size_t* aCount) : mBytes(std::move(aBytes)), mCount(aCount) {
        *mCount = 0;
    }
    ezCString GetExtension() const override { return {}; }
    ezCString GetURI() const override { return {}; }
    ezuint64 GetSize() override { return mBytes.size(); }
    bool IsOpened() override { return true; }
    ezStreamingStatus Seek(const ezuint64& /*aPosition*/) override { return ezStreamingStatus_NotSupported; }
    ezStreamingStatus Read(void* aBuffer, std::size_t* aSize, int /*aFlag*/) override {
        const std::size_t asked = *aSize;
        *aSize = std::min(asked, mBytes.size() - *mCount);
        std::memcpy(aBuffer, mBytes.data() + *mCount, *aSize);
        *mCount += *aSize;
        return *aSize < asked ? ezStreamingStatus_EOS : ezStreamingStatus_NoError;
    }

private:
    std::string mBytes;
    std::size_t* mCount;
};

/// The address space of this process, in bytes.
std::size_t AddressSpace() {
    std::size_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    return pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

/// A stream that looks at each reading how much address space there is.
class WatchingStream : public CountedStream {
public:
    WatchingStream(std::string aBytes, std::size_t* aCount, std::size_t* aMostSpace)
        : CountedStream(std::move(aBytes), aCount), mMostSpace(aMostSpace) {}
    ezStreamingStatus Read(void* aBuffer, std::size_t* aSize, int aFlag) override {
        *mMostSpace = std::max(*mMostSpace, AddressSpace());
        return CountedStream::Read(aBuffer, aSize, aFlag);
    }

private:
    std::size_t* mMostSpace;
};

constexpr std::size_t kFewBytes = 40'000;
constexpr std::size_t kLittleMemory = 16U << 20;
constexpr std::size_t kMaxChunk = 4U << 20; ///< of a PNG, where it is kept

class BadPicture : public ThumbnailGenerator {
protected:
    void SetUp() override {
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
    }
    /// Nothing is printed, whatever the picture is.
    void TearDown() override {
        EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    }

    template <typename Source>
    bool Fails(const Source& aSource) {
        return Build(aSource) == "<failed>";
    }

    /// Refused at its header: hardly anything of the picture is read.
    void ExpectRefusedAtOnce(const std::string& aBytes) {
        ASSERT_GT(aBytes.size(), 2 * kFewBytes);
        std::size_t read = 0;
        EXPECT_TRUE(Fails(BytesSource(new CountedStream(aBytes, &read))));
        EXPECT_LT(read, kFewBytes);
    }

    /// Decoded, with no more memory than that while it is read.
    void ExpectTakenWithin(std::size_t aSpace, const std::string& aBytes) {
        std::size_t read = 0;
        std::size_t most = 0;
        auto* const stream = new WatchingStream(aBytes, &read, &most);
        const std::size_t before = AddressSpace();
        ASSERT_GT(before, 0U);
        EXPECT_FALSE(Fails(BytesSource(stream)));
        EXPECT_EQ(read, aBytes.size());
        EXPECT_GT(most, 0U);
        EXPECT_LT(most, before + aSpace);
    }
};

// ---- pictures that would cost too much ----

TEST_F(BadPicture, OfTooManyPixelsIsRefusedAtItsHeader) {
    const std::string jpeg = MakeJpeg(Noise(400, 400, 3), JCS_RGB);
    const std::string png = MakePng(Noise(400, 400, 3), PNG_COLOR_TYPE_RGB);
    ASSERT_FALSE(Fails(jpeg));
    ASSERT_FALSE(Fails(png));
    ASSERT_EQ(WithPngSize(png, 400, 400), png);
    ExpectRefusedAtOnce(WithJpegSize(jpeg, 60000, 60000));
    ExpectRefusedAtOnce(WithJpegSize(jpeg, 14143, 14143)); // just above 200,000,000
    ExpectRefusedAtOnce(WithPngSize(png, 60000, 60000));
    ExpectRefusedAtOnce(WithPngSize(png, 14143, 14143));
    ExpectRefusedAtOnce(WithPngSize(png, 65536, 10));
    ExpectRefusedAtOnce(WithPngSize(png, 10, 0x7FFFFFFF));
    ExpectRefusedAtOnce(WithPngSize(png, 0, 10));
    ExpectRefusedAtOnce(WithJpegSize(jpeg, 0, 10));
}

TEST_F(BadPicture, ThatWouldHoldTooMuchMemoryIsRefusedBeforeItIsDecoded) {
    const std::string progressive = MakeJpeg(Noise(400, 400, 3), JCS_RGB, jpeg_simple_progression);
    const std::string interlaced = MakePng(Noise(400, 400, 3), PNG_COLOR_TYPE_RGB, 8, true);
    ASSERT_FALSE(Fails(progressive));
    ASSERT_FALSE(Fails(interlaced));
    ExpectRefusedAtOnce(WithJpegSize(progressive, 12000, 12000));
    ExpectRefusedAtOnce(WithPngSize(interlaced, 12000, 12000));
    // The same size is read where a few rows are all that is held.
    std::size_t read = 0;
    const std::string plain = WithPngSize(MakePng(Noise(400, 400, 3), PNG_COLOR_TYPE_RGB), 12000, 12000);
    EXPECT_TRUE(Fails(BytesSource(new CountedStream(plain, &read))));
    EXPECT_GT(read, kFewBytes);
}

TEST_F(BadPicture, OfTooManyScansIsRefused) {
    for (const int scans : {64, 65, 127}) {
        const std::string source = OfScans(scans);
        EXPECT_EQ(Fails(source), scans > PictureThumbnailGenerator::kMaxScans) << scans;
    }
}

TEST_F(BadPicture, APngWhoseDataGoOnAfterItsPixelsIsRefusedThere) {
    constexpr std::size_t kMax = PictureThumbnailGenerator::kMaxAfterPixels;
    for (const bool fInterlaced : {false, true}) {
        for (const std::size_t more : {std::size_t{0}, std::size_t{1}, kMax / 2, kMax * 2, kMax * 40}) {
            const std::string png = StoredPng(100, 50, fInterlaced, more);
            std::size_t read = 0;
            EXPECT_EQ(Fails(BytesSource(new CountedStream(png, &read))), more > kMax) << more;
            EXPECT_LT(read, kFewBytes + kMax) << more;
        }
    }
}

TEST_F(BadPicture, APngIsReadAfterItsPixelsUpToTheBoundAndNoByteMore) {
    const std::string png = StoredPng(10, 10, false, 0);
    const std::size_t data = png.find("IDAT") - 4;
    constexpr std::size_t kFirst = 2 + 5 + 10 * 11; // the first piece of the data ends with the pixels
    constexpr std::size_t kAround = 4 + 8 + 4;      // its check sum, and what is around the second piece
    constexpr std::size_t kSecond = PictureThumbnailGenerator::kMaxAfterPixels - kAround;
    for (const std::size_t more : {0U, 1U}) {
        const std::string zeros = StoredZeros(10 * 11 + kSecond - 4 + more);
        ASSERT_EQ(zeros.size(), kFirst + kSecond + more);
        const std::string pieces =
            PngChunk("IDAT", zeros.substr(0, kFirst)) + PngChunk("IDAT", zeros.substr(kFirst));
        EXPECT_EQ(Fails(png.substr(0, data) + pieces + PngChunk("IEND", "")), more != 0) << more;
    }
}

// The passes of narrow and low pictures are partly without pixels.
TEST_F(BadPicture, AnInterlacedPngOfAnySizeIsTakenWithoutTheDataAfterItsPixels) {
    for (unsigned width = 1; width <= 9; ++width) {
        for (unsigned height = 1; height <= 9; ++height) {
            EXPECT_FALSE(Fails(StoredPng(width, height, true, 5000))) << width << " x " << height;
            std::size_t read = 0;
            const std::string png = StoredPng(width, height, true, 500'000);
            EXPECT_TRUE(Fails(BytesSource(new CountedStream(png, &read)))) << width << " x " << height;
            EXPECT_LT(read, kFewBytes) << width << " x " << height;
        }
    }
}

TEST_F(BadPicture, APngWithAnExifBlockOverTheBoundIsTakenWithoutIt) {
    const std::string png = StoredPng(40, 30, false, 0);
    const std::size_t data = png.find("IDAT") - 4;
    std::string exif = TiffBlock(6, true);
    for (const std::size_t count : {kMaxChunk, kMaxChunk + 1}) {
        exif.resize(count, 'x');
        const std::string picture = png.substr(0, data) + PngChunk("eXIf", exif) + png.substr(data);
        EXPECT_EQ(SizeOf(BuildJpeg(picture)), count <= kMaxChunk ? "30x40" : "40x30") << count;
    }
    const std::string text = PngChunk("tEXt", "Comment" + std::string(2 * kMaxChunk, '\0'));
    EXPECT_EQ(SizeOf(BuildJpeg(png.substr(0, data) + text + png.substr(data))), "40x30") << "passed over";
}

TEST_F(BadPicture, WithMuchBesideThePictureIsTakenWithoutKeepingIt) {
    const std::vector<JpegMarker> markers(500, {JPEG_APP0 + 1, std::string(65000, 'x')});
    ExpectTakenWithin(kLittleMemory, MakeJpeg(Quarters(40, 30, kRGBW), JCS_RGB, nullptr, markers));
    std::string text(3 << 20, 'x');
    const std::string png = MakePng(Quarters(40, 30, kRGBW), PNG_COLOR_TYPE_RGB, 8, false,
                                    [&text](png_structp aPng, png_infop anInfo) {
                                        png_text comment = {};
                                        comment.compression = PNG_TEXT_COMPRESSION_zTXt;
                                        char key[] = "Comment";
                                        comment.key = key;
                                        comment.text = text.data();
                                        comment.text_length = text.size();
                                        png_set_text(aPng, anInfo, &comment, 1);
                                    });
    // Put together here: what making all of them left free would be taken again unseen.
    const std::size_t chunk = png.find("zTXt") - 4;
    const std::size_t after = png.find("IDAT") - 4;
    ASSERT_LT(chunk, after);
    std::string many = png.substr(0, chunk);
    for (int i = 0; i < 20; ++i) {
        many += png.substr(chunk, after - chunk);
    }
    ExpectTakenWithin(kLittleMemory, many + png.substr(after));
}

TEST_F(BadPicture, ThatStatesALargeBlockIsNotGivenTheMemoryForIt) {
    constexpr std::uint32_t kStated = 640U << 20;
    std::string exif = TiffBlock(1, true);
    const std::string png = MakePng(Noise(400, 400, 3), PNG_COLOR_TYPE_RGB, 8, false,
                                    [&exif](png_structp aPng, png_infop anInfo) {
                                        png_set_eXIf_1(aPng, anInfo, static_cast<png_uint_32>(exif.size()),
                                                       reinterpret_cast<png_bytep>(exif.data()));
                                    });
    const std::size_t chunk = png.find("eXIf");
    ASSERT_NE(chunk, std::string::npos);
    ASSERT_FALSE(Fails(png));
    std::string lying = png;
    PutBig32(&lying, chunk - 4, kStated);
    std::size_t read = 0;
    std::size_t most = 0;
    const std::size_t before = AddressSpace();
    ASSERT_GT(before, 0U);
    EXPECT_TRUE(Fails(BytesSource(new WatchingStream(lying, &read, &most))));
    EXPECT_EQ(read, lying.size()); // what is stated is passed over, and is not there
    ASSERT_GT(most, 0U);
    EXPECT_LT(most, before + kStated / 4);
}

// ---- pictures that are damaged ----

std::vector<std::string> Samples() {
    const TestPicture noise = Noise(50, 40, 3);
    std::string exif = TiffBlock(6, true);
    const auto withExif = [&exif](png_structp aPng, png_infop anInfo) {
        png_set_eXIf_1(aPng, anInfo, static_cast<png_uint_32>(exif.size()),
                       reinterpret_cast<png_bytep>(exif.data()));
    };
    return {MakePng(noise, PNG_COLOR_TYPE_RGB, 8, false, withExif),
            MakePng(noise, PNG_COLOR_TYPE_RGB, 16, true),
            MakePng(Noise(50, 40, 4), PNG_COLOR_TYPE_RGB_ALPHA),
            MakeJpeg(noise, JCS_RGB, nullptr, {ExifMarker(6)}),
            MakeJpeg(noise, JCS_RGB, jpeg_simple_progression),
            MakeJpeg(noise, JCS_RGB, [](jpeg_compress_struct* anInfo) { anInfo->restart_interval = 2; }),
            MakeJpeg(Noise(50, 40, 4), JCS_CMYK),
            MakeJpeg(noise, JCS_RGB, [](jpeg_compress_struct* anInfo) { anInfo->arith_code = TRUE; })};
}

TEST_F(BadPicture, CutShortAnywhereFails) {
    for (const std::string& sample : Samples()) {
        ASSERT_FALSE(Fails(sample));
        for (std::size_t count = 0; count < sample.size(); count += count < 700 ? 7 : 211) {
            EXPECT_TRUE(Fails(sample.substr(0, count))) << count;
        }
        for (std::size_t missing = 1; missing <= 20; ++missing) {
            EXPECT_TRUE(Fails(sample.substr(0, sample.size() - missing))) << missing;
        }
    }
}

TEST_F(BadPicture, APngWithAnyBitFlippedFails) {
    for (const std::string& sample : Samples()) {
        for (std::size_t at = 0; sample[0] != '\xFF' && at < sample.size(); at += at < 200 ? 1 : 61) {
            std::string flipped = sample;
            flipped[at] = static_cast<char>(flipped[at] ^ 1 << at % 8);
            EXPECT_TRUE(Fails(flipped)) << at;
        }
    }
}

TEST_F(BadPicture, AJpegWithABitFlippedFailsOrGivesAWholeThumbnail) {
    std::size_t failed = 0;
    std::size_t built = 0;
    for (const std::string& sample : Samples()) {
        for (std::size_t at = 0; sample[0] == '\xFF' && at < sample.size(); at += at < 700 ? 3 : 83) {
            std::string flipped = sample;
            flipped[at] = static_cast<char>(flipped[at] ^ 1 << at % 8);
            const std::string thumbnail = Build(flipped);
            if (thumbnail == "<failed>") {
                ++failed;
                continue;
            }
            ++built;
            const ReadJpeg read(thumbnail);
            EXPECT_LE(std::max(read.mPicture.mWidth, read.mPicture.mHeight), 160U) << at;
            EXPECT_EQ(read.mWarnings, 0) << at;
        }
    }
    EXPECT_GT(failed, 0U);
    EXPECT_GT(built, 0U); // not every bit of a JPEG is guarded
}

TEST_F(BadPicture, AJpegWithBytesTooManyBetweenItsMarkersIsTaken) {
    std::string jpeg = MakeJpeg(Quarters(40, 30, kRGBW), JCS_RGB);
    jpeg.insert(jpeg.find("\xFF\xDB"), "pad");
    ExpectCorners(ReadJpeg(Build(jpeg)).mPicture, kRGBW, 6);
    EXPECT_FALSE(Fails(MakeJpeg(Quarters(40, 30, kRGBW), JCS_RGB) + "behind"));
}

TEST_F(BadPicture, AJpegWhoseDataEndsBeforeItsEndMarkerFails) {
    const std::string jpeg = MakeJpeg(Noise(100, 100, 3), JCS_RGB);
    for (std::size_t at = jpeg.size() / 2; at + 300 < jpeg.size(); at += 500) {
        std::string gap = jpeg;
        gap.erase(at, gap.size() - 2 - at);
        EXPECT_TRUE(Fails(gap)) << at;
    }
}

} // namespace
