#include "ezThumbnails/detail/JpegWriter.h"

// Which codes there are depends on how the library was built.
#include <jerror.h>

JpegWriter::JpegWriter(ByteSink* aSink) : mSink(aSink) {
    mInfo.err = &mErrors;
    mInfo.client_data = this;
    mDestination.init_destination = OnInit;
    mDestination.empty_output_buffer = OnFull;
    mDestination.term_destination = OnTerm;
}

JpegWriter::~JpegWriter() {
    jpeg_destroy_compress(&mInfo);
}

bool JpegWriter::Begin(uint32 aWidth, uint32 aHeight, int aQuality, std::string_view aComment) {
    return mErrors.Run([&] {
        jpeg_create_compress(&mInfo);
        mInfo.dest = &mDestination;
        mInfo.image_width = aWidth;
        mInfo.image_height = aHeight;
        mInfo.input_components = 3;
        mInfo.in_color_space = JCS_RGB;
        jpeg_set_defaults(&mInfo);    // YCbCr, 4:2:0
        mInfo.JFIF_minor_version = 2; // what the DLNA profiles want at least
        jpeg_set_quality(&mInfo, aQuality, TRUE);
        jpeg_start_compress(&mInfo, TRUE);
        if (!aComment.empty()) {
            jpeg_write_marker(&mInfo, JPEG_COM, reinterpret_cast<const JOCTET*>(aComment.data()),
                              static_cast<unsigned>(aComment.size()));
        }
    });
}

bool JpegWriter::WriteRow(const unsigned char* aRow) {
    return mErrors.Run([&] {
        JSAMPROW row = const_cast<JSAMPROW>(aRow); // the library only reads it
        jpeg_write_scanlines(&mInfo, &row, 1);
    });
}

bool JpegWriter::End() {
    return mErrors.Run([&] { jpeg_finish_compress(&mInfo); });
}

// ---- what the library calls ----

JpegWriter* JpegWriter::Of(j_compress_ptr anInfo) {
    return static_cast<JpegWriter*>(anInfo->client_data);
}

void JpegWriter::OnInit(j_compress_ptr anInfo) {
    Of(anInfo)->StartBlock();
}

boolean JpegWriter::OnFull(j_compress_ptr anInfo) {
    JpegWriter* const writer = Of(anInfo);
    writer->Take(sizeof(writer->mBlock)); // the library leaves the count as it was
    writer->StartBlock();
    return TRUE;
}

void JpegWriter::OnTerm(j_compress_ptr anInfo) {
    JpegWriter* const writer = Of(anInfo);
    writer->Take(sizeof(writer->mBlock) - writer->mDestination.free_in_buffer);
}

void JpegWriter::StartBlock() {
    mDestination.next_output_byte = mBlock;
    mDestination.free_in_buffer = sizeof(mBlock);
}

void JpegWriter::Take(std::size_t aCount) {
    if (!mSink->Append(mBlock, aCount)) {
        ERREXIT1(&mInfo, JERR_OUT_OF_MEMORY, 0);
    }
}
