#include "bench/Photo.h"

#include "bench/Measure.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <random>
#include <vector>

// Needs <cstdio> before it.
#include <jpeglib.h>

namespace {

constexpr int kQuality = 90;
constexpr float kNoise = 3; ///< standard deviation, of 255
constexpr unsigned kDenominator = 8;

[[noreturn]] void sOnError(j_common_ptr /*anInfo*/) {
    Require(false, "the codec works on the photo");
    std::abort();
}

unsigned char Sample(float aValue) {
    return static_cast<unsigned char>(std::clamp(aValue, 0.0F, 255.0F));
}

/// A wave across the picture, and another down it, that together go in some direction.
struct Wave {
    Wave(double aLength, double aHeight, double aPhase) : mDown(0.7 * kTurn / aLength), mHeight(aHeight) {
        for (unsigned x = 0; x < kPhoto_Width; ++x) {
            mSines.push_back(static_cast<float>(std::sin(kTurn / aLength * x + aPhase)));
            mCosines.push_back(static_cast<float>(std::cos(kTurn / aLength * x + aPhase)));
        }
    }

    static constexpr double kTurn = 6.283185307179586;
    double mDown;
    double mHeight;
    std::vector<float> mSines;
    std::vector<float> mCosines;
};

/// Waves from the width of the picture down to a few pixels, the shorter the weaker, as photos have them, and
/// the noise of a sensor.
class Scene {
public:
    Scene() {
        std::uniform_real_distribution<double> phase(0, Wave::kTurn);
        for (double length = kPhoto_Width; length > 8; length *= 0.6) {
            mWaves.emplace_back(length, 40 * std::sqrt(length / kPhoto_Width), phase(mEngine));
        }
    }

    void FillRow(unsigned aRow, std::vector<unsigned char>& aBytes) {
        std::vector<float> light(kPhoto_Width, 90.0F + 60.0F * static_cast<float>(aRow) / kPhoto_Height);
        for (const Wave& wave : mWaves) {
            const auto sine = static_cast<float>(wave.mHeight * std::sin(wave.mDown * aRow));
            const auto cosine = static_cast<float>(wave.mHeight * std::cos(wave.mDown * aRow));
            for (unsigned x = 0; x < kPhoto_Width; ++x) {
                light[x] += wave.mSines[x] * cosine + wave.mCosines[x] * sine;
            }
        }
        std::normal_distribution<float> noise(0, kNoise);
        for (unsigned x = 0; x < kPhoto_Width; ++x) {
            const float here = light[x] + noise(mEngine);
            const float tint = 30.0F * static_cast<float>(x) / kPhoto_Width;
            unsigned char* const pixel = aBytes.data() + std::size_t{3} * x;
            pixel[0] = Sample(here + tint);
            pixel[1] = Sample(here);
            pixel[2] = Sample(here - tint);
        }
    }

private:
    std::mt19937 mEngine{12};
    std::vector<Wave> mWaves;
};

struct FileCloser {
    void operator()(std::FILE* aFile) const { std::fclose(aFile); }
};

} // namespace

std::string Photo_Bytes() {
    jpeg_error_mgr errors = {};
    jpeg_compress_struct info = {};
    info.err = jpeg_std_error(&errors);
    errors.error_exit = sOnError;
    jpeg_create_compress(&info);
    unsigned char* block = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&info, &block, &size);
    info.image_width = kPhoto_Width;
    info.image_height = kPhoto_Height;
    info.input_components = 3;
    info.in_color_space = JCS_RGB;
    jpeg_set_defaults(&info);
    jpeg_set_quality(&info, kQuality, TRUE);
    jpeg_start_compress(&info, TRUE);
    Scene scene;
    std::vector<unsigned char> row(std::size_t{3} * kPhoto_Width);
    while (info.next_scanline < info.image_height) {
        scene.FillRow(info.next_scanline, row);
        JSAMPROW rows = row.data();
        jpeg_write_scanlines(&info, &rows, 1);
    }
    jpeg_finish_compress(&info);
    jpeg_destroy_compress(&info);
    std::string bytes(reinterpret_cast<const char*>(block), size);
    std::free(block);
    return bytes;
}

unsigned Photo_Decode(const std::string& aPath, unsigned anEighths) {
    const std::unique_ptr<std::FILE, FileCloser> file(std::fopen(aPath.c_str(), "rb"));
    Require(file != nullptr, "the photo opens");
    jpeg_error_mgr errors = {};
    jpeg_decompress_struct info = {};
    info.err = jpeg_std_error(&errors);
    errors.error_exit = sOnError;
    jpeg_create_decompress(&info);
    jpeg_stdio_src(&info, file.get());
    jpeg_read_header(&info, TRUE);
    info.scale_num = anEighths;
    info.scale_denom = kDenominator;
    info.do_block_smoothing = FALSE;
    info.do_fancy_upsampling = FALSE;
    info.dct_method = JDCT_IFAST;
    jpeg_start_decompress(&info);
    const unsigned width = info.output_width;
    JSAMPARRAY row = info.mem->alloc_sarray(reinterpret_cast<j_common_ptr>(&info), JPOOL_IMAGE, 3 * width, 1);
    while (info.output_scanline < info.output_height) {
        jpeg_read_scanlines(&info, row, 1);
    }
    jpeg_finish_decompress(&info);
    jpeg_destroy_decompress(&info);
    return width;
}
