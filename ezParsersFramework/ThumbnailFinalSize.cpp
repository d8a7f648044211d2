#include "ez/ThumbnailFinalSize.h"

#include "ez/ThumbnailInfo.h"

// Compiled without contraction of products and sums: every target computes the same size.

namespace {

constexpr uint32 kDLNAThumbnailSide = 160;

/// A result in single precision, also where the machine computes in a wider one. Rounding twice does no harm
/// to one product or quotient, since the wider one has more than twice the digits.
float Single(float aValue) {
    volatile float stored = aValue;
    return stored;
}

float Single(uint32 aValue) {
    return Single(static_cast<float>(aValue));
}

/// Cut to a whole number that fits; what is not a number is 0.
uint32 Whole(float aValue) {
    constexpr float kTooLarge = 4294967296.0F;
    if (aValue >= kTooLarge) {
        return UINT32_MAX;
    }
    return aValue > 0.0F ? static_cast<uint32>(aValue) : 0;
}

uint32 Product(uint32 aLeft, float aRight) {
    return Whole(Single(Single(aLeft) * aRight));
}

uint32 Quotient(uint32 aLeft, float aRight) {
    return Whole(Single(Single(aLeft) / aRight));
}

/// An original height of 0 makes it endless, and not a number for a width of 0 too.
float Ratio(uint32 aLeft, uint32 aRight) {
    return Single(Single(aLeft) / Single(aRight));
}

struct Size {
    uint32 mWidth;
    uint32 mHeight;
};

Size FitInBox(const ThumbnailInfo& anInfo, float anAspect) {
    Size size = {};
    if (anAspect >= 1.0F) {
        size.mWidth = anInfo.mWidthMax;
        size.mHeight = Quotient(size.mWidth, anAspect);
        if (size.mHeight > anInfo.mHeightMax) {
            size.mHeight = anInfo.mHeightMax;
            size.mWidth = Product(size.mHeight, anAspect);
        }
    } else {
        size.mHeight = anInfo.mHeightMax;
        size.mWidth = Product(size.mHeight, anAspect);
        if (size.mWidth > anInfo.mWidthMax) {
            size.mWidth = anInfo.mWidthMax;
            size.mHeight = Quotient(size.mWidth, anAspect);
        }
    }
    return size;
}

/// The smaller part is divided by the larger: never by 0.
Size WithPixelRatio(const ThumbnailInfo& anInfo) {
    Size size = {anInfo.mWidth, anInfo.mHeight};
    if (anInfo.mPixelRatioHeight > anInfo.mPixelRatioWidth) {
        size.mHeight = Product(size.mHeight, Ratio(anInfo.mPixelRatioWidth, anInfo.mPixelRatioHeight));
    } else if (anInfo.mPixelRatioHeight < anInfo.mPixelRatioWidth) {
        size.mWidth = Product(size.mWidth, Ratio(anInfo.mPixelRatioHeight, anInfo.mPixelRatioWidth));
    }
    return size;
}

} // namespace

void GetThumbnailFinalSize(const ThumbnailInfo* anInfo, uint32 aOriginalWidth, uint32 aOriginalHeight,
                           uint32* aFinalWidth, uint32* aFinalHeight) {
    if (anInfo == nullptr || aFinalWidth == nullptr || aFinalHeight == nullptr) {
        return;
    }
    const bool fBox = anInfo->mWidthMax != 0 && anInfo->mHeightMax != 0;
    // The pixel ratio is dropped with a box: it bounds what is shown, not what was asked for.
    Size size = fBox ? FitInBox(*anInfo, Ratio(aOriginalWidth, aOriginalHeight)) : WithPixelRatio(*anInfo);
    // Other boxes enlarge: only the DLNA profiles' own one leaves a small picture as it is.
    if ((size.mWidth >= aOriginalWidth || size.mHeight >= aOriginalHeight) &&
        anInfo->mWidthMax == kDLNAThumbnailSide && anInfo->mHeightMax == kDLNAThumbnailSide) {
        size = {aOriginalWidth, aOriginalHeight};
    }
    *aFinalWidth = size.mWidth;
    *aFinalHeight = size.mHeight;
}
