#pragma once

struct ExifFacts;
class ezMediaInfo;

/// Puts what an Exif block tells of a photo into a record.
void StoreExif(const ExifFacts& aFacts, ezMediaInfo& anInfo);
