#include "ezThumbnails/detail/CodecEscape.h"
#include "ezThumbnails/detail/PictureEncoder.h"

#include <png.h>

namespace {

int ColourType(uint32 aChannels) {
    if (aChannels == 1) {
        return PNG_COLOR_TYPE_GRAY;
    }
    return aChannels == 4 ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB;
}

/// Steps, and what the library calls back, hold nothing that has a destructor: an error jumps over them.
struct PngEncoder {
    PngEncoder(const Picture& aPicture, ByteSink* aSink) : mPicture(aPicture), mSink(aSink) {}
    ~PngEncoder() { png_destroy_write_struct(&mPng, &mInfo); }
    PngEncoder(const PngEncoder&) = delete;
    PngEncoder& operator=(const PngEncoder&) = delete;

    bool Run() {
        bool fWritten = false;
        return mEscape.Run([&] {
            fWritten = Create();
            if (fWritten) {
                Write();
            }
        }) && fWritten;
    }

private:
    [[noreturn]] static void OnError(png_structp aPng, png_const_charp /*aText*/) {
        static_cast<PngEncoder*>(png_get_error_ptr(aPng))->mEscape.Jump();
    }
    static void OnWarning(png_structp /*aPng*/, png_const_charp /*aText*/) {} // the base prints
    static void OnWrite(png_structp aPng, png_bytep aBytes, std::size_t aCount) {
        if (!static_cast<PngEncoder*>(png_get_io_ptr(aPng))->mSink->Append(aBytes, aCount)) {
            png_error(aPng, "no memory");
        }
    }
    static void OnFlush(png_structp /*aPng*/) {}

    bool Create() {
        mPng = png_create_write_struct(PNG_LIBPNG_VER_STRING, this, OnError, OnWarning);
        mInfo = mPng == nullptr ? nullptr : png_create_info_struct(mPng);
        return mInfo != nullptr;
    }

    void Write() {
        png_set_write_fn(mPng, this, OnWrite, OnFlush);
        png_set_IHDR(mPng, mInfo, mPicture.mWidth, mPicture.mHeight, 8, ColourType(mPicture.mChannels),
                     PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
        png_set_sRGB_gAMA_and_cHRM(mPng, mInfo, PNG_sRGB_INTENT_PERCEPTUAL);
        png_write_info(mPng, mInfo);
        for (uint32 y = 0; y < mPicture.mHeight; ++y) {
            png_write_row(mPng, mPicture.mBytes.get() + mPicture.GetRowBytes() * y);
        }
        png_write_end(mPng, nullptr);
    }

    const Picture& mPicture;
    ByteSink* mSink;
    png_structp mPng = nullptr;
    png_infop mInfo = nullptr;
    CodecEscape mEscape;
};

} // namespace

bool EncodePng(const Picture& aPicture, ByteSink* aSink) {
    PngEncoder encoder(aPicture, aSink);
    return encoder.Run();
}
