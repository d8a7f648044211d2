#include "ezThumbnails/detail/PictureEncoder.h"

#include <csetjmp>
#include <cstdio>

// Needs <cstdio> before it.
#include <jpeglib.h>

// After it: which codes there are depends on how the library was built.
#include <jerror.h>

namespace {

/// No blocks are to be seen at this quality, and a picture of 160 by 160 pixels has some 6 KB.
constexpr int kQuality = 85;

/// An error of the library ends in a jump over its frames: what it calls back holds nothing that has a
/// destructor.
struct JpegEncoder {
    JpegEncoder(const Picture& aPicture, ByteSink* aSink) : mPicture(aPicture), mSink(aSink) {
        mInfo.err = jpeg_std_error(&mErrors);
        mErrors.error_exit = OnError;
        mErrors.output_message = OnOutput;
        mInfo.client_data = this;
        mDestination.init_destination = OnInit;
        mDestination.empty_output_buffer = OnFull;
        mDestination.term_destination = OnTerm;
    }
    ~JpegEncoder() { jpeg_destroy_compress(&mInfo); }
    JpegEncoder(const JpegEncoder&) = delete;
    JpegEncoder& operator=(const JpegEncoder&) = delete;

    bool Run() {
        if (setjmp(mEscape) != 0) { // the library knows no other way out of an error
            return false;
        }
        SetParameters();
        WriteRows();
        return true;
    }

private:
    [[noreturn]] static void OnError(j_common_ptr anInfo) {
        std::longjmp(static_cast<JpegEncoder*>(anInfo->client_data)->mEscape, 1);
    }
    static void OnOutput(j_common_ptr /*anInfo*/) {} // the base prints

    static void OnInit(j_compress_ptr anInfo) {
        static_cast<JpegEncoder*>(anInfo->client_data)->StartBlock();
    }
    static boolean OnFull(j_compress_ptr anInfo) {
        JpegEncoder* const encoder = static_cast<JpegEncoder*>(anInfo->client_data);
        encoder->Take(sizeof(encoder->mBlock)); // the library leaves the count as it was
        encoder->StartBlock();
        return TRUE;
    }
    static void OnTerm(j_compress_ptr anInfo) {
        JpegEncoder* const encoder = static_cast<JpegEncoder*>(anInfo->client_data);
        encoder->Take(sizeof(encoder->mBlock) - encoder->mDestination.free_in_buffer);
    }

    void StartBlock() {
        mDestination.next_output_byte = mBlock;
        mDestination.free_in_buffer = sizeof(mBlock);
    }
    void Take(std::size_t aCount) {
        if (!mSink->Append(mBlock, aCount)) {
            ERREXIT1(&mInfo, JERR_OUT_OF_MEMORY, 0);
        }
    }

    void SetParameters() {
        jpeg_create_compress(&mInfo);
        mInfo.dest = &mDestination;
        mInfo.image_width = mPicture.mWidth;
        mInfo.image_height = mPicture.mHeight;
        mInfo.input_components = 3;
        mInfo.in_color_space = JCS_RGB;
        jpeg_set_defaults(&mInfo);    // YCbCr, 4:2:0
        mInfo.JFIF_minor_version = 2; // what the DLNA profiles want at least
        jpeg_set_quality(&mInfo, kQuality, TRUE);
    }

    void WriteRows() {
        jpeg_start_compress(&mInfo, TRUE);
        const bool fGrey = mPicture.mChannels == 1;
        JSAMPARRAY spread = nullptr; // of the library; it makes no colours of grey by itself
        if (fGrey) {
            spread = mInfo.mem->alloc_sarray(reinterpret_cast<j_common_ptr>(&mInfo), JPOOL_IMAGE,
                                             3 * mPicture.mWidth, 1);
        }
        while (mInfo.next_scanline < mInfo.image_height) {
            JSAMPROW row = mPicture.mBytes.get() + mPicture.GetRowBytes() * mInfo.next_scanline;
            if (fGrey) {
                for (std::size_t i = 0; i < std::size_t{3} * mPicture.mWidth; ++i) {
                    spread[0][i] = row[i / 3];
                }
                row = spread[0];
            }
            jpeg_write_scanlines(&mInfo, &row, 1);
        }
        jpeg_finish_compress(&mInfo);
    }

    const Picture& mPicture;
    ByteSink* mSink;
    jpeg_compress_struct mInfo = {};
    jpeg_error_mgr mErrors = {};
    jpeg_destination_mgr mDestination = {};
    std::jmp_buf mEscape = {};
    unsigned char mBlock[4096] = {};
};

} // namespace

bool EncodeJpeg(const Picture& aPicture, ByteSink* aSink) {
    JpegEncoder encoder(aPicture, aSink);
    return encoder.Run();
}
