#include "ezFormats/codecs/MPEG4Headers.h"

#include "ezBytes/BitReader.h"
#include "ezFormats/codecs/PixelAspects.h"

namespace {

// Clauses are those of ISO/IEC 14496-2.

constexpr std::uint32_t kShapeRectangular = 0;
constexpr std::uint32_t kShapeGrey = 3;
constexpr std::uint32_t kAspectExtended = 15;
constexpr std::uint32_t kChroma420 = 1;
constexpr std::uint32_t kAspectHighest = 5; ///< of aspect_ratio_info (table 6-12)

/// Reads what must be there for the layer to be legal, but tells nothing.
class Marks {
public:
    Marks(ezBitReader& aBits, bool& afLegal) : mBits(aBits), mfLegal(afLegal) {}
    void Expect(bool afKept) { mfLegal = mfLegal && afKept; }
    /// marker_bit
    void Take() { Expect(mBits.ReadFlag()); }

private:
    ezBitReader& mBits;
    bool& mfLegal;
};

/// Bits of a time below so many ticks, at least one.
unsigned BitsFor(std::uint32_t aCount) {
    unsigned bits = 1;
    while (aCount > 1U << bits) {
        ++bits;
    }
    return bits;
}

/// vol_control_parameters
void ReadControl(ezBitReader& aBits, Marks& aMarks) {
    aMarks.Expect(aBits.Read(2) == kChroma420); // chroma_format
    aBits.Skip(1);                              // low_delay
    if (aBits.ReadFlag()) {
        for (const unsigned bits : {15U, 15U, 15U}) { // bit_rate in two halves, vbv_buffer_size
            aBits.Skip(bits);
            aMarks.Take();
        }
        aBits.Skip(3 + 11); // the rest of the size, vbv_occupancy
        aMarks.Take();
        aBits.Skip(15);
        aMarks.Take();
    }
}

/// aspect_ratio_info, with par_width and par_height where it says so.
VideoRatio ReadPixelAspect(ezBitReader& aBits, Marks& aMarks) {
    const std::uint32_t code = aBits.Read(4);
    aMarks.Expect(code != 0);
    if (code == kAspectExtended) {
        const std::uint32_t width = aBits.Read(8);
        return VideoRatio::Of(width, aBits.Read(8));
    }
    return PixelAspect_Of(code, kAspectHighest);
}

std::uint32_t ReadFrameRate(ezBitReader& aBits, Marks& aMarks) {
    aBits.Require(aBits.ReadFlag());                 // marker_bit, here and below
    const std::uint32_t resolution = aBits.Read(16); // vop_time_increment_resolution
    aMarks.Expect(resolution != 0);
    aBits.Require(aBits.ReadFlag());
    if (!aBits.ReadFlag()) { // fixed_vop_rate
        return 0;
    }
    return VideoClock_FrameRate(aBits.Read(BitsFor(resolution)), resolution); // fixed_vop_time_increment
}

} // namespace

bool ezMPEG4Layer_Read(const unsigned char* aBytes, std::size_t aSize, ezMPEG4Layer& aLayer) {
    ezBitReader bits(aBytes, 8 * aSize);
    bool fLegal = true;
    Marks marks(bits, fLegal);
    bits.Skip(1);                    // random_accessible_vol
    marks.Expect(bits.Read(8) != 0); // video_object_type_indication
    std::uint32_t verid = 1;
    if (bits.ReadFlag()) { // is_object_layer_identifier
        verid = bits.Read(4);
        marks.Expect(verid != 0);
        bits.Skip(3); // video_object_layer_priority
    }
    const VideoRatio pixel = ReadPixelAspect(bits, marks);
    if (bits.ReadFlag()) {
        ReadControl(bits, marks);
    }
    const std::uint32_t shape = bits.Read(2);
    bits.Skip(shape == kShapeGrey && verid != 1 ? 4 : 0); // video_object_layer_shape_extension
    const std::uint32_t frameRate = ReadFrameRate(bits, marks);
    bits.Require(shape == kShapeRectangular);
    bits.Require(bits.ReadFlag());
    const std::uint32_t width = bits.Read(13);
    bits.Require(bits.ReadFlag());
    const std::uint32_t height = bits.Read(13);
    bits.Require(bits.ReadFlag());
    const bool fInterlaced = bits.ReadFlag();
    if (!bits.Require(width != 0 && height != 0)) {
        return false;
    }
    aLayer = {pixel, frameRate, width, height, fInterlaced, fLegal};
    return true;
}
