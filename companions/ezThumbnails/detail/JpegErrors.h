#pragma once

#include "ezThumbnails/detail/CodecEscape.h"

#include <cstddef>
#include <cstdio>

// Needs the two before it.
#include <jpeglib.h>

/// What libjpeg does with errors: prints nothing, and leaves the step under way. Not moved, since the library
/// keeps its address.
class JpegErrors : public jpeg_error_mgr {
public:
    JpegErrors() : jpeg_error_mgr() {
        jpeg_std_error(this);
        error_exit = OnError;
        output_message = OnOutput;
    }
    JpegErrors(const JpegErrors&) = delete;
    JpegErrors& operator=(const JpegErrors&) = delete;

    /// Runs a step of calls to the library. False when an error ended it.
    template <typename Step>
    bool Run(const Step& aStep) {
        return mEscape.Run(aStep);
    }

    [[noreturn]] static void OnError(j_common_ptr anInfo) {
        static_cast<JpegErrors*>(anInfo->err)->mEscape.Jump();
    }

private:
    static void OnOutput(j_common_ptr /*anInfo*/) {} // the base prints

    CodecEscape mEscape;
};
