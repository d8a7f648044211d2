#pragma once

#include "ezPlatform/base/Types.h"

#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

/// Width and height in pixels.
struct PixelSize {
    uint32 mWidth = 0;
    uint32 mHeight = 0;
};

/// How thumbnails are asked for.
struct ThumbnailOptions {
    std::optional<std::string> mOutput; ///< the file to write
    std::optional<PixelSize> mSize;     ///< exactly so
    std::optional<PixelSize> mBox;      ///< fitted into it
    bool mfPng = false;                 ///< PNG, else JPEG
    bool mfDefault = false;             ///< the generic picture where there is no other
    bool mfFast = false;
    std::optional<std::string> mCacheFolder;

    /// One that goes with thumbnail alone.
    bool HasAnyOfThumbnail() const { return mSize || mBox || mfPng || mfDefault; }
    /// One that goes with contact-sheet as well.
    bool HasAnyOfBoth() const { return mOutput || mfFast || mCacheFolder; }
};

/// The texts of the options whose values are looked at here and not by the command-line library.
struct ThumbnailTexts {
    std::optional<std::string> mSize;
    std::optional<std::string> mBox;
};

/// Options and texts are borrowed until the command line is read.
void DeclareThumbnailOptions(CLI::App& anApp, ThumbnailOptions& anOptions, ThumbnailTexts& aTexts);

/// What is wrong with the texts; "" when nothing is.
std::string ReadThumbnailTexts(const ThumbnailTexts& aTexts, ThumbnailOptions& anOptions);

/// What of the command line of the verb thumbnail does not go together; "" when all does.
std::string CheckThumbnail(const ThumbnailOptions& anOptions, const std::vector<std::string>& anOperands);

/// The same of the verb contact-sheet.
std::string CheckContactSheet(const ThumbnailOptions& anOptions, const std::vector<std::string>& anOperands);
