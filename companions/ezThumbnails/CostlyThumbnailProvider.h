#pragma once

#include "ezThumbnails/Export.h"

#include "ez/ThumbnailProvider.h"

class PictureThumbnailGenerator;

/// Remembers the items whose picture was refused for its cost, so that it is paid once: for such an item it
/// builds nothing and says that this is done. The empty file is kept by the cache like that of an item
/// without a picture, and answers later requests at once, until the item's identity is another one.
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

    /// Both formats between the refusal of the item's picture and the build below; else nothing.
    uint32 GetPossibleThumbnailFor(const ThumbnailInfo* anInfo) override;
    /// True, once, after such a refusal; the file stays empty.
    bool BuildThumbnail(const ThumbnailInfo* anInfo, ezFile* aFile) override;

private:
    PictureThumbnailGenerator* mThumbnailGenerator;
};
