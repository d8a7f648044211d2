#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

// After <cstdio>, which it needs.
#include <jpeglib.h>
#include <png.h>

/// A picture in memory, as the tests make and look at them: rows from the top, 8 bits a sample.
struct TestPicture {
    unsigned mWidth = 0;
    unsigned mHeight = 0;
    unsigned mChannels = 0;
    std::vector<unsigned char> mBytes;

    TestPicture() = default;
    TestPicture(unsigned aWidth, unsigned aHeight, unsigned aChannels)
        : mWidth(aWidth),
          mHeight(aHeight),
          mChannels(aChannels),
          mBytes(static_cast<std::size_t>(aWidth) * aHeight * aChannels) {}

    unsigned char* At(unsigned aX, unsigned aY) {
        return &mBytes[(static_cast<std::size_t>(aY) * mWidth + aX) * mChannels];
    }
    const unsigned char* At(unsigned aX, unsigned aY) const {
        return &mBytes[(static_cast<std::size_t>(aY) * mWidth + aX) * mChannels];
    }
};

using Pixel = std::vector<unsigned char>;

/// Four quarters, named from the top left: right after left, the lower after the upper.
inline TestPicture Quarters(unsigned aWidth, unsigned aHeight, const std::vector<Pixel>& aPixels) {
    TestPicture picture(aWidth, aHeight, static_cast<unsigned>(aPixels[0].size()));
    for (unsigned y = 0; y < aHeight; ++y) {
        for (unsigned x = 0; x < aWidth; ++x) {
            const Pixel& pixel = aPixels[(y >= aHeight / 2 ? 2U : 0U) + (x >= aWidth / 2 ? 1U : 0U)];
            std::copy(pixel.begin(), pixel.end(), picture.At(x, y));
        }
    }
    return picture;
}

/// Noise, which does not compress.
inline TestPicture Noise(unsigned aWidth, unsigned aHeight, unsigned aChannels) {
    TestPicture picture(aWidth, aHeight, aChannels);
    std::uint32_t state = 12345;
    for (unsigned char& byte : picture.mBytes) {
        state = state * 1664525U + 1013904223U;
        byte = static_cast<unsigned char>(state >> 24);
    }
    return picture;
}

// ---- JPEG ----

/// What may be set of a JPEG before its header is written.
using JpegSettings = std::function<void(jpeg_compress_struct*)>;
struct JpegMarker {
    int mCode;
    std::string mBytes;
};

inline std::string MakeJpeg(const TestPicture& aPicture, J_COLOR_SPACE aColours,
                            const JpegSettings& aSettings = nullptr,
                            const std::vector<JpegMarker>& aMarkers = {}) {
    jpeg_compress_struct info = {};
    jpeg_error_mgr errors = {};
    info.err = jpeg_std_error(&errors);
    jpeg_create_compress(&info);
    unsigned char* bytes = nullptr;
    unsigned long count = 0; // NOLINT: the library's type
    jpeg_mem_dest(&info, &bytes, &count);
    info.image_width = aPicture.mWidth;
    info.image_height = aPicture.mHeight;
    info.input_components = static_cast<int>(aPicture.mChannels);
    info.in_color_space = aColours;
    jpeg_set_defaults(&info);
    jpeg_set_quality(&info, 95, TRUE);
    if (aSettings) {
        aSettings(&info);
    }
    jpeg_start_compress(&info, TRUE);
    for (const JpegMarker& marker : aMarkers) {
        jpeg_write_marker(&info, marker.mCode, reinterpret_cast<const JOCTET*>(marker.mBytes.data()),
                          static_cast<unsigned>(marker.mBytes.size()));
    }
    while (info.next_scanline < info.image_height) {
        JSAMPROW row = const_cast<JSAMPROW>(aPicture.At(0, info.next_scanline));
        jpeg_write_scanlines(&info, &row, 1);
    }
    jpeg_finish_compress(&info);
    jpeg_destroy_compress(&info);
    std::string text(reinterpret_cast<char*>(bytes), count);
    std::free(bytes); // NOLINT: the library's block
    return text;
}

/// A grey progressive JPEG of so many scans, at most 127.
inline std::string OfScans(int aCount) {
    std::vector<jpeg_scan_info> script(1, jpeg_scan_info{1, {0}, 0, 0, 0, 0});
    for (const bool fFirst : {true, false}) {
        for (int band = 1; band <= 63; ++band) {
            script.push_back({1, {0}, band, band, fFirst ? 0 : 1, fFirst ? 1 : 0});
        }
    }
    return MakeJpeg(Noise(64, 64, 1), JCS_GRAYSCALE, [&script, aCount](jpeg_compress_struct* anInfo) {
        anInfo->scan_info = script.data();
        anInfo->num_scans = aCount;
    });
}

/// What a JPEG is, and its pixels as RGB; one black pixel, and warnings, for what is no JPEG. A damaged one
/// ends the program, as the library's own handlers do.
struct ReadJpeg {
    explicit ReadJpeg(const std::string& aBytes) {
        if (aBytes.compare(0, 2, "\xFF\xD8") != 0) {
            mPicture = TestPicture(1, 1, 3);
            mWarnings = 1;
            return;
        }
        jpeg_decompress_struct info = {};
        jpeg_error_mgr errors = {};
        info.err = jpeg_std_error(&errors);
        jpeg_create_decompress(&info);
        jpeg_mem_src(&info, reinterpret_cast<const unsigned char*>(aBytes.data()), aBytes.size());
        jpeg_read_header(&info, TRUE);
        mfBaseline = info.progressive_mode == 0 && info.arith_code == 0 && info.data_precision == 8;
        mfJFIF = info.saw_JFIF_marker != 0;
        mJFIFVersion = info.JFIF_major_version * 100 + info.JFIF_minor_version;
        for (int i = 0; i < info.num_components; ++i) {
            mSampling += std::to_string(info.comp_info[i].h_samp_factor) + "x" +
                         std::to_string(info.comp_info[i].v_samp_factor) + " ";
        }
        mfYCbCr = info.jpeg_color_space == JCS_YCbCr;
        info.out_color_space = JCS_RGB;
        jpeg_start_decompress(&info);
        mPicture = TestPicture(info.output_width, info.output_height, 3);
        while (info.output_scanline < info.output_height) {
            JSAMPROW row = mPicture.At(0, info.output_scanline);
            jpeg_read_scanlines(&info, &row, 1);
        }
        jpeg_finish_decompress(&info);
        mWarnings = errors.num_warnings;
        jpeg_destroy_decompress(&info);
    }

    bool mfBaseline = false;
    bool mfJFIF = false;
    int mJFIFVersion = 0;
    bool mfYCbCr = false;
    std::string mSampling;
    long mWarnings = 0; // NOLINT: the library's type
    TestPicture mPicture;
};

// ---- PNG ----

using PngSettings = std::function<void(png_structp, png_infop)>;

/// @param aDepth   bits a sample, 8 or 16; of 16 every byte stands twice
inline std::string MakePng(const TestPicture& aPicture, int aColourType, int aDepth = 8,
                           bool afInterlaced = false, const PngSettings& aSettings = nullptr) {
    std::string text;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_write_fn(
        png, &text,
        [](png_structp aPng, png_bytep aBytes, std::size_t aCount) {
            static_cast<std::string*>(png_get_io_ptr(aPng))->append(reinterpret_cast<char*>(aBytes), aCount);
        },
        [](png_structp /*aPng*/) {});
    png_set_IHDR(png, info, aPicture.mWidth, aPicture.mHeight, aDepth, aColourType,
                 afInterlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    if (aSettings) {
        aSettings(png, info);
    }
    png_write_info(png, info);
    if (aDepth < 8) {
        png_set_packing(png);
    }
    std::vector<std::vector<unsigned char>> rows;
    std::vector<png_bytep> pointers;
    rows.reserve(aPicture.mHeight);
    pointers.reserve(aPicture.mHeight);
    const std::size_t samples = static_cast<std::size_t>(aPicture.mWidth) * aPicture.mChannels;
    for (unsigned y = 0; y < aPicture.mHeight; ++y) {
        const unsigned char* from = aPicture.At(0, y);
        std::vector<unsigned char> row;
        for (std::size_t i = 0; i < samples; ++i) {
            row.insert(row.end(), aDepth == 16 ? 2 : 1, from[i]);
        }
        rows.push_back(std::move(row));
    }
    for (std::vector<unsigned char>& row : rows) {
        pointers.push_back(row.data());
    }
    png_write_image(png, pointers.data());
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return text;
}

/// The pixels of a PNG as RGBA; 0 by 0 when it is damaged.
inline TestPicture ReadPng(const std::string& aBytes) {
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_memory(&image, aBytes.data(), aBytes.size()) == 0) {
        return {};
    }
    image.format = PNG_FORMAT_RGBA;
    TestPicture picture(image.width, image.height, 4);
    if (png_image_finish_read(&image, nullptr, picture.mBytes.data(), 0, nullptr) == 0) {
        return {};
    }
    return picture;
}

inline void PutBig32(std::string* aText, std::size_t anOffset, std::uint32_t aValue) {
    for (std::size_t i = 0; i < 4; ++i) {
        (*aText)[anOffset + i] = static_cast<char>(aValue >> (24 - 8 * i) & 0xFF);
    }
}

/// The check sum of PNG (that of ISO 3309).
inline std::uint32_t PngCheckSum(const std::string& aText, std::size_t anOffset, std::size_t aCount) {
    std::uint32_t sum = 0xFFFFFFFFU;
    for (std::size_t i = 0; i < aCount; ++i) {
        sum ^= static_cast<unsigned char>(aText[anOffset + i]);
        for (int bit = 0; bit < 8; ++bit) {
            sum = (sum & 1U) != 0 ? sum >> 1 ^ 0xEDB88320U : sum >> 1;
        }
    }
    return ~sum;
}

/// A chunk of a PNG with its check sum.
inline std::string PngChunk(const std::string& aType, const std::string& aData) {
    std::string chunk(4, '\0');
    PutBig32(&chunk, 0, static_cast<std::uint32_t>(aData.size()));
    chunk += aType + aData + std::string(4, '\0');
    PutBig32(&chunk, chunk.size() - 4, PngCheckSum(chunk, 4, 4 + aData.size()));
    return chunk;
}

/// The zeros of PNG data, stored (RFC 1950, RFC 1951 3.2.4): what inflates them finds them as they are.
inline std::string StoredZeros(std::size_t aCount) {
    std::string text = "\x78\x01";
    std::size_t left = aCount;
    do {
        const std::size_t count = std::min<std::size_t>(left, 65535);
        left -= count;
        const auto low = static_cast<char>(count & 0xFF);
        const auto high = static_cast<char>(count >> 8);
        text += left == 0 ? '\1' : '\0';
        text += {low, high, static_cast<char>(~low), static_cast<char>(~high)};
        text.append(count, '\0');
    } while (left != 0);
    text += std::string(4, '\0');
    PutBig32(&text, text.size() - 4, static_cast<std::uint32_t>(aCount % 65521) << 16 | 1);
    return text;
}

/// A black PNG of 8-bit grey whose data go on by so many bytes after its pixels.
inline std::string StoredPng(std::uint32_t aWidth, std::uint32_t aHeight, bool afInterlaced,
                             std::size_t aMore) {
    std::size_t count = 0;
    for (int pass = 0; pass < (afInterlaced ? 7 : 1); ++pass) {
        const std::size_t width = afInterlaced ? PNG_PASS_COLS(aWidth, pass) : aWidth;
        const std::size_t height = afInterlaced ? PNG_PASS_ROWS(aHeight, pass) : aHeight;
        count += width != 0 ? (width + 1) * height : 0;
    }
    std::string header(8, '\0');
    PutBig32(&header, 0, aWidth);
    PutBig32(&header, 4, aHeight);
    header += {8, PNG_COLOR_TYPE_GRAY, 0, 0, static_cast<char>(afInterlaced ? 1 : 0)};
    return "\x89PNG\r\n\x1A\n" + PngChunk("IHDR", header) + PngChunk("IDAT", StoredZeros(count + aMore)) +
           PngChunk("IEND", "");
}

/// States another size in a PNG's header, and the check sum that fits.
inline std::string WithPngSize(std::string aPng, std::uint32_t aWidth, std::uint32_t aHeight) {
    PutBig32(&aPng, 16, aWidth);
    PutBig32(&aPng, 20, aHeight);
    PutBig32(&aPng, 29, PngCheckSum(aPng, 12, 17));
    return aPng;
}

/// States another size in a JPEG's frame header.
inline std::string WithJpegSize(std::string aJpeg, unsigned aWidth, unsigned aHeight) {
    std::size_t at = 2;
    while (at + 9 < aJpeg.size()) {
        const unsigned code = static_cast<unsigned char>(aJpeg[at + 1]);
        if (code >= 0xC0 && code <= 0xC2) {
            aJpeg[at + 5] = static_cast<char>(aHeight >> 8);
            aJpeg[at + 6] = static_cast<char>(aHeight & 0xFF);
            aJpeg[at + 7] = static_cast<char>(aWidth >> 8);
            aJpeg[at + 8] = static_cast<char>(aWidth & 0xFF);
            return aJpeg;
        }
        at +=
            2 + static_cast<unsigned char>(aJpeg[at + 2]) * 256U + static_cast<unsigned char>(aJpeg[at + 3]);
    }
    std::abort(); // no frame header: not a picture of this kit
}

// ---- Exif ----

/// A TIFF block that states an orientation, after a tag of something else.
inline std::string TiffBlock(unsigned anOrientation, bool afLittle) {
    const auto number = [afLittle](unsigned aValue, int aBytes) {
        std::string text;
        for (int i = 0; i < aBytes; ++i) {
            const int shift = 8 * (afLittle ? i : aBytes - 1 - i);
            text += static_cast<char>(aValue >> shift & 0xFF);
        }
        return text;
    };
    return (afLittle ? "II" : "MM") + number(42, 2) + number(8, 4) + number(2, 2) +                    //
           number(0x0100, 2) + number(3, 2) + number(1, 4) + number(7, 2) + number(0, 2) +             //
           number(0x0112, 2) + number(3, 2) + number(1, 4) + number(anOrientation, 2) + number(0, 2) + //
           number(0, 4);
}

inline JpegMarker ExifMarker(unsigned anOrientation, bool afLittle = true) {
    return {JPEG_APP0 + 1, std::string("Exif\0\0", 6) + TiffBlock(anOrientation, afLittle)};
}
