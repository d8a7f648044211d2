#pragma once

#include "ezThumbnails/detail/Cover.h"

#include "ez/ThumbnailProvider.h"

/// A picture that lies in a file in pieces, with stuffing in between, or deflated: its stream holds it in
/// memory.
class GatheredCoverSource : public ezThumbnailSource {
public:
    /// @param aFilePath the file
    /// @param aCover    found in it
    GatheredCoverSource(const ezPathName& aFilePath, const Cover& aCover);
    ~GatheredCoverSource() override;

    bool Exists() const override;
    /// Null when the file does not open, is not as long as it was, there is no memory for the picture, or it
    /// is larger than kCover_MaxHeldSize; for a deflated one also when its data are damaged, or more than the
    /// cover, or kCover_MaxInflatedSize, allows.
    ezStream* GetStream() const override;

private:
    ezPathName mFilePath;
    Cover mCover;
};
