#pragma once

#include "ezThumbnails/detail/ByteSink.h"
#include "ezThumbnails/detail/JpegErrors.h"

#include "ezPlatform/base/Types.h"

#include <string_view>

/// Writes a baseline JPEG, 4:2:0, JFIF 1.02, with the standard tables, row by row. The operations are called
/// in their order; false is a failure, for want of memory as a rule, and ends the writer's use.
class JpegWriter {
public:
    /// @param aSink  takes the bytes; borrowed
    explicit JpegWriter(ByteSink* aSink);
    ~JpegWriter();
    JpegWriter(const JpegWriter&) = delete;
    JpegWriter& operator=(const JpegWriter&) = delete;

    /// @param aQuality  of libjpeg, 1 to 100
    /// @param aComment  at most 65,533 bytes; none when it is empty
    bool Begin(uint32 aWidth, uint32 aHeight, int aQuality, std::string_view aComment);
    /// The next row from the top: three bytes a pixel, red, green and blue.
    bool WriteRow(const unsigned char* aRow);
    bool End();

private:
    static JpegWriter* Of(j_compress_ptr anInfo);
    static void OnInit(j_compress_ptr anInfo);
    static boolean OnFull(j_compress_ptr anInfo);
    static void OnTerm(j_compress_ptr anInfo);

    void StartBlock();
    void Take(std::size_t aCount);

    ByteSink* mSink;
    JpegErrors mErrors;
    jpeg_compress_struct mInfo = {};
    jpeg_destination_mgr mDestination = {};
    unsigned char mBlock[4096] = {};
};
