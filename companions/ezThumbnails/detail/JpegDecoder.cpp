#include "ezThumbnails/detail/JpegDecoder.h"

#include "ezBytes/Exif.h"
#include "ezThumbnails/PictureThumbnailGenerator.h"
#include "ezThumbnails/detail/AreaScaler.h"
#include "ezThumbnails/detail/JpegErrors.h"
#include "ezThumbnails/detail/PictureReader.h"

#include <algorithm>
#include <cstring>

// Which codes there are depends on how the library was built.
#include <jerror.h>

namespace {

/// What a block of APP1 begins with when it is one of Exif (Exif 2.3, 4.7.2).
constexpr unsigned char kExifName[] = {'E', 'x', 'i', 'f', 0, 0};
/// The most that an APP1 holds after its length.
constexpr std::size_t kMaxApp1 = 65533;
/// The library scales by eighths.
constexpr uint32 kEighths = 8;

/// Warnings that mean that the picture itself is damaged. The others are of no harm: bytes too many between
/// markers, as cameras write them, or the versions that a header states.
constexpr int kDamages[] = {
#ifdef D_ARITH_CODING_SUPPORTED
    JWRN_ARITH_BAD_CODE,
#endif
    JWRN_HIT_MARKER,     JWRN_HUFF_BAD_CODE,  JWRN_JPEG_EOF,
    JWRN_MUST_RESYNC,    JWRN_NOT_SEQUENTIAL, JWRN_BOGUS_PROGRESSION,
};

uint32 Scaled(uint32 aSide, uint32 anEighths) {
    return (aSide * anEighths + kEighths - 1) / kEighths;
}

/// The scale for a wish: the smallest that is not below it; if fast, the largest that is not above it.
uint32 EighthsFor(const PictureHeader& aHeader, const PictureWish& aWish) {
    if (aWish.mfFast) {
        uint32 eighths = kEighths;
        while (eighths > 1 && Scaled(aHeader.mWidth, eighths) > aWish.mWidth &&
               Scaled(aHeader.mHeight, eighths) > aWish.mHeight) {
            --eighths;
        }
        return eighths;
    }
    uint32 eighths = 1;
    while (eighths < kEighths && (Scaled(aHeader.mWidth, eighths) < aWish.mWidth ||
                                  Scaled(aHeader.mHeight, eighths) < aWish.mHeight)) {
        ++eighths;
    }
    return eighths;
}

/// Makes CMYK RGB, within the row. Where Adobe's marker stands, 0 is full ink.
void CMYKToRGB(unsigned char* aRow, uint32 aWidth, bool afInverted) {
    const unsigned flip = afInverted ? 0 : 255;
    unsigned char* rgb = aRow;
    for (const unsigned char* cmyk = aRow; aWidth != 0; --aWidth, cmyk += 4, rgb += 3) {
        const unsigned light = cmyk[3] ^ flip;
        const unsigned colours[] = {cmyk[0] ^ flip, cmyk[1] ^ flip, cmyk[2] ^ flip};
        for (std::size_t i = 0; i < 3; ++i) {
            rgb[i] = static_cast<unsigned char>((colours[i] * light + 127) / 255);
        }
    }
}

} // namespace

/// Steps, and what the library calls back, hold nothing that has a destructor: an error jumps over them.
struct JpegDecoder::State {
    using Step = void (*)(State*);

    explicit State(PictureReader* aReader) : mReader(aReader) {
        mInfo.err = &mErrors;
        mErrors.error_exit = OnError;
        mErrors.emit_message = OnMessage;
        mInfo.client_data = this;
        mSource.init_source = OnSourceEvent;
        mSource.term_source = OnSourceEvent;
        mSource.fill_input_buffer = OnFill;
        mSource.skip_input_data = OnSkip;
        mSource.resync_to_restart = jpeg_resync_to_restart;
        mProgress.progress_monitor = OnProgress;
    }
    ~State() { jpeg_destroy_decompress(&mInfo); }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    bool Run(Step aStep) {
        return mErrors.Run([&] { aStep(this); });
    }

    // ---- what the library calls ----

    static State* Of(j_common_ptr anInfo) { return static_cast<State*>(anInfo->client_data); }
    static State* Of(j_decompress_ptr anInfo) { return static_cast<State*>(anInfo->client_data); }

    [[noreturn]] static void OnError(j_common_ptr anInfo) {
        // What it says when max_memory_to_use would be exceeded; without memory it says something else.
        if (anInfo->err->msg_code == JERR_NO_BACKING_STORE) {
            Of(anInfo)->mfTooCostly = true;
        }
        JpegErrors::OnError(anInfo);
    }

    static void OnMessage(j_common_ptr anInfo, int aLevel) {
        const int code = anInfo->err->msg_code;
        if (aLevel < 0 && std::find(std::begin(kDamages), std::end(kDamages), code) != std::end(kDamages)) {
            OnError(anInfo);
        }
    }

    static void OnSourceEvent(j_decompress_ptr /*anInfo*/) {}

    static boolean OnFill(j_decompress_ptr anInfo) {
        State* const state = Of(anInfo);
        if (!state->mReader->Fill()) {
            ERREXIT(anInfo, JERR_INPUT_EOF);
        }
        state->TakeBlock();
        return TRUE;
    }

    static void OnSkip(j_decompress_ptr anInfo, long aCount) {
        jpeg_source_mgr* const source = anInfo->src;
        while (aCount > 0) {
            if (source->bytes_in_buffer == 0) {
                OnFill(anInfo);
            }
            const std::size_t count = std::min(source->bytes_in_buffer, static_cast<std::size_t>(aCount));
            source->next_input_byte += count;
            source->bytes_in_buffer -= count;
            aCount -= static_cast<long>(count);
        }
    }

    static void OnProgress(j_common_ptr anInfo) {
        State* const state = Of(anInfo);
        if (state->mInfo.input_scan_number > PictureThumbnailGenerator::kMaxScans) {
            state->mfTooCostly = true;
            OnError(anInfo);
        }
    }

    /// Looks for the orientation in an APP1; keeps nothing else of it, however many there are.
    static boolean OnApp1(j_decompress_ptr anInfo) {
        State* const state = Of(anInfo);
        std::size_t count = std::size_t{state->NextByte(anInfo)} << 8;
        count += state->NextByte(anInfo);
        if (count < 2) {
            ERREXIT(anInfo, JERR_BAD_LENGTH);
        }
        count -= 2;
        for (std::size_t i = 0; i < count; ++i) {
            state->mApp1[i] = state->NextByte(anInfo);
        }
        constexpr std::size_t kName = sizeof(kExifName);
        if (!state->mfExif && count >= kName && std::memcmp(state->mApp1, kExifName, kName) == 0) {
            state->mfExif = true;
            state->mHeader.mOrientation = ExifOrientation(state->mApp1 + kName, count - kName);
        }
        return TRUE;
    }

    /// Gives the library the buffered bytes.
    void TakeBlock() {
        mSource.next_input_byte = mReader->GetData();
        mSource.bytes_in_buffer = mReader->GetCount();
    }

    unsigned char NextByte(j_decompress_ptr anInfo) {
        if (mSource.bytes_in_buffer == 0) {
            OnFill(anInfo);
        }
        --mSource.bytes_in_buffer;
        return *mSource.next_input_byte++;
    }

    // ---- the steps ----

    static void ReadHeader(State* aState) {
        jpeg_decompress_struct* const info = &aState->mInfo;
        jpeg_create_decompress(info);
        info->mem->max_memory_to_use = PictureThumbnailGenerator::kMaxMemory;
        info->src = &aState->mSource;
        info->progress = &aState->mProgress;
        jpeg_set_marker_processor(info, JPEG_APP0 + 1, OnApp1);
        aState->TakeBlock();
        jpeg_read_header(info, TRUE);
        aState->mHeader.mWidth = info->image_width;
        aState->mHeader.mHeight = info->image_height;
    }

    /// A JPEG of many scans is read to its end by this step.
    static void Start(State* aState) {
        jpeg_decompress_struct* const info = &aState->mInfo;
        if (info->jpeg_color_space == JCS_CMYK || info->jpeg_color_space == JCS_YCCK) {
            info->out_color_space = JCS_CMYK;
        } else if (info->jpeg_color_space != JCS_GRAYSCALE) {
            info->out_color_space = JCS_RGB;
        }
        info->scale_num = EighthsFor(aState->mHeader, aState->mWish);
        info->scale_denom = kEighths;
        info->do_block_smoothing = FALSE; // guesses what later scans bring, and all of them are here
        if (aState->mWish.mfFast) {
            info->do_fancy_upsampling = FALSE;
            info->dct_method = JDCT_IFAST;
        }
        jpeg_start_decompress(info);
        const JDIMENSION bytes = info->output_width * static_cast<JDIMENSION>(info->output_components);
        aState->mRow = info->mem->alloc_sarray(reinterpret_cast<j_common_ptr>(info), JPOOL_IMAGE, bytes, 1);
    }

    static void ReadRows(State* aState) {
        jpeg_decompress_struct* const info = &aState->mInfo;
        while (info->output_scanline < info->output_height) {
            jpeg_read_scanlines(info, aState->mRow, 1);
            if (info->out_color_space == JCS_CMYK) {
                CMYKToRGB(aState->mRow[0], info->output_width, info->saw_Adobe_marker != 0);
            }
            aState->mScaler.AddRow(aState->mRow[0]);
        }
        jpeg_finish_decompress(info);
    }

    jpeg_decompress_struct mInfo = {};
    JpegErrors mErrors;
    jpeg_source_mgr mSource = {};
    jpeg_progress_mgr mProgress = {};
    PictureReader* mReader;
    PictureHeader mHeader;
    PictureWish mWish;
    AreaScaler mScaler;
    JSAMPARRAY mRow = nullptr; ///< one, of the library
    bool mfExif = false;       ///< the first one counts
    bool mfTooCostly = false;
    unsigned char mApp1[kMaxApp1] = {};
};

JpegDecoder::JpegDecoder(PictureReader* aReader) : mState(std::make_unique<State>(aReader)) {}

JpegDecoder::~JpegDecoder() = default;

bool JpegDecoder::ReadHeader(PictureHeader* aHeader) {
    if (!mState->Run(State::ReadHeader)) {
        return false;
    }
    *aHeader = mState->mHeader;
    return IsWithinLimits(*aHeader);
}

bool JpegDecoder::Decode(const PictureWish& aWish, Picture* aResult) {
    mState->mWish = aWish;
    const bool fDecoded = DecodeRows(aWish, aResult);
    mfTooCostly = mState->mfTooCostly;
    return fDecoded;
}

bool JpegDecoder::DecodeRows(const PictureWish& aWish, Picture* aResult) {
    if (!mState->Run(State::Start)) {
        return false;
    }
    const jpeg_decompress_struct& info = mState->mInfo;
    const uint32 channels = info.out_color_space == JCS_GRAYSCALE ? 1 : 3;
    return mState->mScaler.Begin(info.output_width, info.output_height, channels, aWish.mWidth, aWish.mHeight,
                                 aResult) &&
           mState->Run(State::ReadRows) && mState->mScaler.IsComplete();
}
