#pragma once

#include "ezThumbnails/Export.h"

#include "ez/ThumbnailProvider.h"

class PictureThumbnailGenerator;

/// Remembers the items whose pictures were all refused for their cost, so that it is paid once: for such an
/// item it builds nothing and says that this is done. The empty file is kept by the cache like that of an
/// item without a picture, and answers later requests at once, until the item's identity is another one.
///
/// An item of which another picture failed for want of memory, for a full disk or for damage is not
/// remembered: that one may be good at the next request.
///
/// A host adds it last, after the providers that use the same generator: another picture of the item is taken
/// before it is asked. Without it, a refused picture is decoded up to its limit at every request.
class EZTHUMBNAILS_API CostlyThumbnailProvider : public ezThumbnailProvider {
public:
    /// @param aThumbnailGenerator  borrowed, the manager's
    explicit CostlyThumbnailProvider(PictureThumbnailGenerator* aThumbnailGenerator)
        : ezThumbnailProvider("costly"), mThumbnailGenerator(aThumbnailGenerator) {}
    /// Does not touch the generator.
    ~CostlyThumbnailProvider() override;

    /// Both formats between such a refusal and the build below; else nothing, and failures of the item that
    /// were noted are forgotten.
    uint32 GetPossibleThumbnailFor(const ThumbnailInfo* anInfo) override;
    /// True, once, after such a refusal; the file stays empty.
    bool BuildThumbnail(const ThumbnailInfo* anInfo, ezFile* aFile) override;

private:
    PictureThumbnailGenerator* mThumbnailGenerator;
};
