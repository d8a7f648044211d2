#include "ezFormats/tags/ExifRecord.h"

#include "ezBytes/Exif.h"

#include "ezPlatform/media/MediaInfo.h"

void StoreExif(const ExifFacts& aFacts, ezMediaInfo& anInfo) {
    if (aFacts.mOrientation != 1) {
        anInfo.Set(kezInfo_Orientation, aFacts.mOrientation, true);
    }
    if (!aFacts.mDate.IsEmpty()) {
        anInfo.Set(kezInfo_Date, aFacts.mDate, true);
    }
}
