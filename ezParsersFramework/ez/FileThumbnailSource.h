#pragma once

#include "ez/MediaParserTypes.h"
#include "ez/ThumbnailSource.h"

#include "ezPlatform/files/PathName.h"
#include "ezPlatform/text/CString.h"

class ezStream;
struct ThumbnailInfo;

/// A picture that is a file of its own. Used by one thread at a time.
class EZPARSERS_API ezFileThumbnailSource : public ezThumbnailSource {
public:
    /// The item's own file, with the item's MIME type. anInfo is not kept; of null the source has no path.
    explicit ezFileThumbnailSource(const ThumbnailInfo* anInfo);
    ~ezFileThumbnailSource() override;

    /// True when something other than a folder stands under the path.
    bool Exists() const override;
    /// Never null: where the file does not open, the stream is not open and reads nothing.
    ezStream* GetStream() const override;

    /// Where the picture is, borrowed until the source changes; not valid where the source was made of null.
    const ezPathName& GetPath() const { return mFilePath; }
    /// The same as a string; empty where the path is not valid.
    ezCString GetFullPath() const { return mFilePath.GetFullPath(); }
    /// Replaces the whole path.
    void SetPath(const ezPathName& aPath) { mFilePath = aPath; }
    /// Replaces the last component, extension included, and keeps the folder: "d/film.mpg" becomes
    /// "d/cover.jpg".
    void SetFileName(const ezCString& aFileName);
    /// Replaces the extension, given without its dot, or adds it: "film.mpg" becomes "film.jpg". An empty one
    /// removes extension and dot.
    void SetExtension(const ezCString& anExtension);

protected:
    ezPathName mFilePath; ///< of the picture
};
