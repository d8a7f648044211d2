#include "ezThumbnails/detail/PngDecoder.h"

#include "ezBytes/Exif.h"
#include "ezThumbnails/PictureThumbnailGenerator.h"
#include "ezThumbnails/detail/AreaScaler.h"
#include "ezThumbnails/detail/CodecEscape.h"
#include "ezThumbnails/detail/PictureLimits.h"
#include "ezThumbnails/detail/PictureReader.h"

#include "ezPlatform/base/Memory.h"

#include <cstddef>

#include <png.h>

namespace {

/// Chunks of no use here that can be large or many: they are skipped, their check sums looked at.
constexpr png_byte kSkippedChunks[] = "iCCP\0iTXt\0tEXt\0zTXt\0sPLT\0hIST\0pCAL\0sCAL";
constexpr int kSkippedChunkCount = 8;

/// Lays the pixels of a row on white and leaves the alpha out, within the row.
void LayOnWhite(unsigned char* aRow, uint32 aWidth) {
    unsigned char* rgb = aRow;
    for (const unsigned char* rgba = aRow; aWidth != 0; --aWidth, rgba += 4, rgb += 3) {
        const unsigned alpha = rgba[3];
        for (std::size_t i = 0; i < 3; ++i) {
            rgb[i] = static_cast<unsigned char>((rgba[i] * alpha + 255 * (255 - alpha) + 127) / 255);
        }
    }
}

} // namespace

/// Steps, and what the library calls back, hold nothing that has a destructor: an error jumps over them.
struct PngDecoder::State {
    using Step = void (*)(State*);

    explicit State(PictureReader* aReader) : mReader(aReader) {}
    ~State() { png_destroy_read_struct(&mPng, &mInfo, nullptr); }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    bool Run(Step aStep) {
        return mEscape.Run([&] { aStep(this); });
    }

    // ---- what the library calls ----

    [[noreturn]] static void OnError(png_structp aPng, png_const_charp /*aText*/) {
        static_cast<State*>(png_get_error_ptr(aPng))->mEscape.Jump();
    }

    static void OnWarning(png_structp /*aPng*/, png_const_charp /*aText*/) {} // the base prints

    static png_voidp OnAllocate(png_structp /*aPng*/, png_alloc_size_t aSize) {
        return aSize <= kPNG_MaxBlock ? ezMalloc(aSize) : nullptr;
    }
    static void OnFree(png_structp /*aPng*/, png_voidp aBlock) { ezFree(aBlock); }

    static void OnRead(png_structp aPng, png_bytep aBuffer, std::size_t aCount) {
        State* const state = static_cast<State*>(png_get_io_ptr(aPng));
        if (state->mfAfterPixels) {
            // The library inflates all that is left of the data, whatever the picture holds.
            state->mAfterPixels += aCount;
            if (state->mAfterPixels > PictureThumbnailGenerator::kMaxAfterPixels) {
                state->mfTooCostly = true;
                png_error(aPng, "no end after the pixels");
            }
        }
        if (!state->mReader->Read(aBuffer, aCount)) {
            png_error(aPng, "cut short");
        }
    }

    /// Called of every row that has pixels, in every pass, once its bytes are inflated.
    static void OnInflated(png_structp aPng, png_row_infop /*aRow*/, png_bytep /*aData*/) {
        State* const state = static_cast<State*>(png_get_io_ptr(aPng));
        state->mfAfterPixels = --state->mRowsToInflate == 0;
    }

    // ---- the steps ----

    static void ReadHeader(State* aState) {
        aState->mPng = png_create_read_struct_2(PNG_LIBPNG_VER_STRING, aState, OnError, OnWarning, nullptr,
                                                OnAllocate, OnFree);
        png_structp png = aState->mPng;
        if (png == nullptr) {
            return;
        }
        aState->mInfo = png_create_info_struct(png);
        if (aState->mInfo == nullptr) {
            return;
        }
        png_set_read_fn(png, aState, OnRead);
        png_set_crc_action(png, PNG_CRC_ERROR_QUIT, PNG_CRC_ERROR_QUIT);
        png_set_user_limits(png, PictureThumbnailGenerator::kMaxSide, PictureThumbnailGenerator::kMaxSide);
        png_set_chunk_malloc_max(png, kPNG_MaxBlock);
        png_set_keep_unknown_chunks(png, PNG_HANDLE_CHUNK_NEVER, kSkippedChunks, kSkippedChunkCount);
        png_read_info(png, aState->mInfo);
        aState->mHeader.mWidth = png_get_image_width(png, aState->mInfo);
        aState->mHeader.mHeight = png_get_image_height(png, aState->mInfo);
        png_bytep exif = nullptr;
        png_uint_32 count = 0;
        if (png_get_eXIf_1(png, aState->mInfo, &count, &exif) != 0) {
            aState->mHeader.mOrientation = ExifOrientation(exif, count);
        }
    }

    /// Every kind becomes grey, RGB or RGB with alpha, of 8 bits.
    static void SetTransformations(State* aState) {
        png_structp png = aState->mPng;
        const bool fTransparent = (png_get_color_type(png, aState->mInfo) & PNG_COLOR_MASK_ALPHA) != 0 ||
                                  png_get_valid(png, aState->mInfo, PNG_INFO_tRNS) != 0;
        png_set_expand(png);
        png_set_scale_16(png);
        if (fTransparent) {
            png_set_gray_to_rgb(png);
        }
        png_fixed_point gamma = 0;
        if (png_get_valid(png, aState->mInfo, PNG_INFO_sRGB) == 0 &&
            png_get_gAMA_fixed(png, aState->mInfo, &gamma) != 0 && gamma >= kPNG_MinGamma &&
            gamma <= kPNG_MaxGamma) {
            png_set_gamma_fixed(png, PNG_DEFAULT_sRGB, gamma);
        }
    }

    static void Start(State* aState) {
        SetTransformations(aState);
        aState->mPasses = png_set_interlace_handling(aState->mPng);
        aState->mRowsToInflate = aState->CountRows();
        png_set_read_user_transform_fn(aState->mPng, OnInflated);
        png_read_update_info(aState->mPng, aState->mInfo);
        aState->mChannels = png_get_channels(aState->mPng, aState->mInfo);
        aState->mRowBytes = png_get_rowbytes(aState->mPng, aState->mInfo);
    }

    static void ReadRows(State* aState) {
        for (uint32 y = 0; y < aState->mHeader.mHeight; ++y) {
            png_read_row(aState->mPng, aState->mRows.get(), nullptr);
            aState->TakeRow(aState->mRows.get());
        }
        aState->mfAfterPixels = false; // from here on nothing is inflated
        png_read_end(aState->mPng, nullptr);
    }

    /// The passes complete each other, so the whole picture is there before its first row is.
    static void ReadInterlacedRows(State* aState) {
        for (int pass = 0; pass < aState->mPasses; ++pass) {
            for (uint32 y = 0; y < aState->mHeader.mHeight; ++y) {
                png_read_row(aState->mPng, aState->mRows.get() + aState->mRowBytes * y, nullptr);
            }
        }
        aState->mfAfterPixels = false;
        png_read_end(aState->mPng, nullptr);
        for (uint32 y = 0; y < aState->mHeader.mHeight; ++y) {
            aState->TakeRow(aState->mRows.get() + aState->mRowBytes * y);
        }
    }

    /// The rows that have pixels, in all passes together (PNG 1.2, 8.2).
    uint32 CountRows() const {
        if (mPasses == 1) {
            return mHeader.mHeight;
        }
        uint32 rows = 0;
        for (int pass = 0; pass < mPasses; ++pass) {
            rows += PNG_PASS_COLS(mHeader.mWidth, pass) != 0 ? PNG_PASS_ROWS(mHeader.mHeight, pass) : 0;
        }
        return rows;
    }

    void TakeRow(unsigned char* aRow) {
        if (mChannels == 4 && mWish.mfOnWhite) {
            LayOnWhite(aRow, mHeader.mWidth);
        }
        mScaler.AddRow(aRow);
    }

    bool AllocateRows() {
        const std::uint64_t bytes =
            static_cast<std::uint64_t>(mRowBytes) * (mPasses > 1 ? mHeader.mHeight : 1);
        mfTooCostly = bytes > PictureThumbnailGenerator::kMaxMemory;
        if (mfTooCostly) {
            return false;
        }
        mRows = NewPictureBytes(static_cast<std::size_t>(bytes));
        return mRows != nullptr;
    }

    png_structp mPng = nullptr;
    png_infop mInfo = nullptr;
    CodecEscape mEscape;
    PictureReader* mReader;
    PictureHeader mHeader;
    PictureWish mWish;
    AreaScaler mScaler;
    int mPasses = 1;
    uint32 mChannels = 0;
    std::size_t mRowBytes = 0;
    PictureBytes mRows; ///< one, or all when interlaced
    uint32 mRowsToInflate = 0;
    bool mfAfterPixels = false;   ///< the rows are inflated, and what is read is more of their data
    std::size_t mAfterPixels = 0; ///< bytes read of that
    bool mfTooCostly = false;
};

PngDecoder::PngDecoder(PictureReader* aReader) : mState(std::make_unique<State>(aReader)) {}

PngDecoder::~PngDecoder() = default;

bool PngDecoder::ReadHeader(PictureHeader* aHeader) {
    if (!mState->Run(State::ReadHeader)) {
        return false;
    }
    *aHeader = mState->mHeader; // 0 by 0 when there was no memory
    return IsWithinLimits(*aHeader);
}

bool PngDecoder::Decode(const PictureWish& aWish, Picture* aResult) {
    mState->mWish = aWish;
    const bool fDecoded = DecodeRows(aWish, aResult);
    mfTooCostly = mState->mfTooCostly;
    return fDecoded;
}

bool PngDecoder::DecodeRows(const PictureWish& aWish, Picture* aResult) {
    if (!mState->Run(State::Start) || !mState->AllocateRows()) {
        return false;
    }
    const uint32 channels = mState->mChannels == 4 && aWish.mfOnWhite ? 3 : mState->mChannels;
    const PictureHeader& header = mState->mHeader;
    return mState->mScaler.Begin(header.mWidth, header.mHeight, channels, aWish.mWidth, aWish.mHeight,
                                 aResult) &&
           mState->Run(mState->mPasses > 1 ? State::ReadInterlacedRows : State::ReadRows) &&
           mState->mScaler.IsComplete();
}
