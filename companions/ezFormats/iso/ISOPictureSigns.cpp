#include "ezFormats/iso/ISOPictureSigns.h"

#include "ezBytes/BoxWalk.h"

namespace {

/// The whole part of a number that is stated as two; 0 where the second is 0.
std::uint32_t ReadQuotient(ByteReader& aBox) {
    const std::uint32_t numerator = aBox.ReadBig32();
    const std::uint32_t denominator = aBox.ReadBig32();
    return denominator != 0 ? numerator / denominator : 0;
}

/// What a picture of whole blocks has beyond what is shown.
bool IsPartOfBlock(std::uint32_t aCoded, std::uint32_t aClean) {
    constexpr std::uint32_t kMacroblockSide = 16;
    return aClean == aCoded ||
           (aCoded % kMacroblockSide == 0 && aClean < aCoded && aCoded - aClean < kMacroblockSide);
}

} // namespace

void ISOPictureSigns::ApplyTo(VideoFacts& aFacts) const {
    if (mPixelAspect.IsKnown()) {
        aFacts.mPixelAspect = mPixelAspect;
    }
    // Of pictures of television the clean aperture leaves out what lies at their edges, 703 pixels of 720:
    // that is part of the picture to all who name its size, and only what fills up blocks is cut off.
    const bool fClean = mCleanWidth != 0 && mCleanHeight != 0;
    if (fClean && IsPartOfBlock(aFacts.mWidth, mCleanWidth) && IsPartOfBlock(aFacts.mHeight, mCleanHeight)) {
        aFacts.mWidth = mCleanWidth;
        aFacts.mHeight = mCleanHeight;
    }
    aFacts.mScan = aFacts.mScan != nullptr ? aFacts.mScan : mScan;
    DynamicRange range = mRange;
    range.TakeKind(aFacts.mHDR);
    aFacts.mHDR = mfDolbyVision ? kHDR_DolbyVision : range.GetKind();
}

/// PixelAspectRatioBox (ISO/IEC 14496-12, 12.1.4)
void ReadPixelAspect(ByteReader aBox, ISOPictureSigns& aSigns) {
    const std::uint32_t width = aBox.ReadBig32(); // hSpacing, vSpacing
    aSigns.mPixelAspect = VideoRatio::Of(width, aBox.ReadBig32());
}

/// CleanApertureBox (ISO/IEC 14496-12, 12.1.4)
void ReadCleanAperture(ByteReader aBox, ISOPictureSigns& aSigns) {
    const std::uint32_t width = ReadQuotient(aBox);
    const std::uint32_t height = ReadQuotient(aBox);
    if (!aBox.HasFailed()) {
        aSigns.mCleanWidth = width;
        aSigns.mCleanHeight = height;
    }
}

/// QuickTime's number of fields in a sample, and their order.
void ReadFields(ByteReader aBox, ISOPictureSigns& aSigns) {
    const unsigned fields = aBox.ReadByte();
    aSigns.mScan = fields == 1 ? kScan_Progressive : fields == 2 ? kScan_Interlaced : nullptr;
}

/// ColourInformationBox (ISO/IEC 14496-12, 12.1.5), and QuickTime's form of it.
void ReadColours(ByteReader aBox, ISOPictureSigns& aSigns) {
    const BoxType kind = BoxType::Read(aBox);
    aBox.Skip(2); // colour_primaries
    const auto transfer = static_cast<std::uint32_t>(aBox.ReadBig(2));
    if (!aBox.HasFailed() && (kind == "nclx" || kind == "nclc")) {
        aSigns.mRange.mTransfer = transfer;
    }
}

/// MasteringDisplayColourVolumeBox and ContentLightLevelBox (ISO/IEC 14496-12, 12.1.6 and 12.1.7).
void ReadStaticMetadata(ByteReader aBox, ISOPictureSigns& aSigns) {
    aSigns.mRange.mfStaticMetadata = aSigns.mRange.mfStaticMetadata || aBox.GetLeft() != 0;
}

/// DOVIDecoderConfigurationRecord (Dolby Vision Streams within the ISO Base Media File Format, 3.2).
void ReadDolbyVision(ByteReader aBox, ISOPictureSigns& aSigns) {
    const unsigned version = aBox.ReadByte(); // dv_version_major
    aSigns.mfDolbyVision = aSigns.mfDolbyVision || version != 0;
}
