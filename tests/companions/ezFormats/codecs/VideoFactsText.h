#pragma once

#include "ezFormats/codecs/VideoFacts.h"

#include <optional>
#include <string>

/// What a reader of a codec's headers told, in a line: "MPEG2 Main@20 720x576 64:45 fr=25000 ...", what is
/// not known left out; "nothing" where it told nothing.
inline std::string Text(const std::optional<VideoFacts>& aFacts) {
    if (!aFacts.has_value()) {
        return "nothing";
    }
    std::string text = aFacts->mCodec.c_str();
    const auto add = [&](const std::string& aValue) { text += (text.empty() ? "" : " ") + aValue; };
    const auto number = [&](const char* aName, std::uint32_t aNumber) {
        if (aNumber != 0) {
            add(std::string(aName) + "=" + std::to_string(aNumber));
        }
    };
    const auto word = [&](const char* aWord) {
        if (aWord != nullptr) {
            add(aWord);
        }
    };
    if (!aFacts->mProfile.IsEmpty() || aFacts->mLevel != VideoFacts::kNoLevel) {
        const bool fLevel = aFacts->mLevel != VideoFacts::kNoLevel;
        add(std::string(aFacts->mProfile.c_str()) + "@" + (fLevel ? std::to_string(aFacts->mLevel) : "?"));
    }
    if ((aFacts->mWidth | aFacts->mHeight) != 0) {
        add(std::to_string(aFacts->mWidth) + "x" + std::to_string(aFacts->mHeight));
    }
    if (aFacts->mPixelAspect.IsKnown()) {
        add(aFacts->mPixelAspect.GetText().c_str());
    }
    number("fr", aFacts->mFrameRate);
    word(aFacts->mScan);
    number("cd", aFacts->mBitDepth);
    word(aFacts->mColours);
    word(aFacts->mHDR);
    number("vr", aFacts->mBitRate);
    number("mv", aFacts->mMaxBitRate);
    number("ev", aFacts->mEstimatedBitRate);
    return text;
}
