#pragma once

#include "ezBytes/ByteReader.h"

/// What a matrix does to a picture, as far as it is quarter turns and mirroring: that of the track header
/// says how its pictures lie in the movie, that of the movie header how the movie is shown (ISO/IEC 14496-12,
/// 8.3.2 and 8.2.2). Moving and scaling are left out. One that does anything else, by an angle between or by
/// nothing but zeros, counts as the one that does nothing.
class ISOMatrix {
public:
    /// The one that does nothing.
    ISOMatrix() = default;

    /// Reads nine numbers; the one that does nothing where they are not there.
    static ISOMatrix Read(ByteReader& aReader);

    /// This one, and then another.
    ISOMatrix Then(const ISOMatrix& aNext) const;

    /// 1 to 8, as Exif numbers what is to be done to a stored picture.
    unsigned GetOrientation() const;

private:
    ISOMatrix(int aXOfX, int aYOfX, int aXOfY, int aYOfY)
        : mXOfX(aXOfX), mYOfX(aYOfX), mXOfY(aXOfY), mYOfY(aYOfY) {}

    // Where a step to the right, and one downwards, lead: -1, 0 or 1.
    int mXOfX = 1;
    int mYOfX = 0;
    int mXOfY = 0;
    int mYOfY = 1;
};
