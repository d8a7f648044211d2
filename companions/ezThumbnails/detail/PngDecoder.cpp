#include "ezThumbnails/detail/PngDecoder.h"

#include "ezBytes/Exif.h"
#include "ezThumbnails/PictureThumbnailGenerator.h"
#include "ezThumbnails/detail/AreaScaler.h"
#include "ezThumbnails/detail/PictureReader.h"

#include "ezPlatform/base/Memory.h"

#include <csetjmp>
#include <cstddef>

#include <png.h>

namespace {

/// What a chunk that is kept may take: an Exif block is far below.
constexpr png_alloc_size_t kMaxChunk = 1 << 20;

/// The largest block that the codec may take. It asks for as much as some chunks (eXIf) state, whatever the
/// limit on chunks; the largest row of an allowed picture stays well below.
constexpr png_alloc_size_t kMaxBlock = 4 << 20;

/// Chunks of no use here that can be large or many: they are skipped, their check sums looked at.
constexpr png_byte kSkippedChunks[] = "iCCP\0iTXt\0tEXt\0zTXt\0sPLT\0hIST\0pCAL\0sCAL";
constexpr int kSkippedChunkCount = 8;

/// Gammas, in 100,000ths, that a picture may state; others are mistakes, and not followed.
constexpr png_fixed_point kMinGamma = 10'000;
constexpr png_fixed_point kMaxGamma = 1'000'000;

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

/// An error of the library ends in a jump over its frames and that of a step: steps, and what the library
/// calls back, hold nothing that has a destructor.
struct PngDecoder::State {
    using Step = void (*)(State*);

    explicit State(PictureReader* aReader) : mReader(aReader) {}
    ~State() { png_destroy_read_struct(&mPng, &mInfo, nullptr); }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    bool Run(Step aStep) {
        if (setjmp(mEscape) != 0) { // the library knows no other way out of an error
            return false;
        }
        aStep(this);
        return true;
    }

    // ---- what the library calls ----

    [[noreturn]] static void OnError(png_structp aPng, png_const_charp /*aText*/) {
        std::longjmp(static_cast<State*>(png_get_error_ptr(aPng))->mEscape, 1);
    }

    static void OnWarning(png_structp /*aPng*/, png_const_charp /*aText*/) {} // the base prints

    static png_voidp OnAllocate(png_structp /*aPng*/, png_alloc_size_t aSize) {
        return aSize <= kMaxBlock ? ezMalloc(aSize) : nullptr;
    }
    static void OnFree(png_structp /*aPng*/, png_voidp aBlock) { ezFree(aBlock); }

    static void OnRead(png_structp aPng, png_bytep aBuffer, std::size_t aCount) {
        if (!static_cast<State*>(png_get_io_ptr(aPng))->mReader->Read(aBuffer, aCount)) {
            png_error(aPng, "cut short");
        }
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
        png_set_chunk_malloc_max(png, kMaxChunk);
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
            png_get_gAMA_fixed(png, aState->mInfo, &gamma) != 0 && gamma >= kMinGamma && gamma <= kMaxGamma) {
            png_set_gamma_fixed(png, PNG_DEFAULT_sRGB, gamma);
        }
    }

    static void Start(State* aState) {
        SetTransformations(aState);
        aState->mPasses = png_set_interlace_handling(aState->mPng);
        png_read_update_info(aState->mPng, aState->mInfo);
        aState->mChannels = png_get_channels(aState->mPng, aState->mInfo);
        aState->mRowBytes = png_get_rowbytes(aState->mPng, aState->mInfo);
    }

    static void ReadRows(State* aState) {
        for (uint32 y = 0; y < aState->mHeader.mHeight; ++y) {
            png_read_row(aState->mPng, aState->mRows.get(), nullptr);
            aState->TakeRow(aState->mRows.get());
        }
        png_read_end(aState->mPng, nullptr);
    }

    /// The passes complete each other, so the whole picture is there before its first row is.
    static void ReadInterlacedRows(State* aState) {
        for (int pass = 0; pass < aState->mPasses; ++pass) {
            for (uint32 y = 0; y < aState->mHeader.mHeight; ++y) {
                png_read_row(aState->mPng, aState->mRows.get() + aState->mRowBytes * y, nullptr);
            }
        }
        png_read_end(aState->mPng, nullptr);
        for (uint32 y = 0; y < aState->mHeader.mHeight; ++y) {
            aState->TakeRow(aState->mRows.get() + aState->mRowBytes * y);
        }
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
        if (bytes > PictureThumbnailGenerator::kMaxMemory) {
            return false;
        }
        mRows = NewPictureBytes(static_cast<std::size_t>(bytes));
        return mRows != nullptr;
    }

    png_structp mPng = nullptr;
    png_infop mInfo = nullptr;
    std::jmp_buf mEscape = {};
    PictureReader* mReader;
    PictureHeader mHeader;
    PictureWish mWish;
    AreaScaler mScaler;
    int mPasses = 1;
    uint32 mChannels = 0;
    std::size_t mRowBytes = 0;
    PictureBytes mRows; ///< one, or all when interlaced
};

PngDecoder::PngDecoder(PictureReader* aReader) : mState(std::make_unique<State>(aReader)) {}

PngDecoder::~PngDecoder() = default;

bool PngDecoder::ReadHeader(PictureHeader* aHeader) {
    if (!mState->Run(State::ReadHeader)) {
        return false;
    }
    *aHeader = mState->mHeader; // 0 by 0 when there was no memory
    return IsWithinLimits(aHeader->mWidth, aHeader->mHeight);
}

bool PngDecoder::Decode(const PictureWish& aWish, Picture* aResult) {
    mState->mWish = aWish;
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
