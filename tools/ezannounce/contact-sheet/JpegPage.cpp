#include "contact-sheet/JpegPage.h"

#include <csetjmp>
#include <cstdio>
#include <cstdlib>

// Needs <cstdio> before it.
#include <jpeglib.h>

namespace {

constexpr int kQuality = 90;
constexpr unsigned char kJpegStartOfScan = 0xDA;

/// An error of the library ends in a jump over its frames, which hold nothing that has a destructor.
struct JpegErrors {
    jpeg_error_mgr mManager = {};
    std::jmp_buf mEscape = {};

    void PutInto(j_common_ptr anInfo) {
        anInfo->err = jpeg_std_error(&mManager);
        mManager.error_exit = OnError;
        mManager.output_message = OnOutput;
        anInfo->client_data = this;
    }

private:
    [[noreturn]] static void OnError(j_common_ptr anInfo) {
        std::longjmp(static_cast<JpegErrors*>(anInfo->client_data)->mEscape, 1);
    }
    static void OnOutput(j_common_ptr /*anInfo*/) {} // the library would print
};

/// Not moved: the library keeps addresses of its parts.
class Reader {
public:
    explicit Reader(const std::string& aBytes) : mBytes(aBytes) {
        mErrors.PutInto(reinterpret_cast<j_common_ptr>(&mInfo));
    }
    ~Reader() { jpeg_destroy_decompress(&mInfo); }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    bool ReadHeader() {
        if (setjmp(mErrors.mEscape) != 0) {
            return false;
        }
        jpeg_create_decompress(&mInfo);
        jpeg_mem_src(&mInfo, reinterpret_cast<const unsigned char*>(mBytes.data()), mBytes.size());
        jpeg_read_header(&mInfo, TRUE);
        return true;
    }

    uint32 GetWidth() const { return mInfo.image_width; }
    uint32 GetHeight() const { return mInfo.image_height; }

    /// Into a block of three bytes a pixel.
    bool ReadRows(unsigned char* aBlock) {
        if (setjmp(mErrors.mEscape) != 0) {
            return false;
        }
        mInfo.out_color_space = JCS_RGB;
        jpeg_start_decompress(&mInfo);
        while (mInfo.output_scanline < mInfo.output_height) {
            JSAMPROW row = aBlock + std::size_t{3} * mInfo.output_width * mInfo.output_scanline;
            jpeg_read_scanlines(&mInfo, &row, 1);
        }
        jpeg_finish_decompress(&mInfo);
        return mErrors.mManager.num_warnings == 0; // what is missing was made up
    }

private:
    const std::string& mBytes;
    JpegErrors mErrors;
    jpeg_decompress_struct mInfo = {};
};

class Writer {
public:
    Writer() { mErrors.PutInto(reinterpret_cast<j_common_ptr>(&mInfo)); }
    ~Writer() {
        jpeg_destroy_compress(&mInfo);
        if (mfEnded) {
            std::free(mBytes); // before its end the library may have given it back itself
        }
    }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    bool Begin(uint32 aWidth, uint32 aHeight, const std::string& aComment) {
        if (setjmp(mErrors.mEscape) != 0) {
            return false;
        }
        jpeg_create_compress(&mInfo);
        jpeg_mem_dest(&mInfo, &mBytes, &mCount);
        mInfo.image_width = aWidth;
        mInfo.image_height = aHeight;
        mInfo.input_components = 3;
        mInfo.in_color_space = JCS_RGB;
        jpeg_set_defaults(&mInfo); // YCbCr, 4:2:0
        jpeg_set_quality(&mInfo, kQuality, TRUE);
        jpeg_start_compress(&mInfo, TRUE);
        jpeg_write_marker(&mInfo, JPEG_COM, reinterpret_cast<const JOCTET*>(aComment.data()),
                          static_cast<unsigned>(aComment.size()));
        return true;
    }

    /// The rows are asked for outside of what an error jumps over.
    bool WriteRow(const unsigned char* aRow) {
        if (setjmp(mErrors.mEscape) != 0) {
            return false;
        }
        JSAMPROW row = const_cast<JSAMPROW>(aRow); // the library only reads it
        jpeg_write_scanlines(&mInfo, &row, 1);
        return true;
    }

    bool End() {
        if (setjmp(mErrors.mEscape) != 0) {
            return false;
        }
        jpeg_finish_compress(&mInfo);
        mfEnded = true;
        return true;
    }

    /// Once it has ended.
    std::string GetBytes() const { return std::string(reinterpret_cast<const char*>(mBytes), mCount); }

private:
    JpegErrors mErrors;
    jpeg_compress_struct mInfo = {};
    bool mfEnded = false;
    unsigned char* mBytes = nullptr;
    unsigned long mCount = 0; // NOLINT: the library's type
};

} // namespace

bool ReadJpegSize(const std::string& aBytes, uint32& aWidth, uint32& aHeight) {
    Reader reader(aBytes);
    if (!reader.ReadHeader()) {
        return false;
    }
    aWidth = reader.GetWidth();
    aHeight = reader.GetHeight();
    return true;
}

bool ReadJpegPicture(const std::string& aBytes, uint32 aMaxSide, RgbPicture& aPicture) {
    Reader reader(aBytes);
    if (!reader.ReadHeader() || reader.GetWidth() > aMaxSide || reader.GetHeight() > aMaxSide) {
        return false;
    }
    aPicture.mWidth = reader.GetWidth();
    aPicture.mHeight = reader.GetHeight();
    aPicture.mBytes.assign(std::size_t{3} * aPicture.mWidth * aPicture.mHeight, 0);
    return reader.ReadRows(aPicture.mBytes.data());
}

std::string WriteJpeg(uint32 aWidth, uint32 aHeight, const std::string& aComment, RowSource& aRows) {
    Writer writer;
    if (!writer.Begin(aWidth, aHeight, aComment)) {
        return {};
    }
    for (uint32 y = 0; y < aHeight; ++y) {
        if (!writer.WriteRow(aRows.NextRow())) {
            return {};
        }
    }
    return writer.End() ? writer.GetBytes() : std::string();
}

bool HasJpegComment(const std::string& aBytes, const std::string& aComment) {
    constexpr std::size_t kHead =
        4; // of a segment: 0xFF, which it is, and its length, the two bytes included
    const auto byteAt = [&aBytes](std::size_t aPlace) { return static_cast<unsigned char>(aBytes[aPlace]); };
    std::size_t place = 2; // behind the start of the image
    while (place + kHead <= aBytes.size() && byteAt(place) == 0xFF && byteAt(place + 1) != kJpegStartOfScan) {
        const std::size_t length = std::size_t{byteAt(place + 2)} << 8 | byteAt(place + 3);
        if (byteAt(place + 1) == JPEG_COM && length == aComment.size() + 2 &&
            aBytes.compare(place + kHead, aComment.size(), aComment) == 0) {
            return true;
        }
        place += 2 + length;
    }
    return false;
}
