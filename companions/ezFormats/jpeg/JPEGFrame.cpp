#include "ezFormats/jpeg/JPEGFrame.h"

#include "ezFormats/codecs/ChromaSampling.h"

namespace {

constexpr int kAdobeYCCK = 2;

constexpr unsigned k8 = 1U << 8;
constexpr unsigned k8Or12 = k8 | 1U << 12;
constexpr unsigned k2To16 = 0x1FFFC;

struct Process {
    unsigned mMarker;
    const char* mName;
    unsigned mPrecisions;
};

/// Those that a frame header can state (T.81, tables B.1 and B.2), and the one of several frames, of which
/// the hierarchical header states the whole.
constexpr std::array<Process, 8> kProcesses = {{{0xC0, "baseline", k8},
                                                {0xC1, "extended", k8Or12},
                                                {0xC2, "progressive", k8Or12},
                                                {0xC3, "lossless", k2To16},
                                                {0xC9, "arithmetic", k8Or12},
                                                {0xCA, "arithmetic", k8Or12},
                                                {0xCB, "arithmetic", k2To16},
                                                {0xDE, "hierarchical", k2To16}}};

/// True for one plane of luma before two of chroma that are sampled alike.
bool HasRatio(const JPEGComponents& aComponents, const ChromaSampling& aRatio) {
    const JPEGComponent& luma = aComponents.mItems[0];
    for (std::size_t i = 1; i < aComponents.mCount; ++i) {
        const JPEGComponent& chroma = aComponents.mItems[i];
        if (luma.mAcross != aRatio.mAcross * chroma.mAcross || luma.mDown != aRatio.mDown * chroma.mDown) {
            return false;
        }
    }
    return aComponents.mCount == 3;
}

ezCString SamplingOf(const JPEGComponents& aComponents) {
    for (const ChromaSampling& ratio : kChromaSamplings) {
        if (HasRatio(aComponents, ratio)) {
            return ratio.mName;
        }
    }
    ezCString text;
    for (std::size_t i = 0; i < aComponents.mCount; ++i) {
        const JPEGComponent& component = aComponents.mItems[i];
        text += ezCString::Format("%s%ux%u", i == 0 ? "" : ",", component.mAcross, component.mDown);
    }
    return text;
}

/// The rules that the common decoders share where no colour space is stated: JFIF means YCbCr, then Adobe's
/// segment decides, then the identifiers.
bool IsRGB(const JPEGComponents& aComponents, const JPEGColourHints& aHints) {
    if (aHints.mfJFIF) {
        return false;
    }
    if (aHints.mAdobeTransform != JPEGColourHints::kNoAdobe) {
        return aHints.mAdobeTransform == 0;
    }
    const auto& items = aComponents.mItems;
    return items[0].mID == 'R' && items[1].mID == 'G' && items[2].mID == 'B';
}

} // namespace

ezCString JPEGColoursOf(const JPEGComponents& aComponents, const JPEGColourHints& aHints) {
    if (aComponents.mCount == 1) {
        return "grey"; // whatever its factors, they relate to nothing
    }
    if (aComponents.mCount == 4) {
        return aHints.mAdobeTransform == kAdobeYCCK ? "YCCK" : "CMYK";
    }
    if (aComponents.mCount == 3 && IsRGB(aComponents, aHints)) {
        return "RGB";
    }
    return SamplingOf(aComponents);
}

const char* JPEGProcessOf(unsigned aMarker, unsigned* aPrecisions) {
    for (const Process& process : kProcesses) {
        if (process.mMarker == aMarker) {
            *aPrecisions = process.mPrecisions;
            return process.mName;
        }
    }
    return nullptr;
}
