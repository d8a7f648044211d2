#include "arguments/ThumbnailOptions.h"

#include "arguments/Limits.h"
#include "arguments/Operands.h"

#include "ezPlatform/text/CString.h"

#include <CLI/CLI.hpp>

namespace {

bool ReadSide(const std::string& aText, uint32& aSide) {
    return ezReadDecimal32(aText, &aSide) && aSide != 0 && aSide <= kArguments_MaxThumbnailSide;
}

/// Reads "160x120".
std::string ReadPixelSize(const char* aName, const std::optional<std::string>& aText,
                          std::optional<PixelSize>& aSize) {
    if (!aText) {
        return {};
    }
    const std::size_t cross = aText->find('x');
    PixelSize size;
    if (cross == std::string::npos || !ReadSide(aText->substr(0, cross), size.mWidth) ||
        !ReadSide(aText->substr(cross + 1), size.mHeight)) {
        return std::string(aName) + ": not WxH with sides from 1 to " +
               std::to_string(kArguments_MaxThumbnailSide) + ": " + *aText;
    }
    aSize = size;
    return {};
}

std::string CheckPlaces(const std::string& aVerb, const ThumbnailOptions& anOptions) {
    if (!anOptions.mOutput) {
        return aVerb + ": no file to write given; -o names it";
    }
    if (anOptions.mOutput->empty() || *anOptions.mOutput == kStandardInput) {
        return "-o: not the name of a file: " + *anOptions.mOutput;
    }
    return anOptions.mCacheFolder && anOptions.mCacheFolder->empty() ? "--cache: no folder given" : "";
}

} // namespace

void DeclareThumbnailOptions(CLI::App& anApp, ThumbnailOptions& anOptions, ThumbnailTexts& aTexts) {
    const auto addText = [&](const char* aName, std::optional<std::string>& aText, const char* aValue,
                             const char* aHelp) {
        anApp.add_option(aName, aText, aHelp)->type_name(aValue)->take_last();
    };
    addText("-o,--output", anOptions.mOutput, "OUT", "thumbnail, contact-sheet: the file to write");
    addText("--size", aTexts.mSize, "WxH", "thumbnail: exactly so many pixels, whatever the aspect");
    addText("--box", aTexts.mBox, "WxH", "thumbnail: fitted into a box (default 160x160)");
    anApp.add_flag("--png", anOptions.mfPng, "thumbnail: PNG in place of JPEG");
    anApp.add_flag("--default", anOptions.mfDefault,
                   "thumbnail: where there is no other, the generic picture of the media's class");
    anApp.add_flag("--fast", anOptions.mfFast, "thumbnail, contact-sheet: scale fast, at a lower quality");
    addText("--cache", anOptions.mCacheFolder, "DIR",
            "thumbnail, contact-sheet: where thumbnails are kept (default $XDG_CACHE_HOME/ezannounce, else "
            "~/.cache/ezannounce)");
}

std::string ReadThumbnailTexts(const ThumbnailTexts& aTexts, ThumbnailOptions& anOptions) {
    const std::string error = ReadPixelSize("--size", aTexts.mSize, anOptions.mSize);
    return error.empty() ? ReadPixelSize("--box", aTexts.mBox, anOptions.mBox) : error;
}

std::string CheckThumbnail(const ThumbnailOptions& anOptions, const std::vector<std::string>& anOperands) {
    if (anOperands.size() != 1) {
        return anOperands.empty() ? "thumbnail: no file given" : "thumbnail takes one operand";
    }
    if (IsLive(anOperands.front())) {
        return "thumbnail takes a file, neither standard input nor a URL: " + anOperands.front();
    }
    if (anOptions.mSize && anOptions.mBox) {
        return "--size and --box do not go together";
    }
    return CheckPlaces("thumbnail", anOptions);
}

std::string CheckContactSheet(const ThumbnailOptions& anOptions, const std::vector<std::string>& anOperands) {
    if (anOperands.size() != 1) {
        return anOperands.empty() ? "contact-sheet: no folder given" : "contact-sheet takes one operand";
    }
    if (anOptions.HasAnyOfThumbnail()) {
        return "--size, --box, --png and --default go with thumbnail only";
    }
    return CheckPlaces("contact-sheet", anOptions);
}
