#pragma once

#include "companions/ezFormats/elementary/EltStreamKit.h"

#include <string>

/// Streams of MPEG-4 video as bytes.
namespace mpeg4 {

/// A video object layer (ISO/IEC 14496-2, 6.2.3) of 352 by 288 pixels.
struct Layer {
    unsigned mAspect = 1; ///< aspect_ratio_info
    unsigned mPixelWidth = 0;
    unsigned mPixelHeight = 0;
    unsigned mResolution = 25; ///< vop_time_increment_resolution
    bool mfFixed = true;       ///< fixed_vop_rate
    unsigned mIncrement = 1;
    unsigned mIncrementBits = 5; ///< as the resolution needs
    bool mfControl = false;      ///< vol_control_parameters, with a buffer's
    bool mfIdentifier = false;   ///< is_object_layer_identifier
    bool mfInterlaced = false;

    std::string Bytes() const {
        Bits bits;
        bits.Put(0x120, 32).Put(0, 1).Put(1, 8).Put(mfIdentifier ? 1 : 0, 1);
        bits.Put(mfIdentifier ? 2 << 3 | 1 : 0, mfIdentifier ? 7 : 0).Put(mAspect, 4);
        if (mAspect == 15) {
            bits.Put(mPixelWidth, 8).Put(mPixelHeight, 8);
        }
        bits.Put(mfControl ? 1 : 0, 1);
        if (mfControl) {
            bits.Put(1, 2).Put(0, 1).Put(1, 1).Put(UINT32_MAX, 32).Put(UINT32_MAX, 32).Put(0x7FFF, 15);
        }
        bits.Put(0, 2).Put(1, 1).Put(mResolution, 16).Put(1, 1).Put(mfFixed ? 1 : 0, 1);
        bits.Put(mfFixed ? mIncrement : 0, mfFixed ? mIncrementBits : 0);
        bits.Put(1, 1).Put(352, 13).Put(1, 1).Put(288, 13).Put(1, 1).Put(mfInterlaced ? 1 : 0, 1);
        return bits.Put(0, 16).Bytes();
    }
};

/// The least before a picture: the code of an object and a layer; and the picture.
inline std::string Stream(const Layer& aLayer = {}) {
    return Hex({0, 0, 1, 0}) + aLayer.Bytes() + Hex({0, 0, 1, 0xB6, 0x10}) + Content(40);
}

} // namespace mpeg4
